#include "ReadPlanner.h"

#include "Datapoint.h"
#include "RTUFrame.h"

#include <algorithm>

namespace kestrin::ReadPlanner {

namespace {

// One readable datapoint as a sort key: unit, table, first address, then its position in the poll,
// so that a plain sort orders the groups, sorts each group's ranges and keeps equal starts stable.
std::uint64_t sortKey(const Datapoint& datapoint, std::size_t index) {
    return (std::uint64_t{datapoint.unitID} << 56) |
           (std::uint64_t{static_cast<std::uint8_t>(datapoint.table())} << 48) |
           (std::uint64_t{datapoint.address} << 32) | static_cast<std::uint32_t>(index);
}

std::size_t indexOf(std::uint64_t key) {
    return static_cast<std::uint32_t>(key);
}

bool isReadable(const Datapoint& datapoint) {
    return RTUFrame::unitRange.contains(datapoint.unitID) && datapoint.lastAddress().has_value();
}

// A span never exceeds the limit when it was built by extension; the loop only guards the rule.
void emit(std::vector<ReadBlock>& result, GroupKey group, int start, int end, int limit) {
    while (start <= end) {
        const int count = std::min(limit, end - start + 1);
        result.push_back({group.unit, group.table, static_cast<std::uint16_t>(start), count});
        start += count;
    }
}

// gap -1 joins only ranges that overlap.
std::vector<ReadBlock> spans(const std::vector<Datapoint>& datapoints, int gap) {
    std::vector<std::uint64_t> keys;
    keys.reserve(datapoints.size());
    for (std::size_t i = 0; i < datapoints.size(); ++i) {
        if (isReadable(datapoints[i])) {
            keys.push_back(sortKey(datapoints[i], i));
        }
    }
    std::sort(keys.begin(), keys.end());

    std::vector<ReadBlock> result;
    GroupKey group;
    int start = 0;
    int end = -1;
    for (const std::uint64_t key : keys) {
        const Datapoint& datapoint = datapoints[indexOf(key)];
        const GroupKey current{datapoint.unitID, datapoint.table()};
        const Datapoint::AddressRange range = datapoint.addressRange();
        const int limit = current.table.maxReadCount();
        if (end >= start && current == group) {
            const int newEnd = std::max(end, range.last);
            // Widened so that a huge gap cannot overflow.
            const bool closeEnough = std::int64_t{range.first} <= std::int64_t{end} + 1 + gap;
            if (closeEnough && newEnd - start + 1 <= limit) {
                end = newEnd;
                continue;
            }
            emit(result, group, start, end, limit);
        } else if (end >= start) {
            emit(result, group, start, end, group.table.maxReadCount());
        }
        group = current;
        start = range.first;
        end = range.last;
    }
    if (end >= start) {
        emit(result, group, start, end, group.table.maxReadCount());
    }
    return result;
}

} // namespace

std::vector<ReadBlock> blocks(const std::vector<Datapoint>& datapoints, int maxGap) {
    return spans(datapoints, std::max(maxGap, 0));
}

std::vector<ReadBlock> pieces(const std::vector<Datapoint>& datapoints, int maxGap) {
    // Joined over the whole poll, a run of overlapping datapoints can break at the table's limit
    // elsewhere than the blocks do and then lie in no block whole; built block by block, the
    // pieces inside a block cover every datapoint it holds.
    std::vector<ReadBlock> result;
    for (const ReadBlock& block : blocks(datapoints, maxGap)) {
        std::vector<Datapoint> inside;
        std::copy_if(datapoints.begin(), datapoints.end(), std::back_inserter(inside),
                     [&](const Datapoint& datapoint) { return block.covers(datapoint); });
        for (const ReadBlock& piece : spans(inside, -1)) {
            if (std::find(result.begin(), result.end(), piece) == result.end()) {
                result.push_back(piece);
            }
        }
    }
    return result;
}

std::optional<DecodedValue> value(const Datapoint& of, const ReadBlock& in, const ReadData& data) {
    if (!in.covers(of)) {
        return std::nullopt;
    }
    const auto offset = static_cast<std::size_t>(of.address - in.address);
    if (const auto* bits = data.as<ReadData::Bits>()) {
        if (offset >= bits->values.size()) {
            return std::nullopt;
        }
        const bool set = bits->values[offset];
        return DecodedValue{Value::unsignedInteger(set ? 1 : 0),
                            {static_cast<std::uint16_t>(set ? 1 : 0)}};
    }
    const auto& registers = data.as<ReadData::Registers>()->values;
    const auto count = static_cast<std::size_t>(of.count());
    if (offset + count > registers.size()) {
        return std::nullopt;
    }
    std::vector<std::uint16_t> raw(registers.begin() + static_cast<std::ptrdiff_t>(offset),
                                   registers.begin() + static_cast<std::ptrdiff_t>(offset + count));
    const Value decoded = of.valueFromRegisters(raw);
    return DecodedValue{decoded, std::move(raw)};
}

} // namespace kestrin::ReadPlanner
