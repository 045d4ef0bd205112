#include "fakes/fakewsfixture.h"
#include "fakes/logcapture.h"
#include "fakes/row.h"
#include "service/velmorametatypes.h"
#include "service/velmorawebservice.h"
#include "unit/service_requests.h"

#include <QtTest>

using requests::Service;
using requests::Wrapper;
using requests::wrappers;

class ServiceWebServiceTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { registerVelmoraMetaTypes(); }
    void cleanup() { delete VelmoraWebService::getInstance(); }

    void everyRequestReachesItsFunctionAndItsSignal()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        Service *service = Service::getInstance();
        QCOMPARE(wrappers().size(), 34);
        for (const Wrapper &wrapper : wrappers()) {
            int number = 0;
            VOID *const tag = &number;
            HANDLE_T handle = 0;
            QObject context;
            connect(service, wrapper.signal, &context, [&](HANDLE_T done, VLM_WS_EXT_ERRCODE_T code, VOID *backTag) {
                ++number;
                QCOMPARE(done, handle);
                QCOMPARE(code, VLM_WS_ERR_MAINTENANCE);
                QCOMPARE(backTag, tag);
                velmora_ws_release_handle(done);
            });
            QCOMPARE(wrapper.call(service, false, tag, &handle), VLM_WS_ERR_OK);
            const Row row(wrapper.signalName);
            const FakeCall call = fixture.ws.last(wrapper.cmd);
            QCOMPARE(call.handle, handle);
            QCOMPARE(call.params, wrapper.params);
            QVERIFY(call.hasCallback);
            QVERIFY(fixture.ws.complete(handle, VLM_WS_ERR_MAINTENANCE));
            fixture.ws.deliver();
            QCOMPARE(number, 1);
        }
    }

    // Its partner token alone, or the device's login too, is renewed before.
    void onlyTheseRequestsAreRepeatedWithTheirParametersWhenTheTokenExpires()
    {
        const QSet<int> retried{0, 3, 4, 5, 6, 8, 9, 10, 12, 13, 15, 17, 21, 23, 29, 35};
        const QSet<int> partnerTokenOnly{3, 6, 7, 8, 24, 26, 31};
        for (const Wrapper &wrapper : wrappers()) {
            const Row row(wrapper.signalName);
            FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
            fixture.ws.replyNext(wrapper.cmd, VLM_WS_ERR_INVALID_AUTH_TOKEN);
            fixture.ws.autoReply(2, VLM_WS_ERR_OK, FakeReply::partnerLogin());
            fixture.ws.autoReply(3, VLM_WS_ERR_OK, FakeReply::userLogin("ann"));
            HANDLE_T handle = 0;
            QCOMPARE(wrapper.call(Service::getInstance(), false, nullptr, &handle), VLM_WS_ERR_OK);
            fixture.ws.deliver();
            const QList<FakeCall> calls = fixture.ws.calls();
            const int logins = partnerTokenOnly.contains(wrapper.cmd) ? 1 : 2;
            QCOMPARE(calls.size(), 1 + logins + (retried.contains(wrapper.cmd) ? 1 : 0));
            if (retried.contains(wrapper.cmd)) {
                QCOMPARE(calls.last().cmd, wrapper.cmd);
                QCOMPARE(calls.last().params, calls.first().params);
                QVERIFY(!calls.last().tag);
                fixture.ws.completeNext(wrapper.cmd, VLM_WS_ERR_OK);
                fixture.ws.deliver();
            }
            delete Service::getInstance();
        }
    }

    void aRequestWithoutCallbackRaisesNothing()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        QSignalSpy spy(Service::getInstance(), &Service::signalSleepSongDone);
        HANDLE_T handle = 0;
        QCOMPARE(Service::getInstance()->sleepSong("tr", true, nullptr, &handle), VLM_WS_ERR_OK);
        QVERIFY(!fixture.ws.last(35).hasCallback);
        fixture.ws.complete(handle, VLM_WS_ERR_OK);
        fixture.ws.deliver();
        QCOMPARE(spy.count(), 0);
    }

    void aNullHandleIsLoggedAndIgnored()
    {
        LogCapture log;
        Service::velmora_ws_requst_cb(0, VLM_WS_ERR_INVALID_AUTH_TOKEN, nullptr);
        QCOMPARE(log.lines(), QStringList("VelmoraWebService,velmora_ws_requst_cb,pt_velmora is NULL"));
    }

    void reservedAndUnknownIdentifiersRaiseNothing()
    {
        Service *service = Service::getInstance();
        int emitted = 0;
        for (const Wrapper &wrapper : wrappers())
            connect(service, wrapper.signal, this, [&emitted] { ++emitted; });
        for (uint32_t id : {19U, 20U, 36U, 4000U, 0xFFFFFFFFU}) {
            VLM_WS_REQUEST_T record{id, nullptr, nullptr};
            Service::velmora_ws_requst_cb(reinterpret_cast<HANDLE_T>(&record), VLM_WS_ERR_OK, nullptr);
        }
        QCOMPARE(emitted, 0);
        FakeWs::instance().reset(); // these records were not the library's
    }

    void aCompletionWithoutReceiverIsReleased()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        HANDLE_T handle = 0;
        Service::getInstance()->renameStation("n", "s", 0, false, nullptr, &handle);
        fixture.ws.complete(handle, VLM_WS_ERR_OK);
        fixture.ws.deliver();
        QVERIFY(!fixture.ws.isLive(handle));
    }

    void theAddressIsReadOnceAndIsZeroIfThatFails()
    {
        for (const bool isFailing : {false, true}) {
            FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
            char buffer[7];
            fixture.ws.device().macResult = isFailing ? VLM_WS_ERR_INTERNAL : VLM_WS_ERR_OK;
            QCOMPARE(Service::getInstance()->getMac(buffer, 7), fixture.ws.device().macResult);
            fixture.ws.device().macResult = VLM_WS_ERR_OK;
            memset(buffer, 0x55, sizeof buffer);
            QCOMPARE(Service::getInstance()->getMac(buffer, 7), VLM_WS_ERR_OK);
            QCOMPARE(QByteArray(buffer, 7),
                     isFailing ? QByteArray(7, '\0') : QByteArray("\x00\x1a\x2b\x3c\x4d\x5e\x00", 7));
            QCOMPARE(fixture.ws.device().macCalls, 1);
            delete Service::getInstance();
        }
    }
};

QTEST_GUILESS_MAIN(ServiceWebServiceTest)
#include "service_webservice_test.moc"
