#pragma once

#include "RegisterTable.h"

#include <cstddef>
#include <cstdint>

namespace kestrin {

class Datapoint;

// One read request of a poll: count registers or bits of one table of one unit from address on.
struct ReadBlock {
    std::uint8_t unit = 1;
    RegisterTable table = RegisterTable::holdingRegister;
    std::uint16_t address = 0;
    // 1 up to the table's maxReadCount.
    int count = 1;

    // The last address read; an int because a block may end at 65535.
    int lastAddress() const noexcept { return address + count - 1; }
    // Same unit and table, and every address of the datapoint inside the block.
    bool covers(const Datapoint& datapoint) const noexcept;

    friend bool operator==(const ReadBlock&, const ReadBlock&) = default;
};

} // namespace kestrin

template <>
struct std::hash<kestrin::ReadBlock> {
    std::size_t operator()(const kestrin::ReadBlock& block) const noexcept;
};
