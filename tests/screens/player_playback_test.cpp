// Playlists and playback on the player screen: the walk through the entries, ads, addresses that cannot be played, the
// listener's commands, skips and their limit, the water line, and every message of these at its moment.
#include "screens/playerrig.h"

#include "netcommon/playback.h"

#include <functional>

namespace {

// Runs `act` once, as soon as a box shows that `answers` has noted.
void whenBoxShows(PlayerRig &rig, const BoxAnswer &answers, const std::function<void()> &act)
{
    auto *timer = new QTimer(rig.player);
    timer->callOnTimeout([timer, &answers, act] {
        if (answers.shown() == 0)
            return;
        timer->stop();
        act();
    });
    timer->start(1);
}

} // namespace

class PlayerPlayback : public QObject {
    Q_OBJECT
private slots:
    void aChosenStationPlaysItsFirstTrack()
    {
        PlayingRig rig;
        QCOMPARE(FakePlayback::types.mid(0, 2), QList<int>({3, 1})); // silence first
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
        QVERIFY(FakePlayback::commands.isEmpty());
    }

    void anAdWhoseMetadataFailsIsSkipped()
    {
        struct Case {
            const char *name;
            int code;
            QByteArray url;
            QStringList texts;
        };
        const Case cases[] = {{"no address", 0, {}, {}},
                              {"the address that says so", 0, velmora_ws_invalid_url, {}},
                              {"a failure", 5000, {}, {"Get track data failed.Please try later!"}},
                              {"a failure with words", 5102, {}, {"Station does not exist."}}};
        for (const Case &c : cases) {
            const Row row(c.name);
            PlayingRig rig({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1"), PlayerRig::track("Song 2")});
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

    void anUnplayableTrackIsSkippedButASystemErrorEndsTheRadio()
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
        QCOMPARE(FakeIpc::exitKinds, QStringList("fault"));
    }

    void aFailedPlaylistEndsTheMusicAndCanBeRequestedAgain()
    {
        struct Case {
            bool isSent;
            int code;
            QStringList texts;
            int exits;
        };
        const Case cases[] = {
            {false, VLM_WS_ERR_OUT_OF_MEMORY, {"Get playlist failed,you could try again!"}, 0},
            {true, VLM_WS_ERR_OK, {}, 0}, // without data
            {true, 5000, {"Get play list failed ,please try later!"}, 0},
            {true, 5102, {"Station does not exist."}, 0},
            {true, -504, {"A network error has occurred.  Please check your network connection and try again."}, 1}};
        for (const Case &c : cases) {
            for (const char *slot : {"getPlayList", "getPlayListNormal"}) {
                const Row row(QStringLiteral("%1, sent %2, code %3").arg(slot).arg(c.isSent).arg(c.code));
                PlayingRig rig;
                BoxAnswer answers({BoxAnswer::Ok});
                FakePlayback::clearCommands();
                if (!c.isSent)
                    rig.service.ws.failNext(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_EXT_ERRCODE_T(c.code));
                rig.call(slot);
                if (c.isSent)
                    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_EXT_ERRCODE_T(c.code));
                QCOMPARE(answers.texts(), c.texts);
                QVERIFY(!rig.isAnimationShown());
                QCOMPARE(FakeIpc::exitKinds, QStringList(c.exits, "fault"));
                QCOMPARE(rig.focused(), QStringList("stationListWidget"));
                QCOMPARE(FakePlayback::types, QList<int>{3}); // what sounded has ended, and the screen says so
                QVERIFY(rig.style("playBtn").contains("Play.png") && rig.style("playIconLabel").contains("Play.png"));
                for (const char *dead : {"playSong", "pauseSong", "nextSong", "checkwaterline"})
                    rig.call(dead);
                rig.key(screentest::Select); // on the row of the station that failed
                QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 3);
                rig.startTracks(1);
                QCOMPARE(FakePlayback::urls.size(), 1);
            }
        }
    }

    void adsAreFetchedPlayedAndShownAndNotSkipped()
    {
        PlayingRig rig({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1")});
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
        const std::pair<const char *, bool> marks[] = {{"adLabel", true},
                                                       {"artistCaptionLabel", false},
                                                       {"albumCaptionLabel", false},
                                                       {"stationCaptionLabel", true}};
        for (const auto &[name, isShown] : marks)
            QCOMPARE(!screentest::childWidget(rig.player, name)->isHidden(), isShown);
        QCOMPARE(FakeDownload::urls.last(), ad.imageUrl);
        BoxAnswer answers({BoxAnswer::Ok});
        QCOMPARE(rig.player->nextSong(), 1); // an ad is not skipped
        QCOMPARE(answers.texts(), QStringList(adsOnly));
        QCOMPARE(rig.takeSkips("b"), 6);
        rig.finishTrack();
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2); // the ad was the last entry
    }

    void playPauseAndNextSkipAnAdThatCannotBeRequested()
    {
        for (const bool hasMap : {true, false}) {
            for (const char *slot : {"nextSong", "playSong", "pauseSong"}) {
                const Row row(QStringLiteral("%1, map %2").arg(slot).arg(hasMap));
                FakeEntry ad = FakeEntry::ad("ad-1");
                ad.hasMap = hasMap;
                PlayingRig rig({PlayerRig::track("Song 1"), ad, PlayerRig::track("Song 2")});
                rig.service.ws.failNext(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OUT_OF_MEMORY);
                BoxAnswer answers({BoxAnswer::Ok});
                rig.finishTrack();
                QCOMPARE(answers.texts(), hasMap ? QStringList("Get Ad metadata failed!") : QStringList());
                QVERIFY(!rig.isAnimationShown());
                QCOMPARE(rig.focused(), QStringList("stationListWidget"));
                QVERIFY(rig.style("playBtn").contains("Play.png"));
                rig.call(slot);
                QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
                QCOMPARE(rig.takeSkips("b"), 6); // nothing was skipped
            }
        }
    }

    void anAdsAddressThatComesAfterAStationChangeIsDropped()
    {
        PlayingRig rig({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1")});
        rig.finishTrack();
        rig.call("tapestryStation");
        FakePlayback::clearCommands();
        rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OK, FakeReply::adMetadata());
        QVERIFY(FakePlayback::commands.isEmpty());
        BoxAnswer answers({BoxAnswer::Ok});
        rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_INTERNAL);
        rig.call("signout"); // nothing is being started any more
        QCOMPARE(rig.screens.made(), QStringList("selectUser 2"));
    }

    void aResultBeforeTheAdsMetadataIsNotShown()
    {
        PlayingRig rig({PlayerRig::track("Song 1"), FakeEntry::ad("ad-1"), FakeEntry::ad("ad-2")});
        rig.finishTrack();
        BoxAnswer answers({BoxAnswer::Ok});
        rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_INTERNAL); // to the next one
        FakePlayback::playOk(10);                                      // a late result; nothing was started
        QCOMPARE(rig.history()->count(), 1);
        QVERIFY(rig.log.contains("getmetadata not done!"));
        rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OK, FakeReply::adMetadata());
        FakePlayback::playOk(10);
        QCOMPARE(rig.history()->count(), 2);
    }

