#include "fakes/fakewsfixture.h"
#include "service/wshandle.h"
#include "service/wsreply.h"

#include <QtTest>

namespace {

HANDLE_T received = 0;

void keep(HANDLE_T handle, VLM_WS_EXT_ERRCODE_T, VOID *)
{
    received = handle;
}

// A completed station list of this reply; owned.
WsHandle list(FakeWs &ws, const FakeReply &reply)
{
    ws.replyNext(VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_OK, reply);
    velmora_ws_getStationList(1, "dateCreated", "desc", keep, nullptr, nullptr);
    ws.deliver();
    return WsHandle(received);
}

} // namespace

class ServiceReplyTest : public QObject {
    Q_OBJECT
private slots:
    void nothingIsReadFromZero()
    {
        QCOMPARE(wsreply::commandId(0), -1);
        QVERIFY(!wsreply::hasData(0));
        QCOMPARE(wsreply::StationList(0).count(), 0);
        QVERIFY(!wsreply::StationList(0).at(0));
        QVERIFY(!wsreply::station(0));
        QVERIFY(!wsreply::playlist(0));
        QVERIFY(!wsreply::adMetadata(0));
        QVERIFY(wsreply::loginUserName(0).isEmpty());
        QVERIFY(wsreply::activationCode(0).code.isEmpty());
        QVERIFY(wsreply::search(0).tracks.isEmpty());
        QVERIFY(wsreply::traits(0).isEmpty());
    }

    void emptyAndOddListsHaveNoElements()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        QCOMPARE(wsreply::StationList(list(fixture.ws, FakeReply()).get()).count(), 0);
        QCOMPARE(wsreply::StationList(list(fixture.ws, FakeReply::stationList({})).get()).count(), 0);
        const auto odd = [](int count) {
            return FakeReply::of<VLM_WS_STATION_LIST_T>(
                [count](VLM_WS_STATION_LIST_T &record, FakeArena &) { record.count = count; }); // without an array
        };
        for (int count : {-1, 7}) {
            const WsHandle handle = list(fixture.ws, odd(count));
            QCOMPARE(wsreply::StationList(handle.get()).count(), 0);
            QVERIFY(!wsreply::StationList(handle.get()).at(0));
        }
    }

    void aReplyOfAnotherRequestIsNotMisread()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        const WsHandle handle = list(fixture.ws, FakeReply::stationListOf({"s1"}));
        QVERIFY(wsreply::hasData(handle.get()));
        QVERIFY(!wsreply::playlist(handle.get()));
        QVERIFY(!wsreply::station(handle.get()));
        QVERIFY(wsreply::loginUserName(handle.get()).isEmpty());
        QVERIFY(wsreply::search(handle.get()).artists.isEmpty());
    }

    void anOwnedHandleIsReleasedOnceHoweverItMoves()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        WsHandle first = list(fixture.ws, FakeReply());
        WsHandle second = list(fixture.ws, FakeReply());
        const HANDLE_T kept = second.get();
        first = std::move(second);
        QCOMPARE(fixture.ws.releases(), 1);
        WsHandle third(std::move(first));
        QCOMPARE(third.get(), kept);
        WsHandle &same = third;
        third = std::move(same);
        QVERIFY(fixture.ws.isLive(kept));
        const HANDLE_T taken = third.take();
        QVERIFY(!third);
        third.reset();
        QVERIFY(fixture.ws.isLive(taken));
        velmora_ws_release_handle(taken);
        QCOMPARE(fixture.ws.releases(), 2);
    }
};

QTEST_GUILESS_MAIN(ServiceReplyTest)
#include "service_reply_test.moc"
