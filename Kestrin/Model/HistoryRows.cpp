#include "HistoryRows.h"

#include "DatapointLabel.h"
#include "HistoryCSV.h"

#include <algorithm>

#include <QDateTime>
#include <QLocale>

namespace kestrin {

namespace {

// Names and units are written as they are; only the datapoint list is read back and trimmed.
constexpr auto plain = CSVDialect::EdgeSpace::plain;

std::int64_t floorDiv(std::int64_t value, std::int64_t divisor) {
    const std::int64_t quotient = value / divisor;
    return quotient * divisor > value ? quotient - 1 : quotient;
}

} // namespace

HistoryRows::HistoryRows(std::span<const Poll> polls, const History& history,
                         const CSVDialect& dialect)
    : dialect_(dialect) {
    for (const Poll& poll : polls) {
        addSources(poll, history);
    }
    for (std::size_t source = 0; source < sources_.size(); ++source) {
        heap_.push_back(
            {sources_[source].ring->msecsSinceEpoch(0), static_cast<std::uint32_t>(source), 0});
        rowCount_ += sources_[source].end;
    }
    std::make_heap(heap_.begin(), heap_.end(), later);
}

void HistoryRows::addSources(const Poll& poll, const History& history) {
    std::string pollCell;
    dialect_.appendCell(pollCell, poll.name, plain);
    for (const Datapoint& datapoint : poll.datapoints) {
        const SampleRing* ring = history.samples(datapoint.id);
        if (ring == nullptr) {
            continue;
        }
        Source source{ring, ring->size(), datapoint, {}, {}};
        source.lead = dialect_.separator + pollCell + dialect_.separator;
        dialect_.appendCell(source.lead, DatapointLabel::name(datapoint), plain);
        source.lead += dialect_.separator;
        source.tail = dialect_.separator;
        dialect_.appendCell(source.tail, datapoint.engineeringUnit, plain);
        source.tail += CSVDialect::lineEnd;
        sources_.push_back(std::move(source));
    }
}

bool HistoryRows::appendTo(std::string& out, std::size_t bytes) {
    if (!headerWritten_) {
        dialect_.appendRow(out, {"Time", "Poll", "Name", "Value", "Unit"}, plain);
        headerWritten_ = true;
    }
    while (!heap_.empty() && out.size() < bytes) {
        std::pop_heap(heap_.begin(), heap_.end(), later);
        Next& next = heap_.back();
        appendRow(out, next);
        const Source& source = sources_[next.source];
        if (++next.index < source.end) {
            next.msecs = source.ring->msecsSinceEpoch(next.index);
            std::push_heap(heap_.begin(), heap_.end(), later);
        } else {
            heap_.pop_back();
        }
    }
    return heap_.empty();
}

void HistoryRows::appendRow(std::string& out, const Next& next) {
    const Source& source = sources_[next.source];
    appendTime(out, next.msecs);
    out += source.lead;
    dialect_.appendCell(
        out, HistoryCSV::valueText(source.datapoint, source.ring->value(next.index), dialect_),
        plain);
    out += source.tail;
    ++rowsWritten_;
}

// Time zone offsets are whole seconds, so the milliseconds read the same in UTC and local time;
// keyed by the UTC second, the cache stays right across a change to or from summer time.
void HistoryRows::appendTime(std::string& out, std::int64_t msecsSinceEpoch) {
    const std::int64_t second = floorDiv(msecsSinceEpoch, 1000);
    if (cachedSecondText_.empty() || second != cachedSecond_) {
        cachedSecond_ = second;
        cachedSecondText_ = HistoryCSV::secondText(second);
    }
    const auto millis = static_cast<int>(msecsSinceEpoch - second * 1000);
    out += cachedSecondText_;
    out += '.';
    out += static_cast<char>('0' + millis / 100);
    out += static_cast<char>('0' + millis / 10 % 10);
    out += static_cast<char>('0' + millis % 10);
}

} // namespace kestrin
