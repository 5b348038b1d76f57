#include "PollOptions.h"

#include "Datapoint.h"
#include "L10n.h"

#include <array>
#include <cstdint>
#include <limits>

namespace kestrin {

namespace {

using CommandLine::Option;
using CommandLine::Parsed;

constexpr std::array options{
    SharedOptions::port,
    SharedOptions::testDevice,
    Option{"project", "FILE", "read the enabled polls of a project file"},
    Option{"csv", "FILE", "read the datapoints of a CSV list as one poll, every second"},
    Option{"cycles", "N", "stop after every enabled poll has been read N times"},
    Option{"seconds", "S", "stop after S seconds (default: run until interrupted)"},
    Option{"gap", "N", "read along holes of up to N unused addresses"},
    Option{"history", "FILE", "write the values read as CSV when done"},
    Option{"log", "FILE", "write the communication log as text when done"},
    Option{"raw-frames", "", "log whole request and response frames"},
    Option{"only-problems", "", "log failures only, no answers"},
    Option{"timestamps", "", "log lines with their time (default)"},
    Option{"no-timestamps", "", "log lines without their time"},
    Option{"baud", "B", "baud rate"},
    Option{"frame", "F", "data bits, parity, stop bits: 8E1, 8N1, 8N2, 7O1 ..."},
    SharedOptions::rs485,
    SharedOptions::rs485Delays,
    Option{"timeout-ms", "T", "response time-out in milliseconds"},
    Option{"json", "",
           "one JSON object per line for every value read; the log and the\n"
           "statistics go to standard error"},
};

const CommandLine::Syntax pollSyntax{
    "kestrin-cli poll",
    "Usage: kestrin-cli poll --port PATH (--project FILE.json | --csv FILE.csv) [options]\n\n"
    "Reads the enabled polls and prints the communication log as it goes. --baud, --frame,\n"
    "--rs485, --timeout-ms and --gap override the project's settings.\n",
    options,
    "A poll exits 0 when it ran, whatever the device answered; 1 when the history or the log\n"
    "cannot be written.\n"};

constexpr int largestInt = std::numeric_limits<int>::max();
// A single-shot timer counts whole milliseconds in an int.
constexpr double longestSeconds = largestInt / 1000.0;
// A gap wider than the address space bridges nothing more.
constexpr int widestGap = std::numeric_limits<std::uint16_t>::max();

// A whole-number option, unchecked when absent; its error shows the number as typed.
Result<std::optional<int>, std::string> wholeNumber(const Parsed& parsed, std::string_view name,
                                                    int minimum, int maximum) {
    const std::optional<std::string> typed = parsed.value(name);
    if (!typed) {
        return std::optional<int>();
    }
    const std::optional<int> number = CliOptions::wholeNumber(*typed, minimum, maximum);
    if (!number) {
        return L10n::texts().errors.csvInvalidNumber(*typed);
    }
    return number;
}

// Which options go together: one list, at most one way to stop.
std::optional<std::string> conflict(const Parsed& parsed) {
    const L10n::Texts::ErrorsTexts& errors = L10n::texts().errors;
    if (!parsed.has("port")) {
        return errors.missingOption("--port");
    }
    if (!parsed.has("project") && !parsed.has("csv")) {
        return errors.missingOption("--project");
    }
    if (parsed.has("project") && parsed.has("csv")) {
        return errors.optionsExclude("--project", "--csv");
    }
    if (parsed.has("cycles") && parsed.has("seconds")) {
        return errors.optionsExclude("--cycles", "--seconds");
    }
    return std::nullopt;
}

// Cycles, seconds and gap: how long and how wide to read.
Result<void, std::string> checkReading(const Parsed& parsed, PollOptions& result) {
    const auto cycles = wholeNumber(parsed, "cycles", 1, largestInt);
    if (!cycles) {
        return cycles.error();
    }
    result.cycles = cycles.value();
    if (const auto typed = parsed.value("seconds")) {
        const std::optional<double> seconds = toDouble(Datapoint::parseNumber(*typed));
        if (!seconds || !(*seconds > 0 && *seconds <= longestSeconds)) {
            return L10n::texts().errors.csvInvalidNumber(*typed);
        }
        result.seconds = seconds;
    }
    const auto gap = wholeNumber(parsed, "gap", 0, widestGap);
    if (!gap) {
        return gap.error();
    }
    result.maxGap = gap.value();
    return {};
}

// Baud rate, frame and time-out, which override the project's.
Result<void, std::string> checkLine(const Parsed& parsed, PollOptions& result) {
    const auto baud = CliOptions::baudRate(parsed);
    if (!baud) {
        return baud.error();
    }
    result.baudRate = baud.value();
    result.frame = parsed.value("frame");
    if (result.frame && !SerialConfiguration().withFrame(*result.frame)) {
        return L10n::texts().errors.invalidOptionValue("--frame", *result.frame);
    }
    const auto rs485 = CliOptions::rs485(parsed);
    if (!rs485) {
        return rs485.error();
    }
    result.rs485 = rs485.value();
    const auto timeout = wholeNumber(parsed, "timeout-ms", 1, largestInt);
    if (!timeout) {
        return timeout.error();
    }
    result.timeoutMs = timeout.value();
    return {};
}

} // namespace

SerialConfiguration PollOptions::serial(const SerialConfiguration& project) const {
    SerialConfiguration result = project;
    if (baudRate) {
        result.baudRate = *baudRate;
    }
    if (frame) {
        result = result.withFrame(*frame).value_or(result);
    }
    if (rs485) {
        result.rs485 = rs485;
    }
    return result;
}

const CommandLine::Syntax& PollOptions::syntax() {
    return pollSyntax;
}

Result<PollOptions, std::string> PollOptions::check(const Parsed& parsed) {
    if (auto refused = conflict(parsed)) {
        return *refused;
    }
    PollOptions result;
    result.port = *parsed.value("port");
    result.testDevice = parsed.has("test-device");
    result.projectPath = parsed.value("project");
    result.csvPath = parsed.value("csv");
    if (auto reading = checkReading(parsed, result); !reading) {
        return reading.error();
    }
    result.historyPath = parsed.value("history");
    result.logPath = parsed.value("log");
    if (auto line = checkLine(parsed, result); !line) {
        return line.error();
    }
    result.rawFrames = parsed.has("raw-frames");
    result.onlyProblems = parsed.has("only-problems");
    result.json = parsed.has("json");
    result.timestamps = parsed.lastOf({"timestamps", "no-timestamps"}) != "no-timestamps";
    return result;
}

} // namespace kestrin
