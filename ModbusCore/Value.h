#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <type_traits>

namespace kestrin {

// An engineering value. A double holds 53 bits, so the integer types travel as the integers they
// are: a 64-bit energy counter or bit pattern keeps every digit from the registers to the screen,
// the history and the files. Scaled values and the floating-point types are doubles.
class Value {
public:
    enum class Kind : std::uint8_t { real, signedInteger, unsignedInteger };

    // The double 0.
    constexpr Value() noexcept
        : real_(0) {}
    // Implicit: every double is a value, and most values are doubles.
    constexpr Value(double real) noexcept // NOLINT(google-explicit-constructor)
        : real_(real) {}
    // An integer stays one, so that no 64-bit number passes through a double on its way in.
    // (enable_if rather than concepts: Qt's moc reads this header and cannot parse <concepts>.)
    template <typename Integer,
              std::enable_if_t<std::is_integral_v<Integer> && std::is_signed_v<Integer>,
                               bool> = true>
    constexpr Value(Integer integer) noexcept // NOLINT(google-explicit-constructor)
        : signed_(integer)
        , kind_(Kind::signedInteger) {}
    template <typename Integer,
              std::enable_if_t<std::is_integral_v<Integer> && std::is_unsigned_v<Integer>,
                               bool> = true>
    constexpr Value(Integer integer) noexcept // NOLINT(google-explicit-constructor)
        : unsigned_(integer)
        , kind_(Kind::unsignedInteger) {}

    static constexpr Value signedInteger(std::int64_t integer) noexcept { return {integer}; }
    static constexpr Value unsignedInteger(std::uint64_t integer) noexcept { return {integer}; }
    // The value that payload() and kind() describe, for compact storage.
    static Value fromPayload(Kind kind, std::uint64_t payload) noexcept;

    Kind kind() const noexcept { return kind_; }
    bool isInteger() const noexcept { return kind_ != Kind::real; }
    // The double's or the integer's 64 bits.
    std::uint64_t payload() const noexcept;

    // The nearest double; exact for doubles and for integers of up to 53 bits.
    double toDouble() const noexcept;
    // The value as a 64-bit integer of that signedness, when it is one that fits: a whole
    // double counts, a fraction, NaN or an integer outside the range does not.
    std::optional<std::int64_t> signedValue() const noexcept;
    std::optional<std::uint64_t> unsignedValue() const noexcept;
    bool isNegative() const noexcept;

    // Equal as numbers, whatever the kinds: 21 equals 21.0, 0 equals -0.0, NaN equals nothing.
    friend bool operator==(const Value& a, const Value& b) noexcept;

private:
    union {
        double real_;
        std::int64_t signed_;
        std::uint64_t unsigned_;
    };
    Kind kind_ = Kind::real;
};

// A number read as text, for the settings that are doubles: a scale, a time.
inline std::optional<double> toDouble(const std::optional<Value>& value) noexcept {
    return value ? std::optional(value->toDouble()) : std::nullopt;
}

} // namespace kestrin

// Consistent with the equality above: equal values have the same nearest double.
template <>
struct std::hash<kestrin::Value> {
    std::size_t operator()(const kestrin::Value& value) const noexcept {
        return std::hash<double>{}(value.toDouble());
    }
};
