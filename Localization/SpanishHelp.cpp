#include "HelpContent.h"

namespace kestrin::L10n {

namespace {
constexpr HelpContent spanish{
    .start =
        {
            .title = "Primeros pasos",
            .intro =
                [](std::string_view product) {
                    return concat(product,
                                  " es un maestro Modbus RTU: lee valores de dispositivos "
                                  "conectados a un bus RS-485 o RS-232, como contadores de "
                                  "energía, controladores y sensores, y también puede escribir "
                                  "valores en ellos.");
                },
            .stepsHeading = "En cuatro pasos",
            .connect = "Conecte su adaptador USB-RS485 y cabléelo al dispositivo (A con A, B con "
                       "B).",
            .enterDatapoints =
                "Introduzca en la tabla los **puntos de datos** del dispositivo: "
                "dirección de esclavo, tabla, dirección y tipo, tal como figuran en su manual.",
            .choosePort =
                "Arriba, elija el **puerto serie**, la **velocidad en baudios** y, con el "
                "botón de los controles deslizantes, el formato de trama (por ejemplo, `8E1`), "
                "igual que en el dispositivo.",
            .clickStart = "Haga clic en **Iniciar** (Control+R). La columna **Valor** muestra los "
                          "valores actuales, y **Estado**, si la lectura funciona.",
            .overviewCaption = "Un sondeo con valores en directo y el estado de cada punto de "
                               "datos, con la comunicación debajo.",
            .simulatorTip = "¿No tiene ningún dispositivo a mano? Inicie `kestrin --demo`: la "
                            "ventana lee entonces un dispositivo simulado que ofrece la lista de "
                            "ejemplo.",
            .autosave =
                "Sus sondeos y puntos de datos se guardan automáticamente. **Archivo ▸ "
                "Guardar proyecto como…** (Control+Mayúsculas+S) crea un archivo de proyecto "
                "aparte, por ejemplo, uno por instalación.",
            .listenHeading = "Escuchar a otro maestro",
            .listen = "¿Un PLC o un sistema SCADA ya consulta los dispositivos? Haga clic en "
                      "**Escuchar** (Control+L) en lugar de Iniciar: Kestrin abre el puerto y no "
                      "envía absolutamente nada. Sigue las peticiones del otro maestro y sus "
                      "respuestas, y las muestra en el registro, las estadísticas y el gráfico "
                      "como si las hubiera leído él mismo.",
            .listenCoverage =
                "Un punto de datos solo recibe un valor cuando una petición del otro maestro lo "
                "cubre: el mismo esclavo, la misma tabla y las mismas direcciones. Los demás se "
                "quedan en "
                "**Esperando…**. Una escritura del otro maestro actualiza el punto en cuanto el "
                "dispositivo la ha confirmado.",
            .listenWritingOff =
                "Mientras escucha, la escritura está desactivada: en un bus que dirige otro "
                "maestro, Kestrin no debe enviar. Haga clic en **Dejar de escuchar** (Control+L) "
                "e inicie la lectura para escribir valores.",
        },
    .polls =
        {
            .title = "Sondeos",
            .intro = "Un sondeo es un grupo de puntos de datos con su propio intervalo, que "
                     "aparece como una pestaña en la parte superior. Así puede leer las mediciones "
                     "rápidas cada 250 ms y los contadores cada minuto. **+** (Control+T) crea un "
                     "sondeo nuevo; haga clic con el botón derecho en una pestaña para duplicarla "
                     "o eliminarla.",
            .tabDot = "El punto de la pestaña se pone verde cuando todo se lee correctamente y "
                      "naranja cuando algo falla. Desactive **Activo** para omitir un sondeo "
                      "durante un tiempo.",
            .combining =
                "Los puntos de datos contiguos se leen en una sola solicitud (hasta 125 registros "
                "o 2000 bits). En los ajustes (los controles deslizantes de arriba) también puede "
                "permitir que se salven pequeños huecos: es más rápido, pero algunos dispositivos "
                "responden entonces con la excepción 02.",
            .oneRequest = "En la línea siempre hay una sola solicitud. Las escrituras van antes "
                          "que las lecturas.",
            .cycleHeading = "Cuánto dura un ciclo",
            .cycleEstimate =
                "Junto al intervalo, Kestrin muestra cuánto tiempo ocupa la línea una lectura "
                "del sondeo, por ejemplo «≈ 42 ms por ciclo». Se calcula con la "
                "configuración serie y 5 ms de respuesta por dispositivo hasta que la lectura "
                "haya medido su propio tiempo de reacción, contando el latency timer del "
                "adaptador; sitúe el puntero encima para ver cada solicitud y la parte de la "
                "línea que necesitan los sondeos activos. `kestrin-cli plan --project ARCHIVO` "
                "muestra lo mismo para cada sondeo de un archivo de proyecto.",
            .cycleWarning =
                "El texto se pone naranja cuando el sondeo no puede leerse tan a menudo como pide "
                "su intervalo: una lectura tarda más que el intervalo, o los demás sondeos ocupan "
                "demasiado la línea. Entonces indica cada cuánto se lee de verdad, por ejemplo "
                "«Tarda 140 ms: se lee cada 140 ms, no cada 100 ms». Dé al sondeo un intervalo más "
                "largo o pase los valores que pueden esperar a un sondeo más lento. También avisa "
                "cuando una respuesta tarda más que el **tiempo de espera de respuesta**: esa "
                "solicitud fallaría siempre.",
            .busFigures =
                "**Bus**, en la barra inferior, muestra lo que de verdad lleva la lectura, medido "
                "mientras se ejecuta: para cada esclavo, la ida y vuelta y el tiempo de reacción "
                "(el tiempo propio del dispositivo), como mediana y 99 % de sus respuestas; para "
                "cada sondeo activo, el intervalo fijado y el intervalo real; y qué parte del "
                "tiempo está ocupada la línea. Al detener la lectura, la traza añade una línea por "
                "cada esclavo que respondió, por ejemplo «Esclavo 1: 120 respuestas, ida y vuelta "
                "27 ms (99 %: 36 ms), tiempo de reacción 5 ms (99 %: 6 ms)».",
            .timeoutOffer =
                "En cuanto un esclavo ha respondido 50 veces, Kestrin compara el **tiempo de "
                "espera de respuesta** con lo que tardan de verdad las respuestas. Si otro valor "
                "encaja mejor, un aviso sobre la traza lo ofrece, por ejemplo **Usar 100 ms**; se "
                "aplica la próxima vez que empiece la lectura. Mientras haya solicitudes sin "
                "respuesta o respuestas tardías, solo se ofrece un tiempo de espera más largo.",
        },
    .datapoints =
        {
            .title = "Puntos de datos",
            .intro = "Un punto de datos es un valor de un dispositivo, como una temperatura o una "
                     "consigna. Usted describe dónde está y cómo se almacena; la aplicación "
                     "convierte los registros en un valor legible.",
            .unitID = "la dirección de esclavo del dispositivo (1–247)",
            .table = "**Bobina** (bit, lectura y escritura), **Entrada discreta** (bit, solo "
                     "lectura), **Registro de retención** (16 bits, lectura y escritura) o "
                     "**Registro de entrada** (16 bits, solo lectura)",
            .address = "la dirección de protocolo, a partir de `0`. Los manuales suelen usar la "
                       "notación Modicon: el registro de retención `40001` es la dirección `0`, y "
                       "el registro de entrada `30010`, la dirección `9`. Sitúe el puntero sobre "
                       "la dirección para ver la notación Modicon.",
            .dataType = "`UInt16`/`Int16` ocupan un registro, `UInt32`/`Int32`/`Float32` dos, y "
                        "los tipos de 64 bits, cuatro registros consecutivos",
            .wordOrder = "el orden de bytes de los valores que ocupan varios registros; véase más "
                         "abajo",
            .scale = "valor = valor en bruto × escala; con `0,1`, `215` se convierte en `21,5`",
            .format = "decimal, hex (`0x00FF`) o binario; hex y binario muestran los bits en "
                      "bruto del registro",
            .wordOrderHeading = "Orden de palabras",
            .wordOrderIntro = "Modbus solo conoce registros de 16 bits. La forma de repartir un "
                              "valor de 32 o 64 bits entre los registros varía según el "
                              "fabricante. Las letras representan los bytes, empezando por el más "
                              "significativo:",
            .abcd = "palabra alta primero: el estándar Modbus",
            .cdab = "palabras intercambiadas, habitual en PLC y contadores de energía",
            .badc = "bytes intercambiados dentro de cada palabra",
            .dcba = "totalmente invertido (little-endian)",
            .orderTip = "¿Un valor parece extraño, por ejemplo un float de `4,6e-41` en lugar de "
                        "`21,5`? Pruebe otro orden; normalmente es CDAB.",
            .overlap = "Un triángulo junto a la dirección indica que el punto de datos se solapa "
                       "con otro punto de datos del mismo esclavo y la misma tabla.",
        },
    .writing =
        {
            .title = "Escritura de valores",
            .howTo = "Las bobinas y los registros de retención se pueden escribir. Haga clic en el "
                     "lápiz de la columna **Valor**, escriba el nuevo valor y haga clic en "
                     "**Escribir**; para un bit, elija **Activado** o **Desactivado**. El valor se "
                     "convierte según el tipo, el orden y la escala del punto de datos.",
            .functionCodes = "La aplicación usa FC05 para una bobina, FC06 para un registro y "
                             "FC16 para varios registros. Si su dispositivo solo admite FC15/FC16, "
                             "elija **Siempre FC15/16** en los ajustes.",
            .onlyWhileReading = "La escritura solo funciona mientras la lectura está en marcha. Si "
                                "falla, un aviso indica el motivo, por ejemplo, la excepción 02 "
                                "(la dirección no existe) o 03 (valor fuera de rango).",
        },
    .chart =
        {
            .title = "Gráfico y exportación",
            .howTo = "Marque en la columna **Gráfico** los puntos de datos que quiera seguir y "
                     "elija **Gráfico** en la parte inferior. Elija el periodo arriba a la "
                     "derecha: de 1 minuto a una hora, o todo.",
            .chartCaption = "La temperatura de los últimos minutos.",
            .history = "Se conserva cada valor leído (hasta 20 000 por punto de datos). "
                       "**Exportar historial (CSV)…** genera una línea por medición con hora, "
                       "sondeo, nombre, valor y unidad, lista para una tabla dinámica o un "
                       "gráfico en Excel.",
        },
    .csv =
        {
            .title = "Excel y CSV",
            .spreadsheets = "Puede crear o editar una lista de puntos de datos en Excel o "
                            "LibreOffice Calc e importarla como CSV. **CSV ▸ Exportar puntos de "
                            "datos** genera un archivo que Excel abre correctamente desde el "
                            "primer momento, con los valores de ese instante.",
            .columns = "La primera línea contiene los nombres de las columnas. Solo **Table** y "
                       "**Address** son obligatorias; el orden de las columnas es indiferente.",
            .name = "nombre del punto de datos",
            .unitID = "dirección de esclavo; 1 si está vacía",
            .table = "`CO`, `DI`, `HR` o `IR` (también `coil`, `holding`, `4x` …)",
            .address = "dirección a partir de 0",
            .dataType = "`uint16`, `int16`, `float32` … (también `float`, `real`, `dint`)",
            .wordOrder = "`ABCD`, `CDAB`, `BADC` o `DCBA`",
            .optional = "opcionales",
            .separatorTip = "La exportación sigue la configuración regional: si esta escribe los "
                            "decimales con coma, el archivo usa punto y coma y coma decimal "
                            "(`21,5`); si no, coma y punto decimal (`21.5`). Al importar se "
                            "reconocen la coma, el punto y coma y el tabulador, y tanto `21,5` "
                            "como `21.5`.",
            .simulatorTip = "Para probar otros programas o kestrin-cli, el simulador kestrin-sim "
                            "ofrece una lista exportada como dispositivo en un segundo adaptador: "
                            "`kestrin-sim --csv lista.csv --port /dev/ttyUSB1`.",
        },
    .log =
        {
            .title = "Estado y traza",
            .ok = "leído, con el tiempo de respuesta",
            .noResponse = "ninguna respuesta dentro del tiempo de espera",
            .exception = "el dispositivo rechaza la solicitud; véase más abajo",
            .crcError = "la respuesta se ha dañado por el camino",
            .lastGoodValue = "Tras un fallo se mantiene el último valor correcto, en gris. Sitúe "
                             "el puntero sobre un valor para ver los registros en bruto, o sobre "
                             "el estado para ver la hora.",
            .exceptionCodesHeading = "Códigos de excepción",
            .exception01 = "el dispositivo no admite este código de función",
            .exception02 = "esta dirección no existe (atención: las direcciones empiezan en 0)",
            .exception03 = "valor o cantidad no válidos",
            .exception04 = "fallo en el dispositivo",
            .exception06 = "dispositivo ocupado; vuelva a intentarlo más tarde",
            .logLines = "La traza muestra cada respuesta (←), cada escritura (✎) y cada fallo "
                        "(✕). En **Opciones de la traza** (los controles deslizantes de abajo) "
                        "puede activar marcas de tiempo, tramas en bruto, desplazamiento "
                        "automático o **solo errores y escrituras** para sondeos rápidos.",
        },
    .troubleshooting =
        {
            .title = "Solución de problemas",
            .noResponseHeading = "Sin respuesta",
            .unitID = "¿Coincide la **dirección de esclavo** con la configurada en el "
                      "dispositivo?",
            .timeout = "¿Tarda el dispositivo en responder? Aumente el **tiempo de espera de "
                       "respuesta** en los ajustes.",
            .frame = "¿Coinciden la velocidad en baudios, la paridad y los bits de parada en ambos "
                     "lados? Pruebe `8N1` u `8N2` si `8E1` no funciona.",
            .wiring = "¿No estarán A y B intercambiados? Intercambiarlos no causa ningún daño y a "
                      "menudo es la solución.",
            .cabling = "Use cable de par trenzado, una resistencia de terminación de 120 Ω en "
                       "ambos extremos del bus y una masa común.",
            .busyPort = "¿Está ocupado el puerto? El mensaje nombra el programa que lo retiene, "
                        "por ejemplo ModemManager (proceso 812), y cómo detenerlo: ModemManager "
                        "sondea los adaptadores nuevos en busca de módems, y brltty (para líneas "
                        "braille) se apropia de los adaptadores CH34x. Kestrin bloquea el puerto "
                        "que lee, de modo que un segundo Kestrin no puede abrirlo, aunque se "
                        "ejecute como root. Los chips habituales (FTDI, CP210x, CH34x, PL2303, "
                        "CDC-ACM) no necesitan ningún controlador adicional.",
            .findHeading = "Encontrar dispositivos",
            .findIntro = "¿Esclavo, velocidad o direcciones desconocidos? **Poller ▸ Buscar "
                         "dispositivos…** explora la línea mientras la lectura está detenida:",
            .findUnits = "**Esclavos** consulta cada esclavo de un rango con los ajustes "
                         "actuales y muestra los que responden; haga clic en uno para "
                         "explorarlo después.",
            .findSettings = "**Ajustes** prueba las velocidades y tramas habituales hasta que el "
                            "esclavo responda; **Usar estos ajustes** los pasa al proyecto.",
            .findRegisters =
                "**Registros** lee qué direcciones de cada tabla tiene el esclavo; **Añadir al "
                "sondeo** las añade como puntos de datos al sondeo actual. Las direcciones que el "
                "esclavo estaba demasiado ocupado para leer se cuentan aparte, por ejemplo «96 + "
                "32 ?»: no se sabe si existen.",
            .oddValuesHeading = "Valores extraños",
            .scale = "¿El orden de magnitud es incorrecto? Compruebe la **escala** (por ejemplo, "
                     "0,1 o 0,01).",
            .order = "¿Un valor de 32 bits es incorrecto? Pruebe otro **orden**, normalmente CDAB.",
            .offByOne = "¿Está todo desplazado una dirección? Reste 1: el manual usa entonces "
                        "direcciones a partir de 1 (o de 40001).",
            .adaptersHeading = "Puertos y adaptadores",
            .privacy =
                "¿No se puede abrir un puerto? El mensaje nombra el grupo al que pertenece "
                "(normalmente **dialout**), dice si usted es miembro y da el comando que le añade "
                "con su nombre de usuario, por ejemplo `sudo usermod -aG dialout alice`; después "
                "cierre la sesión y vuelva a iniciarla. Si se le añadió después de iniciar la "
                "sesión, basta con volver a iniciarla. Kestrin solo habla con el puerto serie: "
                "nada se envía por la red, y sus listas y ajustes permanecen en este equipo.",
            .portMoved =
                "Kestrin recuerda el adaptador elegido por su identidad USB (fabricante, producto, "
                "número de serie). Si vuelve con otro nombre tras conectarlo de nuevo, por ejemplo "
                "`/dev/ttyUSB1` en lugar de `/dev/ttyUSB0`, la lectura continúa allí y la traza "
                "indica «Puerto serie abierto de nuevo (ahora /dev/ttyUSB1)». Dos adaptadores "
                "iguales se distinguen en la lista de puertos por su número de serie.",
            .slowAdapter =
                "Los adaptadores FTDI retienen cada respuesta durante su latency timer, 16 ms de "
                "fábrica. Kestrin pide al controlador baja latencia mientras lee; si el timer "
                "sigue por encima de 1 ms, un aviso sobre la traza muestra lo que cuesta, por "
                "ejemplo «Con 16 ms, unas 45 solicitudes por segundo en lugar de 185.» **Poner a 1 "
                "ms** lo reduce hasta que se desconecte el adaptador (el botón solo aparece si el "
                "timer se puede cambiar); **Corregir de forma permanente…** muestra la regla de "
                "udev que pone 1 ms cada vez que se conecta.",
            .rs485 = "En la UART de una placa como la Raspberry Pi, el controlador puede conmutar "
                     "la dirección de un transceptor RS-485 con RTS: active **Dirección RS-485 por "
                     "RTS** en los ajustes (los controles deslizantes de arriba) y ajuste **RTS al "
                     "enviar**, **Espera antes de enviar** y **Espera después de enviar** a lo que "
                     "necesite el transceptor. Los adaptadores USB conmutan solos: déjelo "
                     "desactivado para ellos. Si el controlador del puerto no tiene el modo RS-485 "
                     "del kernel, el puerto no se abre y el mensaje lo indica.",
            .portsVerbose =
                "`kestrin-cli ports --verbose` muestra todo esto de una vez para cada puerto: el "
                "enlace en /dev/serial/by-id, el controlador, la identidad USB, el grupo "
                "propietario y si usted puede abrir el puerto, el programa que lo retiene, el "
                "latency timer y si el controlador tiene el modo RS-485.",
        },
    .shortcuts =
        {
            .title = "Atajos de teclado",
            .ctrl = "Control",
            .shift = "Mayúsculas",
            .del = "Suprimir",
            .startStop = "Iniciar / detener la lectura",
            .listen = "Escuchar / dejar de escuchar",
            .newPoll = "Nuevo sondeo",
            .addDatapoint = "Añadir punto de datos",
            .deleteDatapoints = "Eliminar los puntos de datos seleccionados",
            .importExport = "Importar / exportar puntos de datos (CSV)",
            .projects = "Nuevo proyecto / abrir / guardar como",
            .findInLog = "Buscar en la traza",
            .saveLog = "Guardar la traza",
            .clearLog = "Borrar la traza",
            .openHelp = "Abrir esta ayuda",
        },
};
} // namespace

const HelpContent& spanishHelp() {
    return spanish;
}

} // namespace kestrin::L10n
