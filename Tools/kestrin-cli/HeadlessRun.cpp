#include "HeadlessRun.h"

#include "BusSummary.h"
#include "DatapointCSV.h"
#include "DatapointImport.h"
#include "L10n.h"
#include "PollerModel.h"
// With QSettings below: the model's environment, destroyed here, holds both by unique_ptr.
#include "PortScanner.h"
#include "ProjectStore.h"
#include "StopSignals.h"
#include "TextFileReader.h"

#include <array>
#include <chrono>
#include <cmath>
#include <string>
#include <utility>

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTimer>

namespace kestrin::HeadlessRun {

namespace {

// One poll, named after the file, of the datapoints the list holds; skipped lines are reported
// and left out, as the import in the window does.
Result<PollerProject, std::string> csvProject(const QString& path, std::ostream& err) {
    const auto bytes = TextFileReader::read(QFile::encodeName(path).toStdString());
    if (!bytes) {
        return L10n::texts().errors.fileOpenFailed(QFileInfo(path).fileName().toStdString());
    }
    const std::string text = DatapointImport::decodedText(bytes.value());
    DatapointCSV::ImportResult parsed = DatapointCSV::parse(text);
    if (auto question = DatapointImport::question(parsed); !question) {
        return path.toStdString() + ": " + question.error();
    }
    for (const DatapointCSV::ImportIssue& issue : parsed.issues) {
        err << "kestrin-cli: " << path.toStdString() << ": " << L10n::Errors::describe(issue)
            << '\n';
    }
    Poll poll;
    poll.name = QFileInfo(path).completeBaseName().toStdString();
    poll.datapoints = std::move(parsed.datapoints);
    PollerProject project;
    project.polls = {std::move(poll)};
    return project;
}

// Without a project or list there is no poll: a monitor then only logs what it hears.
Result<PollerProject, std::string> project(const PollOptions& options, std::ostream& err) {
    if (options.projectPath) {
        return ProjectStore::open(QString::fromStdString(*options.projectPath));
    }
    if (options.csvPath) {
        return csvProject(QString::fromStdString(*options.csvPath), err);
    }
    return PollerProject{};
}

void applyOptions(const PollOptions& options, PollerModel& model) {
    if (options.maxGap) {
        model.setMaxGap(*options.maxGap);
    }
    model.setSerial(options.serial(model.serial()));
    if (options.timeoutMs) {
        model.setTimeoutMs(*options.timeoutMs);
    }
    model.setShowTimestamps(options.timestamps);
    model.setShowRawFrames(options.rawFrames);
    model.setLogOnlyProblems(options.onlyProblems);
    if (options.testDevice) {
        model.addTestDevice(options.port, options.port);
    } else {
        model.setSelectedPath(options.port);
    }
}

void print(const QList<StyledRun>& runs, std::ostream& out) {
    QString line;
    for (const StyledRun& run : runs) {
        line += run.text;
    }
    const QByteArray text = line.toUtf8();
    out.write(text.constData(), text.size());
    out.flush();
}

// The model logs while it takes the project, before anything could listen and before the
// options turned timestamps off: a shortened RS-485 delay must reach the terminal all the same,
// stamped only when asked.
void printHeld(PollerModel& model, bool timestamps, std::ostream& out) {
    QList<StyledRun> runs = model.output().runs();
    if (!timestamps) {
        runs.removeIf([](const StyledRun& run) { return run.kind == LogSegment::Kind::timestamp; });
    }
    print(runs, out);
}

// A save in the model reports its failure in errorMessage, which does not say which file: printed
// on err after the path, then cleared so that the next save starts afresh. True when there was
// one.
bool tookSaveError(PollerModel& model, const std::string& path, std::ostream& err) {
    const std::optional<std::string> message = model.errorMessage();
    if (!message) {
        return false;
    }
    err << path << ": " << *message << '\n';
    model.setErrorMessage(std::nullopt);
    return true;
}

// The footer of the log, once the model has stopped: the statistics line, then what each unit
// that answered took, as the window's log says it.
void printStatistics(const PollerModel& model, std::ostream& out) {
    const PollerStatistics& statistics = model.statistics();
    out << L10n::texts().footer.statistics(statistics.requests, statistics.responses,
                                           statistics.timeouts, statistics.exceptions,
                                           statistics.errors)
        << '\n';
    if (const BusMeter* meter = model.busMeter()) {
        for (const std::string& line : BusSummary::lines(*meter)) {
            out << line << '\n';
        }
    }
    out << std::flush;
}

// Writes the history and the log where asked; false when either could not be written.
bool saveFiles(PollerModel& model, const PollOptions& options, std::ostream& err) {
    bool saved = true;
    if (options.historyPath) {
        model.exportHistory(QString::fromStdString(*options.historyPath));
        saved = !tookSaveError(model, *options.historyPath, err) && saved;
    }
    if (options.logPath) {
        model.saveLog(QString::fromStdString(*options.logPath));
        saved = !tookSaveError(model, *options.logPath, err) && saved;
    }
    return saved;
}

// Runs the event loop until something quits it, or for seconds when given.
void runFor(std::optional<double> seconds) {
    QTimer deadline;
    if (seconds) {
        deadline.setSingleShot(true);
        QObject::connect(&deadline, &QTimer::timeout, QCoreApplication::instance(),
                         &QCoreApplication::quit);
        deadline.start(std::chrono::milliseconds(std::llround(*seconds * 1000)));
    }
    QCoreApplication::exec();
}

} // namespace

ExitCode run(const PollOptions& options, Way way, std::ostream& out, std::ostream& err,
             const Setup& setup) {
    if (const std::optional<std::string> unwritable = options.unwritableFile()) {
        err << *unwritable << '\n';
        return ExitCode::usageError;
    }
    Result<PollerProject, std::string> loaded = project(options, err);
    if (!loaded) {
        err << loaded.error() << '\n';
        return ExitCode::usageError;
    }

    // Before the application and the engine start threads, which inherit the blocked signals.
    StopSignals stopSignals;
    int argc = 1;
    std::string programName = "kestrin-cli";
    std::array<char*, 2> argv{programName.data(), nullptr};
    QCoreApplication application(argc, argv.data());

    // No autosave and no preferences: the command line leaves no trace in the user's settings.
    PollerModel::Environment environment;
    environment.project = std::move(loaded).value();
    environment.busSummaryInLog = false;
    PollerModel model(std::move(environment));
    applyOptions(options, model);
    if (const std::optional<ExitCode> refused = setup ? setup(model) : std::nullopt) {
        return *refused;
    }
    // With --json the values own standard output and the log steps aside.
    std::ostream& log = options.json ? err : out;
    QObject::connect(&model.output(), &OutputBuffer::appended, &model,
                     [&log](const QList<StyledRun>& runs) { print(runs, log); });
    printHeld(model, options.timestamps, log);
    stopSignals.watch(application, [] { QCoreApplication::quit(); });

    way == Way::listen ? model.listen() : model.start();
    if (!model.isEngineHeld()) {
        err << model.errorMessage().value_or(L10n::texts().errors.notOpen()) << '\n';
        return ExitCode::portFailed;
    }
    runFor(options.seconds);

    model.stop();
    printStatistics(model, log);
    return saveFiles(model, options, err) ? ExitCode::success : ExitCode::requestFailed;
}

} // namespace kestrin::HeadlessRun
