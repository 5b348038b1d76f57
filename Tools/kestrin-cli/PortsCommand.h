#pragma once

#include "CommandLine.h"
#include "ExitCode.h"
#include "SerialPortInfo.h"

#include <ostream>
#include <string>

#include <nlohmann/json.hpp>

namespace kestrin::PortsCommand {

// --json besides --help and --version.
const CommandLine::Syntax& syntax();

// The path, and a tab and the name when the port has a name other than its path.
std::string line(const SerialPortInfo& port);
// path, name (null when it has none), vendor-id, product-id, serial-number and by-id (null
// without a USB device, or when the device has no serial number or udev made no by-id link).
nlohmann::json json(const SerialPortInfo& port);

// `kestrin-cli ports`: one line per serial port, in the order of the port picker.
ExitCode run(bool asJson, std::ostream& out);

} // namespace kestrin::PortsCommand
