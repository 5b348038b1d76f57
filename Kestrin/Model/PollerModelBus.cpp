#include "AdapterFacts.h"
#include "BusSummary.h"
#include "L10n.h"
#include "PollerEngine.h"
#include "PollerModel.h"

// The bus meter: fed by the engine's events while reading, summed up in the log when reading
// stops, and the source of the time-out offer.
namespace kestrin {

void PollerModel::beginMeasuring() {
    busMeter_.emplace(serial_, 0.0, buildPlans());
    measureHandover();
    measuredUntil_.reset();
    timeoutOffered_ = false;
    setTimeoutOffer(std::nullopt);
}

void PollerModel::measureHandover() {
    if (!busMeter_) {
        return;
    }
    busMeter_->setHandover(handoverSeconds());
}

double PollerModel::handoverSeconds() const {
    const std::optional<AdapterFacts::LatencyTimer> timer =
        AdapterFacts::latencyTimer(selectedPath_, environment_.systemRoot);
    return timer ? timer->milliseconds / 1000.0 : 0.0;
}

void PollerModel::replan() {
    // A listening engine reads no plans, and the meter keeps the last reading's.
    if (!engine_ || listening_) {
        return;
    }
    std::vector<PollPlan> plans = buildPlans();
    if (busMeter_) {
        busMeter_->setPlans(plans);
    }
    engine_->update(std::move(plans));
}

void PollerModel::measure(const PollerEvent& event) {
    // Heard traffic is another master's, timed by its own time-outs: it says nothing of how
    // Kestrin's reading uses the line or which time-out would fit it.
    if (!busMeter_ || listening_) {
        return;
    }
    if (event.is<PollerEvent::Started>()) {
        // A port reopened after a loss may have another adapter behind it, or one whose timer
        // was changed meanwhile, and reads the plans as they were when it reopened.
        measureHandover();
        busMeter_->setPlans(buildPlans());
    }
    busMeter_->add(event);
    // Looked at each time a unit has answered enough more, not at every answer: working out the
    // spreads takes longer than handling an answer.
    const auto* read = event.as<PollerEvent::Read>();
    if (!timeoutOffered_ && read != nullptr && read->result &&
        busMeter_->answers(read->block.unit) % TimeoutOffer::answersNeeded == 0) {
        const std::vector<BusMeter::UnitFigures> units = busMeter_->units();
        if (auto offer = TimeoutOffer::check(units, busMeter_->timeouts(), timeoutMs_)) {
            timeoutOffered_ = true;
            setTimeoutOffer(offer);
        }
    }
}

std::optional<double> PollerModel::busyShare() const {
    if (!busMeter_) {
        return std::nullopt;
    }
    return busMeter_->busyShare(measuredUntil_.value_or(std::chrono::system_clock::now()));
}

void PollerModel::endMeasuring() {
    measuredUntil_ = std::chrono::system_clock::now();
    if (!busMeter_ || !environment_.busSummaryInLog) {
        return;
    }
    for (std::string& line : BusSummary::lines(*busMeter_)) {
        appendLog({{LogSegment::Kind::text, std::move(line)}});
    }
}

void PollerModel::setTimeoutOffer(std::optional<TimeoutOffer> offer) {
    if (offer != timeoutOffer_) {
        timeoutOffer_ = offer;
        emit timeoutOfferChanged();
    }
}

void PollerModel::acceptTimeoutOffer() {
    if (!timeoutOffer_) {
        return;
    }
    const int timeoutMs = timeoutOffer_->timeoutMs;
    setTimeoutMs(timeoutMs);
    setTimeoutOffer(std::nullopt);
    appendLog({{LogSegment::Kind::text, L10n::texts().bus.timeoutSet(timeoutMs)}});
}

void PollerModel::dismissTimeoutOffer() {
    setTimeoutOffer(std::nullopt);
}

} // namespace kestrin
