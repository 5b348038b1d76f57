#pragma once

#include "FunctionCode.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrin {

// The four Modbus data tables. Persisted by raw value ("coil", "holdingRegister", ...).
class RegisterTable {
public:
    enum Case : std::uint8_t { coil, discreteInput, holdingRegister, inputRegister };
    static constexpr std::array allCases{coil, discreteInput, holdingRegister, inputRegister};

    constexpr RegisterTable() noexcept = default;
    constexpr RegisterTable(Case c) noexcept
        : case_(c) {}
    constexpr operator Case() const noexcept { return case_; }

    std::string_view rawValue() const noexcept;
    // Exact, case-sensitive match of a raw value, as persisted.
    static std::optional<RegisterTable> fromRawValue(std::string_view text) noexcept;
    std::string_view id() const noexcept { return rawValue(); }
    // The lenient reading of spreadsheet text: codes, names and Modicon digits ("HR", "Holding
    // Registers", "4x", "4"), any case, spaces ignored.
    static std::optional<RegisterTable> fromText(std::string_view text);

    constexpr bool isBit() const noexcept { return case_ == coil || case_ == discreteInput; }
    constexpr bool isWritable() const noexcept { return case_ == coil || case_ == holdingRegister; }
    // "CO", "DI", "HR", "IR".
    std::string_view code() const noexcept;
    // The leading digit of the classic Modicon notation: 0xxxxx coils, 1xxxxx discrete inputs,
    // 3xxxxx input registers, 4xxxxx holding registers.
    constexpr int modiconPrefix() const noexcept {
        constexpr std::array prefixes{0, 1, 4, 3};
        return prefixes[case_];
    }
    constexpr int maxReadCount() const noexcept {
        return isBit() ? FunctionCode::maxReadBits : FunctionCode::maxReadRegisters;
    }
    // FC01..FC04 follow the case order.
    constexpr FunctionCode readFunction() const noexcept {
        return FunctionCode(static_cast<FunctionCode::Case>(case_ + 1));
    }

private:
    Case case_ = coil;
};

} // namespace kestrin
