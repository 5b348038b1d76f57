#pragma once

#include "MainWindow.h"
#include "TableFixture.h"

#include <ostream>

#include <QApplication>
#include <QString>

// Failures show texts as text.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace kestrin::ShellTesting {

using namespace std::chrono_literals;
using TableTesting::datapoint;
using TableTesting::inEnglish;
using TableTesting::QuietTerminal;
using TableTesting::waitUntil;

// A model over a chosen project and chosen system ports, without autosave or preferences.
inline std::unique_ptr<PollerModel> makeModel(PollerProject project,
                                              std::vector<std::string> portPaths = {}) {
    auto ports = std::make_shared<FakePortRegistry::State>();
    for (std::string& path : portPaths) {
        ports->entries->push_back({std::move(path), {}});
    }
    PollerModel::Environment environment;
    environment.project = std::move(project);
    environment.scanner =
        std::make_unique<PortScanner>(std::make_unique<FakePortRegistry>(ports), 0ms);
    environment.delays = {.resume = 50ms, .autosave = 100ms, .publication = 30ms};
    return std::make_unique<PollerModel>(std::move(environment));
}

// A project of named polls; each poll gets the datapoints given for it.
inline PollerProject projectOf(std::vector<Poll> polls) {
    PollerProject project;
    project.timeoutMs = 200;
    project.polls = std::move(polls);
    return project;
}

inline Poll pollOf(std::string name, std::vector<Datapoint> datapoints, bool enabled = true) {
    Poll poll;
    poll.name = std::move(name);
    poll.intervalMs = 100;
    poll.enabled = enabled;
    poll.datapoints = std::move(datapoints);
    return poll;
}

// A shown main window that has the keyboard, so shortcuts reach it.
inline void activate(QWidget& window) {
    window.show();
    QApplication::setActiveWindow(&window);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
}

} // namespace kestrin::ShellTesting
