#include "LogView.h"

#include "L10n.h"
#include "LogPalette.h"
#include "OutputBuffer.h"
#include "QtText.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>

namespace kestrin {

namespace {

constexpr int textInset = 6;

} // namespace

LogView::LogView(OutputBuffer& buffer, QWidget* parent)
    : QPlainTextEdit(parent)
    , buffer_(buffer) {
    setObjectName("logView");
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setLineWrapMode(QPlainTextEdit::WidgetWidth);
    setFont(LogPalette::bufferFont());
    document()->setDocumentMargin(textInset);
    setAccessibleName(qt(L10n::texts().footer.outputAccessibility()));

    appendRuns(buffer_.runs());
    connect(&buffer_, &OutputBuffer::appended, this, &LogView::appendRuns);
    connect(&buffer_, &OutputBuffer::trimmed, this, &LogView::removeFromStart);
    connect(&buffer_, &OutputBuffer::cleared, this, &QPlainTextEdit::clear);
    connect(&buffer_, &OutputBuffer::scrollToEndRequested, this, &LogView::scrollToEnd);
}

void LogView::scrollToEnd() {
    QScrollBar* bar = verticalScrollBar();
    bar->setValue(bar->maximum());
}

void LogView::appendRuns(const QList<StyledRun>& runs) {
    if (runs.isEmpty()) {
        return;
    }
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.beginEditBlock();
    for (const StyledRun& run : runs) {
        cursor.insertText(run.text, LogPalette::format(run.kind, palette()));
    }
    cursor.endEditBlock();
}

void LogView::removeFromStart(qsizetype count) {
    QTextCursor cursor(document());
    cursor.setPosition(0);
    const int last = document()->characterCount() - 1;
    cursor.setPosition(static_cast<int>(std::min<qsizetype>(count, last)), QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
}

void LogView::restyle() {
    const QPalette colours = palette();
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment) {
            const QTextFragment piece = fragment.fragment();
            if (!piece.isValid()) {
                continue;
            }
            QTextCharFormat recoloured;
            recoloured.setForeground(
                LogPalette::color(LogPalette::kind(piece.charFormat()), colours));
            cursor.setPosition(piece.position());
            cursor.setPosition(piece.position() + piece.length(), QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(recoloured);
        }
    }
    cursor.endEditBlock();
}

void LogView::changeEvent(QEvent* event) {
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        restyle();
    }
}

void LogView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Find)) {
        emit findRequested();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

void LogView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    backdrop_.paint(painter, viewport()->rect(), devicePixelRatioF());
    painter.end();
    QPlainTextEdit::paintEvent(event);
}

} // namespace kestrin
