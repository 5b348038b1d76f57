#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace kestrin {

// The standard exception codes (Modbus Application Protocol V1.1b, section 7). Failures carry the
// raw code byte rather than this type, so that a code outside the table (7, say) is still reported.
class ModbusException {
public:
    enum Case : std::uint8_t {
        illegalFunction = 1,
        illegalDataAddress = 2,
        illegalDataValue = 3,
        serverDeviceFailure = 4,
        acknowledge = 5,
        serverDeviceBusy = 6,
        memoryParityError = 8,
        gatewayPathUnavailable = 10,
        gatewayTargetFailedToRespond = 11,
    };
    static constexpr std::array allCases{
        illegalFunction,  illegalDataAddress, illegalDataValue,       serverDeviceFailure,
        acknowledge,      serverDeviceBusy,   memoryParityError,      gatewayPathUnavailable,
        gatewayTargetFailedToRespond,
    };

    constexpr ModbusException(Case c) noexcept : case_(c) {}
    constexpr operator Case() const noexcept { return case_; }
    constexpr std::uint8_t code() const noexcept { return case_; }

    static constexpr std::optional<ModbusException> from(std::uint8_t byte) noexcept {
        for (Case c : allCases) {
            if (c == byte) {
                return ModbusException(c);
            }
        }
        return std::nullopt;
    }

private:
    Case case_;
};

} // namespace kestrin
