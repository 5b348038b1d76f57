#include "JsonLines.h"

#include "JSONValue.h"
#include "NumberStyle.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace kestrin::JsonLines {

namespace {

std::string_view failureName(PollFailure::Kind kind) {
    switch (kind) {
    case PollFailure::Kind::unexpectedUnit:
        return "unexpected-unit";
    case PollFailure::Kind::unexpectedFunction:
        return "unexpected-function";
    case PollFailure::Kind::exception:
        return "exception";
    case PollFailure::Kind::timeout:
        return "timeout";
    case PollFailure::Kind::crcMismatch:
        return "crc";
    case PollFailure::Kind::malformed:
        return "malformed";
    }
    return "malformed";
}

nlohmann::json number(const Datapoint& datapoint, const Value& value) {
    if (datapoint.table().isBit()) {
        return value.toDouble() != 0;
    }
    if (!value.isInteger() && !std::isfinite(value.toDouble())) {
        return nullptr;
    }
    if (datapoint.scale != 0 && datapoint.scale != 1) {
        // A scaled value has the digits the scale gives it, not the noise of the multiplication
        // (234 x 0.1 is 23.400000000000002 as a double).
        const double power = std::pow(10.0, datapoint.decimals());
        return std::round(value.toDouble() * power) / power;
    }
    return JSONValue::number(value);
}

} // namespace

std::string isoTime(std::int64_t msSinceEpoch) {
    // Rounded down, so that a time before 1970 keeps positive milliseconds.
    const std::int64_t wholeSeconds =
        msSinceEpoch >= 0 ? msSinceEpoch / 1000 : (msSinceEpoch - 999) / 1000;
    const auto seconds = static_cast<std::time_t>(wholeSeconds);
    const auto milliseconds = static_cast<int>(msSinceEpoch - wholeSeconds * 1000);
    std::tm local{};
    localtime_r(&seconds, &local);
    char date[32];
    std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    const int offsetMinutes = static_cast<int>(std::labs(local.tm_gmtoff) / 60 % (24L * 60));
    char text[96];
    std::snprintf(text, sizeof text, "%s.%03d%c%02d:%02d", date, milliseconds % 1000,
                  local.tm_gmtoff < 0 ? '-' : '+', offsetMinutes / 60, offsetMinutes % 60);
    return text;
}

std::int64_t nowMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

void addStatus(nlohmann::json& object, const std::optional<PollFailure>& failure) {
    object["status"] = failure ? failureName(failure->kind) : "ok";
    if (failure && failure->kind == PollFailure::Kind::exception) {
        object["exception"] = failure->value;
    }
}

nlohmann::json reading(const Datapoint& datapoint, const std::optional<Value>& value,
                       std::span<const std::uint16_t> raw, std::int64_t msSinceEpoch) {
    nlohmann::json object{
        {"time", isoTime(msSinceEpoch)},
        {"unit", datapoint.unitID},
        {"table", datapoint.table().code()},
        {"address", datapoint.address},
        {"type", datapoint.dataType.rawValue()},
        {"value", value ? number(datapoint, *value) : nlohmann::json()},
    };
    if (value) {
        object["text"] = datapoint.formatted(*value, NumberStyle::current());
    }
    if (!datapoint.engineeringUnit.empty()) {
        object["eu"] = datapoint.engineeringUnit;
    }
    object["raw"] = std::vector<std::uint16_t>(raw.begin(), raw.end());
    return object;
}

void print(const nlohmann::json& object, std::ostream& out) {
    out << object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n'
        << std::flush;
}

} // namespace kestrin::JsonLines
