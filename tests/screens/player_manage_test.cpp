// Deleting, creating and renaming stations from the player screen, and signing out.
#include "screens/playerrig.h"

#include "service/devicepaths.h"
#include "service/velmoranextlimit.h"
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
    void tapestryIsNeitherDeletedNorRenamed();
    void whatMayNotBeDeletedOrRenamedIsNot();
    void deletingAsksFirst_data();
    void deletingAsksFirst();
    void aLongNameIsCutInTheQuestion();
    void theQuestionNamesAStationWhoseMarqueeRuns();
    void aDeletionThatIsNotSentIsSaid();
    void aDeletionThatFailsIsSaid();
    void deletingThePlayingStationStartsTheNext();
    void deletingTheLastPlayingStationStartsTheOneBefore();
    void deletingAnotherStationPlaysOn();
    void deletingTheLastRowMovesTheCursorUp();
    void deletingTheOnlyOwnStationLeadsToCreation();
    void aQuestionThatTheNetworkTookAwayIsNoAnswer();
    void creatingHidesThePlayer();
    void tapestryStartsByItsAction();
    void signingOutLeadsToTheAccounts();
    void signingOutFromTheMenuIsSafe();
    void signingOutStartsTheSkipsAfresh();
    void fiftySignOutsLeaveNothingBehind();
    void aNewPlayerIsMadeAfterSignOut();
    void theReplysOfAClosedPlayerHurtNobody();
    void anOpenDialogGoesWithThePlayer();
};

void PlayerManage::tapestryIsNeitherDeletedNorRenamed()
{
    PlayerRig rig("tapestry");
    rig.play();
    BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok});
    rig.call("delStation");
    rig.call("renameStation");
    QCOMPARE(answers.texts(),
             QStringList({"Tapestry station can not be deleted!", "Tapestry station can not be renamed!"}));
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
}

void PlayerManage::whatMayNotBeDeletedOrRenamedIsNot()
{
    PlayerRig rig("a");
    QList<FakeStation> own = PlayerRig::stations({"a"});
    own[0].allowDelete = own[0].allowRename = false;
    rig.fill(own);
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(1));
    FakePlayback::playOk(10);
    BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok, BoxAnswer::Ok, BoxAnswer::Ok});
    rig.call("delStation");
    rig.call("renameStation");
    QCOMPARE(answers.texts().at(1), QStringLiteral("This station can not be deleted!"));
    QCOMPARE(answers.texts().at(3), QStringLiteral("A share station cannot be renamed!"));
    QCOMPARE(rig.sent(VLM_WS_MSGID_DELETE_STATION), 0);
    QVERIFY(rig.player->isVisible());
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
}

void PlayerManage::deletingAsksFirst_data()
{
    QTest::addColumn<bool>("isYes");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

void PlayerManage::deletingAsksFirst()
{
    QFETCH(bool, isYes);
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

void PlayerManage::aLongNameIsCutInTheQuestion()
{
    PlayerRig rig("a");
    QList<FakeStation> own = PlayerRig::stations({"a"});
    own[0].name = QByteArray(41, 'n');
    rig.fill(own);
    BoxAnswer answers({BoxAnswer::Cancel});
    rig.call("delStation");
    QCOMPARE(answers.texts().first(),
             QStringLiteral("Are you sure you want to delete station: \n") + QString(40, 'n') + "... ?");
}

void PlayerManage::theQuestionNamesAStationWhoseMarqueeRuns()
{
    PlayerRig rig("a");
    QList<FakeStation> own = PlayerRig::stations({"a"});
    own[0].name = "A station with a name too wide";
    rig.fill(own);
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(1));
    FakePlayback::playOk(10);
    QCOMPARE(rig.stationsList()->item(1)->text(), QString()); // it runs
    BoxAnswer answers({BoxAnswer::Cancel});
    rig.call("delStation");
    QVERIFY(answers.texts().first().contains("A station with a name too wide"));
}

void PlayerManage::aDeletionThatIsNotSentIsSaid()
{
    PlayerRig rig("b");
    rig.play();
    rig.service.ws.failNext(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_OUT_OF_MEMORY);
    BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok});
    rig.call("delStation");
    QCOMPARE(answers.texts().at(1), QStringLiteral("Sorry.Delete station failed,you could try aganin."));
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
}

void PlayerManage::aDeletionThatFailsIsSaid()
{
    PlayerRig rig("b");
    rig.play();
    BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok});
    rig.call("delStation");
    rig.answer(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_INTERNAL);
    QCOMPARE(answers.texts().at(1), QStringLiteral("Delete station failed ,please try later!"));
    QCOMPARE(rig.stationsList()->count(), 4);
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
}

