// Playlists and playback on the player screen: the walk through the entries, ads, addresses that cannot be played, the
// listener's commands, skips and their limit, the water line, and every message of these at its moment.
#include "screens/playerrig.h"

#include "netcommon/playback.h"
#include "service/velmoranextlimit.h"
#include "station/menudlg.h"

#include <QProgressBar>

namespace {

const QString skipLimit = QStringLiteral("Unfortunately,our music licenses force us to limit the number of tracks you "
                                         "may skip each hour.");
const QString adsOnly = QStringLiteral("       Invalid operation for audio ads");

void tick(const PlayerRig &rig)
{
    rig.call("checkwaterline");
}

void useUpSkips(const QString &station)
{
    for (int i = 0; i < 6; ++i)
        VelmoraNextLimit::getInstance()->addIntoQueue(station);
}

// The track that plays has been heard to its end.
void finishTrack(PlayerRig &rig)
{
    FakePlayback::finished();
    tick(rig);
    rig.run();
}

} // namespace

class PlayerPlayback : public QObject {
    Q_OBJECT
private slots:
    void aChosenStationPlaysItsFirstTrack();
    void tracksFollowEachOtherAndTheNextBatchIsFetched();
    void selectOnThePlayingStationDoesNothing();
    void selectOnAnotherStationStartsIt();
    void adsAreFetchedPlayedAndShown();
    void anAdWhoseMetadataFailsIsSkipped_data();
    void anAdWhoseMetadataFailsIsSkipped();
    void anAdThatIsNotAskedForLeavesTheScreenUsable();
    void anAdsAddressThatComesAfterAStationChangeIsDropped();
    void aResultBeforeTheAdsMetadataIsNotShown();
    void addressesThatCannotBePlayedAreSkipped();
    void aTrackThatCannotBePlayedIsSkipped();
    void aBrokenEntryLeavesTheScreenUsable();
    void aSystemErrorEndsTheApplication();
    void aPlaylistThatIsNotSentIsSaid();
    void aPlaylistThatFailsIsSaid_data();
    void aPlaylistThatFailsIsSaid();
    void anInactiveAccountIsSignedOut();
    void anInactiveAccountIsSignedOutWhileAnAdStarts();
    void anEmptyReplyIsHarmless();
    void pauseAndPlayKeysReachThePlayback();
    void stoppingPausesAndPlayingOnStartsTheWaterLine();
    void aSkipIsCountedOnce();
    void theSeventhSkipIsRefused();
    void aSkipWithoutAStationIsFree();
    void aSkipOfAnAdIsRefusedAndNotCounted();
    void skippingWhileATrackStartsDoesNothing();
    void aSkipThatWaitsForAReplyIsOneSkip();
    void aNaturalEndIsNoSkip();
    void theStreamPausesUnderTheLowLineAndResumesAboveTheHighOne();
    void fiveMinutesUnderTheLineGiveUp();
    void underAFatalMessageTheGivingUpIsSilent();
    void rapidKeysDoNoHarm();
    void repliesUnderAFatalMessageAreGivenBack();
};

void PlayerPlayback::aChosenStationPlaysItsFirstTrack()
{
    PlayerRig rig("b");
    rig.play();
    QCOMPARE(FakePlayback::commands().mid(0, 3), QStringList({"type 3", "type 1", "url http://127.0.0.1:1/Song 1"}));
    QVERIFY(!rig.isAnimationShown());
    QCOMPARE(rig.text("songLabel"), QStringLiteral("Song 1"));
    QCOMPARE(rig.text("artistLabel"), QStringLiteral("Artist of Song 1"));
    QCOMPARE(rig.text("albumLabel"), QStringLiteral("Album of Song 1"));
    QCOMPARE(rig.text("stationNameLabel"), QStringLiteral("Station b"));
    QCOMPARE(rig.text("totalTimeLabel"), QStringLiteral("03:00"));
    QCOMPARE(rig.history()->item(0)->text(), QStringLiteral("Song 1"));
    QCOMPARE(rig.text("playlistNumLabel"), QStringLiteral("1/1"));
    QVERIFY(rig.style("playBtn").contains("Pause.png"));
    QVERIFY(rig.style("playIconLabel").contains("Pause.png"));
}

