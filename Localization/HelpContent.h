#pragma once

#include "Language.h"
#include "Texts.h"

#include <string>
#include <string_view>

namespace kestrin::L10n {

// The translatable texts of the help topics of one language, in page order. HelpTopic.cpp owns
// the structure (ids, symbols, block kinds, screenshot names) and the texts that are the same
// everywhere or already in the catalogue: table keys such as the column titles, "ABCD", the
// exception codes and the shortcuts. Like Texts, every member lacks a default constructor, so a
// language file that leaves one out does not compile.
struct HelpContent {
    struct StartTopic {
        Literal title;
        Fn<std::string(std::string_view)> intro; // (product name) the paragraph that opens it
        Literal stepsHeading;
        Literal connect;
        Literal enterDatapoints;
        Literal choosePort;
        Literal clickStart;
        Literal overviewCaption;
        Literal simulatorTip;
        Literal autosave;
        // Listening to another master: what it does, and that writing is off meanwhile.
        Literal listenHeading;
        Literal listen;
        Literal listenCoverage;
        Literal listenWritingOff;
    } start;

    struct PollsTopic {
        Literal title;
        Literal intro;
        Literal tabDot;
        Literal combining;
        Literal oneRequest;
        Literal cycleHeading;
        Literal cycleEstimate;
        Literal cycleWarning;
        Literal busFigures;
        Literal timeoutOffer;
    } polls;

    // Table values; the keys are the catalogue's column titles and the order labels.
    struct DatapointsTopic {
        Literal title;
        Literal intro;
        Literal unitID;
        Literal table;
        Literal address;
        Literal dataType;
        Literal wordOrder;
        Literal scale;
        Literal format;
        Literal wordOrderHeading;
        Literal wordOrderIntro;
        Literal abcd;
        Literal cdab;
        Literal badc;
        Literal dcba;
        Literal orderTip;
        Literal overlap;
    } datapoints;

    struct WritingTopic {
        Literal title;
        Literal howTo;
        Literal functionCodes;
        Literal onlyWhileReading;
    } writing;

    struct ChartTopic {
        Literal title;
        Literal howTo;
        Literal chartCaption;
        Literal history;
    } chart;

    // Table values; the keys are the CSV header texts, which are English in every file.
    struct CSVTopic {
        Literal title;
        Literal spreadsheets;
        Literal columns;
        Literal name;
        Literal unitID;
        Literal table;
        Literal address;
        Literal dataType;
        Literal wordOrder;
        Literal optional;
        Literal separatorTip;
        Literal simulatorTip;
    } csv;

    // Table values; the keys are the status column's texts and the exception codes.
    struct LogTopic {
        Literal title;
        Literal ok;
        Literal noResponse;
        Literal exception;
        Literal crcError;
        Literal lastGoodValue;
        Literal exceptionCodesHeading;
        Literal exception01;
        Literal exception02;
        Literal exception03;
        Literal exception04;
        Literal exception06;
        Literal logLines;
    } log;

    struct TroubleshootingTopic {
        Literal title;
        Literal noResponseHeading;
        Literal unitID;
        Literal timeout;
        Literal frame;
        Literal wiring;
        Literal cabling;
        Literal busyPort;
        Literal findHeading;
        Literal findIntro;
        Literal findUnits;
        Literal findSettings;
        Literal findRegisters;
        Literal oddValuesHeading;
        Literal scale;
        Literal order;
        Literal offByOne;
        Literal adaptersHeading;
        Literal privacy;
        Literal portMoved;
        Literal slowAdapter;
        Literal rs485;
        Literal portsVerbose;
    } troubleshooting;

    // Table values; the keys are the shortcuts, built from the key names below.
    struct ShortcutsTopic {
        Literal title;
        // The names Qt's own translation of the language gives these keys in menus, so that the
        // table reads as the menus do ("Strg", "Umschalt", "Entf" in German).
        Literal ctrl;
        Literal shift;
        Literal del;
        Literal startStop;
        Literal listen;
        Literal newPoll;
        Literal addDatapoint;
        Literal deleteDatapoints;
        Literal importExport;
        Literal projects;
        Literal findInLog;
        Literal saveLog;
        Literal clearLog;
        Literal openHelp;
    } shortcuts;
};

const HelpContent& englishHelp();
const HelpContent& dutchHelp();
const HelpContent& germanHelp();
const HelpContent& frenchHelp();
const HelpContent& spanishHelp();

const HelpContent& helpContent(Language language);

} // namespace kestrin::L10n
