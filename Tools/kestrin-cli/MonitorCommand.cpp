#include "MonitorCommand.h"

#include "HeadlessRun.h"

namespace kestrin::MonitorCommand {

ExitCode run(const PollOptions& options, std::ostream& out, std::ostream& err) {
    return HeadlessRun::run(options, HeadlessRun::Way::listen, out, err);
}

} // namespace kestrin::MonitorCommand
