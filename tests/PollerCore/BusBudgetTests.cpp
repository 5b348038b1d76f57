#include "BusBudget.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using BusBudget::Demand;

const SerialConfiguration slow{.baudRate = 9600};
const ReadBlock tenRegisters{1, RegisterTable::holdingRegister, 0, 10};
// 8 request + 25 answer characters of 11 bits at 9600 baud, 3.5 characters of silence, 5 ms.
constexpr double tenRegistersSeconds = 0.0378125 + 0.0040104 + 0.005;

// Expected figures worked out by hand: characters of request + answer on the wire, one silence
// of 3.5 characters and the device's turnaround; the answer's time is the turnaround and the
// answer's characters, both with the adapter's handover. LineRate's tests cover bit answers and the
// fixed silence at high rates.
TEST(BusBudget, ARequestHoldsTheLineForItsFramesTheSilenceAndTheTurnaround) {
    struct Row {
        std::string name;
        ReadBlock block;
        SerialConfiguration serial;
        double expected;
        double answer;
        double handover = 0;
    };
    const std::vector<Row> rows{
        {"FC03 10 registers, 9600 8E1", tenRegisters, slow, tenRegistersSeconds, 0.0286458 + 0.005},
        // Unit 2's own turnaround replaces the typical one.
        {"FC04 1 register of unit 2, 9600 8N1",
         {2, RegisterTable::inputRegister, 0, 1},
         {.parity = Parity::none},
         0.015625 + 0.0036458 + 0.020,
         0.0072917 + 0.020},
        // An FTDI adapter holds each answer for its 16 ms latency timer, which the response
        // time-out waits for too; the RS-485 driver's 2 ms before sending holds only the line.
        {"FC03 1 register, 115200 8E1, 16 ms adapter, RS-485",
         {1, RegisterTable::holdingRegister, 0, 1},
         {.baudRate = 115200, .rs485 = RS485Direction{.delayBeforeSendMs = 2}},
         0.0014323 + 0.00175 + 0.005 + 0.016 + 0.002,
         0.0006684 + 0.005 + 0.016,
         0.016},
    };
    const BusBudget::Turnarounds turnarounds{.measured = {{2, 0.020}}};
    for (const Row& row : rows) {
        const std::vector<Demand> polls{{{row.block}, 1.0, true}};
        const auto budget = BusBudget::of(polls, row.serial, turnarounds, row.handover);
        ASSERT_TRUE(budget.has_value()) << row.name;
        ASSERT_EQ(budget->polls.at(0).requests.size(), 1U) << row.name;
        EXPECT_NEAR(budget->polls[0].requests[0].seconds, row.expected, 1e-6) << row.name;
        EXPECT_NEAR(budget->polls[0].cycle, row.expected, 1e-6) << row.name;
        EXPECT_NEAR(budget->polls[0].requests[0].answerSeconds, row.answer, 1e-6) << row.name;
    }
}

