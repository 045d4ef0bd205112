// The ways of the tour: each is one journey with its own device and service.

#include "tools/tourguide/tour.h"

#include "service/velmorasettings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTemporaryDir>

#include <sqlite3.h>

namespace {

const QString player = QStringLiteral("VelmoraMainDlg");
const QString stations = QStringLiteral("stationListWidget");
const QString history = QStringLiteral("playListWidget");
const QString results = QStringLiteral("searchResultListWidget");

QString text(const QJsonObject &now, const char *label)
{
    return now.value(QStringLiteral("labels")).toObject().value(QLatin1String(label)).toString();
}

// How a box begins that says this, in the language of the tour.
QString said(const char *context, const char *text)
{
    return QCoreApplication::translate(context, text).trimmed();
}

int count(const QJsonObject &now, const QString &list)
{
    return now.value(QStringLiteral("lists")).toObject().value(list).toObject().value(QStringLiteral("count")).toInt();
}

bool isPlaying(const QJsonObject &now)
{
    return now.value(QStringLiteral("playback")).toInt() == 5 &&
           now.value(QStringLiteral("screen")).toString() == player && now.value(QStringLiteral("box")).isNull();
}

// An ad has no album.
bool isTrack(const QJsonObject &now)
{
    return isPlaying(now) && !text(now, "albumLabel").isEmpty();
}

bool keys(Journey &journey, const char *names)
{
    return journey.key(QString::fromLatin1(names).split(QLatin1Char(' ')));
}

bool type(Journey &journey, const char *words)
{
    return journey.key({QStringLiteral("text"), QLatin1String(words)});
}

bool waitForTrack(Journey &journey)
{
    return journey.waitFor(isTrack, 90);
}

bool focusStations(Journey &journey)
{
    for (int tries = 0; tries < 8; ++tries) {
        if (journey.status().value(QStringLiteral("focus")).toString() == stations)
            return true;
        keys(journey, "left");
    }
    return false;
}

// Opens the track menu and moves up by `up` entries from its last one.
bool openMenu(Journey &journey, int up)
{
    return waitForTrack(journey) && focusStations(journey) && keys(journey, "right select") &&
           journey.waitForScreen(QStringLiteral("MenuDlg")) &&
           (up == 0 || journey.key(QStringList(up, QStringLiteral("up"))));
}

// Names as they come in the world: Japanese, Chinese, Korean, Arabic, Hebrew, Devanagari, Thai, emoji.
const char *const worldNames[] = {"夜の窓辺で聴く静かな歌",
                                  "雨后的小巷",
                                  "비 오는 날의 작은 방",
                                  "موسيقى هادئة بعد المطر",
                                  "ערב שקט ליד הים!",
                                  "धीमी शाम की एक धुन",
                                  "เพลงช้าในสวนหลังบ้าน",
                                  "Café ☕ 🌧️ 🎶",
                                  "أغان طويلة لليالي الشتاء الباردة قرب النافذة"};

// Renames everything in the service's catalogue to one of these names, once it has been scanned.
bool renameEverything(Journey &journey)
{
    static const QRegularExpression whole(QStringLiteral("music: (\\d+) files, \\1 of"));
    if (!QTest::qWaitFor([&] { return journey.serverReport().contains(whole); }, 60'000))
        return false;
    sqlite3 *store = nullptr;
    bool isDone =
        sqlite3_open(qUtf8Printable(journey.root() + QStringLiteral("/server/velmora.db")), &store) == SQLITE_OK;
    sqlite3_busy_timeout(store, 10000);
    constexpr int count = int(std::size(worldNames));
    for (int i = 0; i < count && isDone; ++i) {
        // The offsets differ, so that one track shows several scripts at once.
        const auto sql = QStringLiteral("UPDATE stations SET name = '%1' WHERE id % %2 = %3;"
                                        "UPDATE tracks SET song = '%1' WHERE id % %2 = %3;"
                                        "UPDATE artists SET name = '%1' WHERE (id + 3) % %2 = %3;"
                                        "UPDATE albums SET title = '%1' WHERE (id + 5) % %2 = %3;")
                             .arg(QString::fromUtf8(worldNames[i]), QString::number(count), QString::number(i));
        isDone = sqlite3_exec(store, sql.toUtf8().constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
    }
    sqlite3_close(store);
    return isDone;
}

bool skip(Journey &journey)
{
    if (!waitForTrack(journey))
        return false;
    const int before = count(journey.last(), history);
    return keys(journey, "next") &&
           journey.waitFor([&](const QJsonObject &now) { return isPlaying(now) && count(now, history) > before; });
}

} // namespace

void Tour::newDevice()
{
    Journey::Options options;
    options.isSetUp = false;
    Journey journey(options);
    if (!begin(journey))
        return;
    stop(journey, journey.waitForScreen(QStringLiteral("WelcomeDlg")), "welcome", "Welcome", "12-welcome");
    stop(journey,
         keys(journey, "back") &&
             journey.waitForBox(
                 said("WelcomeDlg", "You have reached the last window.Are you sure you want to exit Velmora? \n")),
         "exit-question", "Back on the last screen: the question before leaving");
    keys(journey, "select");
    journey.waitForNoBox();
    stop(journey,
         keys(journey, "select") &&
             journey.waitForBox(said("SelectUserDlg", "Do you already have a Velmora account ? ")),
         "welcome-question", "A question, the safe answer focused", "13-message-question");
    stop(journey, keys(journey, "left"), "welcome-question-yes", "A question, the other answer focused");
    stop(journey, keys(journey, "select") && journey.waitForScreen(QStringLiteral("SignInDlg")), "signin-prompt",
         "Sign in, prompts");
    stop(journey, type(journey, "living.room@exa") && keys(journey, "up"), "signin-typing",
         "Sign in, typing the address", "08-sign-in");
    stop(journey, keys(journey, "green"), "signin-capitals", "Keyboard, capitals");
    stop(journey, keys(journey, "green red"), "signin-page2", "Keyboard, second page");
    keys(journey, "red down");
    stop(journey, type(journey, "mple.org") && keys(journey, "enter") && type(journey, "wrong password"),
         "signin-password", "Sign in, the password");
    stop(journey,
         keys(journey, "enter") &&
             journey.waitForBox(said("VelmoraParentWidget", "Invalid username or password, please try again.")),
         "warning", "A warning", "14-message-warning");
    keys(journey, "select");
    journey.waitForNoBox();
}

void Tour::activation()
{
    Journey::Options options;
    options.isSetUp = false;
    Journey journey(options);
    if (!begin(journey))
        return;
    journey.waitForScreen(QStringLiteral("WelcomeDlg"));
    keys(journey, "select");
    journey.waitForBox(said("SelectUserDlg", "Do you already have a Velmora account ? "));
    stop(journey, keys(journey, "select") && journey.waitForScreen(QStringLiteral("InternetRadioDlg")), "activation",
         "Activation code", "11-device-activation");
    stop(journey, keys(journey, "select") && journey.waitForBox(QString()), "activation-early",
         "A warning: the code has not been entered yet");
    keys(journey, "select");
}

// A service that accepts connections and never answers: the loading screen stays.
void Tour::loading(const QString &name, const QString &title, const QStringList &menuOptions)
{
    QTcpServer silent;
    silent.listen(QHostAddress::LocalHost);
    Journey::Options options;
    options.hasServer = false;
    options.serverUrl = QStringLiteral("http://127.0.0.1:%1").arg(silent.serverPort());
    options.menuOptions = menuOptions;
    Journey journey(options);
    QDir().mkpath(QFileInfo(journey.settingsFile()).path());
    {
        VelmoraSettings settings(journey.settingsFile(), QSettings::IniFormat, nullptr);
        settings.setWelcomeCheck(QStringLiteral("1"));
    }
    if (begin(journey))
        stop(journey, journey.waitForScreen(QStringLiteral("LoadingDlg"), 10), name, title, "05-loading");
}

void Tour::evening()
{
    loading(QStringLiteral("loading"), QStringLiteral("Loading"));
    Journey journey;
    if (!begin(journey))
        return;
    stop(journey, journey.waitForAudio(2) && waitForTrack(journey), "player-first", "The player, the first track",
         "01-player-playing");
    const bool hasRated = keys(journey, "green");
    bool hasHistory = skip(journey);
    // An ad cannot be rated; a track that gets a thumb down ends.
    const bool hasDisliked = waitForTrack(journey) && keys(journey, "red") && skip(journey);
    hasHistory = skip(journey) && skip(journey) && hasHistory && hasRated && hasDisliked && waitForTrack(journey);
    stop(journey, hasHistory && keys(journey, "right right right right right right"), "player-history",
         "History focused", "04-player-history");
    stop(journey, keys(journey, "end") && (QTest::qWait(marqueeMs), true), "player-history-rated",
         "History, a track with a thumb", "04-player-history");
    stop(journey, keys(journey, "up") && (QTest::qWait(marqueeMs), true), "player-history-disliked",
         "History, a track with a thumb that points down");
    keys(journey, "top");
    stop(journey, keys(journey, "left left left"), "player-next", "A button focused", "03-player-buttons");
    stop(journey, keys(journey, "left left"), "player-menu-button", "The menu button focused");
    stop(journey,
         keys(journey, "left top select") && journey.waitForAudio(3) && waitForTrack(journey) &&
             keys(journey, "right right"),
         "player-tapestry", "Tapestry plays, its button focused", "03-player-buttons");
    stop(journey,
         focusStations(journey) && keys(journey, "down down down down down select") && journey.waitForAudio(12) &&
             waitForTrack(journey) && keys(journey, "green"),
         "player", "The player after a while, list focused", "01-player-playing", thumbMs);
    stop(journey,
         keys(journey, "pause") &&
             journey.waitFor([](const QJsonObject &now) { return now.value(QStringLiteral("playback")).toInt() == 6; },
                             5),
         "player-paused", "Paused");
    keys(journey, "play");
    stop(journey, openMenu(journey, 0), "menu", "The track menu", "15-track-menu");
    stop(journey, keys(journey, "select") && journey.waitForBox(said("VelmoraMainDlg", "Add bookmark successful!")),
         "bookmark", "A bookmark is set");
    keys(journey, "select");
    journey.waitForNoBox();
    stop(journey,
         waitForTrack(journey) && keys(journey, "select") && journey.waitForScreen(QStringLiteral("MenuDlg")) &&
             keys(journey, "down down down select") && journey.waitForScreen(QStringLiteral("WhyDlg")),
         "why", "Why this track", "16-why-dialog");
    keys(journey, "select");
    journey.waitForScreen(player);
    stop(journey,
         journey.menu({QStringLiteral("network"), QStringLiteral("down")}) &&
             journey.waitForBox(said("VelmoraParentWidget", "Unable to connect to network.")),
         "network", "The network is gone");
}

void Tour::stationScreens()
{
    Journey journey;
    if (!begin(journey))
        return;
    journey.waitForAudio(1);
    stop(journey,
         openMenu(journey, 6) && keys(journey, "select") && journey.waitForScreen(QStringLiteral("CreateStationDlg")),
         "create-prompt", "Create a station, prompt", "10-create-station-prompt");
    stop(journey, type(journey, "zzqx"), "create-typing", "Create a station, typing");
    stop(journey, keys(journey, "red"), "create-page2", "Create a station, second page");
    keys(journey, "red");
    stop(journey, keys(journey, "enter") && journey.waitForBox(QString()), "create-nothing", "Nothing is found");
    keys(journey, "select");
    journey.waitForNoBox();
    stop(journey,
         keys(journey, "backspace backspace backspace backspace") && type(journey, "the") && keys(journey, "enter") &&
             journey.waitForBox(said("CreateStationDlg", "We found ")),
         "create-question", "Artist or track");
    keys(journey, "left select");
    stop(journey, journey.waitFor([](const QJsonObject &now) { return count(now, results) > 1; }), "create",
         "Create a station, results", "09-create-station-results", stillMs);
    const QStringList rows = journey.rows(results);
    int longest = 0;
    for (int row = 0; row < rows.size(); ++row)
        if (rows.at(row).size() > rows.at(longest).size())
            longest = row;
    stop(journey,
         (longest == 0 || journey.key(QStringList(longest, QStringLiteral("down")))) && (QTest::qWait(marqueeMs), true),
         "create-marquee", "Create a station, a long row moves");
    keys(journey, "back");
    // --- a name of the greatest length
    waitForTrack(journey);
    keys(journey, "left top down down select");
    journey.waitForAudio(2);
    stop(journey,
         openMenu(journey, 4) && keys(journey, "select") &&
             journey.waitForBox(said("VelmoraMainDlg", "Are you sure you want to rename station: \n")),
         "rename-question", "A question before renaming", "13-message-question");
    stop(journey, keys(journey, "left select") && journey.waitForScreen(QStringLiteral("RenameStationDlg")), "rename",
         "Rename a station", "18-rename-station");
    stop(journey,
         keys(journey, "up select") && type(journey, "Everything we ever danced to before the long summer was over"),
         "rename-typing", "Rename a station, a long name");
    stop(journey,
         keys(journey, "enter") &&
             journey.waitForBox(said("RenameStationDlg", "Are you sure you want to rename this station as: \n")),
         "rename-confirm", "A question with a long name");
    keys(journey, "left select");
    stop(journey, waitForTrack(journey) && focusStations(journey) && (QTest::qWait(marqueeMs), true), "player-long",
         "A long station name, the row moves", "02-player-long-names");
    stop(journey,
         openMenu(journey, 5) && keys(journey, "select") &&
             journey.waitForBox(said("VelmoraMainDlg", "Are you sure you want to delete station: \n")),
         "delete-question", "A question before deleting");
}

void Tour::accounts()
{
    Journey journey;
    if (!begin(journey))
        return;
    journey.waitForAudio(1);
    stop(journey,
         openMenu(journey, 3) && keys(journey, "select") && journey.waitForScreen(QStringLiteral("SelectUserDlg")),
         "accounts-one", "One account", "06-account-selection");
    keys(journey, "select");
    journey.waitForScreen(player);
    {
        VelmoraSettings settings(journey.settingsFile(), QSettings::IniFormat, nullptr);
        int slot = 1;
        for (const char *name : {"kitchen@example.org", "a.very.long.address.for.the.summer.house@example.org",
                                 "hobby.room@example.org", "guest@example.org"})
            settings.addAccount(QString::fromLatin1(name), QString::number(slot++));
    }
    stop(journey,
         journey.waitForAudio(1) && openMenu(journey, 3) && keys(journey, "select") &&
             journey.waitForScreen(QStringLiteral("SelectUserDlg")) &&
             journey.waitFor([](const QJsonObject &now) { return !text(now, "userListBtn_5").isEmpty(); }, 5),
         "accounts-five", "Five accounts", "06-account-selection");
    stop(journey, keys(journey, "down right"), "accounts-delete", "Five accounts, delete focused", "07-account-delete");
    stop(journey, keys(journey, "select") && journey.waitForBox(QString()), "accounts-delete-question",
         "A question before an account goes");
}

void Tour::slowService()
{
    Journey::Options options;
    // A link so slow that the screens before the first music stay visible.
    options.serverOptions = {QStringLiteral("--throttle"), QStringLiteral("20000")};
    Journey journey(options);
    if (!begin(journey))
        return;
    const auto isBuffering = [](const QJsonObject &now) {
        return text(now, "textLabel").startsWith(said("VelmoraMainDlg", "Buffering..."));
    };
    stop(journey, journey.waitFor(isBuffering, 90), "buffering", "Buffering", "20-buffering", 700);
}

void Tour::serviceGone()
{
    {
        Journey::Options options;
        options.hasServer = false;
        options.isSetUp = false;
        options.serverUrl = QStringLiteral("http://127.0.0.1:9");
        Journey journey(options);
        if (!begin(journey))
            return;
        journey.waitForScreen(QStringLiteral("WelcomeDlg"));
        keys(journey, "select");
        // At its start the radio waits a minute for its service.
        stop(journey,
             journey.waitForBox(
                 said("VelmoraMainDlg",
                      "A network error has occurred.  Please check your network connection and try again."),
                 90),
             "network-error", "The service is not there");
    }
    Journey::Options options;
    options.serverOptions = {QStringLiteral("--fail"), QStringLiteral("getStationList=12")};
    Journey journey(options);
    if (begin(journey))
        stop(journey, journey.waitForBox(QString()), "error", "An error: the service has no answer at the start");
}

// Screens and a kind of box that no key opens.
void Tour::withoutKeys()
{
    qputenv("VELMORA_GALLERY", "about,info,reminder");
    Journey::Options options;
    options.radio = QStringLiteral(JOURNEY_GALLERY);
    Journey journey(options);
    const bool hasBegun = begin(journey);
    qunsetenv("VELMORA_GALLERY");
    if (!hasBegun)
        return;
    stop(journey, journey.waitForScreen(QStringLiteral("AboutDlg"), 60), "about",
         "About (shown by the tour: no key leads here)", "17-about-dialog");
    stop(journey, keys(journey, "select") && journey.waitForBox(QString()), "info",
         "A box of the kind \"information\" (shown by the tour: the radio has no message of this kind)",
         "13-message-question");
    stop(journey, keys(journey, "select") && journey.waitForScreen(QStringLiteral("EmailPwdDlg")), "reminder-prompt",
         "Password reminder, prompt (shown by the tour: no key leads here)");
    stop(journey, type(journey, "living.room@example.org"), "reminder", "Password reminder, typing",
         "19-email-password");
}

void Tour::names()
{
    Journey journey;
    if (!journey.startServer() || !renameEverything(journey) || !begin(journey)) {
        m_missing += QStringLiteral("names of the world");
        return;
    }
    stop(journey, journey.waitForAudio(2) && waitForTrack(journey) && focusStations(journey), "names-player",
         "Names of the world: stations and the track", "01-player-playing", stillMs);
    bool hasHistory = true;
    for (int track = 0; track < 4; ++track)
        hasHistory = skip(journey) && hasHistory;
    stop(journey,
         hasHistory && waitForTrack(journey) && keys(journey, "right right right right right right") &&
             (QTest::qWait(marqueeMs), true),
         "names-history", "Names of the world: history", "04-player-history");
    int arabic = 0;
    for (const QString &row : journey.rows(stations))
        arabic = row.isRightToLeft() && row.size() > 30 ? int(journey.rows(stations).indexOf(row)) : arabic;
    stop(journey,
         focusStations(journey) && keys(journey, "top") &&
             (arabic == 0 || journey.key(QStringList(arabic, QStringLiteral("down")))) &&
             (QTest::qWait(marqueeMs), true),
         "names-marquee", "Names of the world: a long right-to-left row moves", "02-player-long-names");
    keys(journey, "down select"); // that one is shared and cannot be renamed
    journey.waitForAudio(2);
    stop(journey,
         openMenu(journey, 5) && keys(journey, "select") &&
             journey.waitForBox(said("VelmoraMainDlg", "Are you sure you want to delete station: \n")),
         "names-question", "Names of the world: a question", "13-message-question");
    keys(journey, "select");
    journey.waitForNoBox();
    stop(journey,
         openMenu(journey, 4) && keys(journey, "select") &&
             journey.waitForBox(said("VelmoraMainDlg", "Are you sure you want to rename station: \n")) &&
             keys(journey, "left select") && journey.waitForScreen(QStringLiteral("RenameStationDlg")),
         "names-rename", "Names of the world: rename a station", "18-rename-station");
    keys(journey, "back");
    stop(journey,
         openMenu(journey, 6) && keys(journey, "select") && journey.waitForScreen(QStringLiteral("CreateStationDlg")) &&
             type(journey, "the") && keys(journey, "enter") &&
             journey.waitForBox(said("CreateStationDlg", "We found ")) && keys(journey, "right select") &&
             journey.waitFor([](const QJsonObject &now) { return count(now, results) > 1; }),
         "names-create", "Names of the world: results", "09-create-station-results", stillMs);
    keys(journey, "back");
    {
        VelmoraSettings settings(journey.settingsFile(), QSettings::IniFormat, nullptr);
        int slot = 1;
        for (const int name : {0, 3, 5, 8})
            settings.addAccount(QString::fromUtf8(worldNames[name]), QString::number(slot++));
    }
    stop(journey,
         openMenu(journey, 3) && keys(journey, "select") && journey.waitForScreen(QStringLiteral("SelectUserDlg")) &&
             journey.waitFor([](const QJsonObject &now) { return !text(now, "userListBtn_5").isEmpty(); }, 5),
         "names-accounts", "Names of the world: accounts", "06-account-selection");
}

// The radio without its pictures, and with a font wider than the one that its screens were designed for.
void Tour::bare()
{
    QTemporaryDir fonts;
    QFile list(fonts.filePath(QStringLiteral("fonts.conf")));
    if (list.open(QIODevice::WriteOnly))
        list.write(
            "<fontconfig><include>/etc/fonts/conf.d</include><dir>/usr/share/fonts/truetype/dejavu</dir><cachedir>" +
            QFile::encodeName(fonts.path()) + "</cachedir></fontconfig>");
    list.close();
    qputenv("FONTCONFIG_FILE", QFile::encodeName(list.fileName()));
    Journey::Options options;
    options.radio = QStringLiteral(JOURNEY_BARE);
    Journey journey(options);
    const bool hasBegun = begin(journey);
    qunsetenv("FONTCONFIG_FILE");
    if (!hasBegun)
        return;
    stop(journey, journey.waitForAudio(4) && waitForTrack(journey), "bare-player", "No pictures, another font: player");
    stop(journey, keys(journey, "down") && (QTest::qWait(marqueeMs), true), "bare-marquee",
         "No pictures, another font: a long row moves");
    stop(journey, keys(journey, "top") && openMenu(journey, 6), "bare-menu", "No pictures, another font: menu");
    stop(journey,
         keys(journey, "select") && journey.waitForScreen(QStringLiteral("CreateStationDlg")) && type(journey, "e"),
         "bare-create", "No pictures, another font: keyboard");
    stop(journey, keys(journey, "enter") && journey.waitForBox(said("CreateStationDlg", "We found ")), "bare-question",
         "No pictures, another font: a question");
    keys(journey, "right select");
    stop(journey, journey.waitFor([](const QJsonObject &now) { return count(now, results) > 1; }), "bare-results",
         "No pictures, another font: results", "", stillMs);
    keys(journey, "back");
    stop(journey,
         openMenu(journey, 3) && keys(journey, "select") && journey.waitForScreen(QStringLiteral("SelectUserDlg")),
         "bare-accounts", "No pictures, another font: one account");
}

// The canvas on larger screens: 1366 x 768, full HD, and four times full HD.
void Tour::scales()
{
    for (const QString &factor : {QStringLiteral("1.067"), QStringLiteral("1.5"), QStringLiteral("3")}) {
        const QString nameForm = QStringLiteral("%1-at-") + factor;
        const QString titleForm = QStringLiteral("%1, drawn ") + factor + QStringLiteral(" times as large");
        Journey::Options options;
        options.menuOptions = {QStringLiteral("--scale"), factor};
        loading(nameForm.arg(QLatin1String("loading")), titleForm.arg(QLatin1String("Loading")), options.menuOptions);
        Journey journey(options);
        if (!begin(journey))
            continue;
        const auto at = [&](bool isReached, const char *name, const char *title, const char *draft) {
            stop(journey, isReached, nameForm.arg(QLatin1String(name)), titleForm.arg(QLatin1String(title)), draft);
        };
        at(journey.waitForAudio(4) && waitForTrack(journey), "player", "The player", "01-player-playing");
        at(keys(journey, "green") && skip(journey) && skip(journey) &&
               keys(journey, "right right right right right right end") && (QTest::qWait(marqueeMs), true),
           "history", "History, a track with a thumb", "04-player-history");
        at(openMenu(journey, 6), "menu", "The track menu", "15-track-menu");
        at(keys(journey, "select") && journey.waitForScreen(QStringLiteral("CreateStationDlg")) &&
               type(journey, "the") && keys(journey, "up"),
           "keyboard", "The keyboard", "10-create-station-prompt");
        at(keys(journey, "down enter") && journey.waitForBox(said("CreateStationDlg", "We found ")), "question",
           "A question", "13-message-question");
        at(keys(journey, "left select") &&
               journey.waitFor([](const QJsonObject &now) { return count(now, results) > 1; }) &&
               keys(journey, "down") && (QTest::qWait(marqueeMs), true),
           "create", "Create a station", "09-create-station-results");
        keys(journey, "back");
        at(openMenu(journey, 3) && keys(journey, "select") && journey.waitForScreen(QStringLiteral("SelectUserDlg")),
           "accounts", "One account", "06-account-selection");
    }
}

// What has the screen while the radio does not run: Home with all its subjects, and the menu system's pages.
void Tour::home()
{
    const QString homePage = QStringLiteral("home::HomePage");
    {
        Journey::Options options;
        options.menuOptions = {QStringLiteral("--supervise"), QStringLiteral("--home"), QStringLiteral(JOURNEY_HOME)};
        Journey journey(options);
        if (!begin(journey))
            return;
        stop(journey, waitForTrack(journey) && keys(journey, "home") && journey.waitForScreen(homePage), "home",
             "Home, by the house key");
        const QStringList subjects = journey.rows(QStringLiteral("subjectList"));
        for (int subject = 1; subject < subjects.size(); ++subject)
            stop(journey, keys(journey, "down right") && journey.waitForScreen(homePage) && keys(journey, "left"),
                 QStringLiteral("home-%1").arg(subject), QStringLiteral("Home, ") + subjects[subject]);
        stop(journey, keys(journey, "home down right down"), "home-volume", "Home, a volume to choose");
        stop(journey, keys(journey, "home select") && waitForTrack(journey), "home-radio", "From Home to the radio");
    }
    for (const QString &page : {QStringLiteral("waiting"), QStringLiteral("again"), QStringLiteral("stopped")}) {
        Journey::Options options;
        options.hasServer = false;
        options.isSetUp = false;
        options.serverUrl = QStringLiteral("http://127.0.0.1:9"); // nobody answers
        options.radio = QStringLiteral(JOURNEY_HOME);
        options.radioOptions = {QStringLiteral("--page"), page};
        Journey journey(options);
        if (begin(journey))
            stop(journey, journey.waitForScreen(QStringLiteral("home::NoticePage")), QStringLiteral("page-") + page,
                 QStringLiteral("The menu system's page \"%1\"").arg(page));
    }
}
