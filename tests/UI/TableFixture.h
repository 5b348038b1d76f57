#pragma once

#define KESTRIN_SIM KESTRIN_SIM_PATH
#include "Driving.h"
#include "L10n.h"
#include "Model/ModelFixture.h"
#include "Model/TestFiles.h"

#include <chrono>
#include <functional>
#include <vector>

#include <QTest>
#include <gtest/gtest.h>

namespace kestrin::TableTesting {

using namespace std::chrono_literals;

using ModelTesting::simulatorCommand;
using ModelTesting::SimulatorProcess;
using ModelTesting::waitUntil;
using Testing::datapoint;

// A project of one poll, Plant, holding these datapoints.
inline PollerProject project(std::vector<Datapoint> datapoints) {
    return Testing::project({Testing::poll("Plant", std::move(datapoints))});
}

using Testing::QuietTerminal;

// A model with no autosave and no system ports, its preferences in the test's own folder.
class TableFixture : public ModelTesting::ModelFixture {
protected:
    const Poll& poll() const { return model->polls().front(); }
};

} // namespace kestrin::TableTesting
