#include "../ModbusCore/HexBytes.h"
#include "ChildProcess.h"
#include "RTUFrame.h"
#include "ToolOutput.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

// kestrin-cli against kestrin-sim on a pseudo-terminal, always at 9600 8E1, the product's
// default frame, which some kernels refuse on a pseudo-terminal: the test device must cope.

namespace kestrin {
namespace {

using ChildProcess::ProcessResult;
using ChildProcess::SimulatorProcess;

// Every data type in every word order, bits, input registers and free registers to write.
const std::string everyType = std::string(KESTRIN_TOOLS_FIXTURES) + "/every-type.csv";

std::vector<std::string> simulatorArguments(const std::string& extra = "") {
    return ChildProcess::sim({"--csv", everyType, "--baud", "9600", "--frame", "8E1"}, extra);
}

// The command on the simulator's port as a test device. The time-out is generous so that a
// loaded machine does not fail a test that should pass.
ProcessResult cli(const SimulatorProcess& simulator, const std::string& command) {
    const std::size_t name = command.find(' ');
    return ChildProcess::run(ChildProcess::cliOn(simulator.port(), command.substr(0, name),
                                                 "--baud 9600 --frame 8E1 --timeout-ms 3000 " +
                                                     command.substr(name + 1)));
}

// The last frame in a simulator's ledger; empty when there is none.
std::string lastReceived(const std::string& ledgerPath) {
    std::ifstream file(ledgerPath);
    std::string last;
    for (std::string line; std::getline(file, line);) {
        last = line.empty() ? last : line;
    }
    const nlohmann::json entry = nlohmann::json::parse(last, nullptr, false);
    return entry.is_object() ? entry.value("received", "") : "";
}

// Every type in every word order is the codec's to decode; here each option reaches it.
TEST(CliEndToEnd, ReadsEachTableWithTheTypeOrderScaleAndFormatAskedFor) {
    const SimulatorProcess simulator(simulatorArguments());
    ASSERT_FALSE(simulator.port().empty());
    const std::pair<const char*, const char*> rows[] = {
        {"read --table coil --address 0", "1\n"},
        {"read --table DI --address 0", "1\n"},
        {"read --table 3x --address 0 --type short --scale 0.1 --eu °C", "23.4 °C\n"},
        {"read --table HR --address 0 --format bin", "0001 0010 0011 0100\n"},
        {"read --table HR --address 2 --type int16 --scale 0,1", "21.5\n"},
        {"read --table HR --address 10 --type dword --format hex", "0x12345678\n"},
        {"read --table HR --address 60 --type int64 --order BADC", "-9007199254740993\n"},
        {"read --table HR --address 84 --type float64 --order dcba", "1234.5\n"},
    };
    for (const auto& [command, expected] : rows) {
        SCOPED_TRACE(command);
        const ProcessResult result = cli(simulator, command);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.out, expected);
    }
}

// That the device keeps what is written is the slave device's; here the request that arrives.
TEST(CliEndToEnd, WritesCoilsAndRegistersInTheModeAskedFor) {
    const std::string ledger = ToolOutput::temporaryPath("ledger.jsonl");
    const SimulatorProcess simulator(simulatorArguments("--ledger " + ledger));
    ASSERT_FALSE(simulator.port().empty());
    const struct {
        const char* datapoint;
        const char* value;
        const char* mode;
        const char* request; // the PDU the simulator must have received
    } rows[] = {
        {"--table CO --address 5", "on", "single", "05 00 05 FF 00"},
        // Every bit of a 64-bit integer, in a word order of its own.
        {"--table HR --address 208 --type uint64 --order CDAB", "18446744073709551613", "multiple",
         "10 00 D0 00 04 08 FF FD FF FF FF FF FF FF"},
    };
    for (const auto& row : rows) {
        const std::string write = std::string("write ") + row.datapoint + " --value " + row.value +
                                  " --write-mode " + row.mode;
        SCOPED_TRACE(write);
        const ProcessResult written = cli(simulator, write);
        EXPECT_EQ(written.exitCode, 0) << written.err;
        EXPECT_EQ(written.out, "");
        EXPECT_EQ(lastReceived(ledger), hexString(RTUFrame::build(1, test::hexBytes(row.request))));
    }
    std::remove(ledger.c_str());
}

// The keys of expected hold the same values in object; every object carries its time.
void expectHolds(const nlohmann::json& object, const nlohmann::json& expected) {
    for (const auto& [key, value] : expected.items()) {
        EXPECT_EQ(object.value(key, nlohmann::json()), value) << key;
    }
    const std::regex isoTime(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}[+-]\d\d:\d\d)");
    EXPECT_TRUE(std::regex_match(object.value("time", ""), isoTime)) << object.dump();
}

