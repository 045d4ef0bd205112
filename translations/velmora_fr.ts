<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About Velmora</source>
        <translation>À propos de Velmora</translation>
    </message>
    <message>
        <source>With Velmora you can explore this vast trove of music to your heart&apos;s content.
Just drop the name of one of your favorite songs or artists into Velmora and
let the Prism Project go.

It will quickly scan its entire world of analyzed music, almost a century of popular recordings - new and old, well known and completely obscure - to find songs with interesting musical similarities to your choice.

Then sit back and enjoy as it creates a listening experience full of current and soon-to-be favorite songs for you.</source>
        <translation>Avec Velmora, explorez ce vaste trésor de musique selon vos envies.
Donnez simplement à Velmora le nom d’un morceau ou d’un artiste que vous aimez,
et laissez faire le Prism Project.

Il parcourt en un instant tout son univers de musique analysée, près d’un siècle d’enregistrements – nouveaux et anciens, connus ou tout à fait obscurs – pour trouver des morceaux proches de votre choix.

Installez-vous confortablement et profitez de vos morceaux préférés, actuels et à venir.</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>Terminé</translation>
    </message>
</context>
<context>
    <name>CreateStationDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialogue</translation>
    </message>
    <message>
        <source>Create a New Station</source>
        <translation>Créer une station</translation>
    </message>
    <message>
        <source>Station List</source>
        <translation>Stations</translation>
    </message>
    <message>
        <source>Tell us one of your favorite
artists and we&apos;ll create a
station that explores that
part of the music universe.</source>
        <translation>Indiquez l’un de vos artistes
préférés, et nous créerons
une station qui explore
sa musique.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Symboles/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Maj.</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Chiffres</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Sortir</translation>
    </message>
    <message>
        <source>Artist Or Track</source>
        <translation>Artiste ou titre</translation>
    </message>
    <message>
        <source>Please enter an artist or track name to create a new station</source>
        <translation>Saisissez le nom d’un artiste ou d’un titre pour créer une station</translation>
    </message>
    <message>
        <source>Search station failed!You could try again!</source>
        <translation>La recherche a échoué ! Vous pouvez réessayer !</translation>
    </message>
    <message>
        <source>Search...</source>
        <translation>Recherche...</translation>
    </message>
    <message>
        <source>Search station failed,you could try again!</source>
        <translation>La recherche a échoué, vous pouvez réessayer !</translation>
    </message>
    <message>
        <source>No result for </source>
        <translation>Aucun résultat pour </translation>
    </message>
    <message>
        <source>We found </source>
        <translation>Résultats : </translation>
    </message>
    <message>
        <source> results by artists and </source>
        <translation> par artiste et </translation>
    </message>
    <message>
        <source> results by tracks.Which did you mean ?</source>
        <translation> par titre. Lequel vouliez-vous ?</translation>
    </message>
    <message>
        <source> by </source>
        <translation> de </translation>
    </message>
    <message>
        <source>Create station list failed ,please try later!</source>
        <translation>La station n’a pas pu être créée, réessayez plus tard !</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Chargement...</translation>
    </message>
    <message>
        <source>Create station failed,because system gets invalid data from Velmora!</source>
        <translation>La station n’a pas pu être créée : Velmora a envoyé des données incorrectes !</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>La liste des stations n’a pas pu être chargée, réessayez plus tard !</translation>
    </message>
    <message>
        <source>Artist or Song</source>
        <translation>Artiste ou chanson</translation>
    </message>
</context>
<context>
    <name>EmailPwdDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialogue</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>Mot de passe ?</translation>
    </message>
    <message>
        <source>Please input you Email
address to get the password.</source>
        <translation>Saisissez votre adresse e-mail
pour recevoir le mot de passe.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Symboles/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Maj.</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Chiffres</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Sortir</translation>
    </message>
    <message>
        <source>Email passowrd...</source>
        <translation>Envoi du mot de passe...</translation>
    </message>
    <message>
        <source>Can not get the password because of system error!</source>
        <translation>Impossible d’obtenir le mot de passe à cause d’une erreur du système !</translation>
    </message>
    <message>
        <source>Please check the email address your provided for instructions on retrieving your Velmora password.</source>
        <translation>Consultez votre messagerie : un e-mail explique comment retrouver votre mot de passe Velmora.</translation>
    </message>
