#include "ChartView.h"
#include "PaneTestModel.h"

#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QLineSeries>
#include <QSettings>
#include <QStackedWidget>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

struct ChartFixture {
    ChartFixture() {
        Poll poll;
        poll.name = "Boiler";
        poll.datapoints = {PaneTest::holdingRegister("Temperature", 0),
                           PaneTest::holdingRegister("Pressure", 1)};
        temperature = poll.datapoints[0].id;
        pressure = poll.datapoints[1].id;
        poll.plotted = {temperature};
        model = PaneTest::model({}, std::move(poll));
    }

    void record(const Uuid& id, int secondsAgo, double value) {
        model->recordSample(id, Sample{now.addSecs(-secondsAgo), value});
    }

    std::vector<qsizetype> drawnCounts(const ChartView& view) const {
        std::vector<qsizetype> counts;
        for (QAbstractSeries* series : view.findChild<QChartView*>("chart")->chart()->series()) {
            counts.push_back(static_cast<QLineSeries*>(series)->count());
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
