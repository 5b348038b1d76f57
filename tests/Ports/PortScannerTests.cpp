#include "FakePortRegistry.h"
#include "PortScanner.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

using namespace std::chrono_literals;
using Entry = FakePortRegistry::Entry;
using Ports = std::vector<SerialPortInfo>;

constexpr auto shortDelay = 30ms;

struct Scanner {
    std::shared_ptr<FakePortRegistry::State> registry = std::make_shared<FakePortRegistry::State>();
    std::unique_ptr<PortScanner> scanner;
    std::unique_ptr<QSignalSpy> spy;

    explicit Scanner(std::chrono::milliseconds settleDelay = shortDelay)
        : scanner(std::make_unique<PortScanner>(std::make_unique<FakePortRegistry>(registry),
                                                settleDelay))
        , spy(std::make_unique<QSignalSpy>(scanner.get(), &PortScanner::portsChanged)) {}

    Ports delivery(qsizetype index) const { return spy->at(index).at(0).value<Ports>(); }
};

Entry ftdi(std::string path) {
    return {std::move(path), {"FT232R USB UART", 0x0403, 0x6001}};
}

TEST(PortScanner, ListsValidPathsWithTrimmedNamesUSBFirst) {
    Scanner s;
    s.registry->entries = std::vector<Entry>{
        {"/dev/ttyS0", {}},
        ftdi("/dev/ttyUSB10"),
        {"/dev/ttyUSB2", {" \t USB2.0-Serial\r\n", 0x1A86, 0x7523}},
        {"/dev/ttyACM0", {"   ", 0x1234, 0x0001}},
        {std::nullopt, {"No node", 0x0403, 0x6001}},
        {"/dev/tty3", {}},
        {"/dev/pts/3", {}},
        {"/dev/ttyUSB0/../sda", {}},
    };
    const Ports expected{
        {"/dev/ttyACM0", "", 0x1234, 0x0001},
        {"/dev/ttyUSB2", "USB2.0-Serial", 0x1A86, 0x7523},
        {"/dev/ttyUSB10", "FT232R USB UART", 0x0403, 0x6001},
        {"/dev/ttyS0", std::nullopt, std::nullopt, std::nullopt},
    };
    const Ports ports = s.scanner->currentPorts();
    EXPECT_EQ(ports, expected);
    ASSERT_EQ(ports.size(), 4u);
    // Only spaces: no name but the short path.
    EXPECT_EQ(ports[0].name(), "ttyACM0");
    EXPECT_EQ(ports[3].name(), "ttyS0");
    EXPECT_EQ(ports[3].menuTitle(), "/dev/ttyS0");
}

TEST(PortScanner, RegistryThatCannotBeAskedGivesAnEmptyList) {
    Scanner s;
    s.registry->entries.reset();
    EXPECT_TRUE(s.scanner->currentPorts().empty());
    s.scanner->start();
    ASSERT_EQ(s.spy->count(), 1);
    EXPECT_TRUE(s.delivery(0).empty());
}

TEST(PortScanner, StartDeliversTheFirstListOnce) {
    Scanner s;
    s.registry->entries = std::vector<Entry>{ftdi("/dev/ttyUSB0")};
    s.scanner->start();
    s.scanner->start();
    EXPECT_EQ(s.registry->subscriptions, 1);
    ASSERT_EQ(s.spy->count(), 1);
    EXPECT_EQ(s.delivery(0), s.scanner->currentPorts());
    QTest::qWait(int(shortDelay.count()) * 3);
    EXPECT_EQ(s.spy->count(), 1);
}

TEST(PortScanner, FailedChannelStaysSilentUntilAStartSucceeds) {
    Scanner s;
    s.registry->entries = std::vector<Entry>{ftdi("/dev/ttyUSB0")};
    s.registry->channelFails = true;
    s.scanner->start();
    QTest::qWait(int(shortDelay.count()) * 3);
    EXPECT_EQ(s.spy->count(), 0);
    EXPECT_FALSE(s.scanner->isWatching());

    s.registry->channelFails = false;
    s.scanner->start();
    EXPECT_TRUE(s.scanner->isWatching());
    EXPECT_EQ(s.spy->count(), 1);
}

TEST(PortScanner, ArrivalDeliversAtOnceAndAgainHalfASecondLater) {
    Scanner s(PortScanner::defaultSettleDelay);
    s.scanner->start();
    ASSERT_EQ(s.spy->count(), 1);
    EXPECT_TRUE(s.delivery(0).empty());

    // The node appears before udev has read the adapter's USB names.
    s.registry->entries = std::vector<Entry>{{"/dev/ttyUSB0", {}}};
    QElapsedTimer clock;
    clock.start();
    s.registry->notify();
    ASSERT_EQ(s.spy->count(), 2);
    EXPECT_EQ(s.delivery(1), (Ports{{"/dev/ttyUSB0", std::nullopt, std::nullopt, std::nullopt}}));

    s.registry->entries = std::vector<Entry>{ftdi("/dev/ttyUSB0")};
    ASSERT_TRUE(s.spy->wait(2000));
    EXPECT_GE(clock.elapsed(), 500);
    ASSERT_EQ(s.spy->count(), 3);
    EXPECT_EQ(s.delivery(2), (Ports{{"/dev/ttyUSB0", "FT232R USB UART", 0x0403, 0x6001}}));

    QTest::qWait(600);
    EXPECT_EQ(s.spy->count(), 3);
}

TEST(PortScanner, DepartureDeliversTheShorterListTwice) {
    Scanner s;
    s.registry->entries = std::vector<Entry>{ftdi("/dev/ttyUSB0"), ftdi("/dev/ttyUSB1")};
    s.scanner->start();
    s.registry->entries = std::vector<Entry>{ftdi("/dev/ttyUSB1")};
    s.registry->notify();
    ASSERT_TRUE(s.spy->wait(1000));
    ASSERT_EQ(s.spy->count(), 3);
    EXPECT_EQ(s.delivery(0).size(), 2u);
    EXPECT_EQ(s.delivery(1), s.delivery(2));
    EXPECT_EQ(s.delivery(2).size(), 1u);
}

TEST(PortScanner, DestroyedScannerDropsItsPendingDelivery) {
    Scanner s;
    int deliveries = 0;
    QObject receiver;
    QObject::connect(s.scanner.get(), &PortScanner::portsChanged, &receiver,
                     [&deliveries] { ++deliveries; });
    s.scanner->start();
    s.registry->notify();
    EXPECT_EQ(deliveries, 2);
    s.spy.reset();
    s.scanner.reset();
    QTest::qWait(int(shortDelay.count()) * 3);
    EXPECT_EQ(deliveries, 2);
}

} // namespace
} // namespace kestrin
