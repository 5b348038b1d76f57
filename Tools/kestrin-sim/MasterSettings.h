#pragma once

#include <optional>

namespace kestrin {

// The baud rate and stop bits the master gave its end of a pseudo-terminal, read through the
// controlling end, which shares them. Kept apart because <asm/termbits.h>, which has the exact
// rate, redefines what <termios.h> declares.
struct MasterSettings {
    int baudRate = 0;
    int stopBits = 1;

    // Nothing when fd is no terminal.
    static std::optional<MasterSettings> of(int fd);
};

} // namespace kestrin
