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
    const Clock::time_point now = Clock::now();
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
        {"no plans sleep until woken", {}, {}, PollerEngine::SleepUntil{}},
        {"plans without blocks are never due", {empty}, {}, PollerEngine::SleepUntil{}},
        {"new polls are due now, the first in plan order wins",
         {slow, fast},
         {},
         PollerEngine::ReadNow{0, now + milliseconds(1000)}},
        {"an empty plan does not take its turn",
         {empty, fast},
         {{empty.id, now - milliseconds(500)}},
         PollerEngine::ReadNow{1, now + milliseconds(200)}},
        {"the earliest due time wins over plan order",
         {slow, fast},
         {{slow.id, now - milliseconds(10)}, {fast.id, now - milliseconds(20)}},
         PollerEngine::ReadNow{1, now + milliseconds(180)}},
        {"equal due times go to plan order",
         {slow, fast},
         {{slow.id, now - milliseconds(10)}, {fast.id, now - milliseconds(10)}},
         PollerEngine::ReadNow{0, now + milliseconds(990)}},
        {"a late poll restarts from now instead of catching up",
         {slow},
         {{slow.id, now - milliseconds(1500)}},
         PollerEngine::ReadNow{0, now + milliseconds(1000)}},
        {"nothing due sleeps until the earliest due time",
         {slow, fast},
         {{slow.id, now + milliseconds(300)}, {fast.id, now + milliseconds(50)}},
         PollerEngine::SleepUntil{now + milliseconds(50)}},
        {"a negative interval counts as none", {plan(-3.0)}, {}, PollerEngine::ReadNow{0, now}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(PollerEngine::choosePoll(row.plans, row.nextDue, now), row.choice);
    }
}

// Replays the engine's loop on a simulated clock: every reading takes `readingTime`.
struct Replay {
    explicit Replay(std::vector<PollPlan> plans)
        : plans(std::move(plans)) {}

    std::vector<PollPlan> plans;
    Due nextDue;
    Clock::time_point now = Clock::time_point{} + std::chrono::hours(1);
    std::vector<std::size_t> order;
    // How far the due time of each reading lay behind its start.
    std::vector<Clock::duration> lateness;

    void runUntil(Clock::time_point end, Clock::duration readingTime) {
        while (now < end) {
            const auto choice = PollerEngine::choosePoll(plans, nextDue, now);
            if (const auto* sleep = std::get_if<PollerEngine::SleepUntil>(&choice)) {
                ASSERT_TRUE(sleep->time.has_value());
                ASSERT_GT(*sleep->time, now);
                now = *sleep->time;
                continue;
            }
            const auto& read = std::get<PollerEngine::ReadNow>(choice);
            const auto due = nextDue.find(plans[read.plan].id);
            lateness.push_back(due == nextDue.end() ? Clock::duration{} : now - due->second);
            nextDue[plans[read.plan].id] = read.nextDue;
            order.push_back(read.plan);
            now += readingTime;
        }
    }
};

TEST(PollSchedule, AnOverrunningPollIsReadBackToBackButNeverFallsBehind) {
    Replay replay({plan(1.0)});
    const Clock::time_point start = replay.now;
    replay.runUntil(start + milliseconds(15000), milliseconds(1500));
    EXPECT_EQ(replay.order.size(), 10U) << "no idle time between readings";
    for (const Clock::duration late : replay.lateness) {
        EXPECT_LE(late, milliseconds(1000));
    }
}

} // namespace
} // namespace kestrin
