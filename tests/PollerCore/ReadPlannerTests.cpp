#include "BlockSplit.h"
#include "Datapoint.h"
#include "ReadPlanner.h"

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

constexpr RegisterTable coil = RegisterTable::coil;
constexpr RegisterTable discrete = RegisterTable::discreteInput;
constexpr RegisterTable holding = RegisterTable::holdingRegister;
constexpr RegisterTable input = RegisterTable::inputRegister;

Datapoint point(int unit, RegisterTable table, int address, DataType type = DataType::uint16) {
    Datapoint result;
    result.unitID = static_cast<std::uint8_t>(unit);
    result.setTable(table);
    result.address = static_cast<std::uint16_t>(address);
    if (!table.isBit()) {
        result.dataType = type;
    }
    return result;
}

// Datapoints and blocks of unit 1 in the holding registers, the most common case below.
Datapoint hr(int address, DataType type = DataType::uint16) {
    return point(1, holding, address, type);
}

ReadBlock block(int address, int count) {
    return {1, holding, static_cast<std::uint16_t>(address), count};
}

// count datapoints from first on, then the others.
std::vector<Datapoint> run(int unit, RegisterTable table, int first, int count,
                           std::vector<Datapoint> others = {}) {
    std::vector<Datapoint> points;
    for (int address = first; address < first + count; ++address) {
        points.push_back(point(unit, table, address));
    }
    points.insert(points.end(), others.begin(), others.end());
    return points;
}

TEST(ReadPlanner, BlocksFollowGapLimitAndGroupRules) {
    struct Row {
        std::string name;
        std::vector<Datapoint> points;
        int maxGap;
        std::vector<ReadBlock> blocks;
    };
    constexpr DataType float32 = DataType::float32;
    const Row rows[] = {
        {"adjacent datapoints share a block", {hr(0), hr(1), hr(2, float32)}, 0, {block(0, 4)}},
        {"a hole with gap 0 splits", {hr(0), hr(5)}, 0, {block(0, 1), block(5, 1)}},
        {"a hole of 4 is bridged by gap 4", {hr(0), hr(5)}, 4, {block(0, 6)}},
        {"but not by gap 3", {hr(0), hr(5)}, 3, {block(0, 1), block(5, 1)}},
        {"a negative gap is 0", {hr(0), hr(1), hr(3)}, -5, {block(0, 2), block(3, 1)}},
        {"registers split at 125", run(1, holding, 0, 200), 0, {block(0, 125), block(125, 75)}},
        {"bits split at 2000",
         run(1, coil, 0, 2500),
         0,
         {{1, coil, 0, 2000}, {1, coil, 2000, 500}}},
        {"a float32 across the limit starts a block",
         run(1, holding, 0, 124, {hr(124, float32)}),
         0,
         {block(0, 124), block(124, 2)}},
        {"one address, two datapoints", {hr(10), hr(10, DataType::uint32)}, 0, {block(10, 2)}},
        {"input order does not matter within a group",
         {point(1, input, 7), point(1, input, 3), point(1, input, 5, DataType::int32),
          point(1, input, 4)},
         0,
         {{1, input, 3, 5}}},
        {"groups come out by unit, then in table order",
         {point(2, coil, 0), point(1, input, 0), hr(0), point(1, discrete, 0), point(1, coil, 0)},
         0,
         {{1, coil, 0, 1}, {1, discrete, 0, 1}, block(0, 1), {1, input, 0, 1}, {2, coil, 0, 1}}},
        {"another table or unit is another block",
         {hr(0), point(1, input, 1), point(2, holding, 1)},
         10,
         {block(0, 1), {1, input, 1, 1}, {2, holding, 1, 1}}},
        {"the gap counts bits", {point(1, coil, 0), point(1, coil, 9)}, 8, {{1, coil, 0, 10}}},
        {"unreadable datapoints are dropped",
         {point(0, holding, 0), point(248, holding, 0), hr(65533, DataType::uint64), hr(65535)},
         0,
         {block(65535, 1)}},
        {"a huge gap keeps the limit", {hr(0), hr(200)}, 2147483647, {block(0, 1), block(200, 1)}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ReadPlanner::blocks(row.points, row.maxGap), row.blocks);
    }
}

