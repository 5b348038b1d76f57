#pragma once

#include "CommandLine.h"
#include "ExitCode.h"
#include "Result.h"
#include "SerialConfiguration.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace kestrin::ScanCommand {

// What `kestrin-cli scan` asks for, checked. Each kind of scan is a branch of run; a new kind
// adds its options to the table in ScanCommand.cpp, its fields here and its branch in run.
struct ScanOptions {
    std::string port;
    // A pseudo-terminal or other non-serial device may stand in for an adapter.
    bool testDevice = false;
    // The settings scanned at, and the base of a sweep's candidates (its RS-485 direction).
    SerialConfiguration serial;
    // Absent: each setting's UnitScan::defaultTimeout.
    std::optional<int> timeoutMs;
    // --units for the unit scan (default 1-247), --unit for the others (default 1).
    std::vector<std::uint8_t> units;
    bool sweep = false;
    // --registers: the register map of --unit over range, its datapoints written to csv.
    bool registers = false;
    std::pair<int, int> range{0, 999};
    std::optional<std::string> csv;
    bool json = false;

    std::optional<double> timeoutSeconds() const {
        return timeoutMs ? std::optional(*timeoutMs / 1000.0) : std::nullopt;
    }
};

// Its options and its help.
const CommandLine::Syntax& syntax();

// "1-247", "3,17,200", "1-10,17": unit IDs of 1-247 in the order typed, each once; nothing for
// anything else.
std::optional<std::vector<std::uint8_t>> unitList(std::string_view text);

// What the line gave, checked in the order of the help; a failure is a finished sentence in the
// user's language.
Result<ScanOptions, std::string> check(const CommandLine::Parsed& parsed);

// Runs the scan the options ask for; results on out (text or JSON Lines), progress on a terminal
// and failures on err. success when something answered, requestFailed when nothing did,
// portFailed when the port could not be used.
ExitCode run(const ScanOptions& options, std::ostream& out, std::ostream& err);

} // namespace kestrin::ScanCommand
