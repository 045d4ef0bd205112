<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About Velmora</source>
        <translation>Informazioni su Velmora</translation>
    </message>
    <message>
        <source>With Velmora you can explore this vast trove of music to your heart&apos;s content.
Just drop the name of one of your favorite songs or artists into Velmora and
let the Prism Project go.

It will quickly scan its entire world of analyzed music, almost a century of popular recordings - new and old, well known and completely obscure - to find songs with interesting musical similarities to your choice.

Then sit back and enjoy as it creates a listening experience full of current and soon-to-be favorite songs for you.</source>
        <translation>Con Velmora esplora questo immenso tesoro di musica come preferisce.
Dica a Velmora il nome di un brano o di un artista che ama
e lasci fare al Prism Project.

In un attimo percorre tutto il suo mondo di musica analizzata, quasi un secolo di registrazioni – nuove e vecchie, note o del tutto sconosciute – per trovare brani musicalmente simili alla Sua scelta.

Poi si metta comodo e si goda i Suoi brani preferiti, di oggi e di domani.</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>Fatto</translation>
    </message>
</context>
<context>
    <name>CreateStationDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Finestra</translation>
    </message>
    <message>
        <source>Create a New Station</source>
        <translation>Crea una stazione</translation>
    </message>
    <message>
        <source>Station List</source>
        <translation>Stazioni</translation>
    </message>
    <message>
        <source>Tell us one of your favorite
artists and we&apos;ll create a
station that explores that
part of the music universe.</source>
        <translation>Ci dica uno dei Suoi artisti
preferiti e creeremo una
stazione che esplora quella
parte della musica.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Simboli/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Maius.</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Numeri</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Esci</translation>
    </message>
    <message>
        <source>Artist Or Track</source>
        <translation>Artista o brano</translation>
    </message>
    <message>
        <source>Please enter an artist or track name to create a new station</source>
        <translation>Inserisca il nome di un artista o di un brano per creare una stazione</translation>
    </message>
    <message>
        <source>Search station failed!You could try again!</source>
        <translation>Ricerca non riuscita! Può riprovare!</translation>
    </message>
    <message>
        <source>Search...</source>
        <translation>Ricerca...</translation>
    </message>
    <message>
        <source>Search station failed,you could try again!</source>
        <translation>Ricerca non riuscita, può riprovare!</translation>
    </message>
    <message>
        <source>No result for </source>
        <translation>Nessun risultato per </translation>
    </message>
    <message>
        <source>We found </source>
        <translation>Trovati: </translation>
    </message>
    <message>
        <source> results by artists and </source>
        <translation> per artista e </translation>
    </message>
    <message>
        <source> results by tracks.Which did you mean ?</source>
        <translation> per brano. Quali intendeva?</translation>
    </message>
    <message>
        <source> by </source>
        <translation> di </translation>
    </message>
    <message>
        <source>Create station list failed ,please try later!</source>
        <translation>La stazione non è stata creata, riprovi più tardi!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Caricamento...</translation>
    </message>
    <message>
        <source>Create station failed,because system gets invalid data from Velmora!</source>
        <translation>La stazione non è stata creata: Velmora ha inviato dati non validi!</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>L’elenco delle stazioni non è stato caricato, riprovi più tardi!</translation>
    </message>
    <message>
        <source>Artist or Song</source>
        <translation>Artista o canzone</translation>
    </message>
</context>
<context>
    <name>EmailPwdDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Finestra</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>Invia password</translation>
    </message>
    <message>
        <source>Please input you Email
address to get the password.</source>
        <translation>Inserisca la Sua e-mail per
ricevere la password.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Simboli/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Maius.</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Numeri</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Esci</translation>
    </message>
    <message>
        <source>Email passowrd...</source>
        <translation>Invio della password...</translation>
    </message>
    <message>
        <source>Can not get the password because of system error!</source>
        <translation>Impossibile ottenere la password per un errore di sistema!</translation>
    </message>
    <message>
        <source>Please check the email address your provided for instructions on retrieving your Velmora password.</source>
        <translation>Controlli la Sua posta: un’e-mail spiega come recuperare la password di Velmora.</translation>
    </message>
