#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>

// Runs the real velmora (on a private device) under a real velmora-menu with a real velmora-server. All of them end
// with this object. After a failed test a picture of the screen and all reports are kept in JOURNEY_PICTURES.
class Journey {
public:
    struct Options {
        bool hasServer = true;
        bool isSetUp = true;            // the demo account is linked and was last
        QStringList serverOptions = {}; // beyond what every journey passes; ROOT in them is root()
        QString serverUrl = {};         // instead of a server of its own
        QString radioUrl = {};          // where the radio reaches the server, if not at its own address
        QString library = QStringLiteral(JOURNEY_LIBRARY "/demo");
        bool isShort = false;         // tracks as they are, but the sink takes them as fast as it can
        QString sink = {};            // for the audio, instead of one that takes it in real time
        QStringList menuOptions = {}; // of velmora-menu, before the program
        QString radio = QStringLiteral(JOURNEY_RADIO);
        QStringList radioOptions = {};
    };

    explicit Journey(const Options &options);
    Journey()
        : Journey(Options())
    {
    }
    ~Journey();
    Journey(const Journey &) = delete;
    Journey &operator=(const Journey &) = delete;

    // Of the programs of all journeys that are made from now on, as "de"; English when not given.
    static void setLanguage(const QString &language);

    // Renders the demo catalogue into JOURNEY_LIBRARY; false when it cannot be made.
    static bool makeLibrary();

    bool prepare();      // service and device; false with a message in problem()
    bool setUpDevice();  // links it with the demo account, where it has no settings; part of prepare()
    void launch();       // the menu system with the radio, again after an end; returns at once
    bool start();        // prepares, launches and waits for the first screen; false with a message in problem()
    bool startPlaying(); // and waits for its first music
    // Replaces the settings of earlier starts; call before start().
    bool writeSettings(const QByteArray &text);
    QString problem() const { return m_problem; }

    // --- the remote
    bool key(const QStringList &names); // "right", "select", ...
    bool menu(const QStringList &arguments);
    // Presses the key again and again until this is reached: a list accepts Select only a moment after it appeared.
    bool keyUntil(const QString &name, const std::function<bool(const QJsonObject &)> &isReached, int seconds = 30);
    bool answerBox(const QString &text, const QStringList &keys); // of a box that begins with the text
    // On the playing player: opens the menu and moves up by so many entries from the first one, around the end.
    bool openMenuEntry(int up);
    // On the welcome screen: answers "left" (has an account) or "right" (has none) and waits for this screen.
    bool leaveWelcome(const QString &side, const QString &screen);

    // --- what a person sees and hears
    QJsonObject status();
    bool waitFor(const std::function<bool(const QJsonObject &)> &isReached, int seconds = 30);
    bool waitForScreen(const QString &className, int seconds = 30);
    bool waitForBox(const QString &text, int seconds = 30); // begins with
    bool waitForNoBox(int seconds = 30);
    // Waits until this many more seconds of audio have reached the sink.
    bool waitForAudio(double moreSeconds, int seconds = 40);
    QString label(const QString &objectName);
    static bool isPlaying(const QJsonObject &now); // on the player, no box above it
    static int count(const QJsonObject &now, const QString &listName);
    QStringList rows(const QString &listName);
    int row(const QString &listName);
    void screenshot(const QString &name);
    QJsonObject last() const { return m_last; }

    // --- the end
    bool waitForEnd(int seconds = 20); // of the menu system and with it the radio
    int exitCode() const;
    void terminate(); // sends SIGTERM to the menu system
    bool exits();     // when asked to, with code 0
    qint64 radioPid();

    // --- the service
    QString serverUrl() const { return m_serverUrl; }
    void stopServer();
    bool startServer();
    // An account with a Tapestry station, made through the service's interface and the link of its mail.
    bool createAccount(const QString &userName, const QString &password);
    // Makes the service send a reminder and returns the link in its mail, from the outbox. Empty if there is none.
    QString reminderLink(const QString &userName);
    // The link to this page in a mail to the address, from the outbox; waited for. Empty if there is none.
    QString mailedLink(const QString &address, const QString &page);
    QString root() const { return m_root.path(); }
    QString settingsFile() const;
    QString radioReport(); // everything the radio has logged so far
    QString serverReport();

private:
    QProcessEnvironment environment() const;
    QStringList command(const QStringList &arguments, int *exitCode);
    static void dieWithUs(QProcess &process);
    QJsonObject ask(const char *function, const QJsonObject &parameters, const QString &token) const;
    QString partnerToken() const;

    Options m_options;
    QTemporaryDir m_root;
    QString m_data; // of the server
    std::unique_ptr<QProcess> m_server;
    std::unique_ptr<QProcess> m_menu;
    QString m_serverUrl;
    int m_serverPort = 0;
    QString m_problem;
    QJsonObject m_last;
};
