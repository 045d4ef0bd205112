// From the start to music, and the messages if there is no music.

#include "e2e/journey.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QTcpSocket>

#include <csignal>

namespace {

const QString networkText =
    QStringLiteral("A network error has occurred.  Please check your network connection and try again.");

} // namespace

class StartJourney : public QObject {
    Q_OBJECT
private slots:
    void aSetUpDeviceEndsInMusicWithoutAKey()
    {
        Journey journey;
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForScreen("VelmoraMainDlg"));
        QVERIFY(journey.waitForAudio(3));
        const QJsonObject now = journey.status();
        QCOMPARE(now.value("playback").toInt(), 5);
        QCOMPARE(now.value("focus").toString(), QStringLiteral("stationListWidget"));
        QVERIFY(journey.rows("stationListWidget").size() > 3);
        QCOMPARE(journey.rows("playListWidget").size(), 1);
        QVERIFY(!journey.label("songLabel").isEmpty());
        QVERIFY(journey.exits());
        QVERIFY(journey.radioReport().contains("Velmora main function exit ok!"));
        QVERIFY(!QFileInfo::exists(journey.root() + QStringLiteral("/device/tmp/velmora")));
    }

    void aSupervisedRadioPlaysAgainAfterACrashAndAnOutageWithoutAKey()
    {
        QTemporaryDir folder;
        QFile settings(folder.filePath("ws.conf")); // given up after a moment, not after 45 seconds
        QVERIFY(settings.open(QIODevice::WriteOnly) &&
                settings.write("retry_for_ms=500\nstart_retry_for_ms=500\n") > 0);
        settings.close();
        qputenv("VELMORA_WS_CONF", QFile::encodeName(settings.fileName()));
        const auto tidy = qScopeGuard([] { qunsetenv("VELMORA_WS_CONF"); });
        Journey journey({.isShort = true, .menuOptions = {"--supervise", "--home", JOURNEY_HOME}});
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        const auto playsAgain = [&journey](qint64 before) {
            return journey.waitFor([before](const QJsonObject &now) {
                return now.value("pid").toInteger() != before && now.value("audioSeconds").toDouble() > 1;
            });
        };
        qint64 radio = journey.radioPid();
        ::kill(pid_t(radio), SIGSEGV);
        QVERIFY(playsAgain(radio));
        QCOMPARE(QDir(journey.root() + "/statehome/velmora/reports").entryList(QDir::Files).size(), 1);
        radio = journey.radioPid();
        journey.stopServer();
        QVERIFY(journey.key({"green"})); // what a person asks for fails at once, whatever is buffered
        QVERIFY(journey.waitForScreen("home::NoticePage"));
        QVERIFY(journey.startServer() && playsAgain(radio));
        QVERIFY(journey.exits());
    }

    // VELMORA_EXIT_MOMENTS: how many moments of the first two seconds are tried.
    void anExitOrderAtAnyMomentOfTheStartIsObeyed()
    {
        const int moments = qEnvironmentVariable("VELMORA_EXIT_MOMENTS", "8").toInt();
        Journey journey({.menuOptions = {"--insist-after", "60"}});
        QVERIFY2(journey.prepare(), qPrintable(journey.problem()));
        for (int index = 0; index < moments; ++index) {
            const int moment = (2000 * index + QRandomGenerator::global()->bounded(2000)) / moments;
            const std::string told = std::to_string(moment) + " ms";
            journey.launch();
            QVERIFY(QTest::qWaitFor([&] { return journey.radioReport().contains("velmora-menu: listening at"); }));
            QTest::qSleep(moment); // the moment is the test's input: no outcome is awaited
            if (index % 2)
                journey.terminate();
            else
                QVERIFY(journey.menu({"exit"}));
            QVERIFY2(journey.waitForEnd(70) && journey.exitCode() == 0,
                     qPrintable(QString::fromStdString(told) + journey.radioReport().right(2000)));
            QVERIFY2(journey.radioReport().contains("Velmora main function exit ok!"), told.c_str());
            QVERIFY2(!QFileInfo::exists(journey.root() + "/device/tmp/velmora"), told.c_str());
            QVERIFY2(!QFileInfo::exists(journey.root() + "/menu.sock"), told.c_str());
        }
    }

    void theRadioPlaysAndFollowsKeysWithoutPicturesAndFonts()
    {
        QTemporaryDir noFonts;
        QFile config(noFonts.filePath("fonts.conf"));
        QVERIFY(config.open(QIODevice::WriteOnly));
        config.write("<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\"><fontconfig/>");
        config.close();
        qputenv("FONTCONFIG_FILE", QFile::encodeName(config.fileName()));
        const auto tidy = qScopeGuard([] { qunsetenv("FONTCONFIG_FILE"); });
        Journey journey({.radio = QStringLiteral(JOURNEY_BARE)});
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(2));
        QVERIFY(journey.openMenuEntry(6) && journey.waitForScreen("CreateStationDlg"));
        QVERIFY(journey.key({"text", "zzqx", "enter"}));
        QVERIFY(journey.answerBox(QString(), {"select"}));
        QVERIFY(journey.waitForNoBox());
        QVERIFY(journey.key({"back", "left"}));
        QVERIFY(journey.openMenuEntry(3) && journey.waitForScreen("SelectUserDlg"));
        QVERIFY(journey.key({"select"}));
        QVERIFY(journey.waitForScreen("VelmoraMainDlg"));
        QVERIFY(journey.waitForAudio(2));
        QVERIFY(journey.exits());
    }

    void oneTrackFollowsAnotherWithoutAKey()
    {
        Journey journey({.isShort = true});
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        // More than one playlist of four entries, so that the radio requests the next one.
        QVERIFY(journey.waitFor([&](const QJsonObject &) { return journey.rows("playListWidget").size() >= 6; }, 120));
        QVERIFY(journey.status().value("audioSeconds").toDouble() > 200);
    }

    void anExpiredSessionIsRenewedInTheMiddleOfListening()
    {
        Journey::Options options;
        options.isShort = true;
        options.serverOptions = {"--token-lifetime", "4,3"};
        Journey journey(options);
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        // The music continues after the renewal of the session.
        QVERIFY(journey.waitFor(
            [&](const QJsonObject &) { return journey.radioReport().contains("VelmoraLogin,retrytempwebservice..."); },
            60));
        QVERIFY(journey.waitForAudio(200, 60));
        QVERIFY(journey.status().value("box").isNull());
    }

    void anUnreachableServerIsReportedAndTheRadioExits()
    {
        QTcpServer nobody;
        QVERIFY(nobody.listen(QHostAddress::LocalHost));
        const QString url = QStringLiteral("http://127.0.0.1:%1").arg(nobody.serverPort());
        nobody.close();
        // It is given up after a moment, not after a minute.
        QTemporaryDir folder;
        QFile settings(folder.filePath("ws.conf"));
        QVERIFY(settings.open(QIODevice::WriteOnly) && settings.write("start_retry_for_ms=600\n") > 0);
        settings.close();
        qputenv("VELMORA_WS_CONF", QFile::encodeName(settings.fileName()));
        const auto tidy = qScopeGuard([] { qunsetenv("VELMORA_WS_CONF"); });
        Journey journey({.hasServer = false, .serverUrl = url});
        QVERIFY(journey.writeSettings("[Welcome]\nisCheck=1\n"));
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForBox(networkText));
        QCOMPARE(journey.last().value("screen").toString(), QStringLiteral("LoadingDlg"));
        QVERIFY(journey.key({"select"}));
        QVERIFY(journey.waitForEnd());
        QCOMPARE(journey.exitCode(), 0);
    }

    void garbageFromTheServerEndsInAMessage()
    {
        QTcpServer garbage;
        QVERIFY(garbage.listen(QHostAddress::LocalHost));
        connect(&garbage, &QTcpServer::newConnection, &garbage, [&garbage] {
            QTcpSocket *socket = garbage.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [socket] {
                socket->readAll();
                socket->write("HTTP/1.1 200 OK\r\nContent-Length: 12\r\nConnection: close\r\n\r\n{\"code\": 0, ");
                socket->disconnectFromHost();
            });
        });
        Journey journey(
            {.hasServer = false, .serverUrl = QStringLiteral("http://127.0.0.1:%1").arg(garbage.serverPort())});
        QVERIFY(journey.writeSettings("[Welcome]\nisCheck=1\n"));
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.answerBox("Connect to Velmora failed!", {"select"}));
        QVERIFY(journey.waitForEnd());
    }

    void aNewDeviceIsWelcomedAndMayLeave()
    {
        Journey journey({.isSetUp = false});
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForScreen("WelcomeDlg"));
        QVERIFY(journey.key({"back"}));
        QVERIFY(journey.answerBox("You have reached the last window.", {"left", "select"}));
        QVERIFY(journey.waitForEnd());
        QCOMPARE(journey.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(StartJourney)
#include "start_test.moc"
