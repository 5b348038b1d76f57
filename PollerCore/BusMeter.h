#pragma once

#include "PollPlan.h"
#include "PollerEvent.h"
#include "SerialConfiguration.h"
#include "Uuid.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace kestrin {

// What the line really does while reading, from the engine's events alone: how long each unit
// takes to answer, how often each poll really comes round, and how much of the time the line
// carries a transaction. Memory stays the same over days of reading: only the most recent answers
// and cycles are kept. Pure: time comes from the events and from the caller.
class BusMeter {
public:
    using Time = PollerEvent::Time;

    // Enough answers for a stable 99th percentile, few enough to follow a device that slows down.
    static constexpr std::size_t recentAnswers = 1000;
    static constexpr std::size_t recentCycles = 20;

    // Seconds; the median and the 99th percentile of the recent answers, each an observed value.
    struct Spread {
        double median = 0;
        double p99 = 0;
        friend bool operator==(const Spread&, const Spread&) = default;
    };
    struct UnitFigures {
        std::uint8_t unit = 0;
        // Every answered read since reading started, not only the recent ones.
        std::int64_t answers = 0;
        // Time-outs and late answers since reading started.
        std::int64_t timeouts = 0;
        // From just before the request to the answer's end, as the log shows it.
        Spread roundTrip;
        // What the device itself took, from the request's end to the answer's start: the round
        // trip less the silence the link waited before the request, both frames on the wire,
        // the adapter's handover and the RS-485 delay before sending.
        Spread turnaround;
        friend bool operator==(const UnitFigures&, const UnitFigures&) = default;
    };

    // handoverSeconds: how long the adapter holds each answer back (0 for a UART).
    BusMeter(const SerialConfiguration& serial, double handoverSeconds,
             std::span<const PollPlan> plans);

    // The first Started opens the time being read; a later one, after the port was lost and
    // reopened, begins each poll's cycles anew. Reads, writes and late answers are measured.
    // Events come in the engine's order.
    void add(const PollerEvent& event);
    // The adapter's handover from now on, after its latency timer was changed.
    void setHandover(double handoverSeconds) noexcept { handoverSeconds_ = handoverSeconds; }
    // The plans the engine reads from now on: a poll removed or changed begins its cycles anew.
    void setPlans(std::span<const PollPlan> plans);

    // The units with an answer, by unit number.
    std::vector<UnitFigures> units() const;
    // The unit's answered reads, without working out its spreads.
    std::int64_t answers(std::uint8_t unit) const;
    // Time-outs and late answers of every unit since reading started, those that never answered
    // included.
    std::int64_t timeouts() const;
    // Seconds between the ends of the poll's recent cycles; nothing before its second cycle.
    std::optional<double> interval(const Uuid& poll) const;
    // The part of the time since Started that the line carried a transaction, time-outs
    // included; nothing before Started or when no time has passed.
    std::optional<double> busyShare(Time now) const;

private:
    struct Answer {
        double roundTrip;
        double turnaround;
    };
    struct Unit {
        std::int64_t answers = 0;
        std::int64_t timeouts = 0;
        std::deque<Answer> recent;
    };

    void addRead(const PollerEvent::Read& read);
    // A failed request to unit; a late answer that follows counts for it as well.
    void failed(std::uint8_t unit, const PollFailureError& error);
    void cycleMayHaveEnded(const Uuid& poll, const ReadBlock& block, Time time);

    SerialConfiguration serial_;
    double handoverSeconds_;
    std::map<Uuid, PollPlan> plans_;
    std::map<std::uint8_t, Unit> units_;
    std::map<Uuid, std::deque<Time>> cycleEnds_;
    std::optional<Time> started_;
    // The unit of the last failed request, to which a late answer belongs.
    std::optional<std::uint8_t> failedUnit_;
    double busySeconds_ = 0;
};

} // namespace kestrin
