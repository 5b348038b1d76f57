#include "SerialConfiguration.h"

#include "JSONValue.h"
#include "SerialTiming.h"
#include "Text.h"

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

nlohmann::json SerialConfiguration::json() const {
    return nlohmann::json{{"baudRate", baudRate},
                          {"dataBits", dataBits},
                          {"parity", std::string(parity.rawValue())},
                          {"stopBits", stopBits}};
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
    return configuration;
}

} // namespace kestrin
