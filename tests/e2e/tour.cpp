// Every screen and state of the real radio against the real service, reached with the remote alone: one picture a stop
// and a page that shows each beside its reference picture. `tools/tour` builds and starts this.

#include "e2e/journey.h"
#include "service/velmorasettings.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTextStream>

#include <cstdio>

namespace {

const QString player = QStringLiteral("VelmoraMainDlg");
const QString stations = QStringLiteral("stationListWidget");
const QString results = QStringLiteral("searchResultListWidget");

QString text(const QJsonObject &now, const QString &label)
{
    return now.value(QStringLiteral("labels")).toObject().value(label).toString();
}

bool isPlaying(const QJsonObject &now)
{
    return now.value(QStringLiteral("playback")).toInt() == 5 &&
           now.value(QStringLiteral("screen")).toString() == player && now.value(QStringLiteral("box")).isNull();
}

// An ad has no album.
bool isTrack(const QJsonObject &now)
{
    return isPlaying(now) && !text(now, QStringLiteral("albumLabel")).isEmpty();
}

class Tour {
public:
    Tour(const QString &pictures, const QString &references, const QString &only)
        : m_pictures(pictures)
        , m_references(references)
        , m_only(only)
    {
    }

    void walk()
    {
        const std::pair<const char *, void (Tour::*)()> ways[] = {
            {"new", &Tour::newDevice},          {"code", &Tour::activation},   {"player", &Tour::evening},
            {"station", &Tour::stationScreens}, {"accounts", &Tour::accounts}, {"slow", &Tour::slowService},
            {"gone", &Tour::serviceGone}};
        for (const auto &[name, way] : ways)
            if (m_only.isEmpty() || m_only == QLatin1String(name))
                (this->*way)();
    }

    bool writePage() const
    {
        QFile file(QDir(m_pictures).filePath(QStringLiteral("index.html")));
        if (!file.open(QIODevice::WriteOnly))
            return false;
        QTextStream page(&file);
        page << "<!doctype html><meta charset=\"utf-8\"><title>Velmora, every screen</title>\n<style>"
                "body{background:#0b0511;color:#eee;font:16px Arial,sans-serif;margin:24px}"
                "figure{display:inline-block;width:48%;margin:0 1% 24px 0;vertical-align:top}"
                "img{width:100%}figcaption{color:#c5c5c5}h2{margin:16px 0 8px}</style>\n"
                "<h1>Every screen of the radio</h1>\n";
        for (const Stop &stop : m_stops) {
            page << "<h2>" << stop.title.toHtmlEscaped() << "</h2>\n<figure><img src=\"" << stop.name
                 << ".png\"><figcaption>the radio</figcaption></figure>";
            if (!stop.reference.isEmpty())
                page << "<figure><img src=\"" << stop.reference << ".png\"><figcaption>reference</figcaption></figure>";
            page << "\n";
        }
        for (const QString &missing : m_missing)
            page << "<p>not reached: " << missing.toHtmlEscaped() << "</p>\n";
        return true;
    }

    QStringList missing() const { return m_missing; }

private:
    struct Stop {
        QString name;
        QString title;
        QString reference; // without .png; copied beside the pictures
    };

    // --- one stop
    bool stop(Journey &journey, bool isReached, const char *name, const char *title, const char *reference = "",
              int settle = settleMs)
    {
        const Stop stop{QLatin1String(name), QLatin1String(title),
                        *reference ? QStringLiteral("reference-") + QLatin1String(reference) : QString()};
        const QString path = QDir(m_pictures).absoluteFilePath(stop.name + QStringLiteral(".png"));
        QTest::qWait(settle); // what has just been asked for is painted
        if (!isReached || !journey.menu({QStringLiteral("screenshot"), path})) {
            m_missing += stop.title;
            std::printf("tour: NOT REACHED: %s (%s, %s)\n", title,
                        qPrintable(journey.status().value(QStringLiteral("screen")).toString()),
                        qPrintable(journey.last().value(QStringLiteral("boxText")).toString()));
            std::fflush(stdout);
            return false;
        }
        if (*reference) {
            const QString copy = QDir(m_pictures).filePath(stop.reference + QStringLiteral(".png"));
            QFile::remove(copy);
            QFile::copy(QDir(m_references).filePath(QLatin1String(reference) + QStringLiteral(".png")), copy);
        }
        m_stops += stop;
        std::printf("tour: %s\n", title);
        std::fflush(stdout);
        return true;
    }

