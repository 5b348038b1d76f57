#pragma once

#include "BusMeter.h"
#include "ChartSeries.h"
#include "Datapoint.h"
#include "DatapointImport.h"
#include "History.h"
#include "HistoryExport.h"
#include "LatencyNotice.h"
#include "LogLine.h"
#include "LogSegment.h"
#include "OutputBuffer.h"
#include "PointStatus.h"
#include "Poll.h"
#include "PollOperations.h"
#include "PollPlan.h"
#include "PollerEvent.h"
#include "PollerProject.h"
#include "PollerState.h"
#include "PortIdentity.h"
#include "PortPathWatcher.h"
#include "ReadBlock.h"
#include "SerialConfiguration.h"
#include "SerialPortInfo.h"
#include "SystemRoot.h"
#include "TimeoutOffer.h"
#include "Uuid.h"
#include "WriteMode.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include <QObject>
#include <QString>
#include <QTimer>

class QDateTime;
class QFileSystemWatcher;
class QSettings;
class QVariant;

namespace kestrin {

class PollerEngine;
class PortScanner;

// The one object behind the window: the project being edited, the ports, the reading state, the
// counters, the latest status of every datapoint, the history and the communication log. It owns
// the engine while reading and turns the engine's events into all of the above. Views draw it
// and call its operations; each published field has its own change signal.
//
// Main thread only. The engine's events are queued to this object's thread, tagged with the
// engine they came from, so a late event of a stopped engine never reaches a newer one's state.
// They arrive in batches of at most one frame (16 ms); a batch publishes its status changes, its
// counters and its log lines once, at its end.
class PollerModel : public QObject {
    Q_OBJECT

public:
    struct Delays {
        std::chrono::milliseconds resume{700};
        std::chrono::milliseconds autosave{1000};
        std::chrono::milliseconds publication{250};
    };

    // Where the model keeps what outlives it. The desktop application uses application(); the
    // command line and tests choose what they need.
    struct Environment {
        // Absent: nothing is loaded at creation and nothing is ever autosaved.
        std::optional<QString> autosavePath;
        // Null: preferences are neither read nor written (defaults apply).
        std::unique_ptr<QSettings> preferences;
        // Null: the system's ports.
        std::unique_ptr<PortScanner> scanner;
        // The project to start with when there is no autosave path; the first-run project if
        // absent.
        std::optional<PollerProject> project;
        Delays delays;
        // Where the adapter's facts (its latency timer) are read and set.
        SystemRoot systemRoot = SystemRoot::machine();
        // Whether stopping writes each unit's measured figures to the log; the command line
        // prints them after its statistics instead.
        bool busSummaryInLog = true;

        static Environment application();
    };

    // The pending write record: the datapoint as it was when sent, and the value written.
    struct PendingWrite {
        Datapoint datapoint;
        Value value;
    };

    struct ImportOffer {
        std::vector<Datapoint> datapoints;
        DatapointImport::Question question;
    };

    explicit PollerModel(Environment environment, QObject* parent = nullptr);
    ~PollerModel() override;
    PollerModel(const PollerModel&) = delete;
    PollerModel& operator=(const PollerModel&) = delete;

