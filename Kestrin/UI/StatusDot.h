#pragma once

#include "PollerState.h"

#include <QColor>
#include <QWidget>

namespace kestrin {

// A small round indicator of the reading or listening state; its tool tip and accessible name are
// the state text.
class StatusDot : public QWidget {
    Q_OBJECT

public:
    explicit StatusDot(QWidget* parent = nullptr);

    void setState(PollerState state);
    PollerState state() const { return state_; }
    // The fill for the current state in the widget's palette.
    QColor fillColour() const;

    QSize sizeHint() const override { return {16, 16}; }

    // The state text: "Reading", "Listening", "Stopped", "Serial port lost".
    static QString text(PollerState state);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    PollerState state_ = PollerState::stopped;
};

} // namespace kestrin
