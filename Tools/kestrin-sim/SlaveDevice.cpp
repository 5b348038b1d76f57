#include "SlaveDevice.h"

#include "ExceptionPDU.h"
#include "FunctionCode.h"
#include "PDU.h"
#include "RTUFrame.h"
#include "SimulatedValue.h"

#include <algorithm>
#include <optional>

namespace kestrin {

namespace {

// Every request of FC01-06 is function, address and quantity or value: 5 bytes.
constexpr std::size_t fixedRequestSize = 5;
// FC15 and FC16 add a byte count (byte 5) before their data.
constexpr std::size_t multipleWriteHeaderSize = 6;
// Coil values of FC05 (Modbus Application Protocol V1.1b, section 6.5).
constexpr std::uint16_t coilOn = 0xFF00;
constexpr std::uint16_t coilOff = 0x0000;
// The address space ends at 65535: a range past it has addresses no device can have.
constexpr int addressCount = 0x10000;

Bytes exceptionAnswer(std::uint8_t function, ModbusException exception) {
    return ExceptionPDU::make(function, exception);
}

// Where a multiple write starts and how many items it carries, when its count is in range and its
// byte count matches both the count and the bytes that follow.
struct WriteRange {
    int address = 0;
    int count = 0;
};

std::optional<WriteRange> multipleWriteRange(ByteView pdu, int maxCount,
                                             std::size_t (*bytesFor)(int count)) {
    if (pdu.size() < multipleWriteHeaderSize) {
        return std::nullopt;
    }
    const int count = uint16At(pdu, 3);
    const std::size_t byteCount = pdu[5];
    if (count < 1 || count > maxCount || byteCount != bytesFor(count) ||
        pdu.size() != multipleWriteHeaderSize + byteCount) {
        return std::nullopt;
    }
    return WriteRange{uint16At(pdu, 1), count};
}

// The table a read request reads; nothing for any other request.
std::optional<RegisterTable> readTable(ByteView pdu) {
    if (pdu.empty()) {
        return std::nullopt;
    }
    for (const RegisterTable table : RegisterTable::allCases) {
        if (pdu[0] == table.readFunction()) {
            return table;
        }
    }
    return std::nullopt;
}

bool isWrite(std::uint8_t function) {
    return function == FunctionCode::writeSingleCoil ||
           function == FunctionCode::writeSingleRegister ||
           function == FunctionCode::writeMultipleCoils ||
           function == FunctionCode::writeMultipleRegisters;
}

} // namespace

SlaveDevice::SlaveDevice(const std::vector<Datapoint>& datapoints, std::uint64_t seed)
    : seed_(seed) {
    for (const Datapoint& datapoint : datapoints) {
        units_.insert(datapoint.unitID);
        tables_.insert({datapoint.unitID, datapoint.table()});
        store(datapoint, datapoint.value);
        if (datapoint.simulation.isActive()) {
            animated_.push_back({{datapoint.unitID, datapoint.table(), datapoint.address},
                                 seed_ + animated_.size(),
                                 datapoint});
        }
    }
    // Stable: of overlapping datapoints the later one's value still wins.
    std::ranges::stable_sort(animated_, {}, &Animated::key);
    animate(0);
}

void SlaveDevice::store(const Datapoint& datapoint, const Value& value) {
    const RegisterTable table = datapoint.table();
    if (table.isBit()) {
        const bool on = datapoint.simulation.isActive()
                            ? SimulatedValue::isOn(datapoint.simulation, value.toDouble())
                            : value != 0;
        image_[{datapoint.unitID, table, datapoint.address}] = on ? 1 : 0;
        return;
    }
    const std::vector<std::uint16_t> registers = datapoint.registers(value);
    for (std::size_t i = 0; i < registers.size(); ++i) {
        const int address = datapoint.address + static_cast<int>(i);
        // A datapoint that runs past 65535 only covers the addresses that exist.
        if (address < addressCount) {
            image_[{datapoint.unitID, table, static_cast<std::uint16_t>(address)}] = registers[i];
        }
    }
}

void SlaveDevice::animate(double seconds) {
    for (const Animated& animated : animated_) {
        store(animated.datapoint,
              SimulatedValue::at(animated.datapoint.simulation, seconds, animated.seed));
    }
}

void SlaveDevice::animate(std::uint8_t unit, RegisterTable table, int first, int count,
                          double seconds) {
    // A datapoint of up to four registers may begin before the first address read.
    const auto from = static_cast<std::uint16_t>(std::clamp(first - 3, 0, addressCount - 1));
    const Key start{unit, table, from};
    for (auto animated = std::ranges::lower_bound(animated_, start, {}, &Animated::key);
         animated != animated_.end(); ++animated) {
        const auto& [itsUnit, itsTable, address] = animated->key;
        if (itsUnit != unit || itsTable != std::get<1>(start) || address >= first + count) {
            break;
        }
        store(animated->datapoint,
              SimulatedValue::at(animated->datapoint.simulation, seconds, animated->seed));
    }
}

std::optional<std::uint16_t> SlaveDevice::cell(std::uint8_t unit, RegisterTable table,
                                               std::uint16_t address) const {
    const auto found = image_.find({unit, table, address});
    if (found == image_.end()) {
        return std::nullopt;
    }
    return found->second;
}

std::optional<Bytes> SlaveDevice::respond(ByteView frame, double seconds) {
    if (!RTUFrame::hasValidCRC(frame)) {
        return std::nullopt;
    }
    const std::uint8_t unit = frame[0];
    const ByteView pdu = frame.subspan(1, frame.size() - 3);
    if (unit == RTUFrame::broadcastUnit) {
        // Every served unit takes a broadcast write; reads make no sense without an answer.
        if (isWrite(pdu[0])) {
            for (std::uint8_t served : units_) {
                (void)answer(served, pdu);
            }
        }
        return std::nullopt;
    }
    if (!serves(unit)) {
        return std::nullopt;
    }
    if (exceedsLimit(pdu)) {
        if (limit_->silent) {
            return std::nullopt;
        }
        return RTUFrame::build(unit, exceptionAnswer(pdu[0], ModbusException::illegalDataValue));
    }
    if (const auto table = readTable(pdu); table && pdu.size() >= fixedRequestSize) {
        animate(unit, *table, uint16At(pdu, 1), uint16At(pdu, 3), seconds);
    }
    return RTUFrame::build(unit, answer(unit, pdu));
}

Bytes SlaveDevice::answer(std::uint8_t unit, ByteView pdu) {
    if (const auto table = readTable(pdu)) {
        return read(unit, *table, pdu);
    }
    const std::uint8_t function = pdu.empty() ? 0 : pdu[0];
    switch (function) {
    case FunctionCode::writeSingleCoil:
        return writeCoil(unit, pdu);
    case FunctionCode::writeSingleRegister:
        return writeRegister(unit, pdu);
    case FunctionCode::writeMultipleCoils:
        return writeCoils(unit, pdu);
    case FunctionCode::writeMultipleRegisters:
        return writeRegisters(unit, pdu);
    default:
        return exceptionAnswer(function, ModbusException::illegalFunction);
    }
}

bool SlaveDevice::exceedsLimit(ByteView pdu) const {
    if (!limit_ || pdu.size() < fixedRequestSize) {
        return false;
    }
    const std::uint8_t function = pdu[0];
    const bool registers = function == FunctionCode::readHoldingRegisters ||
                           function == FunctionCode::readInputRegisters ||
                           function == FunctionCode::writeMultipleRegisters;
    return registers && uint16At(pdu, 3) > limit_->maxRegisters;
}

bool SlaveDevice::covers(std::uint8_t unit, RegisterTable table, int first, int count) const {
    if (first + count > addressCount) {
        return false;
    }
    for (int address = first; address < first + count; ++address) {
        if (!image_.contains({unit, table, static_cast<std::uint16_t>(address)})) {
            return false;
        }
    }
    return true;
}

// The checks run in the order of the standard's state diagrams: quantity (03), then address
// (02), then the operation.
Bytes SlaveDevice::read(std::uint8_t unit, RegisterTable table, ByteView pdu) const {
    const std::uint8_t function = pdu[0];
    if (pdu.size() != fixedRequestSize) {
        return exceptionAnswer(function, ModbusException::illegalDataValue);
    }
    if (refusesTablesNotServed_ && !tables_.contains({unit, table})) {
        return exceptionAnswer(function, ModbusException::illegalFunction);
    }
    const int address = uint16At(pdu, 1);
    const int count = uint16At(pdu, 3);
    if (count < 1 || count > table.maxReadCount()) {
        return exceptionAnswer(function, ModbusException::illegalDataValue);
    }
    if (!covers(unit, table, address, count)) {
        return exceptionAnswer(function, ModbusException::illegalDataAddress);
    }
    Bytes answer{function};
    if (table.isBit()) {
        std::vector<bool> bits;
        bits.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) {
            bits.push_back(image_.at({unit, table, static_cast<std::uint16_t>(address + i)}) != 0);
        }
        const Bytes packed = packBits(bits);
        answer.push_back(static_cast<std::uint8_t>(packed.size()));
        answer.insert(answer.end(), packed.begin(), packed.end());
        return answer;
    }
    answer.push_back(static_cast<std::uint8_t>(2 * count));
    for (int i = 0; i < count; ++i) {
        appendUInt16(answer, image_.at({unit, table, static_cast<std::uint16_t>(address + i)}));
    }
    return answer;
}

