#pragma once

#include "ExitCode.h"

#include <ostream>
#include <span>
#include <string_view>

namespace kestrin {

// `kestrin-cli ports`: one line per serial port, its path, a tab and its menu title, in the
// order of the port picker. arguments are those after the command name; it takes none.
ExitCode runPortsCommand(std::span<const std::string_view> arguments, std::ostream& out,
                         std::ostream& err);

} // namespace kestrin
