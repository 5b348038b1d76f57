#pragma once

#include "PosixTerminal.h"
#include "Result.h"
#include "SerialConfiguration.h"

#include <cstdint>
#include <linux/serial.h>
#include <string>

namespace kestrin {

// The kernel's RS-485 mode, in which the driver of a board's UART raises or lowers RTS around
// every frame it sends so that the transceiver switches direction at the right moment.
namespace RS485Mode {

enum class Support : std::uint8_t { yes, no, unknown };

// Whether the driver of the port at path has the mode, asked by reading its current settings;
// unknown when the port cannot be opened (held, refused or gone) or the driver fails otherwise.
Support probe(const std::string& path, PosixTerminal& terminal = PosixTerminal::system());

// original switched to direction. The echo of our own frame would precede every answer, so
// receiving while sending is turned off; RS-422 (full duplex) is not what a Modbus bus is.
serial_rs485 settings(const serial_rs485& original, const RS485Direction& direction);

// Switches the open fd to direction and returns the settings it had, for the caller to restore
// at close; the errno of the refusal when the driver has no such mode.
Result<serial_rs485, int> enable(PosixTerminal& terminal, int fd, const RS485Direction& direction);

} // namespace RS485Mode
} // namespace kestrin
