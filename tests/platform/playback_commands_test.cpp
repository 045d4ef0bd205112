// Fast commands in random order, as a remote control can send them: no stale report, no double report, no leak.

#include "playbackrig.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <thread>
#include <vector>

namespace {

int threads()
{
    return int(QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

int descriptors()
{
    return int(
        QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size());
}

struct Track {
    const char *path;
    int result; // 0, -1; 1: none at all
    int total;  // seconds
};
// The totals differ, so that a signal of a replaced track is recognised.
constexpr Track tracks[] = {{"/one", 0, 1},      {"/two", 0, 2},    {"/three", 0, 3},
                            {"/missing", -1, 0}, {"/noise", -1, 0}, {"/stalled", 0, 9},
                            {"/silent", 1, 0},   {"/cut", 0, 4},    {"/moved", 0, 2}};

void serveTracks(MediaServer &server)
{
    server.serve("/one", {.body = mediasample::wav(1100)});
    server.serve("/two", {.body = mediasample::wav(2200)});
    server.serve("/three", {.body = mediasample::wav(3300), .bytesPerSecond = 30000});
    server.serve("/noise", {.body = QByteArray(4000, '\x5a')});
    server.serve("/stalled",
                 {.body = mediasample::wav(9100), .cutAt = QList<qint64>(300, 20000), .cut = MediaFile::Cut::Stall});
    server.serve("/silent", {.silent = true});
    server.serve("/cut", {.body = mediasample::wav(4400), .cutAt = QList<qint64>(300, 9000)});
    server.serve("/moved", {.status = 307, .location = "/two"});
}

} // namespace

class PlaybackCommandsTest : public QObject {
    Q_OBJECT
private slots:
    void aReplacedTrackReportsNothingAfterRandomCommands()
    {
        PlaybackRig rig;
        serveTracks(rig.server);
        QRandomGenerator random(20);
        const Track *current = nullptr;
        int stops = 0, allStops = 0;
        std::vector<qint64> times; // milliseconds of each call
        connect(rig.playback, &netcommon::Playback::signalStopOk, &rig, [&] { ++allStops; });
        const auto timed = [&](auto call) {
            QElapsedTimer clock;
            clock.start();
            call();
            times.push_back(clock.elapsed());
        };
        // The reports about a track are, at any moment, a prefix of its full sequence.
        const auto check = [&] {
            QStringList story = rig.heard;
            story.removeAll("stop");
            story.removeAll("pause");
            story.removeAll("play");
            QStringList whole{"url"};
            if (current && current->result == 0)
                whole << "result 0" << QStringLiteral("total %1").arg(current->total) << "eof"
                      << "next";
            else if (current && current->result == -1)
                whole << "result -1";
            if (!current)
                whole.clear();
            QVERIFY2(story == whole.mid(0, story.size()),
                     qPrintable(QString::fromLatin1(current ? current->path : "none") + ": " + story.join(',')));
        };
        for (int i = 0; i < 200 && !QTest::currentTestFailed(); ++i) {
            const int what = random.bounded(10);
            if (what < 5) {
                check();
                current = &tracks[random.bounded(int(std::size(tracks)))];
                ++stops;
                timed([&] { rig.play(rig.server.url(current->path)); });
            } else if (what == 5) {
                check();
                current = nullptr;
                rig.heard.clear();
                ++stops;
                timed([&] { rig.command(PLAYBACK_TYPE_STOP); });
                QCOMPARE(rig.state(), 4);
            } else {
                timed([&] { rig.command(what < 8 ? PLAYBACK_TYPE_PAUSE : PLAYBACK_TYPE_RESUME); });
            }
            const auto buffer = rig.buffer();
            QVERIFY(buffer.ui4_start <= buffer.ui4_end && buffer.ui4_amount == buffer.ui4_end - buffer.ui4_start);
            QTest::qWait(random.bounded(5) == 0 ? random.bounded(300) : random.bounded(20));
        }
        check();
        if (QTest::currentTestFailed())
            return;
        rig.command(PLAYBACK_TYPE_STOP);
        ++stops;
        // Only stop reports may still arrive, one for each stop.
        const qsizetype before = rig.heard.size();
        TRY_COMPARE(allStops, stops);
        QCOMPARE(rig.heard.mid(before).removeAll("stop"), rig.heard.size() - before);
        // A busy machine may interrupt one call or another; a call that waited for the pipeline would do so nearly
        // always.
        std::sort(times.begin(), times.end());
        QVERIFY2(times[times.size() * 9 / 10] < 5, qPrintable(QString::number(times[times.size() * 9 / 10])));
    }

    void commandsMayComeFromManyThreads()
    {
        PlaybackRig rig;
        serveTracks(rig.server);
        std::vector<std::thread> givers;
        for (quint32 seed = 1; seed <= 3; ++seed)
            givers.emplace_back([&rig, seed] {
                QRandomGenerator random(seed);
                for (int i = 0; i < 100; ++i) {
                    QByteArray url = rig.server.url(tracks[random.bounded(int(std::size(tracks)))].path);
                    rig.thread.setType(_PLAYBACK_TYPE_E(random.bounded(4)));
                    rig.thread.setAudioUrl(url.data());
                    netcommon::Playback::getInstance()->getPbcState();
                    std::this_thread::sleep_for(std::chrono::milliseconds(random.bounded(15)));
                }
            });
        for (std::thread &giver : givers)
            giver.join();
        rig.play(rig.server.url("/one"));
        TRY_COMPARE(rig.heard.mid(rig.heard.lastIndexOf("url")),
                    (QStringList{"url", "result 0", "play", "total 1", "eof", "next"}));
    }

    void manyStartsLeaveNothingBehind()
    {
        PlaybackRig rig;
        serveTracks(rig.server);
        const auto run = [&](int starts) {
            for (int i = 0; i < starts; ++i) {
                rig.play(rig.server.url(i % 3 == 0 ? "/stalled" : i % 3 == 1 ? "/two" : "/noise"));
                TRY_VERIFY(rig.heard.size() >= 3); // stop, url, result
            }
            rig.heard.clear();
            rig.command(PLAYBACK_TYPE_STOP);
            TRY_COMPARE(rig.heard, QStringList{"stop"});
            TRY_COMPARE(rig.server.openConnections(), 0);
        };
        run(6); // warm-up: allocates what is allocated only once
        const int threadsBefore = threads(), descriptorsBefore = descriptors();
        run(60);
        QTRY_VERIFY2(threads() <= threadsBefore + 1, qPrintable(QString::number(threads() - threadsBefore)));
        QTRY_VERIFY2(descriptors() <= descriptorsBefore + 4,
                     qPrintable(QString::number(descriptors() - descriptorsBefore)));
    }

    void theThreadEndsAtOnceWhateverItIsDoingAndANewOnePlays()
    {
        for (const char *const path : {"/silent", "/stalled", "/three", "/one", "/missing"}) {
            QElapsedTimer clock;
            {
                PlaybackRig rig;
                serveTracks(rig.server);
                rig.play(rig.server.url(path));
                QTRY_VERIFY2(!rig.server.requests(path).isEmpty(), path);
                clock.start();
            }
            QVERIFY2(clock.elapsed() < 1000, path);
        }
        PlaybackRig rig;
        serveTracks(rig.server);
        rig.play(rig.server.url("/one"));
        TRY_VERIFY(rig.heard.contains("total 1"));
    }
};

QTEST_GUILESS_MAIN(PlaybackCommandsTest)
#include "playback_commands_test.moc"
