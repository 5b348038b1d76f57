#pragma once

#include "ExitCode.h"
#include "PollOptions.h"

#include <ostream>

namespace kestrin::PollCommand {

// Reads the enabled polls of the project or CSV list through the application model, headless,
// printing every communication-log line on out as it is written, until the cycles or seconds
// are done or SIGINT or SIGTERM arrives; then stops, prints the statistics line and writes the
// history and the log when asked. A lost port is waited for, as in the window. Failures go to
// err.
ExitCode run(const PollOptions& options, std::ostream& out, std::ostream& err);

} // namespace kestrin::PollCommand
