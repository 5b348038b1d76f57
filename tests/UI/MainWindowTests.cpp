#include "AppOptions.h"
#include "DemoDevice.h"
#include "FileDialogs.h"
#include "NoticeBanner.h"
#include "QuitSignals.h"
#include "UIFixture.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QMenuBar>
#include <QStandardPaths>

namespace kestrin::UITesting {
namespace {

// Which situations allow a start or listening is the model's rule, and the buttons' looks the
// top bar's tests; here only that the menu's commands and their shortcuts follow them: each
// stops what it started and is off while the other runs.
TEST(MainWindowStart, CtrlRAndCtrlLDoNothingWithoutAPortThenReadOrListenAndStopAgain) {
    SimulatorProcess simulator(ChildProcess::sim());
    ASSERT_FALSE(simulator.port().empty());
    auto model = makeModel(PollerProject::firstRun());
    MainWindow window(*model);
    activate(window);
    QAction* start = window.startStopAction();
    QAction* listen = window.listenAction();
    EXPECT_FALSE(start->isEnabled() || listen->isEnabled());
    QTest::keyClick(&window, Qt::Key_R, Qt::ControlModifier);
    QTest::keyClick(&window, Qt::Key_L, Qt::ControlModifier);
    EXPECT_FALSE(model->isEngineHeld());

    model->addTestDevice(simulator.port(), "simulator");
    ASSERT_TRUE(waitUntil([&] { return start->isEnabled() && listen->isEnabled(); }));
    auto* banner = child<NoticeBanner>(window, "listeningNotice");
    // The title's state, the commands' texts and which of them can be chosen.
    const auto shows = [&](const QString& state, const QString& startText,
                           const QString& listenText, bool startOn, bool listenOn) {
        EXPECT_EQ(window.windowTitle(), "Kestrin — " + state);
        EXPECT_EQ(start->text(), startText);
        EXPECT_EQ(listen->text(), listenText);
        EXPECT_EQ(start->isEnabled(), startOn);
        EXPECT_EQ(listen->isEnabled(), listenOn);
        // Over the log, which another test may have left behind the chart.
        EXPECT_EQ(!banner->isHidden(), state == "Listening");
    };
    const auto press = [&](Qt::Key key, PollerState expected) {
        QTest::keyClick(&window, key, Qt::ControlModifier);
        EXPECT_TRUE(waitUntil([&] { return model->state() == expected; }))
            << model->errorMessage().value_or("");
    };
    shows("Stopped", "Start", "Listen", true, true);

    press(Qt::Key_R, PollerState::running);
    shows("Reading", "Stop", "Listen", true, false);
    ASSERT_TRUE(waitUntil([&] { return model->statistics().responses > 0; }));
    press(Qt::Key_L, PollerState::running);
    press(Qt::Key_R, PollerState::stopped);
    shows("Stopped", "Start", "Listen", true, true);

    press(Qt::Key_L, PollerState::listening);
    shows("Listening", "Start", "Stop Listening", false, true);
    press(Qt::Key_R, PollerState::listening);
    press(Qt::Key_L, PollerState::stopped);
    shows("Stopped", "Start", "Listen", true, true);
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
    QStringList commands;
    QAction* timestamps = nullptr;
    for (QAction* menu : window.menuBar()->actions()) {
        for (QAction* action : menu->menu()->actions()) {
            const QString shortcut = action->shortcut().toString(QKeySequence::NativeText);
            if (!action->isSeparator()) {
                commands << (action->text() + " " + shortcut).trimmed();
            }
            timestamps = action->text() == "Timestamps" ? action : timestamps;
        }
    }
    EXPECT_EQ(commands.join(", "),
              "New Project Ctrl+N, Open Project… Ctrl+O, Save Project As… Ctrl+Shift+S, "
              "Save Log… Ctrl+S, Import Datapoints (CSV)… Ctrl+Shift+I, "
              "Export Datapoints (CSV)… Ctrl+Shift+E, Quit Ctrl+Q, Start Ctrl+R, Listen Ctrl+L, "
              "New Poll Ctrl+T, "
              "Datapoint Ctrl+Shift+D, Find Devices…, Export History (CSV)…, Clear Log Ctrl+K, "
              "Autoscroll, "
              "Timestamps, Show raw RTU frames, Log only errors and writes, Kestrin Help F1");

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
    // The answer is none when nothing is asked.
    const std::tuple<PollerProject, const char*, bool> rows[] = {
        {PollerProject::firstRun(), "Cancel", false},
        {PollerProject::firstRun(), "Replace", true},
        {project({poll("Empty", {}), poll("Also empty", {})}), nullptr, true}};
    for (const auto& [start, choice, replaced] : rows) {
        SCOPED_TRACE(choice != nullptr ? choice : "not asked");
        auto model = makeModel(start);
        MainWindow window(*model);
        activate(window);
        bool asked = false;
        if (choice != nullptr) {
            answerQuestion("replaceProjectQuestion", choice, [&](const QMessageBox& question) {
                asked = true;
                EXPECT_EQ(question.text(), "Replace the current project?");
                EXPECT_EQ(question.informativeText(), "Its polls and datapoints are removed.");
            });
        }
        QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);
        EXPECT_EQ(asked, choice != nullptr);
        EXPECT_EQ(model->polls().size() == 1 && model->polls().front().datapoints.empty(),
                  replaced);
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

TEST(AppOptions, ReadsEveryOptionWithItsValue) {
    const auto parsed =
        AppOptions::parse({"--port", "/dev/pts/4", "--screenshot", "window", "--out",
                           "/tmp/shot.png", "--dark", "--width", "632", "--wait", "2.5"});
    ASSERT_TRUE(parsed.ok()) << parsed.error();
    EXPECT_EQ(parsed.value(), (AppOptions{.port = "/dev/pts/4",
                                          .screenshot = "window",
                                          .outFile = "/tmp/shot.png",
                                          .dark = true,
                                          .width = 632,
                                          .waitSeconds = 2.5}));
    EXPECT_TRUE(AppOptions::parse({"--demo"}).value().demo);
    EXPECT_EQ(AppOptions::parse({}).value(), AppOptions{});
}

TEST(AppOptions, RefusesWhatItCannotDo) {
    const std::pair<std::vector<std::string>, std::string> rows[] = {
        {{"--frobnicate"}, "unknown option --frobnicate"},
        {{"--port"}, "--port needs a value"},
        {{"--port", ""}, "--port needs a value"},
        {{"--port", "/dev/pts/4", "--demo"}, "--port and --demo exclude each other"},
        {{"--screenshot", "window"}, "--screenshot and --out go together"},
        {{"--out", "a.png"}, "--screenshot and --out go together"},
        {{"--width", "900"}, "--width and --wait go with --screenshot"},
        {{"--wait", "3"}, "--width and --wait go with --screenshot"},
        {{"--screenshot", "w", "--out", "w.png", "--width", "99"},
         "--width needs a number of pixels from 100"},
        {{"--screenshot", "w", "--out", "w.png", "--wait", "-1"},
         "--wait needs a number of seconds up to 600"},
        {{"--screenshot", "w", "--out", "w.png", "--wait", "inf"},
         "--wait needs a number of seconds up to 600"},
    };
    for (const auto& [arguments, message] : rows) {
        const auto parsed = AppOptions::parse(arguments);
        ASSERT_FALSE(parsed.ok()) << message;
        EXPECT_EQ(parsed.error(), message);
    }
}

// In a fresh process: a change whose autosave is still pending, then the signal, then the event
// loop as main runs it. Exits 0 when the loop ended and the autosave holds the change.
[[noreturn]] void quitOnSignal(int signal) {
    QTemporaryDir folder;
    const QString autosavePath = folder.filePath("Kestrin/project.json");
    PollerModel::Environment environment = Testing::environment();
    environment.autosavePath = autosavePath;
    // Only the quit can write it.
    environment.delays.autosave = std::chrono::hours(1);
    PollerModel model(std::move(environment));
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &model, [&model] { model.shutdown(); });
    if (!QuitSignals::install(*qApp)) {
        std::_Exit(2);
    }
    model.setTimeoutMs(2000);
    std::raise(signal);
    QApplication::exec();
    QFile saved(autosavePath);
    const bool written = saved.open(QIODevice::ReadOnly) &&
                         saved.readAll().toStdString() == model.currentProject().encoded();
    std::fprintf(stderr, written ? "saved\n" : "autosave missing or old\n");
    std::_Exit(written ? 0 : 1);
}

TEST(QuitSignals, TermIntAndHupQuitTheLoopAndWriteThePendingAutosave) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(signal);
        EXPECT_EXIT(quitOnSignal(signal), testing::ExitedWithCode(0), "saved");
    }
}

