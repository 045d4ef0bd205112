// Deleting, creating and renaming stations from the player screen, and signing out.
#include "screens/playerrig.h"

#include "service/devicepaths.h"
#include "service/velmorasettings.h"
#include "station/menudlg.h"

#include <QDir>

namespace {

int threadsOfThisProcess()
{
    return int(QDir("/proc/self/task").entryList(QDir::Dirs).size());
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
    void protectedStationsAreNeitherDeletedNorRenamed()
    {
        PlayerRig rig("tapestry");
        QList<FakeStation> own = PlayerRig::stations({"a"});
        own[0].allowDelete = own[0].allowRename = false;
        rig.fill(own);
        rig.startTracks(1);
        BoxAnswer answers({}); // confirms all
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

    void deletingAsksFirstAndShowsAFailure()
    {
        struct Case {
            bool isYes, isRefused;
            const char *failure;
        };
        const Case cases[] = {{false, false, ""},
                              {true, true, "Sorry.Delete station failed,you could try aganin."},
                              {true, false, "Delete station failed ,please try later!"}};
        for (const auto &[isYes, isRefused, failure] : cases) {
            PlayingRig rig;
            if (isRefused)
                rig.service.ws.failNext(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_OUT_OF_MEMORY);
            BoxAnswer answers({isYes ? BoxAnswer::Ok : BoxAnswer::Cancel, BoxAnswer::Ok});
            rig.call("delStation");
            QCOMPARE(answers.texts().first(), QStringLiteral("Are you sure you want to delete station: \nStation b ?"));
            QCOMPARE(answers.buttons().first(), QStringLiteral("Yes|No"));
            QCOMPARE(rig.sent(VLM_WS_MSGID_DELETE_STATION), isYes ? 1 : 0);
            QCOMPARE(rig.isAnimationShown(), isYes && !isRefused);
            if (isYes && !isRefused) {
                QCOMPARE(rig.sentText(VLM_WS_MSGID_DELETE_STATION), QByteArray("b"));
                rig.answer(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_INTERNAL);
            }
            QCOMPARE(answers.texts().value(1), QString(failure));
            QCOMPARE(rig.stationsList()->count(), 4);
            QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        }
    }

    void theQuestionShortensALongNameEvenDuringItsMarquee()
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
            const Row row(QStringLiteral("%1 plays, row %2 deleted").arg(QString(c.playing)).arg(c.deletedRow));
            PlayingRig rig(c.playing);
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
                QCOMPARE(FakePlayback::types.last(), 3); // the deleted station is silent
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
        QCOMPARE(FakePlayback::types.mid(FakePlayback::types.size() - 2), QList<int>({3, 4}));
        QCOMPARE(rig.screens.made(), QStringList("createStation 1"));
        QVERIFY(rig.screens.last()->isVisible());
        QVERIFY(VelmoraParentWidget::m_ui_type_queue.isEmpty());
    }

    void tapestryStartsByItsAction()
    {
        PlayingRig rig("c");
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
        PlayingRig rig;
        PlayerRig::useUpSkips("b");
        QSignalSpy said(rig.player, &VelmoraMainDlg::signalUpdatePlaybackinfo);
        rig.call("signout");
        QCOMPARE(rig.takeSkips("b"), 6); // afresh for who signs in next
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
        FakePlayback::autoPlaySeconds = 100;
        int threads = 0;
        qsizetype objects = 0;
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
            QCOMPARE(rig.service.ws.liveHandles() + screentest::livingScreens(), 0);
            QCOMPARE(FakePlayback::livingThreads + FakeDownload::living, 0);
            if (i == 0) {
                threads = threadsOfThisProcess();
                objects = QApplication::topLevelWidgets().size();
            }
            QCOMPARE(QApplication::topLevelWidgets().size(), objects);
        }
        QTRY_VERIFY(threadsOfThisProcess() <= threads);
    }

    void aNewPlayerIsMadeAfterSignOut()
    {
        PlayingRig rig;
        VelmoraMainDlg *first = rig.player;
        rig.call("signout");
        VelmoraMainDlg *second = VelmoraMainDlg::getInstance(); // while the old one waits for its deletion
        QVERIFY(second != first);
        rig.run();
        QCOMPARE(PlayerPort::existing()->screen(), second);
        QCOMPARE(screentest::child<ImageListWidget>(second, "playListWidget")->count(), 0);
        second->close();
    }

    void repliesForAClosedPlayerAreHarmless()
    {
        PlayingRig rig;
        rig.call("explainTrack");
        rig.player->signOutAfterError();
        rig.service.ws.completeNext(VLM_WS_MSGID_EXPLAIN_TRACK, VLM_WS_ERR_INTERNAL);
        FakePlayback::playOk(10);
        rig.run();
        QVERIFY(!rig.player);
        QCOMPARE(screentest::visibleWindows(), QStringList("VelmoraParentWidget"));
    }

    void anOpenDialogClosesWithThePlayer()
    {
        PlayingRig rig;
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
