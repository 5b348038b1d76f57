#pragma once

#include "ExitCode.h"
#include "PollOptions.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>

namespace kestrin {

class PollerModel;

// The application model run from the command line, as poll and monitor both run it.
namespace HeadlessRun {

// Whether the model reads the polls itself or listens to another master reading them.
enum class Way : std::uint8_t { read, listen };

// What a command adds once the model holds the project and the options, before the port is
// opened: its own connections to the model. An exit code ends the run there.
using Setup = std::function<std::optional<ExitCode>(PollerModel& model)>;

// Runs the model on the project or list of options (on no poll at all without either), with no
// autosave and no preferences, printing every communication-log line on out (on err with
// --json) as it is written, until the seconds are done, SIGINT or SIGTERM arrives or setup's
// connections quit the application; then stops, prints the statistics line and writes the
// history and the log when asked. A lost port is waited for, as in the window. Failures go to
// err.
ExitCode run(const PollOptions& options, Way way, std::ostream& out, std::ostream& err,
             const Setup& setup = {});

} // namespace HeadlessRun
} // namespace kestrin
