#include "PortIdentity.h"

#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using Text = std::optional<std::string>;
constexpr auto none = std::nullopt;

const std::string ftdiLink = "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A10K3ZX-if00-port0";
const std::string quadLink0 = "/dev/serial/by-id/usb-FTDI_Quad_RS232-HS_FT4X-if00-port0";
const std::string quadLink1 = "/dev/serial/by-id/usb-FTDI_Quad_RS232-HS_FT4X-if01-port0";
const std::string ch340Link = "/dev/serial/by-id/usb-1a86_USB_Serial-if00-port0";

// A port at /dev/tty<name>.
SerialPortInfo port(const std::string& name, int product, Text serial, Text byId = none) {
    const int vendor = product == 0x7523 ? 0x1A86 : 0x0403;
    return {"/dev/tty" + name, none, vendor, product, std::move(serial), std::move(byId)};
}
SerialPortInfo ftdi(const std::string& name, Text serial, Text byId = none) {
    return port(name, 0x6001, std::move(serial), std::move(byId));
}
SerialPortInfo quad(const std::string& name, Text byId) {
    return port(name, 0x6011, "FT4X", std::move(byId));
}
SerialPortInfo ch340(const std::string& name, Text byId = none) {
    return port(name, 0x7523, none, std::move(byId));
}

// Each row: what was remembered, what is listed now, and the name of the port taken (empty: none).
TEST(PortIdentity, FindsTheRememberedAdapterUnderAnotherNameAndNeverAStrangers) {
    const PortIdentity mine{0x0403, 0x6001, "A10K3ZX", ftdiLink};
    const PortIdentity mineUnlinked{0x0403, 0x6001, "A10K3ZX", none};
    const PortIdentity quad1{0x0403, 0x6011, "FT4X", quadLink1};
    const PortIdentity quadUnlinked{0x0403, 0x6011, "FT4X", none};
    const PortIdentity cheap{0x1A86, 0x7523, none, none};
    const PortIdentity cheapLinked{0x1A86, 0x7523, none, ch340Link};
    using Row = std::tuple<const char*, PortIdentity, std::vector<SerialPortInfo>, std::string>;
    const Row rows[] = {
        {"by-id link", mine, {ftdi("USB0", "B2"), ftdi("USB1", "A10K3ZX", ftdiLink)}, "USB1"},
        {"serial, no links", mine, {ftdi("USB0", "B2"), ftdi("USB1", "A10K3ZX")}, "USB1"},
        {"serial, link only listed", mineUnlinked, {ftdi("USB4", "A10K3ZX", ftdiLink)}, "USB4"},
        {"identical, other serial", mine, {ftdi("USB1", "B2")}, ""},
        {"identical, no serial", mine, {ftdi("USB1", none)}, ""},
        {"other product, same serial", mine, {port("USB1", 0x6015, "A10K3ZX")}, ""},
        {"multi-port, other port", quad1, {quad("USB4", quadLink0)}, ""},
        {"multi-port, no links", quadUnlinked, {quad("USB4", none), quad("USB5", none)}, ""},
        {"the one without serial", cheap, {ftdi("USB0", "A10K3ZX"), ch340("USB1")}, "USB1"},
        {"two without serial", cheap, {ch340("USB1"), ch340("USB2")}, ""},
        // Identical adapters without serial numbers share one link name, so it tells nothing.
        {"shared link", cheapLinked, {ch340("USB1"), ch340("USB2", ch340Link)}, ""},
        {"shared link, one adapter", cheapLinked, {ch340("USB2", ch340Link)}, "USB2"},
        {"link listed twice",
         mine,
         {ftdi("USB1", "A10K3ZX", ftdiLink), ftdi("USB2", "A10K3ZX", ftdiLink)},
         ""}};
    for (const auto& [situation, remembered, listed, taken] : rows) {
        const SerialPortInfo* found = remembered.findIn(listed);
        EXPECT_EQ(found == nullptr ? "" : found->path, taken.empty() ? "" : "/dev/tty" + taken)
            << situation;
    }
}

// Whether the port now under the remembered name is certainly someone else's adapter.
TEST(PortIdentity, IsContradictedOnlyByAPortThatIsCertainlyAnotherAdapter) {
    const PortIdentity mine{0x0403, 0x6001, "A10K3ZX", ftdiLink};
    const PortIdentity cheap{0x1A86, 0x7523, none, none};
    SerialPortInfo unsettled = ftdi("USB0", none);
    unsettled.vendorID.reset();
    using Row = std::tuple<const char*, PortIdentity, SerialPortInfo, bool>;
    const Row rows[] = {{"itself", mine, ftdi("USB0", "A10K3ZX", ftdiLink), false},
                        {"itself, link not yet made", mine, ftdi("USB0", "A10K3ZX"), false},
                        {"other serial", mine, ftdi("USB0", "B20X"), true},
                        {"no serial", mine, ftdi("USB0", none), true},
                        {"other product", mine, ch340("USB0"), true},
                        {"multi-port, other port", PortIdentity{0x0403, 0x6011, "FT4X", quadLink1},
                         quad("USB0", quadLink0), true},
                        {"USB facts not settled", mine, unsettled, false},
                        {"identical without serial", cheap, ch340("USB0"), false}};
    for (const auto& [situation, remembered, listed, contradicted] : rows) {
        EXPECT_EQ(remembered.isContradictedBy(listed), contradicted) << situation;
    }
}

} // namespace
} // namespace kestrin
