// Handles, threads, start and end of the library, and what they leave in memory.
#include "ws_fixture.h"

#include <atomic>
#include <cstring>
#include <dlfcn.h>
#include <netdb.h>
#include <QJsonArray>
#include <QTemporaryFile>
#include <QTest>
#include <semaphore>
#include <unistd.h>

namespace {

const auto cb = WsFixture::callback;

// Records what is overwritten: this program interposes the C library's explicit_bzero.
std::mutex wipedMutex;
bool isWatching = false;
QByteArray wiped;

void watchWiping(bool isWanted)
{
    std::lock_guard lock(wipedMutex);
    isWatching = isWanted;
    wiped.clear();
}

bool wasWiped(const QByteArray &text)
{
    std::lock_guard lock(wipedMutex);
    return wiped.contains(text);
}

} // namespace

extern "C" __attribute__((visibility("default"))) void explicit_bzero(void *memory, size_t size)
{
    {
        std::lock_guard lock(wipedMutex);
        if (isWatching)
            wiped.append(static_cast<const char *>(memory), static_cast<qsizetype>(size));
    }
    volatile char *bytes = static_cast<volatile char *>(memory);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = 0;
}

// Simulates a name server that does not answer: a lookup of this host ends when the test releases it.
constexpr char deadHost[] = "dead-name-server.invalid";
std::atomic<bool> isLookingUp = false;
std::binary_semaphore lookupMayEnd{0};

extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char *node, const char *service,
                                                                  const addrinfo *hints, addrinfo **found)
{
    if (node && std::strcmp(node, deadHost) == 0) {
        isLookingUp = true;
        lookupMayEnd.acquire();
        isLookingUp = false;
        return EAI_AGAIN;
    }
    static const auto next = reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return next(node, service, hints, found);
}

class WsLifecycleTest : public QObject {
    Q_OBJECT

private slots:
    void nothingIsAcceptedOutsideInitAndUninit()
    {
        WsFixture ws({}, false);
        HANDLE_T handle = 42;
        QCOMPARE(velmora_ws_sleepSong("t", cb, nullptr, &handle), VLM_WS_ERR_NOT_INITIALISED);
        QCOMPARE(velmora_ws_uninit(), VLM_WS_ERR_NOT_INITIALISED);
        QCOMPARE(velmora_ws_init(), VLM_WS_ERR_OK);
        QCOMPARE(velmora_ws_init(), VLM_WS_ERR_OK);
        QCOMPARE(velmora_ws_uninit(), VLM_WS_ERR_OK);
        QCOMPARE(velmora_ws_sleepSong("t", cb, nullptr, &handle), VLM_WS_ERR_NOT_INITIALISED);
        QCOMPARE(handle, HANDLE_T(42));
        QCOMPARE(ws.count(), 0);
    }

    void aWrongReleaseIsReportedAndHarmless()
    {
        WsFixture ws;
        QCOMPARE(ws.wait(velmora_ws_sleepSong("t", cb, nullptr, &ws.handle)), VLM_WS_ERR_OK);
        const HANDLE_T handle = ws.handle;
        ws.forget(handle);
        QCOMPARE(velmora_ws_release_handle(handle), VLM_WS_ERR_OK);
        for (const HANDLE_T wrong : {handle, HANDLE_T(0), HANDLE_T(1), reinterpret_cast<HANDLE_T>(&ws)}) {
            QTemporaryFile report;
            QVERIFY(report.open());
            const int saved = dup(2);
            dup2(report.handle(), 2);
            const auto result = velmora_ws_release_handle(wrong);
            dup2(saved, 2);
            close(saved);
            QCOMPARE(result, VLM_WS_ERR_INVALID_ARGUMENT);
            QFile written(report.fileName());
            QVERIFY(written.open(QIODevice::ReadOnly));
            const QByteArray text = written.readAll();
            QVERIFY2(text.startsWith("libvelmora_ws: release of handle 0x") && text.count('\n') == 1, text.constData());
        }
    }

    void aPendingRequestCannotBeReleased()
    {
        WsFixture ws;
        const auto immediate = velmora_ws_sleepSong("t", cb, nullptr, &ws.handle);
        QCOMPARE(velmora_ws_release_handle(ws.handle), VLM_WS_ERR_INVALID_ARGUMENT); // the service answers only below
        QCOMPARE(ws.wait(immediate), VLM_WS_ERR_OK);
        QCOMPARE(ws.last().params<VLM_WS_TEXT_PARAMS_T>()->text, "t");
    }

