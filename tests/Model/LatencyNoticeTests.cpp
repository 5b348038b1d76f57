#include "../ModbusSerial/FakeSystemTree.h"
#include "AdapterFacts.h"
#include "ModelFixture.h"

#include <QSignalSpy>

namespace kestrin::ModelTesting {
namespace {

// Reading from the simulator while the fake tree says its port is an FTDI adapter whose latency
// timer stands at 16 ms.
class LatencyNoticeTest : public ModelFixture {
protected:
    FakeSystemTree tree;
    SimulatorProcess device{ChildProcess::sim()};
    const std::string timer = AdapterFacts::latencyAttribute("ttyUSB0");

    void SetUp() override {
        tree.usbSerial({.latencyMs = 16}).link(device.port(), "/dev/ttyUSB0");
        PollerModel::Environment environment = Testing::environment(registry);
        environment.project = project({poll("Tank", {holding("Level", 100)})});
        environment.preferences = preferences();
        environment.systemRoot = tree.root();
        model = std::make_unique<PollerModel>(std::move(environment));
        startReading(device.port());
    }
    void restart() {
        model->stop();
        model->start();
        ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    }
};

TEST_F(LatencyNoticeTest, SlowTimerIsShownUntilDismissedForThatAdapter) {
    ASSERT_TRUE(model->latencyNotice().has_value());
    const LatencyNotice& notice = *model->latencyNotice();
    EXPECT_EQ(notice.path, device.port());
    EXPECT_EQ(notice.timerMs, 16);
    EXPECT_TRUE(notice.writable);
    // The project's 9600 8E1 and one register: about 24 reads a second instead of 38.
    EXPECT_EQ(notice.requestsPerSecond, 24);
    EXPECT_EQ(notice.requestsPerSecondAtBest, 38);

    QSignalSpy changes(model.get(), &PollerModel::latencyNoticeChanged);
    model->dismissLatencyNotice();
    EXPECT_FALSE(model->latencyNotice().has_value());
    // Only the preferences remember the dismissal when reading starts again.
    restart();
    EXPECT_FALSE(model->latencyNotice().has_value());
    EXPECT_EQ(changes.count(), 1);
}

// The adapter may go between the notice and the click: the notice stays and says why. Once the
// timer is at 1 ms, reading starts again without a notice.
TEST_F(LatencyNoticeTest, SettingTheTimerWritesOneOrSaysWhyNot) {
    std::filesystem::remove(tree.at(timer));
    model->setLatencyTimerToBest();
    EXPECT_TRUE(model->latencyNotice().has_value());
    EXPECT_EQ(model->errorMessage(), "The latency timer of " + device.port() +
                                         " could not be set: No such file or directory.");

    tree.file(timer, "16\n");
    model->setLatencyTimerToBest();
    EXPECT_EQ(AdapterFacts::latencyTimer(device.port(), tree.root())->milliseconds, 1);
    EXPECT_FALSE(model->latencyNotice().has_value());
    EXPECT_EQ(countInLog("Latency timer of " + device.port() + " set to 1 ms"), 1);
    restart();
    EXPECT_FALSE(model->latencyNotice().has_value());
}

TEST(LatencyNoticeKey, AdapterWithSerialNumberIsKnownUnderAnyPath) {
    const PortIdentity withSerial{0x0403, 0x6001, "A10K1234", std::nullopt};
    const PortIdentity withoutSerial{0x1A86, 0x7523, std::nullopt, std::nullopt};
    EXPECT_EQ(LatencyNotice::adapterKey(withSerial, "/dev/ttyUSB1"), "0403:6001:A10K1234");
    EXPECT_EQ(LatencyNotice::adapterKey(withoutSerial, "/dev/ttyUSB1"), "/dev/ttyUSB1");
    EXPECT_EQ(LatencyNotice::adapterKey(std::nullopt, "/dev/ttyS0"), "/dev/ttyS0");
}

} // namespace
} // namespace kestrin::ModelTesting
