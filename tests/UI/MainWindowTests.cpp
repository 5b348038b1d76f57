#include "BottomPane.h"
#include "HelpWindow.h"
#include "LogPalette.h"
#include "MessageBoxClick.h"
#include "PollTabBar.h"
#include "ShellFixture.h"
#include "TopBar.h"

#include <QAction>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>

namespace kestrin::ShellTesting {
namespace {

QPushButton* startButton(const MainWindow& window) {
    return window.findChild<QPushButton*>(QStringLiteral("startStopButton"));
}

// Which situations allow a start is the model's rule; here only that the window follows it.
TEST(MainWindowStart, CtrlRDoesNothingWithoutAPortThenReadsTheSimulatorAndStopsAgain) {
    SimulatorProcess simulator(simulatorCommand());
    ASSERT_FALSE(simulator.port().empty());
    auto model = makeModel(PollerProject::firstRun());
    MainWindow window(*model);
    activate(window);
    QPushButton* button = startButton(window);
    EXPECT_FALSE(button->isEnabled());
    EXPECT_FALSE(window.startStopAction()->isEnabled());
    QTest::keyClick(&window, Qt::Key_R, Qt::ControlModifier);
    EXPECT_FALSE(model->isEngineHeld());

    model->addTestDevice(simulator.port(), "simulator");
    ASSERT_TRUE(waitUntil([&] { return window.startStopAction()->isEnabled(); }));
    const QColor stoppedTint = button->palette().color(QPalette::Button);
    ASSERT_TRUE(button->isEnabled());
    EXPECT_EQ(button->text(), "Start");
    EXPECT_EQ(window.startStopAction()->text(), "Start");
    EXPECT_EQ(window.windowTitle(), "Kestrin — Stopped");

    QTest::keyClick(&window, Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }))
        << model->errorMessage().value_or("");
    EXPECT_EQ(button->text(), "Stop");
    EXPECT_EQ(button->toolTip(), "Stop reading (Ctrl+R)");
    EXPECT_EQ(window.startStopAction()->text(), "Stop");
    EXPECT_EQ(window.windowTitle(), "Kestrin — Reading");
    EXPECT_EQ(button->palette().color(QPalette::Button), LogPalette::fillOrange());
    ASSERT_TRUE(waitUntil([&] { return model->statistics().responses > 0; }));

    QTest::keyClick(&window, Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::stopped; }));
    EXPECT_EQ(button->text(), "Start");
    EXPECT_EQ(button->toolTip(), "Start reading (Ctrl+R)");
    EXPECT_EQ(window.startStopAction()->text(), "Start");
    EXPECT_EQ(window.windowTitle(), "Kestrin — Stopped");
    EXPECT_EQ(button->palette().color(QPalette::Button), stoppedTint);
}

TEST(MainWindowAlert, ShowsTheErrorAndClearsItWhenDismissed) {
    auto model = makeModel(PollerProject::firstRun());
    MainWindow window(*model);
    window.show();
    model->start(); // no port chosen
    QMessageBox* alert = window.errorAlert();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->windowTitle(), "Something went wrong");
    EXPECT_EQ(alert->text(), "Select a serial port first.");
    QTest::mouseClick(alert->findChild<QPushButton*>(QStringLiteral("errorAlertOK")),
                      Qt::LeftButton);
    EXPECT_TRUE(waitUntil([&] { return window.errorAlert() == nullptr; }));
    EXPECT_FALSE(model->errorMessage().has_value());
}

TEST(MainWindowMenus, CarryEveryCommandWithItsShortcutAndTheLogTogglesFollowTheModel) {
    auto model = makeModel(PollerProject::firstRun());
    MainWindow window(*model);
    std::map<QString, QString> shortcuts;
    QAction* timestamps = nullptr;
    for (QAction* menu : window.menuBar()->actions()) {
        for (QAction* action : menu->menu()->actions()) {
            if (!action->isSeparator()) {
                shortcuts[action->text()] = action->shortcut().toString(QKeySequence::NativeText);
            }
            if (action->text() == "Timestamps") {
                timestamps = action;
            }
        }
    }
    const std::map<QString, QString> expected{
        {"New Project", "Ctrl+N"},
        {"Open Project…", "Ctrl+O"},
        {"Save Project As…", "Ctrl+Shift+S"},
        {"Save Log…", "Ctrl+S"},
        {"Import Datapoints (CSV)…", "Ctrl+Shift+I"},
        {"Export Datapoints (CSV)…", "Ctrl+Shift+E"},
        {"Quit", "Ctrl+Q"},
        {"Start", "Ctrl+R"},
        {"New Poll", "Ctrl+T"},
        {"Datapoint", "Ctrl+Shift+D"},
        {"Export History (CSV)…", ""},
        {"Clear Log", "Ctrl+K"},
        {"Autoscroll", ""},
        {"Timestamps", ""},
        {"Show raw RTU frames", ""},
        {"Log only errors and writes", ""},
        {"Kestrin Help", "F1"},
    };
    EXPECT_EQ(shortcuts, expected);

    ASSERT_NE(timestamps, nullptr);
    const bool before = model->showTimestamps();
    EXPECT_EQ(timestamps->isChecked(), before);
    timestamps->trigger();
    EXPECT_EQ(model->showTimestamps(), !before);
    model->setShowTimestamps(before);
    EXPECT_EQ(timestamps->isChecked(), before);
}

// A project without datapoints is replaced at once: a question would block the test.
TEST(MainWindowMenus, NewProjectAsksBeforeItDropsDatapoints) {
    const struct {
        PollerProject start;
        const char* choice; // none when nothing is asked
        bool replaced;
    } rows[] = {{PollerProject::firstRun(), "Cancel", false},
                {PollerProject::firstRun(), "Replace", true},
                {project({poll("Empty", {}), poll("Also empty", {})}), nullptr, true}};
    for (const auto& row : rows) {
        auto model = makeModel(row.start);
        MainWindow window(*model);
        activate(window);
        bool asked = false;
        if (row.choice != nullptr) {
            answerQuestion("replaceProjectQuestion", row.choice, [&](const QMessageBox& question) {
                asked = true;
                EXPECT_EQ(question.text(), "Replace the current project?");
                EXPECT_EQ(question.informativeText(), "Its polls and datapoints are removed.");
            });
        }
        QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);
        EXPECT_EQ(asked, row.choice != nullptr) << row.replaced;
        EXPECT_EQ(model->polls().size() == 1 && model->polls().front().datapoints.empty(),
                  row.replaced)
            << row.replaced;
    }
}

TEST(MainWindowMenus, QuitClosesTheWindows) {
    auto model = makeModel(PollerProject::firstRun());
    MainWindow window(*model);
    activate(window);
    QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(window.isVisible());
}

} // namespace
} // namespace kestrin::ShellTesting
