#include "TrafficDecoder.h"

#include <utility>

namespace kestrin {

TrafficDecoder::TrafficDecoder(int baudRate, int bitsPerCharacter, double timeout)
    : splitter_(baudRate, bitsPerCharacter)
    , conversation_(timeout) {}

std::vector<PollerEvent> TrafficDecoder::hear(ByteView chunk, Arrival at) {
    std::vector<PollerEvent> events = pass(at.steady);
    decide(splitter_.append(chunk, at), events);
    return events;
}

std::vector<PollerEvent> TrafficDecoder::pass(Clock::time_point now) {
    std::vector<PollerEvent> events;
    for (auto next = nextDeadline(); next && *next <= now; next = nextDeadline()) {
        decide(splitter_.quiet(*next), events);
        for (PollerEvent& event : conversation_.giveUp(*next)) {
            events.push_back(std::move(event));
        }
    }
    return events;
}

std::optional<TrafficDecoder::Clock::time_point> TrafficDecoder::nextDeadline() const {
    const auto silence = splitter_.silenceDeadline();
    const auto timeout = conversation_.deadline();
    if (silence && timeout) {
        return std::min(*silence, *timeout);
    }
    return silence ? silence : timeout;
}

void TrafficDecoder::decide(std::vector<TimedSplitter::Frame> frames,
                            std::vector<PollerEvent>& out) {
    for (TimedSplitter::Frame& frame : frames) {
        for (PollerEvent& event : conversation_.hear(std::move(frame))) {
            out.push_back(std::move(event));
        }
    }
}

} // namespace kestrin