</context>
<context>
    <name>InternetRadioDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Finestra</translation>
    </message>
    <message>
        <source>Activation Code</source>
        <translation>Codice di attivazione</translation>
    </message>
    <message>
        <source>Please go to    </source>
        <translation>Vada su    </translation>
    </message>
    <message>
        <source>and follow the instructions there to create a new account.</source>
        <translation>e segua le istruzioni per creare un nuovo account.</translation>
    </message>
    <message>
        <source>Your activation code is:    </source>
        <translation>Il Suo codice:    </translation>
    </message>
    <message>
        <source>When you are done with that, come back to this screen and click “continue.”</source>
        <translation>Quando ha finito, torni a questa schermata e scelga «Continua».</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continua</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Esci</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Attendere...</translation>
    </message>
    <message>
        <source>Please activate your device to continue.</source>
        <translation>Attivi il dispositivo per continuare.</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>Accesso non riuscito, riprovi!</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>Impossibile generare il codice di attivazione!</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>Il codice di attivazione non è stato generato, può riprovare!</translation>
    </message>
</context>
<context>
    <name>KeyLayout</name>
    <message>
        <source>Clear</source>
        <translation>Svuota</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Spazio</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Cancella</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fatto</translation>
    </message>
    <message>
        <source>Keyboard</source>
        <translation>Tastiera</translation>
    </message>
</context>
<context>
    <name>LoadingDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Finestra</translation>
    </message>
    <message>
        <source>Connect to Velmora failed!</source>
        <translation>Connessione a Velmora non riuscita!</translation>
    </message>
</context>
<context>
    <name>MenuDlg</name>
    <message>
        <source>Bookmark This Artist</source>
        <translation>Ricorda questo artista</translation>
    </message>
    <message>
        <source>Bookmark This Track</source>
        <translation>Ricorda questo brano</translation>
    </message>
    <message>
        <source>Do Not Play This Track For A Month</source>
        <translation>Non suonare questo brano per un mese</translation>
    </message>
    <message>
        <source>Why Is This Track Playing</source>
        <translation>Perché questo brano</translation>
    </message>
    <message>
        <source>Create A New Station</source>
        <translation>Crea una stazione</translation>
    </message>
    <message>
        <source>Delete This Station</source>
        <translation>Elimina questa stazione</translation>
    </message>
    <message>
        <source>Rename This Station</source>
        <translation>Rinomina questa stazione</translation>
    </message>
    <message>
        <source>Switch User</source>
        <translation>Cambia account</translation>
    </message>
    <message>
        <source>Exit Velmora</source>
        <translation>Esci da Velmora</translation>
    </message>
    <message>
        <source>Close Menu</source>
        <translation>Chiudi il menu</translation>
    </message>
</context>
<context>
    <name>MsgboxDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Finestra</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
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
        <translation>Finestra</translation>
    </message>
    <message>
        <source>Rename this station</source>
        <translation>Rinomina questa stazione</translation>
    </message>
    <message>
        <source>Tell us the new station name
and we&apos;ll update it in your
station list.</source>
        <translation>Ci dica il nuovo nome e lo
aggiorneremo nel Suo elenco
di stazioni.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Simboli/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Maius.</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Numeri</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Esci</translation>
    </message>
    <message>
        <source>Rename station failed, no station name supplied.</source>
        <translation>La stazione non è stata rinominata: nessun nome inserito.</translation>
    </message>
    <message>
        <source>Are you sure you want to rename this station as: 
</source>
        <translation>Vuole davvero rinominare questa stazione in: 
</translation>
    </message>
    <message>
        <source>Rename station failed,you could try again.</source>
        <translation>La stazione non è stata rinominata, può riprovare.</translation>
    </message>
    <message>
        <source>Rename station...</source>
        <translation>Cambio del nome...</translation>
    </message>
    <message>
        <source>Rename station list failed ,please try later!</source>
        <translation>La stazione non è stata rinominata, riprovi più tardi!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Caricamento...</translation>
    </message>
    <message>
        <source>Get station list failed!</source>
        <translation>L’elenco delle stazioni non è stato caricato!</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>L’elenco delle stazioni non è stato caricato, riprovi più tardi!</translation>
    </message>
</context>
<context>
    <name>SelectUserDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Finestra</translation>
    </message>
    <message>
        <source>Select or create Velmora account.</source>
        <translation>Scelga o crei un account Velmora.</translation>
    </message>
    <message>
        <source>New username</source>
        <translation>Nuovo account</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Esci</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Cancella</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Attendere...</translation>
    </message>
    <message>
        <source>Do you already have a Velmora account ? </source>
        <translation>Ha già un account Velmora? </translation>
    </message>
    <message>
        <source>We only keep max 5 accounts,you could delete one to continue.</source>
        <translation>Sono possibili al massimo 5 account. Ne elimini uno per continuare.</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>Impossibile generare il codice di attivazione!</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>Il codice di attivazione non è stato generato, può riprovare!</translation>
    </message>
    <message>
        <source>Are you sure you want to delete the user: </source>
        <translation>Vuole davvero eliminare l’account: </translation>
    </message>
    <message>
        <source>Delete User...</source>
        <translation>Eliminazione dell’account...</translation>
    </message>
    <message>
        <source>Disassociate device failed because of network error. please try again later!</source>
        <translation>Il dispositivo non è stato scollegato per un errore di rete. Riprovi più tardi!</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>Accesso non riuscito, riprovi!</translation>
    </message>
