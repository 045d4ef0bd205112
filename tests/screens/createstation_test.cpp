// Create station: searching, choosing, making, and every way it can fail.

#include "fakes/fakekeyboard.h"
#include "screens/accountfixture.h"
#include "station/createstationdlg.h"
#include "widgets/imagelistwidget.h"

#include <QLabel>
#include <QLineEdit>

using namespace screentest;

namespace {

const QList<FakeSearchArtist> twoArtists = {{"artist-1", "North Window"}, {"artist-2", "Northern Quay"}};
const QList<FakeSearchTrack> twoTracks = {{"song-1", "Northbound", "Ivory Lane"}, {"song-2", "North", "Tall Grass"}};

QPointer<CreateStationDlg> open(int mode = 1)
{
    auto *dialog = new CreateStationDlg(mode);
    dialog->show();
    return dialog;
}

void search(const QString &text)
{
    FakeKeyboard::type(text);
    FakeKeyboard::confirm();
}

ImageListWidget *list(QWidget *dialog)
{
    return child<ImageListWidget>(dialog, "searchResultListWidget");
}

const QString maintenance = QStringLiteral("Velmora is conducting system maintenance.");

} // namespace

class CreateStationTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { registerTypes(); }
    void init() { FakeKeyboard::reset(); }

    void blanksNeverReachTheService()
    {
        for (const QString &text : {QString(), QStringLiteral("   ")}) {
            ScreenFixture fixture;
            const auto dialog = open();
            BoxAnswer box({BoxAnswer::Ok});
            text.isEmpty() ? FakeKeyboard::confirm() : search(text);
            QCOMPARE(box.texts(),
                     QStringList(QStringLiteral("Please enter an artist or track name to create a new station")));
            QCOMPARE(fixture.ws().calls().size(), 0);
            delete dialog;
        }
    }

    void whatIsShownFollowsTheNumbersFound()
    {
        struct Case {
            QList<FakeSearchArtist> artists;
            QList<FakeSearchTrack> tracks;
            int answer; // -1: no question
            QStringList rows;
            QByteArray made; // token that a station was made from at once
        };
        const QStringList artistRows = {QStringLiteral("North Window"), QStringLiteral("Northern Quay")};
        const QStringList trackRows = {QStringLiteral("Northbound by Ivory Lane"), QStringLiteral("North by Tall Grass")};
        const Case cases[] = {
            {twoArtists, {}, -1, artistRows, {}},
            {{}, twoTracks, -1, trackRows, {}},
            {twoArtists.mid(0, 1), {}, -1, artistRows.mid(0, 1), {}},
            {{}, twoTracks.mid(0, 1), -1, trackRows.mid(0, 1), {}},
            {twoArtists, twoTracks, 1, artistRows, {}},
            {twoArtists, twoTracks, 0, trackRows, {}},
            {twoArtists.mid(0, 1), twoTracks.mid(0, 1), 1, {}, "artist-1"},
            {twoArtists.mid(0, 1), twoTracks.mid(0, 1), 0, {}, "song-1"},
        };
        for (const Case &c : cases) {
            ScreenFixture fixture;
            fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK, FakeReply::search(c.tracks, c.artists));
            const auto dialog = open();
            BoxAnswer box(c.answer < 0 ? QList<BoxAnswer::Answer>{}
                                       : QList<BoxAnswer::Answer>{c.answer ? BoxAnswer::Ok : BoxAnswer::Cancel});
            search(QStringLiteral("north"));
            QCOMPARE(fixture.ws().last(VLM_WS_MSGID_SEARCH).params.at(0).toByteArray(), QByteArray("north"));
            if (c.rows.isEmpty()) {
                QTRY_COMPARE(fixture.ws().last(VLM_WS_MSGID_CREATE_STATION).params.value(0).toByteArray(), c.made);
                QCOMPARE(box.texts(), QStringList(QStringLiteral("We found 1 results by artists and 1 results by "
                                                                 "tracks.Which did you mean ?")));
                QCOMPARE(box.buttons(), QStringList(QStringLiteral("Artist|Track")));
            } else {
                QTRY_COMPARE(list(dialog)->count(), int(c.rows.size()));
                QStringList rows;
                for (int i = 0; i < list(dialog)->count(); ++i)
                    rows.append(i == list(dialog)->currentRow() ? list(dialog)->currentItemText()
                                                                : list(dialog)->item(i)->text());
                QCOMPARE(rows, c.rows);
                QCOMPARE(child<QLabel>(dialog, "searchResultNumLabel")->text(),
                         QStringLiteral("1/%1").arg(c.rows.size()));
                QVERIFY(child<QLabel>(dialog, "descriptionLabel")->isHidden());
                QTRY_VERIFY(list(dialog)->hasFocus());
                QVERIFY(!FakeKeyboard::isHighlighted());
                QCOMPARE(fixture.ws().count(VLM_WS_MSGID_CREATE_STATION), 0);
            }
            delete dialog;
        }
    }

    void nothingFoundNamesTheTextCutToForty()
    {
        for (const int length : {40, 41}) {
            ScreenFixture fixture;
            fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK, FakeReply::search({}, {}));
            const auto dialog = open();
            BoxAnswer box({BoxAnswer::Ok});
            search(QString(length, QLatin1Char('x')));
            const QString shown = QString(40, QLatin1Char('x')) + QLatin1String(length > 40 ? "..." : "");
            QTRY_COMPARE(box.texts(), QStringList(QStringLiteral("No result for \n\"%1\"").arg(shown)));
            QTRY_VERIFY(!visibleBox());
            QTRY_VERIFY(child<QLineEdit>(dialog, "searchLabelLineEdit")->hasFocus());
            delete dialog;
        }
    }

    void theKeyThatConfirmedChoosesNothingTheNextOneDoes()
    {
        ScreenFixture fixture;
        fixture.storeAccounts({QStringLiteral("anna@house.example")});
        fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK, FakeReply::search(twoTracks, {}));
        FakeStation made;
        made.token = "brand-new";
        fixture.ws().autoReply(VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_OK, FakeReply::station(made));
        fixture.ws().autoReply(VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_OK,
                               FakeReply::stationListOf({"one", "brand-new"}));
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_MAIN);
        const auto dialog = open();
        search(QStringLiteral("north"));
        QTRY_COMPARE(list(dialog)->count(), 2);
        key(dialog, Select);
        QCOMPARE(fixture.ws().count(VLM_WS_MSGID_CREATE_STATION), 0);
        key(dialog, Down);
        QTest::qWait(120); // the guard's own time
        key(dialog, Select);
        QTRY_COMPARE(fixture.screens().stationCounts(), QList<int>{3});
        QCOMPARE(fixture.ws().last(VLM_WS_MSGID_CREATE_STATION).params.at(0).toByteArray(), QByteArray("song-2"));
        QCOMPARE(fixture.settings().getStationInfo(), QStringLiteral("brand-new"));
        QVERIFY(VelmoraParentWidget::m_ui_type_queue.isEmpty());
        QCOMPARE(fixture.screens().idleRestarts(), 1);
        QTRY_VERIFY(!dialog);
    }

    void rightAndLeftMoveBetweenKeyboardAndList()
    {
        ScreenFixture fixture;
        const auto dialog = open();
        auto *field = child<QLineEdit>(dialog, "searchLabelLineEdit");
        FakeKeyboard::setLastKey(true);
        key(dialog, Right); // nothing in the list
        QTRY_VERIFY(field->hasFocus());
        fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK, FakeReply::search(twoTracks, {}));
        search(QStringLiteral("north"));
        QTRY_VERIFY(list(dialog)->hasFocus());
        key(dialog, Left);
        QTRY_VERIFY(field->hasFocus());
        QVERIFY(FakeKeyboard::isHighlighted());
        FakeKeyboard::setLastKey(false);
        key(dialog, Right);
        QTRY_VERIFY(field->hasFocus());
        FakeKeyboard::setLastKey(true);
        key(dialog, Right);
        QTRY_VERIFY(list(dialog)->hasFocus());
        QVERIFY(!FakeKeyboard::isHighlighted());
        delete dialog;
    }

    void theWordsOfEveryRefusedRequest()
    {
        struct Case {
            int refused;
            VLM_WS_EXT_ERRCODE_T code;
            QString text;
            bool isExit;
        };
        const Case cases[] = {
            {VLM_WS_MSGID_SEARCH, VLM_WS_ERR_INTERNAL, QStringLiteral("Search station failed!You could try again!"), false},
            {VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_INTERNAL,
             QStringLiteral("Create station list failed ,please try later!"), false},
            {VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_MAINTENANCE, maintenance, false},
            {VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_INTERNAL,
             QStringLiteral("Get station list failed ,please try later!"), true}};
        for (const Case &c : cases) {
            ScreenFixture fixture;
            fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK,
                                   FakeReply::search(twoTracks.mid(0, 1), twoArtists.mid(0, 1)));
            FakeStation made;
            made.token = "t";
            fixture.ws().autoReply(VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_OK, FakeReply::station(made));
            fixture.ws().failNext(c.refused, c.code);
            const auto dialog = open();
            BoxAnswer box(c.refused == VLM_WS_MSGID_SEARCH
                              ? QList<BoxAnswer::Answer>{BoxAnswer::Ok}
                              : QList<BoxAnswer::Answer>{BoxAnswer::Ok, BoxAnswer::Ok});
            QSignalSpy exits(dialog.data(), &VelmoraParentWidget::signalExit);
            search(QStringLiteral("north"));
            QTRY_VERIFY(!box.texts().isEmpty() && box.texts().last().startsWith(c.text));
            QTRY_VERIFY(!visibleBox());
            QTRY_COMPARE(exits.size(), c.isExit ? 1 : 0);
            delete dialog;
        }
    }

    void theWordsOfEveryFailedReply()
    {
        struct Case {
            int failing;
            VLM_WS_EXT_ERRCODE_T code;
            QString text;
            bool isExit;
            int signOuts;
        };
        const QString network = QStringLiteral(
            "A network error has occurred.  Please check your network connection and try again.");
        const QString inactive = QStringLiteral("Sorry,this account is no longer active.Please contact");
        const Case cases[] = {
            {VLM_WS_MSGID_SEARCH, VLM_WS_ERR_INTERNAL, QStringLiteral("Search station failed,you could try again!"),
             false, 0},
            {VLM_WS_MSGID_SEARCH, VLM_WS_ERR_ERROR_CURL_FAILURE, network, true, 0},
            {VLM_WS_MSGID_SEARCH, VLM_WS_ERR_ACCOUNT_INACTIVE, inactive, false, 1},
            {VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_MAX_STATIONS,
             QStringLiteral("Sorry, Max stations Reached, create station failed."), false, 0},
            {VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_ACCOUNT_INACTIVE, inactive, false, 1},
            {VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_INTERNAL,
             QStringLiteral("Get station list failed ,please try later!"), true, 0},
            {VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_ACCOUNT_INACTIVE, inactive, false, 1}};
        for (const Case &c : cases) {
            ScreenFixture fixture;
            fixture.screens().player(); // as it is when the player has opened this screen
            fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK,
                                   FakeReply::search(twoTracks.mid(0, 1), twoArtists.mid(0, 1)));
            FakeStation made;
            made.token = "t";
            fixture.ws().autoReply(VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_OK, FakeReply::station(made));
            fixture.ws().autoReply(c.failing, c.code);
            const auto dialog = open();
            BoxAnswer box(c.failing == VLM_WS_MSGID_SEARCH
                              ? QList<BoxAnswer::Answer>{BoxAnswer::Ok}
                              : QList<BoxAnswer::Answer>{BoxAnswer::Ok, BoxAnswer::Ok});
            QSignalSpy exits(dialog.data(), &VelmoraParentWidget::signalExit);
            QSignalSpy fatal(dialog.data(), &VelmoraParentWidget::signalFatalErr);
            search(QStringLiteral("north"));
            QTRY_VERIFY(!box.texts().isEmpty() && box.texts().last().startsWith(c.text));
            QTRY_VERIFY(!visibleBox());
            QTRY_COMPARE(exits.size(), c.isExit ? 1 : 0);
            QTRY_COMPARE(fixture.screens().signOuts(), c.signOuts);
            QCOMPARE(fatal.size(), c.signOuts);
            QTRY_COMPARE(dialog.isNull(), c.signOuts > 0);
            delete dialog;
        }
    }

    void aStationWithoutDataIsNamed()
    {
        ScreenFixture fixture;
        fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK,
                               FakeReply::search(twoTracks.mid(0, 1), twoArtists.mid(0, 1)));
        fixture.ws().autoReply(VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_OK);
        const auto dialog = open();
        BoxAnswer box({BoxAnswer::Ok, BoxAnswer::Ok});
        search(QStringLiteral("north"));
        QTRY_COMPARE(box.shown(), 2);
        QCOMPARE(box.texts().last(),
                 QStringLiteral("Create station failed,because system gets invalid data from Velmora!"));
        QTRY_VERIFY(!visibleBox());
        delete dialog;
    }

    void theOtherModeHandsTheStationOver()
    {
        ScreenFixture fixture;
        fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK,
                               FakeReply::search(twoTracks.mid(0, 1), twoArtists.mid(0, 1)));
        FakeStation made;
        made.token = "t";
        fixture.ws().autoReply(VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_OK, FakeReply::station(made));
        const auto dialog = open(0);
        BoxAnswer box({BoxAnswer::Ok});
        QByteArray token;
        connect(dialog.data(), &CreateStationDlg::signalUpdateStationList, dialog.data(), [&token](HANDLE_T handle) {
            token = wsreply::station(handle)->stationToken;
            velmora_ws_release_handle(handle);
        });
        search(QStringLiteral("north"));
        QTRY_COMPARE(token, QByteArray("t"));
        delete dialog;
    }

    void theEmptiedFieldShowsOtherWordsThanAtTheStart()
    {
        ScreenFixture fixture;
        const auto dialog = open();
        auto *field = child<QLineEdit>(dialog, "searchLabelLineEdit");
        QCOMPARE(field->text(), QStringLiteral("Artist Or Track"));
        FakeKeyboard::type(QStringLiteral("x"));
        FakeKeyboard::clear();
        QCOMPARE(field->text(), QStringLiteral("Artist or Song"));
        auto *caps = child<QLabel>(dialog, "greenContentLabel");
        auto *number = child<QLabel>(dialog, "digitalContentLable");
        QVERIFY(!caps->isHidden() && number->isHidden());
        key(dialog, Red);
        QVERIFY(caps->isHidden() && !number->isHidden());
        delete dialog;
    }
};

QTEST_MAIN(CreateStationTest)
#include "createstation_test.moc"
