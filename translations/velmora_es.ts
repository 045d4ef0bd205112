<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About Velmora</source>
        <translation>Acerca de Velmora</translation>
    </message>
    <message>
        <source>With Velmora you can explore this vast trove of music to your heart&apos;s content.
Just drop the name of one of your favorite songs or artists into Velmora and
let the Prism Project go.

It will quickly scan its entire world of analyzed music, almost a century of popular recordings - new and old, well known and completely obscure - to find songs with interesting musical similarities to your choice.

Then sit back and enjoy as it creates a listening experience full of current and soon-to-be favorite songs for you.</source>
        <translation>Con Velmora puede explorar este enorme tesoro de música a su gusto.
Diga a Velmora el nombre de una canción o de un artista que le guste
y deje hacer al Prism Project.

Recorrerá en un momento todo su mundo de música analizada, casi un siglo de grabaciones – nuevas y antiguas, conocidas o del todo desconocidas – para encontrar canciones musicalmente parecidas a su elección.

Después, póngase cómodo y disfrute de sus canciones favoritas de hoy y de mañana.</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>Listo</translation>
    </message>
</context>
<context>
    <name>CreateStationDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Diálogo</translation>
    </message>
    <message>
        <source>Create a New Station</source>
        <translation>Crear una emisora</translation>
    </message>
    <message>
        <source>Station List</source>
        <translation>Emisoras</translation>
    </message>
    <message>
        <source>Tell us one of your favorite
artists and we&apos;ll create a
station that explores that
part of the music universe.</source>
        <translation>Díganos uno de sus artistas
favoritos y crearemos una
emisora que explore esa
parte de la música.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Volver</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Símbolos/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Mayús</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Números</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Artist Or Track</source>
        <translation>Artista o título</translation>
    </message>
    <message>
        <source>Please enter an artist or track name to create a new station</source>
        <translation>Escriba el nombre de un artista o de un título para crear una emisora</translation>
    </message>
    <message>
        <source>Search station failed!You could try again!</source>
        <translation>¡La búsqueda ha fallado! ¡Inténtelo de nuevo!</translation>
    </message>
    <message>
        <source>Search...</source>
        <translation>Buscando...</translation>
    </message>
    <message>
        <source>Search station failed,you could try again!</source>
        <translation>¡La búsqueda ha fallado, inténtelo de nuevo!</translation>
    </message>
    <message>
        <source>No result for </source>
        <translation>Ningún resultado para </translation>
    </message>
    <message>
        <source>We found </source>
        <translation>Encontrado: </translation>
    </message>
    <message>
        <source> results by artists and </source>
        <translation> por artista y </translation>
    </message>
    <message>
        <source> results by tracks.Which did you mean ?</source>
        <translation> por título. ¿Qué buscaba?</translation>
    </message>
    <message>
        <source> by </source>
        <translation> de </translation>
    </message>
    <message>
        <source>Create station list failed ,please try later!</source>
        <translation>¡No se pudo crear la emisora, inténtelo más tarde!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Cargando...</translation>
    </message>
    <message>
        <source>Create station failed,because system gets invalid data from Velmora!</source>
        <translation>¡No se pudo crear la emisora: Velmora envió datos no válidos!</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>¡No se pudo cargar la lista de emisoras, inténtelo más tarde!</translation>
    </message>
    <message>
        <source>Artist or Song</source>
        <translation>Artista o canción</translation>
    </message>
</context>
<context>
    <name>EmailPwdDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Diálogo</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>Enviar clave</translation>
    </message>
    <message>
        <source>Please input you Email
address to get the password.</source>
        <translation>Escriba su correo para
recibir la contraseña.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Volver</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Símbolos/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Mayús</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Números</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Email passowrd...</source>
        <translation>Enviando la contraseña...</translation>
    </message>
    <message>
        <source>Can not get the password because of system error!</source>
        <translation>¡No se puede obtener la contraseña por un error del sistema!</translation>
    </message>
    <message>
        <source>Please check the email address your provided for instructions on retrieving your Velmora password.</source>
        <translation>Mire su correo: ahí se explica cómo recuperar su contraseña de Velmora.</translation>
    </message>