</context>
<context>
    <name>InternetRadioDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialogue</translation>
    </message>
    <message>
        <source>Activation Code</source>
        <translation>Code d’activation</translation>
    </message>
    <message>
        <source>Please go to    </source>
        <translation>Ouvrez la page    </translation>
    </message>
    <message>
        <source>and follow the instructions there to create a new account.</source>
        <translation>et suivez les instructions pour créer un compte.</translation>
    </message>
    <message>
        <source>Your activation code is:    </source>
        <translation>Votre code d’activation :    </translation>
    </message>
    <message>
        <source>When you are done with that, come back to this screen and click “continue.”</source>
        <translation>Ensuite, revenez à cet écran et choisissez « Continuer ».</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continuer</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Sortir</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Veuillez patienter...</translation>
    </message>
    <message>
        <source>Please activate your device to continue.</source>
        <translation>Activez votre appareil pour continuer.</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>La connexion a échoué, veuillez réessayer !</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>Impossible d’obtenir un code d’activation !</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>Le code d’activation n’a pas pu être créé, vous pouvez réessayer !</translation>
    </message>
</context>
<context>
    <name>KeyLayout</name>
    <message>
        <source>Clear</source>
        <translation>Vider</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Espace</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Effacer</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Keyboard</source>
        <translation>Clavier</translation>
    </message>
</context>
<context>
    <name>LoadingDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialogue</translation>
    </message>
    <message>
        <source>Connect to Velmora failed!</source>
        <translation>La connexion à Velmora a échoué !</translation>
    </message>
</context>
<context>
    <name>MenuDlg</name>
    <message>
        <source>Bookmark This Artist</source>
        <translation>Mémoriser cet artiste</translation>
    </message>
    <message>
        <source>Bookmark This Track</source>
        <translation>Mémoriser ce titre</translation>
    </message>
    <message>
        <source>Do Not Play This Track For A Month</source>
        <translation>Ne pas jouer ce titre pendant un mois</translation>
    </message>
    <message>
        <source>Why Is This Track Playing</source>
        <translation>Pourquoi ce titre</translation>
    </message>
    <message>
        <source>Create A New Station</source>
        <translation>Créer une station</translation>
    </message>
    <message>
        <source>Delete This Station</source>
        <translation>Supprimer cette station</translation>
    </message>
    <message>
        <source>Rename This Station</source>
        <translation>Renommer cette station</translation>
    </message>
    <message>
        <source>Switch User</source>
        <translation>Changer de compte</translation>
    </message>
    <message>
        <source>Exit Velmora</source>
        <translation>Quitter Velmora</translation>
    </message>
    <message>
        <source>Close Menu</source>
        <translation>Fermer le menu</translation>
    </message>
</context>
<context>
    <name>MsgboxDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialogue</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
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
        <translation>Dialogue</translation>
    </message>
    <message>
        <source>Rename this station</source>
        <translation>Renommer cette station</translation>
    </message>
    <message>
        <source>Tell us the new station name
and we&apos;ll update it in your
station list.</source>
        <translation>Indiquez le nouveau nom :
nous le changerons dans
votre liste de stations.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Symboles/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Maj.</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Chiffres</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Sortir</translation>
    </message>
    <message>
        <source>Rename station failed, no station name supplied.</source>
        <translation>La station n’a pas été renommée : aucun nom n’a été saisi.</translation>
    </message>
    <message>
        <source>Are you sure you want to rename this station as: 
</source>
        <translation>Voulez-vous vraiment renommer cette station en : 
</translation>
    </message>
    <message>
        <source>Rename station failed,you could try again.</source>
        <translation>La station n’a pas pu être renommée, vous pouvez réessayer.</translation>
    </message>
    <message>
        <source>Rename station...</source>
        <translation>Changement du nom...</translation>
    </message>
    <message>
        <source>Rename station list failed ,please try later!</source>
        <translation>La station n’a pas pu être renommée, réessayez plus tard !</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Chargement...</translation>
    </message>
    <message>
        <source>Get station list failed!</source>
        <translation>La liste des stations n’a pas pu être chargée !</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>La liste des stations n’a pas pu être chargée, réessayez plus tard !</translation>
    </message>
</context>
<context>
    <name>SelectUserDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialogue</translation>
    </message>
    <message>
        <source>Select or create Velmora account.</source>
        <translation>Choisissez ou créez un compte Velmora.</translation>
    </message>
    <message>
        <source>New username</source>
        <translation>Nouveau compte</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Sortir</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Effacer</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Veuillez patienter...</translation>
    </message>
    <message>
        <source>Do you already have a Velmora account ? </source>
        <translation>Avez-vous déjà un compte Velmora ? </translation>
    </message>
    <message>
        <source>We only keep max 5 accounts,you could delete one to continue.</source>
        <translation>5 comptes au plus sont possibles. Supprimez-en un pour continuer.</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>Impossible d’obtenir un code d’activation !</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>Le code d’activation n’a pas pu être créé, vous pouvez réessayer !</translation>
    </message>
    <message>
        <source>Are you sure you want to delete the user: </source>
        <translation>Voulez-vous vraiment supprimer le compte : </translation>
    </message>
    <message>
        <source>Delete User...</source>
        <translation>Suppression du compte...</translation>
    </message>
    <message>
        <source>Disassociate device failed because of network error. please try again later!</source>
        <translation>L’appareil n’a pas pu être dissocié à cause d’une erreur du réseau. Réessayez plus tard !</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>La connexion a échoué, veuillez réessayer !</translation>
    </message>
