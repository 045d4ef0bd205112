// Idle picture and sleep timer: their rules by tables, and the picture as it is painted.

#include "netcommon/ipcthread.h"
#include "platform/netcommon/comfort/saver.h"
#include "platform/netcommon/comfort/saverpicture.h"
#include "platform/netcommon/comfort/sleepdecider.h"
#include "platform/netcommon/comfort/sleeptimer.h"
#include "platform/netcommon/comfort/speech.h"
#include "platform/netcommon/device/ceclink.h"
#include "platform/netcommon/playback/playbacksound.h"
#include "platform/netcommon/playback/playbackstatistics.h"

#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <linux/cec.h>
#include <sys/ioctl.h>

using namespace netcommon;

namespace {

constexpr qint64 minute = 60'000;
int playbackState = PLAYBACK_STATE_PLAYING;
QString cover;

// A screen with the labels of the playing screen.
class PlayingScreen : public QDialog {
public:
    PlayingScreen()
    {
        resize(1280, 720);
        for (const char *name : {"songLabel", "artistLabel"})
            (new QLabel(this))->setObjectName(QLatin1String(name));
        auto *const history = new QListWidget(this);
        history->setObjectName(QStringLiteral("playListWidget"));
    }
    void play(const QString &title)
    {
        findChild<QLabel *>(QStringLiteral("songLabel"))->setText(title);
        findChild<QListWidget *>()->insertItem(0, title);
    }
    QImage picture()
    {
        auto *const saver = findChild<QWidget *>(QStringLiteral("saverPicture"));
        return saver ? saver->grab().toImage() : QImage();
    }
};

int brightest(const QImage &picture)
{
    int most = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            most = std::max(most, qGray(picture.pixel(x, y)));
    return most;
}

} // namespace

// What the library says of playback.
int netcommon::statistics::playbackState()
{
    return ::playbackState;
}

QString netcommon::statistics::coverFile()
{
    return cover;
}

class ComfortTest : public QObject {
    Q_OBJECT
private slots:
    void thePictureComesFollowsTheTracksAndLiftsAtTheFirstKey()
    {
        qint64 now = 0;
        Saver saver([&now] { return now; }, nullptr);
        QSignalSpy told(IpcThread::getInstance(), &IpcThread::signalScreenSaver);
        PlayingScreen screen;
        screen.play(QStringLiteral("One"));
        screen.show();
        const auto at = [&](qint64 ms) {
            now = ms;
            saver.step();
            return saver.isShown();
        };
        QVERIFY(!at(10 * minute - 1));
        QVERIFY(!saver.keyPressed()); // an ordinary key
        QVERIFY(!at(20 * minute - 2));
        QVERIFY(at(20 * minute));
        QCOMPARE(told.takeFirst().first().toBool(), true);
        QVERIFY(!screen.findChild<QWidget *>(QStringLiteral("saverPicture"))->hasFocus());

        at(20 * minute + 5000);
        const QImage first = screen.picture();
        QVERIFY(brightest(first) > 50 && brightest(first) <= 102); // two fifths
        screen.play(QStringLiteral("A quite different one"));
        at(20 * minute + 5000);
        QVERIFY(screen.picture() != first);
        QImage light(400, 300, QImage::Format_RGB32);
        light.fill(Qt::white);
        cover = m_folder.filePath("light.png");
        QVERIFY(light.save(cover));
        at(20 * minute + 5000);
        QVERIFY(screen.picture().pixelColor(100, 200).red() > 98);

        QVERIFY(saver.keyPressed()); // does nothing else
        QVERIFY(!saver.isShown() && screen.picture().isNull());
        QCOMPARE(told.takeFirst().first().toBool(), false);
        QVERIFY(!saver.keyPressed());

        // A box lifts it; nothing begins behind a box.
        QVERIFY(at(40 * minute));
        QDialog box(&screen);
        box.setModal(true);
        box.show();
        QVERIFY(!saver.isShown());
        QVERIFY(!at(90 * minute));
        box.hide();
        QVERIFY(!at(99 * minute));
        QVERIFY(at(100 * minute));

        // Twenty minutes without sound: black.
        ::playbackState = PLAYBACK_STATE_PAUSED;
        at(120 * minute - 1);
        QVERIFY(brightest(screen.picture()) > 0);
        at(120 * minute);
        QCOMPARE(brightest(screen.picture()), 0);
        ::playbackState = PLAYBACK_STATE_PLAYING;
        at(121 * minute);
        QVERIFY(brightest(screen.picture()) > 0);
        saver.keyPressed();

        saver.setMinutes(0);
        QVERIFY(!at(900 * minute));
        saver.fallAsleep();
        QVERIFY(saver.isShown());
        QCOMPARE(brightest(screen.picture()), 0);
        int inside = 0;
        told.clear();
        saver.behind([&] { inside = int(told.size()); });
        QCOMPARE(inside, 1); // the screens take keys meanwhile
        QCOMPARE(told.size(), 2);
        QVERIFY(saver.keyPressed());
        QVERIFY(!at(901 * minute));
        cover.clear();
    }

