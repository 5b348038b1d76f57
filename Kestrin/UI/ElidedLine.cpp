#include "ElidedLine.h"

#include <QPainter>

namespace kestrin {

ElidedLine::ElidedLine(QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void ElidedLine::setText(const QString& text) {
    if (text == text_) {
        return;
    }
    text_ = text;
    setAccessibleName(text);
    update();
}

void ElidedLine::setAlignment(Qt::Alignment alignment) {
    alignment_ = alignment;
    update();
}

QSize ElidedLine::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text_), fontMetrics().height()};
}

QSize ElidedLine::minimumSizeHint() const {
    return {0, fontMetrics().height()};
}

void ElidedLine::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    const QRect area = contentsRect();
    painter.drawText(area, static_cast<int>(alignment_),
                     fontMetrics().elidedText(text_, Qt::ElideRight, area.width()));
}

} // namespace kestrin
