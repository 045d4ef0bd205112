<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About Velmora</source>
        <translation>Über Velmora</translation>
    </message>
    <message>
        <source>With Velmora you can explore this vast trove of music to your heart&apos;s content.
Just drop the name of one of your favorite songs or artists into Velmora and
let the Prism Project go.

It will quickly scan its entire world of analyzed music, almost a century of popular recordings - new and old, well known and completely obscure - to find songs with interesting musical similarities to your choice.

Then sit back and enjoy as it creates a listening experience full of current and soon-to-be favorite songs for you.</source>
        <translation>Mit Velmora entdecken Sie diesen riesigen Schatz an Musik ganz nach Herzenslust.
Nennen Sie Velmora einfach ein Lied oder einen Interpreten, den Sie mögen,
und lassen Sie das Prism Project machen.

Es durchsucht in kürzester Zeit seine ganze Welt erforschter Musik, fast ein Jahrhundert an Aufnahmen – neu und alt, bekannt und völlig unbekannt –, und findet Lieder, die Ihrer Wahl musikalisch ähnlich sind.

Lehnen Sie sich dann zurück und genießen Sie Ihre heutigen und künftigen Lieblingslieder.</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>CreateStationDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Create a New Station</source>
        <translation>Neuen Sender anlegen</translation>
    </message>
    <message>
        <source>Station List</source>
        <translation>Senderliste</translation>
    </message>
    <message>
        <source>Tell us one of your favorite
artists and we&apos;ll create a
station that explores that
part of the music universe.</source>
        <translation>Nennen Sie uns einen Ihrer
Lieblingsinterpreten, und
wir machen einen Sender,
der seine Musik erkundet.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Zeichen/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Groß</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Zahlen</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Artist Or Track</source>
        <translation>Interpret oder Titel</translation>
    </message>
    <message>
        <source>Please enter an artist or track name to create a new station</source>
        <translation>Bitte geben Sie für einen neuen Sender einen Interpreten oder einen Titel ein</translation>
    </message>
    <message>
        <source>Search station failed!You could try again!</source>
        <translation>Die Suche ist fehlgeschlagen! Bitte versuchen Sie es noch einmal!</translation>
    </message>
    <message>
        <source>Search...</source>
        <translation>Suche läuft...</translation>
    </message>
    <message>
        <source>Search station failed,you could try again!</source>
        <translation>Die Suche ist fehlgeschlagen, bitte versuchen Sie es noch einmal!</translation>
    </message>
    <message>
        <source>No result for </source>
        <translation>Kein Treffer für </translation>
    </message>
    <message>
        <source>We found </source>
        <translation>Gefunden: </translation>
    </message>
    <message>
        <source> results by artists and </source>
        <translation> nach Interpret und </translation>
    </message>
    <message>
        <source> results by tracks.Which did you mean ?</source>
        <translation> nach Titel. Was haben Sie gemeint?</translation>
    </message>
    <message>
        <source> by </source>
        <translation> von </translation>
    </message>
    <message>
        <source>Create station list failed ,please try later!</source>
        <translation>Der Sender konnte nicht angelegt werden, bitte versuchen Sie es später!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Musik wird geladen...</translation>
    </message>
    <message>
        <source>Create station failed,because system gets invalid data from Velmora!</source>
        <translation>Der Sender konnte nicht angelegt werden, weil von Velmora ungültige Daten kamen!</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>Die Senderliste konnte nicht geladen werden, bitte versuchen Sie es später!</translation>
    </message>
    <message>
        <source>Artist or Song</source>
        <translation>Interpret oder Lied</translation>
    </message>
</context>
<context>
    <name>EmailPwdDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>Passwort mailen</translation>
    </message>
    <message>
        <source>Please input you Email
address to get the password.</source>
        <translation>Geben Sie Ihre E-Mail-Adresse
ein. Dann kommt Ihr Passwort.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Zeichen/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Groß</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Zahlen</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Email passowrd...</source>
        <translation>Passwort wird gemailt...</translation>
    </message>
    <message>
        <source>Can not get the password because of system error!</source>
        <translation>Das Passwort kann wegen eines Systemfehlers nicht abgerufen werden!</translation>
    </message>
    <message>
        <source>Please check the email address your provided for instructions on retrieving your Velmora password.</source>
        <translation>Bitte sehen Sie in Ihrer E-Mail nach, wie Sie wieder an Ihr Velmora-Passwort kommen.</translation>
    </message>
