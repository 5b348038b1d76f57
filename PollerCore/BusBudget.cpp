#include "BusBudget.h"

#include "LineRate.h"

#include <algorithm>

namespace kestrin::BusBudget {

namespace {

PollBudget requestsOf(const Demand& poll, const SerialConfiguration& serial,
                      const Turnarounds& turnarounds) {
    PollBudget budget;
    budget.interval = poll.interval;
    for (const ReadBlock& block : poll.blocks) {
        const double turnaround = turnarounds.of(block.unit);
        const double seconds = LineRate::exchangeSeconds(block, serial, turnaround);
        budget.requests.push_back(
            {block, seconds, LineRate::answerSeconds(block, serial, turnaround)});
        budget.cycle += seconds;
    }
    return budget;
}

bool isRead(const Demand& poll) {
    return poll.enabled && !poll.blocks.empty();
}

// The interval a poll asks for: one read back to back asks for its own reading's length.
double askedInterval(const PollBudget& poll) {
    return poll.interval > 0 ? poll.interval : poll.cycle;
}

} // namespace

double Turnarounds::of(std::uint8_t unit) const {
    const auto found = measured.find(unit);
    return found == measured.end() ? fallback : found->second;
}

bool PollBudget::late() const noexcept {
    return interval > 0 && effectiveInterval && *effectiveInterval > interval;
}

std::optional<Budget> of(std::span<const Demand> polls, const SerialConfiguration& serial,
                         const Turnarounds& turnarounds) {
    if (serial.baudRate <= 0) {
        return std::nullopt;
    }
    Budget budget;
    for (const Demand& poll : polls) {
        budget.polls.push_back(requestsOf(poll, serial, turnarounds));
        if (isRead(poll)) {
            budget.lineLoad += budget.polls.back().cycle / askedInterval(budget.polls.back());
        }
    }
    const double stretch = std::max(1.0, budget.lineLoad);
    for (std::size_t i = 0; i < polls.size(); ++i) {
        if (isRead(polls[i])) {
            budget.polls[i].effectiveInterval = askedInterval(budget.polls[i]) * stretch;
        }
    }
    return budget;
}

} // namespace kestrin::BusBudget
