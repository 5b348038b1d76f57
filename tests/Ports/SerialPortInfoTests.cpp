#include "L10n.h"
#include "SerialPortInfo.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using KnownName = SerialPortInfo::KnownName;

TEST(SerialPortInfo, NamesComeFromTablesThenProductThenPath) {
    struct Row {
        const char* label;
        SerialPortInfo port;
        std::optional<KnownName> known;
        std::string name, menuTitle;
    };
    const Row rows[] = {
        {"chip",
         {"/dev/ttyUSB0", "FT232R USB UART", 0x0403, 0x6001},
         KnownName{"FTDI FT232R", true},
         "USB serial (FTDI FT232R)",
         "/dev/ttyUSB0 \u2014 USB serial (FTDI FT232R)"},
        {"board before its brand",
         {"/dev/ttyACM0", std::nullopt, 0x2341, 0x0043},
         KnownName{"Arduino Uno", false},
         "Arduino Uno",
         "/dev/ttyACM0 \u2014 Arduino Uno"},
        {"unlisted product of a brand",
         {"/dev/ttyACM0", "Widget", 0x2341, 0x9999},
         KnownName{"Arduino", false},
         "Arduino",
         "/dev/ttyACM0 \u2014 Arduino"},
        {"brand without product ID",
         {"/dev/ttyACM0", std::nullopt, 0x2341, std::nullopt},
         KnownName{"Arduino", false},
         "Arduino",
         "/dev/ttyACM0 \u2014 Arduino"},
        {"brand with any product",
         {"/dev/ttyACM1", std::nullopt, 0x303A, 0x1001},
         KnownName{"Espressif ESP32", false},
         "Espressif ESP32",
         "/dev/ttyACM1 \u2014 Espressif ESP32"},
        {"board pair only under its own vendor",
         {"/dev/ttyACM0", std::nullopt, 0x2A03, 0x0001},
         KnownName{"Arduino", false},
         "Arduino",
         "/dev/ttyACM0 \u2014 Arduino"},
        {"unlisted chip with product name",
         {"/dev/ttyUSB3", "Quad RS232-HS", 0x0403, 0x6011},
         std::nullopt,
         "Quad RS232-HS",
         "/dev/ttyUSB3 \u2014 Quad RS232-HS"},
        {"unlisted chip without product name",
         {"/dev/ttyUSB3", std::nullopt, 0x0403, 0x6011},
         std::nullopt,
         "ttyUSB3",
         "/dev/ttyUSB3"},
        {"chip vendor without product ID",
         {"/dev/ttyUSB3", std::nullopt, 0x0403, std::nullopt},
         std::nullopt,
         "ttyUSB3",
         "/dev/ttyUSB3"},
        {"empty product name",
         {"/dev/ttyUSB4", "", 0x1234, 0x0001},
         std::nullopt,
         "ttyUSB4",
         "/dev/ttyUSB4"},
        {"built-in port",
         {"/dev/ttyS1", std::nullopt, std::nullopt, std::nullopt},
         std::nullopt,
         "ttyS1",
         "/dev/ttyS1"},
    };
    L10n::withLanguageForTesting(Language::en, [&] {
        for (const Row& row : rows) {
            SCOPED_TRACE(row.label);
            EXPECT_EQ(row.port.knownName(), row.known);
            EXPECT_EQ(row.port.name(), row.name);
            EXPECT_EQ(row.port.menuTitle(), row.menuTitle);
        }
    });
}

TEST(SerialPortInfo, ChipNameFollowsTheLanguage) {
    const SerialPortInfo port{"/dev/ttyUSB0", std::nullopt, 0x1A86, 0x7523};
    L10n::withLanguageForTesting(Language::de, [&] {
        EXPECT_EQ(port.name(), "USB-Seriell (CH340)");
        EXPECT_EQ(port.menuTitle(), "/dev/ttyUSB0 \u2014 USB-Seriell (CH340)");
    });
}

