#include "Simulator.h"

#include "MasterSettings.h"
#include "RTUFrame.h"
#include "SerialTiming.h"
#include "ServedLine.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace kestrin {

namespace {

using Seconds = std::chrono::duration<double>;

// USB adapters hand a frame over in chunks a few milliseconds apart: like the master, take 20 ms
// of quiet before treating an incomplete buffer as all there is.
constexpr double minimumSilence = 0.02;

timespec timespecFrom(std::chrono::steady_clock::duration duration) {
    const auto nanoseconds = std::max<std::int64_t>(0, std::chrono::nanoseconds(duration).count());
    return timespec{static_cast<time_t>(nanoseconds / 1'000'000'000),
                    static_cast<long>(nanoseconds % 1'000'000'000)};
}

// Whether the master set its end of the line to this rate and these stop bits.
bool masterSetTo(int fd, int baudRate, int stopBits) {
    const std::optional<MasterSettings> settings = MasterSettings::of(fd);
    return !settings || (settings->baudRate == baudRate && settings->stopBits == stopBits);
}

} // namespace

double SimulatorTiming::wireTime(std::size_t characters) const noexcept {
    return wireTiming ? SerialTiming::transmissionTime(static_cast<int>(characters), baudRate,
                                                       bitsPerCharacter)
                      : 0;
}

double SimulatorTiming::answerTime(std::size_t requestSize, std::size_t answerSize) const noexcept {
    return wireTiming ? wireTime(requestSize + answerSize) + turnaround : 0;
}

double SimulatorTiming::silence() const noexcept {
    return std::max(SerialTiming::interFrameDelay(baudRate, bitsPerCharacter), minimumSilence);
}

Simulator::Simulator(int fd, SlaveDevice& device, Faults faults, Ledger& ledger,
                     SimulatorTiming timing)
    : fd_(fd)
    , device_(device)
    , faults_(faults)
    , ledger_(ledger)
    , timing_(timing) {}

double Simulator::secondsSinceStart(Clock::time_point time) const {
    return Seconds(time - started_).count();
}

int Simulator::run(const std::atomic<bool>& stop, const sigset_t& waitMask) {
    while (!stop) {
        pollfd line{fd_, POLLIN, 0};
        const std::optional<Clock::time_point> wake = nextWake();
        timespec timeout{};
        if (wake) {
            timeout = timespecFrom(*wake - Clock::now());
        }
        const int ready = ppoll(&line, 1, wake ? &timeout : nullptr, &waitMask);
        const Clock::time_point now = Clock::now();
        if (ready < 0) {
            if (errno == EINTR) {
                continue;
            }
            std::fprintf(stderr, "kestrin-sim: waiting for the line failed: %s\n",
                         std::strerror(errno));
            return 1;
        }
        // Before reading: an answer that fell due during the wait ends the holding, so a request
        // that arrived with it is heard.
        if (!sendDueAnswer()) {
            return 1;
        }
        if ((line.revents & POLLIN) != 0) {
            if (!readAvailable(now)) {
                return 1;
            }
            takeFrames(false);
        } else if ((line.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) {
            std::fputs("kestrin-sim: the line was hung up\n", stderr);
            return 1;
        }
        if (!splitter_.isEmpty() && now - lastByte_ >= Seconds(timing_.silence())) {
            takeFrames(true);
        }
    }
    return 0;
}

bool Simulator::readAvailable(Clock::time_point arrival) {
    std::array<std::uint8_t, 512> buffer{};
    std::size_t readThisWake = 0;
    for (;;) {
        const ssize_t count = ::read(fd_, buffer.data(), buffer.size());
        if (count > 0) {
            if (splitter_.isEmpty()) {
                bufferStart_ = arrival;
            }
            lastByte_ = arrival;
            const ByteView chunk(buffer.data(), static_cast<std::size_t>(count));
            splitter_.append(chunk);
            if (recorder_ != nullptr) {
                // On the emulated wire the chunk has arrived once its last byte crossed it.
                readThisWake += chunk.size();
                recorder_->add(secondsSinceStart(arrival) + timing_.wireTime(readThisWake), chunk);
            }
            continue;
        }
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 && errno == EAGAIN) {
            return true;
        }
        std::fputs("kestrin-sim: the line was closed\n", stderr);
        return false;
    }
}

void Simulator::takeFrames(bool afterSilence) {
    while (std::optional<FrameSplitter::Frame> frame = splitter_.next(afterSilence)) {
        const Clock::time_point start = bufferStart_;
        // Bytes left behind arrived after the frame: count them from the last read.
        bufferStart_ = lastByte_;
        handle(*frame, start);
    }
}

void Simulator::handle(const FrameSplitter::Frame& frame, Clock::time_point start) {
    using Kind = FrameSplitter::Frame::Kind;
    LedgerEntry entry;
    entry.seconds = secondsSinceStart(start);
    entry.received = frame.bytes;
    if (frame.kind != Kind::request) {
        entry.frame = frame.kind == Kind::response ? "response" : "garbage";
        entry.action = frame.kind == Kind::response ? "ignored" : "discarded";
    } else if (timing_.strictSettings && !masterSetTo(fd_, timing_.baudRate, timing_.stopBits)) {
        entry.frame = "request";
        entry.action = "ignored";
        entry.reason = "sent at other settings";
    } else if (pending_) {
        entry.frame = "request";
        entry.action = "ignored";
        entry.reason = "an answer is held back";
    } else {
        entry.frame = "request";
        respond(frame, start, entry);
    }
    ledger_.record(entry);
}

void Simulator::respond(const FrameSplitter::Frame& frame, Clock::time_point start,
                        LedgerEntry& entry) {
    const std::uint8_t unit = frame.bytes[0];
    const std::optional<Bytes> answer = device_.respond(frame.bytes, entry.seconds);
    if (!answer) {
        entry.action = unit == RTUFrame::broadcastUnit ? "broadcast" : "silent";
        return;
    }
    const bool isException = (*answer)[1] & 0x80;
    entry.action = isException ? "exception" : "answered";
    if (isException) {
        entry.exception = (*answer)[2];
    }
    double after = timing_.answerTime(frame.bytes.size(), answer->size());
    Bytes sent = *answer;
    if (const std::optional<Faults::Kind> fault = faults_.draw()) {
        entry.fault = Faults::name(*fault);
        sent = faults_.apply(*fault, std::move(sent));
        if (*fault == Faults::Kind::delay) {
            after += timing_.delay;
        } else if (*fault == Faults::Kind::late) {
            after += faults_.lateBy(timing_.masterTimeout);
        }
    }
    if (!sent.empty()) {
        entry.delayMs = after * 1000;
        pending_ = PendingAnswer{
            start + std::chrono::duration_cast<Clock::duration>(Seconds(after)), sent};
    }
    entry.sent = std::move(sent);
}

bool Simulator::sendDueAnswer() {
    if (!pending_ || pending_->due > Clock::now()) {
        return true;
    }
    const PendingAnswer answer = std::move(*pending_);
    pending_.reset();
    switch (writeAll(fd_, answer.bytes)) {
    case WriteOutcome::written:
        if (recorder_ != nullptr) {
            // With wire timing the answer's last byte crosses the emulated wire when it is due.
            recorder_->add(secondsSinceStart(timing_.wireTiming ? answer.due : Clock::now()),
                           answer.bytes);
        }
        return true;
    case WriteOutcome::nobodyReads:
        std::fputs("kestrin-sim: nobody reads the line; an answer was lost\n", stderr);
        return true;
    case WriteOutcome::failed:
        break;
    }
    std::fprintf(stderr, "kestrin-sim: sending failed: %s\n", std::strerror(errno));
    return false;
}

std::optional<Simulator::Clock::time_point> Simulator::nextWake() const {
    std::optional<Clock::time_point> wake;
    if (pending_) {
        wake = pending_->due;
    }
    if (!splitter_.isEmpty()) {
        const Clock::time_point silent =
            lastByte_ + std::chrono::duration_cast<Clock::duration>(Seconds(timing_.silence()));
        wake = wake ? std::min(*wake, silent) : silent;
    }
    return wake;
}

} // namespace kestrin
