#include "../ModbusCore/HexBytes.h"
#include "RTUFrame.h"
#include "SimulatedValue.h"
#include "SlaveDevice.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using test::hexBytes;

Datapoint datapoint(RegisterTable table, std::uint16_t address, double value,
                    DataType type = DataType::uint16, std::uint8_t unit = 1,
                    Simulation simulation = Simulation()) {
    return Datapoint(Uuid::random(), "", unit, table, address, type, WordOrder::abcd, 1, "",
                     DisplayFormat::decimal, value, "", simulation);
}

// Holding registers 10 (uint16), 11-12 (float32) and 20, input register 0, coils 0-2, discrete
// input 5. Address 13-19 of the holding registers are a gap.
std::vector<Datapoint> sampleList() {
    return {
        datapoint(RegisterTable::holdingRegister, 10, 0x1234),
        datapoint(RegisterTable::holdingRegister, 11, 1.0, DataType::float32),
        datapoint(RegisterTable::holdingRegister, 20, 9),
        datapoint(RegisterTable::inputRegister, 0, 7),
        datapoint(RegisterTable::coil, 0, 1),
        datapoint(RegisterTable::coil, 1, 0),
        datapoint(RegisterTable::coil, 2, 1),
        datapoint(RegisterTable::discreteInput, 5, 1),
    };
}

std::string answerTo(SlaveDevice& device, const char* requestPDU) {
    return hexString(device.answer(1, hexBytes(requestPDU)));
}

