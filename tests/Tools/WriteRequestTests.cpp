#include "WriteRequest.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

Datapoint datapoint(RegisterTable table, std::uint16_t address, DataType type = DataType::uint16,
                    double scale = 1) {
    return Datapoint(Uuid::random(), "", 1, table, address, type, WordOrder::abcd, scale, "",
                     DisplayFormat::decimal, 0, "", Simulation());
}

// How a value becomes register contents is the codec's; here only the request around them.
TEST(WriteRequest, BuildsFunctionCodeAndPayloadByTableTypeAndMode) {
    constexpr auto coil = RegisterTable::coil;
    constexpr auto holding = RegisterTable::holdingRegister;
    struct Row {
        const char* name;
        Datapoint datapoint;
        double value;
        WriteMode mode;
        const char* expected;
    };
    const Row rows[] = {
        {"coil on, single", datapoint(coil, 5), 1, WriteMode::single, "05 00 05 FF 00"},
        {"coil off, single", datapoint(coil, 5), 0, WriteMode::single, "05 00 05 00 00"},
        {"any non-zero switches a coil on", datapoint(coil, 5), -0.5, WriteMode::single,
         "05 00 05 FF 00"},
        {"coil on, multiple", datapoint(coil, 19), 1, WriteMode::multiple, "0F 00 13 00 01 01 01"},
        {"coil off, multiple", datapoint(coil, 19), 0, WriteMode::multiple, "0F 00 13 00 01 01 00"},
        {"scaled int16, single", datapoint(holding, 10, DataType::int16, 0.1), 21.5,
         WriteMode::single, "06 00 0A 00 D7"},
        {"scaled int16, multiple", datapoint(holding, 10, DataType::int16, 0.1), 21.5,
         WriteMode::multiple, "10 00 0A 00 01 02 00 D7"},
        {"bool in a register", datapoint(holding, 2, DataType::boolean), 1, WriteMode::single,
         "06 00 02 00 01"},
        {"float32 is FC16 even in single mode", datapoint(holding, 3, DataType::float32), 1,
         WriteMode::single, "10 00 03 00 02 04 3F 80 00 00"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const std::optional<Bytes> pdu = WriteRequest::pdu(row.datapoint, row.value, row.mode);
        ASSERT_TRUE(pdu.has_value());
        EXPECT_EQ(hexString(*pdu), row.expected);
    }
}

TEST(WriteRequest, ReadOnlyTablesGiveNoRequest) {
    for (RegisterTable table : {RegisterTable::discreteInput, RegisterTable::inputRegister}) {
        for (WriteMode mode : WriteMode::allCases) {
            EXPECT_EQ(WriteRequest::pdu(datapoint(table, 0), 1, mode), std::nullopt);
        }
    }
}

} // namespace
} // namespace kestrin
