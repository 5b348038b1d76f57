#include "CycleCounter.h"
#include "ReadPlanner.h"

#include <sstream>
#include <string>
#include <tuple>
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

// Each read is a word: b for boiler, p for pump, then the index among the poll's planned blocks.
TEST(CycleCounter, CountsCyclesByTheLeastReadBlockOfTheEnabledPolls) {
    const Project project;
    const ReadBlock unplanned{1, RegisterTable::holdingRegister, 500, 1};
    const std::tuple<const char*, int, const char*, std::int64_t> rows[] = {
        {"every block once", 0, "b0 b1 b2 p0", 1},
        {"one block unread", 0, "b0 b2 p0", 0},
        {"reads of one block do not stand in for another", 0, "b0 b0 b1 b1 b2 p0 p0", 1},
        {"the same block in another poll is another block", 0, "b0 b1 b2 b0", 0},
        {"a wider gap plans fewer blocks", 10, "b0 b1 p0", 1},
        {"twice each, in any order", 0, "p0 b2 b1 b0 b0 p0 b1 b2", 2},
    };
    for (const auto& [name, maxGap, reads, expected] : rows) {
        SCOPED_TRACE(name);
        CycleCounter counter(project.polls(), maxGap);
        std::istringstream words(reads);
        for (std::string read; words >> read;) {
            const Poll& poll = read[0] == 'b' ? project.boiler : project.pump;
            const std::vector<ReadBlock> blocks = ReadPlanner::blocks(poll.datapoints, maxGap);
            counter.blockRead(poll.id, blocks.at(static_cast<std::size_t>(read[1] - '0')));
            // Blocks no enabled poll plans are never counted.
            counter.blockRead(project.off.id,
                              ReadPlanner::blocks(project.off.datapoints, maxGap).front());
            counter.blockRead(poll.id, unplanned);
        }
        EXPECT_EQ(counter.completedCycles(), expected);
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
