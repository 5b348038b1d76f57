#include "ModelFixture.h"

namespace kestrin::ModelTesting {
namespace {

const std::string stoppedLine = "--- Reading stopped ---";
const PollFailure timeout = PollFailure::timeout();
const PollFailure crc = PollFailure::crcMismatch();

class PollerModelStart : public ModelFixture {};

TEST_F(PollerModelStart, NeedsAPortThatOpens) {
    create(quietProject({holding("Level", 100)}));
    model->start();
    EXPECT_EQ(model->errorMessage(), "Select a serial port first.");
    EXPECT_TRUE(model->outputIsEmpty());

    const std::string missing = file("ttyGone").toStdString();
    model->addTestDevice(missing, "gone");
    model->start();
    ASSERT_TRUE(model->errorMessage());
    EXPECT_NE(model->errorMessage()->find(missing), std::string::npos) << *model->errorMessage();
    EXPECT_EQ(model->state(), PollerState::stopped);
    EXPECT_FALSE(model->isEngineHeld());
}

TEST_F(PollerModelStart, RunsOnStartedIgnoresASecondStartAndStopsOnce) {
    SimulatorProcess device{std::vector<std::string>{}};
    create(quietProject({holding("Level", 100)}));
    model->addTestDevice(device.path(), "quiet");
    model->start();
    EXPECT_TRUE(model->isEngineHeld());
    EXPECT_EQ(model->state(), PollerState::stopped);
    EXPECT_EQ(countLines("Reading started"), 0);
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    EXPECT_EQ(countLines("--- Reading started on " + device.path() + " @ 9600 8E1 ---"), 1);

    model->handleEvent(failedRead(model->polls()[1].id, {}, timeout));
    model->start();
    QTest::qWait(50);
    EXPECT_EQ(model->statistics().timeouts, 1);
    EXPECT_EQ(countLines("Reading started"), 1);

    model->stop();
    EXPECT_EQ(model->state(), PollerState::stopped);
    EXPECT_FALSE(model->isEngineHeld());
    const QString text = model->output().text();
    model->stop();
    EXPECT_EQ(model->output().text(), text);
    EXPECT_EQ(countLines(stoppedLine), 1);
}

class PollerModelRunning : public QuietReading {};

TEST_F(PollerModelRunning, EventsAfterStopChangeNothing) {
    answerBoth(1, 2);
    model->stop();
    const PollerStatistics statistics = model->statistics();
    const auto status = model->status();
    const QString text = model->output().text();
    const std::vector<PollerEvent> late{
        answer(points, both, {7, 8}), failedRead(points, both, timeout),
        wrote(Uuid::random(), std::nullopt), PollerEvent{PollerEvent::Started{}},
        PollerEvent{PollerEvent::SerialLost{device.path()}}};
    for (const PollerEvent& event : late) {
        send(event);
        EXPECT_EQ(model->statistics(), statistics);
        EXPECT_EQ(model->status(), status);
        EXPECT_EQ(model->output().text(), text);
        EXPECT_EQ(model->state(), PollerState::stopped);
    }
}

TEST_F(PollerModelRunning, LostPortDropsTheEngineRefusesStartAndWritesThenStops) {
    send({PollerEvent::SerialLost{device.path()}});
    EXPECT_EQ(model->state(), PollerState::serialLost);
    EXPECT_FALSE(model->isEngineHeld());
    EXPECT_EQ(countLines("Serial port " + device.path() + " is gone; waiting for it to return"), 1);

    model->start();
    EXPECT_EQ(model->state(), PollerState::serialLost);
    EXPECT_FALSE(model->isEngineHeld());
    model->write(level, 5);
    EXPECT_EQ(model->writeError(), "Start reading first (Ctrl+R) to write values.");
    EXPECT_TRUE(model->pendingWrites().empty());

    model->stop();
    EXPECT_EQ(model->state(), PollerState::stopped);
    EXPECT_EQ(countLines(stoppedLine), 1);
}

TEST_F(PollerModelRunning, ReadOfARemovedPollCountsOneRequestOnly) {
    const QString text = model->output().text();
    send(answer(Uuid::random(), both, {1, 2}));
    send(failedRead(Uuid::random(), both, timeout));
    EXPECT_EQ(model->statistics(), (PollerStatistics{.requests = 2}));
    EXPECT_TRUE(model->status().empty());
    EXPECT_EQ(model->output().text(), text);
}

TEST_F(PollerModelRunning, EachFailureGrowsItsCounter) {
    const std::vector<std::pair<PollFailure, PollerStatistics>> rows{
        {PollFailure::exception(2), {.requests = 1, .responses = 1, .exceptions = 1}},
        {timeout, {.requests = 1, .timeouts = 1}},
        {crc, {.requests = 1, .errors = 1}},
        {PollFailure::malformed(), {.requests = 1, .errors = 1}},
        {PollFailure::unexpectedUnit(9), {.requests = 1, .errors = 1}},
        {PollFailure::unexpectedFunction(0x04), {.requests = 1, .errors = 1}},
    };
    for (const auto& [failure, expected] : rows) {
        model->clearLog();
        fail(failure);
        EXPECT_EQ(model->statistics(), expected) << static_cast<int>(failure.kind);
        model->clearLog();
        send(wrote(Uuid::random(), failure));
        EXPECT_EQ(model->statistics(), expected) << static_cast<int>(failure.kind);
    }
}

TEST_F(PollerModelRunning, NoResponseHintNeedsThreeTimeoutsOrCRCErrorsInARow) {
    const PollerEvent ok = answer(points, both, {1, 2});
    const auto read = [&](PollFailure failure) { return failedRead(points, both, failure); };
    const PollerEvent exception = read(PollFailure::exception(2));
    const struct {
        const char* sequence;
        std::vector<PollerEvent> events;
        bool hint;
    } rows[] = {
        {"two timeouts", {read(timeout), read(timeout)}, false},
        {"three timeouts", {read(timeout), read(timeout), read(timeout)}, true},
        {"CRC errors count too", {read(crc), read(timeout), read(crc)}, true},
        {"an exception does not reset",
         {read(timeout), read(timeout), exception, read(timeout)},
         true},
        {"a malformed answer neither counts nor resets",
         {read(timeout), read(PollFailure::malformed()), read(timeout),
          read(PollFailure::malformed())},
         false},
        {"a success resets", {read(timeout), read(timeout), ok, read(timeout)}, false},
        {"a written value resets",
         {read(timeout), read(timeout), wrote(Uuid::random(), std::nullopt), read(timeout)},
         false},
        {"failed writes count", {wrote(Uuid::random(), timeout), read(timeout), read(crc)}, true},
    };
    for (const auto& row : rows) {
        model->stop();
        startReading(device.path());
        for (const PollerEvent& event : row.events) {
            send(event);
        }
        EXPECT_EQ(model->showNoResponseHint(), row.hint) << row.sequence;
    }
}

TEST_F(PollerModelRunning, DismissedHintStaysHiddenUntilTheNextStart) {
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
    startReading(device.path());
    EXPECT_EQ(model->statistics(), PollerStatistics{});
    EXPECT_TRUE(threeTimeouts());
    model->stop();
    EXPECT_FALSE(model->showNoResponseHint());
}

TEST_F(PollerModelRunning, FailedReadKeepsTheLastValueAndRecordsNoSample) {
    send(answer(points, {1, RegisterTable::holdingRegister, 100, 1}, {500}, 0.02));
    const PointStatus good = *model->status(level.id);
    EXPECT_EQ(good, (PointStatus{500.0, {500}, std::nullopt, good.updated, 0.02}));
    ASSERT_TRUE(good.updated);
    QTest::qWait(5);

    fail(timeout);
    const PointStatus failed = *model->status(level.id);
    EXPECT_EQ(failed.value, 500.0);
    EXPECT_EQ(failed.raw, std::vector<std::uint16_t>{500});
    EXPECT_EQ(failed.failure, timeout);
    EXPECT_EQ(failed.duration, 0.02);
    EXPECT_GT(*failed.updated, *good.updated);
    EXPECT_EQ(model->history().samples(level.id)->size(), 1U);
    EXPECT_EQ(*model->status(flow.id), (PointStatus{{}, {}, timeout, failed.updated, 0}));
}

TEST_F(PollerModelRunning, ChangingHowADatapointIsReadForgetsItsReadingsOthersKeepThem) {
    const struct {
        const char* change;
        std::function<void(Datapoint&)> edit;
        bool forgets;
    } rows[] = {
        {"unit", [](Datapoint& p) { p.unitID = 2; }, true},
        {"table", [](Datapoint& p) { p.setTable(RegisterTable::inputRegister); }, true},
        {"address", [](Datapoint& p) { p.address = 300; }, true},
        {"data type", [](Datapoint& p) { p.dataType = DataType::int16; }, true},
        {"word order", [](Datapoint& p) { p.wordOrder = WordOrder::cdab; }, true},
        {"scale", [](Datapoint& p) { p.scale = 0.1; }, true},
        {"name", [](Datapoint& p) { p.name = "Renamed"; }, false},
        {"unit text", [](Datapoint& p) { p.engineeringUnit = "bar"; }, false},
        {"format", [](Datapoint& p) { p.format = DisplayFormat::hex; }, false},
        {"notes", [](Datapoint& p) { p.notes = "checked"; }, false},
        {"simulation", [](Datapoint& p) { p.simulation.kind = Simulation::Kind::ramp; }, false},
    };
    const std::vector<Poll> original = model->polls();
    for (const auto& row : rows) {
        answerBoth(10, 20);
        std::vector<Poll> polls = model->polls();
        row.edit(polls[1].datapoints[0]);
        model->setPolls(polls);
        EXPECT_EQ(model->status(level.id) == nullptr, row.forgets) << row.change;
        EXPECT_EQ(model->history().samples(level.id) == nullptr, row.forgets) << row.change;
        EXPECT_NE(model->status(flow.id), nullptr) << row.change;
        model->setPolls(original);
    }
}

} // namespace
} // namespace kestrin::ModelTesting
