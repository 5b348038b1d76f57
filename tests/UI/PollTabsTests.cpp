#include "LogPalette.h"
#include "PollTab.h"
#include "PollTabBar.h"
#include "UIFixture.h"

#include <QMenu>

namespace kestrin::ShellTesting {
namespace {

// Chooses the entry of the poll's tab menu, as a right click and a click in it do.
void fromMenu(PollTabBar& bar, const Uuid& poll, const char* entry) {
    const std::unique_ptr<QMenu> menu(bar.contextMenu(poll));
    child<QAction>(*menu, entry)->trigger();
}

std::vector<Poll> twoPolls() {
    return {poll("Boiler", {datapoint("T", RegisterTable::inputRegister, 0)}),
            poll("Pump", {datapoint("P", RegisterTable::holdingRegister, 0)})};
}

// The last poll cannot go: its menu does not offer it and asking anyway changes nothing.
TEST(PollTabMenu, RemovalWaitsForConfirmationAndNeverTakesTheLastPoll) {
    for (const bool confirm : {false, true}) {
        auto model = makeModel(project(twoPolls()));
        PollTabBar bar(*model);
        const Uuid pump = model->polls().back().id;
        fromMenu(bar, pump, "removePollAction");
        QMessageBox* question = bar.removeConfirmation();
        ASSERT_NE(question, nullptr);
        EXPECT_EQ(bar.confirmDelete(), pump);
        EXPECT_EQ(question->windowTitle(), "Remove poll?");
        EXPECT_EQ(question->text(), "Remove the poll “Pump”?");
        EXPECT_EQ(question->informativeText(), "The datapoints in this poll are removed too.");
        // Room for the title beside the title bar's buttons, which Qt leaves out.
        QApplication::processEvents();
        EXPECT_GT(question->width(),
                  question->fontMetrics().horizontalAdvance(question->windowTitle()) + 100);
        EXPECT_EQ(model->polls().size(), 2u) << "removed before the answer";
        click(child(*question, confirm ? "confirmRemovePollButton" : "cancelRemovePollButton"));
        EXPECT_EQ(model->polls().size(), confirm ? 1u : 2u) << confirm;
        EXPECT_FALSE(bar.confirmDelete().has_value()) << confirm;
        EXPECT_EQ(bar.tabs().size(), model->polls().size()) << confirm;
    }
    auto model = makeModel(project({twoPolls().front()}));
    PollTabBar bar(*model);
    const Uuid last = model->polls().front().id;
    const std::unique_ptr<QMenu> menu(bar.contextMenu(last));
    EXPECT_FALSE(child<QAction>(*menu, "removePollAction")->isEnabled());
    bar.askToRemove(last);
    EXPECT_FALSE(bar.confirmDelete().has_value());
}

TEST(PollTabMenu, DuplicateAndPlusAddAPollAndSelectItsTab) {
    auto model = makeModel(project(twoPolls()));
    PollTabBar bar(*model);
    fromMenu(bar, model->polls().front().id, "duplicatePollAction");
    ASSERT_EQ(bar.tabs().size(), 3u);
    const PollTab* copy = bar.tab(*model->selectedPollID());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->text(), "Boiler (copy)");
    EXPECT_TRUE(copy->isSelected());

    click(child(bar, "addPollButton"));
    ASSERT_EQ(bar.tabs().size(), 4u);
    EXPECT_EQ(model->selectedPollID(), model->polls().back().id);
    EXPECT_TRUE(bar.tabs().back()->isSelected());
}

// The editor shows the clicked tab's poll, changes only that one, and an empty name reads Untitled.
TEST(PollTabs, ClickingATabSelectsItsPollAndTheEditorChangesIt) {
    std::vector<Poll> polls = twoPolls();
    polls[0].name.clear();
    polls[1].intervalMs = 5000;
    polls[1].enabled = false;
    auto model = makeModel(project(polls));
    PollTabBar bar(*model);
    EXPECT_EQ(bar.tabs()[0]->text(), "Untitled");
    click(bar.tabs()[1]);
    EXPECT_EQ(model->selectedPollID(), model->polls()[1].id);
    EXPECT_TRUE(bar.tabs()[1]->isSelected());
    EXPECT_FALSE(bar.tabs()[0]->isSelected());
    auto* name = child<QLineEdit>(bar, "pollNameField");
    auto* interval = child<QComboBox>(bar, "pollIntervalPicker");
    auto* active = child<QCheckBox>(bar, "pollActiveToggle");
    EXPECT_EQ(name->text(), "Pump");
    EXPECT_EQ(interval->currentText(), "5 s");
    EXPECT_FALSE(active->isChecked());
    EXPECT_TRUE(bar.tabs()[1]->isPaused());

    name->selectAll();
    QTest::keyClicks(name, "Tank");
    choose(interval, 250);
    click(active);
    const Poll& edited = model->polls()[1];
    EXPECT_EQ(edited.name, "Tank");
    EXPECT_EQ(edited.intervalMs, 250);
    EXPECT_TRUE(edited.enabled);
    EXPECT_FALSE(bar.tabs()[1]->isPaused());
    EXPECT_EQ(model->polls()[0].name, "");
    EXPECT_EQ(bar.tabs()[1]->text(), "Tank");
    name->selectAll();
    QTest::keyClick(name, Qt::Key_Backspace);
    EXPECT_EQ(bar.tabs()[1]->text(), "Untitled");
}

TEST(PollTabDots, FollowTheResultsOfEachPollWhileReading) {
    SimulatorProcess simulator(simulatorCommand());
    ASSERT_FALSE(simulator.port().empty());
    PollerProject project = PollerProject::firstRun();
    Poll served = project.polls.front();
    // The simulator serves the example list only: this address answers exception 02.
    Poll missing = poll("Missing", {datapoint("Nowhere", RegisterTable::holdingRegister, 900)});
    Poll paused = poll("Paused", served.datapoints, false);
    Poll empty = poll("Empty", {});
    for (Poll* poll : {&missing, &paused}) {
        for (Datapoint& point : poll->datapoints) {
            point.id = Uuid::random();
        }
    }
    project.polls = {served, missing, paused, empty};
    auto model = makeModel(project);
    model->addTestDevice(simulator.port(), "simulator");
    PollTabBar bar(*model);
    const auto dots = [&] {
        std::vector<TabDot> all;
        for (const PollTab* tab : bar.tabs()) {
            all.push_back(tab->dot());
        }
        return all;
    };
    const std::vector<TabDot> allGrey(4, TabDot::grey);
    EXPECT_EQ(dots(), allGrey);

    model->start();
    const std::vector<TabDot> reading{TabDot::green, TabDot::orange, TabDot::grey, TabDot::grey};
    EXPECT_TRUE(waitUntil([&] { return dots() == reading; }, 10s))
        << model->errorMessage().value_or("");
    EXPECT_TRUE(bar.tabs()[2]->isPaused());
    EXPECT_EQ(bar.tabs()[0]->dotColour(), LogPalette::green(bar.palette()));
    EXPECT_EQ(bar.tabs()[1]->dotColour(), LogPalette::orange(bar.palette()));

    model->stop();
    EXPECT_EQ(dots(), allGrey);
}

} // namespace
} // namespace kestrin::ShellTesting