    // An hour of the picture with a white cover and long lines, every five seconds, in a quarter of the size.
    void noPixelOfThePictureStaysLit()
    {
        SaverScene scene;
        scene.cover = QPixmap(400, 400);
        scene.cover.fill(Qt::white);
        scene.title = scene.artist = QString(40, QLatin1Char('M'));
        scene.clock = QStringLiteral("23:59");
        scene.sleep = QStringLiteral("120 min");
        constexpr int step = 5, longest = 120, half = 128 / 5 * 2; // seconds; half of two fifths
        QImage frame(320, 180, QImage::Format_Grayscale8);
        std::vector<int> lit(size_t(frame.width() * frame.height()));
        int most = 0;
        bool isSeen = false;
        for (int second = 0; second < 3600; second += step) {
            QPainter painter(&frame);
            painter.scale(0.25, 0.25);
            paintSaver(painter, scene, second * 1000);
            painter.end();
            for (int y = 0; y < frame.height(); ++y) {
                const uchar *const line = frame.constScanLine(y);
                for (int x = 0; x < frame.width(); ++x) {
                    int &seconds = lit[size_t(y * frame.width() + x)];
                    seconds = line[x] > half ? seconds + step : 0;
                    most = std::max(most, seconds);
                    isSeen = isSeen || line[x] > 2 * half - 4;
                    if (line[x] > 102)
                        QFAIL("brighter than two fifths");
                }
            }
        }
        QVERIFY(isSeen);
        QVERIFY2(most < longest, qPrintable(QString::number(most)));
    }

