// velmora-menu with a sample program instead of the radio: commands and their effects.
#include "menu_fixture.h"

#include "arguments.h"
#include "menusocket.h"
#include "screenscale.h"
#include "socketplace.h"

#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

#include <csignal>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>

using menusystem::Arguments;

class MenuTest : public QObject {
    Q_OBJECT
private slots:
    void anUnknownWordPrintsTheUsageAndEndsWithCode2()
    {
        const char *const cases[] = {"",
                                     "frobnicate",
                                     "key left sideways",
                                     "key",
                                     "screensaver maybe",
                                     "status please",
                                     "screenshot",
                                     "volume 101",
                                     "volume loud",
                                     "sleep 14",
                                     "--frobnicate status",
                                     "--",
                                     "--scale large -- radio",
                                     "--scale 0.5 -- radio"};
        for (const char *words : cases) {
            const Outcome outcome = MenuFixture().command(QString(words).split(' ', Qt::SkipEmptyParts));
            QVERIFY2(outcome.code == 2 && outcome.output.isEmpty(), words);
            QVERIFY2(outcome.errors.contains("usage: velmora-menu"), words);
        }
    }

    void namedKeysArriveAsTheRemotesCodes()
    {
        MenuFixture menu;
        QVERIFY(menu.start());
        const Outcome outcome = menu.command({"key", "back", "home", "menu", "next"});
        QVERIFY2(outcome.code == 0, outcome.errors.constData());
        // The command returns when the radio has handled its keys.
        for (const char *line : {"press 01000061\nrelease 01000061\n", "press 0100010a\n", "press 010000dd\n",
                                 "press 01000083\nrelease 01000083\n"})
            QTRY_VERIFY2(menu.output().contains(line), line);
        QCOMPARE(menu.command({"key", "select"}).code, 0);
        QTRY_VERIFY(menu.output().contains("clicked\n"));
    }

    void volumeAndSleepTimerAreSetFromTheShell()
    {
        MenuFixture menu;
        QVERIFY(menu.start());
        const std::pair<const char *, const char *> cases[] = {
            {"volume", "100"},     {"volume 33", "33"},         {"volume up", "35"},
            {"volume down", "30"}, {"volume mute", "30 muted"}, {"volume up", "35"},
            {"volume 0", "0"},     {"volume down", "0"},        {"sleep", "off"},
            {"sleep 15", "15"},    {"sleep 120", "120"},        {"sleep track", "track"},
            {"sleep off", "off"}};
        for (const auto &[words, said] : cases)
            QCOMPARE(menu.command(QString(words).split(' ')).output.trimmed(), QByteArray(said));
        const QJsonObject status = QJsonDocument::fromJson(menu.command({"status"}).output).object();
        QCOMPARE(status.value("volume").toInt(-1), 0);
        QCOMPARE(status.value("sleep").toString(), "off");
        QTRY_VERIFY(QFile::exists(menu.path("settings/device.conf")));
        QFile settings(menu.path("settings/device.conf"));
        QVERIFY(settings.open(QIODevice::ReadOnly) && settings.readAll().contains("volume = 0"));
    }

    void typedLettersGoToTheField()
    {
        MenuFixture menu;
        QVERIFY(menu.start());
        QCOMPARE(menu.command({"key", "green", "text", "Ab 9", "backspace"}).code, 0);
        QTRY_VERIFY(menu.output().contains("text Ab 9\ntext Ab \n"));
        QCOMPARE(menu.command({"key", "escape"}).code, 0);
        QTRY_VERIFY(menu.output().contains("press 01000061\n"));
    }

