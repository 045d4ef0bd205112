// What the player screen shows of the track: texts, times, pictures, the history and its thumbs, the sliding panel.
#include "screens/playerrig.h"

#include "netcommon/playback.h"

#include <QDir>
#include <QFile>
#include <QProgressBar>
#include <QPropertyAnimation>
#include <QTemporaryDir>

namespace {

void finishTrack(PlayerRig &rig)
{
    FakePlayback::finished();
    rig.call("checkwaterline");
    if (rig.service.ws.waiting(VLM_WS_MSGID_GET_PLAYLIST) > 0)
        rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(5));
    FakePlayback::playOk(10);
    rig.run();
}

QString writePicture(const QTemporaryDir &dir, const QSize &size, const char *format = "PNG")
{
    const QString file = dir.filePath(QStringLiteral("cover"));
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
    void longNamesAreCut();
    void tapestryIsNamedByItsRow();
    void timesAndProgressFollowThePlayback();
    void stoppingPutsTheTimesBack();
    void aRatedTrackIsMarkedAtOnce();
    void theHistoryKeepsThirtyRowsAndTheirThumbs();
    void aNewRowDoesNotDisturbAMarquee();
    void thePictureIsShownOnTheScreenAndInTheHistory();
    void aBadPictureKeepsThePlaceholder_data();
    void aBadPictureKeepsThePlaceholder();
    void aLatePictureOfATrackBeforeIsIgnored();
    void theFocusedPlayButtonStaysFocusedOverATrackChange();
    void thePanelSlidesInWhenFirstShown();
};

void PlayerNowPlaying::longNamesAreCut()
{
    PlayerRig rig;
    FakeTrack track;
    track.songName = QByteArray(31, 's');
    track.artistName = QByteArray(30, 'a');
    track.albumName = QByteArray(40, 'b');
    rig.play({FakeEntry::track(track)});
    QCOMPARE(rig.text("songLabel"), QString(30, 's') + "...");
    QCOMPARE(rig.text("artistLabel"), QString(30, 'a'));
    QCOMPARE(rig.text("albumLabel"), QString(30, 'b') + "...");
    PlayerRig::keepPicture("longnames");
}

void PlayerNowPlaying::tapestryIsNamedByItsRow()
{
    PlayerRig rig("tapestry");
    rig.play();
    QCOMPARE(rig.text("stationNameLabel"), QStringLiteral("Tapestry"));
    QVERIFY(rig.style("stationIconLabel").contains("common_tapestry_icon_s_01.png"));
}

void PlayerNowPlaying::timesAndProgressFollowThePlayback()
{
    PlayerRig rig;
    rig.play();
    FakePlayback::progress(70, 187);
    QCOMPARE(rig.text("currentTimeLabel"), QStringLiteral("01:10 /"));
    QCOMPARE(screentest::child<QProgressBar>(rig.player, "nowplayingProgressBar")->value(), 37);
    QSignalSpy said(rig.player, &VelmoraMainDlg::signalUpdatePlaybackinfo);
    rig.player->updateTotalTime(1, 2, 5);
    QCOMPARE(rig.text("totalTimeLabel"), QStringLiteral("1:02:05"));
    QCOMPARE(said.takeFirst(), QVariantList({0, 1, 2, 5}));
    rig.player->updateCurrentTime(1, 2, 3);
    QCOMPARE(said.takeFirst(), QVariantList({1, 1, 2, 3}));
}

void PlayerNowPlaying::stoppingPutsTheTimesBack()
{
    PlayerRig rig;
    rig.play();
    FakePlayback::progress(70, 187);
    rig.call("initPlaybackInfoByStop");
    QCOMPARE(rig.text("currentTimeLabel"), QStringLiteral("00:00 /"));
    QCOMPARE(screentest::child<QProgressBar>(rig.player, "nowplayingProgressBar")->value(), 0);
}

void PlayerNowPlaying::aRatedTrackIsMarkedAtOnce()
{
    PlayerRig rig;
    FakeTrack liked;
    liked.songRating = 1;
    rig.play({FakeEntry::track(liked), PlayerRig::track("Song 2")});
    const auto *thumb = screentest::childWidget(rig.player, "playlistthumb");
    QVERIFY(!thumb->isHidden());
    QVERIFY(rig.style("playlistthumb").contains("ThumbsUp_Enable.png"));
    finishTrack(rig);
    QVERIFY(thumb->isHidden());
    rig.history()->setCurrentRow(1);
    QVERIFY(!thumb->isHidden());
}

void PlayerNowPlaying::theHistoryKeepsThirtyRowsAndTheirThumbs()
{
    PlayerRig rig;
    rig.play();
    rig.call("thumbUpSong");
    rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK); // the oldest row of thirty
    for (int i = 0; i < 29; ++i)
        finishTrack(rig);
    QCOMPARE(rig.history()->count(), 30);
    rig.call("thumbUpSong");
    rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK); // the newest
    const auto *thumb = screentest::childWidget(rig.player, "playlistthumb");
    rig.history()->setCurrentRow(29);
    QVERIFY(!thumb->isHidden());
    QCOMPARE(rig.text("playlistNumLabel"), QStringLiteral("30/30"));
    finishTrack(rig);
    QCOMPARE(rig.history()->count(), 30);
    QCOMPARE(rig.text("playlistNumLabel"), QStringLiteral("1/30"));
    QVERIFY(thumb->isHidden());
    rig.history()->setCurrentRow(1);
    QVERIFY(!thumb->isHidden());
    rig.history()->setCurrentRow(29);
    QVERIFY(thumb->isHidden());
}

