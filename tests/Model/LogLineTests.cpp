#include "LogLine.h"

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using Kind = LogSegment::Kind;

// One holding register at 100 of unit 1, answered with 500 (01 F4); CRCs as on the wire.
const Bytes request{0x01, 0x03, 0x00, 0x64, 0x00, 0x01, 0xC5, 0xD5};
const Bytes response{0x01, 0x03, 0x02, 0x01, 0xF4, 0xB8, 0x53};
const ReadBlock block{1, RegisterTable::holdingRegister, 100, 10};
const LogLine::Options rawFrames{.showRawFrames = true};
const LogLine::Options onlyProblems{.showRawFrames = true, .onlyProblems = true};

std::string joined(const std::optional<LogLineSegments>& line) {
    std::string text;
    for (const LogSegment& segment : line.value_or(LogLineSegments{})) {
        text += segment.text;
    }
    return text;
}

TEST(LogLine, AnswerShowsDataOrWholeFramesAndNothingForOnlyProblems) {
    EXPECT_EQ(LogLine::readAnswer(block, request, response, 0.0124, {}),
              (LogLineSegments{{Kind::response, "← "},
                               {Kind::response, "Unit 1 · FC 03"},
                               {Kind::meta, " Read holding registers · "},
                               {Kind::response, "02 01 F4"},
                               {Kind::meta, "  (12 ms)"}}));
    EXPECT_EQ(joined(LogLine::readAnswer(block, request, response, 0.0125, rawFrames)),
              "← Unit 1 · FC 03 Read holding registers · 01 03 00 64 00 01 C5 D5  ←  "
              "01 03 02 01 F4 B8 53  (13 ms)");
    EXPECT_FALSE(LogLine::readAnswer(block, request, response, 0, onlyProblems));
}

TEST(LogLine, FailedReadNamesTheBlockAndIsAWarningOnlyForExceptions) {
    const std::vector<std::tuple<PollFailure, Kind, const char*>> rows{
        {PollFailure::timeout(), Kind::error, "no response within 500 ms"},
        {PollFailure::exception(2), Kind::warning, "Illegal data address (02)"},
        {PollFailure::unexpectedFunction(0x04), Kind::error, "response with function code 04"}};
    for (const auto& [failure, kind, text] : rows) {
        EXPECT_EQ(LogLine::readFailure(block, request, failure, 500),
                  (LogLineSegments{
                      {kind, std::string("✕ Unit 1 · FC 03 Read holding registers HR 100–109 · ") +
                                 text}}));
    }
}

TEST(LogLine, ALateAnswerIsAProblemShownWithItsBytesOnlyWithRawFrames) {
    EXPECT_EQ(LogLine::lateAnswer(response, {}),
              (LogLineSegments{{Kind::warning, "⚠ Late answer discarded"}}));
    EXPECT_EQ(joined(LogLine::lateAnswer(response, onlyProblems)),
              "⚠ Late answer discarded  ←  01 03 02 01 F4 B8 53");
}

TEST(LogLine, WriteLinesAndWhichOfThemOnlyProblemsKeeps) {
    Datapoint setpoint;
    setpoint.name = "Setpoint";
    setpoint.unitID = 3;
    setpoint.scale = 0.1;
    setpoint.engineeringUnit = "°C";
    const std::vector<std::pair<std::optional<LogLineSegments>, std::optional<LogSegment>>> rows{
        {LogLine::writeSent(setpoint, 0x06, 21.5, {}, {}),
         LogSegment{Kind::request, "→ Unit 3 · FC 06 Write single register · Setpoint = 21.5"}},
        {LogLine::writeSent(setpoint, 0x06, 21.5, {}, onlyProblems), std::nullopt},
        {LogLine::writeConfirmed(setpoint, 21.5, {}, 0.015),
         LogSegment{Kind::response, "✎ Unit 3 · Setpoint = 21.5 °C  (15 ms)"}},
        {LogLine::writeFailed(nullptr, PollFailure::exception(2), 1000),
         LogSegment{Kind::error, "✕ Writing ? failed · Illegal data address (02)"}},
        {LogLine::writeFrames(request, response, rawFrames),
         LogSegment{Kind::meta, "  → 01 03 00 64 00 01 C5 D5  ← 01 03 02 01 F4 B8 53"}},
        {LogLine::writeFrames(request, {}, rawFrames),
         LogSegment{Kind::meta, "  → 01 03 00 64 00 01 C5 D5"}},
        {LogLine::writeFrames(request, response, {}), std::nullopt},
        {LogLine::writeFrames(request, response, onlyProblems), std::nullopt}};
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const auto& [line, segment] = rows[row];
        EXPECT_EQ(line, segment ? std::optional(LogLineSegments{*segment}) : std::nullopt)
            << "row " << row;
    }
}

TEST(LogLine, SystemLinesAreMarkedAndTimestampsPrefixEveryLine) {
    EXPECT_EQ(
        LogLine::readingStarted("/dev/ttyUSB0", "9600 8E1"),
        (LogLineSegments{{Kind::system, "--- Reading started on /dev/ttyUSB0 @ 9600 8E1 ---"}}));
    const QDateTime now(QDate(2026, 11, 16), QTime(7, 5, 2, 9));
    const LogLineSegments stamped = LogLine::stamped(LogLine::readingStopped(), now, {});
    EXPECT_EQ(stamped.front().kind, Kind::timestamp);
    EXPECT_EQ(joined(stamped), "07:05:02.009  --- Reading stopped ---");
    EXPECT_EQ(LogLine::stamped(LogLine::readingStopped(), now, {.showTimestamps = false}),
              LogLine::readingStopped());
}

} // namespace
} // namespace kestrin
