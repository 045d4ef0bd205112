// Create station: searching, choosing, creating, and every possible failure.

#include "fakes/fakeipc.h"
#include "fakes/fakekeyboard.h"
#include "fakes/fakenetwork.h"
#include "screens/accountfixture.h"
#include "station/createstationdlg.h"
#include "widgets/imagelistwidget.h"

#include <QLabel>
#include <QLineEdit>

using namespace screentest;

namespace {

const QList<FakeSearchArtist> twoArtists = {{"artist-1", "North Window"}, {"artist-2", "Northern Quay"}};
const QList<FakeSearchTrack> twoTracks = {{"song-1", "Northbound", "Ivory Lane"}, {"song-2", "North", "Tall Grass"}};

QPointer<CreateStationDlg> open(ScreenFixture &fixture, int mode = 1)
{
    return fixture.show(new CreateStationDlg(mode));
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

const FakeReply oneOfEach = FakeReply::search(twoTracks.mid(0, 1), twoArtists.mid(0, 1));

FakeReply made(const QByteArray &token)
{
    return FakeReply::station({.token = token, .name = {}});
}

} // namespace

class CreateStationTest : public QObject {
    Q_OBJECT
private slots:
    void blanksNeverReachTheService()
    {
        for (const QString &text : {QString(), QStringLiteral("   ")}) {
            ScreenFixture fixture;
            const auto dialog = open(fixture);
            BoxAnswer box({BoxAnswer::Ok});
            text.isEmpty() ? FakeKeyboard::confirm() : search(text);
            QCOMPARE(box.texts(), QStringList("Please enter an artist or track name to create a new station"));
            QCOMPARE(fixture.ws().calls().size(), 0);
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
        const QStringList artistRows = {"North Window", "Northern Quay"};
        const QStringList trackRows = {"Northbound by Ivory Lane", "North by Tall Grass"};
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
            const auto dialog = open(fixture);
            BoxAnswer box(c.answer < 0 ? QList<BoxAnswer::Answer>{}
                                       : QList<BoxAnswer::Answer>{c.answer ? BoxAnswer::Ok : BoxAnswer::Cancel});
            search("north");
            QCOMPARE(fixture.ws().last(VLM_WS_MSGID_SEARCH).params.at(0).toByteArray(), QByteArray("north"));
            if (c.rows.isEmpty()) {
                QTRY_COMPARE(fixture.ws().last(VLM_WS_MSGID_CREATE_STATION).params.value(0).toByteArray(), c.made);
                QCOMPARE(box.texts(), QStringList("We found 1 results by artists and 1 results by "
                                                  "tracks.Which did you mean ?"));
                QCOMPARE(box.buttons(), QStringList("Artist|Track"));
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
                QVERIFY(!FakeKeyboard::isHighlighted);
                QCOMPARE(fixture.ws().count(VLM_WS_MSGID_CREATE_STATION), 0);
            }
        }
    }

