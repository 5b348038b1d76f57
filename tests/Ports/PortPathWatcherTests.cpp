#include "PortPathWatcher.h"
#include "QuietTerminal.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <tuple>
#include <utility>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

using Link = std::pair<fs::path, fs::path>; // where, to what

// Replaces whatever is at the link, as kestrin-sim --link does, making its folder if need be.
void relink(const Link& link) {
    fs::create_directories(link.first.parent_path());
    fs::remove(link.first);
    fs::create_symlink(link.second, link.first);
}

// Each row: the path watched, links made before the watcher starts and while nothing may return,
// the link that brings the device back (removed to take it away) and how often to look, where an
// hour means only inotify can have noticed.
TEST(PortPathWatcher, ReturnsEachTimeThePathLeadsToADeviceAgainAndNotForAnythingElse) {
    QTemporaryDir folder;
    const fs::path root = folder.path().toStdString();
    const Testing::QuietTerminal terminal;
    ASSERT_FALSE(terminal.path().empty());
    const fs::path port = root / "ttyKestrin", usb = root / "dev/ttyUSB0", byID = root / "id/p0";
    const Link toTerminal{port, terminal.path()};
    fs::create_directory(usb.parent_path());
    using Made = std::optional<Link>;
    const std::tuple<const char*, fs::path, Made, Made, Link, std::chrono::milliseconds> rows[] = {
        {"a link outliving its terminal", port, {}, Link{port, "/dev/pts/gone"}, toTerminal, 1h},
        // The lost terminal's number went to another program, and the old link leads there.
        {"an old link to a pseudo-terminal", port, toTerminal, {}, toTerminal, 1h},
        // Like a link to /dev/ttyUSB0 while the adapter is out; /dev/null stands in for it.
        {"a link's target in its own folder", port, Link{port, usb}, {}, {usb, "/dev/null"}, 1h},
        {"a missing folder, on the timer", byID, {}, {}, {byID, terminal.path()}, 20ms},
    };
    for (const auto& [name, watched, before, noise, back, interval] : rows) {
        SCOPED_TRACE(name);
        if (before) {
            relink(*before);
        }
        // What the link was when the device was lost: only a pseudo-terminal's is compared.
        PortPathWatcher watcher(watched.string(), PortPathWatcher::linkIdentity(watched.string()),
                                interval);
        QSignalSpy returned(&watcher, &PortPathWatcher::returned);
        EXPECT_FALSE(watcher.isOpenable());
        EXPECT_EQ(watcher.isPolling(), interval < 1h);
        std::ofstream(root / "unrelated") << "x";
        if (noise) {
            relink(*noise);
        }
        QTest::qWait(100);
        EXPECT_EQ(returned.count(), 0);
        for (int round = 1; round <= 2; ++round) {
            relink(back);
            ASSERT_TRUE(QTest::qWaitFor([&] { return returned.count() == round; }, 5000)) << round;
            EXPECT_TRUE(watcher.isOpenable());
            EXPECT_FALSE(watcher.isPolling());
            fs::remove(back.first);
            ASSERT_TRUE(QTest::qWaitFor([&] { return !watcher.isOpenable(); }, 5000)) << round;
        }
        EXPECT_EQ(returned.count(), 2);
    }
}

} // namespace
} // namespace kestrin
