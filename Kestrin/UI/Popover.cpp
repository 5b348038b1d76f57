#include "Popover.h"

#include <algorithm>

#include <QAbstractItemView>
#include <QComboBox>
#include <QGuiApplication>
#include <QKeyEvent>
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
    for (QComboBox* picker : findChildren<QComboBox*>()) {
        picker->view()->installEventFilter(this);
        picker->view()->window()->installEventFilter(this);
    }
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

bool Popover::eventFilter(QObject* watched, QEvent* event) {
    // A list closes on the Escape's shortcut check already, before the key itself is delivered.
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (key && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Cancel)) {
        listEscape_ = static_cast<QKeyEvent*>(event)->timestamp();
    }
    return QFrame::eventFilter(watched, event);
}

void Popover::keyPressEvent(QKeyEvent* event) {
    // Under X11 the Escape that closes an open list is delivered to the popover as well, once
    // the list is gone: it must not close the popover too.
    if (event->matches(QKeySequence::Cancel)) {
        bool listOpen = listEscape_ && *listEscape_ == event->timestamp();
        for (QComboBox* picker : findChildren<QComboBox*>()) {
            if (picker->view() != nullptr && picker->view()->isVisible()) {
                picker->hidePopup();
                listOpen = true;
            }
        }
        listEscape_.reset();
        if (listOpen) {
            event->accept();
            return;
        }
    }
    QFrame::keyPressEvent(event);
}

void Popover::hideEvent(QHideEvent* event) {
    QFrame::hideEvent(event);
    emit closed();
}

} // namespace kestrin