void PlayerPlayback::tracksFollowEachOtherAndTheNextBatchIsFetched()
{
    PlayerRig rig("b");
    rig.play({PlayerRig::track("Song 1"), PlayerRig::track("Song 2")});
    finishTrack(rig);
    QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
    FakePlayback::playOk(10);
    finishTrack(rig);
    QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2);
    QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("b"));
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, FakeReply::playlist({PlayerRig::track("Song 3")}));
    FakePlayback::playOk(10);
    QCOMPARE(rig.text("songLabel"), QStringLiteral("Song 3"));
    QCOMPARE(rig.history()->count(), 3);
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
}

void PlayerPlayback::selectOnThePlayingStationDoesNothing()
{
    PlayerRig rig("b");
    rig.play();
    FakePlayback::clearCommands();
    rig.key(screentest::Select);
    QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1);
    QVERIFY(FakePlayback::commands().isEmpty());
}

void PlayerPlayback::selectOnAnotherStationStartsIt()
{
    PlayerRig rig("b");
    rig.play();
    rig.key(screentest::Down);
    rig.key(screentest::Select);
    QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("c"));
    QCOMPARE(rig.lastStation(), QStringLiteral("c"));
    QVERIFY(rig.isAnimationShown());
    QVERIFY(rig.focused().isEmpty()); // the animation has the keys
    PlayerRig::keepPicture("buffering");
    rig.key(screentest::Down);
    QCOMPARE(rig.stationsList()->currentRow(), 3);
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(1));
    FakePlayback::playOk(10);
    QCOMPARE(rig.text("stationNameLabel"), QStringLiteral("Station c"));
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
}

void PlayerPlayback::adsAreFetchedPlayedAndShown()
{
    PlayerRig rig;
    rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1")});
    finishTrack(rig);
    QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_AD_METADATA), QByteArray("ad-1"));
    FakeAd ad;
    ad.title = "Caf\xc3\xa9";
    rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OK, FakeReply::adMetadata(ad));
    QCOMPARE(FakePlayback::lastUrl(), ad.audioUrl);
    FakePlayback::playOk(15);
    QCOMPARE(rig.history()->item(0)->text(), QStringLiteral("Caf\u00e9"));
    QCOMPARE(rig.text("songLabel"), QString::fromLatin1("Caf\xc3\xa9")); // byte by byte on the song line
    QCOMPARE(rig.text("artistLabel"), QStringLiteral("Announcer"));
    QCOMPARE(rig.text("albumLabel"), QString());
    QCOMPARE(FakeDownload::urls().last(), ad.imageUrl);
    finishTrack(rig);
    QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2); // the ad was the last entry
}

void PlayerPlayback::anAdWhoseMetadataFailsIsSkipped_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("url");
    QTest::addColumn<QString>("text");
    QTest::newRow("no address") << 0 << QByteArray() << QString();
    QTest::newRow("the marker for an address") << 0 << QByteArray(velmora_ws_invalid_url) << QString();
    QTest::newRow("an error without words") << 5000 << QByteArray() << "Get track data failed.Please try later!";
    QTest::newRow("an error with words") << 5102 << QByteArray() << "Station does not exist.";
}

void PlayerPlayback::anAdWhoseMetadataFailsIsSkipped()
{
    QFETCH(int, code);
    QFETCH(QByteArray, url);
    QFETCH(QString, text);
    PlayerRig rig;
    rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1"), PlayerRig::track("Song 2")});
    finishTrack(rig);
    FakeAd ad;
    ad.audioUrl = url;
    BoxAnswer answers({BoxAnswer::Ok});
    rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_EXT_ERRCODE_T(code), FakeReply::adMetadata(ad));
    QCOMPARE(answers.texts(), text.isEmpty() ? QStringList() : QStringList(text));
    QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
    QVERIFY(rig.isAnimationShown());
}

