#pragma once

#include "CliOptions.h"
#include "ExitCode.h"

#include <ostream>

namespace kestrin::ReadCommand {

// Reads the datapoint of options (or --count of them) and prints the engineering value in its
// display format, with the engineering unit when one was given, or as JSON, on out; failures go
// to err. With --interval or --cycles it repeats until stopped; the exit code is the last read's.
ExitCode run(const CliOptions& options, std::ostream& out, std::ostream& err);

} // namespace kestrin::ReadCommand
