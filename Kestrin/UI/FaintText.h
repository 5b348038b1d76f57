#pragma once

#include <QString>

class QLabel;
class QWidget;

namespace kestrin::FaintText {

// Text that steps back behind the content beside it: counters, empty-state explanations, notes.
// Drawn in the palette's secondary label colour.
void fade(QWidget& widget);

// A wrapped note in smaller, faint type: the explanation under a group of fields.
QLabel* note(const QString& text, QWidget* parent);

} // namespace kestrin::FaintText
