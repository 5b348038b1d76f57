#include "PortsCommand.h"

#include "PortScanner.h"

namespace kestrin::PortsCommand {

const CommandLine::Syntax& syntax() {
    static const CommandLine::Syntax ports{
        "kestrin-cli ports", "Usage: kestrin-cli ports\n\n"
                             "Lists the serial ports: the path, a tab and the name the window "
                             "shows.\n"};
    return ports;
}

ExitCode run(std::ostream& out) {
    // Enumeration needs no event loop, so no Qt application is created.
    const PortScanner scanner;
    for (const SerialPortInfo& port : scanner.currentPorts()) {
        out << port.path << '\t' << port.menuTitle() << '\n';
    }
    return ExitCode::success;
}

} // namespace kestrin::PortsCommand