</context>
<context>
    <name>InternetRadioDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Diálogo</translation>
    </message>
    <message>
        <source>Activation Code</source>
        <translation>Código de activación</translation>
    </message>
    <message>
        <source>Please go to    </source>
        <translation>Vaya a    </translation>
    </message>
    <message>
        <source>and follow the instructions there to create a new account.</source>
        <translation>y siga allí las instrucciones para crear una cuenta.</translation>
    </message>
    <message>
        <source>Your activation code is:    </source>
        <translation>Su código de activación:    </translation>
    </message>
    <message>
        <source>When you are done with that, come back to this screen and click “continue.”</source>
        <translation>Cuando termine, vuelva a esta pantalla y elija «Continuar».</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continuar</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Volver</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Espere, por favor...</translation>
    </message>
    <message>
        <source>Please activate your device to continue.</source>
        <translation>Active su dispositivo para continuar.</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>¡Datos incorrectos, inténtelo de nuevo!</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>¡No se puede generar el código de activación!</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>¡No se pudo generar el código de activación, inténtelo de nuevo!</translation>
    </message>
</context>
<context>
    <name>KeyLayout</name>
    <message>
        <source>Clear</source>
        <translation>Vaciar</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Espacio</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Borrar</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Listo</translation>
    </message>
    <message>
        <source>Keyboard</source>
        <translation>Teclado</translation>
    </message>
</context>
<context>
    <name>LoadingDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Diálogo</translation>
    </message>
    <message>
        <source>Connect to Velmora failed!</source>
        <translation>¡No hay conexión con Velmora!</translation>
    </message>
</context>
<context>
    <name>MenuDlg</name>
    <message>
        <source>Bookmark This Artist</source>
        <translation>Guardar este artista</translation>
    </message>
    <message>
        <source>Bookmark This Track</source>
        <translation>Guardar este título</translation>
    </message>
    <message>
        <source>Do Not Play This Track For A Month</source>
        <translation>No poner este título durante un mes</translation>
    </message>
    <message>
        <source>Why Is This Track Playing</source>
        <translation>Por qué suena este título</translation>
    </message>
    <message>
        <source>Create A New Station</source>
        <translation>Crear una emisora</translation>
    </message>
    <message>
        <source>Delete This Station</source>
        <translation>Borrar esta emisora</translation>
    </message>
    <message>
        <source>Rename This Station</source>
        <translation>Renombrar esta emisora</translation>
    </message>
    <message>
        <source>Switch User</source>
        <translation>Cambiar de cuenta</translation>
    </message>
    <message>
        <source>Exit Velmora</source>
        <translation>Salir de Velmora</translation>
    </message>
    <message>
        <source>Close Menu</source>
        <translation>Cerrar el menú</translation>
    </message>
</context>
<context>
    <name>MsgboxDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Diálogo</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
</context>
<context>
    <name>QGuiApplication</name>
    <message>
        <source>QT_LAYOUT_DIRECTION</source>
        <translation>LTR</translation>
    </message>
</context>
<context>
    <name>RenameStationDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Diálogo</translation>
    </message>
    <message>
        <source>Rename this station</source>
        <translation>Renombrar esta emisora</translation>
    </message>
    <message>
        <source>Tell us the new station name
and we&apos;ll update it in your
station list.</source>
        <translation>Díganos el nuevo nombre y
lo cambiaremos en su lista
de emisoras.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Volver</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Símbolos/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Mayús</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Números</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Rename station failed, no station name supplied.</source>
        <translation>La emisora no se ha renombrado: no se ha escrito ningún nombre.</translation>
    </message>
    <message>
        <source>Are you sure you want to rename this station as: 
</source>
        <translation>¿Seguro que quiere dar a esta emisora el nombre: 
</translation>
    </message>
    <message>
        <source>Rename station failed,you could try again.</source>
        <translation>No se pudo renombrar la emisora, inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Rename station...</source>
        <translation>Renombrando la emisora...</translation>
    </message>
    <message>
        <source>Rename station list failed ,please try later!</source>
        <translation>¡No se pudo renombrar la emisora, inténtelo más tarde!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Cargando...</translation>
    </message>
    <message>
        <source>Get station list failed!</source>
        <translation>¡No se pudo cargar la lista de emisoras!</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>¡No se pudo cargar la lista de emisoras, inténtelo más tarde!</translation>
    </message>
</context>
<context>
    <name>SelectUserDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Diálogo</translation>
    </message>
    <message>
        <source>Select or create Velmora account.</source>
        <translation>Elija o cree una cuenta de Velmora.</translation>
    </message>
    <message>
        <source>New username</source>
        <translation>Cuenta nueva</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Volver</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Borrar</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Espere, por favor...</translation>
    </message>
    <message>
        <source>Do you already have a Velmora account ? </source>
        <translation>¿Ya tiene una cuenta de Velmora? </translation>
    </message>
    <message>
        <source>We only keep max 5 accounts,you could delete one to continue.</source>
        <translation>Se admiten 5 cuentas como máximo. Borre una para continuar.</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>¡No se puede generar el código de activación!</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>¡No se pudo generar el código de activación, inténtelo de nuevo!</translation>
    </message>
    <message>
        <source>Are you sure you want to delete the user: </source>
        <translation>¿Seguro que quiere borrar la cuenta: </translation>
    </message>
    <message>
        <source>Delete User...</source>
        <translation>Borrando la cuenta...</translation>
    </message>
    <message>
        <source>Disassociate device failed because of network error. please try again later!</source>
        <translation>No se pudo desvincular el dispositivo por un error de la red. ¡Inténtelo más tarde!</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>¡Datos incorrectos, inténtelo de nuevo!</translation>
    </message>
