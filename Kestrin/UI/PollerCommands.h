#pragma once

#include "L10n.h"
#include "PollerModel.h"

#include <string>

namespace kestrin {

// Start and Listen as the top bar's buttons and the Poller menu offer them: each stops what it
// started and is off while the other runs. A port lost while listening still stops listening.
// Stopped is stopped, whatever the model says of listening while it announces the stop.
struct PollerCommands {
    bool reading = false;
    bool listening = false;
    bool startEnabled = false;
    bool listenEnabled = false;

    static PollerCommands of(const PollerModel& model) {
        const bool stopped = model.state() == PollerState::stopped;
        const bool listening = !stopped && model.isListening();
        const bool reading = !stopped && !listening;
        return {.reading = reading,
                .listening = listening,
                .startEnabled = reading || (stopped && model.canStart()),
                .listenEnabled = listening || (stopped && model.canListen())};
    }

    // Why the line's settings are off, naming what to stop; empty while stopped.
    std::string lockedTip() const {
        const auto& header = L10n::texts().header;
        return listening ? header.lockedWhileListening()
               : reading ? header.lockedWhileRunning()
                         : std::string();
    }
};

} // namespace kestrin
