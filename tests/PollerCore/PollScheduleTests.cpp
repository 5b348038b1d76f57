#include "PollerEngine.h"

#include <string>
#include <unordered_map>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using Clock = PollerEngine::Clock;
using Due = std::unordered_map<Uuid, Clock::time_point>;
using std::chrono::milliseconds;

const ReadBlock oneBlock{1, RegisterTable::holdingRegister, 0, 1};

PollPlan plan(double interval, std::vector<ReadBlock> blocks = {oneBlock}) {
    return {Uuid::random(), interval, std::move(blocks)};
}

TEST(PollSchedule, ChoosesTheEarliestDuePollOrSleeps) {
    using ReadNow = PollerEngine::ReadNow;
    using SleepUntil = PollerEngine::SleepUntil;
    const Clock::time_point now = Clock::now();
    const auto at = [&](int ms) { return now + milliseconds(ms); };
    const PollPlan slow = plan(1.0);
    const PollPlan fast = plan(0.2);
    const PollPlan empty = plan(0.1, {});
    struct Row {
        std::string name;
        std::vector<PollPlan> plans;
        Due nextDue;
        PollerEngine::PollChoice choice;
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
        {"a negative interval counts as none", {plan(-3.0)}, {}, ReadNow{0, now}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(PollerEngine::choosePoll(row.plans, row.nextDue, now), row.choice);
    }
}

} // namespace
} // namespace kestrin