    static bool keys(Journey &journey, const char *names)
    {
        return journey.key(QString::fromLatin1(names).split(QLatin1Char(' ')));
    }

    static bool type(Journey &journey, const QString &words) { return journey.key({QStringLiteral("text"), words}); }

    bool begin(Journey &journey)
    {
        if (journey.start())
            return true;
        m_missing += journey.problem();
        std::printf("tour: %s\n", qPrintable(journey.problem()));
        return false;
    }

    static bool focusStations(Journey &journey)
    {
        for (int tries = 0; tries < 8; ++tries) {
            if (journey.status().value(QStringLiteral("focus")).toString() == stations)
                return true;
            keys(journey, "left");
        }
        return false;
    }

    static bool openMenu(Journey &journey, int up)
    {
        return journey.waitFor(isTrack, 90) && focusStations(journey) && keys(journey, "right select") &&
               journey.waitForScreen(QStringLiteral("MenuDlg")) &&
               (up == 0 || journey.key(QStringList(up, QStringLiteral("up"))));
    }

    // --- the ways
    void newDevice()
    {
        Journey::Options options;
        options.isSetUp = false;
        Journey journey(options);
        if (!begin(journey))
            return;
        stop(journey, journey.waitForScreen(QStringLiteral("WelcomeDlg")), "welcome", "Welcome", "12-welcome");
        stop(journey, keys(journey, "select") && journey.waitForBox(QStringLiteral("Do you already have")),
             "welcome-question", "A question, the safe answer focused", "13-message-question");
        stop(journey, keys(journey, "left"), "welcome-question-yes", "A question, the other answer focused");
        stop(journey, keys(journey, "select") && journey.waitForScreen(QStringLiteral("SignInDlg")), "signin-prompt",
             "Sign in, prompts");
        stop(journey, type(journey, QStringLiteral("living.room@exa")) && keys(journey, "up"), "signin-typing",
             "Sign in, typing the address", "08-sign-in");
        stop(journey, keys(journey, "green"), "signin-capitals", "Keyboard, capitals");
        stop(journey, keys(journey, "green red"), "signin-page2", "Keyboard, second page");
        keys(journey, "red down");
        stop(journey,
             type(journey, QStringLiteral("mple.org")) && keys(journey, "enter") &&
                 type(journey, QStringLiteral("wrong password")),
             "signin-password", "Sign in, the password");
        stop(journey, keys(journey, "enter") && journey.waitForBox(QStringLiteral("Invalid username or password")),
             "warning", "A warning", "14-message-warning");
        keys(journey, "select");
        journey.waitForNoBox();
    }

    void activation()
    {
        Journey::Options options;
        options.isSetUp = false;
        Journey journey(options);
        if (!begin(journey))
            return;
        journey.waitForScreen(QStringLiteral("WelcomeDlg"));
        keys(journey, "select");
        journey.waitForBox(QStringLiteral("Do you already have"));
        stop(journey, keys(journey, "select") && journey.waitForScreen(QStringLiteral("InternetRadioDlg")),
             "activation", "Activation code", "11-device-activation");
        stop(journey, keys(journey, "select") && journey.waitForBox(QString()), "activation-early",
             "A warning: the code has not been entered yet");
    }

