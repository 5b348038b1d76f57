#pragma once

namespace kestrin {

// Linux's arbitrary-rate request (termios2 with BOTHER). Kept apart because <asm/termbits.h>
// redefines what <termios.h> declares: no file may include both.
namespace ExactBaudRate {

// Sets input and output of fd to exactly baudRate and reads the rate back. Returns 0, or -1 with
// errno set; a driver that rounded the rate to something else fails with EINVAL.
int set(int fd, int baudRate);

} // namespace ExactBaudRate
} // namespace kestrin
