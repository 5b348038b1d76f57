#pragma once

#include "DataType.h"
#include "DatapointCSV.h"
#include "DisplayFormat.h"
#include "JSONValue.h"
#include "Language.h"
#include "PollFailure.h"
#include "RegisterTable.h"
#include "SerialLinkError.h"
#include "Texts.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace kestrin::L10n {

// Every text the user sees, in the current language (Language::current()), as UTF-8. Texts with
// values take them as arguments and put them where the language's word order wants them. Safe to
// call from any thread.

// The language of the texts on this thread: Language::current() unless a test chose another.
Language language();

// Runs body with the texts of this thread in the given language, then restores the previous
// one. Only for tests, which check every language in one process; the program's language is
// fixed at its first text.
void withLanguageForTesting(Language language, const std::function<void()>& body);

// The product name, the same in every language.
std::string appName();

namespace Header {
std::string port();
std::string noPortsFound();
std::string choosePort();
std::string portNotConnected(std::string_view port);
std::string baudRate();
// An entry of the baud-rate picker: "9600 baud".
std::string baudLabel(int baudRate);
std::string start();
std::string stop();
std::string frameSettingsHelp();
std::string startHelp();
std::string stopHelp();
std::string lockedWhileRunning();
// The name of the simulated device that the application starts for a demonstration.
std::string demoDevice();
// Why Start is off, shown beside it: no port is present or chosen; no active poll has datapoints.
std::string startNeedsPort();
std::string startNeedsDatapoints();
} // namespace Header

namespace Settings {
std::string frame();
std::string dataBits();
std::string parity();
std::string stopBits();
std::string parityNone();
std::string parityEven();
std::string parityOdd();
std::string modbusDefault();
std::string standardNote();
std::string requests();
std::string responseTimeout();
// An entry of the time-out picker: "500 ms".
std::string timeoutLabel(int timeoutMs);
std::string timeoutHelp();
std::string combine();
// "Adjacent only" for 0, otherwise "Gaps up to 8 addresses".
std::string gapLabel(int gap);
std::string combineHelp();
std::string writeMode();
std::string writeSingle();
std::string writeMultiple();
std::string writeModeHelp();
} // namespace Settings

namespace Footer {
std::string statistics(std::int64_t requests, std::int64_t responses, std::int64_t timeouts,
                       std::int64_t exceptions, std::int64_t errors);
std::string options();
std::string optionsHelp();
std::string autoscroll();
std::string timestamps();
std::string rawFrames();
std::string rawFramesHelp();
std::string onlyProblems();
std::string onlyProblemsHelp();
std::string save();
std::string saveHelp();
std::string clear();
std::string clearHelp();
std::string outputAccessibility();
} // namespace Footer

namespace Menu {
std::string newProject();
std::string openProject();
std::string saveProject();
std::string importCSV();
std::string exportCSV();
std::string saveLog();
std::string clearLog();
// Titles of the File and Help menus.
std::string file();
std::string help();
// The title of the program's own menu, the same in every language.
std::string poller();
std::string quit();
std::string replaceProjectTitle();
std::string replaceProjectMessage();
// The names of the file dialogs' filters, without their patterns.
std::string csvFiles();
std::string datapointLists();
std::string projectFiles();
std::string textFiles();
std::string allFiles();
} // namespace Menu

namespace Table {
std::string name();
std::string unitID();
std::string table();
std::string address();
std::string dataType();
std::string wordOrder();
std::string scale();
std::string value();
std::string unit();
std::string format();
std::string description();
std::string status();
std::string add();
std::string addHelp();
std::string duplicate();
// The delete button ("delete" itself is a C++ keyword).
std::string deleteRows();
std::string csv();
std::string csvHelp();
std::string unitIDHelp();
std::string addressHelp(std::string_view modicon);
std::string wordOrderHelp();
std::string scaleHelp();
std::string plotHelp();
std::string rawHelp(std::string_view raw);
// The tooltip of the overlap mark beside an address.
std::string overlapHelp();
std::string emptyTitle();
std::string emptyText();
// The name of a new datapoint, "HR 100", the same in every language.
std::string newName(RegisterTable table, int address);
std::string tableName(RegisterTable table);
std::string dataTypeName(DataType type);
std::string formatName(DisplayFormat format);
std::string waiting();
// "OK · 24 ms", the same in every language.
std::string ok(int ms);
std::string updatedHelp(std::string_view time);
std::string valueHelp();
std::string valueInvalid(DataType type);
std::string unitIDInvalid();
std::string addressInvalid();
std::string scaleInvalid();
} // namespace Table

namespace Import {
// "1 datapoint found", "3 datapoints found".
std::string title(int count);
std::string question();
std::string skipped(int count);
std::string add();
std::string replace();
std::string cancel();
} // namespace Import

namespace Modbus {
// Keyed by the code byte, so that codes outside FunctionCode (43) are named too.
std::string functionName(std::uint8_t code);
// "Illegal data address (02)"; codes outside the standard table read "Exception (07)".
std::string exceptionName(std::uint8_t code);
} // namespace Modbus

namespace Board {
std::string usbSerial(std::string_view chip);
} // namespace Board

