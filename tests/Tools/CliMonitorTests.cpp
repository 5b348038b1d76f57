#include "BusRelay.h"
#include "ChildProcess.h"
#include "ToolOutput.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// kestrin-cli monitor on a line it never sends on: a recorded stream that kestrin-sim replays,
// and kestrin-cli poll reading kestrin-sim through a relay whose tap the monitor listens to,
// where it must count and read what the poll did.

namespace kestrin {
namespace {

using ChildProcess::ProcessResult;
using ChildProcess::RunningProcess;
using ChildProcess::SimulatorProcess;

const std::string fixtures = KESTRIN_TOOLS_FIXTURES;
// HR 0–1 (0x1234, 0xFB2E) and IR 0 (0x00EA) of unit 1.
const std::string boiler = fixtures + "/boiler.csv";

using ToolOutput::fileText;
using ToolOutput::lines;
using ToolOutput::temporaryPath;

// Requests, Responses, No response, Exceptions and Invalid of the statistics line.
using Statistics = std::array<std::int64_t, 5>;

std::optional<Statistics> statistics(const std::string& output) {
    static const std::regex line("Requests (\\d+) · Responses (\\d+) · No response (\\d+) · "
                                 "Exceptions (\\d+) · Invalid (\\d+)");
    std::smatch found;
    if (!std::regex_search(output, found, line)) {
        return std::nullopt;
    }
    Statistics counts{};
    for (std::size_t index = 0; index < counts.size(); ++index) {
        counts[index] = std::stoll(found[index + 1]);
    }
    return counts;
}

// Each datapoint's values ("poll/name"), in the order of the history file's rows.
std::map<std::string, std::vector<std::string>> historyValues(const std::string& path) {
    std::map<std::string, std::vector<std::string>> values;
    std::istringstream rows(fileText(path));
    std::string row;
    std::getline(rows, row);
    while (std::getline(rows, row)) {
        std::vector<std::string> fields;
        std::istringstream cells(row);
        for (std::string cell; std::getline(cells, cell, ',');) {
            fields.push_back(cell);
        }
        if (fields.size() >= 4) {
            values[fields[1] + "/" + fields[2]].push_back(fields[3]);
        }
    }
    return values;
}

// The stream another master made reading boiler.csv, with an exception, a request nothing
// answered, a write, noise and a broken answer among the answers. The log's formats and the
// pairing are the engine's and the model's tests; here that they reach the terminal and the
// files. Without a list every frame is still logged and counted, and no datapoint takes a value.
TEST(CliMonitor, LogsCountsAndRecordsWhatAReplayedLineCarried) {
    const std::string history = temporaryPath("heard.csv");
    const std::string stopped = "--- Listening stopped ---";
    const std::string counted =
        "Requests 7 · Responses 5 · No response 1 · Exceptions 1 · Invalid 1";
    const struct {
        std::string list;
        std::vector<std::string> logged;
        std::map<std::string, std::vector<std::string>> values;
    } rows[] = {
        {"--csv " + boiler,
         {"✕ Unit 1 · FC 04 Read input registers IR 0 · No response", "✎ Unit 1 · Word = 4661"},
         // A write heard sets the value as Kestrin's own does, without a sample.
         {{"boiler/Word", {"4660"}},
          {"boiler/Signed word", {"-1234"}},
          {"boiler/Temperature", {"23.4", "23.5"}}}},
        {"", {"⚠ Fits no request · FF 00"}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.list);
        const SimulatorProcess sim(
            ChildProcess::sim({"--replay", fixtures + "/boiler-heard.txt", "--frame", "8E1"}));
        ASSERT_FALSE(sim.port().empty());
        const ProcessResult result = ChildProcess::run(
            ChildProcess::cliOn(sim.port(), "monitor",
                                "--baud 9600 --frame 8E1 --no-timestamps --seconds 1 --history " +
                                    history + " " + row.list));
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.err, "");
        const std::vector<std::string> output = lines(result.out);
        ASSERT_GE(output.size(), 3U) << result.out;
        EXPECT_EQ(output.front(), "--- Listening on " + sim.port() + " @ 9600 8E1 ---");
        EXPECT_EQ(std::vector(output.end() - 2, output.end()),
                  (std::vector<std::string>{stopped, counted}));
        for (const std::string& line : row.logged) {
            EXPECT_NE(std::ranges::find(output, line), output.end()) << line;
        }
        EXPECT_EQ(historyValues(history), row.values);
    }
    EXPECT_EQ(std::remove(history.c_str()), 0);
}

// Read every 20 ms at 19200 8N1: HR 0–2 in one request, IR 0, a coil, a discrete input, and
// HR 300, which the device lacks (exception 02). The coil is CO 5, off where DI 0 is on, so that
// coils heard as discrete inputs or the other way round read wrong.
std::string lineProject() {
    std::string path = temporaryPath("line.json");
    std::ofstream(path) << R"({"polls": [{"name": "Line", "intervalMs": 20, "datapoints": [
        {"name": "Word", "table": "holdingRegister", "address": 0},
        {"name": "Signed word", "table": "holdingRegister", "address": 1, "dataType": "int16"},
        {"name": "Scaled", "table": "holdingRegister", "address": 2, "dataType": "int16",
         "scale": 0.1},
        {"name": "Temperature", "table": "inputRegister", "address": 0, "dataType": "int16",
         "scale": 0.1},
        {"name": "Pump", "table": "coil", "address": 5, "dataType": "bool"},
        {"name": "Alarm", "table": "discreteInput", "address": 0, "dataType": "bool"},
        {"name": "Missing", "table": "holdingRegister", "address": 300}]}],
        "serial": {"baudRate": 19200, "dataBits": 8, "parity": "none", "stopBits": 1},
        "timeoutMs": 100})";
    return path;
}

