#include "OutputBuffer.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

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
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().toStdString(), "✕ Außen\n" + longLine + "\n");
}

} // namespace
} // namespace kestrin
