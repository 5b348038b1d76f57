#pragma once

#include "Bytes.h"
#include "ReadData.h"
#include "RegisterTable.h"
#include "ResponseError.h"
#include "Result.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kestrin {

// Request PDUs and the checking of their answers (Modbus Application Protocol V1.1b, section 6).
// Every 16-bit field is big-endian. Builders have preconditions, not errors: callers keep counts
// within the FunctionCode limits.
namespace PDU {

// FC01-FC04 by table: code, address, count. The count must be 0...65535.
Bytes read(RegisterTable table, std::uint16_t address, int count);
// FC05: 0xFF00 switches the coil on, 0x0000 off.
Bytes writeSingleCoil(std::uint16_t address, bool on);
// FC06.
Bytes writeSingleRegister(std::uint16_t address, std::uint16_t value);
// FC15: code, address, count, byte count, packed bits. At most FunctionCode::maxWriteBits values.
Bytes writeMultipleCoils(std::uint16_t address, const std::vector<bool>& values);
// FC16: code, address, count, byte count, registers high byte first. At most
// FunctionCode::maxWriteRegisters values.
Bytes writeMultipleRegisters(std::uint16_t address, std::span<const std::uint16_t> values);

// The data of an answer PDU to a read of count values from table.
Result<ReadData, ResponseError> parseRead(ByteView pdu, RegisterTable table, int count);

// Whether an answer PDU confirms the write request PDU it answers.
Result<void, ResponseError> checkWrite(ByteView response, ByteView request);

} // namespace PDU

// (n + 7) / 8 bytes; value i is bit i % 8 of byte i / 8, the first value in the low bit.
Bytes packBits(const std::vector<bool>& values);

// Exactly count values, LSB first; values past the end of the bytes are false.
std::vector<bool> unpackBits(ByteView bytes, int count);

} // namespace kestrin
