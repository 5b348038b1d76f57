#pragma once

#include "BusBudget.h"
#include "CommandLine.h"
#include "ExitCode.h"
#include "Result.h"

#include <ostream>
#include <string>

namespace kestrin::PlanCommand {

// What `kestrin-cli plan` asks for, checked.
struct PlanOptions {
    std::string projectPath;
    // How long each device takes to start its answer.
    double turnaroundSeconds = BusBudget::Turnarounds::typicalSeconds;
    // How long the adapter holds each answer back: none for a UART.
    double handoverSeconds = 0;
    bool json = false;
};

const CommandLine::Syntax& syntax();
Result<PlanOptions, std::string> check(const CommandLine::Parsed& parsed);

// Prints the requests of every poll of the project and its bus budget, without opening a port:
// each poll's cycle, interval and the interval it will really get, then the line's load.
ExitCode run(const PlanOptions& options, std::ostream& out, std::ostream& err);

} // namespace kestrin::PlanCommand
