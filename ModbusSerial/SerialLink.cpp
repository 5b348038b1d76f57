#include "SerialLink.h"

#include "PortTrouble.h"
#include "RS485Mode.h"
#include "RTUFrame.h"
#include "RawTerminal.h"
#include "SerialTiming.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <thread>
#include <utility>

namespace kestrin {

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// After a broadcast no device answers, but each needs time to act on it before the next request
// (the turnaround delay of Modbus over Serial Line V1.02, section 2.4.1: typically 100-200 ms).
constexpr auto broadcastTurnaround = 100ms;
// The writer waits this long for the adapter to take more bytes before calling it a time-out.
constexpr int writableWaitMs = 1000;
// Silence that ends an answer of unknown length, unless the inter-frame silence is longer.
constexpr auto unknownLengthGap = 20ms;

// poll's time-out: rounded up to whole milliseconds, so no wait ends early; no time only looks.
int pollMilliseconds(Clock::duration wait) {
    return static_cast<int>(
        std::max<Clock::rep>(0, std::chrono::ceil<std::chrono::milliseconds>(wait).count()));
}

// ppoll's time-out: exact; a negative wait only looks.
timespec timespecOf(Clock::duration wait) {
    const Clock::duration left = std::max(wait, Clock::duration::zero());
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    return {static_cast<time_t>(seconds.count()),
            static_cast<long>(std::chrono::nanoseconds(left - seconds).count())};
}

SerialLinkError error(SerialLinkError::Case value) {
    return SerialLinkError{std::move(value)};
}

} // namespace

SerialLink::SerialLink(std::string path, SerialConfiguration configuration, bool allowsTestDevice,
                       PosixTerminal& terminal)
    : path_(std::move(path))
    , configuration_(configuration)
    , allowsTestDevice_(allowsTestDevice)
    , terminal_(terminal) {}

SerialLink::~SerialLink() {
    close();
}