void PlayerPlayback::anAdThatIsNotAskedForLeavesTheScreenUsable()
{
    PlayerRig rig("b");
    rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1"), PlayerRig::track("Song 2")});
    rig.service.ws.failNext(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OUT_OF_MEMORY);
    BoxAnswer answers({BoxAnswer::Ok});
    finishTrack(rig);
    QCOMPARE(answers.texts(), QStringList("Get Ad metadata failed!"));
    QVERIFY(!rig.isAnimationShown());
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
    rig.key(screentest::Up);
    rig.key(screentest::Select);
    QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("a"));
}

void PlayerPlayback::anAdsAddressThatComesAfterAStationChangeIsDropped()
{
    PlayerRig rig;
    rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1")});
    finishTrack(rig);
    rig.call("tapestryStation");
    FakePlayback::clearCommands();
    rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OK, FakeReply::adMetadata());
    QVERIFY(FakePlayback::commands().isEmpty());
    BoxAnswer answers({BoxAnswer::Ok});
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_INTERNAL);
    rig.call("signout"); // nothing is being started any more
    QCOMPARE(rig.screens.made(), QStringList("selectUser 2"));
}

void PlayerPlayback::aResultBeforeTheAdsMetadataIsNotShown()
{
    PlayerRig rig;
    rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1")});
    finishTrack(rig);
    FakePlayback::playOk(10); // nothing was started: some late result
    QCOMPARE(rig.history()->count(), 1);
    QVERIFY(rig.log.contains("getmetadata not done!"));
    rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OK, FakeReply::adMetadata());
    FakePlayback::playOk(10);
    QCOMPARE(rig.history()->count(), 2);
}

void PlayerPlayback::addressesThatCannotBePlayedAreSkipped()
{
    PlayerRig rig("b");
    rig.fill();
    FakeTrack without, marked;
    without.audioUrl = QByteArray();
    marked.audioUrl = QByteArray(velmora_ws_invalid_url) + "/more";
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK,
               FakeReply::playlist({FakeEntry::track(without), FakeEntry::track(marked), FakeEntry::track(without)}));
    QVERIFY(FakePlayback::urls().isEmpty());
    QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2);
    BoxAnswer answers({BoxAnswer::Ok});
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_INTERNAL);
    QVERIFY(!rig.isAnimationShown());
    rig.call("signout"); // nothing is being started: the listener may leave
    QCOMPARE(rig.screens.made(), QStringList("selectUser 2"));
}

void PlayerPlayback::aTrackThatCannotBePlayedIsSkipped()
{
    PlayerRig rig;
    rig.fill();
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(2));
    FakePlayback::playRefused(-1); // without the address taken: of the track before
    QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 1"));
    FakePlayback::playFailed(-1);
    QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
    QCOMPARE(rig.history()->count(), 0);
    FakePlayback::playOk(10);
    QCOMPARE(rig.history()->count(), 1);
}

void PlayerPlayback::aBrokenEntryLeavesTheScreenUsable()
{
    PlayerRig rig("b");
    rig.play({PlayerRig::track("Song 1"), FakeEntry::withoutMap(true)});
    finishTrack(rig);
    QVERIFY(!rig.isAnimationShown());
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
    rig.call("signout");
    QCOMPARE(rig.screens.made(), QStringList("selectUser 2"));
}

void PlayerPlayback::aSystemErrorEndsTheApplication()
{
    PlayerRig rig;
    rig.fill();
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(1));
    BoxAnswer answers({BoxAnswer::Ok});
    FakePlayback::playFailed(-2);
    QCOMPARE(answers.texts(), QStringList("Play the track failed,System occurs error!"));
    QVERIFY(answers.icon().contains("MsgBox_Error"));
    QCOMPARE(FakeIpc::exitRequests(), QList<bool>{false});
}

void PlayerPlayback::aPlaylistThatIsNotSentIsSaid()
{
    PlayerRig rig("b");
    rig.service.ws.failNext(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OUT_OF_MEMORY);
    BoxAnswer answers({BoxAnswer::Ok});
    rig.fill();
    QCOMPARE(answers.texts(), QStringList("Get playlist failed,you could try again!"));
    QVERIFY(answers.icon().contains("MsgBox_Warning"));
    QVERIFY(!rig.isAnimationShown());
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
}

