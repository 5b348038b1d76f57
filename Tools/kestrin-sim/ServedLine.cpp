#include "ServedLine.h"

#include "RawTerminal.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace kestrin {

namespace {

std::string failure(const std::string& what, int code = errno) {
    return what + ": " + std::strerror(code);
}

// 100 ms for a blocked line to take an answer; a master that reads nothing loses it.
constexpr int writeWaitMs = 100;

// A pseudo-terminal has no wire: 8N1 passes every byte through unchanged, at any speed.
constexpr SerialConfiguration byteFrame{9600, 8, Parity::none, 1};

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

void ServedLine::releaseOtherEnd() {
    closeIfOpen(std::exchange(heldFd_, -1));
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
    const auto fail = [&](int code) {
        closeIfOpen(held);
        ::close(master);
        return failure(std::string("cannot configure ") + name, code);
    };
    if (held < 0) {
        return fail(errno);
    }
    // Echo would send every answer straight back as if it were a request: raw on both ends.
    for (const int fd : {held, master}) {
        if (auto raw =
                RawTerminal::configure(PosixTerminal::system(), fd, byteFrame, {.anySpeed = true});
            !raw) {
            return fail(raw.error().code);
        }
    }
    return ServedLine(master, held, name);
}

Result<ServedLine, std::string> ServedLine::port(const std::string& path,
                                                 const SerialConfiguration& configuration) {
    const int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        return failure("cannot open " + path);
    }
    const auto fail = [&](const std::string& what, int code) {
        ::close(fd);
        return failure(what, code);
    };
    if (ioctl(fd, TIOCEXCL) != 0) {
        return fail("cannot claim " + path, errno);
    }
    // A port that is really a pseudo-terminal may refuse the frame; the speed it must take.
    const auto configured =
        RawTerminal::configure(PosixTerminal::system(), fd, configuration, {.plainFrame = true});
    if (!configured) {
        const RawTerminal::Failure failed = configured.error();
        return failed.step == RawTerminal::Failure::Step::speed
                   ? fail("cannot set " + std::to_string(configuration.baudRate) + " baud on " +
                              path,
                          failed.code)
                   : fail("cannot configure " + path, failed.code);
    }
    tcflush(fd, TCIOFLUSH);
    return ServedLine(fd, -1, path);
}

WriteOutcome writeAll(int fd, ByteView bytes) {
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (count > 0) {
            written += static_cast<std::size_t>(count);
            continue;
        }
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 && errno == EAGAIN) {
            pollfd line{fd, POLLOUT, 0};
            if (poll(&line, 1, writeWaitMs) > 0 && (line.revents & POLLOUT) != 0) {
                continue;
            }
            return WriteOutcome::nobodyReads;
        }
        return WriteOutcome::failed;
    }
    return WriteOutcome::written;
}

} // namespace kestrin
