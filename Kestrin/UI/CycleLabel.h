#pragma once

#include <QLabel>
#include <QTimer>

namespace kestrin {

class PollerModel;

// Beside the interval picker: how long one reading of the selected poll takes on the line, its
// requests in the tool tip, and a warning when the poll cannot be read as often as it asks.
// Devices whose turnaround the bus meter has measured are planned with it.
class CycleLabel : public QLabel {
    Q_OBJECT

public:
    explicit CycleLabel(PollerModel& model, QWidget* parent = nullptr);

    // True while the label warns.
    bool isWarning() const { return warning_; }

private:
    void refresh();
    void setWarning(bool warning);

    PollerModel& model_;
    bool warning_ = false;
    // Several changes in one go (a project opened, a poll edited) plan once.
    QTimer pending_;
    // The meter's figures change with every answer; they are taken up as often as the Bus
    // popover shows them.
    QTimer measured_;
};

} // namespace kestrin
