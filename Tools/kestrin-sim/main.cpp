// kestrin-sim: a Modbus RTU slave on a pseudo-terminal or a serial port, serving a datapoint
// list, for end-to-end tests, benchmarks and the demo.

#include "CliOptions.h"
#include "CommandLine.h"
#include "DatapointCSV.h"
#include "ExampleList.h"
#include "Faults.h"
#include "L10n.h"
#include "Ledger.h"
#include "RTUFrame.h"
#include "RegisterTable.h"
#include "Replayer.h"
#include "SerialConfiguration.h"
#include "ServedLine.h"
#include "Simulator.h"
#include "SlaveDevice.h"
#include "StreamRecorder.h"
#include "SymbolicLink.h"
#include "TextFileReader.h"

#include <array>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

using namespace kestrin;

namespace {

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;

using CommandLine::Option;

constexpr std::array simOptions{
    Option{"csv", "FILE", "serve the datapoints of a CSV list"},
    Option{"project", "FILE",
           "serve every datapoint of a project file\n(default: the example list, unit 1)"},
    Option{"unit", "U[,U...]", "serve the list under these unit IDs instead of its own"},
    Option{"link", "PATH", "also make PATH a symbolic link to the pseudo-terminal"},
    Option{"port", "PATH", "serve an existing serial device instead"},
    Option{"baud", "B", "baud rate (default 9600)"},
    Option{"frame", "8E1", "data bits, parity N/E/O, stop bits (default 8E1)"},
    Option{"wire-timing", "",
           "answer only when request and answer would have crossed\n"
           "the line at that speed, plus the turnaround"},
    Option{"turnaround-ms", "MS", "the device's reaction time with --wire-timing (default 1)"},
    Option{"max-registers", "N[,silent]",
           "refuse a read or write of more than N registers with\n"
           "exception 03, or with silence"},
    Option{"refuse-missing-tables", "",
           "answer a read of a table the list has nothing in with\n"
           "exception 01 (no such function) instead of 02"},
    Option{"strict-settings", "",
           "on a pseudo-terminal: answer only a master that set the\n"
           "same baud rate and stop bits (parity does not show on one)"},
    Option{"fault", "LIST",
           "misbehave with these probabilities per answer, LIST being\n"
           "drop=P,crc=P,garbage=P,wrong-unit=P,delay=P,late=P,noise=P:\n"
           "garbage replaces the answer, noise puts 1 to 3 random bytes\n"
           "before it, late answers after 1 to 2 of the master's time-outs"},
    Option{"delay-ms", "MS", "how late the delay fault answers (default 1500)"},
    Option{"master-timeout-ms", "MS", "the master's time-out, for the late fault (default 1000)"},
    Option{"seed", "N", "seed of faults and random values (default 1)"},
    Option{"ledger", "FILE", "one JSON line per frame received: what it was, what was done"},
    Option{"record", "FILE",
           "write every chunk received and every answer sent, with\n"
           "its time (the emulated wire's with --wire-timing)"},
    Option{"replay", "FILE",
           "serve no device: play a recorded stream into the line\n"
           "with its timing, then keep the line open"},
    Option{"replay-delay-ms", "MS",
           "how long after the other end is opened the replay starts\n(default 200)"},
};

const CommandLine::Syntax simSyntax{
    "kestrin-sim",
    "Usage: kestrin-sim [options]\n"
    "A Modbus RTU slave. Without --port it creates a pseudo-terminal and prints the path\n"
    "a master opens on the first line of its output.\n",
    simOptions,
    "While an answer is held back (wire timing, delay, late) requests that arrive are\n"
    "ignored, as a half-duplex device does not hear them.\n"
    "A replay starts once a program has opened the pseudo-terminal, --replay-delay-ms\n"
    "later, so that it has set the line up; on --port it starts after that delay.\n"
    "Recorded streams are text: a line per chunk, the seconds since the start and the bytes\n"
    "in hex (\"0.004010 01 03 00 00 00 02 C4 0B\"); blank lines and lines from '#' are skipped.\n"
    "It stops on SIGINT or SIGTERM, and when the process that started it ends.\n"};

struct Options {
    std::optional<std::string> csv;
    std::optional<std::string> project;
    std::vector<std::uint8_t> units;
    std::optional<std::string> link;
    std::optional<std::string> port;
    SerialConfiguration serial;
    bool wireTiming = false;
    double turnaroundMs = 1;
    std::optional<SlaveDevice::RequestLimit> limit;
    bool strictSettings = false;
    bool refuseMissingTables = false;
    std::string faults;
    double delayMs = 1500;
    double masterTimeoutMs = 1000;
    std::uint64_t seed = 1;
    std::optional<std::string> ledger;
    std::optional<std::string> record;
    std::optional<std::string> replay;
    double replayDelayMs = 200;
};

template <typename Number>
std::optional<Number> number(std::string_view text) {
    Number value{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::vector<std::uint8_t>> unitList(std::string_view text) {
    std::vector<std::uint8_t> units;
    while (!text.empty()) {
        const std::size_t comma = text.find(',');
        const std::optional<int> unit = number<int>(text.substr(0, comma));
        if (!unit || *unit < RTUFrame::unitRange.first || *unit > RTUFrame::unitRange.last) {
            return std::nullopt;
        }
        units.push_back(static_cast<std::uint8_t>(*unit));
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    }
    return units.empty() ? std::nullopt : std::optional(units);
}

// "32" or "32,silent": at least one register, at most what any read may ask for.
std::optional<SlaveDevice::RequestLimit> requestLimit(std::string_view text) {
    const std::size_t comma = text.find(',');
    const std::optional<int> count = number<int>(text.substr(0, comma));
    const std::string_view how =
        comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    if (!count || *count < 1 ||
        *count > RegisterTable(RegisterTable::holdingRegister).maxReadCount() ||
        (comma != std::string_view::npos && how != "silent")) {
        return std::nullopt;
    }
    return SlaveDevice::RequestLimit{*count, !how.empty()};
}

// Stores the value of one option that takes a value; false when the value is not valid.
bool takeValue(Options& options, std::string_view option, const std::string& value) {
    const auto take = [](auto parsed, auto& field, auto isValid) {
        if (!parsed || !isValid(*parsed)) {
            return false;
        }
        field = *parsed;
        return true;
    };
    const auto positive = [](auto number) { return number > 0; };
    const auto notNegative = [](double number) { return number >= 0; };
    const auto any = [](const auto&) { return true; };
    using Path = std::optional<std::string> Options::*;
    static constexpr std::array<std::pair<std::string_view, Path>, 7> paths{{
        {"csv", &Options::csv},
        {"project", &Options::project},
        {"link", &Options::link},
        {"port", &Options::port},
        {"ledger", &Options::ledger},
        {"record", &Options::record},
        {"replay", &Options::replay},
    }};
    for (const auto& [name, field] : paths) {
        if (option == name) {
            options.*field = value;
            return true;
        }
    }
    if (option == "fault") {
        options.faults = value;
        return true;
    }
    if (option == "unit") {
        return take(unitList(value), options.units, any);
    }
    if (option == "max-registers") {
        return take(requestLimit(value), options.limit, any);
    }
    if (option == "frame") {
        return take(options.serial.withFrame(value), options.serial, any);
    }
    if (option == "turnaround-ms" || option == "delay-ms" || option == "replay-delay-ms") {
        auto& field = option == "delay-ms"          ? options.delayMs
                      : option == "replay-delay-ms" ? options.replayDelayMs
                                                    : options.turnaroundMs;
        return take(number<double>(value), field, notNegative);
    }
    if (option == "master-timeout-ms") {
        // A late answer is late by whole time-outs: with none there is nothing to be late for.
        return take(number<double>(value), options.masterTimeoutMs, positive);
    }
    // --seed, the last of the table.
    return take(number<std::uint64_t>(value), options.seed, any);
}

// The options the line gave, checked, or the reason they cannot be used.
Result<Options, std::string> checkOptions(const CommandLine::Parsed& parsed) {
    const L10n::Texts::ErrorsTexts& errors = L10n::texts().errors;
    Options options;
    const auto baud = CliOptions::baudRate(parsed);
    if (!baud) {
        return baud.error();
    }
    options.serial.baudRate = baud.value().value_or(options.serial.baudRate);
    options.wireTiming = parsed.has("wire-timing");
    options.strictSettings = parsed.has("strict-settings");
    options.refuseMissingTables = parsed.has("refuse-missing-tables");
    for (const Option& option : simOptions) {
        const std::optional<std::string> value = parsed.value(option.name);
        if (value && !option.valueName.empty() && option.name != "baud" &&
            !takeValue(options, option.name, *value)) {
            return errors.invalidOptionValue("--" + std::string(option.name), *value);
        }
    }
    if (options.csv && options.project) {
        return errors.optionsExclude("--csv", "--project");
    }
    if (options.port && options.link) {
        return errors.optionsExclude("--link", "--port");
    }
    // A replay serves no device: what would shape one has nothing to act on.
    for (const char* deviceOption : {"csv", "project", "unit", "fault", "ledger", "record"}) {
        if (options.replay && parsed.has(deviceOption)) {
            return errors.optionsExclude("--replay", "--" + std::string(deviceOption));
        }
    }
    return options;
}

// Every datapoint of every poll of a project document.
Result<std::vector<Datapoint>, std::string> projectDatapoints(const std::string& text) {
    const nlohmann::json document = nlohmann::json::parse(text, nullptr, false);
    if (document.is_discarded() || !document.is_object()) {
        return std::string("not a project document");
    }
    std::vector<Datapoint> datapoints;
    const auto polls = document.find("polls");
    if (polls == document.end() || !polls->is_array()) {
        return datapoints;
    }
    for (const nlohmann::json& poll : *polls) {
        const auto list = poll.is_object() ? poll.find("datapoints") : poll.end();
        if (list == poll.end() || !list->is_array()) {
            continue;
        }
        for (const nlohmann::json& object : *list) {
            auto datapoint = Datapoint::fromJSON(object);
            if (!datapoint) {
                return L10n::Errors::describe(datapoint.error());
            }
            datapoints.push_back(std::move(datapoint).value());
        }
    }
    return datapoints;
}

Result<std::vector<Datapoint>, std::string> loadDatapoints(const Options& options) {
    if (!options.csv && !options.project) {
        return ExampleList::datapoints();
    }
    const std::string& path = options.csv ? *options.csv : *options.project;
    const auto text = TextFileReader::read(path);
    if (!text) {
        return "cannot read " + path + ": " + L10n::Errors::systemMessage(text.error());
    }
    if (options.project) {
        Result<std::vector<Datapoint>, std::string> datapoints = projectDatapoints(text.value());
        if (!datapoints) {
            return path + ": " + datapoints.error();
        }
        return datapoints;
    }
    DatapointCSV::ImportResult imported = DatapointCSV::parse(text.value());
    for (const DatapointCSV::ImportIssue& issue : imported.issues) {
        std::fprintf(stderr, "kestrin-sim: %s: %s\n", path.c_str(),
                     L10n::Errors::describe(issue).c_str());
    }
    return std::move(imported.datapoints);
}

// The whole list once for every unit asked for.
std::vector<Datapoint> underUnits(const std::vector<Datapoint>& datapoints,
                                  const std::vector<std::uint8_t>& units) {
    if (units.empty()) {
        return datapoints;
    }
    std::vector<Datapoint> copies;
    for (std::uint8_t unit : units) {
        for (Datapoint datapoint : datapoints) {
            datapoint.unitID = unit;
            copies.push_back(std::move(datapoint));
        }
    }
    return copies;
}

SimulatorTiming timingOf(const Options& options) {
    SimulatorTiming timing;
    timing.wireTiming = options.wireTiming;
    timing.baudRate = options.serial.baudRate;
    timing.bitsPerCharacter = options.serial.bitsPerCharacter();
    timing.stopBits = options.serial.stopBits;
    timing.strictSettings = options.strictSettings;
    timing.turnaround = options.turnaroundMs / 1000;
    timing.delay = options.delayMs / 1000;
    timing.masterTimeout = options.masterTimeoutMs / 1000;
    return timing;
}

// Lock-free, so the handler may set it.
static_assert(std::atomic<bool>::is_always_lock_free);
std::atomic<bool> stopRequested = false;

void requestStop(int) {
    stopRequested = true;
}

// Blocks the stop signals outside the wait and returns the mask to wait with.
sigset_t installStopSignals() {
    struct sigaction action {};
    action.sa_handler = requestStop;
    sigemptyset(&action.sa_mask);
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaction(signal, &action, nullptr);
        sigaddset(&stopSignals, signal);
    }
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t waitMask;
    sigprocmask(SIG_BLOCK, &stopSignals, &waitMask);
    sigdelset(&waitMask, SIGINT);
    sigdelset(&waitMask, SIGTERM);
    sigdelset(&waitMask, SIGHUP);
    return waitMask;
}

// Makes --link's path lead to the line; false, with the reason on stderr, when it cannot.
bool linkTo(const ServedLine& line, const Options& options, std::optional<SymbolicLink>& link) {
    if (!options.link) {
        return true;
    }
    Result<SymbolicLink, std::string> created = SymbolicLink::create(*options.link, line.path());
    if (!created) {
        std::fprintf(stderr, "kestrin-sim: %s\n", created.error().c_str());
        return false;
    }
    link.emplace(std::move(created).value());
    return true;
}

// What is served, for the person watching: "unit 1,2 on /dev/pts/3, 9600 8E1".
std::string servedText(const SlaveDevice& device, const Options& options, const std::string& path) {
    std::string units;
    for (std::uint8_t unit : device.units()) {
        units += (units.empty() ? "" : ",") + std::to_string(unit);
    }
    return "unit " + units + " on " + path + ", " + options.serial.shortDescription() +
           (options.wireTiming ? " with wire timing" : "");
}

struct OpenedLine {
    ServedLine line;
    std::optional<SymbolicLink> link;
};

// The line the options name, linked as --link asks. The path goes to standard output, the one
// thing a master needs from us: without it there is no point serving. What is served
// (what(path)) goes to standard error for the person watching. Nothing, with the reason on
// standard error, when the line cannot be had.
template <typename What>
std::optional<OpenedLine> openAnnounced(const Options& options, What what) {
    Result<ServedLine, std::string> line = options.port
                                               ? ServedLine::port(*options.port, options.serial)
                                               : ServedLine::pseudoTerminal();
    if (!line) {
        std::fprintf(stderr, "kestrin-sim: %s\n", line.error().c_str());
        return std::nullopt;
    }
    std::optional<SymbolicLink> link;
    if (!linkTo(line.value(), options, link)) {
        return std::nullopt;
    }
    std::printf("%s\n", line.value().path().c_str());
    if (std::fflush(stdout) != 0) {
        return std::nullopt;
    }
    std::fprintf(stderr, "kestrin-sim: %s\n", what(line.value().path()).c_str());
    return OpenedLine{std::move(line).value(), std::move(link)};
}

// Prints the reason and the help; the exit status of a usage error.
int refuse(const std::string& reason) {
    std::cerr << "kestrin-sim: " << reason << "\n\n" << CommandLine::help(simSyntax);
    return exitUsage;
}

// A test or script that dies must not leave a simulator behind. False when the parent has
// already gone.
bool endWithParent() {
    const pid_t parent = getppid();
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    return getppid() == parent;
}

// The recorded stream played into the line, which stays open until a stop signal; the exit
// status.
int replay(const Options& options) {
    Result<std::vector<RecordedStream::Chunk>, std::string> chunks =
        Replayer::load(*options.replay);
    if (!chunks) {
        std::fprintf(stderr, "kestrin-sim: %s\n", chunks.error().c_str());
        return exitFailure;
    }
    const sigset_t waitMask = installStopSignals();
    std::optional<OpenedLine> opened = openAnnounced(options, [&](const std::string& path) {
        return "replaying " + *options.replay + " on " + path + " once it is opened";
    });
    if (!opened) {
        return exitFailure;
    }
    opened->line.releaseOtherEnd();
    const auto delay = std::chrono::milliseconds(std::lround(options.replayDelayMs));
    Replayer replayer(opened->line.fd(), std::move(chunks).value(), delay);
    return replayer.run(stopRequested, waitMask);
}

// The device the options describe, on its line, until a stop signal; the exit status.
int serve(const Options& options, Faults faults) {
    const Result<std::vector<Datapoint>, std::string> datapoints = loadDatapoints(options);
    if (!datapoints) {
        std::fprintf(stderr, "kestrin-sim: %s\n", datapoints.error().c_str());
        return exitFailure;
    }
    if (datapoints.value().empty()) {
        std::fputs("kestrin-sim: the list holds no datapoints\n", stderr);
        return exitFailure;
    }
    SlaveDevice device(underUnits(datapoints.value(), options.units), options.seed);
    if (options.limit) {
        device.limitRequests(*options.limit);
    }
    if (options.refuseMissingTables) {
        device.refuseTablesNotServed();
    }

    const auto cannotWrite = [](const std::string& path) {
        std::fprintf(stderr, "kestrin-sim: cannot write %s\n", path.c_str());
        return exitFailure;
    };
    Ledger ledger;
    if (options.ledger && !ledger.open(*options.ledger)) {
        return cannotWrite(*options.ledger);
    }
    StreamRecorder recorder;
    if (options.record && !recorder.open(*options.record)) {
        return cannotWrite(*options.record);
    }

    const sigset_t waitMask = installStopSignals();
    const std::optional<OpenedLine> opened = openAnnounced(
        options, [&](const std::string& path) { return servedText(device, options, path); });
    if (!opened) {
        return exitFailure;
    }
    Simulator simulator(opened->line.fd(), device, faults, ledger, timingOf(options));
    simulator.recordTo(recorder);
    return simulator.run(stopRequested, waitMask);
}

} // namespace

int main(int argc, char** argv) {
    if (!endWithParent()) {
        return 0;
    }
    // Wire timing is emulated with sleeps; the default 50 µs timer slack would show at 115200.
    prctl(PR_SET_TIMERSLACK, 1UL);

    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    const auto parsed = CommandLine::parse(simSyntax, arguments);
    if (!parsed) {
        return refuse(parsed.error());
    }
    if (CommandLine::answered(simSyntax, parsed.value(), std::cout)) {
        return 0;
    }
    const Result<Options, std::string> checked = checkOptions(parsed.value());
    if (!checked) {
        return refuse(checked.error());
    }
    Result<Faults, std::string> faults =
        Faults::parse(checked.value().faults, checked.value().seed);
    if (!faults) {
        return refuse(faults.error());
    }
    if (checked.value().replay) {
        return replay(checked.value());
    }
    return serve(checked.value(), std::move(faults).value());
}
