// A bad network under a caller that minds its water line, as the player screen does.

#include "mediaserver.h"
#include "playbackrig.h"

#include "platform/netcommon/playbackstatistics.h"

#include <QtTest>

using netcommon::statistics::audioSecondsRendered;

class PlaybackFaultsTest : public QObject {
    Q_OBJECT
private slots:
    void theNextTrackStartsByItself()
    {
        MediaServer server;
        server.serve("/a", {.body = mediasample::file("xing-400ms.mp3")});
        server.serve("/b", {.body = mediasample::wav(1200)});
        server.serve("/bad", {.status = 404});
        // So slow that its end comes while the caller has paused it.
        server.serve("/slow", {.body = mediasample::file("flac-2600ms.flac"), .bytesPerSecond = 20000});
        PlaybackRig rig;
        WaterlineCaller caller(rig, {server.url("/a"), server.url("/b"), server.url("/bad"), server.url("/slow")});
        QTRY_VERIFY_WITH_TIMEOUT(caller.done, 20000);
        QCOMPARE(caller.started, 4);
        QVERIFY(caller.pauses >= 1);
    }

    void cutsAreNotHeard()
    {
        const QByteArray body = mediasample::wav(2600);
        const MediaFile cases[] = {
            MediaFile{.body = body, .cutAt = {4000, 9001}},                    // reset
            MediaFile{.body = body, .cutAt = {9001}, .cut = MediaFile::Close}, // closed
            MediaFile{.body = body, .ranges = false, .cutAt = {9001}},         // no ranges
            MediaFile{.body = body, .length = MediaFile::Chunked, .cutAt = {9001}, .cut = MediaFile::Close}, // chunked
        };
        for (const auto &file : cases) {
            MediaServer server;
            server.serve("/track", file);
            PlaybackRig rig;
            const double before = audioSecondsRendered();
            rig.play(server.url("/track"));
            QTRY_COMPARE(rig.heard, (QStringList{"stop", "url", "result 0", "play", "total 2", "eof", "next"}));
            const double heard = audioSecondsRendered() - before;
            QVERIFY2(qAbs(heard - 2.6) < 0.02, qPrintable(QString::number(heard)));
            QVERIFY(server.requests("/track").size() > file.cutAt.size());
        }
    }

    // Nobody minds the water line here. The sink must be held back by itself: else the clock runs on in silence, and
    // what comes afterwards is rushed through behind it.
    void aServerThatWasAwayIsWaitedForNotPlayedOver()
    {
        MediaServer server;
        server.serve("/track", {.body = mediasample::wav(6000), .bytesPerSecond = 16000});
        PlaybackRig rig;
        const double before = audioSecondsRendered();
        rig.play(server.url("/track"));
        QTRY_VERIFY(rig.buffer().ui4_end > 1500);
        server.down();
        QTRY_VERIFY(rig.buffer().ui4_start > 0 && rig.buffer().ui4_amount < 300); // it has run dry
        QTest::qWait(2000);
        QCOMPARE(rig.state(), 5); // it is not the caller's business
        const qint64 left = 6000 - rig.buffer().ui4_start;
        QElapsedTimer clock;
        clock.start();
        server.up();
        QTRY_VERIFY_WITH_TIMEOUT(rig.heard.contains("next"), 20000);
        QVERIFY2(clock.elapsed() > left - 400, qPrintable(QStringLiteral("%1 of %2").arg(clock.elapsed()).arg(left)));
        const double heard = audioSecondsRendered() - before;
        QVERIFY2(qAbs(heard - 6.0) < 0.05, qPrintable(QString::number(heard)));
        QCOMPARE(rig.count("pause"), 0);
        QCOMPARE(rig.count("play"), 1);
    }

    void aStallForEverLeavesTheCallerPausedAndTheBufferAsItIs()
    {
        MediaServer server;
        const qint64 at = mediasample::WavHeader + 8 * 4500;
        server.serve("/track", {.body = mediasample::wav(20000), .cutAt = {at, at, at}, .cut = MediaFile::Stall});
        PlaybackRig rig;
        WaterlineCaller caller(rig, {server.url("/track")});
        QTRY_COMPARE(rig.state(), 6);
        QVERIFY2(caller.pausedAt > 1000 && caller.pausedAt < 3000, qPrintable(QString::number(caller.pausedAt)));
        QTest::qWait(300); // the pipeline has come to rest
        const auto before = rig.buffer();
        QTRY_VERIFY(caller.lowTicks >= 5);
        QCOMPARE(rig.state(), 6);
        QCOMPARE(rig.buffer().ui4_amount, before.ui4_amount);
        QCOMPARE(rig.lows, QList<bool>{true});
        QVERIFY(!rig.heard.contains("eof"));
        QVERIFY(!rig.heard.contains("next"));
        QElapsedTimer clock;
        clock.start();
        rig.command(PLAYBACK_TYPE_END);
        QVERIFY(rig.thread.wait(1000));
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    }

    void aTrackRefusedInTheMiddleIsPlayedToWhereItGot()
    {
        MediaServer server;
        server.serve("/track", {.body = mediasample::wav(4000), .cutAt = {8 * 2000}, .cut = MediaFile::Close});
        PlaybackRig rig;
        rig.play(server.url("/track"));
        QTRY_COMPARE(server.requests("/track").size(), 1);
        server.serve("/track", {.status = 404});
        QTRY_VERIFY(rig.heard.contains("next"));
        QCOMPARE(rig.heard, (QStringList{"stop", "url", "result 0", "play", "total 4", "eof", "next"}));
        QCOMPARE(rig.buffer().ui4_start, 4000u); // as it was announced
    }
};

QTEST_GUILESS_MAIN(PlaybackFaultsTest)
#include "playback_faults_test.moc"
