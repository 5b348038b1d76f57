#include "JSONValue.h"

#include <cmath>
#include <limits>
#include <utility>

#include <nlohmann/json.hpp>

namespace kestrin::JSONValue {

namespace {

Error mismatch(std::string_view key, Error::Kind kind) {
    return Error(kind, std::string(key));
}

// A path step in front of a path: "polls" before "[0].name", "serial" before "dataBits".
std::string joined(std::string step, const std::string& path) {
    if (!path.empty() && !path.starts_with('[')) {
        step += '.';
    }
    return step + path;
}

// The whole number a JSON number holds, when it has one that fits in 64 bits.
std::optional<std::int64_t> wholeNumber(const nlohmann::json& value) {
    if (value.is_number_unsigned()) {
        const auto unsignedValue = value.get<std::uint64_t>();
        if (unsignedValue > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
            return std::nullopt;
        }
        return static_cast<std::int64_t>(unsignedValue);
    }
    if (value.is_number_integer()) {
        return value.get<std::int64_t>();
    }
    if (value.is_number_float()) {
        // 2^63 is the first double outside the range; the test is written so that NaN fails it.
        const double number = value.get<double>();
        constexpr double limit = 9223372036854775808.0;
        if (std::trunc(number) == number && number >= -limit && number < limit) {
            return static_cast<std::int64_t>(number);
        }
    }
    return std::nullopt;
}

// Nothing when the key is absent or null: both leave the default in place.
const nlohmann::json* member(const nlohmann::json& object, std::string_view key) {
    if (!object.is_object()) {
        return nullptr;
    }
    auto found = object.find(key);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

} // namespace

Error Error::inside(std::string_view key) && {
    path = joined(std::string(key), path);
    return std::move(*this);
}

Error Error::at(std::size_t index) && {
    path = joined("[" + std::to_string(index) + "]", path);
    return std::move(*this);
}

Field<std::string> string(const nlohmann::json& object, std::string_view key) {
    const nlohmann::json* value = member(object, key);
    if (value == nullptr) {
        return std::optional<std::string>();
    }
    if (!value->is_string()) {
        return mismatch(key, Error::Kind::expectedText);
    }
    return std::optional<std::string>(value->get<std::string>());
}

Field<std::int64_t> integer(const nlohmann::json& object, std::string_view key,
                            std::int64_t minimum, std::int64_t maximum) {
    const nlohmann::json* value = member(object, key);
    if (value == nullptr) {
        return std::optional<std::int64_t>();
    }
    const std::optional<std::int64_t> whole = wholeNumber(*value);
    if (!whole || *whole < minimum || *whole > maximum) {
        Error error = mismatch(key, Error::Kind::expectedInteger);
        error.minimum = minimum;
        error.maximum = maximum;
        return error;
    }
    return whole;
}

Field<Value> value(const nlohmann::json& object, std::string_view key) {
    const nlohmann::json* value = member(object, key);
    if (value == nullptr) {
        return std::optional<Value>();
    }
    if (value->is_number_unsigned()) {
        return std::optional(Value::unsignedInteger(value->get<std::uint64_t>()));
    }
    if (value->is_number_integer()) {
        return std::optional(Value::signedInteger(value->get<std::int64_t>()));
    }
    if (value->is_number()) {
        return std::optional<Value>(value->get<double>());
    }
    if (value->is_string()) {
        const auto& text = value->get_ref<const std::string&>();
        if (text == "nan") {
            return std::optional<Value>(std::numeric_limits<double>::quiet_NaN());
        }
        if (text == "inf") {
            return std::optional<Value>(std::numeric_limits<double>::infinity());
        }
        if (text == "-inf") {
            return std::optional<Value>(-std::numeric_limits<double>::infinity());
        }
    }
    return mismatch(key, Error::Kind::expectedNumber);
}

Field<double> number(const nlohmann::json& object, std::string_view key) {
    auto read = value(object, key);
    if (!read.ok()) {
        return read.error();
    }
    if (!read.value()) {
        return std::optional<double>();
    }
    return std::optional(read.value()->toDouble());
}

Field<double> finiteNumber(const nlohmann::json& object, std::string_view key) {
    auto read = number(object, key);
    if (read.ok() && read.value() && !std::isfinite(*read.value())) {
        return mismatch(key, Error::Kind::expectedFiniteNumber);
    }
    return read;
}

Field<bool> boolean(const nlohmann::json& object, std::string_view key) {
    const nlohmann::json* value = member(object, key);
    if (value == nullptr) {
        return std::optional<bool>();
    }
    if (!value->is_boolean()) {
        return mismatch(key, Error::Kind::expectedBoolean);
    }
    return std::optional<bool>(value->get<bool>());
}

Field<Uuid> uuid(const nlohmann::json& object, std::string_view key) {
    const nlohmann::json* value = member(object, key);
    if (value == nullptr) {
        return std::optional<Uuid>();
    }
    std::optional<Uuid> parsed;
    if (value->is_string()) {
        parsed = Uuid::parse(value->get_ref<const std::string&>());
    }
    if (!parsed) {
        return mismatch(key, Error::Kind::expectedUUID);
    }
    return parsed;
}

Field<const nlohmann::json*> object(const nlohmann::json& object, std::string_view key) {
    const nlohmann::json* value = member(object, key);
    if (value != nullptr && !value->is_object()) {
        return mismatch(key, Error::Kind::expectedObject);
    }
    return value == nullptr ? std::optional<const nlohmann::json*>() : value;
}

Field<const nlohmann::json*> list(const nlohmann::json& object, std::string_view key) {
    const nlohmann::json* value = member(object, key);
    if (value != nullptr && !value->is_array()) {
        return mismatch(key, Error::Kind::expectedList);
    }
    return value == nullptr ? std::optional<const nlohmann::json*>() : value;
}

nlohmann::json number(const Value& exact) {
    switch (exact.kind()) {
    case Value::Kind::signedInteger:
        return static_cast<std::int64_t>(exact.payload());
    case Value::Kind::unsignedInteger:
        return exact.payload();
    case Value::Kind::real:
        break;
    }
    const double value = exact.toDouble();
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value > 0 ? "inf" : "-inf";
    }
    return value;
}

} // namespace kestrin::JSONValue
