#pragma once

#include "DataType.h"
#include "Value.h"
#include "WordOrder.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kestrin::ValueCodec {

// Conversion between the registers on the wire and the numbers the user sees. A raw value
// travels as a 64-bit pattern: the type's value in its natural width in the low bits (two's
// complement, IEEE 754, or 0/1 for bool), upper bits zero. Registers are in address order.

// The value as the type's raw pattern: integers round half away from zero and clamp (NaN gives
// 0), exactly when the value is an integer; float32 rounds to single precision. Never fails.
std::uint64_t bits(const Value& value, DataType type) noexcept;
// The pattern interpreted as the type: an exact integer for the integer types and bool, a
// double for the floating-point types.
Value value(std::uint64_t bits, DataType type) noexcept;

// As many registers as the type needs, most significant word first, then laid out in the order.
// One-register types ignore the order.
std::vector<std::uint16_t> registersFromBits(std::uint64_t bits, DataType type, WordOrder order);
// The inverse; uses the first registerCount() registers, or fewer when fewer are given.
std::uint64_t bitsFromRegisters(std::span<const std::uint16_t> registers, DataType type,
                                WordOrder order) noexcept;

// An engineering value to registers: divided by the scale unless the scale is 0 or 1.
std::vector<std::uint16_t> registers(const Value& engineeringValue, DataType type, WordOrder order,
                                     double scale);
// Registers to an engineering value: multiplied by the scale unless the scale is 0 or 1. Only a
// scaled value becomes a double; an unscaled integer stays exact.
Value valueFromRegisters(std::span<const std::uint16_t> registers, DataType type, WordOrder order,
                         double scale) noexcept;

// A scale of exactly 0 or 1 leaves values unscaled.
constexpr bool scales(double scale) noexcept {
    return scale != 0 && scale != 1;
}
// The raw value behind an engineering value: divided by the scale unless it is 0 or 1.
Value raw(const Value& engineeringValue, double scale) noexcept;
// The engineering value of a raw value: multiplied by the scale unless it is 0 or 1.
Value engineering(const Value& raw, double scale) noexcept;

} // namespace kestrin::ValueCodec
