#include "BusMeter.h"

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using Time = BusMeter::Time;

const Time t0 = Time() + std::chrono::hours(1000);
// 9600 8E1: 11 bits a character, a silence of 3.5 characters = 4.0104 ms.
const SerialConfiguration line9600{};
const ReadBlock twoRegisters{1, RegisterTable::holdingRegister, 0, 2};

Time at(double seconds) {
    return t0 + std::chrono::duration_cast<Time::duration>(std::chrono::duration<double>(seconds));
}

PollerEvent read(const ReadBlock& block, double duration, Time ended, bool answered = true,
                 const Uuid& poll = {}) {
    PollerEvent::Read event{poll, block, PollFailureError{}, {}, {}, duration};
    if (answered) {
        event.result = ReadData{};
    }
    return {event, ended};
}

BusMeter metered(const std::vector<double>& roundTrips, double handover = 0) {
    BusMeter meter(line9600, handover, {});
    meter.add({PollerEvent::Started{}, t0});
    for (std::size_t index = 0; index < roundTrips.size(); ++index) {
        meter.add(read(twoRegisters, roundTrips[index], at(1.0 + static_cast<double>(index))));
    }
    return meter;
}

TEST(BusMeter, MedianAndNinetyNinthPercentileAreMeasuredValues) {
    std::vector<double> hundred;
    for (int ms = 100; ms >= 1; --ms) {
        hundred.push_back(ms / 1000.0);
    }
    const struct {
        std::string name;
        std::vector<double> roundTrips;
        BusMeter::Spread expected;
    } rows[] = {
        {"one", {0.030}, {0.030, 0.030}},
        {"three", {0.030, 0.010, 0.020}, {0.020, 0.030}},
        {"even count takes the lower middle", {0.010, 0.040, 0.020, 0.030}, {0.020, 0.040}},
        {"hundred, descending", hundred, {0.050, 0.099}},
    };
    for (const auto& row : rows) {
        const auto units = metered(row.roundTrips).units();
        ASSERT_EQ(units.size(), 1U) << row.name;
        EXPECT_EQ(units[0].answers, static_cast<std::int64_t>(row.roundTrips.size())) << row.name;
        EXPECT_EQ(units[0].roundTrip, row.expected) << row.name;
    }
}

// Two registers at 9600 8E1: 8 + 9 characters = 19.479 ms on the wire. The device's turnaround
// runs from the request's end to the answer's start; no silence lies between them.
TEST(BusMeter, TurnaroundIsTheRoundTripLessWaitedSilenceWireTimeHandoverAndRS485Delay) {
    const struct {
        std::string name;
        double waited;
        double handover;
        int delayBeforeSendMs;
        double duration;
        double expected;
    } rows[] = {
        {"first read", 0, 0, 0, 0.050, 0.0305208},
        {"a whole silence waited", 0.0040104, 0, 0, 0.0540104, 0.0305208},
        {"16 ms adapter", 0, 0.016, 0, 0.066, 0.0305208},
        {"RS-485 delay before sending", 0.001, 0, 5, 0.056, 0.0305208},
        {"faster than the wire", 0, 0, 0, 0.010, 0.0},
    };
    for (const auto& row : rows) {
        SerialConfiguration serial = line9600;
        serial.rs485 = RS485Direction{true, row.delayBeforeSendMs, 0};
        // The adapter's latency timer may change while reading.
        BusMeter meter(serial, 0.5, {});
        meter.setHandover(row.handover);
        PollerEvent::Read answered{{}, twoRegisters, ReadData{}, {}, {}, row.duration, row.waited};
        meter.add({answered, at(10)});
        const auto units = meter.units();
        ASSERT_EQ(units.size(), 1U) << row.name;
        EXPECT_NEAR(units[0].turnaround.median, row.expected, 1e-6) << row.name;
        EXPECT_DOUBLE_EQ(units[0].roundTrip.median, row.duration) << row.name;
    }
}

// Slow answers from long ago leave the window; the count of answers keeps them.
TEST(BusMeter, KeepsOnlyTheRecentAnswers) {
    std::vector<double> roundTrips(10, 0.900);
    roundTrips.resize(10 + BusMeter::recentAnswers, 0.020);
    const auto units = metered(roundTrips).units();
    ASSERT_EQ(units.size(), 1U);
    EXPECT_EQ(units[0].answers, static_cast<std::int64_t>(roundTrips.size()));
    EXPECT_EQ(units[0].roundTrip, (BusMeter::Spread{0.020, 0.020}));
}

