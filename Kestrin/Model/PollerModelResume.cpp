#include "PollerEngine.h"
#include "PollerModel.h"

#include <QTimer>

// Resume after loss: port discovery and the watch on the lost path both arm the same delayed
// restart, so a port returns the same way whoever noticed it first. Discovery may also have found
// the adapter under another name and selected that path instead.
namespace kestrin {

void PollerModel::portLost(const std::string& path) {
    // The engine has ended on its own; it only needs letting go.
    engine_.reset();
    setState(PollerState::serialLost);
    appendLog(LogLine::portLost(path));
    presentAtLoss_.clear();
    for (const SerialPortInfo& port : ports_) {
        if (port.path != selectedPath_) {
            presentAtLoss_.insert(port.path);
        }
    }
    // The path the engine lost; resume opens the selected path, which stays this one unless the
    // adapter turns up under another name.
    lostPortWatcher_ = std::make_unique<PortPathWatcher>(selectedPath_, openedLink_);
    connect(lostPortWatcher_.get(), &PortPathWatcher::returned, this, &PollerModel::armResume);
    // An adapter replugged before the engine noticed is back already, at its path or, once
    // discovery has dropped that path, under another name; nothing will announce it.
    if (lostPortWatcher_->isOpenable() ||
        (rememberedPortAtSelectedPath() == nullptr && selectRememberedAdapter())) {
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
    // The lost path may have come back as another adapter; only the remembered one is read.
    if (listedPort(selectedPath_) != nullptr && rememberedPortAtSelectedPath() == nullptr &&
        !selectRememberedAdapter()) {
        return;
    }
    const bool moved = lostPortWatcher_ && lostPortWatcher_->path() != selectedPath_;
    // A failure stays silent: the next arrival of the port tries again.
    if (startEngine()) {
        lostPortWatcher_.reset();
        appendLog(LogLine::portReopened(moved ? selectedPath_ : std::string_view()));
    }
}

} // namespace kestrin