    // Published fields.
    const std::vector<SerialPortInfo>& ports() const noexcept { return ports_; }
    PollerState state() const noexcept { return state_; }
    const PollerStatistics& statistics() const noexcept { return statistics_; }
    bool outputIsEmpty() const noexcept { return outputIsEmpty_; }
    const std::map<Uuid, PointStatus>& status() const noexcept { return status_; }
    const PointStatus* status(const Uuid& datapointID) const;
    std::int64_t historyVersion() const noexcept { return historyVersion_; }
    bool showNoResponseHint() const noexcept { return showNoResponseHint_; }
    const std::optional<std::string>& errorMessage() const noexcept { return errorMessage_; }
    void setErrorMessage(std::optional<std::string> message);
    const std::optional<std::string>& writeError() const noexcept { return writeError_; }
    void setWriteError(std::optional<std::string> message);
    const std::string& selectedPath() const noexcept { return selectedPath_; }
    void setSelectedPath(std::string path);
    const SerialConfiguration& serial() const noexcept { return serial_; }
    void setSerial(const SerialConfiguration& serial);
    int timeoutMs() const noexcept { return timeoutMs_; }
    void setTimeoutMs(int timeoutMs);
    WriteMode writeMode() const noexcept { return writeMode_; }
    void setWriteMode(WriteMode mode);
    int maxGap() const noexcept { return maxGap_; }
    void setMaxGap(int gap);
    const std::vector<Poll>& polls() const noexcept { return polls_; }
    void setPolls(std::vector<Poll> polls);
    const std::optional<Uuid>& selectedPollID() const noexcept { return selectedPollID_; }
    void setSelectedPollID(std::optional<Uuid> pollID);
    bool showTimestamps() const noexcept { return logOptions_.showTimestamps; }
    void setShowTimestamps(bool on);
    bool showRawFrames() const noexcept { return logOptions_.showRawFrames; }
    void setShowRawFrames(bool on);
    bool logOnlyProblems() const noexcept { return logOptions_.onlyProblems; }
    void setLogOnlyProblems(bool on);
    bool autoscroll() const noexcept { return autoscroll_; }
    void setAutoscroll(bool on);

    OutputBuffer& output() noexcept { return *output_; }
    const History& history() const noexcept { return history_; }
    const std::map<Uuid, PendingWrite>& pendingWrites() const noexcept { return pendingWrites_; }
    bool isEngineHeld() const noexcept { return engine_ != nullptr; }
    // While another part of the program (a bus scan) has the selected port open, reading does
    // not start: the port takes one user at a time. Announced as stateChanged, which is what
    // every Start button follows.
    void setPortLent(bool lent);
    bool isPortLent() const noexcept { return portLent_; }
    bool selectedPortIsTestDevice() const { return isTestDevice(selectedPath_); }

    // Why reading cannot start: the chosen port is not present (or none is chosen), a bus scan
    // has it, or no enabled poll has datapoints.
    enum class StartObstacle { noPort, portLent, nothingToRead };

    // Derived. Reading can start on a port that is present and not lent, with an enabled poll
    // that has datapoints.
    bool canStart() const;
    std::optional<StartObstacle> startObstacle() const;
    const Poll* selectedPoll() const;
    const Datapoint* datapoint(const Uuid& datapointID) const;

    // A device the port scanner does not report (a pseudo-terminal, a simulator) that is listed
    // with the ports while its path exists, and opened as a test device. Selects it.
    void addTestDevice(const std::string& path, const std::string& name);

    // Reading. start and toggle leave listening alone; stop ends either.
    void start();
    void stop();
    void toggle();
    // Listening: the port is opened as for reading and nothing is ever sent; the requests another
    // master makes and their answers give the enabled polls' datapoints their statuses, values
    // and history, and fill the log and the statistics. Needs only a present port that no bus
    // scan has (listenObstacle). stop ends it; writes are refused meanwhile.
    void listen();
    void toggleListening();
    // Listening, or waiting for a port lost while listening to return.
    bool isListening() const noexcept { return listening_; }
    bool canListen() const { return !listenObstacle().has_value(); }
    std::optional<StartObstacle> listenObstacle() const;
    void dismissNoResponseHint();
    // An adapter that holds answers back, found as reading starts; absent when there is none or
    // it was dismissed for this adapter.
    const std::optional<LatencyNotice>& latencyNotice() const noexcept { return latencyNotice_; }
    // Not again for this adapter, in this session or later ones.
    void dismissLatencyNotice();
    // The notice's adapter answers after 1 ms from now until it is unplugged.
    void setLatencyTimerToBest();
    // The bus as the current reading measures it, or the last one once it stopped; null before
    // the first reading.
    const BusMeter* busMeter() const noexcept { return busMeter_ ? &*busMeter_ : nullptr; }
    // The line's busy share until now, or until reading stopped.
    std::optional<double> busyShare() const;
    // How long the selected port's adapter holds each answer back (its latency timer), 0 for a
    // UART: part of every request's time on the line that no device can shorten.
    double handoverSeconds() const;
    // A time-out that fits the answers seen, offered once per reading and never set unasked.
    const std::optional<TimeoutOffer>& timeoutOffer() const noexcept { return timeoutOffer_; }
    void acceptTimeoutOffer();
    void dismissTimeoutOffer();
    // A batch of one.
    void handleEvent(const PollerEvent& event);
    void handleEvents(std::span<const PollerEvent> events);
    void portsChanged(const std::vector<SerialPortInfo>& ports);

