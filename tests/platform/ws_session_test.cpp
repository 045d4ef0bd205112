// Sessions, their renewal and the pace, seen from the service's side.
#include "ws_fixture.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QTest>

namespace {

const auto cb = WsFixture::callback;
const QJsonObject emptyPlaylist{{"entries", QJsonArray{}}};

} // namespace

class WsSessionTest : public QObject {
    Q_OBJECT

private slots:
    void theCallerRenewsARefusedSession()
    {
        WsFixture ws;
        ws.logIn();
        ws.server.answer("getStationList", VLM_WS_ERR_INVALID_AUTH_TOKEN);
        QCOMPARE(ws.wait(velmora_ws_getStationList(1, "dateCreated", "desc", cb, nullptr, &ws.handle)),
                 VLM_WS_ERR_INVALID_AUTH_TOKEN);
        QVERIFY(!ws.last().record()->reply);
        QCOMPARE(ws.server.functions(), QStringList("getStationList"));
        // The caller also renews the partner session of a command that it repeats.
        ws.server.answer("generateDeviceActivationCode", VLM_WS_ERR_INVALID_AUTH_TOKEN);
        QCOMPARE(ws.wait(velmora_ws_generateDeviceActivationCode("001A2B3C4D5E", cb, nullptr, &ws.handle)),
                 VLM_WS_ERR_INVALID_AUTH_TOKEN);
        QCOMPARE(ws.server.seen.size(), 2);
        // The refused token is not sent again.
        QCOMPARE(ws.wait(velmora_ws_sleepSong("t", cb, nullptr, &ws.handle)), VLM_WS_ERR_OK);
        QCOMPARE(ws.server.seen.last().token, QByteArray());
    }

    void theLibraryRenewsThePartnerSessionItself_data()
    {
        QTest::addColumn<QString>("session"); // what the library has before
        QTest::addColumn<QString>("function");
        for (const char *session : {"none", "expired", "refused"}) {
            for (const char *function : {"emailPassword", "createUser", "getUserInfo", "getDeviceInfo"})
                QTest::addRow("%s, %s", session, function) << session << function;
        }
    }

    void theLibraryRenewsThePartnerSessionItself()
    {
        QFETCH(QString, session);
        QFETCH(QString, function);
        WsFixture ws;
        const auto old = WsTestServer::data({{"partnerToken", "old"}, {"expiresIn", session == "expired" ? 0 : 999}});
        const auto fresh = WsTestServer::data({{"partnerToken", "new"}, {"expiresIn", 999}});
        ws.server.answer("partnerLogin", {session == "none" ? fresh : old, fresh});
        if (session != "none")
            QCOMPARE(ws.wait(velmora_ws_partnerLogin(nullptr, nullptr, nullptr, 1, cb, nullptr, &ws.handle)),
                     VLM_WS_ERR_OK);
        const QString deviceKey =
            ws.server.seen.isEmpty() ? QString() : ws.server.seen.first().body["deviceKey"].toString();
        ws.server.seen.clear();
        if (session == "refused")
            ws.server.answer(function, {WsTestServer::code(VLM_WS_ERR_INVALID_AUTH_TOKEN),
                                        WsTestServer::code(VLM_WS_ERR_NOT_AUTHORIZED)});
        else
            ws.server.answer(function, VLM_WS_ERR_NOT_AUTHORIZED);

        HANDLE_T *handle = &ws.handle;
        const auto immediate =
            function == "emailPassword" ? velmora_ws_emailPassword("u", cb, nullptr, handle)
            : function == "createUser"  ? velmora_ws_createUser("u", "p", 0, 0, 0, 0, 0, 0, 0, cb, nullptr, handle)
            : function == "getUserInfo" ? velmora_ws_getUserInfo("u", "p", nullptr, 0, cb, nullptr, handle)
                                        : velmora_ws_getDeviceInfo("d", cb, nullptr, handle);
        // The second answer proves that the request itself was sent, and that only its own completion is reported.
        QCOMPARE(ws.wait(immediate), VLM_WS_ERR_NOT_AUTHORIZED);
        QCOMPARE(ws.last().handle, ws.handle);
        QCOMPARE(ws.count(), session == "none" ? 1 : 2);
        QStringList expected{"partnerLogin", function};
        if (session == "refused")
            expected.prepend(function);
        QCOMPARE(ws.server.functions(), expected);
        QCOMPARE(ws.server.seen.last().token, QByteArray("new"));
        if (!deviceKey.isEmpty())
            QCOMPARE(ws.server.seen.at(expected.size() - 2).body["deviceKey"].toString(), deviceKey);
    }

    void userInformationOfTheSessionIsNeverAnsweredWithAnInvalidToken()
    {
        WsFixture ws;
        ws.logIn();
        ws.server.setScript([](const WsTestServer::Seen &request) {
            return WsTestServer::code(request.token == WsFixture::userToken ? 5097 : 5001);
        });
        QCOMPARE(ws.wait(velmora_ws_getUserInfo(nullptr, nullptr, nullptr, 0, cb, nullptr, &ws.handle)),
                 VLM_WS_ERR_BAD_REQUEST);
        QCOMPARE(ws.server.seen.last().token, QByteArray(WsFixture::partnerToken));
    }

