#include "PortPathWatcher.h"

#include <array>
#include <cstdint>
#include <sys/inotify.h>
#include <sys/stat.h>
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

} // namespace

PortPathWatcher::PortPathWatcher(std::string path, std::chrono::milliseconds fallbackInterval,
                                 QObject* parent)
    : QObject(parent)
    , path_(std::move(path))
    , inotify_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
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
    openable_ = canOpen(path_);
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

void PortPathWatcher::look() {
    // A link may now point elsewhere, or a missing folder may be back.
    watchFolders();
    const bool openable = canOpen(path_);
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
