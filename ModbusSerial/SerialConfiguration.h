#pragma once

#include "JSONValue.h"
#include "Parity.h"
#include "Result.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace kestrin {

// The frame settings a port is opened with; the default is the Modbus RTU default 9600 8E1
// (Modbus over Serial Line V1.02, section 2.5.1: even parity required as the default).
struct SerialConfiguration {
    int baudRate = 9600;
    // 7 or 8; any other value is configured as 8.
    int dataBits = 8;
    Parity parity = Parity::even;
    // 2 means two stop bits, anything else one.
    int stopBits = 1;

    // The rates the baud-rate picker offers; any other positive rate is still tried at open.
    static constexpr std::array standardBaudRates{1200,  2400,  4800,  9600,   14400,
                                                  19200, 38400, 57600, 115200, 230400};

    // Start bit + data bits + parity bit when enabled + stop bits: 8E1 gives 11.
    int bitsPerCharacter() const noexcept;
    // "8E1", "8N2", "7O1".
    std::string frameDescription() const;
    // "9600 8E1".
    std::string shortDescription() const;
    // The inverse of frameDescription, case-insensitive and trimmed ("8n2"), keeping the baud
    // rate; nothing for anything but 7 or 8 data bits, N/E/O and 1 or 2 stop bits.
    std::optional<SerialConfiguration> withFrame(std::string_view text) const;

    // All four keys, the parity as its raw value.
    nlohmann::json json() const;
    // All four keys are required (null counts as missing); a missing key, a wrong type or an
    // unknown parity fails at that key.
    static Result<SerialConfiguration, JSONValue::Error> fromJSON(const nlohmann::json& object);

    friend bool operator==(const SerialConfiguration&, const SerialConfiguration&) = default;
};

} // namespace kestrin
