#pragma once

#include <QProxyStyle>

namespace kestrin {

// Fusion for the dark appearance (--dark). Fusion outlines a check box a shade darker than the
// window, which on a dark window is no outline at all: an unticked box in the table's Chart
// column or beside "Active" vanished. This draws the outline in a colour that shows.
class DarkStyle : public QProxyStyle {
public:
    DarkStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
};

} // namespace kestrin
