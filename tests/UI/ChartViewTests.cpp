#include "ChartLines.h"
#include "ChartView.h"
#include "PaneTestModel.h"

#include <limits>
#include <stdexcept>

#include <QApplication>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QDateTimeAxis>
#include <QSettings>
#include <QStackedWidget>
#include <QValueAxis>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

struct ChartFixture {
    ChartFixture() {
        Poll poll;
        poll.name = "Boiler";
        poll.datapoints = {PaneTest::holding("Temperature", 0), PaneTest::holding("Pressure", 1)};
        temperature = poll.datapoints[0].id;
        pressure = poll.datapoints[1].id;
        poll.plotted = {temperature};
        model = PaneTest::model({}, std::move(poll));
    }

    void record(const Uuid& id, int secondsAgo, double value) {
        model->recordSample(id, Sample{now.addSecs(-secondsAgo), value});
    }

    static const ChartLines& drawnLines(const ChartView& view) {
        for (QGraphicsItem* item : view.findChild<QChartView*>("chart")->chart()->childItems()) {
            if (const auto* lines = dynamic_cast<const ChartLines*>(item)) {
                return *lines;
            }
        }
        throw std::logic_error("the chart has no lines");
    }

    static std::vector<qsizetype> drawnCounts(const ChartView& view) {
        std::vector<qsizetype> counts;
        for (const ChartLines::Line& line : drawnLines(view).lines()) {
            counts.push_back(line.points.size());
        }
        return counts;
    }

    QDateTime now = QDateTime::currentDateTimeUtc();
    Uuid temperature;
    Uuid pressure;
    std::unique_ptr<PollerModel> model;
};

TEST(ChartView, PeriodLimitsTheSamplesDrawn) {
    ChartFixture fixture;
    for (const int secondsAgo : {5, 30, 120, 1000, 5000}) {
        fixture.record(fixture.temperature, secondsAgo, secondsAgo);
    }
    fixture.record(fixture.pressure, 5, 2.5); // not plotted
    ChartView view(*fixture.model);
    view.show();

    const struct {
        int period;
        qsizetype drawn;
    } rows[] = {{60, 2}, {300, 3}, {900, 3}, {3600, 4}, {0, 5}};
    for (const auto& row : rows) {
        view.setPeriodSeconds(row.period);
        EXPECT_EQ(fixture.drawnCounts(view), std::vector<qsizetype>{row.drawn})
            << "period " << row.period;
    }
}

TEST(ChartView, BrokenValuesLeaveTheScaleAlone) {
    ChartFixture fixture;
    fixture.record(fixture.temperature, 30, std::numeric_limits<double>::quiet_NaN());
    fixture.record(fixture.temperature, 20, 2.0);
    fixture.record(fixture.temperature, 10, std::numeric_limits<double>::infinity());
    fixture.record(fixture.temperature, 5, 4.0);
    ChartView view(*fixture.model);
    view.show();

    EXPECT_EQ(ChartFixture::drawnCounts(view), std::vector<qsizetype>{2});
    const QRectF domain = ChartFixture::drawnLines(view).domain();
    EXPECT_LE(domain.top(), 2.0);
    EXPECT_GE(domain.bottom(), 4.0);
    EXPECT_LT(domain.height(), 10.0);
}

TEST(ChartView, WithoutPlottedSamplesShowsNothingToShowYet) {
    ChartFixture fixture;
    fixture.record(fixture.pressure, 5, 1.0);
    ChartView view(*fixture.model);
    view.show();
    view.refresh();
    auto* pages = view.findChild<QStackedWidget*>();
    ASSERT_NE(pages, nullptr);
    EXPECT_EQ(pages->currentWidget()->objectName(), "chartEmpty");

    fixture.record(fixture.temperature, 5, 1.0);
    view.refresh();
    EXPECT_EQ(pages->currentWidget()->objectName(), "chart");

    fixture.model->clearHistory();
    EXPECT_EQ(pages->currentWidget()->objectName(), "chartEmpty");
}

TEST(ChartView, HiddenChartDrawsWhenShown) {
    ChartFixture fixture;
    ChartView view(*fixture.model);
    fixture.record(fixture.temperature, 5, 1.0);
    view.refresh();
    EXPECT_TRUE(fixture.drawnCounts(view).empty());
    view.show();
    EXPECT_EQ(fixture.drawnCounts(view), std::vector<qsizetype>{1});
}

TEST(ChartView, TimeAxisDrawsWhenDataArrivesAfterTheChartIsShown) {
    ChartFixture fixture;
    ChartView view(*fixture.model);
    view.resize(800, 320);
    view.show();
    fixture.record(fixture.temperature, 1, 1.0);
    view.refresh(); // the chart is now laid out with its first range
    QApplication::processEvents();
    for (const int secondsAgo : {40, 30, 20, 10}) {
        fixture.record(fixture.temperature, secondsAgo, secondsAgo);
    }
    view.refresh();
    QApplication::processEvents();

    QChart* chart = view.findChild<QChartView*>("chart")->chart();
    const auto axes = chart->axes(Qt::Horizontal);
    ASSERT_EQ(axes.size(), 1);
    auto* time = qobject_cast<QDateTimeAxis*>(axes.front());
    ASSERT_NE(time, nullptr);
    EXPECT_EQ(time->min(), fixture.now.addSecs(-40));
    EXPECT_EQ(time->max(), fixture.now.addSecs(-1));
    // The lines are drawn in the axes' own ranges.
    auto* value = qobject_cast<QValueAxis*>(chart->axes(Qt::Vertical).front());
    ASSERT_NE(value, nullptr);
    const QRectF domain = ChartFixture::drawnLines(view).domain();
    EXPECT_EQ(domain.left(), static_cast<double>(time->min().toMSecsSinceEpoch()));
    EXPECT_EQ(domain.right(), static_cast<double>(time->max().toMSecsSinceEpoch()));
    EXPECT_DOUBLE_EQ(domain.top(), value->min());
    EXPECT_DOUBLE_EQ(domain.bottom(), value->max());
    // Below the plot there must be room for the tick labels and the title.
    const QFontMetrics labels(time->labelsFont());
    EXPECT_GT(chart->size().height() - chart->plotArea().bottom(), 2 * labels.height());
}

TEST(ChartView, ChosenPeriodSurvivesANewView) {
    ChartFixture fixture;
    {
        ChartView view(*fixture.model);
        EXPECT_EQ(view.periodSeconds(), ChartView::defaultPeriodSeconds);
        auto* picker = view.findChild<QComboBox*>("chartPeriod");
        ASSERT_NE(picker, nullptr);
        ASSERT_EQ(picker->count(), 5);
        picker->setCurrentIndex(4);
        emit picker->activated(4);
        EXPECT_EQ(view.periodSeconds(), 0);
    }
    ChartView again(*fixture.model);
    EXPECT_EQ(again.periodSeconds(), 0);
    EXPECT_EQ(again.findChild<QComboBox*>("chartPeriod")->currentData().toInt(), 0);
}

} // namespace
} // namespace kestrin
