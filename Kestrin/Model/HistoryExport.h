#pragma once

#include "CSVDialect.h"
#include "History.h"
#include "HistoryRows.h"
#include "Poll.h"
#include "Result.h"
#include "TextFileWriter.h"

#include <chrono>
#include <cstddef>
#include <span>
#include <string>

#include <QString>

namespace kestrin {

// The history CSV written to a file a slice at a time, so that the window stays responsive and
// reading goes on while a large history is written. The file holds exactly the samples there
// were when the export began: the history is held (History::hold) until the export is
// destroyed, and must outlive it. Destroying it before commit cancels: the target stays as it
// was and no temporary file is left.
class HistoryExport {
public:
    struct Progress {
        std::size_t rowsWritten;
        std::size_t rowCount;
        bool done;
    };

    HistoryExport(const QString& path, std::span<const Poll> polls, History& history,
                  const CSVDialect& dialect);
    ~HistoryExport();
    HistoryExport(const HistoryExport&) = delete;
    HistoryExport& operator=(const HistoryExport&) = delete;

    // Writes rows until the deadline has passed, at least one chunk, or to the end.
    Progress step(std::chrono::steady_clock::time_point deadline);
    // Once step is done: the file replaces the target. The error is the sentence for the user.
    Result<void, std::string> commit();

private:
    History& history_;
    HistoryRows rows_;
    TextFileWriter writer_;
    std::string chunk_;
    bool done_ = false;
};

} // namespace kestrin
