#include "ChildProcess.h"
#include "RTUFrame.h"
#include "ScriptedDevice.h"
#include "SerialLink.h"
#include "SettingsSweep.h"
#include "UnitScan.h"
#include "WakeSignal.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using ChildProcess::SimulatorProcess;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;
using Answer = UnitScan::Answer;
using Table = RegisterTable;

// Files of this process alone: ctest runs the tests side by side.
std::string scratch(const std::string& name) {
    return testing::TempDir() + "kestrin-scan-" + std::to_string(::getpid()) + "-" + name;
}

// A simulator serving csv with options, and a link to it at serial.
class ScanTest : public testing::Test {
protected:
    void serve(const std::string& csv, std::vector<std::string> options,
               const SerialConfiguration& serial = {}) {
        std::ofstream(list) << csv;
        options.insert(options.begin(), {KESTRIN_SIM, "--csv", list});
        simulator = std::make_unique<SimulatorProcess>(options);
        ASSERT_FALSE(simulator->port().empty());
        link = std::make_unique<SerialLink>(simulator->port(), serial, true);
        ASSERT_TRUE(link->open());
    }

    void TearDown() override {
        link.reset();
        simulator.reset();
        std::remove(list.c_str());
    }

    std::string list = scratch("list.csv");
    std::unique_ptr<SimulatorProcess> simulator;
    std::unique_ptr<SerialLink> link;
};

// Devices that lack a table refuse its function (01): the scan then asks for the next table, and
// a refusal of address 0 (02) still proves a device.
TEST_F(ScanTest, ReportsEachUnitThatAnswersWithWhatAnsweredAndCountsDown) {
    serve("Unit ID,Table,Address\n"
          "3,HR,0\n9,CO,0\n30,DI,0\n12,IR,5\n20,HR,5\n",
          {"--refuse-missing-tables"});
    const std::vector<std::uint8_t> units{1, 3, 9, 12, 20, 30, 31};
    const double timeout = 0.05;
    std::vector<UnitScan::Progress> reports;
    const auto answers = UnitScan::run(*link, units, timeout,
                                       [&](const UnitScan::Progress& p) { reports.push_back(p); });
    ASSERT_TRUE(answers);
    const std::vector<Answer> expected{
        {3, Table::holdingRegister, std::nullopt},
        {9, Table::coil, std::nullopt},
        {12, Table::inputRegister, 2},
        {20, Table::holdingRegister, 2},
        {30, Table::discreteInput, std::nullopt},
    };
    EXPECT_EQ(answers.value(), expected);

    ASSERT_EQ(reports.size(), units.size());
    std::vector<Answer> reported;
    for (std::size_t index = 0; index < reports.size(); ++index) {
        SCOPED_TRACE(index);
        EXPECT_EQ(reports[index].done, static_cast<int>(index + 1));
        EXPECT_EQ(reports[index].total, static_cast<int>(units.size()));
        EXPECT_NEAR(reports[index].remainingSeconds,
                    UnitScan::silentSeconds(link->configuration(), timeout,
                                            static_cast<int>(units.size() - index - 1)),
                    1e-9);
        reported.insert(reported.end(), reports[index].answers.begin(),
                        reports[index].answers.end());
    }
    EXPECT_EQ(reported, expected);
}

// The default time-out decides how long an empty bus takes: at 19200 baud with the line's own
// timing 30 silent units take what the estimate says, and a cancel ends the scan at once.
TEST_F(ScanTest, AnEmptyBusTakesTheEstimatedTimeAndACancelEndsItAtOnce) {
    SerialConfiguration serial;
    serial.baudRate = 19200;
    serve("Unit ID,Table,Address\n200,HR,0\n", {"--baud", "19200", "--wire-timing"}, serial);
    const double timeout = UnitScan::defaultTimeout(serial);
    std::vector<std::uint8_t> units(30);
    std::iota(units.begin(), units.end(), 1);
    const auto started = Clock::now();
    const auto answers = UnitScan::run(*link, units, timeout, {});
    const double elapsed = std::chrono::duration<double>(Clock::now() - started).count();
    ASSERT_TRUE(answers);
    EXPECT_TRUE(answers.value().empty());
    const double estimate = UnitScan::silentSeconds(serial, timeout, 30);
    EXPECT_GE(elapsed, 30 * timeout);
    // Generous: a loaded machine adds to every wait; an estimate that is badly off still shows.
    EXPECT_LT(elapsed, 3 * estimate);

    // Unit 200 answers within the default time-out even with the line's timing.
    const auto found = UnitScan::probe(*link, 200, timeout);
    ASSERT_TRUE(found);
    EXPECT_EQ(found.value(), (Answer{200, Table::holdingRegister, std::nullopt}));

    WakeSignal cancel;
    link->cancelWith(cancel);
    std::vector<std::uint8_t> all(247);
    std::iota(all.begin(), all.end(), 1);
    std::jthread canceller([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        cancel.raise();
    });
    const auto cancelStarted = Clock::now();
    const auto cancelled = UnitScan::run(*link, all, timeout, {});
    ASSERT_FALSE(cancelled);
    EXPECT_TRUE(cancelled.error().is<SerialLinkError::Cancelled>());
    EXPECT_LT(Clock::now() - cancelStarted, std::chrono::milliseconds(400));
}

