#pragma once

#include <QWidget>

class QLineEdit;
class QPlainTextEdit;

namespace kestrin {

// Incremental search in a text view: each keystroke selects the first match from where the
// search began, Return goes to the next match, Shift+Return to the previous one, both wrapping
// around; Escape closes the bar.
class LogFindBar : public QWidget {
    Q_OBJECT

public:
    explicit LogFindBar(QPlainTextEdit& view, QWidget* parent = nullptr);

    // Shows the bar with its field focused and its text selected.
    void open();
    void dismiss();
    // False when the text does not occur at all.
    bool findNext();
    bool findPrevious();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool find(bool backwards, bool fromAnchor);
    void showMatchState(bool found);

    QPlainTextEdit& view_;
    QLineEdit* field_;
    // Where the incremental search restarts while the text is being typed.
    int anchor_ = 0;
};

} // namespace kestrin
