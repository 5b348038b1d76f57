#include "L10n.h"
#include "ProjectStore.h"
#include "TestFiles.h"
#include "TextFileWriter.h"

#include <cerrno>
#include <functional>
#include <numeric>
#include <string>
#include <sys/stat.h>
#include <vector>

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

mode_t permissions(const QString& path) {
    struct stat status {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

// Around the 64 KiB the writer gathers before it writes.
const std::vector<std::size_t> chunkSizes{1, 65535, 65536, 65537, 3, 200000, 0, 65536};
const auto totalSize =
    static_cast<rlim_t>(std::accumulate(chunkSizes.begin(), chunkSizes.end(), std::size_t{0}));

class SavedFiles : public testing::Test {
protected:
    QTemporaryDir folder;
    QString autosavePath = folder.filePath("Kestrin/project.json");
    QString target = folder.filePath("export.csv");

    QStringList files() const {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    }
};

using ProjectStoreTest = SavedFiles;
using TextFileWriterTest = SavedFiles;

// Without an autosave nothing is written; an unusable one is kept beside it under a name of its
// own, even for several within one second.
TEST_F(ProjectStoreTest, TheFirstRunProjectStandsInForAnAbsentOrUnusableAutosave) {
    const ProjectStore store{autosavePath};
    const ProjectStore::Loaded fresh = store.load();
    EXPECT_TRUE(isFirstRun(fresh.project));
    EXPECT_FALSE(fresh.brokenCopy);
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
    const ProjectStore noDataFolder{QString()};
    EXPECT_TRUE(isFirstRun(noDataFolder.load().project));
    EXPECT_FALSE(noDataFolder.save(editedProject()).ok());

    const QRegularExpression keptName(
        "^project\\.json\\.broken-\\d{4}-\\d\\d-\\d\\dT\\d{6}(-\\d+)?$");
    const QString kestrinFolder = QFileInfo(autosavePath).absolutePath();
    for (const QByteArray broken : {"{\"polls\": [", "{\"polls\": []}", "{\"polls\": 1}", ""}) {
        put(autosavePath, broken);
        const ProjectStore::Loaded loaded = store.load();
        EXPECT_TRUE(isFirstRun(loaded.project)) << broken.constData();
        ASSERT_TRUE(loaded.brokenCopy) << broken.constData();
        EXPECT_EQ(contents(*loaded.brokenCopy), broken);
        EXPECT_FALSE(QFileInfo::exists(autosavePath));
        EXPECT_EQ(QFileInfo(*loaded.brokenCopy).absolutePath(), kestrinFolder);
        const QString kept = QFileInfo(*loaded.brokenCopy).fileName();
        EXPECT_TRUE(keptName.match(kept).hasMatch()) << kept.toStdString();
    }
    EXPECT_EQ(QDir(kestrinFolder).entryList(QDir::Files).size(), 4);
}

// The reasons alone: the caller puts them in its sentence, once.
TEST_F(ProjectStoreTest, SaveAsCreatesFoldersAndOpenReadsItBackOrBothRefuseWithTheReason) {
    const PollerProject project = editedProject();
    const QString saved = folder.filePath("projects/plant/kestrin.json");
    ASSERT_TRUE(ProjectStore::saveAs(project, saved).ok());
    EXPECT_EQ(contents(saved).toStdString(), project.encoded());
    EXPECT_FALSE(QFileInfo::exists(autosavePath));
    const auto opened = ProjectStore::open(saved);
    ASSERT_TRUE(opened.ok()) << opened.error();
    EXPECT_EQ(opened.value(), project);
    const auto inside = ProjectStore::saveAs(project, saved + "/inside.json");
    ASSERT_FALSE(inside.ok());
    EXPECT_EQ(inside.error(), L10n::Errors::systemMessage(ENOTDIR));
    EXPECT_EQ(contents(saved).toStdString(), project.encoded());

    put(folder.filePath("empty.json"), R"({"polls": []})");
    put(folder.filePath("notes.txt"), "Temperature;HR;100");
    const std::pair<const char*, const char*> refusals[] = {
        {"empty.json", "polls: expected at least one entry"},
        {"notes.txt", "not a JSON document"},
        {"missing.json", "No such file or directory"}};
    for (const auto& [name, reason] : refusals) {
        const auto refused = ProjectStore::open(folder.filePath(QString::fromUtf8(name)));
        ASSERT_FALSE(refused.ok()) << name;
        EXPECT_EQ(refused.error(), L10n::Errors::projectUnreadable(name, reason));
    }
}

// Saved through a link: nothing reaches the file it names before the commit, then every chunk in
// order; that file keeps its permissions and the link stays a link.
TEST_F(TextFileWriterTest, ChunksOfEverySizeArriveInOrderThroughALinkAndThePermissionsStay) {
    const QString real = folder.filePath("real.txt");
    put(real, "old");
    ASSERT_EQ(::chmod(QFile::encodeName(real).constData(), 0640), 0);
    ASSERT_TRUE(QFile::link(real, target));
    std::string expected;
    TextFileWriter writer(target);
    for (std::size_t i = 0; i < chunkSizes.size(); ++i) {
        const std::string chunk(chunkSizes[i], char('a' + i));
        EXPECT_TRUE(writer.append(chunk));
        expected += chunk;
    }
    EXPECT_EQ(contents(real), "old");
    const auto committed = writer.commit();
    ASSERT_TRUE(committed.ok()) << committed.error();
    EXPECT_EQ(contents(real).toStdString(), expected);
    EXPECT_EQ(permissions(real), 0640U);
    EXPECT_EQ(QFileInfo(target).symLinkTarget(), real);
    EXPECT_EQ(files(), (QStringList{"export.csv", "real.txt"}));
}

// Each failure at its own step: creating the temporary file, writing it, putting it in place.
// The target keeps its content or stays absent, nothing is left beside it, and the message is
// the system's own.
TEST_F(TextFileWriterTest, AFailureAtAnyStepKeepsTheTargetAndNamesTheSystemsCause) {
    const struct {
        const char* name;
        QString path;
        std::function<void()> prepare;
        rlim_t sizeLimit;
        int code;
    } rows[] = {
        {"missing folder", folder.filePath("missing/export.csv"), [] {}, RLIM_INFINITY, ENOENT},
        {"empty path", QString(), [] {}, RLIM_INFINITY, ENOENT},
        {"full far before the end", target, [&] { put(target, "old"); }, 1, EFBIG},
        {"full one byte before the end", target, [&] { put(target, "old"); }, totalSize - 1, EFBIG},
        {"target is a folder", target,
         [&] { ASSERT_TRUE(QDir(folder.path()).mkdir("export.csv")); }, RLIM_INFINITY, EISDIR}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        QDir(folder.path()).removeRecursively();
        QDir().mkpath(folder.path());
        row.prepare();
        const QStringList before = files();
        const QByteArray old = contents(row.path);
        Result<void, std::string> committed;
        {
            const Testing::FileSizeLimit limit(row.sizeLimit);
            TextFileWriter writer(row.path);
            for (const std::size_t size : chunkSizes) {
                writer.append(std::string(size, 'x'));
            }
            committed = writer.commit();
            EXPECT_FALSE(writer.append("more")) << "a failed writer takes nothing more";
        }
        ASSERT_FALSE(committed.ok());
        EXPECT_EQ(committed.error(), L10n::Errors::systemMessage(row.code));
        EXPECT_EQ(contents(row.path), old);
        EXPECT_EQ(files(), before);
    }
}

} // namespace
} // namespace kestrin
