#pragma once

#include "BusMeter.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace kestrin {

// A time-out that fits how fast the units really answer, offered to the user and never set
// without them.
struct TimeoutOffer {
    // Fewer answers say too little about the slow ones: the offer is looked at each time a unit
    // has answered this many more times.
    static constexpr std::int64_t answersNeeded = 50;
    // The 99th percentile is of recent answers only and a loaded desktop adds its own delays:
    // half as much again covers a device that slows down under load, and 10 ms the scheduler's
    // and the USB stack's jitter, which matter most for the fastest devices.
    static constexpr double margin = 1.5;
    static constexpr int slackMs = 10;

    // The unit that needs the longest, and its 99th percentile round trip in milliseconds.
    std::uint8_t unit = 0;
    int p99Ms = 0;
    // A choice of the time-out picker, and the time-out set when it was offered.
    int timeoutMs = 0;
    int currentMs = 0;

    // The smallest choice of the picker covering this round trip with the margin; the largest
    // choice when none does.
    static int fittingTimeoutMs(int p99Ms);

    // Nothing until some unit has answersNeeded answers, or when the fitting time-out is the one
    // set. It covers every unit that answered, however often. While requests time out or are
    // answered late (timeouts, of every unit), nothing shorter than the current time-out is
    // offered: some answer may need all of it.
    static std::optional<TimeoutOffer> check(std::span<const BusMeter::UnitFigures> units,
                                             std::int64_t timeouts, int currentMs);

    std::string text() const;

    friend bool operator==(const TimeoutOffer&, const TimeoutOffer&) = default;
};

} // namespace kestrin
