<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About Velmora</source>
        <translation>O Velmorze</translation>
    </message>
    <message>
        <source>With Velmora you can explore this vast trove of music to your heart&apos;s content.
Just drop the name of one of your favorite songs or artists into Velmora and
let the Prism Project go.

It will quickly scan its entire world of analyzed music, almost a century of popular recordings - new and old, well known and completely obscure - to find songs with interesting musical similarities to your choice.

Then sit back and enjoy as it creates a listening experience full of current and soon-to-be favorite songs for you.</source>
        <translation>Z Velmorą odkryjesz do woli ten ogromny skarb muzyki.
Podaj Velmorze tytuł utworu albo wykonawcę, którego lubisz,
i pozwól działać Prism Project.

W okamgnieniu przeszuka cały swój świat zbadanej muzyki, niemal stulecie nagrań – nowych i starych, znanych i zupełnie nieznanych – i znajdzie utwory muzycznie podobne do Twojego wyboru.

Usiądź wygodnie i słuchaj swoich ulubionych utworów, dzisiejszych i przyszłych.</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>Gotowe</translation>
    </message>
</context>
<context>
    <name>CreateStationDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Okno</translation>
    </message>
    <message>
        <source>Create a New Station</source>
        <translation>Utwórz nową stację</translation>
    </message>
    <message>
        <source>Station List</source>
        <translation>Stacje</translation>
    </message>
    <message>
        <source>Tell us one of your favorite
artists and we&apos;ll create a
station that explores that
part of the music universe.</source>
        <translation>Podaj jednego z ulubionych
wykonawców, a utworzymy
stację, która odkrywa tę
część muzyki.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Wróć</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Znaki/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Cyfry</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Wyjdź</translation>
    </message>
    <message>
        <source>Artist Or Track</source>
        <translation>Wykonawca lub utwór</translation>
    </message>
    <message>
        <source>Please enter an artist or track name to create a new station</source>
        <translation>Wpisz wykonawcę lub utwór, aby utworzyć nową stację</translation>
    </message>
    <message>
        <source>Search station failed!You could try again!</source>
        <translation>Wyszukiwanie nie powiodło się! Spróbuj ponownie!</translation>
    </message>
    <message>
        <source>Search...</source>
        <translation>Szukam...</translation>
    </message>
    <message>
        <source>Search station failed,you could try again!</source>
        <translation>Wyszukiwanie nie powiodło się, spróbuj ponownie!</translation>
    </message>
    <message>
        <source>No result for </source>
        <translation>Brak wyników dla </translation>
    </message>
    <message>
        <source>We found </source>
        <translation>Znaleziono: </translation>
    </message>
    <message>
        <source> results by artists and </source>
        <translation> według wykonawcy i </translation>
    </message>
    <message>
        <source> results by tracks.Which did you mean ?</source>
        <translation> według utworu. O co chodziło?</translation>
    </message>
    <message>
        <source> by </source>
        <translation> – </translation>
    </message>
    <message>
        <source>Create station list failed ,please try later!</source>
        <translation>Nie udało się utworzyć stacji, spróbuj później!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Wczytywanie...</translation>
    </message>
    <message>
        <source>Create station failed,because system gets invalid data from Velmora!</source>
        <translation>Nie udało się utworzyć stacji: Velmora przysłała błędne dane!</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>Nie udało się pobrać listy stacji, spróbuj później!</translation>
    </message>
    <message>
        <source>Artist or Song</source>
        <translation>Wykonawca lub piosenka</translation>
    </message>
</context>
<context>
    <name>EmailPwdDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Okno</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>Wyślij hasło</translation>
    </message>
    <message>
        <source>Please input you Email
address to get the password.</source>
        <translation>Wpisz swój e-mail,
aby otrzymać hasło.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Wróć</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Znaki/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Cyfry</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Wyjdź</translation>
    </message>
    <message>
        <source>Email passowrd...</source>
        <translation>Wysyłanie hasła...</translation>
    </message>
    <message>
        <source>Can not get the password because of system error!</source>
        <translation>Nie można uzyskać hasła z powodu błędu systemu!</translation>
    </message>
    <message>
        <source>Please check the email address your provided for instructions on retrieving your Velmora password.</source>
        <translation>Sprawdź pocztę: e-mail wyjaśnia, jak odzyskać hasło do Velmory.</translation>
    </message>
