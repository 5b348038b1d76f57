#include "L10n.h"
#include "ProjectStore.h"
#include "TestFiles.h"

#include <cerrno>
#include <string>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

using Testing::contents;
using Testing::put;

PollerProject editedProject() {
    PollerProject project = PollerProject::firstRun();
    project.timeoutMs = 200;
    project.polls.push_back(PollerProject::newProject(project).polls.front());
    return project;
}

bool isFirstRun(const PollerProject& project) {
    return project.polls.size() == 1 && project.polls[0].datapoints.size() == 7 &&
           project.polls[0].name == L10n::texts().example.pollName();
}

class ProjectStoreTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString autosavePath = folder.filePath(QStringLiteral("Kestrin/project.json"));
    QString kestrinFolder = QFileInfo(autosavePath).absolutePath();
    ProjectStore store{autosavePath};
};

TEST_F(ProjectStoreTest, WithoutAnAutosaveTheFirstRunProjectIsUsedAndNothingWritten) {
    const ProjectStore::Loaded loaded = store.load();
    EXPECT_TRUE(isFirstRun(loaded.project));
    EXPECT_FALSE(loaded.brokenCopy);
    EXPECT_TRUE(QDir(folder.path()).isEmpty());

    const ProjectStore noDataFolder{QString()};
    EXPECT_TRUE(isFirstRun(noDataFolder.load().project));
    EXPECT_FALSE(noDataFolder.save(editedProject()).ok());
}

TEST_F(ProjectStoreTest, AnUnusableAutosaveIsKeptBesideItBeforeTheFirstRunProjectIsUsed) {
    const QRegularExpression keptName(
        QStringLiteral("^project\\.json\\.broken-\\d{4}-\\d\\d-\\d\\dT\\d{6}(-\\d+)?$"));
    QStringList kept;
    for (const QByteArray broken : {"{\"polls\": [", "{\"polls\": []}", "{\"polls\": 1}", ""}) {
        put(autosavePath, broken);
        const ProjectStore::Loaded loaded = store.load();
        EXPECT_TRUE(isFirstRun(loaded.project)) << broken.constData();
        ASSERT_TRUE(loaded.brokenCopy) << broken.constData();
        EXPECT_EQ(contents(*loaded.brokenCopy), broken);
        EXPECT_FALSE(QFileInfo::exists(autosavePath));
        EXPECT_EQ(QFileInfo(*loaded.brokenCopy).absolutePath(), kestrinFolder);
        kept.append(QFileInfo(*loaded.brokenCopy).fileName());
        EXPECT_TRUE(keptName.match(kept.back()).hasMatch()) << kept.back().toStdString();
    }
    // Rescues within one second still keep every file.
    EXPECT_EQ(QDir(kestrinFolder).entryList(QDir::Files).size(), 4);
}

TEST_F(ProjectStoreTest, OpenRefusesUnreadableUndecodableAndPollLessFiles) {
    const PollerProject project = editedProject();
    put(folder.filePath(QStringLiteral("good.json")), QByteArray::fromStdString(project.encoded()));
    put(folder.filePath(QStringLiteral("empty.json")), R"({"polls": []})");
    put(folder.filePath(QStringLiteral("notes.txt")), "Temperature;HR;100");

    const auto opened = ProjectStore::open(folder.filePath(QStringLiteral("good.json")));
    ASSERT_TRUE(opened.ok()) << opened.error();
    EXPECT_EQ(opened.value(), project);
    const std::pair<const char*, const char*> refusals[] = {
        {"empty.json", "polls: expected at least one entry"},
        {"notes.txt", "not a JSON document"},
        {"missing.json", "No such file or directory"},
    };
    for (const auto& [name, reason] : refusals) {
        const auto refused = ProjectStore::open(folder.filePath(QString::fromUtf8(name)));
        ASSERT_FALSE(refused.ok()) << name;
        EXPECT_EQ(refused.error(), L10n::Errors::projectUnreadable(name, reason));
    }
}

TEST_F(ProjectStoreTest, SaveAsCreatesFoldersOrFailsWithTheReason) {
    const PollerProject project = editedProject();
    const QString target = folder.filePath(QStringLiteral("projects/plant/kestrin.json"));
    ASSERT_TRUE(ProjectStore::saveAs(project, target).ok());
    EXPECT_EQ(contents(target).toStdString(), project.encoded());
    EXPECT_FALSE(QFileInfo::exists(autosavePath));

    // The reason alone: the caller puts it in its sentence, once.
    const auto refused = ProjectStore::saveAs(project, target + QStringLiteral("/inside.json"));
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error(), L10n::Errors::systemMessage(ENOTDIR));
    EXPECT_EQ(contents(target).toStdString(), project.encoded());
}

} // namespace
} // namespace kestrin
