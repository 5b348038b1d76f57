#include "CSVDialect.h"
#include "ChildProcess.h"
#include "DatapointCSV.h"
#include "RTUFrame.h"
#include "RegisterMap.h"
#include "ScriptedDevice.h"
#include "SerialLink.h"
#include "WakeSignal.h"

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using ChildProcess::SimulatorProcess;
using Ranges = std::vector<Datapoint::AddressRange>;

// Holes inside the holding registers, a coil block at the very end of the range, a lone input
// register, no discrete inputs: unit 5 with the line's own timing.
std::string servedList() {
    std::string csv = "Name,Unit ID,Table,Address,Data type,Value\n";
    const auto row = [&](const std::string& table, int address, const std::string& type) {
        csv += "p,5," + table + "," + std::to_string(address) + "," + type + ",1\n";
    };
    for (int address = 0; address < 10; ++address) {
        row("HR", address, "uint16");
    }
    row("HR", 100, "float32");
    row("HR", 110, "uint16");
    for (int address = 116; address < 120; ++address) {
        row("CO", address, "bool");
    }
    row("IR", 7, "int16");
    return csv;
}

class RegisterMapTest : public testing::Test {
protected:
    void serve(std::vector<std::string> options = {}) {
        std::ofstream(list) << servedList();
        options.insert(options.begin(),
                       {KESTRIN_SIM, "--csv", list, "--baud", "115200", "--wire-timing"});
        simulator = std::make_unique<SimulatorProcess>(options);
        ASSERT_FALSE(simulator->port().empty());
        SerialConfiguration serial;
        serial.baudRate = 115200;
        link = std::make_unique<SerialLink>(simulator->port(), serial, true);
        ASSERT_TRUE(link->open().ok());
    }

    void TearDown() override {
        link.reset();
        simulator.reset();
        std::remove(list.c_str());
    }

    Ranges rangesOf(const RegisterMap& map, RegisterTable table) {
        for (const TableMap& mapped : map.tables) {
            if (mapped.table == table) {
                return mapped.ranges;
            }
        }
        ADD_FAILURE() << "table not mapped";
        return {};
    }

    std::string list = testing::TempDir() + "kestrin-map-" + std::to_string(::getpid()) + ".csv";
    std::unique_ptr<SimulatorProcess> simulator;
    std::unique_ptr<SerialLink> link;
};

// A table the device refuses outright (exception 01, the discrete inputs here) is marked so, and
// the tables after it are mapped all the same.
TEST_F(RegisterMapTest, FindsEveryServedAddressAndNothingElseWithinTheRequestLimit) {
    struct Row {
        std::vector<std::string> simulator;
        int largestRead;
        bool inputsRefused;
    };
    const std::vector<Row> rows{{{}, 125, false},
                                {{"--max-registers", "32"}, 32, false},
                                {{"--refuse-missing-tables"}, 125, true}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.simulator.empty() ? "" : row.simulator.front());
        serve(row.simulator);
        std::vector<RegisterMapProgress> reports;
        const RegisterMapOptions options{
            .unit = 5,
            .first = 0,
            .last = 119,
            .tables = {RegisterTable::holdingRegister, RegisterTable::discreteInput,
                       RegisterTable::inputRegister, RegisterTable::coil}};
        const auto map = mapRegisters(*link, options,
                                      [&](const RegisterMapProgress& p) { reports.push_back(p); });
        ASSERT_TRUE(map.ok());
        ASSERT_EQ(map.value().tables.size(), 4u);
        EXPECT_EQ(map.value().tables[1].supported, !row.inputsRefused);
        EXPECT_TRUE(map.value().complete);
        EXPECT_EQ(rangesOf(map.value(), RegisterTable::holdingRegister),
                  (Ranges{{0, 9}, {100, 101}, {110, 110}}));
        EXPECT_EQ(rangesOf(map.value(), RegisterTable::coil), (Ranges{{116, 119}}));
        EXPECT_EQ(rangesOf(map.value(), RegisterTable::discreteInput), Ranges{});
        EXPECT_EQ(rangesOf(map.value(), RegisterTable::inputRegister), (Ranges{{7, 7}}));
        EXPECT_EQ(map.value().largestRegisterRead, row.largestRead);
        // Halving alone would take two requests for each missing address; the tables here are
        // mostly holes, and reading them address by address costs about one.
        EXPECT_LE(map.value().requests, 4 * 120 * 13 / 10);
        ASSERT_FALSE(reports.empty());
        EXPECT_EQ(reports.back().requests, map.value().requests);
        EXPECT_EQ(reports.back().remainingSeconds, 0.0);
        EXPECT_GT(reports.front().remainingSeconds, reports.back().remainingSeconds);
        TearDown();
    }
}

