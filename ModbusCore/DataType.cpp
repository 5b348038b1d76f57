#include "DataType.h"

#include "Text.h"

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
    std::string key = Text::lowercased(Text::trimmed(text));
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
    switch (case_) {
    case boolean:
        return {0, 1};
    case uint16:
        return {0, 65535};
    case int16:
        return {-32768, 32767};
    case uint32:
        return {0, 4294967295.0};
    case int32:
        return {-2147483648.0, 2147483647};
    case float32:
        return {-std::numeric_limits<float>::max(), std::numeric_limits<float>::max()};
    case uint64:
        // 2^64: the largest uint64 is not a double, and this is the double it rounds to.
        return {0, 18446744073709551616.0};
    case int64:
        return {-9223372036854775808.0, 9223372036854775808.0};
    case float64:
        return {-std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    }
    return {};
}

std::span<const DataType> DataType::allowed(RegisterTable table) noexcept {
    if (table.isBit()) {
        return bitTypes;
    }
    return registerTypes;
}

} // namespace kestrin
