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
    Option{"handover-ms", "MS",
           "how long the adapter holds each answer back, its latency timer,\n"
           "0-255 ms (default 0, a UART)"},
    Option{"json", "", "one JSON object: the line's load and each poll's figures"},
};

const CommandLine::Syntax planSyntax{
    "kestrin-cli plan",
    "Usage: kestrin-cli plan --project FILE.json [--turnaround-ms MS] [--handover-ms MS] "
    "[--json]\n\n"
    "Prints the requests each poll makes and how long they hold the line, from the project's\n"
    "serial settings and the time each device takes to answer: a poll's cycle, its interval\n"
    "and the interval it will really get, then the share of the line all enabled polls need.\n"
    "Opens no port.\n",
    options, "Exit status: 0 planned, 2 usage error or a project that cannot be read.\n"};

// Ten seconds: a device slower than that is not answering.
constexpr int longestTurnaroundMs = 10000;
// The most a USB adapter's latency timer takes.
constexpr int longestHandoverMs = 255;

double jsonMilliseconds(double seconds) {
    // To the microsecond: finer digits are noise in a prediction.
    return std::round(seconds * 1e6) / 1e3;
}

// "Fast: enabled, 2 requests, cycle 29 ms, interval 200 ms, runs every 200 ms".
std::string pollLine(const Poll& poll, const BusBudget::PollBudget& figures) {
    const auto& texts = L10n::texts();
    const auto& plan = texts.plan;
    const auto count = static_cast<int>(figures.requests.size());
    return L10n::concat(poll.name.empty() ? texts.polls.unnamed() : poll.name, ": ",
                        poll.enabled ? plan.enabled() : plan.disabled(), ", ", plan.requests(count),
                        ", ", plan.cycle(PollBudgets::milliseconds(figures.cycle)), ", ",
                        plan.interval(PollBudgets::milliseconds(figures.interval)), ", ",
                        figures.effectiveInterval
                            ? plan.runsEvery(PollBudgets::milliseconds(*figures.effectiveInterval))
                            : plan.notRead());
}

void printText(const PollerProject& project, const BusBudget::Budget& budget, std::ostream& out) {
    for (std::size_t i = 0; i < budget.polls.size(); ++i) {
        const BusBudget::PollBudget& figures = budget.polls[i];
        out << pollLine(project.polls[i], figures) << '\n';
        for (const BusBudget::Request& request : figures.requests) {
            out << "  " << PollBudgets::requestLine(request) << '\n';
        }
        if (const auto warning = PollBudgets::warning(figures, budget, project.timeoutMs)) {
            out << "  " << *warning << '\n';
        }
    }
    out << L10n::texts().plan.lineLoad(PollBudgets::percent(budget.lineLoad)) << '\n';
}

void printJson(const PollerProject& project, const BusBudget::Budget& budget, std::ostream& out) {
    nlohmann::json polls = nlohmann::json::array();
    for (std::size_t i = 0; i < budget.polls.size(); ++i) {
        const BusBudget::PollBudget& figures = budget.polls[i];
        nlohmann::json effective = nullptr;
        if (figures.effectiveInterval) {
            effective = jsonMilliseconds(*figures.effectiveInterval);
        }
        polls.push_back({{"name", project.polls[i].name},
                         {"enabled", project.polls[i].enabled},
                         {"requests", figures.requests.size()},
                         {"cycleMs", jsonMilliseconds(figures.cycle)},
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
    if (const auto typed = parsed.value("handover-ms")) {
        const std::optional<int> ms = CliOptions::wholeNumber(*typed, 0, longestHandoverMs);
        if (!ms) {
            return L10n::texts().errors.invalidOptionValue("--handover-ms", *typed);
        }
        options.handoverSeconds = *ms / 1000.0;
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
                                        {.fallback = options.turnaroundSeconds, .measured = {}},
                                        options.handoverSeconds);
    if (!budget) {
        err << L10n::texts().plan.badBaudRate(project.serial.baudRate) << '\n';
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
