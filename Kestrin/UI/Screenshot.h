#pragma once

#include "Result.h"

#include <string>
#include <vector>

#include <QPalette>
#include <QString>

namespace kestrin {

class MainWindow;
class PollerModel;

// Pictures of the running program for the help and the documentation.
namespace Screenshot {

// The views that can be rendered: "window", "settings" and "write" (the window with that
// popover open), "bus" (with the Bus popover), "chart" (the bottom pane showing the chart),
// "help", "finder" (Find Devices after a scan), "listening" (the window listening, with values
// and log lines heard; with the demo device, what its reading got).
const std::vector<std::string>& names();

// Renders the named view of the model's window to a PNG file, scaled down to at most maxWidth
// pixels when that is above 0. The settings are shown unlocked: reading stops first.
Result<void, std::string> render(PollerModel& model, MainWindow& window, const std::string& name,
                                 const QString& file, int maxWidth = 0);

// A dark palette for pictures of the dark appearance on any desktop.
QPalette darkPalette();

} // namespace Screenshot

} // namespace kestrin
