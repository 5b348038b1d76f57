#include "ModelFixture.h"

#include <filesystem>
#include <tuple>

namespace kestrin::ModelTesting {
namespace {

class PollerModelListening : public ModelFixture {
protected:
    SimulatorProcess device{ChildProcess::sim()};

    void startListening(const std::string& path) {
        model->addTestDevice(path, "sim");
        model->listen();
        ASSERT_TRUE(model->isEngineHeld()) << model->errorMessage().value_or("");
        ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::listening; }));
    }
};

// Listening needs only a port; reading's start and toggle leave it alone, and writes are refused
// with the banner's reason.
TEST_F(PollerModelListening, NeedsOnlyAPortKeepsReadingOutRefusesWritesAndStopsOnce) {
    const Datapoint level = holding("Level", 100);
    create(project({poll("Off", {level}, false)}));
    EXPECT_EQ(model->listenObstacle(), PollerModel::StartObstacle::noPort);
    model->listen();
    EXPECT_EQ(model->errorMessage(), "Select a serial port first.");
    const std::string missing = file("ttyGone").toStdString();
    model->addTestDevice(missing, "gone");
    model->listen();
    EXPECT_NE(model->errorMessage().value_or("").find(missing), std::string::npos);
    EXPECT_FALSE(model->isListening());

    model->addTestDevice(device.port(), "quiet");
    EXPECT_EQ(model->startObstacle(), PollerModel::StartObstacle::nothingToRead);
    EXPECT_TRUE(model->canListen());
    model->setPortLent(true);
    EXPECT_EQ(model->listenObstacle(), PollerModel::StartObstacle::portLent);
    model->setPortLent(false);

    model->toggleListening();
    EXPECT_TRUE(model->isListening());
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::listening; }));
    EXPECT_EQ(countInLog("--- Listening on " + device.port() + " @ 9600 8E1 ---"), 1);
    model->start();
    model->toggle();
    model->write(level, 5);
    EXPECT_EQ(model->writeError(), "Kestrin is only listening and sends nothing. Stop listening "
                                   "(Ctrl+L) and start reading to write values.");
    EXPECT_TRUE(model->pendingWrites().empty());
    EXPECT_EQ(model->state(), PollerState::listening);
    EXPECT_EQ(countInLog("Reading started"), 0);

    model->toggleListening();
    model->stop();
    EXPECT_FALSE(model->isListening());
    EXPECT_FALSE(model->isEngineHeld());
    EXPECT_EQ(model->state(), PollerState::stopped);
    EXPECT_EQ(countInLog("--- Listening stopped ---"), 1);
    EXPECT_EQ(countInLog("Reading stopped"), 0);
}

} // namespace
} // namespace kestrin::ModelTesting