    void addressesThatCannotBePlayedAreSkipped()
    {
        PlayerRig rig;
        rig.fill();
        const auto without = FakeEntry::track({.audioUrl = {}});
        const auto marked = FakeEntry::track({.audioUrl = QByteArray(velmora_ws_invalid_url) + "/more"});
        rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, FakeReply::playlist({without, marked, without}));
        QVERIFY(FakePlayback::urls.isEmpty());
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2);
        BoxAnswer answers({BoxAnswer::Ok});
        rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_INTERNAL);
        QVERIFY(!rig.isAnimationShown());
        rig.call("signout"); // nothing is being started: the listener may leave
        QCOMPARE(rig.screens.made(), QStringList("selectUser 2"));
    }

    void aBrokenEntryLeavesTheScreenUsable()
    {
        PlayingRig rig({PlayerRig::track("Song 1"), FakeEntry{.hasMap = false}});
        rig.finishTrack();
        QVERIFY(!rig.isAnimationShown());
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        rig.key(screentest::Select); // on the station whose playlist is broken
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2);
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

    void pauseAndPlayKeysReachThePlayback()
    {
        PlayingRig rig;
        FakePlayback::clearCommands();
        rig.key(Qt::Key_Pause);
        rig.run();
        QVERIFY(rig.style("playBtn").contains("Play.png"));
        QVERIFY(rig.style("stationIconLabel").contains("common_station_icon_n.png")); // mint means sound
        rig.key(Qt::Key_Pause);
        rig.run();
        QVERIFY(rig.style("playBtn").contains("Pause.png"));
        QVERIFY(rig.style("stationIconLabel").contains("common_station_icon_s.png"));
        rig.key(Qt::Key_MediaStop); // pauses
        rig.key(Qt::Key_MediaPlay);
        QCOMPARE(FakePlayback::types, QList<int>({2, 0, 2, 0}));
        rig.key(Qt::Key_MediaPlay); // plays already
        QCOMPARE(FakePlayback::types.size(), 4);
    }

    void anIdleQuestionThatAnotherBoxReplacesLeavesTheMusicOn()
    {
        PlayingRig rig;
        rig.player->stopTimer();
        BoxAnswer answers({BoxAnswer::Nothing, BoxAnswer::Ok});
        whenBoxShows(rig, answers, [&rig] { rig.player->showMsgbox(MSG_WARNING, "Another box"); });
        rig.player->NohandleTimeOut();
        QCOMPARE(answers.texts(), QStringList({"    Are you still there ? ", "Another box"}));
        QCOMPARE(FakePlayback::types.last(), 0);
        const QList<QTimer *> timers = rig.player->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(std::any_of(timers.begin(), timers.end(),
                            [](const QTimer *timer) { return timer->isActive() && timer->interval() == 28'800'000; }));
    }

    void aFailureWhoseBoxAnExitQuestionReplacesDoesNotEndTheRadio()
    {
        PlayingRig rig;
        rig.call("getPlayListNormal");
        BoxAnswer answers({BoxAnswer::Nothing, BoxAnswer::Cancel});
        whenBoxShows(rig, answers, [&rig] { emit rig.player->signalExit(false, false); });
        rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_ERROR_CURL_FAILURE);
        QCOMPARE(answers.shown(), 2);
        QVERIFY(FakeIpc::exitRequests.isEmpty()); // the listener has said no
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
    }

    void stopPausesAndResumingStartsTheWaterLine()
    {
        PlayingRig rig;
        rig.player->stopCurrentSong(); // as the idle check does
        QCOMPARE(FakePlayback::types.last(), 2);
        rig.player->playCurrentSong();
        QCOMPARE(FakePlayback::types.last(), 0);
        FakePlayback::finished();
        QTRY_COMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2")); // the timer itself looks
    }

    void fiveMinutesUnderTheLowWaterLineGiveUpUnlessAFatalMessageShows()
    {
        for (const bool isFatal : {false, true}) {
            PlayingRig rig;
            FakePlayback::setBuffer(0, 8000);
            rig.tick(); // the count is the process's: it starts at 0 here
            FakePlayback::setBuffer(0, 2999);
            rig.player->m_isErrorMsg = isFatal;
            for (int i = 0; i < 599; ++i)
                rig.tick();
            QVERIFY(FakeIpc::exitRequests.isEmpty());
            BoxAnswer answers({BoxAnswer::Ok});
            FakePlayback::clearCommands();
            FakePlayback::state = PLAYBACK_STATE_PLAYING; // the listener has just resumed
            rig.tick();
            QCOMPARE(FakePlayback::commands, QStringList("type 2"));
            QCOMPARE(answers.texts().value(0).startsWith("A network error has occurred."), !isFatal);
            QCOMPARE(FakeIpc::exitKinds, QStringList(isFatal ? 0 : 1, "fault"));
        }
    }

    void skippingWhileATrackStartsDoesNothing()
    {
        PlayerRig rig;
        rig.fill();
        rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(2));
        QCOMPARE(rig.player->nextSong(), 1);
        rig.key(Qt::Key_MediaNext);
        QCOMPARE(FakePlayback::urls.size(), 1);
        rig.call("signout");
        QVERIFY(rig.screens.made().isEmpty());
        QCOMPARE(rig.takeSkips("b"), 6);
    }

    void aSkipThatWaitsForAReplyIsOneSkip()
    {
        PlayingRig rig;
        rig.call("thumbUpSong");
        rig.player->controlAnimation(true); // as when the network comes back
        rig.call("thumbUpSong");
        QCOMPARE(rig.sent(VLM_WS_MSGID_ADD_FEEDBACK), 1);
        for (int i = 0; i < 10; ++i)
            QCOMPARE(rig.player->nextSong(), 0);
        QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 1"));
        rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK);
        QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
        QCOMPARE(rig.takeSkips("b"), 5);
    }

    void repliesUnderAFatalMessageAreReleased()
    {
        PlayingRig rig;
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
