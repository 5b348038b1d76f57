#include "Parity.h"

namespace kestrin {

namespace {
constexpr std::array<std::string_view, 3> rawValues{"none", "even", "odd"};
} // namespace

std::string_view Parity::rawValue() const noexcept {
    return rawValues[case_];
}

std::optional<Parity> Parity::fromRawValue(std::string_view text) noexcept {
    for (Case c : allCases) {
        if (rawValues[c] == text) {
            return Parity(c);
        }
    }
    return std::nullopt;
}

} // namespace kestrin
