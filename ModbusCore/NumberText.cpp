#include "NumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <locale.h>
#include <string_view>

namespace kestrin::NumberText {

namespace {

// The shortest digits that read back as the same number: written out where a spreadsheet shows
// them so, with an exponent for the very large and very small.
template <typename Real>
std::string shortest(Real value) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value > 0 ? "inf" : "-inf";
    }
    const Real magnitude = std::abs(value);
    const bool written = magnitude == 0 || (magnitude >= Real(1e-6) && magnitude < Real(1e21));
    // Up to 21 integer digits, or six leading zeros and seventeen significant ones, with a sign.
    std::array<char, 48> buffer{};
    const auto end = written ? std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                             std::chars_format::fixed)
                             : std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), end.ptr};
}

// Digits with an optional sign, as the integer they are, when it fits its 64-bit kind.
std::optional<Value> exactInteger(std::string_view text) noexcept {
    const bool negative = text.starts_with('-');
    const std::string_view digits = text.substr(negative ? 1 : 0);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) {
        return std::nullopt;
    }
    const char* end = text.data() + text.size();
    if (negative) {
        std::int64_t result = 0;
        auto [stop, error] = std::from_chars(text.data(), end, result);
        if (error != std::errc() || stop != end) {
            return std::nullopt;
        }
        return Value::signedInteger(result);
    }
    std::uint64_t result = 0;
    auto [stop, error] = std::from_chars(text.data(), end, result);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return Value::unsignedInteger(result);
}

// A number from_chars found well-formed but outside the doubles: strtod gives the infinity or
// the zero it rounds to, with its sign. Its own C locale, whatever the process has set.
double outOfRange(std::string_view text) {
    static const locale_t cLocale = newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(nullptr));
    const std::string terminated(text);
    return strtod_l(terminated.c_str(), nullptr, cLocale);
}

} // namespace

std::optional<Value> number(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('+') || text.starts_with('-')) {
            return std::nullopt;
        }
    }
    if (auto integer = exactInteger(text)) {
        return integer;
    }
    double result = 0;
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, result);
    if (stop != end || (error != std::errc() && error != std::errc::result_out_of_range)) {
        return std::nullopt;
    }
    if (error == std::errc::result_out_of_range) {
        return outOfRange(text);
    }
    return result;
}

std::optional<std::uint64_t> unsignedInteger(std::string_view text, int radix) noexcept {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    if (text.empty()) {
        return std::nullopt;
    }
    std::uint64_t result = 0;
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, result, radix);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return result;
}

std::string plain(const Value& value) {
    switch (value.kind()) {
    case Value::Kind::signedInteger:
        return std::to_string(static_cast<std::int64_t>(value.payload()));
    case Value::Kind::unsignedInteger:
        return std::to_string(value.payload());
    case Value::Kind::real:
        break;
    }
    const double real = value.toDouble();
    // Below 1e15 every whole double is exact and far inside int64.
    if (std::trunc(real) == real && std::abs(real) < 1e15) {
        return std::to_string(static_cast<std::int64_t>(real));
    }
    return shortest(real);
}

std::string single(float value) {
    return shortest(value);
}

std::string fixed(double value, int decimals) {
    // 309 digits for the largest double, a sign, a point and the decimals.
    std::array<char, 330> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::fixed, decimals)
                         .ptr;
    std::string_view text(buffer.data(), end);
    if (text.starts_with('-') && text.find_first_not_of("-0.") == std::string_view::npos) {
        text.remove_prefix(1);
    }
    return std::string(text);
}

std::string significant(double value) {
    if (value == 0) {
        return "0";
    }
    std::array<char, 32> buffer{};
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                       std::chars_format::scientific, 6);
    std::string_view scientific(buffer.data(), written.ptr);
    const bool negative = scientific.starts_with('-');
    if (negative) {
        scientific.remove_prefix(1);
    }
    const auto exponentAt = scientific.find('e');
    std::string digits;
    digits += scientific[0];
    digits += scientific.substr(2, exponentAt - 2);
    int exponent = 0;
    std::string_view exponentText = scientific.substr(exponentAt + 1);
    if (exponentText.starts_with('+')) {
        exponentText.remove_prefix(1);
    }
    std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);
    while (digits.size() > 1 && digits.back() == '0') {
        digits.pop_back();
    }

    std::string result = negative ? "-" : "";
    const auto length = static_cast<int>(digits.size());
    if (exponent >= -6 && exponent < 15) {
        if (exponent < 0) {
            result += "0.";
            result.append(static_cast<std::size_t>(-exponent - 1), '0');
            result += digits;
        } else if (exponent + 1 >= length) {
            result += digits;
            result.append(static_cast<std::size_t>(exponent + 1 - length), '0');
        } else {
            const int integerDigits = exponent + 1;
            result += digits.substr(0, static_cast<std::size_t>(integerDigits));
            result += '.';
            result += digits.substr(static_cast<std::size_t>(integerDigits));
        }
        return result;
    }
    result += digits[0];
    if (length > 1) {
        result += '.';
        result += digits.substr(1);
    }
    // Two exponent digits at least, as printf writes them: 1e+20, 2.5e-09.
    result += exponent < 0 ? "e-" : "e+";
    result += std::abs(exponent) < 10 ? "0" : "";
    result += std::to_string(std::abs(exponent));
    return result;
}

std::string binary(std::uint64_t bits, int digits) {
    std::string result;
    for (int bit = digits - 1; bit >= 0; --bit) {
        result += ((bits >> bit) & 1) != 0 ? '1' : '0';
        if (bit % 4 == 0 && bit != 0) {
            result += ' ';
        }
    }
    return result;
}

std::string hexadecimal(std::uint64_t bits, int digits) {
    std::string result = "0x";
    for (int digit = digits - 1; digit >= 0; --digit) {
        result += "0123456789ABCDEF"[(bits >> (4 * digit)) & 0xF];
    }
    return result;
}

} // namespace kestrin::NumberText
