#include "fakes/fakeplayback.h"
#include "fakes/fakews.h"
#include "netcommon/playbackthread.h"

#include <QtTest>

namespace {

void ignore(HANDLE_T, VLM_WS_EXT_ERRCODE_T, VOID *)
{
}

} // namespace

// The faults that the radio's tests rely on the fakes to detect.
class FakesTest : public QObject {
    Q_OBJECT
private slots:
    void theFakeWebServiceReportsEveryLostAndEveryDoubleRelease()
    {
        FakeWs &ws = FakeWs::instance();
        ws.reset(FakeWs::Delivery::OnDemand);
        ws.autoReply(VLM_WS_MSGID_SLEEP_SONG, VLM_WS_ERR_OK);
        HANDLE_T handle = 0;
        QCOMPARE(velmora_ws_sleepSong("t", ignore, nullptr, &handle), VLM_WS_ERR_OK);
        QVERIFY(ws.leftovers().isEmpty()); // not completed yet
        QCOMPARE(ws.deliver(), 1);
        QVERIFY(ws.leftovers().contains("command 35"));
        velmora_ws_release_handle(handle);
        QVERIFY(ws.leftovers().isEmpty());
        velmora_ws_release_handle(handle);
        velmora_ws_release_handle(0);
        velmora_ws_release_handle(4711);
        QCOMPARE(ws.leftovers(), QStringLiteral("1 handles were given back twice; 0 was given back 1 times; "
                                                "1 unknown handles were given back"));
    }

    void anAddressWithoutStartIsAViolation()
    {
        FakePlayback::reset();
        netcommon::PlaybackThread thread;
        char url[] = "http://127.0.0.1/a";
        thread.setType(PLAYBACK_TYPE_START);
        thread.setAudioUrl(url);
        QVERIFY(FakePlayback::violations.isEmpty());
        thread.setAudioUrl(url);
        QCOMPARE(FakePlayback::violations.size(), 1);
    }
};

QTEST_GUILESS_MAIN(FakesTest)
#include "fakes_test.moc"
