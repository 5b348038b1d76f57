#include "ChildProcess.h"

#include <cstdio>
#include <fstream>
#include <string>
#include <unistd.h>

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

// 15 characters of 10 bits at 19200 baud, 3.5 characters of silence and 5 ms: 14.635 ms a read
// of a register, 14.115 ms of an input.
TEST(CliPlan, JsonIsOneObjectWithTheLoadAndEachPollsFigures) {
    const ProcessResult result = plan("--project " + twoPolls + " --json");
    ASSERT_EQ(result.exitCode, 0) << result.err;
    ASSERT_EQ(result.out.find('\n'), result.out.size() - 1) << result.out;
    auto object = nlohmann::json::parse(result.out);
    EXPECT_NEAR(object.at("lineLoad").get<double>(), 0.029271 / 0.2, 1e-5);
    object.erase("lineLoad");
    // A disabled poll is planned but never read.
    const auto expected = nlohmann::json::parse(R"({"polls": [
        {"name": "Fast", "enabled": true, "requests": 2, "cycleMs": 29.271, "intervalMs": 200,
         "effectiveIntervalMs": 200.0},
        {"name": "Idle", "enabled": false, "requests": 1, "cycleMs": 14.115, "intervalMs": 1000,
         "effectiveIntervalMs": null}]})");
    EXPECT_EQ(object, expected) << result.out;
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

// The same words as poll --project gives, and nothing on standard output.
TEST(CliPlan, AProjectThatCannotBeReadIsRefusedAsPollRefusesIt) {
    char name[] = "/tmp/kestrin-plan-XXXXXX";
    const int fd = mkstemp(name);
    ASSERT_GE(fd, 0);
    close(fd);
    std::ofstream(name) << "{\"polls\": 3}";
    for (const std::string& path : {std::string(name), fixtures + "/absent.json"}) {
        const ProcessResult planned = plan("--project " + path + " --json");
        const ProcessResult polled = ChildProcess::run(
            ChildProcess::cliOn("/dev/null", "poll", "--project " + path + " --cycles 1"));
        EXPECT_EQ(planned.exitCode, 2) << path;
        EXPECT_EQ(planned.out, "") << path;
        EXPECT_FALSE(planned.err.empty()) << path;
        EXPECT_EQ(planned.err, polled.err) << path;
    }
    std::remove(name);
}

} // namespace
} // namespace kestrin
