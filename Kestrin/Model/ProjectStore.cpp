#include "ProjectStore.h"

#include "L10n.h"
#include "TextFile.h"
#include "TextFileReader.h"

#include <utility>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace kestrin {

namespace {

Result<PollerProject, std::string> readProject(const QString& path) {
    const auto bytes = TextFileReader::read(QFile::encodeName(path).toStdString());
    if (!bytes) {
        return L10n::Errors::systemMessage(bytes.error());
    }
    auto project = PollerProject::decode(bytes.value());
    if (!project) {
        return L10n::Errors::describe(project.error());
    }
    if (project.value().polls.empty()) {
        return L10n::Errors::describe(JSONValue::Error(JSONValue::Error::Kind::emptyList, "polls"));
    }
    return std::move(project).value();
}

// The folder is created first, but a failure there is left for the write itself to report.
Result<void, std::string> writeAtomically(const PollerProject& project, const QString& path) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    return TextFile::write(path, project.encoded());
}

} // namespace

ProjectStore::ProjectStore(QString autosavePath)
    : autosavePath_(std::move(autosavePath)) {}

QString ProjectStore::defaultAutosavePath() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (folder.isEmpty()) {
        return {};
    }
    return folder + QStringLiteral("/Kestrin/project.json");
}

ProjectStore::Loaded ProjectStore::load() const {
    if (autosavePath_.isEmpty() || !QFileInfo::exists(autosavePath_)) {
        return {PollerProject::firstRun(), std::nullopt};
    }
    auto project = readProject(autosavePath_);
    if (project) {
        return {std::move(project).value(), std::nullopt};
    }
    return {PollerProject::firstRun(), keepBroken()};
}

std::optional<QString> ProjectStore::keepBroken() const {
    // The date in the file name tells the user which start it was; the counter only matters
    // when two starts fail within one second.
    const QString stem =
        autosavePath_ + QStringLiteral(".broken-") +
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd'T'HHmmss"));
    QString target = stem;
    for (int attempt = 2; QFileInfo::exists(target); ++attempt) {
        target = stem + QLatin1Char('-') + QString::number(attempt);
    }
    if (!QFile::rename(autosavePath_, target)) {
        return std::nullopt;
    }
    return target;
}

Result<void, std::string> ProjectStore::save(const PollerProject& project) const {
    if (autosavePath_.isEmpty()) {
        return std::string("no data folder");
    }
    return writeAtomically(project, autosavePath_);
}

Result<PollerProject, std::string> ProjectStore::open(const QString& path) {
    auto project = readProject(path);
    if (!project) {
        return L10n::Errors::projectUnreadable(QFileInfo(path).fileName().toStdString(),
                                               project.error());
    }
    return project;
}

Result<void, std::string> ProjectStore::saveAs(const PollerProject& project, const QString& path) {
    return writeAtomically(project, path);
}

} // namespace kestrin
