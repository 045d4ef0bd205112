// The player screen's focus: the ring, every key from every position, and that exactly one control is visibly focused
// after everything that can cover or rebuild the screen.
#include "screens/playerrig.h"

#include "station/aboutdlg.h"
#include "station/menudlg.h"
#include "station/whydlg.h"

#include <optional>

namespace {

const QStringList ring = {"stationListWidget", "menuBtn",    "playBtn",       "nextBtn",
                          "thumbdownBtn",      "thumbupBtn", "playListWidget"};

void goTo(PlayerRig &rig, int place)
{
    for (int i = 0; i < place; ++i)
        rig.key(screentest::Right);
}

bool hasPlainBar(const ImageListWidget *list)
{
    return list->currentItem()->background().texture().cacheKey() ==
           QPixmap(":/images/FocusBar_Transparent.png").cacheKey();
}

// Everything that can cover or rebuild the screen, from start to end.
void happens(PlayerRig &rig, const QString &event)
{
    if (event == "box") {
        rig.player->showMsgbox(MSG_INFO, "A box");
    } else if (event == "menu") {
        rig.call("menuSong");
        QVERIFY(rig.focused().isEmpty());
        screentest::keyPress(rig.dialog<MenuDlg>(), screentest::Back);
        rig.run();
        screentest::keyRelease(rig.player, screentest::Back);
    } else if (event == "menu entry") {
        rig.call("menuSong");
        screentest::key(rig.dialog<MenuDlg>(), screentest::Select);
        QVERIFY(rig.focused().isEmpty()); // the animation
        rig.answer(VLM_WS_MSGID_ADD_ARTIST_BOOKMARK, VLM_WS_ERR_OK);
    } else if (event == "about") {
        rig.call("showAboutVelmora");
        QVERIFY(rig.focused().isEmpty());
        QCOMPARE(rig.dialog<AboutDlg>()->pos(), QPoint(240, 110));
        screentest::key(rig.dialog<AboutDlg>(), screentest::Select);
    } else if (event == "explanation") {
        rig.call("explainTrack");
        rig.answer(VLM_WS_MSGID_EXPLAIN_TRACK, VLM_WS_ERR_OK, FakeReply::explanation({"A"}));
        QVERIFY(rig.focused().isEmpty());
        screentest::key(rig.dialog<WhyDlg>(), screentest::Back);
    } else if (event == "refill") {
        rig.fill();
        rig.startTracks(2);
    } else if (event == "next track") {
        rig.call("nextSong");
        QVERIFY(rig.focused().isEmpty());
        FakePlayback::playOk(10);
    } else if (event == "deletion") {
        rig.call("delStation");
        rig.answer(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_OK);
    } else if (event == "screen saver") {
        FakeIpc::screenSaver(true);
        QVERIFY(rig.focused().isEmpty());
        FakeIpc::screenSaver(false);
    } else if (event == "hidden and shown") {
        rig.player->hide();
        rig.player->show();
    } else {
        rig.player->controlAnimation(false, "Buffering...");
        FakeNetwork::back();
    }
}

void closeWhateverIsOpen(PlayerRig &rig)
{
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget != rig.player)
            widget->close();
    rig.run();
}

} // namespace

class PlayerFocus : public QObject {
    Q_OBJECT
private slots:
    void rightAndLeftWalkTheRing()
    {
        PlayingRig rig;
        for (int i = 0; i < 2 * ring.size(); ++i) {
            QCOMPARE(rig.focused(), QStringList(ring.at(i % ring.size())));
            if (i % ring.size() == 1)
                QVERIFY(hasPlainBar(rig.stationsList())); // the list that was left
            QCOMPARE(rig.player->focusWidget()->objectName(), ring.at(i % ring.size()));
            rig.key(screentest::Right);
        }
        for (int i = 2 * ring.size(); i > 0; --i) {
            QCOMPARE(rig.focused(), QStringList(ring.at(i % ring.size())));
            rig.key(screentest::Left);
        }
    }

