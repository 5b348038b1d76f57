#include "DemoDevice.h"
#include "ShellFixture.h"

#include <filesystem>
#include <fstream>

#include <QFileInfo>

namespace kestrin::ShellTesting {
namespace {

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
        double low;
        double high;
    } rows[] = {
        {0, 18.5, 24.5}, // temperature
        {1, 1.2, 2.8},   // pressure
        {3, 21.5, 21.5}, // setpoint
        {4, 2, 2},       // mode
        {5, 1, 1},       // pump on
    };
    for (const auto& row : rows) {
        const auto value = valueOf(*model, shown[row.row]);
        ASSERT_TRUE(value.has_value()) << shown[row.row].name;
        EXPECT_GE(*value, row.low) << shown[row.row].name;
        EXPECT_LE(*value, row.high) << shown[row.row].name;
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
