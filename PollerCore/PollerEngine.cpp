#include "PollerEngine.h"

#include "BlockSplit.h"
#include "BusListener.h"
#include "ExceptionPDU.h"
#include "Overloaded.h"
#include "PDU.h"
#include "PollSchedule.h"
#include "RTUFrame.h"
#include "SerialLink.h"
#include "SerialTiming.h"
#include "WakeSignal.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <pthread.h>
#include <span>
#include <sys/prctl.h>
#include <utility>

namespace kestrin {

namespace {

using Clock = PollerEngine::Clock;
using namespace std::chrono_literals;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void deliver(const PollerEngine::EventHandler& onEvent, PollerEvent::Case value,
             PollerEvent::Time time = std::chrono::system_clock::now()) {
    if (onEvent) {
        onEvent(PollerEvent{std::move(value), time});
    }
}

// One request and its checked answer: the answer's PDU or the failure, with what went over the
// line, how long it took and when it ended.
struct Exchange {
    Result<Bytes, PollFailureError> answer = PollFailureError{PollFailure::timeout()};
    Bytes request;
    Bytes response;
    double duration = 0;
    double waited = 0;
    PollerEvent::Time ended;
};

// What followed a failed request: whatever still came for it, and how long the link listened.
struct Aftermath {
    Result<Bytes, SerialLinkError> late = Bytes{};
    double seconds = 0;
};

// Exception 02: some address of the request does not exist on the device.
bool isRefusal(const Result<Bytes, PollFailureError>& answer) {
    return answer && ExceptionPDU::exception(answer.value()) ==
                         ModbusException(ModbusException::illegalDataAddress).code();
}

} // namespace

struct PollerEngine::State {
    std::mutex mutex;
    std::condition_variable condition;
    bool running = false;
    std::vector<PollPlan> plans;
    PollSchedule::DueTimes nextDue;
    std::deque<Job::Write> writes;
    // Set once, by the ending thread; stop waits for it.
    bool finished = false;
    // Raised by update and write: the idle thread looks at its work again.
    WakeSignal wake;
    // Raised once, by stop: ends the link's waits, the transaction under way included.
    WakeSignal cancel;
};

// The engine thread's side: owns the link from start on and reads the state only under its lock.
class PollerEngine::Worker {
public:
    Worker(std::shared_ptr<State> state, std::unique_ptr<SerialLink> link, std::string path,
           double timeout, EventHandler onEvent, Mode mode)
        : state_(std::move(state))
        , link_(std::move(link))
        , path_(std::move(path))
        , timeout_(timeout)
        , onEvent_(std::move(onEvent))
        , mode_(mode) {}

    void run() {
        pthread_setname_np(pthread_self(), "Kestrin");
        // The default 50 µs timer slack lengthens every inter-frame silence; at 115200 baud that
        // is about 1 % of the line's capacity.
        prctl(PR_SET_TIMERSLACK, 1UL);
        if (mode_ == Mode::listening) {
            listen();
        } else {
            std::optional<Job> job = nextJob();
            while (job && perform(*job)) {
                job = nextJob();
            }
        }
        link_->close();
        const std::lock_guard lock(state_->mutex);
        state_->finished = true;
        state_->condition.notify_all();
    }

private:
    // A refused block being split: the line that will say so, what its parts showed so far and
    // the events held back behind that line.
    struct Splitting {
        PollerEvent::ReadInParts line;
        PollerEvent::Time refusedAt;
        std::vector<ReadBlock> parts{};
        std::vector<BlockSplit::Refusal> refusals{};
        // Single pieces the device refused.
        std::vector<ReadBlock> refused{};
        std::vector<ReadBlock> answered{};
        bool complete = false;
        bool keep = true;
        std::vector<PollerEvent> held{};
    };

    // Until the line is lost or the user stops, which cancels the link's wait: only a loss is
    // reported.
    void listen() {
        BusListener listener(*link_, timeout_, onEvent_);
        listener.run();
        lose();
    }

