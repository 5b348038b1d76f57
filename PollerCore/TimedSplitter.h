#pragma once

#include "Arrival.h"
#include "Bytes.h"
#include "FrameSplitter.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>

namespace kestrin {

// Cuts what a listener hears into frames dated by the arrival of their first and last bytes.
// Chunks come in as the adapter delivered them; frames whose length and CRC decide them are taken
// at once, the rest once the line has been quiet long enough: 3.5 characters of the configured
// frame, or, while the front of the buffer is a frame still missing bytes, their wire time and an
// allowance for a USB adapter that holds bytes back and delivers them in bursts. Frames are taken
// one at a time, so that the answer awaited can be told between them. A value, not shared between
// threads.
class TimedSplitter {
public:
    using Clock = std::chrono::steady_clock;

    struct Frame {
        FrameSplitter::Frame::Kind kind = FrameSplitter::Frame::Kind::garbage;
        Bytes bytes;
        Arrival start;
        Arrival end;
        friend bool operator==(const Frame&, const Frame&) = default;
    };

    // The answer a heard request waits for. Its first bytes may well check as a request (an FC03
    // answer of [0, 68] does), so a front of its unit and function is read as that answer first.
    struct Awaited {
        std::uint8_t unit = 0;
        std::uint8_t function = 0;
        // Absent where only the answer's own bytes tell.
        std::optional<std::size_t> length;
        friend bool operator==(const Awaited&, const Awaited&) = default;
    };

    // How long a USB adapter may hold received bytes before passing them on. An FTDI adapter
    // flushes after its latency timer, 16 ms by default and 1 ms once the driver's low-latency
    // flag is set (the link asks for it); other common bridges flush sooner. 20 ms covers the
    // slowest of them with the scheduler's delay on top.
    static constexpr auto burstAllowance = std::chrono::milliseconds(20);

    TimedSplitter(int baudRate, int bitsPerCharacter);

    // Takes in a chunk; its frames come from next.
    void append(ByteView chunk, Arrival at);
    // The next frame the buffer decides without waiting for silence; none while its front is
    // undecided. Call until it returns nothing.
    std::optional<Frame> next();
    // The front cut because the line has been quiet since the last chunk until now; none before
    // silenceDeadline. What follows it comes from next.
    std::optional<Frame> quiet(Clock::time_point now);
    // When quiet may cut the front; none while nothing is held.
    std::optional<Clock::time_point> silenceDeadline() const;
    // When the oldest byte still held arrived; none while nothing is held.
    std::optional<Clock::time_point> heldSince() const;

    void await(std::optional<Awaited> answer) noexcept { awaited_ = answer; }

    bool isEmpty() const noexcept { return held_.empty(); }

private:
    std::optional<FrameSplitter::Frame> decide(bool afterSilence);
    // The awaited answer's length, when the front is of its unit and function and that is known.
    std::optional<std::size_t> awaitedLength() const;
    bool frontIsAwaited() const;
    FrameSplitter::Frame takeFront(FrameSplitter::Frame::Kind kind, std::size_t count);
    Frame dated(FrameSplitter::Frame frame);
    // The silence that lets the front of the buffer be cut.
    Clock::duration silenceNeeded() const;
    Clock::duration characters(std::size_t count) const;

    FrameSplitter splitter_;
    // Bytes of the chunks not yet handed to splitter_, which takes them a piece at a time.
    Bytes unfed_;
    int baudRate_;
    int bitsPerCharacter_;
    std::optional<Awaited> awaited_;
    // Buffered chunks: how many of their bytes are still buffered and when they arrived.
    struct Held {
        std::size_t bytes = 0;
        Arrival at;
    };
    std::deque<Held> held_;
};

} // namespace kestrin
