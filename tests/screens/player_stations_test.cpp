// The station list of the player screen: filling, order, last station, counter, created and renamed stations.
#include "screens/playerrig.h"

class PlayerStations : public QObject {
    Q_OBJECT
private slots:
    void theOrderOfTheReplyIsKeptAndTheLastStationStarts()
    {
        PlayerRig rig("b");
        rig.fill();
        QCOMPARE(rig.stationsList()->count(), 4);
        QCOMPARE(rig.stationsList()->currentRow(), 2);
        QCOMPARE(rig.text("stationNumLabel"), QStringLiteral("3/4"));
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1);
        QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("b"));
        QVERIFY(rig.isAnimationShown());
        QCOMPARE(rig.text("userNameLabel"), QStringLiteral("listener@example.org"));
        rig.startTracks(2);
        rig.run();
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        QVERIFY(rig.stationsList()->hasFocus());
        rig.key(screentest::Down);
        QCOMPARE(rig.text("stationNumLabel"), QStringLiteral("4/4"));
        rig.key(screentest::Down);
        QCOMPARE(rig.text("stationNumLabel"), QStringLiteral("1/4"));
        rig.fill(PlayerRig::stations({"z", "b", "k"})); // replaces the list
        QStringList names;
        for (int row = 0; row < rig.stationsList()->count(); ++row)
            names.append(rig.stationsList()->item(row)->text());
        QCOMPARE(names, QStringList({"Tapestry", "Station z", "Station b", "Station k"})); // the reply's order
        QCOMPARE(rig.stationsList()->currentRow(), 2);
        QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("b"));
    }

    void anUnknownLastStationStartsTapestryAlsoWhenItIsAlone()
    {
        for (const QList<FakeStation> &own : {PlayerRig::stations(), QList<FakeStation>()}) {
            PlayerRig rig("gone");
            rig.fill(own);
            QCOMPARE(rig.text("stationNumLabel"), QStringLiteral("1/%1").arg(own.size() + 1));
            QCOMPARE(rig.stationsList()->currentRow(), 0);
            QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("tapestry"));
            QCOMPARE(rig.lastStation(), QStringLiteral("tapestry"));
        }
    }

    void aCreatedStationIsSortedInOnceAndStarts()
    {
        PlayingRig rig;
        BoxAnswer answers({BoxAnswer::Ok});
        rig.player->updateStationList(rig.createdStation(PlayerRig::stations({"b"}).first()));
        rig.run();
        QCOMPARE(answers.texts(), QStringList("Now playing...")); // it plays already
        QCOMPARE(rig.stationsList()->count(), 4);
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1);
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        rig.player->updateStationList(rig.createdStation(PlayerRig::stations({"c"}).first()));
        rig.run();
        QCOMPARE(rig.stationsList()->count(), 4);
        QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("c"));
        rig.player->updateStationList(rig.createdStation({.token = "new", .name = "station AA"}));
        rig.run();
        QCOMPARE(rig.stationsList()->count(), 5);
        QCOMPARE(rig.stationsList()->item(2)->text(), QStringLiteral("station AA"));
        QCOMPARE(rig.stationsList()->currentRow(), 2);
        QCOMPARE(rig.lastStation(), QStringLiteral("new"));
        QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("new"));
    }

    void aRenamedStationKeepsTheCursorsRowAndTheFocus()
    {
        PlayingRig rig;
        rig.key(screentest::Up); // row 1, "Station a"
        BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok});
        const auto openRenaming = [&rig] {
            rig.call("renameStation");
            rig.run();
            rig.screens.last()->close();
            rig.player->show();
        };
        openRenaming();
        QCOMPARE(rig.screens.made().last(), QStringLiteral("renameStation Station a a"));
        rig.player->updateStationName("Zebra");
        QCOMPARE(rig.stationsList()->currentRow(), 1);
        QCOMPARE(rig.stationsList()->item(3)->text(), QStringLiteral("Zebra"));
        QCOMPARE(rig.stationsList()->item(1)->text(), QStringLiteral("Station b"));
        QCOMPARE(rig.sent(VLM_WS_MSGID_GET_PLAYLIST), 1); // it plays on
        QCOMPARE(rig.focused(), QStringList("stationListWidget"));
        openRenaming(); // of the station that plays
        rig.key(screentest::Right);
        rig.player->updateStationName("Station B and a great deal more");
        QCOMPARE(rig.text("stationNameLabel"), QStringLiteral("Station B and a great deal mor..."));
        QCOMPARE(rig.focused(), QStringList("menuBtn"));
    }

    void anEmptyReplyKeepsTheListAndItsFirstRow()
    {
        PlayingRig rig("a");
        const HANDLE_T handle = rig.listed({});
        rig.player->fillFromStationList(handle);
        QVERIFY(!rig.service.ws.isLive(handle));
        rig.call("tapestryStation"); // row 0 is read from the reply that was kept
        QCOMPARE(rig.sentText(VLM_WS_MSGID_GET_PLAYLIST), QByteArray("tapestry"));
    }

    void sharedStationsCarryAnArrow()
    {
        PlayerRig rig("a");
        QList<FakeStation> own = PlayerRig::stations({"a", "b"});
        own[1].isShared = true;
        rig.fill(own);
        const auto picture = [&rig](int row) { return rig.stationsList()->item(row)->icon().pixmap(32).toImage(); };
        const auto file = [](const char *name) { return QPixmap(QString::fromLatin1(name)).toImage(); };
        if (file(":/images/common_station_icon_s.png").isNull())
            QSKIP("the images are not linked in");
        QCOMPARE(picture(0), file(":/images/common_tapestry_icon_n_01.png"));
        QCOMPARE(picture(1), file(":/images/common_station_icon_s.png"));
        QCOMPARE(picture(2), file(":/images/common_station_icon_arrow_n.png"));
        // Selected rows show the same picture, not a tinted one.
        QCOMPARE(rig.stationsList()->item(1)->icon().pixmap(32, QIcon::Selected).toImage(), picture(1));
    }

    void aListHasAtMostAHundredRows()
    {
        PlayerRig rig("s50");
        QList<QByteArray> tokens;
        for (int i = 0; i < 99; ++i)
            tokens.append("s" + QByteArray::number(i));
        rig.fill(PlayerRig::stations(tokens));
        QCOMPARE(rig.stationsList()->count(), 100);
        QCOMPARE(rig.stationsList()->currentRow(), 51);
        BoxAnswer answers({BoxAnswer::Ok});
        rig.call("createStation");
        QCOMPARE(answers.texts(),
                 QStringList("Velmora only permits to create 100 stations,so you can not create more stations!"));
        QVERIFY(rig.player->isVisible());
    }
};

QTEST_MAIN(PlayerStations)
#include "player_stations_test.moc"
