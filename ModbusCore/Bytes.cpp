#include "Bytes.h"

#include <cassert>

namespace kestrin {

std::string hexString(ByteView bytes) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    if (bytes.empty()) {
        return text;
    }
    text.reserve(bytes.size() * 3 - 1);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0) {
            text.push_back(' ');
        }
        text.push_back(digits[bytes[i] >> 4]);
        text.push_back(digits[bytes[i] & 0x0F]);
    }
    return text;
}

std::uint16_t uint16At(ByteView bytes, std::size_t index) {
    assert(index + 1 < bytes.size());
    return static_cast<std::uint16_t>((bytes[index] << 8) | bytes[index + 1]);
}

void appendUInt16(Bytes& bytes, std::uint16_t value) {
    bytes.push_back(static_cast<std::uint8_t>(value >> 8));
    bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
}

} // namespace kestrin
