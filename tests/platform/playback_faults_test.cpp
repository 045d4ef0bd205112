// Playback on a bad network.

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
            MediaFile{.body = body, .cutAt = {4000, 9001}},                         // reset
            MediaFile{.body = body, .cutAt = {9001}, .cut = MediaFile::Cut::Close}, // closed
            MediaFile{.body = body, .ranges = false, .cutAt = {9001}},              // no ranges
            MediaFile{.body = body,
                      .length = MediaFile::Length::Chunked,
                      .cutAt = {9001},
                      .cut = MediaFile::Cut::Close}, // chunked
        };
        for (const auto &file : cases) {
            PlaybackRig rig;
            rig.server.serve("/track", file);
            rig.play(rig.server.url("/track"));
            TRY_VERIFY(rig.hasEnded());
            QCOMPARE(rig.heard, rig.wholeStory(2));
            const double heard = rig.audioSeconds();
            QVERIFY2(qAbs(heard - 2.6) < 0.02, qPrintable(QString::number(heard)));
            QVERIFY(rig.server.requests("/track").size() > file.cutAt.size());
        }
    }

    // No player screen watches the water line here. The playback must pause the sink itself; otherwise the clock runs
    // on in silence and the late samples are played too fast.
    void playbackWaitsForAnUnreachableServer()
    {
        PlaybackRig rig;
        const MediaFile file{.body = mediasample::wav(6000), .bytesPerSecond = 16000};
        rig.play(MediaFile{.body = file.body, .bytesPerSecond = 16000, .cutAt = {8 * 4000}});
        TRY_COMPARE(rig.server.requests("/track").size(), 1);
        rig.server.serve("/track", {.status = 503});
        TRY_VERIFY(rig.buffer().ui4_start > 0 && rig.buffer().ui4_amount < 300); // it has run dry
        const qsizetype asked = rig.server.requests("/track").size();
        TRY_VERIFY(rig.server.requests("/track").size() > asked);
        QCOMPARE(rig.state(), 5); // the caller does not see this pause
        const qint64 left = 6000 - rig.buffer().ui4_start;
        QElapsedTimer clock;
        clock.start();
        rig.server.serve("/track", file);
        TRY_VERIFY(rig.hasEnded());
        QVERIFY2(clock.elapsed() > left - 400, qPrintable(QStringLiteral("%1 of %2").arg(clock.elapsed()).arg(left)));
        const double heard = rig.audioSeconds();
        QVERIFY2(qAbs(heard - 6.0) < 0.05, qPrintable(QString::number(heard)));
        QCOMPARE(rig.count("pause"), 0);
        QCOMPARE(rig.count("play"), 1);
    }

    void aStalledDownloadLeavesTheTrackPausedAndKeepsTheBuffer()
    {
        const qint64 at = mediasample::wavHeader + 8 * 4500;
        PlaybackRig rig;
        rig.play(MediaFile{.body = mediasample::wav(20000), .cutAt = QList<qint64>(100, at)});
        TRY_VERIFY(rig.buffer().ui4_end > 4000);
        TRY_VERIFY(rig.buffer().ui4_amount < 3000);
        rig.command(PLAYBACK_TYPE_PAUSE); // as the player screen does below this line
        TRY_COMPARE(rig.state(), 6);
        const auto before = rig.buffer();
        QVERIFY2(before.ui4_amount > 1000, qPrintable(QString::number(before.ui4_amount)));
        const qsizetype asked = rig.server.requests("/track").size();
        TRY_VERIFY(rig.server.requests("/track").size() > asked);
        QCOMPARE(rig.state(), 6);
        QVERIFY2(before.ui4_amount - rig.buffer().ui4_amount < 150, "the clock runs while it is paused");
        QCOMPARE(rig.lows, QList<bool>{true});
        QCOMPARE(rig.heard, (QStringList{"stop", "url", "result 0", "play", "total 20", "pause"}));
    }

    // On a link as slow as the music the result comes when the first check of the water line will find enough.
    void aSlowLinkDoesNotStartTooEarly()
    {
        PlaybackRig rig;
        quint32 atResult = 0;
        connect(rig.playback, &netcommon::Playback::signalPlayResult, &rig,
                [&] { atResult = rig.buffer().ui4_amount; });
        rig.play(MediaFile{.body = mediasample::wav(6000), .bytesPerSecond = 9000});
        TRY_VERIFY(rig.heard.contains("result 0"));
        QVERIFY2(atResult >= 3400, qPrintable(QString::number(atResult)));
        rig.play(MediaFile{.body = mediasample::wav(2000), .bytesPerSecond = 9000}); // less, but the whole track
        TRY_VERIFY(rig.hasEnded());
        QVERIFY2(atResult >= 1900, qPrintable(QString::number(atResult)));
    }

    // The read-ahead is bounded: a track of hours does not fill the memory.
    void aLongTrackIsDownloadedWhileItPlays()
    {
        PlaybackRig rig;
        rig.play(MediaFile{.body = mediasample::wav(1600000)}); // 12.8 MB
        TRY_COMPARE(rig.seconds.value(2), 2);                   // ample time for all of it on loopback
        QVERIFY(!rig.heard.contains("eof"));
        QVERIFY2(rig.buffer().ui4_end < 1200000, qPrintable(QString::number(rig.buffer().ui4_end)));
        QVERIFY2(rig.buffer().ui4_end > 60000, qPrintable(QString::number(rig.buffer().ui4_end)));
    }

    void aTrackThatFailsMidwayIsPlayedUpToThatPoint()
    {
        PlaybackRig rig;
        rig.play(MediaFile{.body = mediasample::wav(4000), .cutAt = {8 * 2000}, .cut = MediaFile::Cut::Close});
        TRY_COMPARE(rig.server.requests("/track").size(), 1);
        rig.server.serve("/track", {.status = 404});
        TRY_VERIFY(rig.hasEnded());
        QCOMPARE(rig.heard, rig.wholeStory(4));
        QCOMPARE(rig.buffer().ui4_start, 4000u); // as it was announced
    }
};

QTEST_GUILESS_MAIN(PlaybackFaultsTest)
#include "playback_faults_test.moc"
