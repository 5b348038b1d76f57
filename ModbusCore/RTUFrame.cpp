#include "RTUFrame.h"

#include "CRC16.h"
#include "Overloaded.h"

namespace kestrin::RTUFrame {

namespace {

// Unit address, function code, two CRC bytes: the shortest frame there is.
constexpr std::size_t minimumSize = 4;

// Function code bit 0x80 marks an exception answer; the low 7 bits name the function (Modbus
// Application Protocol V1.1b, section 7).
constexpr std::uint8_t exceptionBit = 0x80;
constexpr std::uint8_t functionBits = 0x7F;

std::uint16_t trailingCRC(ByteView frame) noexcept {
    const std::size_t size = frame.size();
    return static_cast<std::uint16_t>(frame[size - 2] | (frame[size - 1] << 8));
}

} // namespace

PollFailure ParseError::pollFailure() const noexcept {
    return std::visit(
        Overloaded{
            [](const TooShort&) { return PollFailure::malformed(); },
            [](const CrcMismatch&) { return PollFailure::crcMismatch(); },
            [](const UnexpectedUnit& e) { return PollFailure::unexpectedUnit(e.unit); },
            [](const UnexpectedFunction& e) { return PollFailure::unexpectedFunction(e.function); },
        },
        value);
}

Bytes build(std::uint8_t unitID, ByteView pdu) {
    Bytes frame;
    frame.reserve(pdu.size() + 3);
    frame.push_back(unitID);
    frame.insert(frame.end(), pdu.begin(), pdu.end());
    const std::uint16_t crc = CRC16::modbus(frame);
    frame.push_back(static_cast<std::uint8_t>(crc & 0xFF));
    frame.push_back(static_cast<std::uint8_t>(crc >> 8));
    return frame;
}

Result<Bytes, ParseError> parseResponse(ByteView frame, std::uint8_t unitID,
                                        std::uint8_t function) {
    if (frame.size() < minimumSize) {
        return ParseError::tooShort(static_cast<int>(frame.size()));
    }
    const std::uint16_t computed = CRC16::modbus(frame.first(frame.size() - 2));
    const std::uint16_t received = trailingCRC(frame);
    if (computed != received) {
        return ParseError::crcMismatch(computed, received);
    }
    if (frame[0] != unitID) {
        return ParseError::unexpectedUnit(frame[0]);
    }
    if (((frame[1] ^ function) & functionBits) != 0) {
        return ParseError::unexpectedFunction(frame[1]);
    }
    const ByteView pdu = frame.subspan(1, frame.size() - 3);
    return Bytes(pdu.begin(), pdu.end());
}

bool hasValidCRC(ByteView bytes) noexcept {
    return bytes.size() >= minimumSize &&
           CRC16::modbus(bytes.first(bytes.size() - 2)) == trailingCRC(bytes);
}

// Lengths count the unit address, the PDU and the 2 CRC bytes (Modbus Application Protocol
// V1.1b, section 6, request layouts).
std::optional<int> expectedRequestLength(ByteView bytes) noexcept {
    if (bytes.size() < 2) {
        return std::nullopt;
    }
    switch (bytes[1]) {
    case 1:
    case 2:
    case 3:
    case 4:
    case 5:
    case 6:
    case 8:
        // 1 + function + two 16-bit fields (address and quantity, value or sub-function) + 2.
        return 1 + 1 + 4 + 2;
    case 7:
    case 11:
    case 12:
    case 17:
        // 1 + function + 2: these requests carry no data.
        return 1 + 1 + 2;
    case 15:
    case 16:
        // 1 + function + address 2 + quantity 2 + byte count (byte 6) + data + 2.
        if (bytes.size() < 7) {
            return std::nullopt;
        }
        return 1 + 1 + 4 + 1 + bytes[6] + 2;
    case 22:
        // 1 + function + address 2 + AND mask 2 + OR mask 2 + 2.
        return 1 + 1 + 6 + 2;
    case 23:
        // 1 + function + read address, read quantity, write address, write quantity (2 each)
        // + write byte count (byte 10) + data + 2.
        if (bytes.size() < 11) {
            return std::nullopt;
        }
        return 1 + 1 + 8 + 1 + bytes[10] + 2;
    case 24:
        // 1 + function + FIFO pointer address 2 + 2.
        return 1 + 1 + 2 + 2;
    case 43:
        // 1 + function + MEI type + read device ID code + object ID + 2.
        return 1 + 1 + 3 + 2;
    default:
        return std::nullopt;
    }
}

// Lengths count the unit address, the PDU and the 2 CRC bytes (Modbus Application Protocol
// V1.1b, sections 6 and 7, response layouts).
std::optional<int> expectedResponseLength(ByteView bytes) noexcept {
    if (bytes.size() < 2) {
        return std::nullopt;
    }
    if ((bytes[1] & exceptionBit) != 0) {
        // 1 + function with 0x80 + exception code + 2.
        return 1 + 1 + 1 + 2;
    }
    switch (bytes[1]) {
    case 1:
    case 2:
    case 3:
    case 4:
    case 12:
    case 17:
    case 20:
    case 21:
    case 23:
        // 1 + function + byte count (byte 2) + data + 2.
        if (bytes.size() < 3) {
            return std::nullopt;
        }
        return 1 + 1 + 1 + bytes[2] + 2;
    case 5:
    case 6:
    case 8:
    case 11:
    case 15:
    case 16:
        // 1 + function + two 16-bit fields echoed or counted + 2.
        return 1 + 1 + 4 + 2;
    case 7:
        // 1 + function + exception status byte + 2.
        return 1 + 1 + 1 + 2;
    case 22:
        // 1 + function + the echoed address and both masks (2 each) + 2.
        return 1 + 1 + 6 + 2;
    case 24:
        // 1 + function + 16-bit byte count (bytes 2-3) + that many bytes + 2.
        if (bytes.size() < 4) {
            return std::nullopt;
        }
        return 1 + 1 + 2 + uint16At(bytes, 2) + 2;
    default:
        return std::nullopt;
    }
}

} // namespace kestrin::RTUFrame
