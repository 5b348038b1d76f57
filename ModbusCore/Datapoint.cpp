#include "Datapoint.h"

#include "JSONValue.h"
#include "NumberText.h"
#include "Text.h"
#include "ValueCodec.h"

#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <utility>

#include <nlohmann/json.hpp>

namespace kestrin {

namespace {

// Words a user may type for a bit, in English, Dutch, German, French and Spanish. They are
// input vocabulary, so they do not follow the interface language.
constexpr std::array<std::string_view, 10> onWords{"1",   "on", "true", "aan", "ein",
                                                   "oui", "si", "sí",   "yes", "ja"};
constexpr std::array<std::string_view, 9> offWords{"0",   "off", "false", "uit", "aus",
                                                   "non", "no",  "nee",   "nein"};

constexpr bool contains(std::span<const std::string_view> words, std::string_view word) noexcept {
    return std::find(words.begin(), words.end(), word) != words.end();
}

// A decimal comma is accepted when the text has no point; with both, the text stays as it is.
std::string withDecimalPoint(std::string_view text) {
    std::string result(text);
    if (result.find(',') != std::string::npos && result.find('.') == std::string::npos) {
        std::replace(result.begin(), result.end(), ',', '.');
    }
    return result;
}

template <typename T>
void combine(std::size_t& seed, const T& value) {
    seed ^= std::hash<T>{}(value) + 0x9E3779B97F4A7C15ULL + (seed << 6) + (seed >> 2);
}

} // namespace

Datapoint::Datapoint(Uuid id, std::string name, std::uint8_t unitID, RegisterTable table,
                     std::uint16_t address, DataType dataType, WordOrder wordOrder, double scale,
                     std::string engineeringUnit, DisplayFormat format, Value value,
                     std::string notes, Simulation simulation)
    : id(id)
    , name(std::move(name))
    , unitID(unitID)
    , address(address)
    , dataType(table.isBit() ? DataType(DataType::boolean) : dataType)
    , wordOrder(wordOrder)
    , scale(scale)
    , engineeringUnit(std::move(engineeringUnit))
    , format(format)
    , value(value)
    , notes(std::move(notes))
    , simulation(simulation)
    , table_(table) {}

void Datapoint::setTable(RegisterTable table) noexcept {
    table_ = table;
    if (table.isBit()) {
        dataType = DataType::boolean;
    } else if (dataType == DataType::boolean) {
        dataType = DataType::uint16;
    }
}

int Datapoint::count() const noexcept {
    return table_.isBit() ? 1 : dataType.registerCount();
}

Datapoint::AddressRange Datapoint::addressRange() const noexcept {
    return {address, address + count() - 1};
}

std::optional<std::uint16_t> Datapoint::lastAddress() const noexcept {
    const int last = addressRange().last;
    if (last > 0xFFFF) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(last);
}

bool Datapoint::overlaps(const Datapoint& other) const noexcept {
    return unitID == other.unitID && table_ == other.table_ &&
           other.address + other.count() > address && address + count() > other.address;
}

std::string Datapoint::modiconAddress() const {
    std::string number = std::to_string(address + 1);
    // Four digits up to address 9998, five from 9999 on (410000), as "%d%04d" and "%d%05d".
    const std::size_t width = address < 9999 ? 4 : 5;
    if (number.size() < width) {
        number.insert(0, width - number.size(), '0');
    }
    return std::to_string(table_.modiconPrefix()) + number;
}

int Datapoint::decimals() const noexcept {
    const double magnitude = std::abs(scale);
    // Written so that NaN gives 0 too: its logarithm would not convert to an int.
    if (scale == 0 || !(magnitude < 1)) {
        return 0;
    }
    // The small allowance keeps log10(0.1) = -0.99999... from asking for a second digit.
    const double digits = std::ceil(-std::log10(magnitude) - 1e-9);
    return std::min(static_cast<int>(digits), 6);
}

std::vector<std::uint16_t> Datapoint::registers(const Value& engineeringValue) const {
    return ValueCodec::registers(engineeringValue, dataType, wordOrder, scale);
}

Value Datapoint::valueFromRegisters(std::span<const std::uint16_t> registers) const {
    return ValueCodec::valueFromRegisters(registers, dataType, wordOrder, scale);
}

std::string Datapoint::formatted(const Value& engineeringValue, const NumberStyle& style) const {
    if (table_.isBit() || dataType == DataType::boolean) {
        return engineeringValue == 0 ? "0" : "1";
    }
    if (!dataType.isFloat() && format != DisplayFormat::decimal) {
        const std::uint64_t bits =
            ValueCodec::bits(ValueCodec::raw(engineeringValue, scale), dataType);
        const int width = 16 * dataType.registerCount();
        return format == DisplayFormat::hex ? NumberText::hexadecimal(bits, width / 4)
                                            : NumberText::binary(bits, width);
    }
    if (engineeringValue.isInteger() && !dataType.isFloat()) {
        std::string text = NumberText::plain(engineeringValue);
        if (const int digits = decimals(); digits > 0) {
            text += '.';
            text.append(static_cast<std::size_t>(digits), '0');
        }
        return style.localized(std::move(text));
    }
    const double real = engineeringValue.toDouble();
    if (std::isnan(real)) {
        return "NaN";
    }
    if (std::isinf(real)) {
        return real > 0 ? "∞" : "-∞";
    }
    if (dataType.isFloat()) {
        return style.localized(NumberText::significant(real));
    }
    return style.localized(NumberText::fixed(real, decimals()));
}

std::optional<Value> Datapoint::parse(std::string_view text) const {
    const std::string typed = Text::removingSpaces(Text::folded(Text::trimmed(text)));
    if (table_.isBit() || dataType == DataType::boolean) {
        if (contains(onWords, typed)) {
            return 1.0;
        }
        if (contains(offWords, typed)) {
            return 0.0;
        }
        return std::nullopt;
    }

    const std::string_view view = typed;
    const bool isHex = view.starts_with("0x");
    if (isHex || view.starts_with("0b")) {
        if (!isHex && dataType.isFloat()) {
            return std::nullopt;
        }
        auto bits = NumberText::unsignedInteger(view.substr(2), isHex ? 16 : 2);
        if (!bits) {
            return std::nullopt;
        }
        const int width = 16 * dataType.registerCount();
        if (width < 64 && (*bits >> width) != 0) {
            return std::nullopt;
        }
        return ValueCodec::engineering(ValueCodec::value(*bits, dataType), scale);
    }

    const std::string decimal = withDecimalPoint(typed);
    auto number = NumberText::number(decimal);
    if (!number || !std::isfinite(number->toDouble())) {
        return std::nullopt;
    }
    // Unscaled, digits alone that did not read as a 64-bit integer are beyond every integer
    // type, even where the double they round to is the end of a range (-2^63).
    if (!dataType.isFloat() && !ValueCodec::scales(scale) && !number->isInteger() &&
        decimal.find_first_of(".e") == std::string::npos) {
        return std::nullopt;
    }
    if (dataType.isFloat()) {
        const Value real = number->toDouble();
        return dataType.holds(ValueCodec::raw(real, scale)) ? std::optional(real) : std::nullopt;
    }
    const Value raw = ValueCodec::raw(*number, scale);
    const Value rounded = raw.isInteger() ? raw : Value(std::round(raw.toDouble()));
    return dataType.holds(rounded) ? number : std::nullopt;
}

std::optional<Value> Datapoint::parseNumber(std::string_view text) {
    return NumberText::number(withDecimalPoint(Text::trimmed(text)));
}

nlohmann::json Datapoint::json() const {
    nlohmann::json object = nlohmann::json::object();
    object["id"] = id.text();
    object["name"] = name;
    object["unitID"] = unitID;
    object["table"] = std::string(table_.rawValue());
    object["address"] = address;
    object["dataType"] = std::string(dataType.rawValue());
    object["wordOrder"] = std::string(wordOrder.rawValue());
    object["scale"] = JSONValue::number(scale);
    object["engineeringUnit"] = engineeringUnit;
    object["format"] = std::string(format.rawValue());
    object["value"] = JSONValue::number(value);
    object["notes"] = notes;
    object["simulation"] = simulation.json();
    return object;
}

namespace {

// The error of the first failed read, in field order.
template <typename... Reads>
const JSONValue::Error* firstError(const Reads&... reads) {
    const JSONValue::Error* error = nullptr;
    ((error = (error != nullptr || reads.ok()) ? error : &reads.error()), ...);
    return error;
}

} // namespace

Result<Datapoint, JSONValue::Error> Datapoint::fromJSON(const nlohmann::json& object) {
    if (!object.is_object()) {
        return JSONValue::Error(JSONValue::Error::Kind::expectedObject);
    }
    const Datapoint defaults;
    auto id = JSONValue::uuid(object, "id");
    auto name = JSONValue::string(object, "name");
    auto unitID = JSONValue::integer(object, "unitID", 0, 255);
    auto table = JSONValue::enumeration<RegisterTable>(object, "table");
    auto address = JSONValue::integer(object, "address", 0, 65535);
    auto dataType = JSONValue::enumeration<DataType>(object, "dataType");
    auto wordOrder = JSONValue::enumeration<WordOrder>(object, "wordOrder");
    // Every shown value is divided or multiplied by the scale, so only a finite one is usable.
    auto scale = JSONValue::finiteNumber(object, "scale");
    auto engineeringUnit = JSONValue::string(object, "engineeringUnit");
    auto format = JSONValue::enumeration<DisplayFormat>(object, "format");
    auto value = JSONValue::value(object, "value");
    auto notes = JSONValue::string(object, "notes");
    auto simulationObject = JSONValue::object(object, "simulation");
    if (const JSONValue::Error* error =
            firstError(id, name, unitID, table, address, dataType, wordOrder, scale,
                       engineeringUnit, format, value, notes, simulationObject)) {
        return *error;
    }
    Simulation simulation;
    if (simulationObject.value()) {
        auto decoded = Simulation::fromJSON(**simulationObject.value());
        if (!decoded.ok()) {
            return JSONValue::Error(decoded.error()).inside("simulation");
        }
        simulation = decoded.value();
    }
    return Datapoint(
        id.value().value_or(defaults.id), name.value().value_or(defaults.name),
        static_cast<std::uint8_t>(unitID.value().value_or(defaults.unitID)),
        table.value().value_or(defaults.table()),
        static_cast<std::uint16_t>(address.value().value_or(defaults.address)),
        dataType.value().value_or(defaults.dataType),
        wordOrder.value().value_or(defaults.wordOrder), scale.value().value_or(defaults.scale),
        engineeringUnit.value().value_or(defaults.engineeringUnit),
        format.value().value_or(defaults.format), value.value().value_or(defaults.value),
        notes.value().value_or(defaults.notes), simulation);
}

} // namespace kestrin

std::size_t
std::hash<kestrin::Datapoint>::operator()(const kestrin::Datapoint& datapoint) const noexcept {
    std::size_t seed = 0;
    kestrin::combine(seed, datapoint.id);
    kestrin::combine(seed, datapoint.name);
    kestrin::combine(seed, datapoint.unitID);
    kestrin::combine(seed, static_cast<int>(datapoint.table()));
    kestrin::combine(seed, datapoint.address);
    kestrin::combine(seed, static_cast<int>(datapoint.dataType));
    kestrin::combine(seed, static_cast<int>(datapoint.wordOrder));
    kestrin::combine(seed, datapoint.scale);
    kestrin::combine(seed, datapoint.engineeringUnit);
    kestrin::combine(seed, static_cast<int>(datapoint.format));
    kestrin::combine(seed, datapoint.value);
    kestrin::combine(seed, datapoint.notes);
    kestrin::combine(seed, static_cast<int>(datapoint.simulation.kind));
    kestrin::combine(seed, datapoint.simulation.minimum);
    kestrin::combine(seed, datapoint.simulation.maximum);
    kestrin::combine(seed, datapoint.simulation.period);
    return seed;
}
