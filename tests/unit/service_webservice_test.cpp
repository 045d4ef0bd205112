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

template <size_t N>
QVariant given(const char (&text)[N]) // zero bytes inside count
{
    return QByteArray(text, N - 1);
}
QVariant given(int number)
{
    return number;
}
QVariant given(std::nullptr_t)
{
    return {};
}
template <typename... Values>
QVariantList allGiven(const Values &...values)
{
    return QVariantList{given(values)...};
}

// Identifier, function, its signal, and the arguments.
#define WRAPPER(id, function, raised, ...)                                                                             \
    {                                                                                                                  \
        id,                                                                                                            \
            [](Service *s, bool fg, VOID *tag, HANDLE_T *handle) {                                                     \
                return s->function(__VA_ARGS__ __VA_OPT__(, ) fg, tag, handle);                                        \
            },                                                                                                         \
            &Service::raised, #raised, allGiven(__VA_ARGS__)                                                           \
    }

const QList<Wrapper> &wrappers()
{
    static const QList<Wrapper> table{
        WRAPPER(0, getAdMetadata, signalGetAdMetadataDone, "ad", 1),
        WRAPPER(1, registerAd, signalRegAdDone, "st", "ad"),
        WRAPPER(2, partnerLogin, signalParterLoginDone, nullptr, nullptr, nullptr, 1),
        WRAPPER(3, userLogin, signalUserLoginDone, "user", "pw", "ann", "\1\2\3\4\5\6\0"),
        WRAPPER(4, addArtistBookmark, signalAddArtistBookmarkDone, "tr"),
        WRAPPER(5, addSongBookmark, signalAddSongBookmarkDone, "tr"),
        WRAPPER(6, disassociateDevice, signalDisassociateDeviceDone, "id"),
        WRAPPER(7, getDeviceInfo, signalGetDeviceInfoDone, "id"),
        WRAPPER(8, generateDeviceActivationCode, signalGenerateDeviceActivationCodeDone, "id"),
        WRAPPER(9, search, signalSearchDone, "abc", 1),
        WRAPPER(10, addFeedback, signalAddFeedbackDone, 1, "tr"),
        WRAPPER(11, addMusic, signalAddMusicDone, "st", "mu"),
        WRAPPER(12, createStation, signalCreateStationDone, "mu", "tr", "song", 1),
        WRAPPER(13, deleteStation, signalDeleteStationDone, "st"),
        WRAPPER(14, getGenreStations, signalGetGenreStationsDone),
        WRAPPER(15, getPlaylist, signalGetPlaylistDone, "st", 1),
        WRAPPER(16, getStation, signalGetStationDone, "st", 1),
        WRAPPER(17, renameStation, signalRenameStationDone, "new", "st", 7),
        WRAPPER(18, transformSharedStation, signalTransformSharedStationDone, "st", 1),
        WRAPPER(21, explainTrack, signalExplainTrackDone, "tr"),
        WRAPPER(22, trackEvent, signalTrackEventDone, "tr", "skip", 12),
        WRAPPER(23, associateDevice, signalAssociateDeviceDone, "id"),
        WRAPPER(24, createUser, signalCreateUserDone, "ann", "pw", 1980, "f", "1", "de", 0, "id", 1),
        WRAPPER(25, emailExplicitPINRescue, signalEmailExplicitPinRescueDone),
        WRAPPER(26, emailPassword, signalEmailPassowrdDone, "ann"),
        WRAPPER(27, generateUserActivationCode, signalGenerateUserActivationCodeDone),
        WRAPPER(28, getExplicitContentFilter, signalGetExplicitContentFilterDone),
        WRAPPER(29, getStationList, signalGetStationListDone, 1, "dateCreated", "desc"),
        WRAPPER(30, getStationListChecksum, signalGetStationListCheckSumDone),
        WRAPPER(31, getUserInfo, signalGetUserInfoDone, "ann", "pw", "id", 1),
        WRAPPER(32, isExplicitContentFilterPINProtected, signalIsExplicitContentFilterPinProtectedDone),
        WRAPPER(33, setExplicitContentFilter, signalSetExplicitContentFilterDone, 1, "1234"),
        WRAPPER(34, setExplicitPIN, signalSetExplicitPinDone, "new", "old"),
        WRAPPER(35, sleepSong, signalSleepSongDone, "tr"),
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
                wrong.append("in a foreign thread");
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