void PlayerManage::deletingThePlayingStationStartsTheNext()
{
    PlayerRig rig("b");
    rig.play();
    BoxAnswer answers({BoxAnswer::Ok});
    rig.call("delStation");
    rig.answer(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_OK);
    QCOMPARE(rig.stationsList()->count(), 3);
    QCOMPARE(rig.stationsList()->currentRow(), 2);
    QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("c"));
    QCOMPARE(rig.lastStation(), QStringLiteral("c"));
    QCOMPARE(FakePlayback::types().last(), 3); // the deleted station is silent
}

void PlayerManage::deletingTheLastPlayingStationStartsTheOneBefore()
{
    PlayerRig rig("c");
    rig.play();
    BoxAnswer answers({BoxAnswer::Ok});
    rig.call("delStation");
    rig.answer(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_OK);
    QCOMPARE(rig.stationsList()->currentRow(), 2);
    QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("b"));
}

void PlayerManage::deletingAnotherStationPlaysOn()
{
    PlayerRig rig("b");
    rig.play();
    moveTo(rig, 1);
    BoxAnswer answers({BoxAnswer::Ok});
    rig.call("delStation");
    rig.answer(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_OK);
    QCOMPARE(rig.stationsList()->count(), 3);
    QCOMPARE(rig.stationsList()->currentRow(), 1);
    QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1);
    rig.key(screentest::Select); // "b" moved into this row, and it plays
    QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1);
}

void PlayerManage::deletingTheLastRowMovesTheCursorUp()
{
    PlayerRig rig("a");
    rig.play();
    moveTo(rig, 3);
    BoxAnswer answers({BoxAnswer::Ok});
    rig.call("delStation");
    rig.answer(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_OK);
    QCOMPARE(rig.stationsList()->currentRow(), 2);
    QCOMPARE(rig.text("stationNumLabel"), QStringLiteral("3/3"));
    QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1);
    QCOMPARE(rig.focused(), QStringList("stationListWidget"));
}

void PlayerManage::deletingTheOnlyOwnStationLeadsToCreation()
{
    PlayerRig rig("a");
    rig.fill(PlayerRig::stations({"a"}));
    rig.answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, PlayerRig::tracks(1));
    FakePlayback::playOk(10);
    BoxAnswer answers({BoxAnswer::Ok});
    rig.call("delStation");
    rig.answer(VLM_WS_MSGID_DELETE_STATION, VLM_WS_ERR_OK);
    QVERIFY(!rig.player);
    QCOMPARE(FakePlayback::types().mid(FakePlayback::types().size() - 2), QList<int>({3, 4}));
    QCOMPARE(rig.screens.made(), QStringList("createStation 1"));
    QVERIFY(rig.screens.last()->isVisible());
    QVERIFY(VelmoraParentWidget::m_ui_type_queue.isEmpty());
}

void PlayerManage::aQuestionThatTheNetworkTookAwayIsNoAnswer()
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

void PlayerManage::creatingHidesThePlayer()
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

void PlayerManage::tapestryStartsByItsAction()
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

void PlayerManage::signingOutLeadsToTheAccounts()
{
    PlayerRig rig;
    rig.play();
    QSignalSpy said(rig.player, &VelmoraMainDlg::signalUpdatePlaybackinfo);
    rig.call("signout");
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

void PlayerManage::signingOutFromTheMenuIsSafe()
{
    PlayerRig rig;
    rig.play();
    rig.call("menuSong");
    auto *menu = rig.dialog<MenuDlg>();
    QVERIFY(menu);
    for (int i = 0; i < 7; ++i)
        screentest::key(menu, screentest::Down);
    screentest::key(menu, screentest::Select);
    rig.run();
    QVERIFY(!rig.player);
    QCOMPARE(screentest::livingScreens(), 1);
}

void PlayerManage::signingOutStartsTheSkipsAfresh()
{
    PlayerRig rig("b");
    rig.play();
    for (int i = 0; i < 6; ++i)
        VelmoraNextLimit::getInstance()->addIntoQueue("b");
    rig.call("signout");
    QCOMPARE(rig.skipsLeft("b"), 6);
}

void PlayerManage::fiftySignOutsLeaveNothingBehind()
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

void PlayerManage::aNewPlayerIsMadeAfterSignOut()
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

void PlayerManage::theReplysOfAClosedPlayerHurtNobody()
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

void PlayerManage::anOpenDialogGoesWithThePlayer()
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

QTEST_MAIN(PlayerManage)
#include "player_manage_test.moc"
