#include "HistoryCSV.h"
#include "LogLine.h"
#include "ModelFixture.h"
#include "TestFiles.h"

#include <tuple>

namespace kestrin::ModelTesting {
namespace {

using Testing::contents;
using Testing::put;

using PollerModelProject = ModelFixture;

// Every key's way through the file is the document's test; here the model's use of the files. A
// file that cannot be read is refused naming what is wrong, and the project stays.
TEST_F(PollerModelProject, TheAutosaveIsLoadedASavedProjectOpensAgainAndABrokenOneIsRefused) {
    PollerProject original = project({poll("Boiler", {holding("Level", 100)})});
    original.maxGap = 6;
    put(autosavePath(), QByteArray::fromStdString(original.encoded()));
    create();
    EXPECT_EQ(model->currentProject(), original);

    model->saveProjectAs(file("saved.json"));
    model->newProject();
    model->openProject(file("saved.json"));
    EXPECT_FALSE(model->errorMessage());
    EXPECT_EQ(model->currentProject(), original);

    put(file("meter.json"), R"({"polls": [{"datapoints": [{"scale": "nan"}]}]})");
    model->openProject(file("meter.json"));
    EXPECT_EQ(model->errorMessage(), "Cannot read meter.json. Is it a file of this app?\n"
                                     "polls[0].datapoints[0].scale: expected a finite number");
    EXPECT_EQ(model->currentProject(), original);

    // A delay longer than the kernel takes opens as the longest, and the log says so.
    PollerProject slow = original;
    slow.serial.rs485 = RS485Direction{.delayBeforeSendMs = 20, .delayAfterSendMs = 250};
    put(file("slow.json"), QByteArray::fromStdString(slow.encoded()));
    model->openProject(file("slow.json"));
    EXPECT_EQ(model->serial().rs485,
              (RS485Direction{.delayBeforeSendMs = 20, .delayAfterSendMs = 100}));
    EXPECT_TRUE(model->output().text().contains(
        "The project's RS-485 delays above 100 ms were shortened to 100 ms"));
}

TEST_F(PollerModelProject, EveryProjectChangeIsAutosavedAfterTheDelayAndAtShutdown) {
    create();
    const auto saved = [&] {
        return contents(autosavePath()).toStdString() == model->currentProject().encoded();
    };
    for (const std::function<void()>& change : std::vector<std::function<void()>>{
             [&] { model->setSerial({.baudRate = 38400}); }, [&] { model->setTimeoutMs(2000); },
             [&] { model->setWriteMode(WriteMode::multiple); }, [&] { model->setMaxGap(9); },
             [&] { model->addPoll(); }}) {
        change();
        EXPECT_FALSE(saved());
        EXPECT_TRUE(waitUntil(saved));
    }
    model->renamePoll(model->polls()[0].id, "Renamed");
    model->shutdown();
    EXPECT_TRUE(saved());
}

// Each file the model writes, cut off by a file-size limit: the message names the cause once and
// the previous file stays as it was. Where in the file the cut falls, and that nothing is left
// beside it, is the writer's test.
TEST_F(PollerModelProject, AFailedSaveKeepsThePreviousFileAndNamesTheCauseOnce) {
    const Datapoint level = holding("Level", 100);
    create(project({poll("Boiler", {level})}));
    model->recordSample(level.id, {QDateTime::currentDateTime(), 21.5});
    model->appendLog(LogLine::readingStopped());
    const std::vector<std::pair<const char*, void (PollerModel::*)(const QString&)>> saves{
        {"project", &PollerModel::saveProjectAs},
        {"datapoints", &PollerModel::exportDatapoints},
        {"history", &PollerModel::exportHistory},
        {"log", &PollerModel::saveLog}};
    for (const auto& [name, save] : saves) {
        const QString target = file(QString::fromUtf8(name));
        (model.get()->*save)(target);
        ASSERT_FALSE(model->errorMessage()) << *model->errorMessage();
        put(target, "old");
        {
            const Testing::FileSizeLimit cutOff(1);
            (model.get()->*save)(target);
        }
        EXPECT_EQ(model->errorMessage(), "Saving failed: File too large") << name;
        EXPECT_EQ(contents(target), "old") << name;
        model->setErrorMessage(std::nullopt);
    }
}

// The export holds the history in place; whatever drops samples writes it first, with the samples
// there were when it began.
TEST_F(PollerModelProject, DroppingHistoryDuringAnExportWritesTheExportFirst) {
    const Datapoint level = holding("Level", 100);
    Datapoint moved = level;
    moved.address = 200;
    const std::vector<std::pair<QString, std::function<void()>>> drops{
        {"clear", [&] { model->clearHistory(); }},
        {"edit", [&] { model->updateDatapoint(moved); }},
        {"new project", [&] { model->newProject(); }}};
    const QDateTime t0 = QDateTime::currentDateTimeUtc();
    for (const auto& [name, drop] : drops) {
        create(project({poll("Boiler", {level})}));
        for (int tick = 0; tick < 5000; ++tick) {
            model->recordSample(level.id, {t0.addMSecs(tick), tick});
        }
        const QByteArray expected = QByteArray::fromStdString(
            HistoryCSV::text(model->polls(), model->history(), CSVDialect::current()));
        model->beginHistoryExport(file(name));
        ASSERT_FALSE(model->continueHistoryExport({}).done) << name.toStdString();
        model->recordSample(level.id, {t0.addSecs(60), 1});
        drop();
        EXPECT_EQ(contents(file(name)), expected) << name.toStdString();
        EXPECT_TRUE(model->continueHistoryExport({}).done) << name.toStdString();
        EXPECT_EQ(model->history().samples(level.id), nullptr) << name.toStdString();
    }
}

using PollerModelReplace = QuietReading;

TEST_F(PollerModelReplace, NewProjectStopsReadingAndForgetsReadings) {
    answerBoth(1, 2);
    const std::int64_t version = model->historyVersion();
    model->newProject();
    EXPECT_EQ(model->state(), PollerState::stopped);
    EXPECT_FALSE(model->isEngineHeld());
    EXPECT_TRUE(model->status().empty());
    EXPECT_TRUE(model->history().empty());
    EXPECT_GT(model->historyVersion(), version);
    ASSERT_EQ(model->polls().size(), 1U);
    EXPECT_EQ(model->selectedPollID(), model->polls()[0].id);
}

using PollerModelPolls = ModelFixture;

TEST_F(PollerModelPolls, DatapointOperationsWorkOnTheSelectedPoll) {
    const Datapoint level = holding("Level", 100, 0, DataType::float32);
    Poll boiler = poll("Boiler", {level});
    boiler.plotted = {level.id};
    create(project({poll("Other", {}), boiler}));
    model->setSelectedPollID(boiler.id);

    const std::optional<Uuid> added = model->addDatapoint(level.id);
    EXPECT_EQ(model->polls()[1].datapoints.back().id, added);
    EXPECT_EQ(model->polls()[1].datapoints.back().address, 102);
    model->deleteDatapoints({level.id});
    EXPECT_EQ(model->polls()[1].datapoints.size(), 1U);
    EXPECT_TRUE(model->polls()[1].plotted.empty());
    EXPECT_TRUE(model->polls()[0].datapoints.empty());
}

using PollerModelPreferences = ModelFixture;

TEST_F(PollerModelPreferences, OddValuesGiveDefaultsAndChangesAreStoredForTheNextStart) {
    preferences()->setValue("timestamps", "no");
    preferences()->setValue("rawFrames", 1);
    preferences()->setValue("autoscroll", 0);
    create(project({poll("P", {})}));
    const auto options = [&] {
        return std::array{model->showTimestamps(), model->showRawFrames(), model->logOnlyProblems(),
                          model->autoscroll(), model->output().autoscroll()};
    };
    EXPECT_EQ(options(), (std::array{true, false, false, true, true}));

    model->setShowTimestamps(false);
    model->setShowRawFrames(true);
    model->setLogOnlyProblems(true);
    model->setAutoscroll(false);
    model->setSelectedPath("/dev/ttyUSB3");

    create(project({poll("P", {})}));
    EXPECT_EQ(options(), (std::array{false, true, true, false, false}));
    EXPECT_EQ(model->selectedPath(), "/dev/ttyUSB3");
}

using Entries = std::vector<FakePortRegistry::Entry>;

const std::string s0 = "/dev/ttyS0", usb0 = "/dev/ttyUSB0", usb1 = "/dev/ttyUSB1";
const std::string missing = "/dev/ttyUSB7";
const FakePortRegistry::Entry internal{s0, {}};
const FakePortRegistry::Entry ftdi{usb0, {"FT232R USB UART", 0x0403, 0x6001}};
const FakePortRegistry::Entry cp2102{usb1, {"CP2102 USB to UART", 0x10C4, 0xEA60}};

class PollerModelPorts : public ModelFixture {
protected:
    void createWith(const std::string& stored, const Entries& listed) {
        preferences()->clear();
        if (!stored.empty()) {
            preferences()->setValue("port", QString::fromStdString(stored));
        }
        registry->entries = listed;
        create(quietProject({}));
    }
    std::string storedPort() const { return preferences()->value("port").toString().toStdString(); }
};

// Plugging in the same list again leaves the choice of the first scan.
TEST_F(PollerModelPorts, ChoiceOnTheFirstScanAndWhenAdaptersComeAndGo) {
    const std::vector<std::tuple<const char*, std::string, Entries, Entries, std::string>> rows{
        {"first scan picks the adapter", "", {internal, ftdi}, {internal, ftdi}, usb0},
        {"no adapter, no choice", "", {internal}, {internal}, ""},
        {"a present stored port stays", s0, {internal, ftdi}, {internal, ftdi}, s0},
        {"a missing stored port", missing, {cp2102, internal, ftdi}, {cp2102, ftdi}, usb0},
        {"an empty list keeps it", missing, {}, {}, missing},
        {"a second adapter", "", {ftdi}, {ftdi, cp2102}, usb0},
        {"over an internal port", s0, {internal}, {internal, cp2102}, usb1},
        {"over a missing port", missing, {internal}, {internal, cp2102}, usb1},
        {"the chosen one unplugged", "", {ftdi, internal}, {internal}, usb0},
        {"adapters swapped", "", {ftdi}, {cp2102}, usb1},
        {"an internal port arrives", "", {ftdi}, {ftdi, internal}, usb0}};
    for (const auto& [situation, stored, before, after, chosen] : rows) {
        createWith(stored, before);
        plug(after);
        EXPECT_EQ(model->selectedPath(), chosen) << situation;
        EXPECT_EQ(storedPort(), chosen) << situation;
    }
}

// Beside the chosen path its adapter is remembered, and found by it when the path is gone: at the
// next start before the first adapter, and when plugged in before another new one.
TEST_F(PollerModelPorts, TheChosenAdapterIsFoundAgainUnderAnotherNameUntilAnotherPortIsChosen) {
    const std::string byId = "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A10K3ZX-if00-port0";
    const auto mine = [&](std::string path) {
        return FakePortRegistry::Entry{path, {"FT232R USB UART", 0x0403, 0x6001, "A10K3ZX"}, byId};
    };
    const FakePortRegistry::Entry other{"/dev/ttyUSB3", {"FT232R USB UART", 0x0403, 0x6001, "B2"}};
    // Stored before adapters were remembered: the listing teaches it.
    createWith(usb0, {internal, mine(usb0)});

    registry->entries = {cp2102, internal, mine("/dev/ttyUSB5")};
    create(quietProject({}));
    EXPECT_EQ(model->selectedPath(), "/dev/ttyUSB5");
    plug({internal});
    plug({internal, other, mine("/dev/ttyUSB6")});
    EXPECT_EQ(model->selectedPath(), "/dev/ttyUSB6");
    EXPECT_EQ(storedPort(), "/dev/ttyUSB6");

    model->setSelectedPath(s0);
    EXPECT_FALSE(preferences()->contains("portIdentity/vendorID"));
    registry->entries = {cp2102, mine("/dev/ttyUSB9")};
    create(quietProject({}));
    EXPECT_EQ(model->selectedPath(), usb1);
}

TEST_F(PollerModelPorts, ReadingCanStartOnlyOnAPresentPortWithSomethingToRead) {
    using Obstacle = PollerModel::StartObstacle;
    const PollerProject reading = project({poll("Meter", {holding("Level", 100)})});
    const PollerProject switchedOff = quietProject({holding("Level", 100)});
    const std::vector<
        std::tuple<const char*, std::string, Entries, PollerProject, std::optional<Obstacle>>>
        rows{{"no port chosen", "", {internal}, reading, Obstacle::noPort},
             {"a remembered port that is unplugged", usb0, {}, reading, Obstacle::noPort},
             {"a present port", s0, {internal}, reading, std::nullopt},
             {"only a switched-off poll has datapoints",
              s0,
              {internal},
              switchedOff,
              Obstacle::nothingToRead}};
    for (const auto& [situation, stored, listed, start, obstacle] : rows) {
        createWith(stored, listed);
        model->applyProject(start);
        EXPECT_EQ(model->startObstacle(), obstacle) << situation;
        EXPECT_EQ(model->canStart(), !obstacle) << situation;
    }
}

TEST_F(PollerModelPorts, ATestDeviceIsAPortWhileItsPathExists) {
    createWith("", {});
    model->applyProject(project({poll("Meter", {holding("Level", 100)})}));
    const QString device = file("ttySim");
    model->addTestDevice(device.toStdString(), "sim");
    EXPECT_TRUE(model->ports().empty());
    EXPECT_FALSE(model->canStart());

    QFile(device).open(QIODevice::WriteOnly);
    ASSERT_TRUE(waitUntil([&] { return model->canStart(); }));
    ASSERT_EQ(model->ports().size(), 1U);
    EXPECT_EQ(model->ports().front().productName, "sim");

    QFile::remove(device);
    EXPECT_TRUE(waitUntil([&] { return model->ports().empty() && !model->canStart(); }));
    EXPECT_EQ(model->selectedPath(), device.toStdString());
}

using PollerModelPortsWhileReading = QuietReading;

TEST_F(PollerModelPortsWhileReading, ChoiceStaysUntilStopped) {
    plug({internal, ftdi});
    plug({internal});
    EXPECT_EQ(model->selectedPath(), device.port());

    model->stop();
    plug({internal, cp2102});
    EXPECT_EQ(model->selectedPath(), usb1);
}

} // namespace
} // namespace kestrin::ModelTesting
