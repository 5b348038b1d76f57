#include "ModelFixture.h"

#include <tuple>

#include <QRegularExpression>

namespace kestrin::ModelTesting {
namespace {

class PollerModelLog : public QuietReading {
protected:
    ReadBlock levelOnly{1, RegisterTable::holdingRegister, 100, 1};

    // The whole log after the event, written with the options in force.
    std::string logOf(const PollerEvent& event) {
        model->clearLog();
        send(event);
        return model->output().text().toStdString();
    }
};

// Lines already written keep their form.
TEST_F(PollerModelLog, LinesFollowTheOptionsInForceAndFailuresAreAlwaysWritten) {
    const QString started = model->output().text();
    const QRegularExpression stamped("^\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d  --- Reading started on ");
    EXPECT_TRUE(stamped.match(started).hasMatch()) << started.toStdString();
    model->setShowTimestamps(false);
    EXPECT_EQ(model->output().text(), started);
    model->setTimeoutMs(500);
    const PollerEvent read = answer(points, levelOnly, {500});
    const std::vector<std::tuple<PollerEvent, bool, bool, std::string>> rows{
        {read, false, false, "← Unit 1 · FC 03 Read holding registers · 02 01 F4  (12 ms)\n"},
        {read, true, false,
         "← Unit 1 · FC 03 Read holding registers · 01 03 00 64 00 01 C5 D5  ←  01 03 02 01 F4 "
         "B8 53  (12 ms)\n"},
        {read, true, true, ""},
        {failedRead(points, levelOnly, PollFailure::timeout()), false, true,
         "✕ Unit 1 · FC 03 Read holding registers HR 100 · no response within 500 ms\n"},
    };
    for (const auto& [event, rawFrames, onlyProblems, text] : rows) {
        model->setShowRawFrames(rawFrames);
        model->setLogOnlyProblems(onlyProblems);
        EXPECT_EQ(logOf(event), text) << rawFrames << onlyProblems;
    }
}

TEST_F(PollerModelLog, ClearingZeroesCountersButNotFailuresInARowStatusOrHistory) {
    answerBoth(1, 2);
    fail(PollFailure::timeout());
    fail(PollFailure::timeout());

    model->clearLog();
    EXPECT_TRUE(model->outputIsEmpty());
    EXPECT_TRUE(model->output().isEmpty());
    EXPECT_EQ(model->statistics(), PollerStatistics{});
    EXPECT_NE(model->status(level.id), nullptr);
    EXPECT_NE(model->history().samples(level.id), nullptr);

    fail(PollFailure::timeout());
    EXPECT_TRUE(model->showNoResponseHint());
    EXPECT_FALSE(model->outputIsEmpty());
}

// How many samples are kept is the history's own rule.
TEST_F(PollerModelLog, HistoryPublishesABurstOnceAndAClearAtOnce) {
    const std::int64_t version = model->historyVersion();
    const QDateTime start = QDateTime::currentDateTimeUtc();
    for (int i = 0; i < 3; ++i) {
        model->recordSample(level.id, {start.addMSecs(i), static_cast<double>(i)});
    }
    ASSERT_NE(model->history().samples(level.id), nullptr);

    EXPECT_EQ(model->historyVersion(), version);
    ASSERT_TRUE(waitUntil([&] { return model->historyVersion() != version; }));
    QTest::qWait(100);
    EXPECT_EQ(model->historyVersion(), version + 1);

    model->clearHistory();
    EXPECT_EQ(model->historyVersion(), version + 2);
    EXPECT_EQ(model->history().samples(level.id), nullptr);
}

} // namespace
} // namespace kestrin::ModelTesting
