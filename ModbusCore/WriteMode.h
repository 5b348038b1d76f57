#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrin {

// Which function codes a write of one register or one coil uses: FC05/FC06 (single) or
// FC15/FC16 (multiple), for devices that only implement one of the two. Values of two or four
// registers always go out as FC16. Persisted by raw value ("single", "multiple").
class WriteMode {
public:
    enum Case : std::uint8_t { single, multiple };
    static constexpr std::array allCases{single, multiple};

    constexpr WriteMode() noexcept = default;
    constexpr WriteMode(Case c) noexcept
        : case_(c) {}
    constexpr operator Case() const noexcept { return case_; }

    std::string_view rawValue() const noexcept;
    // Exact, case-sensitive match of a raw value.
    static std::optional<WriteMode> fromRawValue(std::string_view text) noexcept;
    std::string_view id() const noexcept { return rawValue(); }

private:
    Case case_ = single;
};

} // namespace kestrin
