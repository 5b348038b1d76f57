#pragma once

#include "AdapterFacts.h"
#include "CommandLine.h"
#include "ExitCode.h"
#include "PortAccess.h"
#include "PosixTerminal.h"
#include "RS485Mode.h"
#include "SerialLinkError.h"
#include "SerialPortInfo.h"
#include "SystemRoot.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace kestrin::PortsCommand {

// --json and --verbose besides --help and --version.
const CommandLine::Syntax& syntax();

struct Listing {
    bool json = false;
    bool verbose = false;
};

// Where --verbose looks: the machine, or a fake tree and terminal in tests.
struct System {
    const SystemRoot& root;
    Login login;
    PosixTerminal& terminal;
};

// What --verbose adds to a port: what stands between the user and the port on this machine.
struct Details {
    // The kernel's name of the device, such as ttyUSB0.
    std::optional<std::string> deviceName;
    std::optional<std::string> driver;
    std::optional<SerialLinkError::PortAccess> access;
    bool canOpen = false;
    // Who holds the port, as an open it refused would name it.
    SerialLinkError::Busy busy;
    std::optional<AdapterFacts::LatencyTimer> latency;
    RS485Mode::Support rs485 = RS485Mode::Support::unknown;
};

Details details(const SerialPortInfo& port, const System& system);

// The path, and a tab and the name when the port has a name other than its path.
std::string line(const SerialPortInfo& port);
// That line, then one indented line per fact.
std::string verboseText(const SerialPortInfo& port, const Details& details);
// path, name (null when it has none), vendor-id and product-id (null without a USB device),
// serial-number and by-id; with details also what verboseText shows.
nlohmann::json json(const SerialPortInfo& port, const Details* details = nullptr);

// The ports in the order given, as listing asks.
void list(const std::vector<SerialPortInfo>& ports, Listing listing, const System& system,
          std::ostream& out);

// `kestrin-cli ports`: the ports in the order of the port picker.
ExitCode run(Listing listing, std::ostream& out);

} // namespace kestrin::PortsCommand
