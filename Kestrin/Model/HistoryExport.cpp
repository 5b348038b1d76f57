#include "HistoryExport.h"

#include "L10n.h"

namespace kestrin {

namespace {

// At least the writer's own buffer, so that each chunk goes to the file without a further copy.
constexpr std::size_t chunkBytes = std::size_t{64} * 1024;

} // namespace

HistoryExport::HistoryExport(const QString& path, std::span<const Poll> polls, History& history,
                             const CSVDialect& dialect)
    : history_(history)
    , rows_(polls, history, dialect)
    , writer_(path) {
    history_.hold();
    chunk_.reserve(chunkBytes + 1024);
}

HistoryExport::~HistoryExport() {
    history_.release();
}

HistoryExport::Progress HistoryExport::step(std::chrono::steady_clock::time_point deadline) {
    while (!done_) {
        done_ = rows_.appendTo(chunk_, chunkBytes);
        // After a failure the writer drops chunks; commit names the cause.
        (void)writer_.append(chunk_);
        chunk_.clear();
        if (std::chrono::steady_clock::now() >= deadline) {
            break;
        }
    }
    return {rows_.rowsWritten(), rows_.rowCount(), done_};
}

Result<void, std::string> HistoryExport::commit() {
    if (auto committed = writer_.commit(); !committed) {
        return L10n::texts().errors.saveFailed(committed.error());
    }
    return {};
}

} // namespace kestrin
