#pragma once

#include "CliOptions.h"
#include "ExitCode.h"

#include <ostream>

namespace kestrin::WriteCommand {

// Writes the value of options to its coil or holding register, with the function codes the
// write mode and the data type call for; success is silent unless --json asks for an object on
// out, failures go to err.
ExitCode run(const CliOptions& options, std::ostream& out, std::ostream& err);

} // namespace kestrin::WriteCommand
