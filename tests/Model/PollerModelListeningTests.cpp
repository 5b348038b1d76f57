#include "ModelFixture.h"

#include <filesystem>
#include <optional>
#include <tuple>

namespace kestrin::ModelTesting {
namespace {

class PollerModelListening : public ModelFixture {
protected:
    SimulatorProcess device{ChildProcess::sim()};

    void startListening(const std::string& path) {
        model->addTestDevice(path, "sim");
        model->listen();
        ASSERT_TRUE(model->isEngineHeld()) << model->errorMessage().value_or("");
        ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::listening; }));
    }
};

// Listening needs only a port; reading's start and toggle leave it alone, and writes are refused
// with the banner's reason. A reading's time-out offer is gone once listening begins.
TEST_F(PollerModelListening, NeedsOnlyAPortKeepsReadingOutRefusesWritesAndStopsOnce) {
    const Datapoint level = holding("Level", 100);
    create(project({poll("Off", {level}, false)}));
    const std::string missing = file("ttyGone").toStdString();
    model->addTestDevice(missing, "gone");
    model->listen();
    EXPECT_NE(model->errorMessage().value_or("").find(missing), std::string::npos);
    EXPECT_FALSE(model->isListening());

    model->addTestDevice(device.port(), "quiet");
    EXPECT_EQ(model->startObstacle(), PollerModel::StartObstacle::nothingToRead);
    EXPECT_EQ(model->listenObstacle(), std::nullopt);
    model->start();
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    model->listen();
    EXPECT_FALSE(model->isListening());
    for (std::int64_t i = 0; i < TimeoutOffer::answersNeeded; ++i) {
        model->handleEvent(
            answer(model->polls()[0].id, {1, RegisterTable::holdingRegister, 100, 1}, {7}));
    }
    ASSERT_TRUE(model->timeoutOffer().has_value());
    model->stop();
    model->clearLog();

    model->toggleListening();
    EXPECT_FALSE(model->timeoutOffer().has_value());
    EXPECT_TRUE(model->isListening());
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::listening; }));
    EXPECT_EQ(countInLog("--- Listening on " + device.port() + " @ 9600 8E1 ---"), 1);
    model->start();
    model->toggle();
    model->write(level, 5);
    EXPECT_EQ(model->writeError(), "Kestrin is only listening and sends nothing. Stop listening "
                                   "(Ctrl+L) and start reading to write values.");
    EXPECT_TRUE(model->pendingWrites().empty());
    EXPECT_EQ(model->state(), PollerState::listening);
    EXPECT_EQ(countInLog("Reading started"), 0);

    // A view redrawn on the state change must already see a stopped listener.
    std::optional<bool> listeningWhenStopped;
    QObject::connect(model.get(), &PollerModel::stateChanged,
                     [&] { listeningWhenStopped = model->isListening(); });
    model->toggleListening();
    model->stop();
    EXPECT_EQ(listeningWhenStopped, false);
    EXPECT_EQ(model->state(), PollerState::stopped);
    EXPECT_EQ(countInLog("--- Listening stopped ---"), 1);
    EXPECT_EQ(countInLog("Reading stopped"), 0);
}

// A port back before the engine noticed its loss: nothing will announce its return, so it is
// reopened at once, in the mode it was lost in; reading comes back the same way. Port discovery
// never announces a pseudo-terminal: a link made anew counts as back.
TEST_F(PollerModelListening, APortLostWhileListeningResumesListening) {
    const std::string link = file("ttyKestrinSim").toStdString();
    const SimulatorProcess linked{ChildProcess::sim({"--link", link})};
    create(project({}));
    startListening(link);
    const std::filesystem::path target = std::filesystem::read_symlink(link);
    std::filesystem::remove(link);
    std::filesystem::create_symlink(target, link);

    model->handleEvent({PollerEvent::SerialLost{link}});
    EXPECT_EQ(model->state(), PollerState::serialLost);
    EXPECT_TRUE(model->isListening());
    model->toggle();
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::listening; }));
    EXPECT_EQ(countInLog("--- Serial port open again ---"), 1);
    EXPECT_EQ(countInLog("--- Listening on " + link), 2);
    EXPECT_EQ(countInLog("Reading started"), 0);
    model->toggleListening();
    EXPECT_EQ(countInLog("--- Listening stopped ---"), 1);
}

// Level and Flow (HR 100-101) and the Setpoint (HR 10, tenths of °C) in one poll; Flow's
// mirror and unit 2's HR 100 in another; a switched-off poll with HR 100 as well.
class HeardTraffic : public PollerModelListening {
protected:
    Datapoint level = holding("Level", 100, 0);
    Datapoint flow = holding("Flow", 101);
    Datapoint setpoint = holding("Setpoint", 10, 0, DataType::int16);
    Datapoint mirror = holding("Mirror", 101);
    Datapoint elsewhere = holding("Elsewhere", 100);
    Datapoint hidden = holding("Hidden", 100);
    ReadBlock both{1, RegisterTable::holdingRegister, 100, 2};
    PollerEvent::Time now = std::chrono::system_clock::now();
    QDateTime answered = QDateTime::fromMSecsSinceEpoch(
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count());

