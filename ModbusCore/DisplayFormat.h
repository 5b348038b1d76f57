#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrin {

// How a value is shown in the table. Persisted by raw value ("decimal", "hex", "binary").
class DisplayFormat {
public:
    enum Case : std::uint8_t { decimal, hex, binary };
    static constexpr std::array allCases{decimal, hex, binary};

    constexpr DisplayFormat() noexcept = default;
    constexpr DisplayFormat(Case c) noexcept
        : case_(c) {}
    constexpr operator Case() const noexcept { return case_; }

    std::string_view rawValue() const noexcept;
    static std::optional<DisplayFormat> fromRawValue(std::string_view text) noexcept;
    std::string_view id() const noexcept { return rawValue(); }
    // "decimal", "dec" and the empty text, "hex", "hexadecimal", "binary", "bin"; any case,
    // trimmed.
    static std::optional<DisplayFormat> fromText(std::string_view text);

private:
    Case case_ = decimal;
};

} // namespace kestrin