// uint32 datapoints at first, first + 1 ... last, each sharing a register with the next.
std::vector<Datapoint> chain(int first, int last, std::vector<Datapoint> before) {
    for (int address = first; address <= last; ++address) {
        before.push_back(hr(address, DataType::uint32));
    }
    return before;
}

// The smallest reads: a piece never joins a neighbour unless the two share an address, and never
// reaches past the block that holds its datapoints.
TEST(ReadPlanner, PiecesJoinOnlyOverlappingDatapoints) {
    const struct {
        std::string name;
        std::vector<Datapoint> points;
        int maxGap;
        std::vector<ReadBlock> pieces;
    } rows[] = {
        {"adjacent datapoints stay apart", {hr(1), hr(0)}, 0, {block(0, 1), block(1, 1)}},
        {"overlapping datapoints join",
         {hr(11), hr(10, DataType::uint32), hr(12, DataType::float32)},
         0,
         {block(10, 2), block(12, 2)}},
        // The gaps move the first block's start, so the limit cuts it inside the overlapping run.
        {"an overlapping run is cut where the blocks are",
         chain(4, 126, {hr(0), hr(2)}),
         1,
         {block(0, 1), block(2, 1), block(4, 121), block(124, 4)}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ReadPlanner::pieces(row.points, row.maxGap), row.pieces);
    }
}

TEST(ReadBlock, CoversOnlyWholeDatapointsOfItsUnitAndTable) {
    const ReadBlock block{1, holding, 10, 4};
    struct Row {
        std::string name;
        Datapoint point;
        bool covered;
    };
    const Row rows[] = {{"first address", hr(10), true},
                        {"last address", hr(13), true},
                        {"float32 ending on the last address", hr(12, DataType::float32), true},
                        {"float32 running past the end", hr(13, DataType::float32), false},
                        {"before the block", hr(9), false},
                        {"another table", point(1, input, 10), false},
                        {"another unit", point(2, holding, 10), false}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(block.covers(row.point), row.covered);
    }
}

// Decoding the registers is the datapoint's own test; here the cut and that it is handed on.
TEST(ReadPlannerValue, CutsOutTheDatapointOnlyWhenTheBlockHoldsAllOfIt) {
    using Value = ReadPlanner::DecodedValue;
    constexpr auto none = std::nullopt;
    constexpr DataType float32 = DataType::float32;
    constexpr DataType uint32 = DataType::uint32;
    const ReadBlock coils{1, coil, 5, 3};
    const ReadBlock registers{1, holding, 100, 4};
    const ReadData bits = ReadData::bits({false, false, true});
    const ReadData words = ReadData::registers({1, 215, 3, 4});
    Datapoint swapped = hr(102, uint32);
    swapped.wordOrder = WordOrder::cdab;
    struct Row {
        std::string name;
        Datapoint point;
        ReadBlock block;
        ReadData data;
        std::optional<Value> decoded;
    };
    const Row rows[] = {
        {"a set bit", point(1, coil, 7), coils, bits, Value{1.0, {1}}},
        {"a clear bit", point(1, coil, 6), coils, bits, Value{0.0, {0}}},
        {"too few bits", point(1, coil, 7), coils, ReadData::bits({false, false}), none},
        {"bit data whatever the type", hr(100, float32), registers,
         ReadData::bits({true, false, false, false}), Value{1.0, {1}}},
        {"registers in the datapoint's word order", swapped, registers,
         ReadData::registers({0, 0, 2, 1}), Value{65538.0, {2, 1}}},
        {"too few registers", hr(102, uint32), registers, ReadData::registers({1, 2, 3}), none},
        {"another table", point(1, input, 100), registers, words, none}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ReadPlanner::value(row.point, row.block, row.data), row.decoded);
    }
}

