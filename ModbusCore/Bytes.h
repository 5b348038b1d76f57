#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kestrin {

// Frames and PDUs are plain byte arrays; read-only operations take a view so that whole arrays,
// slices and fixed buffers all pass without copying.
using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

// "01 03 00 0A": two upper-case hex digits per byte, single spaces, nothing for no bytes.
std::string hexString(ByteView bytes);

// The big-endian value of bytes[index] and bytes[index + 1]; the index must leave two bytes.
std::uint16_t uint16At(ByteView bytes, std::size_t index);

// Appends the high byte, then the low byte: the order of every 16-bit field of a PDU.
void appendUInt16(Bytes& bytes, std::uint16_t value);

} // namespace kestrin