void PlayerNowPlaying::aNewRowDoesNotDisturbAMarquee()
{
    PlayerRig rig;
    const QString name = QStringLiteral("A title that is wider than its row by far");
    rig.play({PlayerRig::track(name.toUtf8()), PlayerRig::track("Song 2")});
    rig.key(screentest::Left);
    QCOMPARE(rig.focused(), QStringList("playListWidget"));
    QCOMPARE(rig.history()->item(0)->text(), QString()); // it runs
    PlayerRig::keepPicture("marquee");
    finishTrack(rig);
    QCOMPARE(rig.history()->item(1)->text(), name);
    QCOMPARE(rig.history()->item(0)->text(), QStringLiteral("Song 2"));
    QCOMPARE(rig.focused(), QStringList("playListWidget"));
}

void PlayerNowPlaying::thePictureIsShownOnTheScreenAndInTheHistory()
{
    PlayerRig rig;
    rig.play();
    QCOMPARE(FakeDownload::urls().last(), QByteArray("http://127.0.0.1:1/cover of Song 1"));
    QVERIFY(FakeDownload::folder().endsWith("/"));
    QVERIFY(shownPicture(rig).isNull());
    QTemporaryDir dir;
    FakeDownload::result(0, writePicture(dir, QSize(500, 400), "JPG"));
    QCOMPARE(shownPicture(rig).size(), QSize(224, 224));
    QVERIFY(shownPicture(rig).pixelColor(100, 100).red() > 240);
    QVERIFY(rig.history()->item(0)->icon().pixmap(32).toImage().pixelColor(16, 16).red() > 240);
    QTRY_COMPARE(screentest::childWidget(rig.player, "playbackControlWidget")->pos(), QPoint(640, 130));
    PlayerRig::keepPicture("picture");
    finishTrack(rig);
    QVERIFY(shownPicture(rig).isNull()); // the placeholder again
}

void PlayerNowPlaying::aBadPictureKeepsThePlaceholder_data()
{
    QTest::addColumn<int>("result");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QSize>("size");
    QTest::newRow("no download") << -1 << QByteArray() << QSize(10, 10);
    QTest::newRow("no picture at all") << 0 << QByteArray("<html>not found</html>") << QSize();
    QTest::newRow("a drawing that names files")
        << 0 << QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>") << QSize();
    QTest::newRow("cut off") << 0 << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) << QSize();
    QTest::newRow("far too large") << 0 << QByteArray() << QSize(5000, 10);
    QTest::newRow("missing") << 0 << QByteArray() << QSize();
}

void PlayerNowPlaying::aBadPictureKeepsThePlaceholder()
{
    QFETCH(int, result);
    QFETCH(QByteArray, content);
    QFETCH(QSize, size);
    PlayerRig rig;
    rig.play();
    QTemporaryDir dir;
    const QString path = dir.filePath("cover");
    if (size.isValid()) {
        writePicture(dir, size);
    } else if (!content.isEmpty()) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    FakeDownload::result(result, path);
    QVERIFY(shownPicture(rig).isNull());
    QVERIFY(rig.style("albumPicLabel").contains("NoThumbnail.png"));
}

void PlayerNowPlaying::aLatePictureOfATrackBeforeIsIgnored()
{
    PlayerRig rig;
    FakeTrack without;
    without.albumArtUrl = QByteArray();
    rig.play({PlayerRig::track("Song 1"), FakeEntry::track(without)});
    finishTrack(rig);
    QTemporaryDir dir;
    FakeDownload::result(0, writePicture(dir, QSize(50, 50)));
    QVERIFY(shownPicture(rig).isNull());
}

void PlayerNowPlaying::theFocusedPlayButtonStaysFocusedOverATrackChange()
{
    PlayerRig rig;
    rig.play();
    rig.key(screentest::Right);
    rig.key(screentest::Right);
    QCOMPARE(rig.focused(), QStringList("playBtn"));
    FakePlayback::finished();
    rig.call("checkwaterline");
    emit netcommon::Playback::getInstance()->signalPlayResult(0); // before it is said that the track plays
    QCOMPARE(rig.focused(), QStringList("playBtn"));
    finishTrack(rig);
    QCOMPARE(rig.focused(), QStringList("playBtn"));
    QVERIFY(rig.button("playBtn")->hasFocus());
    rig.key(screentest::Select);
    rig.run();
    QVERIFY(rig.style("playBtn").contains("Play.png")); // paused, and the text stays white
    QVERIFY(rig.style("playBtn").contains("color: rgb(255, 255, 255)"));
    QCOMPARE(rig.focused(), QStringList("playBtn"));
}

void PlayerNowPlaying::thePanelSlidesInWhenFirstShown()
{
    PlayerRig rig;
    QWidget *panel = screentest::childWidget(rig.player, "playbackControlWidget");
    QVERIFY(panel->x() > 640);
    QTRY_COMPARE(panel->pos(), QPoint(640, 130));
    rig.player->hide();
    rig.player->show();
    QCOMPARE(panel->pos(), QPoint(640, 130));
}

QTEST_MAIN(PlayerNowPlaying)
#include "player_nowplaying_test.moc"
