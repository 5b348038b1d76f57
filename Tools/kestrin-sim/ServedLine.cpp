#include "ServedLine.h"

#include "ExactBaudRate.h"
#include "SerialLink.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace kestrin {

namespace {

std::string failure(const std::string& what) {
    return what + ": " + std::strerror(errno);
}

bool makeRaw(int fd) {
    termios attributes{};
    if (tcgetattr(fd, &attributes) != 0) {
        return false;
    }
    cfmakeraw(&attributes);
    attributes.c_cc[VMIN] = 1;
    attributes.c_cc[VTIME] = 0;
    return tcsetattr(fd, TCSANOW, &attributes) == 0;
}

void closeIfOpen(int fd) {
    if (fd != -1) {
        ::close(fd);
    }
}

} // namespace

ServedLine::ServedLine(int fd, int heldFd, std::string path)
    : fd_(fd)
    , heldFd_(heldFd)
    , path_(std::move(path)) {}

ServedLine::ServedLine(ServedLine&& other) noexcept
    : fd_(std::exchange(other.fd_, -1))
    , heldFd_(std::exchange(other.heldFd_, -1))
    , path_(std::move(other.path_)) {}

ServedLine::~ServedLine() {
    closeIfOpen(heldFd_);
    closeIfOpen(fd_);
}

Result<ServedLine, std::string> ServedLine::pseudoTerminal() {
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (master < 0) {
        return failure("cannot create a pseudo-terminal");
    }
    char name[128] = {};
    if (grantpt(master) != 0 || unlockpt(master) != 0 ||
        ptsname_r(master, name, sizeof name) != 0) {
        std::string message = failure("cannot set up the pseudo-terminal");
        ::close(master);
        return message;
    }
    const int held = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    // Echo would send every answer straight back as if it were a request: raw on both ends.
    if (held < 0 || !makeRaw(held) || !makeRaw(master)) {
        std::string message = failure(std::string("cannot configure ") + name);
        closeIfOpen(held);
        ::close(master);
        return message;
    }
    return ServedLine(master, held, name);
}

Result<ServedLine, std::string> ServedLine::port(const std::string& path,
                                                 const SerialConfiguration& configuration) {
    const int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        return failure("cannot open " + path);
    }
    const auto fail = [&](const std::string& what) {
        std::string message = failure(what);
        ::close(fd);
        return message;
    };
    if (ioctl(fd, TIOCEXCL) != 0) {
        return fail("cannot claim " + path);
    }
    termios original{};
    if (tcgetattr(fd, &original) != 0) {
        return fail("cannot configure " + path);
    }
    termios attributes = SerialLink::rawAttributes(original, configuration);
    int result = tcsetattr(fd, TCSANOW, &attributes);
    if (result != 0 && errno == EINVAL) {
        SerialConfiguration plain = configuration;
        plain.dataBits = 8;
        plain.parity = Parity::none;
        attributes = SerialLink::rawAttributes(original, plain);
        result = tcsetattr(fd, TCSANOW, &attributes);
    }
    if (result != 0) {
        return fail("cannot configure " + path);
    }
    if (ExactBaudRate::set(fd, configuration.baudRate) != 0) {
        return fail("cannot set " + std::to_string(configuration.baudRate) + " baud on " + path);
    }
    tcflush(fd, TCIOFLUSH);
    return ServedLine(fd, -1, path);
}

} // namespace kestrin
