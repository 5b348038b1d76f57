#include "ChildProcess.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

// kestrin-cli against kestrin-sim on a pseudo-terminal, always at 9600 8E1, the product's
// default frame, which some kernels refuse on a pseudo-terminal: the test device must cope.

namespace kestrin {
namespace {

using ChildProcess::ProcessResult;
using ChildProcess::SimulatorProcess;

const std::string cliPath = KESTRIN_CLI_PATH;
const std::string simPath = KESTRIN_SIM_PATH;
// Every data type in every word order, bits, input registers and free registers to write.
const std::string everyType = std::string(KESTRIN_TOOLS_FIXTURES) + "/every-type.csv";

std::vector<std::string> simulatorArguments(std::vector<std::string> extra = {}) {
    std::vector<std::string> arguments{simPath, "--csv",   everyType, "--baud",
                                       "9600",  "--frame", "8E1"};
    arguments.insert(arguments.end(), extra.begin(), extra.end());
    return arguments;
}

// kestrin-cli with the command and options given, on the simulator's port as a test device.
// The time-out is generous so that a loaded machine does not fail a test that should pass.
ProcessResult cli(const SimulatorProcess& simulator, std::vector<std::string> options) {
    std::vector<std::string> arguments{cliPath};
    arguments.insert(arguments.end(), options.begin(), options.begin() + 1);
    arguments.insert(arguments.end(), {"--port", simulator.port(), "--test-device", "--baud",
                                       "9600", "--frame", "8E1", "--timeout-ms", "3000"});
    arguments.insert(arguments.end(), options.begin() + 1, options.end());
    return ChildProcess::run(arguments);
}

std::string describe(const std::vector<std::string>& options) {
    std::string text;
    for (const std::string& option : options) {
        text += (text.empty() ? "" : " ") + option;
    }
    return text;
}

// A ledger file in the temporary folder, removed with the test.
class LedgerFile {
public:
    LedgerFile() {
        const char* folder = std::getenv("TMPDIR");
        path_ = std::string(folder != nullptr ? folder : "/tmp") + "/kestrin-cli-ledger-" +
                std::to_string(::getpid()) + ".jsonl";
    }
    ~LedgerFile() { std::remove(path_.c_str()); }
    LedgerFile(const LedgerFile&) = delete;
    LedgerFile& operator=(const LedgerFile&) = delete;

    const std::string& path() const noexcept { return path_; }

