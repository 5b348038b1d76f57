#include "ModelFixture.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <thread>
#include <tuple>

namespace kestrin::ModelTesting {
namespace {

class PollerModelReading : public ModelFixture {
protected:
    Datapoint level = holding("Level", 100, 500);
    Datapoint flow = holding("Flow", 101, 42);
    Datapoint far = holding("Far", 200, 777);
    PollerProject served = project({poll("Boiler", {level, flow, far})});
    PollerProject reading = project({poll("Boiler", {level, flow})});

    bool hasValue(const Datapoint& point, double value) const {
        const PointStatus* status = model->status(point.id);
        return status != nullptr && status->value == value;
    }
};

TEST_F(PollerModelReading, ValuesComeFromTheDeviceAndChangesTakeEffectWithoutARestart) {
    const auto simulator = serve(served);
    create(reading);
    startReading(simulator->port());
    ASSERT_TRUE(waitUntil([&] { return hasValue(level, 500) && hasValue(flow, 42); }));
    EXPECT_EQ(model->status(flow.id)->raw, std::vector<std::uint16_t>{42});
    EXPECT_NE(model->history().samples(level.id), nullptr);
    EXPECT_EQ(countInLog("← Unit 1 · FC 03 Read holding registers · 04 01 F4 00 2A  ("),
              model->statistics().responses);

    std::vector<Poll> polls = model->polls();
    polls[0].datapoints.push_back(far);
    model->setPolls(polls);
    ASSERT_TRUE(waitUntil([&] { return hasValue(far, 777); }));

    // Bridging the gap asks for HR 100-200 as one block of 101 registers (which the device, without
    // HR 102-199, refuses).
    model->setMaxGap(100);
    ASSERT_TRUE(waitUntil([&] {
        return std::ranges::any_of(received(), [](const std::string& frame) {
            return frame.starts_with("01 03 00 64 00 65");
        });
    }));
    EXPECT_EQ(countInLog("Reading started"), 1);
}

// A device without the registers of a bridged gap refuses the whole block; read in parts, the
// datapoints around the gap still get their values, and the split is logged once.
TEST_F(PollerModelReading, ABridgedGapTheDeviceLacksIsReadInPartsAndLoggedOnce) {
    const auto simulator = serve(project({poll("Boiler", {level, far})}));
    create(project({poll("Boiler", {level, far})}));
    model->setMaxGap(100);
    std::vector<ReadBlock> readings;
    QObject::connect(model.get(), &PollerModel::blockRead, model.get(),
                     [&](const Uuid&, const ReadBlock& block, const std::vector<Uuid>&) {
                         readings.push_back(block);
                     });
    startReading(simulator->port());
    const ReadBlock planned{1, RegisterTable::holdingRegister, 100, 101};
    ASSERT_TRUE(waitUntil([&] { return std::ranges::count(readings, planned) >= 3; }));
    model->stop();

    EXPECT_TRUE(hasValue(level, 500));
    EXPECT_TRUE(hasValue(far, 777));
    EXPECT_EQ(countInLog("⚠ Unit 1 · HR 100–200 read in parts: the device refused 101–199"), 1);
    EXPECT_EQ(countInLog("Exception 02"), 0);
    // The one refusal was a request and an exception answer; every request was answered.
    const PollerStatistics statistics = model->statistics();
    EXPECT_EQ(statistics.exceptions, 1);
    EXPECT_EQ(statistics.requests, statistics.responses);
}

// The engine answers on while the main thread is busy; a stop shows what it queued meanwhile
// before its own line, and none of it reaches the next reading.
TEST_F(PollerModelReading, AnswersStillQueuedAtStopAreShownAndNeverReachTheNextReading) {
    const auto simulator = serve(served);
    create(reading);
    const Uuid boiler = model->polls()[0].id;
    model->setInterval(boiler, 10);
    for (const bool restartAtOnce : {false, true}) {
        SCOPED_TRACE(restartAtOnce);
        const long answeredBefore = countInLog("← Unit 1");
        const std::size_t askedBefore = received().size();
        startReading(simulator->port());
        ASSERT_TRUE(waitUntil([&] { return model->statistics().responses > 0; }));
        const std::size_t asked = received().size();
        std::this_thread::sleep_for(300ms);
        ASSERT_GT(received().size(), asked + 2);

        model->stop();
        const std::string text = model->output().text().toStdString();
        // Only a request cut short by the stop may go unanswered.
        const long answers = countInLog("← Unit 1");
        EXPECT_GE(answers - answeredBefore + 1, static_cast<long>(received().size() - askedBefore));
        EXPECT_GT(text.rfind("--- Reading stopped ---"), text.rfind("← Unit 1"));
        const PollerStatistics before = model->statistics();
        if (restartAtOnce) {
            // The next reading reads nothing: every answer it would count is the old engine's.
            model->setEnabled(boiler, false);
            model->start();
        }
        QTest::qWait(100);
        EXPECT_EQ(countInLog("← Unit 1"), answers);
        EXPECT_EQ(model->statistics(), restartAtOnce ? PollerStatistics{} : before);
    }
}

// Port discovery never announces a pseudo-terminal: only the watch on the path sees it return.
TEST_F(PollerModelReading, LostPortResumesWhenItOpensAgainAtTheSamePath) {
    const std::string link = file("ttyKestrinSim").toStdString();
    auto simulator = serve(served, {"--link", link});
    create(reading);
    startReading(link);
    ASSERT_TRUE(waitUntil([&] { return hasValue(level, 500); }));

    // Killed outright, the simulator leaves its link behind, pointing at nothing.
    simulator->end(SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::serialLost; }));
    const std::int64_t responses = model->statistics().responses;

