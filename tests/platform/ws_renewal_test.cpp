// The real adapter over the real library, with a service that refuses every session.
#include "fakes/devicetwin.h"
#include "fakes/row.h"
#include "service/velmorametatypes.h"
#include "unit/service_requests.h"
#include "ws_fixture.h"

#include <QCoreApplication>
#include <QTest>
#include <QTimer>

#include <functional>

using requests::Service;
using requests::Wrapper;
using requests::wrappers;
using Seen = WsTestServer::Seen;

namespace {

const auto refused = WsTestServer::code(VLM_WS_ERR_INVALID_AUTH_TOKEN);
const WsTestServer::Reply cut{"HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\n{", true};

WsTestServer::Reply partnerIn()
{
    return WsTestServer::data({{"partnerToken", WsFixture::partnerToken}, {"expiresIn", 99}});
}

WsTestServer::Reply userIn()
{
    return WsTestServer::data(
        {{"userToken", WsFixture::userToken}, {"userName", "mira"}, {"userId", "7"}, {"expiresIn", 99}});
}

// A service that answers 5097 to everything except logins, and the expected result of each kind of request.
struct Trouble {
    const char *name;
    std::function<WsTestServer::Reply(const Seen &)> login;
    int ofUserRequests;
    int ofPartnerRequests;
    int ofUserLogin;
};

const QList<Trouble> &troubles()
{
    static const QList<Trouble> list{
        {"the device is unknown",
         [](const Seen &request) {
             return request.function == "partnerLogin" ? partnerIn() : WsTestServer::code(VLM_WS_ERR_DEVICE_NOT_FOUND);
         },
         VLM_WS_ERR_DEVICE_NOT_FOUND, VLM_WS_ERR_INVALID_AUTH_TOKEN_2, VLM_WS_ERR_DEVICE_NOT_FOUND},
        {"the partner login breaks",
         [](const Seen &request) { return request.function == "partnerLogin" ? cut : refused; },
         VLM_WS_ERR_ERROR_CURL_FAILURE, VLM_WS_ERR_ERROR_CURL_FAILURE, VLM_WS_ERR_ERROR_CURL_FAILURE},
        {"every new session is refused",
         [](const Seen &request) { return request.function == "partnerLogin" ? partnerIn() : userIn(); },
         VLM_WS_ERR_INVALID_AUTH_TOKEN_2, VLM_WS_ERR_INVALID_AUTH_TOKEN_2, VLM_WS_ERR_OK},
        {"the user login is refused too",
         [](const Seen &request) { return request.function == "partnerLogin" ? partnerIn() : refused; },
         VLM_WS_ERR_INVALID_AUTH_TOKEN_2, VLM_WS_ERR_INVALID_AUTH_TOKEN_2, VLM_WS_ERR_INVALID_AUTH_TOKEN_2},
        {"the partner login is refused", [](const Seen &) { return refused; }, VLM_WS_ERR_INVALID_AUTH_TOKEN_2,
         VLM_WS_ERR_INVALID_AUTH_TOKEN_2, VLM_WS_ERR_INVALID_AUTH_TOKEN_2},
    };
    return list;
}

// The radio's side, with the signals that its screens would see.
class Radio {
public:
    explicit Radio(const Trouble &trouble)
        : m_ws("state_dir=" + stateFolder() + '\n')
    {
        DeviceTwin::setPrivateRoot(m_ws.folder.path());
        m_ws.server.setScript([&trouble](const Seen &request) {
            return request.function == "partnerLogin" || request.function == "userLogin" ? trouble.login(request)
                                                                                         : refused;
        });
    }
    ~Radio() { delete Service::getInstance(); }

    void send(const Wrapper &wrapper)
    {
        QObject::connect(Service::getInstance(), wrapper.signal, &m_context,
                         [this, &wrapper](HANDLE_T handle, VLM_WS_EXT_ERRCODE_T code, VOID *) {
                             results.append({wrapper.cmd, code});
                             velmora_ws_release_handle(handle);
                         });
        HANDLE_T handle = 0;
        QCOMPARE(wrapper.call(Service::getInstance(), false, nullptr, &handle), VLM_WS_ERR_OK);
    }
    // Waits until there are so many results. The library throttles logins, so this takes a while.
    void waitFor(qsizetype number)
    {
        QTimer limit;
        limit.setSingleShot(true);
        limit.start(40'000);
        while (results.size() < number && limit.isActive())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    int partnerLogins() const { return int(m_ws.server.functions().count("partnerLogin")); }

    QList<std::pair<int, int>> results; // command, code

private:
    // Shared by all tests, because writing the state of a new device is slow.
    static QByteArray stateFolder()
    {
        static const QTemporaryDir folder;
        return folder.filePath("state").toUtf8();
    }

    WsFixture m_ws;
    QObject m_context;
};

} // namespace

class WsRenewalTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { registerVelmoraMetaTypes(); }

    void everyKindOfRequestIsAnsweredOnce()
    {
        const QSet<int> partnerRequests{6, 7, 8, 24, 26, 31};
        for (const Trouble &trouble : troubles()) {
            for (const Wrapper &wrapper : wrappers()) {
                const bool isSentAgain = VLM_WS_IS_SENT_AGAIN(wrapper.cmd);
                const bool isPartner = partnerRequests.contains(wrapper.cmd);
                if (wrapper.cmd == VLM_WS_MSGID_PARTNER_LOGIN)
                    continue; // part of every case
                if (!isSentAgain && !isPartner && &trouble != &troubles().first())
                    continue; // answered without any login
                const Row row(
                    QStringLiteral("%1: %2").arg(QLatin1String(trouble.name), QLatin1String(wrapper.signalName)));
                Radio radio(trouble);
                radio.send(wrapper);
                const bool isUserLogin = wrapper.cmd == VLM_WS_MSGID_USER_LOGIN;
                int code = trouble.ofUserRequests;
                if (isUserLogin)
                    code = trouble.ofUserLogin;
                else if (isPartner)
                    code = trouble.ofPartnerRequests;
                else if (!isSentAgain)
                    code = VLM_WS_ERR_INVALID_AUTH_TOKEN_2;
                radio.waitFor(1);
                QCOMPARE(radio.results, (QList<std::pair<int, int>>{{wrapper.cmd, code}}));
                if (isSentAgain && !isUserLogin)
                    QCOMPARE(radio.partnerLogins(), 3);
                else
                    QVERIFY(radio.partnerLogins() <= 1);
            }
        }
    }

    void requestsThatWaitTogetherAreAllAnswered()
    {
        const QList<int> together{VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE,
                                  VLM_WS_MSGID_EMAIL_PASSWORD};
        Radio radio(troubles().first()); // takes some seconds: the logins are paced
        for (const Wrapper &wrapper : wrappers()) {
            if (together.contains(wrapper.cmd))
                radio.send(wrapper);
        }
        radio.waitFor(together.size());
        QSet<int> answered;
        for (const auto &[cmd, code] : radio.results)
            answered.insert(cmd);
        QCOMPARE(answered, QSet<int>(together.begin(), together.end()));
    }
};

QTEST_GUILESS_MAIN(WsRenewalTest)
#include "ws_renewal_test.moc"