    // The function code of the last request the simulator received; -1 when there is none.
    int lastFunction() const {
        std::ifstream file(path_);
        std::string line;
        std::string last;
        while (std::getline(file, line)) {
            if (!line.empty()) {
                last = line;
            }
        }
        const nlohmann::json entry = nlohmann::json::parse(last, nullptr, false);
        return entry.is_object() && entry.contains("function") ? entry["function"].get<int>() : -1;
    }

private:
    std::string path_;
};

TEST(CliEndToEnd, ReadsEveryDataTypeInEveryWordOrder) {
    const SimulatorProcess simulator(simulatorArguments());
    ASSERT_FALSE(simulator.port().empty());
    struct Order {
        const char* name;
        int base;
    };
    struct Value {
        const char* type;
        int offset;
        const char* expected;
    };
    const Order orders[] = {{"ABCD", 10}, {"cdab", 30}, {"BADC", 50}, {"dcba", 70}};
    const Value values[] = {
        {"uint32", 0, "305419896"},
        {"int32", 2, "-123456789"},
        {"float32", 4, "-2.75"},
        {"uint64", 6, "1000000000000007"},
        {"int64", 10, "-4000000000000001"},
        {"float64", 14, "1234.5"},
    };
    for (const Order& order : orders) {
        for (const Value& value : values) {
            const std::vector<std::string> options{"read",
                                                   "--table",
                                                   "HR",
                                                   "--address",
                                                   std::to_string(order.base + value.offset),
                                                   "--type",
                                                   value.type,
                                                   "--order",
                                                   order.name};
            SCOPED_TRACE(describe(options));
            const ProcessResult result = cli(simulator, options);
            EXPECT_EQ(result.exitCode, 0) << result.err;
            EXPECT_EQ(result.out, std::string(value.expected) + "\n");
        }
    }
}

// The simulator and the command line agree with each other in every order; these rows check
// that both agree with the wire layout too, register by register.
TEST(CliEndToEnd, WordOrdersLayOutRegistersOnTheWireAsDocumented) {
    const SimulatorProcess simulator(simulatorArguments());
    ASSERT_FALSE(simulator.port().empty());
    struct Row {
        int address;
        const char* expected;
    };
    // 305419896 is 0x12345678 and 1000000000000007 is 0x00038D7EA4C68007.
    const Row rows[] = {
        {10, "0x1234"}, {30, "0x5678"}, {50, "0x3412"}, {70, "0x7856"}, // uint32
        {16, "0x0003"}, {56, "0x0300"}, {76, "0x0780"},                 // uint64
        {36, "0x8007"}, {37, "0xA4C6"}, // CDAB reverses all four words of a 64-bit value
    };
    for (const Row& row : rows) {
        const std::vector<std::string> options{
            "read", "--table", "HR", "--address", std::to_string(row.address), "--format", "hex"};
        SCOPED_TRACE(describe(options));
        const ProcessResult result = cli(simulator, options);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.out, std::string(row.expected) + "\n");
    }
}

TEST(CliEndToEnd, ReadsBitTablesInputRegistersScalesAndDisplayFormats) {
    const SimulatorProcess simulator(simulatorArguments());
    ASSERT_FALSE(simulator.port().empty());
    struct Row {
        std::vector<std::string> options;
        const char* expected;
    };
    const std::vector<Row> rows{
        {{"read", "--table", "coil", "--address", "0"}, "1\n"},
        {{"read", "--table", "DI", "--address", "0"}, "1\n"},
        {{"read", "--table", "3x", "--address", "0", "--type", "short", "--scale", "0.1", "--eu",
          "°C"},
         "23.4 °C\n"},
        {{"read", "--table", "HR", "--address", "1", "--type", "int16"}, "-1234\n"},
        {{"read", "--table", "HR", "--address", "1", "--type", "int16", "--format", "hex"},
         "0xFB2E\n"},
        {{"read", "--table", "HR", "--address", "0", "--format", "bin"}, "0001 0010 0011 0100\n"},
        {{"read", "--table", "HR", "--address", "2", "--type", "int16", "--scale", "0,1"},
         "21.5\n"},
        {{"read", "--table", "HR", "--address", "10", "--type", "dword", "--format", "hex"},
         "0x12345678\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(describe(row.options));
        const ProcessResult result = cli(simulator, row.options);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.out, row.expected);
    }
}

TEST(CliEndToEnd, WritesCoilsAndRegistersInBothModesAndReadsThemBack) {
    const LedgerFile ledger;
    const SimulatorProcess simulator(simulatorArguments({"--ledger", ledger.path()}));
    ASSERT_FALSE(simulator.port().empty());
    struct Row {
        std::vector<std::string> datapoint;
        const char* value;
        const char* mode;
        int function; // what the simulator must have received
        const char* readBack;
    };
    const std::vector<Row> rows{
        {{"--table", "CO", "--address", "5"}, "on", "single", 0x05, "1\n"},
        {{"--table", "CO", "--address", "5"}, "off", "multiple", 0x0F, "0\n"},
        {{"--table", "CO", "--address", "5"}, "1", "multiple", 0x0F, "1\n"},
        {{"--table", "HR", "--address", "200"}, "0x1F", "single", 0x06, "31\n"},
        {{"--table", "HR", "--address", "200"}, "0b101", "multiple", 0x10, "5\n"},
        {{"--table", "HR", "--address", "201", "--type", "int16", "--scale", "0.1"},
         "-1,5",
         "single",
         0x06,
         "-1.5\n"},
        // Two and four registers always go out as FC16.
        {{"--table", "HR", "--address", "202", "--type", "float32", "--order", "CDAB"},
         "2.5",
         "single",
         0x10,
         "2.5\n"},
        {{"--table", "HR", "--address", "204", "--type", "int64", "--order", "DCBA"},
         "-9876543210",
         "multiple",
         0x10,
         "-9876543210\n"},
    };
    for (const Row& row : rows) {
        std::vector<std::string> write{"write"};
        write.insert(write.end(), row.datapoint.begin(), row.datapoint.end());
        write.insert(write.end(), {"--value", row.value, "--write-mode", row.mode});
        SCOPED_TRACE(describe(write));
        const ProcessResult written = cli(simulator, write);
        EXPECT_EQ(written.exitCode, 0) << written.err;
        EXPECT_EQ(written.out, "");
        EXPECT_EQ(ledger.lastFunction(), row.function);

        std::vector<std::string> read{"read"};
        read.insert(read.end(), row.datapoint.begin(), row.datapoint.end());
        const ProcessResult readBack = cli(simulator, read);
        EXPECT_EQ(readBack.exitCode, 0) << readBack.err;
        EXPECT_EQ(readBack.out, row.readBack);
    }
}

TEST(CliEndToEnd, ReportsAnExceptionAnswerOnStandardErrorAndExitsOne) {
    const SimulatorProcess simulator(simulatorArguments());
    ASSERT_FALSE(simulator.port().empty());
    const std::vector<std::vector<std::string>> requests{
        {"read", "--table", "HR", "--address", "9000"},
        {"write", "--table", "HR", "--address", "9000", "--value", "1"},
    };
    for (const std::vector<std::string>& request : requests) {
        SCOPED_TRACE(describe(request));
        const ProcessResult result = cli(simulator, request);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "Illegal data address (02)\n");
    }
}

