#include "CRC16.h"
#include "HexBytes.h"

#include <array>
#include <deque>
#include <iterator>
#include <list>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using test::hexBytes;

TEST(CRC16, MatchesPublishedVectors) {
    struct Row {
        const char* name;
        Bytes bytes;
        std::uint16_t crc;
    };
    const std::string_view check = "123456789";
    const Row rows[] = {
        // An empty run leaves the register at its preset.
        {"empty", {}, 0xFFFF},
        // The catalogued check value of CRC-16/MODBUS.
        {"check string", Bytes(check.begin(), check.end()), 0x4B37},
        // Sent as C5 CD: the request of the RTU framing examples.
        {"read 10 holding registers", hexBytes("01 03 00 00 00 0A"), 0xCDC5},
        // Modbus over Serial Line V1.02, the read of registers 108-110 from unit 17: 76 87.
        {"serial line guide example", hexBytes("11 03 00 6B 00 03"), 0x8776},
        // An exception answer: 01 83 02 C0 F1.
        {"exception answer", hexBytes("01 83 02"), 0xF1C0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(CRC16::modbus(row.bytes), row.crc);
    }
}

TEST(CRC16, EveryKindOfByteRangeGivesTheSameValue) {
    const Bytes frame = hexBytes("FF 01 03 00 00 00 0A FF");
    const ByteView slice = ByteView(frame).subspan(1, 6);
    const std::array<std::uint8_t, 6> array{0x01, 0x03, 0x00, 0x00, 0x00, 0x0A};
    const std::uint8_t cArray[] = {0x01, 0x03, 0x00, 0x00, 0x00, 0x0A};
    const std::deque<std::uint8_t> deque(slice.begin(), slice.end());
    const std::list<std::uint8_t> list(slice.begin(), slice.end());
    // Single-pass and produced on demand, like bytes read from a stream.
    std::istringstream stream(std::string(slice.begin(), slice.end()));

    EXPECT_EQ(CRC16::modbus(slice), 0xCDC5);
    EXPECT_EQ(CRC16::modbus(array), 0xCDC5);
    EXPECT_EQ(CRC16::modbus(cArray), 0xCDC5);
    EXPECT_EQ(CRC16::modbus(deque), 0xCDC5);
    EXPECT_EQ(CRC16::modbus(list.begin(), list.end()), 0xCDC5);
    EXPECT_EQ(
        CRC16::modbus(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()),
        0xCDC5);
}

} // namespace
} // namespace kestrin