// What a script reads, the failure included: the object comes whatever happened.
TEST(CliEndToEnd, ReadsAndWritesAsOneJsonObjectALine) {
    const SimulatorProcess simulator(simulatorArguments());
    ASSERT_FALSE(simulator.port().empty());
    const struct {
        const char* command;
        int exitCode;
        const char* expected;
    } rows[] = {
        {"read --table HR --address 2 --type int16 --scale 0.1 --eu °C --json", 0,
         R"({"unit": 1, "table": "HR", "address": 2, "type": "int16", "value": 21.5,
             "text": "21.5", "eu": "°C", "raw": [215], "status": "ok"})"},
        {"read --table CO --address 0 --json", 0, R"({"value": true, "raw": [1]})"},
        {"read --table HR --address 9000 --json", 1,
         R"({"value": null, "raw": [], "status": "exception", "exception": 2})"},
        {"write --table HR --address 200 --value 0x1F --json", 0,
         R"({"value": 31, "raw": [31], "write-mode": "single", "status": "ok"})"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.command);
        const ProcessResult result = cli(simulator, row.command);
        EXPECT_EQ(result.exitCode, row.exitCode) << result.err;
        ASSERT_TRUE(result.out.ends_with('\n'));
        EXPECT_EQ(result.out.find('\n'), result.out.size() - 1) << result.out;
        expectHolds(nlohmann::json::parse(result.out), nlohmann::json::parse(row.expected));
    }
}

// Past 125 registers one request cannot hold them all: the values must still come in order.
TEST(CliEndToEnd, ReadsACountOfValuesInAsFewRequestsAsTheLimitAllows) {
    const std::string base = ToolOutput::temporaryPath("count");
    {
        std::ofstream list(base + ".csv");
        list << "Name,Unit ID,Table,Address,Data type,Word order,Scale,Unit,Format,Value,"
                "Description\n";
        for (int address = 0; address < 130; ++address) {
            list << 'R' << address << ",1,HR," << address << ",uint16,,1,,decimal," << address
                 << ",\n";
        }
    }
    const SimulatorProcess simulator(ChildProcess::sim(
        {"--csv", base + ".csv", "--ledger", base + ".jsonl"}, "--baud 9600 --frame 8E1"));
    ASSERT_FALSE(simulator.port().empty());
    const ProcessResult json = cli(simulator, "read --table HR --address 0 --count 130 --json");
    EXPECT_EQ(json.exitCode, 0) << json.err;
    const nlohmann::json values = nlohmann::json::parse(json.out);
    ASSERT_EQ(values.size(), 130U);
    for (int address = 0; address < 130; ++address) {
        expectHolds(values[address],
                    {{"address", address}, {"value", address}, {"raw", {address}}});
    }
    std::ifstream ledger(base + ".jsonl");
    const auto requests =
        std::count(std::istreambuf_iterator<char>(ledger), std::istreambuf_iterator<char>(), '\n');
    EXPECT_EQ(requests, 2);
    const ProcessResult text = cli(simulator, "read --table HR --address 128 --count 2 --eu V");
    EXPECT_EQ(text.out, "HR 128: 128 V\nHR 129: 129 V\n");
    std::remove((base + ".csv").c_str());
    std::remove((base + ".jsonl").c_str());
}