namespace Errors {
std::string alertTitle();
std::string ok();
std::string selectPortFirst();
std::string saveFailed(std::string_view reason);
std::string fileOpenFailed(std::string_view file);
std::string importNothing(std::string_view details);
std::string importIssue(int line, std::string_view problem);
std::string csvMissingColumns();
std::string csvInvalidTable(std::string_view text);
std::string csvInvalidAddress(std::string_view text);
std::string csvInvalidUnit(std::string_view text);
std::string csvInvalidDataType(std::string_view text);
std::string csvInvalidNumber(std::string_view text);
std::string invalidPath(std::string_view path);
std::string openFailed(std::string_view path, std::string_view reason);
// Added to openFailed when the device refuses access (EACCES): names the dialout group.
std::string openPermissionDenied();
std::string busy(std::string_view path);
std::string configurationFailed(std::string_view reason);
std::string unsupportedBaud(int baudRate);
std::string notOpen();
std::string writeFailed(std::string_view reason);
std::string timeout();
std::string deviceDisconnected();
std::string demoFailed(std::string_view reason);

// The C library's own text for an errno value, never translated, so that it reads the same
// whatever locale the process runs in: "Permission denied", "Unknown error 4242".
std::string systemMessage(int code);
// The finished sentence shown for a serial link failure.
std::string describe(const SerialLinkError& error);
// The text of a skipped CSV record's problem: "invalid address '70000' (0 to 65535)".
std::string describe(const DatapointCSV::Problem& problem);
// "Line 3: invalid address '70000' (0 to 65535)".
std::string describe(const DatapointCSV::ImportIssue& issue);
// What is wrong in a project document and where: "polls[0].datapoints[3].scale: expected a
// finite number".
std::string describe(const JSONValue::Error& error);
// A project file that cannot be opened: fileOpenFailed, then on its own line what was wrong.
std::string projectUnreadable(std::string_view file, std::string_view detail);
} // namespace Errors

namespace Document {
std::string problemAt(std::string_view path, std::string_view problem);
std::string notJSON();
std::string expectedObject();
std::string expectedList();
std::string expectedText();
std::string expectedNumber();
std::string expectedFiniteNumber();
std::string expectedInteger(std::int64_t minimum, std::int64_t maximum);
std::string expectedBoolean();
std::string expectedUUID();
std::string missing();
// The accepted texts are the raw values, the same in every language: "single, multiple".
std::string unknownValue(std::string_view found, std::string_view choices);
std::string emptyList();
} // namespace Document

namespace Help {
std::string windowTitle();
std::string searchPrompt();
std::string noResults();
std::string tipLabel();
} // namespace Help

namespace State {
std::string running();
std::string stopped();
std::string serialLost();
} // namespace State

namespace Notice {
std::string emptyTitle();
std::string emptySteps();
std::string emptyNoDevice();
std::string emptyNoDeviceSteps();
std::string startPolling();
std::string noResponse();
std::string serialLost();
std::string dismiss();
std::string writeFailed(std::string_view name, std::string_view reason);
std::string startFirst();
} // namespace Notice

namespace Polls {
std::string add();
std::string addHelp();
std::string namePlaceholder();
std::string interval();
// "250 ms" below a second, whole seconds from there on ("1 s" for 1500 ms).
std::string intervalLabel(int ms);
std::string intervalHelp();
std::string active();
std::string activeHelp();
std::string removeTitle();
std::string remove();
std::string removeMessage();
std::string unnamed();
std::string duplicate();
std::string tabHelp();
std::string newName(int number);
std::string copyName(std::string_view name);
// The question that names the poll about to be removed.
std::string removeQuestion(std::string_view name);
} // namespace Polls

namespace Write {
std::string help();
std::string title(std::string_view name);
std::string off();
std::string on();
std::string placeholder();
std::string button();
} // namespace Write

namespace Pane {
std::string title();
std::string log();
std::string chart();
std::string clearHistory();
std::string clearHistoryHelp();
std::string exportHistory();
std::string exportHistoryHelp();
std::string findPlaceholder();
std::string findNext();
std::string findPrevious();
std::string findDone();
} // namespace Pane

namespace Chart {
std::string emptyTitle();
std::string emptyText();
std::string time();
std::string window();
// "All" for 0, whole hours from 3600 s ("2 h"), otherwise whole minutes ("10 min").
std::string windowLabel(int seconds);
std::string windowHelp();
} // namespace Chart

namespace Log {
// The description of a failed request; the time-out is the one in force, in milliseconds.
std::string failure(PollFailure failure, int timeoutMs);
// The status column's form: "Exception 02", "No response", "CRC error", "Invalid response".
std::string shortFailure(PollFailure failure);
// serial: the short text of the serial configuration, "9600 8E1".
std::string started(std::string_view port, std::string_view serial);
std::string stopped();
std::string unit(int id);
std::string unitFunction(int id, std::uint8_t function);
// "HR 100" for one address, "HR 100–103" for four; the same in every language.
std::string range(RegisterTable table, int start, int count);
std::string writeFailed(std::string_view name);
std::string serialLost(std::string_view path);
std::string serialRestored();
// Bytes that came for a request after it had failed, thrown away.
std::string lateAnswer();
} // namespace Log

namespace Example {
std::string pollName();
std::string temperature();
std::string pressure();
std::string runtime();
std::string setpoint();
std::string mode();
std::string pump();
std::string alarm();
} // namespace Example

} // namespace kestrin::L10n
