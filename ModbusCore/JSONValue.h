#pragma once

#include "Result.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace kestrin::JSONValue {

// Typed reads of one key of a JSON object for the project decoders. Each returns nothing when
// the key is absent, the value when it has the right type, and otherwise an error that names
// the key ("unitID: expected an integer from 0 to 255").

using Error = std::string;

template <typename T>
using Field = Result<std::optional<T>, Error>;

Field<std::string> string(const nlohmann::json& object, std::string_view key);
// A whole number in [minimum, maximum]; a float with no fraction counts as whole.
Field<std::int64_t> integer(const nlohmann::json& object, std::string_view key,
                            std::int64_t minimum, std::int64_t maximum);
// A number, or one of the texts "nan", "inf" and "-inf" that number() writes for them.
Field<double> number(const nlohmann::json& object, std::string_view key);

// A double as JSON: a number when finite, since JSON has no literal for the others.
nlohmann::json number(double value);

} // namespace kestrin::JSONValue