TEST(BusMeter, IntervalRunsBetweenTheEndsOfAPollsRecentCycles) {
    const Uuid poll = Uuid::random();
    const ReadBlock first{1, RegisterTable::holdingRegister, 0, 2};
    const ReadBlock last{1, RegisterTable::inputRegister, 0, 1};
    const std::vector<PollPlan> plans{{poll, 1.0, {first, last}, {}}};
    BusMeter meter(line9600, 0, plans);
    meter.add({PollerEvent::Started{}, t0});
    meter.add(read(first, 0.02, at(0.5), true, poll));
    meter.add(read(last, 0.02, at(1.0), true, poll));
    EXPECT_FALSE(meter.interval(poll).has_value());
    // A failed read ends its cycle too; a block read in parts ends it when its parts are read.
    meter.add(read(last, 1.0, at(2.0), false, poll));
    meter.add({PollerEvent::PartsRead{poll, last}, at(3.3)});
    ASSERT_TRUE(meter.interval(poll).has_value());
    EXPECT_NEAR(*meter.interval(poll), 1.15, 1e-9);
    EXPECT_FALSE(meter.interval(Uuid::random()).has_value());

    for (std::size_t cycle = 0; cycle < BusMeter::recentCycles; ++cycle) {
        meter.add(read(last, 0.02, at(10.0 + 0.5 * static_cast<double>(cycle)), true, poll));
    }
    EXPECT_NEAR(*meter.interval(poll), 0.5, 1e-9);

    // Replanning that leaves the poll alone keeps its cycles; a changed poll, and a port reopened
    // after a loss, begin them anew instead of spanning the change or the outage.
    meter.setPlans(plans);
    EXPECT_TRUE(meter.interval(poll).has_value());
    PollPlan slower = plans[0];
    slower.interval = 2.0;
    meter.setPlans(std::vector{slower});
    EXPECT_FALSE(meter.interval(poll).has_value());
    meter.add(read(last, 0.02, at(30), true, poll));
    meter.add(read(last, 0.02, at(32), true, poll));
    EXPECT_NEAR(*meter.interval(poll), 2.0, 1e-9);
    meter.add({PollerEvent::Started{}, at(40)});
    EXPECT_FALSE(meter.interval(poll).has_value());
}

// A time-out with the late window after it, the refused reads of a block split in parts and
// writes (a broadcast's pause included) hold the line as long as an answer does, but say nothing
// of how fast a unit answers; time-outs and late answers count for their unit.
TEST(BusMeter, BusyShareCountsTimeOutsSplitsAndWritesWhereUnitsCountOnlyAnswers) {
    BusMeter meter(line9600, 0, {});
    EXPECT_FALSE(meter.busyShare(at(1)).has_value());
    meter.add({PollerEvent::Started{}, t0});
    EXPECT_FALSE(meter.busyShare(t0).has_value());
    const ReadBlock unitThree{3, RegisterTable::inputRegister, 0, 1};
    meter.add(read(unitThree, 0.1, at(0.5)));
    PollerEvent::Read timedOut{{}, twoRegisters, PollFailureError{}, {}, {}, 1.0, 0, 0.5};
    meter.add({timedOut, at(2.0)});
    meter.add({PollerEvent::LateAnswer{{0x01}}, at(2.4)});
    meter.add({PollerEvent::ReadInParts{{}, unitThree, {}, 1, {}, {}, 0.2}, at(2.6)});
    meter.add({PollerEvent::Wrote{Uuid::random(), 1, {}, {}, {}, 0.1}, at(2.7)});
    meter.add({PollerEvent::Wrote{Uuid::random(), 0, {}, {}, {}, 0.1}, at(2.9)});
    ASSERT_TRUE(meter.busyShare(at(4)).has_value());
    EXPECT_DOUBLE_EQ(*meter.busyShare(at(4)), 2.0 / 4);
    const auto units = meter.units();
    ASSERT_EQ(units.size(), 1U);
    EXPECT_EQ(units[0].unit, 3);
    EXPECT_EQ(units[0].answers, 1);
    EXPECT_EQ(units[0].timeouts, 0);
    EXPECT_EQ(meter.answers(3), 1);
    EXPECT_EQ(meter.answers(1), 0);
    EXPECT_EQ(meter.timeouts(), 2);
}

} // namespace
} // namespace kestrin