    void aHandleOutlivesTheLibrarysEnd()
    {
        WsFixture ws;
        ws.server.answer("getStationListChecksum", QJsonObject{{"checksum", "abc"}});
        QCOMPARE(ws.wait(velmora_ws_getStationListChecksum(cb, nullptr, &ws.handle)), VLM_WS_ERR_OK);
        QCOMPARE(velmora_ws_uninit(), VLM_WS_ERR_OK);
        QCOMPARE(ws.last().reply<VLM_WS_CHECKSUM_T>()->checksum, "abc");
        ws.forget(ws.handle);
        QCOMPARE(velmora_ws_release_handle(ws.handle), VLM_WS_ERR_OK);
    }

    void aRequestWithoutACallbackReleasesItself()
    {
        WsFixture ws;
        QCOMPARE(velmora_ws_sleepSong("t", nullptr, nullptr, &ws.handle), VLM_WS_ERR_OK);
        QCOMPARE(ws.wait(velmora_ws_addSongBookmark("t", cb, nullptr, nullptr)), VLM_WS_ERR_OK); // after it
        QCOMPARE(ws.server.functions(), QStringList({"sleepSong", "addSongBookmark"}));
        QCOMPARE(velmora_ws_release_handle(ws.handle), VLM_WS_ERR_INVALID_ARGUMENT);
    }

    void completionsComeOneAfterAnotherInOrderFromOneThread()
    {
        constexpr int requests = 400;
        WsFixture ws;
        std::atomic<int> inside = 0;
        std::atomic<bool> isOverlapping = false;
        ws.onCompletion = [&](const WsCompletion &) {
            if (++inside != 1)
                isOverlapping = true;
            std::this_thread::yield();
            --inside;
        };
        // From two threads at once; each one's requests keep their order.
        const auto send = [](const char *token) {
            for (int i = 0; i < requests / 2; ++i)
                velmora_ws_trackEvent(token, "start", i, cb, nullptr, nullptr);
        };
        std::thread other(send, "b");
        send("a");
        other.join();
        QVERIFY(ws.waitFor(requests));
        QVERIFY(!isOverlapping);
        int next[2] = {0, 0};
        const auto all = ws.completions();
        for (const WsCompletion &done : all) {
            const auto *params = done.params<VLM_WS_TRACK_EVENT_PARAMS_T>();
            QCOMPARE(params->seconds, next[params->trackToken[0] - 'a']++);
            QCOMPARE(done.result, VLM_WS_ERR_OK);
            QVERIFY(done.thread == all.front().thread);
            QVERIFY(done.thread != std::this_thread::get_id());
        }
        QCOMPARE(next[0], requests / 2);
        QCOMPARE(next[1], requests / 2);
    }

