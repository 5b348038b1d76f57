#include "Icons.h"

#include <cmath>

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

namespace kestrin {

namespace {

// The painter with the symbol's outline pen, and the other ways a symbol paints.
struct Ink {
    QPainter& p;
    QColor colour;
    QPen pen{colour, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};

    void outline(double width) {
        pen.setWidthF(width);
        p.setPen(pen);
    }
    void filled() {
        p.setPen(Qt::NoPen);
        p.setBrush(colour);
    }
    // Cut-outs inside filled shapes are drawn by clearing, so they show what lies behind.
    void cut() {
        p.setCompositionMode(QPainter::CompositionMode_Clear);
        p.setBrush(Qt::NoBrush);
        QPen clearPen(Qt::black, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
        p.setPen(clearPen);
    }
};

// Each drawing is on a 24 × 24 grid and starts with the outline pen and no brush.

QPainterPath triangle(QPointF a, QPointF b, QPointF c) {
    QPainterPath path;
    path.moveTo(a);
    path.lineTo(b);
    path.lineTo(c);
    path.closeSubpath();
    return path;
}

void drawPlay(QPainter& p, Ink& ink) {
    ink.filled();
    p.drawPath(triangle({7, 4.5}, {19.5, 12}, {7, 19.5}));
}

void drawStop(QPainter& p, Ink& ink) {
    ink.filled();
    p.drawRoundedRect(QRectF(5.5, 5.5, 13, 13), 2.5, 2.5);
}

void drawPause(QPainter& p, Ink& ink) {
    ink.filled();
    p.drawRoundedRect(QRectF(6, 4.5, 4, 15), 1.2, 1.2);
    p.drawRoundedRect(QRectF(14, 4.5, 4, 15), 1.2, 1.2);
}

void drawPlus(QPainter& p, Ink& ink) {
    ink.outline(2.4);
    p.drawLine(QPointF(12, 5), QPointF(12, 19));
    p.drawLine(QPointF(5, 12), QPointF(19, 12));
}

void drawMinus(QPainter& p, Ink& ink) {
    ink.outline(2.4);
    p.drawLine(QPointF(5, 12), QPointF(19, 12));
}

void drawPencil(QPainter& p, Ink&) {
    QPainterPath path;
    path.moveTo(5, 19);
    path.lineTo(6, 15);
    path.lineTo(15.5, 5.5);
    path.lineTo(18.5, 8.5);
    path.lineTo(9, 18);
    path.closeSubpath();
    p.drawPath(path);
    p.drawLine(QPointF(13.5, 7.5), QPointF(16.5, 10.5));
}

void drawTrash(QPainter& p, Ink&) {
    p.drawLine(QPointF(4.5, 7), QPointF(19.5, 7));
    p.drawLine(QPointF(10, 4.5), QPointF(14, 4.5));
    p.drawRoundedRect(QRectF(6.5, 7, 11, 13), 1.5, 1.5);
    p.drawLine(QPointF(10, 10.5), QPointF(10, 16.5));
    p.drawLine(QPointF(14, 10.5), QPointF(14, 16.5));
}

void drawWarning(QPainter& p, Ink& ink) {
    ink.filled();
    p.drawPath(triangle({12, 3}, {22, 20.5}, {2, 20.5}));
    ink.cut();
    p.drawLine(QPointF(12, 9), QPointF(12, 14));
    p.drawPoint(QPointF(12, 17.5));
}

void drawCheckmark(QPainter& p, Ink& ink) {
    ink.filled();
    p.drawEllipse(QPointF(12, 12), 9.5, 9.5);
    ink.cut();
    p.drawPolyline(QPolygonF({QPointF(7.5, 12.5), QPointF(10.5, 15.5), QPointF(16.5, 8.5)}));
}

void drawXmarkOctagon(QPainter& p, Ink& ink) {
    ink.filled();
    QPolygonF octagon;
    for (int i = 0; i < 8; ++i) {
        const double angle = (22.5 + 45.0 * i) * M_PI / 180.0;
        octagon << QPointF(12 + 10 * std::cos(angle), 12 + 10 * std::sin(angle));
    }
    p.drawPolygon(octagon);
    ink.cut();
    p.drawLine(QPointF(8.5, 8.5), QPointF(15.5, 15.5));
    p.drawLine(QPointF(15.5, 8.5), QPointF(8.5, 15.5));
}

void drawXmark(QPainter& p, Ink&) {
    p.drawLine(QPointF(6.5, 6.5), QPointF(17.5, 17.5));
    p.drawLine(QPointF(17.5, 6.5), QPointF(6.5, 17.5));
}

void drawClock(QPainter& p, Ink&) {
    p.drawEllipse(QPointF(12, 12), 9, 9);
    p.drawPolyline(QPolygonF({QPointF(12, 7), QPointF(12, 12), QPointF(15.5, 14)}));
}

void drawCircleDot(QPainter& p, Ink& ink) {
    p.drawEllipse(QPointF(12, 12), 9, 9);
    ink.filled();
    p.drawEllipse(QPointF(12, 12), 4, 4);
}

void drawCircleDashed(QPainter& p, Ink& ink) {
    ink.pen.setCapStyle(Qt::FlatCap);
    ink.pen.setDashPattern({2.2, 2.0});
    ink.outline(1.8);
    p.drawEllipse(QPointF(12, 12), 8.5, 8.5);
}

void drawMagnifyingGlass(QPainter& p, Ink& ink) {
    p.drawEllipse(QPointF(10.5, 10.5), 6, 6);
    ink.outline(2.6);
    p.drawLine(QPointF(15, 15), QPointF(20, 20));
}

void drawChart(QPainter& p, Ink&) {
    p.drawPolyline(QPolygonF({QPointF(4, 4), QPointF(4, 20), QPointF(20, 20)}));
    p.drawPolyline(
        QPolygonF({QPointF(7, 16), QPointF(11, 11), QPointF(14, 13.5), QPointF(19.5, 7)}));
}

void drawLog(QPainter& p, Ink& ink) {
    p.drawRoundedRect(QRectF(4, 3.5, 16, 17), 2, 2);
    ink.outline(1.6);
    for (const double y : {8.0, 12.0, 16.0}) {
        p.drawLine(QPointF(7.5, y), QPointF(y == 16.0 ? 13.0 : 16.5, y));
    }
}

void drawQuestionMark(QPainter& p, Ink&) {
    p.drawEllipse(QPointF(12, 12), 9.5, 9.5);
    QPainterPath path;
    path.moveTo(9, 9.5);
    path.cubicTo(9, 5.5, 15, 5.5, 15, 9.5);
    path.cubicTo(15, 11.5, 12, 11.8, 12, 14);
    p.drawPath(path);
    p.drawPoint(QPointF(12, 17.3));
}

void drawBook(QPainter& p, Ink&) {
    p.drawPolyline(QPolygonF({QPointF(12, 7), QPointF(7, 5), QPointF(3, 5.5), QPointF(3, 18.5),
                              QPointF(7, 18), QPointF(12, 20), QPointF(17, 18), QPointF(21, 18.5),
                              QPointF(21, 5.5), QPointF(17, 5), QPointF(12, 7)}));
    p.drawLine(QPointF(12, 7), QPointF(12, 20));
}

void drawTableCells(QPainter& p, Ink& ink) {
    p.drawRoundedRect(QRectF(3.5, 4.5, 17, 15), 2, 2);
    ink.outline(1.5);
    p.drawLine(QPointF(3.5, 9.5), QPointF(20.5, 9.5));
    p.drawLine(QPointF(3.5, 14.5), QPointF(20.5, 14.5));
    p.drawLine(QPointF(9.5, 4.5), QPointF(9.5, 19.5));
    p.drawLine(QPointF(15, 4.5), QPointF(15, 19.5));
}

void drawSliders(QPainter& p, Ink& ink) {
    ink.outline(1.8);
    for (const auto& [y, x] : {std::pair{6.0, 15.0}, {12.0, 8.0}, {18.0, 13.0}}) {
        p.drawLine(QPointF(3.5, y), QPointF(20.5, y));
        p.save();
        p.setBrush(ink.colour);
        p.drawEllipse(QPointF(x, y), 2.2, 2.2);
        p.restore();
    }
}

void drawInfo(QPainter& p, Ink&) {
    p.drawEllipse(QPointF(12, 12), 9.5, 9.5);
    p.drawLine(QPointF(12, 11), QPointF(12, 17));
    p.drawPoint(QPointF(12, 7.5));
}

void drawChevronUp(QPainter& p, Ink&) {
    p.drawPolyline(QPolygonF({QPointF(6, 15), QPointF(12, 9), QPointF(18, 15)}));
}

void drawChevronDown(QPainter& p, Ink&) {
    p.drawPolyline(QPolygonF({QPointF(6, 9), QPointF(12, 15), QPointF(18, 9)}));
}

using Drawing = void (*)(QPainter&, Ink&);

// A switch rather than a table, so that a new symbol without a drawing is a compiler warning.
Drawing drawing(Symbol s) {
    switch (s) {
    case Symbol::play:
        return drawPlay;
    case Symbol::stop:
        return drawStop;
    case Symbol::pause:
        return drawPause;
    case Symbol::plus:
        return drawPlus;
    case Symbol::minus:
        return drawMinus;
    case Symbol::pencil:
        return drawPencil;
    case Symbol::trash:
        return drawTrash;
    case Symbol::warning:
        return drawWarning;
    case Symbol::checkmark:
        return drawCheckmark;
    case Symbol::xmarkOctagon:
        return drawXmarkOctagon;
    case Symbol::xmark:
        return drawXmark;
    case Symbol::clock:
        return drawClock;
    case Symbol::circleDot:
        return drawCircleDot;
    case Symbol::circleDashed:
        return drawCircleDashed;
    case Symbol::magnifyingGlass:
        return drawMagnifyingGlass;
    case Symbol::chart:
        return drawChart;
    case Symbol::log:
        return drawLog;
    case Symbol::questionMark:
        return drawQuestionMark;
    case Symbol::book:
        return drawBook;
    case Symbol::tableCells:
        return drawTableCells;
    case Symbol::sliders:
        return drawSliders;
    case Symbol::info:
        return drawInfo;
    case Symbol::chevronUp:
        return drawChevronUp;
    case Symbol::chevronDown:
        return drawChevronDown;
    }
    return [](QPainter&, Ink&) {};
}

// Draws a symbol on a 24 × 24 grid, scaled to the requested size.
void drawSymbol(QPainter& p, Symbol s, const QColor& colour) {
    Ink ink{p, colour};
    p.setPen(ink.pen);
    p.setBrush(Qt::NoBrush);
    drawing(s)(p, ink);
}

class SymbolEngine : public QIconEngine {
public:
    SymbolEngine(Symbol symbol, QColor tint)
        : symbol_(symbol)
        , tint_(tint) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        // Drawn on a layer of its own so the cut-outs clear only the symbol.
        const qreal ratio =
            painter->device() != nullptr ? painter->device()->devicePixelRatioF() : 1;
        QPixmap layer(rect.size() * ratio);
        layer.setDevicePixelRatio(ratio);
        layer.fill(Qt::transparent);
        {
            QPainter p(&layer);
            p.setRenderHint(QPainter::Antialiasing);
            const double side = std::min(rect.width(), rect.height());
            p.translate((rect.width() - side) / 2.0, (rect.height() - side) / 2.0);
            p.scale(side / 24.0, side / 24.0);
            drawSymbol(p, symbol_, colour(mode));
        }
        painter->drawPixmap(rect.topLeft(), layer);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap result(size);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return result;
    }

