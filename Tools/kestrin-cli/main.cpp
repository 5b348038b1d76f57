#include "CliOptions.h"
#include "ExitCode.h"
#if KESTRIN_HAS_POLL
#include "PollCommand.h"
#include "PollOptions.h"
#endif
#if KESTRIN_HAS_PORTS
#include "PortsCommand.h"
#endif
#include "ReadCommand.h"
#include "WriteCommand.h"

#include <algorithm>
#include <csignal>
#include <iostream>
#include <string_view>
#include <vector>

using namespace kestrin;

namespace {

bool asksForHelp(std::string_view argument) {
    return argument == "--help" || argument == "-h";
}

ExitCode usageError(const UsageError& error) {
    if (!error.message.empty()) {
        std::cerr << error.message << '\n';
        return ExitCode::usageError;
    }
    if (!error.argument.empty()) {
        std::cerr << "kestrin-cli: " << error.argument << "\n\n";
    }
    std::cerr << CliOptions::usage();
    return ExitCode::usageError;
}

ExitCode run(const std::vector<std::string_view>& arguments) {
    if (std::any_of(arguments.begin(), arguments.end(), asksForHelp)) {
        std::cout << CliOptions::usage();
        return ExitCode::success;
    }
    if (arguments.empty()) {
        return usageError({});
    }
#if KESTRIN_HAS_PORTS
    if (arguments.front() == "ports") {
        return runPortsCommand(std::span(arguments).subspan(1), std::cout, std::cerr);
    }
#endif
#if KESTRIN_HAS_POLL
    if (arguments.front() == "poll") {
        const auto options = PollOptions::parse(std::span(arguments).subspan(1));
        if (!options) {
            return usageError(options.error());
        }
        return PollCommand::run(options.value(), std::cout, std::cerr);
    }
#endif
    const std::optional<CliOptions::Command> command = CliOptions::commandNamed(arguments.front());
    if (!command) {
        return usageError({{}, std::string(arguments.front())});
    }
    const auto options = CliOptions::parse(*command, std::span(arguments).subspan(1));
    if (!options) {
        return usageError(options.error());
    }
    return *command == CliOptions::Command::read
               ? ReadCommand::run(options.value(), std::cout, std::cerr)
               : WriteCommand::run(options.value(), std::cerr);
}

} // namespace

int main(int argc, char** argv) {
    // Past a file-size limit writing the history or the log then fails with a message and exit
    // status 1, where the default action would end the program without a word.
    std::signal(SIGXFSZ, SIG_IGN);
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    return status(run(arguments));
}
