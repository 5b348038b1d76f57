#include "DarkStyle.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

namespace kestrin {

DarkStyle::DarkStyle()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void DarkStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_IndicatorCheckBox && element != PE_IndicatorItemViewItemCheck) {
        return;
    }
    // Over Fusion's own outline, which sits half a pixel inside the indicator's rectangle.
    const bool enabled = (option->state & State_Enabled) != 0;
    const QColor outline = option->palette.color(QPalette::Mid).lighter(enabled ? 170 : 120);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(outline);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(QRectF(option->rect).adjusted(0.5, 0.5, -1.5, -1.5));
    painter->restore();
}

} // namespace kestrin
