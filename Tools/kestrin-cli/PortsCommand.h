#pragma once

#include "CommandLine.h"
#include "ExitCode.h"

#include <ostream>

namespace kestrin::PortsCommand {

// It takes no options but --help and --version.
const CommandLine::Syntax& syntax();

// `kestrin-cli ports`: one line per serial port, its path, a tab and its menu title, in the
// order of the port picker.
ExitCode run(std::ostream& out);

} // namespace kestrin::PortsCommand
