#pragma once

#include "ExitCode.h"
#include "PollOptions.h"

#include <ostream>

namespace kestrin::MonitorCommand {

// Listens, headless, to another master on the line without sending a byte: prints every
// communication-log line on out as it is written, the requests heard and their answers, which
// give the datapoints of the project or list their values, until the seconds are done or SIGINT
// or SIGTERM arrives; then stops, prints the statistics line, whose requests are those heard,
// and writes the history and the log when asked. Failures go to err.
ExitCode run(const PollOptions& options, std::ostream& out, std::ostream& err);

} // namespace kestrin::MonitorCommand
