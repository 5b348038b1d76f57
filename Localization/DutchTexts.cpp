#include "Texts.h"

namespace kestrin::L10n {

namespace {
constexpr Texts dutch{
    .header = {
        .port = "Seriële poort",
        .noPortsFound = "Geen poorten gevonden",
        .choosePort = "Kies een poort…",
        .portNotConnected =
            [](std::string_view port) { return concat(port, " (niet aangesloten)"); },
        .baudRate = "Baudrate",
        .baudLabel = [](int rate) { return concat(rate, " baud"); },
        .start = "Start",
        .stop = "Stop",
        .frameSettingsHelp = "Databits, pariteit, stopbits, time-out en schrijfmethode",
        .startHelp = "Uitlezen starten (Ctrl+R)",
        .stopHelp = "Uitlezen stoppen (Ctrl+R)",
        .listen = "Meeluisteren",
        .stopListening = "Meeluisteren stoppen",
        .listenHelp = "Het verkeer van een andere master volgen zonder één byte te zenden (Ctrl+L)",
        .stopListeningHelp = "Meeluisteren stoppen (Ctrl+L)",
        .lockedWhileRunning = "Stop het uitlezen om dit te wijzigen",
        .lockedWhileListening = "Stop het meeluisteren om dit te wijzigen",
        .demoDevice = "Demo-apparaat (gesimuleerd)",
        .startNeedsPort = "Sluit een seriële poort aan en kies die om te starten",
        .startWaitsForScan = "Apparaten zoeken gebruikt de poort; start wanneer dat klaar is",
        .startNeedsDatapoints = "Voeg datapunten toe aan een actieve poll om te starten",
        .listenNeedsPort = "Sluit een seriële poort aan en kies die om mee te luisteren",
        .listenWaitsForScan =
            "Apparaten zoeken gebruikt de poort; luister mee wanneer dat klaar is",
    },
    .settings =
        {
            .frame = "Frameformaat",
            .dataBits = "Databits",
            .parity = "Pariteit",
            .stopBits = "Stopbits",
            .parityNone = "Geen",
            .parityEven = "Even",
            .parityOdd = "Oneven",
            .modbusDefault = "Modbus-standaard (8E1)",
            .standardNote =
                "Modbus RTU gebruikt standaard 8E1. Veel apparaten gebruiken 8N1 of 8N2; "
                "raadpleeg de handleiding van het apparaat.",
            .requests = "Verzoeken",
            .responseTimeout = "Time-out voor antwoord",
            .timeoutHelp = "Hoelang het programma op een antwoord van het apparaat wacht. Daarna "
                           "telt het verzoek als time-out.",
            .combine = "Leesverzoeken combineren",
            .adjacentOnly = "Alleen aansluitend",
            .gapsUpTo = [](int gap) { return concat("Gaten tot ", gap, " adressen"); },
            .combineHelp =
                "Datapunten die dicht bij elkaar liggen, worden in één verzoek gelezen. Gaten "
                "overbruggen is sneller, maar sommige apparaten antwoorden dan met exception 02 "
                "voor adressen die ze niet hebben.",
            .writeMode = "Schrijven",
            .writeSingle = "FC05/06 voor één waarde",
            .writeMultiple = "Altijd FC15/16",
            .writeModeHelp = "Sommige apparaten ondersteunen alleen FC16 (meerdere registers "
                             "schrijven), ook voor één register.",
            .rs485 = "RS-485-richting via RTS",
            .rs485Help = "Voor de UART's van boards zoals de Raspberry Pi, waarvan de driver de "
                         "transceiver met RTS omschakelt. USB-adapters schakelen zelf om: laat het "
                         "voor hen uit.",
            .rtsWhileSending = "RTS tijdens zenden",
            .rtsHigh = "Hoog",
            .rtsLow = "Laag",
            .delayBeforeSend = "Wachttijd voor het zenden",
            .delayAfterSend = "Wachttijd na het zenden",
        },
    .footer =
        {
            .statistics =
                [](std::int64_t requests, std::int64_t responses, std::int64_t timeouts,
                   std::int64_t exceptions, std::int64_t errors) {
                    return concat("Verzoeken ", requests, " · Antwoorden ", responses,
                                  " · Geen antwoord ", timeouts, " · Exceptions ", exceptions,
                                  " · Ongeldig ", errors);
                },
            .options = "Logopties",
            .optionsHelp = "Tijdstempels, ruwe frames en automatisch scrollen",
            .autoscroll = "Automatisch scrollen",
            .timestamps = "Tijdstempels",
            .rawFrames = "Ruwe RTU-frames tonen",
            .rawFramesHelp = "Toon het volledige RTU-frame (unit-ID, PDU en CRC) in plaats van "
                             "alleen de data.",
            .onlyProblems = "Alleen fouten en schrijfacties loggen",
            .onlyProblemsHelp = "Snelle polls vullen het log in korte tijd. Staat deze optie aan, "
                                "dan verschijnt alleen wat aandacht vraagt.",
            .save = "Opslaan…",
            .saveHelp = "Log opslaan als tekstbestand (Ctrl+S)",
            .clear = "Log wissen",
            .clearHelp = "Log en tellers wissen (Ctrl+K)",
            .outputAccessibility = "Communicatielog",
        },
    .menu =
        {
            .newProject = "Nieuw project",
            .openProject = "Project openen…",
            .saveProject = "Project opslaan als…",
            .importCSV = "Datapunten importeren (CSV)…",
            .exportCSV = "Datapunten exporteren (CSV)…",
            .saveLog = "Log opslaan…",
            .clearLog = "Log wissen",
            .file = "Bestand",
            .help = "Help",
            .quit = "Afsluiten",
            .replaceProjectTitle = "Het huidige project vervangen?",
            .replaceProjectMessage = "De polls en datapunten ervan worden verwijderd.",
            .csvFiles = "CSV-bestanden",
            .datapointLists = "Datapuntenlijsten",
            .projectFiles = "Projectbestanden",
            .textFiles = "Tekstbestanden",
            .allFiles = "Alle bestanden",
        },
    .table = {
        .name = "Naam",
        .unitID = "Unit-ID",
        .table = "Tabel",
        .address = "Adres",
        .dataType = "Type",
        .wordOrder = "Volgorde",
        .scale = "Schaal",
        .value = "Waarde",
        .unit = "Eenheid",
        .format = "Weergave",
        .description = "Beschrijving",
        .status = "Status",
        .add = "Datapunt",
        .addHelp = "Datapunt toevoegen op het volgende vrije adres (Ctrl+Shift+D)",
        .duplicate = "Dupliceren",
        .deleteRows = "Verwijderen",
        .csvHelp = "De lijst importeren uit of exporteren naar Excel, LibreOffice Calc of een "
                   "ander programma",
        .unitIDHelp = "Slave-adres van het apparaat (1–247)",
        .addressHelp =
            [](std::string_view modicon) {
                return concat("Protocoladres, beginnend bij 0. In Modicon-notatie: ", modicon, ".");
            },
        .wordOrderHelp = "Bytevolgorde van 32- en 64-bitwaarden. ABCD is de Modbus-standaard; "
                         "CDAB (woorden verwisseld) is gebruikelijk bij PLC's.",
        .scaleHelp = "Waarde = ruwe registerwaarde × schaal. Bijvoorbeeld 0,1 als het apparaat "
                     "215 stuurt voor 21,5.",
        .plotHelp = "Dit datapunt in de grafiek tonen",
        .rawHelp = [](std::string_view raw) { return concat("Ruwe registers: ", raw); },
        .overlapHelp = "Dit adres overlapt met een ander datapunt of reikt tot voorbij adres "
                       "65535.",
        .emptyTitle = "Nog geen datapunten",
        .emptyText = "Voeg de datapunten toe die gelezen moeten worden, of importeer een lijst "
                     "uit Excel (CSV). Datapunten die naast elkaar liggen, worden samen gelezen.",
        .tableNames =
            {
                .coil = "Coil",
                .discreteInput = "Discrete input",
                .holdingRegister = "Holdingregister",
                .inputRegister = "Inputregister",
            },
        .formatNames =
            {
                .decimal = "Decimaal",
                .binary = "Binair",
            },
        .waiting = "Wachten…",
        .updatedHelp = [](std::string_view time) { return concat("Laatst gelezen om ", time); },
        .valueHelp = "Typ een waarde en druk op Enter. Hex (0x1F) of binair (0b101) kan ook.",
        .valueInvalid =
            [](std::string_view type) { return concat("Deze waarde past niet in ", type, "."); },
        .unitIDInvalid = "De unit-ID is een geheel getal van 1 tot en met 247.",
        .addressInvalid = "Het adres is een geheel getal van 0 tot en met 65535.",
        .scaleInvalid = "De schaal is een getal, bijvoorbeeld 0,1 of 10.",
    },
    .import = {
        .title =
            [](int count) {
                return count == 1 ? concat("1 datapunt gevonden")
                                  : concat(count, " datapunten gevonden");
            },
        .question = "Toevoegen aan de huidige lijst, of de lijst vervangen?",
        .skipped =
            [](int count) {
                return count == 1 ? concat("1 regel overgeslagen:")
                                  : concat(count, " regels overgeslagen:");
            },
        .add = "Toevoegen",
        .replace = "Vervangen",
        .cancel = "Annuleren",
    },
    .modbus =
        {
            .functionNames =
                {
                    .readCoils = "Coils lezen",
                    .readDiscreteInputs = "Discrete inputs lezen",
                    .readHoldingRegisters = "Holdingregisters lezen",
                    .readInputRegisters = "Inputregisters lezen",
                    .writeSingleCoil = "Eén coil schrijven",
                    .writeSingleRegister = "Eén register schrijven",
                    .diagnostics = "Diagnose",
                    .writeMultipleCoils = "Meerdere coils schrijven",
                    .writeMultipleRegisters = "Meerdere registers schrijven",
                    .maskWriteRegister = "Register schrijven met masker",
                    .readWriteMultipleRegisters = "Meerdere registers lezen/schrijven",
                    .deviceIdentification = "Apparaatidentificatie",
                    .other = "Functie",
                },
            .exceptionNames =
                {
                    .illegalFunction = "Ongeldige functie",
                    .illegalDataAddress = "Ongeldig data-adres",
                    .illegalDataValue = "Ongeldige datawaarde",
                    .serverDeviceFailure = "Apparaatstoring",
                    .acknowledge = "Ontvangst bevestigd",
                    .serverDeviceBusy = "Apparaat bezet",
                    .memoryParityError = "Pariteitsfout in geheugen",
                    .gatewayPathUnavailable = "Gatewaypad niet beschikbaar",
                    .gatewayTargetFailedToRespond = "Doelapparaat achter gateway reageert niet",
                    .other = "Exception",
                },
        },
    .board =
        {
            .usbSerial = [](std::string_view chip) { return concat("USB-serieel (", chip, ")"); },
        },
    .errors = {
        .alertTitle = "Er is iets misgegaan",
        .selectPortFirst = "Kies eerst een seriële poort.",
        .saveFailed = [](std::string_view reason) { return concat("Opslaan mislukt: ", reason); },
        .fileOpenFailed =
            [](std::string_view file) {
                return concat("Kan ", file, " niet lezen. Is het een bestand van dit programma?");
            },
        .importNothing =
            [](std::string_view details) {
                return concat("Geen datapunten gevonden in dit bestand. De eerste regel moet de "
                              "kolomnamen bevatten, met minstens Table en Address. ",
                              details);
            },
        .importIssue =
            [](int line, std::string_view problem) {
                return concat("Regel ", line, ": ", problem);
            },
        .csvMissingColumns = "de kolommen Table en Address ontbreken",
        .csvInvalidTable =
            [](std::string_view text) {
                return concat("onbekende tabel ‘", text, "’ (gebruik CO, DI, HR of IR)");
            },
        .csvInvalidAddress =
            [](std::string_view text) {
                return concat("ongeldig adres ‘", text, "’ (0 tot en met 65535)");
            },
        .csvInvalidUnit =
            [](std::string_view text) {
                return concat("ongeldige unit-ID ‘", text, "’ (1 tot en met 247)");
            },
        .csvInvalidDataType =
            [](std::string_view text) { return concat("onbekend datatype ‘", text, "’"); },
        .csvInvalidNumber =
            [](std::string_view text) { return concat("ongeldig getal ‘", text, "’"); },
        .invalidPath =
            [](std::string_view path) {
                return concat("‘", path, "’ is geen geldige seriële poort.");
            },
        .openFailed =
            [](std::string_view path, std::string_view reason) {
                return concat("Kan ", path, " niet openen: ", reason, ".");
            },
        .openPermissionDenied =
            "Seriële poorten kunnen alleen door leden van de groep dialout worden geopend: word "
            "lid met het commando sudo usermod -aG dialout $USER en log opnieuw in.",
        .permissionNotMember =
            [](std::string_view group, std::string_view user) {
                return concat("De poort hoort bij de groep ", group, " en ", user,
                              " is geen lid: voeg die toe met sudo usermod -aG ", group, " ", user,
                              " en log daarna uit en weer in.");
            },
        .permissionNotInThisLogin =
            [](std::string_view group) {
                return concat(
                    "U bent aan de groep ", group,
                    " toegevoegd nadat deze sessie begon: log uit en weer in (of voer newgrp ",
                    group, " uit in een terminal en start Kestrin van daaruit).");
            },
        .permissionMemberRefused =
            [](std::string_view group) {
                return concat("U bent al lid van de groep ", group,
                              "; iets anders weigert de toegang, zoals een toegangslijst (ACL) of "
                              "een beveiligingsmodule.");
            },
        .permissionOwnerOnly =
            "Alleen de eigenaar van het apparaat mag het openen; de groep mag er niet in lezen en "
            "schrijven. Een udev-regel of de eigenaar moet toegang geven.",
        .busy =
            [](std::string_view path) {
                return concat(path, " is al in gebruik door een ander programma. Sluit dat "
                                    "programma en probeer het opnieuw.");
            },
        .holderProcess =
            [](int pid, std::string_view program) {
                return concat(program, " (proces ", pid, ")");
            },
        .busyBy =
            [](std::string_view path, std::string_view holder) {
                return concat(path, " is in gebruik door ", holder, ".");
            },
        .busyProbablyBy =
            [](std::string_view path, std::string_view holder) {
                return concat(path, " is in gebruik, waarschijnlijk door ", holder, ".");
            },
        .closeHolder = "Sluit dat programma en probeer het opnieuw.",
        .modemManagerHint = "ModemManager onderzoekt nieuwe seriële adapters op modems: stop het "
                            "met sudo systemctl stop ModemManager, of houd het weg van deze "
                            "adapter met een udev-regel die ENV{ID_MM_DEVICE_IGNORE}=\"1\" zet.",
        .brlttyHint = "brltty, het stuurprogramma voor brailleleesregels, neemt "
                      "CH340/CH341-adapters in beslag. Zonder brailleleesregel stopt u het met "
                      "sudo systemctl mask brltty-udev.service brltty.service (of verwijder het "
                      "pakket brltty); sluit de adapter daarna opnieuw aan.",
        .configurationFailed =
            [](std::string_view reason) {
                return concat("Instellen van de seriële poort mislukt: ", reason, ".");
            },
        .rs485Refused =
            [](std::string_view reason) {
                return concat("Het stuurprogramma van deze poort ondersteunt geen RS-485-richting "
                              "via RTS (",
                              reason,
                              "). USB-adapters schakelen zelf van richting; de instelling is "
                              "bedoeld voor de UART's van boards zoals de Raspberry Pi. Zet haar "
                              "uit in de seriële instellingen.");
            },
        .unsupportedBaud =
            [](int baud) {
                return concat("Baudrate ", baud, " wordt niet ondersteund door deze adapter.");
            },
        .notOpen = "De seriële poort is niet geopend.",
        .sendRefused = "Tijdens het meeluisteren wordt niets verzonden.",
        .writeFailed =
            [](std::string_view reason) { return concat("Verzenden mislukt: ", reason, "."); },
        .timeout = "Geen antwoord van het apparaat.",
        .deviceDisconnected = "De adapter is losgekoppeld.",
        .demoFailed =
            [](std::string_view reason) {
                return concat("Het demo-apparaat kon niet worden gestart: ", reason);
            },
        .unknownOption =
            [](std::string_view option, std::string_view help) {
                return concat("onbekende optie ", option, " (zie ", help, ")");
            },
        .unexpectedArgument =
            [](std::string_view argument, std::string_view help) {
                return concat("onverwacht argument ‘", argument, "’ (zie ", help, ")");
            },
        .missingValue =
            [](std::string_view option) {
                return concat("de optie ", option, " heeft een waarde nodig");
            },
        .missingOption =
            [](std::string_view option) { return concat("de optie ", option, " is verplicht"); },
        .invalidOptionValue =
            [](std::string_view option, std::string_view value) {
                return concat("ongeldige waarde ‘", value, "’ voor ", option);
            },
        .optionsExclude =
            [](std::string_view first, std::string_view second) {
                return concat(first, " en ", second, " sluiten elkaar uit");
            },
        .invalidBaud =
            [](std::string_view value, std::string_view rates) {
                return concat("baudrate ‘", value,
                              "’ is niet bruikbaar: geef een positief geheel getal, meestal een "
                              "van ",
                              rates);
            },
        .tableNotWritable =
            [](std::string_view table) {
                return concat("tabel ‘", table,
                              "’ is niet beschrijfbaar: inputregisters en discrete inputs zijn "
                              "alleen-lezen; schrijf coils (CO) of holdingregisters (HR)");
            },
    },
    .document = {
        .problemAt = [](std::string_view path,
                        std::string_view problem) { return concat(path, ": ", problem); },
        .notJSON = "geen JSON-document",
        .expectedObject = "object verwacht",
        .expectedList = "lijst verwacht",
        .expectedText = "tekst verwacht",
        .expectedNumber = "getal verwacht",
        .expectedFiniteNumber = "eindig getal verwacht",
        .expectedInteger =
            [](std::int64_t minimum, std::int64_t maximum) {
                return concat("geheel getal van ", minimum, " tot en met ", maximum, " verwacht");
            },
        .expectedBoolean = "true of false verwacht",
        .expectedUUID = "UUID verwacht",
        .missing = "ontbreekt",
        .unknownValue =
            [](std::string_view found, std::string_view choices) {
                return concat("onbekende waarde ‘", found, "’ (gebruik ", choices, ")");
            },
        .emptyList = "minstens één item verwacht",
    },
    .help =
        {
            .windowTitle = "Kestrin-help",
            .searchPrompt = "Zoeken in help",
            .noResults = "Geen onderwerpen gevonden",
            .tipLabel = "Tip",
        },
    .state =
        {
            .running = "Bezig met uitlezen",
            .listening = "Luistert mee",
            .stopped = "Gestopt",
            .serialLost = "Seriële poort verdwenen",
        },
    .notice =
        {
            .emptyTitle = "Klaar om uit te lezen",
            .emptySteps = "Voer de datapunten van het apparaat in de tabel in (unit-ID, tabel, "
                          "adres en type), kies bovenaan de seriële poort en dezelfde instellingen "
                          "als op het apparaat, en klik op Start (Ctrl+R).",
            .emptyNoDevice = "Geen USB-adapter gevonden",
            .emptyNoDeviceSteps = "Sluit de USB-RS485-adapter aan. De poort verschijnt dan "
                                  "vanzelf. Bereid intussen alvast de datapuntenlijst voor.",
            .startPolling = "Uitlezen starten",
            .noResponse = "Het apparaat antwoordt niet. Controleer de unit-ID, baudrate, pariteit "
                          "en stopbits, en de bedrading (A/B niet verwisseld).",
            .serialLost = "De seriële poort is verdwenen. Zodra de adapter terug is, gaat het "
                          "uitlezen vanzelf verder.",
            .dismiss = "Sluiten",
            .writeFailed =
                [](std::string_view name, std::string_view reason) {
                    return concat("Schrijven van ", name, " mislukt: ", reason, ".");
                },
            .listening = "Alleen meeluisteren: Kestrin zendt niets op deze bus. De waarden komen "
                         "uit het verkeer van de andere master, en schrijven staat uit.",
            .stopListeningFirst =
                "Kestrin luistert alleen mee en zendt niets. Stop het meeluisteren (Ctrl+L) en "
                "start het uitlezen om waarden te schrijven.",
            .startFirst = "Start eerst het uitlezen (Ctrl+R) om waarden te schrijven.",
        },
    .adapter = {
        .latencyHeld =
            [](int ms, std::string_view path) {
                return concat("De adapter op ", path, " houdt elk antwoord ", ms,
                              " ms vast (zijn latency timer).");
            },
        .latencyCost =
            [](int ms, int now, int best) {
                return concat("Met ", ms, " ms ongeveer ", now,
                              " verzoeken per seconde in plaats van ", best, ".");
            },
        .setToOneMs = "Op 1 ms zetten",
        .fixForGood = "Blijvend oplossen…",
        .fixTitle = "Latency timer blijvend instellen",
        .fixSteps =
            [](std::string_view file, std::string_view command) {
                return concat("Sla deze regel op als ", file, " (als root), voer daarna ", command,
                              " uit en sluit de adapter opnieuw aan. Vanaf dan krijgen "
                              "FTDI-adapters bij elke aansluiting 1 ms.");
            },
        .copyRule = "Regel kopiëren",
        .latencySet =
            [](std::string_view path) {
                return concat("Latency timer van ", path, " op 1 ms gezet");
            },
        .latencySetFailed =
            [](std::string_view path, std::string_view reason) {
                return concat("De latency timer van ", path, " kon niet worden ingesteld: ", reason,
                              ".");
            },
    },
    .bus = {
        .button = "Bus",
        .buttonHelp = "Hoe snel elke unit antwoordt en hoe druk de lijn is, gemeten tijdens het "
                      "uitlezen",
        .title = "Gemeten op de bus",
        .nothingYet = "De cijfers verschijnen zodra units antwoorden tijdens het uitlezen.",
        .answers = "Antwoorden",
        .roundTrip = "Rondgang",
        .turnaround = "Reactietijd",
        .spreadNote = "Mediaan / 99 % van de antwoorden. De reactietijd is de eigen tijd van het "
                      "apparaat: de rondgang zonder de frames op de lijn, de stiltes en de "
                      "vertraging van de adapter.",
        .poll = "Poll",
        .intervalSet = "Ingesteld interval",
        .intervalGot = "Behaald interval",
        .lineBusy =
            [](int percent) { return concat("De lijn is ", percent, " % van de tijd bezet."); },
        .unitSummary =
            [](std::int64_t unit, std::int64_t answers) {
                return concat("Unit ", unit, ": ", answers, " antwoorden");
            },
        .roundTripSummary =
            [](std::int64_t median, std::int64_t p99) {
                return concat("rondgang ", median, " ms (99 %: ", p99, " ms)");
            },
        .turnaroundSummary =
            [](std::int64_t median, std::int64_t p99) {
                return concat("reactietijd ", median, " ms (99 %: ", p99, " ms)");
            },
        .timeoutFits =
            [](std::int64_t unit, std::int64_t ms) {
                return concat("Unit ", unit, " geeft 99 % van zijn antwoorden binnen ", ms, " ms.");
            },
        .timeoutOffer =
            [](std::int64_t offered, std::int64_t current) {
                return concat("Een time-out van ", offered, " ms dekt dat ruim af (nu ", current,
                              " ms); die geldt vanaf de volgende start van het uitlezen.");
            },
        .useTimeout = [](int ms) { return concat(ms, " ms gebruiken"); },
        .timeoutSet =
            [](int ms) {
                return concat("Time-out ingesteld op ", ms,
                              " ms; die geldt vanaf de volgende start van het uitlezen");
            },
    },
    .polls = {
        .add = "Nieuwe poll",
        .addHelp = "Nog een groep datapunten met een eigen interval (Ctrl+T)",
        .namePlaceholder = "Naam",
        .interval = "Interval",
        .intervalHelp = "Hoe vaak deze poll wordt gelezen",
        .active = "Actief",
        .activeHelp = "Uit: deze poll wordt overgeslagen",
        .removeTitle = "Poll verwijderen?",
        .remove = "Verwijderen",
        .removeMessage = "De datapunten in deze poll worden ook verwijderd.",
        .unnamed = "Naamloos",
        .duplicate = "Dupliceren",
        .tabHelp = "Klik met de rechtermuisknop om te dupliceren of te verwijderen",
        .newName = [](int number) { return concat("Poll ", number); },
        .copyName = [](std::string_view name) { return concat(name, " (kopie)"); },
        .removeQuestion =
            [](std::string_view name) { return concat("Poll ‘", name, "’ verwijderen?"); },
        .cycle = [](int ms) { return concat("≈ ", ms, " ms per cyclus"); },
        .cycleHelp =
            [](int ms) {
                return concat(
                    "Eén uitlezing van deze poll, berekend uit de seriële instellingen met ", ms,
                    " ms antwoordtijd per apparaat:");
            },
        .lineLoad =
            [](int percent) {
                return concat("Alle actieve polls hebben ", percent, "% van de lijn nodig");
            },
        .outlastsInterval =
            [](int cycle, int real, int interval) {
                return concat("Duurt ", cycle, " ms: loopt elke ", real, " ms in plaats van elke ",
                              interval, " ms");
            },
        .lineOverloaded =
            [](int percent, int real, int interval) {
                return concat("Lijn voor ", percent, "% belast: loopt elke ", real,
                              " ms in plaats van elke ", interval, " ms");
            },
        .answerAfterTimeout =
            [](std::int64_t answer, std::int64_t timeout) {
                return concat("Een antwoord duurt ", answer, " ms, langer dan de time-out van ",
                              timeout, " ms");
            },
        .measuredUnits =
            [](std::string_view units) {
                return concat("Antwoordtijd tijdens het lezen gemeten voor unit ", units);
            },
    },
    .write =
        {
            .help = "Een nieuwe waarde naar het apparaat schrijven",
            .title = [](std::string_view name) { return concat(name, " schrijven"); },
            .off = "Uit (0)",
            .on = "Aan (1)",
            .placeholder = "Nieuwe waarde",
            .button = "Schrijven",
        },
    .pane =
        {
            .title = "Beeld",
            .log = "Log",
            .chart = "Grafiek",
            .clearHistory = "Historie wissen",
            .clearHistoryHelp = "Alle vastgelegde waarden wissen",
            .exportHistory = "Historie exporteren (CSV)…",
            .exportHistoryHelp =
                "Elke gelezen waarde met tijdstip opslaan, voor Excel of LibreOffice Calc",
            .findPlaceholder = "Zoeken in het log",
            .findNext = "Volgende treffer",
            .findPrevious = "Vorige treffer",
            .findDone = "Gereed",
            .exportProgress = "Historie wordt geëxporteerd…",
        },
    .chart =
        {
            .emptyTitle = "Nog niets te tonen",
            .emptyText = "Vink in de kolom Grafiek de datapunten aan die gevolgd moeten worden, "
                         "en start het uitlezen.",
            .time = "Tijd",
            .window = "Periode",
            .windowAll = "Alles",
            .windowHelp = "Welke periode de grafiek toont",
        },
    .log = {
        .failure =
            {
                .unexpectedUnit = [](int unit) { return concat("antwoord van unit ", unit); },
                .unexpectedFunction =
                    [](std::string_view code) { return concat("antwoord met functiecode ", code); },
                .timeout =
                    [](int timeoutMs) { return concat("geen antwoord binnen ", timeoutMs, " ms"); },
                .crcMismatch = "CRC-fout in het antwoord",
                .malformed = "antwoord met verkeerde lengte",
            },
        .shortFailure =
            {
                .exception = [](std::string_view code) { return concat("Exception ", code); },
                .timeout = "Geen antwoord",
                .crcMismatch = "CRC-fout",
                .invalid = "Ongeldig antwoord",
            },
        .started =
            [](std::string_view port, std::string_view serial) {
                return concat("Uitlezen gestart op ", port, " @ ", serial);
            },
        .stopped = "Uitlezen gestopt",
        .unit = [](int id) { return concat("Unit ", id); },
        .unitFunction = [](int id,
                           std::string_view code) { return concat("Unit ", id, " · FC ", code); },
        .writeFailed =
            [](std::string_view name) { return concat("Schrijven van ", name, " mislukt"); },
        .serialLost =
            [](std::string_view path) {
                return concat("Seriële poort ", path, " is verdwenen; wachten tot hij terug is");
            },
        .serialRestored = "Seriële poort weer geopend",
        .serialRestoredAt =
            [](std::string_view path) {
                return concat("Seriële poort weer geopend (nu ", path, ")");
            },
        .lateAnswer = "Te laat antwoord genegeerd",
        .readInParts = [](std::string_view range) { return concat(range, " in delen gelezen"); },
        .refusedAddresses =
            [](std::string_view addresses) { return concat("het apparaat weigerde ", addresses); },
        .listeningStarted =
            [](std::string_view port, std::string_view serial) {
                return concat("Meeluisteren op ", port, " @ ", serial);
            },
        .listeningStopped = "Meeluisteren gestopt",
        .noResponse = "Geen antwoord",
        .unmatched = "Past bij geen verzoek",
        .rs485DelaysLimited =
            [](int ms) {
                return concat("RS-485-wachttijden van het project boven ", ms,
                              " ms zijn ingekort tot ", ms,
                              " ms, het maximum dat de kernel aanneemt.");
            },
    },
    .example =
        {
            .pollName = "Voorbeeldapparaat",
            .temperature = "Temperatuur",
            .pressure = "Druk",
            .runtime = "Bedrijfstijd",
            .setpoint = "Setpoint",
            .mode = "Modus",
            .pump = "Pomp aan",
            .alarm = "Alarm",
        },
    .scan = {
        .unitProgress =
            [](int done, int total, int seconds) {
                return concat(done, " van ", total, " units gevraagd, nog ongeveer ", seconds,
                              " s");
            },
        .sweepProgress =
            [](int done, int total, int seconds) {
                return concat("Instelling ", done, " van ", total, ", nog ongeveer ", seconds,
                              " s");
            },
        .noUnitAnswered = "Geen enkele unit antwoordde.",
        .noSettingsAnswered = "Bij geen van de geprobeerde instellingen antwoordde een unit.",
        .mapProgress =
            [](std::int64_t requests, std::int64_t seconds) {
                return concat("Verzoek ", requests, ", nog minstens ", seconds, " s");
            },
        .noAddressFound = "De unit antwoordt, maar geen enkel adres van het bereik bestaat.",
        .csvNeedsQt = "Deze kestrin-cli is zonder Qt gebouwd en kan daarom geen "
                      "datapuntenlijst schrijven: laat --csv weg of gebruik een kestrin-cli die "
                      "met Qt is gebouwd.",
    },
    .plan = {
        .enabled = "actief",
        .disabled = "uit",
        .requests = [](int count) { return concat(count, count == 1 ? " verzoek" : " verzoeken"); },
        .cycle = [](int ms) { return concat("cyclus ", ms, " ms"); },
        .interval = [](int ms) { return concat("interval ", ms, " ms"); },
        .runsEvery = [](int ms) { return concat("wordt elke ", ms, " ms gelezen"); },
        .notRead = "wordt niet gelezen",
        .lineLoad = [](int percent) { return concat("Belasting van de lijn: ", percent, " %"); },
        .badBaudRate =
            [](int rate) {
                return concat("kestrin-cli plan: de baudrate ", rate,
                              " van het project is geen positief getal");
            },
    },
    .finder = {
        .menuItem = "Apparaten zoeken…",
        .title = "Apparaten zoeken",
        .findUnits = "Units",
        .findSettings = "Instellingen",
        .mapRegisters = "Registers",
        .unitsNote = "Vraagt elke unit-ID van het bereik met de huidige instellingen en toont "
                     "welke antwoorden.",
        .settingsNote = "Probeert de ene baudrate en het ene frame na het andere, de gangbaarste "
                        "eerst, tot de unit antwoordt.",
        .registersNote = "Leest de tabellen van de unit om te vinden welke adressen bestaan.",
        .units = "Unit-ID's",
        .to = "tot",
        .addresses = "Adressen",
        .tables = "Tabellen",
        .timeoutHelp =
            "Hoelang elke unit-ID krijgt om te antwoorden. De standaardwaarde past bij de "
            "snelheid van de lijn; de time-out van het project blijft zoals hij is.",
        .answer = "Antwoord",
        .late = "Laat",
        .lateHelp = "Hij antwoordde pas na zijn time-out: uitlezen vraagt een langere time-out.",
        .count = "Aantal",
        .addToPoll = "Aan poll toevoegen",
        .useSettings = "Deze instellingen gebruiken",
        .stopReadingFirst = "Het uitlezen gebruikt de poort. Stop het uitlezen om de lijn te "
                            "doorzoeken.",
        .cancelled = "Geannuleerd. Getoond wordt wat tot dan gevonden was.",
        .mapIncomplete = "De unit hield op met antwoorden voor het einde van het bereik.",
        .busyUnknown =
            [](int count) {
                return count == 1
                           ? concat("De unit was bezet: van 1 adres is niet bekend of het bestaat.")
                           : concat("De unit was bezet: van ", count,
                                    " adressen is niet bekend of ze bestaan.");
            },
        .busyRanges =
            [](std::string_view ranges) {
                return concat("De unit was te druk om ", ranges,
                              " te lezen (exception 06): het is niet bekend of die adressen "
                              "bestaan.");
            },
        .tooManyToAdd =
            [](std::int64_t found, std::int64_t most) {
                return concat("De kaart vond ", found, " adressen, meer dan de ", most,
                              " datapunten die in één keer toegevoegd kunnen worden. Kies een "
                              "kleiner bereik of minder tabellen.");
            },
        .added =
            [](int count) {
                return count == 1 ? concat("1 datapunt aan de poll toegevoegd.")
                                  : concat(count, " datapunten aan de poll toegevoegd.");
            },
        .settingsUsed =
            [](std::string_view serial) { return concat("Het project gebruikt nu ", serial, "."); },
    },
};
} // namespace

const Texts& dutchTexts() {
    return dutch;
}

} // namespace kestrin::L10n