</context>
<context>
    <name>SignInDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialogue</translation>
    </message>
    <message>
        <source>Sign in to your Velmora account</source>
        <translation>Connexion à votre compte Velmora</translation>
    </message>
    <message>
        <source>Email:</source>
        <translation>E-mail :</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Passe :</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Symboles/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Maj.</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>Mot de passe ?</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Sortir</translation>
    </message>
    <message>
        <source>Enter your Velmora account...</source>
        <translation>Saisissez votre compte Velmora...</translation>
    </message>
    <message>
        <source>No information was entered.Please try again.</source>
        <translation>Rien n’a été saisi. Veuillez réessayer.</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>Veuillez patienter...</translation>
    </message>
    <message>
        <source>Incorrect Login ,please try again!</source>
        <translation>La connexion a échoué, veuillez réessayer !</translation>
    </message>
</context>
<context>
    <name>VelmoraMainDlg</name>
    <message>
        <source>Station List</source>
        <translation>Stations</translation>
    </message>
    <message>
        <source>AD</source>
        <translation>PUB</translation>
    </message>
    <message>
        <source>Thumbs Down</source>
        <translation>Je n’aime pas</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Suivant</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Lecture</translation>
    </message>
    <message>
        <source>Thumbs Up</source>
        <translation>J’aime</translation>
    </message>
    <message>
        <source>Artist:</source>
        <translation>De :</translation>
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
        <translation>Historique</translation>
    </message>
    <message>
        <source>Station:</source>
        <translation>Station :</translation>
    </message>
    <message>
        <source>Unfortunately,our music licenses force us to limit the number of tracks you may skip each hour.</source>
        <translation>Malheureusement, nos licences musicales limitent le nombre de titres que vous pouvez passer par heure.</translation>
    </message>
    <message>
        <source>       Invalid operation for audio ads</source>
        <translation>       Impossible pendant une publicité</translation>
    </message>
    <message>
        <source>Thumbs up is not allowed on shared stations.</source>
        <translation>« J’aime » n’est pas possible sur les stations partagées.</translation>
    </message>
    <message>
        <source>Thumbs down is not allowed on shared stations.</source>
        <translation>« Je n’aime pas » n’est pas possible sur les stations partagées.</translation>
    </message>
    <message>
        <source>ThumbUp...</source>
        <translation>J’aime...</translation>
    </message>
    <message>
        <source>Thumbs up track failed,you could try again.</source>
        <translation>Votre avis n’a pas pu être enregistré, vous pouvez réessayer.</translation>
    </message>
    <message>
        <source>ThumbDown...</source>
        <translation>Je n’aime pas...</translation>
    </message>
    <message>
        <source>Thumbs down track failed,you could try again.</source>
        <translation>Votre avis n’a pas pu être enregistré, vous pouvez réessayer.</translation>
    </message>
    <message>
        <source>Add feedback failed ,you could try again!</source>
        <translation>Votre avis n’a pas pu être ajouté, vous pouvez réessayer !</translation>
    </message>
    <message>
        <source>Sleep...</source>
        <translation>Mise en veille du titre...</translation>
    </message>
    <message>
        <source>Sleep track failed,you could try again.</source>
        <translation>Le titre n’a pas pu être écarté, vous pouvez réessayer.</translation>
    </message>
    <message>
        <source>Sleep track failed ,you could try later!</source>
        <translation>Le titre n’a pas pu être écarté, réessayez plus tard !</translation>
    </message>
    <message>
        <source>Bookmark artist failed,you could try again.</source>
        <translation>L’artiste n’a pas pu être mémorisé, vous pouvez réessayer.</translation>
    </message>
    <message>
        <source>Bookmark track failed,you could try again.</source>
        <translation>Le titre n’a pas pu être mémorisé, vous pouvez réessayer.</translation>
    </message>
    <message>
        <source>Add bookmark successful!</source>
        <translation>C’est mémorisé !</translation>
    </message>
    <message>
        <source>Add bookmark failed ,please try later!</source>
        <translation>Impossible de mémoriser, réessayez plus tard !</translation>
    </message>
    <message>
        <source>Explain track failed,you could try again.</source>
        <translation>L’explication n’a pas pu être obtenue, vous pouvez réessayer.</translation>
    </message>
    <message>
        <source>Explain track failed ,you could try again!</source>
        <translation>L’explication n’a pas pu être obtenue, vous pouvez réessayer !</translation>
    </message>
    <message>
        <source>Based on what you&apos;ve told us so far, we&apos;re playing </source>
        <translation>D’après ce que vous nous avez dit jusqu’ici, nous jouons </translation>
    </message>
    <message>
        <source> by </source>
        <translation> de </translation>
    </message>
    <message>
        <source> because it features </source>
        <translation> car ce titre présente </translation>
    </message>
    <message>
        <source>Velmora only permits to create 100 stations,so you can not create more stations!</source>
        <translation>Velmora permet 100 stations au plus, vous ne pouvez pas en créer d’autres !</translation>
    </message>
    <message>
        <source>Tapestry station can not be deleted!</source>
        <translation>La station Tapestry ne peut pas être supprimée !</translation>
    </message>
    <message>
        <source>Are you sure you want to delete station: 
