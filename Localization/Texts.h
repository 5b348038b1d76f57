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
using OfCounters =
    Fn<std::string(std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t)>;

struct Texts {
    struct HeaderTexts {
        Literal port;
        Literal noPortsFound;
        Literal choosePort;
        OfText portNotConnected; // (port path)
        Literal baudRate;
        OfNumber baudLabel; // (rate): an entry of the baud-rate picker
        Literal start;
        Literal stop;
        Literal frameSettingsHelp;
        Literal startHelp;
        Literal stopHelp;
        Literal lockedWhileRunning;
        Literal demoDevice;           // the name of the simulated device of --demo
        Literal startNeedsPort;       // beside a Start that is off: no port present or chosen
        Literal startNeedsDatapoints; // beside a Start that is off: no active poll has datapoints
    } header;

    struct SettingsTexts {
        Literal frame;
        Literal dataBits;
        Literal parity;
        Literal stopBits;
        Literal parityNone;
        Literal parityEven;
        Literal parityOdd;
        Literal modbusDefault;
        Literal standardNote;
        Literal requests;
        Literal responseTimeout;
        Literal timeoutHelp;
        Literal combine;
        Literal adjacentOnly; // the gap label for a gap of 0
        OfNumber gapsUpTo;    // (gap) the gap label for any other gap
        Literal combineHelp;
        Literal writeMode;
        Literal writeSingle;
        Literal writeMultiple;
        Literal writeModeHelp;
    } settings;

    struct FooterTexts {
        OfCounters statistics; // (requests, responses, timeouts, exceptions, errors)
        Literal options;
        Literal optionsHelp;
        Literal autoscroll;
        Literal timestamps;
        Literal rawFrames;
        Literal rawFramesHelp;
        Literal onlyProblems;
        Literal onlyProblemsHelp;
        Literal save;
        Literal saveHelp;
        Literal clear;
        Literal clearHelp;
        Literal outputAccessibility;
    } footer;

    struct MenuTexts {
        Literal newProject;
        Literal openProject;
        Literal saveProject;
        Literal importCSV;
        Literal exportCSV;
        Literal saveLog;
        Literal clearLog;
        Literal file;
        Literal help;
        Literal quit;
        Literal replaceProjectTitle;
        Literal replaceProjectMessage;
        // The names of the file dialogs' filters; the patterns are added by the window.
        Literal csvFiles;
        Literal datapointLists;
        Literal projectFiles;
        Literal textFiles;
        Literal allFiles;
    } menu;

    struct TableTexts {
        struct TableNames {
            Literal coil;
            Literal discreteInput;
            Literal holdingRegister;
            Literal inputRegister;
        };
        // "Hex" is the same in every language.
        struct FormatNames {
            Literal decimal;
            Literal binary;
        };

        Literal name;
        Literal unitID; // the unit ID column
        Literal table;
        Literal address;
        Literal dataType;
        Literal wordOrder;
        Literal scale;
        Literal value;
        Literal unit; // the engineering unit column: a different word from unitID
        Literal format;
        Literal description;
        Literal status;
        Literal add;
        Literal addHelp;
        Literal duplicate;
        Literal deleteRows;
        Literal csvHelp;
        Literal unitIDHelp;
        OfText addressHelp; // (Modicon notation, "40001")
        Literal wordOrderHelp;
        Literal scaleHelp;
        Literal plotHelp;
        OfText rawHelp; // (registers, "0000 00D7")
        Literal overlapHelp;
        Literal emptyTitle;
        Literal emptyText;
        TableNames tableNames;
        FormatNames formatNames;
        Literal waiting;
        OfText updatedHelp; // (time of day)
        Literal valueHelp;
        OfText valueInvalid; // (data type name, "UInt16")
        // Why a typed unit ID, address or scale is refused.
        Literal unitIDInvalid;
        Literal addressInvalid;
        Literal scaleInvalid;
    } table;

    struct ImportTexts {
        OfNumber title; // (count): each language writes its own singular and plural
        Literal question;
        OfNumber skipped; // (count)
        Literal add;
        Literal replace;
        Literal cancel;
    } import;

    struct ModbusTexts {
        // Keyed by code byte; `other` names every code not listed, 0 included.
        struct FunctionNames {
            Literal readCoils;                  // 01
            Literal readDiscreteInputs;         // 02
            Literal readHoldingRegisters;       // 03
            Literal readInputRegisters;         // 04
            Literal writeSingleCoil;            // 05
            Literal writeSingleRegister;        // 06
            Literal diagnostics;                // 08
            Literal writeMultipleCoils;         // 15
            Literal writeMultipleRegisters;     // 16
            Literal maskWriteRegister;          // 22
            Literal readWriteMultipleRegisters; // 23
            Literal deviceIdentification;       // 43
            Literal other;
        };
        // The code in parentheses is added by L10n: "Illegal data address (02)".
        struct ExceptionNames {
            Literal illegalFunction;              // 01
            Literal illegalDataAddress;           // 02
            Literal illegalDataValue;             // 03
            Literal serverDeviceFailure;          // 04
            Literal acknowledge;                  // 05
            Literal serverDeviceBusy;             // 06
            Literal memoryParityError;            // 08
            Literal gatewayPathUnavailable;       // 0A
            Literal gatewayTargetFailedToRespond; // 0B
            Literal other;
        };

