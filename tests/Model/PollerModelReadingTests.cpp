#include "ModelFixture.h"

#include <csignal>
#include <filesystem>

namespace kestrin::ModelTesting {
namespace {

class PollerModelReading : public ModelFixture {
protected:
    Datapoint level = holding("Level", 100, 500);
    Datapoint flow = holding("Flow", 101, 42);
    Datapoint far = holding("Far", 200, 777);
    PollerProject served = project({poll("Boiler", {level, flow, far})});
    PollerProject reading = project({poll("Boiler", {level, flow})});

    bool hasValue(const Datapoint& point, double value) const {
        const PointStatus* status = model->status(point.id);
        return status != nullptr && status->value == value;
    }
};

TEST_F(PollerModelReading, ValuesComeFromTheDeviceAndChangesTakeEffectWithoutARestart) {
    const auto simulator = serve(served);
    create(reading);
    startReading(simulator->port());
    ASSERT_TRUE(waitUntil([&] { return hasValue(level, 500) && hasValue(flow, 42); }));
    EXPECT_EQ(model->status(flow.id)->raw, std::vector<std::uint16_t>{42});
    EXPECT_NE(model->history().samples(level.id), nullptr);
    EXPECT_EQ(countInLog("← Unit 1 · FC 03 Read holding registers · 04 01 F4 00 2A  ("),
              model->statistics().responses);

    std::vector<Poll> polls = model->polls();
    polls[0].datapoints.push_back(far);
    model->setPolls(polls);
    ASSERT_TRUE(waitUntil([&] { return hasValue(far, 777); }));

    // Bridging the gap reads HR 100-200 as one block of 101 registers.
    model->setMaxGap(100);
    ASSERT_TRUE(waitUntil([&] {
        const std::vector<std::string> frames = received();
        return !frames.empty() && frames.back().starts_with("01 03 00 64 00 65");
    }));
    EXPECT_EQ(countInLog("Reading started"), 1);
}

// Port discovery never announces a pseudo-terminal: only the watch on the path sees it return.
TEST_F(PollerModelReading, LostPortResumesWhenItOpensAgainAtTheSamePath) {
    const std::string link = file("ttyKestrinSim").toStdString();
    auto simulator = serve(served, {"--link", link});
    create(reading);
    startReading(link);
    ASSERT_TRUE(waitUntil([&] { return hasValue(level, 500); }));

    // Killed outright, the simulator leaves its link behind, pointing at nothing.
    simulator->end(SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::serialLost; }));
    const std::int64_t responses = model->statistics().responses;

    // Listed again before the device is back: the failed restart says nothing.
    model->portsChanged({});
    QTest::qWait(150);
    EXPECT_EQ(model->state(), PollerState::serialLost);
    EXPECT_FALSE(model->errorMessage());

    simulator = serve(served, {"--link", link});
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    EXPECT_EQ(countInLog("--- Serial port open again ---"), 1);
    EXPECT_EQ(countInLog("--- Reading started on " + link), 2);
    ASSERT_TRUE(waitUntil([&] { return model->statistics().responses > responses; }));
}

// A device back before the engine noticed the loss: nothing will announce its return. A link to
// a pseudo-terminal counts once it has been made anew; the old one may lead to a stranger's.
TEST_F(PollerModelReading, LostPortThatIsBackWhenTheLossArrivesIsReopened) {
    const std::string link = file("ttyKestrinSim").toStdString();
    const auto simulator = serve(served, {"--link", link});
    create(reading);
    startReading(link);
    const std::filesystem::path target = std::filesystem::read_symlink(link);
    std::filesystem::remove(link);
    std::filesystem::create_symlink(target, link);

    model->handleEvent({PollerEvent::SerialLost{link}});
    EXPECT_EQ(model->state(), PollerState::serialLost);
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    EXPECT_EQ(countInLog("--- Serial port open again ---"), 1);
    EXPECT_EQ(countInLog("--- Reading started on " + link), 2);
}

} // namespace
} // namespace kestrin::ModelTesting