    void uninitCancelsPendingRequests_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("never answered") << QByteArray();
        QTest::newRow("in a long pause") << WsTestServer::http(R"({"code":5004,"data":{"retryAfter":900}})").bytes;
    }

    void uninitCancelsPendingRequests()
    {
        QFETCH(QByteArray, answer);
        WsFixture ws("start_retry_for_ms=1000000\nretry_for_ms=1000000\n");
        ws.server.answer("sleepSong", {WsTestServer::Reply{answer}});
        QCOMPARE(velmora_ws_sleepSong("under way", cb, nullptr, &ws.handle), VLM_WS_ERR_OK);
        QCOMPARE(velmora_ws_addSongBookmark("behind it", cb, nullptr, nullptr), VLM_WS_ERR_OK);
        QTRY_COMPARE(ws.server.seen.size(), 1);
        watchWiping(true);
        QCOMPARE(velmora_ws_uninit(), VLM_WS_ERR_OK);
        QCOMPARE(ws.count(), 0);
        QCOMPARE(velmora_ws_release_handle(ws.handle), VLM_WS_ERR_INVALID_ARGUMENT);
        // Both records went with the library.
        QVERIFY(wasWiped(QByteArray("under way\0", 10)));
        QVERIFY(wasWiped(QByteArray("behind it\0", 10)));
        watchWiping(false);
    }

    void uninitDoesNotWaitForANameServer()
    {
        WsFixture ws({}, false);
        qputenv("VELMORA_WS_SERVER", QByteArray("http://") + deadHost);
        QCOMPARE(velmora_ws_init(), VLM_WS_ERR_OK);
        QCOMPARE(velmora_ws_sleepSong("t", cb, nullptr, &ws.handle), VLM_WS_ERR_OK);
        QTRY_VERIFY(isLookingUp);
        // If the library waits for the lookup, it is released after a while, so that this test fails and does not hang.
        std::atomic<bool> isLetGo = false;
        std::binary_semaphore hasReturned{0};
        std::thread watch([&] {
            if (!hasReturned.try_acquire_for(std::chrono::seconds(20))) {
                isLetGo = true;
                lookupMayEnd.release();
            }
        });
        QCOMPARE(velmora_ws_uninit(), VLM_WS_ERR_OK);
        hasReturned.release();
        watch.join();
        QVERIFY(!isLetGo);
        QCOMPARE(ws.count(), 0);
        lookupMayEnd.release();
        QTRY_VERIFY(!isLookingUp);
    }

    void uninitFromACallbackEndsTheLibrary()
    {
        WsFixture ws;
        std::atomic<int> result = -1;
        ws.onCompletion = [&result](const WsCompletion &) { result = velmora_ws_uninit(); };
        for (int i = 0; i < 3; ++i)
            QCOMPARE(velmora_ws_sleepSong("t", cb, nullptr, nullptr), VLM_WS_ERR_OK);
        QVERIFY(ws.waitFor(1));
        QTRY_COMPARE(result.load(), int(VLM_WS_ERR_OK));
        QCOMPARE(velmora_ws_sleepSong("t", cb, nullptr, nullptr), VLM_WS_ERR_NOT_INITIALISED);
        ws.onCompletion = {};
        QCOMPARE(velmora_ws_init(), VLM_WS_ERR_OK);
        QVERIFY(velmora_ws_addSongBookmark("t", cb, nullptr, nullptr) == VLM_WS_ERR_OK);
        QVERIFY(ws.waitFor(2));
        QCOMPARE(ws.count(), 2);
    }

    void initAndUninitInAnyOrderLeakNothing()
    {
        WsFixture ws;
        for (int i = 0; i < 20; ++i) {
            for (int request = 0; request < 5; ++request)
                velmora_ws_sleepSong("t", cb, nullptr, nullptr);
            if (i % 2)
                QCoreApplication::processEvents();
            QCOMPARE(velmora_ws_uninit(), VLM_WS_ERR_OK);
            const int count = ws.count();
            QCOMPARE(velmora_ws_init(), VLM_WS_ERR_OK);
            QCOMPARE(ws.count(), count);
        }
    }

    void passwordsAreOverwritten()
    {
        WsFixture ws;
        ws.logIn();
        watchWiping(true);
        QCOMPARE(ws.wait(velmora_ws_userLogin("user", "seven small lamps", "mira@example.org", "\0\x1a\x2b\x3c\x4d\x5e",
                                              cb, nullptr, &ws.handle)),
                 VLM_WS_ERR_OK);
        const QByteArray ofTheRecord("seven small lamps\0", 18);
        QVERIFY(wasWiped(R"("password":"seven small lamps")")); // what was sent
        QVERIFY(!wasWiped(ofTheRecord));
        QCOMPARE(ws.last().params<VLM_WS_USER_LOGIN_PARAMS_T>()->password, "seven small lamps");
        ws.forget(ws.handle);
        QCOMPARE(velmora_ws_release_handle(ws.handle), VLM_WS_ERR_OK);
        QVERIFY(wasWiped(ofTheRecord));
        QCOMPARE(velmora_ws_uninit(), VLM_WS_ERR_OK);
        QVERIFY(wasWiped(WsFixture::userToken));
        QVERIFY(wasWiped(WsFixture::partnerToken));
        watchWiping(false);
    }

    void theHardwareAddressIsKept()
    {
        WsFixture ws({}, false);
        char first[7] = {1, 1, 1, 1, 1, 1, 1};
        char second[7] = {2, 2, 2, 2, 2, 2, 2};
        QCOMPARE(velmora_ws_utility_get_mac(first, 5), VLM_WS_ERR_INVALID_ARGUMENT);
        QCOMPARE(velmora_ws_utility_get_mac(nullptr, 7), VLM_WS_ERR_INVALID_ARGUMENT);
        QCOMPARE(velmora_ws_utility_get_mac(first, 7), VLM_WS_ERR_OK);
        QCOMPARE(first[6], '\0');
        QCOMPARE(velmora_ws_utility_get_mac(second, 6), VLM_WS_ERR_OK);
        QCOMPARE(QByteArray(second, 6), QByteArray(first, 6));
        QCOMPARE(second[6], char(2));
        QVERIFY(QFile::exists(ws.folder.filePath("state/device")));
    }
};

QTEST_GUILESS_MAIN(WsLifecycleTest)
#include "ws_lifecycle_test.moc"
