#include "HelpContent.h"

namespace kestrin::L10n {

namespace {
constexpr HelpContent french{
    .start =
        {
            .title = "Premiers pas",
            .intro =
                [](std::string_view product) {
                    return concat(product,
                                  " est un maître Modbus RTU : il lit des valeurs dans des "
                                  "appareils reliés à un bus RS-485 ou RS-232, comme des "
                                  "compteurs d'énergie, des régulateurs et des capteurs, et peut "
                                  "aussi y écrire des valeurs.");
                },
            .stepsHeading = "En quatre étapes",
            .connect = "Branchez votre adaptateur USB-RS485 et raccordez-le à l'appareil (A sur "
                       "A, B sur B).",
            .enterDatapoints = "Saisissez les **points de données** de l'appareil dans le "
                               "tableau : adresse esclave, table, adresse et type, comme dans le "
                               "manuel de l'appareil.",
            .choosePort = "En haut, choisissez le **port série**, la **vitesse de transmission** "
                          "et, avec le bouton à curseurs, le format de trame (par exemple `8E1`), "
                          "identiques à ceux de l'appareil.",
            .clickStart = "Cliquez sur **Démarrer** (Ctrl+R). La colonne **Valeur** affiche les "
                          "valeurs actuelles, la colonne **État** indique si la lecture "
                          "fonctionne.",
            .overviewCaption = "Une scrutation avec ses valeurs en direct et l'état de chaque "
                               "point de données, et la communication en dessous.",
            .simulatorTip = "Pas d'appareil sous la main ? Lancez `kestrin --demo` : la fenêtre "
                            "lit alors un appareil simulé qui fournit la liste d'exemple.",
            .autosave = "Vos scrutations et points de données sont enregistrés automatiquement. "
                        "**Fichier ▸ Enregistrer le projet sous…** (Ctrl+Maj+S) crée un fichier "
                        "de projet distinct, par exemple pour chaque installation.",
            .listenHeading = "Écouter un autre maître",
            .listen = "Un automate ou un système de supervision interroge déjà les appareils ? "
                      "Cliquez alors sur **Écouter** (Ctrl+L) plutôt que sur Démarrer : Kestrin "
                      "ouvre le port et n'envoie absolument rien. Il suit les requêtes de l'autre "
                      "maître et leurs réponses, et les affiche dans le journal, les statistiques "
                      "et le graphique comme s'il les avait lues lui-même.",
            .listenCoverage =
                "Un point de données ne reçoit une valeur que si une requête de l'autre maître "
                "le couvre : même esclave, même table et mêmes adresses. Les autres restent sur "
                "**En attente…**. Une écriture de l'autre maître met le point à jour dès que "
                "l'appareil l'a confirmée.",
            .listenWritingOff =
                "Pendant l'écoute, l'écriture est désactivée : sur un bus qu'un autre maître "
                "dirige, Kestrin ne doit pas émettre. Cliquez sur **Arrêter l'écoute** (Ctrl+L) "
                "et démarrez la lecture pour écrire des valeurs.",
        },
    .polls =
        {
            .title = "Scrutations",
            .intro = "Une scrutation est un groupe de points de données avec son propre "
                     "intervalle, affiché sous forme d'onglet en haut. Vous pouvez ainsi lire des "
                     "mesures rapides toutes les 250 ms et des compteurs toutes les minutes. "
                     "**+** (Ctrl+T) crée une nouvelle scrutation ; cliquez avec le bouton droit "
                     "sur un onglet pour la dupliquer ou la supprimer.",
            .tabDot = "La pastille d'un onglet est verte quand tout est lu et orange quand "
                      "quelque chose échoue. Décochez **Active** pour ignorer temporairement une "
                      "scrutation.",
            .combining = "Les points de données voisins sont lus en une seule requête (jusqu'à "
                         "125 registres ou 2000 bits). Dans les réglages (curseurs en haut), vous "
                         "pouvez aussi inclure de petits écarts d'adresses dans la même requête : "
                         "c'est plus rapide, mais certains appareils répondent alors par "
                         "l'exception 02.",
            .oneRequest = "Il n'y a jamais qu'une seule requête sur la ligne. Les écritures "
                          "passent avant les lectures.",
            .cycleHeading = "Durée d'un cycle",
            .cycleEstimate =
                "À côté de l'intervalle, Kestrin indique combien de temps une lecture de la "
                "scrutation occupe la ligne, par exemple « ≈ 42 ms par cycle ». Cette durée "
                "est calculée d'après les réglages série, avec 5 ms de réponse pour chaque "
                "appareil jusqu'à ce que la lecture ait mesuré son propre temps de réaction, "
                "en comptant le latency timer de l'adaptateur ; survolez-la pour voir chaque "
                "requête et la part de la ligne dont les scrutations actives ont besoin. "
                "`kestrin-cli plan --project FICHIER` affiche la même chose pour chaque "
                "scrutation d'un fichier de projet.",
            .cycleWarning =
                "Le texte passe à l'orange quand la scrutation ne peut pas être lue aussi souvent "
                "que son intervalle le demande : une lecture dure plus longtemps que l'intervalle, "
                "ou les autres scrutations occupent trop la ligne. Il indique alors le rythme "
                "réel, par exemple « Dure 140 ms : lue toutes les 140 ms, et non toutes les 100 ms "
                "». Donnez à la scrutation un intervalle plus long, ou déplacez les valeurs qui "
                "peuvent attendre vers une scrutation plus lente. Il avertit aussi quand une "
                "réponse dure plus longtemps que le **délai d'attente de réponse** : cette requête "
                "échouerait alors à chaque fois.",
            .busFigures =
                "**Bus**, dans la barre du bas, montre ce que la lecture prend réellement, mesuré "
                "pendant qu'elle tourne : pour chaque esclave l'aller-retour et le temps de "
                "réaction (le temps propre de l'appareil), en médiane et à 99 % de ses réponses ; "
                "pour chaque scrutation active l'intervalle réglé et l'intervalle obtenu ; et la "
                "part du temps où la ligne est occupée. À l'arrêt de la lecture, le journal ajoute "
                "une ligne par esclave qui a répondu, par exemple « Esclave 1 : 120 réponses, "
                "aller-retour 27 ms (99 % : 36 ms), temps de réaction 5 ms (99 % : 6 ms) ».",
            .timeoutOffer =
                "Dès qu'un esclave a répondu 50 fois, Kestrin compare le **délai d'attente de "
                "réponse** à la vitesse réelle des réponses. Si un autre délai convient mieux, un "
                "avis au-dessus du journal le propose, par exemple **Utiliser 100 ms** ; il "
                "s'applique au prochain démarrage de la lecture. Tant que des requêtes restent "
                "sans réponse ou que des réponses arrivent en retard, seul un délai plus long est "
                "proposé.",
        },
    .datapoints =
        {
            .title = "Points de données",
            .intro = "Un point de données est une valeur d'un appareil, comme une température ou "
                     "une consigne. Vous indiquez où elle se trouve et comment elle est codée ; "
                     "l'application convertit les registres en une valeur lisible.",
            .unitID = "l'adresse esclave de l'appareil (1–247)",
            .table = "**Bobine** (bit, lecture et écriture), **Entrée discrète** (bit, lecture "
                     "seule), **Registre de maintien** (16 bits, lecture et écriture) ou "
                     "**Registre d'entrée** (16 bits, lecture seule)",
            .address = "l'adresse protocole, à partir de `0`. Les manuels utilisent souvent la "
                       "notation Modicon : le registre de maintien `40001` correspond à "
                       "l'adresse `0`, le registre d'entrée `30010` à l'adresse `9`. Survolez "
                       "l'adresse pour voir la notation Modicon.",
            .dataType = "`UInt16`/`Int16` occupent un registre, `UInt32`/`Int32`/`Float32` deux "
                        "et les types 64 bits quatre registres consécutifs",
            .wordOrder = "l'ordre des octets des valeurs réparties sur plusieurs registres, voir "
                         "ci-dessous",
            .scale = "valeur = valeur brute × échelle ; avec `0,1`, `215` devient `21,5`",
            .format = "décimal, hex (`0x00FF`) ou binaire ; hex et binaire montrent les bits "
                      "bruts du registre",
            .wordOrderHeading = "Ordre des mots",
            .wordOrderIntro = "Modbus ne connaît que des registres de 16 bits. La répartition "
                              "d'une valeur de 32 ou 64 bits sur les registres varie selon le "
                              "fabricant. Les lettres désignent les octets, l'octet de poids fort "
                              "en premier :",
            .abcd = "mot de poids fort en premier : le standard Modbus",
            .cdab = "mots permutés, courant dans les automates et les compteurs d'énergie",
            .badc = "octets permutés dans chaque mot",
            .dcba = "ordre entièrement inversé (little-endian)",
            .orderTip = "Une valeur paraît aberrante, par exemple un flottant de `4,6e-41` au "
                        "lieu de `21,5` ? Essayez un autre ordre ; le plus souvent, c'est CDAB.",
            .overlap = "Un triangle à côté de l'adresse signifie que le point de données "
                       "chevauche un autre point de données du même esclave et de la même table.",
        },
    .writing =
        {
            .title = "Écriture de valeurs",
            .howTo = "Les bobines et les registres de maintien peuvent être écrits. Cliquez sur "
                     "le crayon dans la colonne **Valeur**, saisissez la nouvelle valeur et "
                     "cliquez sur **Écrire** ; pour un bit, choisissez **Activé** ou "
                     "**Désactivé**. La valeur est convertie selon le type, l'ordre et l'échelle "
                     "du point de données.",
            .functionCodes = "L'application utilise FC05 pour une bobine, FC06 pour un registre "
                             "et FC16 pour plusieurs registres. Si votre appareil ne prend en "
                             "charge que FC15/FC16, choisissez **Toujours FC15/16** dans les "
                             "réglages.",
            .onlyWhileReading = "L'écriture ne fonctionne que pendant la lecture. En cas "
                                "d'échec, un message en indique la raison, par exemple "
                                "l'exception 02 (l'adresse n'existe pas) ou 03 (valeur hors "
                                "plage).",
        },
    .chart =
        {
            .title = "Graphique et export",
            .howTo = "Cochez les points de données à suivre dans la colonne **Graphique** et "
                     "choisissez **Graphique** en bas. Choisissez la période en haut à droite : "
                     "de 1 minute à une heure, ou tout.",
            .chartCaption = "La température au cours des dernières minutes.",
            .history = "Chaque valeur lue est conservée (jusqu'à 20 000 par point de données). "
                       "**Exporter l'historique (CSV)…** donne une ligne par mesure avec l'heure, "
                       "la scrutation, le nom, la valeur et l'unité, prête pour un tableau croisé "
                       "dynamique ou un graphique dans Excel.",
        },
    .csv =
        {
            .title = "Excel et CSV",
            .spreadsheets = "Vous pouvez créer ou modifier une liste de points de données dans "
                            "Excel ou LibreOffice Calc et l'importer au format CSV. **CSV ▸ "
                            "Exporter les points de données** produit un fichier qu'Excel ouvre "
                            "correctement d'emblée, avec les valeurs du moment.",
            .columns = "La première ligne contient les noms des colonnes. Seules **Table** et "
                       "**Address** sont obligatoires ; l'ordre des colonnes est indifférent.",
            .name = "nom du point de données",
            .unitID = "adresse esclave, 1 si vide",
            .table = "`CO`, `DI`, `HR` ou `IR` (ou encore `coil`, `holding`, `4x` …)",
            .address = "adresse à partir de 0",
            .dataType = "`uint16`, `int16`, `float32` … (ou encore `float`, `real`, `dint`)",
            .wordOrder = "`ABCD`, `CDAB`, `BADC` ou `DCBA`",
            .optional = "facultatives",
            .separatorTip = "L'export suit vos paramètres régionaux : s'ils écrivent les "
                            "décimales avec une virgule, le fichier utilise le point-virgule et "
                            "la virgule décimale (`21,5`), sinon la virgule et le point décimal "
                            "(`21.5`). À l'import, la virgule, le point-virgule et la tabulation "
                            "sont reconnus, ainsi que `21,5` et `21.5`.",
            .simulatorTip = "Pour tester d'autres programmes ou kestrin-cli, le simulateur "
                            "kestrin-sim présente une liste exportée comme un appareil sur un "
                            "second adaptateur : `kestrin-sim --csv liste.csv --port "
                            "/dev/ttyUSB1`.",
        },
    .log =
        {
            .title = "État et journal",
            .ok = "lu, avec le temps de réponse",
            .noResponse = "aucune réponse dans le délai d'attente",
            .exception = "l'appareil refuse la requête, voir ci-dessous",
            .crcError = "la réponse a été altérée en chemin",
            .lastGoodValue = "Après un échec, la dernière valeur correcte reste affichée, en "
                             "gris. Survolez une valeur pour voir les registres bruts, ou l'état "
                             "pour voir l'heure.",
            .exceptionCodesHeading = "Codes d'exception",
            .exception01 = "l'appareil ne prend pas en charge ce code fonction",
            .exception02 = "cette adresse n'existe pas (attention : les adresses commencent à 0)",
            .exception03 = "valeur ou quantité non valide",
            .exception04 = "défaillance dans l'appareil",
            .exception06 = "appareil occupé, réessayez plus tard",
            .logLines = "Le journal affiche chaque réponse (←), chaque écriture (✎) et chaque "
                        "échec (✕). Les **Options du journal** (curseurs en bas) proposent "
                        "l'horodatage, les trames brutes, le défilement automatique ou "
                        "**uniquement les erreurs et les écritures** pour les scrutations "
                        "rapides.",
        },
    .troubleshooting =
        {
            .title = "Dépannage",
            .noResponseHeading = "Sans réponse",
            .unitID = "L'**adresse esclave** saisie correspond-elle à celle de l'appareil ?",
            .timeout = "L'appareil est-il lent à répondre ? Augmentez le **délai d'attente de "
                       "réponse** dans les réglages.",
            .frame = "La vitesse de transmission, la parité et les bits de stop sont-ils "
                     "identiques des deux côtés ? Essayez `8N1` ou `8N2` si `8E1` ne fonctionne "
                     "pas.",
            .wiring = "A et B ne sont-ils pas inversés ? Les inverser est sans danger et résout "
                      "souvent le problème.",
            .cabling = "Utilisez un câble à paire torsadée, une résistance de terminaison de "
                       "120 Ω à chaque extrémité du bus et une masse commune.",
            .busyPort = "Le port est-il occupé ? Le message nomme le programme qui le tient, par "
                        "exemple ModemManager (processus 812), et indique comment l'arrêter : "
                        "ModemManager sonde les nouveaux adaptateurs à la recherche de modems, et "
                        "brltty (pour les afficheurs braille) s'empare des adaptateurs CH34x. "
                        "Kestrin verrouille le port qu'il lit, si bien qu'un second Kestrin ne "
                        "peut pas l'ouvrir, même lancé en root. Les puces courantes (FTDI, CP210x, "
                        "CH34x, PL2303, CDC-ACM) ne demandent aucun pilote supplémentaire.",
            .findHeading = "Trouver les appareils",
            .findIntro = "Esclave, vitesse ou adresses inconnus ? **Poller ▸ Rechercher des "
                         "appareils…** explore la ligne tant que la lecture est arrêtée :",
            .findUnits = "**Esclaves** interroge chaque esclave d'une plage avec les réglages "
                         "actuels et affiche ceux qui répondent ; cliquez sur l'un d'eux pour "
                         "l'explorer ensuite.",
            .findSettings = "**Réglages** essaie les vitesses et trames usuelles jusqu'à ce que "
                            "l'esclave réponde ; **Utiliser ces réglages** les reprend dans le "
                            "projet.",
            .findRegisters = "**Registres** lit quelles adresses de chaque table l'esclave "
                             "possède ; **Ajouter à la scrutation** les ajoute comme points de "
                             "données à la scrutation actuelle. Les adresses que l'esclave était "
                             "trop occupé pour lire sont comptées à part, par exemple « 96 + 32 ? "
                             "» : on ne sait pas si elles existent.",
            .oddValuesHeading = "Valeurs aberrantes",
            .scale = "L'ordre de grandeur est faux ? Vérifiez l'**échelle** (par exemple 0,1 ou "
                     "0,01).",
            .order = "Une valeur 32 bits est fausse ? Essayez un autre **ordre**, le plus "
                     "souvent CDAB.",
            .offByOne = "Tout est décalé d'une adresse ? Retranchez 1 : le manuel compte alors "
                        "les adresses à partir de 1 (ou de 40001).",
            .adaptersHeading = "Ports et adaptateurs",
            .privacy = "Un port refuse de s'ouvrir ? Le message nomme le groupe auquel il "
                       "appartient (le plus souvent **dialout**), dit si vous en êtes membre et "
                       "donne la commande qui vous y ajoute avec votre nom d'utilisateur, par "
                       "exemple `sudo usermod -aG dialout alice` ; fermez ensuite votre session et "
                       "rouvrez-la. Si vous avez été ajouté après l'ouverture de la session, il "
                       "suffit de la rouvrir. Kestrin ne parle qu'au port série : rien ne passe "
                       "par le réseau, et vos listes et réglages restent sur cet ordinateur.",
            .portMoved = "Kestrin retient l'adaptateur choisi par son identité USB (fabricant, "
                         "produit, numéro de série). S'il revient sous un autre nom après avoir "
                         "été rebranché, par exemple `/dev/ttyUSB1` au lieu de `/dev/ttyUSB0`, la "
                         "lecture reprend là et le journal indique « Port série de nouveau ouvert "
                         "(désormais /dev/ttyUSB1) ». Deux adaptateurs identiques se distinguent "
                         "dans la liste des ports par leur numéro de série.",
            .slowAdapter =
                "Les adaptateurs FTDI retiennent chaque réponse le temps de leur latency timer, 16 "
                "ms par défaut. Kestrin demande au pilote une faible latence pendant la lecture ; "
                "si le timer reste au-dessus de 1 ms, un avis au-dessus du journal indique ce que "
                "cela coûte, par exemple « Avec 16 ms, environ 45 requêtes par seconde au lieu de "
                "185. » **Régler sur 1 ms** l'abaisse jusqu'à ce que l'adaptateur soit débranché "
                "(le bouton n'apparaît que si le timer peut être modifié) ; **Corriger "
                "durablement…** montre la règle udev qui règle 1 ms à chaque branchement.",
            .rs485 = "Sur l'UART d'une carte comme le Raspberry Pi, le pilote peut commuter le "
                     "sens d'un émetteur-récepteur RS-485 avec RTS : activez **Direction RS-485 "
                     "par RTS** dans les réglages (curseurs en haut) et réglez **RTS pendant "
                     "l'émission**, **Délai avant l'émission** et **Délai après l'émission** selon "
                     "les besoins de l'émetteur-récepteur. Les adaptateurs USB commutent seuls : "
                     "laissez-la désactivée pour eux. Si le pilote du port ne connaît pas le mode "
                     "RS-485 du noyau, le port ne s'ouvre pas et le message le dit.",
            .portsVerbose =
                "`kestrin-cli ports --verbose` montre tout cela d'un coup pour chaque port : le "
                "lien dans /dev/serial/by-id, le pilote, l'identité USB, le groupe propriétaire et "
                "si vous pouvez ouvrir le port, le programme qui le tient, le latency timer et si "
                "le pilote connaît le mode RS-485.",
        },
    .shortcuts =
        {
            .title = "Raccourcis clavier",
            .ctrl = "Ctrl",
            .shift = "Maj",
            .del = "Suppr",
            .startStop = "Démarrer / arrêter la lecture",
            .listen = "Écouter / arrêter l'écoute",
            .newPoll = "Nouvelle scrutation",
            .addDatapoint = "Ajouter un point de données",
            .deleteDatapoints = "Supprimer les points de données sélectionnés",
            .importExport = "Importer / exporter des points de données (CSV)",
            .projects = "Nouveau projet / ouvrir / enregistrer sous",
            .findInLog = "Rechercher dans le journal",
            .saveLog = "Enregistrer le journal",
            .clearLog = "Effacer le journal",
            .openHelp = "Ouvrir cette aide",
        },
};
} // namespace

const HelpContent& frenchHelp() {
    return french;
}

} // namespace kestrin::L10n