Bytes SlaveDevice::writeCoil(std::uint8_t unit, ByteView pdu) {
    const std::uint8_t function = pdu[0];
    if (pdu.size() != fixedRequestSize) {
        return exceptionAnswer(function, ModbusException::illegalDataValue);
    }
    const std::uint16_t address = uint16At(pdu, 1);
    const std::uint16_t value = uint16At(pdu, 3);
    if (value != coilOn && value != coilOff) {
        return exceptionAnswer(function, ModbusException::illegalDataValue);
    }
    if (!covers(unit, RegisterTable::coil, address, 1)) {
        return exceptionAnswer(function, ModbusException::illegalDataAddress);
    }
    image_[{unit, RegisterTable::coil, address}] = value == coilOn ? 1 : 0;
    return Bytes(pdu.begin(), pdu.end());
}

Bytes SlaveDevice::writeRegister(std::uint8_t unit, ByteView pdu) {
    const std::uint8_t function = pdu[0];
    if (pdu.size() != fixedRequestSize) {
        return exceptionAnswer(function, ModbusException::illegalDataValue);
    }
    const std::uint16_t address = uint16At(pdu, 1);
    if (!covers(unit, RegisterTable::holdingRegister, address, 1)) {
        return exceptionAnswer(function, ModbusException::illegalDataAddress);
    }
    image_[{unit, RegisterTable::holdingRegister, address}] = uint16At(pdu, 3);
    return Bytes(pdu.begin(), pdu.end());
}

