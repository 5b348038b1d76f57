#include "LogLine.h"
#include "OutputBuffer.h"
#include "TestFiles.h"

#include <QTemporaryDir>
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

// A view's copy of the text, kept only from the buffer's notifications.
struct Mirror {
    QString text;
    qsizetype lastTrim = 0;

    explicit Mirror(OutputBuffer& buffer) {
        QObject::connect(&buffer, &OutputBuffer::appended, [this](const QList<StyledRun>& runs) {
            for (const StyledRun& run : runs) {
                text += run.text;
            }
        });
        QObject::connect(&buffer, &OutputBuffer::trimmed, [this](qsizetype count) {
            text.remove(0, count);
            lastTrim = count;
        });
        QObject::connect(&buffer, &OutputBuffer::cleared, [this] { text.clear(); });
    }
};

void appendText(OutputBuffer& buffer, const std::string& text) {
    buffer.append(LogLineSegments{{LogSegment::Kind::response, text}});
}

TEST(OutputBuffer, TrimsToTheFirstLineStartInsideTheTargetCountingUTF16Units) {
    // Three lines of 7 units with the break make 21 > 20. Target 10 cuts at 11, inside the
    // second line, which goes too; target 14 cuts at 7, where the second line begins. Counted
    // in UTF-8 bytes the emoji lines would be 13 long and trim one line earlier.
    const std::vector<std::tuple<std::string, qsizetype, qsizetype>> rows{
        {"abcdef", 10, 14}, {"😀😀😀", 10, 14}, {"😀😀😀", 14, 7}};
    for (const auto& [line, target, removed] : rows) {
        OutputBuffer buffer(20, target);
        Mirror mirror(buffer);
        appendText(buffer, line);
        appendText(buffer, line);
        EXPECT_EQ(mirror.lastTrim, 0) << line;
        appendText(buffer, line);
        EXPECT_EQ(mirror.lastTrim, removed) << line << " " << target;
        EXPECT_EQ(buffer.length(), 21 - removed) << line << " " << target;
        EXPECT_EQ(mirror.text, buffer.text());
    }
}

TEST(OutputBuffer, RunsMergeByRoleAndClearEmptiesTheView) {
    OutputBuffer buffer;
    Mirror mirror(buffer);
    buffer.append(LogLineSegments{{LogSegment::Kind::timestamp, "12:00:00.000  "},
                                  {LogSegment::Kind::error, "✕ "},
                                  {LogSegment::Kind::error, "Unit 1"}});
    EXPECT_EQ(buffer.runs(), (QList<StyledRun>{{LogSegment::Kind::timestamp, "12:00:00.000  "},
                                               {LogSegment::Kind::error, "✕ Unit 1"},
                                               {LogSegment::Kind::text, "\n"}}));
    buffer.clear();
    EXPECT_TRUE(buffer.isEmpty() && buffer.runs().isEmpty() && mirror.text.isEmpty());
}

TEST(OutputBuffer, SavesPlainUTF8WithCharactersOutsideTheBMPWhole) {
    QTemporaryDir folder;
    OutputBuffer buffer;
    appendText(buffer, "✕ Außen");
    // The emoji's two UTF-16 units straddle 32,768 units, where the saved text is cut into
    // pieces; split, each half would be saved as a replacement character.
    const std::string longLine = std::string(32767 - 8, 'x') + "😀";
    appendText(buffer, longLine);
    const QDateTime time(QDate(2026, 1, 2), QTime(3, 4, 5));
    EXPECT_EQ(OutputBuffer::fileName(time), "kestrin-log-2026-01-02T030405.txt");
    const QString path = folder.filePath(OutputBuffer::fileName(time));
    ASSERT_TRUE(buffer.save(path).ok());
    EXPECT_EQ(Testing::contents(path).toStdString(), "✕ Außen\n" + longLine + "\n");
}

} // namespace
} // namespace kestrin