</context>
<context>
    <name>InternetRadioDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Activation Code</source>
        <translation>Aktivierungscode</translation>
    </message>
    <message>
        <source>Please go to    </source>
        <translation>Bitte öffnen Sie    </translation>
    </message>
    <message>
        <source>and follow the instructions there to create a new account.</source>
        <translation>und folgen Sie dort den Anweisungen, um ein neues Konto anzulegen.</translation>
    </message>
    <message>
        <source>Your activation code is:    </source>
        <translation>Ihr Aktivierungscode:    </translation>
    </message>
    <message>
        <source>When you are done with that, come back to this screen and click “continue.”</source>
        <translation>Wenn Sie damit fertig sind, wählen Sie hier „Weiter“.</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Bitte warten...</translation>
    </message>
    <message>
        <source>Please activate your device to continue.</source>
        <translation>Bitte aktivieren Sie Ihr Gerät, um fortzufahren.</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>Die Anmeldung stimmt nicht, bitte versuchen Sie es noch einmal!</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>Es kann kein Aktivierungscode erzeugt werden!</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>Es konnte kein Aktivierungscode erzeugt werden, bitte versuchen Sie es noch einmal!</translation>
    </message>
</context>
<context>
    <name>KeyLayout</name>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leerzeichen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Keyboard</source>
        <translation>Tastatur</translation>
    </message>
</context>
<context>
    <name>LoadingDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Connect to Velmora failed!</source>
        <translation>Keine Verbindung zu Velmora!</translation>
    </message>
</context>
<context>
    <name>MenuDlg</name>
    <message>
        <source>Bookmark This Artist</source>
        <translation>Diesen Interpreten merken</translation>
    </message>
    <message>
        <source>Bookmark This Track</source>
        <translation>Diesen Titel merken</translation>
    </message>
    <message>
        <source>Do Not Play This Track For A Month</source>
        <translation>Titel einen Monat nicht spielen</translation>
    </message>
    <message>
        <source>Why Is This Track Playing</source>
        <translation>Warum läuft dieser Titel</translation>
    </message>
    <message>
        <source>Create A New Station</source>
        <translation>Neuen Sender anlegen</translation>
    </message>
    <message>
        <source>Delete This Station</source>
        <translation>Diesen Sender löschen</translation>
    </message>
    <message>
        <source>Rename This Station</source>
        <translation>Diesen Sender umbenennen</translation>
    </message>
    <message>
        <source>Switch User</source>
        <translation>Konto wechseln</translation>
    </message>
    <message>
        <source>Exit Velmora</source>
        <translation>Velmora beenden</translation>
    </message>
    <message>
        <source>Close Menu</source>
        <translation>Menü schließen</translation>
    </message>
</context>
<context>
    <name>MsgboxDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
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
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Rename this station</source>
        <translation>Diesen Sender umbenennen</translation>
    </message>
    <message>
        <source>Tell us the new station name
and we&apos;ll update it in your
station list.</source>
        <translation>Nennen Sie uns den neuen
Namen, und wir ändern ihn
in Ihrer Senderliste.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Zeichen/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Groß</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Zahlen</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Rename station failed, no station name supplied.</source>
        <translation>Der Sender wurde nicht umbenannt, weil kein Name eingegeben wurde.</translation>
    </message>
    <message>
        <source>Are you sure you want to rename this station as: 
</source>
        <translation>Diesen Sender wirklich umbenennen in: 
</translation>
    </message>
    <message>
        <source>Rename station failed,you could try again.</source>
        <translation>Der Sender konnte nicht umbenannt werden, bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Rename station...</source>
        <translation>Sender wird umbenannt...</translation>
    </message>
    <message>
        <source>Rename station list failed ,please try later!</source>
        <translation>Der Sender konnte nicht umbenannt werden, bitte versuchen Sie es später!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Musik wird geladen...</translation>
    </message>
    <message>
        <source>Get station list failed!</source>
        <translation>Die Senderliste konnte nicht geladen werden!</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>Die Senderliste konnte nicht geladen werden, bitte versuchen Sie es später!</translation>
    </message>
</context>
<context>
    <name>SelectUserDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Select or create Velmora account.</source>
        <translation>Velmora-Konto auswählen oder anlegen.</translation>
    </message>
    <message>
        <source>New username</source>
        <translation>Neues Konto</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Bitte warten...</translation>
    </message>
    <message>
        <source>Do you already have a Velmora account ? </source>
        <translation>Haben Sie schon ein Velmora-Konto? </translation>
    </message>
    <message>
        <source>We only keep max 5 accounts,you could delete one to continue.</source>
        <translation>Es sind höchstens 5 Konten möglich. Löschen Sie eines, um fortzufahren.</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>Es kann kein Aktivierungscode erzeugt werden!</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>Es konnte kein Aktivierungscode erzeugt werden, bitte versuchen Sie es noch einmal!</translation>
    </message>
    <message>
        <source>Are you sure you want to delete the user: </source>
        <translation>Möchten Sie dieses Konto wirklich löschen: </translation>
    </message>
    <message>
        <source>Delete User...</source>
        <translation>Konto wird gelöscht...</translation>
    </message>
    <message>
        <source>Disassociate device failed because of network error. please try again later!</source>
        <translation>Das Gerät konnte wegen eines Netzwerkfehlers nicht getrennt werden. Bitte versuchen Sie es später noch einmal!</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>Die Anmeldung stimmt nicht, bitte versuchen Sie es noch einmal!</translation>
    </message>
