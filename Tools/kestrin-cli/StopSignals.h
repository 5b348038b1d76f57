#pragma once

#include <chrono>
#include <functional>
#include <signal.h>

class QCoreApplication;

namespace kestrin {

// SIGINT and SIGTERM delivered as an ordinary call on the main thread, through a signalfd: no
// handler runs in signal context. Create it before any thread starts, so that every thread
// inherits the blocked mask and no signal lands elsewhere; the previous mask comes back when it
// goes.
class StopSignals {
public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    // Calls onStop on the application's thread for each signal that arrives, from now until the
    // application ends. A signal that came before is delivered once the event loop runs.
    void watch(QCoreApplication& application, std::function<void()> onStop);

    // For a loop without an event loop: waits up to wait for a signal; true when one came (or had
    // come before).
    bool awaitStop(std::chrono::milliseconds wait);

private:
    // Takes every pending stop signal from the descriptor; false when there was none.
    static bool drain(int descriptor);

    sigset_t previousMask_{};
    int descriptor_ = -1;
};

} // namespace kestrin
