#include "AppOptions.h"

namespace kestrin {

Result<AppOptions, std::string> AppOptions::parse(const std::vector<std::string>& arguments) {
    AppOptions options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& option = arguments[i];
        if (option == "--help" || option == "-h") {
            options.help = true;
            continue;
        }
        if (option == "--demo") {
            options.demo = true;
            continue;
        }
        std::optional<std::string>* target = nullptr;
        if (option == "--port") {
            target = &options.port;
        } else if (option == "--screenshot") {
            target = &options.screenshot;
        } else if (option == "--out") {
            target = &options.outFile;
        } else {
            return std::string("unknown option ") + option;
        }
        if (i + 1 >= arguments.size() || arguments[i + 1].empty()) {
            return option + " needs a value";
        }
        *target = arguments[++i];
    }
    if (options.port && options.demo) {
        return std::string("--port and --demo exclude each other");
    }
    if (options.screenshot.has_value() != options.outFile.has_value()) {
        return std::string("--screenshot and --out go together");
    }
    return options;
}

} // namespace kestrin