TEST(CliEndToEnd, ReportsATimeOutWhenTheDeviceStaysSilent) {
    const SimulatorProcess simulator(simulatorArguments({"--fault", "drop=1"}));
    ASSERT_FALSE(simulator.port().empty());
    const auto started = std::chrono::steady_clock::now();
    const ProcessResult result =
        cli(simulator, {"read", "--table", "HR", "--address", "0", "--timeout-ms", "300"});
    EXPECT_GE(std::chrono::steady_clock::now() - started, std::chrono::milliseconds(300));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "no response within 300 ms\n");
}

TEST(CliEndToEnd, ReportsACorruptedAnswerAsACrcError) {
    const SimulatorProcess simulator(simulatorArguments({"--fault", "crc=1"}));
    ASSERT_FALSE(simulator.port().empty());
    const std::vector<std::vector<std::string>> requests{
        {"read", "--table", "IR", "--address", "0"},
        {"write", "--table", "CO", "--address", "5", "--value", "on"},
    };
    for (const std::vector<std::string>& request : requests) {
        SCOPED_TRACE(describe(request));
        const ProcessResult result = cli(simulator, request);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.err, "CRC error in the response\n");
    }
}

TEST(CliEndToEnd, RefusesAPortItCannotUseWithExitThree) {
    const SimulatorProcess simulator(simulatorArguments());
    ASSERT_FALSE(simulator.port().empty());
    struct Row {
        std::string port;
        std::string expected;
    };
    const std::vector<Row> rows{
        // A pseudo-terminal is no serial port unless the user says it stands in for one.
        {simulator.port(), "'" + simulator.port() + "' is not a valid serial port.\n"},
        {"/dev/ttyKestrinMissing",
         "Cannot open /dev/ttyKestrinMissing: No such file or directory.\n"},
    };
    for (const Row& row : rows) {
        const std::vector<std::string> arguments{cliPath,   "read", "--port",    row.port,
                                                 "--table", "HR",   "--address", "0"};
        SCOPED_TRACE(describe(arguments));
        const ProcessResult result = ChildProcess::run(arguments);
        EXPECT_EQ(result.exitCode, 3);
        EXPECT_EQ(result.err, row.expected);
    }
}

TEST(CliEndToEnd, RefusesABadCommandLineWithExitTwoBeforeTouchingThePort) {
    struct Row {
        std::vector<std::string> arguments;
        std::string message; // empty: only the usage text is expected
    };
    const std::string port = "/dev/ttyKestrinMissing";
    const std::vector<Row> rows{
        {{}, ""},
        {{"poll"}, ""},
        {{"read", "--port", port, "--table", "HR"}, ""},
        {{"read", "--port", port, "--table", "HR", "--address", "0", "--speed", "9600"}, ""},
        {{"read", "--port", port, "--table", "HR", "--address"}, ""},
        {{"read", "--port", port, "--table", "HR", "--address", "0", "--value", "1"}, ""},
        {{"read", "--port", port, "--table", "HR", "--address", "0", "--frame", "9E1"}, ""},
        {{"read", "--port", port, "--table", "HR", "--address", "0", "--unit", "248"},
         "invalid unit ID '248' (1 to 247)\n"},
        {{"read", "--port", port, "--table", "HR", "--address", "65536"},
         "invalid address '65536' (0 to 65535)\n"},
        {{"read", "--port", port, "--table", "40001", "--address", "0"},
         "unknown table '40001' (use CO, DI, HR or IR)\n"},
        {{"read", "--port", port, "--table", "CO", "--address", "0", "--type", "float32"},
         "unknown data type 'float32'\n"},
        {{"write", "--port", port, "--table", "IR", "--address", "0", "--value", "1"}, ""},
        {{"write", "--port", port, "--table", "HR", "--address", "0", "--value", "70000"},
         "This value does not fit in UInt16.\n"},
        {{"write", "--port", port, "--table", "HR", "--address", "0", "--value", "1",
          "--write-mode", "double"},
         ""},
    };
    for (const Row& row : rows) {
        std::vector<std::string> arguments{cliPath};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        SCOPED_TRACE(describe(arguments));
        const ProcessResult result = ChildProcess::run(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, "");
        if (row.message.empty()) {
            EXPECT_NE(result.err.find("Usage:"), std::string::npos) << result.err;
        } else {
            EXPECT_EQ(result.err, row.message);
        }
    }
}

TEST(CliEndToEnd, PrintsUsageForHelpAndExitsZero) {
    const ProcessResult result = ChildProcess::run({cliPath, "write", "--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out.rfind("Usage:", 0), 0U);
    EXPECT_EQ(result.err, "");
}

} // namespace
} // namespace kestrin