</context>
<context>
    <name>InternetRadioDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Okno</translation>
    </message>
    <message>
        <source>Activation Code</source>
        <translation>Kod aktywacji</translation>
    </message>
    <message>
        <source>Please go to    </source>
        <translation>Otwórz    </translation>
    </message>
    <message>
        <source>and follow the instructions there to create a new account.</source>
        <translation>i postępuj zgodnie ze wskazówkami, aby utworzyć konto.</translation>
    </message>
    <message>
        <source>Your activation code is:    </source>
        <translation>Twój kod aktywacji:    </translation>
    </message>
    <message>
        <source>When you are done with that, come back to this screen and click “continue.”</source>
        <translation>Gdy skończysz, wróć do tego ekranu i wybierz „Dalej”.</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Dalej</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Wróć</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Wyjdź</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Proszę czekać...</translation>
    </message>
    <message>
        <source>Please activate your device to continue.</source>
        <translation>Aktywuj urządzenie, aby kontynuować.</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>Logowanie nie powiodło się, spróbuj ponownie!</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>Nie można utworzyć kodu aktywacji!</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>Nie udało się utworzyć kodu aktywacji, spróbuj ponownie!</translation>
    </message>
</context>
<context>
    <name>KeyLayout</name>
    <message>
        <source>Clear</source>
        <translation>Czyść</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Spacja</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Usuń</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Gotowe</translation>
    </message>
    <message>
        <source>Keyboard</source>
        <translation>Klawiatura</translation>
    </message>
</context>
<context>
    <name>LoadingDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Okno</translation>
    </message>
    <message>
        <source>Connect to Velmora failed!</source>
        <translation>Brak połączenia z Velmorą!</translation>
    </message>
</context>
<context>
    <name>MenuDlg</name>
    <message>
        <source>Bookmark This Artist</source>
        <translation>Zapamiętaj tego wykonawcę</translation>
    </message>
    <message>
        <source>Bookmark This Track</source>
        <translation>Zapamiętaj ten utwór</translation>
    </message>
    <message>
        <source>Do Not Play This Track For A Month</source>
        <translation>Nie graj tego utworu przez miesiąc</translation>
    </message>
    <message>
        <source>Why Is This Track Playing</source>
        <translation>Dlaczego ten utwór</translation>
    </message>
    <message>
        <source>Create A New Station</source>
        <translation>Utwórz nową stację</translation>
    </message>
    <message>
        <source>Delete This Station</source>
        <translation>Usuń tę stację</translation>
    </message>
    <message>
        <source>Rename This Station</source>
        <translation>Zmień nazwę tej stacji</translation>
    </message>
    <message>
        <source>Switch User</source>
        <translation>Zmień konto</translation>
    </message>
    <message>
        <source>Exit Velmora</source>
        <translation>Zakończ Velmorę</translation>
    </message>
    <message>
        <source>Close Menu</source>
        <translation>Zamknij menu</translation>
    </message>
</context>
<context>
    <name>MsgboxDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Okno</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Anuluj</translation>
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
        <translation>Okno</translation>
    </message>
    <message>
        <source>Rename this station</source>
        <translation>Zmień nazwę tej stacji</translation>
    </message>
    <message>
        <source>Tell us the new station name
and we&apos;ll update it in your
station list.</source>
        <translation>Podaj nową nazwę stacji,
a zmienimy ją na Twojej
liście stacji.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Wróć</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Znaki/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Cyfry</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Wyjdź</translation>
    </message>
    <message>
        <source>Rename station failed, no station name supplied.</source>
        <translation>Nazwa nie została zmieniona: nic nie wpisano.</translation>
    </message>
    <message>
        <source>Are you sure you want to rename this station as: 
</source>
        <translation>Czy na pewno zmienić nazwę tej stacji na: 
</translation>
    </message>
    <message>
        <source>Rename station failed,you could try again.</source>
        <translation>Nie udało się zmienić nazwy stacji, spróbuj ponownie.</translation>
    </message>
    <message>
        <source>Rename station...</source>
        <translation>Zmiana nazwy...</translation>
    </message>
    <message>
        <source>Rename station list failed ,please try later!</source>
        <translation>Nie udało się zmienić nazwy stacji, spróbuj później!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Wczytywanie...</translation>
    </message>
    <message>
        <source>Get station list failed!</source>
        <translation>Nie udało się pobrać listy stacji!</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>Nie udało się pobrać listy stacji, spróbuj później!</translation>
    </message>
</context>
<context>
    <name>SelectUserDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Okno</translation>
    </message>
    <message>
        <source>Select or create Velmora account.</source>
        <translation>Wybierz lub utwórz konto Velmora.</translation>
    </message>
    <message>
        <source>New username</source>
        <translation>Nowe konto</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Wróć</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Wyjdź</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Usuń</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Proszę czekać...</translation>
    </message>
    <message>
        <source>Do you already have a Velmora account ? </source>
        <translation>Czy masz już konto Velmora? </translation>
    </message>
    <message>
        <source>We only keep max 5 accounts,you could delete one to continue.</source>
        <translation>Można mieć najwyżej 5 kont. Usuń jedno, aby kontynuować.</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>Nie można utworzyć kodu aktywacji!</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>Nie udało się utworzyć kodu aktywacji, spróbuj ponownie!</translation>
    </message>
    <message>
        <source>Are you sure you want to delete the user: </source>
        <translation>Czy na pewno usunąć konto: </translation>
    </message>
    <message>
        <source>Delete User...</source>
        <translation>Usuwanie konta...</translation>
    </message>
    <message>
        <source>Disassociate device failed because of network error. please try again later!</source>
        <translation>Nie udało się odłączyć urządzenia z powodu błędu sieci. Spróbuj później!</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>Logowanie nie powiodło się, spróbuj ponownie!</translation>
    </message>
