#pragma once

#include "ReadBlock.h"

#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace kestrin {

// How a read block the device refuses whole (exception 02: some address in it does not exist)
// is cut into smaller reads. Pure functions.
namespace BlockSplit {

// The pieces (ReadPlanner::pieces) that lie wholly inside block, in address order, overlapping
// ones joined.
std::vector<ReadBlock> piecesIn(const ReadBlock& block, std::span<const ReadBlock> pieces);

// The block cut in two between its pieces, each half reaching from its first piece to its last;
// nothing when the block holds fewer than two pieces.
std::optional<std::pair<ReadBlock, ReadBlock>> halves(const ReadBlock& block,
                                                      std::span<const ReadBlock> pieces);

// A read the device refused with exception 02 and the halves it was read again in.
struct Refusal {
    ReadBlock read;
    ReadBlock first;
    ReadBlock second;
};

// The addresses of block the device's answers show it refused, in runs in address order: the
// single pieces it refused, and the addresses between the halves of a refused read when both
// halves answered, since they alone can hold what it refused.
std::vector<ReadBlock> refusedRuns(const ReadBlock& block, std::span<const Refusal> refusals,
                                   std::span<const ReadBlock> refusedPieces,
                                   std::span<const ReadBlock> answered);

} // namespace BlockSplit
} // namespace kestrin