    // Writes first, in queue order; otherwise the due poll, idling until one is due. Nothing
    // once running is false or the port was lost while idle.
    std::optional<Job> nextJob() {
        for (;;) {
            // Lowered before looking, so that a change made after the look still wakes the wait.
            state_->wake.clear();
            std::optional<Clock::time_point> until;
            {
                const std::lock_guard lock(state_->mutex);
                if (!state_->running) {
                    return std::nullopt;
                }
                if (!state_->writes.empty()) {
                    Job job{std::move(state_->writes.front())};
                    state_->writes.pop_front();
                    return job;
                }
                const PollSchedule::Choice choice =
                    PollSchedule::choose(state_->plans, state_->nextDue, Clock::now());
                if (const auto* due = std::get_if<PollSchedule::ReadNow>(&choice)) {
                    const PollPlan& plan = state_->plans[due->plan];
                    state_->nextDue[plan.id] = due->nextDue;
                    return Job{Job::Poll{plan}};
                }
                until = std::get<PollSchedule::SleepUntil>(choice).time;
            }
            if (!link_->idle(until, state_->wake)) {
                lose();
                return std::nullopt;
            }
        }
    }

    // False when the port was lost.
    bool perform(const Job& job) {
        return std::visit(Overloaded{
                              [&](const Job::Write& write) { return send(write); },
                              [&](const Job::Poll& due) { return poll(due.plan); },
                          },
                          job.value);
    }

    // Reads every block of plan in turn, a block learnt to be read in parts by its parts; a
    // queued write goes out between two reads.
    bool poll(const PollPlan& plan) {
        for (const ReadBlock& block : plan.blocks) {
            const std::vector<ReadBlock>* parts = partsOf(plan, block);
            const std::size_t reads = parts != nullptr ? parts->size() : 1;
            for (std::size_t i = 0; i < reads; ++i) {
                if (!isRunning()) {
                    return true;
                }
                if (!(parts == nullptr ? readOrSplit(plan, block)
                                       : readBlock(plan.id, (*parts)[i]))) {
                    return false;
                }
                if (parts != nullptr && i + 1 == reads) {
                    emit(PollerEvent::PartsRead{plan.id, block});
                }
                if (!sendWaitingWrite()) {
                    return false;
                }
            }
        }
        return true;
    }

    // The parts block is read in, when it was split for the same pieces; an edit that changed
    // the datapoints inside the block forgets the split, since merging may work again.
    const std::vector<ReadBlock>* partsOf(const PollPlan& plan, const ReadBlock& block) {
        auto& known = splits_[plan.id];
        const auto found = known.find(block);
        if (found == known.end()) {
            return nullptr;
        }
        if (found->second.pieces != BlockSplit::piecesIn(block, plan.pieces)) {
            known.erase(found);
            return nullptr;
        }
        return &found->second.parts;
    }

    bool isRunning() {
        const std::lock_guard lock(state_->mutex);
        return state_->running;
    }

    // A write waits for one read at most, not for the whole poll nor for a split. False when the
    // port was lost.
    bool sendWaitingWrite() {
        std::optional<Job::Write> write = takeWrite();
        return !write || send(*write);
    }

    std::optional<Job::Write> takeWrite() {
        const std::lock_guard lock(state_->mutex);
        if (!state_->running || state_->writes.empty()) {
            return std::nullopt;
        }
        Job::Write write = std::move(state_->writes.front());
        state_->writes.pop_front();
        return write;
    }

    Result<Exchange, SerialLinkError> read(const ReadBlock& block) {
        return exchange(PDU::read(block.table, block.address, block.count), block.unit);
    }

    bool readBlock(const Uuid& poll, const ReadBlock& block) {
        auto exchanged = read(block);
        if (!exchanged) {
            return lose();
        }
        return report(poll, block, exchanged.value());
    }

    bool report(const Uuid& poll, const ReadBlock& block, Exchange& done) {
        Result<ReadData, PollFailureError> result = readData(done.answer, block);
        Aftermath after = settle(done.answer);
        emit(PollerEvent::Read{poll, block, std::move(result), std::move(done.request),
                               std::move(done.response), done.duration, done.waited, after.seconds},
             done.ended);
        return reportLate(std::move(after));
    }

