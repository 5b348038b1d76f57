#include "FaintText.h"

#include "LogPalette.h"

#include <QLabel>

namespace kestrin::FaintText {

void fade(QWidget& widget) {
    QPalette faded = widget.palette();
    faded.setColor(QPalette::WindowText, LogPalette::secondaryLabel(faded));
    widget.setPalette(faded);
}

QLabel* note(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    QFont small = label->font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    label->setFont(small);
    fade(*label);
    return label;
}

} // namespace kestrin::FaintText
