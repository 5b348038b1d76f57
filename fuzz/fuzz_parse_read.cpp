// PDU::parseRead. Input: table selector, 16-bit count (big-endian), then the answer PDU.
#include "PDU.h"

#include <cstdlib>

using namespace kestrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) {
        return 0;
    }
    const ByteView input(data, size);
    const RegisterTable table = RegisterTable::allCases[input[0] % RegisterTable::allCases.size()];
    const int count = uint16At(input, 1);
    const ByteView pdu = input.subspan(3);
    const auto result = PDU::parseRead(pdu, table, count);
    if (!result.ok()) {
        const ResponseError& error = result.error();
        if (error.kind == ResponseError::Kind::exception &&
            (pdu.size() < 2 || (pdu[0] & 0x80) == 0 || error.code != pdu[1])) {
            std::abort();
        }
        return 0;
    }
    // Accepted: exactly count values of the table's kind, taken from the data after the byte count.
    const ReadData& read = result.value();
    if (pdu.size() < 2 || pdu[0] != table.readFunction().code()) {
        std::abort();
    }
    if (const auto* bits = read.as<ReadData::Bits>()) {
        if (!table.isBit() || bits->values.size() != static_cast<std::size_t>(count)) {
            std::abort();
        }
        for (std::size_t i = 0; i < bits->values.size(); ++i) {
            if (bits->values[i] != (((pdu[2 + i / 8] >> (i % 8)) & 1) != 0)) {
                std::abort();
            }
        }
    } else if (const auto* registers = read.as<ReadData::Registers>()) {
        if (table.isBit() || registers->values.size() != static_cast<std::size_t>(count)) {
            std::abort();
        }
        for (std::size_t i = 0; i < registers->values.size(); ++i) {
            if (registers->values[i] != uint16At(pdu, 2 + 2 * i)) {
                std::abort();
            }
        }
    }
    return 0;
}
