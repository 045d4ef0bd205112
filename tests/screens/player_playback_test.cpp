// Playlists and playback on the player screen: the walk through the entries, ads, addresses that cannot be played, the
// listener's commands, skips and their limit, the water line, and every message of these at its moment.
#include "screens/playerrig.h"

#include "netcommon/playback.h"
#include "station/menudlg.h"

class PlayerPlayback : public QObject {
    Q_OBJECT
private slots:
    void aChosenStationPlaysItsFirstTrack()
    {
        PlayerRig rig("b");
        rig.play();
        QCOMPARE(FakePlayback::commands().mid(0, 3),
                 QStringList({"type 3", "type 1", "url http://127.0.0.1:1/Song 1"}));
        QVERIFY(!rig.isAnimationShown());
        const std::pair<const char *, const char *> texts[] = {
            {"songLabel", "Song 1"},           {"artistLabel", "Artist of Song 1"}, {"albumLabel", "Album of Song 1"},
            {"stationNameLabel", "Station b"}, {"totalTimeLabel", "03:00"},         {"playlistNumLabel", "1/1"}};
        for (const auto &[label, text] : texts)
            QCOMPARE(rig.text(label), QString(text));
        QCOMPARE(rig.history()->item(0)->text(), QStringLiteral("Song 1"));
        QVERIFY(rig.style("playBtn").contains("Pause.png") && rig.style("playIconLabel").contains("Pause.png"));
        FakePlayback::clearCommands();
        rig.key(screentest::Select); // on the station that plays
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1);
        QVERIFY(FakePlayback::commands().isEmpty());
    }

    void tracksFollowEachOtherAndTheNextBatchIsFetched()
    {
        PlayerRig rig("b");
        rig.play({PlayerRig::track("Song 1"), PlayerRig::track("Song 2")});
        rig.finishTrack();
        QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
        FakePlayback::playOk(10);
        rig.finishTrack();
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2);
        QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("b"));
        rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, FakeReply::playlist({PlayerRig::track("Song 3")}));
        FakePlayback::playOk(10);
        QCOMPARE(rig.text("songLabel"), QStringLiteral("Song 3"));
        QCOMPARE(rig.history()->count(), 3);
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        QCOMPARE(rig.skipsLeft("b"), 6); // a natural end is no skip
    }

    void anAdWhoseMetadataFailsIsSkipped()
    {
        struct Case {
            int code;
            QByteArray url;
            QStringList texts;
        };
        const Case cases[] = {{0, {}, {}},
                              {0, velmora_ws_invalid_url, {}},
                              {5000, {}, {"Get track data failed.Please try later!"}},
                              {5102, {}, {"Station does not exist."}}};
        for (const Case &c : cases) {
            PlayerRig rig;
            rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1"), PlayerRig::track("Song 2")});
            rig.finishTrack();
            FakeAd ad;
            ad.audioUrl = c.url;
            BoxAnswer answers({BoxAnswer::Ok});
            rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_EXT_ERRCODE_T(c.code), FakeReply::adMetadata(ad));
            QCOMPARE(answers.texts(), c.texts);
            QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
            QVERIFY(rig.isAnimationShown());
        }
    }

    void aTrackThatCannotBePlayedIsSkippedButASystemErrorIsTheEnd()
    {
        PlayerRig rig;
        rig.fill();
        rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(2));
        FakePlayback::playRefused(-1); // without the address taken: of the track before
        QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 1"));
        FakePlayback::playFailed(-1);
        QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
        QCOMPARE(rig.history()->count(), 0);
        BoxAnswer answers({BoxAnswer::Ok});
        FakePlayback::playFailed(-2);
        QCOMPARE(answers.texts(), QStringList("Play the track failed,System occurs error!"));
        QVERIFY(answers.icon().contains("MsgBox_Error"));
        QCOMPARE(FakeIpc::exitRequests(), QList<bool>{false});
    }

    void aPlaylistThatFailsIsSaid()
    {
        struct Case {
            bool isSent;
            int code;
            const char *text;
            int exits;
        };
        const Case cases[] = {
            {false, VLM_WS_ERR_OUT_OF_MEMORY, "Get playlist failed,you could try again!", 0},
            {true, 5000, "Get play list failed ,please try later!", 0},
            {true, 5102, "Station does not exist.", 0},
            {true, -504, "A network error has occurred.  Please check your network connection and try again.", 1}};
        for (const Case &c : cases) {
            PlayerRig rig("b");
            BoxAnswer answers({BoxAnswer::Ok});
            if (!c.isSent)
                rig.service.ws.failNext(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_EXT_ERRCODE_T(c.code));
            rig.fill();
            if (c.isSent)
                rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_EXT_ERRCODE_T(c.code));
            QCOMPARE(answers.texts(), QStringList(c.text));
            QVERIFY(!rig.isAnimationShown());
            QCOMPARE(FakeIpc::exitRequests().size(), c.exits);
            QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        }
    }

    void selectOnAnotherStationStartsIt()
    {
        PlayerRig rig("b");
        rig.play();
        rig.key(screentest::Down);
        rig.key(screentest::Select);
        QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("c"));
        QCOMPARE(rig.lastStation(), QStringLiteral("c"));
        QVERIFY(rig.isAnimationShown());
        QVERIFY(rig.focused().isEmpty()); // the animation has the keys
        rig.key(screentest::Down);
        QCOMPARE(rig.stationsList()->currentRow(), 3);
        rig.startTracks(1);
        QCOMPARE(rig.text("stationNameLabel"), QStringLiteral("Station c"));
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
    }

    void adsAreFetchedPlayedAndShown()
    {
        PlayerRig rig;
        rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1")});
        rig.finishTrack();
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
        rig.finishTrack();
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2); // the ad was the last entry
    }

    void anAdThatIsNotAskedForLeavesTheScreenUsable()
    {
        PlayerRig rig("b");
        rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1"), PlayerRig::track("Song 2")});
        rig.service.ws.failNext(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OUT_OF_MEMORY);
        BoxAnswer answers({BoxAnswer::Ok});
        rig.finishTrack();
        QCOMPARE(answers.texts(), QStringList("Get Ad metadata failed!"));
        QVERIFY(!rig.isAnimationShown());
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        rig.key(screentest::Up);
        rig.key(screentest::Select);
        QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("a"));
    }

    void anAdsAddressThatComesAfterAStationChangeIsDropped()
    {
        PlayerRig rig;
        rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1")});
        rig.finishTrack();
        rig.call("tapestryStation");
        FakePlayback::clearCommands();
        rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OK, FakeReply::adMetadata());
        QVERIFY(FakePlayback::commands().isEmpty());
        BoxAnswer answers({BoxAnswer::Ok});
        rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_INTERNAL);
        rig.call("signout"); // nothing is being started any more
        QCOMPARE(rig.screens.made(), QStringList("selectUser 2"));
    }

    void aResultBeforeTheAdsMetadataIsNotShown()
    {
        PlayerRig rig;
        rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1"), FakeEntry::ad("ad-2")});
        rig.finishTrack();
        BoxAnswer answers({BoxAnswer::Ok});
        rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_INTERNAL); // to the next one
        FakePlayback::playOk(10); // nothing was started: some late result
        QCOMPARE(rig.history()->count(), 1);
        QVERIFY(rig.log.contains("getmetadata not done!"));
        rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OK, FakeReply::adMetadata());
        FakePlayback::playOk(10);
        QCOMPARE(rig.history()->count(), 2);
    }

    void addressesThatCannotBePlayedAreSkipped()
    {
        PlayerRig rig("b");
        rig.fill();
        FakeTrack without, marked;
        without.audioUrl = QByteArray();
        marked.audioUrl = QByteArray(velmora_ws_invalid_url) + "/more";
        rig.answer(
            VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK,
            FakeReply::playlist({FakeEntry::track(without), FakeEntry::track(marked), FakeEntry::track(without)}));
        QVERIFY(FakePlayback::urls().isEmpty());
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2);
        BoxAnswer answers({BoxAnswer::Ok});
        rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_INTERNAL);
        QVERIFY(!rig.isAnimationShown());
        rig.call("signout"); // nothing is being started: the listener may leave
        QCOMPARE(rig.screens.made(), QStringList("selectUser 2"));
    }

    void aBrokenEntryLeavesTheScreenUsable()
    {
        PlayerRig rig("b");
        rig.play({PlayerRig::track("Song 1"), FakeEntry::withoutMap(true)});
        rig.finishTrack();
        QVERIFY(!rig.isAnimationShown());
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        rig.call("signout");
        QCOMPARE(rig.screens.made(), QStringList("selectUser 2"));
    }

    void anInactiveAccountIsSignedOut()
    {
        for (const int cmd : {VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_MSGID_GET_AD_METADATA}) {
            PlayerRig rig;
            rig.fill();
            if (cmd == VLM_WS_MSGID_GET_AD_METADATA)
                rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, FakeReply::playlist({FakeEntry::ad("ad-1")}));
            QSignalSpy fatal(rig.player, &VelmoraParentWidget::signalFatalErr);
            BoxAnswer answers({BoxAnswer::Ok});
            rig.answer(cmd, VLM_WS_ERR_ACCOUNT_INACTIVE);
            QVERIFY(answers.texts().value(0).startsWith("Sorry,this account is no longer active."));
            QCOMPARE(answers.shown(), 1);
            QCOMPARE(fatal.size(), 1);
            QCOMPARE(rig.screens.made(), QStringList("selectUser 2"));
            QVERIFY(!rig.player);
        }
    }

    void anEmptyReplyIsHarmless()
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

    void pauseAndPlayKeysReachThePlayback()
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

    void stoppingPausesAndPlayingOnStartsTheWaterLine()
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

    void theSeventhSkipIsRefused()
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
        QCOMPARE(rig.skipsLeft("c"), 6); // each station has its own
    }

    void fiveMinutesUnderTheLineGiveUpUnlessAFatalMessageShows()
    {
        for (const bool isFatal : {false, true}) {
            PlayerRig rig;
            rig.play();
            FakePlayback::setBuffer(0, 8000);
            rig.tick(); // the count is the process's: it starts at 0 here
            FakePlayback::setBuffer(0, 2999);
            rig.player->m_isErrorMsg = isFatal;
            for (int i = 0; i < 599; ++i)
                rig.tick();
            QVERIFY(FakeIpc::exitRequests().isEmpty());
            BoxAnswer answers({BoxAnswer::Ok});
            FakePlayback::clearCommands();
            FakePlayback::setState(PLAYBACK_STATE_PLAYING); // the listener has just resumed
            rig.tick();
            QCOMPARE(FakePlayback::commands(), QStringList("type 2"));
            QCOMPARE(answers.texts().value(0).startsWith("A network error has occurred."), !isFatal);
            QCOMPARE(FakeIpc::exitRequests().size(), isFatal ? 0 : 1);
        }
    }

    void aSkipOfAnAdIsRefusedAndNotCounted()
    {
        PlayerRig rig("b");
        rig.play({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1")});
        rig.finishTrack();
        rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OK, FakeReply::adMetadata());
        FakePlayback::playOk(15);
        BoxAnswer answers({BoxAnswer::Ok});
        QCOMPARE(rig.player->nextSong(), 1);
        QCOMPARE(answers.texts(), QStringList(adsOnly));
        QCOMPARE(rig.skipsLeft("b"), 6);
    }

    void skippingWhileATrackStartsDoesNothing()
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

    void aSkipThatWaitsForAReplyIsOneSkip()
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

    void theStreamPausesUnderTheLowLineAndResumesAboveTheHighOne()
    {
        PlayerRig rig;
        rig.play();
        FakePlayback::clearCommands();
        FakePlayback::setBuffer(0, 2999);
        rig.tick();
        rig.run();
        QVERIFY(rig.style("playBtn").contains("Play.png"));
        FakePlayback::setBuffer(0, 6999);
        rig.tick();
        QCOMPARE(FakePlayback::types(), QList<int>{2});
        FakePlayback::setBuffer(0, 7001);
        rig.tick();
        rig.run();
        QCOMPARE(FakePlayback::types(), QList<int>({2, 0}));
        QVERIFY(rig.style("playBtn").contains("Pause.png"));
    }

    void rapidKeysDoNoHarm()
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

    void repliesUnderAFatalMessageAreGivenBack()
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
};

QTEST_MAIN(PlayerPlayback)
#include "player_playback_test.moc"
