#include "ModelFixture.h"
#include "TimeoutOffer.h"

#include <QSignalSpy>

namespace kestrin::ModelTesting {
namespace {

TEST(TimeoutOffer, FitsTheSlowestUnitWithEnoughAnswersToAChoiceOfThePicker) {
    const auto unit = [](std::uint8_t number, std::int64_t answers, double p99) {
        return BusMeter::UnitFigures{number, answers, {p99 / 2, p99}, {}};
    };
    const struct {
        std::string name;
        std::vector<BusMeter::UnitFigures> units;
        int currentMs;
        std::optional<TimeoutOffer> expected;
    } rows[] = {
        {"too few answers", {unit(1, 49, 0.3)}, 1000, std::nullopt},
        {"fast device", {unit(1, 50, 0.0124)}, 1000, TimeoutOffer{1, 13, 100, 1000}},
        // 60 ms × 1.5 + 10 ms is exactly 100 ms; a little more needs the next choice.
        {"at a choice", {unit(1, 50, 0.060)}, 1000, TimeoutOffer{1, 60, 100, 1000}},
        {"just above", {unit(1, 50, 0.0601)}, 1000, TimeoutOffer{1, 61, 200, 1000}},
        {"slow device", {unit(1, 80, 0.7)}, 200, TimeoutOffer{1, 700, 2000, 200}},
        {"beyond every choice", {unit(1, 80, 4.0)}, 1000, TimeoutOffer{1, 4000, 5000, 1000}},
        {"already fitting", {unit(1, 80, 0.3)}, 500, std::nullopt},
        {"slowest counted unit",
         {unit(1, 60, 0.05), unit(2, 10, 2.0), unit(3, 60, 0.2)},
         1000,
         TimeoutOffer{3, 200, 500, 1000}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(TimeoutOffer::check(row.units, row.currentMs), row.expected) << row.name;
    }
}

using TimeoutOfferReading = QuietReading;

// Answers of 12.4 ms fit a time-out of 100 ms; the project's is 200 ms.
TEST_F(TimeoutOfferReading, OfferedOncePerReadingAfterFiftyAnswersAndTakenOnlyWhenAsked) {
    QSignalSpy offers(model.get(), &PollerModel::timeoutOfferChanged);
    for (int answers = 0; answers < 49; ++answers) {
        answerBoth(500, 42);
    }
    EXPECT_FALSE(model->timeoutOffer().has_value());
    answerBoth(500, 42);
    ASSERT_TRUE(model->timeoutOffer().has_value());
    EXPECT_EQ(model->timeoutOffer()->timeoutMs, 100);
    EXPECT_EQ(model->timeoutOffer()->text(),
              "Unit 1 answers 99 % of requests within 13 ms. A time-out of 100 ms covers that "
              "with room to spare (now 200 ms); it applies the next time reading starts.");

    model->dismissTimeoutOffer();
    for (int answers = 0; answers < 50; ++answers) {
        answerBoth(500, 42);
    }
    EXPECT_FALSE(model->timeoutOffer().has_value());
    EXPECT_EQ(offers.count(), 2);
    EXPECT_EQ(model->timeoutMs(), 200);

    // Stopping sums the reading up in the log; the next reading measures afresh.
    model->stop();
    EXPECT_EQ(countInLog("Unit 1: 100 answers, round trip 12 ms (99 %: 12 ms), turnaround 0 ms "
                         "(99 %: 0 ms)"),
              1);
    model->start();
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    for (int answers = 0; answers < 50; ++answers) {
        answerBoth(500, 42);
    }
    ASSERT_TRUE(model->timeoutOffer().has_value());
    EXPECT_EQ(model->timeoutMs(), 200);
    model->acceptTimeoutOffer();
    EXPECT_EQ(model->timeoutMs(), 100);
    EXPECT_FALSE(model->timeoutOffer().has_value());
}

} // namespace
} // namespace kestrin::ModelTesting
