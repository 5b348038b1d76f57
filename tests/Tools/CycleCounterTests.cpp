#include "CycleCounter.h"

#include <map>
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

// Blocks at a gap of 0: boiler reads unit 1 holding 0-1 (a, b), 10 (c) and 65535 (top), unit 1
// input 10-11 (e), unit 2 coil 3 (d), then unit 4 holding 0-124 (a run of uint64 up to 123, and w)
// and 124-127 (w, z), which overlap because z would make the first longer than a request may be;
// past runs beyond 65535 and is in no block. pump reads g at a's address; the disabled poll f is
// never read.
std::map<std::string, Datapoint> scattered() {
    constexpr auto holding = RegisterTable::holdingRegister;
    return {{"a", at(1, holding, 0)},
            {"b", at(1, holding, 1)},
            {"c", at(1, holding, 10)},
            {"top", at(1, holding, 65535)},
            {"past", at(1, holding, 65535, DataType::float32)},
            {"e", at(1, RegisterTable::inputRegister, 10, DataType::float32)},
            {"d", at(2, RegisterTable::coil, 3)},
            {"w", at(4, holding, 124)},
            {"z", at(4, holding, 124, DataType::uint64)},
            {"g", at(1, holding, 0)},
            {"f", at(3, holding, 0)}};
}

std::vector<Poll> project(const std::map<std::string, Datapoint>& points) {
    Poll boiler;
    Poll pump;
    Poll off;
    off.enabled = false;
    for (const char* name : {"a", "b", "c", "top", "past", "e", "d", "w", "z"}) {
        boiler.datapoints.push_back(points.at(name));
    }
    for (std::uint16_t address = 0; address < 124; address += 4) {
        boiler.datapoints.push_back(
            at(4, RegisterTable::holdingRegister, address, DataType::uint64));
    }
    pump.datapoints.push_back(points.at("g"));
    off.datapoints.push_back(points.at("f"));
    return {boiler, off, pump};
}

// Every report of round i carries attempt time i + 1.
TEST(CycleCounter, CountsCyclesOfScatteredDatapointsByTheLeastReadBlock) {
    struct Row {
        const char* name;
        int maxGap;
        std::vector<std::vector<std::string>> rounds;
        std::int64_t expected;
    };
    const Row rows[] = {
        {"each block of each enabled poll once", 0, {{"a", "c", "top", "e", "d", "w", "g"}}, 1},
        {"one block unread", 0, {{"a", "top", "e", "d", "w", "g"}}, 0},
        {"a wider gap reads c with a", 10, {{"a", "top", "e", "d", "w", "g"}}, 1},
        {"one attempt reads its block once, however many datapoints report it",
         0,
         {{"a", "b", "c", "top", "e", "d", "w", "g"}, {"c", "top", "e", "d", "w", "g"}},
         1},
        {"the same address in another poll is another block",
         0,
         {{"g", "c", "top", "e", "d", "w"}},
         0},
        {"z reads only the second of the overlapping blocks",
         0,
         {{"a", "c", "top", "e", "d", "z", "g"}},
         0},
        {"two rounds",
         0,
         {{"a", "c", "top", "e", "d", "w", "g"}, {"b", "c", "top", "e", "d", "w", "g", "past"}},
         2},
    };
    const std::map<std::string, Datapoint> points = scattered();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        CycleCounter counter(project(points), row.maxGap);
        for (std::size_t round = 0; round < row.rounds.size(); ++round) {
            for (const std::string& name : row.rounds[round]) {
                counter.attemptEnded(points.at(name).id, static_cast<std::int64_t>(round) + 1);
            }
        }
        EXPECT_EQ(counter.completedCycles(), row.expected);
    }
}

TEST(CycleCounter, HasNoBlocksWhenNoEnabledPollHasAReadableDatapoint) {
    const std::map<std::string, Datapoint> points = scattered();
    Poll off;
    off.enabled = false;
    off.datapoints.push_back(points.at("a"));
    Poll unreadable;
    unreadable.datapoints = {points.at("past"), at(0, RegisterTable::coil, 0)};
    const CycleCounter counter({off, unreadable}, 0);
    EXPECT_FALSE(counter.hasBlocks());
    EXPECT_EQ(counter.completedCycles(), 0);
}

} // namespace
} // namespace kestrin