</context>
<context>
    <name>SignInDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Finestra</translation>
    </message>
    <message>
        <source>Sign in to your Velmora account</source>
        <translation>Acceda al Suo account Velmora</translation>
    </message>
    <message>
        <source>Email:</source>
        <translation>E-mail:</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Password:</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Simboli/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Maius.</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>Invia password</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Esci</translation>
    </message>
    <message>
        <source>Enter your Velmora account...</source>
        <translation>Inserisca il Suo account Velmora...</translation>
    </message>
    <message>
        <source>No information was entered.Please try again.</source>
        <translation>Non è stato inserito nulla. Riprovi.</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Attendere...</translation>
    </message>
    <message>
        <source>Incorrect Login ,please try again!</source>
        <translation>Accesso non riuscito, riprovi!</translation>
    </message>
</context>
<context>
    <name>VelmoraMainDlg</name>
    <message>
        <source>Station List</source>
        <translation>Stazioni</translation>
    </message>
    <message>
        <source>AD</source>
        <translation>AD</translation>
    </message>
    <message>
        <source>Thumbs Down</source>
        <translation>Non mi piace</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Avanti</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Riproduci</translation>
    </message>
    <message>
        <source>Thumbs Up</source>
        <translation>Mi piace</translation>
    </message>
    <message>
        <source>Artist:</source>
        <translation>Di:</translation>
    </message>
    <message>
        <source>Album:</source>
        <translation>Album:</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Song History</source>
        <translation>Cronologia</translation>
    </message>
    <message>
        <source>Station:</source>
        <translation>Stazione:</translation>
    </message>
    <message>
        <source>Unfortunately,our music licenses force us to limit the number of tracks you may skip each hour.</source>
        <translation>Purtroppo le nostre licenze musicali limitano il numero di brani che può saltare ogni ora.</translation>
    </message>
    <message>
        <source>       Invalid operation for audio ads</source>
        <translation>       Non possibile durante la pubblicità</translation>
    </message>
    <message>
        <source>Thumbs up is not allowed on shared stations.</source>
        <translation>«Mi piace» non è possibile sulle stazioni condivise.</translation>
    </message>
    <message>
        <source>Thumbs down is not allowed on shared stations.</source>
        <translation>«Non mi piace» non è possibile sulle stazioni condivise.</translation>
    </message>
    <message>
        <source>ThumbUp...</source>
        <translation>Mi piace...</translation>
    </message>
    <message>
        <source>Thumbs up track failed,you could try again.</source>
        <translation>Il giudizio non è stato salvato, può riprovare.</translation>
    </message>
    <message>
        <source>ThumbDown...</source>
        <translation>Non mi piace...</translation>
    </message>
    <message>
        <source>Thumbs down track failed,you could try again.</source>
        <translation>Il giudizio non è stato salvato, può riprovare.</translation>
    </message>
    <message>
        <source>Add feedback failed ,you could try again!</source>
        <translation>Il giudizio non è stato aggiunto, può riprovare!</translation>
    </message>
    <message>
        <source>Sleep...</source>
        <translation>Il brano va a riposo...</translation>
    </message>
    <message>
        <source>Sleep track failed,you could try again.</source>
        <translation>Il brano non è stato messo a riposo, può riprovare.</translation>
    </message>
    <message>
        <source>Sleep track failed ,you could try later!</source>
        <translation>Il brano non è stato messo a riposo, riprovi più tardi!</translation>
    </message>
    <message>
        <source>Bookmark artist failed,you could try again.</source>
        <translation>L’artista non è stato ricordato, può riprovare.</translation>
    </message>
    <message>
        <source>Bookmark track failed,you could try again.</source>
        <translation>Il brano non è stato ricordato, può riprovare.</translation>
    </message>
    <message>
        <source>Add bookmark successful!</source>
        <translation>Ricordato!</translation>
    </message>
    <message>
        <source>Add bookmark failed ,please try later!</source>
        <translation>Impossibile ricordarlo, riprovi più tardi!</translation>
    </message>
    <message>
        <source>Explain track failed,you could try again.</source>
        <translation>La spiegazione non è disponibile, può riprovare.</translation>
    </message>
    <message>
        <source>Explain track failed ,you could try again!</source>
        <translation>La spiegazione non è disponibile, può riprovare!</translation>
    </message>
    <message>
        <source>Based on what you&apos;ve told us so far, we&apos;re playing </source>
        <translation>In base a quello che ci ha detto finora, suoniamo </translation>
    </message>
    <message>
        <source> by </source>
        <translation> di </translation>
    </message>
    <message>
        <source> because it features </source>
        <translation> perché presenta </translation>
    </message>
    <message>
        <source>Velmora only permits to create 100 stations,so you can not create more stations!</source>
        <translation>Velmora permette al massimo 100 stazioni, non può crearne altre!</translation>
    </message>
    <message>
        <source>Tapestry station can not be deleted!</source>
        <translation>La stazione Tapestry non può essere eliminata!</translation>
    </message>
    <message>
        <source>Are you sure you want to delete station: 
