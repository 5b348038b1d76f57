#include "ScanCommand.h"

#include "CliOptions.h"
#include "L10n.h"
#include "RTUFrame.h"
#include "RegisterMap.h"
#include "RegisterMapReport.h"
#include "SerialLink.h"
#include "SettingsSweep.h"
#include "StopSignals.h"
#include "UnitScan.h"
#include "UnitScanReport.h"
#include "WakeSignal.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <limits>
#include <memory>
#include <thread>
#include <unistd.h>

namespace kestrin::ScanCommand {

namespace {

using CommandLine::Option;
using CommandLine::Parsed;

constexpr std::array scanOptions{
    SharedOptions::port,
    SharedOptions::testDevice,
    Option{"baud", "B", "baud rate (default 9600); a sweep tries the usual ones"},
    Option{"frame", "F", "data bits, parity, stop bits: 8E1 (default), 8N1, 8N2, 7O1 ..."},
    SharedOptions::rs485,
    SharedOptions::rs485Delays,
    Option{"timeout-ms", "T",
           "time-out per request in milliseconds (default: the answer's\n"
           "wire time plus 30 ms)"},
    Option{"units", "LIST", "unit IDs to scan: 1-247 (default), 3,17,200 or 1-10,17"},
    Option{"sweep", "",
           "find the baud rate and frame at which --unit answers: 9600,\n"
           "19200, 38400, 115200 with 8E1, 8N1, 8N2 first, then the rest"},
    Option{"unit", "LIST",
           "with --sweep: the unit IDs to try (default 1); with --registers:\n"
           "the one unit to map"},
    Option{"registers", "",
           "find which addresses of each table exist on --unit and the\n"
           "largest read it accepts; --timeout-ms is then what the device\n"
           "may take beyond each answer's wire time"},
    Option{"range", "A-B", "with --registers: the addresses to map (default 0-999)"},
    Option{"csv", "FILE", "with --registers: write the addresses found as a datapoint list"},
    Option{"json", "", "one JSON object per line"},
};

const CommandLine::Syntax scanSyntax{
    "kestrin-cli scan",
    "Usage: kestrin-cli scan --port PATH [--units 1-247] [options]\n"
    "       kestrin-cli scan --port PATH --sweep [--unit U] [options]\n"
    "       kestrin-cli scan --port PATH --unit U --registers [--range A-B] [--csv FILE]\n\n"
    "Finds the devices on a line: prints \"Unit N\" and what answered for each unit that\n"
    "answers at the line's settings, with --sweep the settings at which a unit answers, or\n"
    "with --registers the addresses one unit has.\n",
    scanOptions,
    "Exit status: 0 something answered, 1 nothing did, 2 usage error, 3 the port cannot be "
    "used.\n"};

std::string invalid(std::string_view name, std::string_view value) {
    return L10n::texts().errors.invalidOptionValue(std::string("--") + std::string(name), value);
}

// One entry of a unit list: "17" or "1-10".
std::optional<std::pair<int, int>> unitSpan(std::string_view text) {
    const std::size_t dash = text.find('-');
    const auto unit = [](std::string_view part) {
        return CliOptions::wholeNumber(part, RTUFrame::unitRange.first, RTUFrame::unitRange.last);
    };
    const std::optional<int> first = unit(text.substr(0, dash));
    const std::optional<int> last =
        dash == std::string_view::npos ? first : unit(text.substr(dash + 1));
    if (!first || !last || *first > *last) {
        return std::nullopt;
    }
    return std::pair{*first, *last};
}

// Baud rate, frame, RS-485 direction and time-out.
Result<void, std::string> checkLine(const Parsed& parsed, ScanOptions& result) {
    if (auto line = CliOptions::applyLine(parsed, result.serial); !line) {
        return line;
    }
    if (const auto typed = parsed.value("timeout-ms")) {
        result.timeoutMs = CliOptions::wholeNumber(*typed, 1, std::numeric_limits<int>::max());
        if (!result.timeoutMs) {
            return invalid("timeout-ms", *typed);
        }
    }
    return {};
}

// --units belongs to the unit scan, --unit to the others.
Result<void, std::string> checkUnits(const Parsed& parsed, ScanOptions& result) {
    const bool oneUnit = result.sweep || result.registers;
    const std::string_view name = oneUnit ? "unit" : "units";
    const std::string_view other = oneUnit ? "units" : "unit";
    if (parsed.has(other)) {
        return L10n::texts().errors.unexpectedArgument("--" + std::string(other),
                                                       "kestrin-cli scan --help");
    }
    const std::string typed = parsed.value(name).value_or(oneUnit ? "1" : "1-247");
    const auto units = unitList(typed);
    if (!units || (result.registers && units->size() != 1)) {
        return invalid(name, typed);
    }
    result.units = *units;
    return {};
}

// --range and --csv belong to --registers, which maps one unit and sweeps nothing.
Result<void, std::string> checkRegisters(const Parsed& parsed, ScanOptions& result) {
    result.registers = parsed.has("registers");
    for (const std::string_view name : {"sweep", "range", "csv"}) {
        if (parsed.has(name) && result.registers == (name == "sweep")) {
            return L10n::texts().errors.unexpectedArgument("--" + std::string(name),
                                                           "kestrin-cli scan --help");
        }
    }
    if (const auto typed = parsed.value("range")) {
        const std::size_t dash = typed->find('-');
        const auto address = [&](std::string_view part) {
            return CliOptions::wholeNumber(part, 0, std::numeric_limits<std::uint16_t>::max());
        };
        const auto first = address(std::string_view(*typed).substr(0, dash));
        const auto last = dash == std::string::npos
                              ? std::nullopt
                              : address(std::string_view(*typed).substr(dash + 1));
        if (!first || !last || *first > *last) {
            return invalid("range", *typed);
        }
        result.range = {*first, *last};
    }
    result.csv = parsed.value("csv");
#if !KESTRIN_HAS_POLL
    // Refused before the scan rather than after a map of many minutes that cannot be written.
    if (result.csv) {
        return L10n::texts().scan.csvNeedsQt();
    }
#endif
    return {};
}

} // namespace

const CommandLine::Syntax& syntax() {
    return scanSyntax;
}

std::optional<std::vector<std::uint8_t>> unitList(std::string_view text) {
    std::vector<std::uint8_t> units;
    std::array<bool, 256> listed{};
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t comma = std::min(text.find(',', start), text.size());
        const auto span = unitSpan(text.substr(start, comma - start));
        if (!span) {
            return std::nullopt;
        }
        for (int unit = span->first; unit <= span->second; ++unit) {
            if (!std::exchange(listed[static_cast<std::size_t>(unit)], true)) {
                units.push_back(static_cast<std::uint8_t>(unit));
            }
        }
        start = comma + 1;
    }
    return units.empty() ? std::nullopt : std::optional(units);
}

