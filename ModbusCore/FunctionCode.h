#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace kestrin {

// The Modbus function codes Kestrin knows (Modbus Application Protocol V1.1b, section 6). Only
// 1-6, 15 and 16 are ever sent; the others are recognised in traffic and named in the log.
class FunctionCode {
public:
    enum Case : std::uint8_t {
        readCoils = 0x01,
        readDiscreteInputs = 0x02,
        readHoldingRegisters = 0x03,
        readInputRegisters = 0x04,
        writeSingleCoil = 0x05,
        writeSingleRegister = 0x06,
        diagnostics = 0x08,
        writeMultipleCoils = 0x0F,
        writeMultipleRegisters = 0x10,
        maskWriteRegister = 0x16,
        readWriteMultipleRegisters = 0x17,
    };
    static constexpr std::array allCases{
        readCoils,          readDiscreteInputs,     readHoldingRegisters, readInputRegisters,
        writeSingleCoil,    writeSingleRegister,    diagnostics,          writeMultipleCoils,
        writeMultipleRegisters, maskWriteRegister, readWriteMultipleRegisters,
    };

    // 2000 coils: the byte count is one byte, and the standard caps a read at 0x7D0 bits.
    static constexpr int maxReadBits = 2000;
    // 125 registers: 250 data bytes, the most a one-byte byte count can announce in an even count
    // that still fits a 256-byte frame.
    static constexpr int maxReadRegisters = 125;
    // 1968 coils: 0x7B0, the standard's limit for FC15 (246 data bytes).
    static constexpr int maxWriteBits = 1968;
    // 123 registers: 246 data bytes, so the FC16 request stays within 256 bytes.
    static constexpr int maxWriteRegisters = 123;

    constexpr FunctionCode(Case c) noexcept : case_(c) {}
    constexpr operator Case() const noexcept { return case_; }
    constexpr std::uint8_t code() const noexcept { return case_; }

    // The case for a code byte, or nothing for a code this enumeration does not list.
    static constexpr std::optional<FunctionCode> from(std::uint8_t byte) noexcept {
        for (Case c : allCases) {
            if (c == byte) {
                return FunctionCode(c);
            }
        }
        return std::nullopt;
    }

private:
    Case case_;
};

} // namespace kestrin
