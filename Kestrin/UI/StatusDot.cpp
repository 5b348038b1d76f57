#include "StatusDot.h"

#include "L10n.h"
#include "LogPalette.h"
#include "QtText.h"

#include <QPainter>

namespace kestrin {

StatusDot::StatusDot(QWidget* parent)
    : QWidget(parent) {
    setObjectName(QStringLiteral("statusDot"));
    setFixedSize(sizeHint());
    setState(PollerState::stopped);
}

QString StatusDot::text(PollerState state) {
    switch (state) {
    case PollerState::running:
        return qt(L10n::texts().state.running());
    case PollerState::listening:
        return qt(L10n::texts().state.listening());
    case PollerState::stopped:
        return qt(L10n::texts().state.stopped());
    case PollerState::serialLost:
        return qt(L10n::texts().state.serialLost());
    }
    return {};
}

void StatusDot::setState(PollerState state) {
    state_ = state;
    setToolTip(text(state));
    setAccessibleName(text(state));
    update();
}

QColor StatusDot::fillColour() const {
    switch (state_) {
    case PollerState::running:
        return LogPalette::green(palette());
    // Live like reading, in another colour: values arrive, but none are asked for.
    case PollerState::listening:
        return LogPalette::blue(palette());
    case PollerState::serialLost:
        return LogPalette::isDark(palette()) ? QColor(255, 214, 10) : QColor(255, 204, 0);
    case PollerState::stopped:
        break;
    }
    return LogPalette::secondaryLabel(palette());
}

void StatusDot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor outline(Qt::white);
    outline.setAlphaF(0.6);
    painter.setPen(QPen(outline, 1.0));
    painter.setBrush(fillColour());
    const double diameter = 10;
    painter.drawEllipse(
        QRectF((width() - diameter) / 2.0, (height() - diameter) / 2.0, diameter, diameter));
}

} // namespace kestrin
