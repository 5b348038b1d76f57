#pragma once

#include "PollerProject.h"
#include "Result.h"

#include <optional>
#include <string>

#include <QString>

namespace kestrin {

// Where projects meet the disk: the autosave file, project files the user opens and saves, and
// the rescue of an autosave that no longer loads. Every write is atomic (a temporary file that
// replaces the target), so a failed save leaves the previous file as it was.
// Thread contract: main thread only; holds no open files between calls.
class ProjectStore {
public:
    // What loading at start gives: the project to use, and where an unusable autosave was kept.
    struct Loaded {
        PollerProject project;
        std::optional<QString> brokenCopy;
    };

    // An empty path means the platform has no data folder: nothing is loaded or saved.
    explicit ProjectStore(QString autosavePath);

    // The per-user data folder + "/Kestrin/project.json"; empty when the platform has none.
    static QString defaultAutosavePath();

    const QString& autosavePath() const noexcept { return autosavePath_; }

    // The autosaved project, or the first-run project when there is none or it cannot be used.
    // An autosave that exists but cannot be read, decoded or has no polls is moved aside as
    // "project.json.broken-<date-time>" first, so that the next save cannot overwrite it.
    Loaded load() const;
    // Creates the folder when missing; the caller drops the error.
    Result<void, std::string> save(const PollerProject& project) const;

    // A project file chosen by the user; the error is the text to show: "Cannot read ..." and
    // what was wrong ("timeoutMs: expected a number", or the system's reason).
    static Result<PollerProject, std::string> open(const QString& path);
    // Creates the folder when missing; the error is the system's description, for the caller's
    // "Saving failed: " sentence.
    static Result<void, std::string> saveAs(const PollerProject& project, const QString& path);

private:
    std::optional<QString> keepBroken() const;

    QString autosavePath_;
};

} // namespace kestrin
