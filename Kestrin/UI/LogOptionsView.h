#pragma once

#include "Popover.h"

class QCheckBox;

namespace kestrin {

class PollerModel;

// The log options popover: each toggle is bound to the model's option of the same meaning.
class LogOptionsView : public Popover {
    Q_OBJECT

public:
    static constexpr int popoverWidth = 360;

    explicit LogOptionsView(PollerModel& model, QWidget* parent = nullptr);

private:
    void refresh();

    PollerModel& model_;
    QCheckBox* autoscroll_;
    QCheckBox* timestamps_;
    QCheckBox* rawFrames_;
    QCheckBox* onlyProblems_;
};

} // namespace kestrin
