// What the player screen shows of the track: texts, times, pictures, the history and its thumbs, the sliding panel.
#include "screens/playerrig.h"

#include "netcommon/playback.h"

#include <QFile>
#include <QProgressBar>
#include <QTemporaryDir>

namespace {

void playNext(PlayerRig &rig)
{
    rig.finishTrack();
    if (rig.service.ws.waiting(VLM_WS_MSGID_GET_PLAYLIST) > 0)
        rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(5));
    FakePlayback::playOk(10);
    rig.run();
}

QString writePicture(const QTemporaryDir &dir, const QSize &size, const char *format = "PNG")
{
    const QString file = dir.filePath("cover");
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image.save(file, format) ? file : QString();
}

QImage shownPicture(const PlayerRig &rig)
{
    return screentest::child<QLabel>(rig.player, "albumPicLabel")->pixmap(Qt::ReturnByValue).toImage();
}

} // namespace

class PlayerNowPlaying : public QObject {
    Q_OBJECT
private slots:
    void longNamesAreCut()
    {
        PlayerRig rig("tapestry");
        rig.play({FakeEntry::track({QByteArray(31, 's'), QByteArray(30, 'a'), QByteArray(40, 'b')})});
        QCOMPARE(rig.text("songLabel"), QString(30, 's') + "...");
        QCOMPARE(rig.text("artistLabel"), QString(30, 'a'));
        QCOMPARE(rig.text("albumLabel"), QString(30, 'b') + "...");
        QCOMPARE(rig.text("stationNameLabel"), QStringLiteral("Tapestry"));
        QVERIFY(rig.style("stationIconLabel").contains("common_tapestry_icon_s_01.png"));
    }

    void timesAndProgressFollowThePlayback()
    {
        PlayingRig rig;
        const auto *bar = screentest::child<QProgressBar>(rig.player, "nowplayingProgressBar");
        FakePlayback::progress(70, 187);
        QCOMPARE(rig.text("currentTimeLabel"), QStringLiteral("01:10 /"));
        QCOMPARE(bar->value(), 37);
        QSignalSpy said(rig.player, &VelmoraMainDlg::signalUpdatePlaybackinfo);
        rig.player->updateTotalTime(1, 2, 5);
        QCOMPARE(rig.text("totalTimeLabel"), QStringLiteral("1:02:05"));
        QCOMPARE(said.takeFirst(), QVariantList({0, 1, 2, 5}));
        rig.player->updateCurrentTime(1, 2, 3);
        QCOMPARE(said.takeFirst(), QVariantList({1, 1, 2, 3}));
        rig.call("initPlaybackInfoByStop");
        QCOMPARE(rig.text("currentTimeLabel"), QStringLiteral("00:00 /"));
        QCOMPARE(bar->value(), 0);
    }

