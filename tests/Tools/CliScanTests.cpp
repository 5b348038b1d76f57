#include "ChildProcess.h"
#include "DatapointCSV.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

// kestrin-cli scan against kestrin-sim on a pseudo-terminal.

namespace kestrin {
namespace {

using ChildProcess::ProcessResult;
using ChildProcess::SimulatorProcess;

struct ScanRow {
    std::string options;
    int exitCode;
    std::string out;
    std::string err;
};

// Unit 3 has holding register 0, unit 17 holding registers but none at 0, unit 200 only coils
// and refuses the functions of the tables it lacks.
class CliScan : public testing::Test {
protected:
    void SetUp() override {
        std::ofstream(list) << "Unit ID,Table,Address\n3,HR,0\n17,HR,5\n200,CO,0\n";
    }
    void TearDown() override { std::remove(list.c_str()); }

    std::vector<std::string> simulatorServing(const std::string& options) const {
        return ChildProcess::sim({"--csv", list, "--refuse-missing-tables"}, options);
    }

    // scan on the simulator's port; the time-out is short because most units stay silent.
    static ProcessResult scan(const SimulatorProcess& simulator, const std::string& options) {
        return ChildProcess::run(
            ChildProcess::cliOn(simulator.port(), "scan", "--timeout-ms 100 " + options));
    }

    // Each scan of rows on the simulator gives exactly that exit status and output.
    template <std::size_t count>
    static void expect(const SimulatorProcess& simulator, const ScanRow (&rows)[count]) {
        for (const ScanRow& row : rows) {
            SCOPED_TRACE(row.options);
            const ProcessResult result = scan(simulator, row.options);
            EXPECT_EQ(result.exitCode, row.exitCode);
            EXPECT_EQ(result.out, row.out);
            EXPECT_EQ(result.err, row.err);
        }
    }

