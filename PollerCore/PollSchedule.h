#pragma once

#include "PollPlan.h"
#include "Uuid.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <unordered_map>
#include <variant>
#include <vector>

namespace kestrin {

// The engine's choice of which poll to read next. Pure, so that a prediction of the line can run
// the very schedule the engine runs, over a clock of its own.
namespace PollSchedule {

using Clock = std::chrono::steady_clock;
// When each poll read so far is due again, by its id.
using DueTimes = std::unordered_map<Uuid, Clock::time_point>;

// Read a poll now, or sleep.
struct ReadNow {
    std::size_t plan = 0;      // index into the plans
    Clock::time_point nextDue; // when that poll is due again
    friend bool operator==(const ReadNow&, const ReadNow&) = default;
};
struct SleepUntil {
    std::optional<Clock::time_point> time; // nothing: no plan has blocks, sleep until woken
    friend bool operator==(const SleepUntil&, const SleepUntil&) = default;
};
using Choice = std::variant<ReadNow, SleepUntil>;

// The poll with the earliest due time; ties go to plan order, and plans without blocks are never
// chosen. A poll without a due time has never been read and comes before every overdue poll. A
// late poll is not made up for: its next due time restarts from now when due + interval has
// already passed.
Choice choose(const std::vector<PollPlan>& plans, const DueTimes& nextDue, Clock::time_point now);

} // namespace PollSchedule
} // namespace kestrin
