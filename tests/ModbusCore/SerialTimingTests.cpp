#include "SerialTiming.h"

#include <limits>
#include <utility>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(SerialTiming, InterFrameDelayIsFixedOnlyAbove19200Baud) {
    struct Row {
        int baud, bits;
        double seconds;
    };
    const Row rows[] = {
        {1200, 11, 0.0320833333333333}, {9600, 11, 0.0040104166666666},
        {9600, 10, 0.0036458333333333}, {19200, 11, 0.0020052083333333},
        {19201, 11, 0.00175},           {115200, 10, 0.00175},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.baud);
        EXPECT_NEAR(SerialTiming::interFrameDelay(row.baud, row.bits), row.seconds, 1e-12);
    }
}

// Project files and command lines hand over any double: none may wrap the clock.
TEST(SerialTiming, DurationsAreNeverNegativeAndAtMostADay) {
    using std::chrono::nanoseconds;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const nanoseconds day = std::chrono::hours(24);
    const std::pair<double, nanoseconds> rows[] = {
        {std::numeric_limits<double>::quiet_NaN(), nanoseconds(0)},
        {-infinity, nanoseconds(0)},
        {-1.0, nanoseconds(0)},
        {0.0, nanoseconds(0)},
        {0.00175, std::chrono::microseconds(1750)},
        {1.5, std::chrono::milliseconds(1500)},
        {86400.0, day},
        {86400.5, day},
        {1e300, day},
        {infinity, day},
    };
    for (const auto& [seconds, expected] : rows) {
        SCOPED_TRACE(seconds);
        EXPECT_EQ(SerialTiming::duration(seconds), expected);
    }
}

} // namespace
} // namespace kestrin