</source>
        <translation>Voulez-vous vraiment supprimer la station : 
</translation>
    </message>
    <message>
        <source> ?</source>
        <translation> ?</translation>
    </message>
    <message>
        <source>This station can not be deleted!</source>
        <translation>Cette station ne peut pas être supprimée !</translation>
    </message>
    <message>
        <source>Delete station...</source>
        <translation>Suppression de la station...</translation>
    </message>
    <message>
        <source>Sorry.Delete station failed,you could try aganin.</source>
        <translation>Désolé, la station n’a pas pu être supprimée, vous pouvez réessayer.</translation>
    </message>
    <message>
        <source>Delete station failed ,please try later!</source>
        <translation>La station n’a pas pu être supprimée, réessayez plus tard !</translation>
    </message>
    <message>
        <source>Tapestry station can not be renamed!</source>
        <translation>La station Tapestry ne peut pas être renommée !</translation>
    </message>
    <message>
        <source>Are you sure you want to rename station: 
</source>
        <translation>Voulez-vous vraiment renommer la station : 
</translation>
    </message>
    <message>
        <source>A share station cannot be renamed!</source>
        <translation>Une station partagée ne peut pas être renommée !</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Chargement...</translation>
    </message>
    <message>
        <source>Play the track failed,System occurs error!</source>
        <translation>Le titre ne peut pas être lu, une erreur du système est survenue !</translation>
    </message>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>Une erreur du réseau est survenue. Vérifiez votre connexion au réseau et réessayez.</translation>
    </message>
    <message>
        <source>Get playlist failed,you could try again!</source>
        <translation>La suite des titres n’a pas pu être chargée, vous pouvez réessayer !</translation>
    </message>
    <message>
        <source>Get play list failed ,please try later!</source>
        <translation>La suite des titres n’a pas pu être chargée, réessayez plus tard !</translation>
    </message>
    <message>
        <source>Get Ad metadata failed!</source>
        <translation>Les données de la publicité n’ont pas pu être chargées !</translation>
    </message>
    <message>
        <source>Get track data failed.Please try later!</source>
        <translation>Les données du titre n’ont pas pu être chargées. Réessayez plus tard !</translation>
    </message>
    <message>
        <source>Now playing...</source>
        <translation>Déjà en cours de lecture...</translation>
    </message>
</context>
<context>
    <name>VelmoraParentWidget</name>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>Une erreur du réseau est survenue. Vérifiez votre connexion au réseau et réessayez.</translation>
    </message>
    <message>
        <source>Velmora is conducting system maintenance. You will be able to listen to existing stations while they work on their systems, but you won&apos;t be able to create new stations, submit feedback or edit your account in any way until the maintenance is complete. Thanks for your patience.</source>
        <translation>Velmora est en maintenance. Vous pouvez écouter vos stations, mais pas en créer, ni donner votre avis, ni modifier votre compte jusqu’à la fin de la maintenance. Merci de votre patience.</translation>
    </message>
    <message>
        <source>Sorry,this token is invalid now .Please contact Velmora listener support at </source>
        <translation>Désolé, cette session n’est plus valable. Contactez l’assistance Velmora : </translation>
    </message>
    <message>
        <source>Invalid username or password, please try again.</source>
        <translation>Nom ou mot de passe incorrect, veuillez réessayer.</translation>
    </message>
    <message>
        <source>Sorry,this account is no longer active.Please contact Velmora listener support at </source>
        <translation>Désolé, ce compte n’est plus actif. Contactez l’assistance Velmora : </translation>
    </message>
    <message>
        <source>Sorry,this account is authorized.Please contact Velmora listener support at </source>
        <translation>Désolé, ce compte n’est pas autorisé. Contactez l’assistance Velmora : </translation>
    </message>
    <message>
        <source>Sorry, Max stations Reached, create station failed.</source>
        <translation>Désolé, le nombre maximal de stations est atteint, la station n’a pas été créée.</translation>
    </message>
    <message>
        <source>Station does not exist.</source>
        <translation>Cette station n’existe pas.</translation>
    </message>
    <message>
        <source>Invalid username</source>
        <translation>Nom d’utilisateur incorrect</translation>
    </message>
    <message>
        <source>Invalid password</source>
        <translation>Mot de passe incorrect</translation>
    </message>
    <message>
        <source>NULL</source>
        <translation>NULL</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>Chargement...</translation>
    </message>
    <message>
        <source>You have reached the last window.</source>
        <translation>C’est la dernière fenêtre. </translation>
    </message>
    <message>
        <source>Are you sure you want to exit Velmora? </source>
        <translation>Voulez-vous vraiment quitter Velmora ? </translation>
    </message>
    <message>
        <source>    Are you still there ? </source>
        <translation>    Êtes-vous toujours là ? </translation>
    </message>
    <message>
        <source>Unable to connect to network.</source>
        <translation>Pas de connexion au réseau.</translation>
    </message>
    <message>
        <source>There may be network congestion.</source>
        <translation>Le réseau est peut-être saturé.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Artiste</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>Titre</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Accueil</translation>
    </message>
