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

// The bytes the front still lacks to be a whole frame: by the awaited answer's length where the
// front is that answer, else by the longer of its two readings. A length read from noise can be
// far beyond any frame (an FC24 count of 0xFFFF), and waiting for it would hold every frame
// behind the noise for seconds.
std::size_t missingBytes(ByteView front, std::optional<std::size_t> awaited) {
    const auto lacking = [&](std::size_t whole) {
        return whole > front.size() ? whole - front.size() : 0;
    };
    if (awaited) {
        return lacking(*awaited);
    }
    std::size_t missing = bytesToTell(front);
    for (const auto length :
         {RTUFrame::expectedRequestLength(front), RTUFrame::expectedResponseLength(front)}) {
        if (length) {
            missing = std::max(
                missing, lacking(std::min(static_cast<std::size_t>(*length), RTUFrame::maxSize)));
        }
    }
    return missing;
}

} // namespace

TimedSplitter::TimedSplitter(int baudRate, int bitsPerCharacter)
    : baudRate_(baudRate)
    , bitsPerCharacter_(bitsPerCharacter) {}

void TimedSplitter::append(ByteView chunk, Arrival at) {
    if (chunk.empty()) {
        return;
    }
    unfed_.insert(unfed_.end(), chunk.begin(), chunk.end());
    held_.push_back({chunk.size(), at});
}

std::optional<TimedSplitter::Frame> TimedSplitter::next() {
    for (;;) {
        auto frame = decide(false);
        if (!frame && splitter_.buffer().size() > undecidedLimit) {
            frame = decide(true);
        }
        if (frame) {
            return dated(std::move(*frame));
        }
        if (unfed_.empty()) {
            return std::nullopt;
        }
        // A piece of one largest frame at a time keeps the buffer below the splitter's limit.
        const auto piece = static_cast<std::ptrdiff_t>(std::min(unfed_.size(), RTUFrame::maxSize));
        splitter_.append(ByteView(unfed_).first(static_cast<std::size_t>(piece)));
        unfed_.erase(unfed_.begin(), unfed_.begin() + piece);
    }
}

std::optional<TimedSplitter::Frame> TimedSplitter::quiet(Clock::time_point now) {
    const auto deadline = silenceDeadline();
    if (!deadline || now < *deadline) {
        return std::nullopt;
    }
    auto frame = decide(true);
    if (!frame) {
        return next();
    }
    return dated(std::move(*frame));
}

std::optional<TimedSplitter::Clock::time_point> TimedSplitter::silenceDeadline() const {
    if (held_.empty()) {
        return std::nullopt;
    }
    return held_.back().at.steady + silenceNeeded();
}

std::optional<TimedSplitter::Clock::time_point> TimedSplitter::heldSince() const {
    if (held_.empty()) {
        return std::nullopt;
    }
    return held_.front().at.steady;
}

std::optional<FrameSplitter::Frame> TimedSplitter::decide(bool afterSilence) {
    const ByteView buffer(splitter_.buffer());
    const auto length = awaitedLength();
    if (length && buffer.size() >= *length) {
        if (RTUFrame::hasValidCRC(buffer.first(*length))) {
            return takeFront(FrameSplitter::Frame::Kind::response, *length);
        }
    } else if (length && !afterSilence) {
        // The rest of the answer may still come; its first bytes are not a request.
        return std::nullopt;
    }
    if (auto frame = splitter_.next(false)) {
        return frame;
    }
    if (!afterSilence) {
        return std::nullopt;
    }
    // The awaited answer broken on the way: its length still tells where what follows starts.
    if (length && buffer.size() >= *length) {
        return takeFront(FrameSplitter::Frame::Kind::garbage, *length);
    }
    return splitter_.next(true);
}

std::optional<std::size_t> TimedSplitter::awaitedLength() const {
    return frontIsAwaited() ? awaited_->length : std::nullopt;
}

bool TimedSplitter::frontIsAwaited() const {
    const Bytes& buffer = splitter_.buffer();
    return awaited_ && buffer.size() >= 2 && buffer[0] == awaited_->unit &&
           buffer[1] == awaited_->function;
}

FrameSplitter::Frame TimedSplitter::takeFront(FrameSplitter::Frame::Kind kind, std::size_t count) {
    // FrameSplitter cuts only by its own readings: the rest goes to a fresh one.
    const ByteView buffer(splitter_.buffer());
    const ByteView front = buffer.first(count);
    FrameSplitter::Frame frame{kind, Bytes(front.begin(), front.end())};
    FrameSplitter rest;
    rest.append(buffer.subspan(count));
    splitter_ = std::move(rest);
    return frame;
}

TimedSplitter::Frame TimedSplitter::dated(FrameSplitter::Frame frame) {
    const Arrival start = held_.front().at;
    Arrival end = start;
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
    return {frame.kind, std::move(frame.bytes), start, end};
}

TimedSplitter::Clock::duration TimedSplitter::silenceNeeded() const {
    const Clock::duration silence =
        SerialTiming::duration(SerialTiming::interFrameDelay(baudRate_, bitsPerCharacter_));
    // Nothing tells when an awaited answer of this function ends: it may come in bursts too.
    if (frontIsAwaited() && !awaited_->length) {
        return silence + burstAllowance;
    }
    const std::size_t missing = missingBytes(splitter_.buffer(), awaitedLength());
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
