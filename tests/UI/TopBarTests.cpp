#include "ElidedLine.h"
#include "LanguageForTesting.h"
#include "LogPalette.h"
#include "SerialSettingsPopover.h"
#include "StatusDot.h"
#include "TopBar.h"
#include "UIFixture.h"

#include <QAbstractItemView>
#include <QKeyEvent>

namespace kestrin::ShellTesting {
namespace {

Poll examplePoll() {
    return PollerProject::firstRun().polls.front();
}

// A model of one poll with these ports listed and that one chosen.
std::unique_ptr<PollerModel> withPorts(const std::vector<std::string>& ports,
                                       const std::string& selected, Poll read = examplePoll()) {
    auto model = makeModel(project({std::move(read)}), portsAt(ports));
    EXPECT_TRUE(waitUntil([&] { return model->ports().size() == ports.size(); }));
    model->setSelectedPath(selected);
    return model;
}

TEST(PortPicker, NamesWhatIsPresentAndWhatIsMissing) {
    const struct {
        const char* situation;
        std::vector<std::string> ports;
        std::string selected;
        QString shown;
        int entries;
    } rows[] = {
        {"no ports", {}, "", "No ports found", 1},
        {"a selected port that is gone", {}, "/dev/ttyUSB7", "/dev/ttyUSB7 (not connected)", 1},
        {"a port among others", {"/dev/ttyS0", "/dev/ttyS1"}, "/dev/ttyS1", "ttyS1", 2},
        {"a gone one beside", {"/dev/ttyS0"}, "/dev/ttyUSB7", "/dev/ttyUSB7 (not connected)", 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.situation);
        auto model = withPorts(row.ports, row.selected);
        TopBar bar(*model);
        auto* picker = child<QComboBox>(bar, "portPicker");
        EXPECT_EQ(picker->currentText(), row.shown);
        EXPECT_EQ(picker->count(), row.entries);
    }
}

TEST(PortPicker, AChosenPortOrRateReachesTheModelAndTheRateFollowsIt) {
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

// Which situations allow a start is the model's rule; here that the bar shows its answer.
TEST(StartButton, IsOnlyOnWithAPresentPortAndDatapointsAndSaysWhyNot) {
    Poll switchedOff = examplePoll();
    switchedOff.enabled = false;
    const struct {
        std::vector<std::string> ports;
        Poll poll;
        QString reason;
    } rows[] = {
        {{}, examplePoll(), "Connect and select a serial port to start"},
        {{"/dev/ttyS0"}, switchedOff, "Add datapoints to an active poll to start"},
        {{"/dev/ttyS0"}, examplePoll(), ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.reason.toStdString());
        auto model = withPorts(row.ports, row.ports.empty() ? "" : row.ports.front(), row.poll);
        TopBar bar(*model);
        showAt(bar, 1180, 48);
        auto* button = child<QPushButton>(bar, "startStopButton");
        auto* reason = child<ElidedLine>(bar, "startReason");
        const bool on = row.reason.isEmpty();
        EXPECT_EQ(button->isEnabled(), on);
        EXPECT_EQ(reason->isVisible(), !on);
        EXPECT_EQ(reason->text(), row.reason);
        // The colour it is drawn in: the program's own only while it can be pressed.
        const QPalette::ColorGroup drawn = on ? QPalette::Active : QPalette::Disabled;
        EXPECT_EQ(button->palette().color(drawn, QPalette::Button) == LogPalette::accent(), on);
    }
}

// The stop comes while the first request waits for an answer that never comes.
TEST(TopBarLock, LineSettingsLockOnlyWhileReadingAndStopDoesNotWaitForTheTimeOut) {
    QuietTerminal terminal;
    ASSERT_FALSE(terminal.path().empty());
    PollerProject slow = project({examplePoll()});
    slow.timeoutMs = 5000;
    auto model = makeModel(std::move(slow));
    model->addTestDevice(terminal.path(), "terminal");
    TopBar bar(*model);
    SerialSettingsPopover* settings = bar.serialSettings();
    std::vector<QWidget*> locked{child(bar, "portPicker"), child(bar, "baudPicker")};
    for (const char* name : {"dataBitsPicker", "parityPicker", "stopBitsPicker", "timeoutPicker",
                             "gapPicker", "writeModePicker", "modbusDefaultButton"}) {
        locked.push_back(child(*settings, name));
    }
    const auto lockedWhile = [&](bool reading) {
        for (QWidget* control : locked) {
            SCOPED_TRACE(control->objectName().toStdString());
            EXPECT_EQ(control->isEnabled(), !reading);
            EXPECT_EQ(control->toolTip() == "Stop reading to change this", reading);
        }
    };
    model->start();
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    lockedWhile(true);
    EXPECT_TRUE(child<ElidedLine>(bar, "startReason")->text().isEmpty());
    EXPECT_EQ(child(bar, "statusDot")->toolTip(), "Reading");

    QTest::qWait(100);
    const auto clicked = std::chrono::steady_clock::now();
    click(child(bar, "startStopButton"));
    const std::chrono::duration<double> blocked = std::chrono::steady_clock::now() - clicked;
    EXPECT_EQ(model->state(), PollerState::stopped);
    EXPECT_LT(blocked.count(), 1.0) << "the window froze for the time-out";
    lockedWhile(false);
    EXPECT_EQ(child(bar, "statusDot")->toolTip(), "Stopped");
    model->start();
    EXPECT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }))
        << "the port is free again at once: " << model->errorMessage().value_or("");
    model->stop();
}

// The rest of the frame's choices are the configuration's own test.
TEST(SerialSettings, PickersWriteTheRequestSettingsAndModbusDefaultRestoresEightEvenOne) {
    auto model = makeModel(project({examplePoll()}));
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

} // namespace
} // namespace kestrin::ShellTesting
