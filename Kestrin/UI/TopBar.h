#pragma once

#include <QWidget>

class QComboBox;
class QPushButton;
class QToolButton;

namespace kestrin {

class PollerModel;
struct PollerCommands;
class SerialSettingsPopover;
class ElidedLine;
class StatusDot;

// The row above the table: serial port, baud rate, frame settings, the state and the Listen and
// Start buttons, each of which stops what it started. Port, baud rate and frame are locked while
// reading or listening. While Start is off, the reason stands beside it: a disabled button shows
// no tool tip.
class TopBar : public QWidget {
    Q_OBJECT

public:
    explicit TopBar(PollerModel& model, QWidget* parent = nullptr);

    // The frame settings popover, created on first use.
    SerialSettingsPopover* serialSettings();

public slots:
    void showSerialSettings();

private:
    void setUpControls();
    void layOutRow();
    // The pickers and buttons change the model.
    void connectControls();
    // The model's ports, serial settings and state show in the row.
    void connectModel();
    void refreshPorts();
    void refreshBaud();
    void refreshState();
    void refreshListen(const PollerCommands& commands, bool stopped);
    void refreshLocks(const PollerCommands& commands, bool stopped);

    PollerModel& model_;
    QComboBox* port_;
    QComboBox* baud_;
    QToolButton* frame_;
    ElidedLine* startReason_;
    StatusDot* dot_;
    QPushButton* listen_;
    QPushButton* startStop_;
    SerialSettingsPopover* settings_ = nullptr;
};

} // namespace kestrin