void PlayerPlayback::aPlaylistThatFailsIsSaid_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("leaves");
    QTest::newRow("without words") << 5000 << "Get play list failed ,please try later!" << false;
    QTest::newRow("station gone") << 5102 << "Station does not exist." << false;
    QTest::newRow("network") << -504
                             << "A network error has occurred.  Please check your network connection and try again."
                             << true;
}

void PlayerPlayback::aPlaylistThatFailsIsSaid()
{
    QFETCH(int, code);
    QFETCH(QString, text);
    QFETCH(bool, leaves);
    PlayerRig rig("b");
    rig.fill();
    BoxAnswer answers({BoxAnswer::Ok});
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_EXT_ERRCODE_T(code));
    QCOMPARE(answers.texts(), QStringList(text));
    QCOMPARE(FakeIpc::exitRequests().size(), leaves ? 1 : 0);
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
}

void PlayerPlayback::anInactiveAccountIsSignedOut()
{
    PlayerRig rig;
    rig.fill();
    QSignalSpy fatal(rig.player, &VelmoraParentWidget::signalFatalErr);
    BoxAnswer answers({BoxAnswer::Ok});
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_ACCOUNT_INACTIVE);
    QVERIFY(answers.texts().value(0).startsWith("Sorry,this account is no longer active."));
    QCOMPARE(fatal.size(), 1);
    QCOMPARE(rig.screens.made(), QStringList("selectUser 2"));
    QVERIFY(!rig.player);
}

void PlayerPlayback::anInactiveAccountIsSignedOutWhileAnAdStarts()
{
    PlayerRig rig;
    rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1")});
    finishTrack(rig);
    BoxAnswer answers({BoxAnswer::Ok});
    rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_ACCOUNT_INACTIVE);
    QCOMPARE(answers.shown(), 1);
    QCOMPARE(rig.screens.made(), QStringList("selectUser 2"));
}

void PlayerPlayback::anEmptyReplyIsHarmless()
{
    PlayerRig rig("b");
    rig.fill();
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK);
    QVERIFY(!rig.isAnimationShown());
    for (const char *slot : {"gotoPlaySong", "playSong", "pauseSong", "stopSong", "nextSong", "checkwaterline"})
        rig.call(slot);
    QVERIFY(FakePlayback::urls().isEmpty());
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
}

void PlayerPlayback::pauseAndPlayKeysReachThePlayback()
{
    PlayerRig rig;
    rig.play();
    FakePlayback::clearCommands();
    rig.key(Qt::Key_Pause);
    rig.run();
    QVERIFY(rig.style("playBtn").contains("Play.png"));
    rig.key(Qt::Key_Pause);
    rig.run();
    QVERIFY(rig.style("playBtn").contains("Pause.png"));
    rig.key(Qt::Key_MediaStop); // pauses
    rig.key(Qt::Key_MediaPlay);
    QCOMPARE(FakePlayback::types(), QList<int>({2, 0, 2, 0}));
    rig.key(Qt::Key_MediaPlay); // plays already
    QCOMPARE(FakePlayback::types().size(), 4);
}

void PlayerPlayback::stoppingPausesAndPlayingOnStartsTheWaterLine()
{
    PlayerRig rig;
    rig.play();
    rig.player->stopCurrentSong(); // as the idle check does
    QCOMPARE(FakePlayback::types().last(), 2);
    rig.player->playCurrentSong();
    QCOMPARE(FakePlayback::types().last(), 0);
    FakePlayback::finished();
    QTRY_COMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2")); // the timer itself looks
}

void PlayerPlayback::aSkipIsCountedOnce()
{
    PlayerRig rig("b");
    rig.play();
    rig.key(Qt::Key_MediaNext);
    QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
    QCOMPARE(rig.skipsLeft("b"), 5);
    QCOMPARE(rig.skipsLeft("c"), 6);
}