// --cycles ends a repeated read on its own; each repetition is one line.
TEST(CliEndToEnd, RepeatsAReadEveryIntervalForTheCyclesAskedFor) {
    const SimulatorProcess simulator(simulatorArguments());
    ASSERT_FALSE(simulator.port().empty());
    const auto started = std::chrono::steady_clock::now();
    const ProcessResult result =
        cli(simulator, "read --table HR --address 0 --count 2 --interval 150 --cycles 3 --json");
    EXPECT_GE(std::chrono::steady_clock::now() - started, std::chrono::milliseconds(300));
    EXPECT_EQ(result.exitCode, 0) << result.err;
    std::istringstream lines(result.out);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_EQ(nlohmann::json::parse(line).size(), 2U) << line;
    }
    EXPECT_EQ(count, 3);
}

// A repeated read holds its port from the first read to the last: another command, even one
// run as root, is refused meanwhile and told who has the port.
TEST(CliEndToEnd, ARepeatedReadHoldsItsPortUntilItEnds) {
    const SimulatorProcess simulator(simulatorArguments());
    ASSERT_FALSE(simulator.port().empty());
    ChildProcess::RunningProcess repeating(
        ChildProcess::cliOn(simulator.port(), "read",
                            "--timeout-ms 3000 --table HR --address 0 --interval 50 --cycles 40"));
    ASSERT_TRUE(repeating.waitForOutput("4660\n"));
    const ProcessResult refused = cli(simulator, "read --table HR --address 0");
    EXPECT_EQ(refused.exitCode, 3);
    EXPECT_NE(refused.err.find(" is in use by kestrin-cli (process "), std::string::npos)
        << refused.err;
    EXPECT_EQ(repeating.finish().exitCode, 0);
}

// A port without a name of its own is its path alone, in text and as JSON alike.
TEST(CliEndToEnd, ListsPortsAsTextAndAsJsonAlike) {
    const ProcessResult text = ChildProcess::run(ChildProcess::cli({"ports"}));
    const ProcessResult json = ChildProcess::run(ChildProcess::cli({"ports", "--json"}));
    ASSERT_EQ(text.exitCode, 0);
    ASSERT_EQ(json.exitCode, 0);
    std::istringstream textLines(text.out);
    std::istringstream jsonLines(json.out);
    for (std::string line, object;
         std::getline(textLines, line) && std::getline(jsonLines, object);) {
        const nlohmann::json port = nlohmann::json::parse(object);
        const std::string path = port.value("path", "");
        EXPECT_EQ(line,
                  port["name"].is_null() ? path : path + '\t' + port["name"].get<std::string>());
    }
    EXPECT_EQ(std::count(text.out.begin(), text.out.end(), '\n'),
              std::count(json.out.begin(), json.out.end(), '\n'));
}

// Reads and writes share the request: each failure is shown once, by one or the other.
TEST(CliEndToEnd, ReportsExceptionsTimeOutsAndCrcErrorsOnStandardErrorAndExitsOne) {
    const struct {
        const char* faults;
        const char* command;
        const char* error;
        int atLeastMs; // a time-out must really wait
    } rows[] = {
        {"", "read --table HR --address 9000", "Illegal data address (02)\n", 0},
        {"--fault drop=1", "read --table HR --address 0 --timeout-ms 300",
         "no response within 300 ms\n", 300},
        {"--fault crc=1", "write --table CO --address 5 --value on", "CRC error in the response\n",
         0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.faults) + " " + row.command);
        const SimulatorProcess simulator(simulatorArguments(row.faults));
        ASSERT_FALSE(simulator.port().empty());
        const auto started = std::chrono::steady_clock::now();
        const ProcessResult result = cli(simulator, row.command);
        EXPECT_GE(std::chrono::steady_clock::now() - started,
                  std::chrono::milliseconds(row.atLeastMs));
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, row.error);
    }
}

