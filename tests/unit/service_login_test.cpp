#include "fakes/devicetwin.h"
#include "fakes/fakewsfixture.h"
#include "fakes/logcapture.h"
#include "fakes/row.h"
#include "service/velmoralogin.h"
#include "service/velmorametatypes.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"
#include "service/wsreply.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

class ServiceLoginTest : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<FakeWsFixture> m_fixture;
    std::unique_ptr<VelmoraLogin> m_login;
    QStringList m_seen; // signals of the login object

    FakeWs &ws() { return m_fixture->ws; }
    void store(const QString &name, const QString &slot)
    {
        VelmoraSettings file = deviceSettings();
        file.addAccount(name, slot);
    }
    AccountRecord lastLogin() { return deviceSettings().getLastLogin(); }
    QByteArray sentIdentity(int cmd) { return ws().last(cmd).params.last().toByteArray(); }

private slots:
    void initTestCase() { registerVelmoraMetaTypes(); }
    void init()
    {
        m_root = std::make_unique<QTemporaryDir>();
        DeviceTwin::setPrivateRoot(m_root->path());
        m_fixture = std::make_unique<FakeWsFixture>(FakeWs::Delivery::OnDemand);
        ws().autoLogin("ann@example.org", FakeReply::stationListOf({"s1"}));
        m_login = std::make_unique<VelmoraLogin>();
        m_seen.clear();
        connect(m_login.get(), &VelmoraLogin::signaVelmoraLoginFatalError, this,
                [this](VLM_WS_EXT_ERRCODE_T code) { m_seen.append(QStringLiteral("fatal %1").arg(code)); });
        connect(m_login.get(), &VelmoraLogin::signalPartnerLoginDone, this, [this] { m_seen.append("partner"); });
        connect(m_login.get(), &VelmoraLogin::signalLoginWithDeviceIDDoneError, this,
                [this] { m_seen.append("unknown device"); });
        connect(m_login.get(), &VelmoraLogin::signalGetStationListDone, this, [this](HANDLE_T handle) {
            m_seen.append(QStringLiteral("list of %1").arg(wsreply::StationList(handle).count()));
            velmora_ws_release_handle(handle);
        });
    }
    void cleanup()
    {
        m_login.reset();
        delete VelmoraWebService::getInstance();
        m_fixture.reset();
    }

    void aFirstSignInAssociatesTheDeviceWithAFreshSlot()
    {
        store("bob", "0");
        m_login->userLogin("ann@example.org", "secret");
        ws().deliver();
        QCOMPARE(ws().commands(), QList<int>({3, 23, 3, 29}));
        QCOMPARE(ws().calls().at(0).params,
                 QVariantList({QByteArray("user"), QByteArray("secret"), QByteArray("ann@example.org"),
                               QByteArray("\x00\x1a\x2b\x3c\x4d\x5e\x00", 7)}));
        QCOMPARE(ws().calls().at(1).params, QVariantList({QByteArray("001A2B3C4D5E-1")}));
        QCOMPARE(ws().calls().at(2).params,
                 QVariantList({QByteArray("deviceId"), QVariant(), QVariant(), QByteArray("001A2B3C4D5E-1")}));
        QCOMPARE(ws().calls().at(3).params, QVariantList({1, QByteArray("dateCreated"), QByteArray("desc")}));
        QCOMPARE(m_seen, QStringList("list of 2"));
        QCOMPARE(lastLogin().userName, QStringLiteral("ann@example.org"));
        QCOMPARE(lastLogin().password, QStringLiteral("1"));
        VelmoraSettings file = deviceSettings();
        QCOMPARE(file.getAllUserName(), QStringList({"bob", "ann@example.org"}));
        QCOMPARE(file.getAllPassword(), QStringList({"0", "1"}));
    }

    // name=slot
    void theSlotOfANameLogin()
    {
        const std::pair<QStringList, QByteArray> cases[] = {
            {{"bob=0", "ann=3"}, "001A2B3C4D5E-3"},                  // stored with its slot
            {{"bob=0", "ann="}, "001A2B3C4D5E-1"},                   // stored without a slot
            {{"a=0", "b=1", "c=2", "d=3", "e=4"}, "001A2B3C4D5E-9"}, // a sixth account
        };
        for (const auto &[accounts, identity] : cases) {
            const Row row(accounts.join(u' '));
            cleanup(); // afresh
            init();
            for (const QString &account : accounts)
                store(account.section(u'=', 0, 0), account.section(u'=', 1));
            ws().autoReply(23, nullptr);
            m_login->userLogin("ann", "secret");
            ws().deliver();
            QCOMPARE(sentIdentity(23), identity);
            QCOMPARE(lastLogin().userName, QStringLiteral("ann"));
        }
    }

    void anUnknownDeviceIsReported()
    {
        ws().autoReply(3, VLM_WS_ERR_DEVICE_NOT_FOUND);
        m_login->userLoginWithDeviceID();
        ws().deliver();
        QCOMPARE(ws().commands(), QList<int>({3}));
        QCOMPARE(m_seen, QStringList("unknown device"));
    }

    void anUnknownDeviceAtALoginByNameCountsAsSuccess()
    {
        ws().replyNext(3, VLM_WS_ERR_DEVICE_NOT_FOUND);
        m_login->userLogin("ann", "secret");
        ws().deliver();
        QCOMPARE(ws().commands(), QList<int>({3, 23, 3, 29}));
    }

    void anUnknownDeviceAtTheStationListGivesAnEmptyList()
    {
        ws().autoReply(29, VLM_WS_ERR_DEVICE_NOT_FOUND);
        m_login->getStationList();
        ws().deliver();
        QCOMPARE(m_seen, QStringList("list of 0"));
    }

    void aReplyWithoutANameStoresNoAccount()
    {
        deviceSettings().setLastLogin("ann", "2");
        ws().autoReply(3, VLM_WS_ERR_OK, FakeReply());
        for (const char *activationSlot : {"", "1"}) {
            m_login->setActivationSlot(activationSlot);
            m_login->userLoginWithDeviceID();
            ws().deliver();
            QCOMPARE(m_seen.last(), QStringLiteral("list of 2"));
            QCOMPARE(lastLogin().userName, QStringLiteral("ann"));
            QCOMPARE(lastLogin().password, QStringLiteral("2"));
            QVERIFY(deviceSettings().getAllUserName().isEmpty());
        }
    }

    void everyFailedStepIsFatalWithItsCode()
    {
        for (const int cmd : {2, 3, 23, 29}) {
            for (const bool isImmediate : {true, false}) {
                const Row row(QStringLiteral("command %1, at once %2").arg(cmd).arg(isImmediate));
                cleanup(); // afresh
                init();
                if (isImmediate)
                    ws().failNext(cmd, VLM_WS_ERR_ERROR_CURL_FAILURE);
                else
                    ws().replyNext(cmd, VLM_WS_ERR_ERROR_CURL_FAILURE);
                connect(m_login.get(), &VelmoraLogin::signalPartnerLoginDone, m_login.get(),
                        [this] { m_login->userLogin("ann", "secret"); });
                m_login->partnerLogin();
                ws().deliver();
                m_seen.removeAll("partner");
                QCOMPARE(m_seen, QStringList("fatal -504"));
                QCOMPARE(ws().commands().last(), cmd);
            }
        }
    }

    void anUnreadableAddressStopsTheChainSilently()
    {
        ws().device().macResult = VLM_WS_ERR_INTERNAL;
        LogCapture log;
        m_login->userLogin("ann", "secret");
        QVERIFY(log.contains("VelmoraLogin,userLogin,getMac failed,e_ret=5000."));
        QVERIFY(ws().commands().isEmpty());
        QVERIFY(m_seen.isEmpty());
    }

    void noPasswordIsLogged()
    {
        LogCapture log;
        m_login->userLogin("ann", "s3cret-word");
        ws().deliver();
        QVERIFY(!log.contains("s3cret-word"));
        QVERIFY(log.contains("VelmoraLogin,associateDevice.deviceId=001A2B3C4D5E-0.."));
        QVERIFY(log.contains("VelmoraLogin,handleWebServiceRet,fianl,release web service handle..."));
    }

    void theChainRunsOnTheLibrarysThread()
    {
        ws().reset(FakeWs::Delivery::Thread);
        ws().autoLogin("ann", FakeReply::stationListOf({"s1", "s2"}));
        m_login->userLogin("ann", "secret");
        QTRY_COMPARE(m_seen, QStringList("list of 3"));
    }
};

QTEST_GUILESS_MAIN(ServiceLoginTest)
#include "service_login_test.moc"
