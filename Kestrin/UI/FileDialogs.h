#pragma once

#include <string>

#include <QString>
#include <QStringList>

class QWidget;

namespace kestrin::FileDialogs {

// One choice of a dialog's filter: the name in the user's language, then the patterns, as in
// "CSV files (*.csv)".
QString filter(const std::string& name, const QString& patterns);

// The folder a dialog opens in: the one of the file chosen last, kept in the preferences, else
// the Documents folder, else the home folder.
QString startFolder();
// Keeps the folder of a chosen file for the next dialog.
void rememberFolder(const QString& chosenFile);

// Asks for a file to open; empty when the user cancels.
QString openFile(QWidget* parent, const QString& title, const QStringList& filters);
// Asks where to save, proposing the file name in the start folder; empty when cancelled.
QString saveFile(QWidget* parent, const QString& title, const QString& fileName,
                 const QStringList& filters);

} // namespace kestrin::FileDialogs
