// The two slow cases: a server that never answers, and one that is slower than the music.

#include "mediaserver.h"
#include "playbackrig.h"

#include "platform/netcommon/playbackstatistics.h"

#include <QtTest>

using netcommon::statistics::audioSecondsRendered;

class PlaybackDeadlinesTest : public QObject {
    Q_OBJECT
private slots:
    void aServerThatNeverAnswersIsGivenUpAfterTwentySeconds()
    {
        MediaServer server;
        server.serve("/silent", {.silent = true});
        PlaybackRig rig;
        rig.play(server.url("/silent"));
        QElapsedTimer clock;
        clock.start();
        QTRY_COMPARE_WITH_TIMEOUT(rig.heard, (QStringList{"stop", "url", "result -1"}), 23000);
        QVERIFY2(clock.elapsed() > 19000 && clock.elapsed() < 22000, qPrintable(QString::number(clock.elapsed())));
    }

    void aSlowServerIsPausedForBelowTheLowLineAndResumedAboveTheHighOne()
    {
        MediaServer server;
        server.serve("/slow", {.body = mediasample::wav(8600), .bytesPerSecond = 7000});
        PlaybackRig rig;
        const double before = audioSecondsRendered();
        QElapsedTimer clock;
        clock.start();
        WaterlineCaller caller(rig, {server.url("/slow")});
        QTRY_VERIFY_WITH_TIMEOUT(caller.done, 30000);
        QVERIFY(caller.pausedAt < 3000);
        QVERIFY2(caller.resumedAt > 7000 && caller.resumedAt < 8600, qPrintable(QString::number(caller.resumedAt)));
        QCOMPARE(caller.pauses, 1);
        const double heard = audioSecondsRendered() - before;
        QVERIFY2(qAbs(heard - 8.6) < 0.05, qPrintable(QString::number(heard)));
        QVERIFY(clock.elapsed() > 14000); // 8.6 s of music after waiting for 7 s of it
        QVERIFY(rig.lows.size() <= 2);
    }
};

QTEST_GUILESS_MAIN(PlaybackDeadlinesTest)
#include "playback_deadlines_test.moc"
