#include "../ModbusSerial/FakeSystemTree.h"
#include "ModelFixture.h"

#include <QSignalSpy>

namespace kestrin::ModelTesting {
namespace {

// Reading from the simulator while the fake tree says its port is an FTDI adapter with the
// given latency timer.
class LatencyNoticeTest : public ModelFixture {
protected:
    FakeSystemTree tree;
    SimulatorProcess device{simulatorCommand()};

    void createOnAdapter(int latencyMs) {
        tree.usbSerial({.name = "ttyUSB0", .latencyMs = latencyMs});
        tree.link(device.port(), "/dev/ttyUSB0");
        PollerModel::Environment environment = Testing::environment(registry);
        environment.project = project({poll("Tank", {holding("Level", 100)})});
        environment.preferences = preferences();
        environment.systemRoot = tree.root();
        model = std::make_unique<PollerModel>(std::move(environment));
        startReading(device.port());
    }

    std::string timerFile() const {
        std::ifstream file(tree.at("/sys/bus/usb-serial/devices/ttyUSB0/latency_timer"));
        std::string text;
        std::getline(file, text);
        return text;
    }
};

TEST_F(LatencyNoticeTest, SlowTimerIsShownUntilDismissedForThatAdapter) {
    createOnAdapter(16);
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
    model->stop();
    model->start();
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    EXPECT_FALSE(model->latencyNotice().has_value());
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(LatencyNoticeTest, NoNoticeAtOneMillisecond) {
    createOnAdapter(1);
    EXPECT_FALSE(model->latencyNotice().has_value());
}

TEST_F(LatencyNoticeTest, SettingTheTimerWritesOneAndSaysSoInTheLog) {
    createOnAdapter(16);
    ASSERT_TRUE(model->latencyNotice().has_value());
    model->setLatencyTimerToBest();
    EXPECT_EQ(timerFile(), "1");
    EXPECT_FALSE(model->latencyNotice().has_value());
    EXPECT_EQ(countInLog("Latency timer of " + device.port() + " set to 1 ms"), 1);
    EXPECT_FALSE(model->errorMessage().has_value());
}

TEST_F(LatencyNoticeTest, ATimerThatCannotBeSetKeepsTheNoticeAndSaysWhy) {
    createOnAdapter(16);
    ASSERT_TRUE(model->latencyNotice().has_value());
    // The adapter went between the notice and the click.
    std::filesystem::remove(tree.at("/sys/bus/usb-serial/devices/ttyUSB0/latency_timer"));
    model->setLatencyTimerToBest();
    EXPECT_TRUE(model->latencyNotice().has_value());
    EXPECT_EQ(model->errorMessage(), "The latency timer of " + device.port() +
                                         " could not be set: No such file or directory.");
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
