#include "CRC16.h"

namespace kestrin::CRC16 {

std::uint16_t modbus(ByteView bytes) noexcept {
    return modbus(bytes.begin(), bytes.end());
}

} // namespace kestrin::CRC16
