#pragma once

#include "Bytes.h"
#include "PosixTerminal.h"
#include "Result.h"
#include "SerialConfiguration.h"
#include "SerialLinkError.h"
#include "WakeSignal.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <linux/serial.h>
#include <optional>
#include <string>
#include <string_view>
#include <termios.h>

namespace kestrin {

// One open serial device through which a request goes out and its answer comes back.
// Thread contract: used by one thread at a time (open on the thread that starts the engine,
// transact and close on the engine's thread) and never concurrently; it has no lock. The one way
// in from another thread is the cancellation signal, which ends every wait at once.
class SerialLink {
public:
    // The scratch buffer every read fills; a whole RTU frame is at most 256 bytes.
    static constexpr std::size_t bufferSize = 512;

    // Does not touch the device. allowsTestDevice skips the path check and tolerates what a
    // pseudo-terminal refuses (parity, 7 data bits, the exact speed); the application passes false.
    SerialLink(std::string path, SerialConfiguration configuration, bool allowsTestDevice = false,
               PosixTerminal& terminal = PosixTerminal::system());
    ~SerialLink();
    SerialLink(const SerialLink&) = delete;
    SerialLink& operator=(const SerialLink&) = delete;

    // "/dev/tty" and a name that is not only digits (ttyUSB0, ttyACM0, ttyS0, ttyAMA0, but never
    // /dev/tty itself or the virtual consoles /dev/tty1), no "/" or ".." after "/dev/", and a
    // name of fewer than 128 characters.
    static bool isValidPath(std::string_view path);

    // Exclusive use, raw mode, the exact speed, the driver's low latency where it has it, the
    // configured RS-485 direction, both queues flushed. A failure carries what the system can
    // tell about a refused or held port. Does nothing when open.
    Result<void, SerialLinkError> open();
    // Restores what open changed and gives up exclusive use. Does nothing when closed.
    void close() noexcept;

    // Once signal is raised, every wait of the link ends with Cancelled, now and later. The
    // signal must outlive the link; set it before the link is used.
    void cancelWith(const WakeSignal& signal) noexcept { cancel_ = &signal; }

    // From now on the link never writes a byte: transact fails with SendRefused. For listening to
    // another master, whose line a second sender would break. Cannot be undone.
    void refuseToSend() noexcept { refusesToSend_ = true; }

    // Waits out the inter-frame silence, sends frame and collects the answer until its expected
    // length, a silent gap after bytes of unknown length, or timeout seconds. A broadcast
    // (expectsResponse false) returns no bytes after a 100 ms turnaround.
    Result<Bytes, SerialLinkError> transact(ByteView frame, bool expectsResponse, double timeout);

    // After a time-out: a device that answers late is still answering that request, and nothing
    // in its frame tells it from the next one's answer. Waits until twice the time-out after the
    // request went out for an answer to begin and collects it until it is complete or the line
    // falls silent. Empty when nothing came.
    Result<Bytes, SerialLinkError> lateAnswer(double timeout);
    // After a defective answer: the rest of it that may still be on its way, until the line falls
    // silent. Empty when the line was already quiet.
    Result<Bytes, SerialLinkError> restOfAnswer();

    // The bytes that arrive within wait, returned as soon as there are any; empty on silence, and
    // early after a signal interrupted the wait. Waits shorter than a millisecond are kept (the
    // inter-frame silence at 115200 baud is 1.75 ms), and bytes coming meanwhile end them.
    // Sends nothing.
    Result<Bytes, SerialLinkError> listen(std::chrono::steady_clock::duration wait);

    // Sends nothing until `until` (indefinitely without one) or until wake is raised, watching the
    // open device meanwhile so that an adapter pulled while nothing is due is noticed at once
    // (Disconnected). Incoming bytes are left for the next transaction's flush.
    Result<void, SerialLinkError> idle(std::optional<std::chrono::steady_clock::time_point> until,
                                       const WakeSignal& wake);

    // The Modbus RTU silent interval of this link's frame, in seconds.
    double interFrameDelay() const;

    const std::string& path() const noexcept { return path_; }
    const SerialConfiguration& configuration() const noexcept { return configuration_; }
    bool allowsTestDevice() const noexcept { return allowsTestDevice_; }
    bool isOpen() const noexcept { return fd_ != -1; }

private:
    using Clock = std::chrono::steady_clock;

    enum class Input : std::uint8_t { bytes, silence, interrupted };

    // The steps of open, each leaving the link as it found it when it fails.
    Result<void, SerialLinkError> attach();
    Result<int, SerialLinkError> openExclusively();
    Result<void, SerialLinkError> configure(int fd);
    Result<void, SerialLinkError> switchDirectionByRTS(int fd);
    void lowerLatency(int fd);
    // Undoes what the steps of open changed on fd, then closes it.
    void release(int fd) noexcept;

    Result<void, SerialLinkError> writeFrame(ByteView frame);
    Result<Bytes, SerialLinkError> readAnswer(Clock::duration timeout);
    // Whatever arrives once a first byte comes before firstByteBy, until complete or silent.
    Result<Bytes, SerialLinkError> collectLate(Clock::time_point firstByteBy);
    // One wait of at most `wait` for input, appended to received.
    Result<Input, SerialLinkError> awaitInput(Bytes& received, Clock::duration wait);
    // What a poll of the device and the cancel signal that returned ready found: bytes are read
    // and appended to received.
    Result<Input, SerialLinkError> takeInput(const pollfd& device, const pollfd& cancel, int ready,
                                             Bytes& received);
    // The silence that ends an answer of unknown length.
    Clock::duration silentGap() const;
    // Sleeps until `until`; false when cancelled first.
    bool sleepUntil(Clock::time_point until) const;
    int cancelFd() const noexcept { return cancel_ == nullptr ? -1 : cancel_->fd(); }

    std::string path_;
    SerialConfiguration configuration_;
    int fd_ = -1;
    // What open changed, to be put back; absent where nothing was changed.
    std::optional<termios> originalAttributes_;
    std::optional<serial_struct> originalSerialInfo_;
    std::optional<serial_rs485> originalRS485_;
    // When the line last carried a frame or an answer; the distant past before the first.
    Clock::time_point lastActivity_ = Clock::time_point::min();
    // When the last request had left the adapter.
    Clock::time_point sentAt_ = Clock::time_point::min();
    const WakeSignal* cancel_ = nullptr;
    bool refusesToSend_ = false;
    std::array<std::uint8_t, bufferSize> buffer_{};
    bool allowsTestDevice_;
    PosixTerminal& terminal_;
};

} // namespace kestrin
