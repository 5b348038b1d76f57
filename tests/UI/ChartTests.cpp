#include "ChartLines.h"
#include "ChartView.h"
#include "TimeScale.h"
#include "UIFixture.h"
#include "ValueScale.h"

#include <cmath>
#include <limits>
#include <random>

#include <QChart>
#include <QChartView>
#include <QDateTimeAxis>
#include <QStackedWidget>
#include <QValueAxis>

namespace kestrin::UITesting {
namespace {

TEST(ValueScale, RoundTicksAroundTheData) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::tuple<double, double, ValueScale> rows[] = {
        {0, 1000, {0, 1000, 6, 0}},   {21.5, 22.4, {21.4, 22.4, 6, 1}},
        {-3.7, -1.2, {-4, -1, 7, 1}}, {0, 1.4, {0, 1.5, 7, 2}}, // 0.25 apart needs two decimals
        {5, 5, {4.7, 5.3, 7, 1}},                               // flat: in the middle
        {0, 0, {-1, 1, 5, 1}},                                  // flat at zero
        {infinity, -infinity, {}},                              // nothing to show
        {std::nan(""), 3, {}},                                  // only a broken value
    };
    for (const auto& [low, high, expected] : rows) {
        SCOPED_TRACE(std::to_string(low) + "…" + std::to_string(high));
        const ValueScale scale = ValueScale::around(low, high);
        EXPECT_NEAR(scale.low, expected.low, 1e-9);
        EXPECT_NEAR(scale.high, expected.high, 1e-9);
        EXPECT_EQ(scale.ticks, expected.ticks);
        EXPECT_EQ(scale.decimals, expected.decimals);
    }
}

TEST(TimeScale, TicksFallOnRoundLocalTimes) {
    constexpr qint64 s = 1000;
    constexpr qint64 h = 3600 * s;
    // 12:00:00 UTC on a day in November.
    const qint64 noon = QDateTime(QDate(2026, 11, 16), QTime(12, 0), Qt::UTC).toMSecsSinceEpoch();
    constexpr qint64 d = 24 * h;
    // Times from noon UTC, then the local time's offset from UTC.
    const std::tuple<const char*, qint64, qint64, qint64, TimeScale> rows[] = {
        {"seconds", 1300, 9700, 0, {0, 10 * s, 6, "HH:mm:ss"}},
        {"a minute in 15 s steps", 2 * s, 62 * s, 0, {0, 75 * s, 6, "HH:mm:ss"}},
        {"under a second", 120, 730, 0, {0, 800, 5, "HH:mm:ss.zzz"}},
        {"on the local hour, not UTC's", 600 * s, 4 * h, h / 2, {-h / 2, 9 * h / 2, 6, "HH:mm"}},
        {"one sample", 500, 500, 0, {500, 600, 2, "HH:mm:ss.zzz"}},
        {"days", 0, 40 * d, 0, {-d / 2, 40 * d + d / 2, 42, "yyyy-MM-dd"}},
    };
    for (auto [name, first, last, offset, expected] : rows) {
        expected.startMs += noon;
        expected.endMs += noon;
        EXPECT_EQ(TimeScale::around(noon + first, noon + last, offset), expected) << name;
    }
}

TEST(ChartLines, BreaksWhereMoreThanTheGapPassesBetweenSamples) {
    const std::tuple<const char*, ChartLines::Run, std::vector<ChartLines::Run>> rows[] = {
        {"nothing", {}, {}},
        {"steady", {{0, 1}, {1, 2}, {2, 3}}, {{{0, 1}, {1, 2}, {2, 3}}}},
        {"exactly the gap still joins", {{0, 1}, {3, 2}}, {{{0, 1}, {3, 2}}}},
        {"a stop and a lone sample",
         {{0, 1}, {1, 2}, {5, 3}, {10, 4}, {11, 5}},
         {{{0, 1}, {1, 2}}, {{5, 3}}, {{10, 4}, {11, 5}}}},
    };
    for (const auto& [name, points, runs] : rows) {
        EXPECT_EQ(ChartLines::split(points, 3), runs) << name;
    }
}

TEST(ValueScale, AnyRangeFitsInAFewRoundSteps) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> unit(-1, 1);
    for (const double magnitude : {1e-6, 0.3, 1.0, 47.0, 1e5, 3e9}) {
        for (int draw = 0; draw < 500; ++draw) {
            double low = unit(random) * magnitude;
            double high = unit(random) * magnitude;
            if (low > high) {
                std::swap(low, high);
            }
            const ValueScale scale = ValueScale::around(low, high);
            ASSERT_LE(scale.low, low);
            ASSERT_GE(scale.high, high);
            ASSERT_GE(scale.ticks, 2);
            ASSERT_LE(scale.ticks - 1, ValueScale::maxIntervals);
            // The step is 1, 2, 2.5 or 5 times a power of ten.
            const double step = (scale.high - scale.low) / (scale.ticks - 1);
            const double mantissa = step / std::pow(10.0, std::floor(std::log10(step) + 1e-9));
            const bool round = std::abs(mantissa - 1) < 1e-6 || std::abs(mantissa - 2) < 1e-6 ||
                               std::abs(mantissa - 2.5) < 1e-6 || std::abs(mantissa - 5) < 1e-6;
            ASSERT_TRUE(round) << low << "…" << high << " step " << step;
        }
    }
}

