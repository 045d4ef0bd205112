// MPRIS as desktops use it: playerctl on a bus of the test's own.

#include "netcommon/playback.h"
#include "platform/netcommon/comfort/mpris.h"
#include "platform/netcommon/comfort/volumecontrol.h"
#include "platform/netcommon/playback/playbacksound.h"
#include "platform/netcommon/playback/playbackstatistics.h"

#include <QApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QtTest>

#include <csignal>
#include <sys/prctl.h>

using namespace netcommon;

namespace {

int state = PLAYBACK_STATE_PLAYING;

void dieWithTheTest(QProcess &process)
{
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

// One call; what it prints, or what it says went wrong.
QString playerctl(const QStringList &words)
{
    QProcess process;
    dieWithTheTest(process);
    process.start("playerctl", QStringList{"--player", "velmora"} + words);
    // The radio answers meanwhile, on this thread.
    if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 20000))
        return "no answer";
    const QByteArray said = process.exitCode() == 0 ? process.readAllStandardOutput() : process.readAllStandardError();
    return QString::fromUtf8(said).trimmed();
}

} // namespace

// What the library says of playback.
int netcommon::statistics::playbackState()
{
    return state;
}

class MprisTest : public QObject {
    Q_OBJECT
    QProcess m_bus;
    PlaybackSound m_sound;
    VolumeControl m_volume{m_sound, nullptr};
    NowPlaying m_track{"Quiet \"Evening\"", "The Caf\u00e9", "First Light", "Morning", "/tmp/a cover.png"};
    std::vector<int> m_pressed;
    std::unique_ptr<Mpris> m_mpris;

private slots:
    void initTestCase()
    {
        for (const char *program : {"dbus-daemon", "playerctl"})
            if (QStandardPaths::findExecutable(QString::fromLatin1(program)).isEmpty())
                QSKIP("dbus-daemon or playerctl is not installed");
        dieWithTheTest(m_bus);
        m_bus.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
        QVERIFY(m_bus.waitForReadyRead());
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readAllStandardOutput().trimmed()); // nothing has used it yet
        m_mpris = std::make_unique<Mpris>(Mpris::Radio{m_volume, [this] { return m_track; },
                                                       [this](int key) {
                                                           m_pressed.push_back(key);
                                                           if (key == Qt::Key_Pause)
                                                               state = state == PLAYBACK_STATE_PLAYING
                                                                           ? PLAYBACK_STATE_PAUSED
                                                                           : PLAYBACK_STATE_PLAYING;
                                                       }},
                                          nullptr);
    }

    void aDesktopSeesTheTrackAndItsChanges()
    {
        QCOMPARE(playerctl({"status"}), "Playing");
        emit Playback::getInstance()->signalNotifyTotalTime(0, 3, 5);
        const QString format = "{{title}}|{{artist}}|{{album}}|{{mpris:artUrl}}|{{mpris:length}}|{{mpris:trackid}}";
        QProcess follower;
        dieWithTheTest(follower);
        follower.start("playerctl", {"--player", "velmora", "--follow", "metadata", "--format", format});
        QByteArray lines;
        const auto follows = [&](const QByteArray &line) {
            return (lines += follower.readAllStandardOutput()).endsWith(line + '\n');
        };
        const QByteArray rest = "|The Caf\xc3\xa9|First Light|file:///tmp/a%20cover.png|185000000|'/velmora/track/";
        QTRY_VERIFY2(follows("Quiet \"Evening\"" + rest + "1'"), lines.constData());
        m_track.title = "Noon";
        emit Playback::getInstance()->signalPlayOk(); // the screen has changed its texts
        QTRY_VERIFY2(follows("Noon" + rest + "2'"), lines.constData());
        m_track.coverFile.clear(); // the same track
        emit Playback::getInstance()->signalPlayOk();
        QTRY_VERIFY2(follows("Noon|The Caf\xc3\xa9|First Light||185000000|'/velmora/track/2'"), lines.constData());
        state = PLAYBACK_STATE_STOPPED;
        QCOMPARE(playerctl({"status"}), "Stopped");
        state = PLAYBACK_STATE_PLAYING;
    }

    void commandsPressTheRemotesKeysAndOnlyWhereTheyChangeSomething()
    {
        const int pause = Qt::Key_Pause, next = Qt::Key_MediaNext;
        const std::tuple<const char *, std::vector<int>, int> rows[] = {{"play", {}, PLAYBACK_STATE_PLAYING},
                                                                        {"pause", {pause}, PLAYBACK_STATE_PAUSED},
                                                                        {"pause", {}, PLAYBACK_STATE_PAUSED},
                                                                        {"stop", {}, PLAYBACK_STATE_PAUSED},
                                                                        {"play", {pause}, PLAYBACK_STATE_PLAYING},
                                                                        {"play-pause", {pause}, PLAYBACK_STATE_PAUSED},
                                                                        {"play-pause", {pause}, PLAYBACK_STATE_PLAYING},
                                                                        {"stop", {pause}, PLAYBACK_STATE_PAUSED},
                                                                        {"next", {next}, PLAYBACK_STATE_PAUSED}};
        for (const auto &[command, keys, after] : rows) {
            m_pressed.clear();
            QCOMPARE(playerctl({command}), QString());
            QTRY_VERIFY2(m_pressed == keys && state == after, command);
        }
        m_pressed.clear();
        QVERIFY(!playerctl({"previous"}).isEmpty()); // refused
        QVERIFY(!playerctl({"position", "10"}).isEmpty());
        QVERIFY(m_pressed.empty());
    }

    void theVolumeIsThatOfThePerson()
    {
        QCOMPARE(playerctl({"volume", "0.42"}), QString());
        QTRY_COMPARE(m_volume.percent(), 42);
        m_volume.lower(); // to the next step
        QCOMPARE(playerctl({"volume"}).toDouble(), 0.4);
        m_volume.raise();
        QCOMPARE(playerctl({"volume"}).toDouble(), 0.45);
        m_volume.toggleMute();
        QCOMPARE(playerctl({"volume"}).toDouble(), 0);
        QCOMPARE(playerctl({"volume", "0.3"}), QString()); // ends the mute
        QTRY_COMPARE(playerctl({"volume"}).toDouble(), 0.3);
    }

    void theRadioLeavesTheBus()
    {
        QCOMPARE(playerctl({"--list-all"}), "velmora");
        m_mpris.reset();
        QVERIFY(playerctl({"status"}).startsWith("No players"));
    }

    void cleanupTestCase()
    {
        m_bus.terminate();
        m_bus.waitForFinished();
    }
};

QTEST_MAIN(MprisTest)
#include "mpris_test.moc"
