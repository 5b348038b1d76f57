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

std::vector<Datapoint> run(int unit, RegisterTable table, int first, int count) {
    std::vector<Datapoint> points;
    for (int address = first; address < first + count; ++address) {
        points.push_back(point(unit, table, address));
    }
    return points;
}

template <typename... Lists>
std::vector<Datapoint> joined(Lists... lists) {
    std::vector<Datapoint> all;
    (all.insert(all.end(), lists.begin(), lists.end()), ...);
    return all;
}

TEST(ReadPlanner, BlocksFollowGapLimitAndGroupRules) {
    struct Row {
        std::string name;
        std::vector<Datapoint> points;
        int maxGap;
        std::vector<ReadBlock> blocks;
    };
    const Row rows[] = {
        {"adjacent datapoints share one block",
         {point(1, holding, 0), point(1, holding, 1), point(1, holding, 2, DataType::float32)},
         0,
         {{1, holding, 0, 4}}},
        {"a hole with gap 0 splits",
         {point(1, holding, 0), point(1, holding, 5)},
         0,
         {{1, holding, 0, 1}, {1, holding, 5, 1}}},
        {"a hole of 4 is bridged by gap 4",
         {point(1, holding, 0), point(1, holding, 5)},
         4,
         {{1, holding, 0, 6}}},
        {"a hole of 4 is not bridged by gap 3",
         {point(1, holding, 0), point(1, holding, 5)},
         3,
         {{1, holding, 0, 1}, {1, holding, 5, 1}}},
        {"a negative gap is 0",
         {point(1, holding, 0), point(1, holding, 1), point(1, holding, 3)},
         -5,
         {{1, holding, 0, 2}, {1, holding, 3, 1}}},
        {"registers split at 125",
         run(1, holding, 0, 200),
         0,
         {{1, holding, 0, 125}, {1, holding, 125, 75}}},
        {"coils split at 2000",
         run(1, coil, 0, 2500),
         0,
         {{1, coil, 0, 2000}, {1, coil, 2000, 500}}},
        {"a float32 that would cross the limit starts the next block",
         joined(run(1, holding, 0, 124), std::vector{point(1, holding, 124, DataType::float32)}),
         0,
         {{1, holding, 0, 124}, {1, holding, 124, 2}}},
        {"datapoints at the same address overlap",
         {point(1, holding, 10), point(1, holding, 10, DataType::uint32)},
         0,
         {{1, holding, 10, 2}}},
        {"input order does not matter within a group",
         {point(1, input, 7), point(1, input, 3), point(1, input, 5, DataType::int32),
          point(1, input, 4)},
         0,
         {{1, input, 3, 5}}},
        {"groups come out by unit, then in table order",
         {point(2, coil, 0), point(1, input, 0), point(1, holding, 0), point(1, discrete, 0),
          point(1, coil, 0)},
         0,
         {{1, coil, 0, 1},
          {1, discrete, 0, 1},
          {1, holding, 0, 1},
          {1, input, 0, 1},
          {2, coil, 0, 1}}},
        {"the same address in another table or unit is another block",
         {point(1, holding, 0), point(1, input, 1), point(2, holding, 1)},
         10,
         {{1, holding, 0, 1}, {1, input, 1, 1}, {2, holding, 1, 1}}},
        {"the gap counts bits in a bit table",
         {point(1, coil, 0), point(1, coil, 9)},
         8,
         {{1, coil, 0, 10}}},
        {"unreadable datapoints are dropped",
         {point(0, holding, 0), point(248, holding, 0), point(1, holding, 65533, DataType::uint64),
          point(1, holding, 65535)},
         0,
         {{1, holding, 65535, 1}}},
        {"a huge gap cannot pass the limit",
         {point(1, holding, 0), point(1, holding, 200)},
         2147483647,
         {{1, holding, 0, 1}, {1, holding, 200, 1}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ReadPlanner::blocks(row.points, row.maxGap), row.blocks);
    }
}

TEST(ReadBlock, CoversOnlyWholeDatapointsOfItsUnitAndTable) {
    const ReadBlock block{1, holding, 10, 4};
    struct Row {
        std::string name;
        Datapoint point;
        bool covered;
    };
    const Row rows[] = {
        {"first address", point(1, holding, 10), true},
        {"last address", point(1, holding, 13), true},
        {"float32 ending on the last address", point(1, holding, 12, DataType::float32), true},
        {"float32 running past the end", point(1, holding, 13, DataType::float32), false},
        {"before the block", point(1, holding, 9), false},
        {"another table", point(1, input, 10), false},
        {"another unit", point(2, holding, 10), false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(block.covers(row.point), row.covered);
    }
}

Datapoint styled(Datapoint datapoint, double scale, WordOrder order = WordOrder::abcd) {
    datapoint.scale = scale;
    datapoint.wordOrder = order;
    return datapoint;
}

TEST(ReadPlannerValue, CutsOutTheDatapointOnlyWhenTheBlockHoldsAllOfIt) {
    using Decoded = std::optional<ReadPlanner::DecodedValue>;
    const ReadBlock coils{1, coil, 5, 3};
    const ReadBlock registers{1, holding, 100, 4};
    struct Row {
        std::string name;
        Datapoint point;
        ReadBlock block;
        ReadData data;
        Decoded decoded;
    };
    const Row rows[] = {
        {"a set bit", point(1, coil, 7), coils, ReadData::bits({false, false, true}),
         ReadPlanner::DecodedValue{1.0, {1}}},
        {"a clear bit", point(1, coil, 6), coils, ReadData::bits({false, false, true}),
         ReadPlanner::DecodedValue{0.0, {0}}},
        {"bits shorter than the block", point(1, coil, 7), coils, ReadData::bits({false, false}),
         std::nullopt},
        {"bit data whatever the type", point(1, holding, 100, DataType::float32), registers,
         ReadData::bits({true, false, false, false}), ReadPlanner::DecodedValue{1.0, {1}}},
        {"scale 0 leaves the raw value", styled(point(1, holding, 101), 0), registers,
         ReadData::registers({1, 215, 3, 4}), ReadPlanner::DecodedValue{215.0, {215}}},
        {"scale 0.1", styled(point(1, holding, 101), 0.1), registers,
         ReadData::registers({1, 215, 3, 4}), ReadPlanner::DecodedValue{21.5, {215}}},
        {"registers in the datapoint's word order",
         styled(point(1, holding, 102, DataType::uint32), 1, WordOrder::cdab), registers,
         ReadData::registers({0, 0, 2, 1}), ReadPlanner::DecodedValue{65538.0, {2, 1}}},
        {"registers shorter than the block", point(1, holding, 102, DataType::uint32), registers,
         ReadData::registers({1, 2, 3}), std::nullopt},
        {"another table", point(1, input, 100), registers, ReadData::registers({1, 2, 3, 4}),
         std::nullopt},
        {"running past the block", point(1, holding, 103, DataType::float32), registers,
         ReadData::registers({1, 2, 3, 4, 5}), std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ReadPlanner::value(row.point, row.block, row.data), row.decoded);
    }
}

TEST(ReadPlanner, RandomPollsAreCoveredWithinLimitsAndGroups) {
    std::mt19937 random(20240611);
    const auto between = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    for (int round = 0; round < 2000; ++round) {
        std::vector<Datapoint> points(static_cast<std::size_t>(between(0, 60)));
        // Dense clusters, so that gaps, overlaps, limits and the end of the address space all
        // occur.
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
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            const ReadBlock& b = blocks[i];
            ASSERT_GE(b.count, 1);
            ASSERT_LE(b.count, b.table.maxReadCount());
            ASSERT_LE(b.lastAddress(), 65535);
            if (i > 0) {
                ASSERT_LE((ReadPlanner::GroupKey{blocks[i - 1].unit, blocks[i - 1].table}),
                          (ReadPlanner::GroupKey{b.unit, b.table}));
            }
            // A block starts and ends on datapoints of its own unit and table.
            const auto inGroup = [&](const Datapoint& p) {
                return p.unitID == b.unit && p.table() == b.table;
            };
            ASSERT_TRUE(std::any_of(points.begin(), points.end(), [&](const Datapoint& p) {
                return inGroup(p) && p.address == b.address && b.covers(p);
            }));
            ASSERT_TRUE(std::any_of(points.begin(), points.end(), [&](const Datapoint& p) {
                return inGroup(p) && p.addressRange().last == b.lastAddress() && b.covers(p);
            }));
            if (maxGap <= 0) {
                for (int address = b.address; address <= b.lastAddress(); ++address) {
                    ASSERT_TRUE(std::any_of(points.begin(), points.end(),
                                            [&](const Datapoint& p) {
                                                return inGroup(p) &&
                                                       p.addressRange().first <= address &&
                                                       address <= p.addressRange().last;
                                            }))
                        << "unused address " << address;
                }
            }
        }
        for (const Datapoint& p : points) {
            const bool readable = p.unitID >= 1 && p.unitID <= 247 && p.lastAddress().has_value();
            const bool covered = std::any_of(blocks.begin(), blocks.end(),
                                             [&](const ReadBlock& b) { return b.covers(p); });
            ASSERT_EQ(covered, readable) << "unit " << int{p.unitID} << " address " << p.address;
        }
    }
}

} // namespace
} // namespace kestrin
