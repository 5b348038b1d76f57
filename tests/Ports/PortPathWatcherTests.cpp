#include "PortPathWatcher.h"
#include "QuietTerminal.h"

#include <filesystem>
#include <fstream>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

// Long enough that only inotify can have delivered a change within a test.
constexpr auto neverPolled = std::chrono::hours(1);
constexpr int generous = 5000;

struct Watched {
    QTemporaryDir folder;
    Testing::QuietTerminal terminal;

    fs::path file(const char* name) const { return fs::path(folder.path().toStdString()) / name; }
    // Replaces whatever is at link, as kestrin-sim --link does.
    static void link(const fs::path& link, const fs::path& target) {
        fs::remove(link);
        fs::create_symlink(target, link);
    }
};

TEST(PortPathWatcher, ReturnsEachTimeTheLinkOpensAgainAndNotForAnythingElse) {
    Watched w;
    ASSERT_FALSE(w.terminal.path().empty());
    const fs::path port = w.file("ttyKestrin");
    PortPathWatcher watcher(port.string(), std::nullopt, neverPolled);
    QSignalSpy returned(&watcher, &PortPathWatcher::returned);
    EXPECT_FALSE(watcher.isOpenable());
    EXPECT_FALSE(watcher.isPolling());

    // Something else in the folder, then a link that outlived its pseudo-terminal.
    std::ofstream(w.file("unrelated")) << "x";
    Watched::link(port, "/dev/pts/kestrin-gone");
    QTest::qWait(100);
    EXPECT_EQ(returned.count(), 0);

    for (int round = 1; round <= 2; ++round) {
        SCOPED_TRACE(round);
        Watched::link(port, w.terminal.path());
        ASSERT_TRUE(QTest::qWaitFor([&] { return returned.count() == round; }, generous));
        EXPECT_TRUE(watcher.isOpenable());
        fs::remove(port);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !watcher.isOpenable(); }, generous));
    }
    EXPECT_EQ(returned.count(), 2);
}

TEST(PortPathWatcher, AnOldLinkToAPseudoTerminalIsNotTakenForItsReturn) {
    Watched w;
    ASSERT_FALSE(w.terminal.path().empty());
    const fs::path port = w.file("ttyKestrin");
    // The lost terminal's number went to another program, and the old link leads there.
    Watched::link(port, w.terminal.path());
    PortPathWatcher watcher(port.string(), PortPathWatcher::linkIdentity(port.string()),
                            neverPolled);
    QSignalSpy returned(&watcher, &PortPathWatcher::returned);
    EXPECT_FALSE(watcher.isOpenable());
    std::ofstream(w.file("unrelated")) << "x";
    QTest::qWait(100);
    EXPECT_EQ(returned.count(), 0);

    Watched::link(port, w.terminal.path());
    EXPECT_TRUE(returned.wait(generous)) << "a link made anew is the device back";
}

TEST(PortPathWatcher, SeesTheTargetOfALinkComeBackInItsOwnFolder) {
    Watched w;
    const fs::path devices = w.file("dev");
    fs::create_directory(devices);
    const fs::path port = w.file("ttyKestrin");
    // Like a link to /dev/ttyUSB0 while the adapter is out.
    Watched::link(port, devices / "ttyUSB0");
    PortPathWatcher watcher(port.string(), std::nullopt, neverPolled);
    QSignalSpy returned(&watcher, &PortPathWatcher::returned);
    EXPECT_FALSE(watcher.isOpenable());

    // A device node that is not a pseudo-terminal stands in for the adapter.
    Watched::link(devices / "ttyUSB0", "/dev/null");
    EXPECT_TRUE(returned.wait(generous));
}

TEST(PortPathWatcher, LooksOnTheTimerWhileTheFolderIsMissingThenWatchesIt) {
    Watched w;
    const fs::path folder = w.file("by-id");
    const fs::path port = folder / "usb-FTDI-port0";
    PortPathWatcher watcher(port.string(), std::nullopt, 20ms);
    QSignalSpy returned(&watcher, &PortPathWatcher::returned);
    EXPECT_TRUE(watcher.isPolling());

    fs::create_directory(folder);
    Watched::link(port, w.terminal.path());
    EXPECT_TRUE(returned.wait(generous));
    EXPECT_FALSE(watcher.isPolling());
}

} // namespace
} // namespace kestrin
