#include "CycleCounter.h"

#include "ReadPlanner.h"

namespace kestrin {

CycleCounter::CycleCounter(const std::vector<Poll>& polls, int maxGap) {
    for (const Poll& poll : polls) {
        if (!poll.enabled) {
            continue;
        }
        for (const ReadBlock& block : ReadPlanner::blocks(poll.datapoints, maxGap)) {
            reads_.emplace(keyOf(poll.id, block), 0);
        }
    }
    if (!reads_.empty()) {
        blocksByReads_[0] = reads_.size();
    }
}

CycleCounter::Key CycleCounter::keyOf(const Uuid& poll, const ReadBlock& block) {
    return {poll, block.unit, static_cast<int>(block.table), block.address, block.count};
}

void CycleCounter::blockRead(const Uuid& poll, const ReadBlock& block) {
    const auto found = reads_.find(keyOf(poll, block));
    if (found == reads_.end()) {
        return;
    }
    std::int64_t& reads = found->second;
    if (const auto before = blocksByReads_.find(reads); --before->second == 0) {
        blocksByReads_.erase(before);
    }
    ++blocksByReads_[++reads];
}

std::int64_t CycleCounter::completedCycles() const noexcept {
    return blocksByReads_.empty() ? 0 : blocksByReads_.begin()->first;
}

} // namespace kestrin
