<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About Velmora</source>
        <translation>Over Velmora</translation>
    </message>
    <message>
        <source>With Velmora you can explore this vast trove of music to your heart&apos;s content.
Just drop the name of one of your favorite songs or artists into Velmora and
let the Prism Project go.

It will quickly scan its entire world of analyzed music, almost a century of popular recordings - new and old, well known and completely obscure - to find songs with interesting musical similarities to your choice.

Then sit back and enjoy as it creates a listening experience full of current and soon-to-be favorite songs for you.</source>
        <translation>Met Velmora verkent u deze enorme schat aan muziek naar hartenlust.
Noem Velmora een nummer of artiest waar u van houdt
en laat het Prism Project zijn werk doen.

Het doorzoekt in een oogwenk zijn hele wereld van geanalyseerde muziek, bijna een eeuw aan opnamen – nieuw en oud, bekend en volstrekt onbekend – en vindt nummers die muzikaal op uw keuze lijken.

Leun dan achterover en geniet van uw favoriete nummers van nu en straks.</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>Klaar</translation>
    </message>
</context>
<context>
    <name>CreateStationDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Venster</translation>
    </message>
    <message>
        <source>Create a New Station</source>
        <translation>Nieuwe zender maken</translation>
    </message>
    <message>
        <source>Station List</source>
        <translation>Zenders</translation>
    </message>
    <message>
        <source>Tell us one of your favorite
artists and we&apos;ll create a
station that explores that
part of the music universe.</source>
        <translation>Noem een van uw favoriete
artiesten, dan maken wij
een zender die dat deel van
de muziek verkent.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Terug</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Tekens/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Hoofdl.</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Cijfers</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Artist Or Track</source>
        <translation>Artiest of nummer</translation>
    </message>
    <message>
        <source>Please enter an artist or track name to create a new station</source>
        <translation>Voer een artiest of nummer in om een nieuwe zender te maken</translation>
    </message>
    <message>
        <source>Search station failed!You could try again!</source>
        <translation>Zoeken is mislukt! Probeer het opnieuw!</translation>
    </message>
    <message>
        <source>Search...</source>
        <translation>Zoeken...</translation>
    </message>
    <message>
        <source>Search station failed,you could try again!</source>
        <translation>Zoeken is mislukt, probeer het opnieuw!</translation>
    </message>
    <message>
        <source>No result for </source>
        <translation>Geen resultaat voor </translation>
    </message>
    <message>
        <source>We found </source>
        <translation>Gevonden: </translation>
    </message>
    <message>
        <source> results by artists and </source>
        <translation> op artiest en </translation>
    </message>
    <message>
        <source> results by tracks.Which did you mean ?</source>
        <translation> op nummer. Wat bedoelde u?</translation>
    </message>
    <message>
        <source> by </source>
        <translation> van </translation>
    </message>
    <message>
        <source>Create station list failed ,please try later!</source>
        <translation>De zender kon niet worden gemaakt, probeer het later!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Muziek wordt geladen...</translation>
    </message>
    <message>
        <source>Create station failed,because system gets invalid data from Velmora!</source>
        <translation>De zender kon niet worden gemaakt: Velmora gaf ongeldige gegevens!</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>De zenderlijst kon niet worden geladen, probeer het later!</translation>
    </message>
    <message>
        <source>Artist or Song</source>
        <translation>Artiest of lied</translation>
    </message>
</context>
<context>
    <name>EmailPwdDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Venster</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>Mail wachtwoord</translation>
    </message>
    <message>
        <source>Please input you Email
address to get the password.</source>
        <translation>Voer uw e-mailadres in voor
het wachtwoord.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Terug</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Tekens/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Hoofdl.</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Cijfers</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Email passowrd...</source>
        <translation>Wachtwoord mailen...</translation>
    </message>
    <message>
        <source>Can not get the password because of system error!</source>
        <translation>Het wachtwoord kan niet worden opgehaald door een systeemfout!</translation>
    </message>
    <message>
        <source>Please check the email address your provided for instructions on retrieving your Velmora password.</source>
        <translation>Kijk in uw e-mail hoe u uw Velmora-wachtwoord terugkrijgt.</translation>
    </message>
