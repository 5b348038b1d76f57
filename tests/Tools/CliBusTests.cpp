#include "ChildProcess.h"
#include "ToolOutput.h"

#include <fstream>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// kestrin-cli poll ends with what it measured on the bus, against kestrin-sim on a
// pseudo-terminal that answers only after the wire time of both frames and its own turnaround.

namespace kestrin {
namespace {

const std::string fixtures = KESTRIN_TOOLS_FIXTURES;

// two-polls.json read every 20 ms: two single registers a cycle at 19200 8N1.
std::string fastProject() {
    std::string text = ToolOutput::fileText(fixtures + "/two-polls.json");
    const std::string interval = "\"intervalMs\": 200";
    text.replace(text.find(interval), interval.size(), "\"intervalMs\": 20");
    const std::string path = ToolOutput::temporaryPath("bus.json");
    std::ofstream(path) << text;
    return path;
}

// The device takes 20 ms from the request's end to its answer's start. The simulator times its
// answer from the request's first byte by the wire time of both frames, as a real line would
// deliver it, so the figure comes out 20 ms; a loaded machine under a sanitizer makes it longer,
// never shorter. Without an answer there is nothing to measure and no line claims otherwise.
TEST(CliBus, PollEndsWithTheTurnaroundEachUnitTook) {
    const std::string project = fastProject();
    const struct {
        const char* simulator;
        std::string poll;
        const char* statistics;
        std::optional<int> turnaroundMs;
    } rows[] = {
        {"--wire-timing --turnaround-ms 20 --baud 19200 --frame 8N1",
         "--project " + project + " --timeout-ms 2000 --cycles 30", "Requests 60 · Responses 60",
         20},
        {"--fault drop=1", "--csv " + fixtures + "/boiler.csv --timeout-ms 100 --cycles 1",
         "Requests 2 · Responses 0", std::nullopt},
    };
    static const std::regex summary(
        R"(Unit 1: 60 answers, round trip (\d+) ms \(99 %: (\d+) ms\), )"
        R"(turnaround (\d+) ms \(99 %: (\d+) ms\))");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.simulator);
        const ChildProcess::SimulatorProcess sim(
            ChildProcess::sim({"--csv", fixtures + "/every-type.csv"}, row.simulator));
        ASSERT_FALSE(sim.port().empty());
        const ChildProcess::ProcessResult result = ChildProcess::run(
            ChildProcess::cliOn(sim.port(), "poll", row.poll + " --only-problems"));
        ASSERT_EQ(result.exitCode, 0) << result.err;
        std::vector<std::string> lines = ToolOutput::lines(result.out);
        if (!row.turnaroundMs) {
            ASSERT_FALSE(lines.empty());
            EXPECT_TRUE(lines.back().starts_with(row.statistics)) << result.out;
            continue;
        }
        ASSERT_GE(lines.size(), 2U) << result.out;
        EXPECT_TRUE(lines[lines.size() - 2].starts_with(row.statistics)) << result.out;
        std::smatch figures;
        ASSERT_TRUE(std::regex_match(lines.back(), figures, summary)) << lines.back();
        const auto ms = [&](int index) { return std::stoi(figures[index].str()); };
        EXPECT_GE(ms(3), *row.turnaroundMs - 2) << lines.back();
        EXPECT_LE(ms(3), *row.turnaroundMs + 20) << lines.back();
        EXPECT_GE(ms(2), ms(1));
        EXPECT_GE(ms(4), ms(3));
        // A register asked and answered is 7.8 ms on the wire.
        EXPECT_GE(ms(1), ms(3) + 7) << lines.back();
    }
    std::remove(project.c_str());
}

} // namespace
} // namespace kestrin
