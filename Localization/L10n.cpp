#include "L10n.h"

#include "LanguageForTesting.h"
#include "Overloaded.h"
#include "Texts.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <variant>

namespace kestrin::L10n {

namespace {
// Set only by withLanguageForTesting, and only for the thread that called it.
thread_local std::optional<Language> testLanguage;
} // namespace

std::string hexByte(std::uint8_t byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    return {digits[byte >> 4], digits[byte & 0x0F]};
}

Language language() {
    return testLanguage ? *testLanguage : Language::current();
}

const Texts& texts() {
    return texts(language());
}

void withLanguageForTesting(Language chosen, const std::function<void()>& body) {
    const std::optional<Language> previous = testLanguage;
    testLanguage = chosen;
    body();
    testLanguage = previous;
}

std::string appName() {
    return "Kestrin";
}

namespace Settings {
std::string timeoutLabel(int timeoutMs) {
    return concat(timeoutMs, " ms");
}
std::string gapLabel(int gap) {
    return gap == 0 ? texts().settings.adjacentOnly() : texts().settings.gapsUpTo(gap);
}
} // namespace Settings

namespace Menu {
std::string poller() {
    return "Poller";
}
} // namespace Menu

namespace Table {
std::string csv() {
    return "CSV";
}
std::string newName(RegisterTable table, int address) {
    return concat(table.code(), " ", address);
}

std::string tableName(RegisterTable table) {
    const Texts::TableTexts::TableNames& names = texts().table.tableNames;
    switch (table) {
    case RegisterTable::coil:
        return names.coil();
    case RegisterTable::discreteInput:
        return names.discreteInput();
    case RegisterTable::holdingRegister:
        return names.holdingRegister();
    case RegisterTable::inputRegister:
        return names.inputRegister();
    }
    return {};
}

std::string dataTypeName(DataType type) {
    constexpr std::array<std::string_view, 9> names{"bit",     "UInt16", "Int16", "UInt32", "Int32",
                                                    "Float32", "UInt64", "Int64", "Float64"};
    return std::string(names[static_cast<DataType::Case>(type)]);
}

std::string formatName(DisplayFormat format) {
    switch (format) {
    case DisplayFormat::decimal:
        return texts().table.formatNames.decimal();
    case DisplayFormat::hex:
        return "Hex";
    case DisplayFormat::binary:
        return texts().table.formatNames.binary();
    }
    return {};
}

std::string ok(int ms) {
    return concat("OK · ", ms, " ms");
}
std::string valueInvalid(DataType type) {
    return texts().table.valueInvalid(dataTypeName(type));
}
} // namespace Table

namespace Modbus {
std::string functionName(std::uint8_t code) {
    const Texts::ModbusTexts::FunctionNames& names = texts().modbus.functionNames;
    switch (code) {
    case 1:
        return names.readCoils();
    case 2:
        return names.readDiscreteInputs();
    case 3:
        return names.readHoldingRegisters();
    case 4:
        return names.readInputRegisters();
    case 5:
        return names.writeSingleCoil();
    case 6:
        return names.writeSingleRegister();
    case 8:
        return names.diagnostics();
    case 15:
        return names.writeMultipleCoils();
    case 16:
        return names.writeMultipleRegisters();
    case 22:
        return names.maskWriteRegister();
    case 23:
        return names.readWriteMultipleRegisters();
    case 43:
        return names.deviceIdentification();
    default:
        return names.other();
    }
}

std::string exceptionName(std::uint8_t code) {
    const Texts::ModbusTexts::ExceptionNames& names = texts().modbus.exceptionNames;
    Literal name = names.other;
    switch (code) {
    case 1:
        name = names.illegalFunction;
        break;
    case 2:
        name = names.illegalDataAddress;
        break;
    case 3:
        name = names.illegalDataValue;
        break;
    case 4:
        name = names.serverDeviceFailure;
        break;
    case 5:
        name = names.acknowledge;
        break;
    case 6:
        name = names.serverDeviceBusy;
        break;
    case 8:
        name = names.memoryParityError;
        break;
    case 10:
        name = names.gatewayPathUnavailable;
        break;
    case 11:
        name = names.gatewayTargetFailedToRespond;
        break;
    default:
        break;
    }
    return concat(name.value, " (", hexByte(code), ")");
}
} // namespace Modbus

namespace Errors {
std::string ok() {
    return "OK";
}

std::string systemMessage(int code) {
    // strerrordesc_np is glibc's untranslated table; strerror would follow LC_MESSAGES.
    if (const char* message = strerrordesc_np(code)) {
        return message;
    }
    return concat("Unknown error ", code);
}

namespace {
// The one step that helps this user, from what the system said about the device.
std::string permissionAdvice(const SerialLinkError::PortAccess& access) {
    using Membership = SerialLinkError::PortAccess::Membership;
    const Texts::ErrorsTexts& errors = texts().errors;
    if (!access.groupMayOpen) {
        return errors.permissionOwnerOnly();
    }
    switch (access.membership) {
    case Membership::none:
        return errors.permissionNotMember(access.group, access.user);
    case Membership::notInThisLogin:
        return errors.permissionNotInThisLogin(access.group);
    case Membership::inThisLogin:
        return errors.permissionMemberRefused(access.group);
    }
    return errors.openPermissionDenied();
}

std::string sentenceForOpenFailure(const SerialLinkError::OpenFailed& failed) {
    std::string sentence = texts().errors.openFailed(failed.path, systemMessage(failed.code));
    if (failed.code == EACCES) {
        sentence += " " + (failed.access ? permissionAdvice(*failed.access)
                                         : texts().errors.openPermissionDenied());
    }
    return sentence;
}

std::string sentenceForBusyPort(const SerialLinkError::Busy& busy) {
    const Texts::ErrorsTexts& errors = texts().errors;
    std::string sentence = errors.busy(busy.path);
    if (const std::optional<SerialLinkError::PortHolder>& holder = busy.holder) {
        const std::string who = errors.holderProcess(holder->pid, holder->program);
        sentence = holder->probable ? errors.busyProbablyBy(busy.path, who)
                                    : errors.busyBy(busy.path, who);
        // Closing does not stop a service, and the brltty advice below covers brltty.
        if (holder->program == "ModemManager") {
            sentence += " " + errors.modemManagerHint();
        } else if (!(busy.brlttyTakesAdapter && holder->program == "brltty")) {
            sentence += " " + errors.closeHolder();
        }
    }
    if (busy.brlttyTakesAdapter) {
        sentence += " " + errors.brlttyHint();
    }
    return sentence;
}
} // namespace

std::string describe(const SerialLinkError& error) {
    return std::visit(
        Overloaded{
            [](const SerialLinkError::InvalidPath& e) {
                return texts().errors.invalidPath(e.path);
            },
            [](const SerialLinkError::OpenFailed& e) { return sentenceForOpenFailure(e); },
            [](const SerialLinkError::Busy& e) { return sentenceForBusyPort(e); },
            [](const SerialLinkError::ConfigurationFailed& e) {
                return texts().errors.configurationFailed(systemMessage(e.code));
            },
            [](const SerialLinkError::RS485Refused& e) {
                return texts().errors.rs485Refused(systemMessage(e.code));
            },
            [](const SerialLinkError::UnsupportedBaudRate& e) {
                return texts().errors.unsupportedBaud(e.baudRate);
            },
            [](const SerialLinkError::WriteFailed& e) {
                return texts().errors.writeFailed(systemMessage(e.code));
            },
            [](const SerialLinkError::NotOpen&) { return texts().errors.notOpen(); },
            [](const SerialLinkError::SendRefused&) { return texts().errors.sendRefused(); },
            [](const SerialLinkError::Timeout&) { return texts().errors.timeout(); },
            [](const SerialLinkError::Disconnected&) {
                return texts().errors.deviceDisconnected();
            },
            // Only a stop cancels, and a stop is logged as such.
            [](const SerialLinkError::Cancelled&) { return texts().log.stopped(); },
        },
        error.value);
}

std::string describe(const DatapointCSV::Problem& problem) {
    using Kind = DatapointCSV::Problem::Kind;
    switch (problem.kind) {
    case Kind::invalidTable:
        return texts().errors.csvInvalidTable(problem.text);
    case Kind::invalidAddress:
        return texts().errors.csvInvalidAddress(problem.text);
    case Kind::invalidUnit:
        return texts().errors.csvInvalidUnit(problem.text);
    case Kind::invalidDataType:
        return texts().errors.csvInvalidDataType(problem.text);
    case Kind::invalidNumber:
        return texts().errors.csvInvalidNumber(problem.text);
    case Kind::missingColumns:
        return texts().errors.csvMissingColumns();
    }
    return {};
}

std::string describe(const DatapointCSV::ImportIssue& issue) {
    return texts().errors.importIssue(issue.line, describe(issue.problem));
}

namespace {
std::string problemOf(const JSONValue::Error& error) {
    using Kind = JSONValue::Error::Kind;
    const Texts::DocumentTexts& document = texts().document;
    switch (error.kind) {
    case Kind::notJSON:
        return document.notJSON();
    case Kind::expectedObject:
        return document.expectedObject();
    case Kind::expectedList:
        return document.expectedList();
    case Kind::expectedText:
        return document.expectedText();
    case Kind::expectedNumber:
        return document.expectedNumber();
    case Kind::expectedFiniteNumber:
        return document.expectedFiniteNumber();
    case Kind::expectedInteger:
        return document.expectedInteger(error.minimum, error.maximum);
    case Kind::expectedBoolean:
        return document.expectedBoolean();
    case Kind::expectedUUID:
        return document.expectedUUID();
    case Kind::missing:
        return document.missing();
    case Kind::unknownValue:
        return document.unknownValue(error.found, error.choices);
    case Kind::emptyList:
        return document.emptyList();
    }
    return {};
}
} // namespace

std::string describe(const JSONValue::Error& error) {
    const std::string problem = problemOf(error);
    return error.path.empty() ? problem : texts().document.problemAt(error.path, problem);
}

std::string projectUnreadable(std::string_view file, std::string_view detail) {
    return texts().errors.fileOpenFailed(file) + "\n" + std::string(detail);
}
} // namespace Errors

namespace Polls {
std::string intervalLabel(int ms) {
    return ms < 1000 ? concat(ms, " ms") : concat(ms / 1000, " s");
}
} // namespace Polls

namespace Chart {
std::string windowLabel(int seconds) {
    if (seconds == 0) {
        return texts().chart.windowAll();
    }
    return seconds >= 3600 ? concat(seconds / 3600, " h") : concat(seconds / 60, " min");
}
} // namespace Chart

namespace Log {
std::string failure(PollFailure failure, int timeoutMs) {
    const Texts::LogTexts::FailureTexts& phrases = texts().log.failure;
    switch (failure.kind) {
    case PollFailure::Kind::unexpectedUnit:
        return phrases.unexpectedUnit(failure.value);
    case PollFailure::Kind::unexpectedFunction:
        return phrases.unexpectedFunction(hexByte(failure.value));
    case PollFailure::Kind::exception:
        return Modbus::exceptionName(failure.value);
    case PollFailure::Kind::timeout:
        return phrases.timeout(timeoutMs);
    case PollFailure::Kind::crcMismatch:
        return phrases.crcMismatch();
    case PollFailure::Kind::malformed:
        return phrases.malformed();
    }
    return {};
}

std::string shortFailure(PollFailure failure) {
    const Texts::LogTexts::ShortFailureTexts& phrases = texts().log.shortFailure;
    switch (failure.kind) {
    case PollFailure::Kind::exception:
        return phrases.exception(hexByte(failure.value));
    case PollFailure::Kind::timeout:
        return phrases.timeout();
    case PollFailure::Kind::crcMismatch:
        return phrases.crcMismatch();
    case PollFailure::Kind::unexpectedUnit:
    case PollFailure::Kind::unexpectedFunction:
    case PollFailure::Kind::malformed:
        return phrases.invalid();
    }
    return {};
}

std::string unitFunction(int id, std::uint8_t function) {
    return texts().log.unitFunction(id, hexByte(function));
}
std::string range(RegisterTable table, int start, int count) {
    if (count == 1) {
        return concat(table.code(), " ", start);
    }
    return concat(table.code(), " ", start, "–", start + count - 1);
}
} // namespace Log

} // namespace kestrin::L10n
