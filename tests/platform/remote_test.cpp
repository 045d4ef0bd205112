// The radio's end of the channel to telephones: what becomes of orders, when something is reported, and velmora-remote
// itself between a service and a menu system of the test's.

#include "orders.h"
#include "reporter.h"
#include "ws_testserver.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

namespace menu = netcommon::menu;
using menu::MessageType;

class RemoteTest : public QObject {
    Q_OBJECT
private slots:
    void ordersBecomeRequestsOfTheMenuSystemAndNothingElse()
    {
        struct Case {
            const char *order;
            MessageType type; // 0: none
            std::uint32_t value;
            std::uint32_t flag;
            const char *text;
        };
        constexpr auto none = MessageType(0);
        const Case cases[] = {
            {R"({"key":"up"})", MessageType::Key, Qt::Key_Up, menu::phoneKey, ""},
            {R"({"key":"backspace"})", MessageType::Key, Qt::Key_Backspace, menu::typedKey, ""},
            {R"({"volume":40})", MessageType::Volume, 40, 0, ""},
            {R"({"sleep":"15"})", MessageType::Sleep, 15, 0, ""},
            {R"({"sleep":"off"})", MessageType::Sleep, 0, 2, ""},
            {R"({"station":2,"name":"Ré: x"})", MessageType::Station, 2, 0, "R\xc3\xa9: x"},
            {R"({"field":7,"text":"a b"})", MessageType::Field, 7, 0, "a b"},
            {R"({"field":7,"text":""})", MessageType::Field, 7, 0, ""},
            {R"({"field":7,"done":true,"text":"x"})", MessageType::Field, 7, menu::fieldDone, ""},
            {R"({})", none, 0, 0, ""},
            {R"({"key":"power"})", none, 0, 0, ""},
            {R"({"key":7})", none, 0, 0, ""},
            {R"({"volume":101})", none, 0, 0, ""},
            {R"({"volume":"40"})", none, 0, 0, ""},
            {R"({"sleep":"14"})", none, 0, 0, ""},
            {R"({"station":-1})", none, 0, 0, ""},
            {R"({"field":0,"text":"a"})", none, 0, 0, ""},
            {R"({"field":7})", none, 0, 0, ""},
            {R"({"exit":true})", none, 0, 0, ""},
        };
        for (const Case &c : cases) {
            const auto request = remote::requestFor(QJsonDocument::fromJson(c.order).object());
            QVERIFY2(request.has_value() == (c.type != none), c.order);
            if (!request)
                continue;
            QCOMPARE(menu::typeOf(request->message), c.type);
            QCOMPARE(menu::field(request->message, menu::valueOffset), c.value);
            QCOMPARE(menu::field(request->message, menu::flagOffset), c.flag);
            QCOMPARE(request->text, QByteArray(c.text));
        }
    }

    void timeThatPassesIsNoNews()
    {
        const auto at = [](int position, const char *playback) {
            return QJsonObject{{"position", position}, {"playback", playback}, {"title", "a"}};
        };
        QVERIFY(!remote::isNews(at(10, "playing"), at(70, "playing"), 60));
        QVERIFY(remote::isNews(at(10, "playing"), at(13, "playing"), 60)); // it stood still
        QVERIFY(!remote::isNews(at(10, "paused"), at(10, "paused"), 60));
        QVERIFY(remote::isNews(at(10, "playing"), at(11, "paused"), 1));
        QVERIFY(remote::isNews(at(100, "playing"), at(1, "playing"), 1)); // the next track
    }

    void ordersArriveAndWhatIsShownIsReportedWhileSomebodyLooks()
    {
        const QByteArray key(43, 'k');
        QTemporaryDir folder;
        QFile state(folder.filePath("device"));
        QVERIFY(state.open(QIODevice::WriteOnly));
        state.write("velmora-ws-state 1\nmac=001A2B3C4D5E\nkey=" + key + "\n");
        state.close();
        const QByteArray socket = folder.filePath("menu.sock").toUtf8();
        QString reason;
        const int listener = menu::listenAt(socket, &reason);
        QVERIFY2(listener >= 0, qPrintable(reason));

        WsTestServer service;
        const auto orders = [](const QJsonArray &list, int last, bool isWatched) {
            return WsTestServer::data({{"epoch", "e"}, {"last", last}, {"isWatched", isWatched}, {"orders", list}});
        };
        service.answer("partnerLogin", QJsonObject{{"partnerToken", "sesame"}});
        service.answer("remoteOrders",
                       {orders({}, 3, false), WsTestServer::code(5097),
                        orders({QJsonObject{{"key", "up"}}, QJsonObject{{"field", 1}, {"text", "hush"}}}, 5, true),
                        WsTestServer::Reply{}});
        service.answer("remoteReport", QJsonObject{{"isWatched", false}});

        QProcess program;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("VELMORA_WS_SERVER", QString::fromLatin1(service.address()));
        environment.insert("VELMORA_WS_STATE_DIR", folder.path());
        environment.insert("VELMORA_MENU_SOCKET", QString::fromUtf8(socket));
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QStringLiteral(REMOTE_PROGRAM), QStringList());

        QList<int> peers;
        QList<menu::Packet> packets;
        const auto served = [&] {
            if (const int peer = menu::acceptPeer(listener); peer >= 0)
                peers += peer;
            for (const int peer : peers) {
                menu::Packet packet;
                if (menu::receive(peer, packet) != menu::Received::Packet)
                    continue;
                if (menu::typeOf(packet.message) == MessageType::Shown)
                    menu::send(peer, menu::makeMessage(MessageType::Answer), R"({"title":"Lamps","position":1})");
                else
                    packets += packet;
            }
            return service.functions().contains("remoteReport") && packets.size() == 2 &&
                   service.functions().count("remoteOrders") == 4;
        };
        QTRY_VERIFY_WITH_TIMEOUT(served(), 20000);
        QCOMPARE(menu::typeOf(packets[0].message), MessageType::Key);
        QCOMPARE(packets[1].text, QByteArray("hush"));
        QCOMPARE(service.functions().count("partnerLogin"), 2); // anew after the refusal
        QJsonObject last;
        for (const auto &seen : service.seen) {
            if (seen.function == "partnerLogin")
                QCOMPARE(seen.body["deviceKey"].toString().toLatin1(), key);
            else
                QCOMPARE(seen.token, QByteArray("sesame"));
            if (seen.function == "remoteOrders")
                last = seen.body;
            if (seen.function == "remoteReport")
                QCOMPARE(seen.body["title"].toString(), "Lamps");
            QVERIFY(!seen.head.split('\n').first().contains("sesame"));
        }
        QCOMPARE(last["after"].toInt(), 5); // what has arrived is not asked for again
        QCOMPARE(last["epoch"].toString(), "e");
        program.kill();
        program.waitForFinished();
        const QByteArray said = program.readAll();
        for (const char *secret : {"sesame", "hush", key.constData()})
            QVERIFY2(!said.contains(secret), said.constData());
        for (const int peer : peers)
            ::close(peer);
        ::close(listener);
    }
};

QTEST_GUILESS_MAIN(RemoteTest)
#include "remote_test.moc"
