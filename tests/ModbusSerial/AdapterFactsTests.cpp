#include "AdapterFacts.h"
#include "FakeSystemTree.h"

#include <cerrno>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using AdapterFacts::LatencyTimer;

const std::string ftdiById = "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A10K1234-if00-port0";

// An FTDI adapter with its timer at the factory 16 ms, a CH340 without a timer, a by-id link whose
// adapter is gone, links that climb above the root or go round in a loop, and a UART as Linux 6.5
// and later lay it out: the serial core's port and controller devices between the tty and the
// hardware's driver.
void buildMachine(FakeSystemTree& tree) {
    tree.usbSerial({.byId = ftdiById.substr(18), .latencyMs = 16})
        .usbSerial({.name = "ttyUSB1", .driver = "ch341-uart"})
        .link("/dev/serial/by-id/usb-Prolific-if00-port0", "../../ttyUSB7")
        .link("/dev/escape", "../../../../../../dev/ttyUSB0")
        .link("/dev/loopA", "/dev/loopB")
        .link("/dev/loopB", "loopA");
    const std::string uart = "/sys/devices/pnp0/00:01";
    tree.file("/dev/ttyS1")
        .link("/sys/class/tty/ttyS1/device", uart + "/00:01:0/00:01:0.0")
        .link(uart + "/00:01:0/00:01:0.0/driver", "/sys/bus/serial-base/drivers/port")
        .link(uart + "/00:01:0/driver", "/sys/bus/serial-base/drivers/ctrl")
        .link(uart + "/driver", "/sys/bus/pnp/drivers/serial");
}

TEST(AdapterFacts, NamesDriversAndTimersThroughLinksInsideTheRoot) {
    FakeSystemTree tree;
    buildMachine(tree);
    using Text = std::optional<std::string>;
    const std::tuple<std::string, Text, Text, std::optional<LatencyTimer>> rows[] = {
        // As root the fake file is writable; as another user it is the user's own.
        {ftdiById, "ttyUSB0", "ftdi_sio", LatencyTimer{16, true}},
        {"/dev/ttyUSB1", "ttyUSB1", "ch341-uart", std::nullopt},
        {"/dev/ttyS1", "ttyS1", "serial", std::nullopt},
        {"/dev/escape", "ttyUSB0", "ftdi_sio", LatencyTimer{16, true}},
        {"/dev/serial/by-id/usb-Prolific-if00-port0", std::nullopt, std::nullopt, std::nullopt},
        {"/dev/loopA", std::nullopt, std::nullopt, std::nullopt}};
    for (const auto& [path, name, driver, latency] : rows) {
        SCOPED_TRACE(path);
        EXPECT_EQ(AdapterFacts::deviceName(path, tree.root()), name);
        EXPECT_EQ(AdapterFacts::driver(path, tree.root()), driver);
        EXPECT_EQ(AdapterFacts::latencyTimer(path, tree.root()), latency);
    }
}

TEST(AdapterFacts, SettingTheTimerIsRefusedWhereTheAdapterHasNoneOrTheValueIsOutOfRange) {
    FakeSystemTree tree;
    buildMachine(tree);
    const std::tuple<std::string, int, int> refusals[] = {{"/dev/ttyUSB1", 1, ENOENT},
                                                          {"/dev/ttyUSB9", 1, ENOENT},
                                                          {"/dev/ttyUSB0", 256, EINVAL},
                                                          {"/dev/ttyUSB0", -1, EINVAL}};
    for (const auto& [path, milliseconds, code] : refusals) {
        EXPECT_EQ(AdapterFacts::setLatencyTimer(path, milliseconds, tree.root()), code)
            << path << " " << milliseconds;
    }
    // A refusal leaves the timer as it was, and no attribute behind where the driver has none.
    EXPECT_FALSE(std::filesystem::exists(tree.at(AdapterFacts::latencyAttribute("ttyUSB1"))));
    EXPECT_EQ(AdapterFacts::latencyTimer("/dev/ttyUSB0", tree.root()), (LatencyTimer{16, true}));
}

} // namespace
} // namespace kestrin
