#include "DeviceFinder.h"
#include "ModelFixture.h"
#include "PollerModel.h"

#include <QSignalSpy>

namespace kestrin::ModelTesting {
namespace {

// Finding devices on the line of the model's port, against the simulator serving unit 3 with
// holding registers 100 and 101 and nothing else.
class DeviceFinderOnTheLine : public ModelFixture {
protected:
    std::string link = file("ttyKestrinSim").toStdString();
    std::unique_ptr<SimulatorProcess> simulator;
    std::unique_ptr<DeviceFinder> finder;

    void SetUp() override {
        simulator = serve(project({poll("Device", {holding("Level", 100), holding("Flow", 101)})}),
                          {"--link", link, "--unit", "3"});
        create(project({poll("Plant", {})}));
        model->addTestDevice(link, "sim");
        finder = std::make_unique<DeviceFinder>(*model);
    }
    // The finder goes before the model it lends the port from.
    void TearDown() override { finder.reset(); }

    // Waits out the running scan: generously, as a loaded machine is slow.
    const DeviceFinder::Findings& finished() {
        EXPECT_TRUE(waitUntil([&] { return !finder->isRunning(); }, 60s));
        EXPECT_TRUE(finder->findings().has_value());
        static const DeviceFinder::Findings none;
        return finder->findings() ? *finder->findings() : none;
    }
};

TEST_F(DeviceFinderOnTheLine, FindsTheUnitMapsItsRegistersAndAddsThemToThePollOnce) {
    ASSERT_TRUE(finder->findUnits(1, 5, 0.1));
    EXPECT_TRUE(model->isPortLent());
    const auto& units = finished();
    EXPECT_FALSE(units.error);
    ASSERT_EQ(units.units.size(), 1u);
    EXPECT_EQ(units.units.front().unit, 3);
    EXPECT_EQ(units.units.front().table, RegisterTable::holdingRegister);
    EXPECT_FALSE(finder->canAddToPoll());
    EXPECT_GE(finder->progress().value_or(DeviceFinder::Progress{}).done, 5);

    RegisterMapOptions options{.unit = 3, .first = 90, .last = 109};
    options.tables = {RegisterTable::holdingRegister};
    ASSERT_TRUE(finder->mapRegisters(options));
    const auto& mapped = finished();
    ASSERT_TRUE(mapped.map.has_value());
    ASSERT_EQ(mapped.map->tables.size(), 1u);
    EXPECT_EQ(mapped.map->tables.front().ranges,
              (std::vector<Datapoint::AddressRange>{{100, 101}}));

    ASSERT_TRUE(finder->canAddToPoll());
    EXPECT_EQ(finder->addToPoll(), 2);
    EXPECT_EQ(finder->addToPoll(), std::nullopt);
    const auto& added = model->selectedPoll()->datapoints;
    ASSERT_EQ(added.size(), 2u);
    for (const Datapoint& point : added) {
        EXPECT_EQ(point.unitID, 3);
        EXPECT_EQ(point.table(), RegisterTable::holdingRegister);
    }
    EXPECT_EQ(added[0].address, 100);
    EXPECT_EQ(added[1].address, 101);

    // What was found on the line is no part of another project.
    model->newProject();
    EXPECT_FALSE(finder->findings().has_value());
}

// The port takes one user at a time: no scan while reading, no reading (nor a second scan) while
// a scan has it, which every Start hears of; cancelling or dropping the scan gives it back.
TEST_F(DeviceFinderOnTheLine, TakesTurnsWithReadingAndGivesThePortBack) {
    model->setPolls({poll("Plant", {holding("Level", 100)})});
    model->setSelectedPollID(model->polls().front().id);
    startReading(link);
    EXPECT_FALSE(finder->canScan());
    EXPECT_FALSE(finder->findUnits(1, 247, 0.2));
    model->stop();

    QSignalSpy announced(model.get(), &PollerModel::stateChanged);
    // Every silent unit waits out its time-out: minutes if left to run.
    ASSERT_TRUE(finder->findUnits(4, 247, 1.0));
    EXPECT_EQ(announced.count(), 1);
    EXPECT_EQ(model->startObstacle(), PollerModel::StartObstacle::portLent);
    EXPECT_FALSE(model->canStart());
    model->start();
    EXPECT_FALSE(model->isEngineHeld());
    EXPECT_FALSE(finder->findUnits(1, 2, 0.1));
    EXPECT_FALSE(DeviceFinder(*model).canScan());

    QTest::qWait(300);
    finder->cancel();
    const auto& cancelled = finished();
    EXPECT_TRUE(cancelled.cancelled);
    EXPECT_FALSE(cancelled.error);
    EXPECT_FALSE(model->isPortLent());
    EXPECT_EQ(announced.count(), 2);
    EXPECT_TRUE(model->canStart());

    ASSERT_TRUE(finder->findUnits(4, 247, 1.0));
    finder.reset();
    EXPECT_FALSE(model->isPortLent());
    model->start();
    EXPECT_TRUE(model->isEngineHeld()) << model->errorMessage().value_or("");
    model->stop();
}

// Only the baud rate and frame are the sweep's to give: the RS-485 direction is set by the user,
// who may have changed it since.
TEST_F(DeviceFinderOnTheLine, UseTheseSettingsTakesTheFrameFoundAndKeepsTheRS485Direction) {
    model->setSerial(*SerialConfiguration{.baudRate = 19200}.withFrame("8N1"));
    ASSERT_TRUE(finder->sweepSettings({3}));
    const auto& swept = finished();
    ASSERT_TRUE(swept.settings.has_value());
    SerialConfiguration now = model->serial();
    now.rs485 = RS485Direction{.rtsHighWhileSending = false, .delayBeforeSendMs = 2};
    model->setSerial(now);

    ASSERT_TRUE(finder->useSettings());
    SerialConfiguration expected = swept.settings->serial;
    expected.rs485 = now.rs485;
    EXPECT_EQ(model->serial(), expected);
    EXPECT_NE(expected.baudRate, 19200);

    // Found on another line, the settings say nothing about this one.
    model->addTestDevice(file("ttyOther").toStdString(), "other");
    EXPECT_FALSE(finder->canUseSettings());
    EXPECT_FALSE(finder->useSettings());
}

} // namespace
} // namespace kestrin::ModelTesting
