#include "PortPathWatcher.h"
#include "QuietTerminal.h"

#include <filesystem>
#include <fstream>
#include <optional>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

struct Link {
    fs::path at, to;
};

// Replaces whatever is at the link, as kestrin-sim --link does, making its folder if need be.
void relink(const Link& link) {
    fs::create_directories(link.at.parent_path());
    fs::remove(link.at);
    fs::create_symlink(link.to, link.at);
}

// Each row sets up the path, lets something that is not the device change, then brings the
// device back twice, taking it away in between. An hour's timer means only inotify can have
// noticed, except where the folder is missing.
TEST(PortPathWatcher, ReturnsEachTimeThePathLeadsToADeviceAgainAndNotForAnythingElse) {
    QTemporaryDir folder;
    const fs::path root = folder.path().toStdString();
    const Testing::QuietTerminal terminal;
    ASSERT_FALSE(terminal.path().empty());
    const fs::path port = root / "ttyKestrin", usb = root / "dev/ttyUSB0", byID = root / "id/p0";
    const Link toTerminal{port, terminal.path()};
    fs::create_directory(usb.parent_path());
    struct Row {
        const char* name;
        fs::path watched;
        std::optional<Link> before, noise;
        Link back; // removed to take the device away
        std::chrono::milliseconds interval;
    };
    const Row rows[] = {
        {"a link outliving its terminal", port, {}, Link{port, "/dev/pts/gone"}, toTerminal, 1h},
        // The lost terminal's number went to another program, and the old link leads there.
        {"an old link to a pseudo-terminal", port, toTerminal, {}, toTerminal, 1h},
        // Like a link to /dev/ttyUSB0 while the adapter is out; /dev/null stands in for it.
        {"a link's target in its own folder", port, Link{port, usb}, {}, {usb, "/dev/null"}, 1h},
        {"a missing folder, on the timer", byID, {}, {}, {byID, terminal.path()}, 20ms},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        if (row.before) {
            relink(*row.before);
        }
        // What the link was when the device was lost: only a pseudo-terminal's is compared.
        PortPathWatcher watcher(row.watched.string(),
                                PortPathWatcher::linkIdentity(row.watched.string()), row.interval);
        QSignalSpy returned(&watcher, &PortPathWatcher::returned);
        EXPECT_FALSE(watcher.isOpenable());
        EXPECT_EQ(watcher.isPolling(), row.interval < 1h);
        std::ofstream(root / "unrelated") << "x";
        if (row.noise) {
            relink(*row.noise);
        }
        QTest::qWait(100);
        EXPECT_EQ(returned.count(), 0);
        for (int round = 1; round <= 2; ++round) {
            relink(row.back);
            ASSERT_TRUE(QTest::qWaitFor([&] { return returned.count() == round; }, 5000)) << round;
            EXPECT_TRUE(watcher.isOpenable());
            EXPECT_FALSE(watcher.isPolling());
            fs::remove(row.back.at);
            ASSERT_TRUE(QTest::qWaitFor([&] { return !watcher.isOpenable(); }, 5000)) << round;
        }
        EXPECT_EQ(returned.count(), 2);
    }
}

} // namespace
} // namespace kestrin
