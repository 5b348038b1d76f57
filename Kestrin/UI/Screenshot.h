#pragma once

#include "Result.h"

#include <string>
#include <vector>

#include <QString>

namespace kestrin {

class MainWindow;

// Pictures of the running program for the help and the documentation.
namespace Screenshot {

// The views that can be rendered: "window", "settings", "help".
const std::vector<std::string>& names();

// Renders the named view of the window to a PNG file.
Result<void, std::string> render(MainWindow& window, const std::string& name, const QString& file);

} // namespace Screenshot

} // namespace kestrin
