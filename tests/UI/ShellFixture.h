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
using TableTesting::QuietTerminal;
using TableTesting::simulatorCommand;
using TableTesting::SimulatorProcess;
using TableTesting::waitUntil;
using Testing::datapoint;
using Testing::makeModel;
using Testing::poll;
using Testing::portsAt;
using Testing::project;

// A shown main window that has the keyboard, so shortcuts reach it.
inline void activate(QWidget& window) {
    window.show();
    QApplication::setActiveWindow(&window);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
}

} // namespace kestrin::ShellTesting
