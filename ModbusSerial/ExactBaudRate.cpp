#include "ExactBaudRate.h"

#include <asm/termbits.h>
#include <cerrno>
#include <sys/ioctl.h>

namespace kestrin::ExactBaudRate {

int set(int fd, int baudRate) {
    if (baudRate <= 0) {
        errno = EINVAL;
        return -1;
    }
    termios2 attributes{};
    if (::ioctl(fd, TCGETS2, &attributes) != 0) {
        return -1;
    }
    // An input rate of B0 in CIBAUD means "same as output".
    attributes.c_cflag &= ~(CBAUD | (CBAUD << IBSHIFT));
    attributes.c_cflag |= BOTHER;
    attributes.c_ospeed = static_cast<speed_t>(baudRate);
    attributes.c_ispeed = static_cast<speed_t>(baudRate);
    if (::ioctl(fd, TCSETS2, &attributes) != 0) {
        return -1;
    }
    termios2 applied{};
    if (::ioctl(fd, TCGETS2, &applied) != 0) {
        return -1;
    }
    if (applied.c_ospeed != attributes.c_ospeed) {
        errno = EINVAL;
        return -1;
    }
    return 0;
}

} // namespace kestrin::ExactBaudRate
