#include "DemoDevice.h"
#include "ShellFixture.h"

#include <filesystem>
#include <fstream>

#include <QFileInfo>

namespace kestrin::ShellTesting {
namespace {

TEST(DemoDevice, ServesTheExampleListUntilItGoes) {
    auto started = DemoDevice::start(QStringLiteral(KESTRIN_SIM_PATH));
    ASSERT_TRUE(started.ok()) << started.error();
    std::unique_ptr<DemoDevice> demo = std::move(started).value();
    const std::string path = demo->path();
    ASSERT_TRUE(std::filesystem::exists(path)) << path;

    auto model = makeModel(PollerProject::firstRun());
    model->addTestDevice(path, L10n::Header::demoDevice());
    model->start();
    ASSERT_TRUE(waitUntil([&] { return model->statistics().responses > 0; }))
        << model->errorMessage().value_or("");
    model->stop();

    demo.reset();
    EXPECT_TRUE(waitUntil([&] { return !std::filesystem::exists(path); }, 5s)) << path;
}

TEST(DemoDevice, AProgramThatAnnouncesNoPortIsRefused) {
    const auto started = DemoDevice::start(QStringLiteral("/bin/true"));
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