// The nth request is answered with the nth of replies, later ones with silence.
ScriptedDevice::Script inTurn(std::vector<Bytes> replies) {
    return [replies](const ScriptedDevice::Request& request) -> ScriptedDevice::Reply {
        const auto nth = static_cast<std::size_t>(request.nth);
        return {nth <= replies.size() ? replies[nth - 1] : Bytes{}};
    };
}

// Behind a gateway an absent unit answers 0A or 0B, which proves nothing there; a slow unit's
// answer to FC03 that comes while the next unit is asked FC01 is still that unit's; garbage, as
// when a slow unit's answer collides with the next one's, has the unit asked again; a slow last
// unit is waited for (it answers 150 ms inside each side of the late window); a slow unit asked
// twice that answers both times late counts once.
TEST(ScriptedScan, TellsGatewayRefusalsGarbageAndLateAnswersApart) {
    struct Row {
        const char* name;
        std::vector<std::uint8_t> units;
        ScriptedDevice::Script script;
        std::vector<Answer> expected;
    };
    const std::vector<Row> rows{
        {"gateway",
         {1, 2, 3},
         [](const ScriptedDevice::Request& request) -> ScriptedDevice::Reply {
             const std::uint8_t unit = request.frame[0];
             return {unit == 3 ? RTUFrame::build(3, Bytes{0x03, 0x02, 0x00, 0x00})
                               : RTUFrame::build(
                                     unit, Bytes{0x83, std::uint8_t(unit == 1 ? 0x0A : 0x0B)})};
         },
         {{3, Table::holdingRegister, std::nullopt}}},
        {"late FC03 during FC01",
         {3, 4},
         inTurn({{},
                 RTUFrame::build(4, Bytes{0x83, 0x01}),
                 RTUFrame::build(3, Bytes{0x03, 0x02, 0x00, 0x07}),
                 RTUFrame::build(4, Bytes{0x01, 0x01, 0x01})}),
         {{3, Table::holdingRegister, std::nullopt, true}, {4, Table::coil, std::nullopt}}},
        {"garbled, then answered",
         {3, 4},
         inTurn({{},
                 Bytes{0x04, 0x03, 0x02, 0x00, 0x07, 0x12, 0x34},
                 RTUFrame::build(4, Bytes{0x03, 0x02, 0x00, 0x07})}),
         {{4, Table::holdingRegister, std::nullopt}}},
        {"late twice",
         {3, 4},
         inTurn({{},
                 RTUFrame::build(3, Bytes{0x03, 0x02, 0x00, 0x07}),
                 RTUFrame::build(3, Bytes{0x03, 0x02, 0x00, 0x07})}),
         {{3, Table::holdingRegister, std::nullopt, true}}},
        {"slow last unit",
         {1, 2},
         [](const ScriptedDevice::Request& request) -> ScriptedDevice::Reply {
             return {request.nth == 2 ? RTUFrame::build(2, Bytes{0x03, 0x02, 0x00, 0x07}) : Bytes{},
                     450ms};
         },
         {{2, Table::holdingRegister, std::nullopt, true}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ScriptedDevice device(row.script);
        const auto answers = UnitScan::run(*device.link(), row.units, 0.3, {});
        ASSERT_TRUE(answers);
        EXPECT_EQ(answers.value(), row.expected);
    }
}

// A device that answers only after the time-out (150 ms inside each side of the late window) is
// found at the setting it was asked at, not at the next one, whose request its answer would meet.
// An answer from a unit never asked proves nothing: the sweep goes on to the next setting.
TEST(SettingsSweep, FindsASlowDeviceAtTheSettingItWasAskedAtAndOnlyUnitsAsked) {
    const Bytes seven = RTUFrame::build(7, Bytes{0x03, 0x02, 0x00, 0x07});
    struct Row {
        const char* name;
        ScriptedDevice::Script script;
        const char* serial;
        Answer expected;
    };
    const std::vector<Row> rows{
        {"slow",
         [&](const ScriptedDevice::Request& request) {
             return request.nth == 1 ? ScriptedDevice::Reply{seven, 450ms}
                                     : ScriptedDevice::Reply{};
         },
         "9600 8E1",
         {7, Table::holdingRegister, std::nullopt, true}},
        {"stranger",
         inTurn({RTUFrame::build(9, Bytes{0x03, 0x02, 0x00, 0x07}), {}, seven}),
         "9600 8N1",
         {7, Table::holdingRegister, std::nullopt}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ScriptedDevice device(row.script);
        const auto found = SettingsSweep::run({device.path(), true}, {}, {7}, 0.3, {});
        ASSERT_TRUE(found);
        ASSERT_TRUE(found.value());
        EXPECT_EQ(found.value()->serial.shortDescription(), row.serial);
        EXPECT_EQ(found.value()->answer, row.expected);
    }
}

// Nothing answering, a setting costs each unit's request, time-out and silence, then the late
// window after the last: at 9600 8E1 a request takes 9.17 ms and the silence 4.01 ms, at 19200
// 8N1 4.17 and 1.82 ms, at 115200 8N2 0.76 and the fixed 1.75 ms.
TEST(SettingsSweep, EstimatesEachSilentSettingWithItsLateWindow) {
    const auto at = [](int baud, const char* frame) {
        SerialConfiguration serial = *SerialConfiguration{}.withFrame(frame);
        serial.baudRate = baud;
        return serial;
    };
    // 9600 8E1's default time-out: a 7-byte answer and 30 ms to think.
    const double thinking = 0.0080208 + 0.030;
    const struct {
        std::vector<SerialConfiguration> settings;
        std::size_t units;
        std::optional<double> timeout;
        double seconds;
    } rows[] = {
        {{at(9600, "8E1")}, 1, 0.1, 0.0091667 + 0.1 + 0.0040104 + 0.1},
        {{at(19200, "8N1"), at(115200, "8N2")},
         2,
         0.05,
         2 * (0.0041667 + 0.05 + 0.0018229) + 0.05 + 2 * (0.0007639 + 0.05 + 0.00175) + 0.05},
        {{at(9600, "8E1")}, 3, std::nullopt, 3 * (0.0091667 + thinking + 0.0040104) + thinking},
        {{}, 3, 0.1, 0.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.seconds);
        EXPECT_NEAR(SettingsSweep::silentSeconds(row.settings, row.units, row.timeout), row.seconds,
                    1e-6);
    }
}

// Where a sweep stops is shown end to end by kestrin-cli scan --sweep.
TEST(SettingsSweep, TriesTheCommonSettingsFirstEachOnceKeepingTheDirection) {
    SerialConfiguration base;
    base.rs485 = RS485Direction{};
    const std::vector<SerialConfiguration> settings = SettingsSweep::candidates(base);
    std::vector<std::string> first;
    std::set<std::string> distinct;
    for (const SerialConfiguration& serial : settings) {
        EXPECT_EQ(serial.rs485, base.rs485);
        distinct.insert(serial.shortDescription());
        if (first.size() < 12) {
            first.push_back(serial.shortDescription());
        }
    }
    EXPECT_EQ(distinct.size(), settings.size());
    const std::vector<std::string> common{"9600 8E1",  "9600 8N1",   "9600 8N2",   "19200 8E1",
                                          "19200 8N1", "19200 8N2",  "38400 8E1",  "38400 8N1",
                                          "38400 8N2", "115200 8E1", "115200 8N1", "115200 8N2"};
    EXPECT_EQ(first, common);
}

} // namespace
} // namespace kestrin
