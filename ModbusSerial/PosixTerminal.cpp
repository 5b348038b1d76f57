#include "PosixTerminal.h"

#include "ExactBaudRate.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kestrin {

namespace {

class SystemTerminal final : public PosixTerminal {
public:
    int open(const char* path, int flags) override { return ::open(path, flags); }
    int close(int fd) override { return ::close(fd); }
    int ioctl(int fd, unsigned long request) override { return ::ioctl(fd, request); }
    int ioctl(int fd, unsigned long request, void* argument) override {
        return ::ioctl(fd, request, argument);
    }
    int flock(int fd, int operation) override { return ::flock(fd, operation); }
    int tcgetattr(int fd, termios* attributes) override { return ::tcgetattr(fd, attributes); }
    int tcsetattr(int fd, int action, const termios* attributes) override {
        return ::tcsetattr(fd, action, attributes);
    }
    int setExactBaudRate(int fd, int baudRate) override { return ExactBaudRate::set(fd, baudRate); }
    int tcflush(int fd, int queue) override { return ::tcflush(fd, queue); }
    int tcdrain(int fd) override { return ::tcdrain(fd); }
    int poll(pollfd* fds, nfds_t count, int timeoutMs) override {
        return ::poll(fds, count, timeoutMs);
    }
    ssize_t read(int fd, void* buffer, std::size_t size) override {
        return ::read(fd, buffer, size);
    }
    ssize_t write(int fd, const void* bytes, std::size_t size) override {
        return ::write(fd, bytes, size);
    }
};

} // namespace

PosixTerminal& PosixTerminal::system() {
    static SystemTerminal terminal;
    return terminal;
}

} // namespace kestrin