    void evening()
    {
        Journey journey;
        if (!begin(journey))
            return;
        stop(journey, journey.waitForScreen(QStringLiteral("LoadingDlg"), 2), "loading", "Loading", "05-loading", 250);
        journey.waitForAudio(1);
        stop(journey, journey.waitFor(isTrack, 90) && journey.waitForAudio(4), "player", "The player, list focused",
             "01-player-playing");
        stop(journey,
             keys(journey, "green") && journey.waitFor([](const QJsonObject &now) { return isTrack(now); }) &&
                 keys(journey, "next") && journey.waitForAudio(3) && journey.waitFor(isTrack, 90) &&
                 keys(journey, "right right right right right right"),
             "player-history", "History focused, a rated track", "04-player-history");
        stop(journey, keys(journey, "down") && (QTest::qWait(marqueeMs), true), "player-history-rated",
             "History, the rated track chosen");
        stop(journey, keys(journey, "left left left"), "player-next", "A button focused", "03-player-buttons");
        stop(journey, keys(journey, "left left"), "player-menu-button", "The menu button focused");
        stop(journey,
             keys(journey, "left top select") && journey.waitForAudio(3) && journey.waitFor(isTrack, 90) &&
                 keys(journey, "right right"),
             "player-tapestry", "Tapestry plays, its button focused", "03-player-buttons");
        keys(journey, "left left");
        stop(journey,
             keys(journey, "pause") &&
                 journey.waitFor(
                     [](const QJsonObject &now) { return now.value(QStringLiteral("playback")).toInt() == 6; }, 5),
             "player-paused", "Paused");
        keys(journey, "play");
        stop(journey, openMenu(journey, 0), "menu", "The track menu", "15-track-menu");
        stop(journey, keys(journey, "select") && journey.waitForBox(QStringLiteral("Add bookmark")), "info",
             "A box with information");
        keys(journey, "select");
        journey.waitForNoBox();
        stop(journey,
             journey.waitFor(isTrack, 90) && keys(journey, "select") &&
                 journey.waitForScreen(QStringLiteral("MenuDlg")) && keys(journey, "down down down select") &&
                 journey.waitForScreen(QStringLiteral("WhyDlg")),
             "why", "Why this track", "16-why-dialog");
        keys(journey, "select");
        journey.waitForScreen(player);
        stop(journey,
             journey.menu({QStringLiteral("network"), QStringLiteral("down")}) &&
                 journey.waitForBox(QStringLiteral("Unable to connect to network.")),
             "network", "The network is gone");
    }

    void stationScreens()
    {
        Journey journey;
        if (!begin(journey))
            return;
        journey.waitForAudio(1);
        stop(journey,
             openMenu(journey, 6) && keys(journey, "select") &&
                 journey.waitForScreen(QStringLiteral("CreateStationDlg")),
             "create-prompt", "Create a station, prompt", "10-create-station-prompt");
        stop(journey, type(journey, QStringLiteral("zzqx")), "create-typing", "Create a station, typing");
        stop(journey, keys(journey, "red"), "create-page2", "Create a station, second page");
        keys(journey, "red");
        stop(journey, keys(journey, "enter") && journey.waitForBox(QString()), "create-nothing", "Nothing is found");
        keys(journey, "select");
        journey.waitForNoBox();
        stop(journey,
             keys(journey, "backspace backspace backspace backspace") && type(journey, QStringLiteral("e")) &&
                 keys(journey, "enter") && journey.waitForBox(QStringLiteral("We found ")),
             "create-question", "Artist or track");
        keys(journey, "right select");
        stop(journey, journey.waitFor([](const QJsonObject &now) {
            return now.value(QStringLiteral("lists"))
                       .toObject()
                       .value(results)
                       .toObject()
                       .value(QStringLiteral("count"))
                       .toInt() > 1;
        }),
             "create", "Create a station, results", "09-create-station-results");
        const QStringList rows = journey.rows(results);
        int longest = 0;
        for (int row = 0; row < rows.size(); ++row)
            if (rows.at(row).size() > rows.at(longest).size())
                longest = row;
        stop(journey,
             (longest == 0 || journey.key(QStringList(longest, QStringLiteral("down")))) &&
                 (QTest::qWait(marqueeMs), true),
             "create-marquee", "Create a station, a long row moves");
        keys(journey, "back");
        // --- another name, as long as it goes
        journey.waitFor(isTrack, 90);
        keys(journey, "left top down down select");
        journey.waitForAudio(2);
        stop(journey,
             openMenu(journey, 4) && keys(journey, "select") &&
                 journey.waitForBox(QStringLiteral("Are you sure you want to rename station")),
             "rename-question", "A question before renaming", "13-message-question");
        stop(journey, keys(journey, "left select") && journey.waitForScreen(QStringLiteral("RenameStationDlg")),
             "rename", "Rename a station", "18-rename-station");
        stop(journey,
             keys(journey, "up select") &&
                 type(journey, QStringLiteral("Everything we ever danced to before the long summer was over")),
             "rename-typing", "Rename a station, a long name");
        stop(journey,
             keys(journey, "enter") && journey.waitForBox(QStringLiteral("Are you sure you want to rename this")),
             "rename-confirm", "A question with a long name");
        keys(journey, "left select");
        stop(journey, journey.waitFor(isTrack, 90) && (QTest::qWait(marqueeMs), true), "player-long",
             "A long station name, the row moves", "02-player-long-names");
        stop(journey,
             openMenu(journey, 5) && keys(journey, "select") &&
                 journey.waitForBox(QStringLiteral("Are you sure you want to delete station")),
             "delete-question", "A question before deleting");
    }

