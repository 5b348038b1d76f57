#pragma once

#include "Bytes.h"
#include "PollPlan.h"
#include "PollerEvent.h"
#include "Result.h"
#include "SerialConfiguration.h"
#include "SerialLinkError.h"
#include "Uuid.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <variant>
#include <vector>

namespace kestrin {

// The part of Kestrin that talks on the line: one serial link, one background thread that reads
// the due polls one request at a time, sends queued writes first and reports every outcome.
//
// Thread contract:
// - The creator's thread (the main thread) calls start, update, write, stop and the destructor.
// - start opens the link on the caller's thread; after that only the engine thread ("Kestrin")
//   touches it, runs every transaction and closes it when it ends.
// - One mutex guards running, plans, nextDue, writes and finished. The engine thread holds it
//   only to take its next job or to look at running and the write queue, never during a
//   transaction. With nothing due it idles in the link, which watches the port for a hang-up
//   meanwhile; update and write raise a wake-up signal that ends the idle wait early.
// - onEvent runs on the thread that produced the event: start's caller for started, the engine
//   thread for the rest, in the order they were produced. It must return quickly and must not
//   destroy the engine; a receiver on another thread queues the events itself, and must never
//   hold its queue's lock while it calls stop, so stop cannot deadlock with delivery.
// - stop clears running and raises the cancellation signal, which ends the transaction under way
//   at once (its answer is dropped, its event never delivered) and closes the port; it waits for
//   that, at most timeout + 1 s, and the destructor does not wait again. Queued writes are
//   dropped. A thread that outlives stop keeps the shared state alive on its own and never
//   touches the engine object.
// - Loss of the port (any link error but a time-out), during a transaction or while idle, ends
//   the thread with exactly one serialLost, unless stop came first; nothing is delivered after it.
// - After a failed request the engine keeps what the device still sends for it from the next
//   request (a late answer) and reports it as lateAnswer; after a good answer it waits no longer.
// - A block of several pieces that the device refuses with exception 02 is halved, down to single
//   pieces, until every part answers or is one piece; from then on, for the rest of the reading,
//   the block is read by those parts. Its events are held back while it is split, so that the
//   one readInParts comes before the parts' reads; a queued write goes out between two parts as
//   between two blocks, and its event is held with them. A stop or a loss during the split
//   still delivers them, readInParts naming only the pieces refused so far, before the
//   serialLost. A split in which a part of several pieces failed otherwise than with exception
//   02 is not kept: the next reading tries the block whole again.
class PollerEngine {
public:
    using Clock = std::chrono::steady_clock;
    using EventHandler = std::function<void(const PollerEvent&)>;

    // What the engine thread does next; writes come first.
    struct Job {
        struct Write {
            Uuid token;
            std::uint8_t unit = 0;
            Bytes pdu;
            friend bool operator==(const Write&, const Write&) = default;
        };
        struct Poll {
            PollPlan plan;
            friend bool operator==(const Poll&, const Poll&) = default;
        };

        using Case = std::variant<Write, Poll>;
        Case value;

        friend bool operator==(const Job&, const Job&) = default;
    };

    // reading: the engine is the master, as described above. listening: another master talks on
    // the line; the link is opened as for reading but refuses to send, and the thread reports
    // the requests it hears with their answers (heard) and bytes that fit no request
    // (unmatched), at their arrival times. Plans and writes are ignored; started, serialLost
    // and stop work as when reading.
    enum class Mode : std::uint8_t { reading, listening };

    // Does not touch the port. timeout is the response time-out of every request in seconds;
    // when listening, how long a heard request waits for its answer.
    PollerEngine(std::string path, SerialConfiguration configuration, double timeout,
                 bool allowsTestDevice, EventHandler onEvent, Mode mode = Mode::reading);
    // Stops reading; a thread that did not end within stop's wait is left to end alone.
    ~PollerEngine();
    PollerEngine(const PollerEngine&) = delete;
    PollerEngine& operator=(const PollerEngine&) = delete;

    // Opens the port and starts the thread, then delivers started. An open failure is returned
    // unchanged and nothing starts. Only the first call does anything.
    Result<void, SerialLinkError> start(std::vector<PollPlan> plans);
    // Kept polls keep their schedule, removed polls are forgotten, new polls are read before any
    // overdue one.
    void update(std::vector<PollPlan> plans);
    // Queues a complete write request PDU for unit (0 broadcasts); an empty PDU is ignored.
    void write(Bytes pdu, std::uint8_t unit, Uuid token);
    // Ends reading and the transaction under way; returns once the thread has closed the port,
    // at most timeout + 1 s later.
    void stop();

    const std::string& path() const noexcept { return path_; }
    const SerialConfiguration& configuration() const noexcept { return configuration_; }
    double timeout() const noexcept { return timeout_; }
    bool allowsTestDevice() const noexcept { return allowsTestDevice_; }
    Mode mode() const noexcept { return mode_; }

private:
    struct State;
    class Worker;

    // Waits until the thread has said it is finished, at most until deadline; joins it if so.
    void joinThread(Clock::time_point deadline);

    std::string path_;
    SerialConfiguration configuration_;
    double timeout_;
    bool allowsTestDevice_;
    EventHandler onEvent_;
    Mode mode_;
    // Shared with the thread, which may outlive a stop that gave up waiting.
    std::shared_ptr<State> state_;
    bool started_ = false;
    std::thread thread_;
};

} // namespace kestrin