// The domain maps onto the plot upside down, as screens count down.
TEST(ChartLines, MapsTheDomainOntoThePlotKeepingFirstExtremesAndLastOfEachPixelColumn) {
    const QRectF shifted(100, 50, 200, 100);
    EXPECT_EQ(ChartLines::mapped({{0, 0}, {5, 5}, {10, 10}}, QRectF(0, 0, 10, 10), shifted),
              (QList<QPointF>{{100, 150}, {200, 100}, {300, 50}}));
    EXPECT_TRUE(ChartLines::mapped({{0, 0}}, QRectF(0, 0, 0, 10), shifted).isEmpty());
    EXPECT_TRUE(ChartLines::mapped({}, QRectF(0, 0, 10, 10), shifted).isEmpty());
    // 100 samples per pixel column.
    const QRectF domain(0, 0, 1000, 10);
    const QRectF plot(0, 0, 10, 10);
    const std::tuple<const char*, int, int, std::vector<int>> rows[] = {
        {"low before high", 30, 60, {0, 30, 60, 99, 150}},
        {"high before low", 70, 20, {0, 20, 70, 99, 150}},
        {"extremes at the ends", 0, 99, {0, 99, 150}},
    };
    for (const auto& [name, lowestAt, highestAt, kept] : rows) {
        QList<QPointF> points;
        for (int x = 0; x < 100; ++x) {
            const double y = x == lowestAt ? 0 : x == highestAt ? 10 : 5;
            points.append({static_cast<double>(x), y});
        }
        points.append({150, 5}); // the next column
        QList<QPointF> expected;
        for (const int index : kept) {
            const QPointF& point = points[index == 150 ? 100 : index];
            expected.append({point.x() / 100, 10 - point.y()});
        }
        EXPECT_EQ(ChartLines::mapped(points, domain, plot), expected) << name;
    }
}

struct ChartFixture {
    ChartFixture() {
        Poll poll = Testing::poll("Boiler", {Testing::holding("T", 0), Testing::holding("P", 1)});
        temperature = poll.datapoints[0].id;
        pressure = poll.datapoints[1].id;
        poll.plotted = {temperature};
        model = paneModel({}, std::move(poll));
    }

    void record(const Uuid& id, int secondsAgo, double value) {
        model->recordSample(id, Sample{now.addSecs(-secondsAgo), value});
    }

    static const ChartLines& drawnLines(const ChartView& view) {
        for (QGraphicsItem* item : child<QChartView>(view, "chart")->chart()->childItems()) {
            if (const auto* lines = dynamic_cast<const ChartLines*>(item)) {
                return *lines;
            }
        }
        throw std::runtime_error("the chart has no lines");
    }

    static std::vector<qsizetype> drawnCounts(const ChartView& view) {
        std::vector<qsizetype> counts;
        for (const ChartLines::Line& line : drawnLines(view).lines()) {
            qsizetype count = 0;
            for (const ChartLines::Run& run : line.runs) {
                count += run.size();
            }
            counts.push_back(count);
        }
        return counts;
    }

