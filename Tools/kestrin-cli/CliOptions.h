#pragma once

#include "Datapoint.h"
#include "Result.h"
#include "SerialConfiguration.h"
#include "WriteMode.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kestrin {

// A command line that cannot be run. message is a finished sentence for the user where the text
// catalogue has one; argument is the offending option as typed ("--frame 9E1"), or the name of a
// missing one.
struct UsageError {
    std::string message;
    std::string argument;
    friend bool operator==(const UsageError&, const UsageError&) = default;
};

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

    // The response time-out as the link takes it.
    double timeoutSeconds() const noexcept { return timeoutMs / 1000.0; }

    // "read" or "write".
    static std::optional<Command> commandNamed(std::string_view word) noexcept;

    // The options after the command word. An option takes its value as the next argument or
    // after "=" (--unit=3); the last of a repeated option wins.
    static Result<CliOptions, UsageError> parse(Command command,
                                                std::span<const std::string_view> arguments);

    // A decimal integer from minimum to maximum with an optional sign, nothing else around it but
    // white space; the rule of every whole-number option of every command.
    static std::optional<int> wholeNumber(std::string_view text, std::int64_t minimum,
                                          std::int64_t maximum);

    // The syntax of every command: technical, the same in every language.
    static std::string usage();
};

} // namespace kestrin
