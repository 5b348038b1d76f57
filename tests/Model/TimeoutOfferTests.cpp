#include "ModelFixture.h"
#include "TimeoutOffer.h"

#include <QSignalSpy>

namespace kestrin::ModelTesting {
namespace {

TEST(TimeoutOffer, FitsTheSlowestUnitToAChoiceOfThePickerOnceOneHasEnoughAnswers) {
    const auto unit = [](std::uint8_t number, std::int64_t answers, double p99) {
        return BusMeter::UnitFigures{number, answers, 0, {p99 / 2, p99}, {}};
    };
    const struct {
        std::string name;
        std::vector<BusMeter::UnitFigures> units;
        std::int64_t timeouts;
        int currentMs;
        std::optional<TimeoutOffer> expected;
    } rows[] = {
        {"too few answers", {unit(1, 49, 0.3)}, 0, 1000, std::nullopt},
        {"fast device", {unit(1, 50, 0.0124)}, 0, 1000, TimeoutOffer{1, 13, 100, 1000}},
        // 60 ms × 1.5 + 10 ms is exactly 100 ms; a little more needs the next choice.
        {"at a choice", {unit(1, 50, 0.060)}, 0, 1000, TimeoutOffer{1, 60, 100, 1000}},
        {"just above", {unit(1, 50, 0.0601)}, 0, 1000, TimeoutOffer{1, 61, 200, 1000}},
        {"slow device", {unit(1, 80, 0.7)}, 0, 200, TimeoutOffer{1, 700, 2000, 200}},
        {"beyond every choice", {unit(1, 80, 4.0)}, 0, 1000, TimeoutOffer{1, 4000, 5000, 1000}},
        {"already fitting", {unit(1, 80, 0.3)}, 0, 500, std::nullopt},
        // A unit that answered only a few times still needs its answers covered.
        {"slowest unit however few its answers",
         {unit(1, 60, 0.05), unit(2, 10, 2.0), unit(3, 60, 0.2)},
         0,
         1000,
         TimeoutOffer{2, 2000, 5000, 1000}},
        // Time-outs may be answers that need the whole time-out: never a shorter one then.
        {"time-outs keep the time-out", {unit(1, 50, 0.0124)}, 1, 1000, std::nullopt},
        {"time-outs, longer offered", {unit(1, 80, 0.7)}, 3, 200, TimeoutOffer{1, 700, 2000, 200}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(TimeoutOffer::check(row.units, row.timeouts, row.currentMs), row.expected)
            << row.name;
    }
}

using TimeoutOfferReading = QuietReading;

// Answers of 12.4 ms fit a time-out of 100 ms; the project's is 200 ms.
TEST_F(TimeoutOfferReading, OfferedEveryFiftyAnswersOncePerTimeOutAndTakenOnlyWhenAsked) {
    QSignalSpy offers(model.get(), &PollerModel::timeoutOfferChanged);
    const auto answer = [&](int count) {
        for (int answers = 0; answers < count; ++answers) {
            answerBoth(500, 42);
        }
    };
    answer(49);
    EXPECT_FALSE(model->timeoutOffer().has_value());
    answer(1);
    ASSERT_TRUE(model->timeoutOffer().has_value());
    EXPECT_EQ(model->timeoutOffer()->timeoutMs, 100);
    EXPECT_EQ(model->timeoutOffer()->text(),
              "Unit 1 gives 99 % of its answers within 13 ms. A time-out of 100 ms covers that "
              "with room to spare (now 200 ms); it applies the next time reading starts.");

    model->dismissTimeoutOffer();
    answer(50);
    EXPECT_FALSE(model->timeoutOffer().has_value());
    EXPECT_EQ(offers.count(), 2);
    // A time-out the user chose since is looked at again with the next fifty answers.
    model->setTimeoutMs(500);
    answer(50);
    ASSERT_TRUE(model->timeoutOffer().has_value());
    EXPECT_EQ(model->timeoutOffer()->currentMs, 500);
    model->acceptTimeoutOffer();
    EXPECT_EQ(model->timeoutMs(), 100);
    EXPECT_FALSE(model->timeoutOffer().has_value());

    // Stopping sums the reading up in the log; the next reading measures afresh, and a time-out
    // in it keeps the longer time-out.
    model->stop();
    EXPECT_EQ(countInLog("Unit 1: 150 answers, round trip 12 ms (99 %: 12 ms), turnaround "), 1);
    model->setTimeoutMs(500);
    model->start();
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    fail(PollFailure::timeout());
    answer(50);
    EXPECT_FALSE(model->timeoutOffer().has_value());
    EXPECT_EQ(model->timeoutMs(), 500);
}

} // namespace
} // namespace kestrin::ModelTesting
