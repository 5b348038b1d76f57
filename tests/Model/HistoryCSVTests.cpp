#include "HistoryCSV.h"
#include "L10n.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

const DatapointCSV::Dialect comma{',', false};
const DatapointCSV::Dialect semicolon{';', true};

TEST(HistoryCSV, ValuesAreWholeNumbersOrShortestDecimalsInTheDialect) {
    struct Row {
        double value;
        const char* withPoint;
        const char* withComma;
    };
    const Row rows[] = {
        {21.0, "21", "21"},
        {21.5, "21.5", "21,5"},
        {-3, "-3", "-3"},
        {-0.0, "0", "0"},
        {0.1, "0.1", "0,1"},
        {999'999'999'999'999, "999999999999999", "999999999999999"},
        {1e15, "1e+15", "1e+15"},
        {1e20, "1e+20", "1e+20"},
        {-2.5e-7, "-2.5e-07", "-2,5e-07"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(HistoryCSV::valueText(row.value, comma), row.withPoint) << row.value;
        EXPECT_EQ(HistoryCSV::valueText(row.value, semicolon), row.withComma) << row.value;
    }
}

TEST(HistoryCSV, FileNameCarriesTheLocalDateAndTime) {
    const QDateTime now(QDate(2026, 11, 16), QTime(16, 5, 12, 345));
    EXPECT_EQ(HistoryCSV::fileName(now), "modbus-history-2026-11-16T160512.csv");
}

struct Fixture {
    std::vector<Poll> polls{2};
    History history;
    QDateTime t0{QDate(2026, 11, 16), QTime(16, 5, 12, 5)};

    Fixture() {
        polls[0].name = "Boiler; east";
        polls[0].datapoints.resize(2);
        polls[0].datapoints[0].name = "Temperature";
        polls[0].datapoints[0].engineeringUnit = "°C";
        polls[0].datapoints[1].address = 7; // unnamed: "HR 7"
        polls[1].name = "Pump";
        polls[1].datapoints.resize(1);
        polls[1].datapoints[0].name = "Say \"hi\"";

        const Datapoint removed;
        (void)history.record(polls[1].datapoints[0].id, {t0, 1});
        (void)history.record(polls[0].datapoints[1].id, {t0.addMSecs(1000), 500});
        (void)history.record(polls[0].datapoints[0].id, {t0.addMSecs(1000), 21.5});
        (void)history.record(polls[0].datapoints[0].id, {t0.addMSecs(2000), 22});
        (void)history.record(removed.id, {t0, 99});
    }
};

TEST(HistoryCSV, RowsSortedByTimeThenPollAndTableOrderInBothDialects) {
    L10n::withLanguageForTesting(Language::en, [] {
        const Fixture fixture;
        EXPECT_EQ(HistoryCSV::text(fixture.polls, fixture.history, comma),
                  "Time,Poll,Name,Value,Unit\r\n"
                  "2026-11-16 16:05:12.005,Pump,\"Say \"\"hi\"\"\",1,\r\n"
                  "2026-11-16 16:05:13.005,\"Boiler; east\",Temperature,21.5,°C\r\n"
                  "2026-11-16 16:05:13.005,\"Boiler; east\",HR 7,500,\r\n"
                  "2026-11-16 16:05:14.005,\"Boiler; east\",Temperature,22,°C\r\n");
        EXPECT_EQ(HistoryCSV::text(fixture.polls, fixture.history, semicolon),
                  "Time;Poll;Name;Value;Unit\r\n"
                  "2026-11-16 16:05:12.005;Pump;\"Say \"\"hi\"\"\";1;\r\n"
                  "2026-11-16 16:05:13.005;\"Boiler; east\";Temperature;21,5;°C\r\n"
                  "2026-11-16 16:05:13.005;\"Boiler; east\";HR 7;500;\r\n"
                  "2026-11-16 16:05:14.005;\"Boiler; east\";Temperature;22;°C\r\n");
    });
}

TEST(HistoryCSV, EmptyHistoryGivesTheHeaderOnly) {
    EXPECT_EQ(HistoryCSV::text({}, History(), semicolon), "Time;Poll;Name;Value;Unit\r\n");
}

} // namespace
} // namespace kestrin
