#pragma once

#include "LogSegment.h"

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QTextCharFormat>

namespace kestrin::LogPalette {

// The log's roles mapped onto the widget palette, so light and dark themes both read well. The
// named colours (blue, orange, red, teal) have a light and a dark variant; the label colours are
// the text colour faded towards the background.

// True when the palette draws light text on a dark background.
bool isDark(const QPalette& palette);

QColor secondaryLabel(const QPalette& palette);
QColor tertiaryLabel(const QPalette& palette);
QColor blue(const QPalette& palette);
QColor orange(const QPalette& palette);
// The orange a white label sits on (the Stop button), dark enough in either appearance.
QColor fillOrange();
// The program's own colour, which marks its prominent actions; white text reads on it.
QColor accent();
QColor red(const QPalette& palette);
QColor teal(const QPalette& palette);
QColor green(const QPalette& palette);

// The colour of a log role.
QColor color(LogSegment::Kind kind, const QPalette& palette);

// Monospaced at the interface font's size, the face of every log line.
QFont bufferFont();
// Monospaced medium, one step smaller, for start, stop and reopen lines.
QFont systemFont();

// The character format of a role. The role is stored in the format as well, so text already
// shown can be recoloured when the palette changes.
QTextCharFormat format(LogSegment::Kind kind, const QPalette& palette);
// The role stored by format(), or text when the format carries none.
LogSegment::Kind kind(const QTextCharFormat& format);

} // namespace kestrin::LogPalette