TEST(SlaveDevice, AnswersRequestsLikeADevice) {
    struct Row {
        const char* name;
        const char* request;
        const char* answer;
    };
    const Row rows[] = {
        {"holding registers across two datapoints", "03 00 0A 00 03", "03 06 12 34 3F 80 00 00"},
        {"input register", "04 00 00 00 01", "04 02 00 07"},
        {"coils, LSB first", "01 00 00 00 03", "01 01 05"},
        {"discrete input", "02 00 05 00 01", "02 01 01"},
        {"first address has no datapoint", "03 00 09 00 02", "83 02"},
        {"last address has no datapoint", "03 00 0C 00 02", "83 02"},
        {"a gap between datapoints", "03 00 0A 00 0B", "83 02"},
        {"the tables are separate", "04 00 0A 00 01", "84 02"},
        {"range past 65535", "03 FF FF 00 02", "83 02"},
        {"quantity 0", "03 00 0A 00 00", "83 03"},
        {"126 registers", "03 00 0A 00 7E", "83 03"},
        {"2001 coils", "01 00 00 07 D1", "81 03"},
        {"quantity is checked before address", "03 00 63 00 00", "83 03"},
        {"request too short", "03 00 0A", "83 03"},
        {"coil value neither on nor off", "05 00 00 12 34", "85 03"},
        {"coil without datapoint", "05 00 09 FF 00", "85 02"},
        {"single register echoes", "06 00 0A AB CD", "06 00 0A AB CD"},
        {"single register without datapoint", "06 00 00 00 01", "86 02"},
        {"multiple coils", "0F 00 00 00 03 01 02", "0F 00 00 00 03"},
        {"multiple coils, wrong byte count", "0F 00 00 00 03 02 02 00", "8F 03"},
        {"multiple registers", "10 00 0B 00 02 04 00 00 00 00", "10 00 0B 00 02"},
        {"multiple registers, wrong byte count", "10 00 0A 00 01 04 00 00 00 00", "90 03"},
        {"124 registers", "10 00 0A 00 7C F8", "90 03"},
        {"multiple registers over a gap", "10 00 13 00 02 04 00 00 00 00", "90 02"},
        {"a function it does not serve", "2B 0E 01 00", "AB 01"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        SlaveDevice device(sampleList());
        EXPECT_EQ(answerTo(device, row.request), row.answer);
    }
}

TEST(SlaveDevice, WritesAreReadBack) {
    SlaveDevice device(sampleList());
    ASSERT_EQ(answerTo(device, "06 00 0A 00 2A"), "06 00 0A 00 2A");
    ASSERT_EQ(answerTo(device, "10 00 0B 00 02 04 40 49 0F DB"), "10 00 0B 00 02");
    EXPECT_EQ(answerTo(device, "03 00 0A 00 03"), "03 06 00 2A 40 49 0F DB");

    ASSERT_EQ(answerTo(device, "05 00 01 FF 00"), "05 00 01 FF 00");
    EXPECT_EQ(answerTo(device, "01 00 00 00 03"), "01 01 07");
    ASSERT_EQ(answerTo(device, "0F 00 00 00 03 01 00"), "0F 00 00 00 03");
    EXPECT_EQ(answerTo(device, "01 00 00 00 03"), "01 01 00");
}

// Unit 0 is the broadcast: a write reaches every unit and nobody answers.
TEST(SlaveDevice, RespondsOnlyToValidFramesForItsUnitsAndSilentlyToBroadcasts) {
    std::vector<Datapoint> list = sampleList();
    list.push_back(datapoint(RegisterTable::holdingRegister, 10, 0x5678, DataType::uint16, 2));
    SlaveDevice device(list);
    ASSERT_EQ(device.units(), (std::set<std::uint8_t>{1, 2}));
    const Bytes read = hexBytes("03 00 0A 00 01");
    EXPECT_EQ(device.respond(RTUFrame::build(1, read), 0),
              RTUFrame::build(1, hexBytes("03 02 12 34")));
    EXPECT_EQ(device.respond(RTUFrame::build(2, read), 0),
              RTUFrame::build(2, hexBytes("03 02 56 78")));
    EXPECT_EQ(device.respond(RTUFrame::build(3, read), 0), std::nullopt);
    Bytes broken = RTUFrame::build(1, read);
    broken.back() ^= 1;
    EXPECT_EQ(device.respond(broken, 0), std::nullopt);

    EXPECT_EQ(device.respond(RTUFrame::build(0, hexBytes("06 00 0A 00 63")), 0), std::nullopt);
    EXPECT_EQ(device.cell(1, RegisterTable::holdingRegister, 10), 0x63);
    EXPECT_EQ(device.cell(2, RegisterTable::holdingRegister, 10), 0x63);
    EXPECT_EQ(device.respond(RTUFrame::build(0, read), 0), std::nullopt);
}

// Devices with small buffers refuse long requests, with exception 03 or silence; devices without
// a table may refuse its function outright.
TEST(SlaveDevice, RefusesWhatASmallerDeviceRefuses) {
    struct Row {
        const char* name;
        std::optional<SlaveDevice::RequestLimit> limit;
        bool refuseTables;
        const char* request;
        std::optional<const char*> answer;
    };
    const SlaveDevice::RequestLimit two{2, false};
    const SlaveDevice::RequestLimit twoSilent{2, true};
    const Row rows[] = {
        {"read within the limit", two, false, "03 00 0A 00 02", "03 04 12 34 3F 80"},
        {"read past the limit", two, false, "03 00 0A 00 03", "83 03"},
        {"input registers too", two, false, "04 00 00 00 03", "84 03"},
        {"write past the limit", two, false, "10 00 0A 00 03 06 00 00 00 00 00 00", "90 03"},
        {"bits are not registers", two, false, "01 00 00 00 03", "01 01 05"},
        {"silent past the limit", twoSilent, false, "03 00 0A 00 03", std::nullopt},
        {"a table without datapoints", std::nullopt, true, "04 00 05 00 01", "84 01"},
        {"a table with datapoints, an address without", std::nullopt, true, "03 00 01 00 01",
         "83 02"},
    };
    std::vector<Datapoint> list = sampleList();
    list.push_back(datapoint(RegisterTable::holdingRegister, 0, 1, DataType::uint16, 2));
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        SlaveDevice device(list);
        if (row.limit) {
            device.limitRequests(*row.limit);
        }
        if (row.refuseTables) {
            device.refuseTablesNotServed();
        }
        // Unit 2 has only holding register 0.
        const std::uint8_t unit = row.refuseTables ? 2 : 1;
        const auto answer = device.respond(RTUFrame::build(unit, hexBytes(row.request)), 0);
        ASSERT_EQ(answer.has_value(), row.answer.has_value());
        if (answer) {
            EXPECT_EQ(*answer, RTUFrame::build(unit, hexBytes(*row.answer)));
        }
    }
}