    // Project.
    PollerProject currentProject() const;
    void applyProject(const PollerProject& project);
    void scheduleAutosave();
    void autosave();
    void newProject();
    void openProject(const QString& path);
    void saveProjectAs(const QString& path);
    // Stops reading and writes the autosave at once, as the application ends.
    void shutdown();

    // Polls.
    void addPoll();
    void duplicatePoll(const Uuid& pollID);
    void removePoll(const Uuid& pollID);
    void renamePoll(const Uuid& pollID, std::string name);
    void setInterval(const Uuid& pollID, std::int64_t intervalMs);
    void setEnabled(const Uuid& pollID, bool enabled);
    void setPlotted(const Uuid& pollID, const Uuid& datapointID, bool plotted);

    // Datapoints of the selected poll.
    std::optional<Uuid> addDatapoint(std::optional<Uuid> selectedDatapointID = std::nullopt);
    void duplicateDatapoints(const std::set<Uuid>& datapointIDs);
    void deleteDatapoints(const std::set<Uuid>& datapointIDs);
    // Replaces the datapoint with the same id in the selected poll (an edit in the table).
    void updateDatapoint(const Datapoint& datapoint);
    // Reads and parses a datapoint list; nothing (and errorMessage set) when there is nothing to
    // offer. The caller asks Add/Replace/Cancel with the offer's question.
    std::optional<ImportOffer> readDatapointFile(const QString& path);
    void importDatapoints(std::vector<Datapoint> datapoints, PollOperations::ImportChoice choice);
    QString proposedDatapointFileName() const;
    void exportDatapoints(const QString& path);

    // Writing.
    void write(const Datapoint& datapoint, const Value& value);

    // History.
    void recordSample(const Uuid& datapointID, const Sample& sample);
    void clearHistory();
    // At once, to the end.
    void exportHistory(const QString& path);
    // In slices, for the window: begin, then continue until done (a failure is the error
    // message), or cancel. Clearing or replacing the history finishes the export first, so the
    // file still holds what there was when it began.
    void beginHistoryExport(const QString& path);
    HistoryExport::Progress continueHistoryExport(std::chrono::steady_clock::time_point deadline);
    void cancelHistoryExport();
    std::vector<ChartSeries> chartSeries(const QDateTime& now, int periodSeconds) const;

    // Log.
    // Stamped with the current time.
    void appendLog(LogLineSegments line);
    void appendLog(LogLineSegments line, const QDateTime& time);
    void clearLog();
    void saveLog(const QString& path);

signals:
    void portListChanged();
    void stateChanged();
    void statisticsChanged();
    void outputIsEmptyChanged();
    // The datapoints whose status changed; all of them after a reset.
    void statusChanged(const std::vector<kestrin::Uuid>& datapointIDs);
    // One block of a poll, or one part of a block read in parts, was read or failed, with the
    // datapoints it gave a value or a failure; emitted for every answer as it is handled, where
    // statusChanged comes once per batch and names a datapoint read twice in it once. Their
    // statuses are this answer's meanwhile. After the last part of a block read in parts it comes
    // once more for the block itself with no datapoints, so that counting readings of the plan's
    // blocks sees each reading once.
    void blockRead(const kestrin::Uuid& poll, const kestrin::ReadBlock& block,
                   const std::vector<kestrin::Uuid>& datapointIDs);
    void historyVersionChanged();
    void showNoResponseHintChanged();
    void latencyNoticeChanged();
    void timeoutOfferChanged();
    void errorMessageChanged();
    void writeErrorChanged();
    void selectedPathChanged();
    void serialChanged();
    void timeoutMsChanged();
    void writeModeChanged();
    void maxGapChanged();
    void pollsChanged();
    void selectedPollIDChanged();
    void logOptionsChanged();

private:
    class EventRelay;
    // What a batch of engine events changed, published when it ends.
    struct EventBatch {
        std::vector<Uuid> changed;
        std::vector<LogLineSegments> lines;
        bool statistics = false;
        // Batches begun while this one is handled; they publish with it.
        int nested = 0;
    };

