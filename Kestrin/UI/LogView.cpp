#include "LogView.h"

#include "L10n.h"
#include "LogPalette.h"
#include "OutputBuffer.h"

#include <QFile>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>

namespace kestrin {

namespace {

const QString logoResource = QStringLiteral(":/kestrin/logo.svg");
constexpr int largestLogo = 460;
constexpr double logoOpacity = 0.07;
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
    setAccessibleName(QString::fromStdString(L10n::Footer::outputAccessibility()));

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
        backdropSize_ = QSize();
    }
}

void LogView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Find)) {
        emit findRequested();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

const QPixmap& LogView::backdrop(const QSize& size) {
    const QRgb colour = palette().color(QPalette::Text).rgba();
    if (size == backdropSize_ && colour == backdropColor_) {
        return backdrop_;
    }
    backdropSize_ = size;
    backdropColor_ = colour;
    backdrop_ = QPixmap();
    if (!QFile::exists(logoResource)) {
        return backdrop_;
    }
    const QIcon logo(logoResource);
    const int side = std::min({largestLogo, size.width(), size.height()});
    if (side <= 0) {
        return backdrop_;
    }
    const qreal ratio = devicePixelRatioF();
    QPixmap shape = logo.pixmap(QSize(side, side), ratio);
    if (shape.isNull()) {
        return backdrop_;
    }
    // A template image: only the logo's shape counts, drawn in the text colour.
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), QColor::fromRgba(colour));
    painter.end();
    backdrop_ = shape;
    return backdrop_;
}

void LogView::paintEvent(QPaintEvent* event) {
    const QPixmap& logo = backdrop(viewport()->size());
    if (!logo.isNull()) {
        QPainter painter(viewport());
        painter.setOpacity(logoOpacity);
        const QSizeF logical = logo.deviceIndependentSize();
        const QPointF origin((viewport()->width() - logical.width()) / 2.0,
                             (viewport()->height() - logical.height()) / 2.0);
        painter.drawPixmap(origin, logo);
    }
    QPlainTextEdit::paintEvent(event);
}

} // namespace kestrin
