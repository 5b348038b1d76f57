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

const Texts& now() {
    return texts(language());
}

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
    return str(now().header.port);
}
std::string noPortsFound() {
    return str(now().header.noPortsFound);
}
std::string choosePort() {
    return str(now().header.choosePort);
}
std::string portNotConnected(std::string_view port) {
    return now().header.portNotConnected(port);
}
std::string baudRate() {
    return str(now().header.baudRate);
}
std::string baudLabel(int baudRate) {
    return now().header.baudLabel(baudRate);
}
std::string start() {
    return str(now().header.start);
}
std::string stop() {
    return str(now().header.stop);
}
std::string frameSettingsHelp() {
    return str(now().header.frameSettingsHelp);
}
std::string startHelp() {
    return str(now().header.startHelp);
}
std::string stopHelp() {
    return str(now().header.stopHelp);
}
std::string lockedWhileRunning() {
    return str(now().header.lockedWhileRunning);
}
std::string demoDevice() {
    return str(now().header.demoDevice);
}
std::string startNeedsPort() {
    return str(now().header.startNeedsPort);
}
std::string startNeedsDatapoints() {
    return str(now().header.startNeedsDatapoints);
}
} // namespace Header

namespace Settings {
std::string frame() {
    return str(now().settings.frame);
}
std::string dataBits() {
    return str(now().settings.dataBits);
}
std::string parity() {
    return str(now().settings.parity);
}
std::string stopBits() {
    return str(now().settings.stopBits);
}
std::string parityNone() {
    return str(now().settings.parityNone);
}
std::string parityEven() {
    return str(now().settings.parityEven);
}
std::string parityOdd() {
    return str(now().settings.parityOdd);
}
std::string modbusDefault() {
    return str(now().settings.modbusDefault);
}
std::string standardNote() {
    return str(now().settings.standardNote);
}
std::string requests() {
    return str(now().settings.requests);
}
std::string responseTimeout() {
    return str(now().settings.responseTimeout);
}
std::string timeoutLabel(int timeoutMs) {
    return concat(timeoutMs, " ms");
}
std::string timeoutHelp() {
    return str(now().settings.timeoutHelp);
}
std::string combine() {
    return str(now().settings.combine);
}
std::string gapLabel(int gap) {
    return gap == 0 ? str(now().settings.adjacentOnly) : now().settings.gapsUpTo(gap);
}
std::string combineHelp() {
    return str(now().settings.combineHelp);
}
std::string writeMode() {
    return str(now().settings.writeMode);
}
std::string writeSingle() {
    return str(now().settings.writeSingle);
}
std::string writeMultiple() {
    return str(now().settings.writeMultiple);
}
std::string writeModeHelp() {
    return str(now().settings.writeModeHelp);
}
} // namespace Settings

namespace Footer {
std::string statistics(std::int64_t requests, std::int64_t responses, std::int64_t timeouts,
                       std::int64_t exceptions, std::int64_t errors) {
    return now().footer.statistics(requests, responses, timeouts, exceptions, errors);
}
std::string options() {
    return str(now().footer.options);
}
std::string optionsHelp() {
    return str(now().footer.optionsHelp);
}
std::string autoscroll() {
    return str(now().footer.autoscroll);
}
std::string timestamps() {
    return str(now().footer.timestamps);
}
std::string rawFrames() {
    return str(now().footer.rawFrames);
}
std::string rawFramesHelp() {
    return str(now().footer.rawFramesHelp);
}
std::string onlyProblems() {
    return str(now().footer.onlyProblems);
}
std::string onlyProblemsHelp() {
    return str(now().footer.onlyProblemsHelp);
}
std::string save() {
    return str(now().footer.save);
}
std::string saveHelp() {
    return str(now().footer.saveHelp);
}
std::string clear() {
    return str(now().footer.clear);
}
std::string clearHelp() {
    return str(now().footer.clearHelp);
}
std::string outputAccessibility() {
    return str(now().footer.outputAccessibility);
}
} // namespace Footer

