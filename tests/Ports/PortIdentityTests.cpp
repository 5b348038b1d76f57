#include "PortIdentity.h"

#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using Serial = std::optional<std::string>;
constexpr auto none = std::nullopt;

const std::string ftdiLink = "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A10K3ZX-if00-port0";
const std::string quadLink0 = "/dev/serial/by-id/usb-FTDI_Quad_RS232-HS_FT4X-if00-port0";
const std::string quadLink1 = "/dev/serial/by-id/usb-FTDI_Quad_RS232-HS_FT4X-if01-port0";
const std::string ch340Link = "/dev/serial/by-id/usb-1a86_USB_Serial-if00-port0";

SerialPortInfo port(std::string path, int vendor, int product, Serial serial, Serial byId = none) {
    return {std::move(path), none, vendor, product, std::move(serial), std::move(byId)};
}

SerialPortInfo ftdi(std::string path, Serial serial, Serial byId = none) {
    return port(std::move(path), 0x0403, 0x6001, std::move(serial), std::move(byId));
}

SerialPortInfo quad(std::string path, Serial byId) {
    return port(std::move(path), 0x0403, 0x6011, "FT4X", std::move(byId));
}

SerialPortInfo ch340(std::string path, Serial byId = none) {
    return port(std::move(path), 0x1A86, 0x7523, none, std::move(byId));
}

// Each row: what was remembered, what is listed now, and the path taken (empty: none).
TEST(PortIdentity, FindsTheRememberedAdapterUnderAnotherNameAndNeverAStrangers) {
    const PortIdentity ftdiA{0x0403, 0x6001, "A10K3ZX", ftdiLink};
    const PortIdentity ftdiNoLink{0x0403, 0x6001, "A10K3ZX", none};
    const PortIdentity quad1{0x0403, 0x6011, "FT4X", quadLink1};
    const PortIdentity quadNoLink{0x0403, 0x6011, "FT4X", none};
    const PortIdentity cheap{0x1A86, 0x7523, none, none};
    const PortIdentity cheapLinked{0x1A86, 0x7523, none, ch340Link};
    const std::tuple<const char*, PortIdentity, std::vector<SerialPortInfo>, std::string> rows[] = {
        {"the by-id link",
         ftdiA,
         {ftdi("/dev/ttyUSB0", "OTHER"), ftdi("/dev/ttyUSB1", "A10K3ZX", ftdiLink)},
         "/dev/ttyUSB1"},
        {"the serial number without links",
         ftdiA,
         {ftdi("/dev/ttyUSB0", "B2"), ftdi("/dev/ttyUSB1", "A10K3ZX")},
         "/dev/ttyUSB1"},
        {"the serial number, remembered without a link",
         ftdiNoLink,
         {ftdi("/dev/ttyUSB4", "A10K3ZX", ftdiLink)},
         "/dev/ttyUSB4"},
        {"an identical adapter with another serial", ftdiA, {ftdi("/dev/ttyUSB1", "B2")}, ""},
        {"an identical adapter without a serial", ftdiA, {ftdi("/dev/ttyUSB1", none)}, ""},
        {"another product with the serial",
         ftdiA,
         {port("/dev/ttyUSB1", 0x0403, 0x6015, "A10K3ZX")},
         ""},
        {"another port of a multi-port adapter", quad1, {quad("/dev/ttyUSB4", quadLink0)}, ""},
        {"a multi-port adapter without links",
         quadNoLink,
         {quad("/dev/ttyUSB4", none), quad("/dev/ttyUSB5", none)},
         ""},
        {"the one adapter without a serial",
         cheap,
         {ftdi("/dev/ttyUSB0", "A10K3ZX"), ch340("/dev/ttyUSB1")},
         "/dev/ttyUSB1"},
        {"two adapters without a serial",
         cheap,
         {ch340("/dev/ttyUSB1"), ch340("/dev/ttyUSB2")},
         ""},
        // Identical adapters without serial numbers share one link name; the newest holds it.
        {"the one of two holding the shared link",
         cheapLinked,
         {ch340("/dev/ttyUSB1"), ch340("/dev/ttyUSB2", ch340Link)},
         "/dev/ttyUSB2"},
    };
    for (const auto& [situation, remembered, listed, taken] : rows) {
        const SerialPortInfo* found = remembered.findIn(listed);
        EXPECT_EQ(found == nullptr ? "" : found->path, taken) << situation;
    }
}

} // namespace
} // namespace kestrin
