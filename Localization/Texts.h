#pragma once

#include "Language.h"

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace kestrin::L10n {

// The translation data of one language. Every member is of a type without a default
// constructor, so a language file whose designated initializer leaves out a key, or names keys
// out of order, does not compile. Texts that are the same in every language ("OK", "CSV", the
// data type names, units such as "ms") are not here; L10n.cpp holds them once.
//
// Each group names its keys once, one X(type, name) a line, in a KESTRIN_…_KEYS(X) list; the
// list declares the members and forEach(visit), which calls visit("name", member) for each in
// order. A nested group is visited as a member with a forEach of its own. A new text is thus
// one line here and one line in each language file.

// A text without values: a string literal, checked at compile time.
struct Literal {
    consteval Literal(const char* text)
        : value(text) {}
    // Called like the texts with values, so that every text reads texts().section.key(…).
    std::string operator()() const { return std::string(value); }
    std::string_view value;
};

// A text built from values: a captureless lambda with exactly this signature, so that each
// language puts the values where its word order wants them.
template <typename Signature>
struct Fn;

template <typename R, typename... Args>
struct Fn<R(Args...)> {
    using Pointer = R (*)(Args...);

    template <typename Lambda>
    requires std::is_convertible_v<Lambda, Pointer>
    constexpr Fn(Lambda lambda)
        : call(lambda) {}

    R operator()(Args... args) const { return call(args...); }

    Pointer call;
};

namespace detail {
inline void append(std::string& text, std::string_view piece) {
    text += piece;
}
template <std::integral Number>
void append(std::string& text, Number number) {
    text += std::to_string(number);
}
} // namespace detail

// Joins texts and decimal integers: concat("Gaps up to ", gap, " addresses").
template <typename... Pieces>
std::string concat(const Pieces&... pieces) {
    std::string text;
    (detail::append(text, pieces), ...);
    return text;
}

// Signatures of the texts with values. Hexadecimal codes arrive already formatted ("0B").
using OfText = Fn<std::string(std::string_view)>;
using OfTwoTexts = Fn<std::string(std::string_view, std::string_view)>;
using OfNumber = Fn<std::string(int)>;
using OfNumberAndText = Fn<std::string(int, std::string_view)>;
using OfTwoNumbers = Fn<std::string(std::int64_t, std::int64_t)>;
using OfThreeNumbers = Fn<std::string(int, int, int)>;
using OfCounters =
    Fn<std::string(std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t)>;

#define KESTRIN_TEXT_MEMBER(Type, name) Type name;
#define KESTRIN_TEXT_VISIT(Type, name) visit(#name, name);
#define KESTRIN_TEXT_GROUP(KEYS)                                                                   \
    KEYS(KESTRIN_TEXT_MEMBER)                                                                      \
    template <typename Visit>                                                                      \
    constexpr void forEach(Visit&& visit) const {                                                  \
        KEYS(KESTRIN_TEXT_VISIT)                                                                   \
    }

struct Texts {
    struct HeaderTexts {
#define KESTRIN_HEADER_TEXTS_KEYS(X)                                                               \
    X(Literal, port)                                                                               \
    X(Literal, noPortsFound)                                                                       \
    X(Literal, choosePort)                                                                         \
    X(OfText, portNotConnected) /* (port path) */                                                  \
    X(Literal, baudRate)                                                                           \
    X(OfNumber, baudLabel) /* (rate): an entry of the baud-rate picker */                          \
    X(Literal, start)                                                                              \
    X(Literal, stop)                                                                               \
    X(Literal, frameSettingsHelp)                                                                  \
    X(Literal, startHelp)                                                                          \
    X(Literal, stopHelp)                                                                           \
    X(Literal, listen)                                                                             \
    X(Literal, stopListening)                                                                      \
    X(Literal, listenHelp)                                                                         \
    X(Literal, stopListeningHelp)                                                                  \
    X(Literal, lockedWhileRunning)                                                                 \
    X(Literal, lockedWhileListening)                                                               \
    X(Literal, demoDevice) /* the name of the simulated device of --demo */                        \
    /* Beside a Start that is off: no port; Find Devices has it; no active poll has datapoints. */ \
    X(Literal, startNeedsPort)                                                                     \
    X(Literal, startWaitsForScan)                                                                  \
    X(Literal, startNeedsDatapoints)                                                               \
    /* Why Listen is off, for assistive technology: no port; Find Devices has it. */               \
    X(Literal, listenNeedsPort)                                                                    \
    X(Literal, listenWaitsForScan)
        KESTRIN_TEXT_GROUP(KESTRIN_HEADER_TEXTS_KEYS)
    };

    struct SettingsTexts {
#define KESTRIN_SETTINGS_TEXTS_KEYS(X)                                                             \
    X(Literal, frame)                                                                              \
    X(Literal, dataBits)                                                                           \
    X(Literal, parity)                                                                             \
    X(Literal, stopBits)                                                                           \
    X(Literal, parityNone)                                                                         \
    X(Literal, parityEven)                                                                         \
    X(Literal, parityOdd)                                                                          \
    X(Literal, modbusDefault)                                                                      \
    X(Literal, standardNote)                                                                       \
    X(Literal, requests)                                                                           \
    X(Literal, responseTimeout)                                                                    \
    X(Literal, timeoutHelp)                                                                        \
    X(Literal, combine)                                                                            \
    X(Literal, adjacentOnly) /* the gap label for a gap of 0 */                                    \
    X(OfNumber, gapsUpTo)    /* (gap) the gap label for any other gap */                           \
    X(Literal, combineHelp)                                                                        \
    X(Literal, writeMode)                                                                          \
    X(Literal, writeSingle)                                                                        \
    X(Literal, writeMultiple)                                                                      \
    X(Literal, writeModeHelp)                                                                      \
    X(Literal, rs485)     /* the switch: "RS-485 direction by RTS" */                              \
    X(Literal, rs485Help) /* for boards' UARTs, not USB adapters */                                \
    X(Literal, rtsWhileSending)                                                                    \
    X(Literal, rtsHigh)                                                                            \
    X(Literal, rtsLow)                                                                             \
    X(Literal, delayBeforeSend)                                                                    \
    X(Literal, delayAfterSend)
        KESTRIN_TEXT_GROUP(KESTRIN_SETTINGS_TEXTS_KEYS)
    };

    struct FooterTexts {
#define KESTRIN_FOOTER_TEXTS_KEYS(X)                                                               \
    X(OfCounters, statistics) /* (requests, responses, timeouts, exceptions, errors) */            \
    X(Literal, options)                                                                            \
    X(Literal, optionsHelp)                                                                        \
    X(Literal, autoscroll)                                                                         \
    X(Literal, timestamps)                                                                         \
    X(Literal, rawFrames)                                                                          \
    X(Literal, rawFramesHelp)                                                                      \
    X(Literal, onlyProblems)                                                                       \
    X(Literal, onlyProblemsHelp)                                                                   \
    X(Literal, save)                                                                               \
    X(Literal, saveHelp)                                                                           \
    X(Literal, clear)                                                                              \
    X(Literal, clearHelp)                                                                          \
    X(Literal, outputAccessibility)
        KESTRIN_TEXT_GROUP(KESTRIN_FOOTER_TEXTS_KEYS)
    };

    struct MenuTexts {
#define KESTRIN_MENU_TEXTS_KEYS(X)                                                                 \
    X(Literal, newProject)                                                                         \
    X(Literal, openProject)                                                                        \
    X(Literal, saveProject)                                                                        \
    X(Literal, importCSV)                                                                          \
    X(Literal, exportCSV)                                                                          \
    X(Literal, saveLog)                                                                            \
    X(Literal, clearLog)                                                                           \
    X(Literal, file)                                                                               \
    X(Literal, help)                                                                               \
    X(Literal, quit)                                                                               \
    X(Literal, replaceProjectTitle)                                                                \
    X(Literal, replaceProjectMessage)                                                              \
    /* The names of the file dialogs' filters; the patterns are added by the window. */            \
    X(Literal, csvFiles)                                                                           \
    X(Literal, datapointLists)                                                                     \
    X(Literal, projectFiles)                                                                       \
    X(Literal, textFiles)                                                                          \
    X(Literal, allFiles)
        KESTRIN_TEXT_GROUP(KESTRIN_MENU_TEXTS_KEYS)
    };

    struct TableTexts {
        struct TableNames {
#define KESTRIN_TABLE_NAMES_KEYS(X)                                                                \
    X(Literal, coil)                                                                               \
    X(Literal, discreteInput)                                                                      \
    X(Literal, holdingRegister)                                                                    \
    X(Literal, inputRegister)
            KESTRIN_TEXT_GROUP(KESTRIN_TABLE_NAMES_KEYS)
        };
        // "Hex" is the same in every language.
        struct FormatNames {
#define KESTRIN_FORMAT_NAMES_KEYS(X)                                                               \
    X(Literal, decimal)                                                                            \
    X(Literal, binary)
            KESTRIN_TEXT_GROUP(KESTRIN_FORMAT_NAMES_KEYS)
        };

#define KESTRIN_TABLE_TEXTS_KEYS(X)                                                                \
    X(Literal, name)                                                                               \
    X(Literal, unitID) /* the unit ID column */                                                    \
    X(Literal, table)                                                                              \
    X(Literal, address)                                                                            \
    X(Literal, dataType)                                                                           \
    X(Literal, wordOrder)                                                                          \
    X(Literal, scale)                                                                              \
    X(Literal, value)                                                                              \
    X(Literal, unit) /* the engineering unit column: a different word from unitID */               \
    X(Literal, format)                                                                             \
    X(Literal, description)                                                                        \
    X(Literal, status)                                                                             \
    X(Literal, add)                                                                                \
    X(Literal, addHelp)                                                                            \
    X(Literal, duplicate)                                                                          \
    X(Literal, deleteRows)                                                                         \
    X(Literal, csvHelp)                                                                            \
    X(Literal, unitIDHelp)                                                                         \
    X(OfText, addressHelp) /* (Modicon notation, "40001") */                                       \
    X(Literal, wordOrderHelp)                                                                      \
    X(Literal, scaleHelp)                                                                          \
    X(Literal, plotHelp)                                                                           \
    X(OfText, rawHelp) /* (registers, "0000 00D7") */                                              \
    X(Literal, overlapHelp)                                                                        \
    X(Literal, emptyTitle)                                                                         \
    X(Literal, emptyText)                                                                          \
    X(TableNames, tableNames)                                                                      \
    X(FormatNames, formatNames)                                                                    \
    X(Literal, waiting)                                                                            \
    X(OfText, updatedHelp) /* (time of day) */                                                     \
    X(Literal, valueHelp)                                                                          \
    X(OfText, valueInvalid) /* (data type name, "UInt16") */                                       \
    /* Why a typed unit ID, address or scale is refused. */                                        \
    X(Literal, unitIDInvalid)                                                                      \
    X(Literal, addressInvalid)                                                                     \
    X(Literal, scaleInvalid)
        KESTRIN_TEXT_GROUP(KESTRIN_TABLE_TEXTS_KEYS)
    };

    struct ImportTexts {
#define KESTRIN_IMPORT_TEXTS_KEYS(X)                                                               \
    X(OfNumber, title) /* (count): each language writes its own singular and plural */             \
    X(Literal, question)                                                                           \
    X(OfNumber, skipped) /* (count) */                                                             \
    X(Literal, add)                                                                                \
    X(Literal, replace)                                                                            \
    X(Literal, cancel)
        KESTRIN_TEXT_GROUP(KESTRIN_IMPORT_TEXTS_KEYS)
    };

    struct ModbusTexts {
        // Keyed by code byte; `other` names every code not listed, 0 included.
        struct FunctionNames {
#define KESTRIN_FUNCTION_NAMES_KEYS(X)                                                             \
    X(Literal, readCoils)                  /* 01 */                                                \
    X(Literal, readDiscreteInputs)         /* 02 */                                                \
    X(Literal, readHoldingRegisters)       /* 03 */                                                \
    X(Literal, readInputRegisters)         /* 04 */                                                \
    X(Literal, writeSingleCoil)            /* 05 */                                                \
    X(Literal, writeSingleRegister)        /* 06 */                                                \
    X(Literal, diagnostics)                /* 08 */                                                \
    X(Literal, writeMultipleCoils)         /* 15 */                                                \
    X(Literal, writeMultipleRegisters)     /* 16 */                                                \
    X(Literal, maskWriteRegister)          /* 22 */                                                \
    X(Literal, readWriteMultipleRegisters) /* 23 */                                                \
    X(Literal, deviceIdentification)       /* 43 */                                                \
    X(Literal, other)
            KESTRIN_TEXT_GROUP(KESTRIN_FUNCTION_NAMES_KEYS)
        };
        // The code in parentheses is added by L10n: "Illegal data address (02)".
        struct ExceptionNames {
#define KESTRIN_EXCEPTION_NAMES_KEYS(X)                                                            \
    X(Literal, illegalFunction)              /* 01 */                                              \
    X(Literal, illegalDataAddress)           /* 02 */                                              \
    X(Literal, illegalDataValue)             /* 03 */                                              \
    X(Literal, serverDeviceFailure)          /* 04 */                                              \
    X(Literal, acknowledge)                  /* 05 */                                              \
    X(Literal, serverDeviceBusy)             /* 06 */                                              \
    X(Literal, memoryParityError)            /* 08 */                                              \
    X(Literal, gatewayPathUnavailable)       /* 0A */                                              \
    X(Literal, gatewayTargetFailedToRespond) /* 0B */                                              \
    X(Literal, other)
            KESTRIN_TEXT_GROUP(KESTRIN_EXCEPTION_NAMES_KEYS)
        };

#define KESTRIN_MODBUS_TEXTS_KEYS(X)                                                               \
    X(FunctionNames, functionNames)                                                                \
    X(ExceptionNames, exceptionNames)
        KESTRIN_TEXT_GROUP(KESTRIN_MODBUS_TEXTS_KEYS)
    };

    struct BoardTexts {
#define KESTRIN_BOARD_TEXTS_KEYS(X) X(OfText, usbSerial) /* (chip, "FTDI FT232R") */
        KESTRIN_TEXT_GROUP(KESTRIN_BOARD_TEXTS_KEYS)
    };

    struct ErrorsTexts {
#define KESTRIN_ERRORS_TEXTS_KEYS(X)                                                               \
    X(Literal, alertTitle)                                                                         \
    X(Literal, selectPortFirst)                                                                    \
    X(OfText, saveFailed)           /* (reason) */                                                 \
    X(OfText, fileOpenFailed)       /* (file name) */                                              \
    X(OfText, importNothing)        /* (details: the first issue, or empty) */                     \
    X(OfNumberAndText, importIssue) /* (line, problem) */                                          \
    X(Literal, csvMissingColumns)                                                                  \
    X(OfText, csvInvalidTable)          /* (cell text) */                                          \
    X(OfText, csvInvalidAddress)        /* (cell text) */                                          \
    X(OfText, csvInvalidUnit)           /* (cell text) */                                          \
    X(OfText, csvInvalidDataType)       /* (cell text) */                                          \
    X(OfText, csvInvalidNumber)         /* (cell text) */                                          \
    X(OfText, invalidPath)              /* (path) */                                               \
    X(OfTwoTexts, openFailed)           /* (path, system message) */                               \
    X(Literal, openPermissionDenied)    /* added after openFailed for EACCES */                    \
    X(OfTwoTexts, permissionNotMember)  /* (group, user) */                                        \
    X(OfText, permissionNotInThisLogin) /* (group) */                                              \
    X(OfText, permissionMemberRefused)  /* (group) */                                              \
    X(Literal, permissionOwnerOnly)                                                                \
    X(OfText, busy)                   /* (path) */                                                 \
    X(OfNumberAndText, holderProcess) /* (pid, program): "ModemManager (process 812)" */           \
    X(OfTwoTexts, busyBy)             /* (path, holderProcess) */                                  \
    X(OfTwoTexts, busyProbablyBy)     /* (path, holderProcess) */                                  \
    X(Literal, closeHolder)                                                                        \
    X(Literal, modemManagerHint)                                                                   \
    X(Literal, brlttyHint)                                                                         \
    X(OfText, configurationFailed) /* (system message) */                                          \
    X(OfText, rs485Refused)        /* (system message) */                                          \
    X(OfNumber, unsupportedBaud)   /* (baud rate) */                                               \
    X(Literal, notOpen)                                                                            \
    X(Literal, sendRefused)                                                                        \
    X(OfText, writeFailed) /* (system message) */                                                  \
    X(Literal, timeout)                                                                            \
    X(Literal, deviceDisconnected)                                                                 \
    X(OfText, demoFailed)             /* (reason) */                                               \
    X(OfTwoTexts, unknownOption)      /* (option, help command) */                                 \
    X(OfTwoTexts, unexpectedArgument) /* (argument, help command) */                               \
    X(OfText, missingValue)           /* (option) */                                               \
    X(OfText, missingOption)          /* (option) */                                               \
    X(OfTwoTexts, invalidOptionValue) /* (option, value) */                                        \
    X(OfTwoTexts, optionsExclude)     /* (option, option) */                                       \
    X(OfTwoTexts, invalidBaud)        /* (value, the usual rates) */                               \
    X(OfText, tableNotWritable)       /* (table as typed) */
        KESTRIN_TEXT_GROUP(KESTRIN_ERRORS_TEXTS_KEYS)
    };

    // What is wrong in a project document, shown after the place: "timeoutMs: expected a number".
    struct DocumentTexts {
#define KESTRIN_DOCUMENT_TEXTS_KEYS(X)                                                             \
    X(OfTwoTexts, problemAt) /* (key path, problem) */                                             \
    X(Literal, notJSON)                                                                            \
    X(Literal, expectedObject)                                                                     \
    X(Literal, expectedList)                                                                       \
    X(Literal, expectedText)                                                                       \
    X(Literal, expectedNumber)                                                                     \
    X(Literal, expectedFiniteNumber)                                                               \
    X(OfTwoNumbers, expectedInteger) /* (minimum, maximum) */                                      \
    X(Literal, expectedBoolean)                                                                    \
    X(Literal, expectedUUID)                                                                       \
    X(Literal, missing)                                                                            \
    X(OfTwoTexts, unknownValue) /* (text found, accepted texts) */                                 \
    X(Literal, emptyList)
        KESTRIN_TEXT_GROUP(KESTRIN_DOCUMENT_TEXTS_KEYS)
    };

    struct HelpTexts {
#define KESTRIN_HELP_TEXTS_KEYS(X)                                                                 \
    X(Literal, windowTitle)                                                                        \
    X(Literal, searchPrompt)                                                                       \
    X(Literal, noResults)                                                                          \
    X(Literal, tipLabel)
        KESTRIN_TEXT_GROUP(KESTRIN_HELP_TEXTS_KEYS)
    };

    struct StateTexts {
#define KESTRIN_STATE_TEXTS_KEYS(X)                                                                \
    X(Literal, running)                                                                            \
    X(Literal, listening)                                                                          \
    X(Literal, stopped)                                                                            \
    X(Literal, serialLost)
        KESTRIN_TEXT_GROUP(KESTRIN_STATE_TEXTS_KEYS)
    };

    struct NoticeTexts {
#define KESTRIN_NOTICE_TEXTS_KEYS(X)                                                               \
    X(Literal, emptyTitle)                                                                         \
    X(Literal, emptySteps)                                                                         \
    X(Literal, emptyNoDevice)                                                                      \
    X(Literal, emptyNoDeviceSteps)                                                                 \
    X(Literal, startPolling)                                                                       \
    X(Literal, noResponse)                                                                         \
    X(Literal, serialLost)                                                                         \
    X(Literal, dismiss)                                                                            \
    X(OfTwoTexts, writeFailed) /* (datapoint name, reason) */                                      \
    /* Listening: the banner, and why a write is refused. */                                       \
    X(Literal, listening)                                                                          \
    X(Literal, stopListeningFirst)                                                                 \
    X(Literal, startFirst)
        KESTRIN_TEXT_GROUP(KESTRIN_NOTICE_TEXTS_KEYS)
    };

    // A USB adapter that holds answers back: its latency timer and how to lower it.
    struct AdapterTexts {
#define KESTRIN_ADAPTER_TEXTS_KEYS(X)                                                              \
    X(OfNumberAndText, latencyHeld) /* (timer ms, port path) */                                    \
    X(OfThreeNumbers, latencyCost)  /* (timer ms, requests a second now, at 1 ms) */               \
    X(Literal, setToOneMs)                                                                         \
    X(Literal, fixForGood) /* opens the rule that sets 1 ms at every plug-in */                    \
    X(Literal, fixTitle)                                                                           \
    X(OfTwoTexts, fixSteps) /* (rule file path, command reloading the rules) */                    \
    X(Literal, copyRule)                                                                           \
    X(OfText, latencySet)           /* (port path): a log line */                                  \
    X(OfTwoTexts, latencySetFailed) /* (port path, system message) */
        KESTRIN_TEXT_GROUP(KESTRIN_ADAPTER_TEXTS_KEYS)
    };

    // The bus as measured while reading: how fast each unit answers, how often each poll comes
    // round, how busy the line is, and a time-out that fits the answers.
    struct BusTexts {
#define KESTRIN_BUS_TEXTS_KEYS(X)                                                                  \
    X(Literal, button) /* the bottom bar's button that opens the figures */                        \
    X(Literal, buttonHelp)                                                                         \
    X(Literal, title)                                                                              \
    X(Literal, nothingYet)                                                                         \
    X(Literal, answers)                                                                            \
    X(Literal, roundTrip)                                                                          \
    X(Literal, turnaround)                                                                         \
    X(Literal, spreadNote) /* what "median / 99 %" and the turnaround mean */                      \
    X(Literal, poll)                                                                               \
    X(Literal, intervalSet)                                                                        \
    X(Literal, intervalGot)                                                                        \
    X(OfNumber, lineBusy)              /* (percent) */                                             \
    X(OfTwoNumbers, unitSummary)       /* (unit, answers): begins a log line */                    \
    X(OfTwoNumbers, roundTripSummary)  /* (median ms, 99th percentile ms) */                       \
    X(OfTwoNumbers, turnaroundSummary) /* (median ms, 99th percentile ms) */                       \
    X(OfTwoNumbers, timeoutFits)       /* (unit, 99th percentile round trip ms) */                 \
    X(OfTwoNumbers, timeoutOffer)      /* (offered ms, current ms) */                              \
    X(OfNumber, useTimeout)            /* (ms): the button taking the offer */                     \
    X(OfNumber, timeoutSet)            /* (ms): a log line */
        KESTRIN_TEXT_GROUP(KESTRIN_BUS_TEXTS_KEYS)
    };

    struct PollsTexts {
#define KESTRIN_POLLS_TEXTS_KEYS(X)                                                                \
    X(Literal, add)                                                                                \
    X(Literal, addHelp)                                                                            \
    X(Literal, namePlaceholder)                                                                    \
    X(Literal, interval)                                                                           \
    X(Literal, intervalHelp)                                                                       \
    X(Literal, active)                                                                             \
    X(Literal, activeHelp)                                                                         \
    X(Literal, removeTitle)                                                                        \
    X(Literal, remove)                                                                             \
    X(Literal, removeMessage)                                                                      \
    X(Literal, unnamed)                                                                            \
    X(Literal, duplicate)                                                                          \
    X(Literal, tabHelp)                                                                            \
    X(OfNumber, newName)                /* (number) */                                             \
    X(OfText, copyName)                 /* (poll name) */                                          \
    X(OfText, removeQuestion)           /* (poll name) */                                          \
    X(OfNumber, cycle)                  /* (ms): one reading of the poll, beside its interval */   \
    X(OfNumber, cycleHelp)              /* (ms each device is given to answer) */                  \
    X(OfNumber, lineLoad)               /* (percent of the line's time all active polls need) */   \
    X(OfThreeNumbers, outlastsInterval) /* (cycle ms, real interval ms, interval ms) */            \
    X(OfThreeNumbers, lineOverloaded)   /* (load percent, real interval ms, interval ms) */        \
    X(OfTwoNumbers, answerAfterTimeout) /* (ms an answer takes, response timeout ms) */            \
    X(OfText, measuredUnits) /* (units, "1, 3"): the cycle's tool tip, before cycleHelp */
        KESTRIN_TEXT_GROUP(KESTRIN_POLLS_TEXTS_KEYS)
    };

    struct WriteTexts {
#define KESTRIN_WRITE_TEXTS_KEYS(X)                                                                \
    X(Literal, help)                                                                               \
    X(OfText, title) /* (datapoint name) */                                                        \
    X(Literal, off)                                                                                \
    X(Literal, on)                                                                                 \
    X(Literal, placeholder)                                                                        \
    X(Literal, button)
        KESTRIN_TEXT_GROUP(KESTRIN_WRITE_TEXTS_KEYS)
    };

    struct PaneTexts {
#define KESTRIN_PANE_TEXTS_KEYS(X)                                                                 \
    X(Literal, title)                                                                              \
    X(Literal, log)                                                                                \
    X(Literal, chart)                                                                              \
    X(Literal, clearHistory)                                                                       \
    X(Literal, clearHistoryHelp)                                                                   \
    X(Literal, exportHistory)                                                                      \
    X(Literal, exportHistoryHelp)                                                                  \
    X(Literal, findPlaceholder)                                                                    \
    X(Literal, findNext)                                                                           \
    X(Literal, findPrevious)                                                                       \
    X(Literal, findDone)                                                                           \
    X(Literal, exportProgress) /* the label while a large history is written */
        KESTRIN_TEXT_GROUP(KESTRIN_PANE_TEXTS_KEYS)
    };

    struct ChartTexts {
#define KESTRIN_CHART_TEXTS_KEYS(X)                                                                \
    X(Literal, emptyTitle)                                                                         \
    X(Literal, emptyText)                                                                          \
    X(Literal, time)                                                                               \
    X(Literal, window)                                                                             \
    X(Literal, windowAll) /* the label for 0 seconds; "min" and "h" read the same everywhere */    \
    X(Literal, windowHelp)
        KESTRIN_TEXT_GROUP(KESTRIN_CHART_TEXTS_KEYS)
    };

    struct LogTexts {
        // The long description of a failed request; an exception is named by ModbusTexts.
        struct FailureTexts {
#define KESTRIN_FAILURE_TEXTS_KEYS(X)                                                              \
    X(OfNumber, unexpectedUnit)   /* (unit) */                                                     \
    X(OfText, unexpectedFunction) /* (function code, "03") */                                      \
    X(OfNumber, timeout)          /* (time-out in ms) */                                           \
    X(Literal, crcMismatch)                                                                        \
    X(Literal, malformed)
            KESTRIN_TEXT_GROUP(KESTRIN_FAILURE_TEXTS_KEYS)
        };
        // The status column's short form; unexpected unit and function count as invalid.
        struct ShortFailureTexts {
#define KESTRIN_SHORT_FAILURE_TEXTS_KEYS(X)                                                        \
    X(OfText, exception) /* (exception code, "02") */                                              \
    X(Literal, timeout)                                                                            \
    X(Literal, crcMismatch)                                                                        \
    X(Literal, invalid)
            KESTRIN_TEXT_GROUP(KESTRIN_SHORT_FAILURE_TEXTS_KEYS)
        };

#define KESTRIN_LOG_TEXTS_KEYS(X)                                                                  \
    X(FailureTexts, failure)                                                                       \
    X(ShortFailureTexts, shortFailure)                                                             \
    X(OfTwoTexts, started) /* (port path, serial settings, "9600 8E1") */                          \
    X(Literal, stopped)                                                                            \
    X(OfNumber, unit)                /* (unit ID) */                                               \
    X(OfNumberAndText, unitFunction) /* (unit ID, function code, "03") */                          \
    X(OfText, writeFailed)           /* (datapoint name) */                                        \
    X(OfText, serialLost)            /* (port path) */                                             \
    X(Literal, serialRestored)                                                                     \
    X(OfText, serialRestoredAt) /* (the new port path) */                                          \
    X(Literal, lateAnswer)                                                                         \
    X(OfText, readInParts)          /* (the refused block, "HR 0–10") */                         \
    X(OfText, refusedAddresses)     /* (the refused addresses, "5, 9–10") */                     \
    X(OfTwoTexts, listeningStarted) /* (port path, serial settings, "9600 8E1") */                 \
    X(Literal, listeningStopped)                                                                   \
    /* A request heard on the bus that nothing answered; bytes that fit no request heard. */       \
    X(Literal, noResponse)                                                                         \
    X(Literal, unmatched)                                                                          \
    X(OfNumber, rs485DelaysLimited) /* (the longest delay the kernel takes, in ms) */
        KESTRIN_TEXT_GROUP(KESTRIN_LOG_TEXTS_KEYS)
    };

    struct ExampleTexts {
#define KESTRIN_EXAMPLE_TEXTS_KEYS(X)                                                              \
    X(Literal, pollName)                                                                           \
    X(Literal, temperature)                                                                        \
    X(Literal, pressure)                                                                           \
    X(Literal, runtime)                                                                            \
    X(Literal, setpoint)                                                                           \
    X(Literal, mode)                                                                               \
    X(Literal, pump)                                                                               \
    X(Literal, alarm)
        KESTRIN_TEXT_GROUP(KESTRIN_EXAMPLE_TEXTS_KEYS)
    };

    // What kestrin-cli scan tells the person at the terminal.
    struct ScanTexts {
#define KESTRIN_SCAN_TEXTS_KEYS(X)                                                                 \
    X(OfThreeNumbers, unitProgress)  /* (units done, of, seconds left) */                          \
    X(OfThreeNumbers, sweepProgress) /* (settings tried, of, seconds left) */                      \
    X(Literal, noUnitAnswered)                                                                     \
    X(Literal, noSettingsAnswered)                                                                 \
    X(OfTwoNumbers, mapProgress) /* (requests sent, seconds left at least) */                      \
    X(Literal, noAddressFound)                                                                     \
    X(Literal, csvNeedsQt) /* --csv asked of a kestrin-cli built without Qt */
        KESTRIN_TEXT_GROUP(KESTRIN_SCAN_TEXTS_KEYS)
    };

    // What kestrin-cli plan prints about each poll: "Fast: enabled, 2 requests, cycle 29 ms,
    // interval 200 ms, runs every 200 ms", joined by the command.
    struct PlanTexts {
#define KESTRIN_PLAN_TEXTS_KEYS(X)                                                                 \
    X(Literal, enabled)                                                                            \
    X(Literal, disabled)                                                                           \
    X(OfNumber, requests)    /* (requests one reading makes) */                                    \
    X(OfNumber, cycle)       /* (ms one reading holds the line) */                                 \
    X(OfNumber, interval)    /* (ms the poll asks for) */                                          \
    X(OfNumber, runsEvery)   /* (ms it will really get) */                                         \
    X(Literal, notRead)      /* a disabled poll or one without datapoints */                       \
    X(OfNumber, lineLoad)    /* (percent): the last line */                                        \
    X(OfNumber, badBaudRate) /* (the project's baud rate, not positive) */
        KESTRIN_TEXT_GROUP(KESTRIN_PLAN_TEXTS_KEYS)
    };

    // The window's Find Devices dialog; its progress and empty results are ScanTexts.
    struct FinderTexts {
#define KESTRIN_FINDER_TEXTS_KEYS(X)                                                               \
    X(Literal, menuItem)                                                                           \
    X(Literal, title)                                                                              \
    /* The three scans, and under each what it does. */                                            \
    X(Literal, findUnits)                                                                          \
    X(Literal, findSettings)                                                                       \
    X(Literal, mapRegisters)                                                                       \
    X(Literal, unitsNote)                                                                          \
    X(Literal, settingsNote)                                                                       \
    X(Literal, registersNote)                                                                      \
    X(Literal, units) /* the range of unit IDs: "Unit IDs 1 to 247" */                             \
    X(Literal, to)                                                                                 \
    X(Literal, addresses)                                                                          \
    X(Literal, tables)                                                                             \
    X(Literal, timeoutHelp) /* the units scan's own time-out, not the project's */                 \
    /* Result columns. */                                                                          \
    X(Literal, answer)                                                                             \
    X(Literal, late)                                                                               \
    X(Literal, lateHelp)                                                                           \
    X(Literal, count)                                                                              \
    X(Literal, addToPoll)                                                                          \
    X(Literal, useSettings)                                                                        \
    X(Literal, stopReadingFirst)                                                                   \
    X(Literal, cancelled)                                                                          \
    X(Literal, mapIncomplete)     /* the unit fell silent before the end of the range */           \
    X(OfNumber, busyUnknown)      /* (addresses the device was too busy to read) */                \
    X(OfText, busyRanges)         /* (their ranges, "200-231"): the count's tool tip */            \
    X(OfTwoNumbers, tooManyToAdd) /* (addresses found, most datapoints added at once) */           \
    X(OfNumber, added)            /* (datapoints added to the selected poll) */                    \
    X(OfText, settingsUsed)       /* (serial settings, "19200 8N1") */
        KESTRIN_TEXT_GROUP(KESTRIN_FINDER_TEXTS_KEYS)
    };

#define KESTRIN_TEXTS_KEYS(X)                                                                      \
    X(HeaderTexts, header)                                                                         \
    X(SettingsTexts, settings)                                                                     \
    X(FooterTexts, footer)                                                                         \
    X(MenuTexts, menu)                                                                             \
    X(TableTexts, table)                                                                           \
    X(ImportTexts, import)                                                                         \
    X(ModbusTexts, modbus)                                                                         \
    X(BoardTexts, board)                                                                           \
    X(ErrorsTexts, errors)                                                                         \
    X(DocumentTexts, document)                                                                     \
    X(HelpTexts, help)                                                                             \
    X(StateTexts, state)                                                                           \
    X(NoticeTexts, notice)                                                                         \
    X(AdapterTexts, adapter)                                                                       \
    X(BusTexts, bus)                                                                               \
    X(PollsTexts, polls)                                                                           \
    X(WriteTexts, write)                                                                           \
    X(PaneTexts, pane)                                                                             \
    X(ChartTexts, chart)                                                                           \
    X(LogTexts, log)                                                                               \
    X(ExampleTexts, example)                                                                       \
    X(ScanTexts, scan)                                                                             \
    X(PlanTexts, plan)                                                                             \
    X(FinderTexts, finder)
    KESTRIN_TEXT_GROUP(KESTRIN_TEXTS_KEYS)
};

#undef KESTRIN_TEXT_GROUP
#undef KESTRIN_TEXT_VISIT
#undef KESTRIN_TEXT_MEMBER

const Texts& englishTexts();
const Texts& dutchTexts();
const Texts& germanTexts();
const Texts& frenchTexts();
const Texts& spanishTexts();

const Texts& texts(Language language);
// The texts of this thread's language (see language()).
const Texts& texts();

} // namespace kestrin::L10n
