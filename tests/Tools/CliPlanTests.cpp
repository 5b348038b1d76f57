#include "ChildProcess.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

// kestrin-cli plan: the bus budget of a project's polls, without a port.

namespace kestrin {
namespace {

using ChildProcess::ProcessResult;

const std::string fixtures = KESTRIN_TOOLS_FIXTURES;
// At 19200 8N1: poll "Fast" (200 ms) with HR 0 and HR 2, and the disabled poll "Idle" (DI 0).
const std::string twoPolls = fixtures + "/two-polls.json";

ProcessResult plan(const std::string& line) {
    return ChildProcess::run(ChildProcess::cli({"plan"}, line));
}

// A temporary copy of twoPolls at another baud rate; the caller removes it.
std::string projectAt(int baudRate) {
    char name[] = "/tmp/kestrin-plan-XXXXXX";
    const int fd = mkstemp(name);
    close(fd);
    auto project = nlohmann::json::parse(std::ifstream(twoPolls));
    project["serial"]["baudRate"] = baudRate;
    std::ofstream(name) << project.dump();
    return name;
}

// 15 characters of 10 bits at 19200 baud, 3.5 characters of silence and 5 ms: 14.635 ms a read
// of a register, 14.115 ms of an input. A slower device or an adapter's handover adds to each.
TEST(CliPlan, JsonIsOneObjectWithTheLoadAndEachPollsFigures) {
    struct Row {
        std::string options;
        double fastCycle;
        double idleCycle;
    };
    const std::vector<Row> rows{
        {"", 29.271, 14.115},
        {" --turnaround-ms 20", 59.271, 29.115},
        // An FTDI adapter at its 16 ms latency timer.
        {" --handover-ms 16", 61.271, 30.115},
    };
    for (const Row& row : rows) {
        const ProcessResult result = plan("--project " + twoPolls + " --json" + row.options);
        ASSERT_EQ(result.exitCode, 0) << row.options << result.err;
        ASSERT_EQ(result.out.find('\n'), result.out.size() - 1) << result.out;
        auto object = nlohmann::json::parse(result.out);
        EXPECT_NEAR(object.at("lineLoad").get<double>(), row.fastCycle / 200, 1e-5) << row.options;
        object.erase("lineLoad");
        // A disabled poll is planned but never read.
        nlohmann::json expected = nlohmann::json::parse(R"({"polls": [
            {"name": "Fast", "enabled": true, "requests": 2, "intervalMs": 200,
             "effectiveIntervalMs": 200.0},
            {"name": "Idle", "enabled": false, "requests": 1, "intervalMs": 1000,
             "effectiveIntervalMs": null}]})");
        expected["polls"][0]["cycleMs"] = row.fastCycle;
        expected["polls"][1]["cycleMs"] = row.idleCycle;
        EXPECT_EQ(object, expected) << row.options << result.out;
    }
}

TEST(CliPlan, TextListsEachPollWithItsRequestsThenTheLoad) {
    const ProcessResult result = plan("--project " + twoPolls);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out,
              "Fast: enabled, 2 requests, cycle 29 ms, interval 200 ms, runs every 200 ms\n"
              "  Unit 1 · HR 0 · 15 ms\n"
              "  Unit 1 · HR 2 · 15 ms\n"
              "Idle: disabled, 1 request, cycle 14 ms, interval 1000 ms, not read\n"
              "  Unit 1 · DI 0 · 14 ms\n"
              "Line load: 15 %\n");
}

// Another language leaves no English word in the figures or the refusal.
TEST(CliPlan, TextIsInTheUsersLanguage) {
    const std::string project = projectAt(0);
    for (const std::string& path : {twoPolls, project}) {
        const ProcessResult result = ChildProcess::run(ChildProcess::command(
            {"/usr/bin/env", "LANGUAGE=de", KESTRIN_CLI_PATH, "plan"}, "--project " + path));
        EXPECT_FALSE(result.out.empty() && result.err.empty()) << path;
        for (const char* english : {"enabled", "disabled", "request", "cycle", "interval ", "runs",
                                    "not ", "Line load", "Unit", "baud rate", "number"}) {
            EXPECT_EQ((result.out + result.err).find(english), std::string::npos)
                << english << " in " << result.out << result.err;
        }
    }
    std::filesystem::remove(project);
}

// Which baud rates give no plan is the budget's test; here that one is refused.
TEST(CliPlan, RefusesWithoutPrintingAPlan) {
    const std::string noBaudRate = projectAt(0);
    for (const std::string& line :
         {"--project " + noBaudRate, "--project " + twoPolls + " --turnaround-ms -1",
          "--project " + twoPolls + " --handover-ms 256"}) {
        const ProcessResult result = plan(line);
        EXPECT_EQ(result.exitCode, 2) << line;
        EXPECT_EQ(result.out, "") << line;
        EXPECT_FALSE(result.err.empty()) << line;
    }
    std::filesystem::remove(noBaudRate);
}

// The same words as poll --project gives, and nothing on standard output. Why a project cannot
// be read is the project store's to say, for both commands alike.
TEST(CliPlan, AProjectThatCannotBeReadIsRefusedAsPollRefusesIt) {
    const std::string path = fixtures + "/absent.json";
    const ProcessResult planned = plan("--project " + path + " --json");
    const ProcessResult polled = ChildProcess::run(
        ChildProcess::cliOn("/dev/null", "poll", "--project " + path + " --cycles 1"));
    EXPECT_EQ(planned.exitCode, 2);
    EXPECT_EQ(planned.out, "");
    EXPECT_FALSE(planned.err.empty());
    EXPECT_EQ(planned.err, polled.err);
}

} // namespace
} // namespace kestrin
