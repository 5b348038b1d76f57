#pragma once

#include <QWidget>

class QAbstractButton;
class QStackedWidget;

namespace kestrin {

class BusPopover;
class ChartView;
class ElidedLine;
class LogOptionsView;
class OutputArea;
class PollerModel;

// The lower part of the main window: a bar with the switch between the log and the chart and
// the tools of the chosen view, and below it the log (with its notices) or the chart. The
// choice is a view preference that survives restarts.
class BottomPane : public QWidget {
    Q_OBJECT

public:
    enum class Page { log, chart };

    BottomPane(PollerModel& model, QWidget* parent = nullptr);

    Page page() const { return page_; }
    void setPage(Page page);

    OutputArea* outputArea() const { return output_; }
    ChartView* chartView() const { return chart_; }
    // Null until first opened.
    BusPopover* busPopover() const { return bus_; }

public slots:
    void saveLog();
    void clearLog();
    void exportHistory();
    void showFindBar();
    void toggleLogOptions();
    void toggleBusPopover();

private:
    QWidget* makeBar();
    // The switch between the log and the chart.
    QWidget* makePagePicker(QWidget* bar);
    // The statistics, the bus figures, the log options, Save and Clear.
    QWidget* makeLogTools(QWidget* parent);
    // Clear and export the history.
    QWidget* makeChartTools(QWidget* parent);
    void refreshStatistics();

    PollerModel& model_;
    Page page_ = Page::log;
    QAbstractButton* logButton_ = nullptr;
    QAbstractButton* chartButton_ = nullptr;
    QStackedWidget* tools_ = nullptr;
    ElidedLine* statistics_ = nullptr;
    QAbstractButton* optionsButton_ = nullptr;
    LogOptionsView* options_ = nullptr;
    QAbstractButton* busButton_ = nullptr;
    BusPopover* bus_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    OutputArea* output_ = nullptr;
    ChartView* chart_ = nullptr;
};

} // namespace kestrin
