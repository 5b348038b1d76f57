#pragma once

#include "CommandLine.h"
#include "Datapoint.h"
#include "Result.h"
#include "SerialConfiguration.h"
#include "WriteMode.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestrin {

// The options poll shares with read and write.
namespace SharedOptions {
inline constexpr CommandLine::Option port{"port", "PATH", "serial device, such as /dev/ttyUSB0"};
inline constexpr CommandLine::Option testDevice{
    "test-device", "", "accept a pseudo-terminal or another non-serial device"};
inline constexpr CommandLine::Option rs485{
    "rs485", "LEVEL",
    "RTS switches the RS-485 direction, LEVEL (high or low) while\n"
    "sending; for the UARTs of boards, not for USB adapters"};
inline constexpr CommandLine::Option rs485Delays{
    "rs485-delays", "MS,MS",
    "with --rs485: RTS delays before and after sending, 0-100 ms\n"
    "each (default 0,0)"};
} // namespace SharedOptions

// What the command line of one read or write asks for, checked and ready to use.
struct CliOptions {
    enum class Command { read, write };

    Command command = Command::read;
    std::string port;
    // A pseudo-terminal or other non-serial device may stand in for an adapter.
    bool testDevice = false;
    SerialConfiguration serial;
    int timeoutMs = 1000;
    // Unit, table, address, type, order, scale, format and engineering unit of the value.
    Datapoint datapoint;
    // write only: the engineering value typed, already checked against the datapoint's type.
    Value value;
    WriteMode writeMode = WriteMode::single;
    // read only: that many values of the type at consecutive addresses, each printed with its
    // address; absent for the one value printed alone.
    std::optional<int> count;
    // read only: the reading repeats every intervalMs until stopped or cycles times.
    std::optional<int> intervalMs;
    std::optional<int> cycles;
    // One JSON object (or array) per line instead of text.
    bool json = false;

    // The response time-out as the link takes it.
    double timeoutSeconds() const noexcept { return timeoutMs / 1000.0; }

    // "read" or "write".
    static std::optional<Command> commandNamed(std::string_view word) noexcept;

    // Its options and its help.
    static const CommandLine::Syntax& syntax(Command command);

    // What the line of command gave, checked in the order of the help; a failure is a finished
    // sentence in the user's language.
    static Result<CliOptions, std::string> check(Command command,
                                                 const CommandLine::Parsed& parsed);

    // A decimal integer from minimum to maximum with an optional sign, nothing else around it but
    // white space; the rule of every whole-number option of every command.
    static std::optional<int> wholeNumber(std::string_view text, std::int64_t minimum,
                                          std::int64_t maximum);

    // --baud as typed, when given: a positive whole number, which the adapter may still refuse.
    static Result<std::optional<int>, std::string> baudRate(const CommandLine::Parsed& parsed);
    // --rs485 and --rs485-delays, when given; the delays alone are refused, as they would
    // silently do nothing.
    static Result<std::optional<RS485Direction>, std::string>
    rs485(const CommandLine::Parsed& parsed);
    // --baud, --frame and the RS-485 options, when given, over serial: the line of every
    // command that opens the port itself.
    static Result<void, std::string> applyLine(const CommandLine::Parsed& parsed,
                                               SerialConfiguration& serial);
};

} // namespace kestrin