    QDateTime now = QDateTime::currentDateTimeUtc();
    Uuid temperature;
    Uuid pressure;
    std::unique_ptr<PollerModel> model;
};

// A decoded NaN or infinity is never drawn and leaves the value scale alone.
TEST(ChartView, PeriodLimitsTheSamplesDrawnAndBrokenValuesAreLeftOut) {
    ChartFixture fixture;
    for (const int secondsAgo : {5000, 1000, 120, 30}) {
        fixture.record(fixture.temperature, secondsAgo, secondsAgo);
    }
    fixture.record(fixture.temperature, 20, std::numeric_limits<double>::quiet_NaN());
    fixture.record(fixture.temperature, 10, std::numeric_limits<double>::infinity());
    fixture.record(fixture.temperature, 5, 5);
    fixture.record(fixture.pressure, 5, 2.5); // not plotted
    ChartView view(*fixture.model);
    view.show();

    // Which samples fall in a period is the model's; here that the chart draws those.
    const std::vector<std::pair<int, qsizetype>> drawnIn{{3600, 4}, {0, 5}, {60, 2}};
    for (const auto& [period, drawn] : drawnIn) {
        view.setPeriodSeconds(period);
        EXPECT_EQ(fixture.drawnCounts(view), std::vector<qsizetype>{drawn}) << "period " << period;
    }
    const QRectF domain = ChartFixture::drawnLines(view).domain();
    EXPECT_LE(domain.top(), 5.0);
    EXPECT_GE(domain.bottom(), 30.0);
    EXPECT_LT(domain.height(), 100.0);
}

TEST(ChartView, WithoutPlottedSamplesShowsNothingToShowYetAndHiddenDrawsWhenShown) {
    ChartFixture fixture;
    fixture.record(fixture.pressure, 5, 1.0);
    ChartView view(*fixture.model);
    view.show();
    view.refresh();
    const auto* pages = child<QStackedWidget>(view);
    EXPECT_EQ(pages->currentWidget()->objectName(), "chartEmpty");

    view.hide();
    fixture.record(fixture.temperature, 5, 1.0);
    view.refresh();
    EXPECT_TRUE(fixture.drawnCounts(view).empty());
    view.show();
    EXPECT_EQ(fixture.drawnCounts(view), std::vector<qsizetype>{1});
    EXPECT_EQ(pages->currentWidget()->objectName(), "chart");

    fixture.model->clearHistory();
    EXPECT_EQ(pages->currentWidget()->objectName(), "chartEmpty");
}

TEST(ChartView, TimeAxisDrawsWhenDataArrivesAfterTheChartIsShown) {
    ChartFixture fixture;
    ChartView view(*fixture.model);
    showAt(view, 800, 320);
    fixture.record(fixture.temperature, 1, 1.0);
    view.refresh(); // the chart is now laid out with its first range
    QApplication::processEvents();
    for (const int secondsAgo : {40, 30, 20, 10}) {
        fixture.record(fixture.temperature, secondsAgo, secondsAgo);
    }
    view.refresh();
    QApplication::processEvents();

    QChart* chart = child<QChartView>(view, "chart")->chart();
    ASSERT_EQ(chart->axes(Qt::Horizontal).size(), 1);
    auto* time = qobject_cast<QDateTimeAxis*>(chart->axes(Qt::Horizontal).front());
    ASSERT_NE(time, nullptr);
    // Around the data, from one round time to another (UTC and local seconds agree).
    EXPECT_LE(time->min(), fixture.now.addSecs(-40));
    EXPECT_GE(time->max(), fixture.now.addSecs(-1));
    const qint64 step = (time->max().toMSecsSinceEpoch() - time->min().toMSecsSinceEpoch()) /
                        (time->tickCount() - 1);
    EXPECT_EQ(step, 10'000);
    EXPECT_EQ(time->min().toMSecsSinceEpoch() % step, 0);
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

} // namespace
} // namespace kestrin::UITesting
