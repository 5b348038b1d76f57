#include "ChartLines.h"

#include <cmath>

#include <QChart>
#include <QPainter>

namespace kestrin {

namespace {

// Above the grid and the axes, below the legend.
constexpr qreal linesZValue = 4.5;
// A one-pixel line takes the painter's fast path; a wider one is stroked as an outline, about
// 1 ms per line of 1,500 samples. Many lines also read better thin.
constexpr std::size_t mostWideLines = 4;
constexpr qreal wideLine = 2;
constexpr qreal thinLine = 1;

} // namespace

ChartLines::ChartLines(QChart* chart)
    : QGraphicsItem(chart)
    , plot_(chart->plotArea()) {
    setZValue(linesZValue);
    QObject::connect(chart, &QChart::plotAreaChanged, chart, [this](const QRectF& plot) {
        prepareGeometryChange();
        plot_ = plot;
    });
}

void ChartLines::setLines(std::vector<Line> lines, const QRectF& domain) {
    lines_ = std::move(lines);
    domain_ = domain;
    update();
}

QRectF ChartLines::boundingRect() const {
    return plot_;
}

void ChartLines::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    if (domain_.width() <= 0 || domain_.height() <= 0) {
        return;
    }
    painter->save();
    painter->setClipRect(plot_);
    painter->setRenderHint(QPainter::Antialiasing);
    const qreal width = lines_.size() <= mostWideLines ? wideLine : thinLine;
    QList<QLineF> segments;
    for (const Line& line : lines_) {
        QPen pen = line.pen;
        pen.setWidthF(width);
        painter->setPen(pen);
        // Separate segments: stroking one long polyline with joins costs several times as much.
        segments.clear();
        QList<QPointF> lone;
        for (const Run& run : line.runs) {
            const QList<QPointF> drawn = mapped(run, domain_, plot_);
            for (qsizetype index = 1; index < drawn.size(); ++index) {
                segments.append(QLineF(drawn[index - 1], drawn[index]));
            }
            if (drawn.size() == 1) {
                lone.append(drawn.front());
            }
        }
        painter->drawLines(segments);
        if (!lone.isEmpty()) {
            // A lone sample has no segment to show it.
            pen.setWidthF(3 * width);
            pen.setCapStyle(Qt::RoundCap);
            painter->setPen(pen);
            painter->drawPoints(lone);
        }
    }
    painter->restore();
}

std::vector<ChartLines::Run> ChartLines::split(const Run& points, double maxGap) {
    std::vector<Run> runs;
    for (qsizetype index = 0; index < points.size(); ++index) {
        if (index == 0 || points[index].x() - points[index - 1].x() > maxGap) {
            runs.emplace_back();
        }
        runs.back().append(points[index]);
    }
    return runs;
}

QList<QPointF> ChartLines::mapped(const QList<QPointF>& points, const QRectF& domain,
                                  const QRectF& plot) {
    QList<QPointF> drawn;
    if (points.isEmpty() || domain.width() <= 0 || domain.height() <= 0) {
        return drawn;
    }
    const double xScale = plot.width() / domain.width();
    const double yScale = plot.height() / domain.height();
    const auto place = [&](const QPointF& point) {
        return QPointF(plot.left() + (point.x() - domain.left()) * xScale,
                       plot.bottom() - (point.y() - domain.top()) * yScale);
    };

    // One pixel column at a time: its first sample, its extremes in the order they came, its last.
    qsizetype begin = 0;
    while (begin < points.size()) {
        const double column = std::floor(place(points[begin]).x());
        qsizetype end = begin + 1;
        qsizetype lowest = begin;
        qsizetype highest = begin;
        while (end < points.size() && std::floor(place(points[end]).x()) == column) {
            if (points[end].y() < points[lowest].y()) {
                lowest = end;
            }
            if (points[end].y() > points[highest].y()) {
                highest = end;
            }
            ++end;
        }
        qsizetype kept[] = {begin, std::min(lowest, highest), std::max(lowest, highest), end - 1};
        qsizetype previous = -1;
        for (const qsizetype index : kept) {
            if (index != previous) {
                drawn.append(place(points[index]));
                previous = index;
            }
        }
        begin = end;
    }
    return drawn;
}

} // namespace kestrin
