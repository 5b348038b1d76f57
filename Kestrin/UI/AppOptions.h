#pragma once

#include "Result.h"

#include <optional>
#include <string>
#include <vector>

namespace kestrin {

// The desktop application's command line.
struct AppOptions {
    // A device to add to the port list and select (a pseudo-terminal, a simulator).
    std::optional<std::string> port;
    // Start a simulated device serving the example list and select it.
    bool demo = false;
    // Render the named view to outFile and quit, without showing a window.
    std::optional<std::string> screenshot;
    std::optional<std::string> outFile;
    // Draw with a dark palette whatever the desktop uses.
    bool dark = false;
    // A screenshot no wider than this, scaled down smoothly.
    std::optional<int> width;
    // How long to read before a screenshot is taken.
    std::optional<double> waitSeconds;

    static constexpr const char* usage =
        "Usage: kestrin [--port PATH] [--demo] [--dark]\n"
        "               [--screenshot NAME --out FILE.png [--width PX] [--wait SECONDS]]\n"
        "  --port PATH            add a test device (a pseudo-terminal) and select it\n"
        "  --demo                 start a simulated device serving the example list\n"
        "  --dark                 use a dark palette\n"
        "  --screenshot NAME      render a view (window, settings, write, chart, help)\n"
        "                         to a PNG file\n"
        "  --out FILE.png         where --screenshot writes\n"
        "  --width PX             scale the screenshot down to at most this width\n"
        "  --wait SECONDS         read this long before the screenshot (default 3 with --demo)\n"
        "  -h, --help             print this help and exit\n"
        "  --version              print the version and exit\n";

    // The options after the program name; a message for anything not understood.
    static Result<AppOptions, std::string> parse(const std::vector<std::string>& arguments);

    friend bool operator==(const AppOptions&, const AppOptions&) = default;
};

} // namespace kestrin