// The monitor hears the requests of the poll's last moment that the poll gave up on as it
// stopped: those, and their outcomes, it may count beyond the poll. Past them its values are
// the poll's.
void expectHeardWhatWasRead(const Statistics& polled, const Statistics& heard,
                            const std::map<std::string, std::vector<std::string>>& read,
                            const std::map<std::string, std::vector<std::string>>& listened) {
    const std::int64_t inFlight = heard[0] - polled[0];
    EXPECT_GE(inFlight, 0);
    EXPECT_LE(inFlight, 1);
    for (std::size_t index = 1; index < polled.size(); ++index) {
        EXPECT_GE(heard[index], polled[index]) << index;
    }
    // An exception is a response as well.
    EXPECT_EQ(heard[1] + heard[2] + heard[4] - polled[1] - polled[2] - polled[4], inFlight);
    // Every datapoint but the one the device lacks was read.
    ASSERT_EQ(read.size(), 6U);
    ASSERT_EQ(listened.size(), read.size());
    for (const auto& [name, values] : read) {
        const std::vector<std::string>& heardValues = listened.at(name);
        ASSERT_GE(heardValues.size(), values.size()) << name;
        EXPECT_LE(heardValues.size(), values.size() + static_cast<std::size_t>(inFlight)) << name;
        EXPECT_EQ(std::vector(heardValues.begin(), heardValues.begin() + values.size()), values)
            << name;
    }
}

TEST(CliMonitor, HearsThroughARelayWhatAPollCountedAndRead) {
    const std::string project = lineProject();
    const std::string readHistory = temporaryPath("read.csv");
    const std::string heardHistory = temporaryPath("heard.csv");
    for (const std::string faults : {"", "--fault drop=0.1,crc=0.1 --seed 3"}) {
        SCOPED_TRACE(faults);
        const SimulatorProcess sim(
            ChildProcess::sim({"--csv", fixtures + "/every-type.csv"},
                              "--baud 19200 --frame 8N1 --wire-timing " + faults));
        ASSERT_FALSE(sim.port().empty());
        const BusRelay relay(sim.port());
        ASSERT_TRUE(relay.ready());
        RunningProcess monitor(ChildProcess::cliOn(relay.tapPath(), "monitor",
                                                   "--no-timestamps --project " + project +
                                                       " --history " + heardHistory));
        ASSERT_TRUE(monitor.waitForOutput("Listening on"));
        const ProcessResult poll = ChildProcess::run(ChildProcess::cliOn(
            relay.masterPath(), "poll",
            "--no-timestamps --seconds 1 --project " + project + " --history " + readHistory));
        ASSERT_EQ(poll.exitCode, 0) << poll.err;
        // Past the time-out of a request the poll left unanswered, the limit ends the monitor
        // with SIGTERM, as a user would.
        const ProcessResult heard = monitor.finish(std::chrono::milliseconds(400));
        EXPECT_EQ(heard.err, "");
        const std::optional<Statistics> polled = statistics(poll.out);
        const std::optional<Statistics> listened = statistics(heard.out);
        ASSERT_TRUE(polled && listened) << poll.out << heard.out;
        EXPECT_GT((*polled)[3], 0) << "exceptions";
        if (!faults.empty()) {
            EXPECT_GT((*polled)[2], 0) << "no response";
            EXPECT_GT((*polled)[4], 0) << "invalid";
        }
        expectHeardWhatWasRead(*polled, *listened, historyValues(readHistory),
                               historyValues(heardHistory));
    }
    EXPECT_EQ(std::remove(project.c_str()), 0);
    EXPECT_EQ(std::remove(readHistory.c_str()), 0);
    EXPECT_EQ(std::remove(heardHistory.c_str()), 0);
}

} // namespace
} // namespace kestrin
