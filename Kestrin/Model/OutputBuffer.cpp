#include "OutputBuffer.h"

#include "TextFile.h"
#include "TextFileWriter.h"

#include <algorithm>
#include <utility>

#include <QMetaMethod>

namespace kestrin {

OutputBuffer::OutputBuffer(qsizetype maxCharacters, qsizetype trimTarget, QObject* parent)
    : QObject(parent)
    , maxCharacters_(maxCharacters)
    , trimTarget_(std::min(trimTarget, maxCharacters)) {}

void OutputBuffer::append(const LogLineSegments& line) {
    append(std::span(&line, 1));
}

// One signal, one trim and one scroll for the lines together: a view lays out the whole batch in
// one edit.
void OutputBuffer::append(std::span<const LogLineSegments> lines) {
    if (lines.empty()) {
        return;
    }
    const bool mirrored = isSignalConnected(QMetaMethod::fromSignal(&OutputBuffer::appended));
    QList<StyledRun> added;
    for (const LogLineSegments& line : lines) {
        addLine(line, mirrored ? &added : nullptr);
    }
    if (mirrored) {
        emit appended(added);
    }
    trimIfNeeded();
    if (autoscroll_) {
        emit scrollToEndRequested();
    }
}

void OutputBuffer::addLine(const LogLineSegments& line, QList<StyledRun>* added) {
    for (const LogSegment& segment : line) {
        const QString text =
            QString::fromUtf8(segment.text.data(), static_cast<qsizetype>(segment.text.size()));
        text_ += text;
        addRun(segment.kind, text.size());
        if (added != nullptr) {
            added->append({segment.kind, text});
        }
    }
    text_ += QLatin1Char('\n');
    addRun(LogSegment::Kind::text, 1);
    if (added != nullptr) {
        added->append({LogSegment::Kind::text, QStringLiteral("\n")});
    }
}

void OutputBuffer::clear() {
    text_.clear();
    runs_.clear();
    emit cleared();
}

QList<StyledRun> OutputBuffer::runs() const {
    QList<StyledRun> result;
    qsizetype position = 0;
    for (const Run& run : runs_) {
        result.append({run.kind, text_.sliced(position, run.length)});
        position += run.length;
    }
    return result;
}

QString OutputBuffer::fileName(const QDateTime& now) {
    return TextFile::stampedName("kestrin-log-", now, ".txt");
}

Result<void, std::string> OutputBuffer::save(const QString& path) const {
    // Converted a slice at a time, so that a full log is never held twice, as UTF-16 and UTF-8.
    constexpr qsizetype slice = qsizetype{32} * 1024;
    TextFileWriter writer(path);
    for (qsizetype position = 0; position < text_.size();) {
        qsizetype length = std::min(slice, text_.size() - position);
        // A character outside the BMP stays whole.
        if (text_.at(position + length - 1).isHighSurrogate() && position + length < text_.size()) {
            ++length;
        }
        const QByteArray bytes = QStringView(text_).sliced(position, length).toUtf8();
        if (!writer.append(std::string_view(bytes.constData(), std::size_t(bytes.size())))) {
            break;
        }
        position += length;
    }
    return writer.commit();
}

void OutputBuffer::addRun(LogSegment::Kind kind, qsizetype length) {
    if (length == 0) {
        return;
    }
    if (!runs_.empty() && runs_.back().kind == kind) {
        runs_.back().length += length;
        return;
    }
    runs_.push_back({kind, length});
}

void OutputBuffer::trimIfNeeded() {
    if (text_.size() <= maxCharacters_) {
        return;
    }
    qsizetype cut = text_.size() - trimTarget_;
    // A line that begins exactly at the cut is kept whole: the break before it ends the cut.
    const qsizetype lineBreak = text_.indexOf(QLatin1Char('\n'), cut - 1);
    if (lineBreak >= 0) {
        cut = lineBreak + 1;
    } else if (text_.at(cut).isLowSurrogate()) {
        // Never split a character outside the BMP when one line is longer than the target.
        cut += 1;
    }
    text_.remove(0, cut);
    qsizetype remaining = cut;
    while (remaining > 0) {
        Run& first = runs_.front();
        if (first.length > remaining) {
            first.length -= remaining;
            break;
        }
        remaining -= first.length;
        runs_.pop_front();
    }
    emit trimmed(cut);
}

} // namespace kestrin
