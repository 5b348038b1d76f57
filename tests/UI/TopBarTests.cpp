#include "DatapointTableModel.h"
#include "ElidedLine.h"
#include "PollTab.h"
#include "PollTabBar.h"
#include "SerialSettingsPopover.h"
#include "TopBar.h"
#include "UIFixture.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QMenu>
#include <QSpinBox>

namespace kestrin::UITesting {
namespace {

// A model of the project, the example list unless told, with these ports listed and that one
// chosen.
std::unique_ptr<PollerModel> withPorts(const std::vector<std::string>& ports,
                                       const std::string& selected,
                                       PollerProject start = PollerProject::firstRun()) {
    auto model = makeModel(std::move(start), portsAt(ports));
    EXPECT_TRUE(waitUntil([&] { return model->ports().size() == ports.size(); }));
    model->setSelectedPath(selected);
    return model;
}

// A chosen port or rate reaches the model, and the rate follows the model's.
TEST(PortPicker, NamesWhatIsPresentAndWhatIsMissingAndPassesOnWhatIsChosen) {
    using Row = std::tuple<const char*, std::vector<std::string>, std::string, QString, int>;
    const Row rows[] = {
        {"no ports", {}, "", "No ports found", 1},
        {"a selected port that is gone", {}, "/dev/ttyUSB7", "/dev/ttyUSB7 (not connected)", 1},
        {"a port among others", {"/dev/ttyS0", "/dev/ttyS1"}, "/dev/ttyS1", "ttyS1", 2},
        {"a gone one beside", {"/dev/ttyS0"}, "/dev/ttyUSB7", "/dev/ttyUSB7 (not connected)", 2},
    };
    for (const auto& [situation, ports, selected, shown, entries] : rows) {
        SCOPED_TRACE(situation);
        auto model = withPorts(ports, selected);
        TopBar bar(*model);
        auto* picker = child<QComboBox>(bar, "portPicker");
        EXPECT_EQ(picker->currentText(), shown);
        EXPECT_EQ(picker->count(), entries);
    }
    auto model = withPorts({"/dev/ttyS0", "/dev/ttyS1"}, "");
    TopBar bar(*model);
    choose(child<QComboBox>(bar, "portPicker"), QStringLiteral("/dev/ttyS1"));
    EXPECT_EQ(model->selectedPath(), "/dev/ttyS1");

    auto* picker = child<QComboBox>(bar, "baudPicker");
    EXPECT_EQ(picker->currentText(), "9600 baud");
    choose(picker, 19200);
    EXPECT_EQ(model->serial().baudRate, 19200);
    SerialConfiguration serial = model->serial();
    serial.baudRate = 115200;
    model->setSerial(serial);
    EXPECT_EQ(picker->currentText(), "115200 baud");
    EXPECT_EQ(child<QToolButton>(bar, "frameSettingsButton")->text(), "8E1");
}

// Which situations allow a start or listening is the model's rule; here that the bar shows its
// answers, and the reason for each button that is off.
TEST(StartAndListen, AreOnlyOnWhenTheModelAllowsAndSayWhyNot) {
    using Row = std::tuple<std::vector<std::string>, PollerProject, QString, QString>;
    const Row rows[] = {
        {{},
         PollerProject::firstRun(),
         "Connect and select a serial port to start",
         "Connect and select a serial port to listen"},
        {{"/dev/ttyS0"}, PollerProject::firstRun(), "", ""},
        {{"/dev/ttyS0"},
         project({poll("Empty", {})}),
         "Add datapoints to an active poll to start",
         ""},
    };
    for (const auto& [ports, start, why, whyNotListen] : rows) {
        SCOPED_TRACE(why.toStdString());
        auto model = withPorts(ports, ports.empty() ? "" : ports.front(), start);
        TopBar bar(*model);
        showAt(bar, 1180, 48);
        auto* button = child<QPushButton>(bar, "startStopButton");
        auto* listen = child<QPushButton>(bar, "listenButton");
        auto* reason = child<ElidedLine>(bar, "startReason");
        const bool on = why.isEmpty();
        EXPECT_EQ(button->isEnabled(), on);
        EXPECT_EQ(listen->isEnabled(), whyNotListen.isEmpty());
        EXPECT_EQ(listen->text(), "Listen");
        EXPECT_EQ(listen->accessibleDescription(), whyNotListen);
        EXPECT_EQ(reason->isVisible(), !on);
        EXPECT_EQ(reason->text(), why);
        // The colour it is drawn in: the program's own only while it can be pressed.
        const QPalette::ColorGroup drawn = on ? QPalette::Active : QPalette::Disabled;
        EXPECT_EQ(button->palette().color(drawn, QPalette::Button) == LogPalette::accent(), on);
    }
}

// The controls of the line's settings, in the bar and its popover.
std::vector<QWidget*> lineSettings(TopBar& bar) {
    std::vector<QWidget*> controls{child(bar, "portPicker"), child(bar, "baudPicker")};
    for (const char* name :
         {"dataBitsPicker", "parityPicker", "stopBitsPicker", "timeoutPicker", "gapPicker",
          "writeModePicker", "modbusDefaultButton", "rs485Switch"}) {
        controls.push_back(child(*bar.serialSettings(), name));
    }
    return controls;
}

// Reading and listening lock the same settings, and each is stopped by its own button while the
// other's is off. The stop comes while the first request waits for an answer that never comes.
TEST(TopBarLock, LineSettingsLockWhileReadingOrListeningAndStopDoesNotWaitForTheTimeOut) {
    QuietTerminal terminal;
    ASSERT_FALSE(terminal.path().empty());
    PollerProject slow = PollerProject::firstRun();
    slow.timeoutMs = 5000;
    auto model = makeModel(std::move(slow));
    model->addTestDevice(terminal.path(), "terminal");
    TopBar bar(*model);
    // Unlocked without a tip; locked with one naming what to stop.
    const auto lockedWith = [&](const QString& tip) {
        for (QWidget* control : lineSettings(bar)) {
            SCOPED_TRACE(control->objectName().toStdString());
            EXPECT_EQ(control->isEnabled(), tip.isEmpty());
            EXPECT_TRUE(tip.isEmpty() ? !control->toolTip().endsWith("to change this")
                                      : control->toolTip() == tip)
                << control->toolTip().toStdString();
        }
    };
    auto* start = child<QPushButton>(bar, "startStopButton");
    auto* listen = child<QPushButton>(bar, "listenButton");
    // Nothing answers on this line: a datapoint is waited for only while values can come.
    DatapointTableModel table(*model);
    const auto firstStatus = [&] {
        return table.index(0, DatapointTableModel::status).data().toString();
    };
    using Row = std::tuple<void (PollerModel::*)(), PollerState, QPushButton*, QPushButton*,
                           QString, QString, QString>;
    const Row rows[] = {
        {&PollerModel::start, PollerState::running, start, listen, "Reading", "Stop",
         "Stop reading to change this"},
        {&PollerModel::listen, PollerState::listening, listen, start, "Listening", "Stop Listening",
         "Stop listening to change this"},
    };
    for (const auto& [begin, state, own, other, stateText, stopText, tip] : rows) {
        SCOPED_TRACE(stateText.toStdString());
        (model.get()->*begin)();
        ASSERT_TRUE(waitUntil([&, state = state] { return model->state() == state; }))
            << model->errorMessage().value_or("");
        lockedWith(tip);
        EXPECT_EQ(firstStatus(), "Waiting…");
        EXPECT_TRUE(child<ElidedLine>(bar, "startReason")->text().isEmpty());
        EXPECT_EQ(child(bar, "statusDot")->toolTip(), stateText);
        EXPECT_EQ(own->text(), stopText);
        EXPECT_EQ(own->palette().color(QPalette::Button), LogPalette::fillOrange());
        EXPECT_FALSE(other->isEnabled());

        QTest::qWait(100);
        const auto clicked = std::chrono::steady_clock::now();
        click(own);
        const std::chrono::duration<double> blocked = std::chrono::steady_clock::now() - clicked;
        EXPECT_EQ(model->state(), PollerState::stopped);
        EXPECT_LT(blocked.count(), 1.0) << "the window froze for the time-out";
        lockedWith(QString());
        EXPECT_EQ(firstStatus(), "—");
        EXPECT_EQ(child(bar, "statusDot")->toolTip(), "Stopped");
        EXPECT_TRUE(start->isEnabled() && listen->isEnabled());
    }
    model->start();
    EXPECT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }))
        << "the port is free again at once: " << model->errorMessage().value_or("");
    model->stop();
}