TEST_F(RegisterMapTest, ProducesOneImportableDatapointPerAddressNamedByTableAndAddress) {
    serve();
    const auto map = mapRegisters(*link, {.unit = 5, .first = 100, .last = 117});
    ASSERT_TRUE(map.ok());
    const auto datapoints = mappedDatapoints(map.value());
    const auto imported =
        DatapointCSV::parse(DatapointCSV::exportText(datapoints, CSVDialect::current()));
    EXPECT_TRUE(imported.issues.empty());
    std::vector<std::string> names;
    for (const Datapoint& datapoint : imported.datapoints) {
        names.push_back(datapoint.name);
        EXPECT_EQ(datapoint.unitID, 5);
        EXPECT_EQ(datapoint.dataType,
                  datapoint.table().isBit() ? DataType::boolean : DataType::uint16);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"HR 100", "HR 101", "HR 110", "CO 116", "CO 117"}));
}

// A device slower than the map's time-out answers each read about 100 ms after it, and 100 ms
// before the late answer's window closes, a margin a loaded machine keeps: the answers are still
// taken, so neither an address nor the request size is lost to slowness.
TEST_F(RegisterMapTest, TakesASlowDevicesLateAnswers) {
    serve({"--turnaround-ms", "300"});
    const auto map = mapRegisters(*link, {.unit = 5,
                                          .first = 100,
                                          .last = 111,
                                          .tables = {RegisterTable::holdingRegister},
                                          .thinkSeconds = 0.2});
    ASSERT_TRUE(map.ok());
    EXPECT_EQ(rangesOf(map.value(), RegisterTable::holdingRegister),
              (Ranges{{100, 101}, {110, 110}}));
    EXPECT_EQ(map.value().largestRegisterRead, FunctionCode::maxReadRegisters);
    EXPECT_TRUE(map.value().complete);
}

// A unit nobody answers for gives up after the sizes it tried, each twice as a silence may be
// noise, without asking about the other tables; a raised signal ends the map at the request
// under way and keeps what was found.
TEST_F(RegisterMapTest, StopsForAnAbsentUnitAndForCancellation) {
    serve();
    const auto absent = mapRegisters(*link, {.unit = 9, .first = 0, .last = 999});
    ASSERT_TRUE(absent.ok());
    EXPECT_FALSE(absent.value().answered);
    EXPECT_FALSE(absent.value().found());
    EXPECT_EQ(absent.value().tables.size(), 1u);
    EXPECT_LE(absent.value().requests, 2 * 8);

    WakeSignal cancel;
    link->cancelWith(cancel);
    const auto cancelled = mapRegisters(*link, {.unit = 5, .first = 0, .last = 119},
                                        [&](const RegisterMapProgress& progress) {
                                            if (progress.requests == 6) {
                                                cancel.raise();
                                            }
                                        });
    ASSERT_TRUE(cancelled.ok());
    EXPECT_FALSE(cancelled.value().complete);
    EXPECT_EQ(cancelled.value().requests, 6);
    const Ranges found = rangesOf(cancelled.value(), RegisterTable::holdingRegister);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].first, 0);
    EXPECT_LE(found[0].last, 9);
    EXPECT_EQ(cancelled.value().tables.size(), 1u);
}

