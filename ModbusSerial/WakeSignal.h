#pragma once

namespace kestrin {

// A flag another thread can raise and a poll() can wait on beside a serial device: an eventfd
// whose counter stays readable until cleared.
//
// Thread contract: raise may be called from any thread (and from a signal handler); clear and the
// waits on fd() belong to one thread. Without a descriptor (eventfd failed: the process is out
// of descriptors) raise does nothing and poll() ignores the negative fd, so waits simply run to
// their time-out.
class WakeSignal {
public:
    WakeSignal() noexcept;
    ~WakeSignal();
    WakeSignal(const WakeSignal&) = delete;
    WakeSignal& operator=(const WakeSignal&) = delete;

    void raise() noexcept;
    // Lowers the flag; raises that come later are seen by the next wait.
    void clear() noexcept;
    // Whether it is raised now, without waiting.
    bool isRaised() const noexcept;
    int fd() const noexcept { return fd_; }

private:
    int fd_ = -1;
};

} // namespace kestrin