TEST(BusBudget, EffectiveIntervalsFollowTheLoadOfTheEnabledPolls) {
    const std::vector<ReadBlock> one{tenRegisters};
    const std::vector<ReadBlock> two{tenRegisters, tenRegisters};
    const std::vector<ReadBlock> three{tenRegisters, tenRegisters, tenRegisters};
    const double t = tenRegistersSeconds;
    struct Row {
        std::string name;
        std::vector<Demand> polls;
        double load;
        // Per poll; nothing for a poll that is never read.
        std::vector<std::optional<double>> effective;
        std::vector<bool> late;
    };
    const std::vector<Row> rows{
        {"one poll with room to spare", {{one, 1.0, true}}, t, {1.0}, {false}},
        // A poll that overruns its interval is read back to back.
        {"one poll longer than its interval", {{three, 0.1, true}}, 30 * t, {3 * t}, {true}},
        // Two polls of one interval take turns: each waits for the other's reading.
        {"two polls sharing an overloaded line",
         {{two, 0.1, true}, {two, 0.1, true}},
         40 * t,
         {4 * t, 4 * t},
         {true, true}},
        {"a disabled poll costs nothing",
         {{one, 0.5, true}, {three, 0.1, false}},
         2 * t,
         {0.5, std::nullopt},
         {false, false}},
        {"a poll without requests is never read", {{{}, 0.1, true}}, 0, {std::nullopt}, {false}},
        // Interval zero asks for nothing slower than its own reading.
        {"a poll read back to back fills the line", {{two, 0, true}}, 1, {2 * t}, {false}},
        // Every 10 s the slow poll holds the line for 15 t = 702 ms, and the fast poll, overdue
        // by then, restarts its schedule: 93 readings in 10 s.
        {"a long reading holds a fast poll back on a line with room to spare",
         {{one, 0.1, true}, {std::vector(15, tenRegisters), 10.0, true}},
         t / 0.1 + 15 * t / 10,
         {10.0 / 93, 10.0},
         {true, false}},
    };
    for (const Row& row : rows) {
        const auto budget = BusBudget::of(row.polls, slow);
        ASSERT_TRUE(budget.has_value()) << row.name;
        EXPECT_NEAR(budget->lineLoad, row.load, 1e-6) << row.name;
        EXPECT_EQ(budget->overloaded(), row.load > 1) << row.name;
        ASSERT_EQ(budget->polls.size(), row.effective.size()) << row.name;
        for (std::size_t i = 0; i < row.effective.size(); ++i) {
            const auto& effective = budget->polls[i].effectiveInterval;
            ASSERT_EQ(effective.has_value(), row.effective[i].has_value()) << row.name << " " << i;
            if (effective) {
                // The schedule's start, where all polls are due at once, weighs a little.
                EXPECT_NEAR(*effective, *row.effective[i], 0.001) << row.name << " " << i;
            }
            EXPECT_EQ(budget->polls[i].late(), row.late[i]) << row.name << " " << i;
        }
    }
}

// The engine reads a poll's requests in one go: the slow poll's 600 ms reading starts on time
// each second and the fast one, overdue after it, restarts from there. Over two seconds the fast
// poll is read 9 times (at 0, 650, 750, 850, 950, 1000, 1650, ... ms), not every 110 ms as the
// load of 1.1 would stretch it.
TEST(BusBudget, PollsOfDifferentIntervalsShareAnOverloadedLineAsTheEngineReadsThem) {
    const double wire = tenRegistersSeconds - BusBudget::Turnarounds::typicalSeconds;
    const BusBudget::Turnarounds turnarounds{.measured = {{1, 0.050 - wire}, {2, 0.600 - wire}}};
    ReadBlock slowBlock = tenRegisters;
    slowBlock.unit = 2;
    const std::vector<Demand> polls{{{tenRegisters}, 0.1, true}, {{slowBlock}, 1.0, true}};
    const auto budget = BusBudget::of(polls, slow, turnarounds);
    ASSERT_TRUE(budget.has_value());
    EXPECT_NEAR(budget->lineLoad, 1.1, 1e-6);
    ASSERT_TRUE(budget->polls[0].effectiveInterval && budget->polls[1].effectiveInterval);
    EXPECT_NEAR(*budget->polls[0].effectiveInterval, 2.0 / 9, 0.002);
    EXPECT_NEAR(*budget->polls[1].effectiveInterval, 1.0, 1e-6);
    EXPECT_TRUE(budget->polls[0].late());
    EXPECT_FALSE(budget->polls[1].late());
}

TEST(BusBudget, NoBudgetWithoutAPositiveBaudRate) {
    const std::vector<Demand> polls{{{tenRegisters}, 1.0, true}};
    EXPECT_FALSE(BusBudget::of(polls, {.baudRate = 0}).has_value());
    EXPECT_FALSE(BusBudget::of(polls, {.baudRate = -9600}).has_value());
}

} // namespace
} // namespace kestrin
