#include "FileDialogs.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

// The preferences of this test in a folder of its own, the user's own ones back afterwards.
class FileDialogsTest : public ::testing::Test {
protected:
    QTemporaryDir preferences;
    QTemporaryDir files;

    void SetUp() override {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, preferences.path());
    }
    void TearDown() override {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    }
};

TEST_F(FileDialogsTest, StartInTheFolderUsedLastWhileItExists) {
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