</context>
<context>
    <name>SignInDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Okno</translation>
    </message>
    <message>
        <source>Sign in to your Velmora account</source>
        <translation>Zaloguj się na konto Velmora</translation>
    </message>
    <message>
        <source>Email:</source>
        <translation>E-mail:</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Hasło:</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Wróć</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Znaki/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>Wyślij hasło</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Wyjdź</translation>
    </message>
    <message>
        <source>Enter your Velmora account...</source>
        <translation>Wpisz swoje konto Velmora...</translation>
    </message>
    <message>
        <source>No information was entered.Please try again.</source>
        <translation>Nic nie wpisano. Spróbuj ponownie.</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Proszę czekać...</translation>
    </message>
    <message>
        <source>Incorrect Login ,please try again!</source>
        <translation>Logowanie nie powiodło się, spróbuj ponownie!</translation>
    </message>
</context>
<context>
    <name>VelmoraMainDlg</name>
    <message>
        <source>Station List</source>
        <translation>Stacje</translation>
    </message>
    <message>
        <source>AD</source>
        <translation>AD</translation>
    </message>
    <message>
        <source>Thumbs Down</source>
        <translation>Nie lubię</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Następny</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Odtwórz</translation>
    </message>
    <message>
        <source>Thumbs Up</source>
        <translation>Lubię</translation>
    </message>
    <message>
        <source>Artist:</source>
        <translation>Kto:</translation>
    </message>
    <message>
        <source>Album:</source>
        <translation>Płyta:</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Song History</source>
        <translation>Historia</translation>
    </message>
    <message>
        <source>Station:</source>
        <translation>Stacja:</translation>
    </message>
    <message>
        <source>Unfortunately,our music licenses force us to limit the number of tracks you may skip each hour.</source>
        <translation>Niestety nasze licencje ograniczają liczbę utworów, które można pominąć w ciągu godziny.</translation>
    </message>
    <message>
        <source>       Invalid operation for audio ads</source>
        <translation>       Niemożliwe podczas reklamy</translation>
    </message>
    <message>
        <source>Thumbs up is not allowed on shared stations.</source>
        <translation>Na stacjach współdzielonych nie można oceniać na plus.</translation>
    </message>
    <message>
        <source>Thumbs down is not allowed on shared stations.</source>
        <translation>Na stacjach współdzielonych nie można oceniać na minus.</translation>
    </message>
    <message>
        <source>ThumbUp...</source>
        <translation>Lubię...</translation>
    </message>
    <message>
        <source>Thumbs up track failed,you could try again.</source>
        <translation>Nie udało się zapisać oceny, spróbuj ponownie.</translation>
    </message>
    <message>
        <source>ThumbDown...</source>
        <translation>Nie lubię...</translation>
    </message>
    <message>
        <source>Thumbs down track failed,you could try again.</source>
        <translation>Nie udało się zapisać oceny, spróbuj ponownie.</translation>
    </message>
    <message>
        <source>Add feedback failed ,you could try again!</source>
        <translation>Nie udało się dodać oceny, spróbuj ponownie!</translation>
    </message>
    <message>
        <source>Sleep...</source>
        <translation>Odkładanie utworu...</translation>
    </message>
    <message>
        <source>Sleep track failed,you could try again.</source>
        <translation>Nie udało się odłożyć utworu, spróbuj ponownie.</translation>
    </message>
    <message>
        <source>Sleep track failed ,you could try later!</source>
        <translation>Nie udało się odłożyć utworu, spróbuj później!</translation>
    </message>
    <message>
        <source>Bookmark artist failed,you could try again.</source>
        <translation>Nie udało się zapamiętać wykonawcy, spróbuj ponownie.</translation>
    </message>
    <message>
        <source>Bookmark track failed,you could try again.</source>
        <translation>Nie udało się zapamiętać utworu, spróbuj ponownie.</translation>
    </message>
    <message>
        <source>Add bookmark successful!</source>
        <translation>Zapamiętano!</translation>
    </message>
    <message>
        <source>Add bookmark failed ,please try later!</source>
        <translation>Nie udało się zapamiętać, spróbuj później!</translation>
    </message>
    <message>
        <source>Explain track failed,you could try again.</source>
        <translation>Nie udało się pobrać wyjaśnienia, spróbuj ponownie.</translation>
    </message>
    <message>
        <source>Explain track failed ,you could try again!</source>
        <translation>Nie udało się pobrać wyjaśnienia, spróbuj ponownie!</translation>
    </message>
    <message>
        <source>Based on what you&apos;ve told us so far, we&apos;re playing </source>
        <translation>Na podstawie tego, co już o Tobie wiemy, gramy </translation>
    </message>
    <message>
        <source> by </source>
        <translation> – </translation>
    </message>
    <message>
        <source> because it features </source>
        <translation>, ponieważ cechuje go </translation>
    </message>
    <message>
        <source>Velmora only permits to create 100 stations,so you can not create more stations!</source>
        <translation>Velmora pozwala na najwyżej 100 stacji, nie można utworzyć kolejnych!</translation>
    </message>
    <message>
        <source>Tapestry station can not be deleted!</source>
        <translation>Stacji Tapestry nie można usunąć!</translation>
    </message>
    <message>
        <source>Are you sure you want to delete station: 
