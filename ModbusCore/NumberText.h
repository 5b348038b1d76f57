#pragma once

#include "Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestrin::NumberText {

// Numbers as text, with "." as the decimal point; the callers put the user's separator in.

// The whole text as a C-locale number (optional sign, digits, optional point and fraction,
// optional exponent; "inf" and "nan" too), with a leading "+" as strtod accepts it. Digits alone
// give the exact integer when it fits 64 bits; anything else a double, where a magnitude too large
// gives an infinity and one too small gives 0. Nothing for any other text.
std::optional<Value> number(std::string_view text);
// The whole text as an unsigned 64-bit integer in the radix, with an optional leading "+".
std::optional<std::uint64_t> unsignedInteger(std::string_view text, int radix) noexcept;

// For files another program reads back: integers and whole doubles below 1e15 in plain digits,
// other doubles in their shortest round-trip digits, written out (0.0001, 2500000000000000.5)
// from 1e-6 up to 1e21 and with an exponent beyond (1e-07, 1e+21); "nan", "inf" and "-inf".
std::string plain(const Value& value);
// The same for a single-precision number: the shortest text that reads back as that single,
// so a float32 of 0.1 is "0.1" and not the digits of its widened double.
std::string single(float value);
// Exactly `decimals` fraction digits, rounded; never "-0": a negative value that rounds to zero
// loses its sign.
std::string fixed(double value, int decimals);
// At most seven significant digits, trailing zeros dropped; plain digits for the magnitudes a
// meter shows, an exponent beyond them.
std::string significant(double value);
// "0x" and the pattern's low 4 × digits bits in upper-case hexadecimal.
std::string hexadecimal(std::uint64_t bits, int digits);
// The pattern's low `digits` bits, cut into groups of four from the left ("0000 0101").
std::string binary(std::uint64_t bits, int digits);

} // namespace kestrin::NumberText
