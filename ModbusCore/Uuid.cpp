#include "Uuid.h"

#include <ostream>
#include <random>

namespace kestrin {

namespace {

// Positions of the four hyphens in the 36-character text.
constexpr std::array<std::size_t, 4> hyphens{8, 13, 18, 23};

constexpr bool isHyphenPosition(std::size_t index) noexcept {
    for (std::size_t position : hyphens) {
        if (position == index) {
            return true;
        }
    }
    return false;
}

constexpr int hexDigitValue(char c) noexcept {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

std::mt19937_64& generator() {
    thread_local std::mt19937_64 engine = [] {
        std::random_device device;
        std::seed_seq seed{device(), device(), device(), device(),
                           device(), device(), device(), device()};
        return std::mt19937_64(seed);
    }();
    return engine;
}

} // namespace

Uuid Uuid::random() {
    std::array<std::uint8_t, 16> bytes{};
    auto& engine = generator();
    for (std::size_t half = 0; half < 2; ++half) {
        std::uint64_t word = engine();
        for (std::size_t i = 0; i < 8; ++i) {
            bytes[half * 8 + i] = static_cast<std::uint8_t>(word >> (8 * i));
        }
    }
    // Version 4 in the high nibble of byte 6, variant 10xx in the high bits of byte 8.
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
    return Uuid(bytes);
}

std::optional<Uuid> Uuid::parse(std::string_view text) noexcept {
    if (text.size() != 36) {
        return std::nullopt;
    }
    std::array<std::uint8_t, 16> bytes{};
    std::size_t nibble = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (isHyphenPosition(index)) {
            if (text[index] != '-') {
                return std::nullopt;
            }
            continue;
        }
        int digit = hexDigitValue(text[index]);
        if (digit < 0) {
            return std::nullopt;
        }
        bytes[nibble / 2] = static_cast<std::uint8_t>(bytes[nibble / 2] << 4 | digit);
        ++nibble;
    }
    return Uuid(bytes);
}

std::string Uuid::text() const {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    result.reserve(36);
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        if (isHyphenPosition(result.size())) {
            result.push_back('-');
        }
        result.push_back(digits[bytes_[i] >> 4]);
        result.push_back(digits[bytes_[i] & 0x0F]);
    }
    return result;
}

std::ostream& operator<<(std::ostream& stream, const Uuid& uuid) {
    return stream << uuid.text();
}

} // namespace kestrin
