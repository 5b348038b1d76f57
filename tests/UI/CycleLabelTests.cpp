#include "CycleLabel.h"
#include "PollTabBar.h"
#include "UIFixture.h"

namespace kestrin::UITesting {
namespace {

// Two reads of one register (HR 0 and HR 200) at 9600 8E1: 15 characters each, 3.5 characters
// of silence and 5 ms for the device, 26 ms a read.
TEST(CycleLabel, FollowsTheIntervalTheSerialSettingsTheTimeoutAndTheDatapoints) {
    auto model = makeModel(
        project({poll("Boiler", {Testing::holding("Flow", 0), Testing::holding("Return", 200)})}));
    model->setInterval(model->polls()[0].id, 1000);
    PollTabBar bar(*model);
    auto* label = child<CycleLabel>(bar, "pollCycleLabel");
    EXPECT_EQ(label->text(), "≈ 52 ms a cycle");
    EXPECT_FALSE(label->isWarning());
    EXPECT_TRUE(label->toolTip().contains("\nUnit 1 · HR 0 · 26 ms\nUnit 1 · HR 200 · 26 ms\n"))
        << label->toolTip().toStdString();

    model->setInterval(model->polls()[0].id, 50);
    EXPECT_EQ(label->text(), "Takes 52 ms: runs every 52 ms, not every 50 ms");
    EXPECT_TRUE(label->isWarning());

    // 1.4 ms of characters and 1.75 ms of silence a read.
    SerialConfiguration fast = model->serial();
    fast.baudRate = 115200;
    model->setSerial(fast);
    EXPECT_EQ(label->text(), "≈ 16 ms a cycle");
    EXPECT_FALSE(label->isWarning());

    // At 300 baud each answer takes 5 ms and 7 characters of 36.7 ms: longer than the time-out.
    fast.baudRate = 300;
    model->setSerial(fast);
    model->setTimeoutMs(200);
    EXPECT_EQ(label->text(), "An answer takes 262 ms, longer than the 200 ms response timeout");
    EXPECT_TRUE(label->isWarning());
    model->setTimeoutMs(500);
    EXPECT_EQ(label->text(), "Takes 1367 ms: runs every 1367 ms, not every 50 ms");

    fast.baudRate = 115200;
    model->setSerial(fast);
    model->deleteDatapoints({model->polls()[0].datapoints[1].id});
    EXPECT_EQ(label->text(), "≈ 8 ms a cycle");
    model->deleteDatapoints({model->polls()[0].datapoints[0].id});
    EXPECT_TRUE(label->isHidden());
}

} // namespace
} // namespace kestrin::UITesting
