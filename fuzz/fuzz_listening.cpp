// Listening: TrafficDecoder, the listener's splitting and pairing. Input: a first byte choosing
// the rate (odd: 9600 baud, even: 115200), then chunks, each a gap byte (the silence before it in
// tenths of a millisecond), a length byte and up to that many bytes.
#include "TrafficDecoder.h"

#include <algorithm>
#include <cstdlib>

using namespace kestrin;

namespace {

// The bytes the events carry; aborts on an event a listener never reports or one dated before
// an earlier one's bytes had all arrived.
std::size_t bytesIn(const std::vector<PollerEvent>& events, Arrival heardBy) {
    std::size_t count = 0;
    for (const PollerEvent& event : events) {
        if (const auto* heard = event.as<PollerEvent::Heard>()) {
            count += heard->request.size() + heard->response.size();
            if (heard->requestTime > event.time || heard->request.empty()) {
                std::abort();
            }
        } else if (const auto* unmatched = event.as<PollerEvent::Unmatched>()) {
            count += unmatched->bytes.size();
        } else {
            std::abort();
        }
        if (event.time > heardBy.wall + std::chrono::seconds(1)) {
            std::abort();
        }
    }
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const ByteView input(data, size);
    TrafficDecoder decoder((input[0] & 1) != 0 ? 9600 : 115200, 11, 0.05);
    std::size_t fed = 0;
    std::size_t reported = 0;
    Arrival at;
    for (std::size_t offset = 1; offset + 1 < input.size();) {
        at = at + std::chrono::microseconds(100 * input[offset]);
        const std::size_t length =
            std::min<std::size_t>(input[offset + 1], input.size() - offset - 2);
        const ByteView bytes = input.subspan(offset + 2, length);
        offset += 2 + length;
        reported += bytesIn(decoder.hear(bytes, at), at);
        fed += bytes.size();
    }
    // No frame is held longer than a second of silence, however its bytes read.
    reported += bytesIn(decoder.pass(at.steady + std::chrono::seconds(1)), at);
    // Every byte reported once, none invented, and nothing left waiting after the silence.
    if (decoder.nextDeadline() || reported != fed) {
        std::abort();
    }
    return 0;
}