namespace Menu {
std::string newProject() {
    return str(now().menu.newProject);
}
std::string openProject() {
    return str(now().menu.openProject);
}
std::string saveProject() {
    return str(now().menu.saveProject);
}
std::string importCSV() {
    return str(now().menu.importCSV);
}
std::string exportCSV() {
    return str(now().menu.exportCSV);
}
std::string saveLog() {
    return str(now().menu.saveLog);
}
std::string clearLog() {
    return str(now().menu.clearLog);
}
std::string file() {
    return str(now().menu.file);
}
std::string help() {
    return str(now().menu.help);
}
std::string poller() {
    return "Poller";
}
std::string quit() {
    return str(now().menu.quit);
}
std::string replaceProjectTitle() {
    return str(now().menu.replaceProjectTitle);
}
std::string replaceProjectMessage() {
    return str(now().menu.replaceProjectMessage);
}
std::string csvFiles() {
    return str(now().menu.csvFiles);
}
std::string datapointLists() {
    return str(now().menu.datapointLists);
}
std::string projectFiles() {
    return str(now().menu.projectFiles);
}
std::string textFiles() {
    return str(now().menu.textFiles);
}
std::string allFiles() {
    return str(now().menu.allFiles);
}
} // namespace Menu

namespace Table {
std::string name() {
    return str(now().table.name);
}
std::string unitID() {
    return str(now().table.unitID);
}
std::string table() {
    return str(now().table.table);
}
std::string address() {
    return str(now().table.address);
}
std::string dataType() {
    return str(now().table.dataType);
}
std::string wordOrder() {
    return str(now().table.wordOrder);
}
std::string scale() {
    return str(now().table.scale);
}
std::string value() {
    return str(now().table.value);
}
std::string unit() {
    return str(now().table.unit);
}
std::string format() {
    return str(now().table.format);
}
std::string description() {
    return str(now().table.description);
}
std::string status() {
    return str(now().table.status);
}
std::string add() {
    return str(now().table.add);
}
std::string addHelp() {
    return str(now().table.addHelp);
}
std::string duplicate() {
    return str(now().table.duplicate);
}
std::string deleteRows() {
    return str(now().table.deleteRows);
}
std::string csv() {
    return "CSV";
}
std::string csvHelp() {
    return str(now().table.csvHelp);
}
std::string unitIDHelp() {
    return str(now().table.unitIDHelp);
}
std::string addressHelp(std::string_view modicon) {
    return now().table.addressHelp(modicon);
}
std::string wordOrderHelp() {
    return str(now().table.wordOrderHelp);
}
std::string scaleHelp() {
    return str(now().table.scaleHelp);
}
std::string plotHelp() {
    return str(now().table.plotHelp);
}
std::string rawHelp(std::string_view raw) {
    return now().table.rawHelp(raw);
}
std::string overlapHelp() {
    return str(now().table.overlapHelp);
}
std::string emptyTitle() {
    return str(now().table.emptyTitle);
}
std::string emptyText() {
    return str(now().table.emptyText);
}
std::string newName(RegisterTable table, int address) {
    return concat(table.code(), " ", address);
}

std::string tableName(RegisterTable table) {
    const Texts::TableTexts::TableNames& names = now().table.tableNames;
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
        return str(now().table.formatNames.decimal);
    case DisplayFormat::hex:
        return "Hex";
    case DisplayFormat::binary:
        return str(now().table.formatNames.binary);
    }
    return {};
}

std::string waiting() {
    return str(now().table.waiting);
}
std::string ok(int ms) {
    return concat("OK · ", ms, " ms");
}
std::string updatedHelp(std::string_view time) {
    return now().table.updatedHelp(time);
}
std::string valueHelp() {
    return str(now().table.valueHelp);
}
std::string valueInvalid(DataType type) {
    return now().table.valueInvalid(dataTypeName(type));
}
std::string unitIDInvalid() {
    return str(now().table.unitIDInvalid);
}
std::string addressInvalid() {
    return str(now().table.addressInvalid);
}
std::string scaleInvalid() {
    return str(now().table.scaleInvalid);
}
} // namespace Table

namespace Import {
std::string title(int count) {
    return now().import.title(count);
}
std::string question() {
    return str(now().import.question);
}
std::string skipped(int count) {
    return now().import.skipped(count);
}
std::string add() {
    return str(now().import.add);
}
std::string replace() {
    return str(now().import.replace);
}
std::string cancel() {
    return str(now().import.cancel);
}
} // namespace Import

namespace Modbus {
std::string functionName(std::uint8_t code) {
    const Texts::ModbusTexts::FunctionNames& names = now().modbus.functionNames;
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
    const Texts::ModbusTexts::ExceptionNames& names = now().modbus.exceptionNames;
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
    return now().board.usbSerial(chip);
}
} // namespace Board