</context>
<context>
    <name>SignInDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Sign in to your Velmora account</source>
        <translation>Bei Ihrem Velmora-Konto anmelden</translation>
    </message>
    <message>
        <source>Email:</source>
        <translation>E-Mail:</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Passwort:</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Zeichen/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Groß</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>Passwort mailen</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Enter your Velmora account...</source>
        <translation>Ihr Velmora-Konto eingeben...</translation>
    </message>
    <message>
        <source>No information was entered.Please try again.</source>
        <translation>Es wurde nichts eingegeben. Bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Bitte warten...</translation>
    </message>
    <message>
        <source>Incorrect Login ,please try again!</source>
        <translation>Die Anmeldung stimmt nicht, bitte versuchen Sie es noch einmal!</translation>
    </message>
</context>
<context>
    <name>VelmoraMainDlg</name>
    <message>
        <source>Station List</source>
        <translation>Senderliste</translation>
    </message>
    <message>
        <source>AD</source>
        <translation>AD</translation>
    </message>
    <message>
        <source>Thumbs Down</source>
        <translation>Daumen runter</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>Thumbs Up</source>
        <translation>Daumen hoch</translation>
    </message>
    <message>
        <source>Artist:</source>
        <translation>Von:</translation>
    </message>
    <message>
        <source>Album:</source>
        <translation>Album:</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Song History</source>
        <translation>Titelverlauf</translation>
    </message>
    <message>
        <source>Station:</source>
        <translation>Sender:</translation>
    </message>
    <message>
        <source>Unfortunately,our music licenses force us to limit the number of tracks you may skip each hour.</source>
        <translation>Leider erlauben unsere Musiklizenzen nur eine begrenzte Zahl übersprungener Titel je Stunde.</translation>
    </message>
    <message>
        <source>       Invalid operation for audio ads</source>
        <translation>       Bei Werbung nicht möglich</translation>
    </message>
    <message>
        <source>Thumbs up is not allowed on shared stations.</source>
        <translation>Daumen hoch ist bei geteilten Sendern nicht möglich.</translation>
    </message>
    <message>
        <source>Thumbs down is not allowed on shared stations.</source>
        <translation>Daumen runter ist bei geteilten Sendern nicht möglich.</translation>
    </message>
    <message>
        <source>ThumbUp...</source>
        <translation>Daumen hoch...</translation>
    </message>
    <message>
        <source>Thumbs up track failed,you could try again.</source>
        <translation>Daumen hoch hat nicht geklappt, bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>ThumbDown...</source>
        <translation>Daumen runter...</translation>
    </message>
    <message>
        <source>Thumbs down track failed,you could try again.</source>
        <translation>Daumen runter hat nicht geklappt, bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Add feedback failed ,you could try again!</source>
        <translation>Die Bewertung konnte nicht gespeichert werden, bitte versuchen Sie es noch einmal!</translation>
    </message>
    <message>
        <source>Sleep...</source>
        <translation>Titel pausiert...</translation>
    </message>
    <message>
        <source>Sleep track failed,you could try again.</source>
        <translation>Der Titel konnte nicht ausgesetzt werden, bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Sleep track failed ,you could try later!</source>
        <translation>Der Titel konnte nicht ausgesetzt werden, bitte versuchen Sie es später!</translation>
    </message>
    <message>
        <source>Bookmark artist failed,you could try again.</source>
        <translation>Der Interpret konnte nicht gemerkt werden, bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Bookmark track failed,you could try again.</source>
        <translation>Der Titel konnte nicht gemerkt werden, bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Add bookmark successful!</source>
        <translation>Gemerkt!</translation>
    </message>
    <message>
        <source>Add bookmark failed ,please try later!</source>
        <translation>Das konnte nicht gemerkt werden, bitte versuchen Sie es später!</translation>
    </message>
    <message>
        <source>Explain track failed,you could try again.</source>
        <translation>Die Erklärung konnte nicht geladen werden, bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Explain track failed ,you could try again!</source>
        <translation>Die Erklärung konnte nicht geladen werden, bitte versuchen Sie es noch einmal!</translation>
    </message>
    <message>
        <source>Based on what you&apos;ve told us so far, we&apos;re playing </source>
        <translation>Nach allem, was Sie uns bisher gesagt haben, spielen wir </translation>
    </message>
    <message>
        <source> by </source>
        <translation> von </translation>
    </message>
    <message>
        <source> because it features </source>
        <translation>, denn dieser Titel bietet </translation>
    </message>
    <message>
        <source>Velmora only permits to create 100 stations,so you can not create more stations!</source>
        <translation>Velmora erlaubt höchstens 100 Sender, Sie können keine weiteren anlegen!</translation>
    </message>
    <message>
        <source>Tapestry station can not be deleted!</source>
        <translation>Der Tapestry-Sender kann nicht gelöscht werden!</translation>
    </message>
    <message>
        <source>Are you sure you want to delete station: 
