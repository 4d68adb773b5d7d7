<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>Text</name>
    <message>
        <source>Take Along</source>
        <translation>Llevar consigo</translation>
    </message>
    <message>
        <source>&amp;Within:</source>
        <translation>&amp;Hasta:</translation>
    </message>
    <message>
        <source>Sites</source>
        <translation>Estaciones</translation>
    </message>
    <message>
        <source>&amp;Take Along</source>
        <translation>&amp;Llevar consigo</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Cancelar</translation>
    </message>
    <message numerus="yes">
        <source>%n sites</source>
        <comment>%n site</comment>
        <translation>
            <numerusform>%n estación</numerusform>
            <numerusform>%n estaciones</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, about %2 (%3 free)</source>
        <translation>%1, unos %2 (%3 libres)</translation>
    </message>
    <message>
        <source>%1, about %2</source>
        <translation>%1, unos %2</translation>
    </message>
    <message>
        <source>from %1</source>
        <translation>desde %1</translation>
    </message>
    <message>
        <source>The distance must be a number above 0, such as 150.</source>
        <translation>La distancia debe ser un número mayor que 0, como 150.</translation>
    </message>
    <message>
        <source>No radar site is within %1 from %2.</source>
        <translation>No hay ninguna estación de radar a menos de %1 desde %2.</translation>
    </message>
    <message>
        <source>There is not enough room for the images: they need about %1, and %2 are free.</source>
        <translation>No hay sitio para las imágenes: necesitan unos %1 y hay %2 libres.</translation>
    </message>
    <message>
        <source>Taken along: %1, %2.</source>
        <translation>Guardado: %1, %2.</translation>
    </message>
    <message>
        <source>Taken along: %1 of %2 whole, %3.</source>
        <translation>Guardado: completas %1 de %2, %3.</translation>
    </message>
    <message>
        <source>And %1 more.</source>
        <translation>Y %1 más.</translation>
    </message>
    <message>
        <source>your position</source>
        <translation>su posición</translation>
    </message>
    <message>
        <source>the map&apos;s middle</source>
        <translation>el centro del mapa</translation>
    </message>
    <message>
        <source>Taking the weather along...</source>
        <translation>Guardando el tiempo...</translation>
    </message>
    <message>
        <source>Taking along %1: %2 of %3, %4</source>
        <translation>Guardando %1: %2 de %3, %4</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;Aceptar</translation>
    </message>
    <message numerus="yes">
        <source>%n things are missing.</source>
        <comment>%n thing is missing.</comment>
        <translation>
            <numerusform>Falta %n cosa.</numerusform>
            <numerusform>Faltan %n cosas.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Show</source>
        <translation>&amp;Mostrar</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Cancelado.</translation>
    </message>
    <message>
        <source>Taken Along</source>
        <translation>Guardado</translation>
    </message>
    <message>
        <source>&amp;Take Along...</source>
        <translation>&amp;Llevar consigo...</translation>
    </message>
    <message>
        <source>maps</source>
        <translation>mapas</translation>
    </message>
    <message>
        <source>long range maps</source>
        <translation>mapas de largo alcance</translation>
    </message>
    <message numerus="yes">
        <source>%n files are missing.</source>
        <comment>%n file is missing.</comment>
        <translation>
            <numerusform>Falta %n archivo.</numerusform>
            <numerusform>Faltan %n archivos.</numerusform>
        </translation>
    </message>
    <message>
        <source>Use this file of pages, and leave the usual one alone.</source>
        <translation>Usa este archivo de páginas y no toca el habitual.</translation>
    </message>
    <message>
        <source>The size of the window, such as 480x640.</source>
        <translation>El tamaño de la ventana, como 480x640.</translation>
    </message>
    <message>
        <source>Save a picture of the window as PNG and end; needs no display.</source>
        <translation>Guarda una imagen de la ventana en PNG y termina; no necesita pantalla.</translation>
    </message>
    <message>
        <source>Save the first radar item&apos;s loop as an animated GIF and end; needs no display.</source>
        <translation>Guarda el bucle del primer radar como GIF animado y termina; no necesita pantalla.</translation>
    </message>
    <message>
        <source>Where the position comes from: serial:PATH[@SPEED], tcp:HOST:PORT, udp:PORT, gpsd:[HOST[:PORT]] or file:PATH[?rate=N].</source>
        <translation>De dónde viene la posición: serial:PATH[@SPEED], tcp:HOST:PORT, udp:PORT, gpsd:[HOST[:PORT]] o file:PATH[?rate=N].</translation>
    </message>
    <message>
        <source>Where the radar images come from.</source>
        <translation>De dónde vienen las imágenes de radar.</translation>
    </message>
    <message>
        <source>Where counties and cities come from.</source>
        <translation>De dónde vienen los condados y las ciudades.</translation>
    </message>
    <message>
        <source>Options for the server that the viewer starts for live radar.</source>
        <translation>Opciones para el servidor que el visor inicia para el radar en directo.</translation>
    </message>
    <message>
        <source>Show this radar site first, such as MUX.</source>
        <translation>Muestra primero esta estación de radar, como MUX.</translation>
    </message>
    <message>
        <source>With --site, instead of the item&apos;s own: N0R, NCR, N0Z, N1P, NTP, N0V or N0S.</source>
        <translation>Con --site, en lugar del propio: N0R, NCR, N0Z, N1P, NTP, N0V o N0S.</translation>
    </message>
    <message>
        <source>If no radar site was chosen yet, show this one, animated, instead of asking.</source>
        <translation>Si aún no se ha elegido una estación de radar, muestra esta, animada, en vez de preguntar.</translation>
    </message>
    <message>
        <source>Unexpected argument &quot;%1&quot;.</source>
        <translation>Argumento inesperado «%1».</translation>
    </message>
    <message>
        <source>There is no file %1.</source>
        <translation>No existe el archivo %1.</translation>
    </message>
    <message>
        <source>--geometry takes WIDTHxHEIGHT, each from %1 to %2.</source>
        <translation>--geometry espera ANCHOxALTO, cada uno de %1 a %2.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not HOST or HOST:PORT.</source>
        <translation>«%1» no es HOST ni HOST:PORT.</translation>
    </message>
    <message>
        <source>There is no site %1.</source>
        <translation>No existe la estación %1.</translation>
    </message>
    <message>
        <source>--product needs --site.</source>
        <translation>--product necesita --site.</translation>
    </message>
    <message>
        <source>There is no product %1.</source>
        <translation>No existe el producto %1.</translation>
    </message>
    <message>
        <source>Shows weather radar images: the newest of a site, animated, on a map.</source>
        <translation>Muestra imágenes de radar meteorológico: las más recientes de una estación, animadas, sobre un mapa.</translation>
    </message>
    <message>
        <source>The same as --page-file FILE, if it is there.</source>
        <translation>Lo mismo que --page-file FILE, si existe.</translation>
    </message>
    <message>
        <source>
Qt&apos;s own options, such as -platform and -style, are understood too.
</source>
        <translation>
