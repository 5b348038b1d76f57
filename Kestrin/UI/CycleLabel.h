#pragma once

#include <QLabel>

namespace kestrin {

class PollerModel;

// Beside the interval picker: how long one reading of the selected poll takes on the line, its
// requests in the tool tip, and a warning when the poll cannot be read as often as it asks.
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
};

} // namespace kestrin
