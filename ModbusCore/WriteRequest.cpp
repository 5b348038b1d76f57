#include "WriteRequest.h"

#include "PDU.h"

#include <cstdint>
#include <vector>

namespace kestrin::WriteRequest {

std::optional<Bytes> pdu(const Datapoint& datapoint, const Value& value, WriteMode mode) {
    switch (datapoint.table()) {
    case RegisterTable::coil: {
        const bool on = value != 0;
        if (mode == WriteMode::single) {
            return PDU::writeSingleCoil(datapoint.address, on);
        }
        return PDU::writeMultipleCoils(datapoint.address, {on});
    }
    case RegisterTable::holdingRegister: {
        const std::vector<std::uint16_t> registers = datapoint.registers(value);
        if (registers.size() == 1 && mode == WriteMode::single) {
            return PDU::writeSingleRegister(datapoint.address, registers.front());
        }
        return PDU::writeMultipleRegisters(datapoint.address, registers);
    }
    case RegisterTable::discreteInput:
    case RegisterTable::inputRegister:
        break;
    }
    return std::nullopt;
}

} // namespace kestrin::WriteRequest
