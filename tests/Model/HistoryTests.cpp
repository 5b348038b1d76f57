#include "ChartSeries.h"
#include "History.h"
#include "HistoryCSV.h"
#include "HistoryExport.h"
#include "TestFiles.h"

#include <chrono>
#include <vector>

#include <QDir>
#include <QTemporaryDir>
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

// A hold begins on a wrapped ring; under it the ring grows, at its release it keeps the newest.
TEST(SampleRing, KeepsTheNewestSamplesOldestFirstAcrossWrapAroundsAndHolds) {
    struct Row {
        int pushed;
        int pushedWhileHeld;
        std::pair<int, int> keptWhileHeld;
        std::pair<int, int> keptAfter;
    };
    const Row rows[] = {{0, 0, {1, 0}, {1, 0}}, {3, 0, {1, 3}, {1, 3}},    {5, 0, {1, 5}, {1, 5}},
                        {6, 0, {2, 6}, {2, 6}}, {12, 0, {8, 12}, {8, 12}}, {7, 3, {3, 10}, {6, 10}},
                        {2, 2, {1, 4}, {1, 4}}, {3, 40, {1, 43}, {39, 43}}};
    const auto samples = [](std::pair<int, int> range) {
        std::vector<Sample> expected;
        for (int value = range.first; value <= range.second; ++value) {
            expected.push_back(sampleAt(value));
        }
        return expected;
    };
    for (const Row& row : rows) {
        SampleRing ring(5);
        int value = 0;
        while (value < row.pushed) {
            ring.push(sampleAt(++value));
        }
        ring.hold();
        while (value < row.pushed + row.pushedWhileHeld) {
            ring.push(sampleAt(++value));
        }
        EXPECT_EQ(ring.toVector(), samples(row.keptWhileHeld)) << row.pushed;
        ring.release();
        EXPECT_EQ(ring.toVector(), samples(row.keptAfter)) << row.pushed;
        EXPECT_LE(ring.allocatedBytes(), 5 * 16u) << row.pushed;
    }
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

// Each UTC second is turned into local time once; the rows of a second add their milliseconds.
TEST(HistoryCSV, TimesAreLocalAcrossSummerTimeChangesAndBefore1970) {
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "Europe/Berlin");
    const std::pair<qint64, const char*> rows[] = {
        {-500, "1970-01-01 00:59:59.500"},
        {1'774'745'999'999, "2026-03-29 01:59:59.999"}, // then clocks go forward an hour
        {1'774'746'000'000, "2026-03-29 03:00:00.000"},
        {1'792'889'999'250, "2026-10-25 02:59:59.250"}, // then the hour from 2 to 3 again
        {1'792'890'000'750, "2026-10-25 02:00:00.750"},
        {1'792'890'000'999, "2026-10-25 02:00:00.999"}};
    std::vector<Poll> polls(1);
    polls[0].datapoints.resize(1);
    History history;
    std::string expected = "Time,Poll,Name,Value,Unit\r\n";
    for (const auto& [msecs, local] : rows) {
        (void)history.record(polls[0].datapoints[0].id,
                             {QDateTime::fromMSecsSinceEpoch(msecs, Qt::UTC), 1});
        expected += std::string(local) + ",,HR 0,1,\r\n";
    }
    EXPECT_EQ(HistoryCSV::text(polls, history, comma), expected);
    zone.isNull() ? qunsetenv("TZ") : qputenv("TZ", zone);
}

// Four datapoints whose rings are full and wrapped, with times shared across datapoints.
class HistoryExportTest : public ::testing::Test {
protected:
    static constexpr std::size_t capacity = 2000;
    QTemporaryDir folder;
    std::vector<Poll> polls{2};
    History history{capacity};

    void SetUp() override {
        polls[0].datapoints.resize(3);
        polls[1].datapoints.resize(1);
        record(0, 2500);
    }
    void record(int from, int to) {
        for (int tick = from; tick < to; ++tick) {
            for (const Poll& poll : polls) {
                for (const Datapoint& point : poll.datapoints) {
                    (void)history.record(point.id, {t0.addMSecs(tick / 2 * 7), tick});
                }
            }
        }
    }
    static std::chrono::steady_clock::time_point past() { return {}; }

    const QDateTime t0 = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC);
};

TEST_F(HistoryExportTest, SlicesWriteExactlyTheSamplesThereWereAtTheStart) {
    const std::string before = HistoryCSV::text(polls, history, comma);
    const QString target = folder.filePath("history.csv");
    int slices = 0;
    {
        HistoryExport exported(target, polls, history, comma);
        for (HistoryExport::Progress progress{}; !progress.done; ++slices) {
            progress = exported.step(past());
            // Full rings under the hold: each new sample would have dropped one not yet written.
            record(2500 + slices * 10, 2510 + slices * 10);
        }
        EXPECT_TRUE(exported.commit().ok());
    }
    EXPECT_GT(slices, 3);
    EXPECT_EQ(Testing::contents(target).toStdString(), before);
    // Released, the rings keep the newest samples, those recorded meanwhile included.
    const SampleRing& ring = *history.samples(polls[1].datapoints[0].id);
    EXPECT_EQ(ring.back().value, 2500 + slices * 10 - 1);
    EXPECT_EQ(ring.size(), capacity);
}

TEST_F(HistoryExportTest, CancellingLeavesNoFileAndReleasesTheHistory) {
    {
        HistoryExport exported(folder.filePath("history.csv"), polls, history, comma);
        EXPECT_FALSE(exported.step(past()).done);
        record(2500, 2600);
    }
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
    EXPECT_EQ(history.samples(polls[1].datapoints[0].id)->size(), capacity);
}

} // namespace
} // namespace kestrin