</source>
        <translation>Vuole davvero eliminare la stazione: 
</translation>
    </message>
    <message>
        <source> ?</source>
        <translation>?</translation>
    </message>
    <message>
        <source>This station can not be deleted!</source>
        <translation>Questa stazione non può essere eliminata!</translation>
    </message>
    <message>
        <source>Delete station...</source>
        <translation>Eliminazione della stazione...</translation>
    </message>
    <message>
        <source>Sorry.Delete station failed,you could try aganin.</source>
        <translation>La stazione non è stata eliminata, può riprovare.</translation>
    </message>
    <message>
        <source>Delete station failed ,please try later!</source>
        <translation>La stazione non è stata eliminata, riprovi più tardi!</translation>
    </message>
    <message>
        <source>Tapestry station can not be renamed!</source>
        <translation>La stazione Tapestry non può essere rinominata!</translation>
    </message>
    <message>
        <source>Are you sure you want to rename station: 
</source>
        <translation>Vuole davvero rinominare la stazione: 
</translation>
    </message>
    <message>
        <source>A share station cannot be renamed!</source>
        <translation>Una stazione condivisa non può essere rinominata!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Caricamento...</translation>
    </message>
    <message>
        <source>Play the track failed,System occurs error!</source>
        <translation>Il brano non può essere riprodotto per un errore di sistema!</translation>
    </message>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>Si è verificato un errore di rete. Controlli la connessione e riprovi.</translation>
    </message>
    <message>
        <source>Get playlist failed,you could try again!</source>
        <translation>I brani non sono stati caricati, può riprovare!</translation>
    </message>
    <message>
        <source>Get play list failed ,please try later!</source>
        <translation>I brani non sono stati caricati, riprovi più tardi!</translation>
    </message>
    <message>
        <source>Get Ad metadata failed!</source>
        <translation>I dati della pubblicità non sono stati caricati!</translation>
    </message>
    <message>
        <source>Get track data failed.Please try later!</source>
        <translation>I dati del brano non sono stati caricati. Riprovi più tardi!</translation>
    </message>
    <message>
        <source>Now playing...</source>
        <translation>Già in riproduzione...</translation>
    </message>
</context>
<context>
    <name>VelmoraParentWidget</name>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>Si è verificato un errore di rete. Controlli la connessione e riprovi.</translation>
    </message>
    <message>
        <source>Velmora is conducting system maintenance. You will be able to listen to existing stations while they work on their systems, but you won&apos;t be able to create new stations, submit feedback or edit your account in any way until the maintenance is complete. Thanks for your patience.</source>
        <translation>Velmora è in manutenzione. Può ascoltare le Sue stazioni, ma fino al termine non può crearne di nuove, dare giudizi o modificare l’account. Grazie per la pazienza.</translation>
    </message>
    <message>
        <source>Sorry,this token is invalid now .Please contact Velmora listener support at </source>
        <translation>Questa sessione non è più valida. Contatti l’assistenza ascoltatori di Velmora: </translation>
    </message>
    <message>
        <source>Invalid username or password, please try again.</source>
        <translation>Nome o password non validi, riprovi.</translation>
    </message>
    <message>
        <source>Sorry,this account is no longer active.Please contact Velmora listener support at </source>
        <translation>Questo account non è più attivo. Contatti l’assistenza ascoltatori di Velmora: </translation>
    </message>
    <message>
        <source>Sorry,this account is authorized.Please contact Velmora listener support at </source>
        <translation>Questo account non è autorizzato. Contatti l’assistenza ascoltatori di Velmora: </translation>
    </message>
    <message>
        <source>Sorry, Max stations Reached, create station failed.</source>
        <translation>Numero massimo di stazioni raggiunto, la stazione non è stata creata.</translation>
    </message>
    <message>
        <source>Station does not exist.</source>
        <translation>La stazione non esiste.</translation>
    </message>
    <message>
        <source>Invalid username</source>
        <translation>Nome utente non valido</translation>
    </message>
    <message>
        <source>Invalid password</source>
        <translation>Password non valida</translation>
    </message>
    <message>
        <source>NULL</source>
        <translation>NULL</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Caricamento...</translation>
    </message>
    <message>
        <source>You have reached the last window.</source>
        <translation>Questa è l’ultima finestra. </translation>
    </message>
    <message>
        <source>Are you sure you want to exit Velmora? </source>
        <translation>Vuole davvero uscire da Velmora? </translation>
    </message>
    <message>
        <source>    Are you still there ? </source>
        <translation>    È ancora lì? </translation>
    </message>
    <message>
        <source>Unable to connect to network.</source>
        <translation>Nessuna connessione alla rete.</translation>
    </message>
    <message>
        <source>There may be network congestion.</source>
        <translation>La rete potrebbe essere sovraccarica.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sì</translation>
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
        <translation>Brano</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Home</translation>
    </message>
