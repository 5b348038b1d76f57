#pragma once

#include "PollerEvent.h"
#include "SerialLinkError.h"
#include "TrafficDecoder.h"

#include <chrono>
#include <functional>
#include <vector>

namespace kestrin {

class SerialLink;

// Listening on the engine's thread: takes in what the link hears as it arrives, decodes it and
// hands each event on at once. The link is drained after every chunk, so a saturated line never
// backs up into the adapter's buffer. Sends nothing.
class BusListener {
public:
    using EventHandler = std::function<void(const PollerEvent&)>;

    // The link must be open and outlive the listener; timeout is how long a heard request
    // waits for its answer, in seconds.
    BusListener(SerialLink& link, double timeout, EventHandler onEvent);

    // Listens until the link fails, a stop's cancellation included, and returns the failure.
    // A request still waiting then is dropped, with the bytes of a frame not yet whole.
    SerialLinkError run();

private:
    std::chrono::steady_clock::duration waitFrom(std::chrono::steady_clock::time_point now) const;
    void deliver(const std::vector<PollerEvent>& events) const;

    SerialLink& link_;
    TrafficDecoder decoder_;
    EventHandler onEvent_;
};

} // namespace kestrin
