#include "HexBytes.h"
#include "PDU.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using test::hexBytes;
constexpr RegisterTable CO = RegisterTable::coil;
constexpr RegisterTable DI = RegisterTable::discreteInput;
constexpr RegisterTable HR = RegisterTable::holdingRegister;
constexpr RegisterTable IR = RegisterTable::inputRegister;

TEST(PDU, BuildersLayOutBigEndianFieldsAndBitsLeastSignificantFirst) {
    EXPECT_EQ(hexString(PDU::read(HR, 100, 10)), "03 00 64 00 0A");
    EXPECT_EQ(hexString(PDU::read(CO, 0, 2000)), "01 00 00 07 D0");
    EXPECT_EQ(hexString(PDU::read(DI, 0xFFFF, 1)), "02 FF FF 00 01");
    EXPECT_EQ(hexString(PDU::read(IR, 0x1234, 125)), "04 12 34 00 7D");
    EXPECT_EQ(hexString(PDU::writeSingleCoil(5, true)), "05 00 05 FF 00");
    EXPECT_EQ(hexString(PDU::writeSingleCoil(5, false)), "05 00 05 00 00");
    EXPECT_EQ(hexString(PDU::writeSingleRegister(0x0102, 0xABCD)), "06 01 02 AB CD");
    EXPECT_EQ(hexString(PDU::writeMultipleRegisters(1, std::vector<std::uint16_t>{0x1234, 0xABCD})),
              "10 00 01 00 02 04 12 34 AB CD");
    EXPECT_EQ(hexString(PDU::writeMultipleCoils(
                  19, {true, false, true, true, false, false, true, true, true, false})),
              "0F 00 13 00 0A 02 CD 01");
    EXPECT_EQ(hexString(PDU::writeMultipleCoils(0, {true})), "0F 00 00 00 01 01 01");
    EXPECT_EQ(packBits({}), Bytes{});
    // Unpacking gives exactly count values, padded with false.
    EXPECT_EQ(unpackBits(hexBytes("FF"), 3), (std::vector<bool>{true, true, true}));
    EXPECT_EQ(
        unpackBits(hexBytes("80"), 10),
        (std::vector<bool>{false, false, false, false, false, false, false, true, false, false}));
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
        {"ten coils", "01 02 05 01", CO, 10,
         ReadData::bits({true, false, true, false, false, false, false, false, true, false})},
        {"discrete inputs", "02 01 03", DI, 2, ReadData::bits({true, true})},
        {"holding registers", "03 04 00 0A 01 02", HR, 2, ReadData::registers({0x000A, 0x0102})},
        {"input register", "04 02 FF FE", IR, 1, ReadData::registers({0xFFFE})},
        {"exception", "83 02", HR, 1, ResponseError::exception(2)},
        {"exception outside the table", "81 07", CO, 1, ResponseError::exception(7)},
        {"empty", "", HR, 1, malformed},
        {"lone exception code", "83", HR, 1, malformed},
        {"input-register code for holding registers", "04 02 00 01", HR, 1, malformed},
        {"register count too small", "03 04 00 0A 01 02", HR, 3, malformed},
        {"byte count beyond the data", "03 04 00 0A", HR, 2, malformed},
        {"data beyond the byte count", "03 02 00 0A 01 02", HR, 1, malformed},
        {"one bit byte too many", "01 02 05 01", CO, 8, malformed},
        {"one bit byte too few", "01 01 05", CO, 9, malformed},
        {"negative count", "01 00", CO, -1, malformed},
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
        {"exception", "86 02", "06 00 05 00 07", ResponseError::exception(2)},
        {"exception to no request", "90 04", "", ResponseError::exception(4)},
        {"other value", "06 00 05 00 08", "06 00 05 00 07", malformed},
        {"other quantity", "10 00 01 00 03", "10 00 01 00 02 04 12 34 AB CD", malformed},
        {"response too long", "06 00 05 00 07 00", "06 00 05 00 07", malformed},
        {"lone exception code", "86", "06 00 05 00 07", malformed},
        {"request too short", "06 00 05 00", "06 00 05 00", malformed},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(PDU::checkWrite(hexBytes(row.response), hexBytes(row.request)), row.expected);
    }
}

} // namespace
} // namespace kestrin