También se entienden las opciones de Qt, como -platform y -style.
</translation>
    </message>
    <message>
        <source>About Raincast</source>
        <translation>Acerca de Raincast</translation>
    </message>
    <message>
        <source>NOAA/NWS NEXRAD via Unidata (AWS Open Data)</source>
        <translation>NOAA/NWS NEXRAD a través de Unidata (AWS Open Data)</translation>
    </message>
    <message>
        <source>Free software, MIT licence. Maps: GSHHG (LGPL), ETOPO5 (NOAA), U.S. Census Bureau, GeoNames (CC BY 4.0)</source>
        <translation>Software libre, licencia MIT. Mapas: GSHHG (LGPL), ETOPO5 (NOAA), U.S. Census Bureau, GeoNames (CC BY 4.0)</translation>
    </message>
    <message>
        <source>Version %1, Build %2</source>
        <translation>Versión %1, comp. %2</translation>
    </message>
    <message numerus="yes">
        <source>%n pages</source>
        <comment>%n page</comment>
        <translation>
            <numerusform>%n página</numerusform>
            <numerusform>%n páginas</numerusform>
        </translation>
    </message>
    <message>
        <source>The pages in %1 cannot be read: %2. They are left as they are; nothing of this run will be saved.</source>
        <translation>No se pueden leer las páginas de %1: %2. Se dejan como están; no se guardará nada de esta sesión.</translation>
    </message>
    <message>
        <source>Some pages could not be read. Use the backup of %1 (%2)?</source>
        <translation>Algunas páginas no se pudieron leer. ¿Usar la copia de seguridad de %1 (%2)?</translation>
    </message>
    <message>
        <source>Some pages in %1 could not be read. It is left as it is, and so is its backup of %2.</source>
        <translation>Algunas páginas de %1 no se pudieron leer. Se deja como está, igual que su copia de seguridad de %2.</translation>
    </message>
    <message>
        <source>The pages and marks cannot be saved: %1.</source>
        <translation>No se pueden guardar las páginas y marcas: %1.</translation>
    </message>
    <message>
        <source>The settings cannot be saved: %1.</source>
        <translation>No se pueden guardar los ajustes: %1.</translation>
    </message>
    <message>
        <source>The pages and marks cannot be saved in %1: %2.</source>
        <translation>No se pueden guardar las páginas y marcas en %1: %2.</translation>
    </message>
    <message>
        <source>The settings cannot be saved in %1: %2.</source>
        <translation>No se pueden guardar los ajustes en %1: %2.</translation>
    </message>
    <message>
        <source>Discard loses what this run changed in them.</source>
        <translation>Con Descartar se pierde lo que esta sesión cambió en ellos.</translation>
    </message>
    <message>
        <source>What this run changed in them is lost.</source>
        <translation>Se pierde lo que esta sesión cambió en ellos.</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Teclas</translation>
    </message>
    <message>
        <source>Zoom in, out</source>
        <translation>Acercar, alejar</translation>
    </message>
    <message>
        <source>Show the whole image</source>
        <translation>Imagen entera</translation>
    </message>
    <message>
        <source>Home, 0</source>
        <translation>Inicio, 0</translation>
    </message>
    <message>
        <source>Move the map</source>
        <translation>Mover el mapa</translation>
    </message>
    <message>
        <source>Arrows</source>
        <translation>Flechas</translation>
    </message>
    <message>
        <source>Follow the position</source>
        <translation>Seguir la posición</translation>
    </message>
    <message>
        <source>Show a product</source>
        <translation>Mostrar un producto</translation>
    </message>
    <message>
        <source>1 to 7</source>
        <translation>1 a 7</translation>
    </message>
    <message>
        <source>Pause the loop, play on</source>
        <translation>Pausar el bucle, seguir</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Espacio</translation>
    </message>
    <message>
        <source>Step back, forward</source>
        <translation>Paso atrás, adelante</translation>
    </message>
    <message>
        <source>, and .</source>
        <translation>, y .</translation>
    </message>
    <message>
        <source>List warnings, dismiss one</source>
        <translation>Listar avisos, descartar</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Actualizar</translation>
    </message>
    <message>
        <source>End measuring, stop updating</source>
        <translation>Dejar de medir o actualizar</translation>
    </message>
    <message>
        <source>Menu of the place in the middle</source>
        <translation>Menú del punto central</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menú</translation>
    </message>
    <message>
        <source>Previous, next page</source>
        <translation>Cambiar de página</translation>
    </message>
    <message>
        <source>PgUp, PgDn</source>
        <translation>Re Pág, Av Pág</translation>
    </message>
    <message>
        <source>Undo a deletion</source>
        <translation>Deshacer un borrado</translation>
    </message>
    <message>
        <source>Open the menu</source>
        <translation>Abrir el menú</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Pantalla completa</translation>
    </message>
    <message>
        <source>This sheet</source>
        <translation>Esta hoja</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>&amp;Previous page</source>
        <translation>Página &amp;anterior</translation>
    </message>
    <message>
        <source>&amp;Next page</source>
        <translation>Página &amp;siguiente</translation>
    </message>
    <message>
        <source>Pa&amp;ges...</source>
        <translation>&amp;Páginas...</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>A&amp;justes</translation>
    </message>
    <message>
        <source>&amp;Full screen</source>
        <translation>Pantalla &amp;completa</translation>
    </message>
    <message>
        <source>&amp;Keys...</source>
        <translation>T&amp;eclas...</translation>
    </message>
    <message>
        <source>&amp;About...</source>
        <translation>Ace&amp;rca de...</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>Sal&amp;ir</translation>
    </message>
    <message>
        <source>&amp;Menu</source>
        <translation>&amp;Menú</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Acercar</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Alejar</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
    <message>
        <source>GPS Source</source>
        <translation>Fuente del GPS</translation>
    </message>
    <message>
        <source>&amp;Source:</source>
        <translation>&amp;Fuente:</translation>
    </message>
    <message>
        <source>&amp;Address:</source>
        <translation>&amp;Dirección:</translation>
    </message>
    <message>
        <source>What arrives:</source>
        <translation>Lo que llega:</translation>
    </message>
    <message>
        <source>&amp;Try</source>
        <translation>P&amp;robar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Ninguna</translation>
    </message>
    <message>
        <source>Positions are not read</source>
        <translation>No se leen posiciones</translation>
    </message>
    <message>
        <source>Serial device</source>
        <translation>Dispositivo serie</translation>
    </message>
    <message>
        <source>&amp;Device:</source>
        <translation>&amp;Dispositivo:</translation>
    </message>
    <message>
        <source>For example /dev/ttyUSB0, or with a speed /dev/ttyUSB0@9600</source>
        <translation>Por ejemplo /dev/ttyUSB0 o, con velocidad, /dev/ttyUSB0@9600</translation>
    </message>
    <message>
        <source>TCP server</source>
        <translation>Servidor TCP</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>&amp;Servidor:</translation>
    </message>
    <message>
        <source>HOST:PORT, for example 192.168.1.20:10110</source>
        <translation>HOST:PORT, por ejemplo 192.168.1.20:10110</translation>
    </message>
    <message>
        <source>UDP port</source>
        <translation>Puerto UDP</translation>
    </message>
    <message>
        <source>&amp;Port:</source>
        <translation>&amp;Puerto:</translation>
    </message>
    <message>
        <source>Of this computer, for example 10110</source>
        <translation>De este ordenador, por ejemplo 10110</translation>
    </message>
    <message>
        <source>HOST or HOST:PORT. Empty: the gpsd of this computer</source>
        <translation>HOST o HOST:PORT. Vacío: el gpsd de este ordenador</translation>
    </message>
    <message>
        <source>Recorded file</source>
        <translation>Archivo grabado</translation>
    </message>
    <message>
        <source>&amp;File:</source>
        <translation>&amp;Archivo:</translation>
    </message>
    <message>
        <source>For example ~/trip.nmea, or faster ~/trip.nmea?rate=10</source>
        <translation>Por ejemplo ~/trip.nmea o, más rápido, ~/trip.nmea?rate=10</translation>
    </message>
    <message>
        <source>the path does not start with / or ~/</source>
        <translation>la ruta no empieza por / ni por ~/</translation>
    </message>
    <message>
        <source>On trial: %1</source>
        <translation>A prueba: %1</translation>
    </message>
    <message>
        <source>None in use</source>
        <translation>Ninguna en uso</translation>
    </message>
    <message>
        <source>For this run: %1</source>
        <translation>Para esta sesión: %1</translation>
    </message>
    <message>
        <source>In use: %1</source>
        <translation>En uso: %1</translation>
    </message>
    <message>
        <source>The page has no radar item</source>
        <translation>La página no tiene ningún radar</translation>
    </message>
    <message>
        <source>No sentences</source>
        <translation>Sin sentencias</translation>
    </message>
    <message>
        <source>%1 sentences per second</source>
        <translation>%1 sentencias por segundo</translation>
    </message>
    <message>
        <source>%1, fix</source>
        <translation>%1, con posición</translation>
    </message>
    <message>
        <source>%1, no fix</source>
        <translation>%1, sin posición</translation>
    </message>
    <message>
        <source>It is tried again every 10 seconds.</source>
        <translation>Se vuelve a intentar cada 10 segundos.</translation>
    </message>
    <message>
        <source>Live radar cannot be reached: sample weather.</source>
        <translation>No se llega al radar en directo: tiempo de muestra.</translation>
    </message>
    <message>
        <source>Loading basemap...