</source>
        <translation>Möchten Sie diesen Sender wirklich löschen: 
</translation>
    </message>
    <message>
        <source> ?</source>
        <translation>?</translation>
    </message>
    <message>
        <source>This station can not be deleted!</source>
        <translation>Dieser Sender kann nicht gelöscht werden!</translation>
    </message>
    <message>
        <source>Delete station...</source>
        <translation>Sender wird gelöscht...</translation>
    </message>
    <message>
        <source>Sorry.Delete station failed,you could try aganin.</source>
        <translation>Der Sender konnte leider nicht gelöscht werden, bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Delete station failed ,please try later!</source>
        <translation>Der Sender konnte nicht gelöscht werden, bitte versuchen Sie es später!</translation>
    </message>
    <message>
        <source>Tapestry station can not be renamed!</source>
        <translation>Der Tapestry-Sender kann nicht umbenannt werden!</translation>
    </message>
    <message>
        <source>Are you sure you want to rename station: 
</source>
        <translation>Möchten Sie diesen Sender wirklich umbenennen: 
</translation>
    </message>
    <message>
        <source>A share station cannot be renamed!</source>
        <translation>Ein geteilter Sender kann nicht umbenannt werden!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Musik wird geladen...</translation>
    </message>
    <message>
        <source>Play the track failed,System occurs error!</source>
        <translation>Der Titel kann nicht gespielt werden, ein Systemfehler ist aufgetreten!</translation>
    </message>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>Ein Netzwerkfehler ist aufgetreten. Bitte prüfen Sie Ihre Netzwerkverbindung und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Get playlist failed,you could try again!</source>
        <translation>Die Titelfolge konnte nicht geladen werden, bitte versuchen Sie es noch einmal!</translation>
    </message>
    <message>
        <source>Get play list failed ,please try later!</source>
        <translation>Die Titelfolge konnte nicht geladen werden, bitte versuchen Sie es später!</translation>
    </message>
    <message>
        <source>Get Ad metadata failed!</source>
        <translation>Die Angaben zur Werbung konnten nicht geladen werden!</translation>
    </message>
    <message>
        <source>Get track data failed.Please try later!</source>
        <translation>Die Angaben zum Titel konnten nicht geladen werden. Bitte versuchen Sie es später!</translation>
    </message>
    <message>
        <source>Now playing...</source>
        <translation>Dieser Sender läuft bereits...</translation>
    </message>
</context>
<context>
    <name>VelmoraParentWidget</name>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>Ein Netzwerkfehler ist aufgetreten. Bitte prüfen Sie Ihre Netzwerkverbindung und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Velmora is conducting system maintenance. You will be able to listen to existing stations while they work on their systems, but you won&apos;t be able to create new stations, submit feedback or edit your account in any way until the maintenance is complete. Thanks for your patience.</source>
        <translation>Velmora wird gerade gewartet. Ihre Sender können Sie weiter hören, aber bis zum Ende der Wartung keine neuen Sender anlegen, keine Titel bewerten und Ihr Konto nicht ändern. Vielen Dank für Ihre Geduld.</translation>
    </message>
    <message>
        <source>Sorry,this token is invalid now .Please contact Velmora listener support at </source>
        <translation>Diese Anmeldung gilt leider nicht mehr. Bitte wenden Sie sich an die Velmora-Hörerhilfe: </translation>
    </message>
    <message>
        <source>Invalid username or password, please try again.</source>
        <translation>Benutzername oder Passwort ist falsch, bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Sorry,this account is no longer active.Please contact Velmora listener support at </source>
        <translation>Dieses Konto ist leider nicht mehr aktiv. Bitte wenden Sie sich an die Velmora-Hörerhilfe: </translation>
    </message>
    <message>
        <source>Sorry,this account is authorized.Please contact Velmora listener support at </source>
        <translation>Dieses Konto ist leider nicht zugelassen. Bitte wenden Sie sich an die Velmora-Hörerhilfe: </translation>
    </message>
    <message>
        <source>Sorry, Max stations Reached, create station failed.</source>
        <translation>Die Höchstzahl an Sendern ist leider erreicht, der Sender konnte nicht angelegt werden.</translation>
    </message>
    <message>
        <source>Station does not exist.</source>
        <translation>Diesen Sender gibt es nicht.</translation>
    </message>
    <message>
        <source>Invalid username</source>
        <translation>Ungültiger Benutzername</translation>
    </message>
    <message>
        <source>Invalid password</source>
        <translation>Ungültiges Passwort</translation>
    </message>
    <message>
        <source>NULL</source>
        <translation>NULL</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Musik wird geladen...</translation>
    </message>
    <message>
        <source>You have reached the last window.</source>
        <translation>Das ist das letzte Fenster. </translation>
    </message>
    <message>
        <source>Are you sure you want to exit Velmora? </source>
        <translation>Möchten Sie Velmora wirklich beenden? </translation>
    </message>
    <message>
        <source>    Are you still there ? </source>
        <translation>    Sind Sie noch da? </translation>
    </message>
    <message>
        <source>Unable to connect to network.</source>
        <translation>Keine Verbindung zum Netzwerk.</translation>
    </message>
    <message>
        <source>There may be network congestion.</source>
        <translation>Das Netzwerk ist vielleicht überlastet.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Interpret</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>Titel</translation>
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
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Welcome to Velmora</source>
        <translation>Willkommen bei Velmora</translation>
    </message>
    <message>
        <source>To experience free personalized radio playing only the music you love
