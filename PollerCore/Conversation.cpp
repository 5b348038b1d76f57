#include "Conversation.h"

#include "FunctionCode.h"
#include "HeardExchange.h"
#include "RTUFrame.h"
#include "SerialTiming.h"

#include <algorithm>
#include <iterator>
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
    // An answer that began before the time-out reached the master, however long it took.
    std::vector<PollerEvent> events = giveUp(frame.start.steady);
    if (pending_ &&
        (HeardExchange::isAnswer(pending_->request, frame.bytes) || isDefectiveAnswer(frame))) {
        settle(std::move(frame.bytes), frame.end, events);
    } else if (frame.kind == Kind::request && !isLateEcho(frame)) {
        ask(std::move(frame.bytes), frame.end, events);
    } else {
        stray(std::move(frame), events);
    }
    givenUp_.reset();
    return events;
}

std::vector<PollerEvent> Conversation::giveUp(Clock::time_point now) {
    std::vector<PollerEvent> events;
    if (const auto due = deadline(); due && now >= *due) {
        givenUp_ = pending_;
        settle({}, pending_->end + timeout_, events);
    }
    return events;
}

std::optional<Conversation::Clock::time_point> Conversation::deadline() const {
    if (!pending_) {
        return std::nullopt;
    }
    return pending_->end.steady + timeout_;
}

std::optional<TimedSplitter::Awaited> Conversation::awaited() const {
    if (!pending_) {
        return std::nullopt;
    }
    const Bytes& request = pending_->request;
    return TimedSplitter::Awaited{request[0], request[1], HeardExchange::answerLength(request)};
}

void Conversation::ask(Bytes request, Arrival end, std::vector<PollerEvent>& out) {
    // The next request ends the wait: the master has given up on the last one.
    if (pending_) {
        settle({}, end, out);
    }
    // No device answers a broadcast.
    if (request.front() == RTUFrame::broadcastUnit) {
        out.push_back(heard(std::move(request), {}, end, end));
        return;
    }
    pending_ = Pending{std::move(request), end};
}

void Conversation::settle(Bytes response, Arrival end, std::vector<PollerEvent>& out) {
    Pending settled = std::move(*pending_);
    pending_.reset();
    out.push_back(heard(std::move(settled.request), std::move(response), settled.end, end));
    std::move(strays_.begin(), strays_.end(), std::back_inserter(out));
    strays_.clear();
}

void Conversation::stray(TimedSplitter::Frame frame, std::vector<PollerEvent>& out) {
    PollerEvent event{PollerEvent::Unmatched{std::move(frame.bytes)}, frame.end.wall};
    (pending_ ? strays_ : out).push_back(std::move(event));
}

bool Conversation::isLateEcho(const TimedSplitter::Frame& frame) const {
    if (!givenUp_ || frame.bytes != givenUp_->request) {
        return false;
    }
    const std::uint8_t function = frame.bytes[1];
    return (function == FunctionCode::writeSingleCoil ||
            function == FunctionCode::writeSingleRegister) &&
           frame.start.steady < givenUp_->end.steady + 2 * timeout_;
}

bool Conversation::isDefectiveAnswer(const TimedSplitter::Frame& frame) const {
    return frame.kind == Kind::garbage && !frame.bytes.empty() &&
           frame.bytes.front() == pending_->request.front();
}

} // namespace kestrin
