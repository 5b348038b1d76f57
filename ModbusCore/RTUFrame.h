#pragma once

#include "Bytes.h"
#include "PollFailure.h"
#include "Result.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <variant>

namespace kestrin {

// An RTU frame is the unit address, the PDU and the CRC-16 sent low byte first (Modbus over
// Serial Line V1.02, section 2.5.1). Every operation here is pure and may run on any thread.
namespace RTUFrame {

// Why a received answer was refused, in the order the checks run.
struct ParseError {
    // Fewer than 4 bytes: not even unit, function and CRC.
    struct TooShort {
        int count = 0;
        friend bool operator==(const TooShort&, const TooShort&) = default;
    };
    // expected: the CRC computed over the frame; received: its last two bytes, low byte first.
    struct CrcMismatch {
        std::uint16_t expected = 0;
        std::uint16_t received = 0;
        friend bool operator==(const CrcMismatch&, const CrcMismatch&) = default;
    };
    struct UnexpectedUnit {
        std::uint8_t unit = 0;
        friend bool operator==(const UnexpectedUnit&, const UnexpectedUnit&) = default;
    };
    // The function byte as received, exception bit included.
    struct UnexpectedFunction {
        std::uint8_t function = 0;
        friend bool operator==(const UnexpectedFunction&, const UnexpectedFunction&) = default;
    };

    using Case = std::variant<TooShort, CrcMismatch, UnexpectedUnit, UnexpectedFunction>;
    Case value;

    static ParseError tooShort(int count) { return {TooShort{count}}; }
    static ParseError crcMismatch(std::uint16_t expected, std::uint16_t received) {
        return {CrcMismatch{expected, received}};
    }
    static ParseError unexpectedUnit(std::uint8_t unit) { return {UnexpectedUnit{unit}}; }
    static ParseError unexpectedFunction(std::uint8_t function) {
        return {UnexpectedFunction{function}};
    }

    template <typename T>
    bool is() const noexcept {
        return std::holds_alternative<T>(value);
    }

    // How the engine reports the defect: a frame too short to check is a malformed answer.
    PollFailure pollFailure() const noexcept;

    friend bool operator==(const ParseError&, const ParseError&) = default;
};

// Unit 0 addresses every device at once and is never answered (Modbus over Serial Line V1.02,
// section 2.2).
inline constexpr std::uint8_t broadcastUnit = 0;

struct UnitRange {
    std::uint8_t first;
    std::uint8_t last;
    constexpr bool contains(int unit) const noexcept { return unit >= first && unit <= last; }
};
// 1-247 are device addresses; 248-255 are reserved (Modbus over Serial Line V1.02, section 2.2).
inline constexpr UnitRange unitRange{1, 247};

// 256 bytes: 1 address byte + a PDU of at most 253 bytes + 2 CRC bytes (Modbus over Serial Line
// V1.02, section 2.5.1).
inline constexpr std::size_t maxSize = 256;

// unitID, the PDU, then the CRC of both, low byte first. The PDU is taken as it is.
Bytes build(std::uint8_t unitID, ByteView pdu);

// The PDU of an answer to a request sent to unitID with this function code; the first failing
// check decides. An exception answer passes: it is recognised one layer up.
Result<Bytes, ParseError> parseResponse(ByteView frame, std::uint8_t unitID, std::uint8_t function);

// At least 4 bytes, and the last two (low byte first) are the CRC of all the others.
bool hasValidCRC(ByteView bytes) noexcept;

// The whole length of a request or answer frame judged from its first bytes, or nothing while
// the length cannot be known yet or the function code is not one these tables know.
std::optional<int> expectedRequestLength(ByteView bytes) noexcept;
std::optional<int> expectedResponseLength(ByteView bytes) noexcept;

} // namespace RTUFrame
} // namespace kestrin
