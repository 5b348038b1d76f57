#include "ElidedLine.h"
#include "LogPalette.h"
#include "SerialSettingsPopover.h"
#include "ShellFixture.h"
#include "StatusDot.h"
#include "TopBar.h"

#include <chrono>

#include <QComboBox>
#include <QPushButton>
#include <QToolButton>

namespace kestrin::ShellTesting {
namespace {

template <typename Widget>
Widget* child(const QWidget& parent, const char* name) {
    auto* found = parent.findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
}

Poll examplePoll() {
    return PollerProject::firstRun().polls.front();
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
        {"a gone port beside present ones",
         {"/dev/ttyS0"},
         "/dev/ttyUSB7",
         "/dev/ttyUSB7 (not connected)",
         2},
    };
    for (const auto& row : rows) {
        auto model = makeModel(project({examplePoll()}), portsAt(row.ports));
        ASSERT_TRUE(waitUntil([&] { return model->ports().size() == row.ports.size(); }));
        model->setSelectedPath(row.selected);
        TopBar bar(*model);
        auto* picker = child<QComboBox>(bar, "portPicker");
        EXPECT_EQ(picker->currentText(), row.shown) << row.situation;
        EXPECT_EQ(picker->count(), row.entries) << row.situation;
    }
}

TEST(PortPicker, AChosenPortOrRateReachesTheModelAndTheRateFollowsIt) {
    auto model = makeModel(project({examplePoll()}), portsAt({"/dev/ttyS0", "/dev/ttyS1"}));
    ASSERT_TRUE(waitUntil([&] { return model->ports().size() == 2; }));
    TopBar bar(*model);
    auto* ports = child<QComboBox>(bar, "portPicker");
    const int port = ports->findText(QStringLiteral("ttyS1"));
    ASSERT_GE(port, 0);
    ports->setCurrentIndex(port);
    emit ports->activated(port);
    EXPECT_EQ(model->selectedPath(), "/dev/ttyS1");

    auto* picker = child<QComboBox>(bar, "baudPicker");
    EXPECT_EQ(picker->currentText(), "9600 baud");
    const int index = picker->findData(19200);
    emit picker->activated(index);
    EXPECT_EQ(model->serial().baudRate, 19200);
    SerialConfiguration serial = model->serial();
    serial.baudRate = 115200;
    model->setSerial(serial);
    EXPECT_EQ(picker->currentText(), "115200 baud");
    EXPECT_EQ(child<QToolButton>(bar, "frameSettingsButton")->text(), "8E1");
}

TEST(StartButton, IsOnlyOnWithAPresentPortAndDatapointsAndSaysWhyNot) {
    Poll switchedOff = examplePoll();
    switchedOff.enabled = false;
    const struct {
        const char* situation;
        std::vector<std::string> ports;
        std::string selected;
        Poll poll;
        QString reason;
    } rows[] = {
        {"no ports", {}, "", examplePoll(), "Connect and select a serial port to start"},
        {"no active poll",
         {"/dev/ttyS0"},
         "/dev/ttyS0",
         switchedOff,
         "Add datapoints to an active poll to start"},
        {"a present port and datapoints", {"/dev/ttyS0"}, "/dev/ttyS0", examplePoll(), ""},
    };
    for (const auto& row : rows) {
        auto model = makeModel(project({row.poll}), portsAt(row.ports));
        ASSERT_TRUE(waitUntil([&] { return model->ports().size() == row.ports.size(); }));
        model->setSelectedPath(row.selected);
        TopBar bar(*model);
        bar.resize(1180, 48);
        bar.show();
        auto* button = child<QPushButton>(bar, "startStopButton");
        auto* reason = child<ElidedLine>(bar, "startReason");
        const bool on = row.reason.isEmpty();
        EXPECT_EQ(button->isEnabled(), on) << row.situation;
        EXPECT_EQ(reason->isVisible(), !on) << row.situation;
        EXPECT_EQ(reason->text(), row.reason) << row.situation;
        // The colour it is drawn in: the program's own only while it can be pressed.
        const QPalette::ColorGroup drawn = on ? QPalette::Active : QPalette::Disabled;
        EXPECT_EQ(button->palette().color(drawn, QPalette::Button) == LogPalette::accent(), on)
            << row.situation;
    }
}

TEST(TopBarLock, PortBaudAndFrameAreLockedOnlyWhileReading) {
    QuietTerminal terminal;
    ASSERT_FALSE(terminal.path().empty());
    auto model = makeModel(project({examplePoll()}));
    model->addTestDevice(terminal.path(), "terminal");
    TopBar bar(*model);
    SerialSettingsPopover* settings = bar.serialSettings();
    const std::vector<QWidget*> locked{
        child<QComboBox>(bar, "portPicker"),
        child<QComboBox>(bar, "baudPicker"),
        child<QComboBox>(*settings, "dataBitsPicker"),
        child<QComboBox>(*settings, "parityPicker"),
        child<QComboBox>(*settings, "stopBitsPicker"),
        child<QComboBox>(*settings, "timeoutPicker"),
        child<QComboBox>(*settings, "gapPicker"),
        child<QComboBox>(*settings, "writeModePicker"),
        child<QPushButton>(*settings, "modbusDefaultButton"),
    };
    model->start();
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    for (QWidget* control : locked) {
        EXPECT_FALSE(control->isEnabled()) << control->objectName().toStdString();
        EXPECT_EQ(control->toolTip(), "Stop reading to change this")
            << control->objectName().toStdString();
    }
    EXPECT_TRUE(child<QPushButton>(bar, "startStopButton")->isEnabled());
    EXPECT_TRUE(child<ElidedLine>(bar, "startReason")->text().isEmpty());
    EXPECT_EQ(child<StatusDot>(bar, "statusDot")->toolTip(), "Reading");

    model->stop();
    for (QWidget* control : locked) {
        EXPECT_TRUE(control->isEnabled()) << control->objectName().toStdString();
        EXPECT_NE(control->toolTip(), "Stop reading to change this")
            << control->objectName().toStdString();
    }
    EXPECT_EQ(child<StatusDot>(bar, "statusDot")->toolTip(), "Stopped");
}

TEST(TopBarLock, StopDuringAnUnansweredRequestDoesNotWaitForTheTimeOut) {
    QuietTerminal terminal;
    ASSERT_FALSE(terminal.path().empty());
    PollerProject slow = project({examplePoll()});
    slow.timeoutMs = 5000;
    auto model = makeModel(std::move(slow));
    model->addTestDevice(terminal.path(), "terminal");
    TopBar bar(*model);
    auto* button = child<QPushButton>(bar, "startStopButton");
    model->start();
    ASSERT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }));
    // The first request is on the line and its answer will never come.
    QTest::qWait(100);
    const auto clicked = std::chrono::steady_clock::now();
    QTest::mouseClick(button, Qt::LeftButton);
    const std::chrono::duration<double> blocked = std::chrono::steady_clock::now() - clicked;
    EXPECT_EQ(model->state(), PollerState::stopped);
    EXPECT_LT(blocked.count(), 1.0) << "the window froze for the time-out";
    model->start();
    EXPECT_TRUE(waitUntil([&] { return model->state() == PollerState::running; }))
        << "the port is free again at once: " << model->errorMessage().value_or("");
    model->stop();
}

