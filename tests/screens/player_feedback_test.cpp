// Rating, sleep, bookmarks and the explanation on the player screen, with every message at its moment.
#include "screens/playerrig.h"

#include "station/whydlg.h"

namespace {

const QVariant token = QByteArray("token of Song 1");

struct ActionCase {
    const char *slot;
    int cmd;
    QVariantList params;
    const char *refused;
    const char *failed;
};

const ActionCase actions[] = {
    {"thumbUpSong",
     VLM_WS_MSGID_ADD_FEEDBACK,
     {1, token},
     "Thumbs up track failed,you could try again.",
     "Add feedback failed ,you could try again!"},
    {"thumbDownSong",
     VLM_WS_MSGID_ADD_FEEDBACK,
     {0, token},
     "Thumbs down track failed,you could try again.",
     "Add feedback failed ,you could try again!"},
    {"sleepSong",
     VLM_WS_MSGID_SLEEP_SONG,
     {token},
     "Sleep track failed,you could try again.",
     "Sleep track failed ,you could try later!"},
    {"addSongBookmark",
     VLM_WS_MSGID_ADD_SONG_BOOKMARK,
     {token},
     "Bookmark track failed,you could try again.",
     "Add bookmark failed ,please try later!"},
    {"addArtistBookmark",
     VLM_WS_MSGID_ADD_ARTIST_BOOKMARK,
     {token},
     "Bookmark artist failed,you could try again.",
     "Add bookmark failed ,please try later!"},
    {"explainTrack",
     VLM_WS_MSGID_EXPLAIN_TRACK,
     {token},
     "Explain track failed,you could try again.",
     "Explain track failed ,you could try again!"},
};

} // namespace

class PlayerFeedback : public QObject {
    Q_OBJECT
private slots:
    void everyActionNamesItsTrackAndShowsItsFailure()
    {
        for (const ActionCase &action : actions) {
            for (const bool isSent : {false, true}) {
                const Row row(QStringLiteral("%1, sent %2").arg(action.slot).arg(isSent));
                PlayingRig rig;
                if (!isSent)
                    rig.service.ws.failNext(action.cmd, VLM_WS_ERR_OUT_OF_MEMORY);
                BoxAnswer answers({BoxAnswer::Ok});
                rig.call(action.slot);
                QCOMPARE(rig.service.ws.last(action.cmd).params, action.params);
                if (isSent)
                    rig.answer(action.cmd, VLM_WS_ERR_INTERNAL);
                QCOMPARE(answers.texts(), QStringList(isSent ? action.failed : action.refused));
                QVERIFY(!rig.isAnimationShown());
                QCOMPARE(rig.focused(), QStringList("stationListWidget"));
                rig.call(action.slot); // may be tried again
                QVERIFY(rig.isAnimationShown());
                QCOMPARE(rig.takeSkips("b"), 6);
            }
        }
    }

    void anActionThatEndsTheSessionLeaves()
    {
        for (const ActionCase &action : actions) {
            for (const bool isInactive : {false, true}) {
                const Row row(QStringLiteral("%1, inactive %2").arg(action.slot).arg(isInactive));
                PlayingRig rig;
                BoxAnswer answers({BoxAnswer::Ok});
                rig.call(action.slot);
                rig.answer(action.cmd, isInactive ? VLM_WS_ERR_ACCOUNT_INACTIVE : VLM_WS_ERR_ERROR_CURL_FAILURE);
                QCOMPARE(answers.shown(), 1);
                QVERIFY(answers.texts().first().startsWith(isInactive ? "Sorry,this account is no longer active."
                                                                      : "A network error has occurred."));
                QCOMPARE(FakeIpc::exitKinds, QStringList(isInactive ? 0 : 1, "fault"));
                QCOMPARE(rig.screens.made(), isInactive ? QStringList("selectUser 2") : QStringList());
                QCOMPARE(rig.player.isNull(), isInactive);
            }
        }
    }

    void noActionOnAnAd()
    {
        for (const ActionCase &action : actions) {
            const Row row(action.slot);
            PlayingRig rig({FakeEntry::ad("ad-1"), PlayerRig::track("Song 1")});
            rig.answer(VLM_WS_MSGID_GET_AD_METADATA, VLM_WS_ERR_OK, FakeReply::adMetadata());
            FakePlayback::playOk(15);
            BoxAnswer answers({BoxAnswer::Ok});
            rig.call(action.slot);
            QCOMPARE(answers.texts(), QStringList(adsOnly));
            QCOMPARE(rig.sent(action.cmd), 0);
            QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        }
    }

