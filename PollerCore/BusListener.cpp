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
    , decoder_(link.configuration().baudRate, link.configuration().bitsPerCharacter(), timeout)
    , onEvent_(std::move(onEvent)) {}

SerialLinkError BusListener::run() {
    for (;;) {
        auto heard = link_.listen(waitFrom(Clock::now()));
        if (!heard) {
            return heard.error();
        }
        // Taken at once: silences are measured by it.
        const Arrival at = Arrival::now();
        deliver(heard.value().empty() ? decoder_.pass(at.steady)
                                      : decoder_.hear(heard.value(), at));
    }
}

Clock::duration BusListener::waitFrom(Clock::time_point now) const {
    const auto next = decoder_.nextDeadline();
    const Clock::time_point until = next ? std::min(*next, now + longestWait) : now + longestWait;
    return std::max(until - now, Clock::duration::zero());
}

void BusListener::deliver(const std::vector<PollerEvent>& events) const {
    if (!onEvent_) {
        return;
    }
    for (const PollerEvent& event : events) {
        onEvent_(event);
    }
}

} // namespace kestrin
