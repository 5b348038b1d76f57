#include "HexBytes.h"
#include "PDU.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using test::hexBytes;

TEST(PDU, BuildersLayOutBigEndianFields) {
    struct Row {
        const char* name;
        Bytes built;
        const char* expected;
    };
    const Row rows[] = {
        {"read holding registers", PDU::read(RegisterTable::holdingRegister, 100, 10),
         "03 00 64 00 0A"},
        {"read 2000 coils", PDU::read(RegisterTable::coil, 0, 2000), "01 00 00 07 D0"},
        {"read discrete inputs", PDU::read(RegisterTable::discreteInput, 0xFFFF, 1),
         "02 FF FF 00 01"},
        {"read input registers", PDU::read(RegisterTable::inputRegister, 0x1234, 125),
         "04 12 34 00 7D"},
        {"coil on", PDU::writeSingleCoil(5, true), "05 00 05 FF 00"},
        {"coil off", PDU::writeSingleCoil(5, false), "05 00 05 00 00"},
        {"single register", PDU::writeSingleRegister(0x0102, 0xABCD), "06 01 02 AB CD"},
        {"two registers",
         PDU::writeMultipleRegisters(1, std::vector<std::uint16_t>{0x1234, 0xABCD}),
         "10 00 01 00 02 04 12 34 AB CD"},
        {"ten coils",
         PDU::writeMultipleCoils(19,
                                 {true, false, true, true, false, false, true, true, true, false}),
         "0F 00 13 00 0A 02 CD 01"},
        {"one coil", PDU::writeMultipleCoils(0, {true}), "0F 00 00 00 01 01 01"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(hexString(row.built), row.expected);
    }
}

TEST(PDU, PackBitsPutsTheFirstValueInTheLowBit) {
    EXPECT_EQ(packBits({}), Bytes{});
    EXPECT_EQ(packBits({true}), hexBytes("01"));
    EXPECT_EQ(packBits({false, false, false, false, false, false, false, true}), hexBytes("80"));
    EXPECT_EQ(packBits({false, false, false, false, false, false, false, false, true}),
              hexBytes("00 01"));
}

TEST(PDU, UnpackBitsGivesExactlyCountValuesPaddedWithFalse) {
    EXPECT_EQ(
        unpackBits(hexBytes("05 01"), 10),
        (std::vector<bool>{true, false, true, false, false, false, false, false, true, false}));
    EXPECT_EQ(unpackBits(hexBytes("FF"), 3), (std::vector<bool>{true, true, true}));
    EXPECT_EQ(
        unpackBits(hexBytes("01"), 10),
        (std::vector<bool>{true, false, false, false, false, false, false, false, false, false}));
    EXPECT_EQ(unpackBits({}, 0), std::vector<bool>{});
}

TEST(PDU, ParseReadChecksCodeAndCountsBeforeDecoding) {
    struct Row {
        const char* name;
        const char* pdu;
        RegisterTable table;
        int count;
        Result<ReadData, ResponseError> expected;
    };
    const auto malformed = ResponseError::malformed();
    const Row rows[] = {
        {"ten coils", "01 02 05 01", RegisterTable::coil, 10,
         ReadData::bits({true, false, true, false, false, false, false, false, true, false})},
        {"discrete inputs", "02 01 03", RegisterTable::discreteInput, 2,
         ReadData::bits({true, true})},
        {"holding registers", "03 04 00 0A 01 02", RegisterTable::holdingRegister, 2,
         ReadData::registers({0x000A, 0x0102})},
        {"input register", "04 02 FF FE", RegisterTable::inputRegister, 1,
         ReadData::registers({0xFFFE})},
        {"exception", "83 02", RegisterTable::holdingRegister, 1, ResponseError::exception(2)},
        {"exception outside the table", "81 07", RegisterTable::coil, 1,
         ResponseError::exception(7)},
        {"exception of another function", "84 01", RegisterTable::holdingRegister, 1,
         ResponseError::exception(1)},
        {"empty", "", RegisterTable::holdingRegister, 1, malformed},
        {"lone exception code", "83", RegisterTable::holdingRegister, 1, malformed},
        {"input-register code for holding registers", "04 02 00 01", RegisterTable::holdingRegister,
         1, malformed},
        {"coil code for discrete inputs", "01 01 01", RegisterTable::discreteInput, 1, malformed},
        {"register count too small", "03 04 00 0A 01 02", RegisterTable::holdingRegister, 3,
         malformed},
        {"register count too large", "03 04 00 0A 01 02", RegisterTable::holdingRegister, 1,
         malformed},
        {"byte count beyond the data", "03 04 00 0A", RegisterTable::holdingRegister, 2, malformed},
        {"data beyond the byte count", "03 02 00 0A 01 02", RegisterTable::holdingRegister, 1,
         malformed},
        {"one bit byte too many", "01 02 05 01", RegisterTable::coil, 8, malformed},
        {"one bit byte too few", "01 01 05", RegisterTable::coil, 9, malformed},
        {"negative count", "01 00", RegisterTable::coil, -1, malformed},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(PDU::parseRead(hexBytes(row.pdu), row.table, row.count), row.expected);
    }
}

TEST(PDU, CheckWriteWantsTheEchoOfTheRequest) {
    struct Row {
        const char* name;
        const char* response;
        const char* request;
        Result<void, ResponseError> expected;
    };
    const auto malformed = ResponseError::malformed();
    const Row rows[] = {
        {"single register echo", "06 00 05 00 07", "06 00 05 00 07", {}},
        {"single coil echo", "05 00 05 FF 00", "05 00 05 FF 00", {}},
        {"multiple registers header", "10 00 01 00 02", "10 00 01 00 02 04 12 34 AB CD", {}},
        {"multiple coils header", "0F 00 13 00 0A", "0F 00 13 00 0A 02 CD 01", {}},
        {"exception", "86 02", "06 00 05 00 07", ResponseError::exception(2)},
        {"exception to no request", "90 04", "", ResponseError::exception(4)},
        {"other value", "06 00 05 00 08", "06 00 05 00 07", malformed},
        {"other quantity", "10 00 01 00 03", "10 00 01 00 02 04 12 34 AB CD", malformed},
        {"other function", "10 00 05 00 07", "06 00 05 00 07", malformed},
        {"response too long", "06 00 05 00 07 00", "06 00 05 00 07", malformed},
        {"response too short", "06 00 05 00", "06 00 05 00 07", malformed},
        {"lone exception code", "86", "06 00 05 00 07", malformed},
        {"empty request", "06 00 05 00 07", "", malformed},
        {"request too short", "06 00 05 00", "06 00 05 00", malformed},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(PDU::checkWrite(hexBytes(row.response), hexBytes(row.request)), row.expected);
    }
}

} // namespace
} // namespace kestrin
