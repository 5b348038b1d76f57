#include "LanguageForTesting.h"
#include "SerialPortInfo.h"

#include <utility>
#include <vector>

#include <QLocale>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

using KnownName = SerialPortInfo::KnownName;
constexpr auto none = std::nullopt;

// Only a chip's table name is wrapped; the menu title adds the name when it is more than the
// path without "/dev/".
TEST(SerialPortInfo, NamesComeFromTablesThenProductThenPath) {
    struct Row {
        SerialPortInfo port;
        const char* known;
        std::string name;
        bool titled;
    };
    const Row rows[] = {
        {{"/dev/ttyUSB0", "FT232R", 0x0403, 0x6001},
         "FTDI FT232R",
         "USB serial (FTDI FT232R)",
         true},
        {{"/dev/ttyACM0", none, 0x2341, 0x0043}, "Arduino Uno", "Arduino Uno", true},
        {{"/dev/ttyACM0", "Widget", 0x2341, 0x9999}, "Arduino", "Arduino", true},
        {{"/dev/ttyACM1", none, 0x303A, 0x1001}, "Espressif ESP32", "Espressif ESP32", true},
        {{"/dev/ttyUSB3", "Quad RS232-HS", 0x0403, 0x6011}, nullptr, "Quad RS232-HS", true},
        {{"/dev/ttyUSB3", none, 0x0403, 0x6011}, nullptr, "ttyUSB3", false},
        {{"/dev/ttyUSB4", "", 0x0403, none}, nullptr, "ttyUSB4", false},
        {{"/dev/ttyS1", none, none, none}, nullptr, "ttyS1", false},
    };
    L10n::withLanguageForTesting(Language::en, [&] {
        for (const Row& row : rows) {
            SCOPED_TRACE(row.name);
            const auto known = row.known
                                   ? std::optional(KnownName{row.known, row.name != row.known})
                                   : std::nullopt;
            EXPECT_EQ(row.port.knownName(), known);
            EXPECT_EQ(row.port.name(), row.name);
            const std::string& path = row.port.path;
            EXPECT_EQ(row.port.menuTitle(), row.titled ? path + " \u2014 " + row.name : path);
        }
    });
}

// The order follows the default locale, which each row sets; the C locale sorts as English.
TEST(SerialPortInfo, ListsUSBFirstThenPathsInTheLocalesOrderWithDigitRunsByValue) {
    const auto usb = [](std::string path) { return SerialPortInfo{path, none, 0x0403, 0x6001}; };
    const auto builtIn = [](std::string path) { return SerialPortInfo{path, none, none, none}; };
    const std::pair<QLocale, std::vector<SerialPortInfo>> rows[] = {
        {QLocale::c(),
         {usb("/dev/ttyab"), usb("/dev/ttyAc"), usb("/dev/ttyUSB02"), usb("/dev/ttyUSB2"),
          usb("/dev/ttyUSB10"), usb("/dev/ttyX99999999999999999999"),
          usb("/dev/ttyX100000000000000000000"), builtIn("/dev/ttyS9"), builtIn("/dev/ttyS10")}},
        {QLocale(QLocale::German), {builtIn("/dev/ttyä"), builtIn("/dev/ttyb")}},
        {QLocale(QLocale::Swedish), {builtIn("/dev/ttyz"), builtIn("/dev/ttyä")}},
    };
    const QLocale before;
    for (const auto& [locale, expected] : rows) {
        SCOPED_TRACE(locale.name().toStdString());
        QLocale::setDefault(locale);
        std::vector<SerialPortInfo> ports(expected.rbegin(), expected.rend());
        SerialPortInfo::sortForListing(ports);
        EXPECT_EQ(ports, expected);
    }
    QLocale::setDefault(before);
}

} // namespace
} // namespace kestrin
