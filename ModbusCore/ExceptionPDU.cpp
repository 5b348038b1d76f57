#include "ExceptionPDU.h"

namespace kestrin::ExceptionPDU {

Bytes make(std::uint8_t function, ModbusException exception) {
    return {static_cast<std::uint8_t>(function | exceptionBit), exception.code()};
}

std::optional<std::uint8_t> exception(ByteView pdu) noexcept {
    if (pdu.size() < 2 || (pdu[0] & exceptionBit) == 0) {
        return std::nullopt;
    }
    return pdu[1];
}

} // namespace kestrin::ExceptionPDU
