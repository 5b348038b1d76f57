#include "AdapterFacts.h"
#include "L10n.h"
#include "LogLine.h"
#include "PollerModel.h"

#include <QSettings>
#include <QStringList>

// The latency notice: looked for as reading starts, remembered per adapter once dismissed.
namespace kestrin {

namespace {

constexpr auto dismissedKey = "latencyNoticeDismissed";

} // namespace

void PollerModel::checkLatency() {
    const std::string adapter = LatencyNotice::adapterKey(portIdentity_, selectedPath_);
    const bool dismissed =
        environment_.preferences && environment_.preferences->value(QLatin1String(dismissedKey))
                                        .toStringList()
                                        .contains(QString::fromStdString(adapter));
    setLatencyNotice(dismissed ? std::nullopt
                               : LatencyNotice::check(selectedPath_, adapter, buildPlans(), serial_,
                                                      environment_.systemRoot));
}

void PollerModel::setLatencyNotice(std::optional<LatencyNotice> notice) {
    if (notice != latencyNotice_) {
        latencyNotice_ = std::move(notice);
        emit latencyNoticeChanged();
    }
}

void PollerModel::dismissLatencyNotice() {
    if (!latencyNotice_) {
        return;
    }
    if (environment_.preferences) {
        QStringList dismissed =
            environment_.preferences->value(QLatin1String(dismissedKey)).toStringList();
        dismissed.append(QString::fromStdString(latencyNotice_->adapter));
        dismissed.removeDuplicates();
        storePreference(dismissedKey, dismissed);
    }
    setLatencyNotice(std::nullopt);
}

void PollerModel::setLatencyTimerToBest() {
    if (!latencyNotice_) {
        return;
    }
    const std::string path = latencyNotice_->path;
    if (const std::optional<int> code = AdapterFacts::setLatencyTimer(
            path, LatencyNotice::bestTimerMs, environment_.systemRoot)) {
        setErrorMessage(
            L10n::texts().adapter.latencySetFailed(path, L10n::Errors::systemMessage(*code)));
        return;
    }
    setLatencyNotice(std::nullopt);
    appendLog(LogLine::latencyTimerSet(path));
    // The adapter hands answers over sooner from now on, which is no faster device. A listener's
    // meter is the last reading's, measured with the timer as it was.
    if (engine_ && !listening_) {
        measureHandover();
    }
}

} // namespace kestrin