    // As the radio renews: in the callback, partner login, then user login, then the request again.
    void requestsOfARefusedSessionWaitForTheLoginsOfTheCallback()
    {
        WsFixture ws;
        ws.logIn();
        const int before = ws.count();
        bool isRefused = true;
        ws.server.setScript([&isRefused](const WsTestServer::Seen &request) {
            if (request.function == "partnerLogin")
                return WsTestServer::data({{"partnerToken", "p2"}, {"expiresIn", 99}});
            if (request.function == "userLogin") {
                isRefused = false;
                return WsTestServer::data(
                    {{"userToken", "u2"}, {"userName", "mira"}, {"userId", "7"}, {"expiresIn", 99}});
            }
            return WsTestServer::code(isRefused || request.token != "u2" ? 5097 : 5002);
        });
        ws.onCompletion = [](const WsCompletion &done) {
            if (done.result == VLM_WS_ERR_INVALID_AUTH_TOKEN)
                velmora_ws_partnerLogin(nullptr, nullptr, nullptr, 1, cb, nullptr, nullptr);
            else if (done.record()->vlm_ws_CmdID == VLM_WS_MSGID_PARTNER_LOGIN)
                velmora_ws_userLogin("deviceId", nullptr, nullptr, "d", cb, nullptr, nullptr);
        };
        velmora_ws_sleepSong("t", cb, nullptr, nullptr);
        velmora_ws_explainTrack("t", cb, nullptr, nullptr);
        velmora_ws_addSongBookmark("t", cb, nullptr, nullptr);
        QVERIFY(ws.waitFor(before + 5));
        QCOMPARE(ws.server.functions(),
                 QStringList({"sleepSong", "partnerLogin", "userLogin", "explainTrack", "addSongBookmark"}));
        ws.onCompletion = {};
    }

    void aPacedPartnerLoginDelaysNothingElse()
    {
        WsFixture ws;
        ws.logIn(); // the first of them
        const int before = ws.count();
        for (int i = 0; i < 3; ++i)
            velmora_ws_partnerLogin(nullptr, nullptr, nullptr, 1, cb, nullptr, nullptr);
        velmora_ws_sleepSong("t", cb, nullptr, nullptr);
        QElapsedTimer clock;
        clock.start();
        QVERIFY(ws.waitFor(before + 3));
        QCOMPARE(ws.server.functions().mid(0, 3), QStringList({"partnerLogin", "partnerLogin", "sleepSong"}));
        QVERIFY(ws.waitFor(before + 4));
        QVERIFY2(clock.elapsed() >= 950, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(ws.server.functions().last(), QStringLiteral("partnerLogin"));
    }

    void requestsOfAClosedSessionStayQueuedBehindThePacedLogin()
    {
        WsFixture ws;
        ws.scriptLogins();
        const auto closedAtOnce = WsTestServer::data({{"partnerToken", "old"}, {"expiresIn", 0}});
        ws.server.answer("partnerLogin", {closedAtOnce, closedAtOnce, closedAtOnce,
                                          WsTestServer::data({{"partnerToken", "new"}, {"expiresIn", 99}})});
        for (int i = 0; i < 4; ++i)
            velmora_ws_partnerLogin(nullptr, nullptr, nullptr, 1, cb, nullptr, nullptr);
        velmora_ws_userLogin("deviceId", nullptr, nullptr, "d", cb, nullptr, nullptr);
        velmora_ws_disassociateDevice("d", cb, nullptr, nullptr);
        QVERIFY(ws.waitFor(6));
        QCOMPARE(ws.server.functions().mid(3), QStringList({"partnerLogin", "userLogin", "disassociateDevice"}));
        QCOMPARE(ws.server.seen.at(4).token, QByteArray("new"));
        QCOMPARE(ws.server.seen.at(5).token, QByteArray("new"));
    }

    void aStationsSecondPlaylistWaitsAndDelaysNothingElse()
    {
        WsFixture ws;
        ws.logIn();
        const int before = ws.count();
        ws.server.answer("getPlaylist", emptyPlaylist);
        velmora_ws_getPlaylist("two", 0, cb, nullptr, nullptr);
        velmora_ws_getPlaylist("one", 0, cb, nullptr, nullptr);
        velmora_ws_getPlaylist("one", 0, cb, nullptr, nullptr);
        velmora_ws_sleepSong("t", cb, nullptr, nullptr);
        QVERIFY(ws.waitFor(before + 1));
        QElapsedTimer clock;
        clock.start();
        QVERIFY(ws.waitFor(before + 3));
        QCOMPARE(ws.server.functions().mid(0, 3), QStringList({"getPlaylist", "getPlaylist", "sleepSong"}));
        QCOMPARE(ws.server.seen.at(1).body["stationToken"].toString(), "one");
        QVERIFY(ws.waitFor(before + 4));
        QVERIFY2(clock.elapsed() >= 950, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(ws.server.seen.last().body["stationToken"].toString(), "one");
        // Nothing in them plays: the library requests a third playlist, but no fourth.
        for (const auto code : {VLM_WS_ERR_OK, VLM_WS_ERR_NOTHING_PLAYED})
            QCOMPARE(ws.wait(velmora_ws_getPlaylist("one", 0, cb, nullptr, &ws.handle)), code);
        QCOMPARE(ws.server.functions().count("getPlaylist"), 4);
        QCOMPARE(ws.wait(velmora_ws_getPlaylist("one", 0, cb, nullptr, &ws.handle)), VLM_WS_ERR_OK);
    }
};

QTEST_GUILESS_MAIN(WsSessionTest)
#include "ws_session_test.moc"
