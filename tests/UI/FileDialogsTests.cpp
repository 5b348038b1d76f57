#include "FileDialogs.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

TEST(FileDialogs, StartInTheFolderUsedLastWhileItExists) {
    QSettings("Kestrin", "Kestrin").clear();
    const QTemporaryDir files;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString fallback = QDir(documents).exists() ? documents : QDir::homePath();
    EXPECT_EQ(FileDialogs::startFolder(), fallback);

    ASSERT_TRUE(QDir(files.path()).mkpath("exports"));
    const QString folder = QDir(files.path()).filePath("exports");
    FileDialogs::rememberFolder(QDir(folder).filePath("boiler.csv"));
    EXPECT_EQ(FileDialogs::startFolder(), folder);
    // A cancelled dialog leaves the folder as it was.
    FileDialogs::rememberFolder(QString());
    EXPECT_EQ(FileDialogs::startFolder(), folder);

    ASSERT_TRUE(QDir(folder).removeRecursively());
    EXPECT_EQ(FileDialogs::startFolder(), fallback);
}

} // namespace
} // namespace kestrin