</context>
<context>
    <name>WelcomeDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Finestra</translation>
    </message>
    <message>
        <source>Welcome to Velmora</source>
        <translation>Benvenuti in Velmora</translation>
    </message>
    <message>
        <source>To experience free personalized radio playing only the music you love
you will need to activate Velmora on this device.

Please select “Activate Velmora” below.</source>
        <translation>Per una radio personale e gratuita che suona solo la musica che ama,
attivi Velmora su questo dispositivo.

Scelga «Attiva Velmora» qui sotto.</translation>
    </message>
    <message>
        <source>Activate Velmora</source>
        <translation>Attiva Velmora</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Esci</translation>
    </message>
    <message>
        <source>You have reached the last window.Are you sure you want to exit Velmora? 
</source>
        <translation>Questa è l’ultima finestra. Vuole davvero uscire da Velmora? 
</translation>
    </message>
</context>
<context>
    <name>WhyDlg</name>
    <message>
        <source>Why is this track playing?</source>
        <translation>Perché questo brano?</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>Fatto</translation>
    </message>
</context>
<context>
    <name>home::AboutPane</name>
    <message>
        <source>About</source>
        <translation>Informazioni</translation>
    </message>
    <message>
        <source>Nothing has gone wrong.</source>
        <translation>Nessun problema finora.</translation>
    </message>
    <message>
        <source>Things that went wrong: %1. A report helps to find out why.</source>
        <translation>Problemi: %1. Un rapporto aiuta a trovarne la causa.</translation>
    </message>
    <message>
        <source>Save a report to a USB stick</source>
        <translation>Salva un rapporto su una chiave USB</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Rapporto</translation>
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
        <translation>Il rapporto non può essere salvato. %1</translation>
    </message>
    <message>
        <source>The report is saved: %1</source>
        <translation>Il rapporto è salvato: %1</translation>
    </message>
    <message>
        <source>There is not enough room, or the stick is damaged.</source>
        <translation>Lo spazio non basta, o la chiave è danneggiata.</translation>
    </message>
    <message>
        <source>The stick can be taken out.</source>
        <translation>La chiave si può togliere.</translation>
    </message>
    <message>
        <source>Saving the report...</source>
        <translation>Salvataggio del rapporto...</translation>
    </message>