</source>
        <translation>Cargando mapa base...
</translation>
    </message>
    <message>
        <source>Failed to access
the internet. Please
check your connection
settings.</source>
        <translation>No se pudo acceder
a internet. Compruebe
los ajustes de su
conexión.</translation>
    </message>
    <message>
        <source>Show this help.</source>
        <translation>Muestra esta ayuda.</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>Muestra la versión.</translation>
    </message>
    <message>
        <source>--%1 takes a value.</source>
        <translation>--%1 necesita un valor.</translation>
    </message>
    <message>
        <source>%1: %2
Try %1 --help.
</source>
        <translation>%1: %2
Pruebe %1 --help.
</translation>
    </message>
    <message>
        <source>Not a regular file</source>
        <translation>No es un archivo normal</translation>
    </message>
    <message>
        <source>No file is open</source>
        <translation>No hay ningún archivo abierto</translation>
    </message>
    <message>
        <source>Larger than %1 bytes</source>
        <translation>Mayor de %1 bytes</translation>
    </message>
    <message>
        <source>GPS Vector</source>
        <translation>Vector del GPS</translation>
    </message>
    <message>
        <source>&amp;Length of the arrow:</source>
        <translation>&amp;Longitud de la flecha:</translation>
    </message>
    <message>
        <source>minutes</source>
        <translation>minutos</translation>
    </message>
    <message>
        <source>Go to Position</source>
        <translation>Ir a una posición</translation>
    </message>
    <message>
        <source>&amp;Latitude, longitude:</source>
        <translation>&amp;Latitud, longitud:</translation>
    </message>
    <message>
        <source>Not a valid position. Type the latitude first, for example 41°30.5&apos;N, 105°15&apos;W or 41.5, -105.25</source>
        <translation>No es una posición válida. Escriba primero la latitud, por ejemplo 41°30.5&apos;N, 105°15&apos;W o 41.5, -105.25</translation>
    </message>
    <message>
        <source>This position is not on the map.</source>
        <translation>Esta posición no está en el mapa.</translation>
    </message>
    <message>
        <source>Home brings the radar back</source>
        <translation>Inicio vuelve al radar</translation>
    </message>
    <message>
        <source>left</source>
        <translation>a babor</translation>
    </message>
    <message>
        <source>right</source>
        <translation>a estribor</translation>
    </message>
    <message>
        <source>ahead</source>
        <translation>a proa</translation>
    </message>
    <message>
        <source>XTE %1</source>
        <translation>XTE %1</translation>
    </message>
    <message>
        <source>Add Mark</source>
        <translation>Añadir marca</translation>
    </message>
    <message>
        <source>Your position is not on the map.</source>
        <translation>Su posición no está en el mapa.</translation>
    </message>
    <message>
        <source>Follow Position</source>
        <translation>Seguir la posición</translation>
    </message>
    <message>
        <source>&amp;Add Mark...</source>
        <translation>&amp;Añadir marca...</translation>
    </message>
    <message>
        <source>&amp;Marks...</source>
        <translation>&amp;Marcas...</translation>
    </message>
    <message>
        <source>&amp;Follow Position</source>
        <translation>&amp;Seguir la posición</translation>
    </message>
    <message>
        <source>&amp;Go to Position...</source>
        <translation>&amp;Ir a una posición...</translation>
    </message>
    <message>
        <source>&amp;Whole Image	Home</source>
        <translation>Imagen &amp;entera	Inicio</translation>
    </message>
    <message>
        <source>Show &amp;Position</source>
        <translation>Mostrar &amp;posición</translation>
    </message>
    <message>
        <source>Show &amp;Navigation</source>
        <translation>Mostrar &amp;navegación</translation>
    </message>
    <message>
        <source>&amp;Marks</source>
        <translation>&amp;Marcas</translation>
    </message>
    <message>
        <source>&amp;Map</source>
        <translation>&amp;Mapa</translation>
    </message>
    <message>
        <source>&amp;Add Mark Here</source>
        <translation>&amp;Añadir marca aquí</translation>
    </message>
    <message>
        <source>&amp;Copy Position</source>
        <translation>&amp;Copiar posición</translation>
    </message>
    <message>
        <source>Centre &amp;Here</source>
        <translation>Centrar a&amp;quí</translation>
    </message>
    <message>
        <source>&amp;Set as Target</source>
        <translation>&amp;Fijar como destino</translation>
    </message>
    <message>
        <source>not on earth</source>
        <translation>fuera de la Tierra</translation>
    </message>
    <message>
        <source>Mark %1</source>
        <translation>Marca %1</translation>
    </message>
    <message>
        <source>Unnamed</source>
        <translation>Sin nombre</translation>
    </message>
    <message>
        <source>Marks</source>
        <translation>Marcas</translation>
    </message>
    <message>
        <source>Go to</source>
        <translation>Ir a</translation>
    </message>
    <message>
        <source>Set as Target</source>
        <translation>Fijar destino</translation>
    </message>
    <message>
        <source>Clear Target</source>
        <translation>Quitar destino</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Renombrar</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Eliminar</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>, target</source>
        <translation>, destino</translation>
    </message>
    <message>
        <source>This mark is not on the map.</source>
        <translation>Esta marca no está en el mapa.</translation>
    </message>
    <message>
        <source>libcurl is not installed</source>
        <translation>libcurl no está instalada</translation>
    </message>
    <message>
        <source>more than one update may bring</source>
        <translation>más de lo que puede traer una actualización</translation>
    </message>
    <message>
        <source>Out of memory</source>
        <translation>Sin memoria</translation>
    </message>
    <message>
        <source>larger than a file may be</source>
        <translation>mayor de lo que puede ser un archivo</translation>
    </message>
    <message>
        <source>no %1</source>
        <translation>no es %1</translation>
    </message>
    <message>
        <source>not whole</source>
        <translation>incompleto</translation>
    </message>
    <message>
        <source>%1 does not answer.</source>
        <translation>%1 no responde.</translation>
    </message>
    <message>
        <source>%1 answers with error %2.</source>
        <translation>%1 responde con el error %2.</translation>
    </message>
    <message>
        <source>%1 sends something else: %2.</source>
        <translation>%1 envía otra cosa: %2.</translation>
    </message>
    <message>
        <source>The connection to %1 broke.</source>
        <translation>Se cortó la conexión con %1.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Reintentar</translation>
    </message>
    <message>
        <source>Restored default pages.</source>
        <translation>Se restauraron las páginas iniciales.</translation>
    </message>
    <message>
        <source>Select Page Type</source>
        <translation>Elegir tipo de página</translation>
    </message>
    <message>
        <source>There are no pages. To add one, choose &quot;Pages...&quot; in the menu.</source>
        <translation>No hay páginas. Para añadir una, elija «Páginas...» en el menú.</translation>
    </message>
    <message>
        <source>No page is shown, and none is enabled. To show or to enable one, choose &quot;Pages...&quot; in the menu.</source>
        <translation>No se muestra ninguna página y ninguna está activada. Para mostrar o activar una, elija «Páginas...» en el menú.</translation>
    </message>
    <message>
        <source>No page is shown. Choose one in the menu, or press Page Down for the first one.</source>
        <translation>No se muestra ninguna página. Elija una en el menú o pulse Av Pág para ver la primera.</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Páginas</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Mostrar</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Subir</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Bajar</translation>
    </message>
    <message>
        <source>Enable</source>
        <translation>Activar</translation>
    </message>
    <message>
        <source>Add...</source>
        <translation>Añadir...</translation>
    </message>
    <message>
        <source>Restore default</source>
        <translation>Restaurar</translation>
    </message>
    <message>
        <source>Decoration:Texture</source>
        <translation>Decoración:Textura</translation>
    </message>
    <message>
        <source>Select Display Item</source>
        <translation>Elegir elemento</translation>
    </message>
    <message>
        <source>Blank customizable page</source>
        <translation>Página en blanco personalizable</translation>
    </message>
    <message>
        <source>&amp;Layout mode</source>
        <translation>&amp;Modo de disposición</translation>
    </message>
    <message>
        <source>&amp;Add item...</source>
        <translation>&amp;Añadir elemento...</translation>
    </message>
    <message>
        <source>&amp;Delete item</source>
        <translation>&amp;Eliminar elemento</translation>
    </message>
    <message>
        <source>&amp;Bring to front</source>
        <translation>&amp;Traer al frente</translation>
    </message>
    <message>
        <source>&amp;Layout</source>
        <translation>&amp;Disposición</translation>
    </message>
    <message>
        <source>Special Weather Statement</source>
        <translation>Declaración especial del tiempo</translation>
    </message>
    <message>
        <source>Dust Storm Warning</source>
        <translation>Aviso de tormenta de polvo</translation>
    </message>
    <message>
        <source>Snow Squall Warning</source>
        <translation>Aviso de turbonada de nieve</translation>
    </message>
    <message>
        <source>Special Marine Warning</source>
        <translation>Aviso marítimo especial</translation>
    </message>
    <message>
        <source>Flash Flood Warning</source>
        <translation>Aviso de inundación repentina</translation>
    </message>
    <message>
        <source>Severe Thunderstorm Warning</source>
        <translation>Aviso de tormenta severa</translation>
    </message>
    <message>
        <source>Extreme Wind Warning</source>
        <translation>Aviso de viento extremo</translation>
    </message>
    <message>
        <source>Tornado Warning</source>
        <translation>Aviso de tornado</translation>
    </message>
    <message>
        <source>Larger than %1 MiB</source>
        <translation>Mayor de %1 MiB</translation>
    </message>
    <message>
        <source>It is left as it is</source>
        <translation>Se deja como está</translation>
    </message>
    <message>
        <source>Another page file has come there meanwhile</source>
        <translation>Entretanto ha aparecido allí otro archivo de páginas</translation>
    </message>
    <message>
        <source>Its backup cannot be written: %1</source>
        <translation>No se puede escribir su copia de seguridad: %1</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2.</source>
        <translation>No se puede escribir %1: %2.</translation>
    </message>
    <message>
        <source>There is not enough memory</source>
        <translation>No hay memoria suficiente</translation>
    </message>
    <message>
        <source>Save Picture</source>
        <translation>Guardar imagen</translation>
    </message>
    <message>
        <source>Save Loop</source>
        <translation>Guardar bucle</translation>
    </message>
    <message>
        <source>Saving the loop...</source>
        <translation>Guardando el bucle...</translation>
    </message>
    <message>
        <source>There is no picture</source>
        <translation>No hay imagen</translation>
    </message>
    <message>
        <source>Saving the loop: %1 of %2 frames</source>
        <translation>Guardando el bucle: %1 de %2 imágenes</translation>
    </message>
    <message>
        <source>The loop is in %1.</source>
        <translation>El bucle está en %1.</translation>
    </message>
    <message>
        <source>&amp;Save Picture...</source>
        <translation>&amp;Guardar imagen...</translation>
    </message>
    <message>
        <source>&amp;Copy Picture</source>
        <translation>&amp;Copiar imagen</translation>
    </message>
    <message>
        <source>Save &amp;Loop...</source>
        <translation>Guardar &amp;bucle...</translation>
    </message>
    <message>
        <source>Something else is shown by now</source>
        <translation>Ahora se muestra otra cosa</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Guardar</translation>
    </message>
    <message>
        <source>There is no folder %1.</source>
        <translation>No existe la carpeta %1.</translation>
    </message>
    <message>
        <source>Replace the file %1?</source>
        <translation>¿Reemplazar el archivo %1?</translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <comment>%n hour</comment>
        <translation>
            <numerusform>%n hora</numerusform>
            <numerusform>%n horas</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <comment>%n minute</comment>
        <translation>
            <numerusform>%n minuto</numerusform>
            <numerusform>%n minutos</numerusform>
        </translation>
    </message>
    <message>
        <source>just now</source>
        <translation>ahora mismo</translation>
    </message>
    <message numerus="yes">
        <source>%n days</source>
        <comment>%n day</comment>
        <translation>
            <numerusform>%n día</numerusform>
            <numerusform>%n días</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 ago</source>
        <translation>hace %1</translation>
    </message>
    <message>
        <source>&amp;Play</source>
        <translation>&amp;Reproducir</translation>
    </message>
    <message>
        <source>Step &amp;Back</source>
        <translation>&amp;Paso atrás</translation>
    </message>
    <message>
        <source>Step &amp;Forward</source>
        <translation>Paso a&amp;delante</translation>
    </message>
    <message>
        <source>&amp;Half Speed</source>
        <translation>Mitad de &amp;velocidad</translation>
    </message>
    <message>
        <source>&amp;Normal Speed</source>
        <translation>Velocidad &amp;normal</translation>
    </message>
    <message>
        <source>&amp;Double Speed</source>
        <translation>Velocidad do&amp;ble</translation>
    </message>
    <message>
        <source>F&amp;our Times the Speed</source>
        <translation>Velocidad &amp;cuádruple</translation>
    </message>
    <message>
        <source>&amp;Show Bar</source>
        <translation>&amp;Mostrar barra</translation>
    </message>
    <message>
        <source>Times in &amp;UTC</source>
        <translation>Horas en &amp;UTC</translation>
    </message>
    <message>
        <source>Loop</source>
        <translation>Bucle</translation>
    </message>
    <message>
        <source>Step back</source>
        <translation>Paso atrás</translation>
    </message>
    <message>
        <source>Step forward</source>
        <translation>Paso adelante</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>Imagen</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Velocidad</translation>
    </message>
    <message>
        <source>Times in UTC</source>
        <translation>Horas en UTC</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pausa</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Reproducir</translation>
    </message>
    <message>
        <source>%1 taken</source>
        <translation>%1 usadas</translation>
    </message>
    <message>
        <source>%1 of other kinds</source>
        <translation>%1 de otros tipos</translation>
    </message>
    <message>
        <source>%1 proprietary</source>
        <translation>%1 de fabricante</translation>
    </message>
    <message>
        <source>%1 encapsulated</source>
        <translation>%1 encapsuladas</translation>
    </message>
    <message>
        <source>%1 with a wrong checksum</source>
        <translation>%1 con suma errónea</translation>
    </message>
    <message>
        <source>%1 malformed</source>
        <translation>%1 mal formadas</translation>
    </message>
    <message>
        <source>%1 too long</source>
        <translation>%1 demasiado largas</translation>
    </message>
    <message>
        <source>%1 garbled</source>
        <translation>%1 corruptas</translation>
    </message>
    <message>
        <source>%1 lines of JSON</source>
        <translation>%1 líneas de JSON</translation>
    </message>
    <message>
        <source>%1 bytes of junk</source>
        <translation>%1 bytes de basura</translation>
    </message>
    <message>
        <source>read %1 bytes</source>
        <translation>leídos %1 bytes</translation>
    </message>
    <message>
        <source>No position source</source>
        <translation>Sin fuente de posición</translation>
    </message>
    <message>
        <source>Open; %1</source>
        <translation>Abierta; %1</translation>
    </message>
    <message>
        <source>%1; trying again; %2</source>
        <translation>%1; reintentando; %2</translation>
    </message>
    <message>
        <source>%1; opening it again after %2 s; %3</source>
        <translation>%1; se reabre en %2 s; %3</translation>
    </message>
    <message>
        <source>Finished; %1</source>
        <translation>Terminada; %1</translation>
    </message>
    <message>
        <source>Not a file</source>
        <translation>No es un archivo</translation>
    </message>
    <message>
        <source>the port &quot;%1&quot; is not a number from 1 to 65535</source>
        <translation>el puerto «%1» no es un número de 1 a 65535</translation>
    </message>
    <message>
        <source>the bracket of the address &quot;%1&quot; is not closed</source>
        <translation>el corchete de la dirección «%1» no está cerrado</translation>
    </message>
    <message>
        <source>what follows the bracket in &quot;%1&quot; is not a port</source>
        <translation>lo que sigue al corchete en «%1» no es un puerto</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has more than one colon (an IPv6 address stands in brackets)</source>
        <translation>«%1» tiene más de un signo de dos puntos (una dirección IPv6 va entre corchetes)</translation>
    </message>
    <message>
        <source>the device is missing</source>
        <translation>falta el dispositivo</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a speed of serial devices, as 4800 is</source>
        <translation>«%1» no es una velocidad de dispositivos serie, como 4800</translation>
    </message>
    <message>
        <source>the host is missing</source>
        <translation>falta el servidor</translation>
    </message>
    <message>
        <source>the port is missing</source>
        <translation>falta el puerto</translation>
    </message>
    <message>
        <source>the file is missing</source>
        <translation>falta el archivo</translation>
    </message>
    <message>
        <source>the rate &quot;%1&quot; is not a number from 0 to 1000</source>
        <translation>el ritmo «%1» no es un número de 0 a 1000</translation>
    </message>
    <message>
        <source>it does not start with serial:, tcp:, udp:, gpsd: or file:</source>
        <translation>no empieza por serial:, tcp:, udp:, gpsd: ni file:</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a source of positions: %2</source>
        <translation>«%1» no es una fuente de posiciones: %2</translation>
    </message>
    <message>
        <source>Not a serial device</source>
        <translation>No es un dispositivo serie</translation>
    </message>
    <message>
        <source>%1 is not a speed</source>
        <translation>%1 no es una velocidad</translation>
    </message>
    <message>
        <source>The device was unplugged</source>
        <translation>El dispositivo se desconectó</translation>
    </message>
    <message>
        <source>UDP port %1: %2</source>
        <translation>Puerto UDP %1: %2</translation>
    </message>
    <message>
        <source>There is no folder
