#include "CycleCounter.h"

#include "ReadPlanner.h"

#include <algorithm>

namespace kestrin {

CycleCounter::CycleCounter(const std::vector<Poll>& polls, int maxGap) {
    for (const Poll& poll : polls) {
        if (!poll.enabled) {
            continue;
        }
        for (const ReadBlock& block : ReadPlanner::blocks(poll.datapoints, maxGap)) {
            const std::size_t index = blocks_.size();
            blocks_.emplace_back();
            for (const Datapoint& datapoint : poll.datapoints) {
                if (block.covers(datapoint)) {
                    blockOf_.emplace(datapoint.id, index);
                }
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
