#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrin {

// The order of the words and bytes of a value of two or four registers, named by the wire order
// of the value's bytes A (most significant) to D. Persisted by raw value ("abcd", "cdab", ...).
class WordOrder {
public:
    enum Case : std::uint8_t { abcd, cdab, badc, dcba };
    static constexpr std::array allCases{abcd, cdab, badc, dcba};

    constexpr WordOrder() noexcept = default;
    constexpr WordOrder(Case c) noexcept
        : case_(c) {}
    constexpr operator Case() const noexcept { return case_; }

    std::string_view rawValue() const noexcept;
    static std::optional<WordOrder> fromRawValue(std::string_view text) noexcept;
    std::string_view id() const noexcept { return rawValue(); }
    // A raw value in any case, trimmed; nothing else.
    static std::optional<WordOrder> fromText(std::string_view text);
    // "ABCD", "CDAB", "BADC", "DCBA".
    std::string_view label() const noexcept;

    constexpr bool swapsWords() const noexcept { return case_ == cdab || case_ == dcba; }
    constexpr bool swapsBytes() const noexcept { return case_ == badc || case_ == dcba; }

private:
    Case case_ = abcd;
};

} // namespace kestrin
