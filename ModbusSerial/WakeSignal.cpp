#include "WakeSignal.h"

#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace kestrin {

WakeSignal::WakeSignal() noexcept
    : fd_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

WakeSignal::~WakeSignal() {
    if (fd_ >= 0) {
        ::close(fd_);
    }
}

void WakeSignal::raise() noexcept {
    if (fd_ < 0) {
        return;
    }
    const std::uint64_t one = 1;
    // Can only fail when the counter is about to overflow, which leaves it raised anyway.
    [[maybe_unused]] const ssize_t written = ::write(fd_, &one, sizeof one);
}

void WakeSignal::clear() noexcept {
    if (fd_ < 0) {
        return;
    }
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t read = ::read(fd_, &count, sizeof count);
}

bool WakeSignal::isRaised() const noexcept {
    if (fd_ < 0) {
        return false;
    }
    pollfd readable{fd_, POLLIN, 0};
    return ::poll(&readable, 1, 0) == 1;
}

} // namespace kestrin