for the image cache.
</source>
        <translation>No hay carpeta para
la caché de imágenes.
</translation>
    </message>
    <message>
        <source>Could not write to
the cache folder
%1:
%2.
</source>
        <translation>No se pudo escribir en
la carpeta de la caché
%1:
%2.
</translation>
    </message>
    <message>
        <source>Base Reflectivity</source>
        <translation>Reflectividad base</translation>
    </message>
    <message>
        <source>Composite Reflectivity</source>
        <translation>Reflectividad compuesta</translation>
    </message>
    <message>
        <source>Long Range Reflectivity</source>
        <translation>Reflectividad de largo alcance</translation>
    </message>
    <message>
        <source>1 Hour Precipitation</source>
        <translation>Precipitación en 1 hora</translation>
    </message>
    <message>
        <source>Total Precipitation</source>
        <translation>Precipitación total</translation>
    </message>
    <message>
        <source>Velocity</source>
        <translation>Velocidad</translation>
    </message>
    <message>
        <source>Storm Relative Velocity</source>
        <translation>Velocidad relativa a tormenta</translation>
    </message>
    <message>
        <source>GIF image</source>
        <translation>una imagen GIF</translation>
    </message>
    <message>
        <source>JPEG image</source>
        <translation>una imagen JPEG</translation>
    </message>
    <message>
        <source>sound GIF image</source>
        <translation>una imagen GIF correcta</translation>
    </message>
    <message>
        <source>texts of warnings</source>
        <translation>un archivo de avisos</translation>
    </message>
    <message>
        <source>world file</source>
        <translation>un archivo de georreferencia</translation>
    </message>
    <message>
        <source>This radar makes no such product.</source>
        <translation>Este radar no genera ese producto.</translation>
    </message>
    <message>
        <source>The radar itself is down.</source>
        <translation>El radar está fuera de servicio.</translation>
    </message>
    <message>
        <source>The provider does not answer.</source>
        <translation>El proveedor no responde.</translation>
    </message>
    <message>
        <source>This machine has no network.</source>
        <translation>Este equipo no tiene red.</translation>
    </message>
    <message>
        <source>Updating radar image...
