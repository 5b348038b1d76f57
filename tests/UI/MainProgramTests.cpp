#include "AppOptions.h"
#include "DemoDevice.h"
#include "QuitSignals.h"
#include "UIFixture.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include <QFileInfo>
#include <QTemporaryDir>

namespace kestrin::ShellTesting {
namespace {

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
    const struct {
        std::vector<std::string> arguments;
        std::string message;
    } rows[] = {
        {{"--frobnicate"}, "unknown option --frobnicate"},
        {{"--port"}, "--port needs a value"},
        {{"--port", ""}, "--port needs a value"},
        {{"--out"}, "--out needs a value"},
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
    for (const auto& row : rows) {
        const auto parsed = AppOptions::parse(row.arguments);
        ASSERT_FALSE(parsed.ok()) << row.message;
        EXPECT_EQ(parsed.error(), row.message);
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
    const struct {
        std::size_t row;
        double low, high;
    } rows[] = {{0, 18.5, 24.5}, {1, 1.2, 2.8}, {3, 21.5, 21.5}, {4, 2, 2}, {5, 1, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(shown[row.row].name);
        const auto value = valueOf(*model, shown[row.row]);
        ASSERT_TRUE(value.has_value());
        EXPECT_GE(*value, row.low);
        EXPECT_LE(*value, row.high);
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

TEST(DemoDevice, AProgramThatAnnouncesNoPortIsRefused) {
    const auto started = DemoDevice::start(QStringLiteral("/bin/true"), SerialConfiguration{});
    EXPECT_FALSE(started.ok());
}

TEST(DemoDevice, TheSimulatorBesideTheProgramComesFirst) {
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("kestrin-demo-" + Uuid::random().text());
    std::filesystem::create_directories(folder);
    const std::filesystem::path beside = folder / "kestrin-sim";
    std::ofstream(beside) << "#!/bin/sh\n";
    std::filesystem::permissions(beside, std::filesystem::perms::owner_all);
    EXPECT_EQ(DemoDevice::findSimulator(QString::fromStdString(folder.string())),
              QFileInfo(QString::fromStdString(beside.string())).canonicalFilePath());
    std::filesystem::remove_all(folder);
}

} // namespace
} // namespace kestrin::ShellTesting
