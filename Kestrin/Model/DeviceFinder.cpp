#include "DeviceFinder.h"

#include "PollerModel.h"
#include "RTUFrame.h"
#include "SerialLink.h"
#include "TimeoutOffer.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <pthread.h>

#include <QSignalBlocker>

namespace kestrin {

namespace {

using Report = std::function<void(const DeviceFinder::Progress&)>;

// A cancelled scan is no failure: it ends with what it found.
void recordFailure(DeviceFinder::Findings& findings, const SerialLinkError& error) {
    if (error.is<SerialLinkError::Cancelled>()) {
        findings.cancelled = true;
    } else {
        findings.error = error;
    }
}

} // namespace

DeviceFinder::DeviceFinder(PollerModel& model, QObject* parent)
    : QObject(parent)
    , model_(&model) {
    connect(&model, &PollerModel::selectedPathChanged, this, &DeviceFinder::forget);
    connect(&model, &PollerModel::selectedPollIDChanged, this, &DeviceFinder::forget);
}

DeviceFinder::~DeviceFinder() {
    if (worker_.joinable()) {
        cancel_.raise();
        worker_.join();
        if (model_) {
            // Told to no one: the finder goes with its window, whose widgets may be half gone.
            const QSignalBlocker quiet(model_.data());
            model_->setPortLent(false);
        }
    }
}

bool DeviceFinder::canScan() const {
    return model_ && !isRunning() && model_->state() == PollerState::stopped &&
           !model_->isEngineHeld() && !model_->isPortLent() && !model_->selectedPath().empty();
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
    forget();
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
    mapAdded_ = false;
    emit findingsChanged();
    emit runningChanged();
}

void DeviceFinder::forget() {
    findings_.reset();
    mapAdded_ = false;
    emit findingsChanged();
}

void DeviceFinder::cancel() {
    if (isRunning()) {
        cancel_.raise();
    }
}

bool DeviceFinder::canUseSettings() const {
    return model_ && !isRunning() && findings_ && findings_->settings &&
           model_->state() == PollerState::stopped && model_->selectedPath() == path_;
}

bool DeviceFinder::useSettings() {
    if (!canUseSettings()) {
        return false;
    }
    const SettingsSweep::Found& found = *findings_->settings;
    SerialConfiguration serial = model_->serial();
    serial.baudRate = found.serial.baudRate;
    serial.dataBits = found.serial.dataBits;
    serial.parity = found.serial.parity;
    serial.stopBits = found.serial.stopBits;
    model_->setSerial(serial);
    if (found.answer.late) {
        // The sweep listens for a late answer until twice its time-out.
        const auto neededMs =
            static_cast<int>(std::ceil(2.0 * UnitScan::defaultTimeout(found.serial) * 1000.0));
        if (model_->timeoutMs() < neededMs) {
            model_->setTimeoutMs(TimeoutOffer::fittingTimeoutMs(neededMs));
        }
    }
    return true;
}

int DeviceFinder::datapointCount(const RegisterMap& map) {
    return std::accumulate(
        map.tables.begin(), map.tables.end(), 0,
        [](int sum, const TableMap& table) { return sum + table.addressCount(); });
}

bool DeviceFinder::canAddToPoll() const {
    return model_ && !mapAdded_ && findings_ && findings_->map && findings_->map->found() &&
           datapointCount(*findings_->map) <= mostToAdd && model_->selectedPoll() != nullptr;
}

std::optional<int> DeviceFinder::addToPoll() {
    if (!canAddToPoll()) {
        return std::nullopt;
    }
    std::vector<Datapoint> datapoints = kestrin::mappedDatapoints(*findings_->map);
    const auto count = static_cast<int>(datapoints.size());
    model_->importDatapoints(std::move(datapoints), PollOperations::ImportChoice::add);
    mapAdded_ = true;
    return count;
}

} // namespace kestrin
