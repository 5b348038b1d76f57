#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrin {

// The parity bit of a serial frame. Persisted by raw value ("none", "even", "odd").
class Parity {
public:
    enum Case : std::uint8_t { none, even, odd };
    static constexpr std::array allCases{none, even, odd};

    constexpr Parity() noexcept = default;
    constexpr Parity(Case c) noexcept
        : case_(c) {}
    constexpr operator Case() const noexcept { return case_; }

    std::string_view rawValue() const noexcept;
    // Exact, case-sensitive match of a raw value.
    static std::optional<Parity> fromRawValue(std::string_view text) noexcept;

    constexpr bool isEnabled() const noexcept { return case_ != none; }
    // "N", "E" or "O", as in the usual "8E1" notation.
    constexpr char letter() const noexcept {
        constexpr std::array letters{'N', 'E', 'O'};
        return letters[case_];
    }

private:
    Case case_ = none;
};

} // namespace kestrin