    void loadPreferences();
    void storePreference(const char* key, const QVariant& value);
    void applyProjectFields(const PollerProject& project);
    // A project's line settings as the line can take them; what had to change is logged.
    SerialConfiguration takenSerial(const SerialConfiguration& serial);
    void setState(PollerState state);
    void setStatistics(const PollerStatistics& statistics);
    void setShowNoResponseHint(bool on);
    void checkLatency();
    void setLatencyNotice(std::optional<LatencyNotice> notice);
    void beginMeasuring();
    // Tells the bus meter how long the selected port's adapter now holds each answer back.
    void measureHandover();
    // Hands the engine, while reading, and the bus meter the plans of the polls as they are now.
    void replan();
    void measure(const PollerEvent& event);
    // Stops the busy share's clock and logs one line per unit that answered.
    void endMeasuring();
    void setTimeoutOffer(std::optional<TimeoutOffer> offer);
    std::unique_ptr<PollerEngine> makeEngine();
    std::vector<PollPlan> buildPlans() const;
    // The user's start or listen: opens the port, or says why not; false when nothing started.
    bool begin(bool listening);
    bool startEngine();
    void portLost(const std::string& path);
    void armResume();
    void resumeAfterLoss();
    void deliver(std::uint64_t generation, const PollerEvent& event);
    // Handles the engine's queued events now rather than at the end of their frame.
    void flushEvents();
    void beginBatch();
    void endBatch();
    void handleInBatch(const PollerEvent& event);
    void appendLines(std::span<const LogLineSegments> lines);
    void statusDidChange(const std::vector<Uuid>& datapointIDs);
    // The engine stamps events on its own thread; what they change is dated when they happened,
    // not when this thread got to them.
    static QDateTime dated(PollerEvent::Time time);
    // Reads, writes and heard requests all count here, so that the counters and the
    // no-response hint agree however a request was made. unanswered: a heard broadcast, which
    // succeeds with no answer to count.
    void countRequest(const std::optional<PollFailure>& failure, bool unanswered = false);
    // Counting, marking and logging need only the failure, whatever a success carries.
    template <typename Outcome>
    static std::optional<PollFailure> failureOf(const Outcome& outcome) {
        return outcome ? std::nullopt : std::optional(outcome.error().failure);
    }
    // Each datapoint of points that block covers takes its value from data, or the failure, and
    // is added to changed.
    void takeValues(std::span<const Datapoint> points, const ReadBlock& block, const ReadData& data,
                    const QDateTime& time, double duration, std::vector<Uuid>& changed);
    // A heard write confirmed: each datapoint it covers whole holds what was written.
    void takeWritten(std::span<const Datapoint> points, const ReadBlock& block,
                     const ReadData& written, const QDateTime& time, std::vector<Uuid>& changed);
    // A confirmed write, Kestrin's or another master's, says what the device now holds but was not
    // read back: the registers, the read's duration and the history stay those of the last read.
    void holdWritten(const Uuid& datapointID, const Value& value, const QDateTime& time);
    void markFailed(std::span<const Datapoint> points, const ReadBlock& block, PollFailure failure,
                    const QDateTime& time, std::vector<Uuid>& changed);
    void handleRead(const PollerEvent::Read& read, const QDateTime& time);
    void handleHeard(const PollerEvent::Heard& heard, const QDateTime& time);
    void applyHeard(const PollerEvent::Heard& heard, const ReadBlock& range,
                    std::span<const Datapoint> points, const QDateTime& time,
                    std::vector<Uuid>& changed);
    // updated: the datapoints a confirmed write gave their values.
    void logHeard(const PollerEvent::Heard& heard, const QDateTime& time,
                  std::span<const Uuid> updated);
    void handleWrote(const PollerEvent::Wrote& wrote, const QDateTime& time);
    void pollsDidChange(const std::vector<Poll>& before);
    void replacePolls(std::vector<Poll> polls);
    void publishHistory();
    void finishHistoryExport();
    bool isTestDevice(const std::string& path) const;
    void publishPorts();
    void watchTestDevice(const std::string& path);
    const SerialPortInfo* listedPort(const std::string& path) const;
    void loadPortIdentity(const QSettings& settings);
    void storePortIdentity(std::optional<PortIdentity> identity);
    bool selectRememberedAdapter();
    // The listed port at the selected path unless it is certainly not the remembered adapter.
    const SerialPortInfo* rememberedPortAtSelectedPath() const;
    void chooseListedPort(const std::optional<std::set<std::string>>& previous);

