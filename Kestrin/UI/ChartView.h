#pragma once

#include <vector>

#include <QRectF>
#include <QWidget>

class QChart;
class QChartView;
class QComboBox;
class QDateTimeAxis;
class QValueAxis;
class QStackedWidget;

namespace kestrin {

class ChartLines;
struct ChartSeries;
class PollerModel;

// The recorded values of the selected poll's plotted datapoints over the chosen period, one line
// each. Redrawn when the model publishes new history (a few times a second at most) and only
// while shown; a hidden chart catches up when it appears.
class ChartView : public QWidget {
    Q_OBJECT

public:
    static constexpr int defaultPeriodSeconds = 300;

    explicit ChartView(PollerModel& model, QWidget* parent = nullptr);

    int periodSeconds() const { return periodSeconds_; }
    void setPeriodSeconds(int seconds);

    // Draws now if shown, else at the next show.
    void refresh();

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // One empty series per line, for the legend's entries and the theme's colours.
    void matchSeries(const std::vector<ChartSeries>& lines);
    // The axes around the data, on round ticks; their ranges as the lines' domain.
    QRectF fitAxes(qint64 first, qint64 last, double low, double high);
    void redraw();
    void applyTheme();

    PollerModel& model_;
    int periodSeconds_ = defaultPeriodSeconds;
    bool stale_ = true;
    QComboBox* period_;
    QStackedWidget* pages_;
    QChart* chart_;
    QChartView* chartView_;
    QDateTimeAxis* timeAxis_;
    QValueAxis* valueAxis_;
    ChartLines* lines_;
};

} // namespace kestrin
