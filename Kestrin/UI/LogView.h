#pragma once

#include "LogoBackdrop.h"

#include <QPlainTextEdit>

namespace kestrin {

class OutputBuffer;
struct StyledRun;

// The communication log as a read-only text view that mirrors the model's buffer: appended lines
// are inserted as styled runs at the end and trimmed text is cut from the start, so the text is
// never rebuilt while the log grows. A faint logo sits behind the text.
class LogView : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit LogView(OutputBuffer& buffer, QWidget* parent = nullptr);

    void scrollToEnd();
    // Keeps the text below pixels at the top that something else shows over.
    void setTopMargin(int pixels) { setViewportMargins(0, pixels, 0, 0); }

signals:
    // The user pressed the find shortcut inside the log.
    void findRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void appendRuns(const QList<StyledRun>& runs);
    void removeFromStart(qsizetype count);
    // Text already shown takes the colours of the current palette.
    void restyle();

    OutputBuffer& buffer_;
    LogoBackdrop backdrop_;
};

} // namespace kestrin