</source>
        <translation>Actualizando imagen...
</translation>
    </message>
    <message>
        <source>Could not access server.
</source>
        <translation>No se pudo acceder al servidor.
</translation>
    </message>
    <message>
        <source>No radar images found on server.
</source>
        <translation>El servidor no tiene imágenes.
</translation>
    </message>
    <message>
        <source>Could not download
any radar images.
</source>
        <translation>No se pudo descargar
ninguna imagen de radar.
</translation>
    </message>
    <message>
        <source>Could not get
all images.
</source>
        <translation>No se pudieron obtener
todas las imágenes.
</translation>
    </message>
    <message>
        <source>%1 or more</source>
        <translation>%1 o más</translation>
    </message>
    <message>
        <source>up to %1</source>
        <translation>hasta %1</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 a %2</translation>
    </message>
    <message>
        <source>no echo</source>
        <translation>sin eco</translation>
    </message>
    <message>
        <source>range folded</source>
        <translation>alcance ambiguo</translation>
    </message>
    <message>
        <source>%1 away</source>
        <translation>%1 alejándose</translation>
    </message>
    <message>
        <source>%1 towards radar</source>
        <translation>%1 hacia el radar</translation>
    </message>
    <message>
        <source>no rain</source>
        <translation>sin lluvia</translation>
    </message>
    <message>
        <source>below %1 %2</source>
        <translation>menos de %1 %2</translation>
    </message>
    <message>
        <source>RF</source>
        <translation>AA</translation>
    </message>
    <message>
        <source>in</source>
        <translation>in</translation>
    </message>
    <message>
        <source>over 99 h</source>
        <translation>más de 99 h</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 h %2 min</translation>
    </message>
    <message>
        <source>%1 h %2 minutes</source>
        <translation>%1 h %2 minutos</translation>
    </message>
    <message>
        <source>%1 at %2</source>
        <translation>%1 a %2</translation>
    </message>
    <message>
        <source>Moves away from %1</source>
        <translation>Se aleja de %1</translation>
    </message>
    <message>
        <source>Passes %1 %2 from %3 at %4</source>
        <translation>Pasa a %1 %2 de %3 a las %4</translation>
    </message>
    <message>
        <source>Reaches %1 at %2, in %3</source>
        <translation>Llega a %1 a las %2, en %3</translation>
    </message>
    <message>
        <source>Reached %1 at %2</source>
        <translation>Llegó a %1 a las %2</translation>
    </message>
    <message>
        <source>Stands still</source>
        <translation>Quieta</translation>
    </message>
    <message>
        <source>Moves %1 at %2</source>
        <translation>Se mueve %1 a %2</translation>
    </message>
    <message>
        <source>you</source>
        <translation>usted</translation>
    </message>
    <message>
        <source>target</source>
        <translation>su destino</translation>
    </message>
    <message>
        <source>the point</source>
        <translation>ese punto</translation>
    </message>
    <message>
        <source>Measuring</source>
        <translation>Midiendo</translation>
    </message>
    <message>
        <source>Touch the storm in the picture</source>
        <translation>Toque la tormenta en la imagen</translation>
    </message>
    <message>
        <source>Touch the storm in the picture of %1</source>
        <translation>Toque la tormenta en la imagen de las %1</translation>
    </message>
    <message>
        <source>Touch it again in the picture</source>
        <translation>Tóquela de nuevo en la imagen</translation>
    </message>
    <message>
        <source>Touch it again in the picture of %1</source>
        <translation>Tóquela de nuevo en la imagen de las %1</translation>
    </message>
    <message>
        <source>m</source>
        <translation>m</translation>
    </message>
    <message>
        <source>ft</source>
        <translation>ft</translation>
    </message>
    <message>
        <source>outside the radar&apos;s range</source>
        <translation>fuera del alcance del radar</translation>
    </message>
    <message>
        <source>From radar %1</source>
        <translation>Desde el radar %1</translation>
    </message>
    <message>
        <source>From you %1</source>
        <translation>Desde usted %1</translation>
    </message>
    <message>
        <source>Beam %1 above radar</source>
        <translation>Haz %1 sobre el radar</translation>
    </message>
    <message>
        <source>Past Storm</source>
        <translation>Tormenta pasada</translation>
    </message>
    <message>
        <source>&amp;Storm:</source>
        <translation>&amp;Tormenta:</translation>
    </message>
    <message>
        <source>Be&amp;gins on:</source>
        <translation>&amp;Empieza:</translation>
    </message>
    <message>
        <source>&amp;At:</source>
        <translation>&amp;A las:</translation>
    </message>
    <message>
        <source>S&amp;peed:</source>
        <translation>&amp;Velocidad:</translation>
    </message>
    <message>
        <source>times</source>
        <translation>veces</translation>
    </message>
    <message>
        <source>&amp;Keep its pictures</source>
        <translation>&amp;Conservar sus imágenes</translation>
    </message>
    <message>
        <source>Another one</source>
        <translation>Otra</translation>
    </message>
    <message>
        <source>A past storm begins between 2020-01-01 and now, at a time like 02:00; its speed must be 1 to %1</source>
        <translation>Una tormenta pasada empieza entre 2020-01-01 y ahora, a una hora como 02:00; su velocidad debe ser de 1 a %1</translation>
    </message>
    <message>
        <source>Replay of %1 UTC, %2 times as fast</source>
        <translation>Repetición de %1 UTC, %2 veces más rápida</translation>
    </message>
    <message>
        <source>Replay of %1 UTC</source>
        <translation>Repetición de %1 UTC</translation>
    </message>
    <message>
        <source>Weather Station</source>
        <translation>Estación de radar</translation>
    </message>
    <message>
        <source>&amp;Find:</source>
        <translation>&amp;Buscar:</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Estaciones</translation>
    </message>
    <message>
        <source>id, name, state</source>
        <translation>id, nombre, estado</translation>
    </message>
    <message>
        <source>Distances from %1</source>
        <translation>Distancias desde %1</translation>
    </message>
    <message>
        <source>The view has moved to %1.</source>
        <translation>La vista ha pasado a %1.</translation>
    </message>
    <message>
        <source>&amp;Back to %1</source>
        <translation>&amp;Volver a %1</translation>
    </message>
    <message>
        <source>Map of the stations</source>
        <translation>Mapa de las estaciones</translation>
    </message>
    <message>
        <source>Units</source>
        <translation>Unidades</translation>
    </message>
    <message>
        <source>&amp;Distance:</source>
        <translation>&amp;Distancia:</translation>
    </message>
    <message>
        <source>&amp;Position:</source>
        <translation>&amp;Posición:</translation>
    </message>
    <message>
        <source>Degrees</source>
        <translation>Grados</translation>
    </message>
    <message>
        <source>Deg,Min,Sec</source>
        <translation>Grad,min,seg</translation>
    </message>
    <message>
        <source>Deg,Min</source>
        <translation>Grad,min</translation>
    </message>
    <message>
        <source>Mi</source>
        <translation>mi</translation>
    </message>
    <message>
        <source>NM</source>
        <translation>MN</translation>
    </message>
    <message>
        <source>km</source>
        <translation>km</translation>
    </message>
    <message>
        <source>yds</source>
        <translation>yd</translation>
    </message>
    <message>
        <source>mph</source>
        <translation>mph</translation>
    </message>
    <message>
        <source>kts</source>
        <translation>kn</translation>
    </message>
    <message>
        <source>km/h</source>
        <translation>km/h</translation>
    </message>
    <message>
        <source>m/s</source>
        <translation>m/s</translation>
    </message>
    <message>
        <source>Warnings are switched off.
