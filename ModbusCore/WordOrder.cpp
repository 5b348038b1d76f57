#include "WordOrder.h"

#include "Text.h"

#include <string>

namespace kestrin {

namespace {
constexpr std::array<std::string_view, 4> rawValues{"abcd", "cdab", "badc", "dcba"};
constexpr std::array<std::string_view, 4> labels{"ABCD", "CDAB", "BADC", "DCBA"};
} // namespace

std::string_view WordOrder::rawValue() const noexcept {
    return rawValues[case_];
}

std::optional<WordOrder> WordOrder::fromRawValue(std::string_view text) noexcept {
    for (Case c : allCases) {
        if (rawValues[c] == text) {
            return WordOrder(c);
        }
    }
    return std::nullopt;
}

std::optional<WordOrder> WordOrder::fromText(std::string_view text) {
    return fromRawValue(Text::folded(Text::trimmed(text)));
}

std::string_view WordOrder::label() const noexcept {
    return labels[case_];
}

} // namespace kestrin