void PlayerPlayback::theSeventhSkipIsRefused()
{
    PlayerRig rig("b");
    rig.fill();
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(9));
    BoxAnswer answers({BoxAnswer::Ok});
    for (int i = 0; i < 7; ++i) {
        FakePlayback::playOk(100);
        QCOMPARE(rig.player->nextSong(), i < 6 ? 0 : 2);
    }
    QCOMPARE(answers.texts(), QStringList(skipLimit));
    QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 7"));
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
}

void PlayerPlayback::aSkipWithoutAStationIsFree()
{
    PlayerRig rig("b");
    rig.play();
    useUpSkips("b");
    useUpSkips(QString());
    rig.service.ws.replyNext(VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_OK, FakeReply::stationList({}));
    HANDLE_T handle = 0;
    velmora_ws_getStationList(
        0, "", "", [](HANDLE_T, VLM_WS_EXT_ERRCODE_T, VOID *) {}, nullptr, &handle);
    rig.service.ws.flush();
    rig.player->fillFromStationList(handle); // clears the token
    QCOMPARE(rig.player->nextSong(), 0);
    QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
}

void PlayerPlayback::aSkipOfAnAdIsRefusedAndNotCounted()
{
    PlayerRig rig("b");
    rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1")});
    finishTrack(rig);
    rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OK, FakeReply::adMetadata());
    FakePlayback::playOk(15);
    BoxAnswer answers({BoxAnswer::Ok});
    QCOMPARE(rig.player->nextSong(), 1);
    QCOMPARE(answers.texts(), QStringList(adsOnly));
    QCOMPARE(rig.skipsLeft("b"), 6);
}

void PlayerPlayback::skippingWhileATrackStartsDoesNothing()
{
    PlayerRig rig("b");
    rig.fill();
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(2));
    QCOMPARE(rig.player->nextSong(), 1);
    rig.key(Qt::Key_MediaNext);
    QCOMPARE(FakePlayback::urls().size(), 1);
    rig.call("signout");
    QVERIFY(rig.screens.made().isEmpty());
    QCOMPARE(rig.skipsLeft("b"), 6);
}

void PlayerPlayback::aSkipThatWaitsForAReplyIsOneSkip()
{
    PlayerRig rig("b");
    rig.play();
    rig.call("thumbUpSong");
    rig.player->controlAnimation(true); // as when the network comes back
    for (int i = 0; i < 10; ++i)
        QCOMPARE(rig.player->nextSong(), 0);
    QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 1"));
    rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK);
    QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
    QCOMPARE(rig.skipsLeft("b"), 5);
}

void PlayerPlayback::aNaturalEndIsNoSkip()
{
    PlayerRig rig("b");
    rig.play();
    finishTrack(rig);
    QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
    QCOMPARE(rig.skipsLeft("b"), 6);
}

void PlayerPlayback::theStreamPausesUnderTheLowLineAndResumesAboveTheHighOne()
{
    PlayerRig rig;
    rig.play();
    FakePlayback::clearCommands();
    FakePlayback::setBuffer(0, 2999);
    tick(rig);
    rig.run();
    QVERIFY(rig.style("playBtn").contains("Play.png"));
    FakePlayback::setBuffer(0, 6999);
    tick(rig);
    QCOMPARE(FakePlayback::types(), QList<int>{2});
    FakePlayback::setBuffer(0, 7001);
    tick(rig);
    rig.run();
    QCOMPARE(FakePlayback::types(), QList<int>({2, 0}));
    QVERIFY(rig.style("playBtn").contains("Pause.png"));
}

void PlayerPlayback::fiveMinutesUnderTheLineGiveUp()
{
    PlayerRig rig;
    rig.play();
    FakePlayback::setBuffer(0, 8000);
    tick(rig); // the count is the process's: it starts at 0 here
    FakePlayback::setBuffer(0, 2999);
    for (int i = 0; i < 599; ++i)
        tick(rig);
    QVERIFY(FakeIpc::exitRequests().isEmpty());
    BoxAnswer answers({BoxAnswer::Ok});
    tick(rig);
    QCOMPARE(answers.texts(), QStringList("A network error has occurred.  Please check your network connection and "
                                          "try again."));
    QCOMPARE(FakeIpc::exitRequests().size(), 1);
}