Menu: Weather, Layers</source>
        <translation>Los avisos están desactivados.
Menú: Tiempo, Capas</translation>
    </message>
    <message>
        <source>There is no picture of warnings.</source>
        <translation>No hay imagen de avisos.</translation>
    </message>
    <message>
        <source>There are no warnings in this picture.</source>
        <translation>No hay avisos en esta imagen.</translation>
    </message>
    <message>
        <source>The server has no texts of warnings.</source>
        <translation>El servidor no tiene textos de avisos.</translation>
    </message>
    <message>
        <source>Warnings</source>
        <translation>Avisos</translation>
    </message>
    <message>
        <source>Read the warning</source>
        <translation>Leer el aviso</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Aviso</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Descartar</translation>
    </message>
    <message>
        <source>Dismiss (D)</source>
        <translation>Descartar (D)</translation>
    </message>
    <message>
        <source>Text of the warning</source>
        <translation>Texto del aviso</translation>
    </message>
    <message>
        <source>%1, and %2 more</source>
        <translation>%1, y %2 más</translation>
    </message>
    <message>
        <source>Replay: %1</source>
        <translation>Repetición: %1</translation>
    </message>
    <message>
        <source>ended %1</source>
        <translation>terminó %1</translation>
    </message>
    <message>
        <source>until %1</source>
        <translation>hasta %1</translation>
    </message>
    <message>
        <source>your target</source>
        <translation>su destino</translation>
    </message>
    <message>
        <source>%1 for %2 %3</source>
        <translation>%1 para %2 %3</translation>
    </message>
    <message>
        <source>&amp;Read</source>
        <translation>&amp;Leer</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Cerrar</translation>
    </message>
    <message>
        <source>Animation</source>
        <translation>Animación</translation>
    </message>
    <message>
        <source>&amp;Enable Animation</source>
        <translation>&amp;Activar animación</translation>
    </message>
    <message>
        <source>&amp;Number of frames:</source>
        <translation>&amp;Número de imágenes:</translation>
    </message>
    <message>
        <source>&amp;Minimum frame interval:</source>
        <translation>&amp;Intervalo mínimo entre imágenes:</translation>
    </message>
    <message>
        <source>&amp;Auto-Update </source>
        <translation>Act&amp;ualización automática </translation>
    </message>
    <message>
        <source>The number of frames must be 2 to 25, and the interval must be 1 to 60 minutes</source>
        <translation>El número de imágenes debe ser de 2 a 25 y el intervalo de 1 a 60 minutos</translation>
    </message>
    <message>
        <source>Radar Layers</source>
        <translation>Capas del radar</translation>
    </message>
    <message>
        <source>Product</source>
        <translation>Producto</translation>
    </message>
    <message>
        <source>&amp;Topo Map</source>
        <translation>Mapa &amp;topográfico</translation>
    </message>
    <message>
        <source>&amp;Rivers</source>
        <translation>&amp;Ríos</translation>
    </message>
    <message>
        <source>&amp;Counties</source>
        <translation>&amp;Condados</translation>
    </message>
    <message>
        <source>&amp;Highways</source>
        <translation>C&amp;arreteras</translation>
    </message>
    <message>
        <source>C&amp;ities</source>
        <translation>C&amp;iudades</translation>
    </message>
    <message>
        <source>&amp;Warnings</source>
        <translation>A&amp;visos</translation>
    </message>
    <message>
        <source>Radar Image Storage</source>
        <translation>Almacén de imágenes</translation>
    </message>
    <message>
        <source>Cache &amp;images on:</source>
        <translation>Guardar &amp;imágenes en:</translation>
    </message>
    <message>
        <source>&amp;Cleanup cached files</source>
        <translation>&amp;Limpiar archivos en caché</translation>
    </message>
    <message>
        <source>Keep nearby &amp;radar images</source>
        <translation>Conservar imágenes de &amp;radar cercanas</translation>
    </message>
    <message>
        <source>Cleanup &amp;basemaps</source>
        <translation>Limpiar mapas &amp;base</translation>
    </message>
    <message>
        <source>&amp;Keep nearby basemaps</source>
        <translation>&amp;Conservar mapas base cercanos</translation>
    </message>
    <message numerus="yes">
        <source>%n files</source>
        <comment>%n file</comment>
        <translation>
            <numerusform>%n archivo</numerusform>
            <numerusform>%n archivos</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, %2 (%3 free)</source>
        <translation>%1, %2 (%3 libres)</translation>
    </message>
    <message>
        <source>Internal memory</source>
        <translation>Memoria interna</translation>
    </message>
    <message>
        <source>%1 of %2 files moved</source>
        <translation>%1 de %2 archivos movidos</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message numerus="yes">
        <source>%n years</source>
        <comment>%n year</comment>
        <translation>
            <numerusform>%n año</numerusform>
            <numerusform>%n años</numerusform>
        </translation>
    </message>
    <message>
        <source>Image is %1 old</source>
        <translation>La imagen tiene %1</translation>
    </message>
    <message>
        <source>&amp;Base Reflectivity</source>
        <translation>Reflectividad &amp;base</translation>
    </message>
    <message>
        <source>&amp;Composite Reflectivity</source>
        <translation>Reflectividad &amp;compuesta</translation>
    </message>
    <message>
        <source>&amp;Long Range Reflectivity</source>
        <translation>Reflectividad de &amp;largo alcance</translation>
    </message>
    <message>
        <source>1 &amp;Hour Precipitation</source>
        <translation>Precipitación en 1 &amp;hora</translation>
    </message>
    <message>
        <source>&amp;Total Precipitation</source>
        <translation>Precipitación &amp;total</translation>
    </message>
    <message>
        <source>&amp;Velocity</source>
        <translation>&amp;Velocidad</translation>
    </message>
    <message>
        <source>&amp;Storm Relative Velocity</source>
        <translation>Velocidad &amp;relativa a tormenta</translation>
    </message>
    <message>
        <source>&amp;Nearby Stations</source>
        <translation>Estaciones &amp;cercanas</translation>
    </message>
    <message>
        <source>&amp;All Stations</source>
        <translation>&amp;Todas las estaciones</translation>
    </message>
    <message>
        <source>&amp;Product</source>
        <translation>&amp;Producto</translation>
    </message>
    <message>
        <source>L&amp;oop</source>
        <translation>&amp;Bucle</translation>
    </message>
    <message>
        <source>Ani&amp;mation</source>
        <translation>Ani&amp;mación</translation>
    </message>
    <message>
        <source>&amp;Layers</source>
        <translation>C&amp;apas</translation>
    </message>
    <message>
        <source>&amp;Storage</source>
        <translation>A&amp;lmacén</translation>
    </message>
    <message>
        <source>&amp;Warnings...</source>
        <translation>Avis&amp;os...</translation>
    </message>
    <message>
        <source>&amp;Dismiss Warning</source>
        <translation>&amp;Descartar aviso</translation>
    </message>
    <message>
        <source>Pi&amp;ctures</source>
        <translation>&amp;Imágenes</translation>
    </message>
    <message>
        <source>Show &amp;Scale</source>
        <translation>Mostrar &amp;escala</translation>
    </message>
    <message>
        <source>Rings Round &amp;Radar</source>
        <translation>Anillos en torno al &amp;radar</translation>
    </message>
    <message>
        <source>Rings Round &amp;You</source>
        <translation>Anillos en torno a &amp;usted</translation>
    </message>
    <message>
        <source>&amp;Measure</source>
        <translation>&amp;Medir</translation>
    </message>
    <message>
        <source>&amp;Track a Storm</source>
        <translation>&amp;Seguir una tormenta</translation>
    </message>
    <message>
        <source>&amp;Measure From Here</source>
        <translation>&amp;Medir desde aquí</translation>
    </message>
    <message>
        <source>&amp;Track This Storm</source>
        <translation>Seguir esta &amp;tormenta</translation>
    </message>
    <message>
        <source>&amp;Weather</source>
        <translation>&amp;Tiempo</translation>
    </message>
    <message>
        <source>&amp;Reading</source>
        <translation>&amp;Lectura</translation>
    </message>
    <message>
        <source>Weather:Radar</source>
        <translation>Tiempo:Radar</translation>
    </message>
    <message>
        <source>No radar site is chosen.