    void statusNamesScreenBoxAndFocus()
    {
        MenuFixture menu;
        QVERIFY(menu.start());
        QJsonObject status = menu.status();
        QCOMPARE(status["running"].toBool(), true);
        QCOMPARE(status["screen"].toString(), "SampleDlg");
        QVERIFY(status["box"].isNull());
        QCOMPARE(status["focus"].toString(), "menuBtn");
        QCOMPARE(status["playback"].toInt(), 4);
        QCOMPARE(status["audioSeconds"].toDouble(-1), 0.0);
        const QJsonObject list = status["lists"].toObject()["stationListWidget"].toObject();
        QCOMPARE(list["rows"].toArray(), (QJsonArray{"Quiet Evening", "Morning Walk"}));
        QCOMPARE(list["row"].toInt(-1), 0);
        QCOMPARE(list["count"].toInt(), 2);

        QCOMPARE(menu.command({"key", "red"}).code, 0);
        QTRY_COMPARE(menu.status()["box"].toString(), "SampleBoxDlg");
        status = menu.status();
        QCOMPARE(status["screen"].toString(), "SampleDlg");
        QCOMPARE(status["boxText"].toString(), "Really?");
        QCOMPARE(status["focus"].toString(), "okBtn");
        QVERIFY(!status["labels"].toObject().contains("okBtn"));
        // The box takes the keys, and when it is gone the screen has them again.
        QCOMPARE(menu.command({"key", "select"}).code, 0);
        QTRY_VERIFY(menu.status()["box"].isNull());
        QTRY_COMPARE(menu.status()["focus"].toString(), "menuBtn");
        QCOMPARE(menu.command({"key", "back"}).code, 0);
        QTRY_VERIFY(menu.output().contains("press 01000061\n"));
    }

    void screenshotIsTheOwnersAndFollowsNoLink()
    {
        MenuFixture menu;
        QVERIFY(menu.start());
        const QString target = menu.path("somebody-else.txt"), picture = menu.path("picture.png");
        QFile file(target);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("kept") == 4);
        file.close();
        QVERIFY(QFile::link(target, picture));
        QCOMPARE(menu.command({"screenshot", picture}).code, 0);
        QVERIFY(!QFileInfo(picture).isSymLink());
        QCOMPARE(QFileInfo(target).size(), 4);
        QCOMPARE(QFileInfo(picture).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
        const QImage image(picture);
        QCOMPARE(image.size(), QSize(1280, 720));
        QCOMPARE(image.pixelColor(1200, 700), QColor(0x20, 0x40, 0x60));
        QCOMPARE(image.pixelColor(300, 400), QColor(Qt::white)); // the list

        QCOMPARE(menu.command({"key", "red"}).code, 0);
        QTRY_COMPARE(menu.status()["box"].toString(), "SampleBoxDlg");
        QCOMPARE(menu.command({"screenshot", picture}).code, 0);
        QCOMPARE(QImage(picture).pixelColor(300, 400), QColor(0x60, 0x30, 0x20)); // the box lies on it

        const Outcome outcome = menu.command({"screenshot", menu.path("no/such/folder/picture.png")});
        QCOMPARE(outcome.code, 1);
        QVERIFY2(outcome.errors.contains("No such file or directory"), outcome.errors.constData());
    }

    void screensaverAndNetworkArrive()
    {
        MenuFixture menu;
        QVERIFY(menu.start());
        QCOMPARE(menu.command({"screensaver", "on"}).code, 0);
        QCOMPARE(menu.command({"screensaver", "off"}).code, 0);
        QCOMPARE(menu.command({"network", "down"}).code, 0);
        QCOMPARE(menu.command({"network", "up"}).code, 0);
        QTRY_VERIFY(menu.output().contains("screensaver 1\nscreensaver 0\n"));
        QTRY_VERIFY2(menu.output().contains("network 1\n") && menu.output().contains("network 0\n"),
                     menu.output().constData());
    }

    void theRadioRunsWithItsFilesClosedToOthers()
    {
        MenuFixture menu;
        QVERIFY(menu.start());
        QTRY_VERIFY2(menu.output().contains("umask 077\n"), menu.output().constData());
        QCOMPARE(QFileInfo(menu.socket()).permissions() & (QFile::ReadGroup | QFile::WriteGroup | QFile::WriteOther),
                 QFile::Permissions());
    }

