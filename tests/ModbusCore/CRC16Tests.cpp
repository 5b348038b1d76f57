#include "CRC16.h"
#include "HexBytes.h"

#include <deque>
#include <iterator>
#include <list>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using test::hexBytes;

TEST(CRC16, MatchesPublishedVectors) {
    const std::string check = "123456789";
    const std::pair<Bytes, std::uint16_t> rows[] = {
        // An empty run leaves the register at its preset.
        {{}, 0xFFFF},
        // The catalogued check value of CRC-16/MODBUS.
        {Bytes(check.begin(), check.end()), 0x4B37},
        // Sent as C5 CD: reading 10 holding registers from unit 1.
        {hexBytes("01 03 00 00 00 0A"), 0xCDC5},
        // Modbus over Serial Line V1.02: unit 17 reads registers 108-110, sent as 76 87.
        {hexBytes("11 03 00 6B 00 03"), 0x8776},
        // The exception answer 01 83 02 C0 F1.
        {hexBytes("01 83 02"), 0xF1C0},
    };
    for (const auto& [bytes, crc] : rows) {
        SCOPED_TRACE(hexString(bytes));
        EXPECT_EQ(CRC16::modbus(bytes), crc);
    }
}

TEST(CRC16, EveryKindOfByteRangeGivesTheSameValue) {
    const Bytes frame = hexBytes("FF 01 03 00 00 00 0A FF");
    const ByteView slice = ByteView(frame).subspan(1, 6);
    const std::uint8_t array[] = {0x01, 0x03, 0x00, 0x00, 0x00, 0x0A};
    const std::deque<std::uint8_t> deque(slice.begin(), slice.end());
    const std::list<std::uint8_t> list(slice.begin(), slice.end());
    // Single-pass and produced on demand, like bytes read from a stream.
    std::istringstream stream(std::string(slice.begin(), slice.end()));

    EXPECT_EQ(CRC16::modbus(slice), 0xCDC5);
    EXPECT_EQ(CRC16::modbus(array), 0xCDC5);
    EXPECT_EQ(CRC16::modbus(deque), 0xCDC5);
    EXPECT_EQ(CRC16::modbus(list.begin(), list.end()), 0xCDC5);
    EXPECT_EQ(
        CRC16::modbus(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()),
        0xCDC5);
}

} // namespace
} // namespace kestrin