namespace Errors {
std::string alertTitle() {
    return str(now().errors.alertTitle);
}
std::string ok() {
    return "OK";
}
std::string selectPortFirst() {
    return str(now().errors.selectPortFirst);
}
std::string saveFailed(std::string_view reason) {
    return now().errors.saveFailed(reason);
}
std::string fileOpenFailed(std::string_view file) {
    return now().errors.fileOpenFailed(file);
}
std::string importNothing(std::string_view details) {
    return now().errors.importNothing(details);
}
std::string importIssue(int line, std::string_view problem) {
    return now().errors.importIssue(line, problem);
}
std::string csvMissingColumns() {
    return str(now().errors.csvMissingColumns);
}
std::string csvInvalidTable(std::string_view text) {
    return now().errors.csvInvalidTable(text);
}
std::string csvInvalidAddress(std::string_view text) {
    return now().errors.csvInvalidAddress(text);
}
std::string csvInvalidUnit(std::string_view text) {
    return now().errors.csvInvalidUnit(text);
}
std::string csvInvalidDataType(std::string_view text) {
    return now().errors.csvInvalidDataType(text);
}
std::string csvInvalidNumber(std::string_view text) {
    return now().errors.csvInvalidNumber(text);
}
std::string invalidPath(std::string_view path) {
    return now().errors.invalidPath(path);
}
std::string openFailed(std::string_view path, std::string_view reason) {
    return now().errors.openFailed(path, reason);
}
std::string openPermissionDenied() {
    return str(now().errors.openPermissionDenied);
}
std::string busy(std::string_view path) {
    return now().errors.busy(path);
}
std::string configurationFailed(std::string_view reason) {
    return now().errors.configurationFailed(reason);
}
std::string unsupportedBaud(int baudRate) {
    return now().errors.unsupportedBaud(baudRate);
}
std::string notOpen() {
    return str(now().errors.notOpen);
}
std::string writeFailed(std::string_view reason) {
    return now().errors.writeFailed(reason);
}
std::string timeout() {
    return str(now().errors.timeout);
}
std::string deviceDisconnected() {
    return str(now().errors.deviceDisconnected);
}
std::string demoFailed(std::string_view reason) {
    return now().errors.demoFailed(reason);
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
    return now().document.problemAt(path, problem);
}
std::string notJSON() {
    return str(now().document.notJSON);
}
std::string expectedObject() {
    return str(now().document.expectedObject);
}
std::string expectedList() {
    return str(now().document.expectedList);
}
std::string expectedText() {
    return str(now().document.expectedText);
}
std::string expectedNumber() {
    return str(now().document.expectedNumber);
}
std::string expectedFiniteNumber() {
    return str(now().document.expectedFiniteNumber);
}
std::string expectedInteger(std::int64_t minimum, std::int64_t maximum) {
    return now().document.expectedInteger(minimum, maximum);
}
std::string expectedBoolean() {
    return str(now().document.expectedBoolean);
}
std::string expectedUUID() {
    return str(now().document.expectedUUID);
}
std::string missing() {
    return str(now().document.missing);
}
std::string unknownValue(std::string_view found, std::string_view choices) {
    return now().document.unknownValue(found, choices);
}
std::string emptyList() {
    return str(now().document.emptyList);
}
} // namespace Document

namespace Help {
std::string windowTitle() {
    return str(now().help.windowTitle);
}
std::string searchPrompt() {
    return str(now().help.searchPrompt);
}
std::string noResults() {
    return str(now().help.noResults);
}
std::string tipLabel() {
    return str(now().help.tipLabel);
}
} // namespace Help

namespace State {
std::string running() {
    return str(now().state.running);
}
std::string stopped() {
    return str(now().state.stopped);
}
std::string serialLost() {
    return str(now().state.serialLost);
}
} // namespace State

namespace Notice {
std::string emptyTitle() {
    return str(now().notice.emptyTitle);
}
std::string emptySteps() {
    return str(now().notice.emptySteps);
}
std::string emptyNoDevice() {
    return str(now().notice.emptyNoDevice);
}
std::string emptyNoDeviceSteps() {
    return str(now().notice.emptyNoDeviceSteps);
}
std::string startPolling() {
    return str(now().notice.startPolling);
}
std::string noResponse() {
    return str(now().notice.noResponse);
}
std::string serialLost() {
    return str(now().notice.serialLost);
}
std::string dismiss() {
    return str(now().notice.dismiss);
}
std::string writeFailed(std::string_view name, std::string_view reason) {
    return now().notice.writeFailed(name, reason);
}
std::string startFirst() {
    return str(now().notice.startFirst);
}
} // namespace Notice