you will need to activate Velmora on this device.

Please select “Activate Velmora” below.</source>
        <translation>Damit Ihr persönliches Radio kostenlos nur Musik spielt, die Sie lieben,
aktivieren Sie bitte Velmora auf diesem Gerät.

Wählen Sie dazu unten „Velmora aktivieren“.</translation>
    </message>
    <message>
        <source>Activate Velmora</source>
        <translation>Velmora aktivieren</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>You have reached the last window.Are you sure you want to exit Velmora? 
</source>
        <translation>Das ist das letzte Fenster. Möchten Sie Velmora wirklich beenden? 
</translation>
    </message>
</context>
<context>
    <name>WhyDlg</name>
    <message>
        <source>Why is this track playing?</source>
        <translation>Warum läuft dieser Titel?</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>home::AboutPane</name>
    <message>
        <source>About</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Nothing has gone wrong.</source>
        <translation>Es ist nichts schiefgegangen.</translation>
    </message>
    <message>
        <source>Things that went wrong: %1. A report helps to find out why.</source>
        <translation>Fehler bisher: %1. Ein Bericht hilft, den Grund zu finden.</translation>
    </message>
    <message>
        <source>Save a report to a USB stick</source>
        <translation>Bericht auf einen USB-Stick speichern</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Bericht</translation>
    </message>
    <message>
        <source>Velmora</source>
        <translation>Velmora</translation>
    </message>
    <message>
        <source>System</source>
        <translation>System</translation>
    </message>
    <message>
        <source>The report cannot be saved. %1</source>
        <translation>Der Bericht kann nicht gespeichert werden. %1</translation>
    </message>
    <message>
        <source>The report is saved: %1</source>
        <translation>Der Bericht ist gespeichert: %1</translation>
    </message>
    <message>
        <source>There is not enough room, or the stick is damaged.</source>
        <translation>Der Platz reicht nicht, oder der Stick ist beschädigt.</translation>
    </message>
    <message>
        <source>The stick can be taken out.</source>
        <translation>Der Stick kann jetzt abgezogen werden.</translation>
    </message>
    <message>
        <source>Saving the report...</source>
        <translation>Der Bericht wird gespeichert...</translation>
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
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Zeichen/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Groß</translation>
    </message>
    <message>
        <source>Radio</source>
        <translation>Radio</translation>
    </message>
    <message>
        <source>Select starts the radio.</source>
        <translation>Auswahl startet das Radio.</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 Prozent</translation>
    </message>
    <message>
        <source>silent</source>
        <translation>stumm</translation>
    </message>
    <message>
        <source>All tracks equally loud</source>
        <translation>Alle Titel gleich laut</translation>
    </message>
    <message>
        <source>Keys click</source>
        <translation>Tasten klicken</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
    <message>
        <source>How loud the radio plays. The volume keys change it while music plays.</source>
        <translation>Wie laut das Radio spielt. Während Musik läuft, ändern es auch die Lautstärketasten.</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>nach %n Minute</numerusform>
            <numerusform>nach %n Minuten</numerusform>
        </translation>
    </message>
    <message>
        <source>never</source>
        <translation>nie</translation>
    </message>
    <message>
        <source>Read aloud what has the focus</source>
        <translation>Ausgewähltes vorlesen</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Bildschirm</translation>
    </message>
    <message>
        <source>When nobody presses a key while music plays, the picture dims.</source>
        <translation>Wenn bei laufender Musik niemand eine Taste drückt, wird das Bild dunkler.</translation>
    </message>
    <message>
        <source>Switch off</source>
        <translation>Ausschalten</translation>
    </message>
    <message>
        <source>The device switches off.</source>
        <translation>Das Gerät wird ausgeschaltet.</translation>
    </message>
    <message>
        <source>Switch off now</source>
        <translation>Jetzt ausschalten</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>Neu starten</translation>
    </message>
    <message>
        <source>The device restarts. The radio comes back by itself.</source>
        <translation>Das Gerät startet neu. Das Radio kommt von selbst wieder.</translation>
    </message>
    <message>
        <source>Restart now</source>
        <translation>Jetzt neu starten</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Ends the radio and Home.</source>
        <translation>Beendet das Radio und Home.</translation>
    </message>
    <message>
        <source>Quit now</source>
        <translation>Jetzt beenden</translation>
    </message>
    <message>
        <source>%1, chosen</source>
        <translation>%1, ausgewählt</translation>
    </message>
    <message>
        <source>Larger picture</source>
        <translation>Größeres Bild</translation>
    </message>
    <message>
        <source>A larger picture is drawn from the next start of the radio or of Home.</source>
        <translation>Das größere Bild kommt mit dem nächsten Start des Radios oder von Home.</translation>
    </message>
