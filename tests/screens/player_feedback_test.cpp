// Rating, sleep, bookmarks and the explanation on the player screen, with every message at its moment.
#include "screens/playerrig.h"

#include "station/whydlg.h"

namespace {

struct ActionCase {
    const char *slot;
    int cmd;
    const char *refused;
    const char *failed;
};

const QList<ActionCase> actions = {
    {"thumbUpSong", VLM_WS_MSGID_ADD_FEEDBACK, "Thumbs up track failed,you could try again.",
     "Add feedback failed ,you could try again!"},
    {"thumbDownSong", VLM_WS_MSGID_ADD_FEEDBACK, "Thumbs down track failed,you could try again.",
     "Add feedback failed ,you could try again!"},
    {"sleepSong", VLM_WS_MSGID_SLEEP_SONG, "Sleep track failed,you could try again.",
     "Sleep track failed ,you could try later!"},
    {"addSongBookmark", VLM_WS_MSGID_ADD_SONG_BOOKMARK, "Bookmark track failed,you could try again.",
     "Add bookmark failed ,please try later!"},
    {"addArtistBookmark", VLM_WS_MSGID_ADD_ARTIST_BOOKMARK, "Bookmark artist failed,you could try again.",
     "Add bookmark failed ,please try later!"},
    {"explainTrack", VLM_WS_MSGID_EXPLAIN_TRACK, "Explain track failed,you could try again.",
     "Explain track failed ,you could try again!"},
};

void playAd(PlayerRig &rig)
{
    rig.play({FakeEntry::ad("ad-1"), PlayerRig::track("Song 1")});
    rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OK, FakeReply::adMetadata());
    FakePlayback::playOk(15);
}

bool isThumbShown(const PlayerRig &rig, const char *picture)
{
    return !screentest::childWidget(rig.player, "playlistthumb")->isHidden() &&
           rig.style("playlistthumb").contains(QLatin1String(picture));
}

} // namespace

class PlayerFeedback : public QObject {
    Q_OBJECT
private slots:
    void everyActionNamesItsTrack_data() { cases(); }
    void everyActionNamesItsTrack()
    {
        QFETCH(int, index);
        PlayerRig rig;
        rig.play();
        rig.call(actions.at(index).slot);
        const bool isRating = actions.at(index).cmd == VLM_WS_MSGID_ADD_FEEDBACK;
        QCOMPARE(rig.sentText(actions.at(index).cmd, isRating ? 1 : 0), QByteArray("token of Song 1"));
        if (isRating)
            QCOMPARE(rig.service.ws.last(VLM_WS_MSGID_ADD_FEEDBACK).params.at(0).toInt(), index == 0 ? 1 : 0);
        QVERIFY(rig.isAnimationShown());
    }

    void anActionThatFailsIsSaid_data() { cases(); }
    void anActionThatFailsIsSaid()
    {
        QFETCH(int, index);
        const ActionCase &action = actions.at(index);
        for (const bool isSent : {false, true}) {
            PlayerRig rig;
            rig.play();
            if (!isSent)
                rig.service.ws.failNext(action.cmd, VLM_WS_ERR_OUT_OF_MEMORY);
            BoxAnswer answers({BoxAnswer::Ok});
            rig.call(action.slot);
            if (isSent)
                rig.answer(action.cmd, VLM_WS_ERR_INTERNAL);
            QCOMPARE(answers.texts(), QStringList(isSent ? action.failed : action.refused));
            QVERIFY(!rig.isAnimationShown());
            QCOMPARE(rig.focused(), QStringList("stationListWidget"));
            rig.call(action.slot); // may be tried again
            QVERIFY(rig.isAnimationShown());
            QCOMPARE(rig.skipsLeft("b"), 6);
        }
    }

    void anActionThatEndsTheSessionLeaves_data() { cases(); }
    void anActionThatEndsTheSessionLeaves()
    {
        QFETCH(int, index);
        for (const bool isInactive : {false, true}) {
            PlayerRig rig;
            rig.play();
            BoxAnswer answers({BoxAnswer::Ok});
            rig.call(actions.at(index).slot);
            rig.answer(actions.at(index).cmd, isInactive ? VLM_WS_ERR_ACCOUNT_INACTIVE : VLM_WS_ERR_ERROR_CURL_FAILURE);
            QCOMPARE(answers.shown(), 1);
            QVERIFY(answers.texts().first().startsWith(isInactive ? "Sorry,this account is no longer active."
                                                                  : "A network error has occurred."));
            QCOMPARE(FakeIpc::exitRequests().size(), isInactive ? 0 : 1);
            QCOMPARE(rig.screens.made(), isInactive ? QStringList("selectUser 2") : QStringList());
            QCOMPARE(rig.player.isNull(), isInactive);
        }
    }