</context>
<context>
    <name>InternetRadioDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Venster</translation>
    </message>
    <message>
        <source>Activation Code</source>
        <translation>Activeringscode</translation>
    </message>
    <message>
        <source>Please go to    </source>
        <translation>Ga naar    </translation>
    </message>
    <message>
        <source>and follow the instructions there to create a new account.</source>
        <translation>en volg daar de aanwijzingen om een account te maken.</translation>
    </message>
    <message>
        <source>Your activation code is:    </source>
        <translation>Uw activeringscode:    </translation>
    </message>
    <message>
        <source>When you are done with that, come back to this screen and click “continue.”</source>
        <translation>Bent u daarmee klaar, kies dan op dit scherm “Doorgaan”.</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Doorgaan</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Terug</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Even geduld...</translation>
    </message>
    <message>
        <source>Please activate your device to continue.</source>
        <translation>Activeer uw apparaat om door te gaan.</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>Aanmelden is mislukt, probeer het opnieuw!</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>Er kan geen activeringscode worden gemaakt!</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>De activeringscode kon niet worden gemaakt, probeer het opnieuw!</translation>
    </message>
</context>
<context>
    <name>KeyLayout</name>
    <message>
        <source>Clear</source>
        <translation>Leeg</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Spatie</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Wissen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Klaar</translation>
    </message>
    <message>
        <source>Keyboard</source>
        <translation>Toetsenbord</translation>
    </message>
</context>
<context>
    <name>LoadingDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Venster</translation>
    </message>
    <message>
        <source>Connect to Velmora failed!</source>
        <translation>Geen verbinding met Velmora!</translation>
    </message>
</context>
<context>
    <name>MenuDlg</name>
    <message>
        <source>Bookmark This Artist</source>
        <translation>Deze artiest onthouden</translation>
    </message>
    <message>
        <source>Bookmark This Track</source>
        <translation>Dit nummer onthouden</translation>
    </message>
    <message>
        <source>Do Not Play This Track For A Month</source>
        <translation>Dit nummer een maand niet spelen</translation>
    </message>
    <message>
        <source>Why Is This Track Playing</source>
        <translation>Waarom dit nummer</translation>
    </message>
    <message>
        <source>Create A New Station</source>
        <translation>Nieuwe zender maken</translation>
    </message>
    <message>
        <source>Delete This Station</source>
        <translation>Deze zender verwijderen</translation>
    </message>
    <message>
        <source>Rename This Station</source>
        <translation>Deze zender hernoemen</translation>
    </message>
    <message>
        <source>Switch User</source>
        <translation>Andere gebruiker</translation>
    </message>
    <message>
        <source>Exit Velmora</source>
        <translation>Velmora afsluiten</translation>
    </message>
    <message>
        <source>Close Menu</source>
        <translation>Menu sluiten</translation>
    </message>
</context>
<context>
    <name>MsgboxDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Venster</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
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
        <translation>Venster</translation>
    </message>
    <message>
        <source>Rename this station</source>
        <translation>Deze zender hernoemen</translation>
    </message>
    <message>
        <source>Tell us the new station name
and we&apos;ll update it in your
station list.</source>
        <translation>Geef de nieuwe naam op,
dan passen wij die aan in
uw zenderlijst.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Terug</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Tekens/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Hoofdl.</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Cijfers</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Rename station failed, no station name supplied.</source>
        <translation>De zender is niet hernoemd: er is geen naam ingevoerd.</translation>
    </message>
    <message>
        <source>Are you sure you want to rename this station as: 
</source>
        <translation>Wilt u deze zender echt hernoemen in: 
</translation>
    </message>
    <message>
        <source>Rename station failed,you could try again.</source>
        <translation>De zender kon niet worden hernoemd, probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Rename station...</source>
        <translation>Zender hernoemen...</translation>
    </message>
    <message>
        <source>Rename station list failed ,please try later!</source>
        <translation>De zender kon niet worden hernoemd, probeer het later!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Muziek wordt geladen...</translation>
    </message>
    <message>
        <source>Get station list failed!</source>
        <translation>De zenderlijst kon niet worden geladen!</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>De zenderlijst kon niet worden geladen, probeer het later!</translation>
    </message>
</context>
<context>
    <name>SelectUserDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Venster</translation>
    </message>
    <message>
        <source>Select or create Velmora account.</source>
        <translation>Kies of maak een Velmora-account.</translation>
    </message>
    <message>
        <source>New username</source>
        <translation>Nieuw account</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Terug</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Wissen</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Even geduld...</translation>
    </message>
    <message>
        <source>Do you already have a Velmora account ? </source>
        <translation>Hebt u al een Velmora-account? </translation>
    </message>
    <message>
        <source>We only keep max 5 accounts,you could delete one to continue.</source>
        <translation>Er zijn hoogstens 5 accounts mogelijk. Verwijder er een om door te gaan.</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>Er kan geen activeringscode worden gemaakt!</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>De activeringscode kon niet worden gemaakt, probeer het opnieuw!</translation>
    </message>
    <message>
        <source>Are you sure you want to delete the user: </source>
        <translation>Wilt u dit account echt verwijderen: </translation>
    </message>
    <message>
        <source>Delete User...</source>
        <translation>Account verwijderen...</translation>
    </message>
    <message>
        <source>Disassociate device failed because of network error. please try again later!</source>
        <translation>Het apparaat kon door een netwerkfout niet worden ontkoppeld. Probeer het later opnieuw!</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>Aanmelden is mislukt, probeer het opnieuw!</translation>
    </message>
