#include "CliOptions.h"

#include "DataType.h"
#include "DisplayFormat.h"
#include "L10n.h"
#include "RTUFrame.h"
#include "RegisterTable.h"
#include "Text.h"
#include "WordOrder.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace kestrin {

namespace {

// The option texts as typed, before any of them is checked.
struct Arguments {
    std::optional<std::string> port;
    std::optional<std::string> baud;
    std::optional<std::string> frame;
    std::optional<std::string> timeout;
    std::optional<std::string> unit;
    std::optional<std::string> table;
    std::optional<std::string> address;
    std::optional<std::string> type;
    std::optional<std::string> order;
    std::optional<std::string> scale;
    std::optional<std::string> format;
    std::optional<std::string> engineeringUnit;
    std::optional<std::string> value;
    std::optional<std::string> writeMode;
    bool testDevice = false;
};

struct OptionSpec {
    std::string_view name;
    std::optional<std::string> Arguments::*field;
    bool writeOnly;
};

constexpr std::array options{
    OptionSpec{"--port", &Arguments::port, false},
    OptionSpec{"--baud", &Arguments::baud, false},
    OptionSpec{"--frame", &Arguments::frame, false},
    OptionSpec{"--timeout-ms", &Arguments::timeout, false},
    OptionSpec{"--unit", &Arguments::unit, false},
    OptionSpec{"--table", &Arguments::table, false},
    OptionSpec{"--address", &Arguments::address, false},
    OptionSpec{"--type", &Arguments::type, false},
    OptionSpec{"--order", &Arguments::order, false},
    OptionSpec{"--scale", &Arguments::scale, false},
    OptionSpec{"--format", &Arguments::format, false},
    OptionSpec{"--eu", &Arguments::engineeringUnit, false},
    OptionSpec{"--value", &Arguments::value, true},
    OptionSpec{"--write-mode", &Arguments::writeMode, true},
};

constexpr std::string_view testDeviceFlag = "--test-device";

const OptionSpec* option(std::string_view name, CliOptions::Command command) {
    for (const OptionSpec& spec : options) {
        if (spec.name == name && (!spec.writeOnly || command == CliOptions::Command::write)) {
            return &spec;
        }
    }
    return nullptr;
}

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

std::string typed(std::string_view name, std::string_view value) {
    std::string text(name);
    text += ' ';
    text += value;
    return text;
}

// The first option the command cannot do without that is missing.
std::optional<UsageError> missingOption(CliOptions::Command command, const Arguments& arguments) {
    const bool needsValue = command == CliOptions::Command::write;
    for (const auto& [name, given] : {std::pair{"--port", arguments.port.has_value()},
                                      std::pair{"--table", arguments.table.has_value()},
                                      std::pair{"--address", arguments.address.has_value()},
                                      std::pair{"--value", !needsValue || arguments.value}}) {
        if (!given) {
            return UsageError{{}, name};
        }
    }
    return std::nullopt;
}

// Baud rate, frame and time-out.
Result<void, UsageError> checkLine(const Arguments& arguments, CliOptions& result) {
    constexpr int largestInt = std::numeric_limits<int>::max();
    if (arguments.baud) {
        const std::optional<int> baud = integerIn(*arguments.baud, 1, largestInt);
        if (!baud) {
            return UsageError{L10n::texts().errors.csvInvalidNumber(*arguments.baud),
                              typed("--baud", *arguments.baud)};
        }
        result.serial.baudRate = *baud;
    }
    if (arguments.frame) {
        const std::optional<SerialConfiguration> frame = result.serial.withFrame(*arguments.frame);
        if (!frame) {
            return UsageError{{}, typed("--frame", *arguments.frame)};
        }
        result.serial = *frame;
    }
    if (arguments.timeout) {
        const std::optional<int> timeoutMs = integerIn(*arguments.timeout, 1, largestInt);
        if (!timeoutMs) {
            return UsageError{L10n::texts().errors.csvInvalidNumber(*arguments.timeout),
                              typed("--timeout-ms", *arguments.timeout)};
        }
        result.timeoutMs = *timeoutMs;
    }
    return {};
}

// Unit, table and address: where the value is.
Result<void, UsageError> checkLocation(const Arguments& arguments, Datapoint& datapoint) {
    if (arguments.unit) {
        const std::optional<int> unit =
            integerIn(*arguments.unit, RTUFrame::unitRange.first, RTUFrame::unitRange.last);
        if (!unit) {
            return UsageError{L10n::texts().errors.csvInvalidUnit(*arguments.unit),
                              typed("--unit", *arguments.unit)};
        }
        datapoint.unitID = static_cast<std::uint8_t>(*unit);
    }
    const std::optional<RegisterTable> table = RegisterTable::fromText(*arguments.table);
    if (!table) {
        return UsageError{L10n::texts().errors.csvInvalidTable(*arguments.table),
                          typed("--table", *arguments.table)};
    }
    datapoint.setTable(*table);
    const std::optional<int> address =
        integerIn(*arguments.address, 0, std::numeric_limits<std::uint16_t>::max());
    if (!address) {
        return UsageError{L10n::texts().errors.csvInvalidAddress(*arguments.address),
                          typed("--address", *arguments.address)};
    }
    datapoint.address = static_cast<std::uint16_t>(*address);
    return {};
}

// Type, order, scale, format and engineering unit: how the value reads.
Result<void, UsageError> checkPresentation(const Arguments& arguments, Datapoint& datapoint) {
    if (arguments.type) {
        const std::optional<DataType> type = DataType::fromText(*arguments.type);
        if (!type || !type->isAllowed(datapoint.table())) {
            return UsageError{L10n::texts().errors.csvInvalidDataType(*arguments.type),
                              typed("--type", *arguments.type)};
        }
        datapoint.dataType = *type;
    }
    if (arguments.order) {
        const std::optional<WordOrder> order = WordOrder::fromText(*arguments.order);
        if (!order) {
            return UsageError{{}, typed("--order", *arguments.order)};
        }
        datapoint.wordOrder = *order;
    }
    if (arguments.scale) {
        const std::optional<double> scale = toDouble(Datapoint::parseNumber(*arguments.scale));
        if (!scale || !std::isfinite(*scale)) {
            return UsageError{L10n::texts().errors.csvInvalidNumber(*arguments.scale),
                              typed("--scale", *arguments.scale)};
        }
        datapoint.scale = *scale;
    }
    if (arguments.format) {
        const std::optional<DisplayFormat> format = DisplayFormat::fromText(*arguments.format);
        if (!format) {
            return UsageError{{}, typed("--format", *arguments.format)};
        }
        datapoint.format = *format;
    }
    datapoint.engineeringUnit = arguments.engineeringUnit.value_or("");
    return {};
}

// A writable table, the write mode and the value, checked against the finished datapoint.
Result<void, UsageError> checkWrite(const Arguments& arguments, CliOptions& result) {
    if (!result.datapoint.table().isWritable()) {
        return UsageError{{}, typed("--table", *arguments.table)};
    }
    if (arguments.writeMode) {
        const std::optional<WriteMode> mode =
            WriteMode::fromRawValue(Text::folded(Text::trimmed(*arguments.writeMode)));
        if (!mode) {
            return UsageError{{}, typed("--write-mode", *arguments.writeMode)};
        }
        result.writeMode = *mode;
    }
    const std::optional<Value> value = result.datapoint.parse(*arguments.value);
    if (!value) {
        return UsageError{L10n::Table::valueInvalid(result.datapoint.dataType),
                          typed("--value", *arguments.value)};
    }
    result.value = *value;
    return {};
}

// Everything after reading the option texts: each is checked in the order of the usage text.
Result<CliOptions, UsageError> check(CliOptions::Command command, const Arguments& arguments) {
    if (auto missing = missingOption(command, arguments)) {
        return *missing;
    }
    CliOptions result;
    result.command = command;
    result.port = *arguments.port;
    result.testDevice = arguments.testDevice;
    if (auto line = checkLine(arguments, result); !line) {
        return line.error();
    }
    if (auto location = checkLocation(arguments, result.datapoint); !location) {
        return location.error();
    }
    if (auto presentation = checkPresentation(arguments, result.datapoint); !presentation) {
        return presentation.error();
    }
    if (command == CliOptions::Command::write) {
        if (auto write = checkWrite(arguments, result); !write) {
            return write.error();
        }
    }
    return result;
}

} // namespace