Bytes SlaveDevice::writeCoils(std::uint8_t unit, ByteView pdu) {
    const std::uint8_t function = pdu[0];
    const auto range = multipleWriteRange(pdu, FunctionCode::maxWriteBits, [](int bits) {
        return static_cast<std::size_t>(bits + 7) / 8;
    });
    if (!range) {
        return exceptionAnswer(function, ModbusException::illegalDataValue);
    }
    const auto [address, count] = *range;
    if (!covers(unit, RegisterTable::coil, address, count)) {
        return exceptionAnswer(function, ModbusException::illegalDataAddress);
    }
    const std::vector<bool> bits = unpackBits(pdu.subspan(multipleWriteHeaderSize), count);
    for (int i = 0; i < count; ++i) {
        image_[{unit, RegisterTable::coil, static_cast<std::uint16_t>(address + i)}] =
            bits[static_cast<std::size_t>(i)] ? 1 : 0;
    }
    return Bytes(pdu.begin(), pdu.begin() + fixedRequestSize);
}

Bytes SlaveDevice::writeRegisters(std::uint8_t unit, ByteView pdu) {
    const std::uint8_t function = pdu[0];
    const auto range = multipleWriteRange(pdu, FunctionCode::maxWriteRegisters, [](int registers) {
        return 2 * static_cast<std::size_t>(registers);
    });
    if (!range) {
        return exceptionAnswer(function, ModbusException::illegalDataValue);
    }
    const auto [address, count] = *range;
    if (!covers(unit, RegisterTable::holdingRegister, address, count)) {
        return exceptionAnswer(function, ModbusException::illegalDataAddress);
    }
    for (int i = 0; i < count; ++i) {
        image_[{unit, RegisterTable::holdingRegister, static_cast<std::uint16_t>(address + i)}] =
            uint16At(pdu, multipleWriteHeaderSize + 2 * static_cast<std::size_t>(i));
    }
    return Bytes(pdu.begin(), pdu.begin() + fixedRequestSize);
}

} // namespace kestrin
