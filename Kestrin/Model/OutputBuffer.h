#pragma once

#include "LogSegment.h"
#include "Result.h"

#include <deque>
#include <span>
#include <string>

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>

namespace kestrin {

// A stretch of log text in one role.
struct StyledRun {
    LogSegment::Kind kind;
    QString text;

    friend bool operator==(const StyledRun& a, const StyledRun& b) {
        return a.kind == b.kind && a.text == b.text;
    }
};

// The communication log's text as styled runs, bounded in size. Lengths are UTF-16 code units,
// the unit of QString and QTextDocument positions, so a view mirrors the buffer exactly by
// applying appended, trimmed and cleared in order. Main thread only.
class OutputBuffer : public QObject {
    Q_OBJECT

public:
    static constexpr qsizetype defaultMaxCharacters = 2'000'000;
    static constexpr qsizetype defaultTrimTarget = 1'500'000;

    // Past maxCharacters the oldest lines go: those that begin within the last trimTarget
    // units stay.
    explicit OutputBuffer(qsizetype maxCharacters = defaultMaxCharacters,
                          qsizetype trimTarget = defaultTrimTarget, QObject* parent = nullptr);

    // Appends the segments and one line break (plain text role), then trims when too long.
    void append(const LogLineSegments& line);
    // The lines in order, announced as one append.
    void append(std::span<const LogLineSegments> lines);
    void clear();

    QString text() const { return text_; }
    qsizetype length() const noexcept { return text_.size(); }
    bool isEmpty() const noexcept { return text_.isEmpty(); }
    // The whole text as runs, for a view that attaches late; adjacent runs of one role merged.
    QList<StyledRun> runs() const;

    bool autoscroll() const noexcept { return autoscroll_; }
    void setAutoscroll(bool on) noexcept { autoscroll_ = on; }

    // "kestrin-log-2026-11-16T160512.txt".
    static QString fileName(const QDateTime& now);
    // The plain text in UTF-8, written atomically; the buffer is unchanged either way.
    Result<void, std::string> save(const QString& path) const;

signals:
    // One or more lines as runs, each line break included.
    void appended(const QList<kestrin::StyledRun>& runs);
    // This many units were removed from the start, after the append that caused it.
    void trimmed(qsizetype count);
    void cleared();
    // After an append while autoscroll is on.
    void scrollToEndRequested();

private:
    struct Run {
        LogSegment::Kind kind;
        qsizetype length;
    };

    // The line's text and runs; what was added goes to added when it is not null.
    void addLine(const LogLineSegments& line, QList<StyledRun>* added);
    void addRun(LogSegment::Kind kind, qsizetype length);
    void trimIfNeeded();

    qsizetype maxCharacters_;
    qsizetype trimTarget_;
    bool autoscroll_ = true;
    QString text_;
    std::deque<Run> runs_;
};

} // namespace kestrin
