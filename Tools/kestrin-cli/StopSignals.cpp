#include "StopSignals.h"

#include <array>
#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>

namespace kestrin {

namespace {

sigset_t stopSignals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

// Takes every pending stop signal; false when there was none.
bool drain(int descriptor) {
    std::array<signalfd_siginfo, 4> taken{};
    bool any = false;
    while (::read(descriptor, taken.data(), sizeof taken) > 0) {
        any = true;
    }
    return any;
}

} // namespace

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

void StopSignals::watch(QCoreApplication& application, std::function<void()> onStop) {
    if (descriptor_ == -1) {
        return;
    }
    // Owned by the application, so it never outlives the event dispatcher it registers with.
    auto* notifier = new QSocketNotifier(descriptor_, QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, notifier,
                     [descriptor = descriptor_, onStop = std::move(onStop)] {
                         if (drain(descriptor)) {
                             onStop();
                         }
                     });
}

} // namespace kestrin
