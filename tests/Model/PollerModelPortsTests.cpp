#include "ModelFixture.h"

#include <tuple>

namespace kestrin::ModelTesting {
namespace {

using Entries = std::vector<FakePortRegistry::Entry>;

const std::string s0 = "/dev/ttyS0", usb0 = "/dev/ttyUSB0", usb1 = "/dev/ttyUSB1";
const std::string missing = "/dev/ttyUSB7";
const FakePortRegistry::Entry internal{s0, {}};
const FakePortRegistry::Entry ftdi{usb0, {"FT232R USB UART", 0x0403, 0x6001}};
const FakePortRegistry::Entry cp2102{usb1, {"CP2102 USB to UART", 0x10C4, 0xEA60}};

class PollerModelPorts : public ModelFixture {
protected:
    void createWith(const std::string& stored, const Entries& listed) {
        preferences()->clear();
        if (!stored.empty()) {
            preferences()->setValue("port", QString::fromStdString(stored));
        }
        registry->entries = listed;
        create(quietProject({}));
    }
    std::string storedPort() const { return preferences()->value("port").toString().toStdString(); }
};

// Plugging in the same list again leaves the choice of the first scan.
TEST_F(PollerModelPorts, ChoiceOnTheFirstScanAndWhenAdaptersComeAndGo) {
    const std::vector<std::tuple<const char*, std::string, Entries, Entries, std::string>> rows{
        {"first scan picks the adapter", "", {internal, ftdi}, {internal, ftdi}, usb0},
        {"no adapter, no choice", "", {internal}, {internal}, ""},
        {"a present stored port stays", s0, {internal, ftdi}, {internal, ftdi}, s0},
        {"a missing stored port", missing, {cp2102, internal, ftdi}, {cp2102, ftdi}, usb0},
        {"an empty list keeps it", missing, {}, {}, missing},
        {"a second adapter", "", {ftdi}, {ftdi, cp2102}, usb0},
        {"over an internal port", s0, {internal}, {internal, cp2102}, usb1},
        {"over a missing port", missing, {internal}, {internal, cp2102}, usb1},
        {"the chosen one unplugged", "", {ftdi, internal}, {internal}, usb0},
        {"adapters swapped", "", {ftdi}, {cp2102}, usb1},
        {"an internal port arrives", "", {ftdi}, {ftdi, internal}, usb0},
    };
    for (const auto& [situation, stored, before, after, chosen] : rows) {
        createWith(stored, before);
        plug(after);
        EXPECT_EQ(model->selectedPath(), chosen) << situation;
        EXPECT_EQ(storedPort(), chosen) << situation;
    }
}

TEST_F(PollerModelPorts, ReadingCanStartOnlyOnAPresentPortWithSomethingToRead) {
    using Obstacle = PollerModel::StartObstacle;
    const PollerProject reading = project({poll("Meter", {holding("Level", 100)})});
    const PollerProject switchedOff = quietProject({holding("Level", 100)});
    const std::vector<
        std::tuple<const char*, std::string, Entries, PollerProject, std::optional<Obstacle>>>
        rows{
            {"no port chosen", "", {internal}, reading, Obstacle::noPort},
            {"a remembered port that is unplugged", usb0, {}, reading, Obstacle::noPort},
            {"a present port", s0, {internal}, reading, std::nullopt},
            {"only a switched-off poll has datapoints",
             s0,
             {internal},
             switchedOff,
             Obstacle::nothingToRead},
        };
    for (const auto& [situation, stored, listed, start, obstacle] : rows) {
        createWith(stored, listed);
        model->applyProject(start);
        EXPECT_EQ(model->startObstacle(), obstacle) << situation;
        EXPECT_EQ(model->canStart(), !obstacle) << situation;
    }
}

TEST_F(PollerModelPorts, ATestDeviceIsAPortWhileItsPathExists) {
    createWith("", {});
    model->applyProject(project({poll("Meter", {holding("Level", 100)})}));
    const QString device = file("ttySim");
    model->addTestDevice(device.toStdString(), "sim");
    EXPECT_TRUE(model->ports().empty());
    EXPECT_FALSE(model->canStart());

    QFile(device).open(QIODevice::WriteOnly);
    ASSERT_TRUE(waitUntil([&] { return model->canStart(); }));
    ASSERT_EQ(model->ports().size(), 1U);
    EXPECT_EQ(model->ports().front().productName, "sim");

    QFile::remove(device);
    EXPECT_TRUE(waitUntil([&] { return model->ports().empty() && !model->canStart(); }));
    EXPECT_EQ(model->selectedPath(), device.toStdString());
}

using PollerModelPortsWhileReading = QuietReading;

TEST_F(PollerModelPortsWhileReading, ChoiceStaysUntilStopped) {
    plug({internal, ftdi});
    plug({internal});
    EXPECT_EQ(model->selectedPath(), device.port());

    model->stop();
    plug({internal, cp2102});
    EXPECT_EQ(model->selectedPath(), usb1);
}

} // namespace
} // namespace kestrin::ModelTesting