    void anExitRequestIsGranted()
    {
        MenuFixture menu;
        QVERIFY(menu.start());
        QCOMPARE(menu.command({"key", "blue"}).code, 0);
        QCOMPARE(menu.waitForEnd(), 0);
        QVERIFY2(menu.output().contains("exit 1 0\n") && menu.output().contains("thread ended 1\n"),
                 menu.output().constData());
        QVERIFY2(menu.errors().contains("the radio has ended, exit code 0"),
                 menu.errors().constData()); // its notice came
        QVERIFY(!QFile::exists(menu.socket()));
    }

    void theRadioIsAskedToExitAndItsCodeIsPassedOn()
    {
        MenuFixture menu, interrupted;
        QVERIFY(menu.start({}, {"--code", "7"}) && interrupted.start());
        QCOMPARE(menu.command({"exit"}).code, 0);
        QCOMPARE(menu.waitForEnd(), 7);
        ::kill(pid_t(interrupted.process().processId()), SIGINT);
        QCOMPARE(interrupted.waitForEnd(), 0);
        QVERIFY2(interrupted.output().contains("exit 1 0\n"), interrupted.output().constData());
    }

    void aRadioThatDoesNotExitIsTerminated()
    {
        MenuFixture menu;
        QVERIFY(menu.start({"--insist-after", "1"}, {"--deaf"}));
        ::kill(pid_t(menu.process().processId()), SIGTERM);
        QTRY_VERIFY_WITH_TIMEOUT(menu.output().contains("exit 1 0\n"), 5000); // it was asked first
        QCOMPARE(menu.waitForEnd(), 128 + SIGKILL);
        QVERIFY2(menu.errors().contains("does not end: insisting"), menu.errors().constData());
    }