    // Listed again before the device is back: the failed restart says nothing.
    model->portsChanged({});
    QTest::qWait(150);
    EXPECT_EQ(model->state(), PollerState::serialLost);
    EXPECT_FALSE(model->errorMessage());

    simulator = serve(served, {"--link", link});
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    EXPECT_EQ(countInLog("--- Serial port open again ---"), 1);
    EXPECT_EQ(countInLog("--- Reading started on " + link), 2);
    ASSERT_TRUE(waitUntil([&] { return model->statistics().responses > responses; }));
}

SerialPortInfo ftdiAt(std::string path, std::optional<std::string> serial) {
    SerialPortInfo port{std::move(path), "FT232R USB UART", 0x0403, 0x6001, serial};
    if (serial) {
        port.byIdPath = "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_" + *serial + "-if00-port0";
    }
    return port;
}

// The adapter comes back under another name, as ttyUSB0 does as ttyUSB1: reading follows it
// there, but never to an identical adapter with another serial number or none. The scanner lists
// /dev paths only, so discovery's lists reach the model directly.
TEST_F(PollerModelReading, LostAdapterIsFollowedToItsNewNameButNotToAnIdenticalOne) {
    const std::string before = file("ttyUSB0").toStdString();
    const std::string after = file("ttyUSB1").toStdString();
    const std::string stranger = file("ttyUSB2").toStdString();
    auto simulator = serve(served, {"--link", before});
    create(reading);
    // Added before the one read from, since adding a test device selects it.
    model->addTestDevice(after, "sim");
    model->portsChanged({ftdiAt(before, "A10K3ZX")});
    startReading(before);
    ASSERT_TRUE(waitUntil([&] { return hasValue(level, 500); }));

    // Unplugged: the node goes with the adapter.
    simulator->end(SIGKILL);
    std::filesystem::remove(before);
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::serialLost; }));
    for (const SerialPortInfo& identical : {ftdiAt(stranger, "B20X"), ftdiAt(stranger, {})}) {
        model->portsChanged({identical});
        EXPECT_EQ(model->selectedPath(), before) << identical.serialNumber.value_or("none");
    }
    QTest::qWait(150);
    EXPECT_EQ(model->state(), PollerState::serialLost);
    // Both replugged, the other adapter first: it now has the lost name, and is not read.
    auto other = serve(served, {"--link", before});
    model->portsChanged({ftdiAt(before, "B20X")});
    QTest::qWait(150);
    EXPECT_EQ(model->state(), PollerState::serialLost);
    other->end(SIGKILL);
    std::filesystem::remove(before);

    simulator = serve(served, {"--link", after});
    model->portsChanged({ftdiAt(after, "A10K3ZX"), ftdiAt(stranger, "B20X")});
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    EXPECT_EQ(model->selectedPath(), after);
    EXPECT_EQ(preferences()->value("port").toString().toStdString(), after);
    EXPECT_EQ(countInLog("--- Serial port open again (now " + after + ") ---"), 1);
    EXPECT_EQ(countInLog("Reading started on " + after), 1);
}

