#include "TimeoutOffer.h"

#include "L10n.h"
#include "PollerProject.h"

#include <algorithm>
#include <cmath>

namespace kestrin {

int TimeoutOffer::fittingTimeoutMs(int p99Ms) {
    const double needed = p99Ms * margin + slackMs;
    const auto& choices = PollerProject::allowedTimeoutsMs;
    const auto* fitting = std::find_if(choices.begin(), choices.end(),
                                       [needed](int choice) { return choice >= needed; });
    return fitting != choices.end() ? *fitting : choices.back();
}

std::optional<TimeoutOffer> TimeoutOffer::check(std::span<const BusMeter::UnitFigures> units,
                                                std::int64_t timeouts, int currentMs) {
    const auto slowest = std::ranges::max_element(
        units, {}, [](const BusMeter::UnitFigures& figures) { return figures.roundTrip.p99; });
    const bool enough = std::ranges::any_of(units, [](const BusMeter::UnitFigures& figures) {
        return figures.answers >= answersNeeded;
    });
    if (!enough) {
        return std::nullopt;
    }
    // Rounded up, so that the text never claims the answers came sooner than they did.
    const auto p99Ms = static_cast<int>(std::ceil(slowest->roundTrip.p99 * 1000.0));
    const int fitting = fittingTimeoutMs(p99Ms);
    if (fitting == currentMs || (timeouts > 0 && fitting < currentMs)) {
        return std::nullopt;
    }
    return TimeoutOffer{slowest->unit, p99Ms, fitting, currentMs};
}

std::string TimeoutOffer::text() const {
    const auto& texts = L10n::texts().bus;
    return texts.timeoutFits(unit, p99Ms) + " " + texts.timeoutOffer(timeoutMs, currentMs);
}

} // namespace kestrin
