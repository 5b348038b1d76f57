#include "OutputBuffer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

using Kind = LogSegment::Kind;

// A view's copy of the text, kept only from the buffer's notifications.
struct Mirror {
    QString text;
    qsizetype scrolls = 0;

    explicit Mirror(OutputBuffer& buffer) {
        QObject::connect(&buffer, &OutputBuffer::appended, [this](const QList<StyledRun>& runs) {
            for (const StyledRun& run : runs) {
                text += run.text;
            }
        });
        QObject::connect(&buffer, &OutputBuffer::trimmed,
                         [this](qsizetype count) { text.remove(0, count); });
        QObject::connect(&buffer, &OutputBuffer::cleared, [this] { text.clear(); });
        QObject::connect(&buffer, &OutputBuffer::scrollToEndRequested, [this] { ++scrolls; });
    }
};

void appendText(OutputBuffer& buffer, const std::string& text) {
    const LogSegment segment{Kind::response, text};
    buffer.append({&segment, 1});
}

TEST(OutputBuffer, EndsEachLineWithAPlainBreakAndMergesRunsOfOneRole) {
    OutputBuffer buffer;
    const LogLineSegments line{{Kind::timestamp, "12:00:00.000  "},
                               {Kind::response, "← "},
                               {Kind::response, "Unit 1"},
                               {Kind::text, ""}};
    buffer.append(line);
    buffer.append(line);
    EXPECT_EQ(buffer.text(), "12:00:00.000  ← Unit 1\n12:00:00.000  ← Unit 1\n");
    EXPECT_EQ(buffer.runs(), (QList<StyledRun>{{Kind::timestamp, "12:00:00.000  "},
                                               {Kind::response, "← Unit 1"},
                                               {Kind::text, "\n"},
                                               {Kind::timestamp, "12:00:00.000  "},
                                               {Kind::response, "← Unit 1"},
                                               {Kind::text, "\n"}}));
}

TEST(OutputBuffer, TrimsToTheFirstLineStartInsideTheTargetCountingUTF16Units) {
    struct Row {
        const char* name;
        std::string line;   // appended three times
        qsizetype expected; // units removed by the third append
    };
    // Limits 20 / 10. Each line is 7 units with its break, so the third append makes 21:
    // cut = 21 - 10 = 11, and the break at 13 ends the second line, so 14 units go.
    // In UTF-8 bytes the emoji lines would be 13 long and trim after the second append.
    const Row rows[] = {
        {"ASCII", "abcdef", 14},
        {"outside the BMP", "😀😀😀", 14},
    };
    for (const Row& row : rows) {
        OutputBuffer buffer(20, 10);
        Mirror mirror(buffer);
        qsizetype removed = 0;
        QObject::connect(&buffer, &OutputBuffer::trimmed,
                         [&](qsizetype count) { removed = count; });
        appendText(buffer, row.line);
        appendText(buffer, row.line);
        EXPECT_EQ(buffer.length(), 14) << row.name;
        EXPECT_EQ(removed, 0) << row.name;
        appendText(buffer, row.line);
        EXPECT_EQ(removed, row.expected) << row.name;
        EXPECT_EQ(buffer.text(), QString::fromStdString(row.line + "\n")) << row.name;
        EXPECT_EQ(mirror.text, buffer.text()) << row.name;
        EXPECT_EQ(buffer.runs().size(), 2) << row.name;
    }
}

TEST(OutputBuffer, KeepsTheLastLinesAfterPassingTwoMillionUnits) {
    OutputBuffer buffer;
    Mirror mirror(buffer);
    // 99 characters and a break per line: the 20,001st line makes 2,000,100 units, the cut at
    // 500,100 falls inside line 5002, so the log starts with line 5003.
    qsizetype lastTrim = 0;
    QObject::connect(&buffer, &OutputBuffer::trimmed, [&](qsizetype count) { lastTrim = count; });
    for (int number = 1; number <= 20'001; ++number) {
        std::string line = std::to_string(number);
        line.resize(99, '.');
        appendText(buffer, line);
        if (number == 20'000) {
            EXPECT_EQ(buffer.length(), 2'000'000);
            EXPECT_EQ(lastTrim, 0);
        }
    }
    EXPECT_EQ(lastTrim, 5002 * 100);
    EXPECT_EQ(buffer.length(), 1'500'000 - 100 + 100);
    EXPECT_TRUE(buffer.text().startsWith("5003."));
    EXPECT_EQ(mirror.text, buffer.text());
}

TEST(OutputBuffer, ClearEmptiesTextAndViewAndScrollFollowsAutoscroll) {
    OutputBuffer buffer;
    Mirror mirror(buffer);
    appendText(buffer, "one");
    buffer.setAutoscroll(false);
    appendText(buffer, "two");
    EXPECT_EQ(mirror.scrolls, 1);
    buffer.clear();
    EXPECT_TRUE(buffer.isEmpty());
    EXPECT_TRUE(buffer.runs().isEmpty());
    EXPECT_TRUE(mirror.text.isEmpty());
}

TEST(OutputBuffer, SavesPlainUTF8AndReportsAFailedSave) {
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    OutputBuffer buffer;
    buffer.append(LogLineSegments{{Kind::timestamp, "08:00:00.000  "}, {Kind::error, "✕ Außen"}});

    const QString path = folder.filePath(OutputBuffer::fileName(QDateTime::currentDateTime()));
    ASSERT_TRUE(buffer.save(path).ok());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("08:00:00.000  ✕ Außen\n"));

    const auto failed = buffer.save(folder.filePath("missing/log.txt"));
    ASSERT_FALSE(failed.ok());
    EXPECT_FALSE(failed.error().empty());
    EXPECT_EQ(buffer.length(), 22);
}

TEST(OutputBuffer, FileNameCarriesTheLocalDateAndTime) {
    const QDateTime now(QDate(2026, 1, 2), QTime(3, 4, 5));
    EXPECT_EQ(OutputBuffer::fileName(now), "kestrin-log-2026-01-02T030405.txt");
}

} // namespace
} // namespace kestrin
