#include "L10n.h"

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

std::string str(Literal literal) {
    return std::string(literal.value);
}

// Function and exception codes always read as two upper-case hexadecimal digits: "0B".
std::string hexByte(std::uint8_t byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    return {digits[byte >> 4], digits[byte & 0x0F]};
}
} // namespace

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

namespace Header {
std::string port() {
    return str(texts().header.port);
}
std::string noPortsFound() {
    return str(texts().header.noPortsFound);
}
std::string choosePort() {
    return str(texts().header.choosePort);
}
std::string portNotConnected(std::string_view port) {
    return texts().header.portNotConnected(port);
}
std::string baudRate() {
    return str(texts().header.baudRate);
}
std::string baudLabel(int baudRate) {
    return texts().header.baudLabel(baudRate);
}
std::string start() {
    return str(texts().header.start);
}
std::string stop() {
    return str(texts().header.stop);
}
std::string frameSettingsHelp() {
    return str(texts().header.frameSettingsHelp);
}
std::string startHelp() {
    return str(texts().header.startHelp);
}
std::string stopHelp() {
    return str(texts().header.stopHelp);
}
std::string lockedWhileRunning() {
    return str(texts().header.lockedWhileRunning);
}
std::string demoDevice() {
    return str(texts().header.demoDevice);
}
std::string startNeedsPort() {
    return str(texts().header.startNeedsPort);
}
std::string startNeedsDatapoints() {
    return str(texts().header.startNeedsDatapoints);
}
} // namespace Header

namespace Settings {
std::string frame() {
    return str(texts().settings.frame);
}
std::string dataBits() {
    return str(texts().settings.dataBits);
}
std::string parity() {
    return str(texts().settings.parity);
}
std::string stopBits() {
    return str(texts().settings.stopBits);
}
std::string parityNone() {
    return str(texts().settings.parityNone);
}
std::string parityEven() {
    return str(texts().settings.parityEven);
}
std::string parityOdd() {
    return str(texts().settings.parityOdd);
}
std::string modbusDefault() {
    return str(texts().settings.modbusDefault);
}
std::string standardNote() {
    return str(texts().settings.standardNote);
}
std::string requests() {
    return str(texts().settings.requests);
}
std::string responseTimeout() {
    return str(texts().settings.responseTimeout);
}
std::string timeoutLabel(int timeoutMs) {
    return concat(timeoutMs, " ms");
}
std::string timeoutHelp() {
    return str(texts().settings.timeoutHelp);
}
std::string combine() {
    return str(texts().settings.combine);
}
std::string gapLabel(int gap) {
    return gap == 0 ? str(texts().settings.adjacentOnly) : texts().settings.gapsUpTo(gap);
}
std::string combineHelp() {
    return str(texts().settings.combineHelp);
}
std::string writeMode() {
    return str(texts().settings.writeMode);
}
std::string writeSingle() {
    return str(texts().settings.writeSingle);
}
std::string writeMultiple() {
    return str(texts().settings.writeMultiple);
}
std::string writeModeHelp() {
    return str(texts().settings.writeModeHelp);
}
} // namespace Settings

namespace Footer {
std::string statistics(std::int64_t requests, std::int64_t responses, std::int64_t timeouts,
                       std::int64_t exceptions, std::int64_t errors) {
    return texts().footer.statistics(requests, responses, timeouts, exceptions, errors);
}
std::string options() {
    return str(texts().footer.options);
}
std::string optionsHelp() {
    return str(texts().footer.optionsHelp);
}
std::string autoscroll() {
    return str(texts().footer.autoscroll);
}
std::string timestamps() {
    return str(texts().footer.timestamps);
}
std::string rawFrames() {
    return str(texts().footer.rawFrames);
}
std::string rawFramesHelp() {
    return str(texts().footer.rawFramesHelp);
}
std::string onlyProblems() {
    return str(texts().footer.onlyProblems);
}
std::string onlyProblemsHelp() {
    return str(texts().footer.onlyProblemsHelp);
}
std::string save() {
    return str(texts().footer.save);
}
std::string saveHelp() {
    return str(texts().footer.saveHelp);
}
std::string clear() {
    return str(texts().footer.clear);
}
std::string clearHelp() {
    return str(texts().footer.clearHelp);
}
std::string outputAccessibility() {
    return str(texts().footer.outputAccessibility);
}
} // namespace Footer

