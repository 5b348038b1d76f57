#include "FileDialogs.h"

#include "QtText.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace kestrin::FileDialogs {

namespace {

constexpr auto folderPreference = "lastFolder";

} // namespace

QString filter(const std::string& name, const QString& patterns) {
    return qt(name) + QStringLiteral(" (") + patterns + QLatin1Char(')');
}

QString startFolder() {
    QString last = QSettings("Kestrin", "Kestrin").value(folderPreference).toString();
    // A folder removed since, or on a drive no longer there, is no place to start.
    if (!last.isEmpty() && QFileInfo(last).isDir()) {
        return last;
    }
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return !documents.isEmpty() && QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

void rememberFolder(const QString& chosenFile) {
    if (!chosenFile.isEmpty()) {
        QSettings("Kestrin", "Kestrin")
            .setValue(folderPreference, QFileInfo(chosenFile).absolutePath());
    }
}

QString openFile(QWidget* parent, const QString& title, const QStringList& filters) {
    QString path = QFileDialog::getOpenFileName(parent, title, startFolder(), filters.join(";;"));
    rememberFolder(path);
    return path;
}

QString saveFile(QWidget* parent, const QString& title, const QString& fileName,
                 const QStringList& filters) {
    QString path = QFileDialog::getSaveFileName(
        parent, title, QDir(startFolder()).filePath(fileName), filters.join(";;"));
    rememberFolder(path);
    return path;
}

} // namespace kestrin::FileDialogs
