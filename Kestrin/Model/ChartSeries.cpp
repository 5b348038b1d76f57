#include "ChartSeries.h"

#include "DatapointLabel.h"

namespace kestrin {

std::optional<QDateTime> ChartSeries::periodStart(const QDateTime& now, int periodSeconds) {
    if (periodSeconds <= 0) {
        return std::nullopt;
    }
    return now.addSecs(-periodSeconds);
}

std::vector<Sample> ChartSeries::drawnSamples(const SampleRing& samples,
                                              const std::optional<QDateTime>& start) {
    std::vector<Sample> inPeriod;
    if (!start) {
        inPeriod = samples.toVector();
    } else {
        // Every sample is tested: a clock set back can leave the ring out of time order.
        for (std::size_t index = 0; index < samples.size(); ++index) {
            if (samples[index].time >= *start) {
                inPeriod.push_back(samples[index]);
            }
        }
    }
    return thinned(std::move(inPeriod));
}

std::vector<Sample> ChartSeries::thinned(std::vector<Sample> samples) {
    const std::size_t count = samples.size();
    if (count <= maxEvenlySpread) {
        return samples;
    }
    std::vector<Sample> kept;
    kept.reserve(maxEvenlySpread + 1);
    for (std::size_t i = 0; i < maxEvenlySpread; ++i) {
        // Integer arithmetic: the exact floor, free of the rounding of count / 1500.
        kept.push_back(samples[count * i / maxEvenlySpread]);
    }
    kept.push_back(samples.back());
    return kept;
}

std::vector<ChartSeries> ChartSeries::series(const Poll& poll, const History& history,
                                             const QDateTime& now, int periodSeconds) {
    const std::optional<QDateTime> start = periodStart(now, periodSeconds);
    std::vector<ChartSeries> result;
    for (const Datapoint& datapoint : poll.datapoints) {
        if (!poll.plotted.contains(datapoint.id)) {
            continue;
        }
        const SampleRing* samples = history.samples(datapoint.id);
        if (samples == nullptr) {
            continue;
        }
        std::vector<Sample> drawn = drawnSamples(*samples, start);
        if (drawn.empty()) {
            continue;
        }
        result.push_back({datapoint.id, DatapointLabel::withUnit(datapoint), std::move(drawn)});
    }
    return result;
}

} // namespace kestrin
