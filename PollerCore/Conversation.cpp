#include "Conversation.h"

#include "HeardExchange.h"
#include "RTUFrame.h"
#include "SerialTiming.h"

#include <utility>

namespace kestrin {

namespace {

using Kind = FrameSplitter::Frame::Kind;

double seconds(std::chrono::steady_clock::duration duration) {
    return std::chrono::duration<double>(duration).count();
}

PollerEvent heard(Bytes request, Bytes response, Arrival requestEnd, Arrival end) {
    HeardExchange::Judgement judged = HeardExchange::judge(request, response);
    const double duration = response.empty() ? 0 : seconds(end.steady - requestEnd.steady);
    return {PollerEvent::Heard{std::move(request), std::move(response), judged.range,
                               std::move(judged.outcome), judged.isWrite, duration,
                               requestEnd.wall},
            end.wall};
}

} // namespace

Conversation::Conversation(double timeout)
    : timeout_(SerialTiming::duration(timeout)) {}

std::vector<PollerEvent> Conversation::hear(TimedSplitter::Frame frame) {
    std::vector<PollerEvent> events = giveUp(frame.end.steady);
    if (pending_ &&
        (HeardExchange::isAnswer(pending_->request, frame.bytes) || isDefectiveAnswer(frame))) {
        answer(std::move(frame.bytes), frame.end, events);
    } else if (frame.kind == Kind::request) {
        ask(std::move(frame.bytes), frame.end, events);
    } else {
        events.push_back({PollerEvent::Unmatched{std::move(frame.bytes)}, frame.end.wall});
    }
    return events;
}

std::vector<PollerEvent> Conversation::giveUp(Clock::time_point now) {
    std::vector<PollerEvent> events;
    if (const auto due = deadline(); due && now >= *due) {
        Pending given = std::move(*pending_);
        pending_.reset();
        events.push_back(heard(std::move(given.request), {}, given.end, given.end + timeout_));
    }
    return events;
}

std::optional<Conversation::Clock::time_point> Conversation::deadline() const {
    if (!pending_) {
        return std::nullopt;
    }
    return pending_->end.steady + timeout_;
}

void Conversation::answer(Bytes response, Arrival end, std::vector<PollerEvent>& out) {
    Pending answered = std::move(*pending_);
    pending_.reset();
    out.push_back(heard(std::move(answered.request), std::move(response), answered.end, end));
}

void Conversation::ask(Bytes request, Arrival end, std::vector<PollerEvent>& out) {
    // The next request ends the wait: the master has given up on the last one.
    if (pending_) {
        Pending unanswered = std::move(*pending_);
        pending_.reset();
        out.push_back(heard(std::move(unanswered.request), {}, unanswered.end, end));
    }
    // No device answers a broadcast.
    if (request.front() == RTUFrame::broadcastUnit) {
        out.push_back(heard(std::move(request), {}, end, end));
        return;
    }
    pending_ = Pending{std::move(request), end};
}

bool Conversation::isDefectiveAnswer(const TimedSplitter::Frame& frame) const {
    return frame.kind == Kind::garbage && !frame.bytes.empty() &&
           frame.bytes.front() == pending_->request.front();
}

} // namespace kestrin
