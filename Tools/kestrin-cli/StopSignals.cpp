#include "StopSignals.h"

#include <array>
#include <poll.h>
#include <pthread.h>
#include <sys/signalfd.h>
#include <thread>
#include <unistd.h>

namespace kestrin {

namespace {

sigset_t stopSignals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

} // namespace

bool StopSignals::drain(int descriptor) {
    std::array<signalfd_siginfo, 4> taken{};
    bool any = false;
    while (::read(descriptor, taken.data(), sizeof taken) > 0) {
        any = true;
    }
    return any;
}

StopSignals::StopSignals() {
    const sigset_t set = stopSignals();
    pthread_sigmask(SIG_BLOCK, &set, &previousMask_);
    descriptor_ = ::signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC);
    if (descriptor_ == -1) {
        // Without the descriptor the signals keep their default action rather than vanish.
        pthread_sigmask(SIG_SETMASK, &previousMask_, nullptr);
    }
}

StopSignals::~StopSignals() {
    if (descriptor_ == -1) {
        return;
    }
    // A signal during the orderly end has been answered by that end; it must not kill the
    // process once unblocked.
    drain(descriptor_);
    ::close(descriptor_);
    pthread_sigmask(SIG_SETMASK, &previousMask_, nullptr);
}

bool StopSignals::awaitStop(std::chrono::milliseconds wait) {
    if (descriptor_ == -1) {
        std::this_thread::sleep_for(wait);
        return false;
    }
    pollfd ready{descriptor_, POLLIN, 0};
    ::poll(&ready, 1, static_cast<int>(wait.count()));
    return drain(descriptor_);
}

} // namespace kestrin