std::optional<CliOptions::Command> CliOptions::commandNamed(std::string_view word) noexcept {
    if (word == "read") {
        return Command::read;
    }
    if (word == "write") {
        return Command::write;
    }
    return std::nullopt;
}

Result<CliOptions, UsageError> CliOptions::parse(Command command,
                                                 std::span<const std::string_view> arguments) {
    Arguments found;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == testDeviceFlag) {
            found.testDevice = true;
            continue;
        }
        std::string_view name = argument;
        std::optional<std::string_view> value;
        if (const std::size_t equals = argument.find('=');
            argument.starts_with("--") && equals != std::string_view::npos) {
            name = argument.substr(0, equals);
            value = argument.substr(equals + 1);
        }
        const OptionSpec* spec = option(name, command);
        if (spec == nullptr) {
            return UsageError{{}, std::string(argument)};
        }
        if (!value) {
            if (i + 1 == arguments.size()) {
                return UsageError{{}, std::string(name)};
            }
            value = arguments[++i];
        }
        found.*(spec->field) = std::string(*value);
    }
    return check(command, found);
}

std::optional<int> CliOptions::wholeNumber(std::string_view text, std::int64_t minimum,
                                           std::int64_t maximum) {
    return integerIn(text, minimum, maximum);
}

std::string CliOptions::usage() {
    return R"(Usage:
  kestrin-cli read  --port PATH --table T --address A [options]
  kestrin-cli write --port PATH --table T --address A --value V [options]
  kestrin-cli poll  --port PATH (--project FILE.json | --csv FILE.csv) [options]
  kestrin-cli ports
  kestrin-cli --help

Options:
  --port PATH        serial device, such as /dev/ttyUSB0
  --test-device      accept a pseudo-terminal or another non-serial device
  --baud B           baud rate (default 9600)
  --frame F          data bits, parity, stop bits: 8E1 (default), 8N1, 8N2, 7O1 ...
  --timeout-ms T     response time-out in milliseconds (default 1000)
  --unit U           unit ID 1-247 (default 1)
  --table T          CO (coil), DI (discrete input), HR (holding register),
                     IR (input register); write: CO or HR
  --address A        protocol address 0-65535
  --type T           bool, uint16 (default), int16, uint32, int32, float32,
                     uint64, int64, float64
  --order O          ABCD (default), CDAB, BADC, DCBA
  --scale S          engineering value = raw value x S (default 1)
  --format F         decimal (default), hex, binary
  --eu TEXT          engineering unit printed after the value
  --value V          write: the engineering value (42, 1,5, 0x1F, 0b101, on, off)
  --write-mode M     write: single (FC05/06, default) or multiple (FC15/16)

Poll options (--baud, --frame, --timeout-ms and --gap override the project's):
  --project FILE     read the enabled polls of a project file
  --csv FILE         read the datapoints of a CSV list as one poll, every second
  --cycles N         stop after every enabled poll has been read N times
  --seconds S        stop after S seconds (default: run until interrupted)
  --gap N            read along holes of up to N unused addresses
  --history FILE     write the values read as CSV when done
  --log FILE         write the communication log as text when done
  --raw-frames       log whole request and response frames
  --only-problems    log failures only, no answers
  --no-timestamps    log lines without their time (--timestamps: with, default)

Exit status: 0 done, 1 the request failed, 2 usage error, 3 the port cannot be used.
A poll exits 0 when it ran, whatever the device answered; 1 when the history or the log
cannot be written.
)";
}

} // namespace kestrin
