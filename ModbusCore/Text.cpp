#include "Text.h"

#include <algorithm>

namespace kestrin::Text {

namespace {

constexpr bool isAsciiWhiteSpace(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

// U+00A0 is C2 A0 in UTF-8; spreadsheets in French locales write it for grouping.
constexpr std::string_view noBreakSpace = "\xC2\xA0";

} // namespace

std::string_view trimmed(std::string_view text) noexcept {
    while (true) {
        if (!text.empty() && isAsciiWhiteSpace(text.front())) {
            text.remove_prefix(1);
        } else if (text.starts_with(noBreakSpace)) {
            text.remove_prefix(noBreakSpace.size());
        } else {
            break;
        }
    }
    while (true) {
        if (!text.empty() && isAsciiWhiteSpace(text.back())) {
            text.remove_suffix(1);
        } else if (text.ends_with(noBreakSpace)) {
            text.remove_suffix(noBreakSpace.size());
        } else {
            break;
        }
    }
    return text;
}

std::string lowercased(std::string_view text) {
    std::string result(text);
    for (std::size_t i = 0; i < result.size(); ++i) {
        auto byte = static_cast<unsigned char>(result[i]);
        if (byte >= 'A' && byte <= 'Z') {
            result[i] = static_cast<char>(byte + ('a' - 'A'));
        } else if (byte == 0xC3 && i + 1 < result.size()) {
            // U+00C0…U+00DE are C3 80…C3 9E; their lower-case forms are 0x20 higher, except
            // U+00D7 (multiplication sign), which has none.
            auto next = static_cast<unsigned char>(result[i + 1]);
            if (next >= 0x80 && next <= 0x9E && next != 0x97) {
                result[i + 1] = static_cast<char>(next + 0x20);
            }
            ++i;
        }
    }
    return result;
}

std::string removingSpaces(std::string_view text) {
    std::string result(text);
    result.erase(std::remove(result.begin(), result.end(), ' '), result.end());
    return result;
}

} // namespace kestrin::Text
