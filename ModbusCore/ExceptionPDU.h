#pragma once

#include "Bytes.h"
#include "ModbusException.h"

#include <cstdint>
#include <optional>

namespace kestrin {

// Exception answers: the function code with bit 0x80 set, then the exception code (Modbus
// Application Protocol V1.1b, section 7). The master only ever receives them.
namespace ExceptionPDU {

inline constexpr std::uint8_t exceptionBit = 0x80;

// function | 0x80, then the exception code.
Bytes make(std::uint8_t function, ModbusException exception);

// The exception code byte when the PDU is an exception answer of at least 2 bytes.
std::optional<std::uint8_t> exception(ByteView pdu) noexcept;

} // namespace ExceptionPDU
} // namespace kestrin
