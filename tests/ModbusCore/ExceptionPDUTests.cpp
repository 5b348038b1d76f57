#include "ExceptionPDU.h"
#include "HexBytes.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using test::hexBytes;

TEST(ExceptionPDU, MakeSetsTheExceptionBit) {
    EXPECT_EQ(ExceptionPDU::make(0x03, ModbusException::illegalDataAddress), hexBytes("83 02"));
    EXPECT_EQ(ExceptionPDU::make(0x90, ModbusException::gatewayTargetFailedToRespond),
              hexBytes("90 0B"));
}

TEST(ExceptionPDU, ExceptionNeedsTheBitAndACodeByte) {
    EXPECT_EQ(ExceptionPDU::exception(hexBytes("83 02")), 0x02);
    EXPECT_EQ(ExceptionPDU::exception(hexBytes("81 07 00")), 0x07);
    EXPECT_EQ(ExceptionPDU::exception(hexBytes("83")), std::nullopt);
    EXPECT_EQ(ExceptionPDU::exception(hexBytes("03 02")), std::nullopt);
    EXPECT_EQ(ExceptionPDU::exception(Bytes{}), std::nullopt);
}

} // namespace
} // namespace kestrin
