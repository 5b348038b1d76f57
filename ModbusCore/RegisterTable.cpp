#include "RegisterTable.h"

namespace kestrin {

namespace {
constexpr std::array<std::string_view, 4> rawValues{"coil", "discreteInput", "holdingRegister",
                                                    "inputRegister"};
constexpr std::array<std::string_view, 4> codes{"CO", "DI", "HR", "IR"};
} // namespace

std::string_view RegisterTable::rawValue() const noexcept { return rawValues[case_]; }

std::optional<RegisterTable> RegisterTable::fromRawValue(std::string_view text) noexcept {
    for (Case c : allCases) {
        if (rawValues[c] == text) {
            return RegisterTable(c);
        }
    }
    return std::nullopt;
}

std::string_view RegisterTable::code() const noexcept { return codes[case_]; }

} // namespace kestrin
