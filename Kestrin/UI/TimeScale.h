#pragma once

#include <QString>
#include <QtGlobal>

namespace kestrin {

// The time axis of the chart: a range around the data whose ticks fall on round times of day
// (every 1, 2, 5, 10, 15 or 30 seconds or minutes, every 1, 2, 3, 6 or 12 hours, or daily; below
// a second every 100, 200 or 500 ms), at most maxIntervals steps apart, in local time.
struct TimeScale {
    static constexpr int maxIntervals = 6;

    qint64 startMs = 0; // milliseconds since the epoch
    qint64 endMs = 0;
    int ticks = 2;  // including both ends
    QString format; // what the tick labels need to tell the steps apart

    // utcOffsetMs: the local time's offset from UTC, so that hours are local hours.
    static TimeScale around(qint64 firstMs, qint64 lastMs, qint64 utcOffsetMs);

    friend bool operator==(const TimeScale&, const TimeScale&) = default;
};

} // namespace kestrin
