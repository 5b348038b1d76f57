#include "TimeScale.h"

#include <algorithm>
#include <array>

namespace kestrin {

namespace {

constexpr qint64 second = 1000;
constexpr qint64 minute = 60 * second;
constexpr qint64 hour = 60 * minute;
constexpr std::array<qint64, 21> steps{
    100,         200,         500,      second,     2 * second, 5 * second,  10 * second,
    15 * second, 30 * second, minute,   2 * minute, 5 * minute, 10 * minute, 15 * minute,
    30 * minute, hour,        2 * hour, 3 * hour,   6 * hour,   12 * hour,   24 * hour};

// Floor and ceiling that also round negative times (before 1970, or shifted) the right way.
qint64 floorTo(qint64 value, qint64 step) {
    const qint64 quotient = value / step;
    return (value % step != 0 && value < 0 ? quotient - 1 : quotient) * step;
}

qint64 ceilTo(qint64 value, qint64 step) {
    return -floorTo(-value, step);
}

} // namespace

TimeScale TimeScale::around(qint64 firstMs, qint64 lastMs, qint64 utcOffsetMs) {
    if (lastMs < firstMs) {
        std::swap(firstMs, lastMs);
    }
    for (const qint64 step : steps) {
        // Rounded in local time, so that an hourly tick is on the local hour.
        const qint64 start = floorTo(firstMs + utcOffsetMs, step) - utcOffsetMs;
        qint64 end = ceilTo(lastMs + utcOffsetMs, step) - utcOffsetMs;
        if (end == start) {
            end += step;
        }
        const qint64 intervals = (end - start) / step;
        if (intervals > maxIntervals && step != steps.back()) {
            continue;
        }
        const QString format = step < second      ? QStringLiteral("HH:mm:ss.zzz")
                               : step < minute    ? QStringLiteral("HH:mm:ss")
                               : step < 24 * hour ? QStringLiteral("HH:mm")
                                                  : QStringLiteral("yyyy-MM-dd");
        return {start, end, static_cast<int>(intervals) + 1, format};
    }
    return {};
}

} // namespace kestrin