</context>
<context>
    <name>home::HomePage</name>
    <message>
        <source>Home</source>
        <translation>Home</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Simboli/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Maius.</translation>
    </message>
    <message>
        <source>Radio</source>
        <translation>Radio</translation>
    </message>
    <message>
        <source>Select starts the radio.</source>
        <translation>Il tasto di selezione avvia la radio.</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 per cento</translation>
    </message>
    <message>
        <source>silent</source>
        <translation>muto</translation>
    </message>
    <message>
        <source>All tracks equally loud</source>
        <translation>Tutti i brani allo stesso volume</translation>
    </message>
    <message>
        <source>Keys click</source>
        <translation>Clic dei tasti</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>How loud the radio plays. The volume keys change it while music plays.</source>
        <translation>Il volume della radio. Durante la musica lo cambiano i tasti del volume.</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>dopo %n minuto</numerusform>
            <numerusform>dopo %n minuti</numerusform>
        </translation>
    </message>
    <message>
        <source>never</source>
        <translation>mai</translation>
    </message>
    <message>
        <source>Read aloud what has the focus</source>
        <translation>Leggi ad alta voce la selezione</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Schermo</translation>
    </message>
    <message>
        <source>When nobody presses a key while music plays, the picture dims.</source>
        <translation>Se nessuno preme un tasto durante la musica, l’immagine si attenua.</translation>
    </message>
    <message>
        <source>Switch off</source>
        <translation>Spegni</translation>
    </message>
    <message>
        <source>The device switches off.</source>
        <translation>Il dispositivo si spegne.</translation>
    </message>
    <message>
        <source>Switch off now</source>
        <translation>Spegni ora</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>Riavvia</translation>
    </message>
    <message>
        <source>The device restarts. The radio comes back by itself.</source>
        <translation>Il dispositivo si riavvia. La radio torna da sola.</translation>
    </message>
    <message>
        <source>Restart now</source>
        <translation>Riavvia ora</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Esci</translation>
    </message>
    <message>
        <source>Ends the radio and Home.</source>
        <translation>Chiude la radio e Home.</translation>
    </message>
    <message>
        <source>Quit now</source>
        <translation>Esci ora</translation>
    </message>
    <message>
        <source>%1, chosen</source>
        <translation>%1, scelto</translation>
    </message>
    <message>
        <source>Larger picture</source>
        <translation>Immagine più grande</translation>
    </message>
    <message>
        <source>A larger picture is drawn from the next start of the radio or of Home.</source>
        <translation>L’immagine più grande vale dal prossimo avvio della radio o di Home.</translation>
    </message>
</context>
<context>
    <name>home::LanguagePane</name>
    <message>
        <source>As the system is set up</source>
        <translation>Come il sistema</translation>
    </message>
    <message>
        <source>Language and region</source>
        <translation>Lingua e regione</translation>
    </message>
    <message>
        <source>The language of all texts, and how dates, times and numbers are written.</source>
        <translation>La lingua di tutti i testi e la forma di date, ore e numeri.</translation>
    </message>
    <message>
        <source>The time zone is that of the system.</source>
        <translation>Il fuso orario è quello del sistema.</translation>
    </message>
    <message>
        <source>The time zone cannot be changed. %1</source>
        <translation>Il fuso orario non si può cambiare. %1</translation>
    </message>
    <message>
        <source>Time zone</source>
        <translation>Fuso orario</translation>
    </message>
</context>
<context>
    <name>home::MenuCommand</name>
    <message>
        <source>There is no menu system.</source>
        <translation>Non c’è un sistema di menu.</translation>
    </message>
</context>
<context>
    <name>home::NetworkPane</name>
    <message>
        <source>Network</source>
        <translation>Rete</translation>
    </message>
    <message>
        <source>Connected to %1.</source>
        <translation>Connesso a %1.</translation>
    </message>
    <message>
        <source>This Wi-Fi cannot be used: the password is wrong, or it is too far away. %1</source>
        <translation>Questo Wi-Fi non funziona: la password è errata, o è troppo lontano. %1</translation>
    </message>
    <message>
        <source>Looking at the network...</source>
        <translation>Controllo della rete...</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>non connesso</translation>
    </message>
    <message>
        <source>no address</source>
        <translation>nessun indirizzo</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 per cento</translation>
    </message>
    <message>
        <source>%1 percent, open</source>
        <translation>%1 per cento, aperta</translation>
    </message>
    <message>
        <source>Password of %1</source>
        <translation>Password di %1</translation>
    </message>
    <message>
        <source>A Wi-Fi password has at least %1 characters.</source>
        <translation>Una password Wi-Fi ha almeno %1 caratteri.</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>Connessione a %1...</translation>
    </message>
    <message>
        <source>All is well: the service answers.</source>
        <translation>Tutto bene: il servizio risponde.</translation>
    </message>
    <message>
        <source>The service runs on this device, without the network. %1</source>
        <translation>Il servizio gira su questo dispositivo, senza la rete. %1</translation>
    </message>
    <message>
        <source>This device has no network card.</source>
        <translation>Questo dispositivo non ha una scheda di rete.</translation>
    </message>
    <message>
        <source>No cable is plugged in, and no Wi-Fi is connected.</source>
        <translation>Nessun cavo è inserito e nessun Wi-Fi è connesso.</translation>
    </message>
    <message>
        <source>The device is connected, but the router gives it no address. Restarting the router may help.</source>
        <translation>Il dispositivo è connesso, ma il router non gli dà un indirizzo. Riavviare il router può aiutare.</translation>
    </message>
    <message>
        <source>The router leads to no other network, and the service is not found in this one.</source>
        <translation>Il router non porta ad altre reti, e in questa il servizio non si trova.</translation>
    </message>
    <message>
        <source>The network is there, but nobody knows the name of the service. Either the name is wrong, or the internet is away.</source>
        <translation>La rete c’è, ma nessuno conosce il nome del servizio. O il nome è sbagliato, o manca internet.</translation>
    </message>
    <message>
        <source>The network is there, but the service does not answer. Either it does not run, or the internet is away.</source>
        <translation>La rete c’è, ma il servizio non risponde. O non è in funzione, o manca internet.</translation>
    </message>
    <message>
        <source>The network is there. %1</source>
        <translation>La rete c’è. %1</translation>
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
        <translation>La radio attende un tasto</translation>
    </message>
    <message>
        <source>The radio has stopped</source>
        <translation>La radio si è fermata</translation>
    </message>
    <message>
        <source>The radio cannot reach its service. It starts again as soon as it can.</source>
        <translation>La radio non raggiunge il suo servizio. Riparte appena può.</translation>
    </message>
    <message>
        <source>The radio has failed several times although its service answers.</source>
        <translation>La radio ha avuto più errori, anche se il suo servizio risponde.</translation>
    </message>
    <message>
        <source>The radio has failed several times. Home, About keeps the reports.</source>
        <translation>La radio ha avuto più errori. I rapporti sono in Home, Informazioni.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Riprova</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Home</translation>
    </message>
