#include "AdapterFacts.h"
#include "FakeSystemTree.h"
#include "SystemRoot.h"

#include <cerrno>
#include <string>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using AdapterFacts::LatencyTimer;

// An FTDI adapter with a by-id link and its timer at the factory 16 ms, a CH340 without a
// timer, a board UART and a by-id link whose adapter is gone.
void buildMachine(FakeSystemTree& tree) {
    tree.usbSerial({.name = "ttyUSB0",
                    .serialNumber = "A10K1234",
                    .byId = "usb-FTDI_FT232R_USB_UART_A10K1234-if00-port0",
                    .latencyMs = 16})
        .usbSerial({.name = "ttyUSB1",
                    .driver = "ch341-uart",
                    .vendorId = "1a86",
                    .productId = "7523",
                    .usbPort = "1-3"})
        .usbSerial({.name = "ttyACM0", .driver = "cdc_acm", .usbPort = "1-4"})
        .file("/dev/ttyS0")
        .link("/sys/class/tty/ttyS0/device/driver", "/sys/bus/platform/drivers/serial8250")
        .link("/dev/serial/by-id/usb-Prolific-if00-port0", "../../ttyUSB7");
    // A UART as Linux 6.5 and later lay it out: the serial core's port and controller devices
    // between the tty and the hardware's driver.
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
    struct Row {
        std::string path;
        std::optional<std::string> name;
        std::optional<std::string> driver;
        std::optional<LatencyTimer> latency;
    };
    const std::string byId = "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A10K1234-if00-port0";
    const Row rows[] = {
        {"/dev/ttyUSB0", "ttyUSB0", "ftdi_sio", LatencyTimer{16, true}},
        {byId, "ttyUSB0", "ftdi_sio", LatencyTimer{16, true}},
        {"/dev/ttyUSB1", "ttyUSB1", "ch341-uart", std::nullopt},
        {"/dev/ttyACM0", "ttyACM0", "cdc_acm", std::nullopt},
        {"/dev/ttyS0", "ttyS0", "serial8250", std::nullopt},
        {"/dev/ttyS1", "ttyS1", "serial", std::nullopt},
        {"/dev/serial/by-id/usb-Prolific-if00-port0", std::nullopt, std::nullopt, std::nullopt},
        {"/dev/ttyUSB9", std::nullopt, std::nullopt, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.path);
        EXPECT_EQ(AdapterFacts::deviceName(row.path, tree.root()), row.name);
        EXPECT_EQ(AdapterFacts::driver(row.path, tree.root()), row.driver);
        // Root may write anything; as another user the fake file is the user's own.
        EXPECT_EQ(AdapterFacts::latencyTimer(row.path, tree.root()), row.latency);
    }
}

TEST(AdapterFacts, SetsTheTimerOnlyWhereTheAdapterHasOne) {
    FakeSystemTree tree;
    buildMachine(tree);
    const std::string byId = "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A10K1234-if00-port0";
    EXPECT_EQ(AdapterFacts::setLatencyTimer(byId, 1, tree.root()), std::nullopt);
    EXPECT_EQ(AdapterFacts::latencyTimer("/dev/ttyUSB0", tree.root()), (LatencyTimer{1, true}));

    struct Refusal {
        std::string path;
        int milliseconds;
        int code;
    };
    for (const Refusal& refusal :
         {Refusal{"/dev/ttyUSB1", 1, ENOENT}, Refusal{"/dev/ttyUSB9", 1, ENOENT},
          Refusal{"/dev/ttyUSB0", 256, EINVAL}, Refusal{"/dev/ttyUSB0", -1, EINVAL}}) {
        SCOPED_TRACE(refusal.path + " " + std::to_string(refusal.milliseconds));
        EXPECT_EQ(AdapterFacts::setLatencyTimer(refusal.path, refusal.milliseconds, tree.root()),
                  refusal.code);
    }
    // A refusal must not leave an attribute behind where the driver has none.
    EXPECT_FALSE(
        std::filesystem::exists(tree.at("/sys/bus/usb-serial/devices/ttyUSB1/latency_timer")));
    EXPECT_EQ(AdapterFacts::latencyTimer("/dev/ttyUSB0", tree.root()), (LatencyTimer{1, true}));
}

TEST(AdapterFacts, UdevRuleSetsOneMillisecondForFtdiAdaptersAsTheyArrive) {
    const std::string rule = AdapterFacts::latencyUdevRule();
    for (const char* part : {R"(ACTION=="add")", R"(SUBSYSTEM=="usb-serial")",
                             R"(DRIVER=="ftdi_sio")", R"(ATTR{latency_timer}="1")"}) {
        EXPECT_NE(rule.find(part), std::string::npos) << part;
    }
    EXPECT_EQ(rule.find('\n'), std::string::npos);
    EXPECT_TRUE(AdapterFacts::latencyRulePath().ends_with(".rules"));
}

TEST(SystemRoot, ResolvesLinksWithoutLeavingTheRoot) {
    FakeSystemTree tree;
    tree.file("/dev/ttyUSB0")
        .link("/dev/escape", "../../../../../../dev/ttyUSB0")
        .link("/dev/loopA", "/dev/loopB")
        .link("/dev/loopB", "loopA");
    EXPECT_EQ(tree.root().resolve("/dev/escape"), "/dev/ttyUSB0");
    EXPECT_EQ(tree.root().resolve("/dev/loopA"), "");
    EXPECT_EQ(tree.root().located("/dev/escape"), tree.at("/dev/ttyUSB0"));
    EXPECT_EQ(SystemRoot::machine().at("/sys/class/tty"), "/sys/class/tty");
}

} // namespace
} // namespace kestrin
