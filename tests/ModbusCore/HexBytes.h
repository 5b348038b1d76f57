#pragma once

#include "Bytes.h"

#include <cassert>
#include <string_view>

namespace kestrin::test {

// "01 03 0A" -> {0x01, 0x03, 0x0A}: test vectors read like the log shows frames.
inline Bytes hexBytes(std::string_view text) {
    const auto digit = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; };
    Bytes bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == ' ') {
            continue;
        }
        assert(i + 1 < text.size());
        bytes.push_back(static_cast<std::uint8_t>(digit(text[i]) * 16 + digit(text[i + 1])));
        ++i;
    }
    return bytes;
}

} // namespace kestrin::test
