#pragma once

#include "Bytes.h"

#include <sstream>
#include <string>
#include <string_view>

namespace kestrin::test {

// "01 03 0A" -> {0x01, 0x03, 0x0A}: test vectors read the way the log shows frames.
inline Bytes hexBytes(std::string_view text) {
    std::istringstream in{std::string(text)};
    Bytes bytes;
    unsigned value = 0;
    while (in >> std::hex >> value) {
        bytes.push_back(static_cast<std::uint8_t>(value));
    }
    return bytes;
}

} // namespace kestrin::test
