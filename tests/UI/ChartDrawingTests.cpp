#include "ChartLines.h"
#include "ValueScale.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(ValueScale, RoundTicksAroundTheData) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const struct {
        double low, high;
        ValueScale expected;
    } rows[] = {
        {0, 1000, {0, 1000, 6, 0}},   {21.5, 22.4, {21.4, 22.4, 6, 1}},
        {-3.7, -1.2, {-4, -1, 7, 1}}, {0, 1.4, {0, 1.5, 7, 2}}, // 0.25 apart needs two decimals
        {5, 5, {4.7, 5.3, 7, 1}},                               // flat: in the middle
        {0, 0, {-1, 1, 5, 1}},                                  // flat at zero
        {infinity, -infinity, {}},                              // nothing to show
        {std::nan(""), 3, {}},                                  // only a broken value
    };
    for (const auto& row : rows) {
        const ValueScale scale = ValueScale::around(row.low, row.high);
        EXPECT_NEAR(scale.low, row.expected.low, 1e-9) << row.low << "…" << row.high;
        EXPECT_NEAR(scale.high, row.expected.high, 1e-9) << row.low << "…" << row.high;
        EXPECT_EQ(scale.ticks, row.expected.ticks) << row.low << "…" << row.high;
        EXPECT_EQ(scale.decimals, row.expected.decimals) << row.low << "…" << row.high;
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

TEST(ChartLines, MapsTheDomainOntoThePlot) {
    const QRectF domain(0, 0, 10, 10);
    const QRectF plot(100, 50, 200, 100);
    const QList<QPointF> drawn = ChartLines::mapped({{0, 0}, {5, 5}, {10, 10}}, domain, plot);
    EXPECT_EQ(drawn, (QList<QPointF>{{100, 150}, {200, 100}, {300, 50}}));

    EXPECT_TRUE(ChartLines::mapped({{0, 0}}, QRectF(0, 0, 0, 10), plot).isEmpty());
    EXPECT_TRUE(ChartLines::mapped({}, domain, plot).isEmpty());
}

TEST(ChartLines, KeepsFirstExtremesAndLastOfEachPixelColumn) {
    // 100 samples per pixel column.
    const QRectF domain(0, 0, 1000, 10);
    const QRectF plot(0, 0, 10, 10);
    const struct {
        const char* name;
        int lowestAt, highestAt;
        std::vector<int> kept;
    } rows[] = {
        {"low before high", 30, 60, {0, 30, 60, 99, 150}},
        {"high before low", 70, 20, {0, 20, 70, 99, 150}},
        {"extremes at the ends", 0, 99, {0, 99, 150}},
    };
    for (const auto& row : rows) {
        QList<QPointF> points;
        for (int x = 0; x < 100; ++x) {
            const double y = x == row.lowestAt ? 0 : x == row.highestAt ? 10 : 5;
            points.append({static_cast<double>(x), y});
        }
        points.append({150, 5}); // the next column
        QList<QPointF> expected;
        for (const int index : row.kept) {
            const QPointF& point = points[index == 150 ? 100 : index];
            expected.append({point.x() / 100, 10 - point.y()});
        }
        EXPECT_EQ(ChartLines::mapped(points, domain, plot), expected) << row.name;
    }
}

} // namespace
} // namespace kestrin
