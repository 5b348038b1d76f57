#include "DemoDevice.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace kestrin {

namespace {

constexpr int startLimitMs = 10000;
constexpr int stopLimitMs = 2000;

} // namespace

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

Result<std::unique_ptr<DemoDevice>, std::string> DemoDevice::start(const QString& simulator) {
    auto process = std::make_unique<QProcess>();
    // Its diagnostics go where ours go; only the first line of its output is read.
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process->start(simulator, {});
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
