#include "ChildProcess.h"
#include "ToolOutput.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

// kestrin-cli poll against kestrin-sim on a pseudo-terminal: the log as it is written, the cycle
// count, the files written at the end, and the ways the command ends.

namespace kestrin {
namespace {

using ChildProcess::ProcessResult;
using ChildProcess::SimulatorProcess;

const std::string fixtures = KESTRIN_TOOLS_FIXTURES;
// HR 0–1 (0x1234, 0xFB2E) and IR 0 (0x00EA): one poll of two read requests.
const std::string boiler = fixtures + "/boiler.csv";
// At 19200 8N1: poll "Fast" with HR 0 and HR 2 (0x00D7), and the disabled poll "Idle".
const std::string twoPolls = fixtures + "/two-polls.json";

// Serves every-type.csv, which holds the registers of both fixtures.
std::vector<std::string> simulatorCommand(const std::string& options) {
    return ChildProcess::sim({"--csv", fixtures + "/every-type.csv"}, options);
}

SimulatorProcess simulator(const std::string& faults = "") {
    return SimulatorProcess(simulatorCommand(faults));
}

std::vector<std::string> pollCommand(const std::string& port, const std::string& options) {
    return ChildProcess::cliOn(port, "poll", "--timeout-ms 3000 --no-timestamps " + options);
}

using ToolOutput::fileText;
using ToolOutput::temporaryPath;

// Without the summaries of what each unit took that follow the statistics, which CliBusTests
// checks.
std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result = ToolOutput::lines(text);
    std::erase_if(result, [](const std::string& line) { return line.starts_with("Unit "); });
    return result;
}

TEST(CliPoll, LogsStartTheLinesOfTheCyclesAskedForStopAndTheStatistics) {
    const std::string holding = "← Unit 1 · FC 03 Read holding registers · 04 12 34 FB 2E";
    const std::string input = "← Unit 1 · FC 04 Read input registers · 02 00 EA";
    const std::string allAnswered = " · No response 0 · Exceptions 0 · Invalid 0";
    const struct {
        const char* faults;
        const char* options;
        std::vector<std::string> between;
        std::string statistics;
    } rows[] = {
        {"",
         "--cycles 2",
         {holding, input, holding, input},
         "Requests 4 · Responses 4" + allAnswered},
        {"", "--cycles 1 --only-problems", {}, "Requests 2 · Responses 2" + allAnswered},
        {"",
         "--cycles 1 --raw-frames",
         {"← Unit 1 · FC 03 Read holding registers · 01 03 00 00 00 02 C4 0B  ←  01 03 04 12 34 "
          "FB 2E 7D A9",
          "← Unit 1 · FC 04 Read input registers · 01 04 00 00 00 01 31 CA  ←  01 04 02 00 EA 38 "
          "BF"},
         "Requests 2 · Responses 2" + allAnswered},
        // Failures are logged whatever the options say, with the time-out in effect.
        {"--fault drop=1",
         "--cycles 1 --only-problems --timeout-ms 300",
         {"✕ Unit 1 · FC 03 Read holding registers HR 0–1 · no response within 300 ms",
          "✕ Unit 1 · FC 04 Read input registers IR 0 · no response within 300 ms"},
         "Requests 2 · Responses 0 · No response 2 · Exceptions 0 · Invalid 0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.faults) + " " + row.options);
        const SimulatorProcess sim = simulator(row.faults);
        ASSERT_FALSE(sim.port().empty());
        const ProcessResult result = ChildProcess::run(
            pollCommand(sim.port(), "--csv " + boiler + " --baud 9600 --frame 8E1 " + row.options));
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.err, "");
        std::vector<std::string> expected{"--- Reading started on " + sim.port() +
                                          " @ 9600 8E1 ---"};
        expected.insert(expected.end(), row.between.begin(), row.between.end());
        expected.insert(expected.end(), {"--- Reading stopped ---", row.statistics});
        EXPECT_EQ(lines(result.out), expected);
    }
}

// With --json standard output is the values' alone, one line each, stamped when they came.
TEST(CliPoll, PrintsEveryValueReadAsOneJsonLineAndTheLogOnStandardError) {
    const SimulatorProcess sim = simulator();
    ASSERT_FALSE(sim.port().empty());
    const ProcessResult result = ChildProcess::run(
        pollCommand(sim.port(), "--csv " + boiler + " --baud 9600 --frame 8E1 --cycles 2 --json"));
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.err.find("Requests 4 · Responses 4"), std::string::npos) << result.err;
    const std::vector<std::string> values = lines(result.out);
    ASSERT_EQ(values.size(), 6U) << result.out;
    const nlohmann::json expected[] = {
        {{"name", "Word"}, {"table", "HR"}, {"address", 0}, {"value", 4660}, {"raw", {4660}}},
        {{"name", "Signed word"}, {"address", 1}, {"value", -1234}, {"raw", {0xFB2E}}},
        {{"name", "Temperature"}, {"table", "IR"}, {"value", 23.4}, {"eu", "°C"}},
    };
    std::string previousTime;
    for (std::size_t index = 0; index < values.size(); ++index) {
        const nlohmann::json value = nlohmann::json::parse(values[index]);
        for (const auto& [key, field] : expected[index % 3].items()) {
            EXPECT_EQ(value[key], field) << values[index];
        }
        EXPECT_EQ(value["poll"], "boiler");
        EXPECT_EQ(value["status"], "ok");
        // The same offset throughout, so the texts order as the times do.
        const std::string time = value.value("time", "");
        EXPECT_GE(time, previousTime);
        EXPECT_EQ(time.size(), std::string("2026-11-24T06:14:03.251+01:00").size()) << time;
        previousTime = time;
    }
}

