#include "CRC16.h"
#include "HexBytes.h"
#include "RTUFrame.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using test::hexBytes;
using ParseError = RTUFrame::ParseError;

TEST(CRC16, MatchesPublishedVectorsAndGoesOnTheWireLowByteFirst) {
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
    EXPECT_EQ(RTUFrame::build(0x11, hexBytes("03 00 6B 00 03")),
              hexBytes("11 03 00 6B 00 03 76 87"));
}

// Every row answers a request to unit 1 with function 3.
TEST(RTUFrame, ParseResponseRunsItsChecksInOrder) {
    struct Row {
        const char* name;
        const char* frame;
        Result<Bytes, ParseError> expected;
    };
    const Row rows[] = {
        {"register answer", "01 03 02 00 0A 38 43", hexBytes("03 02 00 0A")},
        {"exception answer passes", "01 83 02 C0 F1", hexBytes("83 02")},
        {"empty", "", ParseError::tooShort(0)},
        {"three bytes", "01 83 02", ParseError::tooShort(3)},
        {"swapped CRC bytes", "01 03 02 00 0A 43 38", ParseError::crcMismatch(0x4338, 0x3843)},
        {"CRC before unit", "02 04 02 00 0A 00 00", ParseError::crcMismatch(0x377D, 0x0000)},
        {"unit before function", "02 04 02 00 0A 7D 37", ParseError::unexpectedUnit(2)},
        {"other function", "01 04 02 00 0A 39 37", ParseError::unexpectedFunction(0x04)},
        {"exception of other function", "01 84 02 C2 C1", ParseError::unexpectedFunction(0x84)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(RTUFrame::parseResponse(hexBytes(row.frame), 1, 3), row.expected);
    }
}

TEST(RTUFrame, ParseErrorsMapToPollFailures) {
    EXPECT_EQ(ParseError::tooShort(3).pollFailure(), PollFailure::malformed());
    EXPECT_EQ(ParseError::crcMismatch(1, 2).pollFailure(), PollFailure::crcMismatch());
    EXPECT_EQ(ParseError::unexpectedUnit(9).pollFailure(), PollFailure::unexpectedUnit(9));
    EXPECT_EQ(ParseError::unexpectedFunction(0x84).pollFailure(),
              PollFailure::unexpectedFunction(0x84));
}

TEST(RTUFrame, ValidCRCNeedsFourBytesAndAMatchingTail) {
    EXPECT_TRUE(RTUFrame::hasValidCRC(hexBytes("01 07 41 E2")));
    EXPECT_FALSE(RTUFrame::hasValidCRC(hexBytes("01 03 00 00 00 0A CD C5")));
    // A trailing 00 would still check: the CRC over a frame and its low CRC byte is its high byte.
    EXPECT_FALSE(RTUFrame::hasValidCRC(hexBytes("01 03 00 00 00 0A C5 CD 01")));
    // FF FF is the CRC of nothing, but no frame is that short.
    EXPECT_FALSE(RTUFrame::hasValidCRC(hexBytes("01 FF FF")));
}

struct LengthRow {
    const char* name;
    std::vector<std::uint8_t> codes;
    const char* tail; // the bytes after unit and function
    std::optional<int> length;
};

// Each row holds for each of its codes; a code that no row lists gives nothing.
void expectLengths(std::optional<int> (*length)(ByteView), const std::vector<LengthRow>& rows) {
    std::array<bool, 256> listed{};
    for (const LengthRow& row : rows) {
        for (std::uint8_t code : row.codes) {
            SCOPED_TRACE(std::string(row.name) + ", code " + std::to_string(code));
            const Bytes frame = hexBytes("01 " + hexString(Bytes{code}) + " " + row.tail);
            EXPECT_EQ(length(frame), row.length);
            EXPECT_EQ(length(ByteView(frame).first(1)), std::nullopt);
            listed[code] = true;
        }
    }
    for (int code = 0; code < 256; ++code) {
        if (!listed[code]) {
            SCOPED_TRACE("unlisted code " + std::to_string(code));
            EXPECT_EQ(length(Bytes{1, static_cast<std::uint8_t>(code), 0, 0, 0, 0, 0, 0, 0, 0, 0}),
                      std::nullopt);
        }
    }
}

TEST(RTUFrame, ExpectedRequestLengthCoversEveryFunctionCode) {
    expectLengths(
        RTUFrame::expectedRequestLength,
        {
            {"address and quantity", {1, 2, 3, 4, 5, 6, 8}, "", 8},
            {"no data", {7, 11, 12, 17}, "", 4},
            {"byte count 4", {15, 16}, "00 00 00 02 04", 13},
            {"byte count 0", {15, 16}, "00 00 00 00 00", 9},
            {"byte count still missing", {15, 16}, "00 00 00 02", std::nullopt},
            {"mask write", {22}, "", 10},
            {"write byte count 6", {23}, "00 00 00 01 00 00 00 03 06", 19},
            {"write byte count still missing", {23}, "00 00 00 01 00 00 00 03", std::nullopt},
            {"FIFO queue", {24}, "", 6},
            {"device identification", {43}, "", 7},
        });
}

TEST(RTUFrame, ExpectedResponseLengthCoversEveryFunctionCode) {
    std::vector<std::uint8_t> exceptions;
    for (int code = 0x80; code <= 0xFF; ++code) {
        exceptions.push_back(static_cast<std::uint8_t>(code));
    }
    const std::vector<std::uint8_t> counted{1, 2, 3, 4, 12, 17, 20, 21, 23};
    expectLengths(RTUFrame::expectedResponseLength,
                  {
                      {"exception", exceptions, "", 5},
                      {"byte count 4", counted, "04", 9},
                      {"byte count 250", counted, "FA", 255},
                      {"byte count still missing", counted, "", std::nullopt},
                      {"echo or count", {5, 6, 8, 11, 15, 16}, "", 8},
                      {"exception status", {7}, "", 5},
                      {"mask write echo", {22}, "", 10},
                      {"FIFO byte count 0x0106", {24}, "01 06", 268},
                      {"FIFO byte count still missing", {24}, "01", std::nullopt},
                  });
}

} // namespace
} // namespace kestrin
