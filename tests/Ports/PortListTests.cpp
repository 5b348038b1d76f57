#include "FakePortRegistry.h"
#include "LanguageForTesting.h"
#include "PortScanner.h"
#include "SerialPortInfo.h"

#include <vector>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLocale>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

using namespace std::chrono_literals;
using Entry = FakePortRegistry::Entry;
using Ports = std::vector<SerialPortInfo>;
constexpr auto none = std::nullopt;
constexpr int settled = 100;

// A failed channel delivers nothing; the start that subscribes delivers the first list once, even
// when enumeration fails. An arrival is delivered at once, as the node comes before the adapter's
// USB names, and again after the settle delay, unless the scanner is gone by then.
TEST(PortScanner, DeliversOnTheFirstGoodStartAndOnArrivalAtOnceAndAfterTheSettleDelay) {
    const auto registry = std::make_shared<FakePortRegistry::State>();
    auto scanner =
        std::make_unique<PortScanner>(std::make_unique<FakePortRegistry>(registry), 20ms);
    QSignalSpy spy(scanner.get(), &PortScanner::portsChanged);
    const auto delivery = [&](qsizetype index) { return spy.at(index).at(0).value<Ports>(); };
    registry->entries.reset();
    registry->channelFails = true;
    scanner->start();
    QTest::qWait(settled);
    EXPECT_EQ(spy.count(), 0);
    EXPECT_FALSE(scanner->isWatching());
    registry->channelFails = false;
    scanner->start();
    scanner->start();
    EXPECT_EQ(registry->subscriptions, 1);
    QTest::qWait(settled);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(delivery(0), Ports{});

    registry->entries = std::vector<Entry>{{"/dev/ttyUSB10", {}}};
    QElapsedTimer clock;
    clock.start();
    registry->notify();
    ASSERT_EQ(spy.count(), 2);
    EXPECT_EQ(delivery(1), (Ports{{"/dev/ttyUSB10", none, none, none}}));
    const std::string byID = "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A10K3ZX-if00-port0";
    registry->entries = std::vector<Entry>{
        {"/dev/ttyS0", {}},
        {"/dev/ttyUSB10", {"FT232R USB UART", 0x0403, 0x6001, "A10K3ZX\n"}, byID},
        {"/dev/ttyUSB2", {" \t USB2.0-Serial\r\n", 0x1A86, 0x7523, " \n"}},
        {"/dev/ttyACM0", {"   ", 0x1234, 0x0001, ""}},
        {none, {"No node", 0x0403, 0x6001}},
        {"/dev/tty3", {}}};
    ASSERT_TRUE(spy.wait(2000));
    EXPECT_GE(clock.elapsed(), 20);
    EXPECT_EQ(delivery(2),
              (Ports{{"/dev/ttyACM0", "", 0x1234, 0x0001},
                     {"/dev/ttyUSB2", "USB2.0-Serial", 0x1A86, 0x7523},
                     {"/dev/ttyUSB10", "FT232R USB UART", 0x0403, 0x6001, "A10K3ZX", byID},
                     {"/dev/ttyS0", none, none, none}}));
    QTest::qWait(settled);
    EXPECT_EQ(spy.count(), 3);

    registry->notify();
    scanner.reset();
    QTest::qWait(settled);
    EXPECT_EQ(spy.count(), 4);
}

// Boards and brands go by their own name, chips inside a wrapper, then the product, then the
// path.
TEST(SerialPortInfo, NamesComeFromTablesThenProductThenPath) {
    const std::pair<SerialPortInfo, std::string> rows[] = {
        {{"/dev/ttyUSB0", "FT232R", 0x0403, 0x6001}, "USB serial (FTDI FT232R)"},
        {{"/dev/ttyACM0", none, 0x2341, 0x0043}, "Arduino Uno"},
        {{"/dev/ttyACM0", "Widget", 0x2341, 0x9999}, "Arduino"},
        {{"/dev/ttyUSB3", "Quad RS232-HS", 0x0403, 0x6011}, "Quad RS232-HS"},
        {{"/dev/ttyUSB3", none, 0x0403, 0x6011}, "ttyUSB3"},
        {{"/dev/ttyUSB4", "", 0x0403, none}, "ttyUSB4"},
        {{"/dev/ttyS1", none, none, none}, "ttyS1"}};
    L10n::withLanguageForTesting(Language::en, [&] {
        for (const auto& [port, name] : rows) {
            EXPECT_EQ(port.name(), name);
        }
    });
}

// Only a name that two listed ports share needs the serial number; a port without one stays as
// it is, and a port never shares its name with itself.
TEST(SerialPortInfo, IdenticalAdaptersAreToldApartByTheirSerialNumbers) {
    const auto ftdi = [](std::string path, std::optional<std::string> serial) {
        return SerialPortInfo{std::move(path), "FT232R USB UART", 0x0403, 0x6001,
                              std::move(serial)};
    };
    const SerialPortInfo cp2102{"/dev/ttyUSB2", none, 0x10C4, 0xEA60, "0001"};
    const std::vector<SerialPortInfo> listed{ftdi("/dev/ttyUSB0", "A10K3ZX"),
                                             ftdi("/dev/ttyUSB1", "A90B1QW"),
                                             ftdi("/dev/ttyUSB3", none), cp2102};
    const std::pair<SerialPortInfo, std::string> rows[] = {
        {listed[0], "USB serial (FTDI FT232R) \u00b7 A10K3ZX"},
        {listed[2], "USB serial (FTDI FT232R)"},
        {cp2102, "USB serial (CP210x)"}};
    L10n::withLanguageForTesting(Language::en, [&] {
        for (const auto& [port, title] : rows) {
            EXPECT_EQ(port.nameAmong(listed), title) << port.path;
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
        {QLocale(QLocale::Swedish), {builtIn("/dev/ttyz"), builtIn("/dev/ttyä")}}};
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

// The scanner's timers and socket watching need a Qt application on the main thread.
int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
