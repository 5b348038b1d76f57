#pragma once

#include <vector>

#include <QGraphicsItem>
#include <QList>
#include <QPen>
#include <QPointF>
#include <QRectF>

class QChart;

namespace kestrin {

// The plotted lines, drawn over the chart's plot area. QtCharts keeps the axes, the grid and the
// legend, but its line series recompute and stroke their whole outline on every range change:
// with 20 lines of 1,500 samples that is 40 ms per change, and a moving time axis changes at every
// publication. Mapping the samples while painting costs well under a millisecond.
class ChartLines : public QGraphicsItem {
public:
    // x: milliseconds since the epoch, y: the value.
    using Run = QList<QPointF>;
    struct Line {
        QPen pen;
        std::vector<Run> runs; // drawn joined within a run, never from one run to the next
    };

    explicit ChartLines(QChart* chart);

    // domain: the axes' ranges, x in milliseconds since the epoch, y upward.
    void setLines(std::vector<Line> lines, const QRectF& domain);
    const std::vector<Line>& lines() const { return lines_; }
    const QRectF& domain() const { return domain_; }

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    // The samples cut where more than maxGap passes between two of them: a line straight across
    // the time reading stopped would show values nobody read.
    static std::vector<Run> split(const Run& points, double maxGap);
    // Where a line's samples land in a plot rectangle, keeping of each pixel column only the
    // first, lowest, highest and last sample: more would be drawn over one another.
    static QList<QPointF> mapped(const QList<QPointF>& points, const QRectF& domain,
                                 const QRectF& plot);

private:
    QRectF plot_;
    QRectF domain_;
    std::vector<Line> lines_;
};

} // namespace kestrin
