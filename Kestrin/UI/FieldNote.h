#pragma once

#include <QLabel>

namespace kestrin {

// A short red text under a field in a table that says why its text was not taken. It lives in
// the field's parent (the table's viewport), so it never takes the keyboard from the field.
class FieldNote : public QLabel {
    Q_OBJECT

public:
    // Under a field that stays open: gone with the field or once the user types again.
    static FieldNote* attach(QWidget* field, const QString& text);
    // Under the place of a field that has closed: gone after a few seconds.
    static FieldNote* leave(QWidget* parent, const QRect& place, const QString& text);

private:
    FieldNote(QWidget* parent, const QRect& place, const QString& text);
};

} // namespace kestrin
