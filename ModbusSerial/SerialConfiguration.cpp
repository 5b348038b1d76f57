#include "SerialConfiguration.h"

#include "JSONValue.h"
#include "SerialTiming.h"
#include "Text.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

namespace kestrin {

int SerialConfiguration::bitsPerCharacter() const noexcept {
    return SerialTiming::bitsPerCharacter(dataBits, parity.isEnabled(), stopBits);
}

std::string SerialConfiguration::frameDescription() const {
    return std::to_string(dataBits) + parity.letter() + std::to_string(stopBits);
}

std::string SerialConfiguration::shortDescription() const {
    return std::to_string(baudRate) + ' ' + frameDescription();
}

std::optional<SerialConfiguration> SerialConfiguration::withFrame(std::string_view text) const {
    text = Text::trimmed(text);
    if (text.size() != 3 || (text[0] != '7' && text[0] != '8') ||
        (text[2] != '1' && text[2] != '2')) {
        return std::nullopt;
    }
    SerialConfiguration result = *this;
    switch (text[1]) {
    case 'N':
    case 'n':
        result.parity = Parity::none;
        break;
    case 'E':
    case 'e':
        result.parity = Parity::even;
        break;
    case 'O':
    case 'o':
        result.parity = Parity::odd;
        break;
    default:
        return std::nullopt;
    }
    result.dataBits = text[0] - '0';
    result.stopBits = text[2] - '0';
    return result;
}

RS485Direction RS485Direction::limited() const noexcept {
    RS485Direction result = *this;
    result.delayBeforeSendMs = std::min(delayBeforeSendMs, longestDelayMs);
    result.delayAfterSendMs = std::min(delayAfterSendMs, longestDelayMs);
    return result;
}

namespace {

constexpr std::string_view rtsHigh = "high";
constexpr std::string_view rtsLow = "low";

Result<RS485Direction, JSONValue::Error> rs485FromJSON(const nlohmann::json& object) {
    const auto level =
        JSONValue::required(JSONValue::string(object, "rtsWhileSending"), "rtsWhileSending");
    if (!level) {
        return level.error();
    }
    if (level.value() != rtsHigh && level.value() != rtsLow) {
        JSONValue::Error error(JSONValue::Error::Kind::unknownValue, "rtsWhileSending");
        error.found = level.value();
        error.choices = std::string(rtsHigh) + ", " + std::string(rtsLow);
        return error;
    }
    RS485Direction direction{.rtsHighWhileSending = level.value() == rtsHigh};
    for (auto [key, field] : {std::pair{"delayBeforeSendMs", &RS485Direction::delayBeforeSendMs},
                              std::pair{"delayAfterSendMs", &RS485Direction::delayAfterSendMs}}) {
        // A longer delay is read as it stands; whoever takes the project cuts it and says so.
        const auto value = JSONValue::required(
            JSONValue::integer(object, key, 0, std::numeric_limits<int>::max()), key);
        if (!value) {
            return value.error();
        }
        direction.*field = static_cast<int>(value.value());
    }
    return direction;
}

} // namespace

nlohmann::json SerialConfiguration::json() const {
    nlohmann::json object{{"baudRate", baudRate},
                          {"dataBits", dataBits},
                          {"parity", std::string(parity.rawValue())},
                          {"stopBits", stopBits}};
    if (rs485) {
        object["rs485"] = {{"rtsWhileSending", rs485->rtsHighWhileSending ? rtsHigh : rtsLow},
                           {"delayBeforeSendMs", rs485->delayBeforeSendMs},
                           {"delayAfterSendMs", rs485->delayAfterSendMs}};
    }
    return object;
}

Result<SerialConfiguration, JSONValue::Error>
SerialConfiguration::fromJSON(const nlohmann::json& object) {
    if (!object.is_object()) {
        return JSONValue::Error(JSONValue::Error::Kind::expectedObject);
    }
    SerialConfiguration configuration;
    for (auto [key, field] : {std::pair{"baudRate", &SerialConfiguration::baudRate},
                              std::pair{"dataBits", &SerialConfiguration::dataBits},
                              std::pair{"stopBits", &SerialConfiguration::stopBits}}) {
        const auto value =
            JSONValue::required(JSONValue::integer(object, key, std::numeric_limits<int>::min(),
                                                   std::numeric_limits<int>::max()),
                                key);
        if (!value) {
            return value.error();
        }
        configuration.*field = static_cast<int>(value.value());
    }
    const auto parity =
        JSONValue::required(JSONValue::enumeration<Parity>(object, "parity"), "parity");
    if (!parity) {
        return parity.error();
    }
    configuration.parity = parity.value();
    const auto rs485 = JSONValue::object(object, "rs485");
    if (!rs485) {
        return rs485.error();
    }
    if (rs485.value()) {
        auto direction = rs485FromJSON(**rs485.value());
        if (!direction) {
            return JSONValue::Error(direction.error()).inside("rs485");
        }
        configuration.rs485 = direction.value();
    }
    return configuration;
}

} // namespace kestrin