</source>
        <translation>Czy na pewno usunąć stację: 
</translation>
    </message>
    <message>
        <source> ?</source>
        <translation>?</translation>
    </message>
    <message>
        <source>This station can not be deleted!</source>
        <translation>Tej stacji nie można usunąć!</translation>
    </message>
    <message>
        <source>Delete station...</source>
        <translation>Usuwanie stacji...</translation>
    </message>
    <message>
        <source>Sorry.Delete station failed,you could try aganin.</source>
        <translation>Niestety nie udało się usunąć stacji, spróbuj ponownie.</translation>
    </message>
    <message>
        <source>Delete station failed ,please try later!</source>
        <translation>Nie udało się usunąć stacji, spróbuj później!</translation>
    </message>
    <message>
        <source>Tapestry station can not be renamed!</source>
        <translation>Nazwy stacji Tapestry nie można zmienić!</translation>
    </message>
    <message>
        <source>Are you sure you want to rename station: 
</source>
        <translation>Czy na pewno zmienić nazwę stacji: 
</translation>
    </message>
    <message>
        <source>A share station cannot be renamed!</source>
        <translation>Nazwy stacji współdzielonej nie można zmienić!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Wczytywanie...</translation>
    </message>
    <message>
        <source>Play the track failed,System occurs error!</source>
        <translation>Nie można odtworzyć utworu, wystąpił błąd systemu!</translation>
    </message>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>Wystąpił błąd sieci. Sprawdź połączenie z siecią i spróbuj ponownie.</translation>
    </message>
    <message>
        <source>Get playlist failed,you could try again!</source>
        <translation>Nie udało się pobrać listy utworów, spróbuj ponownie!</translation>
    </message>
    <message>
        <source>Get play list failed ,please try later!</source>
        <translation>Nie udało się pobrać listy utworów, spróbuj później!</translation>
    </message>
    <message>
        <source>Get Ad metadata failed!</source>
        <translation>Nie udało się pobrać danych reklamy!</translation>
    </message>
    <message>
        <source>Get track data failed.Please try later!</source>
        <translation>Nie udało się pobrać danych utworu. Spróbuj później!</translation>
    </message>
    <message>
        <source>Now playing...</source>
        <translation>Ta stacja już gra...</translation>
    </message>
</context>
<context>
    <name>VelmoraParentWidget</name>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>Wystąpił błąd sieci. Sprawdź połączenie z siecią i spróbuj ponownie.</translation>
    </message>
    <message>
        <source>Velmora is conducting system maintenance. You will be able to listen to existing stations while they work on their systems, but you won&apos;t be able to create new stations, submit feedback or edit your account in any way until the maintenance is complete. Thanks for your patience.</source>
        <translation>Trwa konserwacja Velmory. Możesz słuchać swoich stacji, ale do jej końca nie można tworzyć nowych, oceniać utworów ani zmieniać konta. Dziękujemy za cierpliwość.</translation>
    </message>
    <message>
        <source>Sorry,this token is invalid now .Please contact Velmora listener support at </source>
        <translation>Ta sesja jest już nieważna. Napisz do pomocy dla słuchaczy Velmory: </translation>
    </message>
    <message>
        <source>Invalid username or password, please try again.</source>
        <translation>Błędna nazwa lub hasło, spróbuj ponownie.</translation>
    </message>
    <message>
        <source>Sorry,this account is no longer active.Please contact Velmora listener support at </source>
        <translation>To konto nie jest już aktywne. Napisz do pomocy dla słuchaczy Velmory: </translation>
    </message>
    <message>
        <source>Sorry,this account is authorized.Please contact Velmora listener support at </source>
        <translation>To konto nie ma uprawnień. Napisz do pomocy dla słuchaczy Velmory: </translation>
    </message>
    <message>
        <source>Sorry, Max stations Reached, create station failed.</source>
        <translation>Osiągnięto największą liczbę stacji, nie utworzono nowej.</translation>
    </message>
    <message>
        <source>Station does not exist.</source>
        <translation>Stacja nie istnieje.</translation>
    </message>
    <message>
        <source>Invalid username</source>
        <translation>Błędna nazwa użytkownika</translation>
    </message>
    <message>
        <source>Invalid password</source>
        <translation>Błędne hasło</translation>
    </message>
    <message>
        <source>NULL</source>
        <translation>NULL</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Wczytywanie...</translation>
    </message>
    <message>
        <source>You have reached the last window.</source>
        <translation>To jest ostatnie okno. </translation>
    </message>
    <message>
        <source>Are you sure you want to exit Velmora? </source>
        <translation>Czy na pewno zakończyć Velmorę? </translation>
    </message>
    <message>
        <source>    Are you still there ? </source>
        <translation>    Czy nadal tu jesteś? </translation>
    </message>
    <message>
        <source>Unable to connect to network.</source>
        <translation>Brak połączenia z siecią.</translation>
    </message>
    <message>
        <source>There may be network congestion.</source>
        <translation>Sieć może być przeciążona.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Tak</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nie</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Wykonawca</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>Utwór</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Start</translation>
    </message>
