#include "PollSchedule.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using PollSchedule::Clock;
using PollSchedule::DueTimes;
using PollSchedule::ReadNow;
using PollSchedule::SleepUntil;
using std::chrono::milliseconds;

PollPlan plan(double interval,
              std::vector<ReadBlock> blocks = {{1, RegisterTable::holdingRegister, 0, 1}}) {
    return {Uuid::random(), interval, std::move(blocks), {}};
}

TEST(PollSchedule, ChoosesTheEarliestDuePollOrSleeps) {
    const Clock::time_point now = Clock::now();
    const auto at = [&](int ms) { return now + milliseconds(ms); };
    const PollPlan slow = plan(1.0);
    const PollPlan fast = plan(0.2);
    const PollPlan empty = plan(0.1, {});
    struct Row {
        std::string name;
        std::vector<PollPlan> plans;
        DueTimes nextDue;
        PollSchedule::Choice choice;
    };
    const Row rows[] = {
        {"no plans sleep until woken", {}, {}, SleepUntil{}},
        {"plans without blocks are never due", {empty}, {}, SleepUntil{}},
        {"new polls are due now, in plan order", {slow, fast}, {}, ReadNow{0, at(1000)}},
        {"an empty plan takes no turn", {empty, fast}, {{empty.id, at(-500)}}, ReadNow{1, at(200)}},
        {"the earliest due time wins over plan order",
         {slow, fast},
         {{slow.id, at(-10)}, {fast.id, at(-20)}},
         ReadNow{1, at(180)}},
        {"equal due times go to plan order",
         {slow, fast},
         {{slow.id, at(-10)}, {fast.id, at(-10)}},
         ReadNow{0, at(990)}},
        {"a late poll is not made up", {slow}, {{slow.id, at(-1500)}}, ReadNow{0, at(1000)}},
        {"nothing due sleeps until the earliest due time",
         {slow, fast},
         {{slow.id, at(300)}, {fast.id, at(50)}},
         SleepUntil{at(50)}},
        {"a negative interval counts as none", {plan(-3.0)}, {}, ReadNow{0, now}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(PollSchedule::choose(row.plans, row.nextDue, now), row.choice);
    }
}

// The engine's loop on a clock of the test's own: every reading holds the line for cycle.
struct Line {
    std::vector<PollPlan> plans;
    DueTimes nextDue;
    Clock::time_point now{};

    // Readings of each plan until the clock has gone on by span.
    std::vector<int> run(Clock::duration span, Clock::duration cycle) {
        std::vector<int> readings(plans.size());
        const Clock::time_point end = now + span;
        while (now < end) {
            const PollSchedule::Choice choice = PollSchedule::choose(plans, nextDue, now);
            if (const auto* sleep = std::get_if<SleepUntil>(&choice)) {
                now = sleep->time.value_or(end);
                continue;
            }
            const auto& read = std::get<ReadNow>(choice);
            ++readings[read.plan];
            nextDue[plans[read.plan].id] = read.nextDue;
            now += cycle;
        }
        return readings;
    }
};

// Twelve polls of 100 ms whose readings take 10 ms each need 120 % of the line: each gets
// about its share, a reading every 120 ms, 166 in 20 s.
bool eachReadAtLeast(const std::vector<int>& readings, int least) {
    return std::ranges::all_of(readings, [&](int count) { return count >= least; });
}

TEST(PollSchedule, AnOverloadedLineReadsEveryPollInTurn) {
    Line line;
    for (int i = 0; i < 12; ++i) {
        line.plans.push_back(plan(0.1));
    }
    EXPECT_TRUE(eachReadAtLeast(line.run(std::chrono::seconds(20), milliseconds(10)), 150));
}

// As update leaves it: the polls kept keep their due times, some of them overdue.
TEST(PollSchedule, APollAddedToAnOverloadedLineIsReadNextAndGetsItsShare) {
    Line line;
    for (int i = 0; i < 11; ++i) {
        line.plans.push_back(plan(0.1));
    }
    line.run(std::chrono::seconds(2), milliseconds(10));
    ASSERT_TRUE(std::ranges::any_of(line.nextDue, [&](const auto& due) {
        return due.second < line.now;
    })) << "no poll is overdue";
    line.plans.push_back(plan(0.1));
    EXPECT_EQ(PollSchedule::choose(line.plans, line.nextDue, line.now),
              PollSchedule::Choice(ReadNow{11, line.now + milliseconds(100)}));
    EXPECT_TRUE(eachReadAtLeast(line.run(std::chrono::seconds(20), milliseconds(10)), 150));
}

} // namespace
} // namespace kestrin
