#include "PollerEngine.h"
#include "PollerModel.h"

#include <QTimer>

// Resume after loss: port discovery and the watch on the lost path both arm the same delayed
// restart, so a port returns the same way whoever noticed it first.
namespace kestrin {

void PollerModel::portLost(const std::string& path) {
    // The engine has ended on its own; it only needs letting go.
    engine_.reset();
    setState(PollerState::serialLost);
    appendLog(LogLine::portLost(path));
    // The path resume opens, which is also the one the engine lost: it cannot change meanwhile.
    lostPortWatcher_ = std::make_unique<PortPathWatcher>(selectedPath_, openedLink_);
    connect(lostPortWatcher_.get(), &PortPathWatcher::returned, this, &PollerModel::armResume);
    // An adapter replugged before the engine noticed is back already; nothing will announce it.
    if (lostPortWatcher_->isOpenable()) {
        armResume();
    }
}

void PollerModel::armResume() {
    QTimer::singleShot(environment_.delays.resume, this, &PollerModel::resumeAfterLoss);
}

void PollerModel::resumeAfterLoss() {
    if (state_ != PollerState::serialLost || engine_) {
        return;
    }
    // A failure stays silent: the next arrival of the port tries again.
    if (startEngine()) {
        lostPortWatcher_.reset();
        appendLog(LogLine::portReopened());
    }
}

} // namespace kestrin