// A device of holding registers 0-127 that is silent to a read of more than 32, at 115200 baud.
// The rows lose its answers to HR 32-63: a lost answer is asked for again, and never makes a
// size it has answered too large; a busy answer (06) is asked again after a pause and, when it
// persists, leaves the addresses unknown instead of missing. A silence and busy answers each have
// their own repeats.
TEST(ScriptedRegisterMap, KeepsTheSizeItWasAnsweredAtThroughLostAndBusyAnswers) {
    struct Row {
        const char* name;
        // How often HR 32-63 goes unanswered, then is answered busy, before its answer.
        int lost;
        int busy;
        Ranges ranges;
        Ranges unknown;
    };
    const std::vector<Row> rows{
        {"lost once", 1, 0, {{0, 127}}, {}},
        {"lost twice", 2, 0, {{0, 127}}, {}},
        {"busy for a moment", 0, 3, {{0, 127}}, {}},
        {"lost, then busy for a moment", 1, 3, {{0, 127}}, {}},
        {"busy throughout", 0, 4, {{0, 31}, {64, 127}}, {{32, 63}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ScriptedDevice device([&row](const ScriptedDevice::Request& request) {
            const bool asked =
                requestAddress(request.frame) == 32 && requestCount(request.frame) == 32;
            if (requestCount(request.frame) > 32 || (asked && request.repeat <= row.lost)) {
                return ScriptedDevice::Reply{};
            }
            if (asked && request.repeat <= row.lost + row.busy) {
                return ScriptedDevice::Reply{RTUFrame::build(1, Bytes{0x83, 0x06})};
            }
            return ScriptedDevice::Reply{registersAnswer(request.frame, [](int) { return true; })};
        });
        SerialConfiguration serial;
        serial.baudRate = 115200;
        const auto map =
            mapRegisters(*device.link(serial), {.unit = 1,
                                                .first = 0,
                                                .last = 127,
                                                .tables = {RegisterTable::holdingRegister},
                                                .thinkSeconds = 0.1,
                                                .busyPauseSeconds = 0.01});
        ASSERT_TRUE(map);
        EXPECT_EQ(map.value().tables.at(0).ranges, row.ranges);
        EXPECT_EQ(map.value().tables.at(0).unknown, row.unknown);
        EXPECT_EQ(map.value().busy(), !row.unknown.empty());
        EXPECT_EQ(map.value().largestRegisterRead, 32);
        EXPECT_TRUE(map.value().complete);
    }
}

// A table the device is busy for and then refuses (01) does not exist: nothing of it is unknown.
TEST(ScriptedRegisterMap, KeepsNothingUnknownOfATableRefusedAfterBusyAnswers) {
    ScriptedDevice device([](const ScriptedDevice::Request& request) {
        const std::uint8_t exception = request.nth <= 4 ? 0x06 : 0x01;
        return ScriptedDevice::Reply{RTUFrame::build(1, Bytes{0x83, exception})};
    });
    const auto map = mapRegisters(*device.link(), {.unit = 1,
                                                   .first = 0,
                                                   .last = 199,
                                                   .tables = {RegisterTable::holdingRegister},
                                                   .busyPauseSeconds = 0.01});
    ASSERT_TRUE(map);
    EXPECT_FALSE(map.value().tables.at(0).supported);
    EXPECT_FALSE(map.value().busy());
    EXPECT_EQ(map.value().requests, 5);
}

// A unit that stops answering part way ends the map after a few silent requests instead of
// waiting out every address left, and keeps what it found.
TEST(ScriptedRegisterMap, StopsWhenTheUnitFallsSilent) {
    ScriptedDevice device([](const ScriptedDevice::Request& request) -> ScriptedDevice::Reply {
        return {request.nth == 1 ? registersAnswer(request.frame, [](int) { return true; })
                                 : Bytes{}};
    });
    const auto map = mapRegisters(*device.link(), {.unit = 1, .first = 0, .last = 199});
    ASSERT_TRUE(map);
    EXPECT_TRUE(map.value().fellSilent);
    EXPECT_FALSE(map.value().complete);
    EXPECT_EQ(map.value().tables.size(), 1u);
    EXPECT_EQ(map.value().tables[0].ranges, (Ranges{{0, 124}}));
    EXPECT_EQ(map.value().requests, 9);
}

} // namespace
} // namespace kestrin
