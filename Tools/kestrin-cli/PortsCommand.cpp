#include "PortsCommand.h"

#include "JsonLines.h"
#include "PortScanner.h"

#include <array>

namespace kestrin::PortsCommand {

namespace {

constexpr std::array options{
    CommandLine::Option{"json", "",
                        "one JSON object per port: path, name (null when it has none),\n"
                        "vendor-id, product-id (null for a port without a USB device),\n"
                        "serial-number, by-id (the /dev/serial/by-id link; null when absent)"},
};

// The name the window shows, when the port has one of its own rather than its path.
std::optional<std::string> ownName(const SerialPortInfo& port) {
    if (!port.knownName() && !port.productName) {
        return std::nullopt;
    }
    return port.name();
}

nlohmann::json optional(const auto& value) {
    return value ? nlohmann::json(*value) : nlohmann::json();
}

} // namespace

const CommandLine::Syntax& syntax() {
    static const CommandLine::Syntax ports{
        "kestrin-cli ports",
        "Usage: kestrin-cli ports [--json]\n\n"
        "Lists the serial ports: the path, and a tab and the name the window shows when the\n"
        "port has one.\n",
        options};
    return ports;
}

std::string line(const SerialPortInfo& port) {
    const std::optional<std::string> name = ownName(port);
    return name ? port.path + '\t' + *name : port.path;
}

nlohmann::json json(const SerialPortInfo& port) {
    return {{"path", port.path},
            {"name", optional(ownName(port))},
            {"vendor-id", optional(port.vendorID)},
            {"product-id", optional(port.productID)},
            {"serial-number", optional(port.serialNumber)},
            {"by-id", optional(port.byIdPath)}};
}

ExitCode run(bool asJson, std::ostream& out) {
    // Enumeration needs no event loop, so no Qt application is created.
    const PortScanner scanner;
    for (const SerialPortInfo& port : scanner.currentPorts()) {
        if (asJson) {
            JsonLines::print(json(port), out);
        } else {
            out << line(port) << '\n';
        }
    }
    return ExitCode::success;
}

} // namespace kestrin::PortsCommand
