#include "HelpContent.h"

namespace kestrin::L10n {

namespace {
constexpr HelpContent dutch{
    .start =
        {
            .title = "Aan de slag",
            .intro =
                [](std::string_view product) {
                    return concat(product,
                                  " is een Modbus-RTU-master: het leest waarden uit apparaten op "
                                  "een RS-485- of RS-232-bus, zoals energiemeters, regelaars en "
                                  "sensoren, en kan er ook waarden naartoe schrijven.");
                },
            .stepsHeading = "In vier stappen",
            .connect = "Sluit de USB-RS485-adapter aan en verbind hem met het apparaat (A op A, B "
                       "op B).",
            .enterDatapoints = "Voer de **datapunten** van het apparaat in de tabel in: unit-ID, "
                               "tabel, adres en type, zoals in de handleiding van het apparaat.",
            .choosePort = "Kies bovenaan de **seriële poort**, de **baudrate** en via de knop met "
                          "de schuifregelaars het frameformaat (bijvoorbeeld `8E1`), zoals ze op "
                          "het apparaat zijn ingesteld.",
            .clickStart = "Klik op **Start** (Ctrl+R). De kolom **Waarde** toont de actuele "
                          "waarden, **Status** of het uitlezen werkt.",
            .overviewCaption = "Een poll met live waarden en de status per datapunt, met de "
                               "communicatie eronder.",
            .simulatorTip = "Geen apparaat bij de hand? Start `kestrin --demo`: het venster leest "
                            "dan een gesimuleerd apparaat met de voorbeeldlijst.",
            .autosave =
                "Polls en datapunten worden automatisch opgeslagen. **Bestand ▸ Project opslaan "
                "als…** (Ctrl+Shift+S) maakt een apart projectbestand, bijvoorbeeld per "
                "installatie.",
            .listenHeading = "Meeluisteren met een andere master",
            .listen = "Vraagt een PLC of een SCADA-systeem de apparaten al uit? Klik dan in plaats "
                      "van op Start op **Meeluisteren** (Ctrl+L): Kestrin opent de poort en zendt "
                      "helemaal niets. Het volgt de verzoeken van de andere master en de "
                      "antwoorden daarop, en toont ze in het logboek, de statistiek en de grafiek "
                      "alsof het ze zelf had uitgelezen.",
            .listenCoverage =
                "Een datapunt krijgt alleen een waarde als een verzoek van de andere master het "
                "dekt: dezelfde unit-ID, tabel en adressen. De andere blijven op **Wachten…**. Een "
                "schrijfopdracht van de andere master werkt het datapunt bij zodra het apparaat "
                "hem bevestigd heeft.",
            .listenWritingOff =
                "Tijdens het meeluisteren staat schrijven uit: op een bus die een andere master "
                "bestuurt, mag Kestrin niet zenden. Klik op **Meeluisteren stoppen** (Ctrl+L) en "
                "start het uitlezen om waarden te schrijven.",
        },
    .polls =
        {
            .title = "Polls",
            .intro =
                "Een poll is een groep datapunten met een eigen interval, bovenaan weergegeven als "
                "tabblad. Zo kunnen snelle metingen elke 250 ms worden gelezen en tellers elke "
                "minuut. **+** (Ctrl+T) maakt een nieuwe poll; klik met de rechtermuisknop op "
                "een tabblad om de poll te dupliceren of te verwijderen.",
            .tabDot = "De stip in een tabblad is groen als alles wordt gelezen en oranje als er "
                      "iets mislukt. Zet **Actief** uit om een poll tijdelijk over te slaan.",
            .combining =
                "Datapunten die naast elkaar liggen, worden in één verzoek gelezen (tot 125 "
                "registers of 2000 bits). In de instellingen (schuifregelaars bovenaan) kunnen ook "
                "kleine gaten worden overbrugd: sneller, maar sommige apparaten antwoorden dan met "
                "exception 02.",
            .oneRequest = "Er staat altijd maar één verzoek op de lijn. Schrijfacties gaan voor "
                          "leesacties.",
            .cycleHeading = "Hoelang een cyclus duurt",
            .cycleEstimate =
                "Naast het interval toont Kestrin hoelang één uitlezing van de poll de lijn "
                "bezet houdt, bijvoorbeeld “≈ 42 ms per cyclus”. Dat wordt berekend uit de "
                "seriële instellingen, met 5 ms antwoordtijd per apparaat tot het uitlezen zijn "
                "eigen reactietijd heeft gemeten, en rekent de latency timer van de adapter mee; "
                "houd de muis erboven voor elk verzoek en het deel van de lijn dat alle actieve "
                "polls nodig hebben. `kestrin-cli plan --project BESTAND` geeft hetzelfde voor "
                "elke poll van een projectbestand.",
            .cycleWarning =
                "De tekst wordt oranje als de poll niet zo vaak gelezen kan worden als zijn "
                "interval vraagt: één uitlezing duurt langer dan het interval, of de andere polls "
                "houden de lijn te druk bezet. Hij zegt dan hoe vaak de poll echt loopt, "
                "bijvoorbeeld “Duurt 140 ms: loopt elke 140 ms in plaats van elke 100 ms”. Geef de "
                "poll een langer interval, of zet waarden die kunnen wachten in een tragere poll. "
                "Hij waarschuwt ook als een antwoord langer duurt dan de **time-out voor "
                "antwoord**: dat verzoek zou dan elke keer mislukken.",
            .busFigures =
                "**Bus** in de onderste balk toont wat het uitlezen echt kost, gemeten terwijl het "
                "loopt: per unit de rondgang en de reactietijd (de eigen tijd van het apparaat), "
                "als mediaan en 99 % van de antwoorden; per actieve poll het ingestelde en het "
                "behaalde interval; en hoeveel van de tijd de lijn bezet is. Als het uitlezen "
                "stopt, schrijft het log één regel per unit die antwoordde, bijvoorbeeld “Unit 1: "
                "120 antwoorden, rondgang 27 ms (99 %: 36 ms), reactietijd 5 ms (99 %: 6 ms)”.",
            .timeoutOffer =
                "Zodra een unit 50 keer heeft geantwoord, vergelijkt Kestrin de **time-out voor "
                "antwoord** met hoe snel de units echt antwoorden. Past een andere time-out beter, "
                "dan biedt een melding boven het log die aan, bijvoorbeeld **100 ms gebruiken**; "
                "die geldt vanaf de volgende start van het uitlezen. Zolang verzoeken onbeantwoord "
                "blijven of antwoorden te laat komen, wordt alleen een langere time-out "
                "aangeboden.",
        },
    .datapoints =
        {
            .title = "Datapunten",
            .intro = "Een datapunt is één waarde in een apparaat, zoals een temperatuur of een "
                     "setpoint. Het datapunt beschrijft waar de waarde staat en hoe ze is "
                     "opgeslagen; het programma zet de registers om in een leesbare waarde.",
            .unitID = "het slave-adres van het apparaat (1–247)",
            .table = "**Coil** (bit, lezen en schrijven), **Discrete input** (bit, alleen lezen), "
                     "**Holdingregister** (16 bit, lezen en schrijven) of **Inputregister** (16 "
                     "bit, alleen lezen)",
            .address = "het protocoladres, beginnend bij `0`. Handleidingen gebruiken vaak de "
                       "Modicon-notatie: holdingregister `40001` is adres `0`, inputregister "
                       "`30010` is adres `9`. Houd de muis boven het adres om de Modicon-notatie "
                       "te zien.",
            .dataType = "`UInt16`/`Int16` gebruiken één register, `UInt32`/`Int32`/`Float32` twee "
                        "en de 64-bittypen vier opeenvolgende registers",
            .wordOrder =
                "de bytevolgorde van waarden die meerdere registers beslaan, zie hieronder",
            .scale = "waarde = ruwe waarde × schaal; met schaal `0,1` wordt `215` gelezen als "
                     "`21,5`",
            .format =
                "decimaal, hex (`0x00FF`) of binair; hex en binair tonen de ruwe registerbits",
            .wordOrderHeading = "Woordvolgorde",
            .wordOrderIntro =
                "Modbus kent alleen 16-bitregisters. Hoe een 32- of 64-bitwaarde over "
                "de registers is verdeeld, verschilt per fabrikant. De letters staan "
                "voor de bytes, de meest significante eerst:",
            .abcd = "hoogste woord eerst: de Modbus-standaard",
            .cdab = "woorden verwisseld, gebruikelijk bij PLC's en energiemeters",
            .badc = "bytes verwisseld binnen elk woord",
            .dcba = "volledig omgekeerd (little-endian)",
            .orderTip = "Ziet een waarde er vreemd uit, bijvoorbeeld een float van `4,6e-41` in "
                        "plaats van `21,5`? Probeer een andere volgorde; meestal is het CDAB.",
            .overlap = "Een driehoekje naast het adres betekent dat het datapunt overlapt met een "
                       "ander datapunt met dezelfde unit-ID en tabel.",
        },
    .writing =
        {
            .title = "Waarden schrijven",
            .howTo = "Coils en holdingregisters kunnen worden geschreven. Klik op het potlood in "
                     "de kolom **Waarde**, typ de nieuwe waarde en klik op **Schrijven**; kies "
                     "voor een bit **Aan** of **Uit**. De waarde wordt omgezet met het type, de "
                     "volgorde en de schaal van het datapunt.",
            .functionCodes = "Het programma gebruikt FC05 voor een coil, FC06 voor één register en "
                             "FC16 voor meerdere registers. Ondersteunt het apparaat alleen "
                             "FC15/FC16, kies dan **Altijd FC15/16** in de instellingen.",
            .onlyWhileReading = "Schrijven werkt alleen terwijl het uitlezen loopt. Mislukt het, "
                                "dan toont een melding de reden, bijvoorbeeld exception 02 (adres "
                                "bestaat niet) of 03 (waarde buiten bereik).",
        },
    .chart =
        {
            .title = "Grafiek en export",
            .howTo = "Vink in de kolom **Grafiek** de datapunten aan die gevolgd moeten worden en "
                     "kies onderaan **Grafiek**. Kies rechtsboven de periode: van 1 minuut tot "
                     "een uur, of alles.",
            .chartCaption = "De temperatuur over de laatste minuten.",
            .history = "Elke gelezen waarde wordt bewaard (tot 20.000 per datapunt). **Historie "
                       "exporteren (CSV)…** geeft één regel per meting met tijd, poll, naam, "
                       "waarde en eenheid, klaar voor een draaitabel of grafiek in Excel.",
        },
    .csv =
        {
            .title = "Excel en CSV",
            .spreadsheets = "Een datapuntenlijst kan in Excel of LibreOffice Calc worden gemaakt "
                            "of bewerkt en als CSV worden geïmporteerd. **CSV ▸ Datapunten "
                            "exporteren** geeft een bestand dat Excel meteen correct opent, met de "
                            "waarden van dat moment.",
            .columns = "De eerste regel bevat de kolomnamen. Alleen **Table** en **Address** zijn "
                       "verplicht; de volgorde van de kolommen maakt niet uit.",
            .name = "naam van het datapunt",
            .unitID = "slave-adres, 1 als de cel leeg is",
            .table = "`CO`, `DI`, `HR` of `IR` (ook `coil`, `holding`, `4x` …)",
            .address = "adres vanaf 0",
            .dataType = "`uint16`, `int16`, `float32` … (ook `float`, `real`, `dint`)",
            .wordOrder = "`ABCD`, `CDAB`, `BADC` of `DCBA`",
            .optional = "optioneel",
            .separatorTip =
                "De export volgt de landinstelling: schrijft die decimalen met een komma, dan "
                "bevat het bestand puntkomma's en decimale komma's (`21,5`), anders komma's en "
                "decimale punten (`21.5`). Bij het importeren worden komma, puntkomma en tab "
                "herkend, en zowel `21,5` als `21.5`.",
            .simulatorTip = "Om andere programma's of kestrin-cli te testen, speelt de simulator "
                            "kestrin-sim op een tweede adapter een apparaat na met een "
                            "geëxporteerde lijst: `kestrin-sim --csv lijst.csv --port "
                            "/dev/ttyUSB1`.",
        },
    .log =
        {
            .title = "Status en log",
            .ok = "gelezen, met de antwoordtijd",
            .noResponse = "geen antwoord binnen de ingestelde time-out",
            .exception = "het apparaat weigert het verzoek, zie hieronder",
            .crcError = "het antwoord is onderweg beschadigd",
            .lastGoodValue = "Na een fout blijft de laatste goede waarde staan, in grijs. Houd de "
                             "muis boven een waarde voor de ruwe registers, boven de status voor "
                             "het tijdstip.",
            .exceptionCodesHeading = "Exceptioncodes",
            .exception01 = "het apparaat ondersteunt deze functiecode niet",
            .exception02 = "dit adres bestaat niet (let op: adressen beginnen bij 0)",
            .exception03 = "ongeldige waarde of ongeldig aantal",
            .exception04 = "storing in het apparaat",
            .exception06 = "apparaat bezet, probeer het later opnieuw",
            .logLines = "Het log toont elk antwoord (←), elke schrijfactie (✎) en elke fout (✕). "
                        "**Logopties** (schuifregelaars onderaan) bieden tijdstempels, ruwe "
                        "frames, automatisch scrollen, of **alleen fouten en schrijfacties** voor "
                        "snelle polls.",
        },
    .troubleshooting =
        {
            .title = "Problemen oplossen",
            .noResponseHeading = "Geen antwoord",
            .unitID = "Komt de **unit-ID** overeen met het slave-adres van het apparaat?",
            .timeout = "Reageert het apparaat traag? Verhoog de **time-out voor antwoord** in de "
                       "instellingen.",
            .frame = "Zijn baudrate, pariteit en stopbits aan beide kanten gelijk? Probeer `8N1` "
                     "of `8N2` als `8E1` niet werkt.",
            .wiring =
                "Zijn A en B misschien verwisseld? Omwisselen kan geen kwaad en lost het probleem "
                "vaak op.",
            .cabling = "Gebruik twisted-pair-kabel, een afsluitweerstand van 120 Ω aan beide "
                       "uiteinden van de bus en een gemeenschappelijke massa.",
            .busyPort =
                "Is de poort bezet? De melding noemt het programma dat hem vasthoudt, bijvoorbeeld "
                "ModemManager (proces 812), en hoe u het stopt: ModemManager onderzoekt nieuwe "
                "adapters op modems, en brltty (voor brailleleesregels) eist CH34x-adapters op. "
                "Kestrin vergrendelt de poort die het uitleest, zodat een tweede Kestrin hem niet "
                "kan openen, zelfs niet als root. De gangbare chips (FTDI, CP210x, CH34x, PL2303, "
                "CDC-ACM) hebben geen extra driver nodig.",
            .findHeading = "Apparaten vinden",
            .findIntro = "Unit-ID, baudrate of adressen onbekend? **Poller ▸ Apparaten zoeken…** "
                         "doorzoekt de lijn zolang het uitlezen gestopt is:",
            .findUnits = "**Units** vraagt elke unit-ID van een bereik met de huidige "
                         "instellingen en toont welke antwoorden; klik er een aan om die verder "
                         "te onderzoeken.",
            .findSettings = "**Instellingen** probeert de gangbare baudrates en frames tot de unit "
                            "antwoordt; **Deze instellingen gebruiken** neemt ze over in het "
                            "project.",
            .findRegisters = "**Registers** leest welke adressen van elke tabel de unit heeft; "
                             "**Aan poll toevoegen** zet ze als datapunten in de huidige poll. "
                             "Adressen die de unit te druk had om te lezen, worden apart geteld, "
                             "bijvoorbeeld “96 + 32 ?”: of ze bestaan, is niet bekend.",
            .oddValuesHeading = "Vreemde waarden",
            .scale = "Klopt de orde van grootte niet? Controleer de **schaal** (bijvoorbeeld 0,1 "
                     "of 0,01).",
            .order = "Klopt een 32-bitwaarde niet? Probeer een andere **volgorde**, meestal CDAB.",
            .offByOne = "Is alles één adres verschoven? Trek er 1 af: de handleiding telt de "
                        "adressen dan vanaf 1 (of 40001).",
            .adaptersHeading = "Poorten en adapters",
            .privacy =
                "Gaat een poort niet open? De melding noemt de groep waar hij bij hoort (meestal "
                "**dialout**), zegt of u lid bent en geeft de opdracht die u met uw gebruikersnaam "
                "toevoegt, bijvoorbeeld `sudo usermod -aG dialout alice`; log daarna uit en weer "
                "in. Bent u pas na het inloggen toegevoegd, dan is opnieuw inloggen genoeg. "
                "Kestrin praat alleen met de seriële poort: er gaat niets over het netwerk, en "
                "lijsten en instellingen blijven op deze computer.",
            .portMoved =
                "Kestrin onthoudt de gekozen adapter aan zijn USB-identiteit (fabrikant, product, "
                "serienummer). Komt hij na opnieuw aansluiten onder een andere naam terug, "
                "bijvoorbeeld `/dev/ttyUSB1` in plaats van `/dev/ttyUSB0`, dan gaat het uitlezen "
                "daar verder en meldt het log “Seriële poort weer geopend (nu /dev/ttyUSB1)”. Twee "
                "gelijke adapters zijn in de poortlijst te onderscheiden aan hun serienummer.",
            .slowAdapter =
                "FTDI-adapters houden elk antwoord vast zolang hun latency timer loopt, standaard "
                "16 ms. Kestrin vraagt de driver tijdens het uitlezen om lage latentie; staat de "
                "timer daarna nog boven 1 ms, dan toont een melding boven het log wat dat kost, "
                "bijvoorbeeld “Met 16 ms ongeveer 45 verzoeken per seconde in plaats van 185.” "
                "**Op 1 ms zetten** verlaagt hem tot de adapter wordt losgekoppeld (de knop "
                "verschijnt alleen als de timer mag worden gewijzigd); **Blijvend oplossen…** "
                "toont de udev-regel die bij elke aansluiting 1 ms instelt.",
            .rs485 = "Op de UART van een board zoals de Raspberry Pi kan de driver de richting van "
                     "een RS-485-transceiver met RTS omschakelen: zet **RS-485-richting via RTS** "
                     "aan in de instellingen (schuifregelaars bovenaan) en stel **RTS tijdens "
                     "zenden**, **Wachttijd voor het zenden** en **Wachttijd na het zenden** in "
                     "zoals de transceiver nodig heeft. USB-adapters schakelen zelf om: laat het "
                     "voor hen uit. Kent de driver van de poort de RS-485-modus van de kernel "
                     "niet, dan gaat de poort niet open en zegt de melding dat.",
            .portsVerbose =
                "`kestrin-cli ports --verbose` toont dit alles in één keer voor elke poort: de "
                "link in /dev/serial/by-id, de driver, de USB-identiteit, de groep waar de poort "
                "bij hoort en of u hem mag openen, het programma dat hem vasthoudt, de latency "
                "timer en of de driver de RS-485-modus kent.",
        },
    .shortcuts =
        {
            .title = "Sneltoetsen",
            .ctrl = "Ctrl",
            .shift = "Shift",
            .del = "Del",
            .startStop = "Uitlezen starten / stoppen",
            .listen = "Meeluisteren starten / stoppen",
            .newPoll = "Nieuwe poll",
            .addDatapoint = "Datapunt toevoegen",
            .deleteDatapoints = "Geselecteerde datapunten verwijderen",
            .importExport = "Datapunten importeren / exporteren (CSV)",
            .projects = "Nieuw project / openen / opslaan als",
            .findInLog = "Zoeken in het log",
            .saveLog = "Log opslaan",
            .clearLog = "Log wissen",
            .openHelp = "Deze help openen",
        },
};
} // namespace

const HelpContent& dutchHelp() {
    return dutch;
}

} // namespace kestrin::L10n