    Environment environment_;

    std::vector<SerialPortInfo> ports_;
    PollerState state_ = PollerState::stopped;
    PollerStatistics statistics_;
    bool outputIsEmpty_ = true;
    std::map<Uuid, PointStatus> status_;
    std::int64_t historyVersion_ = 0;
    bool showNoResponseHint_ = false;
    std::optional<LatencyNotice> latencyNotice_;
    std::optional<BusMeter> busMeter_;
    // When the reading that busMeter_ measured stopped; absent while it goes on.
    std::optional<BusMeter::Time> measuredUntil_;
    std::optional<TimeoutOffer> timeoutOffer_;
    bool timeoutOffered_ = false;
    std::optional<std::string> errorMessage_;
    std::optional<std::string> writeError_;
    std::string selectedPath_;
    // The USB adapter at the selected path, so that it is found again under another name.
    std::optional<PortIdentity> portIdentity_;
    SerialConfiguration serial_;
    int timeoutMs_ = PollerProject::defaultTimeoutMs;
    WriteMode writeMode_ = WriteMode::single;
    int maxGap_ = 0;
    std::vector<Poll> polls_;
    std::optional<Uuid> selectedPollID_;
    LogLine::Options logOptions_;
    bool autoscroll_ = true;

    OutputBuffer* output_;
    History history_;
    // Holds history_, so it is declared after it and destroyed first.
    std::unique_ptr<HistoryExport> historyExport_;
    std::shared_ptr<EventRelay> relay_;
    std::unique_ptr<PollerEngine> engine_;
    std::uint64_t engineGeneration_ = 0;
    // Present while a batch of engine events is handled.
    std::optional<EventBatch> batch_;
    std::unique_ptr<PortScanner> scanner_;
    // Present while the port is lost and not yet reopened.
    std::unique_ptr<PortPathWatcher> lostPortWatcher_;
    // While the port is lost: the other ports listed at the loss that have not left since.
    std::set<std::string> presentAtLoss_;
    // The selected path's link as it was when reading last opened the port.
    std::optional<PortPathWatcher::LinkIdentity> openedLink_;
    std::vector<SerialPortInfo> scannedPorts_;
    std::vector<SerialPortInfo> testDevices_;
    QFileSystemWatcher* testDeviceFolders_ = nullptr;
    std::optional<std::set<std::string>> knownPaths_;
    std::map<Uuid, PendingWrite> pendingWrites_;
    // The engine, running or to be resumed, listens rather than reads.
    bool listening_ = false;
    int consecutiveFailures_ = 0;
    bool portLent_ = false;
    bool noResponseHintDismissed_ = false;
    QTimer autosaveTimer_;
    QTimer publicationTimer_;
};

} // namespace kestrin
