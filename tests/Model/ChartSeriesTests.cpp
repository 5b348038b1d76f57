#include "ChartSeries.h"

#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

const QDateTime now = QDateTime::fromSecsSinceEpoch(1'700'000'000, Qt::UTC);

TEST(ChartSeries, ThinsLongSeriesTo1501PointsKeepingFirstAndLast) {
    // count, then the values drawn at positions 1 and 1499 (floor(count × i / 1500)).
    const std::vector<std::array<std::size_t, 3>> rows{
        {1500, 1, 1499}, {1501, 1, 1499}, {3000, 2, 2998}, {20'000, 13, 19'986}};
    for (const auto& [count, second, beforeLast] : rows) {
        std::vector<Sample> samples;
        for (std::size_t index = 0; index < count; ++index) {
            samples.push_back({now, double(index)});
        }
        const std::vector<Sample> drawn = ChartSeries::thinned(samples);
        ASSERT_EQ(drawn.size(), std::min<std::size_t>(count, 1501)) << count;
        EXPECT_EQ(drawn[0].value, 0) << count;
        EXPECT_EQ(drawn[1].value, double(second)) << count;
        EXPECT_EQ(drawn[1499].value, double(beforeLast)) << count;
        EXPECT_EQ(drawn.back().value, double(count - 1)) << count;
    }
}

TEST(ChartSeries, PlottedDatapointsWithSamplesInThePeriodInTableOrder) {
    Poll poll;
    poll.datapoints.resize(4);
    poll.datapoints[0].name = "Temperature";
    poll.datapoints[0].engineeringUnit = "°C";
    poll.datapoints[1].address = 100;
    History history;
    // Ages in seconds: exactly at the start of a 60-second period counts.
    const int ages[] = {0, 60, 0, 61};
    for (std::size_t index = 0; index < 4; ++index) {
        (void)history.record(poll.datapoints[index].id, {now.addSecs(-ages[index]), 1});
        if (index != 2) {
            poll.plotted.insert(poll.datapoints[index].id);
        }
    }
    const std::vector<ChartSeries> lastMinute = ChartSeries::series(poll, history, now, 60);
    ASSERT_EQ(lastMinute.size(), 2u);
    EXPECT_EQ(lastMinute[0].label, "Temperature (°C)");
    EXPECT_EQ(lastMinute[1].label, "HR 100");
    EXPECT_EQ(lastMinute[1].points, (std::vector<Sample>{{now.addSecs(-60), 1}}));
    EXPECT_EQ(ChartSeries::series(poll, history, now, 0).size(), 3u);
}

} // namespace
} // namespace kestrin
