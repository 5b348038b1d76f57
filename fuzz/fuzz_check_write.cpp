// PDU::checkWrite. Input: request length, the request PDU, then the response PDU.
#include "PDU.h"

#include <algorithm>
#include <cstdlib>

using namespace kestrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) {
        return 0;
    }
    const ByteView input(data, size);
    const std::size_t requestSize = std::min<std::size_t>(input[0], size - 1);
    const ByteView request = input.subspan(1, requestSize);
    const ByteView response = input.subspan(1 + requestSize);
    const auto result = PDU::checkWrite(response, request);
    if (result.ok()) {
        // Accepted: a 5-byte echo of the request's start, and all of it for FC05 and FC06.
        if (response.size() != 5 || request.size() < 5) {
            std::abort();
        }
        const bool wholeEcho = request[0] == 5 || request[0] == 6;
        if ((wholeEcho && request.size() != 5) || !std::ranges::equal(response, request.first(5))) {
            std::abort();
        }
    } else if (result.error().kind == ResponseError::Kind::exception &&
               (response.size() < 2 || (response[0] & 0x80) == 0 ||
                result.error().code != response[1])) {
        std::abort();
    }
    return 0;
}
