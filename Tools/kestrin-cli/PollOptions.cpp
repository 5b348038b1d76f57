#include "PollOptions.h"

#include "Datapoint.h"
#include "L10n.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

namespace kestrin {

namespace {

// The option texts as typed, before any of them is checked.
struct Arguments {
    std::optional<std::string> port;
    std::optional<std::string> project;
    std::optional<std::string> csv;
    std::optional<std::string> cycles;
    std::optional<std::string> seconds;
    std::optional<std::string> history;
    std::optional<std::string> log;
    std::optional<std::string> gap;
    std::optional<std::string> baud;
    std::optional<std::string> frame;
    std::optional<std::string> timeout;
    bool testDevice = false;
    bool rawFrames = false;
    bool onlyProblems = false;
    bool timestamps = true;
};

struct ValueOption {
    std::string_view name;
    std::optional<std::string> Arguments::*field;
};

struct FlagOption {
    std::string_view name;
    bool Arguments::*field;
    bool value;
};

constexpr std::array valueOptions{
    ValueOption{"--port", &Arguments::port},
    ValueOption{"--project", &Arguments::project},
    ValueOption{"--csv", &Arguments::csv},
    ValueOption{"--cycles", &Arguments::cycles},
    ValueOption{"--seconds", &Arguments::seconds},
    ValueOption{"--history", &Arguments::history},
    ValueOption{"--log", &Arguments::log},
    ValueOption{"--gap", &Arguments::gap},
    ValueOption{"--baud", &Arguments::baud},
    ValueOption{"--frame", &Arguments::frame},
    ValueOption{"--timeout-ms", &Arguments::timeout},
};

constexpr std::array flagOptions{
    FlagOption{"--test-device", &Arguments::testDevice, true},
    FlagOption{"--raw-frames", &Arguments::rawFrames, true},
    FlagOption{"--only-problems", &Arguments::onlyProblems, true},
    FlagOption{"--timestamps", &Arguments::timestamps, true},
    FlagOption{"--no-timestamps", &Arguments::timestamps, false},
};

constexpr int largestInt = std::numeric_limits<int>::max();
// A single-shot timer counts whole milliseconds in an int.
constexpr double longestSeconds = largestInt / 1000.0;
// A gap wider than the address space bridges nothing more.
constexpr int widestGap = std::numeric_limits<std::uint16_t>::max();

std::string typed(std::string_view name, std::string_view value) {
    std::string text(name);
    text += ' ';
    text += value;
    return text;
}

// A whole-number option, unchecked when absent; its error shows the number as typed.
Result<std::optional<int>, UsageError> wholeNumber(std::string_view name,
                                                   const std::optional<std::string>& text,
                                                   int minimum, int maximum) {
    if (!text) {
        return std::optional<int>();
    }
    const std::optional<int> number = CliOptions::wholeNumber(*text, minimum, maximum);
    if (!number) {
        return UsageError{L10n::texts().errors.csvInvalidNumber(*text), typed(name, *text)};
    }
    return number;
}

// Each option is checked in the order of the usage text.
Result<PollOptions, UsageError> check(const Arguments& arguments) {
    if (!arguments.port) {
        return UsageError{{}, "--port"};
    }
    if (!arguments.project && !arguments.csv) {
        return UsageError{{}, "--project"};
    }
    if (arguments.project && arguments.csv) {
        return UsageError{{}, typed("--csv", *arguments.csv)};
    }
    if (arguments.cycles && arguments.seconds) {
        return UsageError{{}, typed("--seconds", *arguments.seconds)};
    }

    PollOptions result;
    result.port = *arguments.port;
    result.testDevice = arguments.testDevice;
    result.projectPath = arguments.project;
    result.csvPath = arguments.csv;
    const auto cycles = wholeNumber("--cycles", arguments.cycles, 1, largestInt);
    if (!cycles) {
        return cycles.error();
    }
    result.cycles = cycles.value();
    if (arguments.seconds) {
        const std::optional<double> seconds = toDouble(Datapoint::parseNumber(*arguments.seconds));
        if (!seconds || !(*seconds > 0 && *seconds <= longestSeconds)) {
            return UsageError{L10n::texts().errors.csvInvalidNumber(*arguments.seconds),
                              typed("--seconds", *arguments.seconds)};
        }
        result.seconds = seconds;
    }
    result.historyPath = arguments.history;
    result.logPath = arguments.log;
    const auto gap = wholeNumber("--gap", arguments.gap, 0, widestGap);
    if (!gap) {
        return gap.error();
    }
    result.maxGap = gap.value();
    const auto baud = wholeNumber("--baud", arguments.baud, 1, largestInt);
    if (!baud) {
        return baud.error();
    }
    result.baudRate = baud.value();
    if (arguments.frame && !SerialConfiguration().withFrame(*arguments.frame)) {
        return UsageError{{}, typed("--frame", *arguments.frame)};
    }
    result.frame = arguments.frame;
    const auto timeout = wholeNumber("--timeout-ms", arguments.timeout, 1, largestInt);
    if (!timeout) {
        return timeout.error();
    }
    result.timeoutMs = timeout.value();
    result.rawFrames = arguments.rawFrames;
    result.onlyProblems = arguments.onlyProblems;
    result.timestamps = arguments.timestamps;
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
    return result;
}

Result<PollOptions, UsageError> PollOptions::parse(std::span<const std::string_view> arguments) {
    Arguments found;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        const auto flag =
            std::find_if(flagOptions.begin(), flagOptions.end(),
                         [&](const FlagOption& spec) { return spec.name == argument; });
        if (flag != flagOptions.end()) {
            found.*(flag->field) = flag->value;
            continue;
        }
        std::string_view name = argument;
        std::optional<std::string_view> value;
        if (const std::size_t equals = argument.find('=');
            argument.starts_with("--") && equals != std::string_view::npos) {
            name = argument.substr(0, equals);
            value = argument.substr(equals + 1);
        }
        const auto option =
            std::find_if(valueOptions.begin(), valueOptions.end(),
                         [&](const ValueOption& spec) { return spec.name == name; });
        if (option == valueOptions.end()) {
            return UsageError{{}, std::string(argument)};
        }
        if (!value) {
            if (i + 1 == arguments.size()) {
                return UsageError{{}, std::string(name)};
            }
            value = arguments[++i];
        }
        found.*(option->field) = std::string(*value);
    }
    return check(found);
}

} // namespace kestrin