</context>
<context>
    <name>SignInDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Venster</translation>
    </message>
    <message>
        <source>Sign in to your Velmora account</source>
        <translation>Aanmelden bij uw Velmora-account</translation>
    </message>
    <message>
        <source>Email:</source>
        <translation>E-mail:</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Wachtwoord:</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Terug</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Tekens/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Hoofdl.</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>Mail wachtwoord</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Enter your Velmora account...</source>
        <translation>Voer uw Velmora-account in...</translation>
    </message>
    <message>
        <source>No information was entered.Please try again.</source>
        <translation>Er is niets ingevoerd. Probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Even geduld...</translation>
    </message>
    <message>
        <source>Incorrect Login ,please try again!</source>
        <translation>Aanmelden is mislukt, probeer het opnieuw!</translation>
    </message>
</context>
<context>
    <name>VelmoraMainDlg</name>
    <message>
        <source>Station List</source>
        <translation>Zenders</translation>
    </message>
    <message>
        <source>AD</source>
        <translation>AD</translation>
    </message>
    <message>
        <source>Thumbs Down</source>
        <translation>Duim omlaag</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Volgende</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Afspelen</translation>
    </message>
    <message>
        <source>Thumbs Up</source>
        <translation>Duim omhoog</translation>
    </message>
    <message>
        <source>Artist:</source>
        <translation>Van:</translation>
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
        <translation>Geschiedenis</translation>
    </message>
    <message>
        <source>Station:</source>
        <translation>Zender:</translation>
    </message>
    <message>
        <source>Unfortunately,our music licenses force us to limit the number of tracks you may skip each hour.</source>
        <translation>Helaas beperken onze muzieklicenties het aantal nummers dat u per uur mag overslaan.</translation>
    </message>
    <message>
        <source>       Invalid operation for audio ads</source>
        <translation>       Niet mogelijk bij reclame</translation>
    </message>
    <message>
        <source>Thumbs up is not allowed on shared stations.</source>
        <translation>Duim omhoog kan niet bij gedeelde zenders.</translation>
    </message>
    <message>
        <source>Thumbs down is not allowed on shared stations.</source>
        <translation>Duim omlaag kan niet bij gedeelde zenders.</translation>
    </message>
    <message>
        <source>ThumbUp...</source>
        <translation>Duim omhoog...</translation>
    </message>
    <message>
        <source>Thumbs up track failed,you could try again.</source>
        <translation>Duim omhoog is mislukt, probeer het opnieuw.</translation>
    </message>
    <message>
        <source>ThumbDown...</source>
        <translation>Duim omlaag...</translation>
    </message>
    <message>
        <source>Thumbs down track failed,you could try again.</source>
        <translation>Duim omlaag is mislukt, probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Add feedback failed ,you could try again!</source>
        <translation>De beoordeling kon niet worden bewaard, probeer het opnieuw!</translation>
    </message>
    <message>
        <source>Sleep...</source>
        <translation>Nummer rust...</translation>
    </message>
    <message>
        <source>Sleep track failed,you could try again.</source>
        <translation>Het nummer kon niet rusten, probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Sleep track failed ,you could try later!</source>
        <translation>Het nummer kon niet rusten, probeer het later!</translation>
    </message>
    <message>
        <source>Bookmark artist failed,you could try again.</source>
        <translation>De artiest kon niet worden onthouden, probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Bookmark track failed,you could try again.</source>
        <translation>Het nummer kon niet worden onthouden, probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Add bookmark successful!</source>
        <translation>Onthouden!</translation>
    </message>
    <message>
        <source>Add bookmark failed ,please try later!</source>
        <translation>Onthouden is mislukt, probeer het later!</translation>
    </message>
    <message>
        <source>Explain track failed,you could try again.</source>
        <translation>De uitleg kon niet worden geladen, probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Explain track failed ,you could try again!</source>
        <translation>De uitleg kon niet worden geladen, probeer het opnieuw!</translation>
    </message>
    <message>
        <source>Based on what you&apos;ve told us so far, we&apos;re playing </source>
        <translation>Op grond van wat u ons tot nu toe vertelde, spelen wij </translation>
    </message>
    <message>
        <source> by </source>
        <translation> van </translation>
    </message>
    <message>
        <source> because it features </source>
        <translation> vanwege </translation>
    </message>
    <message>
        <source>Velmora only permits to create 100 stations,so you can not create more stations!</source>
        <translation>Velmora staat hoogstens 100 zenders toe, u kunt er geen meer maken!</translation>
    </message>
    <message>
        <source>Tapestry station can not be deleted!</source>
        <translation>De Tapestry-zender kan niet worden verwijderd!</translation>
    </message>
    <message>
        <source>Are you sure you want to delete station: 
