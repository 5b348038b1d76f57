#pragma once

#include "Result.h"
#include "Uuid.h"
#include "Value.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace kestrin::JSONValue {

// What is wrong in a decoded document and where, so that the reader can show it in the user's
// language and the user can find the place in the file.
struct Error {
    enum class Kind : std::uint8_t {
        notJSON,
        expectedObject,
        expectedList,
        expectedText,
        expectedNumber,
        expectedFiniteNumber,
        expectedInteger, // from minimum to maximum
        expectedBoolean,
        expectedUUID,
        missing,      // a required key
        unknownValue, // found is not one of choices
        emptyList,
    };

    Error() = default;
    explicit Error(Kind kind, std::string path = {})
        : kind(kind)
        , path(std::move(path)) {}

    Kind kind = Kind::notJSON;
    // As the user finds it in the file: "polls[0].datapoints[3].scale"; empty for the document.
    std::string path;
    std::string found;   // unknownValue: the text as written
    std::string choices; // unknownValue: the accepted texts, ", "-separated
    std::int64_t minimum = 0;
    std::int64_t maximum = 0;

    // The same error seen from the object that holds the key, or the list that holds the index.
    Error inside(std::string_view key) &&;
    Error at(std::size_t index) &&;

    friend bool operator==(const Error&, const Error&) = default;
};

// Typed reads of one key of a JSON object for the document decoders. A key that is absent or
// null gives nothing, so that its default applies; a value of the wrong type is an error at the
// key.
template <typename T>
using Field = Result<std::optional<T>, Error>;

Field<std::string> string(const nlohmann::json& object, std::string_view key);
// A whole number in [minimum, maximum]; a float with no fraction counts as whole.
Field<std::int64_t> integer(const nlohmann::json& object, std::string_view key,
                            std::int64_t minimum, std::int64_t maximum);
// A number exactly as written: a JSON integer as the 64-bit integer it is, any other number as a
// double; or one of the texts "nan", "inf" and "-inf" that number() writes for them.
Field<Value> value(const nlohmann::json& object, std::string_view key);
// The same as a double.
Field<double> number(const nlohmann::json& object, std::string_view key);
// A number that is neither infinite nor NaN, for values that later arithmetic relies on.
Field<double> finiteNumber(const nlohmann::json& object, std::string_view key);
Field<bool> boolean(const nlohmann::json& object, std::string_view key);
// The canonical text of a UUID, in either case.
Field<Uuid> uuid(const nlohmann::json& object, std::string_view key);
// The object or list itself, for the decoder of what it holds.
Field<const nlohmann::json*> object(const nlohmann::json& object, std::string_view key);
Field<const nlohmann::json*> list(const nlohmann::json& object, std::string_view key);

// The value when it is present, else a missing-key error.
template <typename T>
Result<T, Error> required(Field<T> field, std::string_view key) {
    if (!field.ok()) {
        return field.error();
    }
    if (!field.value()) {
        return Error(Error::Kind::missing, std::string(key));
    }
    return *std::move(field).value();
}

// The accepted texts of an enumeration, for the unknown-value error: "single, multiple".
template <typename Enumeration>
std::string choices() {
    std::string text;
    for (auto value : Enumeration::allCases) {
        text += text.empty() ? "" : ", ";
        text += Enumeration(value).rawValue();
    }
    return text;
}

// An enumeration by its raw value.
template <typename Enumeration>
Field<Enumeration> enumeration(const nlohmann::json& object, std::string_view key) {
    auto text = string(object, key);
    if (!text.ok()) {
        return text.error();
    }
    if (!text.value()) {
        return std::optional<Enumeration>();
    }
    auto parsed = Enumeration::fromRawValue(*text.value());
    if (!parsed) {
        Error error(Error::Kind::unknownValue, std::string(key));
        error.found = *text.value();
        error.choices = choices<Enumeration>();
        return error;
    }
    return std::optional<Enumeration>(*parsed);
}

// Each element of a list, decoded by decode; an error names the list and the element's index
// ("polls[2].name"). List is nlohmann::json, a parameter only so that this header needs no more
// than its forward declaration.
template <typename T, typename List, typename Decode>
Result<std::vector<T>, Error> elements(const List& list, std::string_view key, Decode decode) {
    std::vector<T> values;
    for (std::size_t index = 0; index < list.size(); ++index) {
        auto decoded = decode(list[index]);
        if (!decoded) {
            return Error(decoded.error()).at(index).inside(key);
        }
        values.push_back(std::move(decoded).value());
    }
    return values;
}

// A value as JSON: integers as integers, finite doubles as numbers, and the texts above for the
// others, since JSON has no literal for them.
nlohmann::json number(const Value& value);

} // namespace kestrin::JSONValue
