#include "WriteMode.h"

namespace kestrin {

namespace {
constexpr std::array<std::string_view, 2> rawValues{"single", "multiple"};
} // namespace

std::string_view WriteMode::rawValue() const noexcept {
    return rawValues[case_];
}

std::optional<WriteMode> WriteMode::fromRawValue(std::string_view text) noexcept {
    for (Case c : allCases) {
        if (rawValues[c] == text) {
            return WriteMode(c);
        }
    }
    return std::nullopt;
}

} // namespace kestrin
