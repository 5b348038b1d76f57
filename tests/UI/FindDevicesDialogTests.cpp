#include "ElidedLine.h"
#include "FindDevicesDialog.h"
#include "FinderResults.h"
#include "UIFixture.h"

#include <QMenu>
#include <QMenuBar>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>

namespace kestrin::UITesting {
namespace {

// The window with the dialog opened from its menu, on a simulator serving unit 3.
class FindDevices : public testing::Test {
protected:
    SimulatorProcess simulator{ChildProcess::sim({"--unit", "3"})};
    std::unique_ptr<PollerModel> model = makeModel(plant({Testing::holding("Level", 100)}));
    std::unique_ptr<MainWindow> window = std::make_unique<MainWindow>(*model);
    FindDevicesDialog* dialog = nullptr;

    void SetUp() override {
        ASSERT_FALSE(simulator.port().empty());
        model->addTestDevice(simulator.port(), "simulator");
        activate(*window);
        for (QAction* action : child<QMenu>(*window, "pollerMenu")->actions()) {
            if (action->text() == "Find Devices…") {
                action->trigger();
            }
        }
        dialog = child<FindDevicesDialog>(*window, "findDevicesDialog");
    }
    // The dialog, and the finder in it, go before the model.
    void TearDown() override { window.reset(); }
};

TEST_F(FindDevices, TheMenuOpensTheDialogWhoseScansAreLockedWhileReading) {
    EXPECT_TRUE(dialog->isVisible());
    auto* scans = child<QTabWidget>(*dialog, "finderScans");
    auto* start = child<QPushButton>(*dialog, "finderStart");
    auto* locked = child<QLabel>(*dialog, "finderLocked");
    const auto lockedWhileReading = [&](bool reading) {
        EXPECT_EQ(scans->isEnabled(), !reading);
        EXPECT_EQ(start->isEnabled(), !reading);
        EXPECT_EQ(locked->isVisible(), reading);
        EXPECT_EQ(start->toolTip(), reading ? "Stop reading to change this" : "");
    };
    lockedWhileReading(false);

    model->start();
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    lockedWhileReading(true);
    model->stop();
    lockedWhileReading(false);
}

// And the other way round: while a scan has the port, the window's Start is off and says why.
TEST_F(FindDevices, WhileAScanHasThePortTheWindowsStartIsOffAndSaysWhy) {
    auto* start = child<QPushButton>(*window, "startStopButton");
    auto* reason = child<ElidedLine>(*window, "startReason");
    ASSERT_TRUE(start->isEnabled());
    click(child<QPushButton>(*dialog, "finderStart"));
    ASSERT_TRUE(dialog->finder().isRunning());
    EXPECT_FALSE(start->isEnabled());
    EXPECT_EQ(reason->text(), "Find Devices is using the port; start when it is done");

    click(child<QPushButton>(*dialog, "finderStart"));
    ASSERT_TRUE(waitUntil([&] { return !dialog->finder().isRunning(); }, 60s));
    EXPECT_TRUE(start->isEnabled());
    EXPECT_TRUE(reason->text().isEmpty());
}

TEST_F(FindDevices, AUnitFoundFillsTheUnitOfTheOtherScans) {
    child<QSpinBox>(*dialog, "unitsLast")->setValue(5);
    click(child<QPushButton>(*dialog, "finderStart"));
    ASSERT_TRUE(dialog->finder().isRunning());
    EXPECT_EQ(child<QPushButton>(*dialog, "finderStart")->text(), "Cancel");
    ASSERT_TRUE(waitUntil([&] { return !dialog->finder().isRunning(); }, 60s));

    auto* results = child<QTableWidget>(*dialog, "finderResults");
    ASSERT_EQ(results->rowCount(), 1);
    EXPECT_EQ(results->item(0, 0)->text(), "3");
    results->selectRow(0);
    EXPECT_EQ(child<QSpinBox>(*dialog, "mapUnit")->value(), 3);
    EXPECT_EQ(child<QSpinBox>(*dialog, "sweepFirst")->value(), 3);
    EXPECT_EQ(child<QSpinBox>(*dialog, "sweepLast")->value(), 3);
}

// The scan's thread does not speak the user's language; the dialog does.
TEST_F(FindDevices, APortThatCannotBeOpenedIsExplainedAsReadingExplainsIt) {
    // A path that never exists: a pseudo-terminal's number, once freed, may go to another test's.
    model->addTestDevice("/dev/kestrin-missing-port", "missing");
    L10n::withLanguageForTesting(Language::nl, [&] {
        click(child<QPushButton>(*dialog, "finderStart"));
        ASSERT_TRUE(waitUntil([&] { return !dialog->finder().isRunning(); }, 60s));
        EXPECT_FALSE(model->isPortLent());
        model->start();
        ASSERT_TRUE(model->errorMessage().has_value());
        EXPECT_EQ(child<QLabel>(*dialog, "finderSummary")->text(),
                  QString::fromStdString(*model->errorMessage()));
    });
}

// A unit found later refills the table; the unit the user chose stays chosen.
TEST(FinderResults, ARefillKeepsTheChosenUnitChosen) {
    const auto unit = [](std::uint8_t id) {
        UnitScan::Answer answer;
        answer.unit = id;
        return answer;
    };
    QTableWidget table;
    DeviceFinder::Findings findings;
    findings.units = {unit(3)};
    FinderResults::fill(table, findings);
    table.selectRow(0);
    findings.units = {unit(1), unit(3)};
    FinderResults::fill(table, findings);
    EXPECT_EQ(FinderResults::chosenUnit(table), 3);
}

} // namespace
} // namespace kestrin::UITesting
