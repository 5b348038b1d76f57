#include "ChartSeries.h"
#include "L10n.h"

#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

const QDateTime start = QDateTime::fromSecsSinceEpoch(1'700'000'000, Qt::UTC);

std::vector<Sample> numbered(std::size_t count) {
    std::vector<Sample> samples;
    for (std::size_t index = 0; index < count; ++index) {
        samples.push_back({start.addMSecs(static_cast<qint64>(index)), static_cast<double>(index)});
    }
    return samples;
}

TEST(ChartSeries, ThinsLongSeriesTo1501PointsKeepingFirstAndLast) {
    struct Row {
        std::size_t count;
        std::size_t drawn;
        double secondValue; // the index taken for i = 1
        double beforeLast;  // the index taken for i = 1499
    };
    const Row rows[] = {
        {1500, 1500, 1, 1499},
        {1501, 1501, 1, 1499},
        {3000, 1501, 2, 2998},
        {20'000, 1501, 13, 19'986},
    };
    for (const Row& row : rows) {
        const std::vector<Sample> drawn = ChartSeries::thinned(numbered(row.count));
        ASSERT_EQ(drawn.size(), row.drawn) << row.count;
        EXPECT_EQ(drawn.front().value, 0) << row.count;
        EXPECT_EQ(drawn[1].value, row.secondValue) << row.count;
        EXPECT_EQ(drawn[1499].value, row.beforeLast) << row.count;
        EXPECT_EQ(drawn.back().value, static_cast<double>(row.count - 1)) << row.count;
    }
    EXPECT_TRUE(ChartSeries::thinned({}).empty());
}

TEST(ChartSeries, PeriodShowsSamplesAtOrAfterItsStart) {
    SampleRing ring(10);
    const QDateTime now = start.addSecs(600);
    for (const int age : {120, 60, 59, 0}) {
        ring.push({now.addSecs(-age), static_cast<double>(age)});
    }
    const auto valuesFor = [&](int period) {
        std::vector<double> values;
        for (const Sample& sample :
             ChartSeries::points(ring, ChartSeries::periodStart(now, period))) {
            values.push_back(sample.value);
        }
        return values;
    };
    EXPECT_EQ(valuesFor(0), (std::vector<double>{120, 60, 59, 0}));
    EXPECT_EQ(valuesFor(60), (std::vector<double>{60, 59, 0}));
}

TEST(ChartSeries, OneLabelledSeriesPerPlottedDatapointWithSamplesInThePeriod) {
    L10n::withLanguageForTesting(Language::en, [] {
        Poll poll;
        poll.datapoints.resize(4);
        poll.datapoints[0].name = "Temperature";
        poll.datapoints[0].engineeringUnit = "°C";
        poll.datapoints[1].address = 100; // unnamed, no unit
        poll.datapoints[3].name = "Old";
        for (const std::size_t plotted : {0, 1, 3}) {
            poll.plotted.insert(poll.datapoints[plotted].id);
        }

        History history;
        const QDateTime now = start.addSecs(3600);
        (void)history.record(poll.datapoints[0].id, {now, 1});
        (void)history.record(poll.datapoints[1].id, {now.addSecs(-10), 2});
        (void)history.record(poll.datapoints[2].id, {now, 3});              // not plotted
        (void)history.record(poll.datapoints[3].id, {now.addSecs(-70), 4}); // before the period

        const std::vector<ChartSeries> series = ChartSeries::series(poll, history, now, 60);
        ASSERT_EQ(series.size(), 2u);
        EXPECT_EQ(series[0].label, "Temperature (°C)");
        EXPECT_EQ(series[0].datapointID, poll.datapoints[0].id);
        EXPECT_EQ(series[1].label, "HR 100");
        EXPECT_EQ(series[1].points, (std::vector<Sample>{{now.addSecs(-10), 2}}));
        EXPECT_EQ(ChartSeries::series(poll, history, now, 0).size(), 3u);
    });
}

} // namespace
} // namespace kestrin