    // A block of more than one piece that the device refuses is split at once.
    bool readOrSplit(const PollPlan& plan, const ReadBlock& block) {
        auto exchanged = read(block);
        if (!exchanged) {
            return lose();
        }
        Exchange& done = exchanged.value();
        const auto first =
            isRefusal(done.answer) ? BlockSplit::halves(block, plan.pieces) : std::nullopt;
        if (!first) {
            return report(plan.id, block, done);
        }
        // Held back until the split is known, so that the line saying so comes before the
        // parts' answers and the writes sent between them.
        PollerEvent::ReadInParts line{.poll = plan.id,
                                      .block = block,
                                      .missing = {},
                                      .refusals = 1,
                                      .request = std::move(done.request),
                                      .response = std::move(done.response),
                                      .duration = done.duration};
        splitting_ = Splitting{std::move(line), done.ended};
        splitting_->refusals.push_back({block, first->first, first->second});
        if (!readParts(plan, {first->second, first->first})) {
            // Whatever went on the wire is still reported, before a loss.
            return lose();
        }
        Splitting split = release();
        if (split.keep) {
            splits_[plan.id][block] = {BlockSplit::piecesIn(block, plan.pieces),
                                       std::move(split.parts)};
        }
        return true;
    }

    // Halves refused parts until every part answers or holds a single piece; the parts are read
    // in address order. False when a stop or a loss cut the split short.
    bool readParts(const PollPlan& plan, std::vector<ReadBlock> todo) {
        while (!todo.empty()) {
            // Its event is held like the parts', so the log keeps the order of the line.
            if (!isRunning() || !sendWaitingWrite()) {
                return false;
            }
            const ReadBlock part = todo.back();
            todo.pop_back();
            auto exchanged = read(part);
            if (!exchanged) {
                return false;
            }
            Exchange& done = exchanged.value();
            const bool refused = isRefusal(done.answer);
            if (const auto more = refused ? BlockSplit::halves(part, plan.pieces) : std::nullopt) {
                ++splitting_->line.refusals;
                splitting_->line.duration += done.duration;
                splitting_->refusals.push_back({part, more->first, more->second});
                todo.insert(todo.end(), {more->second, more->first});
                continue;
            }
            note(plan, part, done.answer, refused);
            if (!report(plan.id, part, done)) {
                return false;
            }
        }
        splitting_->complete = true;
        emit(PollerEvent::PartsRead{plan.id, splitting_->line.block});
        return true;
    }

    void note(const PollPlan& plan, const ReadBlock& part,
              const Result<Bytes, PollFailureError>& answer, bool refused) {
        Splitting& split = *splitting_;
        split.parts.push_back(part);
        if (refused) {
            split.refused.push_back(part);
        }
        const bool failed = !refused && !readData(answer, part);
        if (!refused && !failed) {
            split.answered.push_back(part);
        }
        // A part that never answered may still hide a missing address; read by itself later it
        // would never be split, so the whole block is tried again at the next reading instead.
        if (failed && BlockSplit::piecesIn(part, plan.pieces).size() > 1) {
            split.keep = false;
        }
    }

    // Delivers the line saying the block is read in parts, then the events held behind it. A
    // split cut short names only the pieces refused so far: its gaps were not all read around.
    Splitting release() {
        Splitting split = std::move(*splitting_);
        splitting_.reset();
        split.line.missing = BlockSplit::refusedRuns(
            split.line.block,
            split.complete ? std::span<const BlockSplit::Refusal>(split.refusals)
                           : std::span<const BlockSplit::Refusal>(),
            split.refused, split.answered);
        deliver(onEvent_, split.line, split.refusedAt);
        for (PollerEvent& event : split.held) {
            deliver(onEvent_, std::move(event.value), event.time);
        }
        return split;
    }

    static Result<ReadData, PollFailureError>
    readData(const Result<Bytes, PollFailureError>& answer, const ReadBlock& block) {
        if (!answer) {
            return answer.error();
        }
        auto data = PDU::parseRead(answer.value(), block.table, block.count);
        if (!data) {
            return PollFailureError{data.error().pollFailure()};
        }
        return std::move(data).value();
    }

    bool send(const Job::Write& write) {
        if (write.unit == RTUFrame::broadcastUnit) {
            return broadcast(write);
        }
        auto exchanged = exchange(write.pdu, write.unit);
        if (!exchanged) {
            return lose();
        }
        Exchange& done = exchanged.value();
        Result<void, PollFailureError> result;
        if (!done.answer.ok()) {
            result = done.answer.error();
        } else if (auto checked = PDU::checkWrite(done.answer.value(), write.pdu); !checked) {
            result = PollFailureError{checked.error().pollFailure()};
        }
        Aftermath after = settle(done.answer);
        emit(PollerEvent::Wrote{write.token, write.unit, result, std::move(done.request),
                                std::move(done.response), done.duration, done.waited,
                                after.seconds},
             done.ended);
        return reportLate(std::move(after));
    }

