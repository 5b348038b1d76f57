// FrameSplitter. Input: chunks, each a length byte and up to that many bytes; the line is silent
// after every second chunk and at the end.
#include "FrameSplitter.h"
#include "RTUFrame.h"

#include <algorithm>
#include <cstdlib>

using namespace kestrin;

namespace {

// Aborts unless the frame is one the splitter may return at this point.
void check(const FrameSplitter::Frame& frame, bool afterSilence, const FrameSplitter& splitter) {
    const auto size = static_cast<int>(frame.bytes.size());
    switch (frame.kind) {
    case FrameSplitter::Frame::Kind::request:
        // A request has its table length, or is the whole buffer that checked after silence.
        if (!RTUFrame::hasValidCRC(frame.bytes) ||
            (RTUFrame::expectedRequestLength(frame.bytes) != size &&
             !(afterSilence && splitter.isEmpty()))) {
            std::abort();
        }
        break;
    case FrameSplitter::Frame::Kind::response:
        if (!RTUFrame::hasValidCRC(frame.bytes) ||
            RTUFrame::expectedResponseLength(frame.bytes) != size) {
            std::abort();
        }
        break;
    case FrameSplitter::Frame::Kind::garbage:
        if (!afterSilence || frame.bytes.empty()) {
            std::abort();
        }
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteView input(data, size);
    FrameSplitter splitter;
    Bytes fed;
    Bytes returned;
    bool trimmed = false;
    const auto drain = [&](bool afterSilence) {
        while (auto frame = splitter.next(afterSilence)) {
            check(*frame, afterSilence, splitter);
            returned.insert(returned.end(), frame->bytes.begin(), frame->bytes.end());
        }
    };
    std::size_t offset = 0;
    for (int chunk = 0; offset < input.size(); ++chunk) {
        const std::size_t length = std::min<std::size_t>(input[offset], input.size() - offset - 1);
        const ByteView bytes = input.subspan(offset + 1, length);
        offset += 1 + length;
        trimmed = trimmed || splitter.buffer().size() + bytes.size() > FrameSplitter::bufferLimit;
        splitter.append(bytes);
        fed.insert(fed.end(), bytes.begin(), bytes.end());
        drain(chunk % 2 == 1);
    }
    drain(true);
    // After silence everything is decided; without trimming no byte was lost or invented.
    if (!splitter.isEmpty() || (!trimmed && returned != fed)) {
        std::abort();
    }
    return 0;
}
