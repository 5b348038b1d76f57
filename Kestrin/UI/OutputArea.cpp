#include "OutputArea.h"

#include "EmptyLogView.h"
#include "LogFindBar.h"
#include "LogView.h"
#include "NoticeOverlays.h"
#include "PollerModel.h"

#include <QEvent>
#include <QVBoxLayout>

namespace kestrin {

OutputArea::OutputArea(PollerModel& model, QWidget* parent)
    : QWidget(parent)
    , model_(model)
    , log_(new LogView(model.output(), this))
    , empty_(new EmptyLogView(model, this))
    , notices_(new NoticeOverlays(model, this)) {
    findBar_ = new LogFindBar(*log_, this);
    setObjectName("outputArea");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(findBar_);
    layout->addWidget(log_, 1);

    // The viewport is laid out after the view's own resize, so its events carry the final size.
    log_->viewport()->installEventFilter(this);
    connect(log_, &LogView::findRequested, this, &OutputArea::showFindBar);
    connect(notices_, &NoticeOverlays::contentChanged, this, &OutputArea::placeOverlays);
    connect(&model_, &PollerModel::outputIsEmptyChanged, this, &OutputArea::placeOverlays);
    placeOverlays();
}

void OutputArea::showFindBar() {
    findBar_->open();
}

bool OutputArea::eventFilter(QObject* watched, QEvent* event) {
    if (watched == log_->viewport() &&
        (event->type() == QEvent::Resize || event->type() == QEvent::Move)) {
        placeOverlays();
    }
    return QWidget::eventFilter(watched, event);
}

// The notices sit in a margin the log keeps free above its text: a notice that stays for a whole
// session of listening must not hide the log's first lines.
void OutputArea::placeOverlays() {
    const int width = log_->viewport()->width();
    const int noticesHeight = notices_->isHidden() ? 0 : notices_->heightFor(width);
    // Moves the viewport, whose event calls this again with the margin already in place.
    log_->setTopMargin(noticesHeight);
    // Clear of the scroll bar.
    const QRect text(log_->geometry().topLeft() + log_->viewport()->geometry().topLeft(),
                     log_->viewport()->size());
    empty_->setVisible(model_.outputIsEmpty());
    empty_->setGeometry(text.adjusted(0, -noticesHeight, 0, 0));
    notices_->setGeometry(text.x(), text.y() - noticesHeight, text.width(), noticesHeight);
    empty_->raise();
    notices_->raise();
}

} // namespace kestrin