    void theHistoryKeepsThirtyRowsAndTheirThumbs()
    {
        // Marked at once: the oldest row of thirty.
        PlayingRig rig({FakeEntry::track({.songRating = 1}), PlayerRig::track("Song 2")});
        QVERIFY(rig.hasThumb("ThumbsUp_Enable.png"));
        for (int i = 0; i < 29; ++i)
            playNext(rig);
        QCOMPARE(rig.history()->count(), 30);
        QVERIFY(!rig.hasThumb());
        rig.call("thumbUpSong");
        rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK); // the newest
        rig.history()->setCurrentRow(29);
        QVERIFY(rig.hasThumb());
        QCOMPARE(rig.text("playlistNumLabel"), QStringLiteral("30/30"));
        const QString newest = rig.history()->item(0)->text();
        playNext(rig);
        QCOMPARE(rig.history()->item(0)->text(), rig.text("songLabel"));
        QCOMPARE(rig.history()->item(1)->text(), newest); // the oldest has gone
        QCOMPARE(rig.history()->count(), 30);
        QCOMPARE(rig.text("playlistNumLabel"), QStringLiteral("1/30"));
        QVERIFY(!rig.hasThumb());
        rig.history()->setCurrentRow(1);
        QVERIFY(rig.hasThumb());
        rig.history()->setCurrentRow(29);
        QVERIFY(!rig.hasThumb());
    }

    void aBadPictureKeepsThePlaceholder()
    {
        struct Case {
            const char *name;
            int result;
            QSize size; // of a true picture
            QByteArray content;
        };
        const Case cases[] = {{"download failed", -1, QSize(10, 10), {}},
                              {"far too large", 0, QSize(5000, 10), {}},
                              {"a page", 0, {}, "<html>not found</html>"},
                              {"SVG", 0, {}, "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"},
                              {"cut off", 0, {}, QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16)},
                              {"no file", 0, {}, {}}};
        for (const Case &c : cases) {
            const Row row(c.name);
            PlayingRig rig;
            QTemporaryDir dir;
            QFile file(dir.filePath("cover"));
            if (c.size.isValid())
                writePicture(dir, c.size);
            else if (!c.content.isEmpty())
                QVERIFY(file.open(QIODevice::WriteOnly) && file.write(c.content) > 0);
            file.close();
            FakeDownload::result(c.result, file.fileName());
            QVERIFY(shownPicture(rig).isNull());
            QVERIFY(rig.style("albumPicLabel").contains("NoThumbnail.png"));
        }
    }

    void aNewRowDoesNotDisturbAMarquee()
    {
        PlayerRig rig;
        const QString name = QStringLiteral("A title that is wider than its row by far");
        rig.play({PlayerRig::track(name.toUtf8()), PlayerRig::track("Song 2")});
        rig.key(screentest::Left);
        QCOMPARE(rig.focused(), QStringList("playListWidget"));
        QCOMPARE(rig.history()->item(0)->text(), QString()); // it runs
        playNext(rig);
        QCOMPARE(rig.history()->item(1)->text(), name);
        QCOMPARE(rig.history()->item(0)->text(), QStringLiteral("Song 2"));
        QCOMPARE(rig.focused(), QStringList("playListWidget"));
    }

    void thePictureIsShownOnTheScreenAndInTheHistory()
    {
        PlayingRig rig;
        QCOMPARE(FakeDownload::urls.last(), QByteArray("http://127.0.0.1:1/cover of Song 1"));
        QVERIFY(FakeDownload::folder.endsWith("/"));
        QVERIFY(shownPicture(rig).isNull());
        QTemporaryDir dir;
        FakeDownload::result(0, writePicture(dir, QSize(500, 400), "JPG"));
        QCOMPARE(shownPicture(rig).size(), QSize(224, 224));
        QVERIFY(shownPicture(rig).pixelColor(100, 100).red() > 240);
        QVERIFY(rig.history()->item(0)->icon().pixmap(32).toImage().pixelColor(16, 16).red() > 240);
        QTRY_COMPARE(screentest::childWidget(rig.player, "playbackControlWidget")->pos(), QPoint(640, 130));
        playNext(rig);
        QVERIFY(shownPicture(rig).isNull()); // the placeholder again
    }

    void aLatePictureOfAnEarlierTrackIsIgnored()
    {
        PlayingRig rig({PlayerRig::track("Song 1"), FakeEntry::track({.albumArtUrl = {}})});
        playNext(rig);
        QTemporaryDir dir;
        FakeDownload::result(0, writePicture(dir, QSize(50, 50)));
        QVERIFY(shownPicture(rig).isNull());
    }

    void theFocusedPlayButtonStaysFocusedOverATrackChange()
    {
        PlayingRig rig;
        rig.key(screentest::Right);
        rig.key(screentest::Right);
        QCOMPARE(rig.focused(), QStringList("playBtn"));
        rig.finishTrack();
        emit netcommon::Playback::getInstance()->signalPlayResult(0); // before it is said that the track plays
        QCOMPARE(rig.focused(), QStringList("playBtn"));
        playNext(rig);
        QCOMPARE(rig.focused(), QStringList("playBtn"));
        QVERIFY(rig.button("playBtn")->hasFocus());
        rig.key(screentest::Select);
        rig.run();
        QVERIFY(rig.style("playBtn").contains("Play.png")); // paused, and the text stays white
        QVERIFY(rig.style("playBtn").contains("color: rgb(255, 255, 255)"));
        QCOMPARE(rig.focused(), QStringList("playBtn"));
    }
};

QTEST_MAIN(PlayerNowPlaying)
#include "player_nowplaying_test.moc"
