#include "Texts.h"

namespace kestrin::L10n {

namespace {
constexpr Texts spanish{
    .header = {
        .port = "Puerto serie",
        .noPortsFound = "No se encontraron puertos",
        .choosePort = "Seleccione un puerto…",
        .portNotConnected = [](std::string_view port) { return concat(port, " (no conectado)"); },
        .baudRate = "Velocidad en baudios",
        .baudLabel = [](int rate) { return concat(rate, " baudios"); },
        .start = "Iniciar",
        .stop = "Detener",
        .frameSettingsHelp =
            "Bits de datos, paridad, bits de parada, tiempo de espera y método de escritura",
        .startHelp = "Iniciar la lectura (Control+R)",
        .stopHelp = "Detener la lectura (Control+R)",
        .listen = "Escuchar",
        .stopListening = "Dejar de escuchar",
        .listenHelp = "Escuchar el tráfico de otro maestro sin enviar un solo byte (Control+L)",
        .stopListeningHelp = "Dejar de escuchar (Control+L)",
        .lockedWhileRunning = "Detenga la lectura para cambiar este ajuste",
        .lockedWhileListening = "Deje de escuchar para cambiar este ajuste",
        .demoDevice = "Dispositivo de demostración (simulado)",
        .startNeedsPort = "Conecte y seleccione un puerto serie para iniciar",
        .startWaitsForScan = "Buscar dispositivos ocupa el puerto; inicie cuando termine",
        .startNeedsDatapoints = "Añada puntos de datos a un sondeo activo para iniciar",
        .listenNeedsPort = "Conecte y seleccione un puerto serie para escuchar",
        .listenWaitsForScan = "Buscar dispositivos ocupa el puerto; escuche cuando termine",
    },
    .settings =
        {
            .frame = "Formato de trama",
            .dataBits = "Bits de datos",
            .parity = "Paridad",
            .stopBits = "Bits de parada",
            .parityNone = "Ninguna",
            .parityEven = "Par",
            .parityOdd = "Impar",
            .modbusDefault = "Estándar Modbus (8E1)",
            .standardNote = "Modbus RTU usa 8E1 de forma predeterminada. Muchos dispositivos usan "
                            "8N1 u 8N2; consulte el manual de su dispositivo.",
            .requests = "Solicitudes",
            .responseTimeout = "Tiempo de espera de respuesta",
            .timeoutHelp = "Cuánto tiempo espera la aplicación a que responda el dispositivo. "
                           "Pasado ese tiempo, la solicitud cuenta como sin respuesta.",
            .combine = "Agrupar lecturas",
            .adjacentOnly = "Solo direcciones contiguas",
            .gapsUpTo = [](int gap) { return concat("Huecos de hasta ", gap, " direcciones"); },
            .combineHelp = "Los puntos de datos cercanos entre sí se leen en una sola solicitud. "
                           "Salvar los huecos es más rápido, pero algunos dispositivos responden "
                           "entonces con la excepción 02 para las direcciones que no tienen.",
            .writeMode = "Escrituras",
            .writeSingle = "FC05/06 para un solo valor",
            .writeMultiple = "Siempre FC15/16",
            .writeModeHelp = "Algunos dispositivos solo admiten FC16 (escribir varios registros), "
                             "incluso para un único registro.",
            .rs485 = "Dirección RS-485 por RTS",
            .rs485Help =
                "Para las UART de placas como la Raspberry Pi, cuyo controlador conmuta el "
                "transceptor con RTS. Los adaptadores USB conmutan solos: déjelo desactivado "
                "para ellos.",
            .rtsWhileSending = "RTS al enviar",
            .rtsHigh = "Alto",
            .rtsLow = "Bajo",
            .delayBeforeSend = "Espera antes de enviar",
            .delayAfterSend = "Espera después de enviar",
        },
    .footer =
        {
            .statistics =
                [](std::int64_t requests, std::int64_t responses, std::int64_t timeouts,
                   std::int64_t exceptions, std::int64_t errors) {
                    return concat("Solicitudes ", requests, " · Respuestas ", responses,
                                  " · Sin respuesta ", timeouts, " · Excepciones ", exceptions,
                                  " · No válidas ", errors);
                },
            .options = "Opciones de la traza",
            .optionsHelp = "Marcas de tiempo, tramas en bruto y desplazamiento automático",
            .autoscroll = "Desplazamiento automático",
            .timestamps = "Marcas de tiempo",
            .rawFrames = "Mostrar tramas RTU en bruto",
            .rawFramesHelp = "Mostrar la trama RTU completa (dirección de esclavo, PDU y CRC) en "
                             "lugar de solo los datos.",
            .onlyProblems = "Solo errores y escrituras en la traza",
            .onlyProblemsHelp = "Los sondeos rápidos llenan la traza enseguida. Con esta opción "
                                "activada, solo verá lo que requiere su atención.",
            .save = "Guardar…",
            .saveHelp = "Guardar la traza como archivo de texto (Control+S)",
            .clear = "Borrar traza",
            .clearHelp = "Borrar la traza y los contadores (Control+K)",
            .outputAccessibility = "Traza de comunicación",
        },
    .menu =
        {
            .newProject = "Nuevo proyecto",
            .openProject = "Abrir proyecto…",
            .saveProject = "Guardar proyecto como…",
            .importCSV = "Importar puntos de datos (CSV)…",
            .exportCSV = "Exportar puntos de datos (CSV)…",
            .saveLog = "Guardar traza…",
            .clearLog = "Borrar traza",
            .file = "Archivo",
            .help = "Ayuda",
            .quit = "Salir",
            .replaceProjectTitle = "¿Reemplazar el proyecto actual?",
            .replaceProjectMessage = "Se eliminarán sus sondeos y puntos de datos.",
            .csvFiles = "Archivos CSV",
            .datapointLists = "Listas de puntos de datos",
            .projectFiles = "Archivos de proyecto",
            .textFiles = "Archivos de texto",
            .allFiles = "Todos los archivos",
        },
    .table = {
        .name = "Nombre",
        .unitID = "Esclavo",
        .table = "Tabla",
        .address = "Dirección",
        .dataType = "Tipo",
        .wordOrder = "Orden",
        .scale = "Escala",
        .value = "Valor",
        .unit = "Unidad",
        .format = "Formato",
        .description = "Descripción",
        .status = "Estado",
        .add = "Punto de datos",
        .addHelp =
            "Añadir un punto de datos en la siguiente dirección libre (Control+Mayúsculas+D)",
        .duplicate = "Duplicar",
        .deleteRows = "Eliminar",
        .csvHelp = "Importar la lista desde Excel, LibreOffice Calc u otro programa, o "
                   "exportarla a ellos",
        .unitIDHelp = "Dirección de esclavo del dispositivo (1–247)",
        .addressHelp =
            [](std::string_view modicon) {
                return concat(
                    "Dirección de protocolo, a partir de 0. En notación Modicon: ", modicon, ".");
            },
        .wordOrderHelp = "Orden de bytes de los valores de 32 y 64 bits. ABCD es el estándar "
                         "Modbus; CDAB (palabras intercambiadas) es habitual en los PLC.",
        .scaleHelp = "Valor = valor en bruto del registro × escala. Por ejemplo, 0,1 cuando el "
                     "dispositivo envía 215 para 21,5.",
        .plotHelp = "Mostrar este punto de datos en el gráfico",
        .rawHelp = [](std::string_view raw) { return concat("Registros en bruto: ", raw); },
        .overlapHelp =
            "Esta dirección se solapa con otro punto de datos o sobrepasa la dirección 65535.",
        .emptyTitle = "Todavía no hay puntos de datos",
        .emptyText = "Añada los puntos de datos que quiera leer o importe una lista desde Excel "
                     "(CSV). Los puntos de datos contiguos se leen juntos.",
        .tableNames =
            {
                .coil = "Bobina",
                .discreteInput = "Entrada discreta",
                .holdingRegister = "Registro de retención",
                .inputRegister = "Registro de entrada",
            },
        .formatNames =
            {
                .decimal = "Decimal",
                .binary = "Binario",
            },
        .waiting = "Esperando…",
        .updatedHelp = [](std::string_view time) { return concat("Última lectura a las ", time); },
        .valueHelp = "Escriba un valor y pulse Intro. También puede usar hexadecimal (0x1F) o "
                     "binario (0b101).",
        .valueInvalid =
            [](std::string_view type) { return concat("Este valor no cabe en ", type, "."); },
        .unitIDInvalid = "La dirección de esclavo es un número entero del 1 al 247.",
        .addressInvalid = "La dirección es un número entero del 0 al 65535.",
        .scaleInvalid = "La escala es un número, por ejemplo 0,1 o 10.",
    },
    .import = {
        .title =
            [](int count) {
                return count == 1 ? concat("1 punto de datos encontrado")
                                  : concat(count, " puntos de datos encontrados");
            },
        .question = "¿Desea añadirlos a la lista actual o reemplazar la lista?",
        .skipped =
            [](int count) {
                return count == 1 ? concat("1 línea omitida:") : concat(count, " líneas omitidas:");
            },
        .add = "Añadir",
        .replace = "Reemplazar",
        .cancel = "Cancelar",
    },
    .modbus =
        {
            .functionNames =
                {
                    .readCoils = "Leer bobinas",
                    .readDiscreteInputs = "Leer entradas discretas",
                    .readHoldingRegisters = "Leer registros de retención",
                    .readInputRegisters = "Leer registros de entrada",
                    .writeSingleCoil = "Escribir una bobina",
                    .writeSingleRegister = "Escribir un registro",
                    .diagnostics = "Diagnóstico",
                    .writeMultipleCoils = "Escribir varias bobinas",
                    .writeMultipleRegisters = "Escribir varios registros",
                    .maskWriteRegister = "Escribir registro con máscara",
                    .readWriteMultipleRegisters = "Leer/escribir varios registros",
                    .deviceIdentification = "Identificación del dispositivo",
                    .other = "Función",
                },
            .exceptionNames =
                {
                    .illegalFunction = "Función no válida",
                    .illegalDataAddress = "Dirección de datos no válida",
                    .illegalDataValue = "Valor de datos no válido",
                    .serverDeviceFailure = "Fallo del dispositivo esclavo",
                    .acknowledge = "Acuse de recibo",
                    .serverDeviceBusy = "Dispositivo esclavo ocupado",
                    .memoryParityError = "Error de paridad de memoria",
                    .gatewayPathUnavailable = "Ruta de pasarela no disponible",
                    .gatewayTargetFailedToRespond = "El destino de la pasarela no responde",
                    .other = "Excepción",
                },
        },
    .board =
        {
            .usbSerial = [](std::string_view chip) { return concat("USB-serie (", chip, ")"); },
        },
    .errors = {
        .alertTitle = "Se ha producido un error",
        .selectPortFirst = "Seleccione primero un puerto serie.",
        .saveFailed =
            [](std::string_view reason) { return concat("No se pudo guardar: ", reason); },
        .fileOpenFailed =
            [](std::string_view file) {
                return concat("No se puede leer ", file, ". ¿Es un archivo de esta aplicación?");
            },
        .importNothing =
            [](std::string_view details) {
                return concat("No se encontraron puntos de datos en este archivo. La primera línea "
                              "debe contener los nombres de las columnas, al menos Table y "
                              "Address. ",
                              details);
            },
        .importIssue =
            [](int line, std::string_view problem) {
                return concat("Línea ", line, ": ", problem);
            },
        .csvMissingColumns = "faltan las columnas Table y Address",
        .csvInvalidTable =
            [](std::string_view text) {
                return concat("tabla desconocida «", text, "» (use CO, DI, HR o IR)");
            },
        .csvInvalidAddress =
            [](std::string_view text) {
                return concat("dirección no válida «", text, "» (de 0 a 65535)");
            },
        .csvInvalidUnit =
            [](std::string_view text) {
                return concat("dirección de esclavo no válida «", text, "» (de 1 a 247)");
            },
        .csvInvalidDataType =
            [](std::string_view text) { return concat("tipo de datos desconocido «", text, "»"); },
        .csvInvalidNumber =
            [](std::string_view text) { return concat("número no válido «", text, "»"); },
        .invalidPath =
            [](std::string_view path) {
                return concat("«", path, "» no es un puerto serie válido.");
            },
        .openFailed =
            [](std::string_view path, std::string_view reason) {
                return concat("No se puede abrir ", path, ": ", reason, ".");
            },
        .openPermissionDenied =
            "Solo los miembros del grupo dialout pueden abrir puertos serie: añada su usuario con "
            "el comando sudo usermod -aG dialout $USER y vuelva a iniciar sesión.",
        .permissionNotMember =
            [](std::string_view group, std::string_view user) {
                return concat("El puerto pertenece al grupo ", group, " y ", user,
                              " no es miembro: añádalo con sudo usermod -aG ", group, " ", user,
                              " y después cierre la sesión y vuelva a iniciarla.");
            },
        .permissionNotInThisLogin =
            [](std::string_view group) {
                return concat("Se le añadió al grupo ", group,
                              " después de iniciar esta sesión: ciérrela y vuelva a iniciarla (o "
                              "ejecute newgrp ",
                              group, " en un terminal e inicie Kestrin desde allí).");
            },
        .permissionMemberRefused =
            [](std::string_view group) {
                return concat("Ya es miembro del grupo ", group,
                              "; otra cosa deniega el acceso, como una lista de control de acceso "
                              "(ACL) o un módulo de seguridad.");
            },
        .permissionOwnerOnly =
            "Solo el propietario del dispositivo puede abrirlo; su grupo no tiene permiso de "
            "lectura y escritura. Una regla de udev o el propietario debe conceder el acceso.",
        .busy =
            [](std::string_view path) {
                return concat(path, " ya está en uso por otro programa. Cierre ese programa e "
                                    "inténtelo de nuevo.");
            },
        .holderProcess =
            [](int pid, std::string_view program) {
                return concat(program, " (proceso ", pid, ")");
            },
        .busyBy =
            [](std::string_view path, std::string_view holder) {
                return concat(path, " está en uso por ", holder, ".");
            },
        .busyProbablyBy =
            [](std::string_view path, std::string_view holder) {
                return concat(path, " está en uso, probablemente por ", holder, ".");
            },
        .closeHolder = "Cierre ese programa e inténtelo de nuevo.",
        .modemManagerHint =
            "ModemManager sondea los adaptadores serie nuevos en busca de módems: deténgalo con "
            "sudo systemctl stop ModemManager, o apártelo de este adaptador con una regla de udev "
            "que establezca ENV{ID_MM_DEVICE_IGNORE}=\"1\".",
        .brlttyHint =
            "brltty, el controlador de líneas braille, se apropia de los adaptadores CH340/CH341. "
            "Sin línea braille, deténgalo con sudo systemctl mask brltty-udev.service "
            "brltty.service (o desinstale el paquete brltty) y vuelva a conectar el adaptador.",
        .configurationFailed =
            [](std::string_view reason) {
                return concat("No se pudo configurar el puerto serie: ", reason, ".");
            },
        .rs485Refused =
            [](std::string_view reason) {
                return concat("El controlador de este puerto no admite la dirección RS-485 por "
                              "RTS (",
                              reason,
                              "). Los adaptadores USB cambian de dirección por sí mismos; el "
                              "ajuste es para las UART de placas como la Raspberry Pi. "
                              "Desactívelo en los ajustes del puerto serie.");
            },
        .unsupportedBaud =
            [](int baud) {
                return concat("Este adaptador no admite la velocidad de ", baud, " baudios.");
            },
        .notOpen = "El puerto serie no está abierto.",
        .sendRefused = "No se envía nada mientras se escucha.",
        .writeFailed =
            [](std::string_view reason) { return concat("No se pudo enviar: ", reason, "."); },
        .timeout = "El dispositivo no responde.",
        .deviceDisconnected = "Se ha desconectado el adaptador.",
        .demoFailed =
            [](std::string_view reason) {
                return concat("No se pudo iniciar el dispositivo de demostración: ", reason);
            },
        .unknownOption =
            [](std::string_view option, std::string_view help) {
                return concat("opción desconocida ", option, " (véase ", help, ")");
            },
        .unexpectedArgument =
            [](std::string_view argument, std::string_view help) {
                return concat("argumento inesperado «", argument, "» (véase ", help, ")");
            },
        .missingValue =
            [](std::string_view option) {
                return concat("la opción ", option, " necesita un valor");
            },
        .missingOption =
            [](std::string_view option) { return concat("falta la opción obligatoria ", option); },
        .invalidOptionValue =
            [](std::string_view option, std::string_view value) {
                return concat("valor no válido «", value, "» para ", option);
            },
        .optionsExclude =
            [](std::string_view first, std::string_view second) {
                return concat(first, " y ", second, " se excluyen mutuamente");
            },
        .invalidBaud =
            [](std::string_view value, std::string_view rates) {
                return concat("no se puede usar la velocidad «", value,
                              "»: indique un número entero positivo, normalmente uno de ", rates);
            },
        .tableNotWritable =
            [](std::string_view table) {
                return concat("la tabla «", table,
                              "» no se puede escribir: los registros de entrada y las entradas "
                              "discretas son de solo lectura; escriba bobinas (CO) o registros "
                              "de retención (HR)");
            },
    },
    .document = {
        .problemAt = [](std::string_view path,
                        std::string_view problem) { return concat(path, ": ", problem); },
        .notJSON = "no es un documento JSON",
        .expectedObject = "se esperaba un objeto",
        .expectedList = "se esperaba una lista",
        .expectedText = "se esperaba un texto",
        .expectedNumber = "se esperaba un número",
        .expectedFiniteNumber = "se esperaba un número finito",
        .expectedInteger =
            [](std::int64_t minimum, std::int64_t maximum) {
                return concat("se esperaba un número entero de ", minimum, " a ", maximum);
            },
        .expectedBoolean = "se esperaba true o false",
        .expectedUUID = "se esperaba un UUID",
        .missing = "falta",
        .unknownValue =
            [](std::string_view found, std::string_view choices) {
                return concat("valor desconocido «", found, "» (use ", choices, ")");
            },
        .emptyList = "se esperaba al menos una entrada",
    },
    .help =
        {
            .windowTitle = "Ayuda de Kestrin",
            .searchPrompt = "Buscar en la ayuda",
            .noResults = "No se encontraron temas",
            .tipLabel = "Consejo",
        },
    .state =
        {
            .running = "Leyendo",
            .listening = "Escuchando",
            .stopped = "Detenido",
            .serialLost = "Puerto serie perdido",
        },
    .notice =
        {
            .emptyTitle = "Listo para leer",
            .emptySteps = "Introduzca en la tabla los puntos de datos de su dispositivo (esclavo, "
                          "tabla, dirección y tipo), elija arriba el puerto serie y los mismos "
                          "ajustes que el dispositivo, y haga clic en Iniciar (Control+R).",
            .emptyNoDevice = "No se encontró ningún adaptador USB",
            .emptyNoDeviceSteps = "Conecte su adaptador USB-RS485. El puerto aparecerá "
                                  "automáticamente. Mientras tanto, ya puede preparar su lista de "
                                  "puntos de datos.",
            .startPolling = "Iniciar lectura",
            .noResponse = "El dispositivo no responde. Compruebe la dirección de esclavo, la "
                          "velocidad en baudios, la paridad, los bits de parada y el cableado "
                          "(A/B no intercambiados).",
            .serialLost = "El puerto serie ha desaparecido. En cuanto vuelva el adaptador, la "
                          "lectura continuará automáticamente.",
            .dismiss = "Cerrar",
            .writeFailed =
                [](std::string_view name, std::string_view reason) {
                    return concat("No se pudo escribir ", name, ": ", reason, ".");
                },
            .listening = "Solo escucha: Kestrin no envía nada a este bus. Los valores vienen del "
                         "tráfico del otro maestro y la escritura está desactivada.",
            .stopListeningFirst = "Kestrin solo escucha y no envía nada. Deje de escuchar "
                                  "(Control+L) e inicie la lectura para escribir valores.",
            .startFirst = "Inicie primero la lectura (Control+R) para poder escribir valores.",
        },
    .adapter = {
        .latencyHeld =
            [](int ms, std::string_view path) {
                return concat("El adaptador en ", path, " retiene cada respuesta ", ms,
                              " ms (su latency timer).");
            },
        .latencyCost =
            [](int ms, int now, int best) {
                return concat("Con ", ms, " ms, unas ", now,
                              " solicitudes por segundo en lugar de ", best, ".");
            },
        .setToOneMs = "Poner a 1 ms",
        .fixForGood = "Corregir de forma permanente…",
        .fixTitle = "Latency timer de forma permanente",
        .fixSteps =
            [](std::string_view file, std::string_view command) {
                return concat("Guarde esta línea como ", file, " (como root), ejecute después ",
                              command,
                              " y vuelva a conectar el adaptador. A partir de entonces "
                              "los adaptadores FTDI tienen 1 ms cada vez que se conectan.");
            },
        .copyRule = "Copiar la regla",
        .latencySet =
            [](std::string_view path) {
                return concat("Latency timer de ", path, " puesto a 1 ms");
            },
        .latencySetFailed =
            [](std::string_view path, std::string_view reason) {
                return concat("No se pudo ajustar el latency timer de ", path, ": ", reason, ".");
            },
    },
    .bus = {
        .button = "Bus",
        .buttonHelp = "Lo rápido que responde cada esclavo y lo ocupada que está la línea, "
                      "medido durante la lectura",
        .title = "Medido en el bus",
        .nothingYet = "Las cifras aparecen en cuanto los esclavos responden durante la lectura.",
        .answers = "Respuestas",
        .roundTrip = "Ida y vuelta",
        .turnaround = "Tiempo de reacción",
        .spreadNote =
            "Mediana / 99 % de las respuestas. El tiempo de reacción es el del propio "
            "dispositivo: la ida y vuelta sin las tramas en la línea, los silencios ni el "
            "retardo del adaptador.",
        .poll = "Sondeo",
        .intervalSet = "Intervalo fijado",
        .intervalGot = "Intervalo real",
        .lineBusy =
            [](int percent) {
                return concat("La línea está ocupada el ", percent, " % del tiempo.");
            },
        .unitSummary =
            [](std::int64_t unit, std::int64_t answers) {
                return concat("Esclavo ", unit, ": ", answers, " respuestas");
            },
        .roundTripSummary =
            [](std::int64_t median, std::int64_t p99) {
                return concat("ida y vuelta ", median, " ms (99 %: ", p99, " ms)");
            },
        .turnaroundSummary =
            [](std::int64_t median, std::int64_t p99) {
                return concat("tiempo de reacción ", median, " ms (99 %: ", p99, " ms)");
            },
        .timeoutFits =
            [](std::int64_t unit, std::int64_t ms) {
                return concat("El esclavo ", unit, " da el 99 % de sus respuestas en menos de ", ms,
                              " ms.");
            },
        .timeoutOffer =
            [](std::int64_t offered, std::int64_t current) {
                return concat("Un tiempo de espera de ", offered, " ms lo cubre con margen (ahora ",
                              current, " ms); se aplica la próxima vez que empiece la lectura.");
            },
        .useTimeout = [](int ms) { return concat("Usar ", ms, " ms"); },
        .timeoutSet =
            [](int ms) {
                return concat("Tiempo de espera fijado en ", ms,
                              " ms; se aplica la próxima vez que empiece la lectura");
            },
    },
    .polls = {
        .add = "Nuevo sondeo",
        .addHelp = "Otro grupo de puntos de datos con su propio intervalo (Control+T)",
        .namePlaceholder = "Nombre",
        .interval = "Intervalo",
        .intervalHelp = "Con qué frecuencia se lee este sondeo",
        .active = "Activo",
        .activeHelp = "Desactivado: este sondeo se omite",
        .removeTitle = "¿Eliminar el sondeo?",
        .remove = "Eliminar",
        .removeMessage = "También se eliminarán los puntos de datos de este sondeo.",
        .unnamed = "Sin título",
        .duplicate = "Duplicar",
        .tabHelp = "Haga clic con el botón derecho para duplicar o eliminar",
        .newName = [](int number) { return concat("Sondeo ", number); },
        .copyName = [](std::string_view name) { return concat(name, " (copia)"); },
        .removeQuestion =
            [](std::string_view name) { return concat("¿Eliminar el sondeo «", name, "»?"); },
        .cycle = [](int ms) { return concat("≈ ", ms, " ms por ciclo"); },
        .cycleHelp =
            [](int ms) {
                return concat("Una lectura de este sondeo, calculada con la configuración serie y ",
                              ms, " ms de respuesta por dispositivo:");
            },
        .lineLoad =
            [](int percent) {
                return concat("Los sondeos activos necesitan el ", percent, " % de la línea");
            },
        .outlastsInterval =
            [](int cycle, int real, int interval) {
                return concat("Tarda ", cycle, " ms: se lee cada ", real, " ms, no cada ", interval,
                              " ms");
            },
        .lineOverloaded =
            [](int percent, int real, int interval) {
                return concat("Línea cargada al ", percent, " %: se lee cada ", real,
                              " ms, no cada ", interval, " ms");
            },
        .answerAfterTimeout =
            [](std::int64_t answer, std::int64_t timeout) {
                return concat("Una respuesta tarda ", answer,
                              " ms, más que el tiempo de espera de ", timeout, " ms");
            },
        .measuredUnits =
            [](std::string_view units) {
                return concat("Tiempo de respuesta medido durante la lectura para el esclavo ",
                              units);
            },
    },
    .write =
        {
            .help = "Escribir un nuevo valor en el dispositivo",
            .title = [](std::string_view name) { return concat("Escribir ", name); },
            .off = "Desactivado (0)",
            .on = "Activado (1)",
            .placeholder = "Nuevo valor",
            .button = "Escribir",
        },
    .pane =
        {
            .title = "Vista",
            .log = "Traza",
            .chart = "Gráfico",
            .clearHistory = "Borrar historial",
            .clearHistoryHelp = "Borrar todos los valores almacenados",
            .exportHistory = "Exportar historial (CSV)…",
            .exportHistoryHelp =
                "Guardar cada valor leído, con su hora, para Excel o LibreOffice Calc",
            .findPlaceholder = "Buscar en la traza",
            .findNext = "Siguiente coincidencia",
            .findPrevious = "Coincidencia anterior",
            .findDone = "Listo",
            .exportProgress = "Exportando el historial…",
        },
    .chart =
        {
            .emptyTitle = "Todavía no hay nada que mostrar",
            .emptyText = "Marque en la columna Gráfico los puntos de datos que quiera seguir e "
                         "inicie la lectura.",
            .time = "Hora",
            .window = "Periodo",
            .windowAll = "Todo",
            .windowHelp = "Qué periodo muestra el gráfico",
        },
    .log = {
        .failure =
            {
                .unexpectedUnit = [](int unit) { return concat("respuesta del esclavo ", unit); },
                .unexpectedFunction =
                    [](std::string_view code) {
                        return concat("respuesta con el código de función ", code);
                    },
                .timeout =
                    [](int timeoutMs) { return concat("sin respuesta en ", timeoutMs, " ms"); },
                .crcMismatch = "error de CRC en la respuesta",
                .malformed = "respuesta con una longitud incorrecta",
            },
        .shortFailure =
            {
                .exception = [](std::string_view code) { return concat("Excepción ", code); },
                .timeout = "Sin respuesta",
                .crcMismatch = "Error de CRC",
                .invalid = "Respuesta no válida",
            },
        .started =
            [](std::string_view port, std::string_view serial) {
                return concat("Lectura iniciada en ", port, " @ ", serial);
            },
        .stopped = "Lectura detenida",
        .unit = [](int id) { return concat("Esclavo ", id); },
        .unitFunction =
            [](int id, std::string_view code) { return concat("Esclavo ", id, " · FC ", code); },
        .writeFailed = [](std::string_view name) { return concat("No se pudo escribir ", name); },
        .serialLost =
            [](std::string_view path) {
                return concat("El puerto serie ", path, " ha desaparecido; esperando a que vuelva");
            },
        .serialRestored = "Puerto serie abierto de nuevo",
        .serialRestoredAt =
            [](std::string_view path) {
                return concat("Puerto serie abierto de nuevo (ahora ", path, ")");
            },
        .lateAnswer = "Respuesta tardía descartada",
        .readInParts = [](std::string_view range) { return concat(range, " leído por partes"); },
        .refusedAddresses =
            [](std::string_view addresses) { return concat("el dispositivo rechazó ", addresses); },
        .listeningStarted =
            [](std::string_view port, std::string_view serial) {
                return concat("Escuchando en ", port, " @ ", serial);
            },
        .listeningStopped = "Escucha detenida",
        .noResponse = "Sin respuesta",
        .unmatched = "No corresponde a ninguna solicitud",
        .rs485DelaysLimited =
            [](int ms) {
                return concat("Las esperas RS-485 del proyecto de más de ", ms,
                              " ms se han reducido a ", ms, " ms, el máximo que admite el kernel.");
            },
    },
    .example =
        {
            .pollName = "Dispositivo de ejemplo",
            .temperature = "Temperatura",
            .pressure = "Presión",
            .runtime = "Tiempo de funcionamiento",
            .setpoint = "Consigna",
            .mode = "Modo",
            .pump = "Bomba en marcha",
            .alarm = "Alarma",
        },
    .scan = {
        .unitProgress =
            [](int done, int total, int seconds) {
                return concat(done, " de ", total, " esclavos consultados, quedan unos ", seconds,
                              " s");
            },
        .sweepProgress =
            [](int done, int total, int seconds) {
                return concat("Ajuste ", done, " de ", total, ", quedan unos ", seconds, " s");
            },
        .noUnitAnswered = "Ningún esclavo respondió.",
        .noSettingsAnswered = "Ningún esclavo respondió con los ajustes probados.",
        .mapProgress =
            [](std::int64_t requests, std::int64_t seconds) {
                return concat("Petición ", requests, ", quedan al menos ", seconds, " s");
            },
        .noAddressFound = "El esclavo responde, pero no existe ninguna dirección del rango.",
        .csvNeedsQt = "Este kestrin-cli se compiló sin Qt, así que no puede escribir una lista "
                      "de puntos de datos: omita --csv o use un kestrin-cli compilado con Qt.",
    },
    .plan = {
        .enabled = "activado",
        .disabled = "desactivado",
        .requests =
            [](int count) { return concat(count, count == 1 ? " petición" : " peticiones"); },
        .cycle = [](int ms) { return concat("ciclo de ", ms, " ms"); },
        .interval = [](int ms) { return concat("intervalo de ", ms, " ms"); },
        .runsEvery = [](int ms) { return concat("se lee cada ", ms, " ms"); },
        .notRead = "no se lee",
        .lineLoad = [](int percent) { return concat("Carga de la línea: ", percent, " %"); },
        .badBaudRate =
            [](int rate) {
                return concat("kestrin-cli plan: la velocidad de ", rate,
                              " baudios del proyecto no es un número positivo");
            },
    },
    .finder = {
        .menuItem = "Buscar dispositivos…",
        .title = "Buscar dispositivos",
        .findUnits = "Esclavos",
        .findSettings = "Ajustes",
        .mapRegisters = "Registros",
        .unitsNote = "Consulta cada esclavo del rango con los ajustes actuales y muestra los que "
                     "responden.",
        .settingsNote = "Prueba una velocidad y una trama tras otra, las más comunes primero, "
                        "hasta que el esclavo responda.",
        .registersNote = "Lee las tablas del esclavo para encontrar qué direcciones existen.",
        .units = "Esclavos",
        .to = "a",
        .addresses = "Direcciones",
        .tables = "Tablas",
        .timeoutHelp =
            "Cuánto tiempo tiene cada esclavo para responder. El valor predeterminado se ajusta "
            "a la velocidad de la línea; el tiempo de espera del proyecto no cambia.",
        .answer = "Respuesta",
        .late = "Tarde",
        .lateHelp = "Respondió solo después de su tiempo de espera: leerlo necesita un tiempo de "
                    "espera más largo.",
        .count = "Cantidad",
        .addToPoll = "Añadir al sondeo",
        .useSettings = "Usar estos ajustes",
        .stopReadingFirst =
            "La lectura ocupa el puerto. Detenga la lectura para explorar la línea.",
        .cancelled = "Cancelado. Se muestra lo encontrado hasta entonces.",
        .mapIncomplete = "El esclavo dejó de responder antes del final del rango.",
        .busyUnknown =
            [](int count) {
                return count == 1
                           ? concat("El esclavo estaba ocupado: de 1 dirección no se sabe si "
                                    "existe.")
                           : concat("El esclavo estaba ocupado: de ", count,
                                    " direcciones no se sabe si existen.");
            },
        .busyRanges =
            [](std::string_view ranges) {
                return concat("El esclavo estaba demasiado ocupado para leer ", ranges,
                              " (excepción 06): no se sabe si esas direcciones existen.");
            },
        .tooManyToAdd =
            [](std::int64_t found, std::int64_t most) {
                return concat(
                    "Se encontraron ", found, " direcciones, más que los ", most,
                    " puntos de datos que se pueden añadir de una vez. Elija un rango más "
                    "estrecho o menos tablas.");
            },
        .added =
            [](int count) {
                return count == 1 ? concat("1 punto de datos añadido al sondeo.")
                                  : concat(count, " puntos de datos añadidos al sondeo.");
            },
        .settingsUsed =
            [](std::string_view serial) { return concat("El proyecto usa ahora ", serial, "."); },
    },
};
} // namespace

const Texts& spanishTexts() {
    return spanish;
}

} // namespace kestrin::L10n
