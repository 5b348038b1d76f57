#include "BlockSplit.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

constexpr RegisterTable holding = RegisterTable::holdingRegister;

ReadBlock hr(int address, int count = 1) {
    return {1, holding, static_cast<std::uint16_t>(address), count};
}

TEST(BlockSplit, HalvesCutBetweenThePiecesInsideTheBlock) {
    using Halves = std::optional<std::pair<ReadBlock, ReadBlock>>;
    struct Row {
        std::string name;
        std::vector<ReadBlock> pieces;
        Halves halves;
    };
    const Row rows[] = {
        {"a bridged gap", {hr(0), hr(10)}, std::pair{hr(0), hr(10)}},
        {"an odd count leaves the larger half behind",
         {hr(0), hr(5), hr(9, 2)},
         std::pair{hr(0), hr(5, 6)}},
        {"adjacent pieces", {hr(0), hr(1), hr(2, 2), hr(4)}, std::pair{hr(0, 2), hr(2, 3)}},
        {"pieces of another unit, table or range are not the block's",
         {{2, holding, 3, 1}, hr(0), {1, RegisterTable::inputRegister, 4, 1}, hr(10), hr(20)},
         std::pair{hr(0), hr(10)}},
        {"overlapping pieces of two blocks are read as one",
         {hr(10), hr(5, 3), hr(0), hr(4, 3)},
         std::pair{hr(0), hr(4, 7)}},
        {"one piece cannot be cut", {hr(0, 11)}, std::nullopt},
        {"a piece running past the block is not inside it", {hr(0), hr(10, 2)}, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(BlockSplit::halves(hr(0, 11), row.pieces), row.halves);
    }
}

// Block HR 0-10: what its refusals, the pieces refused and the parts answered prove missing.
TEST(BlockSplit, OnlyWhatTheAnswersProveIsCalledRefused) {
    using Refusal = BlockSplit::Refusal;
    struct Row {
        std::string name;
        std::vector<Refusal> refusals;
        std::vector<ReadBlock> refused;
        std::vector<ReadBlock> answered;
        std::vector<ReadBlock> runs;
    };
    const Row rows[] = {
        {"a bridged gap whose halves answered",
         {{hr(0, 11), hr(0), hr(10)}},
         {},
         {hr(0), hr(10)},
         {hr(1, 9)}},
        {"a refused piece explains the refusals around it, not their gaps",
         {{hr(0, 11), hr(0), hr(5, 6)}, {hr(5, 6), hr(5), hr(10)}},
         {hr(5)},
         {hr(0), hr(10)},
         {hr(5)}},
        {"a half that failed otherwise proves nothing",
         {{hr(0, 11), hr(0), hr(10)}},
         {},
         {hr(0)},
         {}},
        {"only the innermost gap of nested refusals, adjacent pieces in one run",
         {{hr(0, 11), hr(0, 3), hr(8, 3)},
          {hr(0, 3), hr(0), hr(2)},
          {hr(8, 3), hr(8), hr(9, 2)},
          {hr(9, 2), hr(9), hr(10)}},
         {hr(9), hr(10)},
         {hr(0), hr(2), hr(8)},
         {hr(1), hr(9, 2)}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(BlockSplit::refusedRuns(hr(0, 11), row.refusals, row.refused, row.answered),
                  row.runs);
    }
}

} // namespace
} // namespace kestrin