</context>
<context>
    <name>SignInDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Diálogo</translation>
    </message>
    <message>
        <source>Sign in to your Velmora account</source>
        <translation>Entre en su cuenta de Velmora</translation>
    </message>
    <message>
        <source>Email:</source>
        <translation>Correo:</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Contraseña:</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Volver</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Símbolos/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Mayús</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>Enviar clave</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Enter your Velmora account...</source>
        <translation>Escriba su cuenta de Velmora...</translation>
    </message>
    <message>
        <source>No information was entered.Please try again.</source>
        <translation>No se ha escrito nada. Inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Espere, por favor...</translation>
    </message>
    <message>
        <source>Incorrect Login ,please try again!</source>
        <translation>¡Datos incorrectos, inténtelo de nuevo!</translation>
    </message>
</context>
<context>
    <name>VelmoraMainDlg</name>
    <message>
        <source>Station List</source>
        <translation>Emisoras</translation>
    </message>
    <message>
        <source>AD</source>
        <translation>AN.</translation>
    </message>
    <message>
        <source>Thumbs Down</source>
        <translation>No me gusta</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Siguiente</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Reproducir</translation>
    </message>
    <message>
        <source>Thumbs Up</source>
        <translation>Me gusta</translation>
    </message>
    <message>
        <source>Artist:</source>
        <translation>De:</translation>
    </message>
    <message>
        <source>Album:</source>
        <translation>Álbum:</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menú</translation>
    </message>
    <message>
        <source>Song History</source>
        <translation>Historial</translation>
    </message>
    <message>
        <source>Station:</source>
        <translation>Emisora:</translation>
    </message>
    <message>
        <source>Unfortunately,our music licenses force us to limit the number of tracks you may skip each hour.</source>
        <translation>Lo sentimos, nuestras licencias musicales limitan el número de títulos que puede saltar cada hora.</translation>
    </message>
    <message>
        <source>       Invalid operation for audio ads</source>
        <translation>       No es posible durante un anuncio</translation>
    </message>
    <message>
        <source>Thumbs up is not allowed on shared stations.</source>
        <translation>«Me gusta» no está permitido en emisoras compartidas.</translation>
    </message>
    <message>
        <source>Thumbs down is not allowed on shared stations.</source>
        <translation>«No me gusta» no está permitido en emisoras compartidas.</translation>
    </message>
    <message>
        <source>ThumbUp...</source>
        <translation>Me gusta...</translation>
    </message>
    <message>
        <source>Thumbs up track failed,you could try again.</source>
        <translation>No se pudo guardar su opinión, inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>ThumbDown...</source>
        <translation>No me gusta...</translation>
    </message>
    <message>
        <source>Thumbs down track failed,you could try again.</source>
        <translation>No se pudo guardar su opinión, inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Add feedback failed ,you could try again!</source>
        <translation>¡No se pudo añadir su opinión, inténtelo de nuevo!</translation>
    </message>
    <message>
        <source>Sleep...</source>
        <translation>Apartando el título...</translation>
    </message>
    <message>
        <source>Sleep track failed,you could try again.</source>
        <translation>No se pudo apartar el título, inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Sleep track failed ,you could try later!</source>
        <translation>¡No se pudo apartar el título, inténtelo más tarde!</translation>
    </message>
    <message>
        <source>Bookmark artist failed,you could try again.</source>
        <translation>No se pudo guardar el artista, inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Bookmark track failed,you could try again.</source>
        <translation>No se pudo guardar el título, inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Add bookmark successful!</source>
        <translation>¡Guardado!</translation>
    </message>
    <message>
        <source>Add bookmark failed ,please try later!</source>
        <translation>¡No se pudo guardar, inténtelo más tarde!</translation>
    </message>
    <message>
        <source>Explain track failed,you could try again.</source>
        <translation>No se pudo obtener la explicación, inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Explain track failed ,you could try again!</source>
        <translation>¡No se pudo obtener la explicación, inténtelo de nuevo!</translation>
    </message>
    <message>
        <source>Based on what you&apos;ve told us so far, we&apos;re playing </source>
        <translation>Por lo que nos ha dicho hasta ahora, suena </translation>
    </message>
    <message>
        <source> by </source>
        <translation> de </translation>
    </message>
    <message>
        <source> because it features </source>
        <translation> porque tiene </translation>
    </message>
    <message>
        <source>Velmora only permits to create 100 stations,so you can not create more stations!</source>
        <translation>¡Velmora permite 100 emisoras como máximo, no puede crear más!</translation>
    </message>
    <message>
        <source>Tapestry station can not be deleted!</source>
        <translation>¡La emisora Tapestry no se puede borrar!</translation>
    </message>
    <message>
        <source>Are you sure you want to delete station: 
