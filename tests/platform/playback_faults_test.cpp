// A bad network under the music.

#include "playbackrig.h"

#include "platform/netcommon/playback/playbackstatistics.h"

#include <QtTest>

class PlaybackFaultsTest : public QObject {
    Q_OBJECT
private slots:
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
            PlaybackRig rig;
            rig.server.serve("/track", file);
            rig.play(rig.server.url("/track"));
            QTRY_COMPARE(rig.heard, rig.wholeStory(2));
            const double heard = rig.audioSeconds();
            QVERIFY2(qAbs(heard - 2.6) < 0.02, qPrintable(QString::number(heard)));
            QVERIFY(rig.server.requests("/track").size() > file.cutAt.size());
        }
    }

    // Nobody minds the water line here. The sink must be held back by itself: else the clock runs on in silence, and
    // what comes afterwards is rushed through behind it.
    void aServerThatWasAwayIsWaitedForNotPlayedOver()
    {
        PlaybackRig rig;
        rig.play(MediaFile{.body = mediasample::wav(6000), .bytesPerSecond = 16000});
        QTRY_VERIFY(rig.buffer().ui4_end > 1500);
        rig.server.down();
        QTRY_VERIFY(rig.buffer().ui4_start > 0 && rig.buffer().ui4_amount < 300); // it has run dry
        QTest::qWait(2000);
        QCOMPARE(rig.state(), 5); // it is not the caller's business
        const qint64 left = 6000 - rig.buffer().ui4_start;
        QElapsedTimer clock;
        clock.start();
        rig.server.up();
        QTRY_VERIFY_WITH_TIMEOUT(rig.heard.contains("next"), 20000);
        QVERIFY2(clock.elapsed() > left - 400, qPrintable(QStringLiteral("%1 of %2").arg(clock.elapsed()).arg(left)));
        const double heard = rig.audioSeconds();
        QVERIFY2(qAbs(heard - 6.0) < 0.05, qPrintable(QString::number(heard)));
        QCOMPARE(rig.count("pause"), 0);
        QCOMPARE(rig.count("play"), 1);
    }

    void aStallForEverLeavesTheTrackPausedAndTheBufferAsItIs()
    {
        const qint64 at = mediasample::WavHeader + 8 * 4500;
        PlaybackRig rig;
        rig.play(MediaFile{.body = mediasample::wav(20000), .cutAt = {at, at, at}, .cut = MediaFile::Stall});
        QTRY_VERIFY(rig.buffer().ui4_end > 4000);
        QTRY_VERIFY(rig.buffer().ui4_amount < 3000);
        rig.command(PLAYBACK_TYPE_PAUSE); // as the player screen does below this line
        QTRY_COMPARE(rig.state(), 6);
        QTest::qWait(300); // the pipeline has come to rest
        const auto before = rig.buffer();
        QVERIFY2(before.ui4_amount > 1000, qPrintable(QString::number(before.ui4_amount)));
        QTest::qWait(2500);
        QCOMPARE(rig.state(), 6);
        QCOMPARE(rig.buffer().ui4_amount, before.ui4_amount);
        QCOMPARE(rig.lows, QList<bool>{true});
        QCOMPARE(rig.heard, (QStringList{"stop", "url", "result 0", "play", "total 20", "pause"}));
        QElapsedTimer clock;
        clock.start();
        rig.command(PLAYBACK_TYPE_END);
        QVERIFY(rig.thread.wait(1000));
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    }

    void aTrackRefusedInTheMiddleIsPlayedToWhereItGot()
    {
        PlaybackRig rig;
        rig.play(MediaFile{.body = mediasample::wav(4000), .cutAt = {8 * 2000}, .cut = MediaFile::Close});
        QTRY_COMPARE(rig.server.requests("/track").size(), 1);
        rig.server.serve("/track", {.status = 404});
        QTRY_VERIFY(rig.heard.contains("next"));
        QCOMPARE(rig.heard, rig.wholeStory(4));
        QCOMPARE(rig.buffer().ui4_start, 4000u); // as it was announced
    }
};

QTEST_GUILESS_MAIN(PlaybackFaultsTest)
#include "playback_faults_test.moc"
