#include "BusBudget.h"

#include "LineRate.h"
#include "PollSchedule.h"
#include "SerialTiming.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <variant>

namespace kestrin::BusBudget {

namespace {

PollBudget requestsOf(const Demand& poll, const SerialConfiguration& serial,
                      const Turnarounds& turnarounds, double handoverSeconds) {
    // The time-out runs from the request's end until the adapter hands the answer's last byte
    // over, so it waits for the handover too; the line is held besides for the RS-485 driver's
    // delay before each request, as the bus meter counts it.
    const double delayBeforeSend =
        serial.rs485 ? serial.rs485->limited().delayBeforeSendMs / 1000.0 : 0.0;
    PollBudget budget;
    budget.interval = poll.interval;
    for (const ReadBlock& block : poll.blocks) {
        const double turnaround = turnarounds.of(block.unit) + handoverSeconds;
        const double seconds =
            LineRate::exchangeSeconds(block, serial, turnaround + delayBeforeSend);
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

using Clock = PollSchedule::Clock;

// The schedule runs until every poll was read this often and the start, where all polls are due
// at once, weighs little in the means; the bound keeps polls of far-apart intervals cheap.
constexpr int leastReadings = 8;
constexpr int fewestSteps = 1000;
constexpr int mostSteps = 10000;

// One poll's readings on the schedule's clock.
struct Readings {
    int count = 0;
    Clock::time_point firstStart;
    Clock::time_point firstDue;
    Clock::time_point lastDue;
};

// A poll's seconds between two readings. Its due times are what the schedule counts from: on
// time they step by exactly the interval, late they follow the readings.
double meanInterval(const Readings& readings, const PollBudget& poll, Clock::time_point end) {
    using Seconds = std::chrono::duration<double>;
    if (readings.count >= 2) {
        // In the clock's own steps, so that a poll read on time comes out at its interval.
        return Seconds((readings.lastDue - readings.firstDue) / (readings.count - 1)).count();
    }
    // Not due again before the schedule stopped, or waiting for longer than it asked.
    return std::max(askedInterval(poll), Seconds(end - readings.firstStart).count());
}

// To the microsecond, as the plan shows it: a cycle worked out as 599.9999999 ms is 600 ms on
// the line too, and must not win a tie with a 600 ms interval by a nanosecond.
Clock::duration cycleOf(const PollBudget& poll) {
    return std::chrono::round<std::chrono::microseconds>(SerialTiming::duration(poll.cycle));
}

// The schedule keys its due times by id; a demand's place serves as one.
Uuid idOf(std::size_t index) {
    std::array<std::uint8_t, 16> bytes{};
    for (std::size_t i = 0; i < sizeof index; ++i) {
        bytes.at(i) = static_cast<std::uint8_t>(index >> (8 * i));
    }
    return Uuid(bytes);
}

// The engine's own schedule over a clock of its own, each reading holding the line for the
// poll's cycle: the mean interval each read poll gets.
void runSchedule(std::span<const Demand> polls, std::vector<PollBudget>& budgets) {
    std::vector<PollPlan> plans;
    std::vector<std::size_t> indices;
    for (std::size_t i = 0; i < polls.size(); ++i) {
        if (isRead(polls[i])) {
            plans.push_back({idOf(i), polls[i].interval, polls[i].blocks, {}});
            indices.push_back(i);
        }
    }
    std::vector<Readings> readings(plans.size());
    PollSchedule::DueTimes due;
    Clock::time_point now;
    const auto settled = [&](int steps) {
        return steps >= mostSteps ||
               (steps >= fewestSteps && std::ranges::all_of(readings, [](const Readings& r) {
                    return r.count >= leastReadings;
                }));
    };
    for (int steps = 0; !plans.empty() && !settled(steps); ++steps) {
        const PollSchedule::Choice choice = PollSchedule::choose(plans, due, now);
        if (const auto* sleep = std::get_if<PollSchedule::SleepUntil>(&choice)) {
            now = sleep->time.value_or(now);
            continue;
        }
        const auto& read = std::get<PollSchedule::ReadNow>(choice);
        Readings& poll = readings[read.plan];
        if (poll.count++ == 0) {
            poll.firstStart = now;
            poll.firstDue = read.nextDue;
        }
        poll.lastDue = read.nextDue;
        due[plans[read.plan].id] = read.nextDue;
        now += cycleOf(budgets[indices[read.plan]]);
    }
    for (std::size_t i = 0; i < plans.size(); ++i) {
        PollBudget& budget = budgets[indices[i]];
        budget.effectiveInterval = meanInterval(readings[i], budget, now);
    }
}

} // namespace

double Turnarounds::of(std::uint8_t unit) const {
    const auto found = measured.find(unit);
    return found == measured.end() ? fallback : found->second;
}

bool PollBudget::late() const noexcept {
    // Less than what a figure in milliseconds shows is not worth a warning.
    constexpr double unnoticed = 0.0005;
    return interval > 0 && effectiveInterval && *effectiveInterval - interval >= unnoticed;
}

std::optional<Budget> of(std::span<const Demand> polls, const SerialConfiguration& serial,
                         const Turnarounds& turnarounds, double handoverSeconds) {
    if (serial.baudRate <= 0) {
        return std::nullopt;
    }
    Budget budget;
    for (const Demand& poll : polls) {
        budget.polls.push_back(requestsOf(poll, serial, turnarounds, handoverSeconds));
        if (isRead(poll)) {
            budget.lineLoad += budget.polls.back().cycle / askedInterval(budget.polls.back());
        }
    }
    runSchedule(polls, budget.polls);
    return budget;
}

} // namespace kestrin::BusBudget
