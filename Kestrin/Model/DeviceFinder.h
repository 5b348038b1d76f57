#pragma once

#include "RegisterMap.h"
#include "SettingsSweep.h"
#include "UnitScan.h"
#include "WakeSignal.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <QObject>
#include <QPointer>

namespace kestrin {

class PollerModel;
class SerialLink;

// Finds what is on the line of the model's selected port, at its serial settings: which units
// answer, at which settings a silent unit answers, which addresses a unit has. One scan at a
// time, on a thread of its own with a link of its own, so the window stays live; while it runs
// the port is lent out and the model does not start reading. Progress and the findings are
// published on the main thread.
class DeviceFinder : public QObject {
    Q_OBJECT

public:
    enum class Scan { units, settings, registers };

    struct Progress {
        int done = 0;
        // 0 where the end is not known in advance (a map finds its holes as it goes).
        int total = 0;
        double remainingSeconds = 0;
        // A units scan's answers so far, ascending by unit, so that they show as they come.
        std::vector<UnitScan::Answer> units;
    };

    // What the last scan found; the member of its kind holds it.
    struct Findings {
        Scan scan = Scan::units;
        // Ascending by unit.
        std::vector<UnitScan::Answer> units;
        std::optional<SettingsSweep::Found> settings;
        std::optional<RegisterMap> map;
        // Why the port could not be used, as the rest of the program words it.
        std::optional<std::string> error;
        bool cancelled = false;
    };

    explicit DeviceFinder(PollerModel& model, QObject* parent = nullptr);
    // Cancels a running scan and waits for its thread, which closes the port first.
    ~DeviceFinder() override;
    DeviceFinder(const DeviceFinder&) = delete;
    DeviceFinder& operator=(const DeviceFinder&) = delete;

    // Each starts a scan and returns true, or refuses (false) when one runs, the model is not
    // stopped or no port is chosen.
    bool findUnits(int first, int last, double timeout);
    bool sweepSettings(const std::vector<std::uint8_t>& units);
    bool mapRegisters(const RegisterMapOptions& options);
    // Ends the running scan at once; what it found so far is kept.
    void cancel();

    bool isRunning() const noexcept { return worker_.joinable(); }
    // The model is stopped, a port is chosen and no scan runs.
    bool canScan() const;
    const std::optional<Progress>& progress() const noexcept { return progress_; }
    const std::optional<Findings>& findings() const noexcept { return findings_; }

    // The settings a sweep found become the project's.
    bool canUseSettings() const;
    void useSettings();
    // The addresses a map found become datapoints of the selected poll, as an import adds them;
    // how many were added.
    bool canAddToPoll() const;
    int addToPoll();

signals:
    void runningChanged();
    void progressChanged();
    void findingsChanged();

private:
    // Runs on the scan's thread; reports progress through report.
    using Job = std::function<Findings(const std::function<void(const Progress&)>& report)>;

    bool launch(Job job);
    void finish(Findings findings);
    // The selected port at the model's settings, ended by cancel_; nothing and the error in
    // findings when it cannot be opened.
    std::unique_ptr<SerialLink> openLink(Findings& findings) const;

    QPointer<PollerModel> model_;
    std::string path_;
    SerialConfiguration serial_;
    bool testDevice_ = false;
    WakeSignal cancel_;
    std::thread worker_;
    std::optional<Progress> progress_;
    std::optional<Findings> findings_;
};

} // namespace kestrin