// Which frames are valid is the serial configuration's test; here that each picker reaches it.
TEST(SerialSettings, PickersWriteTheRequestSettingsAndModbusDefaultRestoresEightEvenOne) {
    auto model = makeModel(PollerProject::firstRun());
    SerialSettingsPopover settings(*model);
    choose(child<QComboBox>(settings, "gapPicker"), 8);
    EXPECT_EQ(model->maxGap(), 8);
    choose(child<QComboBox>(settings, "timeoutPicker"), 2000);
    EXPECT_EQ(model->timeoutMs(), 2000);
    choose(child<QComboBox>(settings, "writeModePicker"), int(WriteMode::multiple));
    EXPECT_EQ(model->writeMode(), WriteMode::multiple);
    auto* parity = child<QComboBox>(settings, "parityPicker");
    choose(parity, int(Parity::odd));
    choose(child<QComboBox>(settings, "stopBitsPicker"), 2);
    choose(child<QComboBox>(settings, "dataBitsPicker"), 7);
    EXPECT_EQ(model->serial().frameDescription(), "7O2");

    int changes = 0;
    QObject::connect(model.get(), &PollerModel::serialChanged, [&] { ++changes; });
    click(child(settings, "modbusDefaultButton"));
    EXPECT_EQ(model->serial().frameDescription(), "8E1");
    EXPECT_EQ(parity->currentData().toInt(), int(Parity::even));
    EXPECT_LE(changes, 3);
}

