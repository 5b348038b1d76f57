#pragma once

#include "Faults.h"
#include "FrameSplitter.h"
#include "Ledger.h"
#include "SlaveDevice.h"
#include "StreamRecorder.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <optional>

namespace kestrin {

// How long the simulated line and device take.
struct SimulatorTiming {
    // Answer only when the request and the answer would have crossed a real line at baudRate,
    // plus the turnaround; otherwise answer at once.
    bool wireTiming = false;
    int baudRate = 9600;
    int bitsPerCharacter = 11;
    int stopBits = 1;
    // On a pseudo-terminal, which carries no line signal, a request the master sent at another
    // baud rate or stop bits goes unheard, as a real device would hear only garbage.
    bool strictSettings = false;
    double turnaround = 0.001; // seconds between the end of a request and the start of its answer
    double delay = 1.5;        // seconds the delay fault holds an answer back
    double masterTimeout = 1;  // seconds the master waits; the late fault answers after 1 to 2

    // Seconds these characters take on the line with wire timing, 0 without.
    double wireTime(std::size_t characters) const noexcept;
    // Seconds from the first byte of a request to the moment the whole answer has arrived.
    double answerTime(std::size_t requestSize, std::size_t answerSize) const noexcept;
    // The quiet that ends an incomplete frame: 3.5 characters (1.75 ms above 19200 baud), but
    // at least 20 ms.
    double silence() const noexcept;
};

// The event loop of kestrin-sim: cuts what arrives on the line into frames, lets the device
// answer requests, applies faults, sends each answer when it is due and keeps the ledger. One
// thread; it sleeps in ppoll until bytes arrive, an answer is due, the line falls silent or a
// signal comes. Half duplex like an RS-485 device: while it holds an answer back it does not
// listen, so requests that arrive meanwhile are ignored and answers never pile up.
class Simulator {
public:
    Simulator(int fd, SlaveDevice& device, Faults faults, Ledger& ledger, SimulatorTiming timing);

    // Serves until stop is set. A signal handler that sets it must have its signal blocked by
    // the caller, and waitMask is the mask during the wait (the same without it), so that no
    // signal is missed. Returns 0 after stop, 1 when the line fails.
    int run(const std::atomic<bool>& stop, const sigset_t& waitMask);
    // Records what crosses the line from now on; with wire timing at the emulated wire times.
    void recordTo(StreamRecorder& recorder) { recorder_ = &recorder; }

private:
    using Clock = std::chrono::steady_clock;

    struct PendingAnswer {
        Clock::time_point due;
        Bytes bytes;
    };

    bool readAvailable(Clock::time_point arrival);
    void takeFrames(bool afterSilence);
    void handle(const FrameSplitter::Frame& frame, Clock::time_point start);
    void respond(const FrameSplitter::Frame& frame, Clock::time_point start, LedgerEntry& entry);
    bool sendDueAnswer();
    std::optional<Clock::time_point> nextWake() const;
    double secondsSinceStart(Clock::time_point time) const;

    int fd_;
    SlaveDevice& device_;
    Faults faults_;
    Ledger& ledger_;
    StreamRecorder* recorder_ = nullptr;
    SimulatorTiming timing_;
    Clock::time_point started_ = Clock::now();
    FrameSplitter splitter_;
    // When the first byte still in the splitter arrived, and when the last one did.
    Clock::time_point bufferStart_;
    Clock::time_point lastByte_;
    std::optional<PendingAnswer> pending_; // the answer held back, at most one
};

} // namespace kestrin