    // After an answer that never came or came defective, whatever the device still sends for
    // that request is kept from the next one. Costs nothing after a good answer. Done before the
    // failure is reported, so that its event can say how long the line stayed taken.
    Aftermath settle(const Result<Bytes, PollFailureError>& answer) {
        if (answer.ok()) {
            return {};
        }
        const Clock::time_point start = Clock::now();
        auto late = answer.error().failure.kind == PollFailure::Kind::timeout
                        ? link_->lateAnswer(timeout_)
                        : link_->restOfAnswer();
        quietSince_ = Clock::now();
        return {std::move(late), secondsSince(start)};
    }

    // Reports what came late, right after its failed request. False when the port was lost.
    bool reportLate(Aftermath after) {
        if (!after.late) {
            return lose();
        }
        if (!after.late.value().empty()) {
            emit(PollerEvent::LateAnswer{std::move(after.late).value()});
        }
        return true;
    }

    // The part of the link's silence before a request that it still waits at start: the line
    // must have been quiet that long since the last frame or answer, and before the link's first
    // request nothing went over it.
    double silenceLeft(Clock::time_point start) const {
        if (!quietSince_) {
            return 0;
        }
        const double silence = link_->interFrameDelay();
        const double quiet = std::chrono::duration<double>(start - *quietSince_).count();
        return std::clamp(silence - quiet, 0.0, silence);
    }

    // No device answers unit 0; the link pauses for the turnaround instead.
    bool broadcast(const Job::Write& write) {
        Bytes frame = RTUFrame::build(RTUFrame::broadcastUnit, write.pdu);
        const Clock::time_point start = Clock::now();
        const double waited = silenceLeft(start);
        auto sent = link_->transact(frame, false, timeout_);
        quietSince_ = Clock::now();
        const PollerEvent::Time ended = std::chrono::system_clock::now();
        const double duration = secondsSince(start);
        Result<void, PollFailureError> result;
        if (!sent) {
            if (!sent.error().is<SerialLinkError::Timeout>()) {
                return lose();
            }
            // The adapter never took the frame: not a success.
            result = PollFailureError{PollFailure::timeout()};
        }
        emit(PollerEvent::Wrote{write.token,
                                RTUFrame::broadcastUnit,
                                result,
                                std::move(frame),
                                {},
                                duration,
                                waited},
             ended);
        return true;
    }

    // Any link error but a time-out is the loss of the port and comes back as the error.
    Result<Exchange, SerialLinkError> exchange(ByteView pdu, std::uint8_t unit) {
        Exchange done;
        done.request = RTUFrame::build(unit, pdu);
        const Clock::time_point start = Clock::now();
        done.waited = silenceLeft(start);
        auto answer = link_->transact(done.request, true, timeout_);
        quietSince_ = Clock::now();
        done.ended = std::chrono::system_clock::now();
        done.duration = secondsSince(start);
        if (!answer) {
            if (!answer.error().is<SerialLinkError::Timeout>()) {
                return answer.error();
            }
            return done;
        }
        done.response = std::move(answer).value();
        auto parsed = RTUFrame::parseResponse(done.response, unit, pdu.front());
        if (parsed.ok()) {
            done.answer = std::move(parsed).value();
        } else {
            done.answer = PollFailureError{parsed.error().pollFailure()};
        }
        return done;
    }

    // Reports the loss once, unless the user stopped reading meanwhile; always false.
    bool lose() {
        bool wasRunning = false;
        {
            const std::lock_guard lock(state_->mutex);
            wasRunning = std::exchange(state_->running, false);
        }
        // A split under way is reported as far as it went, so that nothing follows the loss.
        if (splitting_) {
            release();
        }
        if (wasRunning) {
            emit(PollerEvent::SerialLost{path_});
        }
        return false;
    }

