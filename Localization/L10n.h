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
#include <string>
#include <string_view>

namespace kestrin::L10n {

// Every text the user sees, in the current language (Language::current()), as UTF-8. A plain
// text reads texts().section.key(values…) (Texts.h); the functions here are the texts that choose
// among keys, add codes, or read the same in every language. Safe to call from any thread.

// The language of the texts on this thread: Language::current() unless a test chose another.
Language language();

// The product name, the same in every language.
std::string appName();

namespace Settings {
// An entry of the time-out picker: "500 ms".
std::string timeoutLabel(int timeoutMs);
// "Adjacent only" for 0, otherwise "Gaps up to 8 addresses".
std::string gapLabel(int gap);
} // namespace Settings

namespace Menu {
// The title of the program's own menu, the same in every language.
std::string poller();
} // namespace Menu

namespace Table {
std::string csv();
// The name of a new datapoint, "HR 100", the same in every language.
std::string newName(RegisterTable table, int address);
std::string tableName(RegisterTable table);
std::string dataTypeName(DataType type);
std::string formatName(DisplayFormat format);
// "OK · 24 ms", the same in every language.
std::string ok(int ms);
std::string valueInvalid(DataType type);
} // namespace Table

// Function and exception codes always read as two upper-case hexadecimal digits: "0B".
std::string hexByte(std::uint8_t byte);

namespace Modbus {
// Keyed by the code byte, so that codes outside FunctionCode (43) are named too.
std::string functionName(std::uint8_t code);
// "Illegal data address (02)"; codes outside the standard table read "Exception (07)".
std::string exceptionName(std::uint8_t code);
} // namespace Modbus

namespace Errors {
std::string ok();
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

namespace Polls {
// "250 ms" below a second, whole seconds from there on ("1 s" for 1500 ms).
std::string intervalLabel(int ms);
} // namespace Polls

namespace Chart {
// "All" for 0, whole hours from 3600 s ("2 h"), otherwise whole minutes ("10 min").
std::string windowLabel(int seconds);
} // namespace Chart

namespace Log {
// The description of a failed request; the time-out is the one in force, in milliseconds.
std::string failure(PollFailure failure, int timeoutMs);
// The status column's form: "Exception 02", "No response", "CRC error", "Invalid response".
std::string shortFailure(PollFailure failure);
std::string unitFunction(int id, std::uint8_t function);
// "HR 100" for one address, "HR 100–103" for four; the same in every language.
std::string range(RegisterTable table, int start, int count);
} // namespace Log

} // namespace kestrin::L10n