</context>
<context>
    <name>WelcomeDlg</name>
    <message>
        <source>Dialog</source>
        <translation>Dialogue</translation>
    </message>
    <message>
        <source>Welcome to Velmora</source>
        <translation>Bienvenue sur Velmora</translation>
    </message>
    <message>
        <source>To experience free personalized radio playing only the music you love
you will need to activate Velmora on this device.

Please select “Activate Velmora” below.</source>
        <translation>Pour écouter gratuitement une radio faite pour vous, avec la musique
que vous aimez, activez Velmora sur cet appareil.

Choisissez « Activer Velmora » ci-dessous.</translation>
    </message>
    <message>
        <source>Activate Velmora</source>
        <translation>Activer Velmora</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Sortir</translation>
    </message>
    <message>
        <source>You have reached the last window.Are you sure you want to exit Velmora? 
</source>
        <translation>C’est la dernière fenêtre. Voulez-vous vraiment quitter Velmora ? 
</translation>
    </message>
</context>
<context>
    <name>WhyDlg</name>
    <message>
        <source>Why is this track playing?</source>
        <translation>Pourquoi ce titre ?</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>Terminé</translation>
    </message>
</context>
<context>
    <name>home::AboutPane</name>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
    <message>
        <source>Nothing has gone wrong.</source>
        <translation>Tout s’est bien passé.</translation>
    </message>
    <message>
        <source>Things that went wrong: %1. A report helps to find out why.</source>
        <translation>Incidents : %1. Un rapport aide à trouver la cause.</translation>
    </message>
    <message>
        <source>Save a report to a USB stick</source>
        <translation>Enregistrer un rapport sur une clé USB</translation>
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
        <translation>Système</translation>
    </message>
    <message>
        <source>The report cannot be saved. %1</source>
        <translation>Le rapport ne peut pas être enregistré. %1</translation>
    </message>
    <message>
        <source>The report is saved: %1</source>
        <translation>Le rapport est enregistré : %1</translation>
    </message>
    <message>
        <source>There is not enough room, or the stick is damaged.</source>
        <translation>La place ne suffit pas, ou la clé est abîmée.</translation>
    </message>
    <message>
        <source>The stick can be taken out.</source>
        <translation>La clé peut être retirée.</translation>
    </message>
    <message>
        <source>Saving the report...</source>
        <translation>Enregistrement du rapport...</translation>
    </message>
