#pragma once

#include <QColor>
#include <QIcon>

namespace kestrin {

// The symbols the window draws. Each has a freedesktop theme name and a drawing of our own, so
// the window looks right without an icon theme.
enum class Symbol {
    play,
    stop,
    pause,
    plus,
    minus,
    pencil,
    trash,
    warning,
    checkmark,
    xmarkOctagon,
    xmark,
    clock,
    circleDot,
    circleDashed,
    magnifyingGlass,
    chart,
    log,
    questionMark,
    book,
    tableCells,
    sliders,
    info,
    chevronUp,
    chevronDown,
};

namespace Icons {

// Both Symbol and Icons::Symbol read naturally at call sites.
using Symbol = kestrin::Symbol;

// The theme's icon when the theme has one, else the bundled drawing in the palette's text colour.
QIcon symbol(Symbol s);

// Always the bundled drawing, in the given colour (status icons whose colour carries meaning).
QIcon tinted(Symbol s, const QColor& colour);

// The freedesktop icon name used for the symbol.
const char* themeName(Symbol s);

// The application's own mark (window icon, desktop entry).
QIcon application();

} // namespace Icons

} // namespace kestrin
