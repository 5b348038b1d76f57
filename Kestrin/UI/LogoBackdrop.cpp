#include "LogoBackdrop.h"

#include "LogPalette.h"

#include <algorithm>

#include <QPainter>

namespace kestrin {

namespace {

// Square, drawn large enough for the largest side on a display of twice the density.
const QString logoResource = QStringLiteral(":/kestrin/logo.png");

} // namespace

void LogoBackdrop::paint(QPainter& painter, const QRect& area, qreal pixelRatio) {
    const int side = std::min({largestSide, area.width(), area.height()});
    if (side <= 0) {
        return;
    }
    const QPixmap& logo = tinted(side, pixelRatio);
    if (logo.isNull()) {
        return;
    }
    painter.save();
    painter.setOpacity(opacity);
    const QPointF origin(area.x() + (area.width() - side) / 2.0,
                         area.y() + (area.height() - side) / 2.0);
    painter.drawPixmap(origin, logo);
    painter.restore();
}

const QPixmap& LogoBackdrop::tinted(int side, qreal pixelRatio) {
    if (side == cachedSide_ && pixelRatio == cachedRatio_) {
        return cached_;
    }
    cachedSide_ = side;
    cachedRatio_ = pixelRatio;
    const int pixels = static_cast<int>(side * pixelRatio);
    cached_ =
        QPixmap(logoResource).scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (cached_.isNull()) {
        return cached_;
    }
    // A template image: only the logo's shape counts, filled with the program's colour.
    QPainter fill(&cached_);
    fill.setCompositionMode(QPainter::CompositionMode_SourceIn);
    fill.fillRect(cached_.rect(), LogPalette::accent());
    fill.end();
    cached_.setDevicePixelRatio(pixelRatio);
    return cached_;
}

} // namespace kestrin