</source>
        <translation>Wilt u deze zender echt verwijderen: 
</translation>
    </message>
    <message>
        <source> ?</source>
        <translation>?</translation>
    </message>
    <message>
        <source>This station can not be deleted!</source>
        <translation>Deze zender kan niet worden verwijderd!</translation>
    </message>
    <message>
        <source>Delete station...</source>
        <translation>Zender verwijderen...</translation>
    </message>
    <message>
        <source>Sorry.Delete station failed,you could try aganin.</source>
        <translation>De zender kon helaas niet worden verwijderd, probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Delete station failed ,please try later!</source>
        <translation>De zender kon niet worden verwijderd, probeer het later!</translation>
    </message>
    <message>
        <source>Tapestry station can not be renamed!</source>
        <translation>De Tapestry-zender kan niet worden hernoemd!</translation>
    </message>
    <message>
        <source>Are you sure you want to rename station: 
</source>
        <translation>Wilt u deze zender echt hernoemen: 
</translation>
    </message>
    <message>
        <source>A share station cannot be renamed!</source>
        <translation>Een gedeelde zender kan niet worden hernoemd!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Muziek wordt geladen...</translation>
    </message>
    <message>
        <source>Play the track failed,System occurs error!</source>
        <translation>Het nummer kan niet worden afgespeeld, er is een systeemfout!</translation>
    </message>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>Er is een netwerkfout opgetreden. Controleer uw netwerkverbinding en probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Get playlist failed,you could try again!</source>
        <translation>De afspeellijst kon niet worden geladen, probeer het opnieuw!</translation>
    </message>
    <message>
        <source>Get play list failed ,please try later!</source>
        <translation>De afspeellijst kon niet worden geladen, probeer het later!</translation>
    </message>
    <message>
        <source>Get Ad metadata failed!</source>
        <translation>De reclamegegevens konden niet worden geladen!</translation>
    </message>
    <message>
        <source>Get track data failed.Please try later!</source>
        <translation>De gegevens van het nummer konden niet worden geladen. Probeer het later!</translation>
    </message>
    <message>
        <source>Now playing...</source>
        <translation>Speelt al...</translation>
    </message>
</context>
<context>
    <name>VelmoraParentWidget</name>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>Er is een netwerkfout opgetreden. Controleer uw netwerkverbinding en probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Velmora is conducting system maintenance. You will be able to listen to existing stations while they work on their systems, but you won&apos;t be able to create new stations, submit feedback or edit your account in any way until the maintenance is complete. Thanks for your patience.</source>
        <translation>Aan Velmora wordt onderhoud gedaan. U kunt uw zenders beluisteren, maar tot het klaar is geen zenders maken, nummers beoordelen of uw account wijzigen. Dank voor uw geduld.</translation>
    </message>
    <message>
        <source>Sorry,this token is invalid now .Please contact Velmora listener support at </source>
        <translation>Deze aanmelding geldt helaas niet meer. Neem contact op met de Velmora-luisteraarshulp: </translation>
    </message>
    <message>
        <source>Invalid username or password, please try again.</source>
        <translation>Ongeldige naam of wachtwoord, probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Sorry,this account is no longer active.Please contact Velmora listener support at </source>
        <translation>Dit account is helaas niet meer actief. Neem contact op met de Velmora-luisteraarshulp: </translation>
    </message>
    <message>
        <source>Sorry,this account is authorized.Please contact Velmora listener support at </source>
        <translation>Dit account is helaas niet toegelaten. Neem contact op met de Velmora-luisteraarshulp: </translation>
    </message>
    <message>
        <source>Sorry, Max stations Reached, create station failed.</source>
        <translation>Het hoogste aantal zenders is bereikt, de zender is niet gemaakt.</translation>
    </message>
    <message>
        <source>Station does not exist.</source>
        <translation>Deze zender bestaat niet.</translation>
    </message>
    <message>
        <source>Invalid username</source>
        <translation>Ongeldige gebruikersnaam</translation>
    </message>
    <message>
        <source>Invalid password</source>
        <translation>Ongeldig wachtwoord</translation>
    </message>
    <message>
        <source>NULL</source>
        <translation>NULL</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Muziek wordt geladen...</translation>
    </message>
    <message>
        <source>You have reached the last window.</source>
        <translation>Dit is het laatste venster. </translation>
    </message>
    <message>
        <source>Are you sure you want to exit Velmora? </source>
        <translation>Wilt u Velmora echt afsluiten? </translation>
    </message>
    <message>
        <source>    Are you still there ? </source>
        <translation>    Bent u er nog? </translation>
    </message>
    <message>
        <source>Unable to connect to network.</source>
        <translation>Geen verbinding met het netwerk.</translation>
    </message>
    <message>
        <source>There may be network congestion.</source>
        <translation>Het netwerk is misschien overbelast.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nee</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Artiest</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>Nummer</translation>
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
        <translation>Venster</translation>
    </message>
    <message>
        <source>Welcome to Velmora</source>
        <translation>Welkom bij Velmora</translation>
    </message>
    <message>
        <source>To experience free personalized radio playing only the music you love
