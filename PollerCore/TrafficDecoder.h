#pragma once

#include "Arrival.h"
#include "Bytes.h"
#include "Conversation.h"
#include "PollerEvent.h"
#include "TimedSplitter.h"

#include <chrono>
#include <optional>
#include <vector>

namespace kestrin {

// What a listener hears, chunk by chunk as the adapter delivered it, decoded into heard and
// unmatched events: the timed splitter and the conversation driven as the line's time passes.
// Pure: time passes only through the chunks' arrivals and pass, so recorded streams replay
// exactly.
class TrafficDecoder {
public:
    using Clock = std::chrono::steady_clock;

    // timeout: how long a heard request waits for its answer, in seconds.
    TrafficDecoder(int baudRate, int bitsPerCharacter, double timeout);

    // What the silences and time-outs before the chunk decided, then what the chunk completes.
    std::vector<PollerEvent> hear(ByteView chunk, Arrival at);
    // What the silences and time-outs until now decide, each at its own time.
    std::vector<PollerEvent> pass(Clock::time_point now);
    // When pass next has something to decide; none while nothing waits.
    std::optional<Clock::time_point> nextDeadline() const;

private:
    // Hears every frame the splitter decides without silence.
    void hearDecided(std::vector<PollerEvent>& out);
    void hearFrame(TimedSplitter::Frame frame, std::vector<PollerEvent>& out);
    static void moveInto(std::vector<PollerEvent> events, std::vector<PollerEvent>& out);

    TimedSplitter splitter_;
    Conversation conversation_;
};

} // namespace kestrin