</source>
        <translation>¿Seguro que quiere borrar la emisora: 
</translation>
    </message>
    <message>
        <source> ?</source>
        <translation>?</translation>
    </message>
    <message>
        <source>This station can not be deleted!</source>
        <translation>¡Esta emisora no se puede borrar!</translation>
    </message>
    <message>
        <source>Delete station...</source>
        <translation>Borrando la emisora...</translation>
    </message>
    <message>
        <source>Sorry.Delete station failed,you could try aganin.</source>
        <translation>Lo sentimos, no se pudo borrar la emisora, inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Delete station failed ,please try later!</source>
        <translation>¡No se pudo borrar la emisora, inténtelo más tarde!</translation>
    </message>
    <message>
        <source>Tapestry station can not be renamed!</source>
        <translation>¡La emisora Tapestry no se puede renombrar!</translation>
    </message>
    <message>
        <source>Are you sure you want to rename station: 
</source>
        <translation>¿Seguro que quiere renombrar la emisora: 
</translation>
    </message>
    <message>
        <source>A share station cannot be renamed!</source>
        <translation>¡Una emisora compartida no se puede renombrar!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Cargando...</translation>
    </message>
    <message>
        <source>Play the track failed,System occurs error!</source>
        <translation>¡No se puede reproducir el título por un error del sistema!</translation>
    </message>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>Se ha producido un error de la red. Compruebe la conexión e inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Get playlist failed,you could try again!</source>
        <translation>¡No se pudo cargar la lista de títulos, inténtelo de nuevo!</translation>
    </message>
    <message>
        <source>Get play list failed ,please try later!</source>
        <translation>¡No se pudo cargar la lista de títulos, inténtelo más tarde!</translation>
    </message>
    <message>
        <source>Get Ad metadata failed!</source>
        <translation>¡No se pudieron cargar los datos del anuncio!</translation>
    </message>
    <message>
        <source>Get track data failed.Please try later!</source>
        <translation>No se pudieron cargar los datos del título. ¡Inténtelo más tarde!</translation>
    </message>
    <message>
        <source>Now playing...</source>
        <translation>Ya está sonando...</translation>
    </message>
</context>
<context>
    <name>VelmoraParentWidget</name>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>Se ha producido un error de la red. Compruebe la conexión e inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Velmora is conducting system maintenance. You will be able to listen to existing stations while they work on their systems, but you won&apos;t be able to create new stations, submit feedback or edit your account in any way until the maintenance is complete. Thanks for your patience.</source>
        <translation>Velmora está en mantenimiento. Puede escuchar sus emisoras, pero hasta que termine no podrá crear otras, dar su opinión ni cambiar su cuenta. Gracias por su paciencia.</translation>
    </message>
    <message>
        <source>Sorry,this token is invalid now .Please contact Velmora listener support at </source>
        <translation>Lo sentimos, esta sesión ya no es válida. Escriba a la ayuda al oyente de Velmora: </translation>
    </message>
    <message>
        <source>Invalid username or password, please try again.</source>
        <translation>Usuario o contraseña incorrectos, inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Sorry,this account is no longer active.Please contact Velmora listener support at </source>
        <translation>Lo sentimos, esta cuenta ya no está activa. Escriba a la ayuda al oyente de Velmora: </translation>
    </message>
    <message>
        <source>Sorry,this account is authorized.Please contact Velmora listener support at </source>
        <translation>Lo sentimos, esta cuenta no está autorizada. Escriba a la ayuda al oyente de Velmora: </translation>
    </message>
    <message>
        <source>Sorry, Max stations Reached, create station failed.</source>
        <translation>Lo sentimos, ya tiene el máximo de emisoras, no se ha creado la emisora.</translation>
    </message>
    <message>
        <source>Station does not exist.</source>
        <translation>La emisora no existe.</translation>
    </message>
    <message>
        <source>Invalid username</source>
        <translation>Usuario no válido</translation>
    </message>
    <message>
        <source>Invalid password</source>
        <translation>Contraseña no válida</translation>
    </message>
    <message>
        <source>NULL</source>
        <translation>NULL</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Cargando...</translation>
    </message>
    <message>
        <source>You have reached the last window.</source>
        <translation>Esta es la última ventana. </translation>
    </message>
    <message>
        <source>Are you sure you want to exit Velmora? </source>
        <translation>¿Seguro que quiere salir de Velmora? </translation>
    </message>
    <message>
        <source>    Are you still there ? </source>
        <translation>    ¿Sigue ahí? </translation>
    </message>
    <message>
        <source>Unable to connect to network.</source>
        <translation>No hay conexión con la red.</translation>
    </message>
    <message>
        <source>There may be network congestion.</source>
        <translation>Puede que la red esté saturada.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sí</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Artista</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>Título</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Inicio</translation>
    </message>