    void emit(PollerEvent::Case value, PollerEvent::Time time = std::chrono::system_clock::now()) {
        if (splitting_) {
            splitting_->held.push_back({std::move(value), time});
        } else {
            deliver(onEvent_, std::move(value), time);
        }
    }

    // How a block the device refused whole is read, and the pieces inside it when it was split.
    struct Split {
        std::vector<ReadBlock> pieces;
        std::vector<ReadBlock> parts;
    };

    std::shared_ptr<State> state_;
    std::unique_ptr<SerialLink> link_;
    std::string path_;
    double timeout_;
    EventHandler onEvent_;
    Mode mode_;
    // Kept for the whole reading: the device's missing addresses do not come back.
    std::unordered_map<Uuid, std::unordered_map<ReadBlock, Split>> splits_;
    std::optional<Splitting> splitting_;
    // When the link last had the line, by the engine's clock; none before its first request.
    std::optional<Clock::time_point> quietSince_;
};

PollerEngine::PollerEngine(std::string path, SerialConfiguration configuration, double timeout,
                           bool allowsTestDevice, EventHandler onEvent, Mode mode)
    : path_(std::move(path))
    , configuration_(configuration)
    , timeout_(timeout)
    , allowsTestDevice_(allowsTestDevice)
    , onEvent_(std::move(onEvent))
    , mode_(mode)
    , state_(std::make_shared<State>()) {}

PollerEngine::~PollerEngine() {
    stop();
    // stop has waited already; a thread that has not ended by then ends alone.
    if (thread_.joinable()) {
        thread_.detach();
    }
}

Result<void, SerialLinkError> PollerEngine::start(std::vector<PollPlan> plans) {
    if (started_) {
        return {};
    }
    auto link = std::make_unique<SerialLink>(path_, configuration_, allowsTestDevice_);
    link->cancelWith(state_->cancel);
    if (mode_ == Mode::listening) {
        // Before open, so that not even a stray request can reach the other master's line.
        link->refuseToSend();
    }
    if (auto opened = link->open(); !opened) {
        return opened.error();
    }
    started_ = true;
    {
        const std::lock_guard lock(state_->mutex);
        state_->running = true;
        state_->plans = std::move(plans);
    }
    // Delivered before the thread exists, so that it precedes every event of the thread.
    deliver(onEvent_, PollerEvent::Started{});
    auto worker =
        std::make_unique<Worker>(state_, std::move(link), path_, timeout_, onEvent_, mode_);
    thread_ = std::thread([worker = std::move(worker)] { worker->run(); });
    return {};
}

void PollerEngine::update(std::vector<PollPlan> plans) {
    if (mode_ == Mode::listening) {
        return;
    }
    {
        const std::lock_guard lock(state_->mutex);
        state_->plans = std::move(plans);
        std::erase_if(state_->nextDue, [&](const auto& entry) {
            return std::none_of(state_->plans.begin(), state_->plans.end(),
                                [&](const PollPlan& plan) { return plan.id == entry.first; });
        });
    }
    state_->wake.raise();
}

void PollerEngine::write(Bytes pdu, std::uint8_t unit, Uuid token) {
    // Outside the contract: every write request starts with its function code. A listener never
    // sends.
    if (pdu.empty() || mode_ == Mode::listening) {
        return;
    }
    {
        const std::lock_guard lock(state_->mutex);
        state_->writes.push_back({token, unit, std::move(pdu)});
    }
    state_->wake.raise();
}

void PollerEngine::stop() {
    {
        const std::lock_guard lock(state_->mutex);
        state_->running = false;
    }
    // The transaction under way ends at once; an answer that would still have come is dropped
    // with the link, so a new engine can open the port straight away.
    state_->cancel.raise();
    // Destroyed from its own thread (a direct handler): waiting for itself would never end.
    if (thread_.joinable() && thread_.get_id() != std::this_thread::get_id()) {
        // Ending takes only the link's close; the bound is for a driver that hangs in it.
        joinThread(Clock::now() + SerialTiming::duration(timeout_) + 1s);
    }
}

void PollerEngine::joinThread(Clock::time_point deadline) {
    bool finished = false;
    {
        std::unique_lock lock(state_->mutex);
        finished =
            state_->condition.wait_until(lock, deadline, [this] { return state_->finished; });
    }
    if (finished && thread_.joinable()) {
        thread_.join();
    }
}

} // namespace kestrin
