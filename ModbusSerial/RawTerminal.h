#pragma once

#include "PosixTerminal.h"
#include "Result.h"
#include "SerialConfiguration.h"

#include <cstdint>
#include <termios.h>

namespace kestrin {

// Raw mode with a serial frame and an exact speed, for every descriptor Kestrin talks Modbus on:
// the link's adapter as well as the simulator's port and pseudo-terminal.
namespace RawTerminal {

// What a device may refuse without the configuration failing.
struct Tolerance {
    // A frame refused with EINVAL is set as 8N instead: some pseudo-terminals refuse parity or
    // 7 data bits. Timing still follows the configured frame.
    bool plainFrame = false;
    // A speed the driver refuses or rounds is left at the placeholder.
    bool anySpeed = false;
};

struct Failure {
    enum class Step : std::uint8_t { attributes, speed };
    Step step;
    // errno of the call that failed.
    int code = 0;
};

// Raw mode and the frame of configuration on top of original, every other control flag (such as
// HUPCL) kept. The speed is a placeholder of 9600; configure sets the exact one.
termios attributes(const termios& original, const SerialConfiguration& configuration);

// Puts the open fd into raw mode with configuration's frame and exact speed, any rate the driver
// takes included. Returns the attributes found, for the caller to restore when done with fd; a
// refused speed restores them before failing. fd stays open either way.
Result<termios, Failure> configure(PosixTerminal& terminal, int fd,
                                   const SerialConfiguration& configuration, Tolerance tolerance);

} // namespace RawTerminal
} // namespace kestrin
