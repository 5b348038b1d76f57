#include "FileDialogs.h"
#include "LogPalette.h"
#include "UIFixture.h"

#include <QAction>
#include <QDir>
#include <QMenuBar>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace kestrin::ShellTesting {
namespace {

// Which situations allow a start is the model's rule; here only that the window follows it.
TEST(MainWindowStart, CtrlRDoesNothingWithoutAPortThenReadsTheSimulatorAndStopsAgain) {
    SimulatorProcess simulator(simulatorCommand());
    ASSERT_FALSE(simulator.port().empty());
    auto model = makeModel(PollerProject::firstRun());
    MainWindow window(*model);
    activate(window);
    auto* button = child<QPushButton>(window, "startStopButton");
    QAction* action = window.startStopAction();
    EXPECT_FALSE(button->isEnabled() || action->isEnabled());
    QTest::keyClick(&window, Qt::Key_R, Qt::ControlModifier);
    EXPECT_FALSE(model->isEngineHeld());

    model->addTestDevice(simulator.port(), "simulator");
    ASSERT_TRUE(waitUntil([&] { return action->isEnabled(); }));
    const QColor stoppedTint = button->palette().color(QPalette::Button);
    ASSERT_TRUE(button->isEnabled());
    const auto shows = [&](const QString& state, const QString& command, const QString& help) {
        EXPECT_EQ(button->text(), command);
        EXPECT_EQ(action->text(), command);
        EXPECT_EQ(window.windowTitle(), "Kestrin — " + state);
        if (!help.isEmpty()) {
            EXPECT_EQ(button->toolTip(), help);
        }
    };
    shows("Stopped", "Start", {});

    QTest::keyClick(&window, Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }))
        << model->errorMessage().value_or("");
    shows("Reading", "Stop", "Stop reading (Ctrl+R)");
    EXPECT_EQ(button->palette().color(QPalette::Button), LogPalette::fillOrange());
    ASSERT_TRUE(waitUntil([&] { return model->statistics().responses > 0; }));

    QTest::keyClick(&window, Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::stopped; }));
    shows("Stopped", "Start", "Start reading (Ctrl+R)");
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
    click(child(*alert, "errorAlertOK"));
    EXPECT_TRUE(waitUntil([&] { return window.errorAlert() == nullptr; }));
    EXPECT_FALSE(model->errorMessage().has_value());
}

// Ctrl+Q, last, closes the window.
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
    const std::map<QString, QString> expected{{"New Project", "Ctrl+N"},
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
                                              {"Kestrin Help", "F1"}};
    EXPECT_EQ(shortcuts, expected);

    ASSERT_NE(timestamps, nullptr);
    const bool before = model->showTimestamps();
    EXPECT_EQ(timestamps->isChecked(), before);
    timestamps->trigger();
    EXPECT_EQ(model->showTimestamps(), !before);
    model->setShowTimestamps(before);
    EXPECT_EQ(timestamps->isChecked(), before);

    activate(window);
    QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(window.isVisible());
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
        SCOPED_TRACE(row.choice != nullptr ? row.choice : "not asked");
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
        EXPECT_EQ(asked, row.choice != nullptr);
        EXPECT_EQ(model->polls().size() == 1 && model->polls().front().datapoints.empty(),
                  row.replaced);
    }
}

TEST(FileDialogs, StartInTheFolderUsedLastWhileItExists) {
    QSettings("Kestrin", "Kestrin").clear();
    const QTemporaryDir files;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString fallback = QDir(documents).exists() ? documents : QDir::homePath();
    EXPECT_EQ(FileDialogs::startFolder(), fallback);

    ASSERT_TRUE(QDir(files.path()).mkpath("exports"));
    const QString folder = QDir(files.path()).filePath("exports");
    FileDialogs::rememberFolder(QDir(folder).filePath("boiler.csv"));
    EXPECT_EQ(FileDialogs::startFolder(), folder);
    // A cancelled dialog leaves the folder as it was.
    FileDialogs::rememberFolder(QString());
    EXPECT_EQ(FileDialogs::startFolder(), folder);

    ASSERT_TRUE(QDir(folder).removeRecursively());
    EXPECT_EQ(FileDialogs::startFolder(), fallback);
}

} // namespace
} // namespace kestrin::ShellTesting
