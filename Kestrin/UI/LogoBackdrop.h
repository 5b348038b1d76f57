#pragma once

#include <QPixmap>

class QPainter;
class QRect;

namespace kestrin {

// The faint logo behind the log: the program's logo as a template in its accent colour at 7 %
// opacity, fitted within 460 points and the area, centred. Painted by the log view rather than
// being a widget of its own, so it never takes a click and is never announced to assistive
// technology.
class LogoBackdrop {
public:
    static constexpr int largestSide = 460;
    static constexpr double opacity = 0.07;

    void paint(QPainter& painter, const QRect& area, qreal pixelRatio);

private:
    const QPixmap& tinted(int side, qreal pixelRatio);

    QPixmap cached_;
    int cachedSide_ = 0;
    qreal cachedRatio_ = 0;
};

} // namespace kestrin
