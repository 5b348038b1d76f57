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
// published on the main thread. The findings belong to the port and the poll they were found
// for: choosing another port or poll (another project chooses another poll) drops them.
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
        // Why the port could not be used; worded where it is shown, as the texts of the scan's
        // thread are not the user's.
        std::optional<SerialLinkError> error;
        bool cancelled = false;
    };

    explicit DeviceFinder(PollerModel& model, QObject* parent = nullptr);
    // Cancels a running scan and waits for its thread, which closes the port first.
    ~DeviceFinder() override;
    DeviceFinder(const DeviceFinder&) = delete;
    DeviceFinder& operator=(const DeviceFinder&) = delete;

    // Each starts a scan and returns true, or refuses (false) when one runs, the model is not
    // stopped, the port is lent already or no port is chosen. The last findings go.
    bool findUnits(int first, int last, double timeout);
    bool sweepSettings(const std::vector<std::uint8_t>& units);
    bool mapRegisters(const RegisterMapOptions& options);
    // Ends the running scan at once; what it found so far is kept.
    void cancel();

    bool isRunning() const noexcept { return worker_.joinable(); }
    // The model is stopped, a port is chosen and no scan (of this finder or another) has it.
    bool canScan() const;
    const std::optional<Progress>& progress() const noexcept { return progress_; }
    const std::optional<Findings>& findings() const noexcept { return findings_; }

    // The baud rate and frame a sweep found on the port still chosen become the project's; the
    // RS-485 direction stays the project's own. After a late answer the project's time-out is
    // raised to what that answer needed, where it is shorter. False when refused.
    bool canUseSettings() const;
    bool useSettings();

    // A map of whole tables can find tens of thousands of addresses, which as datapoints would
    // bury the poll; more than this are not added at once.
    static constexpr int mostToAdd = 10000;
    static int datapointCount(const RegisterMap& map);
    // The addresses a map found become datapoints of the selected poll, as an import adds them,
    // once; how many were added, nothing when refused.
    bool canAddToPoll() const;
    std::optional<int> addToPoll();

signals:
    void runningChanged();
    void progressChanged();
    void findingsChanged();

private:
    // Runs on the scan's thread; reports progress through report.
    using Job = std::function<Findings(const std::function<void(const Progress&)>& report)>;

    bool launch(Job job);
    void finish(Findings findings);
    void forget();
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
    bool mapAdded_ = false;
};

} // namespace kestrin
