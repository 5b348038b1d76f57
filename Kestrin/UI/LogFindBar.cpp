#include "LogFindBar.h"

#include "Icons.h"
#include "L10n.h"
#include "LogPalette.h"
#include "QtText.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolButton>

namespace kestrin {

LogFindBar::LogFindBar(QPlainTextEdit& view, QWidget* parent)
    : QWidget(parent)
    , view_(view)
    , field_(new QLineEdit(this)) {
    setObjectName("logFindBar");
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->setSpacing(4);

    field_->setObjectName("logFindField");
    field_->setPlaceholderText(qt(L10n::texts().pane.findPlaceholder()));
    field_->setClearButtonEnabled(true);
    field_->addAction(Icons::symbol(Symbol::magnifyingGlass), QLineEdit::LeadingPosition);
    layout->addWidget(field_, 1);

    auto* previous = new QToolButton(this);
    previous->setObjectName("logFindPrevious");
    previous->setIcon(Icons::symbol(Symbol::chevronUp));
    previous->setToolTip(qt(L10n::texts().pane.findPrevious()));
    previous->setAutoRaise(true);
    layout->addWidget(previous);

    auto* next = new QToolButton(this);
    next->setObjectName("logFindNext");
    next->setIcon(Icons::symbol(Symbol::chevronDown));
    next->setToolTip(qt(L10n::texts().pane.findNext()));
    next->setAutoRaise(true);
    layout->addWidget(next);

    auto* done = new QPushButton(qt(L10n::texts().pane.findDone()), this);
    done->setObjectName("logFindDone");
    layout->addWidget(done);

    connect(field_, &QLineEdit::textEdited, this, [this] { find(false, true); });
    connect(field_, &QLineEdit::returnPressed, this, [this] {
        if (QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)) {
            findPrevious();
        } else {
            findNext();
        }
    });
    connect(previous, &QToolButton::clicked, this, &LogFindBar::findPrevious);
    connect(next, &QToolButton::clicked, this, &LogFindBar::findNext);
    connect(done, &QPushButton::clicked, this, &LogFindBar::dismiss);
    hide();
}

void LogFindBar::open() {
    anchor_ = view_.textCursor().selectionStart();
    show();
    field_->setFocus(Qt::ShortcutFocusReason);
    field_->selectAll();
}

void LogFindBar::dismiss() {
    hide();
    view_.setFocus(Qt::OtherFocusReason);
}

bool LogFindBar::findNext() {
    return find(false, false);
}

bool LogFindBar::findPrevious() {
    return find(true, false);
}

bool LogFindBar::find(bool backwards, bool fromAnchor) {
    const QString needle = field_->text();
    if (needle.isEmpty()) {
        showMatchState(true);
        return false;
    }
    const QTextDocument::FindFlags flags =
        backwards ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    QTextDocument* document = view_.document();
    QTextCursor from = view_.textCursor();
    if (fromAnchor) {
        from.setPosition(std::min(anchor_, document->characterCount() - 1));
    }
    QTextCursor match = document->find(needle, from, flags);
    if (match.isNull()) {
        // Wrap around to the other end.
        QTextCursor end(document);
        end.movePosition(backwards ? QTextCursor::End : QTextCursor::Start);
        match = document->find(needle, end, flags);
    }
    const bool found = !match.isNull();
    if (found) {
        view_.setTextCursor(match);
        view_.ensureCursorVisible();
    }
    showMatchState(found);
    return found;
}

void LogFindBar::showMatchState(bool found) {
    QPalette colours = field_->palette();
    colours.setColor(QPalette::Text,
                     found ? palette().color(QPalette::Text) : LogPalette::red(palette()));
    field_->setPalette(colours);
}

void LogFindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        dismiss();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace kestrin
