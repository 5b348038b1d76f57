#include "L10n.h"
#include "LogLine.h"

#include <string>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using Kind = LogSegment::Kind;

// "01 03 00 64 00 01 C5 D5": one holding register at 100; the answer holds 500 (01 F4).
const Bytes request{0x01, 0x03, 0x00, 0x64, 0x00, 0x01, 0xC5, 0xD5};
const Bytes response{0x01, 0x03, 0x02, 0x01, 0xF4, 0xB8, 0x53};
const ReadBlock block{1, RegisterTable::holdingRegister, 100, 1};

std::string joined(const LogLineSegments& line) {
    std::string text;
    for (const LogSegment& segment : line) {
        text += segment.text;
    }
    return text;
}

void inEnglish(const std::function<void()>& body) {
    L10n::withLanguageForTesting(Language::en, body);
}

TEST(LogLine, AnswerShowsDataOrWholeFramesAndNothingForOnlyProblems) {
    inEnglish([] {
        const auto data = LogLine::readAnswer(block, request, response, 0.0124, {});
        ASSERT_TRUE(data);
        EXPECT_EQ(*data, (LogLineSegments{{Kind::response, "← "},
                                          {Kind::response, "Unit 1 · FC 03"},
                                          {Kind::meta, " Read holding registers · "},
                                          {Kind::response, "02 01 F4"},
                                          {Kind::meta, "  (12 ms)"}}));

        const auto frames =
            LogLine::readAnswer(block, request, response, 0.0125, {.showRawFrames = true});
        ASSERT_TRUE(frames);
        EXPECT_EQ(joined(*frames), "← Unit 1 · FC 03 Read holding registers · "
                                   "01 03 00 64 00 01 C5 D5  ←  01 03 02 01 F4 B8 53  (13 ms)");
        EXPECT_EQ((*frames)[3].kind, Kind::request);

        const Bytes shortAnswer{0x01, 0x83, 0x02, 0xC0};
        EXPECT_EQ(joined(*LogLine::readAnswer(block, {}, shortAnswer, 0, {})),
                  "← Unit 1 · FC 00 " + L10n::Modbus::functionName(0) + " · 01 83 02 C0  (0 ms)");

        EXPECT_FALSE(LogLine::readAnswer(block, request, response, 0, {.onlyProblems = true}));
    });
}

TEST(LogLine, FailedReadNamesTheBlockAndIsAWarningOnlyForExceptions) {
    struct Row {
        PollFailure failure;
        Kind kind;
        const char* text;
    };
    const Row rows[] = {
        {PollFailure::timeout(), Kind::error,
         "✕ Unit 1 · FC 03 Read holding registers HR 100–109 · no response within 500 ms"},
        {PollFailure::exception(2), Kind::warning,
         "✕ Unit 1 · FC 03 Read holding registers HR 100–109 · Illegal data address (02)"},
        {PollFailure::crcMismatch(), Kind::error,
         "✕ Unit 1 · FC 03 Read holding registers HR 100–109 · CRC error in the response"},
        {PollFailure::unexpectedFunction(0x04), Kind::error,
         "✕ Unit 1 · FC 03 Read holding registers HR 100–109 · response with function code 04"},
    };
    inEnglish([&] {
        const ReadBlock tenRegisters{1, RegisterTable::holdingRegister, 100, 10};
        for (const Row& row : rows) {
            EXPECT_EQ(LogLine::readFailure(tenRegisters, request, row.failure, 500),
                      (LogLineSegments{{row.kind, row.text}}));
        }
        const ReadBlock oneCoil{7, RegisterTable::coil, 3, 1};
        EXPECT_EQ(joined(LogLine::readFailure(oneCoil, {}, PollFailure::malformed(), 500)),
                  "✕ Unit 7 · FC 00 Read coils CO 3 · response with the wrong length");
    });
}

TEST(LogLine, WriteLinesAndWhichOnesOnlyProblemsKeeps) {
    inEnglish([] {
        Datapoint setpoint;
        setpoint.name = "Setpoint";
        setpoint.unitID = 3;
        setpoint.scale = 0.1;
        setpoint.engineeringUnit = "°C";
        const NumberStyle style;
        const LogLine::Options onlyProblems{.onlyProblems = true};

        EXPECT_EQ(LogLine::writeSent(setpoint, 0x06, 21.5, style, {}),
                  (LogLineSegments{{Kind::request,
                                    "→ Unit 3 · FC 06 Write single register · Setpoint = 21.5"}}));
        EXPECT_FALSE(LogLine::writeSent(setpoint, 0x06, 21.5, style, onlyProblems));

        EXPECT_EQ(LogLine::writeConfirmed(setpoint, 21.5, style, 0.015),
                  (LogLineSegments{{Kind::response, "✎ Unit 3 · Setpoint = 21.5 °C  (15 ms)"}}));
        setpoint.engineeringUnit.clear();
        setpoint.name.clear();
        EXPECT_EQ(joined(LogLine::writeConfirmed(setpoint, 21.5, style, 0.015)),
                  "✎ Unit 3 · HR 0 = 21.5  (15 ms)");

        EXPECT_EQ(
            LogLine::writeFailed(nullptr, PollFailure::exception(2), 1000),
            (LogLineSegments{{Kind::error, "✕ Writing ? failed · Illegal data address (02)"}}));

        const LogLine::Options raw{.showRawFrames = true};
        EXPECT_EQ(
            LogLine::writeFrames(request, response, raw),
            (LogLineSegments{{Kind::meta, "  → 01 03 00 64 00 01 C5 D5  ← 01 03 02 01 F4 B8 53"}}));
        EXPECT_EQ(joined(*LogLine::writeFrames(request, {}, raw)), "  → 01 03 00 64 00 01 C5 D5");
        EXPECT_FALSE(LogLine::writeFrames(request, response, {}));
        EXPECT_FALSE(
            LogLine::writeFrames(request, response, {.showRawFrames = true, .onlyProblems = true}));
    });
}

TEST(LogLine, SystemLinesAreMarkedAndTimestampsPrefixEveryLine) {
    inEnglish([] {
        EXPECT_EQ(LogLine::readingStarted("/dev/ttyUSB0", "9600 8E1"),
                  (LogLineSegments{
                      {Kind::system, "--- Reading started on /dev/ttyUSB0 @ 9600 8E1 ---"}}));
        EXPECT_EQ(joined(LogLine::readingStopped()), "--- Reading stopped ---");
        EXPECT_EQ(joined(LogLine::portReopened()), "--- Serial port open again ---");
        EXPECT_EQ(LogLine::portLost("/dev/ttyUSB0"),
                  (LogLineSegments{{Kind::error, "Serial port /dev/ttyUSB0 is gone; waiting for "
                                                 "it to return"}}));

        const QDateTime now(QDate(2026, 11, 16), QTime(7, 5, 2, 9));
        const LogLineSegments stamped = LogLine::stamped(LogLine::readingStopped(), now, {});
        EXPECT_EQ(stamped.front(), (LogSegment{Kind::timestamp, "07:05:02.009  "}));
        EXPECT_EQ(joined(stamped), "07:05:02.009  --- Reading stopped ---");
        EXPECT_EQ(LogLine::stamped(LogLine::readingStopped(), now, {.showTimestamps = false}),
                  LogLine::readingStopped());
    });
}

} // namespace
} // namespace kestrin
