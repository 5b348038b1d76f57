#pragma once

#include "CSVDialect.h"
#include "Datapoint.h"
#include "History.h"
#include "Poll.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kestrin {

// The text of the history CSV (see HistoryCSV::text), produced a batch at a time into the
// caller's buffer. Each ring is in time order already, so the rows come from a merge of the rings
// by the time of their next sample: nothing is sorted, and nothing is held but one entry per
// datapoint. Rows of equal time keep poll order, then table order, then recording order.
//
// Reads each ring up to the size it had when this was made; the caller keeps the rings in place
// and their indices steady (History::hold) for as long as it asks for rows. Names, units and the
// decoding of each datapoint are copied, so the polls may change meanwhile.
class HistoryRows {
public:
    HistoryRows(std::span<const Poll> polls, const History& history, const CSVDialect& dialect);

    // Appends the header on the first call, then whole rows until `out` holds at least
    // `bytes`. True once every row is in.
    bool appendTo(std::string& out, std::size_t bytes);
    std::size_t rowsWritten() const noexcept { return rowsWritten_; }
    std::size_t rowCount() const noexcept { return rowCount_; }

private:
    struct Source {
        const SampleRing* ring;
        std::size_t end;
        Datapoint datapoint;
        // The cells before the value, each led by the separator, and the separator before it.
        std::string lead;
        // The separator, the unit cell and the line end.
        std::string tail;
    };
    // A source's next sample. The top of std's max-heap ordered by `later` is the earliest, the
    // first source on a tie.
    struct Next {
        std::int64_t msecs;
        std::uint32_t source;
        std::size_t index;
    };

    static bool later(const Next& a, const Next& b) {
        return a.msecs != b.msecs ? a.msecs > b.msecs : a.source > b.source;
    }
    void addSources(const Poll& poll, const History& history);
    void appendRow(std::string& out, const Next& next);
    void appendTime(std::string& out, std::int64_t msecsSinceEpoch);

    CSVDialect dialect_;
    std::vector<Source> sources_;
    std::vector<Next> heap_;
    std::size_t rowCount_ = 0;
    std::size_t rowsWritten_ = 0;
    bool headerWritten_ = false;
    // The local time text of one UTC second, without its milliseconds: rows come in time order,
    // so each second is formatted once.
    std::int64_t cachedSecond_ = 0;
    std::string cachedSecondText_;
};

} // namespace kestrin
