#include "DisplayFormat.h"

#include "Text.h"

#include <string>
#include <utility>

namespace kestrin {

namespace {

constexpr std::array<std::string_view, 3> rawValues{"decimal", "hex", "binary"};

// An empty cell means the default format, so it reads as decimal rather than as no match.
constexpr std::array<std::pair<std::string_view, DisplayFormat::Case>, 7> texts{{
    {"decimal", DisplayFormat::decimal},
    {"dec", DisplayFormat::decimal},
    {"", DisplayFormat::decimal},
    {"hex", DisplayFormat::hex},
    {"hexadecimal", DisplayFormat::hex},
    {"binary", DisplayFormat::binary},
    {"bin", DisplayFormat::binary},
}};

} // namespace

std::string_view DisplayFormat::rawValue() const noexcept {
    return rawValues[case_];
}

std::optional<DisplayFormat> DisplayFormat::fromRawValue(std::string_view text) noexcept {
    for (Case c : allCases) {
        if (rawValues[c] == text) {
            return DisplayFormat(c);
        }
    }
    return std::nullopt;
}

std::optional<DisplayFormat> DisplayFormat::fromText(std::string_view text) {
    std::string key = Text::folded(Text::trimmed(text));
    for (const auto& [accepted, format] : texts) {
        if (accepted == key) {
            return DisplayFormat(format);
        }
    }
    return std::nullopt;
}

} // namespace kestrin