Menu: Weather, All Stations</source>
        <translation>No se ha elegido estación de radar.
Menú: Tiempo, Todas las estaciones</translation>
    </message>
    <message>
        <source>Warnings of %1 are not shown</source>
        <translation>No se muestran los avisos de las %1</translation>
    </message>
    <message>
        <source>Moving the image cache.
The program ends then.
</source>
        <translation>Moviendo la caché de imágenes.
Después el programa termina.
</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Cargando...</translation>
    </message>
    <message>
        <source>The servers have changed.</source>
        <translation>Los servidores han cambiado.</translation>
    </message>
    <message>
        <source>Stopped.
</source>
        <translation>Detenido.
</translation>
    </message>
    <message>
        <source>The image cache moves.</source>
        <translation>La caché de imágenes cambia de lugar.</translation>
    </message>
    <message>
        <source>Weather</source>
        <translation>Tiempo</translation>
    </message>
    <message>
        <source>Servers</source>
        <translation>Servidores</translation>
    </message>
    <message>
        <source>&amp;Weather comes from:</source>
        <translation>El &amp;tiempo viene de:</translation>
    </message>
    <message>
        <source>&amp;Radar images (HOST[:PORT]):</source>
        <translation>Imágenes de &amp;radar (HOST[:PORT]):</translation>
    </message>
    <message>
        <source>&amp;Counties and cities:</source>
        <translation>&amp;Condados y ciudades:</translation>
    </message>
    <message>
        <source>Live radar (NOAA)</source>
        <translation>Radar en directo (NOAA)</translation>
    </message>
    <message>
        <source>Sample weather</source>
        <translation>Tiempo de muestra</translation>
    </message>
    <message>
        <source>A past storm...</source>
        <translation>Una tormenta pasada...</translation>
    </message>
    <message>
        <source>Another server</source>
        <translation>Otro servidor</translation>
    </message>
    <message>
        <source>A server is a host name or address, and if need be a colon and a port</source>
        <translation>Un servidor es un nombre o una dirección y, si hace falta, dos puntos y un puerto</translation>
    </message>
    <message>
        <source>Failed to create folder: %1</source>
        <translation>No se pudo crear la carpeta: %1</translation>
    </message>
    <message>
        <source>Failed to move data to %1</source>
        <translation>No se pudieron mover los datos a %1</translation>
    </message>
    <message>
        <source>A storm is tracked through the frames of an animation.
