#include "TrafficDecoder.h"

#include <utility>

namespace kestrin {

TrafficDecoder::TrafficDecoder(int baudRate, int bitsPerCharacter, double timeout)
    : splitter_(baudRate, bitsPerCharacter)
    , conversation_(timeout) {}

std::vector<PollerEvent> TrafficDecoder::hear(ByteView chunk, Arrival at) {
    std::vector<PollerEvent> events = pass(at.steady);
    splitter_.append(chunk, at);
    hearDecided(events);
    return events;
}

std::vector<PollerEvent> TrafficDecoder::pass(Clock::time_point now) {
    std::vector<PollerEvent> events;
    for (auto next = nextDeadline(); next && *next <= now; next = nextDeadline()) {
        if (next == splitter_.silenceDeadline()) {
            if (auto frame = splitter_.quiet(*next)) {
                hearFrame(std::move(*frame), events);
            }
            hearDecided(events);
        } else {
            moveInto(conversation_.giveUp(*next), events);
            splitter_.await(conversation_.awaited());
        }
    }
    return events;
}

std::optional<TrafficDecoder::Clock::time_point> TrafficDecoder::nextDeadline() const {
    const auto silence = splitter_.silenceDeadline();
    const auto timeout = conversation_.deadline();
    // Bytes that arrived before the time-out may be the answer: they are judged first, and the
    // wait counted to their arrival.
    if (!timeout || (silence && *splitter_.heldSince() <= *timeout)) {
        return silence;
    }
    return silence ? std::min(*silence, *timeout) : timeout;
}

void TrafficDecoder::hearDecided(std::vector<PollerEvent>& out) {
    while (auto frame = splitter_.next()) {
        hearFrame(std::move(*frame), out);
    }
}

void TrafficDecoder::hearFrame(TimedSplitter::Frame frame, std::vector<PollerEvent>& out) {
    moveInto(conversation_.hear(std::move(frame)), out);
    // Told after every frame: the next may be this request's answer.
    splitter_.await(conversation_.awaited());
}

void TrafficDecoder::moveInto(std::vector<PollerEvent> events, std::vector<PollerEvent>& out) {
    for (PollerEvent& event : events) {
        out.push_back(std::move(event));
    }
}

} // namespace kestrin
