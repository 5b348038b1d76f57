// Datapoint::parse, what the user types into the write editor. Input: the data type (or a coil),
// the scale, then the typed text.
#include "Datapoint.h"
#include "Text.h"
#include "ValueCodec.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <string_view>

using namespace kestrin;

namespace {

constexpr std::array scales{1.0, 0.0, 0.1, 0.01, 0.25, 10.0, -1.0, 1e-9, 1e6};

Datapoint datapoint(std::uint8_t typeChoice, std::uint8_t scaleChoice) {
    Datapoint point;
    const std::size_t choice = typeChoice % (DataType::allCases.size() + 1);
    if (choice == DataType::allCases.size()) {
        point.setTable(RegisterTable::coil);
    } else {
        point.dataType = DataType::allCases[choice];
    }
    point.scale = scales[scaleChoice % scales.size()];
    return point;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const Datapoint point = datapoint(data[0], data[1]);
    const std::string_view text(reinterpret_cast<const char*>(data + 2), size - 2);
    const std::optional<Value> typed = point.parse(text);
    if (!typed) {
        return 0;
    }
    if (point.dataType == DataType::boolean) {
        if (*typed != 0 && *typed != 1) {
            std::abort();
        }
        return 0;
    }
    // A raw pattern (0x…, 0b…) stands for itself, NaN and infinities included; a decimal number
    // must be finite and fit the type, so that writing it never clamps.
    const std::string compact = Text::removingSpaces(Text::folded(Text::trimmed(text)));
    const bool pattern = compact.starts_with("0x") || compact.starts_with("0b");
    const DataType type = point.dataType;
    const Value raw = ValueCodec::raw(*typed, point.scale);
    const Value rounded = raw.isInteger() ? raw : Value(std::round(raw.toDouble()));
    const Value written = ValueCodec::value(ValueCodec::bits(raw, type), type);
    if (!pattern && (!std::isfinite(typed->toDouble()) || !std::isfinite(written.toDouble()) ||
                     (!type.isFloat() && written != rounded))) {
        std::abort();
    }
    if (type.isFloat()) {
        return 0;
    }
    // The registers written for it read back as that value, and the value as shown is typed
    // back to the same registers.
    const std::vector<std::uint16_t> registers = point.registers(*typed);
    if (registers.size() != static_cast<std::size_t>(type.registerCount()) ||
        point.valueFromRegisters(registers) != ValueCodec::engineering(written, point.scale)) {
        std::abort();
    }
    const auto shown = point.parse(point.formatted(point.valueFromRegisters(registers), {}));
    if (!ValueCodec::scales(point.scale) && (!shown || point.registers(*shown) != registers)) {
        std::abort();
    }
    return 0;
}
