#include "TimedSplitter.h"

#include "FunctionCode.h"
#include "RTUFrame.h"
#include "SerialTiming.h"

#include <algorithm>
#include <utility>

namespace kestrin {

namespace {

// Undecided bytes beyond two of the largest frames are cut without waiting for silence: no frame
// can start so far back. It keeps the buffer, with one chunk's piece appended, far below the
// splitter's limit, which would drop bytes unreported.
constexpr std::size_t undecidedLimit = 2 * RTUFrame::maxSize;

// Bytes a front too short to tell its length still needs before it can: 4 make the shortest
// frame, and the byte count of a multiple write comes late.
std::size_t bytesToTell(ByteView front) {
    if (front.size() < 2) {
        return 4 - front.size();
    }
    const auto needs = [&](std::size_t known) {
        return front.size() < known ? known - front.size() : 0;
    };
    switch (front[1]) {
    case FunctionCode::writeMultipleCoils:
    case FunctionCode::writeMultipleRegisters:
        // Up to and including the byte count, then at least the CRC.
        return needs(7 + 2);
    case FunctionCode::readWriteMultipleRegisters:
        return needs(11 + 2);
    default:
        return 0;
    }
}

// The bytes the front still lacks to be a whole frame, by the longer of its two readings.
std::size_t missingBytes(ByteView front) {
    std::size_t missing = bytesToTell(front);
    for (const auto length :
         {RTUFrame::expectedRequestLength(front), RTUFrame::expectedResponseLength(front)}) {
        if (length && static_cast<std::size_t>(*length) > front.size()) {
            missing = std::max(missing, static_cast<std::size_t>(*length) - front.size());
        }
    }
    return missing;
}

} // namespace

TimedSplitter::TimedSplitter(int baudRate, int bitsPerCharacter)
    : baudRate_(baudRate)
    , bitsPerCharacter_(bitsPerCharacter) {}

std::vector<TimedSplitter::Frame> TimedSplitter::append(ByteView chunk, Arrival at) {
    std::vector<Frame> frames;
    // In pieces of one largest frame, each drained before the next is taken in.
    while (!chunk.empty()) {
        const ByteView piece = chunk.first(std::min(chunk.size(), RTUFrame::maxSize));
        splitter_.append(piece);
        held_.push_back({piece.size(), at});
        chunk = chunk.subspan(piece.size());
        drain(false, frames);
    }
    return frames;
}

std::vector<TimedSplitter::Frame> TimedSplitter::quiet(Clock::time_point now) {
    std::vector<Frame> frames;
    // Each cut leaves a new front, which may be a frame still on its way and need longer.
    for (auto deadline = silenceDeadline(); deadline && now >= *deadline;
         deadline = silenceDeadline()) {
        drain(true, frames);
    }
    return frames;
}

std::optional<TimedSplitter::Clock::time_point> TimedSplitter::silenceDeadline() const {
    if (held_.empty()) {
        return std::nullopt;
    }
    return held_.back().at.steady + silenceNeeded();
}

void TimedSplitter::drain(bool afterSilence, std::vector<Frame>& out) {
    for (;;) {
        auto frame = splitter_.next(false);
        if (!frame && (afterSilence || splitter_.buffer().size() > undecidedLimit)) {
            // One cut only: what follows it is judged afresh.
            frame = splitter_.next(true);
            afterSilence = false;
        }
        if (!frame) {
            return;
        }
        out.push_back(dated(std::move(*frame)));
    }
}

TimedSplitter::Frame TimedSplitter::dated(FrameSplitter::Frame frame) {
    Arrival end = held_.front().at;
    for (std::size_t left = frame.bytes.size(); left > 0;) {
        Held& front = held_.front();
        end = front.at;
        const std::size_t taken = std::min(left, front.bytes);
        front.bytes -= taken;
        left -= taken;
        if (front.bytes == 0) {
            held_.pop_front();
        }
    }
    return {frame.kind, std::move(frame.bytes), end};
}

TimedSplitter::Clock::duration TimedSplitter::silenceNeeded() const {
    const Clock::duration silence =
        SerialTiming::duration(SerialTiming::interFrameDelay(baudRate_, bitsPerCharacter_));
    const std::size_t missing = missingBytes(splitter_.buffer());
    if (missing == 0) {
        return silence;
    }
    return silence + characters(missing) + burstAllowance;
}

TimedSplitter::Clock::duration TimedSplitter::characters(std::size_t count) const {
    return SerialTiming::duration(
        SerialTiming::transmissionTime(static_cast<int>(count), baudRate_, bitsPerCharacter_));
}

} // namespace kestrin