you will need to activate Velmora on this device.

Please select “Activate Velmora” below.</source>
        <translation>Voor een gratis persoonlijke radio met alleen de muziek waar u van houdt,
activeert u Velmora op dit apparaat.

Kies hieronder “Velmora activeren”.</translation>
    </message>
    <message>
        <source>Activate Velmora</source>
        <translation>Velmora activeren</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Terug</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>You have reached the last window.Are you sure you want to exit Velmora? 
</source>
        <translation>Dit is het laatste venster. Wilt u Velmora echt afsluiten? 
</translation>
    </message>
</context>
<context>
    <name>WhyDlg</name>
    <message>
        <source>Why is this track playing?</source>
        <translation>Waarom dit nummer?</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>Klaar</translation>
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
        <translation>Er is niets misgegaan.</translation>
    </message>
    <message>
        <source>Things that went wrong: %1. A report helps to find out why.</source>
        <translation>Fouten: %1. Een rapport helpt de oorzaak te vinden.</translation>
    </message>
    <message>
        <source>Save a report to a USB stick</source>
        <translation>Rapport op een USB-stick bewaren</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Rapport</translation>
    </message>
    <message>
        <source>Velmora</source>
        <translation>Velmora</translation>
    </message>
    <message>
        <source>System</source>
        <translation>Systeem</translation>
    </message>
    <message>
        <source>The report cannot be saved. %1</source>
        <translation>Het rapport kan niet worden bewaard. %1</translation>
    </message>
    <message>
        <source>The report is saved: %1</source>
        <translation>Het rapport is bewaard: %1</translation>
    </message>
    <message>
        <source>There is not enough room, or the stick is damaged.</source>
        <translation>Er is te weinig ruimte, of de stick is beschadigd.</translation>
    </message>
    <message>
        <source>The stick can be taken out.</source>
        <translation>De stick kan eruit.</translation>
    </message>
    <message>
        <source>Saving the report...</source>
        <translation>Het rapport wordt opgeslagen...</translation>
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
        <translation>Terug</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Tekens/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Hoofdl.</translation>
    </message>
    <message>
        <source>Radio</source>
        <translation>Radio</translation>
    </message>
    <message>
        <source>Select starts the radio.</source>
        <translation>De keuzetoets start de radio.</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 procent</translation>
    </message>
    <message>
        <source>silent</source>
        <translation>stil</translation>
    </message>
    <message>
        <source>All tracks equally loud</source>
        <translation>Alle nummers even hard</translation>
    </message>
    <message>
        <source>Keys click</source>
        <translation>Toetsen klikken</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>How loud the radio plays. The volume keys change it while music plays.</source>
        <translation>Hoe hard de radio speelt. Tijdens muziek veranderen de volumetoetsen dit.</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>na %n minuut</numerusform>
            <numerusform>na %n minuten</numerusform>
        </translation>
    </message>
    <message>
        <source>never</source>
        <translation>nooit</translation>
    </message>
    <message>
        <source>Read aloud what has the focus</source>
        <translation>Keuze voorlezen</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Scherm</translation>
    </message>
    <message>
        <source>When nobody presses a key while music plays, the picture dims.</source>
        <translation>Als niemand tijdens muziek een toets indrukt, wordt het beeld donkerder.</translation>
    </message>
    <message>
        <source>Switch off</source>
        <translation>Uitschakelen</translation>
    </message>
    <message>
        <source>The device switches off.</source>
        <translation>Het apparaat gaat uit.</translation>
    </message>
    <message>
        <source>Switch off now</source>
        <translation>Nu uitschakelen</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>Herstarten</translation>
    </message>
    <message>
        <source>The device restarts. The radio comes back by itself.</source>
        <translation>Het apparaat herstart. De radio komt vanzelf terug.</translation>
    </message>
    <message>
        <source>Restart now</source>
        <translation>Nu herstarten</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Afsluiten</translation>
    </message>
    <message>
        <source>Ends the radio and Home.</source>
        <translation>Sluit de radio en Home af.</translation>
    </message>
    <message>
        <source>Quit now</source>
        <translation>Nu afsluiten</translation>
    </message>
    <message>
        <source>%1, chosen</source>
        <translation>%1, gekozen</translation>
    </message>
    <message>
        <source>Larger picture</source>
        <translation>Groter beeld</translation>
    </message>
    <message>
        <source>A larger picture is drawn from the next start of the radio or of Home.</source>
        <translation>Het grotere beeld geldt vanaf de volgende start van de radio of van Home.</translation>
    </message>
