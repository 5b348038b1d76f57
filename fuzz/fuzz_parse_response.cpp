// RTUFrame::parseResponse. Input: the unit and function code of the request, then the answer.
#include "RTUFrame.h"

#include <algorithm>
#include <cstdlib>

using namespace kestrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const ByteView input(data, size);
    const std::uint8_t unit = input[0];
    const std::uint8_t function = input[1];
    const ByteView frame = input.subspan(2);
    const auto result = RTUFrame::parseResponse(frame, unit, function);
    if (result.ok()) {
        // Accepted: the PDU between address and CRC of a checked answer from the asked unit.
        const Bytes& pdu = result.value();
        if (!RTUFrame::hasValidCRC(frame) || frame[0] != unit || pdu.size() + 3 != frame.size() ||
            !std::ranges::equal(pdu, frame.subspan(1, pdu.size())) ||
            ((pdu[0] ^ function) & 0x7F) != 0) {
            std::abort();
        }
        return 0;
    }
    // Refused: the error names a real defect, and every earlier check passed.
    const RTUFrame::ParseError& error = result.error();
    bool consistent = false;
    if (const auto* tooShort = std::get_if<RTUFrame::ParseError::TooShort>(&error.value)) {
        consistent = frame.size() < 4 && tooShort->count == static_cast<int>(frame.size());
    } else if (const auto* crc = std::get_if<RTUFrame::ParseError::CrcMismatch>(&error.value)) {
        consistent = !RTUFrame::hasValidCRC(frame) && crc->expected != crc->received;
    } else if (const auto* other =
                   std::get_if<RTUFrame::ParseError::UnexpectedUnit>(&error.value)) {
        consistent = RTUFrame::hasValidCRC(frame) && other->unit == frame[0] && frame[0] != unit;
    } else if (const auto* other =
                   std::get_if<RTUFrame::ParseError::UnexpectedFunction>(&error.value)) {
        consistent = RTUFrame::hasValidCRC(frame) && frame[0] == unit &&
                     other->function == frame[1] && ((frame[1] ^ function) & 0x7F) != 0;
    }
    if (!consistent) {
        std::abort();
    }
    return 0;
}