</context>
<context>
    <name>home::OutputPane</name>
    <message>
        <source>Sound output</source>
        <translation>Uscita audio</translation>
    </message>
    <message>
        <source>Where the music comes out. The radio uses it from its next start.</source>
        <translation>Da dove esce la musica. La radio la usa dal prossimo avvio.</translation>
    </message>
    <message>
        <source>The usual one</source>
        <translation>Quella solita</translation>
    </message>
</context>
<context>
    <name>home::PhonesPane</name>
    <message>
        <source>Phones</source>
        <translation>Telefoni</translation>
    </message>
    <message>
        <source>The service runs on this device and only for it. To reach it from a telephone, start it so that it listens in the home network; its manual says how.</source>
        <translation>Il servizio gira su questo dispositivo e solo per esso. Per raggiungerlo da un telefono, lo avvii per la rete di casa; il manuale dice come.</translation>
    </message>
    <message>
        <source>Open this address in the browser of a telephone in the same network: to link a radio, to manage your account, or to use the telephone as a remote control and keyboard.</source>
        <translation>Apra questo indirizzo nel browser di un telefono della stessa rete: per collegare una radio, gestire il Suo account o usare il telefono come telecomando e tastiera.</translation>
    </message>
</context>
<context>
    <name>home::ServiceHealth</name>
    <message>
        <source>The service answers.</source>
        <translation>Il servizio risponde.</translation>
    </message>
    <message>
        <source>No service is set up. Choose one under Service.</source>
        <translation>Nessun servizio impostato. Ne scelga uno in Servizio.</translation>
    </message>
    <message>
        <source>Nobody knows the name of the service.</source>
        <translation>Nessuno conosce il nome del servizio.</translation>
    </message>
    <message>
        <source>The service does not answer.</source>
        <translation>Il servizio non risponde.</translation>
    </message>
    <message>
        <source>The certificate of the service is not valid.</source>
        <translation>Il certificato del servizio non è valido.</translation>
    </message>
    <message>
        <source>The service answers with an error.</source>
        <translation>Il servizio risponde con un errore.</translation>
    </message>
    <message>
        <source>What answers at this address is not the service.</source>
        <translation>Ciò che risponde a questo indirizzo non è il servizio.</translation>
    </message>
