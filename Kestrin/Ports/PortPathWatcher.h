#pragma once

#include <chrono>
#include <memory>
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
// ours until udev has given it its group.
// Thread contract: created, used and destroyed on one thread that runs a Qt event loop.
class PortPathWatcher : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultFallbackInterval{500};

    explicit PortPathWatcher(std::string path,
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
    void watchFolders();
    void drainEvents();

    std::string path_;
    int inotify_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer fallback_;
    bool openable_ = false;
};

} // namespace kestrin
