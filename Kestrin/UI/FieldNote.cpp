#include "FieldNote.h"

#include "LogPalette.h"

#include <algorithm>

#include <QLineEdit>
#include <QTimer>

namespace kestrin {

namespace {

constexpr int lingerMs = 6000;

} // namespace

FieldNote::FieldNote(QWidget* parent, const QRect& place, const QString& text)
    : QLabel(text, parent) {
    setObjectName(QStringLiteral("fieldNote"));
    // One answer at a time: an older note would only cover the newer one.
    for (FieldNote* older :
         parent->findChildren<FieldNote*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (older != this) {
            older->deleteLater();
        }
    }
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAutoFillBackground(true);
    setFrameShape(QFrame::Box);
    setMargin(3);
    // Explicit roles: inside a table the label would take the view's text colour.
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    QPalette tinted = palette();
    tinted.setColor(QPalette::ToolTipText, LogPalette::red(palette()));
    setPalette(tinted);
    adjustSize();
    // Below the field, kept inside the table; above it when the field is on the last row.
    QPoint position(place.left(), place.bottom() + 2);
    position.setX(std::max(0, std::min(position.x(), parent->width() - width())));
    if (position.y() + height() > parent->height()) {
        position.setY(std::max(0, place.top() - height() - 2));
    }
    move(position);
    raise();
    show();
}

FieldNote* FieldNote::attach(QWidget* field, const QString& text) {
    auto* note = new FieldNote(field->parentWidget(), field->geometry(), text);
    connect(field, &QObject::destroyed, note, &QObject::deleteLater);
    if (auto* line = qobject_cast<QLineEdit*>(field)) {
        connect(line, &QLineEdit::textEdited, note, &QObject::deleteLater);
    }
    return note;
}

FieldNote* FieldNote::leave(QWidget* parent, const QRect& place, const QString& text) {
    auto* note = new FieldNote(parent, place, text);
    QTimer::singleShot(lingerMs, note, &QObject::deleteLater);
    return note;
}

} // namespace kestrin