</context>
<context>
    <name>WelcomeDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Okno</translation>
    </message>
    <message>
        <source>Welcome to Velmora</source>
        <translation>Witamy w Velmorze</translation>
    </message>
    <message>
        <source>To experience free personalized radio playing only the music you love
you will need to activate Velmora on this device.

Please select “Activate Velmora” below.</source>
        <translation>Aby za darmo słuchać własnego radia, które gra tylko lubianą muzykę,
aktywuj Velmorę na tym urządzeniu.

Wybierz poniżej „Aktywuj Velmorę”.</translation>
    </message>
    <message>
        <source>Activate Velmora</source>
        <translation>Aktywuj Velmorę</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Wróć</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Wyjdź</translation>
    </message>
    <message>
        <source>You have reached the last window.Are you sure you want to exit Velmora? 
</source>
        <translation>To jest ostatnie okno. Czy na pewno zakończyć Velmorę? 
</translation>
    </message>
</context>
<context>
    <name>WhyDlg</name>
    <message>
        <source>Why is this track playing?</source>
        <translation>Dlaczego ten utwór?</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>Gotowe</translation>
    </message>
</context>
<context>
    <name>home::AboutPane</name>
    <message>
        <source>About</source>
        <translation>Informacje</translation>
    </message>
    <message>
        <source>Nothing has gone wrong.</source>
        <translation>Nic złego się nie stało.</translation>
    </message>
    <message>
        <source>Things that went wrong: %1. A report helps to find out why.</source>
        <translation>Błędy: %1. Raport pomaga znaleźć przyczynę.</translation>
    </message>
    <message>
        <source>Save a report to a USB stick</source>
        <translation>Zapisz raport na pamięci USB</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Raport</translation>
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
        <translation>Nie można zapisać raportu. %1</translation>
    </message>
    <message>
        <source>The report is saved: %1</source>
        <translation>Raport zapisano: %1</translation>
    </message>
    <message>
        <source>There is not enough room, or the stick is damaged.</source>
        <translation>Za mało miejsca albo pamięć jest uszkodzona.</translation>
    </message>
    <message>
        <source>The stick can be taken out.</source>
        <translation>Można wyjąć pamięć USB.</translation>
    </message>
    <message>
        <source>Saving the report...</source>
        <translation>Zapisywanie raportu...</translation>
    </message>