    void accounts()
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
                 journey.waitFor(
                     [](const QJsonObject &now) { return !text(now, QStringLiteral("userListBtn_5")).isEmpty(); }, 5),
             "accounts-five", "Five accounts", "06-account-selection");
        stop(journey, keys(journey, "down right"), "accounts-delete", "Five accounts, delete focused",
             "07-account-delete");
        stop(journey, keys(journey, "select") && journey.waitForBox(QString()), "accounts-delete-question",
             "A question before an account goes");
    }

    void slowService()
    {
        Journey::Options options;
        // Less than the tracks need: the radio pauses.
        options.serverOptions = {QStringLiteral("--throttle"), QStringLiteral("40000")};
        Journey journey(options);
        if (!begin(journey))
            return;
        stop(journey,
             journey.waitFor(
                 [](const QJsonObject &now) {
                     return text(now, QStringLiteral("textLabel")).startsWith(QLatin1String("Buffering"));
                 },
                 90),
             "buffering", "Buffering", "20-buffering", 0);
    }

    void serviceGone()
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
        stop(journey, journey.waitForBox(QStringLiteral("A network error has occurred.")), "error",
             "The service is not there");
    }

    static constexpr int settleMs =
        1200; // the panel slides for half a second; a field's cursor is lit in the second after the last key
    static constexpr int marqueeMs = 2500;

    const QString m_pictures;
    const QString m_references;
    const QString m_only;
    QList<Stop> m_stops;
    QStringList m_missing;
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false")); // the settings class reports what it does
    QCommandLineParser line;
    line.addHelpOption();
    line.addPositionalArgument(QStringLiteral("pictures"), QStringLiteral("folder for the pictures"));
    line.addPositionalArgument(QStringLiteral("references"), QStringLiteral("folder of the reference pictures"));
    line.addPositionalArgument(QStringLiteral("way"), QStringLiteral("only this part of the tour"));
    line.process(app);
    const QStringList arguments = line.positionalArguments();
    if (arguments.size() < 2 || !QDir().mkpath(arguments[0])) {
        std::fprintf(stderr, "tour: two folders are needed\n");
        return 2;
    }
    if (!QDir(QStringLiteral(JOURNEY_LIBRARY "/demo")).exists()) {
        std::printf("tour: making the demo catalogue\n");
        std::fflush(stdout);
        if (!Journey::makeLibrary()) {
            std::fprintf(stderr, "tour: the demo catalogue could not be made\n");
            return 1;
        }
    }
    Tour tour(arguments[0], arguments[1], arguments.value(2));
    tour.walk();
    if (!tour.writePage()) {
        std::fprintf(stderr, "tour: %s cannot be written to\n", qPrintable(arguments[0]));
        return 1;
    }
    return tour.missing().isEmpty() ? 0 : 1;
}