// A poll every 2 ms answers several times within one frame of the main thread; each answer still
// counts, and reading stops at the one that completes the last cycle.
TEST(CliPoll, StopsAtExactlyTheCyclesAskedForWhenAnswersComeFasterThanAFrame) {
    const std::string project = temporaryPath("fast.json");
    std::string text = fileText(twoPolls);
    const std::string interval = "\"intervalMs\": 200";
    text.replace(text.find(interval), interval.size(), "\"intervalMs\": 2");
    std::ofstream(project) << text;
    const SimulatorProcess sim = simulator();
    ASSERT_FALSE(sim.port().empty());
    const ProcessResult result =
        ChildProcess::run(pollCommand(sim.port(), "--project " + project + " --cycles 25 --json"));
    std::filesystem::remove(project);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(lines(result.out).size(), 50U);
    EXPECT_NE(result.err.find("Requests 50 · Responses 50"), std::string::npos) << result.err;
}

// The history's layout is the history writer's; here the files are asked for and written. Then,
// under a file-size limit of nothing, neither can be written again: both failures name their
// file, the files written before stay as they were, and the exit status is 1.
TEST(CliPoll, WritesHistoryAndLogOrKeepsTheOldFilesAndExitsOneWhenItCannot) {
    const SimulatorProcess sim = simulator();
    ASSERT_FALSE(sim.port().empty());
    const std::string history = temporaryPath("history.csv");
    const std::string log = temporaryPath("log.txt");
    const auto arguments = [&](const std::string& cycles) {
        return pollCommand(sim.port(), "--csv " + boiler + " --cycles " + cycles + " --history " +
                                           history + " --log " + log);
    };
    const ProcessResult result = ChildProcess::run(arguments("2"));
    EXPECT_EQ(result.exitCode, 0) << result.err;

    const std::string logText = fileText(log);
    EXPECT_EQ(logText, result.out.substr(0, result.out.rfind("Requests ")));
    const std::string text = fileText(history);
    EXPECT_TRUE(text.starts_with("Time,Poll,Name,Value,Unit\r\n")) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 7) << text;
    for (const char* name : {",boiler,Word,", ",boiler,Signed word,", ",boiler,Temperature,"}) {
        const std::size_t first = text.find(name);
        EXPECT_NE(first, std::string::npos) << name;
        EXPECT_NE(text.find(name, first + 1), std::string::npos) << "twice: " << name;
    }

    // The limit would stop the files that capture the output too, so the messages and the exit
    // status come through a pipe, and the log as printed is dropped.
    std::vector<std::string> limited = arguments("1");
    limited.insert(limited.begin(),
                   {"/bin/sh", "-c",
                    "{ (ulimit -f 0; exec \"$@\") 2>&1 >/dev/null; echo \"exit $?\"; } | cat",
                    "sh"});
    EXPECT_EQ(ChildProcess::run(limited).out, history + ": Saving failed: File too large\n" + log +
                                                  ": Saving failed: File too large\nexit 1\n");
    EXPECT_EQ(fileText(history), text);
    EXPECT_EQ(fileText(log), logText);
    EXPECT_EQ(std::remove(history.c_str()), 0);
    EXPECT_EQ(std::remove(log.c_str()), 0);
}

