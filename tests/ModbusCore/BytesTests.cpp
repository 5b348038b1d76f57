#include "Bytes.h"
#include "HexBytes.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(Bytes, HexStringIsUpperCaseDigitPairsJoinedBySingleSpaces) {
    EXPECT_EQ(hexString(Bytes{}), "");
    EXPECT_EQ(hexString(Bytes{0x0A}), "0A");
    EXPECT_EQ(hexString(Bytes{0x01, 0x03, 0x00, 0x0A, 0xFF, 0xab}), "01 03 00 0A FF AB");
}

TEST(Bytes, SixteenBitFieldsAreBigEndian) {
    const Bytes bytes = test::hexBytes("12 34 AB");
    EXPECT_EQ(uint16At(bytes, 0), 0x1234);
    EXPECT_EQ(uint16At(bytes, 1), 0x34AB);
    Bytes appended{0x10};
    appendUInt16(appended, 0xABCD);
    appendUInt16(appended, 0x0001);
    EXPECT_EQ(appended, test::hexBytes("10 AB CD 00 01"));
}

} // namespace
} // namespace kestrin
