// RecordedStream::parse. Input: the text of a recorded-stream file. A stream it takes must be
// in time order, and written back line by line it must read back as the same bytes.
#include "RecordedStream.h"

#include <cstdlib>
#include <string>
#include <string_view>

using namespace kestrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto parsed = RecordedStream::parse(text);
    if (!parsed) {
        if (parsed.error().line < 1) {
            std::abort();
        }
        return 0;
    }
    std::string written;
    double last = 0;
    for (const RecordedStream::Chunk& chunk : parsed.value()) {
        if (chunk.bytes.empty() || chunk.seconds < last) {
            std::abort();
        }
        last = chunk.seconds;
        written += RecordedStream::line(chunk) + "\n";
    }
    const auto again = RecordedStream::parse(written);
    if (!again || again.value().size() != parsed.value().size()) {
        std::abort();
    }
    for (std::size_t i = 0; i < again.value().size(); ++i) {
        if (again.value()[i].bytes != parsed.value()[i].bytes) {
            std::abort();
        }
    }
    return 0;
}
