#pragma once

namespace kestrin {

// The value axis of the chart: a range holding the data whose ticks fall on round numbers
// (1, 2, 2.5 or 5 times a power of ten apart), with at most maxIntervals steps between them.
struct ValueScale {
    static constexpr int maxIntervals = 6;

    double low = 0;
    double high = 1;
    int ticks = 2;    // including both ends
    int decimals = 0; // what the tick labels need to tell the steps apart

    // Any range, also empty (low > high: nothing to show) or flat; non-finite bounds give 0…1.
    static ValueScale around(double low, double high);

    friend bool operator==(const ValueScale&, const ValueScale&) = default;
};

} // namespace kestrin
