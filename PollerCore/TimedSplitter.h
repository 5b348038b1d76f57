#pragma once

#include "Arrival.h"
#include "Bytes.h"
#include "FrameSplitter.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <optional>
#include <vector>

namespace kestrin {

// Cuts what a listener hears into frames dated by the arrival of their last byte. Chunks come
// in as the adapter delivered them; frames whose length and CRC decide them leave at once, the
// rest once the line has been quiet long enough: 3.5 characters of the configured frame, or,
// while the front of the buffer is a frame still missing bytes, their wire time and an allowance
// for a USB adapter that holds bytes back and delivers them in bursts. A value, not shared
// between threads.
class TimedSplitter {
public:
    using Clock = std::chrono::steady_clock;

    struct Frame {
        FrameSplitter::Frame::Kind kind = FrameSplitter::Frame::Kind::garbage;
        Bytes bytes;
        Arrival end;
        friend bool operator==(const Frame&, const Frame&) = default;
    };

    // How long a USB adapter may hold received bytes before passing them on: a common latency
    // timer is 16 ms.
    static constexpr auto burstAllowance = std::chrono::milliseconds(20);

    TimedSplitter(int baudRate, int bitsPerCharacter);

    // The frames the chunk completes, in order. The buffer never holds more than two of the
    // largest frames, so nothing reaches FrameSplitter's limit unreported.
    std::vector<Frame> append(ByteView chunk, Arrival at);
    // The frames cut because the line has been quiet since the last chunk until now; none
    // before silenceDeadline.
    std::vector<Frame> quiet(Clock::time_point now);
    // When quiet may cut the buffer; none while it is empty.
    std::optional<Clock::time_point> silenceDeadline() const;

    bool isEmpty() const noexcept { return splitter_.isEmpty(); }

private:
    // Takes every frame the buffer decides, silence or not, and cuts an undecided front that
    // can no longer be a frame. Appends them to out.
    void drain(bool afterSilence, std::vector<Frame>& out);
    Frame dated(FrameSplitter::Frame frame);
    // The silence that lets the front of the buffer be cut.
    Clock::duration silenceNeeded() const;
    Clock::duration characters(std::size_t count) const;

    FrameSplitter splitter_;
    int baudRate_;
    int bitsPerCharacter_;
    // Buffered chunks: how many of their bytes are still buffered and when they arrived.
    struct Held {
        std::size_t bytes = 0;
        Arrival at;
    };
    std::deque<Held> held_;
};

} // namespace kestrin
