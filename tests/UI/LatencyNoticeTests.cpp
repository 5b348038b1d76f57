#include "AdapterFacts.h"
#include "CycleLabel.h"
#include "LatencyRuleDialog.h"
#include "ModbusSerial/FakeSystemTree.h"
#include "NoticeBanner.h"
#include "NoticeOverlays.h"
#include "PollTabBar.h"
#include "QtText.h"
#include "UIFixture.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>

#include <QClipboard>
#include <QPlainTextEdit>

namespace kestrin::UITesting {
namespace {

// Root writes any file but an immutable one; the flag also keeps the file from being removed.
bool setImmutable(const std::filesystem::path& file, bool immutable) {
    const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    int flags = 0;
    bool done = fd >= 0 && ::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    if (done) {
        flags = immutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
        done = ::ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
    }
    ::close(fd);
    return done;
}

// Reading on a terminal that the fake tree makes an FTDI adapter with a 16 ms timer.
class LatencyNoticeView : public ::testing::Test {
protected:
    FakeSystemTree tree;
    QuietTerminal terminal;
    const std::string timer = AdapterFacts::latencyAttribute("ttyUSB0");

    void SetUp() override { tree.usbSerial({}).link(terminal.path(), "/dev/ttyUSB0"); }
    void TearDown() override { setImmutable(tree.at(timer), false); }
};

// Either button takes the notice away.
TEST_F(LatencyNoticeView, SetToOneMillisecondOnlyWhereTheTimerCanBeWritten) {
    for (const bool writable : {true, false}) {
        SCOPED_TRACE(writable ? "writable" : "read-only");
        tree.file(timer, "16\n");
        if (!writable) {
            std::filesystem::permissions(tree.at(timer), std::filesystem::perms::owner_read);
            if (::geteuid() == 0 && !setImmutable(tree.at(timer), true)) {
                GTEST_SKIP() << "the timer cannot be made read-only here";
            }
        }
        PollerModel::Environment environment = Testing::environment();
        environment.project = PollerProject::firstRun();
        environment.systemRoot = tree.root();
        PollerModel model(std::move(environment));
        model.addTestDevice(terminal.path(), "Adapter");
        model.start();
        ASSERT_TRUE(waitUntil([&] { return model.state() == PollerState::running; }));
        NoticeOverlays overlays(model);
        showAt(overlays, 900, 200);
        auto* banner = child<NoticeBanner>(overlays, "latencyNotice");
        EXPECT_TRUE(banner->isVisible());
        EXPECT_TRUE(banner->text().contains(QString::fromUtf8("16\u00a0ms")));
        EXPECT_EQ(child(overlays, "setLatencyButton")->isVisible(), writable);
        EXPECT_TRUE(child(overlays, "latencyRuleButton")->isVisible());
        click(writable ? child(overlays, "setLatencyButton") : child(*banner, "noticeDismiss"));
        EXPECT_FALSE(overlays.isVisible());
        model.stop();
    }
}

// The example poll's four requests each wait out the adapter's 16 ms before their answer comes.
TEST_F(LatencyNoticeView, TheCycleEstimateCountsTheAdaptersLatencyTimer) {
    tree.file(timer, "16\n");
    const auto cycleMs = [&](const SystemRoot& root) {
        PollerModel::Environment environment = Testing::environment();
        environment.project = PollerProject::firstRun();
        environment.systemRoot = root;
        PollerModel model(std::move(environment));
        model.addTestDevice(terminal.path(), "Adapter");
        PollTabBar bar(model);
        QCoreApplication::processEvents();
        const QString text = child<CycleLabel>(bar, "pollCycleLabel")->text();
        return text.section(QLatin1Char(' '), 1, 1).toInt();
    };
    EXPECT_EQ(cycleMs(tree.root()) - cycleMs(SystemRoot::machine()), 4 * 16);
}

TEST(LatencyRule, DialogShowsTheRuleToCopy) {
    LatencyRuleDialog dialog;
    const QString rule = qt(AdapterFacts::latencyUdevRule());
    auto* text = child<QPlainTextEdit>(dialog, "latencyRule");
    EXPECT_EQ(text->toPlainText(), rule);
    EXPECT_TRUE(text->isReadOnly());
    QGuiApplication::clipboard()->clear();
    click(child(dialog, "copyLatencyRule"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), rule);
}

} // namespace
} // namespace kestrin::UITesting