</context>
<context>
    <name>home::LanguagePane</name>
    <message>
        <source>As the system is set up</source>
        <translation>Wie im System eingestellt</translation>
    </message>
    <message>
        <source>Language and region</source>
        <translation>Sprache und Region</translation>
    </message>
    <message>
        <source>The language of all texts, and how dates, times and numbers are written.</source>
        <translation>Die Sprache aller Texte und die Schreibweise von Datum, Uhrzeit und Zahlen.</translation>
    </message>
    <message>
        <source>The time zone is that of the system.</source>
        <translation>Die Zeitzone ist die des Systems.</translation>
    </message>
    <message>
        <source>The time zone cannot be changed. %1</source>
        <translation>Die Zeitzone lässt sich nicht ändern. %1</translation>
    </message>
    <message>
        <source>Time zone</source>
        <translation>Zeitzone</translation>
    </message>
</context>
<context>
    <name>home::MenuCommand</name>
    <message>
        <source>There is no menu system.</source>
        <translation>Es gibt kein Menüsystem.</translation>
    </message>
</context>
<context>
    <name>home::NetworkPane</name>
    <message>
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>Connected to %1.</source>
        <translation>Verbunden mit %1.</translation>
    </message>
    <message>
        <source>This Wi-Fi cannot be used: the password is wrong, or it is too far away. %1</source>
        <translation>Dieses WLAN geht nicht: Das Passwort ist falsch, oder es ist zu weit entfernt. %1</translation>
    </message>
    <message>
        <source>Looking at the network...</source>
        <translation>Das Netzwerk wird geprüft...</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>nicht verbunden</translation>
    </message>
    <message>
        <source>no address</source>
        <translation>keine Adresse</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 Prozent</translation>
    </message>
    <message>
        <source>%1 percent, open</source>
        <translation>%1 Prozent, offen</translation>
    </message>
    <message>
        <source>Password of %1</source>
        <translation>Passwort von %1</translation>
    </message>
    <message>
        <source>A Wi-Fi password has at least %1 characters.</source>
        <translation>Ein WLAN-Passwort hat mindestens %1 Zeichen.</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>Verbindung mit %1...</translation>
    </message>
    <message>
        <source>All is well: the service answers.</source>
        <translation>Alles in Ordnung: Der Dienst antwortet.</translation>
    </message>
    <message>
        <source>The service runs on this device, without the network. %1</source>
        <translation>Der Dienst läuft auf diesem Gerät, ohne das Netzwerk. %1</translation>
    </message>
    <message>
        <source>This device has no network card.</source>
        <translation>Dieses Gerät hat keine Netzwerkkarte.</translation>
    </message>
    <message>
        <source>No cable is plugged in, and no Wi-Fi is connected.</source>
        <translation>Es steckt kein Kabel, und kein WLAN ist verbunden.</translation>
    </message>
    <message>
        <source>The device is connected, but the router gives it no address. Restarting the router may help.</source>
        <translation>Das Gerät ist verbunden, aber der Router gibt ihm keine Adresse. Ein Neustart des Routers kann helfen.</translation>
    </message>
    <message>
        <source>The router leads to no other network, and the service is not found in this one.</source>
        <translation>Der Router führt in kein anderes Netz, und in diesem ist der Dienst nicht zu finden.</translation>
    </message>
    <message>
        <source>The network is there, but nobody knows the name of the service. Either the name is wrong, or the internet is away.</source>
        <translation>Das Netzwerk ist da, aber niemand kennt den Namen des Dienstes. Entweder ist der Name falsch, oder das Internet fehlt.</translation>
    </message>
    <message>
        <source>The network is there, but the service does not answer. Either it does not run, or the internet is away.</source>
        <translation>Das Netzwerk ist da, aber der Dienst antwortet nicht. Entweder läuft er nicht, oder das Internet fehlt.</translation>
    </message>
    <message>
        <source>The network is there. %1</source>
        <translation>Das Netzwerk ist da. %1</translation>
    </message>