    // Select apart, whatever the remote and a PC keyboard have.
    void everyKeyMovesTheFocusAsDefined()
    {
        const int size = int(ring.size());
        for (int place = 0; place < size; ++place) {
            PlayingRig rig;
            for (const int key :
                 {int(Qt::Key_Up), int(Qt::Key_Down), int(Qt::Key_Back), int(Qt::Key_PageUp), int(Qt::Key_PageDown),
                  int(Qt::Key_Home), int(Qt::Key_End), int(Qt::Key_TopMenu), int(Qt::Key_MenuPB), int(Qt::Key_Escape),
                  int(Qt::Key_Return), int(Qt::Key_Tab), int(Qt::Key_5), int(Qt::Key_S), int(Qt::Key_Pause),
                  int(Qt::Key_MediaPlay), int(Qt::Key_MediaStop), int(Qt::Key_Left), int(Qt::Key_Right)}) {
                const Row row(QStringLiteral("key %1 on %2").arg(key, 0, 16).arg(ring.at(place)));
                while (rig.focused() != QStringList(ring.at(place)))
                    rig.key(screentest::Right);
                rig.key(key);
                rig.run();
                const int expected = (place + (key == Qt::Key_Right) - (key == Qt::Key_Left) + size) % size;
                QCOMPARE(rig.focused(), QStringList(ring.at(expected)));
                QCOMPARE(rig.player->focusWidget()->objectName(), ring.at(expected));
                QCOMPARE(screentest::visibleWindows(), QStringList("VelmoraMainDlg"));
            }
        }
    }

    void selectActsOnTheFocusedControl()
    {
        const QStringList outcomes = {"menu", "pause", "next", "rated 0", "rated 1", ""};
        for (int place = 1; place < ring.size(); ++place) {
            PlayingRig rig;
            goTo(rig, place);
            FakePlayback::clearCommands();
            rig.key(screentest::Select);
            QString outcome;
            if (rig.dialog<MenuDlg>())
                outcome = "menu";
            else if (FakePlayback::types == QList<int>{2})
                outcome = "pause";
            else if (!FakePlayback::urls.isEmpty())
                outcome = "next";
            else if (rig.sent(VLM_WS_MSGID_ADD_FEEDBACK) > 0)
                outcome = "rated " + rig.service.ws.last(VLM_WS_MSGID_ADD_FEEDBACK).params.at(0).toString();
            QCOMPARE(outcome, outcomes.at(place - 1));
        }
    }

