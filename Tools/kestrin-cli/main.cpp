#include "CliOptions.h"
#include "CommandLine.h"
#include "ExitCode.h"
#include "L10n.h"
#if KESTRIN_HAS_POLL
#include "MonitorCommand.h"
#include "PlanCommand.h"
#include "PollCommand.h"
#include "PollOptions.h"
#endif
#if KESTRIN_HAS_PORTS
#include "PortsCommand.h"
#endif
#include "ReadCommand.h"
#include "ScanCommand.h"
#include "WriteCommand.h"

#include <csignal>
#include <iostream>
#include <span>
#include <string_view>
#include <vector>

using namespace kestrin;

namespace {

using Arguments = std::span<const std::string_view>;

// The help lists the commands; each command's own help lists its options, and the man page
// shows them all.
const CommandLine::Syntax programSyntax{
    "kestrin-cli",
    "Usage:\n"
    "  kestrin-cli read  --port PATH --table T --address A [options]\n"
    "  kestrin-cli write --port PATH --table T --address A --value V [options]\n"
    "  kestrin-cli poll  --port PATH (--project FILE.json | --csv FILE.csv) [options]\n"
    "  kestrin-cli monitor --port PATH [--project FILE.json | --csv FILE.csv] [options]\n"
    "  kestrin-cli plan  --project FILE.json [options]\n"
    "  kestrin-cli ports [--json] [--verbose]\n"
    "  kestrin-cli scan  --port PATH [--units 1-247 | --sweep] [options]\n"
    "  kestrin-cli --help | --version\n"
    "Reads, writes and polls Modbus RTU devices, finds them on a line, and listens to another\n"
    "master's traffic. Each command lists its options with --help, as in:\n"
    "kestrin-cli read --help. With --json each prints JSON Lines for scripts.\n",
    {},
    "Exit status: 0 done, 1 the request failed, 2 usage error, 3 the port cannot be used.\n"};

ExitCode usageError(const std::string& message) {
    std::cerr << message << '\n';
    return ExitCode::usageError;
}

// Parses the options of syntax and answers --help, --version and a bad line; else runs.
template <typename Run>
ExitCode runCommand(const CommandLine::Syntax& syntax, Arguments arguments, Run run) {
    const auto parsed = CommandLine::parse(syntax, arguments);
    if (!parsed) {
        return usageError(parsed.error());
    }
    if (CommandLine::answered(syntax, parsed.value(), std::cout)) {
        return ExitCode::success;
    }
    return run(parsed.value());
}

// Checks the parsed line with check and runs command with the options it gives.
template <typename Check, typename Command>
auto checkedThen(Check check, Command command) {
    return [check, command](const CommandLine::Parsed& parsed) {
        const auto options = check(parsed);
        return options ? command(options.value()) : usageError(options.error());
    };
}

ExitCode readOrWrite(CliOptions::Command command, Arguments arguments) {
    const auto check = [command](const CommandLine::Parsed& parsed) {
        return CliOptions::check(command, parsed);
    };
    const auto execute = [](const CliOptions& options) {
        return options.command == CliOptions::Command::read
                   ? ReadCommand::run(options, std::cout, std::cerr)
                   : WriteCommand::run(options, std::cout, std::cerr);
    };
    return runCommand(CliOptions::syntax(command), arguments, checkedThen(check, execute));
}

ExitCode run(Arguments arguments) {
    // A line without a command only asks for the help or the version, or is a mistake.
    if (arguments.empty() || arguments.front().starts_with('-')) {
        return runCommand(programSyntax, arguments, [](const CommandLine::Parsed&) {
            std::cerr << CommandLine::help(programSyntax);
            return ExitCode::usageError;
        });
    }
    const Arguments options = arguments.subspan(1);
#if KESTRIN_HAS_PORTS
    if (arguments.front() == "ports") {
        return runCommand(PortsCommand::syntax(), options, [](const CommandLine::Parsed& parsed) {
            return PortsCommand::run({.json = parsed.has("json"), .verbose = parsed.has("verbose")},
                                     std::cout);
        });
    }
#endif
#if KESTRIN_HAS_POLL
    if (arguments.front() == "poll") {
        const auto poll = [](const PollOptions& checked) {
            return PollCommand::run(checked, std::cout, std::cerr);
        };
        return runCommand(PollOptions::syntax(), options, checkedThen(&PollOptions::check, poll));
    }
    if (arguments.front() == "monitor") {
        const auto monitor = [](const PollOptions& checked) {
            return MonitorCommand::run(checked, std::cout, std::cerr);
        };
        return runCommand(PollOptions::monitorSyntax(), options,
                          checkedThen(&PollOptions::checkMonitor, monitor));
    }
    if (arguments.front() == "plan") {
        const auto plan = [](const PlanCommand::PlanOptions& checked) {
            return PlanCommand::run(checked, std::cout, std::cerr);
        };
        return runCommand(PlanCommand::syntax(), options, checkedThen(&PlanCommand::check, plan));
    }
#endif
    if (arguments.front() == "scan") {
        const auto scan = [](const ScanCommand::ScanOptions& checked) {
            return ScanCommand::run(checked, std::cout, std::cerr);
        };
        return runCommand(ScanCommand::syntax(), options, checkedThen(&ScanCommand::check, scan));
    }
    if (const auto command = CliOptions::commandNamed(arguments.front())) {
        return readOrWrite(*command, options);
    }
    return usageError(
        L10n::texts().errors.unexpectedArgument(arguments.front(), "kestrin-cli --help"));
}

} // namespace

int main(int argc, char** argv) {
    // Past a file-size limit writing the history or the log then fails with a message and exit
    // status 1, where the default action would end the program without a word.
    std::signal(SIGXFSZ, SIG_IGN);
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    return status(run(arguments));
}
