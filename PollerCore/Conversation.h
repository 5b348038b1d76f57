#pragma once

#include "Arrival.h"
#include "PollerEvent.h"
#include "TimedSplitter.h"

#include <chrono>
#include <optional>
#include <vector>

namespace kestrin {

// Pairs the requests another master sends with the answers that follow them. Frames come in
// dated, in the order they were heard; heard and unmatched events come out, dated as
// PollerEvent describes. A heard request waits for its answer at most the time-out, counted to
// the first byte of the answer, and the next request ends the wait. Bytes that fit no request,
// heard while one waits, are reported right after it, so that the log keeps the request before
// them. Pure: time passes only through the frames and giveUp.
class Conversation {
public:
    using Clock = std::chrono::steady_clock;

    // timeout in seconds, as the engine's response time-out.
    explicit Conversation(double timeout);

    std::vector<PollerEvent> hear(TimedSplitter::Frame frame);
    // The pending request, when its time-out has passed by now, as answered by nothing.
    std::vector<PollerEvent> giveUp(Clock::time_point now);
    // When the pending request's time-out passes; none without one.
    std::optional<Clock::time_point> deadline() const;
    // The answer the pending request waits for; none without one.
    std::optional<TimedSplitter::Awaited> awaited() const;

private:
    struct Pending {
        Bytes request;
        Arrival end;
    };

    void ask(Bytes request, Arrival end, std::vector<PollerEvent>& out);
    // Ends the pending request's wait with response (none: unanswered, dated end) and reports the
    // bytes held back behind it.
    void settle(Bytes response, Arrival end, std::vector<PollerEvent>& out);
    void stray(TimedSplitter::Frame frame, std::vector<PollerEvent>& out);
    // A single write's answer repeats it: the same frame again soon after it was given up is that
    // answer come late, not the master asking anew.
    bool isLateEcho(const TimedSplitter::Frame& frame) const;
    // Bytes that make no frame but start with the pending request's unit: its answer, broken on
    // the way. A whole frame that is no answer is another's (a late one, say) and leaves the
    // request waiting.
    bool isDefectiveAnswer(const TimedSplitter::Frame& frame) const;

    Clock::duration timeout_;
    std::optional<Pending> pending_;
    std::optional<Pending> givenUp_;
    std::vector<PollerEvent> strays_;
};

} // namespace kestrin
