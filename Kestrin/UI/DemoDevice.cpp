#include "DemoDevice.h"

#include "ExampleList.h"
#include "PollerProject.h"
#include "QtText.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace kestrin {

namespace {

constexpr int startLimitMs = 10000;
constexpr int stopLimitMs = 2000;

struct Served {
    RegisterTable table;
    std::uint16_t address;
    Simulation simulation;
    double value; // what a datapoint that does not move starts with
};

// Keyed on where the example list puts each datapoint, so translated names do not matter.
// Temperature and pressure move within what a small boiler shows; the alarm is on half a minute
// in every minute.
const Served served[] = {
    {RegisterTable::inputRegister, 0, {Simulation::Kind::sine, 18.5, 24.5, 40}, 0},
    {RegisterTable::inputRegister, 1, {Simulation::Kind::ramp, 1.2, 2.8, 30}, 0},
    {RegisterTable::inputRegister, 3, {Simulation::Kind::counter, 0, 4294967295.0, 1}, 0}, // uint32
    {RegisterTable::holdingRegister, 0, {}, 21.5},
    {RegisterTable::holdingRegister, 1, {}, 2},
    {RegisterTable::coil, 0, {}, 1},
    {RegisterTable::discreteInput, 0, {Simulation::Kind::toggle, 0, 1, 60}, 0},
};

// A project file the simulator reads at start; gone when this returns.
Result<std::unique_ptr<QTemporaryFile>, std::string> servedProjectFile() {
    auto file = std::make_unique<QTemporaryFile>(QDir::temp().filePath("kestrin-demo-XXXXXX.json"));
    if (!file->open()) {
        return file->errorString().toStdString();
    }
    PollerProject project;
    Poll poll;
    poll.datapoints = DemoDevice::servedList();
    project.polls.push_back(std::move(poll));
    const std::string encoded = project.encoded();
    const auto size = static_cast<qint64>(encoded.size());
    if (file->write(encoded.data(), size) != size || !file->flush()) {
        return file->errorString().toStdString();
    }
    return file;
}

} // namespace

std::vector<Datapoint> DemoDevice::servedList() {
    std::vector<Datapoint> list = ExampleList::datapoints();
    for (Datapoint& datapoint : list) {
        for (const Served& entry : served) {
            if (datapoint.table() == entry.table && datapoint.address == entry.address) {
                datapoint.simulation = entry.simulation;
                datapoint.value = entry.value;
            }
        }
    }
    return list;
}

DemoDevice::DemoDevice(std::unique_ptr<QProcess> process, std::string path)
    : process_(std::move(process))
    , path_(std::move(path)) {}

DemoDevice::~DemoDevice() {
    if (process_->state() != QProcess::NotRunning) {
        process_->terminate();
        if (!process_->waitForFinished(stopLimitMs)) {
            process_->kill();
            process_->waitForFinished(stopLimitMs);
        }
    }
}

QString DemoDevice::findSimulator(const QString& programFolder) {
    const QDir folder(programFolder);
    // Installed side by side; in a build folder the tools are one level over.
    for (const QString& candidate : {folder.filePath(QStringLiteral("kestrin-sim")),
                                     folder.filePath(QStringLiteral("../Tools/kestrin-sim"))}) {
        const QFileInfo info(candidate);
        if (info.isFile() && info.isExecutable()) {
            return info.canonicalFilePath();
        }
    }
    return QStandardPaths::findExecutable(QStringLiteral("kestrin-sim"));
}

Result<std::unique_ptr<DemoDevice>, std::string>
DemoDevice::start(const QString& simulator, const SerialConfiguration& serial) {
    auto project = servedProjectFile();
    if (!project) {
        return project.error();
    }
    auto process = std::make_unique<QProcess>();
    // Its diagnostics go where ours go; only the first line of its output is read.
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process->start(simulator, {QStringLiteral("--project"), project.value()->fileName(),
                               QStringLiteral("--wire-timing"), QStringLiteral("--baud"),
                               QString::number(serial.baudRate), QStringLiteral("--frame"),
                               qt(serial.frameDescription())});
    if (!process->waitForStarted(startLimitMs)) {
        return process->errorString().toStdString();
    }
    while (!process->canReadLine()) {
        if (!process->waitForReadyRead(startLimitMs)) {
            const std::string reason = process->errorString().toStdString();
            process->kill();
            process->waitForFinished(stopLimitMs);
            return reason;
        }
    }
    const std::string path = process->readLine().trimmed().toStdString();
    if (path.empty()) {
        return std::string("kestrin-sim announced no port");
    }
    // Anything it prints later is dropped rather than piling up in memory.
    QProcess* running = process.get();
    QObject::connect(running, &QProcess::readyReadStandardOutput, running,
                     [running] { running->readAllStandardOutput(); });
    return std::unique_ptr<DemoDevice>(new DemoDevice(std::move(process), path));
}

} // namespace kestrin