</context>
<context>
    <name>WelcomeDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Diálogo</translation>
    </message>
    <message>
        <source>Welcome to Velmora</source>
        <translation>Bienvenido a Velmora</translation>
    </message>
    <message>
        <source>To experience free personalized radio playing only the music you love
you will need to activate Velmora on this device.

Please select “Activate Velmora” below.</source>
        <translation>Para disfrutar gratis de una radio personal, solo con la música que le gusta,
active Velmora en este dispositivo.

Elija abajo «Activar Velmora».</translation>
    </message>
    <message>
        <source>Activate Velmora</source>
        <translation>Activar Velmora</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Volver</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>You have reached the last window.Are you sure you want to exit Velmora? 
</source>
        <translation>Esta es la última ventana. ¿Seguro que quiere salir de Velmora? 
</translation>
    </message>
</context>
<context>
    <name>WhyDlg</name>
    <message>
        <source>Why is this track playing?</source>
        <translation>¿Por qué suena este título?</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>Listo</translation>
    </message>
</context>
<context>
    <name>home::AboutPane</name>
    <message>
        <source>About</source>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>Nothing has gone wrong.</source>
        <translation>Todo ha ido bien.</translation>
    </message>
    <message>
        <source>Things that went wrong: %1. A report helps to find out why.</source>
        <translation>Fallos: %1. Un informe ayuda a encontrar la causa.</translation>
    </message>
    <message>
        <source>Save a report to a USB stick</source>
        <translation>Guardar un informe en una memoria USB</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Informe</translation>
    </message>
    <message>
        <source>Velmora</source>
        <translation>Velmora</translation>
    </message>
    <message>
        <source>System</source>
        <translation>Sistema</translation>
    </message>
    <message>
        <source>The report cannot be saved. %1</source>
        <translation>El informe no se puede guardar. %1</translation>
    </message>
    <message>
        <source>The report is saved: %1</source>
        <translation>El informe está guardado: %1</translation>
    </message>
    <message>
        <source>There is not enough room, or the stick is damaged.</source>
        <translation>No hay bastante espacio, o la memoria está dañada.</translation>
    </message>
    <message>
        <source>The stick can be taken out.</source>
        <translation>Ya se puede retirar la memoria USB.</translation>
    </message>
    <message>
        <source>Saving the report...</source>
        <translation>Guardando el informe...</translation>
    </message>
