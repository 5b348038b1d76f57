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
constexpr auto none = std::nullopt;
constexpr int settled = 100;

struct Scanner {
    std::shared_ptr<FakePortRegistry::State> registry = std::make_shared<FakePortRegistry::State>();
    std::unique_ptr<PortScanner> scanner;
    QSignalSpy spy;

    explicit Scanner(std::chrono::milliseconds settleDelay = 20ms)
        : scanner(std::make_unique<PortScanner>(std::make_unique<FakePortRegistry>(registry),
                                                settleDelay))
        , spy(scanner.get(), &PortScanner::portsChanged) {}

    Ports delivery(qsizetype index) const { return spy.at(index).at(0).value<Ports>(); }
};

const Entry ftdi{"/dev/ttyUSB10", {"FT232R USB UART", 0x0403, 0x6001}};

TEST(PortScanner, ListsValidPathsWithTrimmedProductNamesUSBFirst) {
    Scanner s;
    s.registry->entries = std::vector<Entry>{
        {"/dev/ttyS0", {}},
        ftdi,
        {"/dev/ttyUSB2", {" \t USB2.0-Serial\r\n", 0x1A86, 0x7523}},
        {"/dev/ttyACM0", {"   ", 0x1234, 0x0001}},
        {none, {"No node", 0x0403, 0x6001}},
        {"/dev/tty3", {}},
    };
    const Ports expected{
        {"/dev/ttyACM0", "", 0x1234, 0x0001},
        {"/dev/ttyUSB2", "USB2.0-Serial", 0x1A86, 0x7523},
        {"/dev/ttyUSB10", "FT232R USB UART", 0x0403, 0x6001},
        {"/dev/ttyS0", none, none, none},
    };
    EXPECT_EQ(s.scanner->currentPorts(), expected);
}

// The first list comes once, from the start that subscribes, even when enumeration fails.
TEST(PortScanner, AFailedChannelDeliversNothingAndTheFirstGoodStartDeliversOnce) {
    Scanner s;
    s.registry->entries.reset();
    s.registry->channelFails = true;
    s.scanner->start();
    QTest::qWait(settled);
    EXPECT_EQ(s.spy.count(), 0);
    EXPECT_FALSE(s.scanner->isWatching());

    s.registry->channelFails = false;
    s.scanner->start();
    s.scanner->start();
    EXPECT_EQ(s.registry->subscriptions, 1);
    QTest::qWait(settled);
    ASSERT_EQ(s.spy.count(), 1);
    EXPECT_EQ(s.delivery(0), Ports{});
}

TEST(PortScanner, ArrivalDeliversAtOnceAndAgainHalfASecondLater) {
    Scanner s(PortScanner::defaultSettleDelay);
    s.scanner->start();
    // The node is there before the adapter's USB names are.
    s.registry->entries = std::vector<Entry>{{ftdi.path, {}}};
    QElapsedTimer clock;
    clock.start();
    s.registry->notify();
    ASSERT_EQ(s.spy.count(), 2);
    EXPECT_EQ(s.delivery(0), Ports{});
    EXPECT_EQ(s.delivery(1), (Ports{{"/dev/ttyUSB10", none, none, none}}));

    s.registry->entries = std::vector<Entry>{ftdi};
    ASSERT_TRUE(s.spy.wait(2000));
    EXPECT_GE(clock.elapsed(), 500);
    EXPECT_EQ(s.delivery(2), (Ports{{"/dev/ttyUSB10", "FT232R USB UART", 0x0403, 0x6001}}));
    QTest::qWait(settled);
    EXPECT_EQ(s.spy.count(), 3);
}

// The delivery that was to follow the arrival must not reach a destroyed scanner's listeners.
TEST(PortScanner, DestroyedScannerDropsItsPendingDelivery) {
    Scanner s;
    s.scanner->start();
    s.registry->notify();
    s.scanner.reset();
    QTest::qWait(settled);
    EXPECT_EQ(s.spy.count(), 2);
}

} // namespace
} // namespace kestrin
