#pragma once

#include "DataType.h"
#include "DisplayFormat.h"
#include "JSONValue.h"
#include "NumberStyle.h"
#include "RegisterTable.h"
#include "Result.h"
#include "Simulation.h"
#include "Uuid.h"
#include "Value.h"
#include "WordOrder.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace kestrin {

// One value in one device: where it lives, how its registers are read and how it is shown.
// Invariant: in a bit table the data type is bool. The table is therefore only changed through
// setTable(); every constructor and the JSON decoder force bool as well.
class Datapoint {
public:
    // The closed range of protocol addresses used, as plain integers (it may end above 65535).
    struct AddressRange {
        int first = 0;
        int last = 0;
        friend constexpr bool operator==(const AddressRange&, const AddressRange&) = default;
    };

    Uuid id = Uuid::random();
    std::string name;
    std::uint8_t unitID = 1;
    std::uint16_t address = 0;
    DataType dataType = DataType::uint16;
    WordOrder wordOrder = WordOrder::abcd;
    double scale = 1.0; // shown = raw × scale; 0 and 1 mean no scaling
    std::string engineeringUnit;
    DisplayFormat format = DisplayFormat::decimal;
    Value value; // exchanged through the CSV column Value
    std::string notes;
    Simulation simulation;

    // A holding-register uint16 at address 0 of unit 1, with a new random id.
    Datapoint() = default;
    Datapoint(Uuid id, std::string name, std::uint8_t unitID, RegisterTable table,
              std::uint16_t address, DataType dataType, WordOrder wordOrder, double scale,
              std::string engineeringUnit, DisplayFormat format, Value value, std::string notes,
              Simulation simulation);

    RegisterTable table() const noexcept { return table_; }
    // A bit table makes the type bool; leaving the bit tables turns bool into uint16.
    void setTable(RegisterTable table) noexcept;

    // Registers or bits used: 1 in a bit table, otherwise the type's register count.
    int count() const noexcept;
    AddressRange addressRange() const noexcept;
    // Nothing when the datapoint runs past address 65535.
    std::optional<std::uint16_t> lastAddress() const noexcept;
    // Same unit, same table and intersecting address ranges; a datapoint overlaps itself.
    bool overlaps(const Datapoint& other) const noexcept;
    // The Modicon notation: prefix digit, then address + 1 in at least 4 digits (40001, 410000).
    std::string modiconAddress() const;
    // The fraction digits the scale calls for: 0 for |scale| ≥ 1, 0 or not finite, else
    // ceil(−log10), ≤ 6.
    int decimals() const noexcept;

    // The registers that hold an engineering value, in this datapoint's type, order and scale.
    std::vector<std::uint16_t> registers(const Value& engineeringValue) const;
    // The engineering value of registers read from the device; exact when unscaled.
    Value valueFromRegisters(std::span<const std::uint16_t> registers) const;
    // The value as the table shows it, in the display format, with the style's decimal separator.
    std::string formatted(const Value& engineeringValue, const NumberStyle& style) const;
    // What the user typed into the write editor, as an engineering value that fits the type;
    // nothing for anything unacceptable. Whole numbers for an unscaled integer type are exact.
    std::optional<Value> parse(std::string_view text) const;
    // A number cell or field: trimmed, a lone decimal comma read as a point, then a complete
    // C-locale number. Digits alone give the exact integer; anything else a double, where a
    // magnitude too large gives an infinity and one too small gives 0.
    static std::optional<Value> parseNumber(std::string_view text);

    // All thirteen keys, enumerations as raw values, the id as canonical text.
    nlohmann::json json() const;
    // Absent or null keys take their defaults (a fresh id among them); a present key of the wrong
    // type, an unknown raw value or a scale that is not finite fails at that key.
    static Result<Datapoint, JSONValue::Error> fromJSON(const nlohmann::json& object);

    friend bool operator==(const Datapoint&, const Datapoint&) = default;

private:
    RegisterTable table_ = RegisterTable::holdingRegister;
};

} // namespace kestrin

template <>
struct std::hash<kestrin::Datapoint> {
    std::size_t operator()(const kestrin::Datapoint& datapoint) const noexcept;
};
