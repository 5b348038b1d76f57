#include "PDU.h"

#include "ExceptionPDU.h"
#include "FunctionCode.h"

#include <algorithm>
#include <cassert>

namespace kestrin {

namespace {

// FC05 values: 0xFF00 is on, 0x0000 is off (Modbus Application Protocol V1.1b, section 6.5).
constexpr std::uint16_t coilOn = 0xFF00;
constexpr std::uint16_t coilOff = 0x0000;

// Function code, a 16-bit address and a 16-bit quantity or value.
constexpr std::size_t fixedWriteSize = 5;
// A quantity field is 16 bits.
constexpr int maxQuantity = 0xFFFF;

int bytesForBits(int count) {
    return (count + 7) / 8;
}

Bytes multipleWriteHeader(FunctionCode function, std::uint16_t address, std::size_t count,
                          std::size_t byteCount) {
    Bytes pdu{function.code()};
    appendUInt16(pdu, address);
    appendUInt16(pdu, static_cast<std::uint16_t>(count));
    pdu.push_back(static_cast<std::uint8_t>(byteCount));
    return pdu;
}

} // namespace

namespace PDU {

Bytes read(RegisterTable table, std::uint16_t address, int count) {
    assert(count >= 0 && count <= maxQuantity);
    Bytes pdu{table.readFunction().code()};
    appendUInt16(pdu, address);
    appendUInt16(pdu, static_cast<std::uint16_t>(count));
    return pdu;
}

Bytes writeSingleCoil(std::uint16_t address, bool on) {
    Bytes pdu{FunctionCode(FunctionCode::writeSingleCoil).code()};
    appendUInt16(pdu, address);
    appendUInt16(pdu, on ? coilOn : coilOff);
    return pdu;
}

Bytes writeSingleRegister(std::uint16_t address, std::uint16_t value) {
    Bytes pdu{FunctionCode(FunctionCode::writeSingleRegister).code()};
    appendUInt16(pdu, address);
    appendUInt16(pdu, value);
    return pdu;
}

Bytes writeMultipleCoils(std::uint16_t address, const std::vector<bool>& values) {
    assert(values.size() <= static_cast<std::size_t>(FunctionCode::maxWriteBits));
    const Bytes packed = packBits(values);
    Bytes pdu = multipleWriteHeader(FunctionCode::writeMultipleCoils, address, values.size(),
                                    packed.size());
    pdu.insert(pdu.end(), packed.begin(), packed.end());
    return pdu;
}

Bytes writeMultipleRegisters(std::uint16_t address, std::span<const std::uint16_t> values) {
    assert(values.size() <= static_cast<std::size_t>(FunctionCode::maxWriteRegisters));
    Bytes pdu = multipleWriteHeader(FunctionCode::writeMultipleRegisters, address, values.size(),
                                    2 * values.size());
    for (std::uint16_t value : values) {
        appendUInt16(pdu, value);
    }
    return pdu;
}

Result<ReadData, ResponseError> parseRead(ByteView pdu, RegisterTable table, int count) {
    if (pdu.size() < 2) {
        return ResponseError::malformed();
    }
    if (const auto code = ExceptionPDU::exception(pdu)) {
        return ResponseError::exception(*code);
    }
    // No request can ask for a count outside a 16-bit quantity field.
    if (pdu[0] != table.readFunction().code() || count < 0 || count > maxQuantity) {
        return ResponseError::malformed();
    }
    const std::size_t byteCount = pdu[1];
    if (pdu.size() != byteCount + 2) {
        return ResponseError::malformed();
    }
    const ByteView data = pdu.subspan(2);
    if (table.isBit()) {
        if (byteCount != static_cast<std::size_t>(bytesForBits(count))) {
            return ResponseError::malformed();
        }
        return ReadData::bits(unpackBits(data, count));
    }
    if (byteCount != 2 * static_cast<std::size_t>(count)) {
        return ResponseError::malformed();
    }
    std::vector<std::uint16_t> registers;
    registers.reserve(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < byteCount; i += 2) {
        registers.push_back(uint16At(data, i));
    }
    return ReadData::registers(std::move(registers));
}

Result<void, ResponseError> checkWrite(ByteView response, ByteView request) {
    if (const auto code = ExceptionPDU::exception(response)) {
        return ResponseError::exception(*code);
    }
    if (request.size() < fixedWriteSize || response.size() != fixedWriteSize) {
        return ResponseError::malformed();
    }
    // FC05 and FC06 echo the whole request; FC15 and FC16 echo code, address and quantity.
    const bool echoesWholeRequest = request[0] == FunctionCode::writeSingleCoil ||
                                    request[0] == FunctionCode::writeSingleRegister;
    const ByteView expected = echoesWholeRequest ? request : request.first(fixedWriteSize);
    if (!std::ranges::equal(response, expected)) {
        return ResponseError::malformed();
    }
    return {};
}

} // namespace PDU

Bytes packBits(const std::vector<bool>& values) {
    Bytes bytes((values.size() + 7) / 8, 0);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (values[i]) {
            bytes[i / 8] = static_cast<std::uint8_t>(bytes[i / 8] | (1U << (i % 8)));
        }
    }
    return bytes;
}

std::vector<bool> unpackBits(ByteView bytes, int count) {
    assert(count >= 0);
    std::vector<bool> values(static_cast<std::size_t>(count), false);
    const std::size_t available = std::min(values.size(), bytes.size() * 8);
    for (std::size_t i = 0; i < available; ++i) {
        values[i] = ((bytes[i / 8] >> (i % 8)) & 1U) != 0;
    }
    return values;
}

} // namespace kestrin
