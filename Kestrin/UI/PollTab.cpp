#include "PollTab.h"

#include "Icons.h"
#include "LogPalette.h"
#include "QtText.h"

#include <QPainter>
#include <QPainterPath>

namespace kestrin {

namespace {

constexpr int dotSize = 7;
constexpr int pauseSize = 9;
constexpr int padding = 10;
constexpr int gap = 6;

QColor withAlpha(QColor colour, float alpha) {
    colour.setAlphaF(alpha);
    return colour;
}

} // namespace

PollTab::PollTab(const Uuid& pollID, QWidget* parent)
    : QAbstractButton(parent)
    , pollID_(pollID) {
    setObjectName(QStringLiteral("pollTab"));
    setProperty("pollID", qt(pollID.text()));
    setCursor(Qt::PointingHandCursor);
    setContextMenuPolicy(Qt::CustomContextMenu);
}

void PollTab::setPoll(const QString& title, bool enabled, bool selected, TabDot dot) {
    if (title == text() && enabled == enabled_ && selected == selected_ && dot == dot_) {
        return;
    }
    setText(title);
    setAccessibleName(title);
    enabled_ = enabled;
    selected_ = selected;
    dot_ = dot;
    updateGeometry();
    update();
}

QColor PollTab::dotColour() const {
    switch (dot_) {
    case TabDot::green:
        return LogPalette::green(palette());
    case TabDot::orange:
        return LogPalette::orange(palette());
    case TabDot::grey:
        break;
    }
    return withAlpha(LogPalette::secondaryLabel(palette()), 0.5F);
}

QSize PollTab::sizeHint() const {
    const QFontMetrics metrics(font());
    int width = padding + dotSize + gap + metrics.horizontalAdvance(text()) + padding;
    if (!enabled_) {
        width += gap + pauseSize;
    }
    return {width, metrics.height() + 10};
}

void PollTab::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF capsule = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const double radius = capsule.height() / 2.0;
    const QColor secondary = LogPalette::secondaryLabel(palette());
    if (selected_) {
        painter.setBrush(withAlpha(LogPalette::accent(), 0.18F));
        painter.setPen(QPen(withAlpha(LogPalette::accent(), 0.6F), 1.0));
    } else {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(withAlpha(secondary, 0.25F), 1.0));
    }
    painter.drawRoundedRect(capsule, radius, radius);

    double x = padding;
    painter.setPen(Qt::NoPen);
    painter.setBrush(dotColour());
    painter.drawEllipse(QRectF(x, (height() - dotSize) / 2.0, dotSize, dotSize));
    x += dotSize + gap;

    const int textWidth = fontMetrics().horizontalAdvance(text());
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRectF(x, 0, textWidth + 1, height()), Qt::AlignVCenter | Qt::AlignLeft,
                     text());
    x += textWidth + gap;
    if (!enabled_) {
        const QPixmap pause =
            Icons::tinted(Symbol::pause, secondary).pixmap(QSize(pauseSize, pauseSize));
        painter.drawPixmap(QPointF(x, (height() - pauseSize) / 2.0), pause);
    }
}

} // namespace kestrin