</context>
<context>
    <name>home::ServicePane</name>
    <message>
        <source>Service</source>
        <translation>Servizio</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Indirizzo</translation>
    </message>
    <message>
        <source>none</source>
        <translation>nessuno</translation>
    </message>
    <message>
        <source>Test it</source>
        <translation>Prova</translation>
    </message>
    <message>
        <source>The radio was started for this service</source>
        <translation>La radio è stata avviata per questo servizio</translation>
    </message>
    <message>
        <source>Use another one</source>
        <translation>Usane un altro</translation>
    </message>
    <message>
        <source>Use the one of this device</source>
        <translation>Usa quello di questo dispositivo</translation>
    </message>
    <message>
        <source>Asking the service...</source>
        <translation>Richiesta al servizio...</translation>
    </message>
    <message>
        <source>Address of the service</source>
        <translation>Indirizzo del servizio</translation>
    </message>
    <message>
        <source>No service is set up. Choose the one of your house, or type its address.</source>
        <translation>Nessun servizio è configurato. Scelga quello di casa Sua, o ne scriva l’indirizzo.</translation>
    </message>
    <message>
        <source>Fingerprint</source>
        <translation>Impronta</translation>
    </message>
    <message>
        <source>Use this service</source>
        <translation>Usa questo servizio</translation>
    </message>
    <message>
        <source>Do not use it</source>
        <translation>Non usarlo</translation>
    </message>
    <message>
        <source>Compare the fingerprint with the one on the service&apos;s own page, /house. If they differ, something else pretends to be the service.</source>
        <translation>Confronti l’impronta con quella della pagina /house del servizio. Se sono diverse, qualcos’altro si finge il servizio.</translation>
    </message>
    <message>
        <source>The service answers, and its certificate is valid.</source>
        <translation>Il servizio risponde e il suo certificato è valido.</translation>
    </message>
    <message>
        <source>The service answers, but it is not encrypted: everybody in this network could read along.</source>
        <translation>Il servizio risponde, ma non è cifrato: chiunque in questa rete potrebbe leggere.</translation>
    </message>
</context>
<context>
    <name>home::SettingPane</name>
    <message>
        <source>This cannot be changed. %1</source>
        <translation>Non si può cambiare. %1</translation>
    </message>
    <message>
        <source>on</source>
        <translation>sì</translation>
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
        <translation>Timer di spegnimento</translation>
    </message>
    <message>
        <source>The sleep timer cannot be set. %1</source>
        <translation>Il timer non può essere impostato. %1</translation>
    </message>
    <message>
        <source>The music fades out and the screen turns black.</source>
        <translation>La musica sfuma e lo schermo diventa nero.</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes are left.</source>
        <translation>
            <numerusform>Resta %n minuto.</numerusform>
            <numerusform>Restano %n minuti.</numerusform>
        </translation>
    </message>
    <message>
        <source>off</source>
        <translation>no</translation>
    </message>
    <message>
        <source>after this track</source>
        <translation>dopo questo brano</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>dopo %n minuto</numerusform>
            <numerusform>dopo %n minuti</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>home::UsbStick</name>
    <message>
        <source>No USB stick is mounted, and nothing on this device mounts one (udisks2).</source>
        <translation>Nessuna chiave USB è montata, e nulla su questo dispositivo la monta (udisks2).</translation>
    </message>
    <message>
        <source>There is no USB stick that can be written to. Put one in and choose this again.</source>
        <translation>Nessuna chiave USB scrivibile. Ne inserisca una e scelga di nuovo questa riga.</translation>
    </message>
    <message>
        <source>The USB stick cannot be used. %1</source>
        <translation>La chiave USB non si può usare. %1</translation>
    </message>
</context>
<context>
    <name>netcommon::Speech</name>
    <message>
        <source>Stations and music</source>
        <translation>Stazioni e musica</translation>
    </message>
    <message>
        <source>Choose an account</source>
        <translation>Scegli un account</translation>
    </message>
    <message>
        <source>Activate this radio</source>
        <translation>Attiva questa radio</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Accedi</translation>
    </message>
    <message>
        <source>Password reminder</source>
        <translation>Password dimenticata</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>Benvenuti</translation>
    </message>
    <message>
        <source>Create a station</source>
        <translation>Crea una stazione</translation>
    </message>
    <message>
        <source>Rename a station</source>
        <translation>Rinomina una stazione</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Stazioni</translation>
    </message>
    <message>
        <source>Song history</source>
        <translation>Cronologia</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Risultati</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>Riproduci o metti in pausa</translation>
    </message>
    <message>
        <source>Next track</source>
        <translation>Brano successivo</translation>
    </message>
    <message>
        <source>Thumbs down</source>
        <translation>Non mi piace</translation>
    </message>
    <message>
        <source>Thumbs up</source>
        <translation>Mi piace</translation>
    </message>
</context>
<context>
    <name>platform::DeviceSettings</name>
    <message>
        <source>more than 64 KiB</source>
        <translation>più di 64 KiB</translation>
    </message>
    <message>
        <source>its folder cannot be made</source>
        <translation>impossibile creare la sua cartella</translation>
    </message>
    <message>
        <source>no permission to write</source>
        <translation>permesso di scrittura mancante</translation>
    </message>
    <message>
        <source>somebody else is writing it</source>
        <translation>qualcun altro lo sta scrivendo</translation>
    </message>
</context>
</TS>
