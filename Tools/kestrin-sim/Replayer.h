#pragma once

#include "RecordedStream.h"
#include "Result.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <string>
#include <vector>

namespace kestrin {

// kestrin-sim --replay: plays a recorded byte stream into the line with its timing, for a
// listener to hear, and answers nothing. A pseudo-terminal's reader is there once its end is
// open: the line must not be held open by the simulator itself (ServedLine::releaseOtherEnd),
// so that it reports a hang-up until then. The reader still sets the line up and flushes it after
// opening it, so the replay starts startDelay later; the chunks' times count from that moment.
class Replayer {
public:
    Replayer(int fd, std::vector<RecordedStream::Chunk> chunks,
             std::chrono::milliseconds startDelay);

    // The stream of a file, or a message for the user that names the file and, for a malformed
    // one, the line: "rec.txt: Line 3: 'G0' is not a byte (two hex digits)".
    static Result<std::vector<RecordedStream::Chunk>, std::string> load(const std::string& path);

    // Plays the stream once, then keeps the line open until stop is set. Signals as for
    // Simulator::run. Returns 0 after stop, 1 when the line fails.
    int run(const std::atomic<bool>& stop, const sigset_t& waitMask);

private:
    using Clock = std::chrono::steady_clock;

    bool waitForReader(const std::atomic<bool>& stop, const sigset_t& waitMask) const;
    bool play(const std::atomic<bool>& stop, const sigset_t& waitMask) const;

    int fd_;
    std::vector<RecordedStream::Chunk> chunks_;
    std::chrono::milliseconds startDelay_;
};

} // namespace kestrin