Result<ScanOptions, std::string> check(const Parsed& parsed) {
    if (!parsed.has("port")) {
        return L10n::texts().errors.missingOption("--port");
    }
    ScanOptions result;
    result.port = *parsed.value("port");
    result.testDevice = parsed.has("test-device");
    if (auto line = checkLine(parsed, result); !line) {
        return line.error();
    }
    result.sweep = parsed.has("sweep");
    if (auto registers = checkRegisters(parsed, result); !registers) {
        return registers.error();
    }
    if (auto units = checkUnits(parsed, result); !units) {
        return units.error();
    }
    result.json = parsed.has("json");
    return result;
}

namespace {

// Ctrl+C raises the cancellation of the scan's link, so that the port is put back as it was and
// what was found so far is still printed.
class Interruption {
public:
    Interruption()
        : watcher_([this](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                if (signals_.awaitStop(std::chrono::milliseconds(50))) {
                    cancel_.raise();
                    return;
                }
            }
        }) {}

    const WakeSignal& cancel() const noexcept { return cancel_; }

private:
    WakeSignal cancel_;
    StopSignals signals_;
    std::jthread watcher_;
};

// The remaining time on one line that the next one overwrites, only where someone watches.
class ProgressLine {
public:
    explicit ProgressLine(std::ostream& err)
        : err_(err)
        , shown_(&err == &std::cerr && ::isatty(STDERR_FILENO) == 1) {}
    ~ProgressLine() { clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // The remaining time in whole seconds, rounded up so that it reaches 0 only at the end.
    template <typename Text>
    void show(Text text, int done, int total, double remainingSeconds) {
        if (shown_) {
            const auto seconds = static_cast<int>(std::ceil(remainingSeconds));
            err_ << '\r' << text(done, total, seconds) << "\x1b[K" << std::flush;
        }
    }
    void clear() {
        if (shown_) {
            err_ << "\r\x1b[K" << std::flush;
        }
    }

private:
    std::ostream& err_;
    bool shown_;
};

ExitCode portFailed(const SerialLinkError& error, std::ostream& err) {
    if (error.is<SerialLinkError::Cancelled>()) {
        return ExitCode::requestFailed;
    }
    err << L10n::Errors::describe(error) << '\n';
    return ExitCode::portFailed;
}

// The port of options at its settings, open and ended by cancel; otherwise the exit code, with
// the reason on err.
Result<std::unique_ptr<SerialLink>, ExitCode>
openedLink(const ScanOptions& options, const WakeSignal& cancel, std::ostream& err) {
    auto link = std::make_unique<SerialLink>(options.port, options.serial, options.testDevice);
    link->cancelWith(cancel);
    if (const auto opened = link->open(); !opened) {
        return portFailed(opened.error(), err);
    }
    return link;
}

ExitCode scanUnits(const ScanOptions& options, std::ostream& out, std::ostream& err) {
    Interruption interruption;
    const auto opened = openedLink(options, interruption.cancel(), err);
    if (!opened) {
        return opened.error();
    }
    SerialLink& link = *opened.value();
    const double timeout =
        options.timeoutSeconds().value_or(UnitScan::defaultTimeout(options.serial));
    ProgressLine progressLine(err);
    bool anyAnswered = false;
    const auto scanned =
        UnitScan::run(link, options.units, timeout, [&](const UnitScan::Progress& progress) {
            for (const UnitScan::Answer& answer : progress.answers) {
                anyAnswered = true;
                progressLine.clear();
                UnitScanReport::print(answer, options.json, out);
            }
            progressLine.show(L10n::texts().scan.unitProgress, progress.done, progress.total,
                              progress.remainingSeconds);
        });
    progressLine.clear();
    if (!scanned && !scanned.error().is<SerialLinkError::Cancelled>()) {
        return portFailed(scanned.error(), err);
    }
    if (!anyAnswered) {
        err << L10n::texts().scan.noUnitAnswered() << '\n';
    }
    return anyAnswered ? ExitCode::success : ExitCode::requestFailed;
}

ExitCode sweep(const ScanOptions& options, std::ostream& out, std::ostream& err) {
    Interruption interruption;
    const SettingsSweep::Line line{options.port, options.testDevice, &interruption.cancel()};
    ProgressLine progressLine(err);
    const auto swept =
        SettingsSweep::run(line, options.serial, options.units, options.timeoutSeconds(),
                           [&](const SettingsSweep::Progress& progress) {
                               progressLine.show(L10n::texts().scan.sweepProgress, progress.done,
                                                 progress.total, progress.remainingSeconds);
                           });
    progressLine.clear();
    if (!swept) {
        return portFailed(swept.error(), err);
    }
    if (!swept.value()) {
        err << L10n::texts().scan.noSettingsAnswered() << '\n';
        return ExitCode::requestFailed;
    }
    UnitScanReport::print(*swept.value(), options.json, out);
    return ExitCode::success;
}

ExitCode mapUnit(const ScanOptions& options, std::ostream& out, std::ostream& err) {
    Interruption interruption;
    const auto opened = openedLink(options, interruption.cancel(), err);
    if (!opened) {
        return opened.error();
    }
    SerialLink& link = *opened.value();
    RegisterMapOptions mapping{
        .unit = options.units.front(), .first = options.range.first, .last = options.range.second};
    mapping.thinkSeconds = options.timeoutSeconds().value_or(mapping.thinkSeconds);
    const auto progressText = [](int requests, int, int seconds) {
        return L10n::texts().scan.mapProgress(requests, seconds);
    };
    ProgressLine progressLine(err);
    const auto mapped = mapRegisters(link, mapping, [&](const RegisterMapProgress& progress) {
        progressLine.show(progressText, progress.requests, 0, progress.remainingSeconds);
    });
    progressLine.clear();
    if (!mapped) {
        return portFailed(mapped.error(), err);
    }
    return RegisterMapReport::print(mapped.value(), options.json, options.csv, out, err);
}

} // namespace

ExitCode run(const ScanOptions& options, std::ostream& out, std::ostream& err) {
    if (options.registers) {
        return mapUnit(options, out, err);
    }
    return options.sweep ? sweep(options, out, err) : scanUnits(options, out, err);
}

} // namespace kestrin::ScanCommand
