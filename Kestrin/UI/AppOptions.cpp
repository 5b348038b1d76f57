#include "AppOptions.h"

#include <charconv>

namespace kestrin {

namespace {

// Smaller than this, a window picture shows nothing legible.
constexpr int minimumWidth = 100;
// A screenshot that waits longer than this is a typing mistake, and it keeps the timer in range.
constexpr double maximumWaitSeconds = 600;

template <typename Number>
std::optional<Number> number(const std::string& text) {
    Number value{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

} // namespace

Result<AppOptions, std::string> AppOptions::parse(const std::vector<std::string>& arguments) {
    AppOptions options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& option = arguments[i];
        if (option == "--demo" || option == "--dark") {
            (option == "--demo" ? options.demo : options.dark) = true;
            continue;
        }
        const bool known = option == "--port" || option == "--screenshot" || option == "--out" ||
                           option == "--width" || option == "--wait";
        if (!known) {
            return std::string("unknown option ") + option;
        }
        if (i + 1 >= arguments.size() || arguments[i + 1].empty()) {
            return option + " needs a value";
        }
        const std::string& value = arguments[++i];
        if (option == "--port") {
            options.port = value;
        } else if (option == "--screenshot") {
            options.screenshot = value;
        } else if (option == "--out") {
            options.outFile = value;
        } else if (option == "--width") {
            options.width = number<int>(value);
            if (!options.width || *options.width < minimumWidth) {
                return "--width needs a number of pixels from " + std::to_string(minimumWidth);
            }
        } else {
            options.waitSeconds = number<double>(value);
            // The negated test also refuses NaN.
            if (!options.waitSeconds ||
                !(*options.waitSeconds >= 0 && *options.waitSeconds <= maximumWaitSeconds)) {
                return "--wait needs a number of seconds up to " +
                       std::to_string(static_cast<int>(maximumWaitSeconds));
            }
        }
    }
    if (options.port && options.demo) {
        return std::string("--port and --demo exclude each other");
    }
    if (options.screenshot.has_value() != options.outFile.has_value()) {
        return std::string("--screenshot and --out go together");
    }
    if (!options.screenshot && (options.width || options.waitSeconds)) {
        return std::string("--width and --wait go with --screenshot");
    }
    return options;
}

} // namespace kestrin