</context>
<context>
    <name>home::LanguagePane</name>
    <message>
        <source>As the system is set up</source>
        <translation>Zoals het systeem</translation>
    </message>
    <message>
        <source>Language and region</source>
        <translation>Taal en regio</translation>
    </message>
    <message>
        <source>The language of all texts, and how dates, times and numbers are written.</source>
        <translation>De taal van alle teksten, en hoe datum, tijd en getallen worden geschreven.</translation>
    </message>
    <message>
        <source>The time zone is that of the system.</source>
        <translation>De tijdzone is die van het systeem.</translation>
    </message>
    <message>
        <source>The time zone cannot be changed. %1</source>
        <translation>De tijdzone kan niet worden gewijzigd. %1</translation>
    </message>
    <message>
        <source>Time zone</source>
        <translation>Tijdzone</translation>
    </message>
</context>
<context>
    <name>home::MenuCommand</name>
    <message>
        <source>There is no menu system.</source>
        <translation>Er is geen menusysteem.</translation>
    </message>
</context>
<context>
    <name>home::NetworkPane</name>
    <message>
        <source>Network</source>
        <translation>Netwerk</translation>
    </message>
    <message>
        <source>Connected to %1.</source>
        <translation>Verbonden met %1.</translation>
    </message>
    <message>
        <source>This Wi-Fi cannot be used: the password is wrong, or it is too far away. %1</source>
        <translation>Deze wifi werkt niet: het wachtwoord is fout, of hij is te ver weg. %1</translation>
    </message>
    <message>
        <source>Looking at the network...</source>
        <translation>Netwerk bekijken...</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>niet verbonden</translation>
    </message>
    <message>
        <source>no address</source>
        <translation>geen adres</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 procent</translation>
    </message>
    <message>
        <source>%1 percent, open</source>
        <translation>%1 procent, open</translation>
    </message>
    <message>
        <source>Password of %1</source>
        <translation>Wachtwoord van %1</translation>
    </message>
    <message>
        <source>A Wi-Fi password has at least %1 characters.</source>
        <translation>Een wifi-wachtwoord heeft minstens %1 tekens.</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>Verbinden met %1...</translation>
    </message>
    <message>
        <source>All is well: the service answers.</source>
        <translation>Alles in orde: de dienst antwoordt.</translation>
    </message>
    <message>
        <source>The service runs on this device, without the network. %1</source>
        <translation>De dienst draait op dit apparaat, zonder het netwerk. %1</translation>
    </message>
    <message>
        <source>This device has no network card.</source>
        <translation>Dit apparaat heeft geen netwerkkaart.</translation>
    </message>
    <message>
        <source>No cable is plugged in, and no Wi-Fi is connected.</source>
        <translation>Er zit geen kabel in, en er is geen wifi verbonden.</translation>
    </message>
    <message>
        <source>The device is connected, but the router gives it no address. Restarting the router may help.</source>
        <translation>Het apparaat is verbonden, maar de router geeft het geen adres. De router herstarten kan helpen.</translation>
    </message>
    <message>
        <source>The router leads to no other network, and the service is not found in this one.</source>
        <translation>De router leidt naar geen ander netwerk, en in dit netwerk is de dienst niet te vinden.</translation>
    </message>
    <message>
        <source>The network is there, but nobody knows the name of the service. Either the name is wrong, or the internet is away.</source>
        <translation>Het netwerk is er, maar niemand kent de naam van de dienst. De naam is fout, of het internet is weg.</translation>
    </message>
    <message>
        <source>The network is there, but the service does not answer. Either it does not run, or the internet is away.</source>
        <translation>Het netwerk is er, maar de dienst antwoordt niet. Hij draait niet, of het internet is weg.</translation>
    </message>
    <message>
        <source>The network is there. %1</source>
        <translation>Het netwerk is er. %1</translation>
    </message>