namespace Menu {
std::string newProject() {
    return str(texts().menu.newProject);
}
std::string openProject() {
    return str(texts().menu.openProject);
}
std::string saveProject() {
    return str(texts().menu.saveProject);
}
std::string importCSV() {
    return str(texts().menu.importCSV);
}
std::string exportCSV() {
    return str(texts().menu.exportCSV);
}
std::string saveLog() {
    return str(texts().menu.saveLog);
}
std::string clearLog() {
    return str(texts().menu.clearLog);
}
std::string file() {
    return str(texts().menu.file);
}
std::string help() {
    return str(texts().menu.help);
}
std::string poller() {
    return "Poller";
}
std::string quit() {
    return str(texts().menu.quit);
}
std::string replaceProjectTitle() {
    return str(texts().menu.replaceProjectTitle);
}
std::string replaceProjectMessage() {
    return str(texts().menu.replaceProjectMessage);
}
std::string csvFiles() {
    return str(texts().menu.csvFiles);
}
std::string datapointLists() {
    return str(texts().menu.datapointLists);
}
std::string projectFiles() {
    return str(texts().menu.projectFiles);
}
std::string textFiles() {
    return str(texts().menu.textFiles);
}
std::string allFiles() {
    return str(texts().menu.allFiles);
}
} // namespace Menu

namespace Table {
std::string name() {
    return str(texts().table.name);
}
std::string unitID() {
    return str(texts().table.unitID);
}
std::string table() {
    return str(texts().table.table);
}
std::string address() {
    return str(texts().table.address);
}
std::string dataType() {
    return str(texts().table.dataType);
}
std::string wordOrder() {
    return str(texts().table.wordOrder);
}
std::string scale() {
    return str(texts().table.scale);
}
std::string value() {
    return str(texts().table.value);
}
std::string unit() {
    return str(texts().table.unit);
}
std::string format() {
    return str(texts().table.format);
}
std::string description() {
    return str(texts().table.description);
}
std::string status() {
    return str(texts().table.status);
}
std::string add() {
    return str(texts().table.add);
}
std::string addHelp() {
    return str(texts().table.addHelp);
}
std::string duplicate() {
    return str(texts().table.duplicate);
}
std::string deleteRows() {
    return str(texts().table.deleteRows);
}
std::string csv() {
    return "CSV";
}
std::string csvHelp() {
    return str(texts().table.csvHelp);
}
std::string unitIDHelp() {
    return str(texts().table.unitIDHelp);
}
std::string addressHelp(std::string_view modicon) {
    return texts().table.addressHelp(modicon);
}
std::string wordOrderHelp() {
    return str(texts().table.wordOrderHelp);
}
std::string scaleHelp() {
    return str(texts().table.scaleHelp);
}
std::string plotHelp() {
    return str(texts().table.plotHelp);
}
std::string rawHelp(std::string_view raw) {
    return texts().table.rawHelp(raw);
}
std::string overlapHelp() {
    return str(texts().table.overlapHelp);
}
std::string emptyTitle() {
    return str(texts().table.emptyTitle);
}
std::string emptyText() {
    return str(texts().table.emptyText);
}
std::string newName(RegisterTable table, int address) {
    return concat(table.code(), " ", address);
}

std::string tableName(RegisterTable table) {
    const Texts::TableTexts::TableNames& names = texts().table.tableNames;
    switch (table) {
    case RegisterTable::coil:
        return str(names.coil);
    case RegisterTable::discreteInput:
        return str(names.discreteInput);
    case RegisterTable::holdingRegister:
        return str(names.holdingRegister);
    case RegisterTable::inputRegister:
        return str(names.inputRegister);
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
        return str(texts().table.formatNames.decimal);
    case DisplayFormat::hex:
        return "Hex";
    case DisplayFormat::binary:
        return str(texts().table.formatNames.binary);
    }
    return {};
}

std::string waiting() {
    return str(texts().table.waiting);
}
std::string ok(int ms) {
    return concat("OK · ", ms, " ms");
}
std::string updatedHelp(std::string_view time) {
    return texts().table.updatedHelp(time);
}
std::string valueHelp() {
    return str(texts().table.valueHelp);
}
std::string valueInvalid(DataType type) {
    return texts().table.valueInvalid(dataTypeName(type));
}
std::string unitIDInvalid() {
    return str(texts().table.unitIDInvalid);
}
std::string addressInvalid() {
    return str(texts().table.addressInvalid);
}
std::string scaleInvalid() {
    return str(texts().table.scaleInvalid);
}
} // namespace Table