</context>
<context>
    <name>home::HomePage</name>
    <message>
        <source>Home</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Wróć</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Znaki/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>Radio</source>
        <translation>Radio</translation>
    </message>
    <message>
        <source>Select starts the radio.</source>
        <translation>Klawisz wyboru uruchamia radio.</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 procent</translation>
    </message>
    <message>
        <source>silent</source>
        <translation>cisza</translation>
    </message>
    <message>
        <source>All tracks equally loud</source>
        <translation>Wszystkie utwory równie głośno</translation>
    </message>
    <message>
        <source>Keys click</source>
        <translation>Dźwięk klawiszy</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Głośność</translation>
    </message>
    <message>
        <source>How loud the radio plays. The volume keys change it while music plays.</source>
        <translation>Jak głośno gra radio. Podczas muzyki zmieniają to klawisze głośności.</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>po %n minucie</numerusform>
            <numerusform>po %n minutach</numerusform>
            <numerusform>po %n minutach</numerusform>
        </translation>
    </message>
    <message>
        <source>never</source>
        <translation>nigdy</translation>
    </message>
    <message>
        <source>Read aloud what has the focus</source>
        <translation>Czytaj na głos wybrane</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Ekran</translation>
    </message>
    <message>
        <source>When nobody presses a key while music plays, the picture dims.</source>
        <translation>Gdy podczas muzyki nikt nie naciska klawisza, obraz ciemnieje.</translation>
    </message>
    <message>
        <source>Switch off</source>
        <translation>Wyłącz</translation>
    </message>
    <message>
        <source>The device switches off.</source>
        <translation>Urządzenie się wyłączy.</translation>
    </message>
    <message>
        <source>Switch off now</source>
        <translation>Wyłącz teraz</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>Uruchom ponownie</translation>
    </message>
    <message>
        <source>The device restarts. The radio comes back by itself.</source>
        <translation>Urządzenie uruchomi się ponownie. Radio samo wróci.</translation>
    </message>
    <message>
        <source>Restart now</source>
        <translation>Uruchom ponownie teraz</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Zakończ</translation>
    </message>
    <message>
        <source>Ends the radio and Home.</source>
        <translation>Kończy radio i ekran Start.</translation>
    </message>
    <message>
        <source>Quit now</source>
        <translation>Zakończ teraz</translation>
    </message>
    <message>
        <source>%1, chosen</source>
        <translation>%1, wybrane</translation>
    </message>
    <message>
        <source>Larger picture</source>
        <translation>Większy obraz</translation>
    </message>
    <message>
        <source>A larger picture is drawn from the next start of the radio or of Home.</source>
        <translation>Większy obraz pojawi się przy następnym uruchomieniu radia lub ekranu Start.</translation>
    </message>
</context>
<context>
    <name>home::LanguagePane</name>
    <message>
        <source>As the system is set up</source>
        <translation>Jak w systemie</translation>
    </message>
    <message>
        <source>Language and region</source>
        <translation>Język i region</translation>
    </message>
    <message>
        <source>The language of all texts, and how dates, times and numbers are written.</source>
        <translation>Język wszystkich tekstów oraz zapis dat, godzin i liczb.</translation>
    </message>
    <message>
        <source>The time zone is that of the system.</source>
        <translation>Strefa czasowa jest taka jak w systemie.</translation>
    </message>
    <message>
        <source>The time zone cannot be changed. %1</source>
        <translation>Nie można zmienić strefy czasowej. %1</translation>
    </message>
    <message>
        <source>Time zone</source>
        <translation>Strefa czasowa</translation>
    </message>
</context>
<context>
    <name>home::MenuCommand</name>
    <message>
        <source>There is no menu system.</source>
        <translation>Nie ma systemu menu.</translation>
    </message>
</context>
<context>
    <name>home::NetworkPane</name>
    <message>
        <source>Network</source>
        <translation>Sieć</translation>
    </message>
    <message>
        <source>Connected to %1.</source>
        <translation>Połączono z %1.</translation>
    </message>
    <message>
        <source>This Wi-Fi cannot be used: the password is wrong, or it is too far away. %1</source>
        <translation>Ta sieć Wi-Fi nie działa: hasło jest błędne albo sieć jest za daleko. %1</translation>
    </message>
    <message>
        <source>Looking at the network...</source>
        <translation>Sprawdzanie sieci...</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>brak połączenia</translation>
    </message>
    <message>
        <source>no address</source>
        <translation>brak adresu</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 procent</translation>
    </message>
    <message>
        <source>%1 percent, open</source>
        <translation>%1 procent, otwarta</translation>
    </message>
    <message>
        <source>Password of %1</source>
        <translation>Hasło do %1</translation>
    </message>
    <message>
        <source>A Wi-Fi password has at least %1 characters.</source>
        <translation>Hasło Wi-Fi ma co najmniej %1 znaków.</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>Łączenie z %1...</translation>
    </message>
    <message>
        <source>All is well: the service answers.</source>
        <translation>Wszystko dobrze: usługa odpowiada.</translation>
    </message>
    <message>
        <source>The service runs on this device, without the network. %1</source>
        <translation>Usługa działa na tym urządzeniu, bez sieci. %1</translation>
    </message>
    <message>
        <source>This device has no network card.</source>
        <translation>To urządzenie nie ma karty sieciowej.</translation>
    </message>
    <message>
        <source>No cable is plugged in, and no Wi-Fi is connected.</source>
        <translation>Nie ma kabla i nie ma połączenia Wi-Fi.</translation>
    </message>
    <message>
        <source>The device is connected, but the router gives it no address. Restarting the router may help.</source>
        <translation>Urządzenie jest połączone, ale router nie daje mu adresu. Może pomóc ponowne uruchomienie routera.</translation>
    </message>
    <message>
        <source>The router leads to no other network, and the service is not found in this one.</source>
        <translation>Router nie prowadzi do innej sieci, a w tej nie ma usługi.</translation>
    </message>
    <message>
        <source>The network is there, but nobody knows the name of the service. Either the name is wrong, or the internet is away.</source>
        <translation>Sieć jest, ale nikt nie zna nazwy usługi. Nazwa jest błędna albo nie ma internetu.</translation>
    </message>
    <message>
        <source>The network is there, but the service does not answer. Either it does not run, or the internet is away.</source>
        <translation>Sieć jest, ale usługa nie odpowiada. Nie działa albo nie ma internetu.</translation>
    </message>
    <message>
        <source>The network is there. %1</source>
        <translation>Sieć jest. %1</translation>
    </message>
