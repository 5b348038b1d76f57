#pragma once

#include <cstddef>
#include <poll.h>
#include <sys/types.h>
#include <termios.h>

namespace kestrin {

// The POSIX calls a serial link makes, behind one seam so that tests can script EINTR, EAGAIN,
// short writes, I/O errors and hang-ups without hardware. Every member behaves like the call it
// is named after: a negative result leaves the reason in errno.
class PosixTerminal {
public:
    virtual ~PosixTerminal() = default;

    virtual int open(const char* path, int flags) = 0;
    virtual int close(int fd) = 0;
    // Requests without an argument: TIOCEXCL and TIOCNXCL.
    virtual int ioctl(int fd, unsigned long request) = 0;
    // Requests that read or fill a struct: TIOCGSERIAL and TIOCSSERIAL (serial_struct),
    // TIOCGRS485 and TIOCSRS485 (serial_rs485).
    virtual int ioctl(int fd, unsigned long request, void* argument) = 0;
    virtual int flock(int fd, int operation) = 0;
    virtual int tcgetattr(int fd, termios* attributes) = 0;
    virtual int tcsetattr(int fd, int action, const termios* attributes) = 0;
    // Both directions to exactly this rate; a rate the driver changes on the way is a failure.
    virtual int setExactBaudRate(int fd, int baudRate) = 0;
    virtual int tcflush(int fd, int queue) = 0;
    virtual int tcdrain(int fd) = 0;
    virtual int poll(pollfd* fds, nfds_t count, int timeoutMs) = 0;
    virtual ssize_t read(int fd, void* buffer, std::size_t size) = 0;
    virtual ssize_t write(int fd, const void* bytes, std::size_t size) = 0;

    // The real calls; one shared stateless instance.
    static PosixTerminal& system();
};

} // namespace kestrin
