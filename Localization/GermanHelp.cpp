#include "HelpContent.h"

namespace kestrin::L10n {

namespace {
constexpr HelpContent german{
    .start =
        {
            .title = "Erste Schritte",
            .intro =
                [](std::string_view product) {
                    return concat(product,
                                  " ist ein Modbus-RTU-Master: Es liest Werte von Geräten an einem "
                                  "RS-485- oder RS-232-Bus, etwa Energiezählern, Steuerungen und "
                                  "Sensoren, und kann Werte in diese Geräte schreiben.");
                },
            .stepsHeading = "In vier Schritten",
            .connect = "Schließen Sie Ihren USB-RS485-Adapter an und verdrahten Sie ihn mit dem "
                       "Gerät (A an A, B an B).",
            .enterDatapoints = "Tragen Sie die **Datenpunkte** des Geräts in die Tabelle ein: "
                               "Geräteadresse, Tabelle, Adresse und Typ, wie im Handbuch des "
                               "Geräts angegeben.",
            .choosePort = "Wählen Sie oben die **serielle Schnittstelle**, die **Baudrate** und "
                          "über die Schaltfläche mit den Schiebereglern das Zeichenformat (zum "
                          "Beispiel `8E1`), genau wie am Gerät eingestellt.",
            .clickStart = "Klicken Sie auf **Starten** (Strg+R). Die Spalte **Wert** zeigt die "
                          "aktuellen Werte, die Spalte **Status**, ob das Lesen funktioniert.",
            .overviewCaption = "Eine Abfrage mit Live-Werten und dem Status je Datenpunkt, "
                               "darunter die Kommunikation.",
            .simulatorTip = "Kein Gerät zur Hand? Starten Sie `kestrin --demo`: Das Fenster liest "
                            "dann ein simuliertes Gerät, das die Beispielliste bereitstellt.",
            .autosave =
                "Ihre Abfragen und Datenpunkte werden automatisch gespeichert. **Datei ▸ "
                "Projekt speichern unter…** (Strg+Umschalt+S) legt eine eigene Projektdatei "
                "an, zum Beispiel je Anlage.",
            .listenHeading = "Einem anderen Master zuhören",
            .listen =
                "Fragt schon eine SPS oder ein Leitsystem die Geräte ab? Klicken Sie dann statt "
                "auf Starten auf **Mithören** (Strg+L): Kestrin öffnet die Schnittstelle und "
                "sendet überhaupt nichts. Es verfolgt die Anfragen des anderen Masters und "
                "die Antworten darauf und zeigt sie im Log, in der Statistik und im "
                "Diagramm, als hätte es sie selbst gelesen.",
            .listenCoverage =
                "Ein Datenpunkt erhält nur dann einen Wert, wenn eine Anfrage des anderen "
                "Masters ihn abdeckt: dieselbe Geräteadresse, Tabelle und Adressen. Die übrigen "
                "bleiben bei **Wartet…**. Schreibt der andere Master, wird der Datenpunkt "
                "aktualisiert, sobald das Gerät es bestätigt hat.",
            .listenWritingOff =
                "Beim Mithören ist Schreiben aus: Auf einem Bus, den ein anderer Master führt, "
                "darf Kestrin nicht senden. Klicken Sie auf **Mithören beenden** (Strg+L) und "
                "starten Sie das Lesen, um Werte zu schreiben.",
        },
    .polls =
        {
            .title = "Abfragen",
            .intro = "Eine Abfrage ist eine Gruppe von Datenpunkten mit eigenem Intervall, oben "
                     "als Reiter dargestellt. So lesen Sie schnelle Messwerte alle 250 ms und "
                     "Zähler jede Minute. **+** (Strg+T) legt eine neue Abfrage an; mit einem "
                     "Rechtsklick auf einen Reiter duplizieren oder entfernen Sie die Abfrage.",
            .tabDot = "Der Punkt im Reiter ist grün, wenn alles gelesen wird, und orange, wenn "
                      "etwas fehlschlägt. Schalten Sie **Aktiv** aus, um eine Abfrage "
                      "vorübergehend zu überspringen.",
            .combining = "Benachbarte Datenpunkte werden in einer Anfrage gelesen (bis zu 125 "
                         "Register oder 2000 Bits). In den Einstellungen (Schieberegler oben) "
                         "können Sie auch kleine Lücken überbrücken lassen: Das ist schneller, "
                         "aber manche Geräte antworten dann mit Ausnahme 02.",
            .oneRequest = "Auf der Leitung ist immer nur eine Anfrage unterwegs. Schreibzugriffe "
                          "haben Vorrang vor Lesezugriffen.",
            .cycleHeading = "Wie lange ein Durchlauf dauert",
            .cycleEstimate =
                "Neben dem Intervall zeigt Kestrin, wie lange ein Durchlauf der Abfrage die "
                "Leitung belegt, etwa „≈ 42 ms je Durchlauf“. Der Wert wird aus den "
                "Schnittstelleneinstellungen berechnet, mit 5 ms Antwortzeit je Gerät, bis beim "
                "Lesen seine eigene Reaktionszeit gemessen ist, und mit dem Latency-Timer des "
                "Adapters; zeigen Sie mit der Maus darauf, um jede Anfrage zu sehen und den "
                "Anteil der Leitung, den alle aktiven Abfragen brauchen. `kestrin-cli plan "
                "--project DATEI` gibt dasselbe für jede Abfrage einer Projektdatei aus.",
            .cycleWarning =
                "Orange wird die Anzeige, wenn die Abfrage nicht so oft gelesen werden kann, wie "
                "ihr Intervall verlangt: Ein Durchlauf dauert länger als das Intervall, oder die "
                "anderen Abfragen lasten die Leitung zu sehr aus. Dann steht dort, wie oft die "
                "Abfrage wirklich läuft, etwa „Dauert 140 ms: läuft alle 140 ms statt alle 100 "
                "ms“. Geben Sie der Abfrage ein längeres Intervall, oder legen Sie Werte, die "
                "warten können, in eine langsamere Abfrage. Die Anzeige warnt auch, wenn eine "
                "Antwort länger dauert als das **Antwort-Timeout**: Diese Anfrage schlüge dann "
                "jedes Mal fehl.",
            .busFigures =
                "**Bus** in der unteren Leiste zeigt, was das Lesen wirklich braucht, gemessen "
                "während es läuft: für jedes Gerät die Umlaufzeit und die Reaktionszeit (die Zeit "
                "des Geräts selbst) als Median und 99 % seiner Antworten, für jede aktive Abfrage "
                "das eingestellte und das erreichte Intervall, und wie viel der Zeit die Leitung "
                "belegt ist. Stoppt das Lesen, schreibt das Log eine Zeile je Gerät, das "
                "geantwortet hat, etwa „Geräteadresse 1: 120 Antworten, Umlaufzeit 27 ms (99 %: "
                "36 ms), Reaktionszeit 5 ms (99 %: 6 ms)“.",
            .timeoutOffer =
                "Sobald ein Gerät 50-mal geantwortet hat, vergleicht Kestrin das "
                "**Antwort-Timeout** damit, wie schnell die Geräte wirklich antworten. Passt ein "
                "anderes Timeout besser, bietet ein Hinweis über dem Log es an, etwa **100 ms "
                "verwenden**; es gilt ab dem nächsten Start des Lesens. Solange Anfragen "
                "unbeantwortet bleiben oder Antworten zu spät kommen, wird nur ein längeres "
                "Timeout angeboten.",
        },
    .datapoints =
        {
            .title = "Datenpunkte",
            .intro = "Ein Datenpunkt ist ein einzelner Wert in einem Gerät, etwa eine Temperatur "
                     "oder ein Sollwert. Sie beschreiben, wo er liegt und wie er gespeichert ist; "
                     "das Programm rechnet die Register in einen lesbaren Wert um.",
            .unitID = "die Adresse des Geräts am Bus (1–247), in Handbüchern oft Slave-Adresse "
                      "genannt",
            .table = "**Coil** (Bit, lesen und schreiben), **Digitaleingang** (Bit, nur lesen), "
                     "**Halteregister** (16 Bit, lesen und schreiben) oder **Eingangsregister** "
                     "(16 Bit, nur lesen)",
            .address = "die Protokolladresse, beginnend bei `0`. Handbücher verwenden oft die "
                       "Modicon-Notation: Halteregister `40001` ist Adresse `0`, Eingangsregister "
                       "`30010` ist Adresse `9`. Zeigen Sie mit der Maus auf die Adresse, um die "
                       "Modicon-Notation zu sehen.",
            .dataType = "`UInt16`/`Int16` belegen ein Register, `UInt32`/`Int32`/`Float32` zwei "
                        "und die 64-Bit-Typen vier aufeinanderfolgende Register",
            .wordOrder = "die Byte-Reihenfolge von Werten, die mehrere Register belegen, siehe "
                         "unten",
            .scale = "Wert = Rohwert × Faktor; mit `0,1` wird aus `215` der Wert `21,5`",
            .format = "dezimal, hex (`0x00FF`) oder binär; hex und binär zeigen die rohen "
                      "Registerbits",
            .wordOrderHeading = "Wortreihenfolge",
            .wordOrderIntro = "Modbus kennt nur 16-Bit-Register. Wie ein 32- oder 64-Bit-Wert auf "
                              "die Register verteilt wird, ist von Hersteller zu Hersteller "
                              "verschieden. Die Buchstaben stehen für die Bytes, das höchstwertige "
                              "zuerst:",
            .abcd = "höherwertiges Wort zuerst: der Modbus-Standard",
            .cdab = "Wörter vertauscht, üblich bei SPS und Energiezählern",
            .badc = "Bytes innerhalb jedes Worts vertauscht",
            .dcba = "vollständig umgekehrt (Little-Endian)",
            .orderTip = "Sieht ein Wert seltsam aus, zum Beispiel ein Float von `4,6e-41` statt "
                        "`21,5`? Versuchen Sie eine andere Reihenfolge; meist ist es CDAB.",
            .overlap = "Ein Dreieck neben der Adresse bedeutet, dass sich der Datenpunkt mit "
                       "einem anderen Datenpunkt desselben Geräts und derselben Tabelle "
                       "überschneidet.",
        },
    .writing =
        {
            .title = "Werte schreiben",
            .howTo = "Coils und Halteregister lassen sich schreiben. Klicken Sie auf den Stift in "
                     "der Spalte **Wert**, geben Sie den neuen Wert ein und klicken Sie auf "
                     "**Schreiben**; bei einem Bit wählen Sie **Ein** oder **Aus**. Der Wert wird "
                     "mit Typ, Reihenfolge und Faktor des Datenpunkts umgerechnet.",
            .functionCodes = "Das Programm verwendet FC05 für eine Coil, FC06 für ein Register "
                             "und FC16 für mehrere Register. Unterstützt Ihr Gerät nur FC15/FC16, "
                             "wählen Sie in den Einstellungen **Immer FC15/16**.",
            .onlyWhileReading = "Schreiben ist nur möglich, während gelesen wird. Schlägt es "
                                "fehl, nennt ein Hinweis den Grund, zum Beispiel Ausnahme 02 "
                                "(Adresse existiert nicht) oder 03 (Wert außerhalb des "
                                "Bereichs).",
        },
    .chart =
        {
            .title = "Diagramm und Export",
            .howTo = "Markieren Sie in der Spalte **Diagramm** die Datenpunkte, die Sie verfolgen "
                     "möchten, und wählen Sie unten **Diagramm**. Oben rechts wählen Sie den "
                     "Zeitraum: 1 Minute bis eine Stunde oder alles.",
            .chartCaption = "Die Temperatur der letzten Minuten.",
            .history = "Jeder gelesene Wert wird aufbewahrt (bis zu 20.000 je Datenpunkt). "
                       "**Verlauf exportieren (CSV)…** liefert eine Zeile je Messung mit Zeit, "
                       "Abfrage, Name, Wert und Einheit, bereit für eine Pivot-Tabelle oder ein "
                       "Diagramm in Excel.",
        },
    .csv =
        {
            .title = "Excel und CSV",
            .spreadsheets = "Sie können eine Datenpunktliste in Excel oder LibreOffice Calc "
                            "erstellen oder bearbeiten und als CSV importieren. **CSV ▸ "
                            "Datenpunkte exportieren** liefert eine Datei, die Excel sofort "
                            "richtig öffnet, mit den Werten zum Zeitpunkt des Exports.",
            .columns = "Die erste Zeile enthält die Spaltennamen. Nur **Table** und **Address** "
                       "sind Pflicht; die Reihenfolge der Spalten spielt keine Rolle.",
            .name = "Name des Datenpunkts",
            .unitID = "Geräteadresse, 1 wenn leer",
            .table = "`CO`, `DI`, `HR` oder `IR` (auch `coil`, `holding`, `4x` …)",
            .address = "Adresse ab 0",
            .dataType = "`uint16`, `int16`, `float32` … (auch `float`, `real`, `dint`)",
            .wordOrder = "`ABCD`, `CDAB`, `BADC` oder `DCBA`",
            .optional = "optional",
            .separatorTip = "Der Export richtet sich nach Ihrem Gebietsschema: Schreibt es "
                            "Dezimalzahlen mit Komma, enthält die Datei Semikolons und "
                            "Dezimalkommas (`21,5`), sonst Kommas und Dezimalpunkte (`21.5`). "
                            "Beim Import werden Komma, Semikolon und Tabulator erkannt, ebenso "
                            "`21,5` und `21.5`.",
            .simulatorTip = "Zum Testen anderer Programme oder von kestrin-cli stellt der "
                            "Simulator kestrin-sim eine exportierte Liste als Gerät an einem "
                            "zweiten Adapter bereit: `kestrin-sim --csv liste.csv --port "
                            "/dev/ttyUSB1`.",
        },
    .log =
        {
            .title = "Status und Log",
            .ok = "gelesen, mit der Antwortzeit",
            .noResponse = "keine Antwort innerhalb des Antwort-Timeouts",
            .exception = "das Gerät lehnt die Anfrage ab, siehe unten",
            .crcError = "die Antwort wurde unterwegs beschädigt",
            .lastGoodValue = "Nach einem Fehler bleibt der letzte gültige Wert in Grau stehen. "
                             "Zeigen Sie mit der Maus auf einen Wert, um die Registerrohwerte zu "
                             "sehen, oder auf den Status, um die Uhrzeit zu sehen.",
            .exceptionCodesHeading = "Ausnahmecodes",
            .exception01 = "das Gerät unterstützt diesen Funktionscode nicht",
            .exception02 = "diese Adresse existiert nicht (Achtung: Adressen beginnen bei 0)",
            .exception03 = "ungültiger Wert oder ungültige Anzahl",
            .exception04 = "Fehler im Gerät",
            .exception06 = "Gerät beschäftigt, später erneut versuchen",
            .logLines = "Das Log zeigt jede Antwort (←), jeden Schreibzugriff (✎) und jeden "
                        "Fehler (✕). Die **Log-Optionen** (Schieberegler unten) bieten "
                        "Zeitstempel, Rohtelegramme, automatisches Scrollen oder **nur Fehler und "
                        "Schreibzugriffe** für schnelle Abfragen.",
        },
    .troubleshooting =
        {
            .title = "Fehlerbehebung",
            .noResponseHeading = "Keine Antwort",
            .unitID = "Stimmt die **Geräteadresse** mit der am Gerät eingestellten überein?",
            .timeout = "Antwortet das Gerät langsam? Erhöhen Sie das **Antwort-Timeout** in den "
                       "Einstellungen.",
            .frame = "Sind Baudrate, Parität und Stoppbits auf beiden Seiten gleich? Versuchen "
                     "Sie `8N1` oder `8N2`, wenn `8E1` nicht funktioniert.",
            .wiring = "Sind A und B vertauscht? Ein Tausch der beiden Adern schadet nicht und "
                      "behebt das Problem oft.",
            .cabling = "Verwenden Sie verdrilltes Kabel (Twisted Pair), einen Abschlusswiderstand "
                       "von 120 Ω an beiden Enden des Busses und eine gemeinsame Masse.",
            .busyPort =
                "Ist die Schnittstelle belegt? Die Meldung nennt das Programm, das sie belegt, "
                "etwa ModemManager (Prozess 812), und wie Sie es beenden: ModemManager prüft neue "
                "Adapter auf Modems, und brltty (für Braillezeilen) belegt CH34x-Adapter. Kestrin "
                "sperrt die Schnittstelle, die es liest, sodass ein zweites Kestrin sie nicht "
                "öffnen kann, auch nicht als root. Die gängigen Chips (FTDI, CP210x, CH34x, "
                "PL2303, CDC-ACM) brauchen keinen eigenen Treiber.",
            .findHeading = "Geräte finden",
            .findIntro = "Geräteadresse, Baudrate oder Adressen unbekannt? **Poller ▸ Geräte "
                         "suchen…** durchsucht die Leitung, solange das Lesen gestoppt ist:",
            .findUnits = "**Geräte** fragt jede Geräteadresse eines Bereichs mit den aktuellen "
                         "Einstellungen ab und zeigt die, die antworten; ein Klick auf eines "
                         "übernimmt es für die anderen Suchen.",
            .findSettings = "**Einstellungen** probiert die üblichen Baudraten und Rahmen, bis das "
                            "Gerät antwortet; **Diese Einstellungen verwenden** übernimmt sie ins "
                            "Projekt.",
            .findRegisters =
                "**Register** ermittelt, welche Adressen jeder Tabelle das Gerät hat; **Zur "
                "Abfrage hinzufügen** fügt sie der aktuellen Abfrage als Datenpunkte hinzu. "
                "Adressen, für die das Gerät zu beschäftigt war, werden getrennt gezählt, etwa "
                "„96 + 32 ?“: Ob es sie gibt, ist unbekannt.",
            .oddValuesHeading = "Unplausible Werte",
            .scale = "Stimmt die Größenordnung nicht? Prüfen Sie den **Faktor** (zum Beispiel "
                     "0,1 oder 0,01).",
            .order = "Ist ein 32-Bit-Wert falsch? Versuchen Sie eine andere **Reihenfolge**, "
                     "meist CDAB.",
            .offByOne = "Ist alles um eine Adresse verschoben? Ziehen Sie 1 ab: Das Handbuch "
                        "zählt die Adressen dann ab 1 (oder ab 40001).",
            .adaptersHeading = "Schnittstellen und Adapter",
            .privacy =
                "Lässt sich eine Schnittstelle nicht öffnen? Die Meldung nennt die Gruppe, der sie "
                "gehört (meist **dialout**), sagt, ob Sie Mitglied sind, und gibt den Befehl an, "
                "der Sie mit Ihrem Benutzernamen hinzufügt, etwa `sudo usermod -aG dialout alice`; "
                "melden Sie sich danach ab und wieder an. Wurden Sie erst nach der Anmeldung "
                "hinzugefügt, genügt eine neue Anmeldung. Kestrin spricht nur mit der seriellen "
                "Schnittstelle: Nichts wird über das Netzwerk übertragen, und Ihre Listen und "
                "Einstellungen bleiben auf diesem Computer.",
            .portMoved = "Kestrin merkt sich den gewählten Adapter an seiner USB-Kennung "
                         "(Hersteller, Produkt, Seriennummer). Taucht er nach erneutem Einstecken "
                         "unter einem anderen Namen auf, etwa `/dev/ttyUSB1` statt `/dev/ttyUSB0`, "
                         "wird dort weitergelesen, und das Log meldet „Serielle Schnittstelle "
                         "wieder geöffnet (jetzt /dev/ttyUSB1)“. Zwei gleiche Adapter "
                         "unterscheidet die Liste der Schnittstellen an ihren Seriennummern.",
            .slowAdapter =
                "FTDI-Adapter halten jede Antwort für die Dauer ihres Latency-Timers zurück, ab "
                "Werk 16 ms. Kestrin bittet den Treiber beim Lesen um niedrige Latenz; steht der "
                "Timer danach noch über 1 ms, zeigt ein Hinweis über dem Log, was das kostet, etwa "
                "„Mit 16 ms etwa 45 Anfragen pro Sekunde statt 185.“ **Auf 1 ms setzen** senkt "
                "ihn, bis der Adapter ausgesteckt wird (die Schaltfläche erscheint nur, wenn der "
                "Timer geändert werden darf); **Dauerhaft beheben…** zeigt die udev-Regel, die bei "
                "jedem Einstecken 1 ms einstellt.",
            .rs485 =
                "Am UART eines Boards wie dem Raspberry Pi kann der Treiber die Richtung eines "
                "RS-485-Transceivers mit RTS umschalten: Schalten Sie in den Einstellungen "
                "(Schieberegler oben) **RS-485-Richtung über RTS** ein und stellen Sie **RTS beim "
                "Senden**, **Wartezeit vor dem Senden** und **Wartezeit nach dem Senden** so ein, "
                "wie der Transceiver es braucht. USB-Adapter schalten selbst um: Lassen Sie es für "
                "sie aus. Kennt der Treiber der Schnittstelle den RS-485-Modus des Kernels nicht, "
                "lässt sie sich nicht öffnen, und die Meldung sagt das.",
            .portsVerbose =
                "`kestrin-cli ports --verbose` zeigt all das auf einen Blick, für jede "
                "Schnittstelle: den Link unter /dev/serial/by-id, den Treiber, die USB-Kennung, "
                "die Gruppe, der sie gehört, und ob Sie sie öffnen dürfen, das Programm, das sie "
                "belegt, den Latency-Timer und ob der Treiber den RS-485-Modus kennt.",
        },
    .shortcuts =
        {
            .title = "Tastenkürzel",
            .ctrl = "Strg",
            .shift = "Umschalt",
            .del = "Entf",
            .startStop = "Lesen starten / stoppen",
            .listen = "Mithören starten / beenden",
            .newPoll = "Neue Abfrage",
            .addDatapoint = "Datenpunkt hinzufügen",
            .deleteDatapoints = "Ausgewählte Datenpunkte löschen",
            .importExport = "Datenpunkte importieren / exportieren (CSV)",
            .projects = "Neues Projekt / öffnen / speichern unter",
            .findInLog = "Im Log suchen",
            .saveLog = "Log speichern",
            .clearLog = "Log leeren",
            .openHelp = "Diese Hilfe öffnen",
        },
};
} // namespace

const HelpContent& germanHelp() {
    return german;
}

} // namespace kestrin::L10n