// Switched off, the direction is absent from the settings and its fields are off too.
TEST(SerialSettings, RS485DirectionIsWrittenOnlyWhileSwitchedOn) {
    auto model = makeModel(PollerProject::firstRun());
    SerialSettingsPopover settings(*model);
    auto* direction = child<QCheckBox>(settings, "rs485Switch");
    auto* level = child<QComboBox>(settings, "rtsLevelPicker");
    auto* after = child<QSpinBox>(settings, "delayAfterField");
    EXPECT_FALSE(direction->isChecked() || level->isEnabled() || after->isEnabled());

    direction->click();
    EXPECT_EQ(model->serial().rs485, RS485Direction{});
    EXPECT_TRUE(level->isEnabled() && after->isEnabled());
    choose(level, 0);
    after->setValue(5);
    EXPECT_EQ(model->serial().rs485, (RS485Direction{false, 0, 5}));
    direction->click();
    EXPECT_EQ(model->serial().rs485, std::nullopt);

    SerialConfiguration serial = model->serial();
    serial.rs485 = RS485Direction{true, 2, 3};
    model->setSerial(serial);
    EXPECT_TRUE(direction->isChecked());
    EXPECT_EQ(level->currentData().toInt(), 1);
    EXPECT_EQ(child<QSpinBox>(settings, "delayBeforeField")->value(), 2);
    EXPECT_EQ(after->value(), 3);
}

TEST(SerialSettings, EveryLabelAndChoiceShowsWholeInEveryLanguage) {
    auto model = makeModel(PollerProject::firstRun());
    for (const Language language : Language::allCases) {
        L10n::withLanguageForTesting(language, [&] {
            QWidget anchor;
            anchor.show();
            SerialSettingsPopover popover(*model);
            popover.showBelow(&anchor);
            QApplication::processEvents();
            for (const QLabel* label : popover.findChildren<QLabel*>()) {
                if (!label->wordWrap()) {
                    EXPECT_GE(label->width(), label->sizeHint().width())
                        << language.rawValue() << ": " << label->text().toStdString();
                }
            }
            for (const QComboBox* picker : popover.findChildren<QComboBox*>()) {
                EXPECT_GE(picker->width(), picker->sizeHint().width())
                    << language.rawValue() << ": " << picker->currentText().toStdString();
            }
        });
    }
}

// Sends one Escape keystroke to a widget as X11 delivers it, with the keystroke's time stamp.
void escape(QWidget* widget, QEvent::Type type, quint64 timestamp) {
    QKeyEvent key(type, Qt::Key_Escape, Qt::NoModifier);
    key.setTimestamp(timestamp);
    QApplication::sendEvent(widget, &key);
}

TEST(SerialSettings, EscapeInAnOpenListClosesOnlyTheList) {
    auto model = makeModel(PollerProject::firstRun());
    QWidget anchor;
    anchor.show();
    SerialSettingsPopover popover(*model);
    popover.showBelow(&anchor);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&popover));
    auto* picker = child<QComboBox>(popover, "gapPicker");
    picker->showPopup();
    QWidget* list = picker->view();
    ASSERT_TRUE(waitUntil([&] { return list->isVisible(); }));
    // Under X11 the list closes on the keystroke's shortcut check, and the key itself then goes
    // to the popover, the popup that is left.
    escape(list, QEvent::ShortcutOverride, 1000);
    ASSERT_TRUE(waitUntil([&] { return !list->isVisible(); }));
    escape(&popover, QEvent::KeyPress, 1000);
    QApplication::processEvents();
    EXPECT_TRUE(popover.isVisible());
    escape(&popover, QEvent::KeyPress, 2000);
    EXPECT_TRUE(waitUntil([&] { return !popover.isVisible(); }));
}

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

} // namespace
} // namespace kestrin::UITesting