</context>
<context>
    <name>home::NoticePage</name>
    <message>
        <source>One moment</source>
        <translation>Een ogenblik</translation>
    </message>
    <message>
        <source>The radio needs a key</source>
        <translation>De radio wacht op een toets</translation>
    </message>
    <message>
        <source>The radio has stopped</source>
        <translation>De radio is gestopt</translation>
    </message>
    <message>
        <source>The radio cannot reach its service. It starts again as soon as it can.</source>
        <translation>De radio kan zijn dienst niet bereiken. Hij start weer zodra het kan.</translation>
    </message>
    <message>
        <source>The radio has failed several times although its service answers.</source>
        <translation>De radio is meermaals mislukt, hoewel zijn dienst antwoordt.</translation>
    </message>
    <message>
        <source>The radio has failed several times. Home, About keeps the reports.</source>
        <translation>De radio is meermaals mislukt. De rapporten staan in Home, Info.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Opnieuw</translation>
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
        <translation>Geluidsuitvoer</translation>
    </message>
    <message>
        <source>Where the music comes out. The radio uses it from its next start.</source>
        <translation>Waar de muziek uitkomt. De radio gebruikt dit vanaf de volgende start.</translation>
    </message>
    <message>
        <source>The usual one</source>
        <translation>De gewone</translation>
    </message>
</context>
<context>
    <name>home::PhonesPane</name>
    <message>
        <source>Phones</source>
        <translation>Telefoons</translation>
    </message>
    <message>
        <source>The service runs on this device and only for it. To reach it from a telephone, start it so that it listens in the home network; its manual says how.</source>
        <translation>De dienst draait op dit apparaat en alleen hiervoor. Start hem voor het thuisnetwerk om hem met een telefoon te bereiken; de handleiding zegt hoe.</translation>
    </message>
    <message>
        <source>Open this address in the browser of a telephone in the same network: to link a radio, to manage your account, or to use the telephone as a remote control and keyboard.</source>
        <translation>Open dit adres in de browser van een telefoon in hetzelfde netwerk: om een radio te koppelen, uw account te beheren of de telefoon als afstandsbediening en toetsenbord te gebruiken.</translation>
    </message>
</context>
<context>
    <name>home::ServiceHealth</name>
    <message>
        <source>The service answers.</source>
        <translation>De dienst antwoordt.</translation>
    </message>
    <message>
        <source>No service is set up. Choose one under Service.</source>
        <translation>Er is geen dienst ingesteld. Kies er een onder Dienst.</translation>
    </message>
    <message>
        <source>Nobody knows the name of the service.</source>
        <translation>Niemand kent de naam van de dienst.</translation>
    </message>
    <message>
        <source>The service does not answer.</source>
        <translation>De dienst antwoordt niet.</translation>
    </message>
    <message>
        <source>The certificate of the service is not valid.</source>
        <translation>Het certificaat van de dienst is niet geldig.</translation>
    </message>
    <message>
        <source>The service answers with an error.</source>
        <translation>De dienst antwoordt met een fout.</translation>
    </message>
    <message>
        <source>What answers at this address is not the service.</source>
        <translation>Wat op dit adres antwoordt, is niet de dienst.</translation>
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
        <translation>Adres</translation>
    </message>
    <message>
        <source>none</source>
        <translation>geen</translation>
    </message>
    <message>
        <source>Test it</source>
        <translation>Testen</translation>
    </message>
    <message>
        <source>The radio was started for this service</source>
        <translation>De radio is voor deze dienst gestart</translation>
    </message>
    <message>
        <source>Use another one</source>
        <translation>Een andere gebruiken</translation>
    </message>
    <message>
        <source>Use the one of this device</source>
        <translation>Die van dit apparaat gebruiken</translation>
    </message>
    <message>
        <source>Asking the service...</source>
        <translation>De dienst wordt gevraagd...</translation>
    </message>
    <message>
        <source>Address of the service</source>
        <translation>Adres van de dienst</translation>
    </message>
    <message>
        <source>No service is set up. Choose the one of your house, or type its address.</source>
        <translation>Er is geen dienst ingesteld. Kies die van uw huis, of typ het adres.</translation>
    </message>
    <message>
        <source>Fingerprint</source>
        <translation>Vingerafdruk</translation>
    </message>
    <message>
        <source>Use this service</source>
        <translation>Deze dienst gebruiken</translation>
    </message>
    <message>
        <source>Do not use it</source>
        <translation>Niet gebruiken</translation>
    </message>
    <message>
        <source>Compare the fingerprint with the one on the service&apos;s own page, /house. If they differ, something else pretends to be the service.</source>
        <translation>Vergelijk de vingerafdruk met die op de pagina /house van de dienst. Verschillen ze, dan doet iets anders zich voor als de dienst.</translation>
    </message>
    <message>
        <source>The service answers, and its certificate is valid.</source>
        <translation>De dienst antwoordt en het certificaat is geldig.</translation>
    </message>
    <message>
        <source>The service answers, but it is not encrypted: everybody in this network could read along.</source>
        <translation>De dienst antwoordt, maar is niet versleuteld: iedereen in dit netwerk kan meelezen.</translation>
    </message>
