#pragma once

#include "History.h"
#include "Poll.h"
#include "Sample.h"
#include "SampleRing.h"
#include "Uuid.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <QDateTime>

namespace kestrin {

// One line of the chart: a plotted datapoint's samples within the chosen period, thinned so that
// drawing stays cheap however long the history is.
struct ChartSeries {
    // The periods the chart offers, in seconds, in menu order; 0 is the whole history.
    static constexpr std::array<int, 5> periods{60, 300, 900, 3600, 0};
    // Longer series are thinned to this many evenly spread samples plus the newest one.
    static constexpr std::size_t maxEvenlySpread = 1500;

    Uuid datapointID;
    std::string label; // display name, then " (unit)" when there is one
    std::vector<Sample> points;

    // The first time a period shows: periodSeconds before now; nothing for 0 (everything).
    static std::optional<QDateTime> periodStart(const QDateTime& now, int periodSeconds);
    // The samples at or after start (all without one), thinned.
    static std::vector<Sample> drawnSamples(const SampleRing& samples,
                                            const std::optional<QDateTime>& start);
    // Up to maxEvenlySpread samples as they are; more: those at index floor(n × i / 1500) for
    // i = 0…1499, then the last one.
    static std::vector<Sample> thinned(std::vector<Sample> samples);
    // One series per plotted datapoint of the poll, in table order; a datapoint without samples
    // in the period gives none.
    static std::vector<ChartSeries> series(const Poll& poll, const History& history,
                                           const QDateTime& now, int periodSeconds);

    friend bool operator==(const ChartSeries&, const ChartSeries&) = default;
};

} // namespace kestrin
