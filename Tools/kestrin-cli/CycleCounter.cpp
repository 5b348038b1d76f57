#include "CycleCounter.h"

#include "ReadPlanner.h"

#include <algorithm>

namespace kestrin {

namespace {

// Unit, table and first address, then the position in the poll: sorted, the datapoints that may
// lie inside one block follow one another. An address past 65535 carries into the next table,
// which still ends the block's datapoints.
std::uint64_t startKey(std::uint8_t unit, RegisterTable table, int address, std::size_t index) {
    return (std::uint64_t{unit} << 56) + (std::uint64_t{static_cast<std::uint8_t>(table)} << 48) +
           (static_cast<std::uint64_t>(address) << 32) + static_cast<std::uint32_t>(index);
}

std::size_t indexOf(std::uint64_t key) {
    return static_cast<std::uint32_t>(key);
}

} // namespace

CycleCounter::CycleCounter(const std::vector<Poll>& polls, int maxGap) {
    for (const Poll& poll : polls) {
        if (poll.enabled) {
            addBlocks(poll.datapoints, maxGap);
        }
    }
}

// This runs before the first request, so a block looks only at the datapoints of its unit and
// table that start inside it: comparing every block with every datapoint kept large projects
// waiting.
void CycleCounter::addBlocks(const std::vector<Datapoint>& datapoints, int maxGap) {
    std::vector<std::uint64_t> starts;
    starts.reserve(datapoints.size());
    for (std::size_t i = 0; i < datapoints.size(); ++i) {
        const Datapoint& datapoint = datapoints[i];
        starts.push_back(startKey(datapoint.unitID, datapoint.table(), datapoint.address, i));
    }
    std::sort(starts.begin(), starts.end());

    for (const ReadBlock& block : ReadPlanner::blocks(datapoints, maxGap)) {
        const std::size_t index = blocks_.size();
        blocks_.emplace_back();
        const std::uint64_t end = startKey(block.unit, block.table, block.lastAddress() + 1, 0);
        auto start = std::lower_bound(starts.begin(), starts.end(),
                                      startKey(block.unit, block.table, block.address, 0));
        for (; start != starts.end() && *start < end; ++start) {
            const Datapoint& datapoint = datapoints[indexOf(*start)];
            if (block.covers(datapoint)) {
                blockOf_.emplace(datapoint.id, index);
            }
        }
    }
}

void CycleCounter::attemptEnded(const Uuid& datapointID, std::int64_t timeMs) {
    const auto [first, last] = blockOf_.equal_range(datapointID);
    for (auto entry = first; entry != last; ++entry) {
        Block& block = blocks_[entry->second];
        if (block.lastAttempt != timeMs) {
            block.lastAttempt = timeMs;
            ++block.reads;
        }
    }
}

std::int64_t CycleCounter::completedCycles() const noexcept {
    // Every poll's count is that of its least-read block, so the least over all blocks is the
    // least over all polls.
    const auto least =
        std::min_element(blocks_.begin(), blocks_.end(),
                         [](const Block& a, const Block& b) { return a.reads < b.reads; });
    return least == blocks_.end() ? 0 : least->reads;
}

} // namespace kestrin
