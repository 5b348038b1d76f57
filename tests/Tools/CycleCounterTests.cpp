#include "CycleCounter.h"
#include "ReadPlanner.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

Datapoint at(std::uint8_t unit, RegisterTable table, std::uint16_t address,
             DataType type = DataType::uint16) {
    Datapoint datapoint;
    datapoint.unitID = unit;
    datapoint.dataType = type;
    datapoint.setTable(table);
    datapoint.address = address;
    return datapoint;
}

// boiler plans three blocks at a gap of 0 (HR 0-1, HR 10, IR 10-11) and two at a gap of 10; pump
// plans HR 0 of unit 1, the same block as boiler's first but another poll's; off is disabled.
struct Project {
    Poll boiler;
    Poll pump;
    Poll off;

    Project() {
        constexpr auto holding = RegisterTable::holdingRegister;
        boiler.datapoints = {at(1, holding, 0), at(1, holding, 1), at(1, holding, 10),
                             at(1, RegisterTable::inputRegister, 10, DataType::float32)};
        pump.datapoints = {at(1, holding, 0)};
        off.enabled = false;
        off.datapoints = {at(3, holding, 0)};
    }
    std::vector<Poll> polls() const { return {boiler, off, pump}; }
};

TEST(CycleCounter, CountsCyclesByTheLeastReadBlockOfTheEnabledPolls) {
    const Project project;
    struct Read {
        const Poll* poll;
        int block; // index among the poll's planned blocks
    };
    const ReadBlock unplanned{1, RegisterTable::holdingRegister, 500, 1};
    const struct {
        const char* name;
        int maxGap;
        std::vector<Read> reads;
        std::int64_t expected;
    } rows[] = {
        {"every block once",
         0,
         {{&project.boiler, 0}, {&project.boiler, 1}, {&project.boiler, 2}, {&project.pump, 0}},
         1},
        {"one block unread",
         0,
         {{&project.boiler, 0}, {&project.boiler, 2}, {&project.pump, 0}},
         0},
        {"reads of one block do not stand in for another",
         0,
         {{&project.boiler, 0},
          {&project.boiler, 0},
          {&project.boiler, 1},
          {&project.boiler, 1},
          {&project.boiler, 2},
          {&project.pump, 0},
          {&project.pump, 0}},
         1},
        {"the same block in another poll is another block",
         0,
         {{&project.boiler, 0}, {&project.boiler, 1}, {&project.boiler, 2}, {&project.boiler, 0}},
         0},
        {"a wider gap plans fewer blocks",
         10,
         {{&project.boiler, 0}, {&project.boiler, 1}, {&project.pump, 0}},
         1},
        {"twice each, in any order",
         0,
         {{&project.pump, 0},
          {&project.boiler, 2},
          {&project.boiler, 1},
          {&project.boiler, 0},
          {&project.boiler, 0},
          {&project.pump, 0},
          {&project.boiler, 1},
          {&project.boiler, 2}},
         2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        CycleCounter counter(project.polls(), row.maxGap);
        for (const Read& read : row.reads) {
            const std::vector<ReadBlock> blocks =
                ReadPlanner::blocks(read.poll->datapoints, row.maxGap);
            counter.blockRead(read.poll->id, blocks.at(static_cast<std::size_t>(read.block)));
            // Blocks no enabled poll plans are never counted.
            counter.blockRead(project.off.id,
                              ReadPlanner::blocks(project.off.datapoints, row.maxGap).front());
            counter.blockRead(read.poll->id, unplanned);
        }
        EXPECT_EQ(counter.completedCycles(), row.expected);
    }
}

TEST(CycleCounter, HasNoBlocksWhenNoEnabledPollHasAReadableDatapoint) {
    Poll off;
    off.enabled = false;
    off.datapoints.push_back(at(1, RegisterTable::holdingRegister, 0));
    Poll unreadable;
    unreadable.datapoints = {at(1, RegisterTable::holdingRegister, 65535, DataType::float32),
                             at(0, RegisterTable::coil, 0)};
    const CycleCounter counter({off, unreadable}, 0);
    EXPECT_FALSE(counter.hasBlocks());
    EXPECT_EQ(counter.completedCycles(), 0);
}

} // namespace
} // namespace kestrin
