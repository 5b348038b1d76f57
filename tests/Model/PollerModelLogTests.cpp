#include "ModelFixture.h"

#include <QRegularExpression>

namespace kestrin::ModelTesting {
namespace {

const QRegularExpression stamp("^\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d  ");

std::string unstamped(std::string line) {
    const QRegularExpressionMatch match = stamp.match(QString::fromStdString(line));
    return match.hasMatch() ? line.substr(static_cast<std::size_t>(match.capturedLength())) : line;
}

class PollerModelLog : public QuietReading {
protected:
    ReadBlock levelOnly{1, RegisterTable::holdingRegister, 100, 1};

    // The lines the action added, without their time.
    std::vector<std::string> linesOf(const std::function<void()>& action) {
        const std::size_t before = logLines().size();
        action();
        std::vector<std::string> added;
        const std::vector<std::string> lines = logLines();
        for (std::size_t i = before; i < lines.size(); ++i) {
            added.push_back(unstamped(lines[i]));
        }
        return added;
    }
};

TEST_F(PollerModelLog, AnswerLineFollowsTheOptionsInForceWhenWritten) {
    const std::string data = "← Unit 1 · FC 03 Read holding registers · 02 01 F4  (12 ms)";
    const std::string frames = "← Unit 1 · FC 03 Read holding registers · 01 03 00 64 00 01 C5 "
                               "D5  ←  01 03 02 01 F4 B8 53  (12 ms)";
    const struct {
        bool rawFrames;
        bool onlyProblems;
        std::vector<std::string> lines;
    } rows[] = {
        {false, false, {data}},
        {true, false, {frames}},
        {false, true, {}},
        {true, true, {}},
    };
    for (const auto& row : rows) {
        model->setShowRawFrames(row.rawFrames);
        model->setLogOnlyProblems(row.onlyProblems);
        EXPECT_EQ(linesOf([&] { send(answer(points, levelOnly, {500})); }), row.lines)
            << row.rawFrames << row.onlyProblems;
    }
}

TEST_F(PollerModelLog, FailedReadIsAlwaysWrittenWithTheCurrentTimeout) {
    model->setLogOnlyProblems(true);
    model->setTimeoutMs(500);
    EXPECT_EQ(linesOf([&] { send(failedRead(points, levelOnly, PollFailure::timeout())); }),
              std::vector<std::string>{
                  "✕ Unit 1 · FC 03 Read holding registers HR 100 · no response within 500 ms"});
    EXPECT_EQ(linesOf([&] { fail(PollFailure::exception(2)); }),
              std::vector<std::string>{"✕ Unit 1 · FC 03 Read holding registers HR 100–101 · "
                                       "Illegal data address (02)"});
}

TEST_F(PollerModelLog, TimestampsStartEveryLineWhileOnAndOnlyThen) {
    const std::vector<std::string> stamped = logLines();
    ASSERT_EQ(stamped.size(), 1U);
    EXPECT_TRUE(stamp.match(QString::fromStdString(stamped[0])).hasMatch()) << stamped[0];

    model->setShowTimestamps(false);
    model->stop();
    EXPECT_EQ(logLines().back(), "--- Reading stopped ---");
    EXPECT_TRUE(stamp.match(QString::fromStdString(logLines().front())).hasMatch());
}

TEST_F(PollerModelLog, ClearingZeroesCountersButNotFailuresInARowStatusOrHistory) {
    answerBoth(1, 2);
    fail(PollFailure::timeout());
    fail(PollFailure::timeout());
    ASSERT_FALSE(model->outputIsEmpty());

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

TEST_F(PollerModelLog, HistoryKeepsTheNewestSamplesAndPublishesABurstOnce) {
    const std::int64_t version = model->historyVersion();
    const QDateTime start = QDateTime::currentDateTimeUtc();
    const int recorded = static_cast<int>(History::defaultCapacity) + 1;
    for (int i = 0; i < recorded; ++i) {
        model->recordSample(level.id, {start.addMSecs(i), static_cast<double>(i)});
    }
    const SampleRing* samples = model->history().samples(level.id);
    ASSERT_NE(samples, nullptr);
    EXPECT_EQ(samples->size(), History::defaultCapacity);
    EXPECT_EQ(samples->front().value, 1.0);
    EXPECT_EQ(samples->back().value, recorded - 1.0);

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
