#include "PortPathWatcher.h"

#include <array>
#include <cstdint>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#include <utility>

#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QStringList>

namespace kestrin {

namespace {

// A node that appears, goes, is renamed or changes owner or mode (udev setting the group).
constexpr std::uint32_t folderEvents =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ATTRIB;

// The folder of the path and, for a symbolic link, the folder of what it points to: a link to
// /dev/ttyUSB0 comes back when the adapter does, without its own folder changing.
QStringList foldersOf(const std::string& path) {
    const QFileInfo info(QString::fromStdString(path));
    QStringList folders{info.absolutePath()};
    if (info.isSymLink()) {
        const QString target = QFileInfo(info.symLinkTarget()).absolutePath();
        if (!folders.contains(target)) {
            folders.push_back(target);
        }
    }
    return folders;
}

// The slave ends of pseudo-terminals: major numbers 136 to 143 in the kernel's device list.
bool isPseudoTerminal(dev_t device) {
    return major(device) >= 136 && major(device) <= 143;
}

} // namespace

PortPathWatcher::PortPathWatcher(std::string path, std::optional<LinkIdentity> openedLink,
                                 std::chrono::milliseconds fallbackInterval, QObject* parent)
    : QObject(parent)
    , path_(std::move(path))
    , inotify_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    , openedLink_(openedLink) {
    if (inotify_ >= 0) {
        notifier_ = std::make_unique<QSocketNotifier>(inotify_, QSocketNotifier::Read);
        connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
            drainEvents();
            look();
        });
    }
    fallback_.setInterval(fallbackInterval);
    connect(&fallback_, &QTimer::timeout, this, &PortPathWatcher::look);
    // Watching before the first look, so that nothing between the two goes unnoticed.
    watchFolders();
    openable_ = isBack();
}

PortPathWatcher::~PortPathWatcher() {
    notifier_.reset();
    if (inotify_ >= 0) {
        ::close(inotify_);
    }
}

bool PortPathWatcher::canOpen(const std::string& path) {
    struct stat node {};
    return ::stat(path.c_str(), &node) == 0 && !S_ISDIR(node.st_mode) &&
           ::access(path.c_str(), R_OK | W_OK) == 0;
}

std::optional<PortPathWatcher::LinkIdentity>
PortPathWatcher::linkIdentity(const std::string& path) {
    struct stat link {};
    if (::lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode)) {
        return std::nullopt;
    }
    return LinkIdentity{link.st_ino, link.st_ctim.tv_sec, link.st_ctim.tv_nsec};
}

bool PortPathWatcher::isBack() const {
    if (!canOpen(path_)) {
        return false;
    }
    struct stat node {};
    if (::stat(path_.c_str(), &node) != 0) {
        return false;
    }
    return !(S_ISCHR(node.st_mode) && isPseudoTerminal(node.st_rdev) &&
             linkIdentity(path_) == openedLink_);
}

void PortPathWatcher::look() {
    // A link may now point elsewhere, or a missing folder may be back.
    watchFolders();
    const bool openable = isBack();
    const bool back = openable && !openable_;
    openable_ = openable;
    if (back) {
        emit returned();
    }
}

void PortPathWatcher::watchFolders() {
    bool watched = inotify_ >= 0;
    for (const QString& folder : foldersOf(path_)) {
        // Watching a folder twice keeps one watch; a deleted folder's watch ends by itself.
        watched = watched && ::inotify_add_watch(inotify_, QFile::encodeName(folder).constData(),
                                                 folderEvents) >= 0;
    }
    if (watched) {
        fallback_.stop();
    } else if (!fallback_.isActive()) {
        fallback_.start();
    }
}

void PortPathWatcher::drainEvents() {
    // Which node changed does not matter: every change leads to one look at the path.
    alignas(inotify_event) std::array<char, 4096> buffer{};
    while (::read(inotify_, buffer.data(), buffer.size()) > 0) {
    }
}

} // namespace kestrin
