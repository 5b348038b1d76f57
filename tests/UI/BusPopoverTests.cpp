#include "BusPopover.h"
#include "QtText.h"
#include "UIFixture.h"

namespace kestrin::UITesting {
namespace {

using BusPopoverReading = ModelTesting::QuietReading;

// A bus on which nothing answers is when the figures are most wanted: the polls and the line's
// busy share show from the start, and only the unit table waits for an answer.
TEST_F(BusPopoverReading, ShowsThePollsAndTheBusyLineBeforeAnyUnitAnswers) {
    BusPopover popover(*model);
    const auto* units = child<QLabel>(popover, "busUnits");
    const auto* polls = child<QLabel>(popover, "busPolls");
    const auto* busy = child<QLabel>(popover, "busShare");
    fail(PollFailure::timeout());
    popover.refresh();
    EXPECT_EQ(units->text(), qt(L10n::texts().bus.nothingYet()).toHtmlEscaped());
    EXPECT_FALSE(polls->isHidden());
    EXPECT_TRUE(polls->text().contains("<table"));
    EXPECT_FALSE(busy->isHidden());
}

} // namespace
} // namespace kestrin::UITesting