    void SetUp() override {
        setpoint.scale = 0.1;
        setpoint.engineeringUnit = "°C";
        elsewhere.unitID = 2;
        create(project({poll("Boiler", {level, flow, setpoint}),
                        poll("Mirror", {mirror, elsewhere}), poll("Off", {hidden}, false)}));
        model->setShowTimestamps(false);
        startListening(device.port());
        model->clearLog();
    }

    // The request came 12 ms before its answer.
    void send(PollerEvent::Heard heard) {
        heard.requestTime = now - 12ms;
        model->handleEvent({std::move(heard), now});
    }
    std::optional<PointStatus> statusOf(const Datapoint& point) const {
        const PointStatus* status = model->status(point.id);
        return status != nullptr ? std::optional(*status) : std::nullopt;
    }
    // The whole log after the event.
    std::string logOf(const PollerEvent::Case& event) {
        model->clearLog();
        if (const auto* heard = std::get_if<PollerEvent::Heard>(&event)) {
            send(*heard);
        } else {
            model->handleEvent({event, now});
        }
        return model->output().text().toStdString();
    }
};

PollerEvent::Heard heardRead(const ReadBlock& block, const std::vector<std::uint16_t>& registers) {
    const PollerEvent::Read read = *answer({}, block, registers).as<PollerEvent::Read>();
    return {read.request, read.response, block, std::optional(read.result.value()),
            false,        read.duration};
}

PollerEvent::Heard heardFailure(const ReadBlock& block, PollFailure failure, Bytes response = {}) {
    return {.request = readRequest(block),
            .response = std::move(response),
            .range = block,
            .outcome = PollFailureError{failure}};
}

// A write of 21.5 °C to the Setpoint as unit sees it, answered with its echo unless failure.
PollerEvent::Heard heardWrite(std::uint8_t unit, std::optional<PollFailure> failure) {
    const Bytes request = RTUFrame::build(unit, PDU::writeSingleRegister(10, 215));
    PollerEvent::Heard heard;
    heard.request = request;
    heard.range = ReadBlock{unit, RegisterTable::holdingRegister, 10, 1};
    heard.isWrite = true;
    heard.duration = 0.015;
    if (failure) {
        heard.outcome = PollFailureError{*failure};
    } else if (unit == 0) {
        heard.outcome = std::optional<ReadData>();
    } else {
        heard.response = request;
        heard.outcome = std::optional(ReadData::registers({215}));
    }
    return heard;
}

// Every enabled poll takes what the answer covers, dated by the event, and the log shows both
// directions at their arrival times.
TEST_F(HeardTraffic, AHeardReadGivesEveryEnabledPollItsValuesAtTheArrivalTimes) {
    const std::optional<PointStatus> untouched = statusOf(elsewhere);
    model->setShowTimestamps(true);
    send(heardRead(both, {5, 7}));

    EXPECT_EQ(*model->status(level.id), (PointStatus{5.0, {5}, std::nullopt, answered, 0.0124}));
    EXPECT_EQ(model->status(flow.id)->value, 7.0);
    EXPECT_EQ(model->status(mirror.id)->value, 7.0);
    EXPECT_EQ(model->history().samples(mirror.id)->back(), (Sample{answered, 7.0}));
    EXPECT_EQ(model->status(hidden.id), nullptr);
    EXPECT_EQ(statusOf(elsewhere), untouched);
    EXPECT_EQ(model->statistics(), (PollerStatistics{.requests = 1, .responses = 1}));
    const QString stamp = "HH:mm:ss.zzz  ";
    EXPECT_EQ(model->output().text(),
              answered.addMSecs(-12).toString(stamp) +
                  "→ Unit 1 · FC 03 Read holding registers · HR 100–101\n" +
                  answered.toString(stamp) +
                  "← Unit 1 · FC 03 Read holding registers · 04 00 05 00 07  (12 ms)\n");
}

