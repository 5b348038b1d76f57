#include "ChartSeries.h"
#include "History.h"
#include "HistoryCSV.h"

#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

// Values of every kind, 64-bit integers a double cannot hold among them, so that a ring that
// packs them loosely gives back other numbers.
Sample sampleAt(int value) {
    const QDateTime time = QDateTime::fromSecsSinceEpoch(1'700'000'000 + value, Qt::UTC);
    switch (value % 3) {
    case 0:
        return {time, Value::unsignedInteger(UINT64_MAX - static_cast<std::uint64_t>(value))};
    case 1:
        return {time, Value::signedInteger(INT64_MIN + value)};
    default:
        return {time, value + 0.5};
    }
}

TEST(SampleRing, KeepsTheNewestSamplesOldestFirstAcrossWrapArounds) {
    const std::pair<int, std::vector<int>> rows[] = {{0, {}},
                                                     {3, {1, 2, 3}},
                                                     {5, {1, 2, 3, 4, 5}},
                                                     {6, {2, 3, 4, 5, 6}},
                                                     {12, {8, 9, 10, 11, 12}}};
    for (const auto& [pushed, kept] : rows) {
        SampleRing ring(5);
        for (int value = 1; value <= pushed; ++value) {
            ring.push(sampleAt(value));
        }
        std::vector<Sample> expected;
        for (const int value : kept) {
            expected.push_back(sampleAt(value));
        }
        EXPECT_EQ(ring.toVector(), expected) << pushed << " pushed";
    }
}

TEST(History, TheSampleAfterTheCapDropsTheOldestAndHoldsNoSpareRoom) {
    History history;
    const Uuid id = Uuid::random();
    for (int value = 1; value <= 20'001; ++value) {
        (void)history.record(id, sampleAt(value));
    }
    const SampleRing* samples = history.samples(id);
    ASSERT_NE(samples, nullptr);
    EXPECT_EQ(samples->size(), 20'000u);
    EXPECT_EQ(samples->front(), sampleAt(2));
    EXPECT_EQ(samples->back(), sampleAt(20'001));
    EXPECT_EQ(history.allocatedBytes(), 20'000 * 16u); // 16 bytes a sample, no spare room
    history.remove(id);
    EXPECT_EQ(history.samples(id), nullptr);
}

TEST(History, AsksForOnePublicationUntilThePendingOneIsDone) {
    History history;
    const Uuid id = Uuid::random();
    EXPECT_TRUE(history.record(id, sampleAt(1)));
    EXPECT_FALSE(history.record(Uuid::random(), sampleAt(1)));
    // Clearing publishes at once by itself; the pending publication still comes.
    history.clear();
    EXPECT_FALSE(history.record(id, sampleAt(2)));
    history.markPublished();
    EXPECT_TRUE(history.record(id, sampleAt(3)));
}

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

const CSVDialect comma{',', false};
const CSVDialect semicolon{';', true};

Datapoint typed(DataType type, double scale) {
    Datapoint point;
    point.dataType = type;
    point.scale = scale;
    return point;
}

TEST(HistoryCSV, ValuesAreWrittenAsTheDeviceMeantThemInTheDialect) {
    struct Row {
        Datapoint point;
        Value value;
        const char* withPoint;
        const char* withComma;
    };
    const std::vector<Row> rows{
        // Numbers are written as the datapoint list writes them, with the dialect's decimal mark.
        {typed(DataType::float64, 1), 21.5, "21.5", "21,5"},
        // A scaled integer has the digits the table shows: 111 × 0.1 is 11.100000000000001.
        {typed(DataType::uint16, 0.1), 111 * 0.1, "11.1", "11,1"},
        {typed(DataType::uint16, 0.1), 110 * 0.1, "11", "11"},
        {typed(DataType::int16, 0.01), 1110 * 0.01, "11.10", "11,10"},
        {typed(DataType::int16, -0.1), 0 * -0.1, "0", "0"},
        {typed(DataType::uint32, 2.5), 7.5, "8", "8"},
        // A single is written in its own shortest digits, not in those of its widened double.
        {typed(DataType::float32, 1), static_cast<double>(0.1F), "0.1", "0,1"},
        {typed(DataType::float32, 2), static_cast<double>(0.1F) * 2, "0.20000000298023224",
         "0,20000000298023224"},
        {typed(DataType::float32, 1), std::numeric_limits<double>::quiet_NaN(), "nan", "nan"}};
    for (const Row& row : rows) {
        EXPECT_EQ(HistoryCSV::valueText(row.point, row.value, comma), row.withPoint)
            << row.withPoint;
        EXPECT_EQ(HistoryCSV::valueText(row.point, row.value, semicolon), row.withComma)
            << row.withPoint;
    }
}

TEST(HistoryCSV, RowsSortedByTimeThenPollAndTableOrderInBothDialects) {
    std::vector<Poll> polls(2);
    polls[0].name = "Boiler, east";
    polls[0].datapoints.resize(2);
    polls[0].datapoints[0].name = "Temperature";
    polls[0].datapoints[0].engineeringUnit = "°C";
    polls[0].datapoints[0].scale = 0.1;
    polls[0].datapoints[1].address = 7;
    polls[1].name = "Pump";
    polls[1].datapoints.resize(1);
    polls[1].datapoints[0].name = "Say \"hi\"";
    polls[1].datapoints[0].engineeringUnit = " kW"; // not quoted: nothing reads it back
    const QDateTime t0(QDate(2026, 11, 16), QTime(16, 5, 12, 5)); // local time
    History history;
    (void)history.record(polls[1].datapoints[0].id, {t0, 1});
    (void)history.record(polls[0].datapoints[1].id, {t0.addSecs(1), 500});
    (void)history.record(polls[0].datapoints[0].id, {t0.addSecs(1), 21.5});
    (void)history.record(polls[0].datapoints[0].id, {t0.addSecs(2), 22});
    (void)history.record(Uuid::random(), {t0, 99}); // in no poll: left out

    EXPECT_EQ(HistoryCSV::text(polls, history, comma),
              "Time,Poll,Name,Value,Unit\r\n"
              "2026-11-16 16:05:12.005,Pump,\"Say \"\"hi\"\"\",1, kW\r\n"
              "2026-11-16 16:05:13.005,\"Boiler, east\",Temperature,21.5,°C\r\n"
              "2026-11-16 16:05:13.005,\"Boiler, east\",HR 7,500,\r\n"
              "2026-11-16 16:05:14.005,\"Boiler, east\",Temperature,22,°C\r\n");
    EXPECT_EQ(HistoryCSV::text(polls, history, semicolon),
              "Time;Poll;Name;Value;Unit\r\n"
              "2026-11-16 16:05:12.005;Pump;\"Say \"\"hi\"\"\";1; kW\r\n"
              "2026-11-16 16:05:13.005;Boiler, east;Temperature;21,5;°C\r\n"
              "2026-11-16 16:05:13.005;Boiler, east;HR 7;500;\r\n"
              "2026-11-16 16:05:14.005;Boiler, east;Temperature;22;°C\r\n");
    EXPECT_EQ(HistoryCSV::fileName(t0), "modbus-history-2026-11-16T160512.csv");
}

} // namespace
} // namespace kestrin