</context>
<context>
    <name>home::HomePage</name>
    <message>
        <source>Home</source>
        <translation>Inicio</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Volver</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Símbolos/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Mayús</translation>
    </message>
    <message>
        <source>Radio</source>
        <translation>Radio</translation>
    </message>
    <message>
        <source>Select starts the radio.</source>
        <translation>La tecla de selección inicia la radio.</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 por ciento</translation>
    </message>
    <message>
        <source>silent</source>
        <translation>en silencio</translation>
    </message>
    <message>
        <source>All tracks equally loud</source>
        <translation>Todos los títulos al mismo volumen</translation>
    </message>
    <message>
        <source>Keys click</source>
        <translation>Clic de las teclas</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volumen</translation>
    </message>
    <message>
        <source>How loud the radio plays. The volume keys change it while music plays.</source>
        <translation>El volumen de la radio. Mientras suena música, lo cambian las teclas de volumen.</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>tras %n minuto</numerusform>
            <numerusform>tras %n minutos</numerusform>
        </translation>
    </message>
    <message>
        <source>never</source>
        <translation>nunca</translation>
    </message>
    <message>
        <source>Read aloud what has the focus</source>
        <translation>Leer en voz alta lo elegido</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Pantalla</translation>
    </message>
    <message>
        <source>When nobody presses a key while music plays, the picture dims.</source>
        <translation>Si nadie pulsa una tecla mientras suena música, la imagen se oscurece.</translation>
    </message>
    <message>
        <source>Switch off</source>
        <translation>Apagar</translation>
    </message>
    <message>
        <source>The device switches off.</source>
        <translation>El dispositivo se apaga.</translation>
    </message>
    <message>
        <source>Switch off now</source>
        <translation>Apagar ahora</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>Reiniciar</translation>
    </message>
    <message>
        <source>The device restarts. The radio comes back by itself.</source>
        <translation>El dispositivo se reinicia. La radio vuelve por sí sola.</translation>
    </message>
    <message>
        <source>Restart now</source>
        <translation>Reiniciar ahora</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Ends the radio and Home.</source>
        <translation>Cierra la radio y el inicio.</translation>
    </message>
    <message>
        <source>Quit now</source>
        <translation>Salir ahora</translation>
    </message>
    <message>
        <source>%1, chosen</source>
        <translation>%1, elegido</translation>
    </message>
    <message>
        <source>Larger picture</source>
        <translation>Imagen más grande</translation>
    </message>
    <message>
        <source>A larger picture is drawn from the next start of the radio or of Home.</source>
        <translation>La imagen más grande se aplica al próximo inicio de la radio o del inicio.</translation>
    </message>
</context>
<context>
    <name>home::LanguagePane</name>
    <message>
        <source>As the system is set up</source>
        <translation>Como el sistema</translation>
    </message>
    <message>
        <source>Language and region</source>
        <translation>Idioma y región</translation>
    </message>
    <message>
        <source>The language of all texts, and how dates, times and numbers are written.</source>
        <translation>El idioma de todos los textos y la forma de fechas, horas y números.</translation>
    </message>
    <message>
        <source>The time zone is that of the system.</source>
        <translation>La zona horaria es la del sistema.</translation>
    </message>
    <message>
        <source>The time zone cannot be changed. %1</source>
        <translation>No se puede cambiar la zona horaria. %1</translation>
    </message>
    <message>
        <source>Time zone</source>
        <translation>Zona horaria</translation>
    </message>
</context>
<context>
    <name>home::MenuCommand</name>
    <message>
        <source>There is no menu system.</source>
        <translation>No hay sistema de menús.</translation>
    </message>
</context>
<context>
    <name>home::NetworkPane</name>
    <message>
        <source>Network</source>
        <translation>Red</translation>
    </message>
    <message>
        <source>Connected to %1.</source>
        <translation>Conectado a %1.</translation>
    </message>
    <message>
        <source>This Wi-Fi cannot be used: the password is wrong, or it is too far away. %1</source>
        <translation>Esta Wi-Fi no funciona: la contraseña es incorrecta, o está demasiado lejos. %1</translation>
    </message>
    <message>
        <source>Looking at the network...</source>
        <translation>Mirando la red...</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>sin conexión</translation>
    </message>
    <message>
        <source>no address</source>
        <translation>sin dirección</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 por ciento</translation>
    </message>
    <message>
        <source>%1 percent, open</source>
        <translation>%1 por ciento, abierta</translation>
    </message>
    <message>
        <source>Password of %1</source>
        <translation>Contraseña de %1</translation>
    </message>
    <message>
        <source>A Wi-Fi password has at least %1 characters.</source>
        <translation>Una contraseña de Wi-Fi tiene al menos %1 caracteres.</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>Conectando a %1...</translation>
    </message>
    <message>
        <source>All is well: the service answers.</source>
        <translation>Todo va bien: el servicio responde.</translation>
    </message>
    <message>
        <source>The service runs on this device, without the network. %1</source>
        <translation>El servicio funciona en este dispositivo, sin la red. %1</translation>
    </message>
    <message>
        <source>This device has no network card.</source>
        <translation>Este dispositivo no tiene tarjeta de red.</translation>
    </message>
    <message>
        <source>No cable is plugged in, and no Wi-Fi is connected.</source>
        <translation>No hay ningún cable conectado ni ninguna Wi-Fi.</translation>
    </message>
    <message>
        <source>The device is connected, but the router gives it no address. Restarting the router may help.</source>
        <translation>El dispositivo está conectado, pero el router no le da dirección. Reiniciar el router puede ayudar.</translation>
    </message>
    <message>
        <source>The router leads to no other network, and the service is not found in this one.</source>
        <translation>El router no lleva a ninguna otra red, y el servicio no se encuentra en esta.</translation>
    </message>
    <message>
        <source>The network is there, but nobody knows the name of the service. Either the name is wrong, or the internet is away.</source>
        <translation>La red está ahí, pero nadie conoce el nombre del servicio. O el nombre es incorrecto, o falta internet.</translation>
    </message>
    <message>
        <source>The network is there, but the service does not answer. Either it does not run, or the internet is away.</source>
        <translation>La red está ahí, pero el servicio no responde. O no está en marcha, o falta internet.</translation>
    </message>
    <message>
        <source>The network is there. %1</source>
        <translation>La red está ahí. %1</translation>
    </message>