</context>
<context>
    <name>home::HomePage</name>
    <message>
        <source>Home</source>
        <translation>Accueil</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>Symboles/123</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>Maj.</translation>
    </message>
    <message>
        <source>Radio</source>
        <translation>Radio</translation>
    </message>
    <message>
        <source>Select starts the radio.</source>
        <translation>La touche de sélection démarre la radio.</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 pour cent</translation>
    </message>
    <message>
        <source>silent</source>
        <translation>muet</translation>
    </message>
    <message>
        <source>All tracks equally loud</source>
        <translation>Tous les titres au même volume</translation>
    </message>
    <message>
        <source>Keys click</source>
        <translation>Clic des touches</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>How loud the radio plays. The volume keys change it while music plays.</source>
        <translation>Le volume de la radio. Les touches de volume le changent pendant la musique.</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>après %n minute</numerusform>
            <numerusform>après %n minutes</numerusform>
        </translation>
    </message>
    <message>
        <source>never</source>
        <translation>jamais</translation>
    </message>
    <message>
        <source>Read aloud what has the focus</source>
        <translation>Lire à voix haute la sélection</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Écran</translation>
    </message>
    <message>
        <source>When nobody presses a key while music plays, the picture dims.</source>
        <translation>Quand aucune touche n’est pressée pendant la musique, l’image s’assombrit.</translation>
    </message>
    <message>
        <source>Switch off</source>
        <translation>Éteindre</translation>
    </message>
    <message>
        <source>The device switches off.</source>
        <translation>L’appareil s’éteint.</translation>
    </message>
    <message>
        <source>Switch off now</source>
        <translation>Éteindre maintenant</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>Redémarrer</translation>
    </message>
    <message>
        <source>The device restarts. The radio comes back by itself.</source>
        <translation>L’appareil redémarre. La radio revient d’elle-même.</translation>
    </message>
    <message>
        <source>Restart now</source>
        <translation>Redémarrer maintenant</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Ends the radio and Home.</source>
        <translation>Quitte la radio et l’accueil.</translation>
    </message>
    <message>
        <source>Quit now</source>
        <translation>Quitter maintenant</translation>
    </message>
    <message>
        <source>%1, chosen</source>
        <translation>%1, choisi</translation>
    </message>
    <message>
        <source>Larger picture</source>
        <translation>Image agrandie</translation>
    </message>
    <message>
        <source>A larger picture is drawn from the next start of the radio or of Home.</source>
        <translation>L’image agrandie s’applique au prochain démarrage de la radio ou de l’accueil.</translation>
    </message>
</context>
<context>
    <name>home::LanguagePane</name>
    <message>
        <source>As the system is set up</source>
        <translation>Comme le système</translation>
    </message>
    <message>
        <source>Language and region</source>
        <translation>Langue et région</translation>
    </message>
    <message>
        <source>The language of all texts, and how dates, times and numbers are written.</source>
        <translation>La langue de tous les textes, et l’écriture des dates, des heures et des nombres.</translation>
    </message>
    <message>
        <source>The time zone is that of the system.</source>
        <translation>Le fuseau horaire est celui du système.</translation>
    </message>
    <message>
        <source>The time zone cannot be changed. %1</source>
        <translation>Le fuseau horaire ne peut pas être changé. %1</translation>
    </message>
    <message>
        <source>Time zone</source>
        <translation>Fuseau horaire</translation>
    </message>
</context>
<context>
    <name>home::MenuCommand</name>
    <message>
        <source>There is no menu system.</source>
        <translation>Il n’y a pas de système de menus.</translation>
    </message>
</context>
<context>
    <name>home::NetworkPane</name>
    <message>
        <source>Network</source>
        <translation>Réseau</translation>
    </message>
    <message>
        <source>Connected to %1.</source>
        <translation>Connecté à %1.</translation>
    </message>
    <message>
        <source>This Wi-Fi cannot be used: the password is wrong, or it is too far away. %1</source>
        <translation>Ce Wi-Fi ne fonctionne pas : le mot de passe est faux, ou il est trop loin. %1</translation>
    </message>
    <message>
        <source>Looking at the network...</source>
        <translation>Examen du réseau...</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>non connecté</translation>
    </message>
    <message>
        <source>no address</source>
        <translation>pas d’adresse</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 pour cent</translation>
    </message>
    <message>
        <source>%1 percent, open</source>
        <translation>%1 pour cent, ouvert</translation>
    </message>
    <message>
        <source>Password of %1</source>
        <translation>Mot de passe de %1</translation>
    </message>
    <message>
        <source>A Wi-Fi password has at least %1 characters.</source>
        <translation>Un mot de passe Wi-Fi a au moins %1 caractères.</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>Connexion à %1...</translation>
    </message>
    <message>
        <source>All is well: the service answers.</source>
        <translation>Tout va bien : le service répond.</translation>
    </message>
    <message>
        <source>The service runs on this device, without the network. %1</source>
        <translation>Le service fonctionne sur cet appareil, sans le réseau. %1</translation>
    </message>
    <message>
        <source>This device has no network card.</source>
        <translation>Cet appareil n’a pas de carte réseau.</translation>
    </message>
    <message>
        <source>No cable is plugged in, and no Wi-Fi is connected.</source>
        <translation>Aucun câble n’est branché, et aucun Wi-Fi n’est connecté.</translation>
    </message>
    <message>
        <source>The device is connected, but the router gives it no address. Restarting the router may help.</source>
        <translation>L’appareil est connecté, mais le routeur ne lui donne pas d’adresse. Redémarrer le routeur peut aider.</translation>
    </message>
    <message>
        <source>The router leads to no other network, and the service is not found in this one.</source>
        <translation>Le routeur ne mène à aucun autre réseau, et le service est introuvable dans celui-ci.</translation>
    </message>
    <message>
        <source>The network is there, but nobody knows the name of the service. Either the name is wrong, or the internet is away.</source>
        <translation>Le réseau est là, mais personne ne connaît le nom du service. Le nom est faux, ou l’internet est absent.</translation>
    </message>
    <message>
        <source>The network is there, but the service does not answer. Either it does not run, or the internet is away.</source>
        <translation>Le réseau est là, mais le service ne répond pas. Il est arrêté, ou l’internet est absent.</translation>
    </message>
    <message>
        <source>The network is there. %1</source>
        <translation>Le réseau est là. %1</translation>
    </message>
