#include "ReadBlock.h"

#include "Datapoint.h"

#include <functional>

namespace kestrin {

bool ReadBlock::covers(const Datapoint& datapoint) const noexcept {
    const Datapoint::AddressRange range = datapoint.addressRange();
    return datapoint.unitID == unit && datapoint.table() == table && range.first >= address &&
           range.last <= lastAddress();
}

} // namespace kestrin

std::size_t
std::hash<kestrin::ReadBlock>::operator()(const kestrin::ReadBlock& block) const noexcept {
    // unit, table and address fit 32 bits together; the count (at most 2000) fills the rest.
    const std::uint64_t packed = (std::uint64_t{block.unit} << 56) |
                                 (std::uint64_t{static_cast<std::uint8_t>(block.table)} << 48) |
                                 (std::uint64_t{block.address} << 32) |
                                 static_cast<std::uint32_t>(block.count);
    return std::hash<std::uint64_t>{}(packed);
}