// Adapters without serial numbers (CH340s) are told apart only by when they came: one that sat
// beside the lost adapter all along is not it, one that arrives after the loss is.
TEST_F(PollerModelReading, LostAdapterWithoutSerialIsFollowedOnlyToOneThatArrivedAfter) {
    const std::string before = file("ttyUSB0").toStdString();
    const std::string after = file("ttyUSB1").toStdString();
    const std::string beside = file("ttyUSB2").toStdString();
    const auto ch340At = [](std::string path) {
        return SerialPortInfo{std::move(path), "USB Serial", 0x1A86, 0x7523};
    };
    auto simulator = serve(served, {"--link", before});
    create(reading);
    model->addTestDevice(after, "sim");
    model->portsChanged({ch340At(before), ch340At(beside)});
    startReading(before);

    simulator->end(SIGKILL);
    std::filesystem::remove(before);
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::serialLost; }));
    model->portsChanged({ch340At(beside)});
    QTest::qWait(150);
    EXPECT_EQ(model->state(), PollerState::serialLost);
    EXPECT_EQ(model->selectedPath(), before);

    simulator = serve(served, {"--link", after});
    model->portsChanged({ch340At(beside), ch340At(after)});
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    EXPECT_EQ(model->selectedPath(), after);
}

Datapoint scaled(Datapoint point, double scale) {
    point.scale = scale;
    point.engineeringUnit = "°C";
    return point;
}

class PollerModelWrite : public ModelFixture {
protected:
    Datapoint pump = datapoint("Pump", RegisterTable::coil, 5);
    Datapoint setpoint = scaled(holding("Setpoint", 10, 0, DataType::int16), 0.1);
    Datapoint input = datapoint("Input", RegisterTable::inputRegister, 30);
    // Not served, so the device refuses it with exception 02.
    Datapoint ghost = holding("Ghost", 999);
    std::unique_ptr<SimulatorProcess> simulator;

    void SetUp() override {
        simulator = serve(quietProject({pump, setpoint, input}));
        create(quietProject({pump, setpoint, input, ghost}));
        startReading(simulator->port());
    }

    // The request as the device received it, once the outcome is in.
    std::string written(const Datapoint& point, double value) {
        const std::size_t before = received().size();
        model->write(point, value);
        EXPECT_EQ(model->pendingWrites().size(), 1U);
        EXPECT_TRUE(waitUntil([&] { return model->pendingWrites().empty(); }));
        const std::vector<std::string> frames = received();
        return frames.size() > before ? frames.back() : std::string();
    }
};

// Which request each table, type and mode gives is the request builder's test; here that the
// model's mode reaches it and the confirmed value is shown. An address the device refuses counts an
// exception and sets the write error; read-only tables are not written, and stop drops writes in
// flight.
TEST_F(PollerModelWrite, WritesFollowTheModeAndAreConfirmedRefusedOrDroppedAtStop) {
    // Requests without their CRC.
    const std::vector<std::tuple<const Datapoint*, WriteMode, double, std::string>> rows{
        {&pump, WriteMode::single, 1, "01 05 00 05 FF 00"},
        {&setpoint, WriteMode::multiple, 21.5, "01 10 00 0A 00 01 02 00 D7"}};
    for (const auto& [point, mode, value, request] : rows) {
        model->setWriteMode(mode);
        EXPECT_EQ(written(*point, value).substr(0, request.size()), request)
            << point->name << " " << value;
        EXPECT_EQ(model->status(point->id)->value, value) << point->name;
    }
    EXPECT_FALSE(model->writeError());
    EXPECT_EQ(model->history().samples(setpoint.id), nullptr);

    written(ghost, 3);
    EXPECT_EQ(model->statistics(),
              (PollerStatistics{.requests = 3, .responses = 3, .exceptions = 1}));
    EXPECT_EQ(model->writeError(), "Writing Ghost failed: Illegal data address (02).");
    EXPECT_EQ(model->status(ghost.id), nullptr);
    EXPECT_EQ(countInLog("✕ Writing Ghost failed · Illegal data address (02)"), 1);

    model->setWriteError(std::nullopt);
    model->write(input, 5);
    EXPECT_TRUE(model->pendingWrites().empty());
    EXPECT_FALSE(model->writeError());
    const PollerStatistics counted = model->statistics();
    model->write(setpoint, 12);
    model->stop();
    EXPECT_TRUE(model->pendingWrites().empty());
    // The engine may have sent the write before the stop reached it; an exchange it made is
    // counted, one it did not make is not.
    const PollerStatistics stopped = model->statistics();
    EXPECT_LE(stopped.requests - counted.requests, 1);
    const QString text = model->output().text();
    model->write(setpoint, 5);
    EXPECT_EQ(model->writeError(), "Start reading first (Ctrl+R) to write values.");
    QTest::qWait(100);
    EXPECT_EQ(model->output().text(), text);
    EXPECT_EQ(model->statistics(), stopped);
}

} // namespace
} // namespace kestrin::ModelTesting
