#include "../ModbusSerial/FakeSystemTree.h"
#include "LanguageForTesting.h"
#include "PortsCommand.h"

#include <sstream>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

const std::string byId = "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A10K3ZX-if00-port0";

// An FTDI adapter reached as the port picker lists it, its by-id link held open by ModemManager,
// with the stock 16 ms latency timer, on a machine where alice was added to dialout after she
// logged in.
SerialPortInfo ftdiAdapter(FakeSystemTree& tree) {
    using std::filesystem::perms;
    tree.usbSerial({.byId = byId.substr(18), .latencyMs = 16})
        .file("/dev/ttyUSB0", {},
              perms::owner_read | perms::owner_write | perms::group_read | perms::group_write)
        .owner("/dev/ttyUSB0", 0, 20)
        .file("/etc/group", "dialout:x:20:alice\n")
        .file("/etc/passwd", "alice:x:1000:1000::/home/alice:/bin/sh\n")
        .process(812, "ModemManager", byId);
    return {"/dev/ttyUSB0", "FT232R USB UART", 0x0403, 0x6001, "A10K3ZX", byId};
}

PortsCommand::System systemOf(const FakeSystemTree& tree) {
    return {tree.root(), Login{"alice", 1000, 1000, {}}, PosixTerminal::system()};
}

TEST(PortsCommand, VerboseNamesWhatStandsBetweenTheUserAndTheAdapter) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "giving the fake device a group needs root";
    }
    FakeSystemTree tree;
    const SerialPortInfo port = ftdiAdapter(tree);
    std::ostringstream out;
    L10n::withLanguageForTesting(
        Language::en, [&] { PortsCommand::list({port}, {.verbose = true}, systemOf(tree), out); });
    EXPECT_EQ(out.str(),
              "/dev/ttyUSB0\tUSB serial (FTDI FT232R)\n"
              "  by-id:     /dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A10K3ZX-if00-port0\n"
              "  driver:    ftdi_sio\n"
              "  USB:       vendor 0403, product 6001, \"FT232R USB UART\", serial number A10K3ZX\n"
              "  group:     dialout, which may read and write; you are in it from your next login "
              "on\n"
              // The tests run as root, whom access() never refuses.
              "  access:    this user can open it\n"
              // The refusal's sentence, as an open would give it.
              "  held by:   /dev/ttyUSB0 is in use by ModemManager (process 812). ModemManager "
              "probes new serial adapters for modems: stop it with sudo systemctl stop "
              "ModemManager, or keep it off this adapter with a udev rule that sets "
              "ENV{ID_MM_DEVICE_IGNORE}=\"1\".\n"
              "  latency:   16 ms; every answer waits that long in the adapter. Kestrin asks the "
              "driver for 1 ms while it reads; for every program: echo 1 | sudo tee "
              "/sys/bus/usb-serial/devices/ttyUSB0/latency_timer\n"
              "  udev rule: " +
                  AdapterFacts::latencyUdevRule() +
                  "  (in /etc/udev/rules.d/99-kestrin-latency.rules)\n"
                  "  RS-485:    not supported\n");
}

TEST(PortsCommand, VerboseJsonCarriesTheSameFactsAndProbesOnlyFreeBuiltInPorts) {
    FakeSystemTree tree;
    tree.file("/dev/ttyS0");
    const SerialPortInfo uart{"/dev/ttyS0", std::nullopt, std::nullopt, std::nullopt};
    std::ostringstream out;
    PortsCommand::list({uart}, {.json = true, .verbose = true}, systemOf(tree), out);
    const nlohmann::json object = nlohmann::json::parse(out.str());
    EXPECT_EQ(object["path"], "/dev/ttyS0");
    EXPECT_TRUE(object["driver"].is_null());
    EXPECT_TRUE(object["holder"].is_null());
    EXPECT_TRUE(object["latency-timer-ms"].is_null());
    // Probed: a plain file answers the RS-485 request as a driver without the mode does.
    EXPECT_EQ(object["rs485"], "no");

    tree.process(40, "minicom", "/dev/ttyS0");
    out.str({});
    PortsCommand::list({uart}, {.json = true, .verbose = true}, systemOf(tree), out);
    const nlohmann::json held = nlohmann::json::parse(out.str());
    EXPECT_EQ(held["holder"],
              (nlohmann::json{{"program", "minicom"}, {"pid", 40}, {"probable", false}}));
    EXPECT_EQ(held["rs485"], "unknown");
}

} // namespace
} // namespace kestrin