</context>
<context>
    <name>home::NoticePage</name>
    <message>
        <source>One moment</source>
        <translation>Chwileczkę</translation>
    </message>
    <message>
        <source>The radio needs a key</source>
        <translation>Radio czeka na klawisz</translation>
    </message>
    <message>
        <source>The radio has stopped</source>
        <translation>Radio się zatrzymało</translation>
    </message>
    <message>
        <source>The radio cannot reach its service. It starts again as soon as it can.</source>
        <translation>Radio nie może połączyć się z usługą. Uruchomi się, gdy tylko będzie mogło.</translation>
    </message>
    <message>
        <source>The radio has failed several times although its service answers.</source>
        <translation>Radio kilka razy zawiodło, choć jego usługa odpowiada.</translation>
    </message>
    <message>
        <source>The radio has failed several times. Home, About keeps the reports.</source>
        <translation>Radio kilka razy zawiodło. Raporty są na ekranie Start, Informacje.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Spróbuj ponownie</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Start</translation>
    </message>
</context>
<context>
    <name>home::OutputPane</name>
    <message>
        <source>Sound output</source>
        <translation>Wyjście dźwięku</translation>
    </message>
    <message>
        <source>Where the music comes out. The radio uses it from its next start.</source>
        <translation>Którędy wychodzi muzyka. Radio użyje tego od następnego uruchomienia.</translation>
    </message>
    <message>
        <source>The usual one</source>
        <translation>Zwykłe</translation>
    </message>
</context>
<context>
    <name>home::PhonesPane</name>
    <message>
        <source>Phones</source>
        <translation>Telefony</translation>
    </message>
    <message>
        <source>The service runs on this device and only for it. To reach it from a telephone, start it so that it listens in the home network; its manual says how.</source>
        <translation>Usługa działa na tym urządzeniu i tylko dla niego. Aby połączyć się telefonem, uruchom ją dla sieci domowej; instrukcja mówi jak.</translation>
    </message>
    <message>
        <source>Open this address in the browser of a telephone in the same network: to link a radio, to manage your account, or to use the telephone as a remote control and keyboard.</source>
        <translation>Otwórz ten adres w przeglądarce telefonu w tej samej sieci: aby połączyć radio, zarządzać kontem lub używać telefonu jako pilota i klawiatury.</translation>
    </message>
</context>
<context>
    <name>home::ServiceHealth</name>
    <message>
        <source>The service answers.</source>
        <translation>Usługa odpowiada.</translation>
    </message>
    <message>
        <source>No service is set up. Choose one under Service.</source>
        <translation>Nie ustawiono usługi. Wybierz ją w części Usługa.</translation>
    </message>
    <message>
        <source>Nobody knows the name of the service.</source>
        <translation>Nikt nie zna nazwy usługi.</translation>
    </message>
    <message>
        <source>The service does not answer.</source>
        <translation>Usługa nie odpowiada.</translation>
    </message>
    <message>
        <source>The certificate of the service is not valid.</source>
        <translation>Certyfikat usługi jest nieważny.</translation>
    </message>
    <message>
        <source>The service answers with an error.</source>
        <translation>Usługa odpowiada błędem.</translation>
    </message>
    <message>
        <source>What answers at this address is not the service.</source>
        <translation>Pod tym adresem nie odpowiada ta usługa.</translation>
    </message>
