#include "fakes/devicetwin.h"
#include "fakes/fakewsfixture.h"
#include "fakes/logcapture.h"
#include "fakes/row.h"
#include "service/velmorametatypes.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

// Records what screens would see: every completion signal that a renewal can affect. Releases handles as a screen does.
class Receiver : public QObject {
public:
    explicit Receiver(VelmoraWebService *service)
    {
        const auto watch = [this, service](auto signal, const char *name) {
            connect(service, signal, this, [this, name](HANDLE_T handle, VLM_WS_EXT_ERRCODE_T code, VOID *tag) {
                seen.append(QStringLiteral("%1 %2 tag %3")
                                .arg(QString::fromLatin1(name))
                                .arg(code)
                                .arg(reinterpret_cast<quintptr>(tag)));
                velmora_ws_release_handle(handle);
            });
        };
        watch(&VelmoraWebService::signalParterLoginDone, "partnerLogin");
        watch(&VelmoraWebService::signalUserLoginDone, "userLogin");
        watch(&VelmoraWebService::signalGetStationListDone, "stationList");
        watch(&VelmoraWebService::signalGetPlaylistDone, "playlist");
        watch(&VelmoraWebService::signalGetUserInfoDone, "userInfo");
        watch(&VelmoraWebService::signalGenerateDeviceActivationCodeDone, "code");
        watch(&VelmoraWebService::signalAddFeedbackDone, "feedback");
    }
    QStringList seen;
};

class ServiceRenewalTest : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<FakeWsFixture> m_fixture;
    std::unique_ptr<Receiver> m_receiver;
    VelmoraWebService *m_service = nullptr;
    bool m_isLossExpected = false;

    FakeWs &ws() { return m_fixture->ws; }
    VOID *tag() { return reinterpret_cast<VOID *>(quintptr(77)); }
    HANDLE_T requestStationList()
    {
        HANDLE_T handle = 0;
        m_service->getStationList(1, "dateCreated", "desc", false, tag(), &handle);
        return handle;
    }
    void expireNext(int cmd) { ws().replyNext(cmd, VLM_WS_ERR_INVALID_AUTH_TOKEN); }
    void logIn()
    {
        ws().autoReply(2, VLM_WS_ERR_OK, FakeReply::partnerLogin());
        ws().autoReply(3, VLM_WS_ERR_OK, FakeReply::userLogin("ann"));
    }

