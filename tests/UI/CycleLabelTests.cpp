#include "CycleLabel.h"
#include "PollTabBar.h"
#include "UIFixture.h"

namespace kestrin::UITesting {
namespace {

// The label plans once for a burst of changes, when the event loop next runs.
CycleLabel* settled(CycleLabel* label) {
    QCoreApplication::processEvents();
    return label;
}

// Two reads of one register (HR 0 and HR 100) at 9600 8E1: 15 characters each, 3.5 characters
// of silence and 5 ms for the device, 26 ms a read. Beside it "Pump" reads HR 0 every 100 ms.
TEST(CycleLabel, FollowsTheIntervalTheSerialSettingsTheTimeoutAndTheDatapoints) {
    auto model = makeModel(
        project({poll("Boiler", {Testing::holding("Flow", 0), Testing::holding("Return", 100)}),
                 poll("Pump", {Testing::holding("Speed", 0)})}));
    model->setInterval(model->polls()[0].id, 1000);
    model->setInterval(model->polls()[1].id, 100);
    model->setSelectedPollID(model->polls()[0].id);
    PollTabBar bar(*model);
    auto* label = child<CycleLabel>(bar, "pollCycleLabel");
    EXPECT_EQ(settled(label)->text(), "≈ 52 ms a cycle");
    EXPECT_FALSE(label->isWarning());
    EXPECT_TRUE(label->toolTip().contains("\nUnit 1 · HR 0 · 26 ms\nUnit 1 · HR 100 · 26 ms\n"))
        << label->toolTip().toStdString();
    // 52 ms of 1000 and 26 ms of 100; the other poll switched off leaves 5 %.
    EXPECT_TRUE(label->toolTip().endsWith("need 31 % of the line"))
        << label->toolTip().toStdString();
    model->setEnabled(model->polls()[1].id, false);
    EXPECT_TRUE(settled(label)->toolTip().endsWith("need 5 % of the line"))
        << label->toolTip().toStdString();

    // Gaps up to 100 addresses read HR 0 to 100 in one request.
    model->setMaxGap(100);
    EXPECT_TRUE(settled(label)->toolTip().contains("\nUnit 1 · HR 0–100 · "))
        << label->toolTip().toStdString();
    model->setMaxGap(0);

    model->setInterval(model->polls()[0].id, 50);
    EXPECT_EQ(settled(label)->text(), "Takes 52 ms: runs every 52 ms, not every 50 ms");
    EXPECT_TRUE(label->isWarning());

    // 1.4 ms of characters and 1.75 ms of silence a read.
    SerialConfiguration fast = model->serial();
    fast.baudRate = 115200;
    model->setSerial(fast);
    EXPECT_EQ(settled(label)->text(), "≈ 16 ms a cycle");
    EXPECT_FALSE(label->isWarning());

    // At 300 baud each answer takes 5 ms and 7 characters of 36.7 ms: longer than the time-out.
    fast.baudRate = 300;
    model->setSerial(fast);
    model->setTimeoutMs(200);
    EXPECT_EQ(settled(label)->text(),
              "An answer takes 262 ms, longer than the 200 ms response timeout");
    EXPECT_TRUE(label->isWarning());
    model->setTimeoutMs(500);
    EXPECT_EQ(settled(label)->text(), "Takes 1367 ms: runs every 1367 ms, not every 50 ms");

    fast.baudRate = 115200;
    model->setSerial(fast);
    model->deleteDatapoints({model->polls()[0].datapoints[1].id});
    EXPECT_EQ(settled(label)->text(), "≈ 8 ms a cycle");
    model->deleteDatapoints({model->polls()[0].datapoints[0].id});
    EXPECT_TRUE(settled(label)->isHidden());
}

using CycleLabelReading = ModelTesting::QuietReading;

// HR 100-101 at 9600 8E1: 17 characters of 19.5 ms and 4 ms of silence. Unit 1 answering 30 ms
// after each request replaces the 5 ms assumed until then. Listening, Kestrin has no cycle.
TEST_F(CycleLabelReading, PlansAUnitWithTheTurnaroundMeasuredWhileReading) {
    model->setSelectedPollID(points);
    PollTabBar bar(*model);
    auto* label = child<CycleLabel>(bar, "pollCycleLabel");
    EXPECT_EQ(settled(label)->text(), "≈ 28 ms a cycle");
    for (int i = 0; i < 3; ++i) {
        send(ModelTesting::answer(points, both, {1, 2}, 0.0194792 + 0.030));
    }
    EXPECT_TRUE(ModelTesting::waitUntil([&] { return label->text() == "≈ 53 ms a cycle"; }))
        << label->text().toStdString();
    EXPECT_TRUE(label->toolTip().startsWith("Turnaround as measured while reading for unit 1\n"))
        << label->toolTip().toStdString();
    model->stop();
    model->listen();
    ASSERT_TRUE(ModelTesting::waitUntil([&] { return model->state() == PollerState::listening; }));
    EXPECT_TRUE(settled(label)->isHidden());
    model->stop();
    EXPECT_FALSE(settled(label)->isHidden());
}

} // namespace
} // namespace kestrin::UITesting
