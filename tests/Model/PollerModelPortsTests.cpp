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

using PollerModelPortsWhileReading = QuietReading;

TEST_F(PollerModelPortsWhileReading, ChoiceStaysUntilStopped) {
    plug({internal, ftdi});
    plug({internal});
    EXPECT_EQ(model->selectedPath(), device.path());

    model->stop();
    plug({internal, cp2102});
    EXPECT_EQ(model->selectedPath(), usb1);
}

} // namespace
} // namespace kestrin::ModelTesting