namespace Import {
std::string title(int count) {
    return texts().import.title(count);
}
std::string question() {
    return str(texts().import.question);
}
std::string skipped(int count) {
    return texts().import.skipped(count);
}
std::string add() {
    return str(texts().import.add);
}
std::string replace() {
    return str(texts().import.replace);
}
std::string cancel() {
    return str(texts().import.cancel);
}
} // namespace Import

namespace Modbus {
std::string functionName(std::uint8_t code) {
    const Texts::ModbusTexts::FunctionNames& names = texts().modbus.functionNames;
    switch (code) {
    case 1:
        return str(names.readCoils);
    case 2:
        return str(names.readDiscreteInputs);
    case 3:
        return str(names.readHoldingRegisters);
    case 4:
        return str(names.readInputRegisters);
    case 5:
        return str(names.writeSingleCoil);
    case 6:
        return str(names.writeSingleRegister);
    case 8:
        return str(names.diagnostics);
    case 15:
        return str(names.writeMultipleCoils);
    case 16:
        return str(names.writeMultipleRegisters);
    case 22:
        return str(names.maskWriteRegister);
    case 23:
        return str(names.readWriteMultipleRegisters);
    case 43:
        return str(names.deviceIdentification);
    default:
        return str(names.other);
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

namespace Board {
std::string usbSerial(std::string_view chip) {
    return texts().board.usbSerial(chip);
}
} // namespace Board

namespace Errors {
std::string alertTitle() {
    return str(texts().errors.alertTitle);
}
std::string ok() {
    return "OK";
}
std::string selectPortFirst() {
    return str(texts().errors.selectPortFirst);
}
std::string saveFailed(std::string_view reason) {
    return texts().errors.saveFailed(reason);
}
std::string fileOpenFailed(std::string_view file) {
    return texts().errors.fileOpenFailed(file);
}
std::string importNothing(std::string_view details) {
    return texts().errors.importNothing(details);
}
std::string importIssue(int line, std::string_view problem) {
    return texts().errors.importIssue(line, problem);
}
std::string csvMissingColumns() {
    return str(texts().errors.csvMissingColumns);
}
std::string csvInvalidTable(std::string_view text) {
    return texts().errors.csvInvalidTable(text);
}
std::string csvInvalidAddress(std::string_view text) {
    return texts().errors.csvInvalidAddress(text);
}
std::string csvInvalidUnit(std::string_view text) {
    return texts().errors.csvInvalidUnit(text);
}
std::string csvInvalidDataType(std::string_view text) {
    return texts().errors.csvInvalidDataType(text);
}
std::string csvInvalidNumber(std::string_view text) {
    return texts().errors.csvInvalidNumber(text);
}
std::string invalidPath(std::string_view path) {
    return texts().errors.invalidPath(path);
}
std::string openFailed(std::string_view path, std::string_view reason) {
    return texts().errors.openFailed(path, reason);
}
std::string openPermissionDenied() {
    return str(texts().errors.openPermissionDenied);
}
std::string busy(std::string_view path) {
    return texts().errors.busy(path);
}
std::string configurationFailed(std::string_view reason) {
    return texts().errors.configurationFailed(reason);
}
std::string unsupportedBaud(int baudRate) {
    return texts().errors.unsupportedBaud(baudRate);
}
std::string notOpen() {
    return str(texts().errors.notOpen);
}
std::string writeFailed(std::string_view reason) {
    return texts().errors.writeFailed(reason);
}
std::string timeout() {
    return str(texts().errors.timeout);
}
std::string deviceDisconnected() {
    return str(texts().errors.deviceDisconnected);
}
std::string demoFailed(std::string_view reason) {
    return texts().errors.demoFailed(reason);
}

std::string systemMessage(int code) {
    // strerrordesc_np is glibc's untranslated table; strerror would follow LC_MESSAGES.
    if (const char* message = strerrordesc_np(code)) {
        return message;
    }
    return concat("Unknown error ", code);
}

std::string describe(const SerialLinkError& error) {
    return std::visit(Overloaded{
                          [](const SerialLinkError::InvalidPath& e) { return invalidPath(e.path); },
                          [](const SerialLinkError::OpenFailed& e) {
                              std::string sentence = openFailed(e.path, systemMessage(e.code));
                              if (e.code == EACCES) {
                                  sentence += " " + openPermissionDenied();
                              }
                              return sentence;
                          },
                          [](const SerialLinkError::Busy& e) { return busy(e.path); },
                          [](const SerialLinkError::ConfigurationFailed& e) {
                              return configurationFailed(systemMessage(e.code));
                          },
                          [](const SerialLinkError::UnsupportedBaudRate& e) {
                              return unsupportedBaud(e.baudRate);
                          },
                          [](const SerialLinkError::WriteFailed& e) {
                              return writeFailed(systemMessage(e.code));
                          },
                          [](const SerialLinkError::NotOpen&) { return notOpen(); },
                          [](const SerialLinkError::Timeout&) { return timeout(); },
                          [](const SerialLinkError::Disconnected&) { return deviceDisconnected(); },
                          // Only a stop cancels, and a stop is logged as such.
                          [](const SerialLinkError::Cancelled&) { return Log::stopped(); },
                      },
                      error.value);
}

std::string describe(const DatapointCSV::Problem& problem) {
    using Kind = DatapointCSV::Problem::Kind;
    switch (problem.kind) {
    case Kind::invalidTable:
        return csvInvalidTable(problem.text);
    case Kind::invalidAddress:
        return csvInvalidAddress(problem.text);
    case Kind::invalidUnit:
        return csvInvalidUnit(problem.text);
    case Kind::invalidDataType:
        return csvInvalidDataType(problem.text);
    case Kind::invalidNumber:
        return csvInvalidNumber(problem.text);
    case Kind::missingColumns:
        return csvMissingColumns();
    }
    return {};
}

std::string describe(const DatapointCSV::ImportIssue& issue) {
    return importIssue(issue.line, describe(issue.problem));
}

namespace {
std::string problemOf(const JSONValue::Error& error) {
    using Kind = JSONValue::Error::Kind;
    switch (error.kind) {
    case Kind::notJSON:
        return Document::notJSON();
    case Kind::expectedObject:
        return Document::expectedObject();
    case Kind::expectedList:
        return Document::expectedList();
    case Kind::expectedText:
        return Document::expectedText();
    case Kind::expectedNumber:
        return Document::expectedNumber();
    case Kind::expectedFiniteNumber:
        return Document::expectedFiniteNumber();
    case Kind::expectedInteger:
        return Document::expectedInteger(error.minimum, error.maximum);
    case Kind::expectedBoolean:
        return Document::expectedBoolean();
    case Kind::expectedUUID:
        return Document::expectedUUID();
    case Kind::missing:
        return Document::missing();
    case Kind::unknownValue:
        return Document::unknownValue(error.found, error.choices);
    case Kind::emptyList:
        return Document::emptyList();
    }
    return {};
}
} // namespace

std::string describe(const JSONValue::Error& error) {
    const std::string problem = problemOf(error);
    return error.path.empty() ? problem : Document::problemAt(error.path, problem);
}

std::string projectUnreadable(std::string_view file, std::string_view detail) {
    return fileOpenFailed(file) + "\n" + std::string(detail);
}
} // namespace Errors

namespace Document {
std::string problemAt(std::string_view path, std::string_view problem) {
    return texts().document.problemAt(path, problem);
}
std::string notJSON() {
    return str(texts().document.notJSON);
}
std::string expectedObject() {
    return str(texts().document.expectedObject);
}
std::string expectedList() {
    return str(texts().document.expectedList);
}
std::string expectedText() {
    return str(texts().document.expectedText);
}
std::string expectedNumber() {
    return str(texts().document.expectedNumber);
}
std::string expectedFiniteNumber() {
    return str(texts().document.expectedFiniteNumber);
}
std::string expectedInteger(std::int64_t minimum, std::int64_t maximum) {
    return texts().document.expectedInteger(minimum, maximum);
}
std::string expectedBoolean() {
    return str(texts().document.expectedBoolean);
}
std::string expectedUUID() {
    return str(texts().document.expectedUUID);
}
std::string missing() {
    return str(texts().document.missing);
}
std::string unknownValue(std::string_view found, std::string_view choices) {
    return texts().document.unknownValue(found, choices);
}
std::string emptyList() {
    return str(texts().document.emptyList);
}
} // namespace Document

namespace Help {
std::string windowTitle() {
    return str(texts().help.windowTitle);
}
std::string searchPrompt() {
    return str(texts().help.searchPrompt);
}
std::string noResults() {
    return str(texts().help.noResults);
}
std::string tipLabel() {
    return str(texts().help.tipLabel);
}
} // namespace Help

namespace State {
std::string running() {
    return str(texts().state.running);
}
std::string stopped() {
    return str(texts().state.stopped);
}
std::string serialLost() {
    return str(texts().state.serialLost);
}
} // namespace State

namespace Notice {
std::string emptyTitle() {
    return str(texts().notice.emptyTitle);
}
std::string emptySteps() {
    return str(texts().notice.emptySteps);
}
std::string emptyNoDevice() {
    return str(texts().notice.emptyNoDevice);
}
std::string emptyNoDeviceSteps() {
    return str(texts().notice.emptyNoDeviceSteps);
}
std::string startPolling() {
    return str(texts().notice.startPolling);
}
std::string noResponse() {
    return str(texts().notice.noResponse);
}
std::string serialLost() {
    return str(texts().notice.serialLost);
}
std::string dismiss() {
    return str(texts().notice.dismiss);
}
std::string writeFailed(std::string_view name, std::string_view reason) {
    return texts().notice.writeFailed(name, reason);
}
std::string startFirst() {
    return str(texts().notice.startFirst);
}
} // namespace Notice

namespace Polls {
std::string add() {
    return str(texts().polls.add);
}
std::string addHelp() {
    return str(texts().polls.addHelp);
}
std::string namePlaceholder() {
    return str(texts().polls.namePlaceholder);
}
std::string interval() {
    return str(texts().polls.interval);
}
std::string intervalLabel(int ms) {
    return ms < 1000 ? concat(ms, " ms") : concat(ms / 1000, " s");
}
std::string intervalHelp() {
    return str(texts().polls.intervalHelp);
}
std::string active() {
    return str(texts().polls.active);
}
std::string activeHelp() {
    return str(texts().polls.activeHelp);
}
std::string removeTitle() {
    return str(texts().polls.removeTitle);
}
std::string remove() {
    return str(texts().polls.remove);
}
std::string removeMessage() {
    return str(texts().polls.removeMessage);
}
std::string unnamed() {
    return str(texts().polls.unnamed);
}
std::string duplicate() {
    return str(texts().polls.duplicate);
}
std::string tabHelp() {
    return str(texts().polls.tabHelp);
}
std::string newName(int number) {
    return texts().polls.newName(number);
}
std::string copyName(std::string_view name) {
    return texts().polls.copyName(name);
}
std::string removeQuestion(std::string_view name) {
    return texts().polls.removeQuestion(name);
}
} // namespace Polls

namespace Write {
std::string help() {
    return str(texts().write.help);
}
std::string title(std::string_view name) {
    return texts().write.title(name);
}
std::string off() {
    return str(texts().write.off);
}
std::string on() {
    return str(texts().write.on);
}
std::string placeholder() {
    return str(texts().write.placeholder);
}
std::string button() {
    return str(texts().write.button);
}
} // namespace Write

namespace Pane {
std::string title() {
    return str(texts().pane.title);
}
std::string log() {
    return str(texts().pane.log);
}
std::string chart() {
    return str(texts().pane.chart);
}
std::string clearHistory() {
    return str(texts().pane.clearHistory);
}
std::string clearHistoryHelp() {
    return str(texts().pane.clearHistoryHelp);
}
std::string exportHistory() {
    return str(texts().pane.exportHistory);
}
std::string exportHistoryHelp() {
    return str(texts().pane.exportHistoryHelp);
}
std::string findPlaceholder() {
    return str(texts().pane.findPlaceholder);
}
std::string findNext() {
    return str(texts().pane.findNext);
}
std::string findPrevious() {
    return str(texts().pane.findPrevious);
}
std::string findDone() {
    return str(texts().pane.findDone);
}
} // namespace Pane

namespace Chart {
std::string emptyTitle() {
    return str(texts().chart.emptyTitle);
}
std::string emptyText() {
    return str(texts().chart.emptyText);
}
std::string time() {
    return str(texts().chart.time);
}
std::string window() {
    return str(texts().chart.window);
}
std::string windowLabel(int seconds) {
    if (seconds == 0) {
        return str(texts().chart.windowAll);
    }
    return seconds >= 3600 ? concat(seconds / 3600, " h") : concat(seconds / 60, " min");
}
std::string windowHelp() {
    return str(texts().chart.windowHelp);
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
        return str(phrases.crcMismatch);
    case PollFailure::Kind::malformed:
        return str(phrases.malformed);
    }
    return {};
}

std::string shortFailure(PollFailure failure) {
    const Texts::LogTexts::ShortFailureTexts& phrases = texts().log.shortFailure;
    switch (failure.kind) {
    case PollFailure::Kind::exception:
        return phrases.exception(hexByte(failure.value));
    case PollFailure::Kind::timeout:
        return str(phrases.timeout);
    case PollFailure::Kind::crcMismatch:
        return str(phrases.crcMismatch);
    case PollFailure::Kind::unexpectedUnit:
    case PollFailure::Kind::unexpectedFunction:
    case PollFailure::Kind::malformed:
        return str(phrases.invalid);
    }
    return {};
}

std::string started(std::string_view port, std::string_view serial) {
    return texts().log.started(port, serial);
}
std::string stopped() {
    return str(texts().log.stopped);
}
std::string unit(int id) {
    return texts().log.unit(id);
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
std::string writeFailed(std::string_view name) {
    return texts().log.writeFailed(name);
}
std::string serialLost(std::string_view path) {
    return texts().log.serialLost(path);
}
std::string serialRestored() {
    return str(texts().log.serialRestored);
}
std::string lateAnswer() {
    return str(texts().log.lateAnswer);
}
} // namespace Log

namespace Example {
std::string pollName() {
    return str(texts().example.pollName);
}
std::string temperature() {
    return str(texts().example.temperature);
}
std::string pressure() {
    return str(texts().example.pressure);
}
std::string runtime() {
    return str(texts().example.runtime);
}
std::string setpoint() {
    return str(texts().example.setpoint);
}
std::string mode() {
    return str(texts().example.mode);
}
std::string pump() {
    return str(texts().example.pump);
}
std::string alarm() {
    return str(texts().example.alarm);
}
} // namespace Example

} // namespace kestrin::L10n