private slots:
    void initTestCase() { registerVelmoraMetaTypes(); }
    void init()
    {
        m_root = std::make_unique<QTemporaryDir>();
        DeviceTwin::setPrivateRoot(m_root->path());
        m_fixture = std::make_unique<FakeWsFixture>(FakeWs::Delivery::OnDemand);
        m_service = VelmoraWebService::getInstance();
        m_receiver = std::make_unique<Receiver>(m_service);
        m_isLossExpected = false;
        deviceSettings().setLastLogin("ann", "3");
    }
    void cleanup()
    {
        m_receiver.reset();
        delete m_service;
        if (m_isLossExpected)
            ws().reset();
        m_fixture.reset();
    }

    void anExpiredTokenIsRenewedSilentlyAndTheRequestRepeatedWithoutItsTag()
    {
        logIn();
        expireNext(29);
        ws().autoReply(29, VLM_WS_ERR_OK, FakeReply::stationListOf({"s1"}));
        const HANDLE_T first = requestStationList();
        ws().deliver();
        QCOMPARE(ws().commands(), QList<int>({29, 2, 3, 29}));
        QCOMPARE(m_receiver->seen, QStringList("stationList 0 tag 0"));
        QCOMPARE(ws().calls().at(1).params, QVariantList({QVariant(), QVariant(), QVariant(), 1}));
        QCOMPARE(ws().calls().at(2).params,
                 QVariantList({QByteArray("deviceId"), QVariant(), QVariant(), QByteArray("001A2B3C4D5E-3")}));
        QCOMPARE(ws().calls().at(3).params, ws().calls().at(0).params);
        QVERIFY(!ws().isLive(first));
    }

    void eachRenewalMakesTheLoginsThatItsOwnRequestNeeds()
    {
        logIn();
        expireNext(8);
        ws().autoReply(8, VLM_WS_ERR_OK, FakeReply::activationCode("ABC", "http://x"));
        HANDLE_T handle = 0;
        m_service->generateDeviceActivationCode("001A2B3C4D5E", false, tag(), &handle);
        ws().deliver();
        expireNext(29);
        ws().autoReply(29, VLM_WS_ERR_OK, FakeReply::stationListOf({"s1"}));
        requestStationList();
        ws().deliver();
        QCOMPARE(ws().commands(), QList<int>({8, 2, 8, 29, 2, 3, 29}));
        QCOMPARE(m_receiver->seen, QStringList({"code 0 tag 0", "stationList 0 tag 0"}));
    }

    void anInactiveAccountDuringARenewalEndsTheWaitingRequestAtOnce()
    {
        ws().autoReply(2, VLM_WS_ERR_OK);
        ws().autoReply(3, VLM_WS_ERR_ACCOUNT_INACTIVE);
        expireNext(29);
        requestStationList();
        ws().deliver();
        QCOMPARE(ws().commands(), QList<int>({29, 2, 3}));
        QCOMPARE(m_receiver->seen, QStringList("stationList 5099 tag 0"));
        // and the renewal is over: the next partner login is a screen's again
        HANDLE_T handle = 0;
        m_service->partnerLogin(nullptr, nullptr, nullptr, 1, false, nullptr, &handle);
        ws().deliver();
        QCOMPARE(m_receiver->seen.last(), QStringLiteral("partnerLogin 0 tag 0"));
    }

    void anInactiveAccountOfTheWaitingRequestIsReportedWithoutANewRenewal()
    {
        logIn();
        expireNext(3);
        HANDLE_T handle = 0;
        m_service->userLogin("user", "pw", "ann", "\0\1\2\3\4\5", false, tag(), &handle);
        ws().replyNext(2, VLM_WS_ERR_ACCOUNT_INACTIVE);
        ws().deliver();
        QCOMPARE(m_receiver->seen, QStringList("userLogin 5099 tag 0"));
        QCOMPARE(ws().commands(), QList<int>({3, 2}));
    }

    void immediateFailuresAreReportedAsTheWaitingRequestsResult()
    {
        const std::pair<int, QList<int>> cases[] = {{2, {29, 2}}, {3, {29, 2, 3}}, {29, {29, 2, 3, 29}}};
        for (const auto &[failing, commands] : cases) {
            const Row row(QStringLiteral("command %1").arg(failing));
            cleanup(); // afresh
            init();
            logIn();
            const HANDLE_T first = requestStationList();
            ws().failNext(failing, VLM_WS_ERR_ERROR_CURL_FAILURE);
            ws().complete(first, VLM_WS_ERR_INVALID_AUTH_TOKEN);
            ws().deliver();
            QCOMPARE(ws().commands(), commands);
            QCOMPARE(m_receiver->seen, QStringList("stationList -504 tag 0"));
            QVERIFY(!ws().isLive(first)); // the receiver has given it back, and the adapter must not touch it again
            m_receiver->seen.clear();

            // Nothing waits any more: logins go to the screens and an inactive account is the request's own result.
            HANDLE_T handle = 0;
            m_service->partnerLogin(nullptr, nullptr, nullptr, 1, false, nullptr, &handle);
            ws().deliver();
            ws().replyNext(15, VLM_WS_ERR_ACCOUNT_INACTIVE);
            m_service->getPlaylist("s", 0, false, tag(), &handle);
            ws().deliver();
            QCOMPARE(m_receiver->seen, QStringList({"partnerLogin 0 tag 0", "playlist 5099 tag 77"}));
        }
    }

    void aWaitingUserLoginThatCannotBeSentAgainIsReportedOnce()
    {
        logIn();
        expireNext(3);
        HANDLE_T handle = 0;
        m_service->userLogin("user", "pw", "ann", "\0\1\2\3\4\5", false, tag(), &handle);
        ws().failNext(3, VLM_WS_ERR_OUT_OF_MEMORY);
        ws().deliver();
        QCOMPARE(m_receiver->seen, QStringList("userLogin -503 tag 0"));
        QCOMPARE(ws().commands(), QList<int>({3, 2, 3}));
    }

    void anUnreadableAddressLeavesTheRequestWaiting()
    {
        ws().device().macResult = VLM_WS_ERR_INTERNAL;
        logIn();
        expireNext(29);
        const HANDLE_T handle = requestStationList();
        LogCapture log;
        ws().deliver();
        QVERIFY(log.contains("VelmoraLogin,userLoginWithDeviceID,getMac failed,e_ret=5000."));
        QCOMPARE(ws().commands(), QList<int>({29, 2}));
        QVERIFY(m_receiver->seen.isEmpty());
        QVERIFY(ws().isLive(handle)); // released with the adapter, as cleanup() checks
    }

    void aSecondExpiredRequestTakesThePlaceOfTheFirst()
    {
        m_isLossExpected = true; // the first record is neither reported nor given back
        const HANDLE_T first = requestStationList();
        HANDLE_T second = 0;
        m_service->getPlaylist("s", 0, false, tag(), &second);
        ws().complete(first, VLM_WS_ERR_INVALID_AUTH_TOKEN);
        ws().complete(second, VLM_WS_ERR_INVALID_AUTH_TOKEN);
        ws().deliver();
        QCOMPARE(ws().commands(), QList<int>({29, 15, 2, 2}));
        logIn();
        ws().autoReply(15, VLM_WS_ERR_OK, FakeReply::playlist({}));
        ws().completeNext(2, VLM_WS_ERR_OK);
        ws().deliver();
        QCOMPARE(m_receiver->seen, QStringList("playlist 0 tag 0"));
        QVERIFY(ws().isLive(first));
        QCOMPARE(ws().doubleReleases(), 0);
    }
};

QTEST_GUILESS_MAIN(ServiceRenewalTest)
#include "service_renewal_test.moc"
