#include "CliOptions.h"

#include "DataType.h"
#include "DisplayFormat.h"
#include "L10n.h"
#include "RTUFrame.h"
#include "RegisterTable.h"
#include "Text.h"
#include "WordOrder.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <tuple>
#include <utility>

namespace kestrin {

namespace {

using CommandLine::Option;
using CommandLine::Parsed;

constexpr Option baud{"baud", "B", "baud rate (default 9600)"};
constexpr Option frame{"frame", "F",
                       "data bits, parity, stop bits: 8E1 (default), 8N1, 8N2, 7O1 ..."};
constexpr Option timeout{"timeout-ms", "T", "response time-out in milliseconds (default 1000)"};
constexpr Option unit{"unit", "U", "unit ID 1-247 (default 1)"};
constexpr Option address{"address", "A", "protocol address 0-65535"};
constexpr Option type{"type", "T",
                      "bool, uint16 (default), int16, uint32, int32, float32,\n"
                      "uint64, int64, float64"};
constexpr Option order{"order", "O", "ABCD (default), CDAB, BADC, DCBA"};
constexpr Option scale{"scale", "S", "engineering value = raw value x S (default 1)"};
constexpr Option format{"format", "F", "decimal (default), hex, binary"};
constexpr Option engineeringUnit{"eu", "TEXT", "engineering unit printed after the value"};
constexpr Option json{"json", "",
                      "one JSON object per line (a read of --count N: one array);\n"
                      "a NaN or infinity is null, its text in \"text\""};

// The parts in order, as one table.
template <std::size_t... Sizes>
constexpr auto joined(const std::array<Option, Sizes>&... parts) {
    std::array<Option, (Sizes + ...)> all{};
    auto next = all.begin();
    ((next = std::copy(parts.begin(), parts.end(), next)), ...);
    return all;
}

// Read and write differ in the tables they take and in what only a write needs.
constexpr std::array lineOptions{
    SharedOptions::port,  SharedOptions::testDevice,  baud,    frame,
    SharedOptions::rs485, SharedOptions::rs485Delays, timeout, unit,
};
constexpr std::array datapointOptions{address, type, order, scale, format, engineeringUnit};

constexpr auto readOptions =
    joined(lineOptions,
           std::array{Option{
               "table", "T",
               "CO (coil), DI (discrete input), HR (holding register),\nIR (input register)"}},
           datapointOptions,
           std::array{
               Option{"count", "N",
                      "read N values of the type at consecutive addresses,\n"
                      "each printed after its address (HR 100: 21.5)"},
               Option{"interval", "MS",
                      "repeat the read every MS milliseconds until Ctrl+C;\n"
                      "the exit status is that of the last read"},
               Option{"cycles", "N", "stop after N reads (back to back without --interval)"},
               json,
           });

constexpr auto writeOptions =
    joined(lineOptions, std::array{Option{"table", "T", "CO (coil) or HR (holding register)"}},
           datapointOptions,
           std::array{
               Option{"value", "V", "the engineering value (42, 1,5, 0x1F, 0b101, on, off)"},
               Option{"write-mode", "M", "single (FC05/06, default) or multiple (FC15/16)"},
               json,
           });

const CommandLine::Syntax readSyntax{
    "kestrin-cli read",
    "Usage: kestrin-cli read --port PATH --table T --address A [options]\n\n"
    "Reads one value and prints it in its display format, with the engineering unit.\n",
    readOptions};

const CommandLine::Syntax writeSyntax{
    "kestrin-cli write",
    "Usage: kestrin-cli write --port PATH --table T --address A --value V [options]\n\n"
    "Writes one coil or holding register; success is silent.\n",
    writeOptions};

// A decimal integer with an optional sign, nothing else around it.
std::optional<std::int64_t> integer(std::string_view text) {
    text = Text::trimmed(text);
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

std::optional<int> integerIn(std::string_view text, std::int64_t minimum, std::int64_t maximum) {
    const std::optional<std::int64_t> number = integer(text);
    if (!number || *number < minimum || *number > maximum) {
        return std::nullopt;
    }
    return static_cast<int>(*number);
}

// The first option the command cannot do without that is missing.
std::optional<std::string> missingOption(CliOptions::Command command, const Parsed& parsed) {
    const bool write = command == CliOptions::Command::write;
    for (const std::string_view name : {"port", "table", "address", "value"}) {
        if (!parsed.has(name) && (write || name != "value")) {
            return L10n::texts().errors.missingOption(std::string("--") + std::string(name));
        }
    }
    return std::nullopt;
}

std::string invalid(std::string_view name, std::string_view value) {
    return L10n::texts().errors.invalidOptionValue(std::string("--") + std::string(name), value);
}

// Baud rate, frame and time-out.
Result<void, std::string> checkLine(const Parsed& parsed, CliOptions& result) {
    if (auto line = CliOptions::applyLine(parsed, result.serial); !line) {
        return line;
    }
    if (const auto typed = parsed.value("timeout-ms")) {
        const std::optional<int> timeoutMs = integerIn(*typed, 1, std::numeric_limits<int>::max());
        if (!timeoutMs) {
            return invalid("timeout-ms", *typed);
        }
        result.timeoutMs = *timeoutMs;
    }
    return {};
}

// Unit, table and address: where the value is.
Result<void, std::string> checkLocation(const Parsed& parsed, Datapoint& datapoint) {
    const L10n::Texts::ErrorsTexts& errors = L10n::texts().errors;
    if (const auto typed = parsed.value("unit")) {
        const std::optional<int> unit =
            integerIn(*typed, RTUFrame::unitRange.first, RTUFrame::unitRange.last);
        if (!unit) {
            return errors.csvInvalidUnit(*typed);
        }
        datapoint.unitID = static_cast<std::uint8_t>(*unit);
    }
    const std::string table = *parsed.value("table");
    const std::optional<RegisterTable> registerTable = RegisterTable::fromText(table);
    if (!registerTable) {
        return errors.csvInvalidTable(table);
    }
    datapoint.setTable(*registerTable);
    const std::string typedAddress = *parsed.value("address");
    const std::optional<int> address =
        integerIn(typedAddress, 0, std::numeric_limits<std::uint16_t>::max());
    if (!address) {
        return errors.csvInvalidAddress(typedAddress);
    }
    datapoint.address = static_cast<std::uint16_t>(*address);
    return {};
}

// Type, order, scale, format and engineering unit: how the value reads.
Result<void, std::string> checkPresentation(const Parsed& parsed, Datapoint& datapoint) {
    if (const auto typed = parsed.value("type")) {
        const std::optional<DataType> type = DataType::fromText(*typed);
        if (!type || !type->isAllowed(datapoint.table())) {
            return L10n::texts().errors.csvInvalidDataType(*typed);
        }
        datapoint.dataType = *type;
    }
    if (const auto typed = parsed.value("order")) {
        const std::optional<WordOrder> order = WordOrder::fromText(*typed);
        if (!order) {
            return invalid("order", *typed);
        }
        datapoint.wordOrder = *order;
    }
    if (const auto typed = parsed.value("scale")) {
        const std::optional<double> scale = toDouble(Datapoint::parseNumber(*typed));
        if (!scale || !std::isfinite(*scale)) {
            return L10n::texts().errors.csvInvalidNumber(*typed);
        }
        datapoint.scale = *scale;
    }
    if (const auto typed = parsed.value("format")) {
        const std::optional<DisplayFormat> format = DisplayFormat::fromText(*typed);
        if (!format) {
            return invalid("format", *typed);
        }
        datapoint.format = *format;
    }
    datapoint.engineeringUnit = parsed.value("eu").value_or("");
    return {};
}

// A writable table, the write mode and the value, checked against the finished datapoint.
Result<void, std::string> checkWrite(const Parsed& parsed, CliOptions& result) {
    if (!result.datapoint.table().isWritable()) {
        return L10n::texts().errors.tableNotWritable(*parsed.value("table"));
    }
    if (const auto typed = parsed.value("write-mode")) {
        const std::optional<WriteMode> mode =
            WriteMode::fromRawValue(Text::folded(Text::trimmed(*typed)));
        if (!mode) {
            return invalid("write-mode", *typed);
        }
        result.writeMode = *mode;
    }
    const std::optional<Value> value = result.datapoint.parse(*parsed.value("value"));
    if (!value) {
        return L10n::Table::valueInvalid(result.datapoint.dataType);
    }
    result.value = *value;
    return {};
}

// A whole-number option from 1 to maximum into target, when given.
Result<void, std::string> checkPositive(const Parsed& parsed, std::string_view name,
                                        std::int64_t maximum, std::optional<int>& target) {
    if (const auto typed = parsed.value(name)) {
        target = integerIn(*typed, 1, maximum);
        if (!target) {
            return invalid(name, *typed);
        }
    }
    return {};
}

// How many values, how often: the values must end at the last address.
Result<void, std::string> checkRepetition(const Parsed& parsed, CliOptions& result) {
    const Datapoint& datapoint = result.datapoint;
    const int room =
        (std::numeric_limits<std::uint16_t>::max() - datapoint.address + 1) / datapoint.count();
    for (const auto& [name, maximum, target] :
         {std::tuple{"count", std::int64_t(room), &result.count},
          std::tuple{"interval", std::int64_t(std::numeric_limits<int>::max()), &result.intervalMs},
          std::tuple{"cycles", std::int64_t(std::numeric_limits<int>::max()), &result.cycles}}) {
        if (auto checked = checkPositive(parsed, name, maximum, *target); !checked) {
            return checked;
        }
    }
    return {};
}

} // namespace

Result<void, std::string> CliOptions::applyLine(const Parsed& parsed, SerialConfiguration& serial) {
    const auto rate = baudRate(parsed);
    if (!rate) {
        return rate.error();
    }
    serial.baudRate = rate.value().value_or(serial.baudRate);
    if (const auto typed = parsed.value("frame")) {
        const std::optional<SerialConfiguration> withFrame = serial.withFrame(*typed);
        if (!withFrame) {
            return invalid("frame", *typed);
        }
        serial = *withFrame;
    }
    const auto direction = rs485(parsed);
    if (!direction) {
        return direction.error();
    }
    serial.rs485 = direction.value();
    return {};
}

std::optional<CliOptions::Command> CliOptions::commandNamed(std::string_view word) noexcept {
    if (word == "read") {
        return Command::read;
    }
    if (word == "write") {
        return Command::write;
    }
    return std::nullopt;
}

const CommandLine::Syntax& CliOptions::syntax(Command command) {
    return command == Command::read ? readSyntax : writeSyntax;
}

Result<CliOptions, std::string> CliOptions::check(Command command, const Parsed& parsed) {
    if (auto missing = missingOption(command, parsed)) {
        return *missing;
    }
    CliOptions result;
    result.command = command;
    result.port = *parsed.value("port");
    result.testDevice = parsed.has("test-device");
    if (auto line = checkLine(parsed, result); !line) {
        return line.error();
    }
    if (auto location = checkLocation(parsed, result.datapoint); !location) {
        return location.error();
    }
    if (auto presentation = checkPresentation(parsed, result.datapoint); !presentation) {
        return presentation.error();
    }
    result.json = parsed.has("json");
    auto specific =
        command == Command::write ? checkWrite(parsed, result) : checkRepetition(parsed, result);
    if (!specific) {
        return specific.error();
    }
    return result;
}

std::optional<int> CliOptions::wholeNumber(std::string_view text, std::int64_t minimum,
                                           std::int64_t maximum) {
    return integerIn(text, minimum, maximum);
}

Result<std::optional<int>, std::string> CliOptions::baudRate(const Parsed& parsed) {
    const std::optional<std::string> typed = parsed.value("baud");
    if (!typed) {
        return std::optional<int>();
    }
    const std::optional<int> rate = integerIn(*typed, 1, std::numeric_limits<int>::max());
    if (!rate) {
        std::string rates;
        for (const int standard : SerialConfiguration::standardBaudRates) {
            rates += (rates.empty() ? "" : ", ") + std::to_string(standard);
        }
        return L10n::texts().errors.invalidBaud(*typed, rates);
    }
    return std::optional<int>(rate);
}

Result<std::optional<RS485Direction>, std::string> CliOptions::rs485(const Parsed& parsed) {
    const std::optional<std::string> level = parsed.value("rs485");
    const std::optional<std::string> delays = parsed.value("rs485-delays");
    if (!level) {
        if (delays) {
            return L10n::texts().errors.missingOption("--rs485");
        }
        return std::optional<RS485Direction>();
    }
    const std::string_view typed = Text::trimmed(*level);
    if (typed != "high" && typed != "low") {
        return invalid("rs485", *level);
    }
    RS485Direction direction{.rtsHighWhileSending = typed == "high"};
    if (delays) {
        const std::string_view text = *delays;
        const std::size_t comma = text.find(',');
        const auto before = integerIn(text.substr(0, comma), 0, RS485Direction::longestDelayMs);
        const auto after =
            comma == std::string_view::npos
                ? std::nullopt
                : integerIn(text.substr(comma + 1), 0, RS485Direction::longestDelayMs);
        if (!before || !after) {
            return invalid("rs485-delays", *delays);
        }
        direction.delayBeforeSendMs = *before;
        direction.delayAfterSendMs = *after;
    }
    return std::optional<RS485Direction>(direction);
}

} // namespace kestrin
