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
    bool help = false;

    static constexpr const char* usage =
        "Usage: kestrin [--port PATH] [--demo] [--screenshot NAME --out FILE.png]\n"
        "  --port PATH            add a test device (a pseudo-terminal) and select it\n"
        "  --demo                 start a simulated device serving the example list\n"
        "  --screenshot NAME      render a view (window, settings, help) to a PNG file\n"
        "  --out FILE.png         where --screenshot writes\n";

    // The options after the program name; a message for anything not understood.
    static Result<AppOptions, std::string> parse(const std::vector<std::string>& arguments);

    friend bool operator==(const AppOptions&, const AppOptions&) = default;
};

} // namespace kestrin