Enable it with Weather, Animation first.</source>
        <translation>Una tormenta se sigue en las imágenes de una animación.
Actívela antes con Tiempo, Animación.</translation>
    </message>
    <message>
        <source>Track This Storm</source>
        <translation>Seguir esta tormenta</translation>
    </message>
    <message>
        <source>Failed to load Res.dll
Please re-install the software</source>
        <translation>No se pudo cargar Res.dll
Reinstale el programa</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Elegir</translation>
    </message>
    <message>
        <source>Items</source>
        <translation>Elementos</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Sí</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;No</translation>
    </message>
    <message>
        <source>&amp;Retry</source>
        <translation>&amp;Reintentar</translation>
    </message>
    <message>
        <source>&amp;Discard</source>
        <translation>&amp;Descartar</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Deshacer</translation>
    </message>
    <message>
        <source>Deleted %1.</source>
        <translation>Se eliminó %1.</translation>
    </message>
    <message>
        <source>Window not found in Window::wndProc
</source>
        <translation>Ventana no encontrada en Window::wndProc
</translation>
    </message>
    <message>
        <source>Fatal Error</source>
        <translation>Error grave</translation>
    </message>
    <message>
        <source>A page cannot be written</source>
        <translation>No se puede escribir una página</translation>
    </message>
    <message>
        <source>L</source>
        <comment>left</comment>
        <translation>Br</translation>
    </message>
    <message>
        <source>R</source>
        <comment>right</comment>
        <translation>Er</translation>
    </message>
    <message>
        <source>L</source>
        <translation>L</translation>
    </message>
    <message>
        <source>There is no display to open a window on; start it from a desktop, set DISPLAY or WAYLAND_DISPLAY, or have a picture made with --screenshot FILE.</source>
        <translation>No hay pantalla donde abrir una ventana; arranque el programa desde un escritorio, defina DISPLAY o WAYLAND_DISPLAY, o pida una imagen con --screenshot FILE.</translation>
    </message>
    <message>
        <source>No position: %1</source>
        <translation>Sin posición: %1</translation>
    </message>
    <message>
        <source>Cannot write %1.</source>
        <translation>No se puede escribir %1.</translation>
    </message>
    <message>
        <source>Cannot write %1: %2.</source>
        <translation>No se puede escribir %1: %2.</translation>
    </message>
    <message>
        <source>Unknown option &apos;%1&apos;.</source>
        <translation>Opción desconocida &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Missing value after &apos;%1&apos;.</source>
        <translation>Falta un valor tras &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Unexpected value after &apos;%1&apos;.</source>
        <translation>Valor inesperado tras &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Usage:</source>
        <translation>Uso:</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>Opciones:</translation>
    </message>
    <message>
        <source>Arguments:</source>
        <translation>Argumentos:</translation>
    </message>
    <message>
        <source>[options]</source>
        <translation>[opciones]</translation>
    </message>
    <message>
        <source>Raincast&apos;s live radar server</source>
        <translation>El servidor de radar en directo de Raincast</translation>
    </message>
    <message>
        <source>Raincast&apos;s sample weather server</source>
        <translation>El servidor de tiempo de muestra de Raincast</translation>
    </message>
    <message>
        <source>Detail</source>
        <translation>Detalle</translation>
    </message>
    <message>
        <source>&amp;Pictures:</source>
        <translation>&amp;Imágenes:</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automático</translation>
    </message>
    <message>
        <source>600 × 550 pixels only</source>
        <translation>Solo 600 × 550 píxeles</translation>
    </message>
    <message>
        <source>Automatic: sharp pictures where a large screen has room. Each frame then takes up to 0.1 MB more to fetch (0.4 MB at the closest zoom), the maps of a site 0.6 MB, a loop of 25 about 50 MB of memory.</source>
        <translation>Automático: imágenes nítidas donde una pantalla grande tiene sitio. Cada imagen ocupa entonces hasta 0,1 MB más de descarga (0,4 MB lo más cerca), los mapas de una estación 0,6 MB y un bucle de 25, unos 50 MB de memoria.</translation>
    </message>
    <message>
        <source>This device&apos;s clock is wrong: the time is the receiver&apos;s</source>
        <translation>El reloj de este aparato está mal: la hora es la del receptor</translation>
    </message>
    <message>
        <source>This device&apos;s clock is wrong: ages are not known</source>
        <translation>El reloj de este aparato está mal: no se sabe la antigüedad</translation>
    </message>
</context>
</TS>