// A delay longer than the kernel takes is shortened as the project is taken, before reading
// starts, and the log says so there too.
TEST(CliPoll, ReadsOnlyTheEnabledPollsOfAProjectWithItsSettingsOrTheOverrides) {
    const SimulatorProcess sim = simulator();
    ASSERT_FALSE(sim.port().empty());
    const std::string slowDirection = temporaryPath("rs485.json");
    std::string text = fileText(twoPolls);
    const std::string stopBits = "\"stopBits\": 1";
    text.insert(text.find(stopBits) + stopBits.size(),
                ", \"rs485\": {\"rtsWhileSending\": \"high\", \"delayBeforeSendMs\": 0, "
                "\"delayAfterSendMs\": 250}");
    std::ofstream(slowDirection) << text;
    const std::string apart = "← Unit 1 · FC 03 Read holding registers · 02 12 34";
    const std::string scaled = "← Unit 1 · FC 03 Read holding registers · 02 00 D7";
    const std::string bridged = "← Unit 1 · FC 03 Read holding registers · 06 12 34 FB 2E 00 D7";
    const struct {
        std::string project;
        const char* options;
        std::vector<std::string> before;
        const char* serial;
        std::vector<std::string> answers;
    } rows[] = {
        {twoPolls, "--frame 8E1", {}, "19200 8E1", {apart, scaled, apart, scaled}},
        {twoPolls, "--gap 1 --baud 9600", {}, "9600 8N1", {bridged, bridged}},
        {slowDirection,
         "",
         {"⚠ The project's RS-485 delays above 100 ms were shortened to 100 ms, the longest the "
          "kernel takes."},
         "19200 8N1",
         {apart, scaled, apart, scaled}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.project + " " + row.options);
        const ProcessResult result = ChildProcess::run(
            pollCommand(sim.port(), "--project " + row.project + " --cycles 2 " + row.options));
        EXPECT_EQ(result.exitCode, 0) << result.err;
        std::vector<std::string> expected = row.before;
        expected.push_back("--- Reading started on " + sim.port() + " @ " + row.serial + " ---");
        expected.insert(expected.end(), row.answers.begin(), row.answers.end());
        const std::vector<std::string> logged = lines(result.out);
        ASSERT_GE(logged.size(), 2U);
        EXPECT_EQ(std::vector(logged.begin(), logged.end() - 2), expected);
    }
    EXPECT_EQ(std::remove(slowDirection.c_str()), 0);
}

TEST(CliPoll, EndsCleanlyOnSigintAndSigterm) {
    const SimulatorProcess sim = simulator();
    ASSERT_FALSE(sim.port().empty());
    for (const std::string signal : {"INT", "TERM"}) {
        SCOPED_TRACE(signal);
        // A file of its own, so that no earlier answer sends the signal before the poll runs.
        const std::string out = temporaryPath(signal + ".txt");
        // The shell signals the poll as soon as the first answer is printed.
        const char* const script = "out=$1 signal=$2; shift 2; \"$@\" > \"$out\" & "
                                   "until grep -qF '← ' \"$out\" 2>/dev/null || ! kill -0 $!; "
                                   "do sleep 0.05; done; kill -\"$signal\" $!; wait $!";
        std::vector<std::string> arguments = pollCommand(sim.port(), "--csv " + boiler);
        arguments.insert(arguments.begin(), {"/bin/sh", "-c", script, "sh", out, signal});
        EXPECT_EQ(ChildProcess::run(arguments).exitCode, 0);
        const std::vector<std::string> logged = lines(fileText(out));
        ASSERT_GE(logged.size(), 4U);
        EXPECT_EQ(logged[logged.size() - 2], "--- Reading stopped ---");
        EXPECT_TRUE(logged.back().starts_with("Requests ")) << logged.back();
        EXPECT_EQ(std::remove(out.c_str()), 0);
    }
}

