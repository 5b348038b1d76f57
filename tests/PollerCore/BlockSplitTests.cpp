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

TEST(BlockSplit, UncoveredAddressesComeInRuns) {
    struct Row {
        std::string name;
        std::vector<ReadBlock> parts;
        std::vector<ReadBlock> runs;
    };
    const Row rows[] = {
        {"the gap between two parts", {hr(10), hr(0)}, {hr(1, 9)}},
        {"two gaps", {hr(0), hr(5), hr(10)}, {hr(1, 4), hr(6, 4)}},
        {"every address answered", {hr(0, 6), hr(6, 5)}, {}},
        {"nothing answered", {}, {hr(0, 11)}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(BlockSplit::uncovered(hr(0, 11), row.parts), row.runs);
    }
}

} // namespace
} // namespace kestrin
