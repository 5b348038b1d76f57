#pragma once

#include "Poll.h"
#include "ReadBlock.h"
#include "Uuid.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

namespace kestrin {

// How many times every enabled poll has been read in full: the model reports every block it
// read, answered or not, and a poll's cycle is one read of each of its blocks. Counting reads,
// not status changes, keeps two reads of one block that reach the main thread together two.
class CycleCounter {
public:
    // The blocks of the enabled polls as the model plans them with this gap.
    CycleCounter(const std::vector<Poll>& polls, int maxGap);

    // False when no enabled poll has anything to read.
    bool hasBlocks() const noexcept { return !reads_.empty(); }

    // One read of this block of this poll ended; a block no enabled poll plans is not counted.
    void blockRead(const Uuid& poll, const ReadBlock& block);

    // The cycles that every enabled poll with blocks has completed: the reads of the least-read
    // block. 0 when there are no blocks.
    std::int64_t completedCycles() const noexcept;

private:
    using Key = std::tuple<Uuid, std::uint8_t, int, std::uint16_t, int>;
    static Key keyOf(const Uuid& poll, const ReadBlock& block);

    std::map<Key, std::int64_t> reads_;
    // How many blocks have been read how many times: the first entry is the least-read, found
    // without looking at every block after each answer.
    std::map<std::int64_t, std::size_t> blocksByReads_;
};

} // namespace kestrin
