#pragma once

#include "HelpTopic.h"

#include <functional>
#include <optional>
#include <string_view>

#include <QPalette>
#include <QString>

namespace kestrin::HelpPage {

// A help topic as HTML for a rich-text view: the title, then each block in order.

// The resource path of a screenshot to show, or nothing for none.
using ScreenshotPath = std::function<std::optional<QString>(std::string_view name)>;

// The image source the page uses for the tip symbol; the view supplies the picture.
inline constexpr const char* tipSymbolSource = "symbol:tip";

// **bold** and `code` as HTML, everything else escaped; an opening mark without its closing
// partner stays as typed.
QString inlineHtml(std::string_view text);

// Screenshots at most columnWidth wide; dividers and the tip box in the palette's colours.
QString html(const HelpTopic& topic, const ScreenshotPath& screenshot, int columnWidth,
             const QPalette& colours);

} // namespace kestrin::HelpPage