TEST(SerialSettings, ModbusDefaultRestoresEightEvenOneFromAnyFrame) {
    for (const char* frame : {"7O2", "8N1", "7E1", "8N2", "8E1"}) {
        auto model = makeModel(project({examplePoll()}));
        model->setSerial(*model->serial().withFrame(frame));
        SerialSettingsPopover settings(*model);
        int changes = 0;
        QObject::connect(model.get(), &PollerModel::serialChanged, [&] { ++changes; });
        QTest::mouseClick(child<QPushButton>(settings, "modbusDefaultButton"), Qt::LeftButton);
        EXPECT_EQ(model->serial().frameDescription(), "8E1") << frame;
        EXPECT_EQ(child<QComboBox>(settings, "parityPicker")->currentData().toInt(),
                  int(Parity::even))
            << frame;
        EXPECT_LE(changes, 3) << frame;
    }
}

TEST(SerialSettings, PickersWriteTheRequestSettings) {
    auto model = makeModel(project({examplePoll()}));
    SerialSettingsPopover settings(*model);
    auto* gap = child<QComboBox>(settings, "gapPicker");
    EXPECT_EQ(gap->itemText(0), "Adjacent only");
    EXPECT_EQ(gap->itemText(2), "Gaps up to 8 addresses");
    emit gap->activated(2);
    EXPECT_EQ(model->maxGap(), 8);
    auto* timeout = child<QComboBox>(settings, "timeoutPicker");
    emit timeout->activated(timeout->findData(2000));
    EXPECT_EQ(model->timeoutMs(), 2000);
    EXPECT_EQ(timeout->currentText(), "2000 ms");
    auto* writes = child<QComboBox>(settings, "writeModePicker");
    emit writes->activated(1);
    EXPECT_EQ(model->writeMode(), WriteMode::multiple);
    auto* parity = child<QComboBox>(settings, "parityPicker");
    emit parity->activated(parity->findData(int(Parity::odd)));
    EXPECT_EQ(model->serial().frameDescription(), "8O1");
}

} // namespace
} // namespace kestrin::ShellTesting
