#include "DatapointLabel.h"
#include "L10n.h"
#include "NumberStyle.h"
#include "PollerEngine.h"
#include "PollerModel.h"
#include "ReadPlanner.h"
#include "WriteRequest.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <unordered_set>
#include <utility>

#include <QDateTime>
#include <QTimeZone>

// Reading: the engine's life, its events, and writes.
namespace kestrin {

namespace {

using Counter = std::int64_t PollerStatistics::*;

// The statistics with each of counters one higher.
PollerStatistics counted(PollerStatistics statistics, std::initializer_list<Counter> counters) {
    for (const Counter counter : counters) {
        ++(statistics.*counter);
    }
    return statistics;
}

Counter failureCounter(PollFailure::Kind kind) {
    switch (kind) {
    case PollFailure::Kind::exception:
        return &PollerStatistics::exceptions;
    case PollFailure::Kind::timeout:
        return &PollerStatistics::timeouts;
    case PollFailure::Kind::crcMismatch:
    case PollFailure::Kind::malformed:
    case PollFailure::Kind::unexpectedUnit:
    case PollFailure::Kind::unexpectedFunction:
        break;
    }
    return &PollerStatistics::errors;
}

// Calls take with each datapoint of points that block covers whole and its value in data.
template <typename Take>
void forEachDecoded(std::span<const Datapoint> points, const ReadBlock& block, const ReadData& data,
                    Take take) {
    for (const Datapoint& point : points) {
        if (!block.covers(point)) {
            continue;
        }
        if (auto decoded = ReadPlanner::value(point, block, data)) {
            take(point, std::move(*decoded));
        }
    }
}

} // namespace

std::vector<PollPlan> PollerModel::buildPlans() const {
    std::vector<PollPlan> plans;
    for (const Poll& poll : polls_) {
        if (!poll.enabled) {
            continue;
        }
        plans.push_back({poll.id, static_cast<double>(poll.intervalMs) / 1000.0,
                         ReadPlanner::blocks(poll.datapoints, maxGap_),
                         ReadPlanner::pieces(poll.datapoints, maxGap_)});
    }
    return plans;
}

// Both the user's start and the resume after a loss come here, so neither takes a lent port.
bool PollerModel::startEngine() {
    if (portLent_) {
        return false;
    }
    auto engine = makeEngine();
    if (auto started = engine->start(buildPlans()); !started) {
        if (state_ == PollerState::stopped) {
            setErrorMessage(L10n::Errors::describe(started.error()));
        }
        return false;
    }
    engine_ = std::move(engine);
    openedLink_ = PortPathWatcher::linkIdentity(selectedPath_);
    return true;
}

void PollerModel::start() {
    if (begin(false)) {
        beginMeasuring();
    }
}

bool PollerModel::begin(bool listening) {
    if (state_ != PollerState::stopped || engine_) {
        return false;
    }
    if (selectedPath_.empty()) {
        setErrorMessage(L10n::texts().errors.selectPortFirst());
        return false;
    }
    // The engine is made in the mode this says, and a resume after a loss makes the same.
    listening_ = listening;
    if (!startEngine()) {
        listening_ = false;
        return false;
    }
    // Whatever adapter now answers to the chosen name is the one being read, and the one to find
    // again if it is lost.
    if (const SerialPortInfo* port = listedPort(selectedPath_);
        port != nullptr && !isTestDevice(selectedPath_)) {
        if (auto identity = PortIdentity::of(*port); identity && identity != portIdentity_) {
            storePortIdentity(std::move(identity));
        }
    }
    setStatistics({});
    consecutiveFailures_ = 0;
    setShowNoResponseHint(false);
    noResponseHintDismissed_ = false;
    return true;
}

void PollerModel::stop() {
    if (state_ == PollerState::stopped && !engine_) {
        return;
    }
    if (engine_) {
        engine_->stop();
        // Every answer the engine took is queued by now; it belongs before the line that says
        // reading stopped, and in the statistics.
        flushEvents();
        engine_.reset();
    }
    lostPortWatcher_.reset();
    // Cleared before the state changes: whatever redraws on it must not see a stopped listener.
    const bool wasListening = std::exchange(listening_, false);
    setState(PollerState::stopped);
    setShowNoResponseHint(false);
    pendingWrites_.clear();
    if (wasListening) {
        // The bus meter keeps the last reading's figures, summed up when that reading stopped.
        appendLog(LogLine::listeningStopped());
        return;
    }
    appendLog(LogLine::readingStopped());
    endMeasuring();
}

void PollerModel::toggle() {
    if (listening_) {
        return;
    }
    if (state_ == PollerState::stopped && !engine_) {
        start();
    } else {
        stop();
    }
}

void PollerModel::dismissNoResponseHint() {
    noResponseHintDismissed_ = true;
    setShowNoResponseHint(false);
}

void PollerModel::setPortLent(bool lent) {
    if (lent != portLent_) {
        portLent_ = lent;
        emit stateChanged();
    }
}

void PollerModel::setState(PollerState state) {
    if (state != state_) {
        state_ = state;
        emit stateChanged();
    }
}

void PollerModel::setStatistics(const PollerStatistics& statistics) {
    if (statistics == statistics_) {
        return;
    }
    statistics_ = statistics;
    if (batch_) {
        batch_->statistics = true;
    } else {
        emit statisticsChanged();
    }
}

void PollerModel::setShowNoResponseHint(bool on) {
    if (on != showNoResponseHint_) {
        showNoResponseHint_ = on;
        emit showNoResponseHintChanged();
    }
}

void PollerModel::deliver(std::uint64_t generation, const PollerEvent& event) {
    // A stopped engine's last transaction may still arrive after a new one started, in the same
    // batch as the new one's first.
    if (generation == engineGeneration_) {
        handleInBatch(event);
    }
}

void PollerModel::handleEvent(const PollerEvent& event) {
    handleEvents({&event, 1});
}

void PollerModel::handleEvents(std::span<const PollerEvent> events) {
    beginBatch();
    for (const PollerEvent& event : events) {
        handleInBatch(event);
    }
    endBatch();
}

void PollerModel::beginBatch() {
    if (batch_) {
        ++batch_->nested;
    } else {
        // Assigned rather than emplaced: clang takes a nested struct with member initializers
        // for not default-constructible inside its enclosing class.
        batch_ = EventBatch{};
    }
}

// Views redraw once per batch rather than once per answer.
void PollerModel::endBatch() {
    if (batch_->nested > 0) {
        --batch_->nested;
        return;
    }
    EventBatch batch = std::move(*batch_);
    batch_.reset();
    appendLines(batch.lines);
    if (!batch.changed.empty()) {
        std::unordered_set<Uuid> seen;
        std::erase_if(batch.changed, [&](const Uuid& id) { return !seen.insert(id).second; });
        emit statusChanged(batch.changed);
    }
    if (batch.statistics) {
        emit statisticsChanged();
    }
}

// Engine events are handled only within a batch, which announces the change at its end.
void PollerModel::statusDidChange(const std::vector<Uuid>& datapointIDs) {
    batch_->changed.insert(batch_->changed.end(), datapointIDs.begin(), datapointIDs.end());
}

void PollerModel::handleInBatch(const PollerEvent& event) {
    if (!engine_) {
        return;
    }
    measure(event);
    const QDateTime time = dated(event.time);
    if (event.is<PollerEvent::Started>()) {
        setState(listening_ ? PollerState::listening : PollerState::running);
        appendLog(listening_ ? LogLine::listeningStarted(selectedPath_, serial_.shortDescription())
                             : LogLine::readingStarted(selectedPath_, serial_.shortDescription()),
                  time);
    } else if (const auto* lost = event.as<PollerEvent::SerialLost>()) {
        portLost(lost->path);
    } else if (const auto* read = event.as<PollerEvent::Read>()) {
        handleRead(*read, time);
    } else if (const auto* parts = event.as<PollerEvent::PartsRead>()) {
        // Its parts were reported as they came; counting readings of the plan's blocks sees the
        // block itself once.
        emit blockRead(parts->poll, parts->block, {});
    } else if (const auto* split = event.as<PollerEvent::ReadInParts>()) {
        // Every refused read was a request and an exception answer, though no datapoint shows it.
        for (int i = 0; i < split->refusals; ++i) {
            countRequest(PollFailure::exception(0x02));
        }
        appendLog(LogLine::readInParts(split->block, split->missing), time);
        if (auto frames = LogLine::writeFrames(split->request, split->response, logOptions_)) {
            appendLog(std::move(*frames), time);
        }
    } else if (const auto* wrote = event.as<PollerEvent::Wrote>()) {
        handleWrote(*wrote, time);
    } else if (const auto* late = event.as<PollerEvent::LateAnswer>()) {
        appendLog(LogLine::lateAnswer(late->bytes, logOptions_), time);
    } else if (const auto* heard = event.as<PollerEvent::Heard>()) {
        handleHeard(*heard, time);
    } else if (const auto* unmatched = event.as<PollerEvent::Unmatched>()) {
        appendLog(LogLine::unmatched(unmatched->bytes), time);
    }
}

QDateTime PollerModel::dated(PollerEvent::Time time) {
    return QDateTime::fromMSecsSinceEpoch(
        std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count(),
        QTimeZone::utc());
}

void PollerModel::countRequest(const std::optional<PollFailure>& failure, bool unanswered) {
    const PollerStatistics requested = counted(statistics_, {&PollerStatistics::requests});
    if (!failure) {
        setStatistics(unanswered ? requested : counted(requested, {&PollerStatistics::responses}));
        consecutiveFailures_ = 0;
        return;
    }
    const Counter counter = failureCounter(failure->kind);
    // An exception is an answer as well.
    setStatistics(failure->kind == PollFailure::Kind::exception
                      ? counted(requested, {counter, &PollerStatistics::responses})
                      : counted(requested, {counter}));
    // A listener cannot fix what the hint suggests; the other master's settings decide.
    if (!listening_ && (failure->kind == PollFailure::Kind::timeout ||
                        failure->kind == PollFailure::Kind::crcMismatch)) {
        ++consecutiveFailures_;
        if (consecutiveFailures_ >= 3 && !noResponseHintDismissed_) {
            setShowNoResponseHint(true);
        }
    }
}

void PollerModel::takeValues(std::span<const Datapoint> points, const ReadBlock& block,
                             const ReadData& data, const QDateTime& time, double duration,
                             std::vector<Uuid>& changed) {
    forEachDecoded(
        points, block, data, [&](const Datapoint& point, ReadPlanner::DecodedValue read) {
            status_[point.id] = {read.value, std::move(read.raw), std::nullopt, time, duration};
            changed.push_back(point.id);
            recordSample(point.id, {time, read.value});
        });
}

void PollerModel::takeWritten(std::span<const Datapoint> points, const ReadBlock& block,
                              const ReadData& written, const QDateTime& time,
                              std::vector<Uuid>& changed) {
    forEachDecoded(points, block, written,
                   [&](const Datapoint& point, const ReadPlanner::DecodedValue& decoded) {
                       holdWritten(point.id, decoded.value, time);
                       changed.push_back(point.id);
                   });
}

void PollerModel::holdWritten(const Uuid& datapointID, const Value& value, const QDateTime& time) {
    PointStatus& entry = status_[datapointID];
    entry.value = value;
    entry.failure.reset();
    entry.updated = time;
}

void PollerModel::markFailed(std::span<const Datapoint> points, const ReadBlock& block,
                             PollFailure failure, const QDateTime& time,
                             std::vector<Uuid>& changed) {
    for (const Datapoint& point : points) {
        if (!block.covers(point)) {
            continue;
        }
        PointStatus& entry = status_[point.id];
        entry.failure = failure;
        entry.updated = time;
        changed.push_back(point.id);
    }
}

void PollerModel::handleRead(const PollerEvent::Read& read, const QDateTime& time) {
    // Counted even when its poll was removed while it was in flight: the request went out, and
    // every request counted has its outcome counted too.
    const std::optional<PollFailure> failure = failureOf(read.result);
    countRequest(failure);

    const auto poll = std::find_if(polls_.begin(), polls_.end(), [&](const Poll& candidate) {
        return candidate.id == read.poll;
    });
    if (poll == polls_.end()) {
        return;
    }
    std::vector<Uuid> changed;
    if (failure) {
        markFailed(poll->datapoints, read.block, *failure, time, changed);
        statusDidChange(changed);
        appendLog(LogLine::readFailure(read.block, read.request, *failure, timeoutMs_), time);
    } else {
        takeValues(poll->datapoints, read.block, read.result.value(), time, read.duration, changed);
        statusDidChange(changed);
        if (auto line = LogLine::readAnswer(read.block, read.request, read.response, read.duration,
                                            logOptions_)) {
            appendLog(std::move(*line), time);
        }
    }
    // Last: a listener may stop reading, and its line must follow this answer's.
    emit blockRead(read.poll, read.block, changed);
}

void PollerModel::write(const Datapoint& target, const Value& value) {
    // The write's line comes after the answers that arrived before it, and a port loss among
    // them must be known before the write is handed to the engine.
    flushEvents();
    if (listening_) {
        setWriteError(L10n::texts().notice.stopListeningFirst());
        return;
    }
    if (state_ == PollerState::stopped || !engine_) {
        setWriteError(L10n::texts().notice.startFirst());
        return;
    }
    const std::optional<Bytes> pdu = WriteRequest::pdu(target, value, writeMode_);
    if (!pdu) {
        return;
    }
    const Uuid job = Uuid::random();
    pendingWrites_[job] = {target, value};
    engine_->write(*pdu, target.unitID, job);
    if (auto line =
            LogLine::writeSent(target, pdu->front(), value, NumberStyle::current(), logOptions_)) {
        appendLog(std::move(*line));
    }
}

void PollerModel::handleWrote(const PollerEvent::Wrote& wrote, const QDateTime& time) {
    countRequest(failureOf(wrote.result));

    std::optional<PendingWrite> record;
    if (const auto found = pendingWrites_.find(wrote.token); found != pendingWrites_.end()) {
        record = std::move(found->second);
        pendingWrites_.erase(found);
    }
    const Datapoint* current = record ? datapoint(record->datapoint.id) : nullptr;

    if (wrote.result) {
        if (record && current != nullptr) {
            holdWritten(current->id, record->value, time);
            statusDidChange({current->id});
            appendLog(LogLine::writeConfirmed(*current, record->value, NumberStyle::current(),
                                              wrote.duration),
                      time);
        }
    } else {
        const PollFailure failure = wrote.result.error().failure;
        appendLog(LogLine::writeFailed(current, failure, timeoutMs_), time);
        const std::string name = current != nullptr ? DatapointLabel::name(*current) : "?";
        setWriteError(
            L10n::texts().notice.writeFailed(name, L10n::Log::failure(failure, timeoutMs_)));
    }
    if (auto line = LogLine::writeFrames(wrote.request, wrote.response, logOptions_)) {
        appendLog(std::move(*line), time);
    }
}

} // namespace kestrin
