#include "BlockSplit.h"

#include <algorithm>

namespace kestrin::BlockSplit {

namespace {

bool holds(const ReadBlock& block, const ReadBlock& piece) {
    return piece.unit == block.unit && piece.table == block.table &&
           piece.address >= block.address && piece.lastAddress() <= block.lastAddress();
}

ReadBlock spanning(const ReadBlock& first, const ReadBlock& last) {
    return {first.unit, first.table, first.address, last.lastAddress() - first.address + 1};
}

// The runs of addresses of block that none of the parts covers, in address order.
std::vector<ReadBlock> uncovered(const ReadBlock& block, std::span<const ReadBlock> parts) {
    std::vector<bool> covered(static_cast<std::size_t>(block.count), false);
    for (const ReadBlock& part : parts) {
        const int first = std::max(part.address - block.address, 0);
        const int last = std::min(part.lastAddress(), block.lastAddress()) - block.address;
        for (int offset = first; offset <= last; ++offset) {
            covered[static_cast<std::size_t>(offset)] = true;
        }
    }
    std::vector<ReadBlock> runs;
    for (int offset = 0; offset < block.count; ++offset) {
        if (covered[static_cast<std::size_t>(offset)]) {
            continue;
        }
        const auto address = static_cast<std::uint16_t>(block.address + offset);
        if (!runs.empty() && runs.back().lastAddress() + 1 == address) {
            ++runs.back().count;
        } else {
            runs.push_back({block.unit, block.table, address, 1});
        }
    }
    return runs;
}

} // namespace

std::vector<ReadBlock> piecesIn(const ReadBlock& block, std::span<const ReadBlock> pieces) {
    std::vector<ReadBlock> inside;
    std::copy_if(pieces.begin(), pieces.end(), std::back_inserter(inside),
                 [&](const ReadBlock& piece) { return holds(block, piece); });
    // Blocks that share addresses each bring their own pieces; where those overlap, they are read
    // as one.
    std::ranges::sort(inside, {}, &ReadBlock::address);
    std::vector<ReadBlock> joined;
    for (const ReadBlock& piece : inside) {
        if (!joined.empty() && piece.address <= joined.back().lastAddress()) {
            joined.back() =
                spanning(joined.back(),
                         piece.lastAddress() > joined.back().lastAddress() ? piece : joined.back());
        } else {
            joined.push_back(piece);
        }
    }
    return joined;
}

std::optional<std::pair<ReadBlock, ReadBlock>> halves(const ReadBlock& block,
                                                      std::span<const ReadBlock> pieces) {
    const std::vector<ReadBlock> inside = piecesIn(block, pieces);
    if (inside.size() < 2) {
        return std::nullopt;
    }
    const std::size_t middle = inside.size() / 2;
    return std::pair{spanning(inside.front(), inside[middle - 1]),
                     spanning(inside[middle], inside.back())};
}

std::vector<ReadBlock> refusedRuns(const ReadBlock& block, std::span<const Refusal> refusals,
                                   std::span<const ReadBlock> refusedPieces,
                                   std::span<const ReadBlock> answered) {
    std::vector<ReadBlock> refused(refusedPieces.begin(), refusedPieces.end());
    const auto wasAnswered = [&](const ReadBlock& part) {
        return std::ranges::find(answered, part) != answered.end();
    };
    for (const Refusal& refusal : refusals) {
        const int gap = refusal.second.address - refusal.first.lastAddress() - 1;
        if (gap > 0 && wasAnswered(refusal.first) && wasAnswered(refusal.second)) {
            refused.push_back({block.unit, block.table,
                               static_cast<std::uint16_t>(refusal.first.lastAddress() + 1), gap});
        }
    }
    // The complement of the complement: the refused addresses joined into runs.
    return uncovered(block, uncovered(block, refused));
}

} // namespace kestrin::BlockSplit
