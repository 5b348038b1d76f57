#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include <QObject>
#include <QTimer>

class QSocketNotifier;

namespace kestrin {

// Watches the path of a port that has gone until it can be opened again. Port discovery only
// hears of adapters the device registry announces; pseudo-terminals, links to them and systems
// without udev come back unannounced, so the path is looked at itself: whenever its folder, or
// the folder its symbolic link points into, changes (inotify), or on a timer where no such watch
// can be set up (a folder that is gone, no inotify). A node counts as back only once it could be
// opened: a link to a pseudo-terminal outlives the terminal, and a fresh device node is not yet
// ours until udev has given it its group. Pseudo-terminal numbers are handed out again at once to
// whichever program asks next, so a path that led to one counts as back only once the link has
// been made anew (as kestrin-sim --link does): an old link may point at a stranger's terminal.
// Thread contract: created, used and destroyed on one thread that runs a Qt event loop.
class PortPathWatcher : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultFallbackInterval{500};

    // A symbolic link's own identity (inode and change time); nothing for anything else.
    struct LinkIdentity {
        unsigned long long inode = 0;
        long long changedSeconds = 0;
        long long changedNanoseconds = 0;
        friend bool operator==(const LinkIdentity&, const LinkIdentity&) = default;
    };
    static std::optional<LinkIdentity> linkIdentity(const std::string& path);

    // openedLink: the path's link as it was when the lost port was opened, so that a link to a
    // pseudo-terminal that was made anew before the loss was noticed still counts.
    PortPathWatcher(std::string path, std::optional<LinkIdentity> openedLink,
                    std::chrono::milliseconds fallbackInterval = defaultFallbackInterval,
                    QObject* parent = nullptr);
    ~PortPathWatcher() override;
    PortPathWatcher(const PortPathWatcher&) = delete;
    PortPathWatcher& operator=(const PortPathWatcher&) = delete;

    const std::string& path() const noexcept { return path_; }
    // Whether the path opened when last looked at; the first look is made at creation.
    bool isOpenable() const noexcept { return openable_; }
    // True while some folder cannot be watched and the path is looked at on the timer instead.
    bool isPolling() const noexcept { return fallback_.isActive(); }

    // Whether the path leads to a node other than a folder that this user may read and write.
    // Looked at, never opened: opening a serial port raises DTR and closing it drops it again,
    // which resets many controller boards.
    static bool canOpen(const std::string& path);

signals:
    // The path opens again after a look at which it did not.
    void returned();

private:
    void look();
    bool isBack() const;
    void watchFolders();
    void drainEvents();

    std::string path_;
    int inotify_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer fallback_;
    bool openable_ = false;
    std::optional<LinkIdentity> openedLink_;
};

} // namespace kestrin
