// Listening: TimedSplitter and Conversation as the listener drives them. Input: a first byte
// choosing the rate (odd: 9600 baud, even: 115200), then chunks, each a gap byte (the silence
// before it in tenths of a millisecond), a length byte and up to that many bytes.
#include "Conversation.h"
#include "TimedSplitter.h"

#include <algorithm>
#include <cstdlib>

using namespace kestrin;

namespace {

using Clock = std::chrono::steady_clock;

struct Listener {
    TimedSplitter splitter;
    Conversation conversation{0.05};
    Bytes cut;
    std::size_t reported = 0;
    Clock::time_point lastEnd{};

    void hear(std::vector<TimedSplitter::Frame> frames) {
        for (auto& frame : frames) {
            // In the order heard, never dated after the last byte's arrival so far.
            if (frame.bytes.empty() || frame.end.steady < lastEnd) {
                std::abort();
            }
            lastEnd = frame.end.steady;
            cut.insert(cut.end(), frame.bytes.begin(), frame.bytes.end());
            count(conversation.hear(std::move(frame)));
        }
    }
    void count(const std::vector<PollerEvent>& events) {
        for (const PollerEvent& event : events) {
            if (const auto* heard = event.as<PollerEvent::Heard>()) {
                reported += heard->request.size() + heard->response.size();
            } else if (const auto* unmatched = event.as<PollerEvent::Unmatched>()) {
                reported += unmatched->bytes.size();
            } else {
                std::abort();
            }
        }
    }
    // What the listener's waits let pass before until: silences and time-outs.
    void passUntil(Clock::time_point until) {
        for (;;) {
            std::optional<Clock::time_point> next = splitter.silenceDeadline();
            if (const auto due = conversation.deadline(); due && (!next || *due < *next)) {
                next = due;
            }
            if (!next || *next > until) {
                return;
            }
            hear(splitter.quiet(*next));
            count(conversation.giveUp(*next));
        }
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const ByteView input(data, size);
    Listener listener{TimedSplitter((input[0] & 1) != 0 ? 9600 : 115200, 11)};
    Bytes fed;
    Arrival at;
    for (std::size_t offset = 1; offset + 1 < input.size();) {
        at = at + std::chrono::microseconds(100 * input[offset]);
        const std::size_t length =
            std::min<std::size_t>(input[offset + 1], input.size() - offset - 2);
        const ByteView bytes = input.subspan(offset + 2, length);
        offset += 2 + length;
        listener.passUntil(at.steady);
        listener.hear(listener.splitter.append(bytes, at));
        fed.insert(fed.end(), bytes.begin(), bytes.end());
    }
    listener.passUntil(Clock::time_point::max());
    // Every byte cut once, in order, and reported once; nothing waits after the silence.
    if (!listener.splitter.isEmpty() || listener.conversation.deadline() || listener.cut != fed ||
        listener.reported != fed.size()) {
        std::abort();
    }
    return 0;
}
