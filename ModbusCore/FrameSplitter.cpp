#include "FrameSplitter.h"

#include "RTUFrame.h"

#include <utility>

namespace kestrin {

namespace {

// A frame of the given length that fits in the bytes and whose CRC checks.
bool isFrame(ByteView bytes, std::optional<int> length) {
    if (!length || static_cast<std::size_t>(*length) > bytes.size()) {
        return false;
    }
    return RTUFrame::hasValidCRC(bytes.first(static_cast<std::size_t>(*length)));
}

} // namespace

void FrameSplitter::append(ByteView bytes) {
    buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
    if (buffer_.size() > bufferLimit) {
        buffer_.erase(buffer_.begin(),
                      buffer_.end() - static_cast<std::ptrdiff_t>(keptAfterOverflow));
    }
}

std::optional<FrameSplitter::Frame> FrameSplitter::next(bool afterSilence) {
    if (buffer_.empty()) {
        return std::nullopt;
    }
    const ByteView bytes(buffer_);
    // At the front a response is tried whenever the request reading fails, for any reason.
    if (const auto length = RTUFrame::expectedRequestLength(bytes); isFrame(bytes, length)) {
        return take(Frame::Kind::request, static_cast<std::size_t>(*length));
    }
    if (const auto length = RTUFrame::expectedResponseLength(bytes); isFrame(bytes, length)) {
        return take(Frame::Kind::response, static_cast<std::size_t>(*length));
    }
    if (!afterSilence) {
        return std::nullopt;
    }
    // The line went quiet: a whole buffer that checks is one frame of a function we do not know.
    if (RTUFrame::hasValidCRC(bytes)) {
        return take(Frame::Kind::request, bytes.size());
    }
    // Resynchronise: here the response reading counts only when the request length is unknown.
    for (std::size_t start = 1; start < bytes.size(); ++start) {
        const ByteView tail = bytes.subspan(start);
        auto length = RTUFrame::expectedRequestLength(tail);
        if (!length) {
            length = RTUFrame::expectedResponseLength(tail);
        }
        if (isFrame(tail, length)) {
            return take(Frame::Kind::garbage, start);
        }
    }
    return take(Frame::Kind::garbage, bytes.size());
}

FrameSplitter::Frame FrameSplitter::take(Frame::Kind kind, std::size_t count) {
    const auto end = buffer_.begin() + static_cast<std::ptrdiff_t>(count);
    Frame frame{kind, Bytes(buffer_.begin(), end)};
    buffer_.erase(buffer_.begin(), end);
    return frame;
}

} // namespace kestrin