</context>
<context>
    <name>home::NoticePage</name>
    <message>
        <source>One moment</source>
        <translation>Un instant</translation>
    </message>
    <message>
        <source>The radio needs a key</source>
        <translation>La radio attend une touche</translation>
    </message>
    <message>
        <source>The radio has stopped</source>
        <translation>La radio s’est arrêtée</translation>
    </message>
    <message>
        <source>The radio cannot reach its service. It starts again as soon as it can.</source>
        <translation>La radio ne peut pas joindre son service. Elle redémarre dès que possible.</translation>
    </message>
    <message>
        <source>The radio has failed several times although its service answers.</source>
        <translation>La radio a échoué plusieurs fois alors que son service répond.</translation>
    </message>
    <message>
        <source>The radio has failed several times. Home, About keeps the reports.</source>
        <translation>La radio a échoué plusieurs fois. Les rapports sont dans Accueil, À propos.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Accueil</translation>
    </message>
</context>
<context>
    <name>home::OutputPane</name>
    <message>
        <source>Sound output</source>
        <translation>Sortie audio</translation>
    </message>
    <message>
        <source>Where the music comes out. The radio uses it from its next start.</source>
        <translation>Par où sort la musique. La radio l’utilise à son prochain démarrage.</translation>
    </message>
    <message>
        <source>The usual one</source>
        <translation>L’habituelle</translation>
    </message>
</context>
<context>
    <name>home::PhonesPane</name>
    <message>
        <source>Phones</source>
        <translation>Téléphones</translation>
    </message>
    <message>
        <source>The service runs on this device and only for it. To reach it from a telephone, start it so that it listens in the home network; its manual says how.</source>
        <translation>Le service fonctionne sur cet appareil et pour lui seul. Pour y accéder d’un téléphone, démarrez-le pour le réseau de la maison ; son manuel dit comment.</translation>
    </message>
    <message>
        <source>Open this address in the browser of a telephone in the same network: to link a radio, to manage your account, or to use the telephone as a remote control and keyboard.</source>
        <translation>Ouvrez cette adresse dans le navigateur d’un téléphone du même réseau : pour associer une radio, gérer votre compte ou utiliser le téléphone comme télécommande et clavier.</translation>
    </message>
</context>
<context>
    <name>home::ServiceHealth</name>
    <message>
        <source>The service answers.</source>
        <translation>Le service répond.</translation>
    </message>
    <message>
        <source>No service is set up. Choose one under Service.</source>
        <translation>Aucun service n’est réglé. Choisissez-en un sous Service.</translation>
    </message>
    <message>
        <source>Nobody knows the name of the service.</source>
        <translation>Personne ne connaît le nom du service.</translation>
    </message>
    <message>
        <source>The service does not answer.</source>
        <translation>Le service ne répond pas.</translation>
    </message>
    <message>
        <source>The certificate of the service is not valid.</source>
        <translation>Le certificat du service n’est pas valable.</translation>
    </message>
    <message>
        <source>The service answers with an error.</source>
        <translation>Le service répond par une erreur.</translation>
    </message>
    <message>
        <source>What answers at this address is not the service.</source>
        <translation>Ce qui répond à cette adresse n’est pas le service.</translation>
    </message>
