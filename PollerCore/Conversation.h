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
// PollerEvent describes. A heard request waits for its answer at most the time-out, and the
// next request ends the wait. Pure: time passes only through the frames and giveUp.
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

private:
    struct Pending {
        Bytes request;
        Arrival end;
    };

    void answer(Bytes response, Arrival end, std::vector<PollerEvent>& out);
    void ask(Bytes request, Arrival end, std::vector<PollerEvent>& out);
    // Bytes that make no frame but start with the pending request's unit: its answer, broken on
    // the way. A whole frame that is no answer is another's (a late one, say) and leaves the
    // request waiting.
    bool isDefectiveAnswer(const TimedSplitter::Frame& frame) const;

    Clock::duration timeout_;
    std::optional<Pending> pending_;
};

} // namespace kestrin
