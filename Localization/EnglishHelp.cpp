#include "HelpContent.h"

namespace kestrin::L10n {

namespace {
constexpr HelpContent english{
    .start =
        {
            .title = "Getting started",
            .intro =
                [](std::string_view product) {
                    return concat(product,
                                  " is a Modbus RTU master: it reads values from devices on an "
                                  "RS-485 or RS-232 bus, such as energy meters, controllers and "
                                  "sensors, and can write values to them.");
                },
            .stepsHeading = "In four steps",
            .connect = "Connect your USB-RS485 adapter and wire it to the device (A to A, B to B).",
            .enterDatapoints = "Enter the device's **datapoints** in the table: unit ID, table, "
                               "address and type, as in the device's manual.",
            .choosePort = "At the top, choose the **serial port**, the **baud rate** and, with the "
                          "slider button, the frame (for example `8E1`), the same as the device.",
            .clickStart = "Click **Start** (Ctrl+R). The **Value** column shows the current "
                          "values, **Status** whether reading works.",
            .overviewCaption = "A poll with live values and the status per datapoint, with the "
                               "communication below.",
            .simulatorTip = "No device at hand? Start `kestrin --demo`: the window then reads a "
                            "simulated device that serves the example list.",
            .autosave =
                "Your polls and datapoints are saved automatically. **File ▸ Save Project As…** "
                "(Ctrl+Shift+S) makes a separate project file, for example per installation.",
            .listenHeading = "Listening to another master",
            .listen = "Is a PLC or a SCADA system already polling the devices? Click **Listen** "
                      "(Ctrl+L) instead of Start: Kestrin opens the port and sends nothing at "
                      "all. It follows the other master's requests and the answers to them, and "
                      "shows them in the log, the statistics and the chart as if it had read "
                      "them itself.",
            .listenCoverage =
                "A datapoint gets a value only when one of the other master's requests covers "
                "it: the same unit ID, table and addresses. The others stay at **Waiting…**. A "
                "write "
                "the other master makes updates the datapoint once the device confirmed it.",
            .listenWritingOff =
                "While listening, writing is off: on a bus another master runs, Kestrin must "
                "not send. Click **Stop Listening** (Ctrl+L) and start reading to write values.",
        },
    .polls =
        {
            .title = "Polls",
            .intro =
                "A poll is a group of datapoints with its own interval, shown as a tab at the top. "
                "This lets you read fast measurements every 250 ms and counters every minute. "
                "**+** (Ctrl+T) makes a new poll; right-click a tab to duplicate or remove it.",
            .tabDot = "The dot in a tab is green when everything is read and orange when something "
                      "fails. Turn **Active** off to skip a poll for a while.",
            .combining =
                "Datapoints next to each other are read in one request (up to 125 registers or "
                "2000 bits). In the settings (sliders at the top) you can also let small gaps be "
                "bridged: faster, but some devices then answer exception 02.",
            .oneRequest = "There is always one request on the line. Writes go before reads.",
            .cycleHeading = "How long a cycle takes",
            .cycleEstimate =
                "Beside the interval, Kestrin shows how long one reading of the poll holds the "
                "line, for example “≈ 42 ms a cycle”. It is worked out from the serial "
                "settings, giving each device 5 ms to answer until reading has measured its own "
                "turnaround, and counting the adapter's latency timer; hover over it to see each "
                "request and the share of the line all active polls need. `kestrin-cli plan "
                "--project FILE` prints the same for every poll of a project file.",
            .cycleWarning =
                "The text turns orange when the poll cannot be read as often as its interval "
                "asks: one reading takes longer than the interval, or the other polls keep the "
                "line too busy. It then says how often the poll really runs, for example “Takes "
                "140 ms: runs every 140 ms, not every 100 ms”. Give the poll a longer interval, or "
                "move values that can wait to a slower poll. It also warns when an answer takes "
                "longer than the **response timeout**: that request would fail every time.",
            .busFigures =
                "**Bus** at the bottom shows what reading really takes, measured while it runs: "
                "for each unit the round trip and the turnaround (the device's own time), as the "
                "median and 99 % of its answers; for each active poll the interval set and "
                "the interval got; and how much of the time the line is busy. When reading stops, "
                "the log adds one line per unit that answered, such as “Unit 1: 120 answers, "
                "round trip 27 ms (99 %: 36 ms), turnaround 5 ms (99 %: 6 ms)”.",
            .timeoutOffer =
                "Once a unit has answered 50 times, Kestrin compares the **response timeout** "
                "with how fast the units really answer. If another timeout fits better, a notice "
                "over the log offers it, for example **Use 100 ms**; it applies the next time "
                "reading starts. While requests go unanswered or answers come late, only a longer "
                "timeout is offered.",
        },
    .datapoints =
        {
            .title = "Datapoints",
            .intro = "A datapoint is one value in a device, such as a temperature or a setpoint. "
                     "You describe where it is and how it is stored; the app converts the "
                     "registers into a readable value.",
            .unitID = "the slave address of the device (1–247)",
            .table =
                "**Coil** (bit, read and write), **Discrete input** (bit, read only), **Holding "
                "register** (16 bit, read and write) or **Input register** (16 bit, read only)",
            .address = "the protocol address, starting at `0`. Manuals often use Modicon notation: "
                       "holding register `40001` is address `0`, input register `30010` is address "
                       "`9`. Hover over the address to see the Modicon notation.",
            .dataType = "`UInt16`/`Int16` use one register, `UInt32`/`Int32`/`Float32` two and the "
                        "64-bit types four consecutive registers",
            .wordOrder = "the byte order of values that span several registers, see below",
            .scale = "value = raw value × scale; with `0.1`, `215` becomes `21.5`",
            .format =
                "decimal, hex (`0x00FF`) or binary; hex and binary show the raw register bits",
            .wordOrderHeading = "Word order",
            .wordOrderIntro = "Modbus only knows 16-bit registers. How a 32- or 64-bit value is "
                              "spread over the registers differs per manufacturer. The letters "
                              "stand for the bytes, most significant first:",
            .abcd = "high word first: the Modbus standard",
            .cdab = "words swapped, common in PLCs and energy meters",
            .badc = "bytes swapped within each word",
            .dcba = "fully reversed (little-endian)",
            .orderTip = "Does a value look odd, for example a float of `4.6e-41` instead of "
                        "`21.5`? Try another order; usually it is CDAB.",
            .overlap = "A triangle next to the address means the datapoint overlaps another "
                       "datapoint in the same unit and table.",
        },
    .writing =
        {
            .title = "Writing values",
            .howTo =
                "Coils and holding registers can be written. Click the pencil in the **Value** "
                "column, type the new value and click **Write**; for a bit choose **On** or "
                "**Off**. The value is converted with the datapoint's type, order and scale.",
            .functionCodes = "The app uses FC05 for a coil, FC06 for one register and FC16 for "
                             "more registers. If your device only supports FC15/FC16, choose "
                             "**Always FC15/16** in the settings.",
            .onlyWhileReading = "Writing only works while reading is running. If it fails, a "
                                "notice shows the reason, for example exception 02 (address does "
                                "not exist) or 03 (value out of range).",
        },
    .chart =
        {
            .title = "Chart and export",
            .howTo = "Tick the datapoints you want to follow in the **Chart** column and choose "
                     "**Chart** at the bottom. Choose the period at the top right: 1 minute to an "
                     "hour, or everything.",
            .chartCaption = "The temperature over the last minutes.",
            .history = "Every value read is kept (up to 20,000 per datapoint). **Export History "
                       "(CSV)…** gives one line per measurement with time, poll, name, value and "
                       "unit, ready for a pivot table or chart in Excel.",
        },
    .csv =
        {
            .title = "Excel and CSV",
            .spreadsheets = "You can make or edit a datapoint list in Excel or LibreOffice Calc "
                            "and import it as CSV. **CSV ▸ Export Datapoints** gives a file that "
                            "Excel opens correctly right away, with the values of that moment.",
            .columns = "The first line holds the column names. Only **Table** and **Address** are "
                       "required; the order of the columns does not matter.",
            .name = "name of the datapoint",
            .unitID = "slave address, 1 if empty",
            .table = "`CO`, `DI`, `HR` or `IR` (also `coil`, `holding`, `4x` …)",
            .address = "address from 0",
            .dataType = "`uint16`, `int16`, `float32` … (also `float`, `real`, `dint`)",
            .wordOrder = "`ABCD`, `CDAB`, `BADC` or `DCBA`",
            .optional = "optional",
            .separatorTip = "The export follows your locale: where it writes decimals with a "
                            "comma, the file has semicolons and decimal commas (`21,5`), "
                            "otherwise commas and decimal points (`21.5`). On import, comma, "
                            "semicolon and tab are recognised, and both `21,5` and `21.5`.",
            .simulatorTip = "For testing other programs or kestrin-cli, the simulator kestrin-sim "
                            "serves an exported list as a device on a second adapter: "
                            "`kestrin-sim --csv list.csv --port /dev/ttyUSB1`.",
        },
    .log =
        {
            .title = "Status and log",
            .ok = "read, with the response time",
            .noResponse = "no answer within the response timeout",
            .exception = "the device refuses the request, see below",
            .crcError = "the answer was damaged on the way",
            .lastGoodValue = "After a failure the last good value stays, in grey. Hover over a "
                             "value for the raw registers, over the status for the time.",
            .exceptionCodesHeading = "Exception codes",
            .exception01 = "the device does not support this function code",
            .exception02 = "this address does not exist (note: addresses start at 0)",
            .exception03 = "invalid value or quantity",
            .exception04 = "failure in the device",
            .exception06 = "device busy, try again later",
            .logLines = "The log shows every answer (←), every write (✎) and every failure (✕). "
                        "**Log options** (sliders at the bottom) offer timestamps, raw frames, "
                        "autoscroll, or **only errors and writes** for fast polls.",
        },
    .troubleshooting =
        {
            .title = "Troubleshooting",
            .noResponseHeading = "No response",
            .unitID = "Does the **unit ID** match the device's slave address?",
            .timeout =
                "Is the device slow to respond? Increase the **response timeout** in the settings.",
            .frame = "Are baud rate, parity and stop bits the same on both sides? Try `8N1` or "
                     "`8N2` if `8E1` does not work.",
            .wiring = "Are A and B swapped? Swapping them is harmless and often the fix.",
            .cabling = "Use twisted-pair cable, a 120 Ω termination resistor at both ends of the "
                       "bus and a common ground.",
            .busyPort =
                "Is the port busy? The message names the program holding it, for example "
                "ModemManager (process 812), and how to stop it: ModemManager probes new adapters "
                "for modems, and brltty (for braille displays) takes CH34x adapters. Kestrin locks "
                "the port it reads, so a second Kestrin, even one run as root, cannot open it. The "
                "common chips (FTDI, CP210x, CH34x, PL2303, CDC-ACM) need no extra driver.",
            .findHeading = "Finding devices",
            .findIntro = "Unit ID, baud rate or addresses unknown? **Poller ▸ Find Devices…** "
                         "searches the line while reading is stopped:",
            .findUnits = "**Units** asks every unit ID of a range at the current settings and "
                         "lists the ones that answer; click one to scan it further.",
            .findSettings = "**Settings** tries the usual baud rates and frames until the unit "
                            "answers; **Use These Settings** makes them the project's.",
            .findRegisters = "**Registers** reads which addresses of each table the unit has; "
                             "**Add to Poll** adds them to the current poll as datapoints. "
                             "Addresses the unit was too busy to read are counted apart, as in “96 "
                             "+ 32 ?”: whether they exist is unknown.",
            .oddValuesHeading = "Odd values",
            .scale = "Is the size wrong? Check the **scale** (for example 0.1 or 0.01).",
            .order = "Is a 32-bit value wrong? Try another **order**, usually CDAB.",
            .offByOne = "Is everything one address off? Subtract 1: the manual then uses addresses "
                        "from 1 (or 40001).",
            .adaptersHeading = "Ports and adapters",
            .privacy =
                "Can a port not be opened? The message names the group that owns it (usually "
                "**dialout**), says whether you are in it, and gives the command that adds you by "
                "your user name, for example `sudo usermod -aG dialout alice`; then log out and "
                "back in. If you were added after logging in, logging in again is all it takes. "
                "Kestrin talks only to the serial port: nothing goes over the network, and your "
                "lists and settings stay on this computer.",
            .portMoved =
                "Kestrin remembers the chosen adapter by its USB identity (vendor, product, serial "
                "number). If it comes back under another name after being plugged in again, for "
                "example `/dev/ttyUSB1` instead of `/dev/ttyUSB0`, reading resumes there and the "
                "log says “Serial port open again (now /dev/ttyUSB1)”. Two identical adapters are "
                "told apart in the port list by their serial numbers.",
            .slowAdapter =
                "FTDI adapters hold every answer back for their latency timer, 16 ms by default. "
                "Kestrin asks the driver for low latency while it reads; where the timer still "
                "stands above 1 ms, a notice over the log shows what that costs, for example “With "
                "16 ms, about 45 requests a second instead of 185.” **Set to 1 ms** lowers it "
                "until the adapter is unplugged (the button appears only where the timer may be "
                "changed); **Fix for good…** shows the udev rule that sets 1 ms every time the "
                "adapter is plugged in.",
            .rs485 =
                "On the UART of a board such as the Raspberry Pi, the driver can switch an RS-485 "
                "transceiver's direction with RTS: turn on **RS-485 direction by RTS** in the "
                "settings (sliders at the top) and set **RTS while sending**, **Delay before "
                "sending** and **Delay after sending** to what the transceiver needs. USB adapters "
                "switch direction by themselves: leave it off for them. A port whose driver lacks "
                "the kernel's RS-485 mode does not open, and the message says so.",
            .portsVerbose = "`kestrin-cli ports --verbose` shows all of this for every port at "
                            "once: the /dev/serial/by-id link, the driver, the USB identity, the "
                            "owning group and whether you may open the port, the program holding "
                            "it, the latency timer and whether the driver has RS-485 mode.",
        },
    .shortcuts =
        {
            .title = "Keyboard shortcuts",
            .ctrl = "Ctrl",
            .shift = "Shift",
            .del = "Del",
            .startStop = "Start / stop reading",
            .listen = "Listen / stop listening",
            .newPoll = "New poll",
            .addDatapoint = "Add datapoint",
            .deleteDatapoints = "Delete selected datapoints",
            .importExport = "Import / export datapoints (CSV)",
            .projects = "New project / open / save as",
            .findInLog = "Find in the log",
            .saveLog = "Save log",
            .clearLog = "Clear log",
            .openHelp = "Open this help",
        },
};
} // namespace

const HelpContent& englishHelp() {
    return english;
}

} // namespace kestrin::L10n
