#include "HistoryCSV.h"
#include "LanguageForTesting.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

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
        // Integers and doubles are written as the datapoint list writes numbers.
        {typed(DataType::float64, 1), 21.5, "21.5", "21,5"},
        {typed(DataType::int64, 1), Value::signedInteger(INT64_MIN), "-9223372036854775808",
         "-9223372036854775808"},
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
        {typed(DataType::float32, 1), std::numeric_limits<double>::quiet_NaN(), "nan", "nan"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(HistoryCSV::valueText(row.point, row.value, comma), row.withPoint)
            << row.withPoint;
        EXPECT_EQ(HistoryCSV::valueText(row.point, row.value, semicolon), row.withComma)
            << row.withPoint;
    }
}

TEST(HistoryCSV, RowsSortedByTimeThenPollAndTableOrderInBothDialects) {
    L10n::withLanguageForTesting(Language::en, [] {
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
    });
}

} // namespace
} // namespace kestrin