    void anEmptyResultNamesTheTextCutToFortyAndClearsTheList()
    {
        for (const int length : {40, 41}) {
            ScreenFixture fixture;
            fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK, FakeReply::search(twoTracks, {}));
            const auto dialog = open(fixture);
            search("north");
            QTRY_VERIFY(list(dialog)->hasFocus());
            key(dialog, Left);
            FakeKeyboard::clear();
            fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK, FakeReply::search({}, {}));
            BoxAnswer box({BoxAnswer::Ok});
            search(QString(length, QLatin1Char('x')));
            const QString shown = QString(40, QLatin1Char('x')) + QLatin1String(length > 40 ? "..." : "");
            QTRY_COMPARE(box.answered(), QStringList(QStringLiteral("No result for \n\"%1\"").arg(shown)));
            QTRY_VERIFY(child<QLineEdit>(dialog, "searchLabelLineEdit")->hasFocus());
            QVERIFY(list(dialog)->isHidden() && list(dialog)->count() == 0);
            QVERIFY(!child<QLabel>(dialog, "descriptionLabel")->isHidden());
            QCOMPARE(child<QLabel>(dialog, "searchResultNumLabel")->text(), QString());
        }
    }

    void theConfirmingKeyDoesNotChooseARowTheNextOneDoes()
    {
        ScreenFixture fixture;
        fixture.storeAccounts({"anna@house.example"});
        fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK, FakeReply::search(twoTracks, {}));
        fixture.ws().autoReply(VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_OK, made("brand-new"));
        fixture.ws().autoReply(VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_OK,
                               FakeReply::stationListOf({"one", "brand-new"}));
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_MAIN);
        const auto dialog = open(fixture);
        int madeByConfirming = -1;
        connect(list(dialog)->model(), &QAbstractItemModel::rowsInserted, dialog, [&](const QModelIndex &, int row) {
            if (row == 1) // the list is full as soon as control is back in the event loop
                QTimer::singleShot(0, dialog, [&] {
                    key(dialog, Select);
                    madeByConfirming = fixture.ws().count(VLM_WS_MSGID_CREATE_STATION);
                    key(dialog, Down);
                });
        });
        search("north");
        QTRY_COMPARE(madeByConfirming, 0);
        QTRY_VERIFY((key(dialog, Select), fixture.ws().count(VLM_WS_MSGID_CREATE_STATION) == 1));
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
        const auto dialog = open(fixture);
        auto *field = child<QLineEdit>(dialog, "searchLabelLineEdit");
        FakeKeyboard::isLastKey = true;
        key(dialog, Right); // nothing in the list
        QTRY_VERIFY(field->hasFocus());
        fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK, FakeReply::search(twoTracks, {}));
        search("north");
        QTRY_VERIFY(list(dialog)->hasFocus());
        key(dialog, Left);
        QTRY_VERIFY(field->hasFocus());
        QVERIFY(FakeKeyboard::isHighlighted);
        FakeKeyboard::isLastKey = false;
        key(dialog, Right);
        QTRY_VERIFY(field->hasFocus());
        FakeKeyboard::isLastKey = true;
        key(dialog, Right);
        QTRY_VERIFY(list(dialog)->hasFocus());
        QVERIFY(!FakeKeyboard::isHighlighted);
    }

    void aNetworkLossUnderAFailureMessageEndsTheRadioOnce()
    {
        ScreenFixture fixture;
        fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_ERROR_CURL_FAILURE);
        const auto dialog = open(fixture);
        QSignalSpy exits(dialog.data(), &VelmoraParentWidget::signalExit);
        QStringList texts;
        QTimer look;
        connect(&look, &QTimer::timeout, &look, [&look, &texts] {
            if (!visibleBox())
                return;
            look.stop();
            BoxAnswer home({BoxAnswer::Ok});
            FakeNetwork::lost();
            texts = home.texts();
        });
        look.start(5);
        search("north");
        QTRY_COMPARE(texts, QStringList("Unable to connect to network."));
        QTRY_VERIFY(!visibleBox());
        settle();
        QCOMPARE(exits.size(), 1);
        FakeNetwork::back();
    }

    void everyFailureShowsItsMessageAndHasItsConsequence()
    {
        enum class Way { Stays, Exit, SignOut };
        using enum Way;
        struct Case {
            int failing;
            VLM_WS_EXT_ERRCODE_T code;
            bool isAtOnce; // refused by the library
            QString text;
            Way way;
        };
        const QString inactive = "Sorry,this account is no longer active.Please contact";
        const Case cases[] = {
            {VLM_WS_MSGID_SEARCH, VLM_WS_ERR_INTERNAL, true, "Search station failed!You could try again!", Stays},
            {VLM_WS_MSGID_SEARCH, VLM_WS_ERR_INTERNAL, false, "Search station failed,you could try again!", Stays},
            {VLM_WS_MSGID_SEARCH, VLM_WS_ERR_ERROR_CURL_FAILURE, false, "A network error has occurred.  ", Exit},
            {VLM_WS_MSGID_SEARCH, VLM_WS_ERR_ACCOUNT_INACTIVE, false, inactive, SignOut},
            {VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_INTERNAL, true, "Create station list failed ,please", Stays},
            {VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_MAINTENANCE, true, "Velmora is conducting system", Stays},
            {VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_MAX_STATIONS, false, "Sorry, Max stations Reached, ", Stays},
            {VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_OK, false, "Create station failed,because system", Stays},
            {VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_ACCOUNT_INACTIVE, false, inactive, SignOut},
            {VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_INTERNAL, true, "Get station list failed ,please", Exit},
            {VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_INTERNAL, false, "Get station list failed ,please", Exit},
            {VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_ACCOUNT_INACTIVE, false, inactive, SignOut}};
        for (const Case &c : cases) {
            const Row row(c.text);
            ScreenFixture fixture;
            fixture.screens().player(); // as it is when the player has opened this screen
            fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK, oneOfEach);
            fixture.ws().autoReply(VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_OK, made("t"));
            if (c.isAtOnce)
                fixture.ws().failNext(c.failing, c.code);
            else
                fixture.ws().autoReply(c.failing, c.code);
            const auto dialog = open(fixture);
            BoxAnswer box({BoxAnswer::Ok, BoxAnswer::Ok});
            QSignalSpy exits(dialog.data(), &VelmoraParentWidget::signalExit);
            QSignalSpy fatal(dialog.data(), &VelmoraParentWidget::signalFatalErr);
            search("north");
            QTRY_COMPARE(box.answered().size(), c.failing == VLM_WS_MSGID_SEARCH ? 1 : 2); // after artist or track
            QVERIFY2(box.texts().last().startsWith(c.text), qPrintable(box.texts().last()));
            QTRY_COMPARE(exits.size(), c.way == Exit ? 1 : 0);
            QCOMPARE(FakeIpc::exitKinds, QStringList(exits.size(), "fault"));
            QTRY_COMPARE(fixture.screens().signOuts(), c.way == SignOut ? 1 : 0);
            QCOMPARE(fatal.size(), fixture.screens().signOuts());
            QTRY_COMPARE(dialog.isNull(), c.way == SignOut);
        }
    }

    void theOtherModeHandsTheStationOver()
    {
        ScreenFixture fixture;
        fixture.ws().autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK, oneOfEach);
        fixture.ws().autoReply(VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_OK, made("t"));
        const auto dialog = open(fixture, 0);
        BoxAnswer box({BoxAnswer::Ok});
        QByteArray token;
        connect(dialog.data(), &CreateStationDlg::signalUpdateStationList, dialog.data(), [&token](HANDLE_T handle) {
            token = wsreply::station(handle)->stationToken;
            velmora_ws_release_handle(handle);
        });
        search("north");
        QTRY_COMPARE(token, QByteArray("t"));
    }

    void anEmptiedFieldShowsAnotherPromptThanAtTheStart()
    {
        ScreenFixture fixture;
        const auto dialog = open(fixture);
        auto *field = child<QLineEdit>(dialog, "searchLabelLineEdit");
        QCOMPARE(field->text(), QStringLiteral("Artist Or Track"));
        FakeKeyboard::type("x");
        QVERIFY(!field->isReadOnly());
        FakeKeyboard::clear();
        QCOMPARE(field->text(), QStringLiteral("Artist or Song"));
        QVERIFY(field->isReadOnly());
        auto *caps = child<QLabel>(dialog, "greenContentLabel");
        auto *number = child<QLabel>(dialog, "digitalContentLable");
        QVERIFY(!caps->isHidden() && number->isHidden());
        key(dialog, Red);
        QVERIFY(caps->isHidden() && !number->isHidden());
    }
};

QTEST_MAIN(CreateStationTest)
#include "createstation_test.moc"
