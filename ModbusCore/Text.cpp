#include "Text.h"

#include <algorithm>

namespace kestrin::Text {

namespace {

constexpr bool isAsciiWhiteSpace(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

// U+00A0 is C2 A0 in UTF-8; spreadsheets in French locales write it for grouping.
constexpr std::string_view noBreakSpace = "\xC2\xA0";

// The simple lower-case mapping of U+00C0…U+017F.
constexpr char32_t lowerCase(char32_t c) noexcept {
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) {
        return c + 0x20; // U+00D7 is the multiplication sign, not a letter
    }
    if (c == 0x130) {
        return U'i'; // İ outside Turkish
    }
    if (c == 0x178) {
        return 0xFF; // Ÿ, whose lower case sits in Latin-1
    }
    if (c == 0x17F) {
        return U's'; // long s
    }
    // Latin Extended-A pairs each upper-case letter with the next code point; the pairing
    // switches parity at U+0139 and U+0179, after letters without a partner.
    const bool evenIsUpper =
        (c >= 0x100 && c <= 0x12F) || (c >= 0x132 && c <= 0x137) || (c >= 0x14A && c <= 0x177);
    const bool oddIsUpper = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
    if ((evenIsUpper && c % 2 == 0) || (oddIsUpper && c % 2 == 1)) {
        return c + 1;
    }
    return c;
}

constexpr bool isContinuation(unsigned char byte) noexcept {
    return (byte & 0xC0) == 0x80;
}

void appendUTF8(std::string& text, char32_t c) {
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else {
        text += static_cast<char>(0xC0 | (c >> 6));
        text += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// ẞ (U+1E9E), the capital sharp s.
constexpr std::string_view capitalSharpS = "\xE1\xBA\x9E";

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

std::string folded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        const auto byte = static_cast<unsigned char>(text[i]);
        // Every letter that folds below U+0180 is encoded with a lead byte of C3, C4 or C5.
        if (byte >= 0xC3 && byte <= 0xC5 && i + 1 < text.size() &&
            isContinuation(static_cast<unsigned char>(text[i + 1]))) {
            const char32_t c =
                (char32_t(byte & 0x1F) << 6) | (static_cast<unsigned char>(text[i + 1]) & 0x3F);
            if (c == 0xDF) {
                result += "ss";
            } else {
                appendUTF8(result, lowerCase(c));
            }
            i += 2;
        } else if (text.substr(i).starts_with(capitalSharpS)) {
            result += "ss";
            i += capitalSharpS.size();
        } else {
            result += byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : text[i];
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
