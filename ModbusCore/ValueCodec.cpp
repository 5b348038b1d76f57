#include "ValueCodec.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace kestrin::ValueCodec {

namespace {

constexpr double twoTo63 = 9223372036854775808.0;
constexpr double twoTo64 = 18446744073709551616.0;
// Halfway between the largest single and 2^128: from here on, rounding to single gives infinity.
constexpr double singleOverflow = 340282356779733661637539395458142568448.0;

// Clamps, then rounds half away from zero; NaN gives 0.
double clampedRound(double value, double minimum, double maximum) noexcept {
    if (std::isnan(value)) {
        return 0;
    }
    return std::round(std::clamp(value, minimum, maximum));
}

std::uint32_t singleBits(double value) noexcept {
    const float sign = std::signbit(value) ? -1.0F : 1.0F;
    float single = 0;
    if (std::isnan(value) || std::abs(value) <= std::numeric_limits<float>::max()) {
        single = static_cast<float>(value);
    } else if (std::abs(value) < singleOverflow) {
        single = sign * std::numeric_limits<float>::max();
    } else {
        single = sign * std::numeric_limits<float>::infinity();
    }
    return std::bit_cast<std::uint32_t>(single);
}

std::uint64_t unsigned64Bits(double value) noexcept {
    if (std::isnan(value) || value <= 0) {
        return 0;
    }
    if (value >= twoTo64) {
        return std::numeric_limits<std::uint64_t>::max();
    }
    return static_cast<std::uint64_t>(std::round(value));
}

std::uint64_t signed64Bits(double value) noexcept {
    constexpr auto maximum = std::numeric_limits<std::int64_t>::max();
    constexpr auto minimum = std::numeric_limits<std::int64_t>::min();
    if (std::isnan(value)) {
        return 0;
    }
    if (value <= -twoTo63) {
        return static_cast<std::uint64_t>(minimum);
    }
    double rounded = std::round(value);
    if (rounded >= twoTo63) {
        return static_cast<std::uint64_t>(maximum);
    }
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(rounded));
}

// An integer clamped to the type's range, exactly, as the type's pattern in its width.
std::uint64_t clampedIntegerBits(const Value& value, DataType type) noexcept {
    const DataType::Range bounds = type.range();
    std::uint64_t clamped = 0;
    if (value.isNegative()) {
        clamped = static_cast<std::uint64_t>(std::max(*value.signedValue(), bounds.minimum));
    } else {
        clamped = std::min(*value.unsignedValue(), bounds.maximum);
    }
    const int width = 16 * type.registerCount();
    return width < 64 ? clamped & ((std::uint64_t{1} << width) - 1) : clamped;
}

constexpr std::uint16_t byteSwapped(std::uint16_t word) noexcept {
    return static_cast<std::uint16_t>(word << 8 | word >> 8);
}

} // namespace

std::uint64_t bits(const Value& exact, DataType type) noexcept {
    if (exact.isInteger() && !type.isFloat()) {
        return type == DataType::boolean ? (exact.isNegative() || exact == 0 ? 0 : 1)
                                         : clampedIntegerBits(exact, type);
    }
    const double value = exact.toDouble();
    switch (type) {
    case DataType::boolean:
        return value > 0 ? 1 : 0;
    case DataType::uint16:
        return static_cast<std::uint16_t>(clampedRound(value, 0, 65535));
    case DataType::int16:
        return static_cast<std::uint16_t>(
            static_cast<std::int16_t>(clampedRound(value, -32768, 32767)));
    case DataType::uint32:
        return static_cast<std::uint32_t>(clampedRound(value, 0, 4294967295.0));
    case DataType::int32:
        return static_cast<std::uint32_t>(
            static_cast<std::int32_t>(clampedRound(value, -2147483648.0, 2147483647.0)));
    case DataType::float32:
        return singleBits(value);
    case DataType::uint64:
        return unsigned64Bits(value);
    case DataType::int64:
        return signed64Bits(value);
    case DataType::float64:
        return std::bit_cast<std::uint64_t>(value);
    }
    return 0;
}

Value value(std::uint64_t bits, DataType type) noexcept {
    switch (type) {
    case DataType::boolean:
        return Value::unsignedInteger(bits & 1);
    case DataType::uint16:
        return Value::unsignedInteger(static_cast<std::uint16_t>(bits));
    case DataType::int16:
        return Value::signedInteger(static_cast<std::int16_t>(static_cast<std::uint16_t>(bits)));
    case DataType::uint32:
        return Value::unsignedInteger(static_cast<std::uint32_t>(bits));
    case DataType::int32:
        return Value::signedInteger(static_cast<std::int32_t>(static_cast<std::uint32_t>(bits)));
    case DataType::float32:
        return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    case DataType::uint64:
        return Value::unsignedInteger(bits);
    case DataType::int64:
        return Value::signedInteger(static_cast<std::int64_t>(bits));
    case DataType::float64:
        return std::bit_cast<double>(bits);
    }
    return {};
}

std::vector<std::uint16_t> registersFromBits(std::uint64_t bits, DataType type, WordOrder order) {
    const int count = type.registerCount();
    std::vector<std::uint16_t> words;
    words.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        words.push_back(static_cast<std::uint16_t>(bits >> (16 * (count - 1 - i))));
    }
    if (count == 1) {
        return words;
    }
    if (order.swapsWords()) {
        std::reverse(words.begin(), words.end());
    }
    if (order.swapsBytes()) {
        std::transform(words.begin(), words.end(), words.begin(), byteSwapped);
    }
    return words;
}

std::uint64_t bitsFromRegisters(std::span<const std::uint16_t> registers, DataType type,
                                WordOrder order) noexcept {
    const auto count = std::min(registers.size(), static_cast<std::size_t>(type.registerCount()));
    // At most four words: the widest types take four registers.
    std::array<std::uint16_t, 4> words{};
    std::copy_n(registers.begin(), count, words.begin());
    auto taken = std::span(words).first(count);
    if (count >= 2) {
        if (order.swapsBytes()) {
            std::transform(taken.begin(), taken.end(), taken.begin(), byteSwapped);
        }
        if (order.swapsWords()) {
            std::reverse(taken.begin(), taken.end());
        }
    }
    std::uint64_t result = 0;
    for (std::uint16_t word : taken) {
        result = result << 16 | word;
    }
    return result;
}

Value raw(const Value& engineeringValue, double scale) noexcept {
    return scales(scale) ? Value(engineeringValue.toDouble() / scale) : engineeringValue;
}

Value engineering(const Value& raw, double scale) noexcept {
    return scales(scale) ? Value(raw.toDouble() * scale) : raw;
}

std::vector<std::uint16_t> registers(const Value& engineeringValue, DataType type, WordOrder order,
                                     double scale) {
    return registersFromBits(bits(raw(engineeringValue, scale), type), type, order);
}

Value valueFromRegisters(std::span<const std::uint16_t> registers, DataType type, WordOrder order,
                         double scale) noexcept {
    return engineering(value(bitsFromRegisters(registers, type, order), type), scale);
}

} // namespace kestrin::ValueCodec
