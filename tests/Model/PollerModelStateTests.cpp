#include "ModelFixture.h"

#include <map>
#include <tuple>

#include <QRegularExpression>

namespace kestrin::ModelTesting {
namespace {

const PollFailure timeout = PollFailure::timeout();
const PollFailure crc = PollFailure::crcMismatch();

using PollerModelStart = ModelFixture;

TEST_F(PollerModelStart, NeedsAPortThatOpensRunsOnStartedIgnoresASecondStartAndStopsOnce) {
    create(quietProject({holding("Level", 100)}));
    model->start();
    EXPECT_EQ(model->errorMessage(), "Select a serial port first.");
    const std::string missing = file("ttyGone").toStdString();
    model->addTestDevice(missing, "gone");
    model->start();
    EXPECT_NE(model->errorMessage().value_or("").find(missing), std::string::npos);
    EXPECT_FALSE(model->isEngineHeld());

    SimulatorProcess device{ChildProcess::sim()};
    model->addTestDevice(device.port(), "quiet");
    model->start();
    EXPECT_TRUE(model->isEngineHeld());
    EXPECT_EQ(model->state(), PollerState::stopped);
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    EXPECT_EQ(countInLog("--- Reading started on " + device.port() + " @ 9600 8E1 ---"), 1);

    model->handleEvent(failedRead(model->polls()[1].id, {}, timeout));
    model->start();
    QTest::qWait(50);
    EXPECT_EQ(model->statistics().timeouts, 1);
    EXPECT_EQ(countInLog("Reading started"), 1);

    model->stop();
    model->stop();
    EXPECT_EQ(model->state(), PollerState::stopped);
    EXPECT_FALSE(model->isEngineHeld());
    EXPECT_EQ(countInLog("--- Reading stopped ---"), 1);
}

using PollerModelRunning = QuietReading;

// A lost port drops the engine and refuses starts and writes until stopped; once stopped, events
// still on their way change nothing.
TEST_F(PollerModelRunning, LostPortDropsTheEngineUntilStoppedAndLaterEventsChangeNothing) {
    answerBoth(1, 2);
    send({PollerEvent::SerialLost{device.port()}});
    EXPECT_EQ(model->state(), PollerState::serialLost);
    EXPECT_FALSE(model->isEngineHeld());
    EXPECT_EQ(countInLog("Serial port " + device.port() + " is gone; waiting for it to return"), 1);
    model->start();
    EXPECT_FALSE(model->isEngineHeld());
    model->write(level, 5);
    EXPECT_EQ(model->writeError(), "Start reading first (Ctrl+R) to write values.");
    model->stop();
    EXPECT_EQ(model->state(), PollerState::stopped);
    EXPECT_EQ(countInLog("--- Reading stopped ---"), 1);

    const PollerStatistics statistics = model->statistics();
    const auto status = model->status();
    const QString text = model->output().text();
    for (const PollerEvent& late :
         {answer(points, both, {7, 8}), failedRead(points, both, timeout),
          wrote(Uuid::random(), std::nullopt), PollerEvent{PollerEvent::Started{}},
          PollerEvent{PollerEvent::SerialLost{device.port()}}}) {
        send(late);
    }
    EXPECT_EQ(model->statistics(), statistics);
    EXPECT_EQ(model->status(), status);
    EXPECT_EQ(model->output().text(), text);
    EXPECT_EQ(model->state(), PollerState::stopped);
}

TEST_F(PollerModelRunning, ReadsAndWritesCountEachFailureInItsCounter) {
    for (const PollFailure failure :
         {PollFailure::exception(2), timeout, crc, PollFailure::malformed(),
          PollFailure::unexpectedUnit(9), PollFailure::unexpectedFunction(0x04)}) {
        fail(failure);
        send(wrote({}, failure));
    }
    // A read of a poll removed while it was in flight still counts how it ended.
    send(answer(Uuid::random(), both, {1, 2}));
    EXPECT_EQ(model->statistics(),
              (PollerStatistics{
                  .requests = 13, .responses = 3, .timeouts = 2, .exceptions = 2, .errors = 8}));
}

// Dismissed, the hint stays hidden until the next start.
TEST_F(PollerModelRunning, NoResponseHintNeedsThreeTimeoutsOrCRCErrorsInARow) {
    // Reads: T timeout, C CRC error, X exception, M malformed, O answer; writes: W done, w timeout.
    const std::map<char, PollerEvent> events{
        {'T', failedRead(points, both, timeout)},
        {'C', failedRead(points, both, crc)},
        {'X', failedRead(points, both, PollFailure::exception(2))},
        {'M', failedRead(points, both, PollFailure::malformed())},
        {'O', answer(points, both, {1, 2})},
        {'W', wrote({}, std::nullopt)},
        {'w', wrote({}, timeout)}};
    const std::vector<std::pair<std::string, bool>> rows{
        {"TT", false},   {"CTC", true},   {"TTXT", true}, {"TMTM", false},
        {"TTOT", false}, {"TTWT", false}, {"wTC", true}};
    for (const auto& [sequence, hint] : rows) {
        model->stop();
        startReading(device.port());
        for (const char event : sequence) {
            send(events.at(event));
        }
        EXPECT_EQ(model->showNoResponseHint(), hint) << sequence;
    }
    model->stop();
    startReading(device.port());
    const auto threeTimeouts = [&] {
        for (int i = 0; i < 3; ++i) {
            fail(timeout);
        }
        return model->showNoResponseHint();
    };
    ASSERT_TRUE(threeTimeouts());
    model->dismissNoResponseHint();
    EXPECT_FALSE(model->showNoResponseHint());
    EXPECT_FALSE(threeTimeouts());

    model->stop();
    startReading(device.port());
    EXPECT_EQ(model->statistics(), PollerStatistics{});
    EXPECT_TRUE(threeTimeouts());
    model->stop();
    EXPECT_FALSE(model->showNoResponseHint());
}

TEST_F(PollerModelRunning, FailedReadKeepsTheLastValueAndRecordsNoSample) {
    send(answer(points, {1, RegisterTable::holdingRegister, 100, 1}, {500}, 0.02));
    fail(timeout);
    const PointStatus& failed = *model->status(level.id);
    EXPECT_EQ(failed, (PointStatus{500.0, {500}, timeout, failed.updated, 0.02}));
    EXPECT_EQ(model->history().samples(level.id)->size(), 1U);
    EXPECT_EQ(*model->status(flow.id), (PointStatus{{}, {}, timeout, failed.updated, 0}));
}

// Events are dated by the engine, not by when the main thread got to them, and a batch announces
// each changed datapoint and the counters once.
TEST_F(PollerModelRunning, ABatchIsDatedByItsStampsAndAnnouncesItsChangesOnce) {
    std::vector<std::vector<Uuid>> announced;
    int countersChanged = 0;
    QObject::connect(model.get(), &PollerModel::statusChanged, model.get(),
                     [&](const std::vector<Uuid>& ids) { announced.push_back(ids); });
    QObject::connect(model.get(), &PollerModel::statisticsChanged, model.get(),
                     [&] { ++countersChanged; });
    std::vector<PollerEvent> batch{
        answer(points, both, {1, 2}),
        failedRead(points, {1, RegisterTable::holdingRegister, 101, 1}, timeout),
        answer(points, {1, RegisterTable::holdingRegister, 100, 1}, {3})};
    std::vector<QDateTime> times;
    const auto past = std::chrono::system_clock::now() - 1h;
    for (std::size_t i = 0; i < batch.size(); ++i) {
        batch[i].time = past + std::chrono::milliseconds(1234 * i);
        times.push_back(QDateTime::fromMSecsSinceEpoch(
            std::chrono::duration_cast<std::chrono::milliseconds>(batch[i].time.time_since_epoch())
                .count()));
    }
    model->clearLog();
    countersChanged = 0;
    model->handleEvents(batch);

    EXPECT_EQ(announced, (std::vector<std::vector<Uuid>>{{level.id, flow.id}}));
    EXPECT_EQ(countersChanged, 1);
    const QStringList lines = model->output().text().split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        EXPECT_TRUE(lines[i].startsWith(times[std::size_t(i)].toString("HH:mm:ss.zzz  ")))
            << lines[i].toStdString();
    }
    EXPECT_EQ(model->status(level.id)->updated, times[2]);
    EXPECT_EQ(model->status(flow.id)->updated, times[1]);
    const SampleRing& samples = *model->history().samples(level.id);
    ASSERT_GE(samples.size(), 2U);
    EXPECT_EQ(samples[samples.size() - 2].time, times[0]);
    EXPECT_EQ(samples.back(), (Sample{times[2], 3.0}));
}

// A datapoint moved to another poll is still the same datapoint: only how it is read counts.
TEST_F(PollerModelRunning, ChangingHowADatapointIsReadForgetsItsReadingsOthersKeepThem) {
    const auto same = [](Datapoint&) {};
    const auto readdress = [](Datapoint& p) { p.address = 300; };
    const std::vector<std::tuple<const char*, std::function<void(Datapoint&)>, bool, bool>> rows{
        {"address", readdress, false, true},
        {"word order", [](Datapoint& p) { p.wordOrder = WordOrder::cdab; }, false, true},
        {"scale", [](Datapoint& p) { p.scale = 0.1; }, false, true},
        {"name", [](Datapoint& p) { p.name = "Renamed"; }, false, false},
        {"format", [](Datapoint& p) { p.format = DisplayFormat::hex; }, false, false},
        {"poll", same, true, false},
        {"poll and address", readdress, true, true}};
    const std::vector<Poll> original = model->polls();
    for (const auto& [change, edit, moves, forgets] : rows) {
        answerBoth(10, 20);
        std::vector<Poll> polls = original;
        edit(polls[1].datapoints[0]);
        if (moves) {
            polls[0].datapoints.push_back(polls[1].datapoints[0]);
            polls[1].datapoints.erase(polls[1].datapoints.begin());
        }
        model->setPolls(polls);
        EXPECT_EQ(model->status(level.id) == nullptr, forgets) << change;
        EXPECT_EQ(model->history().samples(level.id) == nullptr, forgets) << change;
        EXPECT_NE(model->status(flow.id), nullptr) << change;
        model->setPolls(original);
    }
}

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
        {read, true, false,
         "← Unit 1 · FC 03 Read holding registers · 01 03 00 64 00 01 C5 D5  ←  01 03 02 01 F4 "
         "B8 53  (12 ms)\n"},
        {read, true, true, ""},
        {failedRead(points, levelOnly, PollFailure::timeout()), false, true,
         "✕ Unit 1 · FC 03 Read holding registers HR 100 · no response within 500 ms\n"}};
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
