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

using Testing::contents;
using Testing::put;

mode_t permissions(const QString& path) {
    struct stat status {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

// Around the 64 KiB the writer gathers before it writes.
const std::vector<std::size_t> chunkSizes{1, 65535, 65536, 65537, 3, 200000, 0, 65536};
const auto totalSize =
    static_cast<rlim_t>(std::accumulate(chunkSizes.begin(), chunkSizes.end(), std::size_t{0}));

class TextFileWriterTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString target = folder.filePath("export.csv");

    QStringList files() const {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    }
};

TEST_F(TextFileWriterTest, ChunksOfEverySizeArriveInOrderAndTheOldPermissionsStay) {
    put(target, "old");
    ASSERT_EQ(::chmod(QFile::encodeName(target).constData(), 0640), 0);
    std::string expected;
    TextFileWriter writer(target);
    for (std::size_t i = 0; i < chunkSizes.size(); ++i) {
        const std::string chunk(chunkSizes[i], char('a' + i));
        EXPECT_TRUE(writer.append(chunk));
        expected += chunk;
    }
    EXPECT_EQ(contents(target), "old") << "nothing reaches the target before the commit";
    const auto committed = writer.commit();
    ASSERT_TRUE(committed.ok()) << committed.error();
    EXPECT_EQ(contents(target).toStdString(), expected);
    EXPECT_EQ(permissions(target), 0640U);
    EXPECT_EQ(files(), QStringList{"export.csv"});
}

TEST_F(TextFileWriterTest, SavingOverALinkReplacesTheFileItNames) {
    const QString real = folder.filePath("real.txt");
    put(real, "old");
    ASSERT_TRUE(QFile::link(real, target));
    TextFileWriter writer(target);
    writer.append("new");
    ASSERT_TRUE(writer.commit().ok());
    EXPECT_EQ(contents(real), "new");
    EXPECT_EQ(QFileInfo(target).symLinkTarget(), real);
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
         [&] { ASSERT_TRUE(QDir(folder.path()).mkdir("export.csv")); }, RLIM_INFINITY, EISDIR},
    };
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
