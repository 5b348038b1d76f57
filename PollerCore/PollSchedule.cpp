#include "PollSchedule.h"

#include "SerialTiming.h"

namespace kestrin::PollSchedule {

Choice choose(const std::vector<PollPlan>& plans, const DueTimes& nextDue, Clock::time_point now) {
    std::optional<std::size_t> earliest;
    // Nothing for a poll never read: due since before any time a clock gives, so that an
    // overloaded line, where every other poll is overdue, cannot keep it waiting for ever.
    std::optional<Clock::time_point> earliestDue;
    for (std::size_t i = 0; i < plans.size(); ++i) {
        if (plans[i].blocks.empty()) {
            continue;
        }
        const auto entry = nextDue.find(plans[i].id);
        const std::optional<Clock::time_point> due =
            entry == nextDue.end() ? std::nullopt : std::optional(entry->second);
        if (!earliest || (earliestDue && (!due || *due < *earliestDue))) {
            earliest = i;
            earliestDue = due;
        }
    }
    if (!earliest) {
        return SleepUntil{};
    }
    if (earliestDue && *earliestDue > now) {
        return SleepUntil{earliestDue};
    }
    const Clock::duration interval = SerialTiming::duration(plans[*earliest].interval);
    if (earliestDue && *earliestDue + interval > now) {
        return ReadNow{*earliest, *earliestDue + interval};
    }
    return ReadNow{*earliest, now + interval};
}

} // namespace kestrin::PollSchedule
