#include "RegisterTable.h"

#include "Text.h"

#include <string>
#include <utility>

namespace kestrin {

namespace {
constexpr std::array<std::string_view, 4> rawValues{"coil", "discreteInput", "holdingRegister",
                                                    "inputRegister"};
constexpr std::array<std::string_view, 4> codes{"CO", "DI", "HR", "IR"};

// "input" alone is a discrete input, as in "Discrete Inputs" shortened by a spreadsheet column.
constexpr std::array<std::pair<std::string_view, RegisterTable::Case>, 23> texts{{
    {"co", RegisterTable::coil},
    {"coil", RegisterTable::coil},
    {"coils", RegisterTable::coil},
    {"0x", RegisterTable::coil},
    {"0", RegisterTable::coil},
    {"di", RegisterTable::discreteInput},
    {"discreteinput", RegisterTable::discreteInput},
    {"discreteinputs", RegisterTable::discreteInput},
    {"discrete", RegisterTable::discreteInput},
    {"input", RegisterTable::discreteInput},
    {"1x", RegisterTable::discreteInput},
    {"1", RegisterTable::discreteInput},
    {"hr", RegisterTable::holdingRegister},
    {"holdingregister", RegisterTable::holdingRegister},
    {"holdingregisters", RegisterTable::holdingRegister},
    {"holding", RegisterTable::holdingRegister},
    {"4x", RegisterTable::holdingRegister},
    {"4", RegisterTable::holdingRegister},
    {"ir", RegisterTable::inputRegister},
    {"inputregister", RegisterTable::inputRegister},
    {"inputregisters", RegisterTable::inputRegister},
    {"3x", RegisterTable::inputRegister},
    {"3", RegisterTable::inputRegister},
}};
} // namespace

std::string_view RegisterTable::rawValue() const noexcept {
    return rawValues[case_];
}

std::optional<RegisterTable> RegisterTable::fromRawValue(std::string_view text) noexcept {
    for (Case c : allCases) {
        if (rawValues[c] == text) {
            return RegisterTable(c);
        }
    }
    return std::nullopt;
}

std::optional<RegisterTable> RegisterTable::fromText(std::string_view text) {
    const std::string key = Text::removingSpaces(Text::folded(Text::trimmed(text)));
    for (const auto& [accepted, table] : texts) {
        if (accepted == key) {
            return RegisterTable(table);
        }
    }
    return std::nullopt;
}

std::string_view RegisterTable::code() const noexcept {
    return codes[case_];
}

} // namespace kestrin
