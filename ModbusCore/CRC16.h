#pragma once

#include "Bytes.h"

#include <concepts>
#include <cstdint>
#include <iterator>
#include <ranges>

namespace kestrin {

// The CRC-16 that closes every RTU frame (Modbus over Serial Line V1.02, section 6.2.2). Frames
// are at most 256 bytes, so the plain bitwise loop is fast enough and no table is kept.
namespace CRC16 {

// Preset of the CRC register: all ones.
inline constexpr std::uint16_t initialValue = 0xFFFF;
// The generator 0x8005 bit-reversed, because the register shifts towards the low bit.
inline constexpr std::uint16_t reflectedPolynomial = 0xA001;

// The register after one more byte; the result needs no final XOR.
constexpr std::uint16_t update(std::uint16_t crc, std::uint8_t byte) noexcept {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) {
        const bool carry = (crc & 1U) != 0;
        crc = static_cast<std::uint16_t>(crc >> 1);
        if (carry) {
            crc ^= reflectedPolynomial;
        }
    }
    return crc;
}

// The CRC of contiguous bytes: whole arrays, slices and fixed buffers. No bytes give 0xFFFF.
std::uint16_t modbus(ByteView bytes) noexcept;

// The CRC of any other run of bytes, such as a deque's or a lazily produced view's.
template <std::input_iterator Iterator, std::sentinel_for<Iterator> Sentinel>
requires std::convertible_to<std::iter_value_t<Iterator>, std::uint8_t>
constexpr std::uint16_t modbus(Iterator first, Sentinel last) {
    std::uint16_t crc = initialValue;
    for (; first != last; ++first) {
        crc = update(crc, static_cast<std::uint8_t>(*first));
    }
    return crc;
}

template <std::ranges::input_range Range>
requires(!std::convertible_to<Range, ByteView>) &&
    std::convertible_to<std::ranges::range_value_t<Range>, std::uint8_t> constexpr std::uint16_t
    modbus(Range&& bytes) {
    return modbus(std::ranges::begin(bytes), std::ranges::end(bytes));
}

} // namespace CRC16
} // namespace kestrin