</context>
<context>
    <name>home::NoticePage</name>
    <message>
        <source>One moment</source>
        <translation>Un momento</translation>
    </message>
    <message>
        <source>The radio needs a key</source>
        <translation>La radio espera una tecla</translation>
    </message>
    <message>
        <source>The radio has stopped</source>
        <translation>La radio se ha parado</translation>
    </message>
    <message>
        <source>The radio cannot reach its service. It starts again as soon as it can.</source>
        <translation>La radio no alcanza su servicio. Se inicia de nuevo en cuanto pueda.</translation>
    </message>
    <message>
        <source>The radio has failed several times although its service answers.</source>
        <translation>La radio ha fallado varias veces, aunque su servicio responde.</translation>
    </message>
    <message>
        <source>The radio has failed several times. Home, About keeps the reports.</source>
        <translation>La radio ha fallado varias veces. Los informes están en Inicio, Acerca de.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Reintentar</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Inicio</translation>
    </message>
</context>
<context>
    <name>home::OutputPane</name>
    <message>
        <source>Sound output</source>
        <translation>Salida de sonido</translation>
    </message>
    <message>
        <source>Where the music comes out. The radio uses it from its next start.</source>
        <translation>Por dónde sale la música. La radio la usa desde su próximo inicio.</translation>
    </message>
    <message>
        <source>The usual one</source>
        <translation>La habitual</translation>
    </message>
</context>
<context>
    <name>home::PhonesPane</name>
    <message>
        <source>Phones</source>
        <translation>Teléfonos</translation>
    </message>
    <message>
        <source>The service runs on this device and only for it. To reach it from a telephone, start it so that it listens in the home network; its manual says how.</source>
        <translation>El servicio funciona en este dispositivo y solo para él. Para llegar a él desde un teléfono, inícielo para la red de la casa; su manual dice cómo.</translation>
    </message>
    <message>
        <source>Open this address in the browser of a telephone in the same network: to link a radio, to manage your account, or to use the telephone as a remote control and keyboard.</source>
        <translation>Abra esta dirección en el navegador de un teléfono de la misma red: para vincular una radio, gestionar su cuenta o usar el teléfono como mando a distancia y teclado.</translation>
    </message>
</context>
<context>
    <name>home::ServiceHealth</name>
    <message>
        <source>The service answers.</source>
        <translation>El servicio responde.</translation>
    </message>
    <message>
        <source>No service is set up. Choose one under Service.</source>
        <translation>No hay ningún servicio. Elija uno en Servicio.</translation>
    </message>
    <message>
        <source>Nobody knows the name of the service.</source>
        <translation>Nadie conoce el nombre del servicio.</translation>
    </message>
    <message>
        <source>The service does not answer.</source>
        <translation>El servicio no responde.</translation>
    </message>
    <message>
        <source>The certificate of the service is not valid.</source>
        <translation>El certificado del servicio no es válido.</translation>
    </message>
    <message>
        <source>The service answers with an error.</source>
        <translation>El servicio responde con un error.</translation>
    </message>
    <message>
        <source>What answers at this address is not the service.</source>
        <translation>Lo que responde en esta dirección no es el servicio.</translation>
    </message>