    void theColourKeysRateWhenReleasedAndTheTrackIsMarked()
    {
        PlayingRig rig;
        QVERIFY(!rig.hasThumb());
        screentest::keyPress(rig.player, screentest::Green);
        QCOMPARE(rig.sent(VLM_WS_MSGID_ADD_FEEDBACK), 0);
        screentest::keyRelease(rig.player, screentest::Green);
        QCOMPARE(rig.service.ws.last(VLM_WS_MSGID_ADD_FEEDBACK).params.at(0).toInt(), 1);
        rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK);
        QVERIFY(rig.hasThumb("ThumbsUp_Enable.png"));
        const auto *onCover = screentest::childWidget(rig.player, "coverThumbLabel");
        QVERIFY(onCover->isVisible() && onCover->styleSheet().contains("ThumbsUp_Enable.png"));
        QCOMPARE(FakePlayback::urls.size(), 1); // it plays on
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1);
        rig.key(screentest::Red);
        QCOMPARE(rig.service.ws.last(VLM_WS_MSGID_ADD_FEEDBACK).params.at(0).toInt(), 0);
        rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK);
        QVERIFY(rig.hasThumb("ThumbsDown_Enable.png"));
        QVERIFY(onCover->styleSheet().contains("ThumbsDown_Enable.png"));
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2); // a fresh playlist
        QCOMPARE(rig.takeSkips("b"), 5);
    }

    void aTrackThatEndsDuringAThumbsUpWaitsForAnyReply()
    {
        for (const auto code : {VLM_WS_ERR_OK, VLM_WS_ERR_INTERNAL}) {
            PlayingRig rig;
            rig.call("thumbUpSong");
            rig.finishTrack();
            QCOMPARE(FakePlayback::urls.size(), 1);
            BoxAnswer answers({BoxAnswer::Ok});
            rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, code);
            QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
            QCOMPARE(rig.takeSkips("b"), 6);
        }
    }

    void aSleepStartsTheNextTrackAndCountsAsASkip()
    {
        PlayingRig rig;
        rig.call("sleepSong");
        rig.answer(VLM_WS_MSGID_SLEEP_SONG, VLM_WS_ERR_OK);
        QCOMPARE(FakePlayback::lastUrl(), QByteArray("http://127.0.0.1:1/Song 2"));
        FakePlayback::playOk(10);
        QCOMPARE(rig.takeSkips("b"), 5); // and now there is none
        BoxAnswer answers({BoxAnswer::Ok});
        rig.call("sleepSong");
        QCOMPARE(answers.texts(), QStringList(skipLimit));
        QCOMPARE(rig.sent(VLM_WS_MSGID_SLEEP_SONG), 1);
    }

    void sharedStationsAreNotRated()
    {
        PlayingRig rig({FakeEntry::track({.allowFeedback = false})});
        BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok});
        rig.call("thumbUpSong");
        rig.call("thumbDownSong");
        QCOMPARE(answers.texts(), QStringList({"Thumbs up is not allowed on shared stations.",
                                               "Thumbs down is not allowed on shared stations."}));
        QCOMPARE(rig.sent(VLM_WS_MSGID_ADD_FEEDBACK), 0);
    }

    void aThumbsDownWithoutSkipsPlaysOn()
    {
        PlayingRig rig;
        PlayerRig::useUpSkips("b");
        rig.call("thumbDownSong");
        BoxAnswer answers({BoxAnswer::Ok});
        rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK);
        QCOMPARE(answers.texts(), QStringList(skipLimit));
        QVERIFY(rig.hasThumb("ThumbsDown_Enable.png"));
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1);
        rig.finishTrack(); // the next track change fetches a fresh playlist
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2);
        QCOMPARE(FakePlayback::urls.size(), 1);
        rig.startTracks(2); // and plays it
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 2);
        QCOMPARE(FakePlayback::urls.size(), 2);
    }

    void theSkipCountsForTheStationThatWasRated()
    {
        PlayingRig rig;
        rig.call("thumbDownSong");
        rig.call("tapestryStation"); // while the reply is on its way
        rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK);
        QCOMPARE(rig.takeSkips("b"), 5);
        QCOMPARE(rig.takeSkips("tapestry"), 6);
    }

    void aMarkStaysWithTheTrackThatWasRated()
    {
        PlayingRig rig;
        rig.call("thumbDownSong");
        rig.finishTrack(); // a thumbs down holds nothing up
        FakePlayback::playOk(10);
        QCOMPARE(rig.history()->count(), 2);
        rig.answer(VLM_WS_MSGID_ADD_FEEDBACK, VLM_WS_ERR_OK);
        QVERIFY(!rig.hasThumb());
        rig.history()->setCurrentRow(1);
        QVERIFY(rig.hasThumb("ThumbsDown_Enable.png"));
        QVERIFY(!screentest::childWidget(rig.player, "coverThumbLabel")->isVisible());
    }

    void bookmarksAreConfirmed()
    {
        PlayingRig rig;
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
        PlayingRig rig;
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

    void theExplanationClosesWithItsTrack()
    {
        PlayingRig rig;
        rig.call("explainTrack");
        rig.answer(VLM_WS_MSGID_EXPLAIN_TRACK, VLM_WS_ERR_OK, FakeReply::explanation({"A"}));
        rig.finishTrack();
        QVERIFY(!rig.dialog<WhyDlg>());
        FakePlayback::playOk(10);
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
    }

    void anExplanationWithoutDataIsNotShown()
    {
        PlayingRig rig;
        rig.call("explainTrack");
        rig.answer(VLM_WS_MSGID_EXPLAIN_TRACK, VLM_WS_ERR_OK);
        QVERIFY(!rig.dialog<WhyDlg>());
        rig.call("explainTrack");
        rig.answer(VLM_WS_MSGID_EXPLAIN_TRACK, VLM_WS_ERR_OK, FakeReply::explanation({}));
        QVERIFY(screentest::child<QLabel>(rig.dialog<WhyDlg>(), "whyLabel")->text().endsWith("because it features "));
    }
};

QTEST_MAIN(PlayerFeedback)
#include "player_feedback_test.moc"
