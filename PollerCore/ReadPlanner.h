#pragma once

#include "PollPlan.h"
#include "ReadBlock.h"
#include "ReadData.h"
#include "RegisterTable.h"
#include "Value.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace kestrin {

class Datapoint;

// Turns a poll's datapoints into the fewest read requests that cover them, and cuts each
// datapoint's value out of a block's answer. Pure functions, callable from any thread.
namespace ReadPlanner {

// Blocks never mix units or tables; groups come out by unit, then in the order of the table cases.
struct GroupKey {
    std::uint8_t unit = 1;
    RegisterTable table = RegisterTable::coil;

    friend bool operator==(const GroupKey&, const GroupKey&) = default;
    friend constexpr std::strong_ordering operator<=>(const GroupKey& a,
                                                      const GroupKey& b) noexcept {
        if (a.unit != b.unit) {
            return a.unit <=> b.unit;
        }
        return static_cast<RegisterTable::Case>(a.table) <=>
               static_cast<RegisterTable::Case>(b.table);
    }
};

// A datapoint's engineering value and its registers in address order ([1] or [0] for a bit).
struct DecodedValue {
    Value value;
    std::vector<std::uint16_t> raw;

    friend bool operator==(const DecodedValue&, const DecodedValue&) = default;
};

// Unreadable datapoints (unit outside 1-247, running past 65535) are left out silently. Holes of
// up to maxGap unused addresses are read along (a negative gap counts as 0); no block exceeds the
// table's limit and no datapoint is split between two blocks.
std::vector<ReadBlock> blocks(const std::vector<Datapoint>& datapoints, int maxGap);
// Each readable datapoint's own range, overlapping ranges joined, in the order of
// blocks(datapoints, maxGap): the smallest reads that never cut a datapoint. The pieces lying
// wholly inside a block cover every datapoint the block covers.
std::vector<ReadBlock> pieces(const std::vector<Datapoint>& datapoints, int maxGap);

// Nothing when the block does not hold all of the datapoint or the data are shorter than the
// block. The case of the data decides: bits always give 0 or 1.
std::optional<DecodedValue> value(const Datapoint& of, const ReadBlock& in, const ReadData& data);

} // namespace ReadPlanner
} // namespace kestrin

template <>
struct std::hash<kestrin::ReadPlanner::GroupKey> {
    std::size_t operator()(const kestrin::ReadPlanner::GroupKey& key) const noexcept {
        return (std::size_t{key.unit} << 8) | static_cast<std::uint8_t>(key.table);
    }
};