SerialPortInfo usb(std::string path) {
    return {std::move(path), std::nullopt, 0x0403, 0x6001};
}
SerialPortInfo builtIn(std::string path) {
    return {std::move(path), std::nullopt, std::nullopt, std::nullopt};
}

std::vector<std::string> paths(const std::vector<SerialPortInfo>& ports) {
    std::vector<std::string> result;
    for (const SerialPortInfo& port : ports) {
        result.push_back(port.path);
    }
    return result;
}

TEST(SerialPortInfo, SortsUSBFirstThenByNaturalCaseInsensitivePath) {
    struct Row {
        const char* label;
        std::vector<SerialPortInfo> ports;
        std::vector<std::string> expected;
    };
    const Row rows[] = {
        {"USB adapters before built-in ports",
         {builtIn("/dev/ttyAMA0"), usb("/dev/ttyUSB0"), builtIn("/dev/ttyS0"), usb("/dev/ttyACM0")},
         {"/dev/ttyACM0", "/dev/ttyUSB0", "/dev/ttyAMA0", "/dev/ttyS0"}},
        {"digit runs by value",
         {usb("/dev/ttyUSB10"), usb("/dev/ttyUSB2"), usb("/dev/ttyUSB1"), builtIn("/dev/ttyS10"),
          builtIn("/dev/ttyS9")},
         {"/dev/ttyUSB1", "/dev/ttyUSB2", "/dev/ttyUSB10", "/dev/ttyS9", "/dev/ttyS10"}},
        {"letters without regard to case",
         {usb("/dev/ttyAc"), usb("/dev/ttyab"), usb("/dev/ttyAD")},
         {"/dev/ttyab", "/dev/ttyAc", "/dev/ttyAD"}},
        {"numbers longer than any integer",
         {usb("/dev/ttyX100000000000000000000"), usb("/dev/ttyX99999999999999999999")},
         {"/dev/ttyX99999999999999999999", "/dev/ttyX100000000000000000000"}},
        {"a prefix before its extensions",
         {usb("/dev/ttyUSB1a"), usb("/dev/ttyUSB1"), usb("/dev/ttyUSB")},
         {"/dev/ttyUSB", "/dev/ttyUSB1", "/dev/ttyUSB1a"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::vector<SerialPortInfo> ports = row.ports;
        std::sort(ports.begin(), ports.end(), SerialPortInfo::listedBefore);
        EXPECT_EQ(paths(ports), row.expected);
    }
}

// Ports that only differ by case or leading zeros still get one order, whatever the input order.
TEST(SerialPortInfo, OrderIsTheSameForEveryInputOrder) {
    std::vector<SerialPortInfo> ports{usb("/dev/ttyUSB07"),  usb("/dev/ttyUSB7"),
                                      usb("/dev/ttyusb7"),   usb("/dev/ttyUSB8"),
                                      builtIn("/dev/ttyS0"), builtIn("/dev/ttys0")};
    std::sort(ports.begin(), ports.end(),
              [](const auto& a, const auto& b) { return a.path < b.path; });
    std::vector<std::string> first;
    do {
        std::vector<SerialPortInfo> sorted = ports;
        std::sort(sorted.begin(), sorted.end(), SerialPortInfo::listedBefore);
        if (first.empty()) {
            first = paths(sorted);
        }
        ASSERT_EQ(paths(sorted), first);
    } while (std::next_permutation(ports.begin(), ports.end(),
                                   [](const auto& a, const auto& b) { return a.path < b.path; }));
    const std::vector<std::string> expected{"/dev/ttyUSB07", "/dev/ttyUSB7", "/dev/ttyusb7",
                                            "/dev/ttyUSB8",  "/dev/ttyS0",   "/dev/ttys0"};
    EXPECT_EQ(first, expected);
}

} // namespace
} // namespace kestrin
