#pragma once

#include "Ports/FakePortRegistry.h"

#define KESTRIN_SIM KESTRIN_SIM_PATH
#include "L10n.h"
#include "PollerCore/SimulatorProcess.h"
#include "PollerModel.h"
#include "PortScanner.h"

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

inline Datapoint datapoint(std::string name, RegisterTable table, std::uint16_t address,
                           DataType type = DataType::uint16, double value = 0) {
    Datapoint point;
    point.name = std::move(name);
    point.setTable(table);
    point.address = address;
    if (!table.isBit()) {
        point.dataType = type;
    }
    point.value = value;
    return point;
}

inline PollerProject project(std::vector<Datapoint> datapoints, std::int64_t intervalMs = 100) {
    Poll poll;
    poll.name = "Plant";
    poll.intervalMs = intervalMs;
    poll.datapoints = std::move(datapoints);
    PollerProject made;
    made.timeoutMs = 500;
    made.polls = {poll};
    return made;
}

// Texts compared with their English wording, whatever the machine's locale.
inline void inEnglish(const std::function<void()>& body) {
    L10n::withLanguageForTesting(Language::en, body);
}

inline bool waitUntil(const std::function<bool()>& condition,
                      std::chrono::milliseconds limit = 5s) {
    return QTest::qWaitFor(condition, static_cast<int>(limit.count()));
}

// A pseudo-terminal nobody answers on: the engine runs, and every reading is the test's own.
class QuietTerminal {
public:
    QuietTerminal()
        : master_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (master_ >= 0 && ::grantpt(master_) == 0 && ::unlockpt(master_) == 0) {
            path_ = ::ptsname(master_);
        }
    }
    ~QuietTerminal() {
        if (master_ >= 0) {
            ::close(master_);
        }
    }
    QuietTerminal(const QuietTerminal&) = delete;
    QuietTerminal& operator=(const QuietTerminal&) = delete;

    const std::string& path() const { return path_; }

private:
    int master_;
    std::string path_;
};

// A model over the project with no autosave, no preferences and no system ports.
class TableFixture : public ::testing::Test {
protected:
    std::unique_ptr<PollerModel> model;
    TemporaryFolder folder;

    PollerModel& create(PollerProject start) {
        PollerModel::Environment environment;
        environment.project = std::move(start);
        environment.scanner = std::make_unique<PortScanner>(
            std::make_unique<FakePortRegistry>(std::make_shared<FakePortRegistry::State>()), 0ms);
        environment.delays = {.resume = 50ms, .autosave = 100ms, .publication = 30ms};
        model = std::make_unique<PollerModel>(std::move(environment));
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