</context>
<context>
    <name>home::ServicePane</name>
    <message>
        <source>Service</source>
        <translation>Usługa</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adres</translation>
    </message>
    <message>
        <source>none</source>
        <translation>brak</translation>
    </message>
    <message>
        <source>Test it</source>
        <translation>Sprawdź</translation>
    </message>
    <message>
        <source>The radio was started for this service</source>
        <translation>Radio uruchomiono dla tej usługi</translation>
    </message>
    <message>
        <source>Use another one</source>
        <translation>Użyj innej</translation>
    </message>
    <message>
        <source>Use the one of this device</source>
        <translation>Użyj tej z urządzenia</translation>
    </message>
    <message>
        <source>Asking the service...</source>
        <translation>Pytanie do usługi...</translation>
    </message>
    <message>
        <source>Address of the service</source>
        <translation>Adres usługi</translation>
    </message>
    <message>
        <source>No service is set up. Choose the one of your house, or type its address.</source>
        <translation>Nie ustawiono żadnej usługi. Wybierz usługę swojego domu albo wpisz jej adres.</translation>
    </message>
    <message>
        <source>Fingerprint</source>
        <translation>Odcisk</translation>
    </message>
    <message>
        <source>Use this service</source>
        <translation>Użyj tej usługi</translation>
    </message>
    <message>
        <source>Do not use it</source>
        <translation>Nie używaj jej</translation>
    </message>
    <message>
        <source>Compare the fingerprint with the one on the service&apos;s own page, /house. If they differ, something else pretends to be the service.</source>
        <translation>Porównaj odcisk z tym na stronie /house usługi. Jeśli są różne, coś innego podaje się za usługę.</translation>
    </message>
    <message>
        <source>The service answers, and its certificate is valid.</source>
        <translation>Usługa odpowiada, a jej certyfikat jest ważny.</translation>
    </message>
    <message>
        <source>The service answers, but it is not encrypted: everybody in this network could read along.</source>
        <translation>Usługa odpowiada, ale nie jest szyfrowana: każdy w tej sieci mógłby czytać.</translation>
    </message>
</context>
<context>
    <name>home::SettingPane</name>
    <message>
        <source>This cannot be changed. %1</source>
        <translation>Nie można tego zmienić. %1</translation>
    </message>
    <message>
        <source>on</source>
        <translation>wł.</translation>
    </message>
    <message>
        <source>off</source>
        <translation>wył.</translation>
    </message>
</context>
<context>
    <name>home::SleepPane</name>
    <message>
        <source>Sleep timer</source>
        <translation>Wyłącznik czasowy</translation>
    </message>
    <message>
        <source>The sleep timer cannot be set. %1</source>
        <translation>Nie można ustawić wyłącznika. %1</translation>
    </message>
    <message>
        <source>The music fades out and the screen turns black.</source>
        <translation>Muzyka cichnie, a ekran gaśnie.</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes are left.</source>
        <translation>
            <numerusform>Została %n minuta.</numerusform>
            <numerusform>Zostały %n minuty.</numerusform>
            <numerusform>Zostało %n minut.</numerusform>
        </translation>
    </message>
    <message>
        <source>off</source>
        <translation>wył.</translation>
    </message>
    <message>
        <source>after this track</source>
        <translation>po tym utworze</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>po %n minucie</numerusform>
            <numerusform>po %n minutach</numerusform>
            <numerusform>po %n minutach</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>home::UsbStick</name>
    <message>
        <source>No USB stick is mounted, and nothing on this device mounts one (udisks2).</source>
        <translation>Żadna pamięć USB nie jest zamontowana i nic na tym urządzeniu jej nie montuje (udisks2).</translation>
    </message>
    <message>
        <source>There is no USB stick that can be written to. Put one in and choose this again.</source>
        <translation>Nie ma pamięci USB, na której można zapisać. Podłącz ją i wybierz to jeszcze raz.</translation>
    </message>
    <message>
        <source>The USB stick cannot be used. %1</source>
        <translation>Nie można użyć pamięci USB. %1</translation>
    </message>
</context>
<context>
    <name>netcommon::Speech</name>
    <message>
        <source>Stations and music</source>
        <translation>Stacje i muzyka</translation>
    </message>
    <message>
        <source>Choose an account</source>
        <translation>Wybierz konto</translation>
    </message>
    <message>
        <source>Activate this radio</source>
        <translation>Aktywuj to radio</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Zaloguj się</translation>
    </message>
    <message>
        <source>Password reminder</source>
        <translation>Przypomnienie hasła</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>Witamy</translation>
    </message>
    <message>
        <source>Create a station</source>
        <translation>Utwórz stację</translation>
    </message>
    <message>
        <source>Rename a station</source>
        <translation>Zmień nazwę stacji</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Stacje</translation>
    </message>
    <message>
        <source>Song history</source>
        <translation>Historia utworów</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Wyniki</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>Odtwórz lub wstrzymaj</translation>
    </message>
    <message>
        <source>Next track</source>
        <translation>Następny utwór</translation>
    </message>
    <message>
        <source>Thumbs down</source>
        <translation>Nie lubię</translation>
    </message>
    <message>
        <source>Thumbs up</source>
        <translation>Lubię</translation>
    </message>
</context>
<context>
    <name>platform::DeviceSettings</name>
    <message>
        <source>more than 64 KiB</source>
        <translation>więcej niż 64 KiB</translation>
    </message>
    <message>
        <source>its folder cannot be made</source>
        <translation>nie można utworzyć jego folderu</translation>
    </message>
    <message>
        <source>no permission to write</source>
        <translation>brak prawa zapisu</translation>
    </message>
    <message>
        <source>somebody else is writing it</source>
        <translation>ktoś inny właśnie zapisuje</translation>
    </message>
</context>
</TS>