// A block split into its pieces still reads every datapoint it held.
void expectSplitBlocksKeepTheirDatapoints(const std::vector<Datapoint>& points,
                                          const std::vector<ReadBlock>& blocks,
                                          const std::vector<ReadBlock>& pieces) {
    for (const ReadBlock& b : blocks) {
        const std::vector<ReadBlock> inside = BlockSplit::piecesIn(b, pieces);
        for (const Datapoint& p : points) {
            ASSERT_TRUE(
                !b.covers(p) ||
                std::ranges::any_of(inside, [&](const auto& piece) { return piece.covers(p); }))
                << "address " << p.address << " lost from its block";
        }
    }
}

TEST(ReadPlanner, RandomPollsAreCoveredWithinLimitsAndGroups) {
    std::mt19937 random(20240611);
    const auto between = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    for (int round = 0; round < 2000; ++round) {
        // Dense clusters, so that gaps, overlaps, limits and the end of the address space occur.
        std::vector<Datapoint> points(static_cast<std::size_t>(between(0, 60)));
        const int base = between(0, 3) == 0 ? 65500 : between(0, 3000);
        for (Datapoint& p : points) {
            const RegisterTable table = RegisterTable::allCases[between(0, 3)];
            const int spread = table.isBit() ? 2500 : 160;
            p = point(std::array{0, 1, 2, 3, 248}[between(0, 4)], table,
                      std::min(base + between(0, spread), 65535),
                      DataType::allCases[between(1, 8)]);
        }
        const int maxGap = std::array{-1, 0, 0, 1, 3, 10, 200}[between(0, 6)];
        SCOPED_TRACE("round " + std::to_string(round) + " gap " + std::to_string(maxGap));
        const std::vector<ReadBlock> blocks = ReadPlanner::blocks(points, maxGap);
        const auto anyPoint = [&](const auto& holds) { return std::ranges::any_of(points, holds); };
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            const ReadBlock& b = blocks[i];
            ASSERT_GE(b.count, 1);
            ASSERT_LE(b.count, b.table.maxReadCount());
            ASSERT_LE(b.lastAddress(), 65535);
            if (i > 0) {
                ASSERT_LE((ReadPlanner::GroupKey{blocks[i - 1].unit, blocks[i - 1].table}),
                          (ReadPlanner::GroupKey{b.unit, b.table}));
            }
            // A block starts and ends on datapoints of its own unit and table it covers; with no
            // gap allowed, every address in it belongs to one of them.
            const auto inGroup = [&](const Datapoint& p) {
                return p.unitID == b.unit && p.table() == b.table;
            };
            ASSERT_TRUE(anyPoint([&](const Datapoint& p) {
                return inGroup(p) && b.covers(p) && p.address == b.address;
            }));
            ASSERT_TRUE(anyPoint([&](const Datapoint& p) {
                return inGroup(p) && b.covers(p) && p.addressRange().last == b.lastAddress();
            }));
            for (int address = b.address; maxGap <= 0 && address <= b.lastAddress(); ++address) {
                ASSERT_TRUE(anyPoint([&](const Datapoint& p) {
                    return inGroup(p) && p.addressRange().first <= address &&
                           address <= p.addressRange().last;
                })) << "unused address "
                    << address;
            }
        }
        expectSplitBlocksKeepTheirDatapoints(points, blocks, ReadPlanner::pieces(points, maxGap));
        for (const Datapoint& p : points) {
            const bool readable = p.unitID >= 1 && p.unitID <= 247 && p.lastAddress().has_value();
            const bool covered =
                std::ranges::any_of(blocks, [&](const auto& b) { return b.covers(p); });
            ASSERT_EQ(covered, readable) << "unit " << int{p.unitID} << " address " << p.address;
        }
    }
}

} // namespace
} // namespace kestrin
