#pragma once

#include "FakePortRegistry.h"
#include "PollerModel.h"
#include "PortScanner.h"
#include "QuietTerminal.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kestrin::Testing {

using namespace std::chrono_literals;

// A bit keeps its boolean type whatever type is asked for.
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

inline Datapoint holding(std::string name, std::uint16_t address, double value = 0,
                         DataType type = DataType::uint16) {
    return datapoint(std::move(name), RegisterTable::holdingRegister, address, type, value);
}

// A short interval, so that a reading test sees several rounds within its wait.
inline Poll poll(std::string name, std::vector<Datapoint> datapoints, bool enabled = true) {
    Poll made;
    made.name = std::move(name);
    made.intervalMs = 100;
    made.enabled = enabled;
    made.datapoints = std::move(datapoints);
    return made;
}

// A short time-out, so that a silent device fails well within a test's wait.
inline PollerProject project(std::vector<Poll> polls) {
    PollerProject made;
    made.timeoutMs = 200;
    made.polls = std::move(polls);
    return made;
}

// System ports at these paths, none of them a USB adapter.
inline std::shared_ptr<FakePortRegistry::State> portsAt(std::vector<std::string> paths) {
    auto ports = std::make_shared<FakePortRegistry::State>();
    for (std::string& path : paths) {
        ports->entries->push_back({std::move(path), {}});
    }
    return ports;
}

// No autosave, no preferences, no project yet, the fake's ports at once and short delays.
inline PollerModel::Environment environment(
    std::shared_ptr<FakePortRegistry::State> ports = std::make_shared<FakePortRegistry::State>()) {
    PollerModel::Environment made;
    made.scanner =
        std::make_unique<PortScanner>(std::make_unique<FakePortRegistry>(std::move(ports)), 0ms);
    made.delays = {.resume = 50ms, .autosave = 100ms, .publication = 30ms};
    return made;
}

inline std::unique_ptr<PollerModel> makeModel(
    PollerProject start,
    std::shared_ptr<FakePortRegistry::State> ports = std::make_shared<FakePortRegistry::State>()) {
    PollerModel::Environment made = environment(std::move(ports));
    made.project = std::move(start);
    return std::make_unique<PollerModel>(std::move(made));
}

} // namespace kestrin::Testing
