#include "Value.h"

#include <bit>
#include <cmath>
#include <limits>

namespace kestrin {

namespace {

// 2^63 and 2^64: the first doubles outside int64 and uint64. Written so that NaN fails the tests.
constexpr double twoTo63 = 9223372036854775808.0;
constexpr double twoTo64 = 18446744073709551616.0;

bool isWhole(double real) noexcept {
    return std::isfinite(real) && std::trunc(real) == real;
}

} // namespace

Value Value::fromPayload(Kind kind, std::uint64_t payload) noexcept {
    switch (kind) {
    case Kind::signedInteger:
        return signedInteger(static_cast<std::int64_t>(payload));
    case Kind::unsignedInteger:
        return unsignedInteger(payload);
    case Kind::real:
        break;
    }
    return {std::bit_cast<double>(payload)};
}

std::uint64_t Value::payload() const noexcept {
    switch (kind_) {
    case Kind::signedInteger:
        return static_cast<std::uint64_t>(signed_);
    case Kind::unsignedInteger:
        return unsigned_;
    case Kind::real:
        break;
    }
    return std::bit_cast<std::uint64_t>(real_);
}

double Value::toDouble() const noexcept {
    switch (kind_) {
    case Kind::signedInteger:
        return static_cast<double>(signed_);
    case Kind::unsignedInteger:
        return static_cast<double>(unsigned_);
    case Kind::real:
        break;
    }
    return real_;
}

std::optional<std::int64_t> Value::signedValue() const noexcept {
    switch (kind_) {
    case Kind::signedInteger:
        return signed_;
    case Kind::unsignedInteger:
        if (unsigned_ > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
            return std::nullopt;
        }
        return static_cast<std::int64_t>(unsigned_);
    case Kind::real:
        break;
    }
    if (!isWhole(real_) || real_ < -twoTo63 || real_ >= twoTo63) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(real_);
}

std::optional<std::uint64_t> Value::unsignedValue() const noexcept {
    switch (kind_) {
    case Kind::signedInteger:
        if (signed_ < 0) {
            return std::nullopt;
        }
        return static_cast<std::uint64_t>(signed_);
    case Kind::unsignedInteger:
        return unsigned_;
    case Kind::real:
        break;
    }
    if (!isWhole(real_) || real_ < 0 || real_ >= twoTo64) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(real_);
}

bool Value::isNegative() const noexcept {
    switch (kind_) {
    case Kind::signedInteger:
        return signed_ < 0;
    case Kind::unsignedInteger:
        return false;
    case Kind::real:
        break;
    }
    return real_ < 0;
}

bool operator==(const Value& a, const Value& b) noexcept {
    if (!a.isInteger() && !b.isInteger()) {
        return a.real_ == b.real_;
    }
    // One side is an integer, so equal values are whole and share the sign of that integer; a
    // non-negative value fits uint64 and a negative one int64, and there they compare exactly.
    if (a.isNegative() != b.isNegative()) {
        return false;
    }
    if (a.isNegative()) {
        const auto x = a.signedValue();
        const auto y = b.signedValue();
        return x && y && *x == *y;
    }
    const auto x = a.unsignedValue();
    const auto y = b.unsignedValue();
    return x && y && *x == *y;
}

} // namespace kestrin