    void noActionOnAnAd_data() { cases(); }
    void noActionOnAnAd()
    {
        QFETCH(int, index);
        PlayerRig rig;
        playAd(rig);
        BoxAnswer answers({BoxAnswer::Ok});
        rig.call(actions.at(index).slot);
        QCOMPARE(answers.texts(), QStringList(adsOnly));
        QCOMPARE(rig.sent(actions.at(index).cmd), 0);
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
    }

    void theColourKeysRateWhenReleasedAndTheTrackIsMarked()
    {
        PlayerRig rig("b");
        rig.play();
        QVERIFY(screentest::childWidget(rig.player, "playlistthumb")->isHidden());
        screentest::keyPress(rig.player, screentest::Green);
        QCOMPARE(rig.sent(VLM_WS_MSGID_ADD_FEEDBACK), 0);
        screentest::keyRelease(rig.player, screentest::Green);
        QCOMPARE(rig.service.ws.last(VLM_WS_MSGID_ADD_FEEDBACK).params.at(0).toInt(), 1);
        rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK);
        QVERIFY(isThumbShown(rig, "ThumbsUp_Enable.png"));
        QCOMPARE(FakePlayback::urls().size(), 1); // it plays on
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1);
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        rig.key(screentest::Red);
        QCOMPARE(rig.service.ws.last(VLM_WS_MSGID_ADD_FEEDBACK).params.at(0).toInt(), 0);
        rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK);
        QVERIFY(isThumbShown(rig, "ThumbsDown_Enable.png"));
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2); // a fresh playlist
        QCOMPARE(rig.skipsLeft("b"), 5);
    }

    void aTrackThatEndsUnderAThumbsUpWaitsForTheReplyWhateverItIs()
    {
        for (const auto code : {VLM_WS_ERR_OK, VLM_WS_ERR_INTERNAL}) {
            PlayerRig rig("b");
            rig.play();
            rig.call("thumbUpSong");
            rig.finishTrack();
            QCOMPARE(FakePlayback::urls().size(), 1);
            BoxAnswer answers({BoxAnswer::Ok});
            rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, code);
            QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
            QCOMPARE(rig.skipsLeft("b"), 6);
        }
    }

    void aSleepStartsTheNextTrackAndCountsAsSkipWhichMayBeRefused()
    {
        PlayerRig rig("b");
        rig.play();
        rig.call("sleepSong");
        rig.answer(VLM_WS_MSGID_SLEEP_SONG, VLM_WS_ERR_OK);
        QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
        FakePlayback::playOk(10);
        QCOMPARE(rig.skipsLeft("b"), 5); // and now there is none
        BoxAnswer answers({BoxAnswer::Ok});
        rig.call("sleepSong");
        QCOMPARE(answers.texts(), QStringList(skipLimit));
        QCOMPARE(rig.sent(VLM_WS_MSGID_SLEEP_SONG), 1);
    }

    void sharedStationsAreNotRated()
    {
        PlayerRig rig;
        FakeTrack track;
        track.allowFeedback = false;
        rig.play({FakeEntry::track(track)});
        BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok});
        rig.call("thumbUpSong");
        rig.call("thumbDownSong");
        QCOMPARE(answers.texts(), QStringList({"Thumbs up is not allowed on shared stations.",
                                               "Thumbs down is not allowed on shared stations."}));
        QCOMPARE(rig.sent(VLM_WS_MSGID_ADD_FEEDBACK), 0);
    }

    void aSecondThumbsUpBeforeTheReplyIsIgnored()
    {
        PlayerRig rig;
        rig.play();
        rig.call("thumbUpSong");
        rig.player->controlAnimation(true); // as when the network comes back
        rig.call("thumbUpSong");
        QCOMPARE(rig.sent(VLM_WS_MSGID_ADD_FEEDBACK), 1);
    }

    void aThumbsDownWithoutSkipsPlaysOn()
    {
        PlayerRig rig("b");
        rig.play();
        PlayerRig::useUpSkips("b");
        rig.call("thumbDownSong");
        BoxAnswer answers({BoxAnswer::Ok});
        rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK);
        QCOMPARE(answers.texts(), QStringList(skipLimit));
        QVERIFY(isThumbShown(rig, "ThumbsDown_Enable.png"));
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1);
        FakePlayback::finished();
        rig.call("checkwaterline"); // the next track change fetches a fresh playlist
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2);
        QCOMPARE(FakePlayback::urls().size(), 1);
    }

    void theSkipIsBookedOnTheStationThatWasRated()
    {
        PlayerRig rig("b");
        rig.play();
        rig.call("thumbDownSong");
        rig.call("tapestryStation"); // while the reply is on its way
        rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK);
        QCOMPARE(rig.skipsLeft("b"), 5);
        QCOMPARE(rig.skipsLeft("tapestry"), 6);
    }

    void aMarkStaysWithTheTrackThatWasRated()
    {
        PlayerRig rig;
        rig.play();
        rig.call("thumbDownSong");
        FakePlayback::finished(); // a thumbs down holds nothing up
        rig.call("checkwaterline");
        FakePlayback::playOk(10);
        QCOMPARE(rig.history()->count(), 2);
        rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK);
        QVERIFY(screentest::childWidget(rig.player, "playlistthumb")->isHidden());
        rig.history()->setCurrentRow(1);
        QVERIFY(isThumbShown(rig, "ThumbsDown_Enable.png"));
    }

    void bookmarksAreConfirmed()
    {
        PlayerRig rig;
        rig.play();
        BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok});
        rig.call("addSongBookmark");
        rig.answer(VLM_WS_MSGID_ADD_SONG_BOOKMARK, VLM_WS_ERR_OK);
        rig.call("addArtistBookmark");
        rig.answer(VLM_WS_MSGID_ADD_ARTIST_BOOKMARK, VLM_WS_ERR_OK);
        QCOMPARE(answers.texts(), QStringList({"Add bookmark successful!", "Add bookmark successful!"}));
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
    }

    void theExplanationNamesItsTraits()
    {
        PlayerRig rig;
        rig.play();
        rig.call("explainTrack");
        rig.answer(VLM_WS_MSGID_EXPLAIN_TRACK, VLM_WS_ERR_OK,
                   FakeReply::explanation({"warm strings", "a slow beat", "a quiet start"}));
        auto *why = rig.dialog<WhyDlg>();
        QVERIFY(why);
        QCOMPARE(why->pos(), QPoint(240, 110));
        QCOMPARE(
            screentest::child<QLabel>(why, "whyLabel")->text(),
            QStringLiteral("Based on what you've told us so far, we're playing Song 1 by Artist of Song 1 because it "
                           "features warm strings,a slow beat,a quiet start."));
        QVERIFY(rig.focused().isEmpty());
        screentest::key(why, screentest::Select);
        rig.run();
        QVERIFY(!rig.dialog<WhyDlg>());
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
    }

    void theExplanationGoesWithItsTrack()
    {
        PlayerRig rig;
        rig.play();
        rig.call("explainTrack");
        rig.answer(VLM_WS_MSGID_EXPLAIN_TRACK, VLM_WS_ERR_OK, FakeReply::explanation({"A"}));
        QSignalSpy ended(rig.dialog<WhyDlg>(), SIGNAL(signalDestroyedWindow()));
        rig.finishTrack();
        QVERIFY(!rig.dialog<WhyDlg>());
        QCOMPARE(ended.size(), 1);
        FakePlayback::playOk(10);
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
    }

    void anExplanationWithoutDataIsNotShown()
    {
        PlayerRig rig;
        rig.play();
        rig.call("explainTrack");
        rig.answer(VLM_WS_MSGID_EXPLAIN_TRACK, VLM_WS_ERR_OK);
        QVERIFY(!rig.dialog<WhyDlg>());
        rig.call("explainTrack");
        rig.answer(VLM_WS_MSGID_EXPLAIN_TRACK, VLM_WS_ERR_OK, FakeReply::explanation({}));
        QVERIFY(screentest::child<QLabel>(rig.dialog<WhyDlg>(), "whyLabel")->text().endsWith("because it features "));
    }

private:
    static void cases()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < actions.size(); ++i)
            QTest::newRow(actions.at(i).slot) << i;
    }
};

QTEST_MAIN(PlayerFeedback)
#include "player_feedback_test.moc"