</context>
<context>
    <name>home::NoticePage</name>
    <message>
        <source>One moment</source>
        <translation>Einen Moment</translation>
    </message>
    <message>
        <source>The radio needs a key</source>
        <translation>Das Radio braucht einen Tastendruck</translation>
    </message>
    <message>
        <source>The radio has stopped</source>
        <translation>Das Radio ist stehen geblieben</translation>
    </message>
    <message>
        <source>The radio cannot reach its service. It starts again as soon as it can.</source>
        <translation>Das Radio erreicht seinen Dienst nicht. Es startet wieder, sobald es kann.</translation>
    </message>
    <message>
        <source>The radio has failed several times although its service answers.</source>
        <translation>Das Radio ist mehrmals gescheitert, obwohl sein Dienst antwortet.</translation>
    </message>
    <message>
        <source>The radio has failed several times. Home, About keeps the reports.</source>
        <translation>Das Radio ist mehrmals gescheitert. Die Berichte stehen in Home unter Info.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Erneut versuchen</translation>
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
        <translation>Tonausgabe</translation>
    </message>
    <message>
        <source>Where the music comes out. The radio uses it from its next start.</source>
        <translation>Wo die Musik herauskommt. Das Radio benutzt es ab seinem nächsten Start.</translation>
    </message>
    <message>
        <source>The usual one</source>
        <translation>Die übliche</translation>
    </message>
</context>
<context>
    <name>home::PhonesPane</name>
    <message>
        <source>Phones</source>
        <translation>Telefone</translation>
    </message>
    <message>
        <source>The service runs on this device and only for it. To reach it from a telephone, start it so that it listens in the home network; its manual says how.</source>
        <translation>Der Dienst läuft auf diesem Gerät und nur für es. Damit ein Telefon ihn erreicht, starten Sie ihn für das Heimnetz; seine Anleitung sagt, wie.</translation>
    </message>
    <message>
        <source>Open this address in the browser of a telephone in the same network: to link a radio, to manage your account, or to use the telephone as a remote control and keyboard.</source>
        <translation>Öffnen Sie diese Adresse im Browser eines Telefons im selben Netz: um ein Radio zu verbinden, Ihr Konto zu verwalten oder das Telefon als Fernbedienung und Tastatur zu benutzen.</translation>
    </message>
</context>
<context>
    <name>home::ServiceHealth</name>
    <message>
        <source>The service answers.</source>
        <translation>Der Dienst antwortet.</translation>
    </message>
    <message>
        <source>No service is set up. Choose one under Service.</source>
        <translation>Kein Dienst ist eingestellt. Wählen Sie einen unter Dienst.</translation>
    </message>
    <message>
        <source>Nobody knows the name of the service.</source>
        <translation>Niemand kennt den Namen des Dienstes.</translation>
    </message>
    <message>
        <source>The service does not answer.</source>
        <translation>Der Dienst antwortet nicht.</translation>
    </message>
    <message>
        <source>The certificate of the service is not valid.</source>
        <translation>Das Zertifikat des Dienstes ist nicht gültig.</translation>
    </message>
    <message>
        <source>The service answers with an error.</source>
        <translation>Der Dienst antwortet mit einem Fehler.</translation>
    </message>
    <message>
        <source>What answers at this address is not the service.</source>
        <translation>Was an dieser Adresse antwortet, ist nicht der Dienst.</translation>
    </message>
