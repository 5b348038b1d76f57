#pragma once

#include "Bytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace kestrin {

// Cuts a byte stream observed on a bus into whole request frames, whole response frames and
// garbage, judged by the expected frame lengths and the CRC. A value: each splitter owns its
// buffer; it is not shared between threads.
class FrameSplitter {
public:
    struct Frame {
        enum class Kind : std::uint8_t { request, response, garbage };

        Kind kind = Kind::garbage;
        Bytes bytes;

        static Frame request(Bytes bytes) { return {Kind::request, std::move(bytes)}; }
        static Frame response(Bytes bytes) { return {Kind::response, std::move(bytes)}; }
        static Frame garbage(Bytes bytes) { return {Kind::garbage, std::move(bytes)}; }

        friend bool operator==(const Frame&, const Frame&) = default;
    };

    // 1024 bytes: four frames of the largest size (4 x 256). A stream that outgrows it without
    // yielding frames keeps its newest 512 bytes (two largest frames) and drops the rest
    // unreported.
    static constexpr std::size_t bufferLimit = 1024;
    static constexpr std::size_t keptAfterOverflow = 512;

    // Appends the bytes, then applies the buffer limit.
    void append(ByteView bytes);

    bool isEmpty() const noexcept { return buffer_.empty(); }
    const Bytes& buffer() const noexcept { return buffer_; }

    // Takes the next frame off the front of the buffer, or nothing while no frame can be decided.
    // afterSilence: the line has been quiet since the last byte, so the buffer is all there is.
    // Call until it returns nothing.
    std::optional<Frame> next(bool afterSilence);

private:
    Frame take(Frame::Kind kind, std::size_t count);

    Bytes buffer_;
};

} // namespace kestrin
