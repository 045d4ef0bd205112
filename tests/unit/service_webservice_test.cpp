#include "fakes/fakewsfixture.h"
#include "fakes/logcapture.h"
#include "service/velmorametatypes.h"
#include "service/velmorawebservice.h"
#include "service/wscommands.h"
#include "service/wshandle.h"

#include <QMetaMethod>
#include <QtTest>

#include <memory>

namespace {

using Service = VelmoraWebService;
using Signal = void (Service::*)(HANDLE_T, VLM_WS_EXT_ERRCODE_T, VOID *);

// Every wrapper with distinguishable parameters, the signal that it must end in, and what the library must be given.
struct Wrapper {
    int cmd;
    VLM_WS_EXT_ERRCODE_T (*call)(Service *, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    Signal signal;
    const char *signalName;
    QVariantList params;
};

QVariant t(const char *text)
{
    return QByteArray(text);
}

#define VIA(...) [](Service *s, bool fg, VOID *tag, HANDLE_T *handle) { return s->__VA_ARGS__; }
#define RAISES(name) &Service::name, #name

const QList<Wrapper> &wrappers()
{
    static const QList<Wrapper> table{
        {0, VIA(getAdMetadata("ad", 1, fg, tag, handle)), RAISES(signalGetAdMetadataDone), {t("ad"), 1}},
        {1, VIA(registerAd("st", "ad", fg, tag, handle)), RAISES(signalRegAdDone), {t("st"), t("ad")}},
        {2,
         VIA(partnerLogin(nullptr, nullptr, nullptr, 1, fg, tag, handle)),
         RAISES(signalParterLoginDone),
         {QVariant(), QVariant(), QVariant(), 1}},
        {3,
         VIA(userLogin("user", "pw", "ann", "\1\2\3\4\5\6", fg, tag, handle)),
         RAISES(signalUserLoginDone),
         {t("user"), t("pw"), t("ann"), QByteArray("\1\2\3\4\5\6\0", 7)}},
        {4, VIA(addArtistBookmark("tr", fg, tag, handle)), RAISES(signalAddArtistBookmarkDone), {t("tr")}},
        {5, VIA(addSongBookmark("tr", fg, tag, handle)), RAISES(signalAddSongBookmarkDone), {t("tr")}},
        {6, VIA(disassociateDevice("id", fg, tag, handle)), RAISES(signalDisassociateDeviceDone), {t("id")}},
        {7, VIA(getDeviceInfo("id", fg, tag, handle)), RAISES(signalGetDeviceInfoDone), {t("id")}},
        {8,
         VIA(generateDeviceActivationCode("id", fg, tag, handle)),
         RAISES(signalGenerateDeviceActivationCodeDone),
         {t("id")}},
        {9, VIA(search("abc", 1, fg, tag, handle)), RAISES(signalSearchDone), {t("abc"), 1}},
        {10, VIA(addFeedback(1, "tr", fg, tag, handle)), RAISES(signalAddFeedbackDone), {1, t("tr")}},
        {11, VIA(addMusic("st", "mu", fg, tag, handle)), RAISES(signalAddMusicDone), {t("st"), t("mu")}},
        {12,
         VIA(createStation("mu", "tr", "song", 1, fg, tag, handle)),
         RAISES(signalCreateStationDone),
         {t("mu"), t("tr"), t("song"), 1}},
        {13, VIA(deleteStation("st", fg, tag, handle)), RAISES(signalDeleteStationDone), {t("st")}},
        {14, VIA(getGenreStations(fg, tag, handle)), RAISES(signalGetGenreStationsDone), {}},
        {15, VIA(getPlaylist("st", 1, fg, tag, handle)), RAISES(signalGetPlaylistDone), {t("st"), 1}},
        {16, VIA(getStation("st", 1, fg, tag, handle)), RAISES(signalGetStationDone), {t("st"), 1}},
        {17,
         VIA(renameStation("new", "st", 7, fg, tag, handle)),
         RAISES(signalRenameStationDone),
         {t("new"), t("st"), 7}},
        {18,
         VIA(transformSharedStation("st", 1, fg, tag, handle)),
         RAISES(signalTransformSharedStationDone),
         {t("st"), 1}},
        {21, VIA(explainTrack("tr", fg, tag, handle)), RAISES(signalExplainTrackDone), {t("tr")}},
        {22,
         VIA(trackEvent("tr", "skip", 12, fg, tag, handle)),
         RAISES(signalTrackEventDone),
         {t("tr"), t("skip"), 12}},
        {23, VIA(associateDevice("id", fg, tag, handle)), RAISES(signalAssociateDeviceDone), {t("id")}},
        {24,
         VIA(createUser("ann", "pw", 1980, "f", "1", "de", 0, "id", 1, fg, tag, handle)),
         RAISES(signalCreateUserDone),
         {t("ann"), t("pw"), 1980, t("f"), t("1"), t("de"), 0, t("id"), 1}},
        {25, VIA(emailExplicitPINRescue(fg, tag, handle)), RAISES(signalEmailExplicitPinRescueDone), {}},
        {26, VIA(emailPassword("ann", fg, tag, handle)), RAISES(signalEmailPassowrdDone), {t("ann")}},
        {27, VIA(generateUserActivationCode(fg, tag, handle)), RAISES(signalGenerateUserActivationCodeDone), {}},
        {28, VIA(getExplicitContentFilter(fg, tag, handle)), RAISES(signalGetExplicitContentFilterDone), {}},
        {29,
         VIA(getStationList(1, "dateCreated", "desc", fg, tag, handle)),
         RAISES(signalGetStationListDone),
         {1, t("dateCreated"), t("desc")}},
        {30, VIA(getStationListChecksum(fg, tag, handle)), RAISES(signalGetStationListCheckSumDone), {}},
        {31,
         VIA(getUserInfo("ann", "pw", "id", 1, fg, tag, handle)),
         RAISES(signalGetUserInfoDone),
         {t("ann"), t("pw"), t("id"), 1}},
        {32,
         VIA(isExplicitContentFilterPINProtected(fg, tag, handle)),
         RAISES(signalIsExplicitContentFilterPinProtectedDone),
         {}},
        {33,
         VIA(setExplicitContentFilter(1, "1234", fg, tag, handle)),
         RAISES(signalSetExplicitContentFilterDone),
         {1, t("1234")}},
        {34,
         VIA(setExplicitPIN("new", "old", fg, tag, handle)),
         RAISES(signalSetExplicitPinDone),
         {t("new"), t("old")}},
        {35, VIA(sleepSong("tr", fg, tag, handle)), RAISES(signalSleepSongDone), {t("tr")}},
    };
    return table;
}

} // namespace

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
            const FakeCall call = fixture.ws.last(wrapper.cmd);
            QCOMPARE(call.handle, handle);
            QCOMPARE(call.params, wrapper.params);
            QVERIFY(call.hasCallback);
            QVERIFY(fixture.ws.complete(handle, VLM_WS_ERR_MAINTENANCE));
            fixture.ws.deliver();
            QVERIFY2(number == 1, wrapper.signalName);
        }
    }

    void theSignalsStandInTheOrderOfTheIdentifiers()
    {
        QList<QByteArray> declared, expected;
        const QMetaObject &meta = VelmoraWebService::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            declared.append(meta.method(i).methodSignature());
        for (const Wrapper &wrapper : wrappers())
            expected.append(QByteArray(wrapper.signalName) + "(HANDLE_T,VLM_WS_EXT_ERRCODE_T,VOID*)");
        QCOMPARE(declared, expected);
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

    void anImmediateFailureIsReturned()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        fixture.ws.failNext(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OUT_OF_MEMORY);
        HANDLE_T handle = 0;
        QCOMPARE(Service::getInstance()->search("a", 0, false, nullptr, &handle), VLM_WS_ERR_OUT_OF_MEMORY);
        QCOMPARE(handle, HANDLE_T(0));
    }

    void aNullHandleIsLoggedAndIgnored()
    {
        LogCapture log;
        Service::velmora_ws_requst_cb(0, VLM_WS_ERR_INVALID_AUTH_TOKEN, nullptr);
        QCOMPARE(log.lines(), QStringList(QStringLiteral("VelmoraWebService,velmora_ws_requst_cb,pt_velmora is NULL")));
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

    void aCompletionWithoutReceiverIsGivenBack()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        HANDLE_T handle = 0;
        Service::getInstance()->renameStation("n", "s", 0, false, nullptr, &handle);
        fixture.ws.complete(handle, VLM_WS_ERR_OK);
        fixture.ws.deliver();
        QVERIFY(!fixture.ws.isLive(handle));
    }

    void theAddressIsAskedForOnceAProcess()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        char buffer[7];
        for (int i = 0; i < 3; ++i) {
            memset(buffer, 0x55, sizeof buffer);
            QCOMPARE(Service::getInstance()->getMac(buffer, 7), VLM_WS_ERR_OK);
            QCOMPARE(QByteArray(buffer, 7), QByteArray("\x00\x1a\x2b\x3c\x4d\x5e\x00", 7));
        }
        QCOMPARE(fixture.ws.macCalls(), 1);
    }

    void aFailedAddressIsNotAskedForAgainAndReadsAsZeros()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        fixture.ws.setMacResult(VLM_WS_ERR_INTERNAL);
        char buffer[7];
        QCOMPARE(Service::getInstance()->getMac(buffer, 7), VLM_WS_ERR_INTERNAL);
        fixture.ws.setMacResult(VLM_WS_ERR_OK);
        memset(buffer, 0x55, sizeof buffer);
        QCOMPARE(Service::getInstance()->getMac(buffer, 7), VLM_WS_ERR_OK);
        QCOMPARE(QByteArray(buffer, 7), QByteArray(7, '\0'));
        QCOMPARE(fixture.ws.macCalls(), 1);
    }

    void initAndUninitReachTheLibrary()
    {
        FakeWsFixture fixture;
        QCOMPARE(Service::getInstance()->uninit(), VLM_WS_ERR_OK);
        QVERIFY(!fixture.ws.isInitialised());
        HANDLE_T handle = 0;
        QCOMPARE(Service::getInstance()->search("a", 0, false, nullptr, &handle), VLM_WS_ERR_NOT_INITIALISED);
        QCOMPARE(Service::getInstance()->init(), VLM_WS_ERR_OK);
        QVERIFY(fixture.ws.isInitialised());
    }

    // The receiver lives here, the completions come from the library's thread.
    void tenThousandCompletionsArriveInOrderInTheReceiversThread()
    {
        FakeWsFixture fixture;
        const int number = 10000;
        Service *service = Service::getInstance();
        fixture.ws.autoReply(VLM_WS_MSGID_SEARCH, VLM_WS_ERR_OK, FakeReply::search({{"m", "s", "a"}}, {}));
        fixture.ws.autoReply(VLM_WS_MSGID_EXPLAIN_TRACK, VLM_WS_ERR_NOT_FOUND);
        QList<quintptr> arrived;
        QStringList wrong;
        QObject receiver;
        const auto receive = [&](HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T code, VOID *tag) {
            const WsHandle handle(h_handle);
            const bool isSearch = reinterpret_cast<quintptr>(tag) % 2 == 0;
            if (QThread::currentThread() != receiver.thread())
                wrong.append(QStringLiteral("in a foreign thread"));
            if (code != (isSearch ? VLM_WS_ERR_OK : VLM_WS_ERR_NOT_FOUND))
                wrong.append(QStringLiteral("result %1").arg(code));
            arrived.append(reinterpret_cast<quintptr>(tag));
        };
        connect(service, &Service::signalSearchDone, &receiver, receive);
        connect(service, &Service::signalExplainTrackDone, &receiver, receive);
        LogCapture silent;
        for (quintptr i = 0; i < number; ++i) {
            HANDLE_T handle = 0;
            VOID *const tag = reinterpret_cast<VOID *>(i);
            QCOMPARE(i % 2 == 0 ? service->search("x", 0, false, tag, &handle)
                                : service->explainTrack("x", false, tag, &handle),
                     VLM_WS_ERR_OK);
        }
        QTRY_COMPARE_WITH_TIMEOUT(arrived.size(), number, 60000);
        for (quintptr i = 0; i < number; ++i)
            QCOMPARE(arrived.at(static_cast<int>(i)), i);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(u' ')));
        QCOMPARE(fixture.ws.releases(), number);
    }
};

QTEST_GUILESS_MAIN(ServiceWebServiceTest)
#include "service_webservice_test.moc"
