// The signals that follow an address: which, how many, in which order.

#include "playbackrig.h"

#include "platform/netcommon/playback/playbackstatistics.h"

#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gst/gst.h>

namespace {
const QByteArray page =
    "<!DOCTYPE html><html><head><title>no</title></head><body><p>" + QByteArray(3000, 'x') + "</p></body>";

QByteArray picture()
{
    // The smallest GIF, padded with a comment: complete and recognised, but nothing to hear.
    return QByteArray::fromHex("47494638396101000100800000000000ffffff21fe") + char(200) + QByteArray(200, 'c') +
           QByteArray::fromHex("002c00000000010001000002024401003b");
}

// MIDI: its type is audio, and nothing here plays it.
QByteArray score()
{
    return QByteArray::fromHex("4d546864000000060000000100604d54726b00000014") + QByteArray(400, '\x40');
}

} // namespace

class PlaybackContractTest : public QObject {
    Q_OBJECT
private slots:
    void aGoodTrackIsReportedInOrder_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("total");
        const auto row = [](const char *name, const QByteArray &body, int total) {
            QTest::newRow(name) << body << total;
        };
        row("MP3 with a length header", mediasample::file("xing-2600ms.mp3"), 2);
        row("MP3 without", mediasample::file("bare-2600ms.mp3"), 2);
        row("MP3 with a cover picture", mediasample::file("cover-2600ms.mp3"), 2);
        row("MP3 shorter than a second", mediasample::file("xing-400ms.mp3"), 0);
        row("Ogg Vorbis", mediasample::file("vorbis-2600ms.ogg"), 2);
        row("Ogg Opus", mediasample::file("opus-2600ms.opus"), 2);
        row("FLAC", mediasample::file("flac-2600ms.flac"), 2);
        row("WAV", mediasample::wav(5300), 5);
    }

    void aGoodTrackIsReportedInOrder()
    {
        QFETCH(QByteArray, body);
        QFETCH(int, total);
        PlaybackRig rig("fakesink sync=false");
        rig.play(MediaFile{.body = body, .type = "text/plain"}); // what it calls itself does not matter
        TRY_VERIFY(rig.hasEnded());
        QCOMPARE(rig.heard, rig.wholeStory(total));
        QCOMPARE(rig.buffer().ui4_start, quint32(total) * 1000);
        QCOMPARE(rig.buffer().ui4_end, quint32(total) * 1000);
        QCOMPARE(rig.buffer().ui4_amount, 0u);
    }

    void aTrackTakesItsTimeAndAllOfItReachesTheSink()
    {
        const std::tuple<QByteArray, int, QList<int>> cases[] = {
            {mediasample::wav(2600), 2600, QList<int>{0, 1, 2}},       // WAV
            {mediasample::file("xing-400ms.mp3"), 400, QList<int>{0}}, // MP3
        };
        for (const auto &[body, ms, seconds] : cases) {
            PlaybackRig rig;
            QElapsedTimer clock;
            rig.play(MediaFile{.body = body});
            TRY_VERIFY(rig.heard.contains("play"));
            clock.start();
            QCOMPARE(rig.state(), 5);
            QCOMPARE(netcommon::statistics::playbackState(), 5);
            TRY_VERIFY(rig.hasEnded());
            QVERIFY2(clock.elapsed() > ms - 100, qPrintable(QString::number(clock.elapsed())));
            const double heard = rig.audioSeconds();
            QVERIFY2(qAbs(heard - ms / 1000.0) < 0.1, qPrintable(QString::number(heard)));
            QCOMPARE(rig.seconds, seconds);
        }
    }

    // As the player screen does it: stop, start and address together, some time after the next track was requested.
    void theNextTrackWaitsForTheLastSampleOfTheOneBefore()
    {
        PlaybackRig rig;
        const MediaFile track{.body = mediasample::wav(1500)};
        rig.play(track);
        TRY_VERIFY(rig.heard.contains("next"));
        QCOMPARE(rig.state(), 5); // it still plays
        rig.replace(track);
        TRY_VERIFY(rig.heard.contains("result 0"));
        // Fetched and decoded, while the one before is heard. An emulated processor may need longer than that lasts.
        QVERIFY(rig.audioSeconds() < 1.5 || qEnvironmentVariableIsSet("VELMORA_EMULATOR"));
        TRY_VERIFY(rig.hasEnded());
        QCOMPARE(rig.heard, rig.wholeStory(1));
        QCOMPARE(qRound(rig.audioSeconds() * 100), 300); // nothing was cut
        QCOMPARE(rig.seconds, (QList<int>{0, 1}));

        rig.play(track);
        TRY_VERIFY(rig.heard.contains("next"));
        rig.command(PLAYBACK_TYPE_PAUSE); // a pause discards the rest of the previous track
        TRY_COMPARE(rig.state(), 6);
        rig.replace(track);
        TRY_VERIFY(rig.hasEnded());
        QVERIFY2(rig.audioSeconds() < 2.9, qPrintable(QString::number(rig.audioSeconds())));
    }

    void whatCannotBePlayedIsMinusOneOnce_data()
    {
        QTest::addColumn<MediaFile>("file");
        const auto row = [](const char *name, const MediaFile &file) { QTest::newRow(name) << file; };
        row("not found", {.body = "no", .status = 404});
        row("forbidden", {.body = "no", .status = 403});
        row("empty", {});
        row("a page", {.body = page});
        row("a picture", {.body = picture()});
        row("noise", {.body = mediasample::noise(50000)});
        row("a list of other addresses",
            {.body = "#EXTM3U\n#EXT-X-TARGETDURATION:5\n#EXTINF:5,\nfile:///etc/hostname\n"});
        row("called audio, but a score", {.body = score()});
        row("the same behind a tag",
            {.body = QByteArray("ID3\x03\0\0\0\0\0\x0a", 10) + QByteArray(10, '\0') + score()});
        row("the first 100 bytes of an MP3", {.body = mediasample::file("xing-2600ms.mp3").left(100)});
        row("the header of a WAV", {.body = mediasample::wav(1000).left(mediasample::wavHeader)});
        row("never answering", {.silent = true});
    }

    void whatCannotBePlayedIsMinusOneOnce()
    {
        QFETCH(MediaFile, file);
        PlaybackRig rig;
        rig.play(file);
        TRY_VERIFY(rig.heard.contains("result -1")); // after seconds where the failure may pass
        QCOMPARE(rig.state(), 4);
        QCOMPARE(rig.buffer().ui4_end, 0u);
        rig.command(PLAYBACK_TYPE_STOP); // its answer comes after every report about the track
        TRY_COMPARE(rig.count("stop"), 2);
        QCOMPARE(rig.heard, (QStringList{"stop", "url", "result -1", "stop"}));
        rig.play(MediaFile{.body = mediasample::wav(400)});
        TRY_COMPARE(rig.heard, rig.wholeStory(0));
    }

    void anAddressWithoutStartIsIgnored()
    {
        PlaybackRig rig;
        rig.server.serve("/track", {.body = mediasample::wav(400)});
        QByteArray url = rig.server.url("/track");
        rig.thread.setAudioUrl(url.data());
        rig.command(PLAYBACK_TYPE_STOP);
        rig.thread.setAudioUrl(url.data());
        rig.command(PLAYBACK_TYPE_STOP); // its answer comes after every earlier report
        TRY_COMPARE(rig.count("stop"), 2);
        QCOMPARE(rig.heard, (QStringList{"stop", "stop"}));
        QVERIFY(rig.server.requests("/track").isEmpty());
    }

    void redirectsAreFollowedOnTheWebOnly()
    {
        PlaybackRig rig;
        rig.server.serve("/track", {.body = mediasample::wav(400)});
        rig.server.serve("/moved", {.status = 302, .location = rig.server.url("/track")});
        rig.server.serve("/local", {.status = 302, .location = "file:///etc/hostname"});
        rig.play(rig.server.url("/moved"));
        TRY_COMPARE(rig.heard, rig.wholeStory(0));
        rig.play(rig.server.url("/local"));
        TRY_COMPARE(rig.heard, (QStringList{"stop", "url", "result -1"}));
        for (const char *const refused : {"file:///etc/hostname", "ftp://127.0.0.1/a", "nonsense", ""}) {
            rig.play(refused);
            TRY_COMPARE(rig.heard, (QStringList{"stop", "url", "result -1"}));
        }
    }

    void pauseAndResumeAreReportedOncePerChange()
    {
        PlaybackRig rig;
        rig.server.serve("/track", {.body = mediasample::wav(6000), .bytesPerSecond = 20000});
        rig.command(PLAYBACK_TYPE_PAUSE); // nothing to pause
        rig.play(rig.server.url("/track"));
        TRY_VERIFY(rig.heard.contains("play"));
        rig.command(PLAYBACK_TYPE_PAUSE);
        rig.command(PLAYBACK_TYPE_PAUSE);
        TRY_COMPARE(rig.state(), 6);
        const quint32 start = rig.buffer().ui4_start;
        TRY_VERIFY(rig.heard.contains("eof")); // the rest takes a second to come; the clock stands meanwhile
        QVERIFY2(rig.buffer().ui4_start <= start + 150, qPrintable(QString::number(rig.buffer().ui4_start)));
        rig.command(PLAYBACK_TYPE_RESUME);
        rig.command(PLAYBACK_TYPE_RESUME);
        TRY_COMPARE(rig.state(), 5);
        TRY_VERIFY(rig.hasEnded());
        QCOMPARE(rig.heard,
                 (QStringList{"stop", "url", "result 0", "play", "total 6", "pause", "eof", "play", "next"}));
    }

    void everyStopIsReportedAndDropsTheTrack()
    {
        PlaybackRig rig;
        rig.play(MediaFile{.body = mediasample::wav(15000)});
        TRY_VERIFY(rig.heard.contains("eof"));
        TRY_VERIFY(rig.buffer().ui4_amount > 0);
        rig.command(PLAYBACK_TYPE_STOP);
        QCOMPARE(rig.state(), 4); // at once: the command has replaced the track
        QCOMPARE(rig.buffer().ui4_end, 0u);
        rig.command(PLAYBACK_TYPE_STOP);
        rig.command(PLAYBACK_TYPE_RESUME); // there is nothing to resume
        rig.command(PLAYBACK_TYPE_STOP);
        TRY_COMPARE(rig.count("stop"), 4);
        QCOMPARE(rig.heard.mid(6), (QStringList{"stop", "stop", "stop"}));
        QCOMPARE(rig.state(), 4);
    }

    // Queries of a FLAC parser would wait behind the frames for ever if the queue accepted them.
    void aTrackPausedAtOnceIsStillReceivedWhole()
    {
        for (const char *const name : {"flac-2600ms.flac", "bare-2600ms.mp3"}) {
            PlaybackRig rig;
            rig.play(MediaFile{.body = mediasample::file(name), .bytesPerSecond = 60000});
            rig.command(PLAYBACK_TYPE_PAUSE);
            TRY_COMPARE(rig.heard, (QStringList{"stop", "url", "result 0", "pause", "total 2", "eof"}));
            QCOMPARE(rig.state(), 6);
            rig.command(PLAYBACK_TYPE_RESUME);
            QTRY_VERIFY2(rig.heard.mid(6) == QStringList({"play", "next"}), name);
        }
    }

    void theBufferEndIsExactWhenTheServerStalls()
    {
        const QByteArray wav = mediasample::wav(8000);
        PlaybackRig rig;
        rig.play(MediaFile{.body = wav, .cutAt = {mediasample::wavHeader + 8 * 5000}, .cut = MediaFile::Cut::Stall});
        rig.command(PLAYBACK_TYPE_PAUSE);
        TRY_VERIFY(rig.heard.contains("result 0"));
        // wavparse hands on whole blocks; what it still holds is less than one.
        QTRY_VERIFY2(rig.buffer().ui4_end <= 5000 && rig.buffer().ui4_end > 4400,
                     qPrintable(QString::number(rig.buffer().ui4_end)));
        QVERIFY(!rig.heard.contains("eof"));
    }

    void aLostSinkIsReplacedAtTheSamePosition()
    {
        // The element in front of the sink breaks after 1.3 s, as a device does that is unplugged.
        PlaybackRig rig("identity error-after=50 ! fakesink sync=true");
        QElapsedTimer clock;
        clock.start();
        rig.play(MediaFile{.body = mediasample::file("xing-2600ms.mp3")});
        TRY_VERIFY(rig.hasEnded());
        QCOMPARE(rig.heard, rig.wholeStory(2));
        const double heard = rig.audioSeconds();
        QVERIFY2(qAbs(heard - 2.6) < 0.3, qPrintable(QString::number(heard))); // little is repeated, little is lost
        QVERIFY2(clock.elapsed() > 2500, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(rig.seconds, (QList<int>{0, 1, 2}));
        QCOMPARE(rig.server.requests("/track").size(), 2); // it was really rebuilt
    }

    void aSinkThatComesBackIsHeardWithinTheTrack()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("device/sound");
        PlaybackRig rig("filesink sync=true location=" + QFile::encodeName(file));
        rig.play(MediaFile{.body = mediasample::wav(600'000)});
        TRY_VERIFY(rig.seconds.contains(1)); // in silence
        QVERIFY(QDir(folder.path()).mkdir("device"));
        TRY_VERIFY(QFileInfo(file).size() > 8000);
        QVERIFY(rig.seconds.last() < 300); // it went on where it was
        QCOMPARE(rig.heard.mid(0, 5), (QStringList{"stop", "url", "result 0", "play", "total 600"}));
        QCOMPARE(rig.heard.mid(5).join(QString()).remove("eof"), QString()); // nothing is reported again
    }

    // Opening a pipe that nobody reads blocks, as a sound server does that hangs.
    void aSinkThatBlocksDoesNotHoldTheEnd()
    {
        const QTemporaryDir folder;
        const QByteArray pipe = QFile::encodeName(folder.filePath("sound"));
        QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
        {
            PlaybackRig rig("filesink location=" + pipe);
            rig.play(MediaFile{.body = mediasample::wav(1000)});
            TRY_COMPARE(rig.server.requests("/track").size(), 1); // the sink is opened now
        }                                                         // ends the thread and waits for it
        const int reader = open(pipe.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); // lets what was left behind end
        QVERIFY(reader >= 0);
        close(reader);
    }

    void recognisedAudioWithoutADecoderIsMinusTwo()
    {
        gst_init(nullptr, nullptr);
        GstPluginFeature *const decoder = gst_registry_lookup_feature(gst_registry_get(), "flacdec");
        QVERIFY(decoder);
        const guint rank = gst_plugin_feature_get_rank(decoder);
        PlaybackRig rig("fakesink sync=false");
        rig.server.serve("/track", {.body = mediasample::file("flac-2600ms.flac")});
        gst_plugin_feature_set_rank(decoder, GST_RANK_NONE);
        rig.play(rig.server.url("/track"));
        const bool answered = QTest::qWaitFor([&] { return rig.heard.size() >= 3; });
        const QStringList heard = rig.heard;
        gst_plugin_feature_set_rank(decoder, rank);
        gst_object_unref(decoder);
        QVERIFY(answered);
        QCOMPARE(heard, (QStringList{"stop", "url", "result -2"}));
        rig.play(rig.server.url("/track")); // and with it, it plays
        TRY_VERIFY(rig.heard.contains("next"));
    }

    void withoutASoundCardTheDefaultSinkPlaysInRealTime()
    {
        if (QFile::exists(QStringLiteral("/dev/snd")) || qEnvironmentVariableIsSet("PULSE_SERVER"))
            QSKIP("this machine has a sound card; the test would be heard");
        PlaybackRig rig("");
        QElapsedTimer clock;
        clock.start();
        rig.play(MediaFile{.body = mediasample::wav(1200)});
        TRY_VERIFY(rig.hasEnded());
        QCOMPARE(rig.heard, rig.wholeStory(1));
        QVERIFY2(clock.elapsed() >= 1150, qPrintable(QString::number(clock.elapsed())));
    }
};

QTEST_GUILESS_MAIN(PlaybackContractTest)
#include "playback_contract_test.moc"
