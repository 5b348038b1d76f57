#include "QuitSignals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>

namespace kestrin::QuitSignals {

namespace {

constexpr std::array<int, 3> quitSignals{SIGTERM, SIGINT, SIGHUP};

// Written by the handler, read on the main thread; set before any handler can run.
int handlerEnd = -1;
int loopEnd = -1;

void onQuitSignal(int) {
    const int saved = errno;
    const char byte = 1;
    // When the socket is full, a byte that the loop will read is already there.
    [[maybe_unused]] const ssize_t written = ::write(handlerEnd, &byte, 1);
    errno = saved;
}

void drain(int descriptor) {
    std::array<char, 64> bytes{};
    while (::read(descriptor, bytes.data(), bytes.size()) > 0) {
    }
}

} // namespace

bool install(QCoreApplication& application) {
    if (handlerEnd != -1) {
        return true;
    }
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return false;
    }
    handlerEnd = ends[0];
    loopEnd = ends[1];
    // Owned by the application, so it never outlives the event dispatcher it registers with.
    auto* notifier = new QSocketNotifier(loopEnd, QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [] {
        drain(loopEnd);
        QCoreApplication::quit();
    });
    struct sigaction action {};
    action.sa_handler = onQuitSignal;
    sigemptyset(&action.sa_mask);
    // System calls of other threads go on where the signal found them.
    action.sa_flags = SA_RESTART;
    for (const int signal : quitSignals) {
        sigaction(signal, &action, nullptr);
    }
    return true;
}

} // namespace kestrin::QuitSignals
