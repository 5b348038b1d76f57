#include "BusSummary.h"

#include "L10n.h"

#include <cmath>

namespace kestrin::BusSummary {

int milliseconds(double seconds) {
    return static_cast<int>(std::lround(seconds * 1000.0));
}

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