        FunctionNames functionNames;
        ExceptionNames exceptionNames;
    } modbus;

    struct BoardTexts {
        OfText usbSerial; // (chip, "FTDI FT232R")
    } board;

    struct ErrorsTexts {
        Literal alertTitle;
        Literal selectPortFirst;
        OfText saveFailed;           // (reason)
        OfText fileOpenFailed;       // (file name)
        OfText importNothing;        // (details: the first issue, or empty)
        OfNumberAndText importIssue; // (line, problem)
        Literal csvMissingColumns;
        OfText csvInvalidTable;       // (cell text)
        OfText csvInvalidAddress;     // (cell text)
        OfText csvInvalidUnit;        // (cell text)
        OfText csvInvalidDataType;    // (cell text)
        OfText csvInvalidNumber;      // (cell text)
        OfText invalidPath;           // (path)
        OfTwoTexts openFailed;        // (path, system message)
        Literal openPermissionDenied; // added after openFailed for EACCES
        OfText busy;                  // (path)
        OfText configurationFailed;   // (system message)
        OfNumber unsupportedBaud;     // (baud rate)
        Literal notOpen;
        OfText writeFailed; // (system message)
        Literal timeout;
        Literal deviceDisconnected;
        OfText demoFailed; // (reason)
    } errors;

    // What is wrong in a project document, shown after the place: "timeoutMs: expected a number".
    struct DocumentTexts {
        OfTwoTexts problemAt; // (key path, problem)
        Literal notJSON;
        Literal expectedObject;
        Literal expectedList;
        Literal expectedText;
        Literal expectedNumber;
        Literal expectedFiniteNumber;
        Fn<std::string(std::int64_t, std::int64_t)> expectedInteger; // (minimum, maximum)
        Literal expectedBoolean;
        Literal expectedUUID;
        Literal missing;
        OfTwoTexts unknownValue; // (text found, accepted texts)
        Literal emptyList;
    } document;

    struct HelpTexts {
        Literal windowTitle;
        Literal searchPrompt;
        Literal noResults;
        Literal tipLabel;
    } help;

    struct StateTexts {
        Literal running;
        Literal stopped;
        Literal serialLost;
    } state;

    struct NoticeTexts {
        Literal emptyTitle;
        Literal emptySteps;
        Literal emptyNoDevice;
        Literal emptyNoDeviceSteps;
        Literal startPolling;
        Literal noResponse;
        Literal serialLost;
        Literal dismiss;
        OfTwoTexts writeFailed; // (datapoint name, reason)
        Literal startFirst;
    } notice;

    struct PollsTexts {
        Literal add;
        Literal addHelp;
        Literal namePlaceholder;
        Literal interval;
        Literal intervalHelp;
        Literal active;
        Literal activeHelp;
        Literal removeTitle;
        Literal remove;
        Literal removeMessage;
        Literal unnamed;
        Literal duplicate;
        Literal tabHelp;
        OfNumber newName;      // (number)
        OfText copyName;       // (poll name)
        OfText removeQuestion; // (poll name)
    } polls;

    struct WriteTexts {
        Literal help;
        OfText title; // (datapoint name)
        Literal off;
        Literal on;
        Literal placeholder;
        Literal button;
    } write;

    struct PaneTexts {
        Literal title;
        Literal log;
        Literal chart;
        Literal clearHistory;
        Literal clearHistoryHelp;
        Literal exportHistory;
        Literal exportHistoryHelp;
        Literal findPlaceholder;
        Literal findNext;
        Literal findPrevious;
        Literal findDone;
    } pane;

    struct ChartTexts {
        Literal emptyTitle;
        Literal emptyText;
        Literal time;
        Literal window;
        Literal windowAll; // the period label for 0 seconds; "min" and "h" are the same everywhere
        Literal windowHelp;
    } chart;

    struct LogTexts {
        // The long description of a failed request; an exception is named by ModbusTexts.
        struct FailureTexts {
            OfNumber unexpectedUnit;   // (unit)
            OfText unexpectedFunction; // (function code, "03")
            OfNumber timeout;          // (time-out in ms)
            Literal crcMismatch;
            Literal malformed;
        };
        // The status column's short form; unexpected unit and function count as invalid.
        struct ShortFailureTexts {
            OfText exception; // (exception code, "02")
            Literal timeout;
            Literal crcMismatch;
            Literal invalid;
        };

        FailureTexts failure;
        ShortFailureTexts shortFailure;
        OfTwoTexts started; // (port path, serial settings, "9600 8E1")
        Literal stopped;
        OfNumber unit;                // (unit ID)
        OfNumberAndText unitFunction; // (unit ID, function code, "03")
        OfText writeFailed;           // (datapoint name)
        OfText serialLost;            // (port path)
        Literal serialRestored;
        Literal lateAnswer;
    } log;

    struct ExampleTexts {
        Literal pollName;
        Literal temperature;
        Literal pressure;
        Literal runtime;
        Literal setpoint;
        Literal mode;
        Literal pump;
        Literal alarm;
    } example;
};

const Texts& englishTexts();
const Texts& dutchTexts();
const Texts& germanTexts();
const Texts& frenchTexts();
const Texts& spanishTexts();

const Texts& texts(Language language);
// The texts of this thread's language (see language()).
const Texts& texts();

} // namespace kestrin::L10n
