#include "ExampleList.h"

#include "L10n.h"
#include "Texts.h"

#include <string_view>

namespace kestrin::ExampleList {

std::vector<Datapoint> datapoints() {
    return datapoints(L10n::language());
}

std::vector<Datapoint> datapoints(Language language) {
    const L10n::Texts::ExampleTexts& names = L10n::texts(language).example;
    struct Row {
        L10n::Literal name;
        RegisterTable table;
        std::uint16_t address;
        DataType dataType;
        double scale;
        std::string_view unit;
    };
    // Input registers 1-2 hold the float, 3-4 the counter: one read covers addresses 0 to 4.
    const Row rows[] = {
        {names.temperature, RegisterTable::inputRegister, 0, DataType::int16, 0.1, "°C"},
        {names.pressure, RegisterTable::inputRegister, 1, DataType::float32, 1, "bar"},
        {names.runtime, RegisterTable::inputRegister, 3, DataType::uint32, 1, "s"},
        {names.setpoint, RegisterTable::holdingRegister, 0, DataType::int16, 0.1, "°C"},
        {names.mode, RegisterTable::holdingRegister, 1, DataType::uint16, 1, ""},
        {names.pump, RegisterTable::coil, 0, DataType::boolean, 1, ""},
        {names.alarm, RegisterTable::discreteInput, 0, DataType::boolean, 1, ""},
    };
    std::vector<Datapoint> list;
    list.reserve(std::size(rows));
    for (const Row& row : rows) {
        list.emplace_back(Uuid::random(), std::string(row.name.value), 1, row.table, row.address,
                          row.dataType, WordOrder::abcd, row.scale, std::string(row.unit),
                          DisplayFormat::decimal, 0.0, std::string(), Simulation());
    }
    return list;
}

} // namespace kestrin::ExampleList