// A device that answers after the time-out must not answer the next command in its place: the
// two reads ask for the same unit, function and length, so only the value tells them apart.
TEST(CliEndToEnd, AnAnswerAfterTheTimeOutNeverAnswersTheNextCommand) {
    const SimulatorProcess simulator(
        simulatorArguments("--fault late=0.5 --master-timeout-ms 300 --seed 3"));
    ASSERT_FALSE(simulator.port().empty());
    const std::pair<const char*, const char*> reads[] = {
        {"read --table HR --address 16 --type uint64 --timeout-ms 300", "1000000000000007\n"},
        {"read --table HR --address 20 --type int64 --timeout-ms 300", "-9007199254740993\n"}};
    int answered = 0;
    for (int round = 0; round < 6; ++round) {
        for (const auto& [command, expected] : reads) {
            const ProcessResult result = cli(simulator, command);
            if (result.exitCode == 0) {
                ++answered;
                EXPECT_EQ(result.out, expected) << command;
            }
        }
    }
    EXPECT_GT(answered, 0);
}

// A bad command line is refused with 2 before the port is touched; a port that cannot be used
// with 3.
TEST(CliEndToEnd, RefusesABadCommandLineWithTwoAndAPortItCannotUseWithThree) {
    const SimulatorProcess simulator(simulatorArguments());
    ASSERT_FALSE(simulator.port().empty());
    const std::string missing = "/dev/ttyKestrinMissing";
    const std::string read = "read --port " + missing + " --table ";
    const std::string write = "write --port " + missing + " --table ";
    // Each refusal's wording is the option checks'; here that it reaches standard error. An empty
    // message: the usage text is expected.
    const struct {
        std::string command;
        int exitCode;
        std::string message;
    } rows[] = {
        {"", 2, ""},
        {write + "HR --address 0 --value 70000", 2, "This value does not fit in UInt16.\n"},
        {read + "HR --address 0", 3, "Cannot open " + missing + ": No such file or directory.\n"},
        // A pseudo-terminal is no serial port unless the user says it stands in for one.
        {"read --port " + simulator.port() + " --table HR --address 0", 3,
         "'" + simulator.port() + "' is not a valid serial port.\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.command);
        const ProcessResult result = ChildProcess::run(ChildProcess::cli({}, row.command));
        EXPECT_EQ(result.exitCode, row.exitCode);
        EXPECT_EQ(result.out, "");
        if (row.message.empty()) {
            EXPECT_NE(result.err.find("Usage:"), std::string::npos) << result.err;
        } else {
            EXPECT_EQ(result.err, row.message);
        }
    }
}

// Every command answers --help with its own options and --version with the project's version.
TEST(CliEndToEnd, AnswersHelpAndVersionOnStandardOutputWithZero) {
    const std::string version = std::string(" ") + KESTRIN_VERSION + "\n";
    const struct {
        std::vector<std::string> command;
        std::string begins;
        std::string holds; // an option of this command's own
    } rows[] = {
        {ChildProcess::cli({"--help"}), "Usage:\n  kestrin-cli read", "--version"},
        {ChildProcess::cli({"read", "--help"}), "Usage: kestrin-cli read", "--eu TEXT"},
        {ChildProcess::cli({"poll", "--help"}), "Usage: kestrin-cli poll", "--no-timestamps"},
        {ChildProcess::cli({"--version"}), "kestrin-cli" + version, ""},
        {ChildProcess::sim({"--help"}), "Usage: kestrin-sim", "--fault LIST"},
        {ChildProcess::sim({"--version"}), "kestrin-sim" + version, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.command.back());
        const ProcessResult result = ChildProcess::run(row.command);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_TRUE(result.out.starts_with(row.begins)) << result.out;
        EXPECT_NE(result.out.find(row.holds), std::string::npos);
        EXPECT_EQ(result.err, "");
    }
}

} // namespace
} // namespace kestrin