    QIconEngine* clone() const override { return new SymbolEngine(symbol_, tint_); }

private:
    QColor colour(QIcon::Mode mode) const {
        const QPalette palette = QApplication::palette();
        QColor base = tint_.isValid() ? tint_ : palette.color(QPalette::WindowText);
        if (mode == QIcon::Disabled) {
            base.setAlphaF(base.alphaF() * 0.4F);
        }
        if (mode == QIcon::Selected && !tint_.isValid()) {
            base = palette.color(QPalette::HighlightedText);
        }
        return base;
    }

    Symbol symbol_;
    QColor tint_;
};

} // namespace

namespace Icons {

const char* themeName(Symbol s) {
    switch (s) {
    case Symbol::play:
        return "media-playback-start";
    case Symbol::stop:
        return "media-playback-stop";
    case Symbol::pause:
        return "media-playback-pause";
    case Symbol::plus:
        return "list-add";
    case Symbol::minus:
        return "list-remove";
    case Symbol::pencil:
        return "document-edit";
    case Symbol::trash:
        return "edit-delete";
    case Symbol::warning:
        return "dialog-warning";
    case Symbol::checkmark:
        return "emblem-ok";
    case Symbol::xmarkOctagon:
        return "dialog-error";
    case Symbol::xmark:
        return "window-close";
    case Symbol::clock:
        return "appointment-soon";
    case Symbol::circleDot:
        return "media-record";
    case Symbol::circleDashed:
        return "content-loading";
    case Symbol::magnifyingGlass:
        return "edit-find";
    case Symbol::chart:
        return "utilities-system-monitor";
    case Symbol::log:
        return "text-x-generic";
    case Symbol::questionMark:
        return "help-about";
    case Symbol::book:
        return "help-contents";
    case Symbol::tableCells:
        return "x-office-spreadsheet";
    case Symbol::sliders:
        return "preferences-system";
    case Symbol::info:
        return "dialog-information";
    case Symbol::chevronUp:
        return "go-up";
    case Symbol::chevronDown:
        return "go-down";
    }
    return "";
}

QIcon symbol(Symbol s) {
    const QString name = QString::fromLatin1(themeName(s));
    if (QIcon::hasThemeIcon(name)) {
        return QIcon::fromTheme(name);
    }
    return QIcon(new SymbolEngine(s, QColor()));
}

QIcon tinted(Symbol s, const QColor& colour) {
    return QIcon(new SymbolEngine(s, colour));
}

QIcon application() {
    QIcon icon(QStringLiteral(":/icons/kestrin.svg"));
    return icon.isNull() ? QIcon::fromTheme(QStringLiteral("kestrin")) : icon;
}

} // namespace Icons

} // namespace kestrin