    void systemdHearsThatTheRadioIsWatched()
    {
        const QTemporaryDir folder;
        const QByteArray place = QFile::encodeName(folder.filePath("notify"));
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, place.constData(), sizeof address.sun_path);
        const int systemd = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        QCOMPARE(::bind(systemd, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        const timeval limit{20, 0};
        QCOMPARE(::setsockopt(systemd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit), 0);
        const auto next = [systemd] {
            char text[64];
            const ssize_t size = ::recv(systemd, text, sizeof text, 0);
            return QByteArray(text, std::max<ssize_t>(size, 0));
        };
        qputenv("NOTIFY_SOCKET", place);
        MenuFixture menu;
        const bool isStarted = menu.start();
        qunsetenv("NOTIFY_SOCKET");
        QVERIFY(isStarted);
        QCOMPARE(next(), "READY=1");
        QCOMPARE(next(), "WATCHDOG=1");
        QCOMPARE(menu.command({"exit"}).code, 0);
        menu.waitForEnd();
        QByteArray last;
        while ((last = next()) == "WATCHDOG=1") {
        }
        QCOMPARE(last, "STOPPING=1");
        ::close(systemd);
    }

    void aHangIsReportedAndStatusSaysSo()
    {
        MenuFixture menu;
        QVERIFY(menu.start({"--hang-after", "1", "--insist-after", "1"}));
        const Outcome outcome = menu.command({"key", "yellow"});
        QCOMPARE(outcome.code, 1);
        QVERIFY2(outcome.errors.contains("the radio does not answer"), outcome.errors.constData());
        QTRY_VERIFY_WITH_TIMEOUT(menu.errors().contains("has not answered for 1 seconds"), 5000);
        const QJsonObject status = menu.status();
        QCOMPARE(status["running"].toBool(), true);
        QCOMPARE(status["answering"].toBool(true), false);
        QVERIFY(status["pid"].toInt() > 0);
    }

    void twoMenusRunSideBySide()
    {
        MenuFixture first, second;
        QVERIFY(first.start() && second.start());
        QVERIFY(first.status()["pid"].toInt() != second.status()["pid"].toInt());
        QCOMPARE(second.command({"exit"}).code, 0);
        QCOMPARE(second.waitForEnd(), 0);
        QCOMPARE(first.status()["answering"].toBool(), true);
        // A second menu system with the same socket does not disturb the first.
        const Outcome outcome = first.command({"--", "/bin/true"});
        QCOMPARE(outcome.code, 1);
        QVERIFY2(outcome.errors.contains("another one runs there"), outcome.errors.constData());
        QCOMPARE(first.status()["answering"].toBool(), true);
    }

    void aStaleSocketIsReplaced()
    {
        MenuFixture menu;
        QString reason;
        const int left = netcommon::menu::listenAt(menu.socket().toLocal8Bit(), &reason);
        QVERIFY2(left >= 0, qPrintable(reason));
        ::close(left);
        QVERIFY(QFile::exists(menu.socket()));
        QVERIFY(menu.start());

        MenuFixture other; // but a plain file is not replaced
        QFile file(other.socket());
        QVERIFY(file.open(QIODevice::WriteOnly));
        const Outcome outcome = other.command({"--", "/bin/true"});
        QCOMPARE(outcome.code, 1);
        QVERIFY2(outcome.errors.contains("something else is there"), outcome.errors.constData());
        QVERIFY(QFile::exists(other.socket()));
    }

    void theRadioDiesWithItsMenu()
    {
        MenuFixture menu;
        QVERIFY(menu.start());
        const pid_t radio = menu.status()["pid"].toInt();
        QVERIFY(radio > 0 && ::kill(radio, 0) == 0);
        menu.process().kill();
        // It may remain as a zombie process.
        const QString program = QStringLiteral("/proc/%1/exe").arg(radio);
        QTRY_VERIFY(QFileInfo(program).symLinkTarget().isEmpty());
    }

    void theDefaultSocketIsInAPrivateDirectory()
    {
        const QTemporaryDir runtime, temporary;
        QString reason;
        using menusystem::usualSocket;
        QCOMPARE(usualSocket(runtime.path(), temporary.path(), false, &reason), runtime.filePath("velmora-menu.sock"));
        // Without one, commands find what the menu has made.
        QVERIFY(usualSocket({}, temporary.path(), false, &reason).isEmpty());
        const QString made = usualSocket({}, temporary.path(), true, &reason);
        QCOMPARE(usualSocket({}, temporary.path(), false, &reason), made);
        const QString directory = QFileInfo(made).path();
        QCOMPARE(QFileInfo(directory).permissions() & (QFile::ReadGroup | QFile::ReadOther | QFile::ExeOther),
                 QFile::Permissions());
        // A directory that others can enter is not used: commands ignore it, and the menu system creates another one.
        QCOMPARE(::chmod(qPrintable(directory), 0755), 0);
        QVERIFY(usualSocket({}, temporary.path(), false, &reason).isEmpty());
        const QString other = usualSocket({}, temporary.path(), true, &reason);
        QVERIFY(!other.isEmpty() && other != made);
        QCOMPARE(::chmod(qPrintable(runtime.path()), 0755), 0);
        QVERIFY(usualSocket(runtime.path(), temporary.path(), true, &reason).startsWith(temporary.path()));
    }

    void scaleFitsTheScreen()
    {
        const std::tuple<QSize, bool, double> cases[] = {
            {QSize(), false, 1.0},                  // unknown
            {QSize(1280, 720), false, 1.0},         // 720p
            {QSize(1366, 768), false, 768 / 720.0}, // 1366
            {QSize(1920, 1080), false, 1.5},        // 1080p
            {QSize(3840, 2160), false, 3.0},        // 4K
            {QSize(3440, 1440), false, 2.0},        // wide
            {QSize(1920, 1200), false, 1.5},        // high
            {QSize(1024, 768), false, 1.0},         // too small
            {QSize(1920, 1080), true, 1.2},         // window
        };
        for (const auto &[screen, isWindowed, scale] : cases)
            QCOMPARE(menusystem::scaleFor(screen, isWindowed), scale);
    }
};

QTEST_GUILESS_MAIN(MenuTest)
#include "menu_test.moc"
