#pragma once

#define KESTRIN_SIM KESTRIN_SIM_PATH
#include "L10n.h"
#include "Model/ModelBuilders.h"
#include "PollerCore/SimulatorProcess.h"

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QSettings>
#include <QTest>
#include <gtest/gtest.h>

namespace kestrin::TableTesting {

using namespace std::chrono_literals;

using Testing::datapoint;

// A project of one poll, Plant, holding these datapoints.
inline PollerProject project(std::vector<Datapoint> datapoints) {
    return Testing::project({Testing::poll("Plant", std::move(datapoints))});
}

// Texts compared with their English wording, whatever the machine's locale.
inline void inEnglish(const std::function<void()>& body) {
    L10n::withLanguageForTesting(Language::en, body);
}

inline bool waitUntil(const std::function<bool()>& condition,
                      std::chrono::milliseconds limit = 5s) {
    return QTest::qWaitFor(condition, static_cast<int>(limit.count()));
}

using Testing::QuietTerminal;

// A model over the project with no autosave, no preferences and no system ports.
class TableFixture : public ::testing::Test {
protected:
    std::unique_ptr<PollerModel> model;
    TemporaryFolder folder;

    PollerModel& create(PollerProject start) {
        model = Testing::makeModel(std::move(start));
        return *model;
    }

    const Poll& poll() const { return model->polls().front(); }

    void startReading(const std::string& path) {
        model->addTestDevice(path, "device");
        model->start();
        ASSERT_TRUE(model->isEngineHeld()) << model->errorMessage().value_or("");
        ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    }

    // A simulator serving the datapoints of the project, with their values.
    std::unique_ptr<SimulatorProcess> serve(const PollerProject& served) {
        const std::string path = folder.file("served.json", served.encoded());
        auto simulator =
            std::make_unique<SimulatorProcess>(std::vector<std::string>{"--project", path});
        EXPECT_FALSE(simulator->path().empty());
        return simulator;
    }
};

} // namespace kestrin::TableTesting
