#include "DatapointCSV.h"
#include "L10n.h"
#include "PollerEngine.h"
#include "PollerModel.h"
#include "ProjectStore.h"
#include "TextFile.h"
#include "TextFileReader.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include <QDir>
#include <QFile>
#include <QFileInfo>

// The project, its polls and datapoints, and what the model writes to files.
namespace kestrin {

namespace {

// What a reading depends on: when one of these changes, the old readings describe something else.
bool readsTheSame(const Datapoint& a, const Datapoint& b) {
    return a.unitID == b.unitID && a.table() == b.table() && a.address == b.address &&
           a.dataType == b.dataType && a.wordOrder == b.wordOrder && a.scale == b.scale;
}

// The first datapoint with each id, as datapoint() finds it; pointers into polls.
std::unordered_map<Uuid, const Datapoint*> datapointsByID(const std::vector<Poll>& polls) {
    std::size_t count = 0;
    for (const Poll& poll : polls) {
        count += poll.datapoints.size();
    }
    std::unordered_map<Uuid, const Datapoint*> index;
    index.reserve(count);
    for (const Poll& poll : polls) {
        for (const Datapoint& point : poll.datapoints) {
            index.emplace(point.id, &point);
        }
    }
    return index;
}

std::string fileNameOf(const QString& path) {
    return QFileInfo(path).fileName().toStdString();
}

} // namespace

PollerProject PollerModel::currentProject() const {
    PollerProject project;
    project.serial = serial_;
    project.timeoutMs = timeoutMs_;
    project.writeMode = writeMode_;
    project.maxGap = maxGap_;
    project.polls = polls_;
    return project;
}

void PollerModel::applyProject(const PollerProject& project) {
    if (state_ != PollerState::stopped || engine_) {
        stop();
    }
    setSerial(takenSerial(project.serial));
    setTimeoutMs(PollerProject::allowedTimeout(project.timeoutMs));
    setWriteMode(project.writeMode);
    setMaxGap(project.maxGap);
    const std::vector<Poll> before = std::exchange(polls_, project.polls);
    setSelectedPollID(polls_.empty() ? std::nullopt : std::optional<Uuid>(polls_.front().id));
    status_.clear();
    finishHistoryExport();
    history_.clear();
    ++historyVersion_;
    pollsDidChange(before);
    emit statusChanged({});
    emit historyVersionChanged();
}

// A file written by hand or by another program may ask for a longer RS-485 delay than the kernel
// takes: the project still opens, with the longest.
SerialConfiguration PollerModel::takenSerial(const SerialConfiguration& serial) {
    SerialConfiguration taken = serial;
    if (serial.rs485 && serial.rs485 != serial.rs485->limited()) {
        taken.rs485 = serial.rs485->limited();
        appendLog(LogLine::rs485DelaysLimited());
    }
    return taken;
}

void PollerModel::scheduleAutosave() {
    if (environment_.autosavePath) {
        autosaveTimer_.start();
    }
}

void PollerModel::autosave() {
    autosaveTimer_.stop();
    if (environment_.autosavePath) {
        // Nothing to tell anyone: the next change tries again.
        (void)ProjectStore(*environment_.autosavePath).save(currentProject());
    }
}

void PollerModel::shutdown() {
    stop();
    autosave();
}

void PollerModel::newProject() {
    applyProject(PollerProject::newProject(currentProject()));
}

void PollerModel::openProject(const QString& path) {
    auto opened = ProjectStore::open(path);
    if (!opened) {
        setErrorMessage(opened.error());
        return;
    }
    applyProject(opened.value());
}

void PollerModel::saveProjectAs(const QString& path) {
    if (auto saved = ProjectStore::saveAs(currentProject(), path); !saved) {
        setErrorMessage(L10n::texts().errors.saveFailed(saved.error()));
    }
}

void PollerModel::replacePolls(std::vector<Poll> polls) {
    const std::vector<Poll> before = std::exchange(polls_, std::move(polls));
    pollsDidChange(before);
}

// Every edit passes through here, so the lookup of each old datapoint among the new ones goes
// through an index built once: a search per datapoint froze the table at 10,000 of them.
void PollerModel::pollsDidChange(const std::vector<Poll>& before) {
    const std::unordered_map<Uuid, const Datapoint*> now = datapointsByID(polls_);
    std::vector<Uuid> reset;
    for (const Poll& poll : before) {
        for (const Datapoint& old : poll.datapoints) {
            const auto found = now.find(old.id);
            if (found != now.end() && !readsTheSame(old, *found->second)) {
                if (status_.erase(old.id) > 0) {
                    reset.push_back(old.id);
                }
                if (history_.samples(old.id) != nullptr) {
                    finishHistoryExport();
                    history_.remove(old.id);
                    ++historyVersion_;
                    emit historyVersionChanged();
                }
            }
        }
    }
    scheduleAutosave();
    replan();
    emit pollsChanged();
    if (!reset.empty()) {
        emit statusChanged(reset);
    }
}

void PollerModel::addPoll() {
    auto added = PollOperations::addPoll(polls_);
    replacePolls(std::move(added.polls));
    setSelectedPollID(added.selectedPollID);
}

void PollerModel::duplicatePoll(const Uuid& pollID) {
    if (auto copied = PollOperations::duplicatePoll(polls_, pollID)) {
        replacePolls(std::move(copied->polls));
        setSelectedPollID(copied->selectedPollID);
    }
}

void PollerModel::removePoll(const Uuid& pollID) {
    if (auto removed = PollOperations::removePoll(polls_, pollID, selectedPollID_)) {
        // Select first, so no view looks up a poll that is gone.
        setSelectedPollID(removed->selectedPollID);
        replacePolls(std::move(removed->polls));
    }
}

void PollerModel::renamePoll(const Uuid& pollID, std::string name) {
    setPolls(PollOperations::renamePoll(polls_, pollID, std::move(name)));
}

void PollerModel::setInterval(const Uuid& pollID, std::int64_t intervalMs) {
    setPolls(PollOperations::setInterval(polls_, pollID, intervalMs));
}

void PollerModel::setEnabled(const Uuid& pollID, bool enabled) {
    setPolls(PollOperations::setEnabled(polls_, pollID, enabled));
}

void PollerModel::setPlotted(const Uuid& pollID, const Uuid& datapointID, bool plotted) {
    setPolls(PollOperations::setPlotted(polls_, pollID, datapointID, plotted));
}

std::optional<Uuid> PollerModel::addDatapoint(std::optional<Uuid> selectedDatapointID) {
    if (!selectedPollID_) {
        return std::nullopt;
    }
    auto added = PollOperations::addDatapoint(polls_, *selectedPollID_, selectedDatapointID);
    if (!added) {
        return std::nullopt;
    }
    replacePolls(std::move(added->polls));
    return added->datapointID;
}

void PollerModel::duplicateDatapoints(const std::set<Uuid>& datapointIDs) {
    if (selectedPollID_) {
        setPolls(PollOperations::duplicateDatapoints(polls_, *selectedPollID_, datapointIDs));
    }
}

void PollerModel::deleteDatapoints(const std::set<Uuid>& datapointIDs) {
    if (selectedPollID_) {
        setPolls(PollOperations::deleteDatapoints(polls_, *selectedPollID_, datapointIDs));
    }
}

void PollerModel::updateDatapoint(const Datapoint& edited) {
    if (!selectedPollID_) {
        return;
    }
    std::vector<Poll> polls = polls_;
    for (Poll& poll : polls) {
        if (poll.id != *selectedPollID_) {
            continue;
        }
        for (Datapoint& point : poll.datapoints) {
            if (point.id == edited.id) {
                point = edited;
            }
        }
    }
    setPolls(std::move(polls));
}

std::optional<PollerModel::ImportOffer> PollerModel::readDatapointFile(const QString& path) {
    const auto bytes = TextFileReader::read(QFile::encodeName(path).toStdString());
    if (!bytes) {
        setErrorMessage(L10n::texts().errors.fileOpenFailed(fileNameOf(path)));
        return std::nullopt;
    }
    const std::string text = DatapointImport::decodedText(bytes.value());
    DatapointCSV::ImportResult parsed = DatapointCSV::parse(text);
    auto question = DatapointImport::question(parsed);
    if (!question) {
        setErrorMessage(question.error());
        return std::nullopt;
    }
    return ImportOffer{std::move(parsed.datapoints), std::move(question).value()};
}

void PollerModel::importDatapoints(std::vector<Datapoint> datapoints,
                                   PollOperations::ImportChoice choice) {
    if (selectedPollID_) {
        setPolls(PollOperations::importDatapoints(polls_, *selectedPollID_, std::move(datapoints),
                                                  choice));
    }
}

QString PollerModel::proposedDatapointFileName() const {
    const Poll* poll = selectedPoll();
    const std::string base = poll == nullptr || poll->name.empty() ? "datapoints" : poll->name;
    return QString::fromStdString(base + ".csv");
}

void PollerModel::exportDatapoints(const QString& path) {
    const Poll* poll = selectedPoll();
    if (poll == nullptr) {
        return;
    }
    std::vector<Datapoint> exported = poll->datapoints;
    for (Datapoint& point : exported) {
        if (const PointStatus* latest = status(point.id); latest != nullptr && latest->value) {
            point.value = *latest->value;
        }
    }
    const std::string text = DatapointCSV::exportText(exported, CSVDialect::current());
    if (auto written = TextFile::write(path, text); !written) {
        setErrorMessage(L10n::texts().errors.saveFailed(written.error()));
    }
}

void PollerModel::recordSample(const Uuid& datapointID, const Sample& sample) {
    if (history_.record(datapointID, sample)) {
        publicationTimer_.start();
    }
}

void PollerModel::publishHistory() {
    history_.markPublished();
    ++historyVersion_;
    emit historyVersionChanged();
}

void PollerModel::clearHistory() {
    finishHistoryExport();
    history_.clear();
    history_.markPublished();
    publicationTimer_.stop();
    ++historyVersion_;
    emit historyVersionChanged();
}

void PollerModel::exportHistory(const QString& path) {
    beginHistoryExport(path);
    finishHistoryExport();
}

void PollerModel::beginHistoryExport(const QString& path) {
    // The export asked for before is written first: one hold at a time.
    finishHistoryExport();
    historyExport_ = std::make_unique<HistoryExport>(path, polls_, history_, CSVDialect::current());
}

HistoryExport::Progress
PollerModel::continueHistoryExport(std::chrono::steady_clock::time_point deadline) {
    if (!historyExport_) {
        return {0, 0, true};
    }
    const HistoryExport::Progress progress = historyExport_->step(deadline);
    if (progress.done) {
        const auto committed = historyExport_->commit();
        historyExport_.reset();
        if (!committed) {
            setErrorMessage(committed.error());
        }
    }
    return progress;
}

void PollerModel::cancelHistoryExport() {
    historyExport_.reset();
}

void PollerModel::finishHistoryExport() {
    (void)continueHistoryExport(std::chrono::steady_clock::time_point::max());
}

std::vector<ChartSeries> PollerModel::chartSeries(const QDateTime& now, int periodSeconds) const {
    const Poll* poll = selectedPoll();
    if (poll == nullptr) {
        return {};
    }
    return ChartSeries::series(*poll, history_, now, periodSeconds);
}

void PollerModel::appendLog(LogLineSegments line) {
    appendLog(std::move(line), QDateTime::currentDateTime());
}

void PollerModel::appendLog(LogLineSegments line, const QDateTime& time) {
    LogLineSegments stamped = LogLine::stamped(std::move(line), time, logOptions_);
    if (batch_) {
        batch_->lines.push_back(std::move(stamped));
    } else {
        appendLines(std::span(&stamped, 1));
    }
}

void PollerModel::appendLines(std::span<const LogLineSegments> lines) {
    if (lines.empty()) {
        return;
    }
    output_->append(lines);
    if (outputIsEmpty_) {
        outputIsEmpty_ = false;
        emit outputIsEmptyChanged();
    }
}

void PollerModel::clearLog() {
    output_->clear();
    setStatistics({});
    if (!outputIsEmpty_) {
        outputIsEmpty_ = true;
        emit outputIsEmptyChanged();
    }
}

void PollerModel::saveLog(const QString& path) {
    if (auto saved = output_->save(path); !saved) {
        setErrorMessage(L10n::texts().errors.saveFailed(saved.error()));
    }
}

} // namespace kestrin
