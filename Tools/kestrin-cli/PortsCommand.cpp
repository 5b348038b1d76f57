#include "PortsCommand.h"

#include "PortScanner.h"

namespace kestrin {

ExitCode runPortsCommand(std::span<const std::string_view> arguments, std::ostream& out,
                         std::ostream& err) {
    if (!arguments.empty()) {
        err << "kestrin-cli ports: unexpected argument " << arguments.front() << '\n';
        return ExitCode::usageError;
    }
    // Enumeration needs no event loop, so no Qt application is created.
    const PortScanner scanner;
    for (const SerialPortInfo& port : scanner.currentPorts()) {
        out << port.path << '\t' << port.menuTitle() << '\n';
    }
    return ExitCode::success;
}

} // namespace kestrin
