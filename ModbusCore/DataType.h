#pragma once

#include "RegisterTable.h"
#include "Value.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kestrin {

// How a datapoint's registers are interpreted. Persisted by raw value ("bool", "uint16", ...).
class DataType {
public:
    // `boolean` is the type with raw value "bool" (a keyword in C++).
    enum Case : std::uint8_t {
        boolean,
        uint16,
        int16,
        uint32,
        int32,
        float32,
        uint64,
        int64,
        float64
    };
    static constexpr std::array allCases{boolean, uint16, int16, uint32, int32,
                                         float32, uint64, int64, float64};

    // The closed range of an integer type's raw values, exactly.
    struct Range {
        std::int64_t minimum = 0;
        std::uint64_t maximum = 0;
        friend constexpr bool operator==(const Range&, const Range&) = default;
    };

    constexpr DataType() noexcept = default;
    constexpr DataType(Case c) noexcept
        : case_(c) {}
    constexpr operator Case() const noexcept { return case_; }

    std::string_view rawValue() const noexcept;
    // Exact, case-sensitive match of a raw value.
    static std::optional<DataType> fromRawValue(std::string_view text) noexcept;
    std::string_view id() const noexcept { return rawValue(); }
    // The lenient reading of spreadsheet text: raw values and common aliases ("real", "dword",
    // "s16" ...), any case, trimmed; spaces inside are not removed.
    static std::optional<DataType> fromText(std::string_view text);

    constexpr int registerCount() const noexcept {
        constexpr std::array counts{1, 1, 1, 2, 2, 2, 4, 4, 4};
        return counts[case_];
    }
    constexpr bool isFloat() const noexcept { return case_ == float32 || case_ == float64; }
    constexpr bool isSigned() const noexcept {
        return case_ == int16 || case_ == int32 || case_ == int64;
    }
    constexpr bool usesWordOrder() const noexcept { return registerCount() > 1; }
    // Integer types and bool; the floating-point types have no integer range and give {0, 0}.
    Range range() const noexcept;
    // Whether a raw value is one the type can hold: for integer types a whole number inside
    // range(), compared exactly; for floating-point types a finite number within the largest
    // finite magnitude.
    bool holds(const Value& raw) const noexcept;

    // Only bool for the bit tables; all nine types, in case order, for the register tables.
    static std::span<const DataType> allowed(RegisterTable table) noexcept;
    bool isAllowed(RegisterTable table) const noexcept {
        return !table.isBit() || case_ == boolean;
    }

private:
    Case case_ = uint16;
};

} // namespace kestrin
