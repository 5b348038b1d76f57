#include "NumberStyle.h"
#include "PollerModel.h"

#include <QDateTime>

// Listening: the engine hears another master's requests and answers; they reach the datapoints,
// the counters and the log as the engine's own reads would.
namespace kestrin {

void PollerModel::listen() {
    begin(true);
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
    const std::optional<PollFailure> failure =
        heard.outcome ? std::nullopt : std::optional(heard.outcome.error().failure);
    countRequest(failure);
    const std::optional<ReadData>* data = heard.outcome ? &heard.outcome.value() : nullptr;
    std::vector<Uuid> changed;
    // A failed write leaves the datapoints as they were: what the device holds now is not known.
    // A broadcast, and a function without a range, has no data to give.
    if (heard.range && (data != nullptr ? data->has_value() : !heard.isWrite)) {
        for (const Poll& poll : polls_) {
            if (!poll.enabled) {
                continue;
            }
            if (failure) {
                markFailed(poll.datapoints, *heard.range, *failure, time, changed);
            } else {
                takeValues(poll.datapoints, *heard.range, **data, time, heard.duration, changed);
            }
        }
        statusDidChange(changed);
    }
    logHeard(heard, time, changed);
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
