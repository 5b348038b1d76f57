#include "Texts.h"

namespace kestrin::L10n {

namespace {
constexpr Texts german{
    .header = {
        .port = "Serielle Schnittstelle",
        .noPortsFound = "Keine Schnittstellen gefunden",
        .choosePort = "Schnittstelle wählen…",
        .portNotConnected =
            [](std::string_view port) { return concat(port, " (nicht verbunden)"); },
        .baudRate = "Baudrate",
        .baudLabel = [](int rate) { return concat(rate, " Baud"); },
        .start = "Starten",
        .stop = "Stoppen",
        .frameSettingsHelp = "Datenbits, Parität, Stoppbits, Timeout und Schreibmethode",
        .startHelp = "Lesen starten (Strg+R)",
        .stopHelp = "Lesen stoppen (Strg+R)",
        .listen = "Mithören",
        .stopListening = "Mithören beenden",
        .listenHelp =
            "Den Verkehr eines anderen Masters mithören, ohne ein Byte zu senden (Strg+L)",
        .stopListeningHelp = "Mithören beenden (Strg+L)",
        .lockedWhileRunning = "Stoppen Sie das Lesen, um dies zu ändern",
        .lockedWhileListening = "Beenden Sie das Mithören, um dies zu ändern",
        .demoDevice = "Demogerät (simuliert)",
        .startNeedsPort = "Zum Starten eine serielle Schnittstelle anschließen und wählen",
        .startWaitsForScan = "Geräte suchen belegt den Port; starten, sobald es fertig ist",
        .startNeedsDatapoints = "Zum Starten Datenpunkte in einer aktiven Abfrage anlegen",
        .listenNeedsPort = "Zum Mithören eine serielle Schnittstelle anschließen und wählen",
        .listenWaitsForScan = "Geräte suchen belegt den Port; mithören, sobald es fertig ist",
    },
    .settings =
        {
            .frame = "Zeichenformat",
            .dataBits = "Datenbits",
            .parity = "Parität",
            .stopBits = "Stoppbits",
            .parityNone = "Keine",
            .parityEven = "Gerade",
            .parityOdd = "Ungerade",
            .modbusDefault = "Modbus-Standard (8E1)",
            .standardNote = "Modbus RTU verwendet standardmäßig 8E1. Viele Geräte nutzen 8N1 oder "
                            "8N2; prüfen Sie das Handbuch Ihres Geräts.",
            .requests = "Anfragen",
            .responseTimeout = "Antwort-Timeout",
            .timeoutHelp = "Wie lange das Programm auf die Antwort des Geräts wartet. Danach "
                           "zählt die Anfrage als Timeout.",
            .combine = "Lesezugriffe zusammenfassen",
            .adjacentOnly = "Nur benachbarte Adressen",
            .gapsUpTo = [](int gap) { return concat("Lücken bis zu ", gap, " Adressen"); },
            .combineHelp =
                "Nah beieinanderliegende Datenpunkte werden in einer Anfrage gelesen. Das "
                "Überbrücken von Lücken ist schneller, aber manche Geräte antworten dann mit "
                "Ausnahme 02 für Adressen, die sie nicht haben.",
            .writeMode = "Schreibzugriffe",
            .writeSingle = "FC05/06 für einen Wert",
            .writeMultiple = "Immer FC15/16",
            .writeModeHelp = "Manche Geräte unterstützen nur FC16 (Mehrere Register schreiben), "
                             "auch für ein einzelnes Register.",
            .rs485 = "RS-485-Richtung über RTS",
            .rs485Help =
                "Für die UARTs von Boards wie dem Raspberry Pi, deren Treiber den "
                "Transceiver mit RTS umschaltet. USB-Adapter schalten selbst um: Lassen Sie "
                "es für sie aus.",
            .rtsWhileSending = "RTS beim Senden",
            .rtsHigh = "Hoch",
            .rtsLow = "Niedrig",
            .delayBeforeSend = "Wartezeit vor dem Senden",
            .delayAfterSend = "Wartezeit nach dem Senden",
        },
    .footer =
        {
            .statistics =
                [](std::int64_t requests, std::int64_t responses, std::int64_t timeouts,
                   std::int64_t exceptions, std::int64_t errors) {
                    return concat("Anfragen ", requests, " · Antworten ", responses,
                                  " · Keine Antwort ", timeouts, " · Ausnahmen ", exceptions,
                                  " · Ungültig ", errors);
                },
            .options = "Log-Optionen",
            .optionsHelp = "Zeitstempel, Rohtelegramme und automatisches Scrollen",
            .autoscroll = "Automatisch scrollen",
            .timestamps = "Zeitstempel",
            .rawFrames = "Rohe RTU-Telegramme anzeigen",
            .rawFramesHelp = "Das vollständige RTU-Telegramm (Geräteadresse, PDU und CRC) "
                             "anzeigen, nicht nur die Daten.",
            .onlyProblems = "Nur Fehler und Schreibzugriffe ins Log schreiben",
            .onlyProblemsHelp = "Schnelle Abfragen füllen das Log rasch. Ist diese Option "
                                "eingeschaltet, sehen Sie nur, was Aufmerksamkeit erfordert.",
            .save = "Speichern…",
            .saveHelp = "Das Log als Textdatei speichern (Strg+S)",
            .clear = "Log leeren",
            .clearHelp = "Das Log leeren und die Zähler zurücksetzen (Strg+K)",
            .outputAccessibility = "Kommunikations-Log",
        },
    .menu =
        {
            .newProject = "Neues Projekt",
            .openProject = "Projekt öffnen…",
            .saveProject = "Projekt speichern unter…",
            .importCSV = "Datenpunkte importieren (CSV)…",
            .exportCSV = "Datenpunkte exportieren (CSV)…",
            .saveLog = "Log speichern…",
            .clearLog = "Log leeren",
            .file = "Datei",
            .help = "Hilfe",
            .quit = "Beenden",
            .replaceProjectTitle = "Aktuelles Projekt ersetzen?",
            .replaceProjectMessage = "Seine Abfragen und Datenpunkte werden entfernt.",
            .csvFiles = "CSV-Dateien",
            .datapointLists = "Datenpunktlisten",
            .projectFiles = "Projektdateien",
            .textFiles = "Textdateien",
            .allFiles = "Alle Dateien",
        },
    .table = {
        .name = "Name",
        .unitID = "Geräteadresse",
        .table = "Tabelle",
        .address = "Adresse",
        .dataType = "Typ",
        .wordOrder = "Reihenfolge",
        .scale = "Faktor",
        .value = "Wert",
        .unit = "Einheit",
        .format = "Anzeige",
        .description = "Beschreibung",
        .status = "Status",
        .add = "Datenpunkt",
        .addHelp = "Einen Datenpunkt an der nächsten freien Adresse hinzufügen (Strg+Umschalt+D)",
        .duplicate = "Duplizieren",
        .deleteRows = "Löschen",
        .csvHelp = "Die Liste aus Excel, LibreOffice Calc oder einem anderen Programm importieren "
                   "oder dorthin exportieren",
        .unitIDHelp = "Adresse des Geräts am Bus, oft Slave-Adresse genannt (1–247)",
        .addressHelp =
            [](std::string_view modicon) {
                return concat("Protokolladresse, beginnend bei 0. In Modicon-Notation: ", modicon,
                              ".");
            },
        .wordOrderHelp = "Byte-Reihenfolge von 32- und 64-Bit-Werten. ABCD ist der "
                         "Modbus-Standard; CDAB (Wörter vertauscht) ist bei SPS üblich.",
        .scaleHelp = "Wert = Rohwert des Registers × Faktor. Zum Beispiel 0,1, wenn das Gerät "
                     "215 für 21,5 sendet.",
        .plotHelp = "Diesen Datenpunkt im Diagramm anzeigen",
        .rawHelp = [](std::string_view raw) { return concat("Registerrohwerte: ", raw); },
        .overlapHelp = "Diese Adresse überschneidet sich mit einem anderen Datenpunkt oder reicht "
                       "über Adresse 65535 hinaus.",
        .emptyTitle = "Noch keine Datenpunkte",
        .emptyText = "Fügen Sie die Datenpunkte hinzu, die Sie lesen möchten, oder importieren "
                     "Sie eine Liste aus Excel (CSV). Benachbarte Datenpunkte werden gemeinsam "
                     "gelesen.",
        .tableNames =
            {
                .coil = "Coil",
                .discreteInput = "Digitaleingang",
                .holdingRegister = "Halteregister",
                .inputRegister = "Eingangsregister",
            },
        .formatNames =
            {
                .decimal = "Dezimal",
                .binary = "Binär",
            },
        .waiting = "Wartet…",
        .updatedHelp = [](std::string_view time) { return concat("Zuletzt gelesen um ", time); },
        .valueHelp = "Geben Sie einen Wert ein und drücken Sie die Eingabetaste. Hex (0x1F) oder "
                     "binär (0b101) geht ebenfalls.",
        .valueInvalid =
            [](std::string_view type) {
                return concat("Dieser Wert passt nicht in den Datentyp ", type, ".");
            },
        .unitIDInvalid = "Die Geräteadresse ist eine ganze Zahl von 1 bis 247.",
        .addressInvalid = "Die Adresse ist eine ganze Zahl von 0 bis 65535.",
        .scaleInvalid = "Der Faktor ist eine Zahl, zum Beispiel 0,1 oder 10.",
    },
    .import = {
        .title =
            [](int count) {
                return count == 1 ? concat("1 Datenpunkt gefunden")
                                  : concat(count, " Datenpunkte gefunden");
            },
        .question = "Möchten Sie sie zur aktuellen Liste hinzufügen oder die Liste ersetzen?",
        .skipped =
            [](int count) {
                return count == 1 ? concat("1 Zeile übersprungen:")
                                  : concat(count, " Zeilen übersprungen:");
            },
        .add = "Hinzufügen",
        .replace = "Ersetzen",
        .cancel = "Abbrechen",
    },
    .modbus =
        {
            .functionNames =
                {
                    .readCoils = "Coils lesen",
                    .readDiscreteInputs = "Digitaleingänge lesen",
                    .readHoldingRegisters = "Halteregister lesen",
                    .readInputRegisters = "Eingangsregister lesen",
                    .writeSingleCoil = "Einzelne Coil schreiben",
                    .writeSingleRegister = "Einzelnes Register schreiben",
                    .diagnostics = "Diagnose",
                    .writeMultipleCoils = "Mehrere Coils schreiben",
                    .writeMultipleRegisters = "Mehrere Register schreiben",
                    .maskWriteRegister = "Register maskiert schreiben",
                    .readWriteMultipleRegisters = "Mehrere Register lesen/schreiben",
                    .deviceIdentification = "Geräteidentifikation",
                    .other = "Funktion",
                },
            .exceptionNames =
                {
                    .illegalFunction = "Unzulässige Funktion",
                    .illegalDataAddress = "Unzulässige Datenadresse",
                    .illegalDataValue = "Unzulässiger Datenwert",
                    .serverDeviceFailure = "Gerätefehler",
                    .acknowledge = "Bestätigung",
                    .serverDeviceBusy = "Gerät beschäftigt",
                    .memoryParityError = "Speicherparitätsfehler",
                    .gatewayPathUnavailable = "Gateway-Pfad nicht verfügbar",
                    .gatewayTargetFailedToRespond = "Gateway-Zielgerät antwortet nicht",
                    .other = "Ausnahme",
                },
        },
    .board =
        {
            .usbSerial = [](std::string_view chip) { return concat("USB-Seriell (", chip, ")"); },
        },
    .errors = {
        .alertTitle = "Es ist ein Fehler aufgetreten",
        .selectPortFirst = "Wählen Sie zuerst eine serielle Schnittstelle.",
        .saveFailed =
            [](std::string_view reason) { return concat("Speichern fehlgeschlagen: ", reason); },
        .fileOpenFailed =
            [](std::string_view file) {
                return concat("„", file,
                              "“ kann nicht gelesen werden. Ist es eine Datei dieses Programms?");
            },
        .importNothing =
            [](std::string_view details) {
                return concat("In dieser Datei wurden keine Datenpunkte gefunden. Die erste Zeile "
                              "muss die Spaltennamen enthalten, mindestens Table und Address. ",
                              details);
            },
        .importIssue =
            [](int line, std::string_view problem) {
                return concat("Zeile ", line, ": ", problem);
            },
        .csvMissingColumns = "die Spalten Table und Address fehlen",
        .csvInvalidTable =
            [](std::string_view text) {
                return concat("unbekannte Tabelle „", text, "“ (CO, DI, HR oder IR verwenden)");
            },
        .csvInvalidAddress =
            [](std::string_view text) {
                return concat("ungültige Adresse „", text, "“ (0 bis 65535)");
            },
        .csvInvalidUnit =
            [](std::string_view text) {
                return concat("ungültige Geräteadresse „", text, "“ (1 bis 247)");
            },
        .csvInvalidDataType =
            [](std::string_view text) { return concat("unbekannter Datentyp „", text, "“"); },
        .csvInvalidNumber =
            [](std::string_view text) { return concat("ungültige Zahl „", text, "“"); },
        .invalidPath =
            [](std::string_view path) {
                return concat("„", path, "“ ist keine gültige serielle Schnittstelle.");
            },
        .openFailed =
            [](std::string_view path, std::string_view reason) {
                return concat(path, " kann nicht geöffnet werden: ", reason, ".");
            },
        .openPermissionDenied =
            "Serielle Schnittstellen sind nur für Mitglieder der Gruppe dialout zugänglich: Fügen "
            "Sie sich mit dem Befehl sudo usermod -aG dialout $USER hinzu und melden Sie sich neu "
            "an.",
        .permissionNotMember =
            [](std::string_view group, std::string_view user) {
                return concat("Die Schnittstelle gehört der Gruppe ", group, ", und ", user,
                              " ist kein Mitglied: Fügen Sie sich mit sudo usermod -aG ", group,
                              " ", user, " hinzu und melden Sie sich danach ab und wieder an.");
            },
        .permissionNotInThisLogin =
            [](std::string_view group) {
                return concat("Sie wurden der Gruppe ", group,
                              " erst nach dieser Anmeldung hinzugefügt: Melden Sie sich ab und "
                              "wieder an (oder führen Sie newgrp ",
                              group, " in einem Terminal aus und starten Sie Kestrin von dort).");
            },
        .permissionMemberRefused =
            [](std::string_view group) {
                return concat("Sie sind bereits Mitglied der Gruppe ", group,
                              "; etwas anderes verweigert den Zugriff, etwa eine "
                              "Zugriffssteuerungsliste (ACL) oder ein Sicherheitsmodul.");
            },
        .permissionOwnerOnly =
            "Nur der Eigentümer des Geräts darf es öffnen; seine Gruppe hat keine Lese- und "
            "Schreibrechte. Eine udev-Regel oder der Eigentümer muss den Zugriff gewähren.",
        .busy =
            [](std::string_view path) {
                return concat(path,
                              " wird bereits von einem anderen Programm verwendet. Schließen Sie "
                              "dieses Programm und versuchen Sie es erneut.");
            },
        .holderProcess =
            [](int pid, std::string_view program) {
                return concat(program, " (Prozess ", pid, ")");
            },
        .busyBy =
            [](std::string_view path, std::string_view holder) {
                return concat(path, " wird von ", holder, " verwendet.");
            },
        .busyProbablyBy =
            [](std::string_view path, std::string_view holder) {
                return concat(path, " wird verwendet, vermutlich von ", holder, ".");
            },
        .closeHolder = "Schließen Sie dieses Programm und versuchen Sie es erneut.",
        .modemManagerHint =
            "ModemManager prüft neue serielle Adapter auf Modems: Beenden Sie ihn mit sudo "
            "systemctl stop ModemManager, oder halten Sie ihn mit einer udev-Regel, die "
            "ENV{ID_MM_DEVICE_IGNORE}=\"1\" setzt, von diesem Adapter fern.",
        .brlttyHint = "brltty, der Treiber für Braillezeilen, belegt CH340/CH341-Adapter für sich. "
                      "Ohne Braillezeile stoppen Sie ihn mit sudo systemctl mask "
                      "brltty-udev.service brltty.service (oder entfernen das Paket brltty) und "
                      "stecken den Adapter danach neu ein.",
        .configurationFailed =
            [](std::string_view reason) {
                return concat("Die Konfiguration der seriellen Schnittstelle ist fehlgeschlagen: ",
                              reason, ".");
            },
        .rs485Refused =
            [](std::string_view reason) {
                return concat("Der Treiber dieser Schnittstelle kann die RS-485-Richtung nicht "
                              "über RTS schalten (",
                              reason,
                              "). USB-Adapter schalten die Richtung selbst um; die Einstellung "
                              "ist für die UARTs von Boards wie dem Raspberry Pi gedacht. "
                              "Schalten Sie sie in den seriellen Einstellungen aus.");
            },
        .unsupportedBaud =
            [](int baud) {
                return concat("Die Baudrate ", baud, " wird von diesem Adapter nicht unterstützt.");
            },
        .notOpen = "Die serielle Schnittstelle ist nicht geöffnet.",
        .sendRefused = "Beim Mithören wird nichts gesendet.",
        .writeFailed =
            [](std::string_view reason) { return concat("Senden fehlgeschlagen: ", reason, "."); },
        .timeout = "Keine Antwort vom Gerät.",
        .deviceDisconnected = "Der Adapter wurde getrennt.",
        .demoFailed =
            [](std::string_view reason) {
                return concat("Das Demogerät konnte nicht gestartet werden: ", reason);
            },
        .unknownOption =
            [](std::string_view option, std::string_view help) {
                return concat("unbekannte Option ", option, " (siehe ", help, ")");
            },
        .unexpectedArgument =
            [](std::string_view argument, std::string_view help) {
                return concat("unerwartetes Argument „", argument, "“ (siehe ", help, ")");
            },
        .missingValue =
            [](std::string_view option) {
                return concat("die Option ", option, " braucht einen Wert");
            },
        .missingOption =
            [](std::string_view option) { return concat("die Option ", option, " fehlt"); },
        .invalidOptionValue =
            [](std::string_view option, std::string_view value) {
                return concat("ungültiger Wert „", value, "“ für ", option);
            },
        .optionsExclude =
            [](std::string_view first, std::string_view second) {
                return concat(first, " und ", second, " schließen einander aus");
            },
        .invalidBaud =
            [](std::string_view value, std::string_view rates) {
                return concat("die Baudrate „", value,
                              "“ ist nicht verwendbar: erlaubt ist eine positive ganze Zahl, "
                              "üblich ist eine von ",
                              rates);
            },
        .tableNotWritable =
            [](std::string_view table) {
                return concat("die Tabelle „", table,
                              "“ ist nicht beschreibbar: Eingangsregister und Digitaleingänge "
                              "sind nur lesbar; beschreibbar sind Coils (CO) und Halteregister "
                              "(HR)");
            },
    },
    .document = {
        .problemAt = [](std::string_view path,
                        std::string_view problem) { return concat(path, ": ", problem); },
        .notJSON = "kein JSON-Dokument",
        .expectedObject = "Objekt erwartet",
        .expectedList = "Liste erwartet",
        .expectedText = "Text erwartet",
        .expectedNumber = "Zahl erwartet",
        .expectedFiniteNumber = "endliche Zahl erwartet",
        .expectedInteger =
            [](std::int64_t minimum, std::int64_t maximum) {
                return concat("ganze Zahl von ", minimum, " bis ", maximum, " erwartet");
            },
        .expectedBoolean = "true oder false erwartet",
        .expectedUUID = "UUID erwartet",
        .missing = "fehlt",
        .unknownValue =
            [](std::string_view found, std::string_view choices) {
                return concat("unbekannter Wert „", found, "“ (", choices, " verwenden)");
            },
        .emptyList = "mindestens ein Eintrag erwartet",
    },
    .help =
        {
            .windowTitle = "Kestrin-Hilfe",
            .searchPrompt = "Hilfe durchsuchen",
            .noResults = "Keine Themen gefunden",
            .tipLabel = "Tipp",
        },
    .state =
        {
            .running = "Lesen läuft",
            .listening = "Hört mit",
            .stopped = "Gestoppt",
            .serialLost = "Serielle Schnittstelle getrennt",
        },
    .notice =
        {
            .emptyTitle = "Bereit zum Lesen",
            .emptySteps = "Tragen Sie die Datenpunkte Ihres Geräts in die Tabelle ein "
                          "(Geräteadresse, Tabelle, Adresse und Typ), wählen Sie oben die "
                          "serielle Schnittstelle und dieselben Einstellungen wie am Gerät und "
                          "klicken Sie auf Starten (Strg+R).",
            .emptyNoDevice = "Kein USB-Adapter gefunden",
            .emptyNoDeviceSteps = "Schließen Sie Ihren USB-RS485-Adapter an. Die Schnittstelle "
                                  "erscheint dann von selbst. Ihre Datenpunktliste können Sie "
                                  "schon jetzt vorbereiten.",
            .startPolling = "Lesen starten",
            .noResponse = "Das Gerät antwortet nicht. Prüfen Sie Geräteadresse, Baudrate, Parität "
                          "und Stoppbits sowie die Verkabelung (A/B nicht vertauscht).",
            .serialLost = "Die serielle Schnittstelle ist nicht mehr vorhanden. Sobald der "
                          "Adapter wieder da ist, wird das Lesen von selbst fortgesetzt.",
            .dismiss = "Schließen",
            .writeFailed =
                [](std::string_view name, std::string_view reason) {
                    return concat("Schreiben von „", name, "“ fehlgeschlagen: ", reason, ".");
                },
            .listening = "Nur Mithören: Kestrin sendet nichts auf diesem Bus. Die Werte stammen "
                         "aus dem Verkehr des anderen Masters, Schreiben ist aus.",
            .stopListeningFirst =
                "Kestrin hört nur mit und sendet nichts. Beenden Sie das Mithören (Strg+L) und "
                "starten Sie das Lesen, um Werte zu schreiben.",
            .startFirst = "Starten Sie zuerst das Lesen (Strg+R), um Werte zu schreiben.",
        },
    .adapter = {
        .latencyHeld =
            [](int ms, std::string_view path) {
                return concat("Der Adapter an ", path, " hält jede Antwort ", ms,
                              " ms zurück (sein Latency-Timer).");
            },
        .latencyCost =
            [](int ms, int now, int best) {
                return concat("Mit ", ms, " ms etwa ", now, " Anfragen pro Sekunde statt ", best,
                              ".");
            },
        .setToOneMs = "Auf 1 ms setzen",
        .fixForGood = "Dauerhaft beheben…",
        .fixTitle = "Latency-Timer dauerhaft einstellen",
        .fixSteps =
            [](std::string_view file, std::string_view command) {
                return concat("Speichern Sie diese Zeile als ", file,
                              " (als root), führen Sie dann ", command,
                              " aus und stecken Sie den Adapter neu ein. Danach erhalten "
                              "FTDI-Adapter bei jedem Einstecken 1 ms.");
            },
        .copyRule = "Regel kopieren",
        .latencySet =
            [](std::string_view path) {
                return concat("Latency-Timer von ", path, " auf 1 ms gesetzt");
            },
        .latencySetFailed =
            [](std::string_view path, std::string_view reason) {
                return concat("Der Latency-Timer von ", path,
                              " konnte nicht gesetzt werden: ", reason, ".");
            },
    },
    .bus = {
        .button = "Bus",
        .buttonHelp = "Wie schnell jedes Gerät antwortet und wie ausgelastet die Leitung ist, "
                      "gemessen beim Lesen",
        .title = "Am Bus gemessen",
        .nothingYet = "Die Werte erscheinen, sobald Geräte beim Lesen antworten.",
        .answers = "Antworten",
        .roundTrip = "Umlaufzeit",
        .turnaround = "Reaktionszeit",
        .spreadNote = "Median / 99 % der Antworten. Die Reaktionszeit ist die Zeit des Geräts "
                      "selbst: die Umlaufzeit ohne die Telegramme auf der Leitung, die Pausen und "
                      "die Verzögerung des Adapters.",
        .poll = "Abfrage",
        .intervalSet = "Intervall eingestellt",
        .intervalGot = "Intervall erreicht",
        .lineBusy =
            [](int percent) {
                return concat("Die Leitung ist zu ", percent, " % der Zeit belegt.");
            },
        .unitSummary =
            [](std::int64_t unit, std::int64_t answers) {
                return concat("Geräteadresse ", unit, ": ", answers, " Antworten");
            },
        .roundTripSummary =
            [](std::int64_t median, std::int64_t p99) {
                return concat("Umlaufzeit ", median, " ms (99 %: ", p99, " ms)");
            },
        .turnaroundSummary =
            [](std::int64_t median, std::int64_t p99) {
                return concat("Reaktionszeit ", median, " ms (99 %: ", p99, " ms)");
            },
        .timeoutFits =
            [](std::int64_t unit, std::int64_t ms) {
                return concat("Geräteadresse ", unit,
                              " liefert 99 % ihrer Antworten innerhalb von ", ms, " ms.");
            },
        .timeoutOffer =
            [](std::int64_t offered, std::int64_t current) {
                return concat("Ein Timeout von ", offered, " ms deckt das mit Reserve ab (jetzt ",
                              current, " ms); es gilt ab dem nächsten Start des Lesens.");
            },
        .useTimeout = [](int ms) { return concat(ms, " ms verwenden"); },
        .timeoutSet =
            [](int ms) {
                return concat("Timeout auf ", ms,
                              " ms gesetzt; es gilt ab dem nächsten Start des Lesens");
            },
    },
    .polls = {
        .add = "Neue Abfrage",
        .addHelp = "Eine weitere Gruppe von Datenpunkten mit eigenem Intervall (Strg+T)",
        .namePlaceholder = "Name",
        .interval = "Intervall",
        .intervalHelp = "Wie oft diese Abfrage gelesen wird",
        .active = "Aktiv",
        .activeHelp = "Aus: Diese Abfrage wird übersprungen",
        .removeTitle = "Abfrage entfernen?",
        .remove = "Entfernen",
        .removeMessage = "Die Datenpunkte dieser Abfrage werden ebenfalls entfernt.",
        .unnamed = "Unbenannt",
        .duplicate = "Duplizieren",
        .tabHelp = "Rechtsklick zum Duplizieren oder Entfernen",
        .newName = [](int number) { return concat("Abfrage ", number); },
        .copyName = [](std::string_view name) { return concat(name, " (Kopie)"); },
        .removeQuestion =
            [](std::string_view name) { return concat("Abfrage „", name, "“ entfernen?"); },
        .cycle = [](int ms) { return concat("≈ ", ms, " ms je Durchlauf"); },
        .cycleHelp =
            [](int ms) {
                return concat("Ein Durchlauf dieser Abfrage, berechnet aus den "
                              "Schnittstelleneinstellungen mit ",
                              ms, " ms Antwortzeit je Gerät:");
            },
        .lineLoad =
            [](int percent) {
                return concat("Alle aktiven Abfragen brauchen ", percent, " % der Leitung");
            },
        .outlastsInterval =
            [](int cycle, int real, int interval) {
                return concat("Dauert ", cycle, " ms: läuft alle ", real, " ms statt alle ",
                              interval, " ms");
            },
        .lineOverloaded =
            [](int percent, int real, int interval) {
                return concat("Leitung zu ", percent, " % ausgelastet: läuft alle ", real,
                              " ms statt alle ", interval, " ms");
            },
        .answerAfterTimeout =
            [](std::int64_t answer, std::int64_t timeout) {
                return concat("Eine Antwort dauert ", answer,
                              " ms, länger als das Antwort-Timeout von ", timeout, " ms");
            },
        .measuredUnits =
            [](std::string_view units) {
                return concat("Antwortzeit beim Lesen gemessen für Geräteadresse ", units);
            },
    },
    .write =
        {
            .help = "Einen neuen Wert in das Gerät schreiben",
            .title = [](std::string_view name) { return concat("„", name, "“ schreiben"); },
            .off = "Aus (0)",
            .on = "Ein (1)",
            .placeholder = "Neuer Wert",
            .button = "Schreiben",
        },
    .pane =
        {
            .title = "Ansicht",
            .log = "Log",
            .chart = "Diagramm",
            .clearHistory = "Verlauf löschen",
            .clearHistoryHelp = "Alle aufgezeichneten Werte löschen",
            .exportHistory = "Verlauf exportieren (CSV)…",
            .exportHistoryHelp =
                "Jeden gelesenen Wert mit seinem Zeitpunkt für Excel oder LibreOffice Calc "
                "speichern",
            .findPlaceholder = "Im Log suchen",
            .findNext = "Nächster Treffer",
            .findPrevious = "Vorheriger Treffer",
            .findDone = "Fertig",
            .exportProgress = "Verlauf wird exportiert…",
        },
    .chart =
        {
            .emptyTitle = "Noch nichts anzuzeigen",
            .emptyText = "Markieren Sie in der Spalte Diagramm die Datenpunkte, die Sie verfolgen "
                         "möchten, und starten Sie das Lesen.",
            .time = "Uhrzeit",
            .window = "Zeitraum",
            .windowAll = "Alles",
            .windowHelp = "Zeitraum, den das Diagramm zeigt",
        },
    .log = {
        .failure =
            {
                .unexpectedUnit =
                    [](int unit) { return concat("Antwort mit Geräteadresse ", unit); },
                .unexpectedFunction =
                    [](std::string_view code) {
                        return concat("Antwort mit Funktionscode ", code);
                    },
                .timeout =
                    [](int timeoutMs) {
                        return concat("Keine Antwort innerhalb von ", timeoutMs, " ms");
                    },
                .crcMismatch = "CRC-Fehler in der Antwort",
                .malformed = "Antwort mit falscher Länge",
            },
        .shortFailure =
            {
                .exception = [](std::string_view code) { return concat("Ausnahme ", code); },
                .timeout = "Keine Antwort",
                .crcMismatch = "CRC-Fehler",
                .invalid = "Ungültige Antwort",
            },
        .started =
            [](std::string_view port, std::string_view serial) {
                return concat("Lesen über ", port, " @ ", serial, " gestartet");
            },
        .stopped = "Lesen gestoppt",
        .unit = [](int id) { return concat("Geräteadresse ", id); },
        .unitFunction =
            [](int id, std::string_view code) {
                return concat("Geräteadresse ", id, " · FC ", code);
            },
        .writeFailed =
            [](std::string_view name) {
                return concat("Schreiben von „", name, "“ fehlgeschlagen");
            },
        .serialLost =
            [](std::string_view path) {
                return concat("Serielle Schnittstelle ", path,
                              " ist nicht mehr vorhanden; es wird auf ihre Rückkehr gewartet");
            },
        .serialRestored = "Serielle Schnittstelle wieder geöffnet",
        .serialRestoredAt =
            [](std::string_view path) {
                return concat("Serielle Schnittstelle wieder geöffnet (jetzt ", path, ")");
            },
        .lateAnswer = "Verspätete Antwort verworfen",
        .readInParts = [](std::string_view range) { return concat(range, " in Teilen gelesen"); },
        .refusedAddresses =
            [](std::string_view addresses) {
                return concat("das Gerät lehnte ", addresses, " ab");
            },
        .listeningStarted =
            [](std::string_view port, std::string_view serial) {
                return concat("Mithören auf ", port, " @ ", serial);
            },
        .listeningStopped = "Mithören beendet",
        .noResponse = "Keine Antwort",
        .unmatched = "Passt zu keiner Anfrage",
        .rs485DelaysLimited =
            [](int ms) {
                return concat("RS-485-Wartezeiten des Projekts über ", ms, " ms wurden auf ", ms,
                              " ms gekürzt, die längste, die der Kernel annimmt.");
            },
    },
    .example =
        {
            .pollName = "Beispielgerät",
            .temperature = "Temperatur",
            .pressure = "Druck",
            .runtime = "Laufzeit",
            .setpoint = "Sollwert",
            .mode = "Betriebsart",
            .pump = "Pumpe ein",
            .alarm = "Alarm",
        },
    .scan = {
        .unitProgress =
            [](int done, int total, int seconds) {
                return concat(done, " von ", total, " Geräteadressen abgefragt, noch etwa ",
                              seconds, " s");
            },
        .sweepProgress =
            [](int done, int total, int seconds) {
                return concat("Einstellung ", done, " von ", total, ", noch etwa ", seconds, " s");
            },
        .noUnitAnswered = "Kein Gerät hat geantwortet.",
        .noSettingsAnswered = "Bei keiner der versuchten Einstellungen hat ein Gerät geantwortet.",
        .mapProgress =
            [](std::int64_t requests, std::int64_t seconds) {
                return concat("Anfrage ", requests, ", noch mindestens ", seconds, " s");
            },
        .noAddressFound = "Das Gerät antwortet, aber keine Adresse des Bereichs ist vorhanden.",
        .csvNeedsQt = "Dieses kestrin-cli wurde ohne Qt gebaut und kann daher keine "
                      "Datenpunktliste schreiben: Lassen Sie --csv weg oder verwenden Sie ein mit "
                      "Qt gebautes kestrin-cli.",
    },
    .plan = {
        .enabled = "aktiv",
        .disabled = "inaktiv",
        .requests = [](int count) { return concat(count, count == 1 ? " Anfrage" : " Anfragen"); },
        .cycle = [](int ms) { return concat("Durchlauf ", ms, " ms"); },
        .interval = [](int ms) { return concat("Intervall ", ms, " ms"); },
        .runsEvery = [](int ms) { return concat("läuft alle ", ms, " ms"); },
        .notRead = "wird nicht gelesen",
        .lineLoad = [](int percent) { return concat("Auslastung der Leitung: ", percent, " %"); },
        .badBaudRate =
            [](int rate) {
                return concat("kestrin-cli plan: Die Baudrate ", rate,
                              " des Projekts ist keine positive Zahl");
            },
    },
    .finder = {
        .menuItem = "Geräte suchen…",
        .title = "Geräte suchen",
        .findUnits = "Geräte",
        .findSettings = "Einstellungen",
        .mapRegisters = "Register",
        .unitsNote = "Fragt jede Geräteadresse des Bereichs mit den aktuellen Einstellungen ab und "
                     "zeigt die, die antworten.",
        .settingsNote = "Probiert eine Baudrate und einen Rahmen nach dem anderen, die üblichsten "
                        "zuerst, bis das Gerät antwortet.",
        .registersNote = "Liest die Tabellen des Geräts, um die vorhandenen Adressen zu finden.",
        .units = "Geräteadressen",
        .to = "bis",
        .addresses = "Adressen",
        .tables = "Tabellen",
        .timeoutHelp =
            "Wie lange jede Geräteadresse Zeit zum Antworten hat. Der Vorgabewert passt zur "
            "Geschwindigkeit der Leitung; der Timeout des Projekts bleibt, wie er ist.",
        .answer = "Antwort",
        .late = "Spät",
        .lateHelp = "Es hat erst nach dem Timeout geantwortet: zum Lesen braucht es einen "
                    "längeren Timeout.",
        .count = "Anzahl",
        .addToPoll = "Zur Abfrage hinzufügen",
        .useSettings = "Diese Einstellungen verwenden",
        .stopReadingFirst =
            "Das Lesen belegt den Port. Stoppen Sie das Lesen, um die Leitung zu durchsuchen.",
        .cancelled = "Abgebrochen. Angezeigt wird, was bis dahin gefunden wurde.",
        .mapIncomplete = "Das Gerät hat vor dem Ende des Bereichs aufgehört zu antworten.",
        .busyUnknown =
            [](int count) {
                return count == 1
                           ? concat("Das Gerät war beschäftigt: Bei 1 Adresse bleibt offen, ob es "
                                    "sie gibt.")
                           : concat("Das Gerät war beschäftigt: Bei ", count,
                                    " Adressen bleibt offen, ob es sie gibt.");
            },
        .busyRanges =
            [](std::string_view ranges) {
                return concat("Das Gerät war zu beschäftigt, um ", ranges,
                              " zu lesen (Ausnahme 06): Ob es diese Adressen gibt, ist unbekannt.");
            },
        .tooManyToAdd =
            [](std::int64_t found, std::int64_t most) {
                return concat("Gefunden wurden ", found, " Adressen, mehr als die ", most,
                              " Datenpunkte, die auf einmal hinzugefügt werden können. Wählen Sie "
                              "einen kleineren Bereich oder weniger Tabellen.");
            },
        .added =
            [](int count) {
                return count == 1 ? concat("1 Datenpunkt zur Abfrage hinzugefügt.")
                                  : concat(count, " Datenpunkte zur Abfrage hinzugefügt.");
            },
        .settingsUsed =
            [](std::string_view serial) {
                return concat("Das Projekt verwendet jetzt ", serial, ".");
            },
    },
};
} // namespace

const Texts& germanTexts() {
    return german;
}

} // namespace kestrin::L10n
