#pragma once

#include "Popover.h"

#include <QTimer>

class QLabel;

namespace kestrin {

class PollerModel;

// The bus as reading measures it: per unit its answers, round trip and turnaround, per poll the
// interval set against the one it gets, and how busy the line is. While open it follows the
// reading twice a second, which is as fast as a person reads the figures.
class BusPopover : public Popover {
    Q_OBJECT

public:
    static constexpr int popoverWidth = 460;

    explicit BusPopover(PollerModel& model, QWidget* parent = nullptr);

    void refresh();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    PollerModel& model_;
    QLabel* units_;
    QLabel* note_;
    QLabel* polls_;
    QLabel* busy_;
    QTimer timer_;
};

} // namespace kestrin
