#include "PollerModel.h"

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

} // namespace kestrin