// Lines without a range leave it out; bytes that fit no request are shown whatever the options.
TEST_F(HeardTraffic, HeardLinesFollowTheOptionsAndUnmatchedBytesAreAlwaysShown) {
    const PollerEvent::Heard read = heardRead(both, {5, 7});
    const PollerEvent::Heard silent = heardFailure(both, PollFailure::timeout());
    PollerEvent::Heard diagnostics;
    diagnostics.request = RTUFrame::build(1, Bytes{0x08, 0x00, 0x00, 0x12, 0x34});
    diagnostics.outcome = PollFailureError{PollFailure::timeout()};
    const PollerEvent::Unmatched stray{{0x01, 0x03, 0x02, 0x00, 0x07}};
    const std::string noResponse =
        "✕ Unit 1 · FC 03 Read holding registers HR 100–101 · No response\n";
    const Bytes broken{0x01, 0x83, 0x02, 0x00, 0x00};
    const PollerEvent::Heard defective = heardFailure(both, PollFailure::crcMismatch(), broken);
    const std::string request = hexString(defective.request);
    const std::vector<std::tuple<PollerEvent::Case, bool, bool, std::string>> rows{
        {defective, true, false,
         "→ Unit 1 · FC 03 Read holding registers · " + request +
             "\n✕ Unit 1 · FC 03 Read holding registers HR 100–101 · CRC error in the response\n" +
             "  → " + request + "  ← 01 83 02 00 00\n"},
        {read, false, true, ""},
        {silent, false, false,
         "→ Unit 1 · FC 03 Read holding registers · HR 100–101\n" + noResponse},
        {silent, true, true, noResponse},
        {diagnostics, false, false,
         "→ Unit 1 · FC 08 Diagnostics\n✕ Unit 1 · FC 08 Diagnostics · No response\n"},
        {stray, false, true, "⚠ Fits no request · 01 03 02 00 07\n"}};
    for (const auto& [event, rawFrames, onlyProblems, text] : rows) {
        model->setShowRawFrames(rawFrames);
        model->setLogOnlyProblems(onlyProblems);
        EXPECT_EQ(logOf(event), text) << text;
    }
    EXPECT_EQ(model->statistics(), PollerStatistics{});
}

// A failed read marks what it covers and keeps the values; the counters are reading's, but the
// no-response hint, whose advice is for the master, stays hidden.
TEST_F(HeardTraffic, FailedRequestsAreCountedAndMarkedWithoutTheNoResponseHint) {
    send(heardRead(both, {5, 7}));
    const std::vector<std::tuple<PollFailure, Bytes, PollerStatistics, std::string>> rows{
        {PollFailure::exception(2),
         {0x01, 0x83, 0x02, 0xC0, 0xF1},
         {.requests = 1, .responses = 1, .exceptions = 1},
         "✕ Unit 1 · FC 03 Read holding registers HR 100–101 · Illegal data address (02)"},
        {PollFailure::crcMismatch(),
         {0x01, 0x03, 0x04, 0x00, 0x05, 0x00, 0x07, 0x00, 0x00},
         {.requests = 1, .errors = 1},
         "HR 100–101 · CRC error in the response"},
        {PollFailure::timeout(), {}, {.requests = 1, .timeouts = 1}, "HR 100–101 · No response"}};
    for (const auto& [failure, response, counted, line] : rows) {
        model->clearLog();
        send(heardFailure(both, failure, response));
        EXPECT_EQ(model->statistics(), counted) << line;
        EXPECT_EQ(countInLog(line), 1) << line;
        EXPECT_EQ(model->status(level.id)->failure, failure) << line;
        EXPECT_EQ(model->status(mirror.id)->value, 7.0) << line;
    }
    for (int i = 0; i < 3; ++i) {
        send(heardFailure(both, PollFailure::timeout()));
    }
    EXPECT_FALSE(model->showNoResponseHint());
}

// A confirmed write sets the datapoint it wrote as Kestrin's own confirmed write does, without a
// sample; a broadcast, answered by nobody, and a failed write leave it as it was.
TEST_F(HeardTraffic, OnlyAConfirmedHeardWriteSetsTheDatapoint) {
    const std::string request = "→ Unit 1 · FC 06 Write single register · HR 10\n";
    const std::vector<
        std::tuple<std::uint8_t, std::optional<PollFailure>, PollerStatistics, std::string>>
        rows{{0, std::nullopt, {.requests = 1}, "→ Unit 0 · FC 06 Write single register · HR 10\n"},
             {1,
              PollFailure::timeout(),
              {.requests = 1, .timeouts = 1},
              request + "✕ Unit 1 · FC 06 Write single register HR 10 · No response\n"},
             {1,
              std::nullopt,
              {.requests = 1, .responses = 1},
              request + "← Unit 1 · FC 06 Write single register · 00 0A 00 D7  (15 ms)\n" +
                  "✎ Unit 1 · Setpoint = 21.5 °C  (15 ms)\n"}};
    for (const auto& [unit, failure, counted, text] : rows) {
        const std::optional<PointStatus> before = statusOf(setpoint);
        EXPECT_EQ(logOf(heardWrite(unit, failure)), text);
        EXPECT_EQ(model->statistics(), counted) << text;
        if (unit == 0 || failure) {
            EXPECT_EQ(statusOf(setpoint), before) << text;
        }
    }
    EXPECT_EQ(*model->status(setpoint.id), (PointStatus{21.5, {}, std::nullopt, answered, 0}));
    EXPECT_EQ(model->history().samples(setpoint.id), nullptr);
}

} // namespace
} // namespace kestrin::ModelTesting
