#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

namespace kestrin {

// A 128-bit identifier for datapoints and polls, persisted as its canonical text
// "E621E1F8-C36C-495A-93FC-0C247A3E6E5F" (8-4-4-4-12 upper-case hexadecimal digits).
class Uuid {
public:
    // The nil identifier (all zero); use random() for a new identity.
    constexpr Uuid() noexcept = default;
    constexpr explicit Uuid(const std::array<std::uint8_t, 16>& bytes) noexcept
        : bytes_(bytes) {}

    // A random version 4 identifier (RFC 4122 section 4.4), from a per-thread generator seeded
    // once from std::random_device.
    static Uuid random();
    // Accepts the 36-character canonical form in either case; anything else gives nothing.
    static std::optional<Uuid> parse(std::string_view text) noexcept;

    std::string text() const;
    constexpr const std::array<std::uint8_t, 16>& bytes() const noexcept { return bytes_; }
    constexpr bool isNil() const noexcept { return bytes_ == std::array<std::uint8_t, 16>{}; }

    friend constexpr bool operator==(const Uuid&, const Uuid&) = default;
    friend constexpr std::strong_ordering operator<=>(const Uuid& a, const Uuid& b) noexcept {
        return a.bytes_ <=> b.bytes_;
    }

private:
    std::array<std::uint8_t, 16> bytes_{};
};

std::ostream& operator<<(std::ostream& stream, const Uuid& uuid);

} // namespace kestrin

// Inline because every lookup of a datapoint's status, samples or row hashes an id. Two words
// and one multiplication: random ids need no more mixing, and the multiplication still tells
// apart hand-made ids that differ only in their first half.
template <>
struct std::hash<kestrin::Uuid> {
    std::size_t operator()(const kestrin::Uuid& uuid) const noexcept {
        std::uint64_t first = 0;
        std::uint64_t second = 0;
        std::memcpy(&first, uuid.bytes().data(), sizeof first);
        std::memcpy(&second, uuid.bytes().data() + sizeof first, sizeof second);
        return static_cast<std::size_t>((first * 0x9E3779B97F4A7C15ULL) ^ second);
    }
};