</context>
<context>
    <name>home::ServicePane</name>
    <message>
        <source>Service</source>
        <translation>Servicio</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Dirección</translation>
    </message>
    <message>
        <source>none</source>
        <translation>ninguna</translation>
    </message>
    <message>
        <source>Test it</source>
        <translation>Probarlo</translation>
    </message>
    <message>
        <source>The radio was started for this service</source>
        <translation>La radio se inició para este servicio</translation>
    </message>
    <message>
        <source>Use another one</source>
        <translation>Usar otro</translation>
    </message>
    <message>
        <source>Use the one of this device</source>
        <translation>Usar el de este dispositivo</translation>
    </message>
    <message>
        <source>Asking the service...</source>
        <translation>Preguntando al servicio...</translation>
    </message>
    <message>
        <source>Address of the service</source>
        <translation>Dirección del servicio</translation>
    </message>
    <message>
        <source>No service is set up. Choose the one of your house, or type its address.</source>
        <translation>No hay ningún servicio configurado. Elija el de su casa, o escriba su dirección.</translation>
    </message>
    <message>
        <source>Fingerprint</source>
        <translation>Huella</translation>
    </message>
    <message>
        <source>Use this service</source>
        <translation>Usar este servicio</translation>
    </message>
    <message>
        <source>Do not use it</source>
        <translation>No usarlo</translation>
    </message>
    <message>
        <source>Compare the fingerprint with the one on the service&apos;s own page, /house. If they differ, something else pretends to be the service.</source>
        <translation>Compare la huella con la de la página /house del servicio. Si no coinciden, otra cosa se hace pasar por el servicio.</translation>
    </message>
    <message>
        <source>The service answers, and its certificate is valid.</source>
        <translation>El servicio responde y su certificado es válido.</translation>
    </message>
    <message>
        <source>The service answers, but it is not encrypted: everybody in this network could read along.</source>
        <translation>El servicio responde, pero no está cifrado: cualquiera en esta red podría leerlo todo.</translation>
    </message>
</context>
<context>
    <name>home::SettingPane</name>
    <message>
        <source>This cannot be changed. %1</source>
        <translation>Esto no se puede cambiar. %1</translation>
    </message>
    <message>
        <source>on</source>
        <translation>sí</translation>
    </message>
    <message>
        <source>off</source>
        <translation>no</translation>
    </message>
</context>
<context>
    <name>home::SleepPane</name>
    <message>
        <source>Sleep timer</source>
        <translation>Apagado programado</translation>
    </message>
    <message>
        <source>The sleep timer cannot be set. %1</source>
        <translation>El apagado no se puede programar. %1</translation>
    </message>
    <message>
        <source>The music fades out and the screen turns black.</source>
        <translation>La música baja y la pantalla se queda negra.</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes are left.</source>
        <translation>
            <numerusform>Queda %n minuto.</numerusform>
            <numerusform>Quedan %n minutos.</numerusform>
        </translation>
    </message>
    <message>
        <source>off</source>
        <translation>no</translation>
    </message>
    <message>
        <source>after this track</source>
        <translation>tras este título</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>tras %n minuto</numerusform>
            <numerusform>tras %n minutos</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>home::UsbStick</name>
    <message>
        <source>No USB stick is mounted, and nothing on this device mounts one (udisks2).</source>
        <translation>No hay ninguna memoria USB montada y nada en este equipo la monta (udisks2).</translation>
    </message>
    <message>
        <source>There is no USB stick that can be written to. Put one in and choose this again.</source>
        <translation>No hay ninguna memoria USB en la que se pueda escribir. Conecte una y elija esto otra vez.</translation>
    </message>
    <message>
        <source>The USB stick cannot be used. %1</source>
        <translation>No se puede usar la memoria USB. %1</translation>
    </message>
</context>
<context>
    <name>netcommon::Speech</name>
    <message>
        <source>Stations and music</source>
        <translation>Emisoras y música</translation>
    </message>
    <message>
        <source>Choose an account</source>
        <translation>Elegir una cuenta</translation>
    </message>
    <message>
        <source>Activate this radio</source>
        <translation>Activar esta radio</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Entrar</translation>
    </message>
    <message>
        <source>Password reminder</source>
        <translation>Contraseña olvidada</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>Bienvenida</translation>
    </message>
    <message>
        <source>Create a station</source>
        <translation>Crear una emisora</translation>
    </message>
    <message>
        <source>Rename a station</source>
        <translation>Renombrar una emisora</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menú</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Emisoras</translation>
    </message>
    <message>
        <source>Song history</source>
        <translation>Historial</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Resultados</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>Reproducir o pausar</translation>
    </message>
    <message>
        <source>Next track</source>
        <translation>Título siguiente</translation>
    </message>
    <message>
        <source>Thumbs down</source>
        <translation>No me gusta</translation>
    </message>
    <message>
        <source>Thumbs up</source>
        <translation>Me gusta</translation>
    </message>
</context>
<context>
    <name>platform::DeviceSettings</name>
    <message>
        <source>more than 64 KiB</source>
        <translation>más de 64 KiB</translation>
    </message>
    <message>
        <source>its folder cannot be made</source>
        <translation>no se puede crear su carpeta</translation>
    </message>
    <message>
        <source>no permission to write</source>
        <translation>sin permiso para escribir</translation>
    </message>
    <message>
        <source>somebody else is writing it</source>
        <translation>alguien lo está escribiendo</translation>
    </message>
</context>
</TS>