void PlayerPlayback::underAFatalMessageTheGivingUpIsSilent()
{
    PlayerRig rig;
    rig.play();
    FakePlayback::setBuffer(0, 8000);
    tick(rig);
    FakePlayback::setBuffer(0, 0);
    rig.player->m_isErrorMsg = true;
    BoxAnswer answers({});
    for (int i = 0; i < 600; ++i)
        tick(rig);
    QCOMPARE(answers.shown(), 0);
    QVERIFY(FakeIpc::exitRequests().isEmpty());
}

void PlayerPlayback::rapidKeysDoNoHarm()
{
    PlayerRig rig("b");
    rig.service.ws.autoReply(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(3));
    for (const int cmd : {VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_MSGID_ADD_SONG_BOOKMARK, VLM_WS_MSGID_SLEEP_SONG,
                          VLM_WS_MSGID_ADD_ARTIST_BOOKMARK})
        rig.service.ws.autoReply(cmd, VLM_WS_ERR_OK);
    FakePlayback::setAutoPlay(100);
    rig.fill();
    FakePlayback::setBuffer(0, 50000);
    BoxAnswer answers({});
    // Sign-out and exit, which end the screen, lie eight and nine rows down the menu: out of reach here.
    const QList<int> keys = {Qt::Key_MediaNext, screentest::Down,  screentest::Select, Qt::Key_Pause,
                             screentest::Back,  screentest::Right, screentest::Select, screentest::Green,
                             screentest::Down,  screentest::Red,   screentest::Left,   Qt::Key_MediaPlay};
    const QList<const char *> slotsOfTheService = {"gotoPlaySong", "tapestryStation", "thumbUpSong", "nextSong",
                                                   "menuSong"};
    quint32 seed = 1;
    for (int i = 0; i < 600; ++i) {
        seed = seed * 1664525u + 1013904223u;
        const int dice = int(seed >> 16);
        QWidget *top = QApplication::activeWindow() ? QApplication::activeWindow() : rig.player.data();
        if (dice % 10 == 0)
            rig.call(slotsOfTheService.at(dice / 10 % slotsOfTheService.size()));
        else
            screentest::key(top, keys.at(dice % keys.size()));
        if (dice % 3 == 0)
            rig.run();
        QVERIFY(rig.player);
        if (!rig.player->isVisible()) { // the menu led to another screen: Back leads home
            screentest::settle();
            emit rig.screens.last()->signalReturnBtn();
        } else if (auto *menu = rig.dialog<MenuDlg>(); menu && dice % 2) {
            menu->destroyedWindow();
        }
    }
    if (auto *menu = rig.dialog<MenuDlg>())
        menu->destroyedWindow();
    rig.run();
    QTRY_VERIFY(!rig.isAnimationShown());
    QVERIFY(rig.player->isVisible());
    QCOMPARE(rig.focused().size(), 1);
    QVERIFY(rig.history()->count() > 1 && rig.history()->count() <= 30);
    rig.history()->clearScroll();
    QCOMPARE(rig.history()->item(0)->text(), rig.text("songLabel"));
    QCOMPARE(netcommon::Playback::getInstance()->getPbcState() == PLAYBACK_STATE_STOPPED, false);
}

void PlayerPlayback::repliesUnderAFatalMessageAreGivenBack()
{
    PlayerRig rig("b");
    rig.play();
    rig.call("getPlayListNormal");
    rig.player->m_isErrorMsg = true;
    BoxAnswer answers({});
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_INTERNAL);
    QCOMPARE(answers.shown(), 0);
    QVERIFY(rig.log.contains("Velmoraparent m_isErrorMsg is true."));
    QVERIFY(!rig.isAnimationShown());
}

QTEST_MAIN(PlayerPlayback)
#include "player_playback_test.moc"