    std::string list =
        testing::TempDir() + "kestrin-cli-scan-" + std::to_string(::getpid()) + ".csv";
};

TEST_F(CliScan, PrintsEachUnitThatAnswersAndWhatAnsweredAndExitsOneWhenNoneDid) {
    const SimulatorProcess simulator(simulatorServing(""));
    ASSERT_FALSE(simulator.port().empty());
    const ScanRow rows[] = {
        {"--units 1-5,17,199-200", 0,
         "Unit 3: holding registers (FC03)\n"
         "Unit 17: exception 02 to FC03\n"
         "Unit 200: coils (FC01)\n",
         ""},
        {"--units 17,200 --json", 0,
         "{\"exception\":2,\"function\":3,\"status\":\"exception\",\"table\":\"HR\",\"unit\":17}\n"
         "{\"function\":1,\"status\":\"ok\",\"table\":\"CO\",\"unit\":200}\n",
         ""},
        {"--units 4-8", 1, "", "No unit answered.\n"},
    };
    expect(simulator, rows);
}

// The simulator hears only a master at 19200 baud with two stop bits. It answers at once, so
// that a short time-out lets the silent settings pass quickly.
TEST_F(CliScan, SweepPrintsTheFirstSettingsAtWhichAUnitAnswers) {
    const SimulatorProcess simulator(
        simulatorServing("--baud 19200 --frame 8N2 --strict-settings"));
    ASSERT_FALSE(simulator.port().empty());
    const ScanRow rows[] = {
        {"--sweep --unit 1-3 --timeout-ms 40", 0, "19200 8N2: unit 3 answers\n", ""},
        {"--sweep --unit 200 --json", 0,
         "{\"baud\":19200,\"frame\":\"8N2\",\"function\":1,\"status\":\"ok\",\"table\":\"CO\","
         "\"unit\":200}\n",
         ""},
        {"--sweep --unit 99 --timeout-ms 40", 1, "",
         "No unit answered at any of the settings tried.\n"},
    };
    expect(simulator, rows);

    // One that answers only after the time-out, 150 ms inside each side of the late window.
    const SimulatorProcess slow(simulatorServing("--fault delay=1 --delay-ms 450"));
    ASSERT_FALSE(slow.port().empty());
    const ScanRow late[] = {{"--sweep --unit 3 --timeout-ms 300", 0,
                             "9600 8E1: unit 3 answers, after the time-out\n", ""}};
    expect(slow, late);
}

// The simulator refuses more than 4 registers a read. The list written imports as the addresses
// found; a unit that is not there, or has nothing in the range, fails with the reason.
TEST_F(CliScan, RegistersMapOneUnitWithItsLimitAndWriteItsDatapoints) {
    const SimulatorProcess simulator(simulatorServing("--max-registers 4"));
    ASSERT_FALSE(simulator.port().empty());
    const std::string csv = list + ".found.csv";
    const ScanRow rows[] = {
        {"--unit 3 --registers --range 0-9 --csv " + csv, 0,
         "Unit 3: 1 holding register (0), input registers refused (exception 01), coils "
         "refused (exception 01), discrete inputs refused (exception 01); largest read 4 "
         "registers\n",
         ""},
        {"--unit 17 --registers --range 0-9 --json", 0,
         "{\"count\":1,\"ranges\":[[5,5]],\"supported\":true,\"table\":\"HR\",\"unit\":17}\n"
         "{\"count\":0,\"ranges\":[],\"supported\":false,\"table\":\"IR\",\"unit\":17}\n"
         "{\"count\":0,\"ranges\":[],\"supported\":false,\"table\":\"CO\",\"unit\":17}\n"
         "{\"count\":0,\"ranges\":[],\"supported\":false,\"table\":\"DI\",\"unit\":17}\n"
         "{\"complete\":true,\"fellSilent\":false,\"largestBitRead\":2000,\"largestRegisterRead\":"
         "4,\"requests\":22,"
         "\"unit\":17}\n",
         ""},
        {"--unit 3 --registers --range 100-109", 1, "",
         "The unit answers, but no address of the range exists.\n"},
        {"--unit 4 --registers --range 0-9", 1, "", "No unit answered.\n"},
    };
    expect(simulator, rows);
    std::ifstream written(csv);
    const auto imported =
        DatapointCSV::parse(std::string(std::istreambuf_iterator<char>(written), {}));
    EXPECT_TRUE(imported.issues.empty());
    EXPECT_EQ(imported.datapoints.size(), 1u);
    std::remove(csv.c_str());
}

TEST(CliScanOptions, RefusesABadLineWithTwoAndAPortItCannotOpenWithThree) {
    const std::string missing = "/dev/ttyKestrinMissing";
    const struct {
        std::string options;
        int exitCode;
        std::string err;
    } rows[] = {
        {"--units 1-5", 2, "option --port is required\n"},
        {"--port " + missing + " --units 0-5", 2, "invalid value '0-5' for --units\n"},
        {"--port " + missing + " --units 9-3", 2, "invalid value '9-3' for --units\n"},
        {"--port " + missing + " --units 1,x", 2, "invalid value '1,x' for --units\n"},
        {"--port " + missing + " --sweep --units 1", 2, ""},
        {"--port " + missing + " --registers --unit 3,4", 2, "invalid value '3,4' for --unit\n"},
        {"--port " + missing + " --registers --range 9-3", 2, "invalid value '9-3' for --range\n"},
        {"--port " + missing + " --registers --sweep", 2, ""},
        {"--port " + missing + " --csv found.csv", 2, ""},
        {"--port " + missing + " --units 1", 3,
         "Cannot open " + missing + ": No such file or directory.\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.options);
        const ProcessResult result = ChildProcess::run(ChildProcess::cli({"scan"}, row.options));
        EXPECT_EQ(result.exitCode, row.exitCode);
        EXPECT_EQ(result.out, "");
        if (!row.err.empty()) {
            EXPECT_EQ(result.err, row.err);
        }
    }
}

} // namespace
} // namespace kestrin