</context>
<context>
    <name>home::ServicePane</name>
    <message>
        <source>Service</source>
        <translation>Service</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>none</source>
        <translation>aucune</translation>
    </message>
    <message>
        <source>Test it</source>
        <translation>Le tester</translation>
    </message>
    <message>
        <source>The radio was started for this service</source>
        <translation>La radio a été démarrée pour ce service</translation>
    </message>
    <message>
        <source>Use another one</source>
        <translation>En utiliser un autre</translation>
    </message>
    <message>
        <source>Use the one of this device</source>
        <translation>Utiliser celui de cet appareil</translation>
    </message>
    <message>
        <source>Asking the service...</source>
        <translation>Question au service...</translation>
    </message>
    <message>
        <source>Address of the service</source>
        <translation>Adresse du service</translation>
    </message>
    <message>
        <source>No service is set up. Choose the one of your house, or type its address.</source>
        <translation>Aucun service n’est configuré. Choisissez celui de votre maison, ou saisissez son adresse.</translation>
    </message>
    <message>
        <source>Fingerprint</source>
        <translation>Empreinte</translation>
    </message>
    <message>
        <source>Use this service</source>
        <translation>Utiliser ce service</translation>
    </message>
    <message>
        <source>Do not use it</source>
        <translation>Ne pas l’utiliser</translation>
    </message>
    <message>
        <source>Compare the fingerprint with the one on the service&apos;s own page, /house. If they differ, something else pretends to be the service.</source>
        <translation>Comparez l’empreinte avec celle de la page /house du service. Si elles diffèrent, autre chose se fait passer pour le service.</translation>
    </message>
    <message>
        <source>The service answers, and its certificate is valid.</source>
        <translation>Le service répond, et son certificat est valide.</translation>
    </message>
    <message>
        <source>The service answers, but it is not encrypted: everybody in this network could read along.</source>
        <translation>Le service répond, mais il n’est pas chiffré : chacun sur ce réseau pourrait lire.</translation>
    </message>
</context>
<context>
    <name>home::SettingPane</name>
    <message>
        <source>This cannot be changed. %1</source>
        <translation>Cela ne peut pas être changé. %1</translation>
    </message>
    <message>
        <source>on</source>
        <translation>oui</translation>
    </message>
    <message>
        <source>off</source>
        <translation>non</translation>
    </message>
</context>
<context>
    <name>home::SleepPane</name>
    <message>
        <source>Sleep timer</source>
        <translation>Minuterie</translation>
    </message>
    <message>
        <source>The sleep timer cannot be set. %1</source>
        <translation>La minuterie ne peut pas être réglée. %1</translation>
    </message>
    <message>
        <source>The music fades out and the screen turns black.</source>
        <translation>La musique baisse, puis l’écran devient noir.</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes are left.</source>
        <translation>
            <numerusform>Il reste %n minute.</numerusform>
            <numerusform>Il reste %n minutes.</numerusform>
        </translation>
    </message>
    <message>
        <source>off</source>
        <translation>non</translation>
    </message>
    <message>
        <source>after this track</source>
        <translation>après ce titre</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>après %n minute</numerusform>
            <numerusform>après %n minutes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>home::UsbStick</name>
    <message>
        <source>No USB stick is mounted, and nothing on this device mounts one (udisks2).</source>
        <translation>Aucune clé USB n’est montée, et rien sur cet appareil n’en monte (udisks2).</translation>
    </message>
    <message>
        <source>There is no USB stick that can be written to. Put one in and choose this again.</source>
        <translation>Aucune clé USB inscriptible n’est présente. Branchez-en une et choisissez de nouveau cette ligne.</translation>
    </message>
    <message>
        <source>The USB stick cannot be used. %1</source>
        <translation>La clé USB ne peut pas être utilisée. %1</translation>
    </message>
</context>
<context>
    <name>netcommon::Speech</name>
    <message>
        <source>Stations and music</source>
        <translation>Stations et musique</translation>
    </message>
    <message>
        <source>Choose an account</source>
        <translation>Choisir un compte</translation>
    </message>
    <message>
        <source>Activate this radio</source>
        <translation>Activer cette radio</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Connexion</translation>
    </message>
    <message>
        <source>Password reminder</source>
        <translation>Mot de passe oublié</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>Bienvenue</translation>
    </message>
    <message>
        <source>Create a station</source>
        <translation>Créer une station</translation>
    </message>
    <message>
        <source>Rename a station</source>
        <translation>Renommer une station</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Stations</translation>
    </message>
    <message>
        <source>Song history</source>
        <translation>Historique</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Résultats</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>Lecture ou pause</translation>
    </message>
    <message>
        <source>Next track</source>
        <translation>Titre suivant</translation>
    </message>
    <message>
        <source>Thumbs down</source>
        <translation>Je n’aime pas</translation>
    </message>
    <message>
        <source>Thumbs up</source>
        <translation>J’aime</translation>
    </message>
</context>
<context>
    <name>platform::DeviceSettings</name>
    <message>
        <source>more than 64 KiB</source>
        <translation>plus de 64 Kio</translation>
    </message>
    <message>
        <source>its folder cannot be made</source>
        <translation>son dossier ne peut pas être créé</translation>
    </message>
    <message>
        <source>no permission to write</source>
        <translation>pas de droit d’écriture</translation>
    </message>
    <message>
        <source>somebody else is writing it</source>
        <translation>quelqu’un d’autre y écrit</translation>
    </message>
</context>
</TS>
