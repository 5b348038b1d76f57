#include "Popover.h"

#include <algorithm>

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

namespace kestrin {

Popover::Popover(QWidget* parent)
    : QFrame(parent, Qt::Popup)
    , layout_(new QVBoxLayout(this)) {
    // A click on the anchor that closes the popover must not open it again at once.
    setAttribute(Qt::WA_NoMouseReplay);
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    layout_->setContentsMargins(14, 12, 14, 12);
    layout_->setSpacing(8);
}

void Popover::showBelow(QWidget* anchor) {
    adjustSize();
    QPoint position = anchor->mapToGlobal(QPoint(0, anchor->height() + 4));
    QScreen* screen =
        anchor->screen() != nullptr ? anchor->screen() : QGuiApplication::primaryScreen();
    if (screen != nullptr) {
        const QRect area = screen->availableGeometry();
        position.setX(std::min(position.x(), area.right() - width()));
        position.setX(std::max(position.x(), area.left()));
        // Not enough room below: open above the anchor instead.
        if (position.y() + height() > area.bottom()) {
            position.setY(anchor->mapToGlobal(QPoint(0, 0)).y() - height() - 4);
        }
    }
    move(position);
    show();
}

void Popover::hideEvent(QHideEvent* event) {
    QFrame::hideEvent(event);
    emit closed();
}

} // namespace kestrin