namespace Polls {
std::string add() {
    return str(now().polls.add);
}
std::string addHelp() {
    return str(now().polls.addHelp);
}
std::string namePlaceholder() {
    return str(now().polls.namePlaceholder);
}
std::string interval() {
    return str(now().polls.interval);
}
std::string intervalLabel(int ms) {
    return ms < 1000 ? concat(ms, " ms") : concat(ms / 1000, " s");
}
std::string intervalHelp() {
    return str(now().polls.intervalHelp);
}
std::string active() {
    return str(now().polls.active);
}
std::string activeHelp() {
    return str(now().polls.activeHelp);
}
std::string removeTitle() {
    return str(now().polls.removeTitle);
}
std::string remove() {
    return str(now().polls.remove);
}
std::string removeMessage() {
    return str(now().polls.removeMessage);
}
std::string unnamed() {
    return str(now().polls.unnamed);
}
std::string duplicate() {
    return str(now().polls.duplicate);
}
std::string tabHelp() {
    return str(now().polls.tabHelp);
}
std::string newName(int number) {
    return now().polls.newName(number);
}
std::string copyName(std::string_view name) {
    return now().polls.copyName(name);
}
std::string removeQuestion(std::string_view name) {
    return now().polls.removeQuestion(name);
}
} // namespace Polls

namespace Write {
std::string help() {
    return str(now().write.help);
}
std::string title(std::string_view name) {
    return now().write.title(name);
}
std::string off() {
    return str(now().write.off);
}
std::string on() {
    return str(now().write.on);
}
std::string placeholder() {
    return str(now().write.placeholder);
}
std::string button() {
    return str(now().write.button);
}
} // namespace Write

namespace Pane {
std::string title() {
    return str(now().pane.title);
}
std::string log() {
    return str(now().pane.log);
}
std::string chart() {
    return str(now().pane.chart);
}
std::string clearHistory() {
    return str(now().pane.clearHistory);
}
std::string clearHistoryHelp() {
    return str(now().pane.clearHistoryHelp);
}
std::string exportHistory() {
    return str(now().pane.exportHistory);
}
std::string exportHistoryHelp() {
    return str(now().pane.exportHistoryHelp);
}
std::string findPlaceholder() {
    return str(now().pane.findPlaceholder);
}
std::string findNext() {
    return str(now().pane.findNext);
}
std::string findPrevious() {
    return str(now().pane.findPrevious);
}
std::string findDone() {
    return str(now().pane.findDone);
}
} // namespace Pane

namespace Chart {
std::string emptyTitle() {
    return str(now().chart.emptyTitle);
}
std::string emptyText() {
    return str(now().chart.emptyText);
}
std::string time() {
    return str(now().chart.time);
}
std::string window() {
    return str(now().chart.window);
}
std::string windowLabel(int seconds) {
    if (seconds == 0) {
        return str(now().chart.windowAll);
    }
    return seconds >= 3600 ? concat(seconds / 3600, " h") : concat(seconds / 60, " min");
}
std::string windowHelp() {
    return str(now().chart.windowHelp);
}
} // namespace Chart

namespace Log {
std::string failure(PollFailure failure, int timeoutMs) {
    const Texts::LogTexts::FailureTexts& phrases = now().log.failure;
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
    const Texts::LogTexts::ShortFailureTexts& phrases = now().log.shortFailure;
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
    return now().log.started(port, serial);
}
std::string stopped() {
    return str(now().log.stopped);
}
std::string unit(int id) {
    return now().log.unit(id);
}
std::string unitFunction(int id, std::uint8_t function) {
    return now().log.unitFunction(id, hexByte(function));
}
std::string range(RegisterTable table, int start, int count) {
    if (count == 1) {
        return concat(table.code(), " ", start);
    }
    return concat(table.code(), " ", start, "–", start + count - 1);
}
std::string writeFailed(std::string_view name) {
    return now().log.writeFailed(name);
}
std::string serialLost(std::string_view path) {
    return now().log.serialLost(path);
}
std::string serialRestored() {
    return str(now().log.serialRestored);
}
std::string lateAnswer() {
    return str(now().log.lateAnswer);
}
} // namespace Log

namespace Example {
std::string pollName() {
    return str(now().example.pollName);
}
std::string temperature() {
    return str(now().example.temperature);
}
std::string pressure() {
    return str(now().example.pressure);
}
std::string runtime() {
    return str(now().example.runtime);
}
std::string setpoint() {
    return str(now().example.setpoint);
}
std::string mode() {
    return str(now().example.mode);
}
std::string pump() {
    return str(now().example.pump);
}
std::string alarm() {
    return str(now().example.alarm);
}
} // namespace Example

} // namespace kestrin::L10n
