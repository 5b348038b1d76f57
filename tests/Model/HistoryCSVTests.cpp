#include "HistoryCSV.h"
#include "L10n.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

const DatapointCSV::Dialect comma{',', false};
const DatapointCSV::Dialect semicolon{';', true};

TEST(HistoryCSV, ValuesAreWholeNumbersOrShortestDecimalsInTheDialect) {
    const std::vector<std::tuple<double, const char*, const char*>> rows{
        {21.0, "21", "21"},
        {21.5, "21.5", "21,5"},
        {-0.0, "0", "0"},
        {1e15 - 1, "999999999999999", "999999999999999"},
        {1e15, "1e+15", "1e+15"},
        {1e20, "1e+20", "1e+20"},
        {-2.5e-7, "-2.5e-07", "-2,5e-07"}};
    for (const auto& [value, withPoint, withComma] : rows) {
        EXPECT_EQ(HistoryCSV::valueText(value, comma), withPoint);
        EXPECT_EQ(HistoryCSV::valueText(value, semicolon), withComma);
    }
}

TEST(HistoryCSV, RowsSortedByTimeThenPollAndTableOrderInBothDialects) {
    L10n::withLanguageForTesting(Language::en, [] {
        std::vector<Poll> polls(2);
        polls[0].name = "Boiler, east";
        polls[0].datapoints.resize(2);
        polls[0].datapoints[0].name = "Temperature";
        polls[0].datapoints[0].engineeringUnit = "°C";
        polls[0].datapoints[1].address = 7;
        polls[1].name = "Pump";
        polls[1].datapoints.resize(1);
        polls[1].datapoints[0].name = "Say \"hi\"";
        const QDateTime t0(QDate(2026, 11, 16), QTime(16, 5, 12, 5)); // local time
        History history;
        (void)history.record(polls[1].datapoints[0].id, {t0, 1});
        (void)history.record(polls[0].datapoints[1].id, {t0.addSecs(1), 500});
        (void)history.record(polls[0].datapoints[0].id, {t0.addSecs(1), 21.5});
        (void)history.record(polls[0].datapoints[0].id, {t0.addSecs(2), 22});
        (void)history.record(Uuid::random(), {t0, 99}); // in no poll: left out

        EXPECT_EQ(HistoryCSV::text(polls, history, comma),
                  "Time,Poll,Name,Value,Unit\r\n"
                  "2026-11-16 16:05:12.005,Pump,\"Say \"\"hi\"\"\",1,\r\n"
                  "2026-11-16 16:05:13.005,\"Boiler, east\",Temperature,21.5,°C\r\n"
                  "2026-11-16 16:05:13.005,\"Boiler, east\",HR 7,500,\r\n"
                  "2026-11-16 16:05:14.005,\"Boiler, east\",Temperature,22,°C\r\n");
        EXPECT_EQ(HistoryCSV::text(polls, history, semicolon),
                  "Time;Poll;Name;Value;Unit\r\n"
                  "2026-11-16 16:05:12.005;Pump;\"Say \"\"hi\"\"\";1;\r\n"
                  "2026-11-16 16:05:13.005;Boiler, east;Temperature;21,5;°C\r\n"
                  "2026-11-16 16:05:13.005;Boiler, east;HR 7;500;\r\n"
                  "2026-11-16 16:05:14.005;Boiler, east;Temperature;22;°C\r\n");
        EXPECT_EQ(HistoryCSV::fileName(t0), "modbus-history-2026-11-16T160512.csv");
    });
}

} // namespace
} // namespace kestrin
