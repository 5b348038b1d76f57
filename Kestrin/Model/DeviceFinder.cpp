#include "DeviceFinder.h"

#include "L10n.h"
#include "PollerModel.h"
#include "RTUFrame.h"
#include "SerialLink.h"

#include <algorithm>
#include <pthread.h>

namespace kestrin {

namespace {

using Report = std::function<void(const DeviceFinder::Progress&)>;

// A cancelled scan is no failure: it ends with what it found.
void recordFailure(DeviceFinder::Findings& findings, const SerialLinkError& error) {
    if (error.is<SerialLinkError::Cancelled>()) {
        findings.cancelled = true;
    } else {
        findings.error = L10n::Errors::describe(error);
    }
}

} // namespace

DeviceFinder::DeviceFinder(PollerModel& model, QObject* parent)
    : QObject(parent)
    , model_(&model) {}

DeviceFinder::~DeviceFinder() {
    if (worker_.joinable()) {
        cancel_.raise();
        worker_.join();
        if (model_) {
            model_->setPortLent(false);
        }
    }
}

bool DeviceFinder::canScan() const {
    return model_ && !isRunning() && model_->state() == PollerState::stopped &&
           !model_->isEngineHeld() && !model_->selectedPath().empty();
}

std::unique_ptr<SerialLink> DeviceFinder::openLink(Findings& findings) const {
    auto link = std::make_unique<SerialLink>(path_, serial_, testDevice_);
    link->cancelWith(cancel_);
    if (auto opened = link->open(); !opened) {
        recordFailure(findings, opened.error());
        return nullptr;
    }
    return link;
}

bool DeviceFinder::findUnits(int first, int last, double timeout) {
    std::vector<std::uint8_t> units;
    for (int unit = std::max<int>(first, RTUFrame::unitRange.first);
         unit <= std::min<int>(last, RTUFrame::unitRange.last); ++unit) {
        units.push_back(static_cast<std::uint8_t>(unit));
    }
    if (units.empty()) {
        return false;
    }
    return launch([this, units, timeout](const Report& report) {
        Findings findings;
        findings.scan = Scan::units;
        if (const auto link = openLink(findings)) {
            const auto scanned =
                UnitScan::run(*link, units, timeout, [&](const UnitScan::Progress& progress) {
                    // Collected as they come, so that a cancelled scan still shows them.
                    findings.units.insert(findings.units.end(), progress.answers.begin(),
                                          progress.answers.end());
                    // A late answer arrives after the units asked behind it.
                    std::ranges::sort(findings.units, {}, &UnitScan::Answer::unit);
                    report(
                        {progress.done, progress.total, progress.remainingSeconds, findings.units});
                });
            if (!scanned) {
                recordFailure(findings, scanned.error());
            }
        }
        return findings;
    });
}

bool DeviceFinder::sweepSettings(const std::vector<std::uint8_t>& units) {
    if (units.empty()) {
        return false;
    }
    return launch([this, units](const Report& report) {
        Findings findings;
        findings.scan = Scan::settings;
        const SettingsSweep::Line line{path_, testDevice_, &cancel_};
        const auto swept = SettingsSweep::run(
            line, serial_, units, std::nullopt, [&](const SettingsSweep::Progress& progress) {
                report({progress.done, progress.total, progress.remainingSeconds, {}});
            });
        if (swept) {
            findings.settings = swept.value();
        } else {
            recordFailure(findings, swept.error());
        }
        return findings;
    });
}

bool DeviceFinder::mapRegisters(const RegisterMapOptions& options) {
    if (options.first > options.last || options.tables.empty()) {
        return false;
    }
    return launch([this, options](const Report& report) {
        Findings findings;
        findings.scan = Scan::registers;
        if (const auto link = openLink(findings)) {
            auto mapped =
                kestrin::mapRegisters(*link, options, [&](const RegisterMapProgress& progress) {
                    report({progress.requests, 0, progress.remainingSeconds, {}});
                });
            if (mapped) {
                findings.cancelled = !mapped.value().complete && cancel_.isRaised();
                findings.map = std::move(mapped).value();
            } else {
                recordFailure(findings, mapped.error());
            }
        }
        return findings;
    });
}

bool DeviceFinder::launch(Job job) {
    if (!canScan()) {
        return false;
    }
    path_ = model_->selectedPath();
    serial_ = model_->serial();
    testDevice_ = model_->selectedPortIsTestDevice();
    cancel_.clear();
    model_->setPortLent(true);
    progress_.reset();
    emit progressChanged();
    worker_ = std::thread([this, job = std::move(job)] {
        pthread_setname_np(pthread_self(), "Kestrin");
        const auto report = [this](const Progress& progress) {
            QMetaObject::invokeMethod(
                this,
                [this, progress] {
                    progress_ = progress;
                    emit progressChanged();
                },
                Qt::QueuedConnection);
        };
        // The job's link is closed when it returns, so the port is free once this arrives.
        Findings findings = job(report);
        QMetaObject::invokeMethod(
            this, [this, findings = std::move(findings)] { finish(findings); },
            Qt::QueuedConnection);
    });
    emit runningChanged();
    return true;
}

void DeviceFinder::finish(Findings findings) {
    worker_.join();
    if (model_) {
        model_->setPortLent(false);
    }
    findings_ = std::move(findings);
    emit findingsChanged();
    emit runningChanged();
}

void DeviceFinder::cancel() {
    if (isRunning()) {
        cancel_.raise();
    }
}

bool DeviceFinder::canUseSettings() const {
    return model_ && !isRunning() && findings_ && findings_->settings &&
           model_->state() == PollerState::stopped;
}

void DeviceFinder::useSettings() {
    if (canUseSettings()) {
        model_->setSerial(findings_->settings->serial);
    }
}

bool DeviceFinder::canAddToPoll() const {
    return model_ && findings_ && findings_->map && findings_->map->found() &&
           model_->selectedPoll() != nullptr;
}

int DeviceFinder::addToPoll() {
    if (!canAddToPoll()) {
        return 0;
    }
    std::vector<Datapoint> datapoints = kestrin::mappedDatapoints(*findings_->map);
    const auto count = static_cast<int>(datapoints.size());
    model_->importDatapoints(std::move(datapoints), PollOperations::ImportChoice::add);
    return count;
}

} // namespace kestrin