    void theSleepTimerFadesAndPausesUntilItIsQuiet()
    {
        using Action = SleepDecider::Action;
        SleepDecider sleep;
        QCOMPARE(sleep.step(5, true), Action{});
        sleep.start(1000, 15 * minute);
        const qint64 end = 1000 + 15 * minute;
        QCOMPARE(sleep.leftMs(end - 1), 1);
        QCOMPARE(sleep.step(end - minute, true), Action{});
        QCOMPARE(sleep.step(end - minute / 2, true), (Action{.fade = 0.25}));
        QCOMPARE(sleep.step(end, true), (Action{.fade = 0, .silencesNext = true, .pauses = true}));
        QCOMPARE(sleep.step(end + 1999, true), (Action{.fade = 0, .silencesNext = true}));
        QCOMPARE(sleep.step(end + 2000, true), (Action{.fade = 0, .silencesNext = true, .pauses = true}));
        QCOMPARE(sleep.step(end + 2200, false), (Action{.isOver = true}));
        QCOMPARE(sleep.mode(), SleepDecider::Mode::Off);
        QCOMPARE(sleep.step(end + 2400, true), Action{});
        sleep.start(0, minute);
        QCOMPARE(sleep.step(minute, false), (Action{.isOver = true})); // nothing plays anyway
        sleep.start(0, minute);
        sleep.off();
        QCOMPARE(sleep.step(minute, true), Action{});

        sleep.afterTrack();
        sleep.trackBegins(); // another station was chosen
        QCOMPARE(sleep.step(1, true), Action{});
        sleep.trackEnds(100);
        QCOMPARE(sleep.step(100, true), (Action{.silencesNext = true})); // its last moments are heard
        QCOMPARE(sleep.step(900, false), (Action{.silencesNext = true}));
        sleep.trackBegins();
        QCOMPARE(sleep.step(1000, false), (Action{.silencesNext = true}));
        QCOMPARE(sleep.step(2000, true), (Action{.silencesNext = true, .pauses = true}));
        QCOMPARE(sleep.step(2200, false), (Action{.isOver = true}));
        sleep.afterTrack();
        sleep.trackEnds(100);
        QCOMPARE(sleep.step(30'099, false), (Action{.silencesNext = true}));
        QCOMPARE(sleep.step(30'100, false), (Action{.isOver = true})); // no track follows
    }

    void theSleepTimerOutlivesTheRadioNotTheMachine()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("sleep");
        PlaybackSound sound;
        SleepTimer(sound, file, nullptr).start(30);
        QFile kept(file);
        QVERIFY(kept.open(QIODevice::ReadOnly));
        const QByteArray own = kept.readAll();
        kept.close();
        QByteArray others = own;
        others[0] = others[0] == 'a' ? 'b' : 'a'; // of the start's name
        const QByteArray start = own.left(own.indexOf(' ') + 1);
        for (const auto &[text, left] : {std::pair(own, "30"), std::pair(others, "off"), std::pair(QByteArray(), "off"),
                                         std::pair(start + "99999999999999", "off"), std::pair(start + "1", "off")}) {
            QVERIFY(kept.open(QIODevice::WriteOnly) && kept.write(text) == text.size());
            kept.close();
            QCOMPARE(SleepTimer(sound, file, nullptr).text(), left);
            QCOMPARE(kept.exists(), left == QByteArray("30"));
        }
    }
    void screenControlRowAndMessageAreSpoken()
    {
        QStringList said;
        const SpokenFocus speech([&said](const QString &text) { said += text; }, nullptr);
        PlayingScreen screen;
        screen.setAccessibleName(QStringLiteral("Music"));
        auto *const thumb = new QPushButton(&screen);
        thumb->setObjectName(QStringLiteral("thumbupBtn"));
        auto *const history = screen.findChild<QListWidget *>();
        screen.play(QStringLiteral("One"));
        screen.play(QStringLiteral("Two"));
        history->setCurrentRow(0);
        screen.show();
        QVERIFY(QTest::qWaitForWindowActive(&screen));
        thumb->setFocus();
        QTRY_VERIFY(!said.isEmpty());
        QVERIFY2(said.join('|').contains("Thumbs up"), qPrintable(said.join('|')));
        QVERIFY(said.first().startsWith("Music"));
        said.clear();
        history->setFocus();
        QTest::keyClick(history, Qt::Key_Down);
        QVERIFY2(said == QStringList({"Song history, Two", "One"}), qPrintable(said.join('|')));

        QDialog box(&screen);
        box.setModal(true);
        QLabel message(QStringLiteral(" Are you sure? "), &box);
        message.setObjectName(QStringLiteral("contentLabel"));
        QPushButton yes(QStringLiteral("Yes"), &box);
        box.show();
        QVERIFY(QTest::qWaitForWindowActive(&box));
        yes.setFocus();
        QTRY_COMPARE(said.last(), "Are you sure?, Yes");
    }

    // The kernel's side is the test's: what the link asks of the adapter, and what it hears of it.
    void theTelevisionIsTurnedOnSentToSleepAndHeard()
    {
        QList<QByteArray> sent;
        QList<QByteArray> arriving;
        __u32 mode = 0;
        cec_log_addrs addresses{};
        bool hasEvent = false;
        const auto adapter = [&](int, unsigned long request, void *argument) {
            switch (request) {
            case CEC_ADAP_G_CAPS:
                static_cast<cec_caps *>(argument)->capabilities = CEC_CAP_TRANSMIT | CEC_CAP_LOG_ADDRS;
                return 0;
            case CEC_S_MODE:
                mode = *static_cast<__u32 *>(argument);
                return 0;
            case CEC_ADAP_G_LOG_ADDRS:
                *static_cast<cec_log_addrs *>(argument) = addresses;
                return 0;
            case CEC_ADAP_S_LOG_ADDRS:
                addresses = *static_cast<cec_log_addrs *>(argument);
                addresses.log_addr[0] = 4; // the kernel claims it and tells
                hasEvent = true;
                return 0;
            case CEC_ADAP_G_PHYS_ADDR:
                *static_cast<__u16 *>(argument) = 0x2100;
                return 0;
            case CEC_TRANSMIT: {
                const auto &message = *static_cast<cec_msg *>(argument);
                sent += QByteArray(reinterpret_cast<const char *>(message.msg), int(message.len)).toHex();
                return 0;
            }
            case CEC_DQEVENT:
                if (!std::exchange(hasEvent, false))
                    return -1;
                static_cast<cec_event *>(argument)->event = CEC_EVENT_STATE_CHANGE;
                return 0;
            case CEC_RECEIVE: {
                if (arriving.isEmpty())
                    return -1;
                auto &message = *static_cast<cec_msg *>(argument);
                const QByteArray bytes = arriving.takeFirst();
                std::copy(bytes.begin(), bytes.end(), message.msg);
                message.len = __u32(bytes.size());
                return 0;
            }
            default:
                return -1;
            }
        };
        CecLink link(::open("/dev/null", O_RDWR | O_CLOEXEC), adapter);
        QSignalSpy sleeps(&link, &CecLink::televisionSleeps);
        link.standby(); // nobody is there yet
        QVERIFY(link.configure());
        QCOMPARE(mode, __u32(CEC_MODE_INITIATOR | CEC_MODE_FOLLOWER));
        QVERIFY(sent.isEmpty());
        link.read();
        QCOMPARE(sent, (QList<QByteArray>{"4004", "4f822100"})); // once, by this device's address
        hasEvent = true;
        arriving = {QByteArray::fromHex("0f36"), QByteArray::fromHex("5f36"), QByteArray::fromHex("04")};
        for (int i = 0; i < 4; ++i)
            link.read();
        QCOMPARE(sleeps.size(), 1); // of the television only
        link.standby();
        QCOMPARE(sent.mid(2), (QList<QByteArray>{"4036"}));
    }

private:
    QTemporaryDir m_folder;
};

QTEST_MAIN(ComfortTest)
#include "comfort_test.moc"
