#include "BusSummary.h"

#include "L10n.h"
#include "PollBudgets.h"

namespace kestrin::BusSummary {

// Whole milliseconds are the precision at which a person compares round trips.
using PollBudgets::milliseconds;

std::string unitLine(const BusMeter::UnitFigures& figures) {
    const auto& texts = L10n::texts().bus;
    return texts.unitSummary(figures.unit, figures.answers) + ", " +
           texts.roundTripSummary(milliseconds(figures.roundTrip.median),
                                  milliseconds(figures.roundTrip.p99)) +
           ", " +
           texts.turnaroundSummary(milliseconds(figures.turnaround.median),
                                   milliseconds(figures.turnaround.p99));
}

std::vector<std::string> lines(const BusMeter& meter) {
    std::vector<std::string> result;
    for (const BusMeter::UnitFigures& figures : meter.units()) {
        result.push_back(unitLine(figures));
    }
    return result;
}

} // namespace kestrin::BusSummary