// The simulator ends after the first cycle and comes back at the same link, which no port
// discovery announces: the poll logs the loss and the reopening as the window does, and its
// cycles count on across the outage.
TEST(CliPoll, ResumesWhenTheSimulatorReturnsAtItsLinkAndCountsCyclesAcrossTheOutage) {
    const std::string link = temporaryPath("ttyKestrinSim");
    std::optional<SimulatorProcess> sim;
    sim.emplace(simulatorCommand("--link " + link));
    ASSERT_FALSE(sim->port().empty());
    ChildProcess::RunningProcess poll(
        pollCommand(link, "--csv " + boiler + " --baud 9600 --frame 8E1 --cycles 3"));
    const std::string input = "← Unit 1 · FC 04 Read input registers · 02 00 EA";
    ASSERT_TRUE(poll.waitForOutput(input));
    sim.reset();
    const std::string lost = "Serial port " + link + " is gone; waiting for it to return";
    ASSERT_TRUE(poll.waitForOutput(lost));
    sim.emplace(simulatorCommand("--link " + link));
    const ProcessResult result = poll.finish();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");

    const std::vector<std::string> logged = lines(result.out);
    const std::string started = "--- Reading started on " + link + " @ 9600 8E1 ---";
    const auto loss = std::find(logged.begin(), logged.end(), lost);
    ASSERT_NE(loss, logged.end()) << result.out;
    ASSERT_GE(logged.end() - loss, 5);
    EXPECT_EQ(std::vector(loss, loss + 3),
              (std::vector<std::string>{lost, "--- Serial port open again ---", started}));
    EXPECT_EQ(logged.front(), started);
    EXPECT_EQ(std::count(logged.begin(), logged.end(), input), 3);
    EXPECT_EQ(std::count(logged.begin(), logged.end(),
                         "← Unit 1 · FC 03 Read holding registers · 04 12 34 FB 2E"),
              3);
    EXPECT_EQ(logged[logged.size() - 2], "--- Reading stopped ---");
    EXPECT_EQ(logged.back(), "Requests 6 · Responses 6 · No response 0 · Exceptions 0 · Invalid 0");
}

// Which paths are serial ports is the link's to say; here only how the poll reports it.
TEST(CliPoll, RefusesWhatItCannotRunWithTwoAndAPortItCannotUseWithThree) {
    const std::string empty = temporaryPath("empty.csv");
    std::ofstream(empty) << "Name,Table,Address\r\n";
    const std::string missing = "--port /dev/ttyKestrinMissing";
    const std::string list = " --csv " + boiler;
    const struct {
        std::string options;
        int exitCode;
        std::string message;
    } rows[] = {
        {missing + " --csv " + empty, 2, empty + ": No datapoints found in this file."},
        {missing + list, 3, "Cannot open /dev/ttyKestrinMissing: No such file or directory.\n"},
        // Before the port: a file that cannot be written ends the run at once, not after it.
        {missing + list + " --log /nonexistent/log.txt", 2,
         "/nonexistent/log.txt: Saving failed: No such file or directory\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.options);
        const ProcessResult result = ChildProcess::run(ChildProcess::cli({"poll"}, row.options));
        EXPECT_EQ(result.exitCode, row.exitCode);
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.err.find(row.message), std::string::npos) << result.err;
    }
    EXPECT_EQ(std::remove(empty.c_str()), 0);
}

} // namespace
} // namespace kestrin