bool SerialLink::isValidPath(std::string_view path) {
    constexpr std::string_view devices = "/dev/";
    constexpr std::string_view terminals = "/dev/tty";
    if (!path.starts_with(terminals)) {
        return false;
    }
    // /dev/tty is the controlling terminal and /dev/tty1... are virtual consoles, never adapters.
    const std::string_view suffix = path.substr(terminals.size());
    if (std::all_of(suffix.begin(), suffix.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return false;
    }
    const std::string_view name = path.substr(devices.size());
    return name.find('/') == std::string_view::npos && name.find("..") == std::string_view::npos &&
           name.size() < 128;
}

Result<void, SerialLinkError> SerialLink::open() {
    if (fd_ != -1) {
        return {};
    }
    auto attached = attach();
    if (!attached) {
        // Looked up only now: finding the holder of a port reads through all of /proc.
        SerialLinkError failure = attached.error();
        PortTrouble::explain(failure);
        return failure;
    }
    return {};
}

Result<void, SerialLinkError> SerialLink::attach() {
    if (!allowsTestDevice_ && !isValidPath(path_)) {
        return error(SerialLinkError::InvalidPath{path_});
    }
    // Zero would hang up the line and a negative rate cannot be requested: refuse before the
    // device is touched.
    if (configuration_.baudRate <= 0) {
        return error(SerialLinkError::UnsupportedBaudRate{configuration_.baudRate});
    }
    const auto fd = openExclusively();
    if (!fd) {
        return fd.error();
    }
    if (auto configured = configure(fd.value()); !configured) {
        release(fd.value());
        return configured.error();
    }
    terminal_.tcflush(fd.value(), TCIOFLUSH);
    fd_ = fd.value();
    return {};
}

Result<int, SerialLinkError> SerialLink::openExclusively() {
    const int fd = terminal_.open(path_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        const int code = errno;
        return code == EBUSY ? error(SerialLinkError::Busy{path_})
                             : error(SerialLinkError::OpenFailed{path_, code});
    }
    const auto refused = [&](int code) {
        terminal_.close(fd);
        return code == EBUSY || code == EWOULDBLOCK
                   ? error(SerialLinkError::Busy{path_})
                   : error(SerialLinkError::ConfigurationFailed{code});
    };
    // Root passes TIOCEXCL straight through; the lock holds against root too, and against other
    // programs that lock their port. It comes first so that a port locked by someone else is
    // left without the exclusive flag. Closing the descriptor releases it.
    if (terminal_.flock(fd, LOCK_EX | LOCK_NB) != 0) {
        return refused(errno);
    }
    if (terminal_.ioctl(fd, TIOCEXCL) != 0) {
        return refused(errno);
    }
    return fd;
}

Result<void, SerialLinkError> SerialLink::configure(int fd) {
    // Before the attributes, so that a driver without the mode is refused before anything else
    // of the port changes.
    if (auto switched = switchDirectionByRTS(fd); !switched) {
        return switched;
    }
    // A test device may be a pseudo-terminal, which refuses what an adapter takes.
    const auto configured =
        RawTerminal::configure(terminal_, fd, configuration_,
                               {.plainFrame = allowsTestDevice_, .anySpeed = allowsTestDevice_});
    if (!configured) {
        return configured.error().step == RawTerminal::Failure::Step::speed
                   ? error(SerialLinkError::UnsupportedBaudRate{configuration_.baudRate})
                   : error(SerialLinkError::ConfigurationFailed{configured.error().code});
    }
    originalAttributes_ = configured.value();
    lowerLatency(fd);
    return {};
}

Result<void, SerialLinkError> SerialLink::switchDirectionByRTS(int fd) {
    if (!configuration_.rs485) {
        return {};
    }
    const auto enabled = RS485Mode::enable(terminal_, fd, *configuration_.rs485);
    if (enabled) {
        originalRS485_ = enabled.value();
        return {};
    }
    // Pseudo-terminals have no RS-485 mode; a test runs on without it.
    return allowsTestDevice_ ? Result<void, SerialLinkError>{}
                             : error(SerialLinkError::RS485Refused{enabled.error()});
}

void SerialLink::lowerLatency(int fd) {
    // Without the flag a driver may hold received bytes back to pass them on in batches, which
    // delays every answer. Drivers that do not know it refuse, and the port works as before.
    serial_struct original{};
    if (terminal_.ioctl(fd, TIOCGSERIAL, &original) != 0 ||
        (original.flags & ASYNC_LOW_LATENCY) != 0) {
        return;
    }
    serial_struct lowered = original;
    lowered.flags |= ASYNC_LOW_LATENCY;
    if (terminal_.ioctl(fd, TIOCSSERIAL, &lowered) == 0) {
        originalSerialInfo_ = original;
    }
}

void SerialLink::release(int fd) noexcept {
    if (originalSerialInfo_) {
        terminal_.ioctl(fd, TIOCSSERIAL, &*originalSerialInfo_);
    }
    if (originalRS485_) {
        terminal_.ioctl(fd, TIOCSRS485, &*originalRS485_);
    }
    if (originalAttributes_) {
        terminal_.tcsetattr(fd, TCSANOW, &*originalAttributes_);
    }
    originalSerialInfo_.reset();
    originalRS485_.reset();
    originalAttributes_.reset();
    terminal_.ioctl(fd, TIOCNXCL);
    // Gives up the lock as well. Not retried on EINTR: on Linux the descriptor is released
    // either way.
    terminal_.close(fd);
}

void SerialLink::close() noexcept {
    if (fd_ == -1) {
        return;
    }
    release(fd_);
    fd_ = -1;
}

double SerialLink::interFrameDelay() const {
    return SerialTiming::interFrameDelay(configuration_.baudRate,
                                         configuration_.bitsPerCharacter());
}

Result<Bytes, SerialLinkError> SerialLink::transact(ByteView frame, bool expectsResponse,
                                                    double timeout) {
    if (fd_ == -1) {
        return error(SerialLinkError::NotOpen{});
    }
    if (refusesToSend_) {
        return error(SerialLinkError::SendRefused{});
    }
    // Only the part of the silence that has not yet passed; comparing avoids overflowing the
    // distant past.
    const Clock::time_point silenceEnd = lastActivity_ + SerialTiming::duration(interFrameDelay());
    if (!sleepUntil(silenceEnd)) {
        return error(SerialLinkError::Cancelled{});
    }
    // Line noise must never reach the next answer; late answers are waited out by lateAnswer.
    terminal_.tcflush(fd_, TCIFLUSH);
    if (auto written = writeFrame(frame); !written) {
        return written.error();
    }
    terminal_.tcdrain(fd_);
    sentAt_ = Clock::now();
    lastActivity_ = sentAt_;

    if (!expectsResponse) {
        const bool slept = sleepUntil(Clock::now() + broadcastTurnaround);
        lastActivity_ = Clock::now();
        if (!slept) {
            return error(SerialLinkError::Cancelled{});
        }
        return Bytes{};
    }
    auto answer = readAnswer(SerialTiming::duration(timeout));
    lastActivity_ = Clock::now();
    return answer;
}

Result<Bytes, SerialLinkError> SerialLink::lateAnswer(double timeout) {
    if (fd_ == -1) {
        return error(SerialLinkError::NotOpen{});
    }
    // Compared rather than added to, so that the distant past of a link that never sent stays
    // in range.
    const Clock::duration window = 2 * SerialTiming::duration(timeout);
    const Clock::time_point now = Clock::now();
    const Clock::time_point firstByteBy = sentAt_ < now - window ? now : sentAt_ + window;
    return collectLate(firstByteBy);
}

Result<Bytes, SerialLinkError> SerialLink::restOfAnswer() {
    if (fd_ == -1) {
        return error(SerialLinkError::NotOpen{});
    }
    return collectLate(Clock::now() + silentGap());
}

Result<Bytes, SerialLinkError> SerialLink::collectLate(Clock::time_point firstByteBy) {
    Bytes received;
    for (;;) {
        const std::optional<int> expected = RTUFrame::expectedResponseLength(received);
        if ((expected && received.size() >= static_cast<std::size_t>(*expected)) ||
            received.size() > bufferSize) {
            break;
        }
        Clock::duration wait = silentGap();
        if (received.empty()) {
            wait = firstByteBy - Clock::now();
            if (wait <= Clock::duration::zero()) {
                break;
            }
        }
        auto input = awaitInput(received, wait);
        if (!input) {
            lastActivity_ = Clock::now();
            return input.error();
        }
        if (input.value() == Input::silence && !received.empty()) {
            break;
        }
    }
    lastActivity_ = Clock::now();
    return received;
}

Result<Bytes, SerialLinkError> SerialLink::listen(Clock::duration wait) {
    if (fd_ == -1) {
        return error(SerialLinkError::NotOpen{});
    }
    // ppoll, not the terminal's poll, which counts whole milliseconds: the device is watched for
    // the exact wait, so bytes end it, and are dated, as they arrive.
    std::array<pollfd, 2> fds{{{fd_, POLLIN, 0}, {cancelFd(), POLLIN, 0}}};
    const timespec time = timespecOf(wait);
    const int ready = ::ppoll(fds.data(), fds.size(), &time, nullptr);
    Bytes received;
    if (auto input = takeInput(fds[0], fds[1], ready, received); !input) {
        return input.error();
    }
    return received;
}

Result<void, SerialLinkError> SerialLink::idle(std::optional<Clock::time_point> until,
                                               const WakeSignal& wake) {
    if (fd_ == -1) {
        return error(SerialLinkError::NotOpen{});
    }
    // No events asked of the device: poll reports a hang-up or an error all the same, and the
    // bytes of a chattering line do not wake the thread.
    std::array<pollfd, 3> fds{{{fd_, 0, 0}, {cancelFd(), POLLIN, 0}, {wake.fd(), POLLIN, 0}}};
    // An hour at most per wait keeps the milliseconds in range; the caller simply looks again.
    constexpr auto longest = std::chrono::hours(1);
    const Clock::duration wait =
        until ? std::min<Clock::duration>(*until - Clock::now(), longest) : longest;
    if (wait <= Clock::duration::zero()) {
        return {};
    }
    const int ready = terminal_.poll(fds.data(), fds.size(), pollMilliseconds(wait));
    if (ready < 0) {
        return errno == EINTR ? Result<void, SerialLinkError>{}
                              : error(SerialLinkError::Disconnected{});
    }
    if (fds[1].revents != 0) {
        return error(SerialLinkError::Cancelled{});
    }
    if ((fds[0].revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) {
        return error(SerialLinkError::Disconnected{});
    }
    return {};
}

Result<void, SerialLinkError> SerialLink::writeFrame(ByteView frame) {
    std::size_t sent = 0;
    while (sent < frame.size()) {
        // A write that takes nothing without an error must not be judged by a stale errno.
        errno = 0;
        const ssize_t written = terminal_.write(fd_, frame.data() + sent, frame.size() - sent);
        if (written > 0) {
            sent += static_cast<std::size_t>(written);
            continue;
        }
        const int code = errno;
        if (code == EINTR) {
            continue;
        }
        if (code == EAGAIN) {
            std::array<pollfd, 2> fds{{{fd_, POLLOUT, 0}, {cancelFd(), POLLIN, 0}}};
            if (terminal_.poll(fds.data(), fds.size(), writableWaitMs) == 0) {
                return error(SerialLinkError::Timeout{});
            }
            if (fds[1].revents != 0) {
                return error(SerialLinkError::Cancelled{});
            }
            continue;
        }
        if (code == EIO || code == ENXIO) {
            return error(SerialLinkError::Disconnected{});
        }
        return error(SerialLinkError::WriteFailed{code});
    }
    return {};
}

Result<Bytes, SerialLinkError> SerialLink::readAnswer(Clock::duration timeout) {
    const Clock::time_point deadline = Clock::now() + timeout;
    const Clock::duration gap = silentGap();
    Bytes received;
    for (;;) {
        const std::optional<int> expected = RTUFrame::expectedResponseLength(received);
        if (expected && received.size() >= static_cast<std::size_t>(*expected)) {
            received.resize(static_cast<std::size_t>(*expected));
            return received;
        }
        // More than a whole buffer is no Modbus answer: stop collecting.
        if (received.size() > bufferSize) {
            return received;
        }
        const Clock::duration remaining = deadline - Clock::now();
        if (remaining <= Clock::duration::zero()) {
            if (received.empty()) {
                return error(SerialLinkError::Timeout{});
            }
            // Incomplete: the frame check one layer up refuses it.
            return received;
        }
        const bool gapEnds = !expected && !received.empty() && gap < remaining;
        auto input = awaitInput(received, gapEnds ? gap : remaining);
        if (!input) {
            return input.error();
        }
        // A silent gap after bytes of unknown length ends the answer.
        if (input.value() == Input::silence && gapEnds) {
            return received;
        }
    }
}

Result<SerialLink::Input, SerialLinkError> SerialLink::awaitInput(Bytes& received,
                                                                  Clock::duration wait) {
    std::array<pollfd, 2> fds{{{fd_, POLLIN, 0}, {cancelFd(), POLLIN, 0}}};
    const int ready = terminal_.poll(fds.data(), fds.size(), pollMilliseconds(wait));
    return takeInput(fds[0], fds[1], ready, received);
}

Result<SerialLink::Input, SerialLinkError>
SerialLink::takeInput(const pollfd& device, const pollfd& cancel, int ready, Bytes& received) {
    if (ready < 0) {
        if (errno == EINTR) {
            return Input::interrupted;
        }
        return error(SerialLinkError::Disconnected{});
    }
    if (cancel.revents != 0) {
        return error(SerialLinkError::Cancelled{});
    }
    if (ready == 0) {
        return Input::silence;
    }
    if ((device.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) {
        return error(SerialLinkError::Disconnected{});
    }
    const ssize_t count = terminal_.read(fd_, buffer_.data(), buffer_.size());
    if (count > 0) {
        received.insert(received.end(), buffer_.begin(), buffer_.begin() + count);
        return Input::bytes;
    }
    if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
        return error(SerialLinkError::Disconnected{});
    }
    return Input::interrupted;
}

SerialLink::Clock::duration SerialLink::silentGap() const {
    return std::max<Clock::duration>(SerialTiming::duration(interFrameDelay()), unknownLengthGap);
}

bool SerialLink::sleepUntil(Clock::time_point until) const {
    if (cancel_ == nullptr) {
        if (until > Clock::now()) {
            std::this_thread::sleep_until(until);
        }
        return true;
    }
    // ppoll, not poll: the inter-frame silence at high rates is under two milliseconds, and
    // rounding it up to whole milliseconds would cost a share of the line.
    for (;;) {
        // Compared before subtracting: until may be the distant past.
        const Clock::time_point now = Clock::now();
        const timespec time = timespecOf(until > now ? until - now : Clock::duration::zero());
        pollfd cancelled{cancel_->fd(), POLLIN, 0};
        const int ready = ::ppoll(&cancelled, 1, &time, nullptr);
        if (ready >= 0) {
            return ready == 0;
        }
        if (errno != EINTR) {
            std::this_thread::sleep_until(until);
            return true;
        }
    }
}

} // namespace kestrin
