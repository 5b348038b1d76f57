#include "Texts.h"

namespace kestrin::L10n {

namespace {
constexpr Texts english{
    .header = {
        .port = "Serial port",
        .noPortsFound = "No ports found",
        .choosePort = "Select a port…",
        .portNotConnected = [](std::string_view port) { return concat(port, " (not connected)"); },
        .baudRate = "Baud rate",
        .baudLabel = [](int rate) { return concat(rate, " baud"); },
        .start = "Start",
        .stop = "Stop",
        .frameSettingsHelp = "Data bits, parity, stop bits, timeout and write method",
        .startHelp = "Start reading (Ctrl+R)",
        .stopHelp = "Stop reading (Ctrl+R)",
        .listen = "Listen",
        .stopListening = "Stop Listening",
        .listenHelp = "Listen to another master's traffic without sending a byte (Ctrl+L)",
        .stopListeningHelp = "Stop listening (Ctrl+L)",
        .lockedWhileRunning = "Stop reading to change this",
        .lockedWhileListening = "Stop listening to change this",
        .demoDevice = "Demo device (simulated)",
        .startNeedsPort = "Connect and select a serial port to start",
        .startWaitsForScan = "Find Devices is using the port; start when it is done",
        .startNeedsDatapoints = "Add datapoints to an active poll to start",
        .listenNeedsPort = "Connect and select a serial port to listen",
        .listenWaitsForScan = "Find Devices is using the port; listen when it is done",
    },
    .settings =
        {
            .frame = "Frame",
            .dataBits = "Data bits",
            .parity = "Parity",
            .stopBits = "Stop bits",
            .parityNone = "None",
            .parityEven = "Even",
            .parityOdd = "Odd",
            .modbusDefault = "Modbus default (8E1)",
            .standardNote = "Modbus RTU defaults to 8E1. Many devices use 8N1 or 8N2; check your "
                            "device's manual.",
            .requests = "Requests",
            .responseTimeout = "Response timeout",
            .timeoutHelp = "How long the app waits for the device to answer. After that the "
                           "request counts as a timeout.",
            .combine = "Combine reads",
            .adjacentOnly = "Adjacent only",
            .gapsUpTo = [](int gap) { return concat("Gaps up to ", gap, " addresses"); },
            .combineHelp =
                "Datapoints close together are read in one request. Bridging gaps is faster, but "
                "some devices then answer exception 02 for addresses they do not have.",
            .writeMode = "Writes",
            .writeSingle = "FC05/06 for one value",
            .writeMultiple = "Always FC15/16",
            .writeModeHelp = "Some devices only support FC16 (write multiple registers), even for "
                             "a single register.",
            .rs485 = "RS-485 direction by RTS",
            .rs485Help =
                "For the UARTs of boards such as the Raspberry Pi, whose driver switches the "
                "transceiver with RTS. USB adapters switch by themselves: leave it off for them.",
            .rtsWhileSending = "RTS while sending",
            .rtsHigh = "High",
            .rtsLow = "Low",
            .delayBeforeSend = "Delay before sending",
            .delayAfterSend = "Delay after sending",
        },
    .footer =
        {
            .statistics =
                [](std::int64_t requests, std::int64_t responses, std::int64_t timeouts,
                   std::int64_t exceptions, std::int64_t errors) {
                    return concat("Requests ", requests, " · Responses ", responses,
                                  " · No response ", timeouts, " · Exceptions ", exceptions,
                                  " · Invalid ", errors);
                },
            .options = "Log options",
            .optionsHelp = "Timestamps, raw frames and autoscroll",
            .autoscroll = "Autoscroll",
            .timestamps = "Timestamps",
            .rawFrames = "Show raw RTU frames",
            .rawFramesHelp =
                "Show the complete RTU frame (unit, PDU and CRC) instead of only the data.",
            .onlyProblems = "Log only errors and writes",
            .onlyProblemsHelp =
                "Fast polls fill the log quickly. With this on you only see what needs attention.",
            .save = "Save…",
            .saveHelp = "Save the log as a text file (Ctrl+S)",
            .clear = "Clear log",
            .clearHelp = "Clear the log and counters (Ctrl+K)",
            .outputAccessibility = "Communication log",
        },
    .menu =
        {
            .newProject = "New Project",
            .openProject = "Open Project…",
            .saveProject = "Save Project As…",
            .importCSV = "Import Datapoints (CSV)…",
            .exportCSV = "Export Datapoints (CSV)…",
            .saveLog = "Save Log…",
            .clearLog = "Clear Log",
            .file = "File",
            .help = "Help",
            .quit = "Quit",
            .replaceProjectTitle = "Replace the current project?",
            .replaceProjectMessage = "Its polls and datapoints are removed.",
            .csvFiles = "CSV files",
            .datapointLists = "Datapoint lists",
            .projectFiles = "Project files",
            .textFiles = "Text files",
            .allFiles = "All files",
        },
    .table = {
        .name = "Name",
        .unitID = "Unit",
        .table = "Table",
        .address = "Address",
        .dataType = "Type",
        .wordOrder = "Order",
        .scale = "Scale",
        .value = "Value",
        .unit = "Unit",
        .format = "Display",
        .description = "Description",
        .status = "Status",
        .add = "Datapoint",
        .addHelp = "Add a datapoint at the next free address (Ctrl+Shift+D)",
        .duplicate = "Duplicate",
        .deleteRows = "Delete",
        .csvHelp =
            "Import the list from or export it to Excel, LibreOffice Calc or another program",
        .unitIDHelp = "Slave address of the device (1–247)",
        .addressHelp =
            [](std::string_view modicon) {
                return concat("Protocol address, starting at 0. In Modicon notation: ", modicon,
                              ".");
            },
        .wordOrderHelp = "Byte order of 32- and 64-bit values. ABCD is the Modbus standard; CDAB "
                         "(words swapped) is common in PLCs.",
        .scaleHelp = "Value = raw register value × scale. For example 0.1 when the device sends "
                     "215 for 21.5.",
        .plotHelp = "Show this datapoint in the chart",
        .rawHelp = [](std::string_view raw) { return concat("Raw registers: ", raw); },
        .overlapHelp = "This address overlaps another datapoint, or runs past address 65535.",
        .emptyTitle = "No datapoints yet",
        .emptyText = "Add the datapoints you want to read, or import a list from Excel (CSV). "
                     "Datapoints next to each other are read together.",
        .tableNames =
            {
                .coil = "Coil",
                .discreteInput = "Discrete input",
                .holdingRegister = "Holding register",
                .inputRegister = "Input register",
            },
        .formatNames =
            {
                .decimal = "Decimal",
                .binary = "Binary",
            },
        .waiting = "Waiting…",
        .updatedHelp = [](std::string_view time) { return concat("Last read at ", time); },
        .valueHelp = "Type a value and press Enter. Hex (0x1F) or binary (0b101) works too.",
        .valueInvalid =
            [](std::string_view type) { return concat("This value does not fit in ", type, "."); },
        .unitIDInvalid = "The unit ID is a whole number from 1 to 247.",
        .addressInvalid = "The address is a whole number from 0 to 65535.",
        .scaleInvalid = "The scale is a number, for example 0.1 or 10.",
    },
    .import = {
        .title =
            [](int count) {
                return count == 1 ? concat("1 datapoint found")
                                  : concat(count, " datapoints found");
            },
        .question = "Do you want to add them to the current list, or replace the list?",
        .skipped = [](int count) { return concat(count, " line(s) skipped:"); },
        .add = "Add",
        .replace = "Replace",
        .cancel = "Cancel",
    },
    .modbus =
        {
            .functionNames =
                {
                    .readCoils = "Read coils",
                    .readDiscreteInputs = "Read discrete inputs",
                    .readHoldingRegisters = "Read holding registers",
                    .readInputRegisters = "Read input registers",
                    .writeSingleCoil = "Write single coil",
                    .writeSingleRegister = "Write single register",
                    .diagnostics = "Diagnostics",
                    .writeMultipleCoils = "Write multiple coils",
                    .writeMultipleRegisters = "Write multiple registers",
                    .maskWriteRegister = "Mask write register",
                    .readWriteMultipleRegisters = "Read/write multiple registers",
                    .deviceIdentification = "Device identification",
                    .other = "Function",
                },
            .exceptionNames =
                {
                    .illegalFunction = "Illegal function",
                    .illegalDataAddress = "Illegal data address",
                    .illegalDataValue = "Illegal data value",
                    .serverDeviceFailure = "Server device failure",
                    .acknowledge = "Acknowledge",
                    .serverDeviceBusy = "Server device busy",
                    .memoryParityError = "Memory parity error",
                    .gatewayPathUnavailable = "Gateway path unavailable",
                    .gatewayTargetFailedToRespond = "Gateway target failed to respond",
                    .other = "Exception",
                },
        },
    .board =
        {
            .usbSerial = [](std::string_view chip) { return concat("USB serial (", chip, ")"); },
        },
    .errors = {
        .alertTitle = "Something went wrong",
        .selectPortFirst = "Select a serial port first.",
        .saveFailed = [](std::string_view reason) { return concat("Saving failed: ", reason); },
        .fileOpenFailed =
            [](std::string_view file) {
                return concat("Cannot read ", file, ". Is it a file of this app?");
            },
        .importNothing =
            [](std::string_view details) {
                return concat("No datapoints found in this file. The first line must hold column "
                              "names, with at least Table and Address. ",
                              details);
            },
        .importIssue =
            [](int line, std::string_view problem) { return concat("Line ", line, ": ", problem); },
        .csvMissingColumns = "the columns Table and Address are missing",
        .csvInvalidTable =
            [](std::string_view text) {
                return concat("unknown table '", text, "' (use CO, DI, HR or IR)");
            },
        .csvInvalidAddress =
            [](std::string_view text) {
                return concat("invalid address '", text, "' (0 to 65535)");
            },
        .csvInvalidUnit =
            [](std::string_view text) { return concat("invalid unit ID '", text, "' (1 to 247)"); },
        .csvInvalidDataType =
            [](std::string_view text) { return concat("unknown data type '", text, "'"); },
        .csvInvalidNumber =
            [](std::string_view text) { return concat("invalid number '", text, "'"); },
        .invalidPath =
            [](std::string_view path) {
                return concat("'", path, "' is not a valid serial port.");
            },
        .openFailed =
            [](std::string_view path, std::string_view reason) {
                return concat("Cannot open ", path, ": ", reason, ".");
            },
        .openPermissionDenied =
            "Serial ports are open only to members of the dialout group: add yourself with the "
            "command sudo usermod -aG dialout $USER and log in again.",
        .permissionNotMember =
            [](std::string_view group, std::string_view user) {
                return concat("The port belongs to the group ", group, " and ", user,
                              " is not a member: add yourself with sudo usermod -aG ", group, " ",
                              user, ", then log out and back in.");
            },
        .permissionNotInThisLogin =
            [](std::string_view group) {
                return concat("You were added to the group ", group,
                              " after this login began: log out and back in (or run newgrp ", group,
                              " in a terminal and start Kestrin from there).");
            },
        .permissionMemberRefused =
            [](std::string_view group) {
                return concat("You are in the group ", group,
                              " already, so something else refuses access, such as an access "
                              "control list or a security module.");
            },
        .permissionOwnerOnly = "Only the device's owner may open it; its group may not read and "
                               "write it. A udev rule or the owner must grant access.",
        .busy =
            [](std::string_view path) {
                return concat(
                    path,
                    " is already in use by another program. Close that program and try again.");
            },
        .holderProcess =
            [](int pid, std::string_view program) {
                return concat(program, " (process ", pid, ")");
            },
        .busyBy =
            [](std::string_view path, std::string_view holder) {
                return concat(path, " is in use by ", holder, ".");
            },
        .busyProbablyBy =
            [](std::string_view path, std::string_view holder) {
                return concat(path, " is in use, probably by ", holder, ".");
            },
        .closeHolder = "Close that program and try again.",
        .modemManagerHint =
            "ModemManager probes new serial adapters for modems: stop it with sudo systemctl stop "
            "ModemManager, or keep it off this adapter with a udev rule that sets "
            "ENV{ID_MM_DEVICE_IGNORE}=\"1\".",
        .brlttyHint =
            "brltty, the braille display driver, takes CH340/CH341 adapters for itself. Without a "
            "braille display, stop it with sudo systemctl mask brltty-udev.service brltty.service "
            "(or remove the brltty package), then plug the adapter in again.",
        .configurationFailed =
            [](std::string_view reason) {
                return concat("Configuring the serial port failed: ", reason, ".");
            },
        .rs485Refused =
            [](std::string_view reason) {
                return concat("This port's driver does not support RS-485 direction by RTS (",
                              reason,
                              "). USB adapters switch direction by themselves; the setting is "
                              "for the UARTs of boards such as the Raspberry Pi. Turn it off in "
                              "the serial settings.");
            },
        .unsupportedBaud =
            [](int baud) {
                return concat("Baud rate ", baud, " is not supported by this adapter.");
            },
        .notOpen = "The serial port is not open.",
        .sendRefused = "Nothing is sent while listening.",
        .writeFailed =
            [](std::string_view reason) { return concat("Sending failed: ", reason, "."); },
        .timeout = "No response from the device.",
        .deviceDisconnected = "The adapter was disconnected.",
        .demoFailed =
            [](std::string_view reason) {
                return concat("The demo device could not be started: ", reason);
            },
        .unknownOption =
            [](std::string_view option, std::string_view help) {
                return concat("unknown option ", option, " (see ", help, ")");
            },
        .unexpectedArgument =
            [](std::string_view argument, std::string_view help) {
                return concat("unexpected argument '", argument, "' (see ", help, ")");
            },
        .missingValue =
            [](std::string_view option) { return concat("option ", option, " needs a value"); },
        .missingOption =
            [](std::string_view option) { return concat("option ", option, " is required"); },
        .invalidOptionValue =
            [](std::string_view option, std::string_view value) {
                return concat("invalid value '", value, "' for ", option);
            },
        .optionsExclude =
            [](std::string_view first, std::string_view second) {
                return concat(first, " and ", second, " exclude each other");
            },
        .invalidBaud =
            [](std::string_view value, std::string_view rates) {
                return concat("cannot use the baud rate '", value,
                              "': give a positive whole number, usually one of ", rates);
            },
        .tableNotWritable =
            [](std::string_view table) {
                return concat("table '", table,
                              "' cannot be written: input registers and discrete inputs are "
                              "read-only; write coils (CO) or holding registers (HR)");
            },
    },
    .document = {
        .problemAt = [](std::string_view path,
                        std::string_view problem) { return concat(path, ": ", problem); },
        .notJSON = "not a JSON document",
        .expectedObject = "expected an object",
        .expectedList = "expected a list",
        .expectedText = "expected text",
        .expectedNumber = "expected a number",
        .expectedFiniteNumber = "expected a finite number",
        .expectedInteger =
            [](std::int64_t minimum, std::int64_t maximum) {
                return concat("expected a whole number from ", minimum, " to ", maximum);
            },
        .expectedBoolean = "expected true or false",
        .expectedUUID = "expected a UUID",
        .missing = "missing",
        .unknownValue =
            [](std::string_view found, std::string_view choices) {
                return concat("unknown value '", found, "' (use ", choices, ")");
            },
        .emptyList = "expected at least one entry",
    },
    .help =
        {
            .windowTitle = "Kestrin Help",
            .searchPrompt = "Search help",
            .noResults = "No topics found",
            .tipLabel = "Tip",
        },
    .state =
        {
            .running = "Reading",
            .listening = "Listening",
            .stopped = "Stopped",
            .serialLost = "Serial port lost",
        },
    .notice =
        {
            .emptyTitle = "Ready to read",
            .emptySteps = "Enter your device's datapoints in the table (unit, table, address and "
                          "type), choose the serial port and the same settings as the device at "
                          "the top, and click Start (Ctrl+R).",
            .emptyNoDevice = "No USB adapter found",
            .emptyNoDeviceSteps = "Connect your USB-RS485 adapter. The port then appears by "
                                  "itself. You can already prepare your datapoint list.",
            .startPolling = "Start reading",
            .noResponse = "The device does not respond. Check the unit ID, baud rate, parity and "
                          "stop bits, and the wiring (A/B not swapped).",
            .serialLost = "The serial port is gone. As soon as the adapter is back, reading "
                          "continues by itself.",
            .dismiss = "Dismiss",
            .writeFailed =
                [](std::string_view name, std::string_view reason) {
                    return concat("Writing ", name, " failed: ", reason, ".");
                },
            .listening = "Listening only: Kestrin sends nothing on this bus. The values come from "
                         "the other master's traffic, and writing is off.",
            .stopListeningFirst = "Kestrin is only listening and sends nothing. Stop listening "
                                  "(Ctrl+L) and start reading to write values.",
            .startFirst = "Start reading first (Ctrl+R) to write values.",
        },
    .adapter = {
        .latencyHeld =
            [](int ms, std::string_view path) {
                return concat("The adapter on ", path, " holds every answer back for ", ms,
                              " ms (its latency timer).");
            },
        .latencyCost =
            [](int ms, int now, int best) {
                return concat("With ", ms, " ms, about ", now, " requests a second instead of ",
                              best, ".");
            },
        .setToOneMs = "Set to 1 ms",
        .fixForGood = "Fix for good…",
        .fixTitle = "Latency timer for good",
        .fixSteps =
            [](std::string_view file, std::string_view command) {
                return concat("Save this line as ", file, " (as root), then run ", command,
                              " and plug the adapter in again. From then on FTDI adapters get "
                              "1 ms every time they are plugged in.");
            },
        .copyRule = "Copy Rule",
        .latencySet =
            [](std::string_view path) { return concat("Latency timer of ", path, " set to 1 ms"); },
        .latencySetFailed =
            [](std::string_view path, std::string_view reason) {
                return concat("The latency timer of ", path, " could not be set: ", reason, ".");
            },
    },
    .bus = {
        .button = "Bus",
        .buttonHelp = "How fast each unit answers and how busy the line is, measured while reading",
        .title = "Measured on the bus",
        .nothingYet = "The figures appear once units answer while reading.",
        .answers = "Answers",
        .roundTrip = "Round trip",
        .turnaround = "Turnaround",
        .spreadNote = "Median / 99 % of answers. Turnaround is the device's own time: the round "
                      "trip without the frames on the wire, the silences and the adapter's delay.",
        .poll = "Poll",
        .intervalSet = "Interval set",
        .intervalGot = "Interval got",
        .lineBusy =
            [](int percent) { return concat("The line is busy ", percent, " % of the time."); },
        .unitSummary =
            [](std::int64_t unit, std::int64_t answers) {
                return concat("Unit ", unit, ": ", answers, " answers");
            },
        .roundTripSummary =
            [](std::int64_t median, std::int64_t p99) {
                return concat("round trip ", median, " ms (99 %: ", p99, " ms)");
            },
        .turnaroundSummary =
            [](std::int64_t median, std::int64_t p99) {
                return concat("turnaround ", median, " ms (99 %: ", p99, " ms)");
            },
        .timeoutFits =
            [](std::int64_t unit, std::int64_t ms) {
                return concat("Unit ", unit, " gives 99 % of its answers within ", ms, " ms.");
            },
        .timeoutOffer =
            [](std::int64_t offered, std::int64_t current) {
                return concat("A time-out of ", offered, " ms covers that with room to spare (now ",
                              current, " ms); it applies the next time reading starts.");
            },
        .useTimeout = [](int ms) { return concat("Use ", ms, " ms"); },
        .timeoutSet =
            [](int ms) {
                return concat("Time-out set to ", ms,
                              " ms; it applies the next time reading starts");
            },
    },
    .polls = {
        .add = "New Poll",
        .addHelp = "Another group of datapoints with its own interval (Ctrl+T)",
        .namePlaceholder = "Name",
        .interval = "Interval",
        .intervalHelp = "How often this poll is read",
        .active = "Active",
        .activeHelp = "Off: this poll is skipped",
        .removeTitle = "Remove poll?",
        .remove = "Remove",
        .removeMessage = "The datapoints in this poll are removed too.",
        .unnamed = "Untitled",
        .duplicate = "Duplicate",
        .tabHelp = "Right-click to duplicate or remove",
        .newName = [](int number) { return concat("Poll ", number); },
        .copyName = [](std::string_view name) { return concat(name, " (copy)"); },
        .removeQuestion =
            [](std::string_view name) { return concat("Remove the poll “", name, "”?"); },
        .cycle = [](int ms) { return concat("≈ ", ms, " ms a cycle"); },
        .cycleHelp =
            [](int ms) {
                return concat("One reading of this poll, worked out from the serial settings with ",
                              ms, " ms for each device to answer:");
            },
        .lineLoad =
            [](int percent) { return concat("All active polls need ", percent, " % of the line"); },
        .outlastsInterval =
            [](int cycle, int real, int interval) {
                return concat("Takes ", cycle, " ms: runs every ", real, " ms, not every ",
                              interval, " ms");
            },
        .lineOverloaded =
            [](int percent, int real, int interval) {
                return concat("The line is ", percent, " % loaded: runs every ", real,
                              " ms, not every ", interval, " ms");
            },
        .answerAfterTimeout =
            [](std::int64_t answer, std::int64_t timeout) {
                return concat("An answer takes ", answer, " ms, longer than the ", timeout,
                              " ms response timeout");
            },
        .measuredUnits =
            [](std::string_view units) {
                return concat("Turnaround as measured while reading for unit ", units);
            },
    },
    .write =
        {
            .help = "Write a new value to the device",
            .title = [](std::string_view name) { return concat("Write ", name); },
            .off = "Off (0)",
            .on = "On (1)",
            .placeholder = "New value",
            .button = "Write",
        },
    .pane =
        {
            .title = "View",
            .log = "Log",
            .chart = "Chart",
            .clearHistory = "Clear History",
            .clearHistoryHelp = "Clear all recorded values",
            .exportHistory = "Export History (CSV)…",
            .exportHistoryHelp =
                "Save every value read, with its time, for Excel or LibreOffice Calc",
            .findPlaceholder = "Find in the log",
            .findNext = "Next match",
            .findPrevious = "Previous match",
            .findDone = "Done",
            .exportProgress = "Exporting the history…",
        },
    .chart =
        {
            .emptyTitle = "Nothing to show yet",
            .emptyText =
                "Tick the datapoints you want to follow in the Chart column, and start reading.",
            .time = "Time",
            .window = "Period",
            .windowAll = "All",
            .windowHelp = "Which period the chart shows",
        },
    .log = {
        .failure =
            {
                .unexpectedUnit = [](int unit) { return concat("response from unit ", unit); },
                .unexpectedFunction =
                    [](std::string_view code) {
                        return concat("response with function code ", code);
                    },
                .timeout =
                    [](int timeoutMs) { return concat("no response within ", timeoutMs, " ms"); },
                .crcMismatch = "CRC error in the response",
                .malformed = "response with the wrong length",
            },
        .shortFailure =
            {
                .exception = [](std::string_view code) { return concat("Exception ", code); },
                .timeout = "No response",
                .crcMismatch = "CRC error",
                .invalid = "Invalid response",
            },
        .started =
            [](std::string_view port, std::string_view serial) {
                return concat("Reading started on ", port, " @ ", serial);
            },
        .stopped = "Reading stopped",
        .unit = [](int id) { return concat("Unit ", id); },
        .unitFunction = [](int id,
                           std::string_view code) { return concat("Unit ", id, " · FC ", code); },
        .writeFailed = [](std::string_view name) { return concat("Writing ", name, " failed"); },
        .serialLost =
            [](std::string_view path) {
                return concat("Serial port ", path, " is gone; waiting for it to return");
            },
        .serialRestored = "Serial port open again",
        .serialRestoredAt =
            [](std::string_view path) { return concat("Serial port open again (now ", path, ")"); },
        .lateAnswer = "Late answer discarded",
        .readInParts = [](std::string_view range) { return concat(range, " read in parts"); },
        .refusedAddresses =
            [](std::string_view addresses) { return concat("the device refused ", addresses); },
        .listeningStarted =
            [](std::string_view port, std::string_view serial) {
                return concat("Listening on ", port, " @ ", serial);
            },
        .listeningStopped = "Listening stopped",
        .noResponse = "No response",
        .unmatched = "Fits no request",
        .rs485DelaysLimited =
            [](int ms) {
                return concat("The project's RS-485 delays above ", ms, " ms were shortened to ",
                              ms, " ms, the longest the kernel takes.");
            },
    },
    .example =
        {
            .pollName = "Example device",
            .temperature = "Temperature",
            .pressure = "Pressure",
            .runtime = "Run time",
            .setpoint = "Setpoint",
            .mode = "Mode",
            .pump = "Pump on",
            .alarm = "Alarm",
        },
    .scan = {
        .unitProgress =
            [](int done, int total, int seconds) {
                return concat(done, " of ", total, " units asked, about ", seconds, " s left");
            },
        .sweepProgress =
            [](int done, int total, int seconds) {
                return concat("Setting ", done, " of ", total, ", about ", seconds, " s left");
            },
        .noUnitAnswered = "No unit answered.",
        .noSettingsAnswered = "No unit answered at any of the settings tried.",
        .mapProgress =
            [](std::int64_t requests, std::int64_t seconds) {
                return concat("Request ", requests, ", at least ", seconds, " s left");
            },
        .noAddressFound = "The unit answers, but no address of the range exists.",
        .csvNeedsQt = "This kestrin-cli was built without Qt, so it cannot write a datapoint "
                      "list: leave out --csv, or use a kestrin-cli built with Qt.",
    },
    .plan = {
        .enabled = "enabled",
        .disabled = "disabled",
        .requests = [](int count) { return concat(count, count == 1 ? " request" : " requests"); },
        .cycle = [](int ms) { return concat("cycle ", ms, " ms"); },
        .interval = [](int ms) { return concat("interval ", ms, " ms"); },
        .runsEvery = [](int ms) { return concat("runs every ", ms, " ms"); },
        .notRead = "not read",
        .lineLoad = [](int percent) { return concat("Line load: ", percent, " %"); },
        .badBaudRate =
            [](int rate) {
                return concat("kestrin-cli plan: the project's baud rate ", rate,
                              " is not a positive number");
            },
    },
    .finder = {
        .menuItem = "Find Devices…",
        .title = "Find Devices",
        .findUnits = "Units",
        .findSettings = "Settings",
        .mapRegisters = "Registers",
        .unitsNote = "Asks every unit ID of the range, at the current settings, and lists the "
                     "ones that answer.",
        .settingsNote = "Tries one baud rate and frame after another, the most common first, "
                        "until the unit answers.",
        .registersNote = "Reads the unit's tables to find which addresses exist.",
        .units = "Unit IDs",
        .to = "to",
        .addresses = "Addresses",
        .tables = "Tables",
        .timeoutHelp =
            "How long each unit ID is given to answer. The default suits the line's speed; the "
            "project's time-out stays as it is.",
        .answer = "Answer",
        .late = "Late",
        .lateHelp = "It answered only after its time-out: reading it needs a longer time-out.",
        .count = "Count",
        .addToPoll = "Add to Poll",
        .useSettings = "Use These Settings",
        .stopReadingFirst = "Reading uses the port. Stop reading to search the line.",
        .cancelled = "Cancelled. Shown is what was found until then.",
        .mapIncomplete = "The unit stopped answering before the end of the range.",
        .busyUnknown =
            [](int count) {
                return count == 1
                           ? concat("The device was busy: 1 address is unknown, neither found nor "
                                    "missing.")
                           : concat("The device was busy: ", count,
                                    " addresses are unknown, neither found nor missing.");
            },
        .busyRanges =
            [](std::string_view ranges) {
                return concat("The device was too busy to read ", ranges,
                              " (exception 06): whether these addresses exist is unknown.");
            },
        .tooManyToAdd =
            [](std::int64_t found, std::int64_t most) {
                return concat(
                    "The map found ", found, " addresses, more than the ", most,
                    " datapoints that can be added at once. Map a narrower range or fewer "
                    "tables.");
            },
        .added =
            [](int count) {
                return count == 1 ? concat("1 datapoint added to the poll.")
                                  : concat(count, " datapoints added to the poll.");
            },
        .settingsUsed =
            [](std::string_view serial) { return concat("The project now uses ", serial, "."); },
    },
};
} // namespace

const Texts& englishTexts() {
    return english;
}

} // namespace kestrin::L10n