    void oneControlIsFocusedAfterwards()
    {
        // Each event has one screen and is tried at every place of the ring. Events that start another track share a
        // screen for three places only, because a station allows six skips.
        const std::pair<const char *, int> events[] = {
            {"box", 7},         {"menu", 7},       {"menu entry", 7}, {"about", 7},        {"explanation", 7},
            {"refill", 3},      {"next track", 3}, {"deletion", 3},   {"screen saver", 7}, {"hidden and shown", 7},
            {"network back", 7}};
        for (const auto &[event, places] : events) {
            std::optional<PlayerRig> rig;
            for (int i = 0; i < places; ++i) {
                const QString place = ring.at(i * ring.size() / places);
                const Row row(QStringLiteral("%1, %2").arg(event, place));
                if (!rig || qstrcmp(event, "deletion") == 0) { // there always of a station that does not play
                    rig.reset();
                    rig.emplace();
                    rig->play(QList<FakeEntry>(8, PlayerRig::track("Song")));
                    rig->key(screentest::Down);
                }
                while (rig->focused() != QStringList(place))
                    rig->key(screentest::Right);
                BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok});
                happens(*rig, event);
                rig->run();
                QCOMPARE(rig->focused(), QStringList(place));
                QCOMPARE(rig->player->focusWidget()->objectName(), place);
            }
        }
    }

    void keysAndRepliesUnderABoxChangeNothing()
    {
        PlayingRig rig;
        FakePlayback::clearCommands();
        BoxAnswer answers({BoxAnswer::Nothing});
        QTimer::singleShot(50, rig.player, [&rig] {
            rig.key(screentest::Right);
            rig.key(Qt::Key_MediaNext);
            rig.key(screentest::Green);
            QVERIFY(rig.focused().isEmpty());
            QVERIFY(FakePlayback::commands.isEmpty());
            rig.finishTrack();
            FakePlayback::playOk(10);
            rig.call("resetFocus");
            QVERIFY(rig.focused().isEmpty());
            rig.player->delMsgbox();
        });
        QCOMPARE(rig.player->showMsgbox(MSG_INFO, "A box"), 1);
        QCOMPARE(rig.sent(VLM_WS_MSGID_ADD_FEEDBACK), 0);
        QCOMPARE(rig.text("songLabel"), QStringLiteral("Song 2"));
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
    }

    void aBoxOverTheMenuGivesTheKeysBackToTheMenu()
    {
        PlayingRig rig;
        goTo(rig, 1);
        rig.call("addSongBookmark");
        rig.player->controlAnimation(true); // as when the network comes back
        rig.call("menuSong");
        BoxAnswer answers({BoxAnswer::Ok});
        rig.answer(VLM_WS_MSGID_ADD_SONG_BOOKMARK, VLM_WS_ERR_INTERNAL);
        QCOMPARE(answers.shown(), 1);
        QVERIFY(rig.focused().isEmpty()); // the Menu button is not lit under its menu
        auto *menu = rig.dialog<MenuDlg>();
        QVERIFY(menu);
        QTRY_COMPARE(QApplication::activeWindow(), menu);
        QVERIFY(screentest::childWidget(menu, "bookmarkArtisteBtn")->hasFocus());
    }

    void aBoxOfTheHiddenPlayerDoesNotTakeKeysFromTheVisibleScreen()
    {
        PlayingRig rig;
        rig.call("createStation");
        QVERIFY(!rig.player->isVisible());
        BoxAnswer answers({BoxAnswer::Ok});
        rig.player->showMsgbox(MSG_INFO, "A box");
        QTRY_COMPARE(QApplication::activeWindow(), rig.screens.last());
        rig.player->NohandleTimeOut(); // the screen in its place asks
        QCOMPARE(answers.texts(), QStringList("A box"));
        rig.screens.last()->close();
    }

    void theMenuReportsToItsActions()
    {
        const std::tuple<int, QString> cases[] = {
            {0, "request 4"},                                              // bookmark the artist
            {1, "request 5"},                                              // bookmark the track
            {2, "request 35"},                                             // sleep
            {3, "request 21"},                                             // why
            {4, "createStation 1"},                                        // create
            {5, "Are you sure you want to delete station: \nStation b ?"}, // delete
            {6, "Are you sure you want to rename station: \nStation b ?"}, // rename
            {7, "selectUser 2"},                                           // switch user
            {8, "wish"},                                                   // exit
            {9, ""},                                                       // close
        };
        for (const auto &[downs, expected] : cases) {
            PlayingRig rig;
            rig.service.ws.clearCalls();
            goTo(rig, 1);
            rig.key(screentest::Select);
            auto *menu = rig.dialog<MenuDlg>();
            QVERIFY(menu);
            QCOMPARE(menu->pos(), QPoint(450, 215));
            for (int i = 0; i < downs; ++i)
                screentest::key(menu, screentest::Down);
            BoxAnswer answers({BoxAnswer::Cancel});
            screentest::key(menu, screentest::Select);
            rig.run();
            QString outcome;
            if (!rig.service.ws.calls().isEmpty())
                outcome = QStringLiteral("request %1").arg(rig.service.ws.commands().last());
            else if (!rig.screens.made().isEmpty())
                outcome = rig.screens.made().last();
            else if (answers.shown() > 0)
                outcome = answers.texts().first();
            else if (!FakeIpc::exitRequests.isEmpty())
                outcome = FakeIpc::exitKinds.last();
            QVERIFY2(outcome == expected, qPrintable(outcome + " for " + expected));
            QVERIFY(!rig.dialog<MenuDlg>());
            if (outcome.startsWith("Are you sure")) {
                QCOMPARE(answers.buttons(), QStringList("Yes|No"));
                QCOMPARE(rig.focused(), QStringList("menuBtn"));
            }
            closeWhateverIsOpen(rig);
        }
    }

    void aMouseClickMovesTheFocusRing()
    {
        PlayingRig rig;
        QTest::mouseClick(rig.button("playBtn"), Qt::LeftButton);
        QCOMPARE(rig.focused(), QStringList("playBtn"));
        QTest::mouseClick(rig.stationsList()->viewport(), Qt::LeftButton, {}, QPoint(100, 20));
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        QCOMPARE(rig.stationsList()->currentRow(), 0);
    }
};

QTEST_MAIN(PlayerFocus)
#include "player_focus_test.moc"
