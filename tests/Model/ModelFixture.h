#pragma once

#include "ChildProcess.h"
#include "ModelBuilders.h"
#include "PDU.h"
#include "RTUFrame.h"

#include <fstream>
#include <functional>

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace kestrin::ModelTesting {

using namespace std::chrono_literals;

using ChildProcess::SimulatorProcess;
using Testing::datapoint;
using Testing::holding;
using Testing::poll;
using Testing::project;

inline Bytes readRequest(const ReadBlock& block) {
    return RTUFrame::build(block.unit, PDU::read(block.table, block.address, block.count));
}

// The engine keeps running on the empty poll but never reads the switched-off one, so every
// event about these datapoints comes from the test.
inline PollerProject quietProject(std::vector<Datapoint> datapoints) {
    return project({poll("Idle", {}), poll("Points", std::move(datapoints), false)});
}

inline PollerEvent answer(const Uuid& pollID, const ReadBlock& block,
                          const std::vector<std::uint16_t>& registers, double seconds = 0.0124) {
    Bytes pdu{0x03, static_cast<std::uint8_t>(registers.size() * 2)};
    for (const std::uint16_t value : registers) {
        pdu.insert(pdu.end(), {static_cast<std::uint8_t>(value >> 8),
                               static_cast<std::uint8_t>(value & 0xFF)});
    }
    return {PollerEvent::Read{pollID, block, ReadData::registers(registers), readRequest(block),
                              RTUFrame::build(block.unit, pdu), seconds},
            std::chrono::system_clock::now()};
}

inline PollerEvent failedRead(const Uuid& pollID, const ReadBlock& block, PollFailure failure) {
    return {
        PollerEvent::Read{pollID, block, PollFailureError{failure}, readRequest(block), {}, 0.2},
        std::chrono::system_clock::now()};
}

inline PollerEvent wrote(const Uuid& token, std::optional<PollFailure> failure) {
    PollerEvent::Wrote event{token, 1, {}, {}, {}, 0.01};
    if (failure) {
        event.result = PollFailureError{*failure};
    }
    return {event, std::chrono::system_clock::now()};
}

// Runs the event loop until the condition holds or the limit passes.
inline bool waitUntil(const std::function<bool()>& condition,
                      std::chrono::milliseconds limit = 5s) {
    return QTest::qWaitFor(condition, static_cast<int>(limit.count()));
}

class ModelFixture : public ::testing::Test {
protected:
    QTemporaryDir folder;
    std::shared_ptr<FakePortRegistry::State> registry = std::make_shared<FakePortRegistry::State>();
    std::unique_ptr<PollerModel> model;

    QString file(const QString& name) const { return folder.filePath(name); }
    QString autosavePath() const { return file("Kestrin/project.json"); }
    std::string ledgerPath() const { return file("ledger.jsonl").toStdString(); }
    // The same process sees the model's changes to this file at once.
    std::unique_ptr<QSettings> preferences() const {
        return std::make_unique<QSettings>(file("preferences.ini"), QSettings::IniFormat);
    }

    // Without a project the model loads the autosave file.
    PollerModel& create(std::optional<PollerProject> start = std::nullopt) {
        PollerModel::Environment environment = Testing::environment(registry);
        if (start) {
            environment.project = std::move(start);
        } else {
            environment.autosavePath = autosavePath();
        }
        environment.preferences = preferences();
        model = std::make_unique<PollerModel>(std::move(environment));
        return *model;
    }

    void startReading(const std::string& path) {
        model->addTestDevice(path, "sim");
        model->start();
        ASSERT_TRUE(model->isEngineHeld()) << model->errorMessage().value_or("");
        ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    }

    void plug(const std::vector<FakePortRegistry::Entry>& entries) {
        registry->entries = entries;
        registry->notify();
        QTest::qWait(20);
    }

    // A simulator serving every datapoint of the project, keeping a ledger of what it receives.
    std::unique_ptr<SimulatorProcess> serve(const PollerProject& served,
                                            std::vector<std::string> options = {}) {
        const std::string path = file("served.json").toStdString();
        std::ofstream(path) << served.encoded();
        options.insert(options.begin(), {"--project", path, "--ledger", ledgerPath()});
        auto simulator = std::make_unique<SimulatorProcess>(ChildProcess::sim(std::move(options)));
        EXPECT_FALSE(simulator->port().empty());
        return simulator;
    }

    // The requests the simulator received, in order, in hexadecimal.
    std::vector<std::string> received() const {
        std::vector<std::string> frames;
        std::ifstream ledger(ledgerPath());
        for (std::string line; std::getline(ledger, line);) {
            const nlohmann::json entry = nlohmann::json::parse(line, nullptr, false);
            if (entry.is_object() && entry.value("frame", "") == "request") {
                frames.push_back(entry.value("received", ""));
            }
        }
        return frames;
    }

    long countInLog(const std::string& part) const {
        return model->output().text().count(QString::fromStdString(part));
    }
};

// Reading with an engine that reads nothing: Level and Flow are HR 100 and 101 of unit 1.
class QuietReading : public ModelFixture {
protected:
    SimulatorProcess device{ChildProcess::sim()};
    Datapoint level = holding("Level", 100);
    Datapoint flow = holding("Flow", 101);
    ReadBlock both{1, RegisterTable::holdingRegister, 100, 2};
    Uuid points;

    void SetUp() override {
        create(quietProject({level, flow}));
        points = model->polls()[1].id;
        startReading(device.port());
    }

    void send(const PollerEvent& event) { model->handleEvent(event); }
    void answerBoth(std::uint16_t levelValue, std::uint16_t flowValue) {
        send(answer(points, both, {levelValue, flowValue}));
    }
    void fail(PollFailure failure) { send(failedRead(points, both, failure)); }
};

} // namespace kestrin::ModelTesting
