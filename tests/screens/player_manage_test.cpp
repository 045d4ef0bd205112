// Deleting, creating and renaming stations from the player screen, and signing out.
#include "screens/playerrig.h"

#include "service/devicepaths.h"
#include "service/velmorasettings.h"
#include "station/menudlg.h"

#include <dirent.h>

namespace {

int threadsOfThisProcess()
{
    int count = 0;
    if (DIR *dir = opendir("/proc/self/task")) {
        while (readdir(dir))
            ++count;
        closedir(dir);
    }
    return count;
}

void moveTo(PlayerRig &rig, int row)
{
    while (rig.stationsList()->currentRow() != row)
        rig.key(screentest::Down);
}

} // namespace

class PlayerManage : public QObject {
    Q_OBJECT
private slots:
    void whatMayNotBeDeletedOrRenamedIsNot()
    {
        PlayerRig rig("tapestry");
        QList<FakeStation> own = PlayerRig::stations({"a"});
        own[0].allowDelete = own[0].allowRename = false;
        rig.fill(own);
        rig.startTracks(1);
        BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok, BoxAnswer::Ok, BoxAnswer::Ok, BoxAnswer::Ok, BoxAnswer::Ok});
        for (const int row : {0, 1}) {
            moveTo(rig, row);
            rig.call("delStation");
            rig.call("renameStation");
        }
        const QStringList texts = answers.texts();
        QCOMPARE(texts.mid(0, 2),
                 QStringList({"Tapestry station can not be deleted!", "Tapestry station can not be renamed!"}));
        QCOMPARE(texts.value(3), QStringLiteral("This station can not be deleted!")); // after the question
        QCOMPARE(texts.value(5), QStringLiteral("A share station cannot be renamed!"));
        QCOMPARE(rig.sent(VLM_WS_MSGID_DELETE_STATION), 0);
        QVERIFY(rig.player->isVisible());
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
    }

    void deletingAsksFirst()
    {
        for (const bool isYes : {true, false}) {
            PlayerRig rig("b");
            rig.play();
            BoxAnswer answers({isYes ? BoxAnswer::Ok : BoxAnswer::Cancel});
            rig.call("delStation");
            QCOMPARE(answers.texts(), QStringList("Are you sure you want to delete station: \nStation b ?"));
            QCOMPARE(answers.buttons(), QStringList("Yes|No"));
            QVERIFY(answers.icon().contains("MsgBox_Question"));
            QCOMPARE(rig.sent(VLM_WS_MSGID_DELETE_STATION), isYes ? 1 : 0);
            QCOMPARE(rig.isAnimationShown(), isYes);
            if (isYes)
                QCOMPARE(rig.sentText(VLM_WS_MSGID_DELETE_STATION), QByteArray("b"));
            else
                QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        }
    }

    void theQuestionNamesALongNameCutAlsoWhileItsMarqueeRuns()
    {
        PlayerRig rig("a");
        QList<FakeStation> own = PlayerRig::stations({"a"});
        own[0].name = QByteArray(41, 'n');
        rig.fill(own);
        rig.startTracks(1);
        QCOMPARE(rig.stationsList()->item(1)->text(), QString()); // it runs
        BoxAnswer answers({BoxAnswer::Cancel});
        rig.call("delStation");
        QCOMPARE(answers.texts().first(),
                 QStringLiteral("Are you sure you want to delete station: \n") + QString(40, 'n') + "... ?");
    }

    void aDeletionThatFailsIsSaid()
    {
        for (const bool isSent : {true, false}) {
            PlayerRig rig("b");
            rig.play();
            if (!isSent)
                rig.service.ws.failNext(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_OUT_OF_MEMORY);
            BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok});
            rig.call("delStation");
            if (isSent)
                rig.answer(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_INTERNAL);
            QCOMPARE(answers.texts().at(1), isSent
                                                ? QStringLiteral("Delete station failed ,please try later!")
                                                : QStringLiteral("Sorry.Delete station failed,you could try aganin."));
            QCOMPARE(rig.stationsList()->count(), 4);
            QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        }
    }

    void theCursorAndTheMusicAfterADeletion()
    {
        struct Case {
            QByteArray playing;
            int deletedRow;
            int row;
            QByteArray startedAnew; // none: it plays on
        };
        const Case cases[] = {{"b", 2, 2, "c"}, {"c", 3, 2, "b"}, {"b", 1, 1, {}}, {"a", 3, 2, {}}};
        for (const Case &c : cases) {
            PlayerRig rig(c.playing);
            rig.play();
            moveTo(rig, c.deletedRow);
            BoxAnswer answers({BoxAnswer::Ok});
            rig.call("delStation");
            rig.answer(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_OK);
            QCOMPARE(rig.stationsList()->count(), 3);
            QCOMPARE(rig.stationsList()->currentRow(), c.row);
            QCOMPARE(rig.text("stationNumLabel"), QStringLiteral("%1/3").arg(c.row + 1));
            const QByteArray plays = c.startedAnew.isEmpty() ? c.playing : c.startedAnew;
            QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), c.startedAnew.isEmpty() ? 1 : 2);
            QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), plays);
            QCOMPARE(rig.lastStation(), QString(plays));
            if (!c.startedAnew.isEmpty()) {
                QCOMPARE(FakePlayback::types().last(), 3); // the deleted station is silent
                continue;
            }
            QCOMPARE(rig.focused(), QStringList("stationListWidget"));
            while (rig.stationsList()->item(rig.stationsList()->currentRow())->text() != "Station " + QString(plays))
                rig.key(screentest::Up);
            rig.key(screentest::Select); // its row may be another now: it still plays
            QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1);
        }
    }

    void deletingTheOnlyOwnStationLeadsToCreation()
    {
        PlayerRig rig("a");
        rig.fill(PlayerRig::stations({"a"}));
        rig.startTracks(1);
        BoxAnswer answers({BoxAnswer::Ok});
        rig.call("delStation");
        rig.answer(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_OK);
        QVERIFY(!rig.player);
        QCOMPARE(FakePlayback::types().mid(FakePlayback::types().size() - 2), QList<int>({3, 4}));
        QCOMPARE(rig.screens.made(), QStringList("createStation 1"));
        QVERIFY(rig.screens.last()->isVisible());
        QVERIFY(VelmoraParentWidget::m_ui_type_queue.isEmpty());
    }

    void aQuestionThatTheNetworkTookAwayIsNoAnswer()
    {
        PlayerRig rig("b");
        rig.play();
        BoxAnswer answers({BoxAnswer::Nothing, BoxAnswer::Ok});
        QTimer::singleShot(50, rig.player, [] { FakeNetwork::lost(); });
        rig.call("delStation");
        QCOMPARE(rig.sent(VLM_WS_MSGID_DELETE_STATION), 0);
        QCOMPARE(answers.texts().last(), QStringLiteral("Unable to connect to network."));
        QCOMPARE(FakeIpc::exitRequests(), QList<bool>{true});
        QCOMPARE(FakePlayback::types().last(), 2); // paused
    }

    void creatingHidesThePlayer()
    {
        PlayerRig rig("b");
        rig.play();
        rig.call("createStation");
        QVERIFY(!rig.player->isVisible());
        QCOMPARE(rig.screens.made(), QStringList("createStation 1"));
        QVERIFY(rig.screens.last()->isVisible());
        QCOMPARE(VelmoraParentWidget::m_ui_type_queue.value(0), VELMORA_UI_TYPE_MAIN);
        emit rig.screens.last()->signalReturnBtn(); // Back
        rig.run();
        QVERIFY(rig.player->isVisible());
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
    }

    void tapestryStartsByItsAction()
    {
        PlayerRig rig("c");
        rig.play();
        rig.stationsList()->item(3)->setText("A station with a name too wide");
        rig.stationsList()->setFocus();
        QCOMPARE(rig.stationsList()->item(3)->text(), QString()); // its marquee runs
        emit rig.player->signalTapestryStation();
        QCOMPARE(rig.stationsList()->item(3)->text(), QStringLiteral("A station with a name too wide"));
        QCOMPARE(rig.stationsList()->item(0)->text(), QStringLiteral("Tapestry"));
        QCOMPARE(rig.stationsList()->currentRow(), 0);
        QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("tapestry"));
        QCOMPARE(rig.lastStation(), QStringLiteral("tapestry"));
    }

    void signingOutLeadsToTheAccounts()
    {
        PlayerRig rig;
        rig.play();
        PlayerRig::useUpSkips("b");
        QSignalSpy said(rig.player, &VelmoraMainDlg::signalUpdatePlaybackinfo);
        rig.call("signout");
        QCOMPARE(rig.skipsLeft("b"), 6); // afresh for who signs in next
        QVERIFY(said.contains(QVariantList({2, 2, 0, 0})));
        QVERIFY(!PlayerPort::existing());
        rig.run();
        QVERIFY(!rig.player);
        QCOMPARE(rig.screens.made(), QStringList("selectUser 2"));
        QVERIFY(rig.screens.last()->isVisible());
        VelmoraSettings settings(device::settingsFile(), QSettings::IniFormat, nullptr);
        QCOMPARE(settings.getLoginState(), QStringLiteral("1"));
        QCOMPARE(settings.getLastLoginName(), QStringLiteral("listener@example.org"));
    }

    void fiftySignOutsLeaveNothingBehind()
    {
        PlayerRig rig("b");
        rig.service.ws.autoReply(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(3));
        FakePlayback::setAutoPlay(100);
        int threads = 0, objects = 0;
        for (int i = 0; i < 50; ++i) {
            auto *player = VelmoraMainDlg::getInstance();
            player->show();
            player->fillFromStationList(rig.stationList(PlayerRig::stations()));
            rig.run();
            QCOMPARE(screentest::child<QLabel>(player, "songLabel")->text(), QStringLiteral("Song 1"));
            if (i % 2)
                player->signOutAfterError();
            else
                player->signout();
            rig.run();
            rig.screens.last()->close();
            rig.run();
            QVERIFY(!PlayerPort::existing());
            QCOMPARE(rig.service.ws.liveHandles(), 0);
            QCOMPARE(screentest::livingScreens(), 0);
            QCOMPARE(FakePlayback::livingThreads(), 0);
            QCOMPARE(FakeDownload::living(), 0);
            const int topLevels = int(QApplication::topLevelWidgets().size());
            if (i == 0) {
                threads = threadsOfThisProcess();
                objects = topLevels;
            }
            QCOMPARE(topLevels, objects);
        }
        QTRY_COMPARE(threadsOfThisProcess(), threads);
    }

    void aNewPlayerIsMadeAfterSignOut()
    {
        PlayerRig rig;
        rig.play();
        VelmoraMainDlg *first = rig.player;
        rig.call("signout");
        VelmoraMainDlg *second = VelmoraMainDlg::getInstance(); // while the old one waits for its deletion
        QVERIFY(second != first);
        rig.run();
        QCOMPARE(PlayerPort::existing()->screen(), second);
        QCOMPARE(screentest::child<ImageListWidget>(second, "playListWidget")->count(), 0);
        second->close();
    }

    void theReplysOfAClosedPlayerHurtNobody()
    {
        PlayerRig rig;
        rig.play();
        rig.call("explainTrack");
        rig.player->signOutAfterError();
        rig.service.ws.completeNext(VLM_WS_MSGID_EXPLAIN_TRACK, VLM_WS_ERR_INTERNAL);
        FakePlayback::playOk(10);
        rig.run();
        QVERIFY(!rig.player);
        QCOMPARE(screentest::visibleWindows(), QStringList("VelmoraParentWidget"));
    }

    void anOpenDialogGoesWithThePlayer()
    {
        PlayerRig rig;
        rig.play();
        rig.call("explainTrack");
        rig.answer(VLM_WS_MSGID_EXPLAIN_TRACK, VLM_WS_ERR_OK, FakeReply::explanation({"A"}));
        rig.player->close(); // as the end of the application does
        rig.run();
        QVERIFY(!rig.player);
        QCOMPARE(screentest::livingScreens(), 0);
        const QStringList lines = rig.log.lines();
        const QStringList after = lines.mid(lines.indexOf("del VelmoraMainDlg"));
        QVERIFY(after.contains("del WhyDlg"));
        QVERIFY(after.filter("slotDestroyDialog").isEmpty() && after.filter("showShadow").isEmpty());
    }
};

QTEST_MAIN(PlayerManage)
#include "player_manage_test.moc"
