#include "ValueScale.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrin {

namespace {

// Beyond this the labels are noise; such ranges are read in the table.
constexpr int maxDecimals = 9;

} // namespace

ValueScale ValueScale::around(double low, double high) {
    if (!std::isfinite(low) || !std::isfinite(high) || low > high) {
        return {};
    }
    if (low == high) {
        // A flat line sits in the middle.
        const double margin = low == 0 ? 1.0 : std::abs(low) * 0.05;
        low -= margin;
        high += margin;
    }
    const double rough = (high - low) / maxIntervals;
    const double magnitude = std::pow(10.0, std::floor(std::log10(rough)));
    if (!std::isfinite(magnitude) || magnitude <= 0) {
        // At the ends of the double range: no round numbers to find.
        return {low, high, 2, 0};
    }
    // Past 10: a rough step just under ten times its power of ten can need one more interval at
    // each end than maxIntervals allows.
    constexpr std::array<double, 7> multiples{1, 2, 2.5, 5, 10, 20, 25};
    for (const double multiple : multiples) {
        const double step = multiple * magnitude;
        const double bottom = std::floor(low / step) * step;
        const double top = std::ceil(high / step) * step;
        const auto intervals = static_cast<int>(std::lround((top - bottom) / step));
        if (intervals > maxIntervals) {
            continue;
        }
        // 2.5 × 10^k needs one decimal more than its power of ten.
        const int decimals = std::clamp(-static_cast<int>(std::floor(std::log10(step))) +
                                            (multiple == 2.5 || multiple == 25 ? 1 : 0),
                                        0, maxDecimals);
        return {bottom, top, intervals + 1, decimals};
    }
    return {low, high, 2, 0};
}

} // namespace kestrin
