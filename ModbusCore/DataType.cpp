#include "DataType.h"

#include "Text.h"

#include <cmath>
#include <limits>
#include <utility>

namespace kestrin {

namespace {

constexpr std::array<std::string_view, 9> rawValues{"bool",    "uint16", "int16", "uint32", "int32",
                                                    "float32", "uint64", "int64", "float64"};

// Names that PLC tools and device manuals use for the same types (IEC 61131-3 among them).
constexpr std::array<std::pair<std::string_view, DataType::Case>, 27> aliases{{
    {"bit", DataType::boolean},  {"boolean", DataType::boolean}, {"u16", DataType::uint16},
    {"word", DataType::uint16},  {"uint", DataType::uint16},     {"i16", DataType::int16},
    {"s16", DataType::int16},    {"int", DataType::int16},       {"short", DataType::int16},
    {"u32", DataType::uint32},   {"dword", DataType::uint32},    {"udint", DataType::uint32},
    {"i32", DataType::int32},    {"s32", DataType::int32},       {"dint", DataType::int32},
    {"long", DataType::int32},   {"f32", DataType::float32},     {"float", DataType::float32},
    {"real", DataType::float32}, {"u64", DataType::uint64},      {"ulint", DataType::uint64},
    {"i64", DataType::int64},    {"s64", DataType::int64},       {"lint", DataType::int64},
    {"f64", DataType::float64},  {"double", DataType::float64},  {"lreal", DataType::float64},
}};

constexpr std::array<DataType, 1> bitTypes{DataType::boolean};
constexpr std::array<DataType, 9> registerTypes{
    DataType::boolean, DataType::uint16, DataType::int16, DataType::uint32, DataType::int32,
    DataType::float32, DataType::uint64, DataType::int64, DataType::float64};

} // namespace

std::string_view DataType::rawValue() const noexcept {
    return rawValues[case_];
}

std::optional<DataType> DataType::fromRawValue(std::string_view text) noexcept {
    for (Case c : allCases) {
        if (rawValues[c] == text) {
            return DataType(c);
        }
    }
    return std::nullopt;
}

std::optional<DataType> DataType::fromText(std::string_view text) {
    std::string key = Text::folded(Text::trimmed(text));
    if (auto type = fromRawValue(key)) {
        return type;
    }
    for (const auto& [alias, type] : aliases) {
        if (alias == key) {
            return DataType(type);
        }
    }
    return std::nullopt;
}

DataType::Range DataType::range() const noexcept {
    using Limits = std::numeric_limits<std::int64_t>;
    switch (case_) {
    case boolean:
        return {0, 1};
    case uint16:
        return {0, 65535};
    case int16:
        return {-32768, 32767};
    case uint32:
        return {0, 4294967295};
    case int32:
        return {-2147483648, 2147483647};
    case uint64:
        return {0, std::numeric_limits<std::uint64_t>::max()};
    case int64:
        return {Limits::min(), static_cast<std::uint64_t>(Limits::max())};
    case float32:
    case float64:
        break;
    }
    return {};
}

bool DataType::holds(const Value& raw) const noexcept {
    if (isFloat()) {
        const double magnitude = std::abs(raw.toDouble());
        return case_ == float32 ? magnitude <= std::numeric_limits<float>::max()
                                : magnitude <= std::numeric_limits<double>::max();
    }
    const Range bounds = range();
    if (raw.isNegative()) {
        const auto value = raw.signedValue();
        return value && *value >= bounds.minimum;
    }
    const auto value = raw.unsignedValue();
    return value && *value <= bounds.maximum;
}

std::span<const DataType> DataType::allowed(RegisterTable table) noexcept {
    if (table.isBit()) {
        return bitTypes;
    }
    return registerTypes;
}

} // namespace kestrin
