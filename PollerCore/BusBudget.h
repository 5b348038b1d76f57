#pragma once

#include "ReadBlock.h"
#include "SerialConfiguration.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace kestrin {

// What the polls ask of a serial line, known before the first byte goes out: how long each
// poll's reading takes, how much of the line all of them need together, and how often each will
// really be read. Pure functions of the read plans, the frame settings and the devices' reply
// times.
namespace BusBudget {

// How long a device takes from the end of a request to the start of its answer.
struct Turnarounds {
    // What a device is taken to need until its own time is measured.
    static constexpr double typicalSeconds = 0.005;

    double fallback = typicalSeconds;
    std::map<std::uint8_t, double> measured;

    double of(std::uint8_t unit) const;
};

// One poll as the line sees it.
struct Demand {
    // ReadPlanner::blocks of its datapoints: its requests, in the order they are made.
    std::vector<ReadBlock> blocks;
    // Seconds between the starts of two readings; zero or less reads it again as soon as it is
    // done, as the engine does.
    double interval = 1.0;
    bool enabled = true;
};

struct Request {
    ReadBlock block;
    // How long it holds the line.
    double seconds = 0;
    // From the end of the request to the end of the answer: a response time-out shorter than this
    // fails the request every time.
    double answerSeconds = 0;

    friend bool operator==(const Request&, const Request&) = default;
};

struct PollBudget {
    std::vector<Request> requests;
    // The requests' seconds together: one reading of the poll.
    double cycle = 0;
    double interval = 1.0;
    // The mean seconds between the starts of two readings as the engine will manage them;
    // nothing for a poll it never reads (disabled, or without a request).
    std::optional<double> effectiveInterval;

    // Read less often than its interval asks, by half a millisecond or more. Never for a poll
    // read back to back, which asks for nothing slower.
    bool late() const noexcept;
    // Its own reading takes longer than its interval.
    bool outlastsInterval() const noexcept { return interval > 0 && cycle > interval; }

    friend bool operator==(const PollBudget&, const PollBudget&) = default;
};

struct Budget {
    // In the order of the demands.
    std::vector<PollBudget> polls;
    // The share of the line's time the enabled polls ask for; above 1 they cannot all be read
    // as often as they ask.
    double lineLoad = 0;

    bool overloaded() const noexcept { return lineLoad > 1; }

    friend bool operator==(const Budget&, const Budget&) = default;
};

// Each request holds the line for LineRate::exchangeSeconds with its unit's turnaround, the
// adapter's handover (how long it holds each answer back: its latency timer, 0 for a UART) and
// the RS-485 delay before sending; its answer takes the turnaround and the handover. The
// effective intervals come from running the engine's own schedule (PollSchedule::choose) with
// each reading taking its cycle: the engine reads a poll's requests in one go, so a long reading
// can hold a fast poll back by more than one of its intervals, and polls of different intervals
// share a shortfall unevenly rather than by the load. Nothing when the baud rate is not positive.
std::optional<Budget> of(std::span<const Demand> polls, const SerialConfiguration& serial,
                         const Turnarounds& turnarounds = {}, double handoverSeconds = 0);

} // namespace BusBudget
} // namespace kestrin
