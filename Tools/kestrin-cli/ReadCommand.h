#pragma once

#include "CliOptions.h"
#include "ExitCode.h"

#include <ostream>

namespace kestrin::ReadCommand {

// Reads the datapoint of options and prints its engineering value in its display format, with
// the engineering unit when one was given, on out; failures go to err.
ExitCode run(const CliOptions& options, std::ostream& out, std::ostream& err);

} // namespace kestrin::ReadCommand
