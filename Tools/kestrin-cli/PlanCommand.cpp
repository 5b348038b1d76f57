#include "PlanCommand.h"

#include "CliOptions.h"
#include "JsonLines.h"
#include "L10n.h"
#include "PollBudgets.h"
#include "ProjectStore.h"

#include <array>
#include <cmath>
#include <string_view>

#include <QString>

namespace kestrin::PlanCommand {

namespace {

using CommandLine::Option;

constexpr std::array options{
    Option{"project", "FILE", "the project file whose polls are planned"},
    Option{"turnaround-ms", "MS",
           "how long each device takes to start its answer, 0-10000 ms\n"
           "(default 5)"},
    Option{"json", "", "one JSON object: the line's load and each poll's figures"},
};

const CommandLine::Syntax planSyntax{
    "kestrin-cli plan",
    "Usage: kestrin-cli plan --project FILE.json [--turnaround-ms MS] [--json]\n\n"
    "Prints the requests each poll makes and how long they hold the line, from the project's\n"
    "serial settings and the time each device takes to answer: a poll's cycle, its interval\n"
    "and the interval it will really get, then the share of the line all enabled polls need.\n"
    "Opens no port.\n",
    options, "Exit status: 0 planned, 2 usage error or a project that cannot be read.\n"};

// Ten seconds: a device slower than that is not answering.
constexpr int longestTurnaroundMs = 10000;

double milliseconds(double seconds) {
    // To the microsecond: finer digits are noise in a prediction.
    return std::round(seconds * 1e6) / 1e3;
}

// "runs every 200 ms", or why it never runs.
std::string effectiveText(const BusBudget::PollBudget& poll) {
    return poll.effectiveInterval
               ? "runs every " +
                     std::to_string(PollBudgets::milliseconds(*poll.effectiveInterval)) + " ms"
               : std::string("not read");
}

void printText(const PollerProject& project, const BusBudget::Budget& budget, std::ostream& out) {
    for (std::size_t i = 0; i < budget.polls.size(); ++i) {
        const Poll& poll = project.polls[i];
        const BusBudget::PollBudget& figures = budget.polls[i];
        out << (poll.name.empty() ? L10n::texts().polls.unnamed() : poll.name) << ": "
            << (poll.enabled ? "enabled" : "disabled") << ", " << figures.requests.size()
            << (figures.requests.size() == 1 ? " request" : " requests") << ", cycle "
            << PollBudgets::milliseconds(figures.cycle) << " ms, interval " << poll.intervalMs
            << " ms, " << effectiveText(figures) << '\n';
        for (const BusBudget::Request& request : figures.requests) {
            out << "  " << PollBudgets::requestLine(request) << '\n';
        }
        if (const auto warning = PollBudgets::warning(figures, budget, project.timeoutMs)) {
            out << "  " << *warning << '\n';
        }
    }
    out << "Line load: " << std::lround(budget.lineLoad * 100) << " %\n";
}

void printJson(const PollerProject& project, const BusBudget::Budget& budget, std::ostream& out) {
    nlohmann::json polls = nlohmann::json::array();
    for (std::size_t i = 0; i < budget.polls.size(); ++i) {
        const BusBudget::PollBudget& figures = budget.polls[i];
        nlohmann::json effective = nullptr;
        if (figures.effectiveInterval) {
            effective = milliseconds(*figures.effectiveInterval);
        }
        polls.push_back({{"name", project.polls[i].name},
                         {"enabled", project.polls[i].enabled},
                         {"requests", figures.requests.size()},
                         {"cycleMs", milliseconds(figures.cycle)},
                         {"intervalMs", project.polls[i].intervalMs},
                         {"effectiveIntervalMs", effective}});
    }
    JsonLines::print({{"lineLoad", budget.lineLoad}, {"polls", polls}}, out);
}

} // namespace

const CommandLine::Syntax& syntax() {
    return planSyntax;
}

Result<PlanOptions, std::string> check(const CommandLine::Parsed& parsed) {
    const std::optional<std::string> project = parsed.value("project");
    if (!project) {
        return L10n::texts().errors.missingOption("--project");
    }
    PlanOptions options{.projectPath = *project, .json = parsed.has("json")};
    if (const auto typed = parsed.value("turnaround-ms")) {
        const std::optional<int> ms = CliOptions::wholeNumber(*typed, 0, longestTurnaroundMs);
        if (!ms) {
            return L10n::texts().errors.invalidOptionValue("--turnaround-ms", *typed);
        }
        options.turnaroundSeconds = *ms / 1000.0;
    }
    return options;
}

ExitCode run(const PlanOptions& options, std::ostream& out, std::ostream& err) {
    const Result<PollerProject, std::string> loaded =
        ProjectStore::open(QString::fromStdString(options.projectPath));
    if (!loaded) {
        err << loaded.error() << '\n';
        return ExitCode::usageError;
    }
    const PollerProject& project = loaded.value();
    const auto budget = PollBudgets::of(project.polls, project.serial, project.maxGap,
                                        {.fallback = options.turnaroundSeconds, .measured = {}});
    if (!budget) {
        err << "kestrin-cli plan: the project's baud rate " << project.serial.baudRate
            << " is not a positive number\n";
        return ExitCode::usageError;
    }
    if (options.json) {
        printJson(project, *budget, out);
    } else {
        printText(project, *budget, out);
    }
    return ExitCode::success;
}

} // namespace kestrin::PlanCommand
