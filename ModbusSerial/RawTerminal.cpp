#include "RawTerminal.h"

#include <cerrno>

namespace kestrin::RawTerminal {

termios attributes(const termios& original, const SerialConfiguration& configuration) {
    termios raw = original;
    cfmakeraw(&raw);
    raw.c_cflag &= ~(CSIZE | CSTOPB | CREAD | PARENB | PARODD | CLOCAL | CRTSCTS);
    raw.c_cflag |= (configuration.dataBits == 7 ? CS7 : CS8) | CLOCAL | CREAD;
    if (configuration.parity == Parity::even) {
        raw.c_cflag |= PARENB;
    } else if (configuration.parity == Parity::odd) {
        raw.c_cflag |= PARENB | PARODD;
    }
    if (configuration.stopBits == 2) {
        raw.c_cflag |= CSTOPB;
    }
    raw.c_iflag &= ~(INPCK | ISTRIP | IXON | IXOFF | IXANY);
    if (configuration.parity.isEnabled()) {
        raw.c_iflag |= INPCK;
    }
    raw.c_cc[VMIN] = 1;
    raw.c_cc[VTIME] = 0;
    // termios cannot carry a rate outside its table: the exact one is set through termios2.
    cfsetspeed(&raw, B9600);
    return raw;
}

Result<termios, Failure> configure(PosixTerminal& terminal, int fd,
                                   const SerialConfiguration& configuration, Tolerance tolerance) {
    termios original{};
    if (terminal.tcgetattr(fd, &original) != 0) {
        return Failure{Failure::Step::attributes, errno};
    }
    termios raw = attributes(original, configuration);
    int result = terminal.tcsetattr(fd, TCSANOW, &raw);
    if (result != 0 && errno == EINVAL && tolerance.plainFrame) {
        SerialConfiguration plain = configuration;
        plain.dataBits = 8;
        plain.parity = Parity::none;
        raw = attributes(original, plain);
        result = terminal.tcsetattr(fd, TCSANOW, &raw);
    }
    if (result != 0) {
        return Failure{Failure::Step::attributes, errno};
    }
    if (terminal.setExactBaudRate(fd, configuration.baudRate) != 0 && !tolerance.anySpeed) {
        const int code = errno;
        terminal.tcsetattr(fd, TCSANOW, &original);
        return Failure{Failure::Step::speed, code};
    }
    return original;
}

} // namespace kestrin::RawTerminal
