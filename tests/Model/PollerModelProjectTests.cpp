#include "ModelFixture.h"

#include <QDir>

namespace kestrin::ModelTesting {
namespace {

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void put(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

class PollerModelProject : public ModelFixture {
protected:
    PollerProject saved() const {
        return PollerProject::decode(contents(autosavePath()).toStdString()).value();
    }
};

TEST_F(PollerModelProject, SaveOpenSaveGivesTheSameBytes) {
    PollerProject original =
        project({poll("Boiler", {holding("Level", 100, 4.5, DataType::float32)}),
                 poll("Pump", {holding("", 7)}, 2500, false)},
                500);
    original.writeMode = WriteMode::multiple;
    original.maxGap = 6;
    original.serial.baudRate = 19200;
    original.polls[0].plotted.insert(original.polls[0].datapoints[0].id);
    put(autosavePath(), QByteArray::fromStdString(original.encoded()));
    create();
    EXPECT_EQ(model->currentProject(), original);

    model->saveProjectAs(file("first.json"));
    model->newProject();
    model->openProject(file("first.json"));
    model->saveProjectAs(file("second.json"));
    EXPECT_FALSE(model->errorMessage());
    EXPECT_EQ(model->currentProject(), original);
    EXPECT_EQ(contents(file("second.json")), contents(file("first.json")));
}

TEST_F(PollerModelProject, BrokenAutosaveIsKeptAsideAndTheFirstRunProjectUsed) {
    put(autosavePath(), "{\"polls\": 12");
    create();
    ASSERT_EQ(model->polls().size(), 1U);
    EXPECT_EQ(model->polls()[0].name, "Example device");
    const QStringList kept =
        QDir(file("Kestrin")).entryList({"project.json.broken-*"}, QDir::Files);
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(contents(file("Kestrin/" + kept[0])), "{\"polls\": 12");
}

TEST_F(PollerModelProject, EveryProjectChangeIsAutosavedAfterTheDelay) {
    create();
    const struct {
        const char* change;
        std::function<void()> make;
        std::function<bool(const PollerProject&)> saw;
    } rows[] = {
        {"serial", [&] { model->setSerial({.baudRate = 38400}); },
         [](const PollerProject& p) { return p.serial.baudRate == 38400; }},
        {"timeout", [&] { model->setTimeoutMs(2000); },
         [](const PollerProject& p) { return p.timeoutMs == 2000; }},
        {"write mode", [&] { model->setWriteMode(WriteMode::multiple); },
         [](const PollerProject& p) { return p.writeMode == WriteMode::multiple; }},
        {"gap", [&] { model->setMaxGap(9); }, [](const PollerProject& p) { return p.maxGap == 9; }},
        {"polls", [&] { model->addPoll(); },
         [](const PollerProject& p) { return p.polls.size() == 2; }},
    };
    for (const auto& row : rows) {
        QFile::remove(autosavePath());
        row.make();
        EXPECT_FALSE(QFile::exists(autosavePath())) << row.change;
        ASSERT_TRUE(waitUntil([&] { return QFile::exists(autosavePath()); })) << row.change;
        EXPECT_TRUE(row.saw(saved())) << row.change;
    }
    model->renamePoll(model->polls()[0].id, "Renamed");
    model->shutdown();
    EXPECT_EQ(saved().polls[0].name, "Renamed");
}

TEST_F(PollerModelProject, OpeningAFileWithoutPollsChangesNothing) {
    create(project({poll("Kept", {})}));
    put(file("empty.json"), "{\"polls\": []}");
    model->openProject(file("empty.json"));
    EXPECT_EQ(model->errorMessage(), "Cannot read empty.json. Is it a file of this app?");
    EXPECT_EQ(model->polls()[0].name, "Kept");
}

class PollerModelReplace : public QuietReading {};

TEST_F(PollerModelReplace, NewProjectStopsReadingAndForgetsReadings) {
    model->setSerial({.baudRate = 4800});
    answerBoth(1, 2);
    const std::int64_t version = model->historyVersion();
    model->newProject();
    EXPECT_EQ(model->state(), PollerState::stopped);
    EXPECT_FALSE(model->isEngineHeld());
    EXPECT_TRUE(logLines().back().ends_with("--- Reading stopped ---"));
    EXPECT_TRUE(model->status().empty());
    EXPECT_TRUE(model->history().empty());
    EXPECT_GT(model->historyVersion(), version);
    ASSERT_EQ(model->polls().size(), 1U);
    EXPECT_EQ(model->polls()[0].name, "Poll 1");
    EXPECT_EQ(model->selectedPollID(), model->polls()[0].id);
    EXPECT_EQ(model->serial().baudRate, 4800);
}

class PollerModelPolls : public ModelFixture {
protected:
    std::vector<std::string> names() const {
        std::vector<std::string> list;
        for (const Poll& poll : model->polls()) {
            list.push_back(poll.name);
        }
        return list;
    }
};

TEST_F(PollerModelPolls, AddAndDuplicateSelectTheNewPoll) {
    Datapoint level = holding("Level", 100);
    Poll boiler = poll("Boiler", {level, holding("Flow", 101)});
    boiler.plotted = {level.id};
    create(project({boiler, poll("Pump", {})}));

    model->duplicatePoll(boiler.id);
    EXPECT_EQ(names(), (std::vector<std::string>{"Boiler", "Boiler (copy)", "Pump"}));
    const Poll& copy = model->polls()[1];
    EXPECT_EQ(model->selectedPollID(), copy.id);
    EXPECT_NE(copy.datapoints[0].id, level.id);
    EXPECT_EQ(copy.plotted, std::set<Uuid>{copy.datapoints[0].id});

    model->addPoll();
    EXPECT_EQ(names().back(), "Poll 4");
    EXPECT_EQ(model->selectedPollID(), model->polls().back().id);
}

TEST_F(PollerModelPolls, RemovingSelectsThePollBeforeAndNeverTheLastPoll) {
    const struct {
        int selected;
        int removed;
        std::vector<std::string> left;
        std::string selectedAfter;
    } rows[] = {
        {1, 1, {"A", "C"}, "A"},
        {0, 0, {"B", "C"}, "B"},
        {2, 0, {"B", "C"}, "C"},
    };
    for (const auto& row : rows) {
        create(project({poll("A", {}), poll("B", {}), poll("C", {})}));
        model->setSelectedPollID(model->polls()[row.selected].id);
        model->removePoll(model->polls()[row.removed].id);
        EXPECT_EQ(names(), row.left);
        EXPECT_EQ(model->selectedPoll()->name, row.selectedAfter);
    }
    create(project({poll("Only", {})}));
    model->removePoll(model->polls()[0].id);
    EXPECT_EQ(names(), std::vector<std::string>{"Only"});
}

TEST_F(PollerModelPolls, DatapointOperationsWorkOnTheSelectedPoll) {
    Datapoint level = holding("Level", 100, 0, DataType::float32);
    level.unitID = 7;
    Datapoint flow = holding("Flow", 200);
    Poll boiler = poll("Boiler", {level, flow});
    boiler.plotted = {flow.id};
    create(project({poll("Other", {}), boiler}));

    model->setSelectedPollID(boiler.id);
    const std::optional<Uuid> added = model->addDatapoint(level.id);
    ASSERT_TRUE(added);
    const Datapoint& made = model->polls()[1].datapoints[1];
    EXPECT_EQ(made.id, *added);
    EXPECT_EQ(made.name, "HR 102");
    EXPECT_EQ(made.address, 102);
    EXPECT_EQ(made.unitID, 7);

    model->deleteDatapoints({flow.id, level.id});
    EXPECT_EQ(model->polls()[1].datapoints.size(), 1U);
    EXPECT_TRUE(model->polls()[1].plotted.empty());
    EXPECT_TRUE(model->polls()[0].datapoints.empty());
}

class PollerModelPreferences : public ModelFixture {};

TEST_F(PollerModelPreferences, LogOptionsAreReadAtCreationWithDefaultsForOddValues) {
    const struct {
        const char* stored;
        std::vector<std::pair<QString, QVariant>> values;
        std::array<bool, 4> options; // timestamps, raw frames, only problems, autoscroll
    } rows[] = {
        {"nothing", {}, {true, false, false, true}},
        {"every option turned over",
         {{"timestamps", false},
          {"rawFrames", true},
          {"onlyProblems", true},
          {"autoscroll", false}},
         {false, true, true, false}},
        {"no booleans",
         {{"timestamps", "no"}, {"rawFrames", 1}, {"onlyProblems", "yes"}, {"autoscroll", 0}},
         {true, false, false, true}},
    };
    for (const auto& row : rows) {
        preferences()->clear();
        for (const auto& [key, value] : row.values) {
            preferences()->setValue(key, value);
        }
        create(project({poll("P", {})}));
        const std::array<bool, 4> read{model->showTimestamps(), model->showRawFrames(),
                                       model->logOnlyProblems(), model->autoscroll()};
        EXPECT_EQ(read, row.options) << row.stored;
        EXPECT_EQ(model->output().autoscroll(), row.options[3]) << row.stored;
    }
}

TEST_F(PollerModelPreferences, EveryChangeIsStoredAtOnce) {
    create(project({poll("P", {})}));
    model->setShowTimestamps(false);
    model->setShowRawFrames(true);
    model->setLogOnlyProblems(true);
    model->setAutoscroll(false);
    model->setSelectedPath("/dev/ttyUSB3");
    const std::unique_ptr<QSettings> stored = preferences();
    EXPECT_EQ(stored->value("timestamps").toBool(), false);
    EXPECT_EQ(stored->value("rawFrames").toBool(), true);
    EXPECT_EQ(stored->value("onlyProblems").toBool(), true);
    EXPECT_EQ(stored->value("autoscroll").toBool(), false);
    EXPECT_EQ(stored->value("port").toString(), "/dev/ttyUSB3");
    EXPECT_FALSE(model->output().autoscroll());
}

} // namespace
} // namespace kestrin::ModelTesting