std::optional<double> valueOf(const PollerModel& model, const Datapoint& point) {
    const PointStatus* status = model.status(point.id);
    return status != nullptr ? toDouble(status->value) : std::nullopt;
}

// What the user sees: the example list, with no simulation of its own, read from the demo.
TEST(DemoDevice, ServesMovingPlausibleValuesAtWireTimingUntilItGoes) {
    const SerialConfiguration serial; // 9600 8E1
    auto started = DemoDevice::start(QStringLiteral(KESTRIN_SIM_PATH), serial);
    ASSERT_TRUE(started.ok()) << started.error();
    std::unique_ptr<DemoDevice> demo = std::move(started).value();
    const std::string path = demo->path();
    ASSERT_TRUE(std::filesystem::exists(path)) << path;
    PollerProject project = PollerProject::firstRun();
    project.polls.front().intervalMs = 200;
    const std::vector<Datapoint> shown = project.polls.front().datapoints;
    auto model = makeModel(std::move(project));
    model->addTestDevice(path, L10n::texts().header.demoDevice());
    model->start();
    ASSERT_TRUE(waitUntil([&] { return valueOf(*model, shown[2]).has_value(); }))
        << model->errorMessage().value_or("");
    const auto firstRunTime = valueOf(*model, shown[2]);
    const auto firstPressure = valueOf(*model, shown[1]);

    // The run time counts whole seconds.
    ASSERT_TRUE(waitUntil([&] { return valueOf(*model, shown[2]) > firstRunTime; }, 3s));
    EXPECT_NE(valueOf(*model, shown[1]), firstPressure);
    const std::tuple<std::size_t, double, double> rows[] = {
        {0, 18.5, 24.5}, {1, 1.2, 2.8}, {3, 21.5, 21.5}, {4, 2, 2}, {5, 1, 1}};
    for (const auto& [row, low, high] : rows) {
        SCOPED_TRACE(shown[row].name);
        const auto value = valueOf(*model, shown[row]);
        ASSERT_TRUE(value.has_value());
        EXPECT_GE(*value, low);
        EXPECT_LE(*value, high);
    }
    model->stop();
    // The shortest exchange, a coil read, is 8 + 6 characters of 11 bits at 9600 baud = 16 ms.
    for (const auto& [id, status] : model->status()) {
        if (status.value) {
            EXPECT_GE(status.duration, 0.016) << "as fast as no line could carry it";
        }
    }

    demo.reset();
    EXPECT_TRUE(waitUntil([&] { return !std::filesystem::exists(path); }, 5s)) << path;
}

// A program that announces no port is no simulator.
TEST(DemoDevice, TheSimulatorBesideTheProgramComesFirstAndOneThatAnnouncesNoPortIsRefused) {
    EXPECT_FALSE(DemoDevice::start(QStringLiteral("/bin/true"), SerialConfiguration{}).ok());
    const QTemporaryDir folder;
    const QString beside = folder.filePath("kestrin-sim");
    std::ofstream(beside.toStdString()) << "#!/bin/sh\n";
    std::filesystem::permissions(beside.toStdString(), std::filesystem::perms::owner_all);
    EXPECT_EQ(DemoDevice::findSimulator(folder.path()), QFileInfo(beside).canonicalFilePath());
}

} // namespace
} // namespace kestrin::UITesting
