#include "JSONValue.h"

#include <cmath>
#include <limits>

#include <nlohmann/json.hpp>

namespace kestrin::JSONValue {

namespace {

Error mismatch(std::string_view key, std::string_view expectation) {
    std::string message(key);
    message += ": expected ";
    message += expectation;
    return message;
}

const nlohmann::json* member(const nlohmann::json& object, std::string_view key) {
    auto found = object.find(key);
    return found == object.end() ? nullptr : &*found;
}

} // namespace

Field<std::string> string(const nlohmann::json& object, std::string_view key) {
    const nlohmann::json* value = member(object, key);
    if (value == nullptr) {
        return std::optional<std::string>();
    }
    if (!value->is_string()) {
        return mismatch(key, "a string");
    }
    return std::optional<std::string>(value->get<std::string>());
}

Field<std::int64_t> integer(const nlohmann::json& object, std::string_view key,
                            std::int64_t minimum, std::int64_t maximum) {
    const nlohmann::json* value = member(object, key);
    if (value == nullptr) {
        return std::optional<std::int64_t>();
    }
    std::string expectation =
        "an integer from " + std::to_string(minimum) + " to " + std::to_string(maximum);
    std::optional<std::int64_t> whole;
    if (value->is_number_unsigned()) {
        auto unsignedValue = value->get<std::uint64_t>();
        if (unsignedValue <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
            whole = static_cast<std::int64_t>(unsignedValue);
        }
    } else if (value->is_number_integer()) {
        whole = value->get<std::int64_t>();
    } else if (value->is_number_float()) {
        double number = value->get<double>();
        if (std::trunc(number) == number && number >= static_cast<double>(minimum) &&
            number <= static_cast<double>(maximum)) {
            whole = static_cast<std::int64_t>(number);
        }
    }
    if (!whole || *whole < minimum || *whole > maximum) {
        return mismatch(key, expectation);
    }
    return std::optional<std::int64_t>(*whole);
}

Field<double> number(const nlohmann::json& object, std::string_view key) {
    const nlohmann::json* value = member(object, key);
    if (value == nullptr) {
        return std::optional<double>();
    }
    if (value->is_number()) {
        return std::optional<double>(value->get<double>());
    }
    if (value->is_string()) {
        const auto& text = value->get_ref<const std::string&>();
        if (text == "nan") {
            return std::optional<double>(std::numeric_limits<double>::quiet_NaN());
        }
        if (text == "inf") {
            return std::optional<double>(std::numeric_limits<double>::infinity());
        }
        if (text == "-inf") {
            return std::optional<double>(-std::numeric_limits<double>::infinity());
        }
    }
    return mismatch(key, "a number");
}

nlohmann::json number(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value > 0 ? "inf" : "-inf";
    }
    return value;
}

} // namespace kestrin::JSONValue
