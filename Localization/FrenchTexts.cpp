#include "Texts.h"

namespace kestrin::L10n {

namespace {
constexpr Texts french{
    .header = {
        .port = "Port série",
        .noPortsFound = "Aucun port trouvé",
        .choosePort = "Sélectionnez un port…",
        .portNotConnected = [](std::string_view port) { return concat(port, " (non connecté)"); },
        .baudRate = "Vitesse de transmission",
        .baudLabel = [](int rate) { return concat(rate, " bauds"); },
        .start = "Démarrer",
        .stop = "Arrêter",
        .frameSettingsHelp =
            "Bits de données, parité, bits de stop, délai d'attente et mode d'écriture",
        .startHelp = "Démarrer la lecture (Ctrl+R)",
        .stopHelp = "Arrêter la lecture (Ctrl+R)",
        .listen = "Écouter",
        .stopListening = "Arrêter l'écoute",
        .listenHelp = "Écouter le trafic d'un autre maître sans envoyer un seul octet (Ctrl+L)",
        .stopListeningHelp = "Arrêter l'écoute (Ctrl+L)",
        .lockedWhileRunning = "Arrêtez la lecture pour modifier ce réglage",
        .lockedWhileListening = "Arrêtez l'écoute pour modifier ce réglage",
        .demoDevice = "Appareil de démonstration (simulé)",
        .startNeedsPort = "Branchez et sélectionnez un port série pour démarrer",
        .startWaitsForScan =
            "Rechercher des appareils occupe le port ; démarrez quand la recherche est "
            "terminée",
        .startNeedsDatapoints = "Ajoutez des points de données à une scrutation active pour "
                                "démarrer",
        .listenNeedsPort = "Branchez et sélectionnez un port série pour écouter",
        .listenWaitsForScan =
            "Rechercher des appareils occupe le port ; écoutez quand la recherche est terminée",
    },
    .settings =
        {
            .frame = "Format de trame",
            .dataBits = "Bits de données",
            .parity = "Parité",
            .stopBits = "Bits de stop",
            .parityNone = "Aucune",
            .parityEven = "Paire",
            .parityOdd = "Impaire",
            .modbusDefault = "Réglage Modbus par défaut (8E1)",
            .standardNote = "Modbus RTU utilise 8E1 par défaut. Beaucoup d'appareils utilisent "
                            "8N1 ou 8N2 ; consultez le manuel de votre appareil.",
            .requests = "Requêtes",
            .responseTimeout = "Délai d'attente de réponse",
            .timeoutHelp = "Durée pendant laquelle l'application attend la réponse de l'appareil. "
                           "Passé ce délai, la requête est comptée comme sans réponse.",
            .combine = "Regrouper les lectures",
            .adjacentOnly = "Adresses contiguës uniquement",
            .gapsUpTo = [](int gap) { return concat("Écarts jusqu'à ", gap, " adresses"); },
            .combineHelp = "Les points de données proches les uns des autres sont lus en une "
                           "seule requête. Inclure les écarts d'adresses dans la requête est plus "
                           "rapide, mais certains appareils répondent alors par l'exception 02 "
                           "pour les adresses qu'ils ne possèdent pas.",
            .writeMode = "Écritures",
            .writeSingle = "FC05/06 pour une seule valeur",
            .writeMultiple = "Toujours FC15/16",
            .writeModeHelp = "Certains appareils ne prennent en charge que FC16 (écriture de "
                             "plusieurs registres), même pour un seul registre.",
            .rs485 = "Direction RS-485 par RTS",
            .rs485Help = "Pour les UART des cartes comme le Raspberry Pi, dont le pilote commute "
                         "l'émetteur-récepteur avec RTS. Les adaptateurs USB commutent seuls ; "
                         "laissez-la désactivée pour eux.",
            .rtsWhileSending = "RTS pendant l'émission",
            .rtsHigh = "Haut",
            .rtsLow = "Bas",
            .delayBeforeSend = "Délai avant l'émission",
            .delayAfterSend = "Délai après l'émission",
        },
    .footer =
        {
            .statistics =
                [](std::int64_t requests, std::int64_t responses, std::int64_t timeouts,
                   std::int64_t exceptions, std::int64_t errors) {
                    return concat("Requêtes ", requests, " · Réponses ", responses,
                                  " · Sans réponse ", timeouts, " · Exceptions ", exceptions,
                                  " · Non valides ", errors);
                },
            .options = "Options du journal",
            .optionsHelp = "Horodatage, trames brutes et défilement automatique",
            .autoscroll = "Défilement automatique",
            .timestamps = "Horodatage",
            .rawFrames = "Afficher les trames RTU brutes",
            .rawFramesHelp = "Affiche la trame RTU complète (adresse esclave, PDU et CRC) au "
                             "lieu des seules données.",
            .onlyProblems = "Journaliser uniquement les erreurs et les écritures",
            .onlyProblemsHelp = "Les scrutations rapides remplissent vite le journal. Avec cette "
                                "option, vous ne voyez que ce qui demande votre attention.",
            .save = "Enregistrer…",
            .saveHelp = "Enregistrer le journal dans un fichier texte (Ctrl+S)",
            .clear = "Effacer le journal",
            .clearHelp = "Effacer le journal et les compteurs (Ctrl+K)",
            .outputAccessibility = "Journal de communication",
        },
    .menu =
        {
            .newProject = "Nouveau projet",
            .openProject = "Ouvrir un projet…",
            .saveProject = "Enregistrer le projet sous…",
            .importCSV = "Importer des points de données (CSV)…",
            .exportCSV = "Exporter les points de données (CSV)…",
            .saveLog = "Enregistrer le journal…",
            .clearLog = "Effacer le journal",
            .file = "Fichier",
            .help = "Aide",
            .quit = "Quitter",
            .replaceProjectTitle = "Remplacer le projet actuel\u00a0?",
            .replaceProjectMessage = "Ses scrutations et ses points de données sont supprimés.",
            .csvFiles = "Fichiers CSV",
            .datapointLists = "Listes de points de données",
            .projectFiles = "Fichiers de projet",
            .textFiles = "Fichiers texte",
            .allFiles = "Tous les fichiers",
        },
    .table = {
        .name = "Nom",
        .unitID = "Esclave",
        .table = "Table",
        .address = "Adresse",
        .dataType = "Type",
        .wordOrder = "Ordre",
        .scale = "Échelle",
        .value = "Valeur",
        .unit = "Unité",
        .format = "Affichage",
        .description = "Description",
        .status = "État",
        .add = "Ajouter un point de données",
        .addHelp = "Ajouter un point de données à la prochaine adresse libre (Ctrl+Maj+D)",
        .duplicate = "Dupliquer",
        .deleteRows = "Supprimer",
        .csvHelp =
            "Importer ou exporter la liste pour Excel, LibreOffice Calc ou un autre programme",
        .unitIDHelp = "Adresse esclave de l'appareil (1–247)",
        .addressHelp =
            [](std::string_view modicon) {
                return concat("Adresse protocole, à partir de 0. En notation Modicon : ", modicon,
                              ".");
            },
        .wordOrderHelp = "Ordre des octets des valeurs 32 et 64 bits. ABCD est le standard "
                         "Modbus ; CDAB (mots permutés) est courant dans les automates.",
        .scaleHelp = "Valeur = valeur brute du registre × échelle. Par exemple 0,1 quand "
                     "l'appareil envoie 215 pour 21,5.",
        .plotHelp = "Afficher ce point de données dans le graphique",
        .rawHelp = [](std::string_view raw) { return concat("Registres bruts : ", raw); },
        .overlapHelp = "Cette adresse chevauche un autre point de données ou s'étend au-delà de "
                       "l'adresse 65535.",
        .emptyTitle = "Aucun point de données pour l'instant",
        .emptyText = "Ajoutez les points de données à lire ou importez une liste depuis Excel "
                     "(CSV). Les points de données voisins sont lus ensemble.",
        .tableNames =
            {
                .coil = "Bobine",
                .discreteInput = "Entrée discrète",
                .holdingRegister = "Registre de maintien",
                .inputRegister = "Registre d'entrée",
            },
        .formatNames =
            {
                .decimal = "Décimal",
                .binary = "Binaire",
            },
        .waiting = "En attente…",
        .updatedHelp = [](std::string_view time) { return concat("Dernière lecture à ", time); },
        .valueHelp = "Saisissez une valeur et appuyez sur Entrée. L'hexadécimal (0x1F) et le "
                     "binaire (0b101) sont aussi acceptés.",
        .valueInvalid =
            [](std::string_view type) {
                return concat("Cette valeur ne peut pas être représentée en ", type, ".");
            },
        .unitIDInvalid = "L'adresse esclave est un nombre entier de 1 à 247.",
        .addressInvalid = "L'adresse est un nombre entier de 0 à 65535.",
        .scaleInvalid = "L'échelle est un nombre, par exemple 0,1 ou 10.",
    },
    .import = {
        .title =
            [](int count) {
                return count < 2 ? concat(count, " point de données trouvé")
                                 : concat(count, " points de données trouvés");
            },
        .question = "Voulez-vous les ajouter à la liste actuelle ou remplacer la liste ?",
        .skipped =
            [](int count) {
                return count < 2 ? concat(count, " ligne ignorée :")
                                 : concat(count, " lignes ignorées :");
            },
        .add = "Ajouter",
        .replace = "Remplacer",
        .cancel = "Annuler",
    },
    .modbus =
        {
            .functionNames =
                {
                    .readCoils = "Lecture des bobines",
                    .readDiscreteInputs = "Lecture des entrées discrètes",
                    .readHoldingRegisters = "Lecture des registres de maintien",
                    .readInputRegisters = "Lecture des registres d'entrée",
                    .writeSingleCoil = "Écriture d'une bobine",
                    .writeSingleRegister = "Écriture d'un registre",
                    .diagnostics = "Diagnostic",
                    .writeMultipleCoils = "Écriture de plusieurs bobines",
                    .writeMultipleRegisters = "Écriture de plusieurs registres",
                    .maskWriteRegister = "Écriture masquée d'un registre",
                    .readWriteMultipleRegisters = "Lecture/écriture de plusieurs registres",
                    .deviceIdentification = "Identification de l'appareil",
                    .other = "Fonction",
                },
            .exceptionNames =
                {
                    .illegalFunction = "Fonction non valide",
                    .illegalDataAddress = "Adresse de données non valide",
                    .illegalDataValue = "Valeur de données non valide",
                    .serverDeviceFailure = "Défaillance de l'appareil",
                    .acknowledge = "Acquittement",
                    .serverDeviceBusy = "Appareil occupé",
                    .memoryParityError = "Erreur de parité mémoire",
                    .gatewayPathUnavailable = "Chemin de passerelle indisponible",
                    .gatewayTargetFailedToRespond = "Pas de réponse de l'appareil cible de la "
                                                    "passerelle",
                    .other = "Exception",
                },
        },
    .board =
        {
            .usbSerial = [](std::string_view chip) { return concat("USB-série (", chip, ")"); },
        },
    .errors = {
        .alertTitle = "Une erreur s'est produite",
        .selectPortFirst = "Sélectionnez d'abord un port série.",
        .saveFailed =
            [](std::string_view reason) { return concat("Échec de l'enregistrement : ", reason); },
        .fileOpenFailed =
            [](std::string_view file) {
                return concat("Impossible de lire ", file,
                              ". S'agit-il bien d'un fichier de cette application ?");
            },
        .importNothing =
            [](std::string_view details) {
                return concat("Aucun point de données trouvé dans ce fichier. La première ligne "
                              "doit contenir les noms des colonnes, dont au moins Table et "
                              "Address. ",
                              details);
            },
        .importIssue =
            [](int line, std::string_view problem) {
                return concat("Ligne ", line, " : ", problem);
            },
        .csvMissingColumns = "les colonnes Table et Address sont absentes",
        .csvInvalidTable =
            [](std::string_view text) {
                return concat("table inconnue « ", text, " » (utilisez CO, DI, HR ou IR)");
            },
        .csvInvalidAddress =
            [](std::string_view text) {
                return concat("adresse non valide « ", text, " » (0 à 65535)");
            },
        .csvInvalidUnit =
            [](std::string_view text) {
                return concat("adresse esclave non valide « ", text, " » (1 à 247)");
            },
        .csvInvalidDataType =
            [](std::string_view text) { return concat("type de données inconnu « ", text, " »"); },
        .csvInvalidNumber =
            [](std::string_view text) { return concat("nombre non valide « ", text, " »"); },
        .invalidPath =
            [](std::string_view path) {
                return concat("« ", path, " » n'est pas un port série valide.");
            },
        .openFailed =
            [](std::string_view path, std::string_view reason) {
                return concat("Impossible d'ouvrir ", path, " : ", reason, ".");
            },
        .openPermissionDenied =
            "Les ports série ne sont accessibles qu'aux membres du groupe dialout : ajoutez-vous "
            "avec la commande sudo usermod -aG dialout $USER, puis rouvrez votre session.",
        .permissionNotMember =
            [](std::string_view group, std::string_view user) {
                return concat("Le port appartient au groupe ", group, " et ", user,
                              " n'en est pas membre : ajoutez-le avec sudo usermod -aG ", group,
                              " ", user, ", puis fermez et rouvrez votre session.");
            },
        .permissionNotInThisLogin =
            [](std::string_view group) {
                return concat("Vous avez été ajouté au groupe ", group,
                              " après l'ouverture de cette session : fermez-la et rouvrez-la (ou "
                              "lancez newgrp ",
                              group, " dans un terminal et démarrez Kestrin depuis celui-ci).");
            },
        .permissionMemberRefused =
            [](std::string_view group) {
                return concat("Vous êtes déjà membre du groupe ", group,
                              " ; autre chose refuse l'accès, par exemple une liste de contrôle "
                              "d'accès (ACL) ou un module de sécurité.");
            },
        .permissionOwnerOnly =
            "Seul le propriétaire du périphérique peut l'ouvrir ; son groupe n'a pas le droit de "
            "le lire et d'y écrire. Une règle udev ou le propriétaire doit accorder l'accès.",
        .busy =
            [](std::string_view path) {
                return concat(path, " est déjà utilisé par un autre programme. Fermez ce "
                                    "programme et réessayez.");
            },
        .holderProcess =
            [](int pid, std::string_view program) {
                return concat(program, " (processus ", pid, ")");
            },
        .busyBy =
            [](std::string_view path, std::string_view holder) {
                return concat(path, " est utilisé par ", holder, ".");
            },
        .busyProbablyBy =
            [](std::string_view path, std::string_view holder) {
                return concat(path, " est utilisé, probablement par ", holder, ".");
            },
        .closeHolder = "Fermez ce programme et réessayez.",
        .modemManagerHint =
            "ModemManager sonde les nouveaux adaptateurs série à la recherche de modems : "
            "arrêtez-le avec sudo systemctl stop ModemManager, ou écartez-le de cet adaptateur "
            "avec une règle udev qui définit ENV{ID_MM_DEVICE_IGNORE}=\"1\".",
        .brlttyHint =
            "brltty, le pilote des afficheurs braille, s'empare des adaptateurs CH340/CH341. Sans "
            "afficheur braille, arrêtez-le avec sudo systemctl mask brltty-udev.service "
            "brltty.service (ou supprimez le paquet brltty), puis rebranchez l'adaptateur.",
        .configurationFailed =
            [](std::string_view reason) {
                return concat("Échec de la configuration du port série : ", reason, ".");
            },
        .rs485Refused =
            [](std::string_view reason) {
                return concat("Le pilote de ce port ne sait pas commuter le sens RS-485 par RTS (",
                              reason,
                              "). Les adaptateurs USB changent de sens d'eux-mêmes ; ce réglage "
                              "est destiné aux UART des cartes comme le Raspberry Pi. "
                              "Désactivez-le dans les réglages série.");
            },
        .unsupportedBaud =
            [](int baud) {
                return concat("La vitesse de ", baud,
                              " bauds n'est pas prise en charge par cet adaptateur.");
            },
        .notOpen = "Le port série n'est pas ouvert.",
        .sendRefused = "Rien n'est envoyé pendant l'écoute.",
        .writeFailed =
            [](std::string_view reason) { return concat("Échec de l'envoi : ", reason, "."); },
        .timeout = "Pas de réponse de l'appareil.",
        .deviceDisconnected = "L'adaptateur a été déconnecté.",
        .demoFailed =
            [](std::string_view reason) {
                return concat("Impossible de démarrer l'appareil de démonstration\u00a0: ", reason);
            },
        .unknownOption =
            [](std::string_view option, std::string_view help) {
                return concat("option inconnue ", option, " (voir ", help, ")");
            },
        .unexpectedArgument =
            [](std::string_view argument, std::string_view help) {
                return concat("argument inattendu « ", argument, " » (voir ", help, ")");
            },
        .missingValue =
            [](std::string_view option) {
                return concat("l'option ", option, " demande une valeur");
            },
        .missingOption =
            [](std::string_view option) { return concat("l'option ", option, " est obligatoire"); },
        .invalidOptionValue =
            [](std::string_view option, std::string_view value) {
                return concat("valeur non valide « ", value, " » pour ", option);
            },
        .optionsExclude =
            [](std::string_view first, std::string_view second) {
                return concat(first, " et ", second, " s'excluent mutuellement");
            },
        .invalidBaud =
            [](std::string_view value, std::string_view rates) {
                return concat("débit « ", value,
                              " » inutilisable\u00a0: indiquez un nombre entier positif, "
                              "en général l'un de ",
                              rates);
            },
        .tableNotWritable =
            [](std::string_view table) {
                return concat("la table « ", table,
                              " » n'est pas accessible en écriture\u00a0: les registres "
                              "d'entrée et les entrées discrètes sont en lecture seule\u00a0; "
                              "écrivez des bobines (CO) ou des registres de maintien (HR)");
            },
    },
    .document = {
        .problemAt = [](std::string_view path,
                        std::string_view problem) { return concat(path, "\u00a0: ", problem); },
        .notJSON = "pas un document JSON",
        .expectedObject = "objet attendu",
        .expectedList = "liste attendue",
        .expectedText = "texte attendu",
        .expectedNumber = "nombre attendu",
        .expectedFiniteNumber = "nombre fini attendu",
        .expectedInteger =
            [](std::int64_t minimum, std::int64_t maximum) {
                return concat("nombre entier de ", minimum, " à ", maximum, " attendu");
            },
        .expectedBoolean = "true ou false attendu",
        .expectedUUID = "UUID attendu",
        .missing = "manquant",
        .unknownValue =
            [](std::string_view found, std::string_view choices) {
                return concat("valeur inconnue «\u00a0", found, "\u00a0» (utilisez ", choices, ")");
            },
        .emptyList = "au moins une entrée attendue",
    },
    .help =
        {
            .windowTitle = "Aide de Kestrin",
            .searchPrompt = "Rechercher dans l'aide",
            .noResults = "Aucune rubrique trouvée",
            .tipLabel = "Astuce",
        },
    .state =
        {
            .running = "Lecture en cours",
            .listening = "Écoute",
            .stopped = "Arrêté",
            .serialLost = "Port série perdu",
        },
    .notice =
        {
            .emptyTitle = "Prêt pour la lecture",
            .emptySteps = "Saisissez dans le tableau les points de données de votre appareil "
                          "(esclave, table, adresse et type), choisissez en haut le port série "
                          "et les mêmes réglages que l'appareil, puis cliquez sur Démarrer "
                          "(Ctrl+R).",
            .emptyNoDevice = "Aucun adaptateur USB trouvé",
            .emptyNoDeviceSteps = "Branchez votre adaptateur USB-RS485. Le port apparaît alors "
                                  "automatiquement. Vous pouvez déjà préparer votre liste de "
                                  "points de données.",
            .startPolling = "Démarrer la lecture",
            .noResponse = "L'appareil ne répond pas. Vérifiez l'adresse esclave, la vitesse de "
                          "transmission, la parité et les bits de stop, ainsi que le câblage (A/B "
                          "non inversés).",
            .serialLost = "Le port série a disparu. Dès que l'adaptateur sera rebranché, la "
                          "lecture reprendra automatiquement.",
            .dismiss = "Fermer",
            .writeFailed =
                [](std::string_view name, std::string_view reason) {
                    return concat("Échec de l'écriture de ", name, " : ", reason, ".");
                },
            .listening = "Écoute seule : Kestrin n'envoie rien sur ce bus. Les valeurs viennent du "
                         "trafic de l'autre maître, et l'écriture est désactivée.",
            .stopListeningFirst = "Kestrin ne fait qu'écouter et n'envoie rien. Arrêtez l'écoute "
                                  "(Ctrl+L) et démarrez la lecture pour écrire des valeurs.",
            .startFirst = "Démarrez d'abord la lecture (Ctrl+R) pour écrire des valeurs.",
        },
    .adapter = {
        .latencyHeld =
            [](int ms, std::string_view path) {
                return concat("L'adaptateur sur ", path, " retient chaque réponse ", ms,
                              " ms (son latency timer).");
            },
        .latencyCost =
            [](int ms, int now, int best) {
                return concat("Avec ", ms, " ms, environ ", now,
                              " requêtes par seconde au lieu de ", best, ".");
            },
        .setToOneMs = "Régler sur 1 ms",
        .fixForGood = "Corriger durablement…",
        .fixTitle = "Régler le latency timer durablement",
        .fixSteps =
            [](std::string_view file, std::string_view command) {
                return concat("Enregistrez cette ligne sous ", file, " (en root), puis exécutez ",
                              command,
                              " et rebranchez l'adaptateur. Les adaptateurs FTDI auront "
                              "alors 1 ms à chaque branchement.");
            },
        .copyRule = "Copier la règle",
        .latencySet =
            [](std::string_view path) {
                return concat("Latency timer de ", path, " réglé sur 1 ms");
            },
        .latencySetFailed =
            [](std::string_view path, std::string_view reason) {
                return concat("Le latency timer de ", path, " n'a pas pu être réglé : ", reason,
                              ".");
            },
    },
    .bus = {
        .button = "Bus",
        .buttonHelp = "La rapidité de réponse de chaque esclave et l'occupation de la ligne, "
                      "mesurées pendant la lecture",
        .title = "Mesuré sur le bus",
        .nothingYet =
            "Les chiffres apparaissent dès que des esclaves répondent pendant la lecture.",
        .answers = "Réponses",
        .roundTrip = "Aller-retour",
        .turnaround = "Temps de réaction",
        .spreadNote = "Médiane / 99 % des réponses. Le temps de réaction est celui de l'appareil "
                      "lui-même : l'aller-retour sans les trames sur la ligne, les silences et le "
                      "délai de l'adaptateur.",
        .poll = "Scrutation",
        .intervalSet = "Intervalle réglé",
        .intervalGot = "Intervalle obtenu",
        .lineBusy =
            [](int percent) { return concat("La ligne est occupée ", percent, " % du temps."); },
        .unitSummary =
            [](std::int64_t unit, std::int64_t answers) {
                return concat("Esclave ", unit, " : ", answers, " réponses");
            },
        .roundTripSummary =
            [](std::int64_t median, std::int64_t p99) {
                return concat("aller-retour ", median, " ms (99 % : ", p99, " ms)");
            },
        .turnaroundSummary =
            [](std::int64_t median, std::int64_t p99) {
                return concat("temps de réaction ", median, " ms (99 % : ", p99, " ms)");
            },
        .timeoutFits =
            [](std::int64_t unit, std::int64_t ms) {
                return concat("L'esclave ", unit, " donne 99 % de ses réponses en moins de ", ms,
                              " ms.");
            },
        .timeoutOffer =
            [](std::int64_t offered, std::int64_t current) {
                return concat("Un délai d'attente de ", offered,
                              " ms le couvre avec de la marge (actuellement ", current,
                              " ms) ; il s'applique au prochain démarrage de la lecture.");
            },
        .useTimeout = [](int ms) { return concat("Utiliser ", ms, " ms"); },
        .timeoutSet =
            [](int ms) {
                return concat("Délai d'attente réglé à ", ms,
                              " ms ; il s'applique au prochain démarrage de la lecture");
            },
    },
    .polls = {
        .add = "Nouvelle scrutation",
        .addHelp = "Ajouter un autre groupe de points de données avec son propre intervalle "
                   "(Ctrl+T)",
        .namePlaceholder = "Nom",
        .interval = "Intervalle",
        .intervalHelp = "Fréquence de lecture de cette scrutation",
        .active = "Active",
        .activeHelp = "Désactivée : cette scrutation est ignorée",
        .removeTitle = "Supprimer la scrutation ?",
        .remove = "Supprimer",
        .removeMessage = "Les points de données de cette scrutation sont également supprimés.",
        .unnamed = "Sans titre",
        .duplicate = "Dupliquer",
        .tabHelp = "Clic droit pour dupliquer ou supprimer",
        .newName = [](int number) { return concat("Scrutation ", number); },
        .copyName = [](std::string_view name) { return concat(name, " (copie)"); },
        .removeQuestion =
            [](std::string_view name) {
                return concat("Supprimer la scrutation «\u00a0", name, "\u00a0»\u00a0?");
            },
        .cycle = [](int ms) { return concat("≈ ", ms, " ms par cycle"); },
        .cycleHelp =
            [](int ms) {
                return concat(
                    "Une lecture de cette scrutation, calculée d’après les réglages série avec ",
                    ms, " ms de réponse pour chaque appareil :");
            },
        .lineLoad =
            [](int percent) {
                return concat("Les scrutations actives occupent ", percent, " % de la ligne");
            },
        .outlastsInterval =
            [](int cycle, int real, int interval) {
                return concat("Dure ", cycle, " ms : lue toutes les ", real,
                              " ms, et non toutes les ", interval, " ms");
            },
        .lineOverloaded =
            [](int percent, int real, int interval) {
                return concat("Ligne chargée à ", percent, " % : lue toutes les ", real,
                              " ms, et non toutes les ", interval, " ms");
            },
        .answerAfterTimeout =
            [](std::int64_t answer, std::int64_t timeout) {
                return concat("Une réponse dure ", answer, " ms, plus que le délai d’attente de ",
                              timeout, " ms");
            },
        .measuredUnits =
            [](std::string_view units) {
                return concat("Temps de réponse mesuré pendant la lecture pour l’esclave ", units);
            },
    },
    .write =
        {
            .help = "Écrire une nouvelle valeur dans l'appareil",
            .title = [](std::string_view name) { return concat("Écrire ", name); },
            .off = "Désactivé (0)",
            .on = "Activé (1)",
            .placeholder = "Nouvelle valeur",
            .button = "Écrire",
        },
    .pane =
        {
            .title = "Vue",
            .log = "Journal",
            .chart = "Graphique",
            .clearHistory = "Effacer l'historique",
            .clearHistoryHelp = "Effacer toutes les valeurs enregistrées",
            .exportHistory = "Exporter l'historique (CSV)…",
            .exportHistoryHelp = "Enregistrer chaque valeur lue, avec son heure, pour Excel ou "
                                 "LibreOffice Calc",
            .findPlaceholder = "Rechercher dans le journal",
            .findNext = "Résultat suivant",
            .findPrevious = "Résultat précédent",
            .findDone = "Terminé",
            .exportProgress = "Exportation de l'historique…",
        },
    .chart =
        {
            .emptyTitle = "Rien à afficher pour l'instant",
            .emptyText = "Cochez les points de données à suivre dans la colonne Graphique, puis "
                         "démarrez la lecture.",
            .time = "Heure",
            .window = "Période",
            .windowAll = "Tout",
            .windowHelp = "Période affichée par le graphique",
        },
    .log = {
        .failure =
            {
                .unexpectedUnit = [](int unit) { return concat("réponse de l'esclave ", unit); },
                .unexpectedFunction =
                    [](std::string_view code) {
                        return concat("réponse avec le code fonction ", code);
                    },
                .timeout =
                    [](int timeoutMs) {
                        return concat("aucune réponse dans les ", timeoutMs, " ms");
                    },
                .crcMismatch = "erreur CRC dans la réponse",
                .malformed = "réponse de longueur incorrecte",
            },
        .shortFailure =
            {
                .exception = [](std::string_view code) { return concat("Exception ", code); },
                .timeout = "Sans réponse",
                .crcMismatch = "Erreur CRC",
                .invalid = "Réponse non valide",
            },
        .started =
            [](std::string_view port, std::string_view serial) {
                return concat("Lecture démarrée sur ", port, " @ ", serial);
            },
        .stopped = "Lecture arrêtée",
        .unit = [](int id) { return concat("Esclave ", id); },
        .unitFunction =
            [](int id, std::string_view code) { return concat("Esclave ", id, " · FC ", code); },
        .writeFailed =
            [](std::string_view name) { return concat("Échec de l'écriture de ", name); },
        .serialLost =
            [](std::string_view path) {
                return concat("Le port série ", path, " a disparu ; en attente de son retour");
            },
        .serialRestored = "Port série de nouveau ouvert",
        .serialRestoredAt =
            [](std::string_view path) {
                return concat("Port série de nouveau ouvert (désormais ", path, ")");
            },
        .lateAnswer = "Réponse tardive ignorée",
        .readInParts =
            [](std::string_view range) { return concat(range, " lu en plusieurs parties"); },
        .refusedAddresses =
            [](std::string_view addresses) { return concat("l'appareil a refusé ", addresses); },
        .listeningStarted =
            [](std::string_view port, std::string_view serial) {
                return concat("Écoute sur ", port, " @ ", serial);
            },
        .listeningStopped = "Écoute arrêtée",
        .noResponse = "Sans réponse",
        .unmatched = "Ne correspond à aucune requête",
        .rs485DelaysLimited =
            [](int ms) {
                return concat("Les délais RS-485 du projet au-delà de ", ms,
                              " ms ont été ramenés à ", ms,
                              " ms, le maximum accepté par le noyau.");
            },
    },
    .example =
        {
            .pollName = "Appareil d'exemple",
            .temperature = "Température",
            .pressure = "Pression",
            .runtime = "Durée de fonctionnement",
            .setpoint = "Consigne",
            .mode = "Mode",
            .pump = "Pompe en marche",
            .alarm = "Alarme",
        },
    .scan = {
        .unitProgress =
            [](int done, int total, int seconds) {
                return concat(done, " esclaves interrogés sur ", total, ", encore environ ",
                              seconds, " s");
            },
        .sweepProgress =
            [](int done, int total, int seconds) {
                return concat("Réglage ", done, " sur ", total, ", encore environ ", seconds, " s");
            },
        .noUnitAnswered = "Aucun esclave n'a répondu.",
        .noSettingsAnswered = "Aucun esclave n'a répondu avec les réglages essayés.",
        .mapProgress =
            [](std::int64_t requests, std::int64_t seconds) {
                return concat("Requête ", requests, ", encore au moins ", seconds, " s");
            },
        .noAddressFound = "L'esclave répond, mais aucune adresse de la plage n'existe.",
        .csvNeedsQt = "Ce kestrin-cli a été construit sans Qt et ne peut donc pas écrire de "
                      "liste de points de données : omettez --csv ou utilisez un kestrin-cli "
                      "construit avec Qt.",
    },
    .plan = {
        .enabled = "activée",
        .disabled = "désactivée",
        .requests = [](int count) { return concat(count, count == 1 ? " requête" : " requêtes"); },
        .cycle = [](int ms) { return concat("cycle de ", ms, " ms"); },
        .interval = [](int ms) { return concat("intervalle de ", ms, " ms"); },
        .runsEvery = [](int ms) { return concat("lue toutes les ", ms, " ms"); },
        .notRead = "jamais lue",
        .lineLoad = [](int percent) { return concat("Charge de la ligne : ", percent, " %"); },
        .badBaudRate =
            [](int rate) {
                return concat("kestrin-cli plan : le débit de ", rate,
                              " bauds du projet n’est pas un nombre positif");
            },
    },
    .finder = {
        .menuItem = "Rechercher des appareils…",
        .title = "Rechercher des appareils",
        .findUnits = "Esclaves",
        .findSettings = "Réglages",
        .mapRegisters = "Registres",
        .unitsNote = "Interroge chaque esclave de la plage avec les réglages actuels et affiche "
                     "ceux qui répondent.",
        .settingsNote = "Essaie une vitesse et une trame après l'autre, les plus courantes "
                        "d'abord, jusqu'à ce que l'esclave réponde.",
        .registersNote = "Lit les tables de l'esclave pour trouver les adresses qui existent.",
        .units = "Esclaves",
        .to = "à",
        .addresses = "Adresses",
        .tables = "Tables",
        .timeoutHelp =
            "Temps laissé à chaque esclave pour répondre. La valeur par défaut convient à la "
            "vitesse de la ligne ; le délai d'attente du projet reste inchangé.",
        .answer = "Réponse",
        .late = "En retard",
        .lateHelp = "Il n'a répondu qu'après son délai d'attente : sa lecture demande un délai "
                    "plus long.",
        .count = "Nombre",
        .addToPoll = "Ajouter à la scrutation",
        .useSettings = "Utiliser ces réglages",
        .stopReadingFirst = "La lecture occupe le port. Arrêtez la lecture pour explorer la ligne.",
        .cancelled = "Annulé. Voici ce qui avait été trouvé jusque-là.",
        .mapIncomplete = "L'esclave a cessé de répondre avant la fin de la plage.",
        .busyUnknown =
            [](int count) {
                return count < 2 ? concat("L'esclave était occupé : pour ", count,
                                          " adresse, on ne sait pas si elle existe.")
                                 : concat("L'esclave était occupé : pour ", count,
                                          " adresses, on ne sait pas si elles existent.");
            },
        .busyRanges =
            [](std::string_view ranges) {
                return concat("L'esclave était trop occupé pour lire ", ranges,
                              " (exception 06) : on ne sait pas si ces adresses existent.");
            },
        .tooManyToAdd =
            [](std::int64_t found, std::int64_t most) {
                return concat(found, " adresses trouvées, plus que les ", most,
                              " points de données qui peuvent être ajoutés en une fois. Choisissez "
                              "une plage plus étroite ou moins de tables.");
            },
        .added =
            [](int count) {
                return count < 2 ? concat(count, " point de données ajouté à la scrutation.")
                                 : concat(count, " points de données ajoutés à la scrutation.");
            },
        .settingsUsed =
            [](std::string_view serial) {
                return concat("Le projet utilise désormais ", serial, ".");
            },
    },
};
} // namespace

const Texts& frenchTexts() {
    return french;
}

} // namespace kestrin::L10n