</context>
<context>
    <name>home::SettingPane</name>
    <message>
        <source>This cannot be changed. %1</source>
        <translation>Dit kan niet worden veranderd. %1</translation>
    </message>
    <message>
        <source>on</source>
        <translation>aan</translation>
    </message>
    <message>
        <source>off</source>
        <translation>uit</translation>
    </message>
</context>
<context>
    <name>home::SleepPane</name>
    <message>
        <source>Sleep timer</source>
        <translation>Slaaptimer</translation>
    </message>
    <message>
        <source>The sleep timer cannot be set. %1</source>
        <translation>De slaaptimer kan niet worden ingesteld. %1</translation>
    </message>
    <message>
        <source>The music fades out and the screen turns black.</source>
        <translation>De muziek sterft weg en het scherm wordt zwart.</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes are left.</source>
        <translation>
            <numerusform>Nog %n minuut.</numerusform>
            <numerusform>Nog %n minuten.</numerusform>
        </translation>
    </message>
    <message>
        <source>off</source>
        <translation>uit</translation>
    </message>
    <message>
        <source>after this track</source>
        <translation>na dit nummer</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>na %n minuut</numerusform>
            <numerusform>na %n minuten</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>home::UsbStick</name>
    <message>
        <source>No USB stick is mounted, and nothing on this device mounts one (udisks2).</source>
        <translation>Er is geen USB-stick gekoppeld, en niets op dit apparaat koppelt er een (udisks2).</translation>
    </message>
    <message>
        <source>There is no USB stick that can be written to. Put one in and choose this again.</source>
        <translation>Er is geen USB-stick waarop geschreven kan worden. Steek er een in en kies dit opnieuw.</translation>
    </message>
    <message>
        <source>The USB stick cannot be used. %1</source>
        <translation>De USB-stick kan niet worden gebruikt. %1</translation>
    </message>
</context>
<context>
    <name>netcommon::Speech</name>
    <message>
        <source>Stations and music</source>
        <translation>Zenders en muziek</translation>
    </message>
    <message>
        <source>Choose an account</source>
        <translation>Account kiezen</translation>
    </message>
    <message>
        <source>Activate this radio</source>
        <translation>Deze radio activeren</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Aanmelden</translation>
    </message>
    <message>
        <source>Password reminder</source>
        <translation>Wachtwoord vergeten</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>Welkom</translation>
    </message>
    <message>
        <source>Create a station</source>
        <translation>Zender maken</translation>
    </message>
    <message>
        <source>Rename a station</source>
        <translation>Zender hernoemen</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Zenders</translation>
    </message>
    <message>
        <source>Song history</source>
        <translation>Geschiedenis</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Resultaten</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>Afspelen of pauze</translation>
    </message>
    <message>
        <source>Next track</source>
        <translation>Volgend nummer</translation>
    </message>
    <message>
        <source>Thumbs down</source>
        <translation>Duim omlaag</translation>
    </message>
    <message>
        <source>Thumbs up</source>
        <translation>Duim omhoog</translation>
    </message>
</context>
<context>
    <name>platform::DeviceSettings</name>
    <message>
        <source>more than 64 KiB</source>
        <translation>meer dan 64 KiB</translation>
    </message>
    <message>
        <source>its folder cannot be made</source>
        <translation>de map kan niet worden gemaakt</translation>
    </message>
    <message>
        <source>no permission to write</source>
        <translation>geen schrijfrechten</translation>
    </message>
    <message>
        <source>somebody else is writing it</source>
        <translation>iemand anders schrijft erin</translation>
    </message>
</context>
</TS>
