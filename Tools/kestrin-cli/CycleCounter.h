#pragma once

#include "Poll.h"
#include "Uuid.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace kestrin {

// How many times every enabled poll has been read in full, told by the attempt times the model
// stores for each datapoint. The datapoints of one read request all carry the time that request
// ended, so a block counts as read again whenever that time moves; a poll's cycle is one read of
// each of its blocks. Reporting a datapoint twice for the same attempt therefore counts once.
class CycleCounter {
public:
    // The blocks of the enabled polls as the model plans them with this gap.
    CycleCounter(const std::vector<Poll>& polls, int maxGap);

    // False when no enabled poll has anything to read.
    bool hasBlocks() const noexcept { return !blocks_.empty(); }

    // The last attempt covering the datapoint ended at this time (milliseconds of any clock).
    void attemptEnded(const Uuid& datapointID, std::int64_t timeMs);

    // The cycles that every enabled poll with blocks has completed: the reads of the least-read
    // block. 0 when there are no blocks.
    std::int64_t completedCycles() const noexcept;

private:
    // The blocks of one enabled poll, and which of its datapoints each covers.
    void addBlocks(const std::vector<Datapoint>& datapoints, int maxGap);

    struct Block {
        std::optional<std::int64_t> lastAttempt;
        std::int64_t reads = 0;
    };

    std::vector<Block> blocks_;
    // A datapoint id may appear in more than one poll of a hand-edited project.
    std::multimap<Uuid, std::size_t> blockOf_;
};

} // namespace kestrin
