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

// The runs of addresses of block that none of the parts covers, in address order.
std::vector<ReadBlock> uncovered(const ReadBlock& block, std::span<const ReadBlock> parts);

} // namespace BlockSplit
} // namespace kestrin
