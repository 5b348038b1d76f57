#include "PollBudgets.h"

#include "L10n.h"
#include "ReadPlanner.h"
#include "SerialTiming.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace kestrin::PollBudgets {

std::optional<BusBudget::Budget> of(std::span<const Poll> polls, const SerialConfiguration& serial,
                                    int maxGap, const BusBudget::Turnarounds& turnarounds,
                                    double handoverSeconds) {
    std::vector<BusBudget::Demand> demands;
    demands.reserve(polls.size());
    for (const Poll& poll : polls) {
        // The engine waits no longer than this between two readings either.
        const double interval =
            std::min(static_cast<double>(poll.intervalMs) / 1000.0, SerialTiming::longestDuration);
        demands.push_back({ReadPlanner::blocks(poll.datapoints, maxGap), interval, poll.enabled});
    }
    return BusBudget::of(demands, serial, turnarounds, handoverSeconds);
}

BusBudget::Turnarounds turnarounds(const BusMeter* meter) {
    BusBudget::Turnarounds turnarounds;
    if (meter != nullptr) {
        for (const BusMeter::UnitFigures& unit : meter->units()) {
            turnarounds.measured.emplace(unit.unit, unit.turnaround.median);
        }
    }
    return turnarounds;
}

namespace {

// Rounded, and held within an int: an overloaded line can stretch an interval, or its load, past
// what an int counts.
int whole(double value) {
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::lround(std::clamp(value, -most, most)));
}

} // namespace

int milliseconds(double seconds) {
    return whole(seconds * 1000.0);
}

int percent(double lineLoad) {
    return whole(lineLoad * 100.0);
}

std::string requestLine(const BusBudget::Request& request) {
    const ReadBlock& block = request.block;
    return L10n::concat(L10n::texts().log.unit(block.unit), " · ",
                        L10n::Log::range(block.table, block.address, block.count), " · ",
                        milliseconds(request.seconds), " ms");
}

std::optional<std::string> warning(const BusBudget::PollBudget& poll,
                                   const BusBudget::Budget& budget, int timeoutMs) {
    const auto& texts = L10n::texts().polls;
    const auto slowest = std::max_element(
        poll.requests.begin(), poll.requests.end(),
        [](const auto& a, const auto& b) { return a.answerSeconds < b.answerSeconds; });
    // Compared as shown: an answer of 200.4 ms against a 200 ms time-out is no warning that
    // reads "takes 200 ms, longer than 200 ms".
    if (slowest != poll.requests.end() && milliseconds(slowest->answerSeconds) > timeoutMs) {
        return texts.answerAfterTimeout(milliseconds(slowest->answerSeconds), timeoutMs);
    }
    if (!poll.late()) {
        return std::nullopt;
    }
    const int effective = milliseconds(*poll.effectiveInterval);
    const int interval = milliseconds(poll.interval);
    if (poll.outlastsInterval()) {
        return texts.outlastsInterval(milliseconds(poll.cycle), effective, interval);
    }
    return texts.lineOverloaded(percent(budget.lineLoad), effective, interval);
}

} // namespace kestrin::PollBudgets
