#include "BusListener.h"

#include "SerialLink.h"

#include <algorithm>
#include <utility>

namespace kestrin {

namespace {

using Clock = std::chrono::steady_clock;
// Nothing is due on a silent line; a hang-up or a stop ends the wait anyway.
constexpr auto longestWait = std::chrono::hours(1);

} // namespace

BusListener::BusListener(SerialLink& link, double timeout, EventHandler onEvent)
    : link_(link)
    , splitter_(link.configuration().baudRate, link.configuration().bitsPerCharacter())
    , conversation_(timeout)
    , onEvent_(std::move(onEvent)) {}

SerialLinkError BusListener::run() {
    for (;;) {
        auto heard = link_.listen(waitFrom(Clock::now()));
        if (!heard) {
            return heard.error();
        }
        // Taken at once: the splitter measures silences by it.
        const Arrival at = Arrival::now();
        if (!heard.value().empty()) {
            pass(splitter_.append(heard.value(), at));
        }
        pass(splitter_.quiet(at.steady));
        deliver(conversation_.giveUp(at.steady));
    }
}

Clock::duration BusListener::waitFrom(Clock::time_point now) const {
    Clock::time_point until = now + longestWait;
    for (const auto deadline : {splitter_.silenceDeadline(), conversation_.deadline()}) {
        if (deadline) {
            until = std::min(until, *deadline);
        }
    }
    return std::max(until - now, Clock::duration::zero());
}

void BusListener::pass(std::vector<TimedSplitter::Frame> frames) {
    for (TimedSplitter::Frame& frame : frames) {
        deliver(conversation_.hear(std::move(frame)));
    }
}

void BusListener::deliver(std::vector<PollerEvent> events) {
    if (!onEvent_) {
        return;
    }
    for (const PollerEvent& event : events) {
        onEvent_(event);
    }
}

} // namespace kestrin
