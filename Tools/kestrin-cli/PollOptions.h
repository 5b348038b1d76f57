#pragma once

#include "CliOptions.h"
#include "Result.h"
#include "SerialConfiguration.h"

#include <optional>
#include <string>
#include <string_view>

namespace kestrin {

// What the command line of `kestrin-cli poll` or `kestrin-cli monitor` asks for, checked and
// ready to use: both run the application model on a project or list, one reading, the other
// listening to another master. The line settings are overrides: absent ones keep the project's.
struct PollOptions {
    std::string port;
    // A pseudo-terminal or other non-serial device may stand in for an adapter.
    bool testDevice = false;
    // At most one of the two; a poll has exactly one.
    std::optional<std::string> projectPath;
    std::optional<std::string> csvPath;
    // At most one of the two; without either, the run goes on until interrupted. A monitor has
    // no cycles, no gap and no JSON.
    std::optional<int> cycles;
    std::optional<double> seconds;
    std::optional<std::string> historyPath;
    std::optional<std::string> logPath;
    std::optional<int> maxGap;
    std::optional<int> baudRate;
    // Already checked: SerialConfiguration::withFrame accepts it.
    std::optional<std::string> frame;
    // Replaces the project's RS-485 direction when given.
    std::optional<RS485Direction> rs485;
    std::optional<int> timeoutMs;
    bool rawFrames = false;
    bool onlyProblems = false;
    bool timestamps = true;
    // The values as JSON Lines on standard output, the log on standard error.
    bool json = false;

    // The project's frame settings with the baud rate, frame and RS-485 direction of the command
    // line.
    SerialConfiguration serial(const SerialConfiguration& project) const;

    // The history and the log are written only when the run ends, which may be hours away: the
    // first of them that could not be written now, in a finished sentence naming it. Asks the
    // file system, so it is no part of check.
    std::optional<std::string> unwritableFile() const;

    // The options and the help of poll, and of monitor.
    static const CommandLine::Syntax& syntax();
    static const CommandLine::Syntax& monitorSyntax();

    // What the line of poll, or of monitor, gave, checked in the order of the help; a failure is
    // a finished sentence in the user's language.
    static Result<PollOptions, std::string> check(const CommandLine::Parsed& parsed);
    static Result<PollOptions, std::string> checkMonitor(const CommandLine::Parsed& parsed);
};

} // namespace kestrin