TEST(SimulatedValue, FollowsEachKindOverTime) {
    using Kind = Simulation::Kind;
    struct Row {
        const char* name;
        Kind kind;
        double seconds;
        double expected;
        double period = 4;
    };
    // Minimum 10, maximum 20, period 4 s unless the row says otherwise.
    const Row rows[] = {
        {"counter starts at minimum", Kind::counter, 0.5, 10},
        {"counter steps each second", Kind::counter, 3.2, 13},
        {"counter reaches maximum", Kind::counter, 10, 20},
        {"counter wraps after maximum", Kind::counter, 11, 10},
        {"ramp starts at minimum", Kind::ramp, 0, 10},
        {"ramp halfway", Kind::ramp, 2, 15},
        {"ramp restarts each period", Kind::ramp, 5, 12.5},
        {"sine starts in the middle", Kind::sine, 0, 15},
        {"sine peaks after a quarter", Kind::sine, 1, 20},
        {"sine bottoms after three quarters", Kind::sine, 3, 10},
        {"toggle first half", Kind::toggle, 1.9, 10},
        {"toggle second half", Kind::toggle, 2, 20},
        {"toggle next period", Kind::toggle, 4.1, 10},
        {"no period holds the minimum", Kind::ramp, 7.5, 10, 0},
        {"negative period holds the minimum", Kind::ramp, 7.5, 10, -1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const Simulation simulation{row.kind, 10, 20, row.period};
        EXPECT_NEAR(SimulatedValue::at(simulation, row.seconds, 0), row.expected, 1e-9);
    }
}

TEST(SimulatedValue, RandomStaysInRangeAndHoldsForASecond) {
    const Simulation simulation{Simulation::Kind::random, -5, 5, 10};
    std::set<double> values;
    for (int second = 0; second < 50; ++second) {
        const double value = SimulatedValue::at(simulation, second + 0.1, 42);
        EXPECT_GE(value, -5);
        EXPECT_LT(value, 5);
        EXPECT_EQ(SimulatedValue::at(simulation, second + 0.9, 42), value);
        values.insert(value);
    }
    EXPECT_GT(values.size(), 45U);
    EXPECT_NE(SimulatedValue::at(simulation, 0, 42), SimulatedValue::at(simulation, 0, 43));
}

TEST(SlaveDevice, AnimatesSimulatedDatapointsAtTheRequestTime) {
    const Simulation ramp{Simulation::Kind::ramp, 0, 100, 10};
    const Simulation toggle{Simulation::Kind::toggle, 0, 1, 2};
    std::vector<Datapoint> list{
        datapoint(RegisterTable::holdingRegister, 0, 0, DataType::uint16, 1, ramp),
        datapoint(RegisterTable::inputRegister, 0, 0, DataType::float32, 1, ramp),
        datapoint(RegisterTable::discreteInput, 0, 0, DataType::boolean, 1, toggle),
        datapoint(RegisterTable::holdingRegister, 1, 5),
    };
    list[0].scale = 0.1;
    SlaveDevice device(list);

    const auto ask = [&](const char* pdu, double seconds) {
        const std::optional<Bytes> answer =
            device.respond(RTUFrame::build(1, hexBytes(pdu)), seconds);
        return answer ? hexString(ByteView(*answer).subspan(1, answer->size() - 3)) : "";
    };
    // Only what a read touches is moved, including a datapoint that begins before it: 25.1 is
    // 41C8 CCCD.
    EXPECT_EQ(ask("04 00 01 00 01", 2.51), "04 02 CC CD");
    // 25.0 at scale 0.1 is raw 250.
    EXPECT_EQ(ask("03 00 00 00 02", 2.5), "03 04 00 FA 00 05");
    EXPECT_EQ(ask("04 00 00 00 02", 2.5), "04 04 41 C8 00 00");
    EXPECT_EQ(ask("02 00 00 00 01", 0.5), "02 01 00");
    EXPECT_EQ(ask("02 00 00 00 01", 1.5), "02 01 01");

    // A written value holds on a plain datapoint; the animation overrides it on an animated one.
    ASSERT_EQ(ask("10 00 00 00 02 04 00 01 00 2A", 3), "10 00 00 00 02");
    EXPECT_EQ(ask("03 00 00 00 02", 5), "03 04 01 F4 00 2A");
}

} // namespace
} // namespace kestrin
