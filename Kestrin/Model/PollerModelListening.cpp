#include "NumberStyle.h"
#include "PollerModel.h"

#include <QDateTime>

// Listening: the engine hears another master's requests and answers; they reach the datapoints,
// the counters and the log as the engine's own reads would.
namespace kestrin {

void PollerModel::listen() {
    // An offer fitted to the last reading's answers would change how long a heard request waits
    // for its answer, and heard traffic never makes one of its own.
    if (begin(true)) {
        setTimeoutOffer(std::nullopt);
    }
}

void PollerModel::toggleListening() {
    if (listening_) {
        stop();
    } else if (state_ == PollerState::stopped && !engine_) {
        listen();
    }
}

// Listening reads nothing of its own, so it needs no datapoints.
std::optional<PollerModel::StartObstacle> PollerModel::listenObstacle() const {
    const std::optional<StartObstacle> obstacle = startObstacle();
    return obstacle == StartObstacle::nothingToRead ? std::nullopt : obstacle;
}

void PollerModel::handleHeard(const PollerEvent::Heard& heard, const QDateTime& time) {
    // Only a broadcast succeeds without an answer; Responses counts answers heard.
    countRequest(failureOf(heard.outcome), heard.outcome && heard.response.empty());
    std::vector<Uuid> changed;
    if (heard.range) {
        for (const Poll& poll : polls_) {
            if (poll.enabled) {
                applyHeard(heard, *heard.range, poll.datapoints, time, changed);
            }
        }
        statusDidChange(changed);
    }
    logHeard(heard, time, changed);
}

void PollerModel::applyHeard(const PollerEvent::Heard& heard, const ReadBlock& range,
                             std::span<const Datapoint> points, const QDateTime& time,
                             std::vector<Uuid>& changed) {
    if (!heard.outcome) {
        // A failed write leaves the datapoints as they were: what the device holds now is not
        // known.
        if (!heard.isWrite) {
            markFailed(points, range, heard.outcome.error().failure, time, changed);
        }
        return;
    }
    // A broadcast, and a function without data, has nothing to give.
    const std::optional<ReadData>& data = heard.outcome.value();
    if (!data) {
        return;
    }
    if (heard.isWrite) {
        takeWritten(points, range, *data, time, changed);
    } else {
        takeValues(points, range, *data, time, heard.duration, changed);
    }
}

void PollerModel::logHeard(const PollerEvent::Heard& heard, const QDateTime& time,
                           std::span<const Uuid> updated) {
    if (auto line = LogLine::heardRequest(heard.range, heard.request, logOptions_)) {
        appendLog(std::move(*line), dated(heard.requestTime));
    }
    if (!heard.outcome) {
        appendLog(LogLine::heardFailure(heard.range, heard.request, heard.outcome.error().failure,
                                        timeoutMs_),
                  time);
        // A defective answer's bytes are what a listener has to tell what went wrong; a
        // time-out has none, and its request is on the line above.
        auto frames = LogLine::writeFrames(heard.request, heard.response, logOptions_);
        if (frames && !heard.response.empty()) {
            appendLog(std::move(*frames), time);
        }
        return;
    }
    if (auto line =
            LogLine::heardAnswer(heard.request, heard.response, heard.duration, logOptions_)) {
        appendLog(std::move(*line), time);
    }
    // Another master's writes are no problem of this one's, unlike a write the user made.
    if (!heard.isWrite || logOptions_.onlyProblems) {
        return;
    }
    for (const Uuid& id : updated) {
        const Datapoint* point = datapoint(id);
        const PointStatus& entry = status_.at(id);
        if (point != nullptr && entry.value) {
            appendLog(LogLine::writeConfirmed(*point, *entry.value, NumberStyle::current(),
                                              heard.duration),
                      time);
        }
    }
}

} // namespace kestrin
