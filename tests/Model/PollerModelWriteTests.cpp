#include "ModelFixture.h"

namespace kestrin::ModelTesting {
namespace {

class PollerModelWrite : public ModelFixture {
protected:
    Datapoint pump = datapoint("Pump", RegisterTable::coil, 5);
    Datapoint setpoint = scaled(holding("Setpoint", 10, 0, DataType::int16), 0.1, "°C");
    Datapoint ratio = holding("Ratio", 20, 0, DataType::float32);
    Datapoint raw = scaled(holding("Raw", 40), 0, "");
    Datapoint input = datapoint("Input", RegisterTable::inputRegister, 30);
    // In the model's project only, so the device answers exception 02.
    Datapoint ghost = holding("Ghost", 999);

    static Datapoint scaled(Datapoint point, double scale, std::string unit) {
        point.scale = scale;
        point.engineeringUnit = std::move(unit);
        return point;
    }

    std::unique_ptr<SimulatorProcess> simulator;

    void SetUp() override {
        simulator = serve(quietProject({pump, setpoint, ratio, raw, input}));
        create(quietProject({pump, setpoint, ratio, raw, input, ghost}));
        startReading(simulator->path());
    }

    // Writes and waits for the outcome; the request as the device received it.
    std::string written(const Datapoint& point, double value) {
        const std::size_t before = received().size();
        model->write(point, value);
        EXPECT_EQ(model->pendingWrites().size(), 1U);
        EXPECT_TRUE(waitUntil([&] { return model->pendingWrites().empty(); }));
        const std::vector<Received> frames = received();
        return frames.size() > before ? frames.back().bytes : std::string();
    }
};

TEST_F(PollerModelWrite, FunctionCodeFollowsTableTypeAndMode) {
    const struct {
        const Datapoint& point;
        WriteMode mode;
        double value;
        std::string request; // without the CRC
    } rows[] = {
        {pump, WriteMode::single, 1, "01 05 00 05 FF 00"},
        {pump, WriteMode::single, 0, "01 05 00 05 00 00"},
        {pump, WriteMode::multiple, 1, "01 0F 00 05 00 01 01 01"},
        {setpoint, WriteMode::single, 21.5, "01 06 00 0A 00 D7"},
        {setpoint, WriteMode::multiple, 21.5, "01 10 00 0A 00 01 02 00 D7"},
        {ratio, WriteMode::single, 1.5, "01 10 00 14 00 02 04 3F C0 00 00"},
        {ratio, WriteMode::multiple, 1.5, "01 10 00 14 00 02 04 3F C0 00 00"},
        {raw, WriteMode::single, 7, "01 06 00 28 00 07"},
    };
    for (const auto& row : rows) {
        model->setWriteMode(row.mode);
        const std::string request = written(row.point, row.value);
        EXPECT_EQ(request.substr(0, row.request.size()), row.request)
            << row.point.name << " " << row.value;
        EXPECT_EQ(model->status(row.point.id)->value, row.value) << row.point.name;
    }
    EXPECT_EQ(model->statistics(), (PollerStatistics{.requests = 8, .responses = 8}));
    EXPECT_FALSE(model->writeError());
}

TEST_F(PollerModelWrite, SentAndConfirmedLinesAndWhatOnlyProblemsKeeps) {
    written(setpoint, 21.5);
    EXPECT_EQ(countLines("→ Unit 1 · FC 06 Write single register · Setpoint = 21.5"), 1);
    EXPECT_EQ(countLines("✎ Unit 1 · Setpoint = 21.5 °C  ("), 1);
    EXPECT_EQ(model->history().samples(setpoint.id), nullptr);

    model->setLogOnlyProblems(true);
    written(setpoint, 30);
    EXPECT_EQ(countLines("→ Unit 1"), 1);
    EXPECT_EQ(countLines("✎ Unit 1 · Setpoint = 30.0 °C  ("), 1);
}

TEST_F(PollerModelWrite, RefusedAddressCountsAnExceptionAndSetsTheWriteError) {
    written(ghost, 3);
    EXPECT_EQ(model->statistics(),
              (PollerStatistics{.requests = 1, .responses = 1, .exceptions = 1}));
    EXPECT_EQ(model->writeError(), "Writing Ghost failed: Illegal data address (02).");
    EXPECT_EQ(model->status(ghost.id), nullptr);
    const QList<StyledRun> runs = model->output().runs();
    const auto failed = std::find_if(runs.begin(), runs.end(), [](const StyledRun& run) {
        return run.text.contains("✕ Writing Ghost failed · Illegal data address (02)");
    });
    ASSERT_NE(failed, runs.end());
    EXPECT_EQ(failed->kind, LogSegment::Kind::error);
}

TEST_F(PollerModelWrite, NothingIsSentForReadOnlyTablesOrWhileNotReading) {
    const std::size_t frames = received().size();
    model->write(input, 5);
    EXPECT_TRUE(model->pendingWrites().empty());
    EXPECT_FALSE(model->writeError());

    model->stop();
    model->write(setpoint, 5);
    EXPECT_EQ(model->writeError(), "Start reading first (Ctrl+R) to write values.");
    EXPECT_TRUE(model->pendingWrites().empty());
    QTest::qWait(50);
    EXPECT_EQ(received().size(), frames);
}

TEST_F(PollerModelWrite, StopDropsWritesInFlight) {
    model->write(setpoint, 12);
    model->stop();
    EXPECT_TRUE(model->pendingWrites().empty());
    const QString text = model->output().text();
    QTest::qWait(100);
    EXPECT_EQ(model->output().text(), text);
    EXPECT_EQ(model->statistics(), PollerStatistics{});
}

} // namespace
} // namespace kestrin::ModelTesting
