#include "PollOptions.h"

#include "Datapoint.h"
#include "L10n.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrin {

namespace {

using CommandLine::Option;
using CommandLine::Parsed;

// One table of the parts, in their order.
template <std::size_t... Sizes>
constexpr auto joined(const std::array<Option, Sizes>&... parts) {
    std::array<Option, (Sizes + ...)> table{};
    auto next = table.begin();
    ((next = std::ranges::copy(parts, next).out), ...);
    return table;
}

// The port, and the log and the line, as poll and monitor both take them.
constexpr std::array port{SharedOptions::port, SharedOptions::testDevice};
constexpr std::array<Option, 8> logAndLine{{
    {"log", "FILE", "write the communication log as text when done"},
    {"raw-frames", "", "log whole request and response frames"},
    {"only-problems", "", "log failures only, no answers"},
    {"timestamps", "", "log lines with their time (default)"},
    {"no-timestamps", "", "log lines without their time"},
    {"baud", "B", "baud rate"},
    {"frame", "F", "data bits, parity, stop bits: 8E1, 8N1, 8N2, 7O1 ..."},
    SharedOptions::rs485,
}};
constexpr Option secondsRow{"seconds", "S",
                            "stop after S seconds (default: run until interrupted)"};

constexpr auto pollOptions =
    joined(port,
           std::array{
               Option{"project", "FILE", "read the enabled polls of a project file"},
               Option{"csv", "FILE", "read the datapoints of a CSV list as one poll, every second"},
               Option{"cycles", "N", "stop after every enabled poll has been read N times"},
               secondsRow,
               Option{"gap", "N", "read along holes of up to N unused addresses"},
               Option{"history", "FILE", "write the values read as CSV when done"},
           },
           logAndLine,
           std::array{
               SharedOptions::rs485Delays,
               Option{"timeout-ms", "T", "response time-out in milliseconds"},
               Option{"json", "",
                      "one JSON object per line for every value read; the log and the\n"
                      "statistics go to standard error"},
           });

const CommandLine::Syntax pollCommand{
    "kestrin-cli poll",
    "Usage: kestrin-cli poll --port PATH (--project FILE.json | --csv FILE.csv) [options]\n\n"
    "Reads the enabled polls and prints the communication log as it goes. --baud, --frame,\n"
    "--rs485, --timeout-ms and --gap override the project's settings.\n",
    pollOptions,
    "A poll exits 0 when it ran, whatever the device answered; 1 when the history or the log\n"
    "cannot be written at the end; 2, before it starts, when either could not be written now.\n"};

// Nothing is sent, so the delays around sending have nothing to do; the direction still keeps
// a board's transceiver off the bus.
constexpr auto monitorOptions = joined(
    port,
    std::array{
        Option{"project", "FILE", "give the enabled polls of a project file the values heard"},
        Option{"csv", "FILE", "give the datapoints of a CSV list the values heard"},
        secondsRow,
        Option{"history", "FILE", "write the values heard as CSV when done"},
    },
    logAndLine,
    std::array{
        Option{"timeout-ms", "T", "how long a request heard waits for its answer, in milliseconds"},
    });

const CommandLine::Syntax monitorCommand{
    "kestrin-cli monitor",
    "Usage: kestrin-cli monitor --port PATH [--project FILE.json | --csv FILE.csv] [options]\n\n"
    "Listens to another master on the line without sending a byte and prints its requests and\n"
    "the answers as the communication log. The values answered reach the datapoints of the\n"
    "project or list that the requests cover; without either, every frame is still logged.\n"
    "--baud, --frame, --rs485 and --timeout-ms override the project's settings.\n",
    monitorOptions,
    "A monitor exits 0 when it ran, whatever it heard; 1 when the history or the log cannot be\n"
    "written at the end; 2, before it starts, when either could not be written now.\n"};

constexpr int largestInt = std::numeric_limits<int>::max();
// A single-shot timer counts whole milliseconds in an int: less than one would stop at once.
constexpr double shortestSeconds = 0.001;
constexpr double longestSeconds = largestInt / 1000.0;
// A gap wider than the address space bridges nothing more.
constexpr int widestGap = std::numeric_limits<std::uint16_t>::max();

// A whole-number option, unchecked when absent; its error names the option and shows the number
// as typed.
Result<std::optional<int>, std::string> wholeNumber(const Parsed& parsed, std::string_view name,
                                                    int minimum, int maximum) {
    const std::optional<std::string> typed = parsed.value(name);
    if (!typed) {
        return std::optional<int>();
    }
    const std::optional<int> number = CliOptions::wholeNumber(*typed, minimum, maximum);
    if (!number) {
        return L10n::texts().errors.invalidOptionValue("--" + std::string(name), *typed);
    }
    return number;
}

// The errno that saving at path would fail with now, or 0. The file is written beside its target
// (through links) and renamed over it, so its folder must take new files; an existing target
// must be a file this user may write.
int saveFailure(const std::string& path) {
    if (path.empty()) {
        return ENOENT;
    }
    std::error_code ignored;
    std::filesystem::path target = std::filesystem::weakly_canonical(path, ignored);
    if (target.empty()) {
        target = path;
    }
    struct stat existing {};
    if (::stat(target.c_str(), &existing) == 0) {
        if (S_ISDIR(existing.st_mode)) {
            return EISDIR;
        }
        if (::access(target.c_str(), W_OK) != 0) {
            return errno;
        }
    }
    const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
    return ::access(folder.c_str(), W_OK | X_OK) == 0 ? 0 : errno;
}

// Which options go together: a port and at most one list.
std::optional<std::string> conflict(const Parsed& parsed) {
    const L10n::Texts::ErrorsTexts& errors = L10n::texts().errors;
    if (!parsed.has("port")) {
        return errors.missingOption("--port");
    }
    if (parsed.has("project") && parsed.has("csv")) {
        return errors.optionsExclude("--project", "--csv");
    }
    return std::nullopt;
}

// A poll reads a list and has at most one way to stop.
std::optional<std::string> pollConflict(const Parsed& parsed) {
    const L10n::Texts::ErrorsTexts& errors = L10n::texts().errors;
    if (!parsed.has("project") && !parsed.has("csv")) {
        return errors.missingOption("--project");
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
        if (!seconds || !(*seconds >= shortestSeconds && *seconds <= longestSeconds)) {
            return L10n::texts().errors.invalidOptionValue("--seconds", *typed);
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

// Options a command's table lacks are never given, so one check serves poll and monitor.
Result<PollOptions, std::string> checked(const Parsed& parsed) {
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

std::optional<std::string> PollOptions::unwritableFile() const {
    for (const std::optional<std::string>& path : {historyPath, logPath}) {
        if (const int failure = path ? saveFailure(*path) : 0; failure != 0) {
            return *path + ": " +
                   L10n::texts().errors.saveFailed(L10n::Errors::systemMessage(failure));
        }
    }
    return std::nullopt;
}

const CommandLine::Syntax& PollOptions::syntax() {
    return pollCommand;
}

const CommandLine::Syntax& PollOptions::monitorSyntax() {
    return monitorCommand;
}

Result<PollOptions, std::string> PollOptions::check(const Parsed& parsed) {
    if (auto refused = conflict(parsed)) {
        return *refused;
    }
    if (auto refused = pollConflict(parsed)) {
        return *refused;
    }
    return checked(parsed);
}

Result<PollOptions, std::string> PollOptions::checkMonitor(const Parsed& parsed) {
    if (auto refused = conflict(parsed)) {
        return *refused;
    }
    return checked(parsed);
}

} // namespace kestrin
