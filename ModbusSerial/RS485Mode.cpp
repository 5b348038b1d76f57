#include "RS485Mode.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>

namespace kestrin::RS485Mode {

Support probe(const std::string& path, PosixTerminal& terminal) {
    const int fd = terminal.open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        return Support::unknown;
    }
    // Every serial core port answers the read, whether its driver has the mode or not; only
    // writing the settings back, unchanged, asks the driver itself.
    serial_rs485 current{};
    int result = terminal.ioctl(fd, TIOCGRS485, &current);
    if (result == 0) {
        result = terminal.ioctl(fd, TIOCSRS485, &current);
    }
    const int code = errno;
    terminal.close(fd);
    if (result == 0) {
        return Support::yes;
    }
    // Drivers without the mode answer ENOTTY; some older ones EINVAL.
    return code == ENOTTY || code == EINVAL ? Support::no : Support::unknown;
}

serial_rs485 settings(const serial_rs485& original, const RS485Direction& direction) {
    serial_rs485 wanted = original;
    wanted.flags &= ~static_cast<__u32>(SER_RS485_RTS_ON_SEND | SER_RS485_RTS_AFTER_SEND |
                                        SER_RS485_RX_DURING_TX);
#ifdef SER_RS485_MODE_RS422
    wanted.flags &= ~static_cast<__u32>(SER_RS485_MODE_RS422);
#endif
    // The two flags are RTS's level during and after a frame; one is high, the other low.
    wanted.flags |= SER_RS485_ENABLED | (direction.rtsHighWhileSending ? SER_RS485_RTS_ON_SEND
                                                                       : SER_RS485_RTS_AFTER_SEND);
    wanted.delay_rts_before_send = static_cast<__u32>(direction.delayBeforeSendMs);
    wanted.delay_rts_after_send = static_cast<__u32>(direction.delayAfterSendMs);
    return wanted;
}

Result<serial_rs485, int> enable(PosixTerminal& terminal, int fd, const RS485Direction& direction) {
    serial_rs485 original{};
    if (terminal.ioctl(fd, TIOCGRS485, &original) != 0) {
        return errno;
    }
    serial_rs485 wanted = settings(original, direction);
    if (terminal.ioctl(fd, TIOCSRS485, &wanted) != 0) {
        return errno;
    }
    return original;
}

} // namespace kestrin::RS485Mode