</context>
<context>
    <name>home::ServicePane</name>
    <message>
        <source>Service</source>
        <translation>Dienst</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>Test it</source>
        <translation>Prüfen</translation>
    </message>
    <message>
        <source>The radio was started for this service</source>
        <translation>Das Radio wurde für diesen Dienst gestartet</translation>
    </message>
    <message>
        <source>Use another one</source>
        <translation>Einen anderen benutzen</translation>
    </message>
    <message>
        <source>Use the one of this device</source>
        <translation>Den dieses Geräts benutzen</translation>
    </message>
    <message>
        <source>Asking the service...</source>
        <translation>Der Dienst wird gefragt...</translation>
    </message>
    <message>
        <source>Address of the service</source>
        <translation>Adresse des Dienstes</translation>
    </message>
    <message>
        <source>No service is set up. Choose the one of your house, or type its address.</source>
        <translation>Kein Dienst ist eingerichtet. Wählen Sie den Ihres Hauses, oder geben Sie seine Adresse ein.</translation>
    </message>
    <message>
        <source>Fingerprint</source>
        <translation>Fingerabdruck</translation>
    </message>
    <message>
        <source>Use this service</source>
        <translation>Diesen Dienst verwenden</translation>
    </message>
    <message>
        <source>Do not use it</source>
        <translation>Nicht verwenden</translation>
    </message>
    <message>
        <source>Compare the fingerprint with the one on the service&apos;s own page, /house. If they differ, something else pretends to be the service.</source>
        <translation>Vergleichen Sie den Fingerabdruck mit dem auf der Seite /house des Dienstes. Ist er ein anderer, gibt sich etwas anderes als der Dienst aus.</translation>
    </message>
    <message>
        <source>The service answers, and its certificate is valid.</source>
        <translation>Der Dienst antwortet, und sein Zertifikat ist gültig.</translation>
    </message>
    <message>
        <source>The service answers, but it is not encrypted: everybody in this network could read along.</source>
        <translation>Der Dienst antwortet, ist aber nicht verschlüsselt: Jeder in diesem Netz könnte mitlesen.</translation>
    </message>
</context>
<context>
    <name>home::SettingPane</name>
    <message>
        <source>This cannot be changed. %1</source>
        <translation>Das lässt sich nicht ändern. %1</translation>
    </message>
    <message>
        <source>on</source>
        <translation>ein</translation>
    </message>
    <message>
        <source>off</source>
        <translation>aus</translation>
    </message>
</context>
<context>
    <name>home::SleepPane</name>
    <message>
        <source>Sleep timer</source>
        <translation>Einschlaftimer</translation>
    </message>
    <message>
        <source>The sleep timer cannot be set. %1</source>
        <translation>Der Einschlaftimer lässt sich nicht stellen. %1</translation>
    </message>
    <message>
        <source>The music fades out and the screen turns black.</source>
        <translation>Die Musik wird leiser, dann wird der Bildschirm schwarz.</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes are left.</source>
        <translation>
            <numerusform>Noch %n Minute.</numerusform>
            <numerusform>Noch %n Minuten.</numerusform>
        </translation>
    </message>
    <message>
        <source>off</source>
        <translation>aus</translation>
    </message>
    <message>
        <source>after this track</source>
        <translation>nach diesem Titel</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>nach %n Minute</numerusform>
            <numerusform>nach %n Minuten</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>home::UsbStick</name>
    <message>
        <source>No USB stick is mounted, and nothing on this device mounts one (udisks2).</source>
        <translation>Es ist kein USB-Stick eingehängt, und nichts auf diesem Gerät hängt einen ein (udisks2).</translation>
    </message>
    <message>
        <source>There is no USB stick that can be written to. Put one in and choose this again.</source>
        <translation>Es gibt keinen beschreibbaren USB-Stick. Stecken Sie einen ein und wählen Sie dies noch einmal.</translation>
    </message>
    <message>
        <source>The USB stick cannot be used. %1</source>
        <translation>Der USB-Stick lässt sich nicht verwenden. %1</translation>
    </message>
</context>
<context>
    <name>netcommon::Speech</name>
    <message>
        <source>Stations and music</source>
        <translation>Sender und Musik</translation>
    </message>
    <message>
        <source>Choose an account</source>
        <translation>Konto auswählen</translation>
    </message>
    <message>
        <source>Activate this radio</source>
        <translation>Dieses Radio aktivieren</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Anmelden</translation>
    </message>
    <message>
        <source>Password reminder</source>
        <translation>Passwort vergessen</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>Willkommen</translation>
    </message>
    <message>
        <source>Create a station</source>
        <translation>Sender anlegen</translation>
    </message>
    <message>
        <source>Rename a station</source>
        <translation>Sender umbenennen</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Sender</translation>
    </message>
    <message>
        <source>Song history</source>
        <translation>Titelverlauf</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Treffer</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>Wiedergabe oder Pause</translation>
    </message>
    <message>
        <source>Next track</source>
        <translation>Nächster Titel</translation>
    </message>
    <message>
        <source>Thumbs down</source>
        <translation>Daumen runter</translation>
    </message>
    <message>
        <source>Thumbs up</source>
        <translation>Daumen hoch</translation>
    </message>
</context>
<context>
    <name>platform::DeviceSettings</name>
    <message>
        <source>more than 64 KiB</source>
        <translation>mehr als 64 KiB</translation>
    </message>
    <message>
        <source>its folder cannot be made</source>
        <translation>ihr Ordner kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>no permission to write</source>
        <translation>keine Schreibrechte</translation>
    </message>
    <message>
        <source>somebody else is writing it</source>
        <translation>jemand anders schreibt sie gerade</translation>
    </message>
</context>
</TS>
