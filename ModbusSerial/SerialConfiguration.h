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

// The kernel's RS-485 mode for a board's UART, whose driver raises or lowers RTS to switch the
// transceiver to sending. USB adapters switch by themselves and have no such mode.
struct RS485Direction {
    // The transceivers of boards differ in the level that enables their driver.
    bool rtsHighWhileSending = true;
    // Time for the transceiver to settle before the first bit and after the last one.
    int delayBeforeSendMs = 0;
    int delayAfterSendMs = 0;

    // The kernel's serial core takes no longer delay (RS485_MAX_RTS_DELAY); it would shorten one
    // without saying so.
    static constexpr int longestDelayMs = 100;

    // Each delay cut to longestDelayMs, as the kernel would cut it.
    RS485Direction limited() const noexcept;

    friend bool operator==(const RS485Direction&, const RS485Direction&) = default;
};

// The frame settings a port is opened with; the default is the Modbus RTU default 9600 8E1
// (Modbus over Serial Line V1.02, section 2.5.1: even parity required as the default).
struct SerialConfiguration {
    int baudRate = 9600;
    // 7 or 8; any other value is configured as 8.
    int dataBits = 8;
    Parity parity = Parity::even;
    // 2 means two stop bits, anything else one.
    int stopBits = 1;
    // Absent leaves the port's RS-485 mode as the system set it.
    std::optional<RS485Direction> rs485 = std::nullopt;

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

    // All four keys, the parity as its raw value, and "rs485" only when set, so that files stay
    // as they were for everyone who does not use it.
    nlohmann::json json() const;
    // All four keys are required (null counts as missing); a missing key, a wrong type or an
    // unknown parity fails at that key. "rs485" is optional; when given, all three of its keys
    // are required and the delays are not negative; one above longestDelayMs is kept, for the
    // project's reader to cut to it with RS485Direction::limited and say so.
    static Result<SerialConfiguration, JSONValue::Error> fromJSON(const nlohmann::json& object);

    friend bool operator==(const SerialConfiguration&, const SerialConfiguration&) = default;
};

} // namespace kestrin
