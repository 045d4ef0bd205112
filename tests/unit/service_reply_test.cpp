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

// A completed station list, search, ... of this reply; owned.
template <typename Request>
WsHandle completed(FakeWs &ws, int cmd, const FakeReply &reply, Request request)
{
    ws.replyNext(cmd, VLM_WS_ERR_OK, reply);
    HANDLE_T handle = 0;
    request(&handle);
    ws.deliver();
    return WsHandle(received);
}

WsHandle list(FakeWs &ws, const FakeReply &reply)
{
    return completed(ws, VLM_WS_MSGID_GET_STATION_LIST, reply,
                     [](HANDLE_T *out) { velmora_ws_getStationList(1, "dateCreated", "desc", keep, nullptr, out); });
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

    void aStationListGivesItsRecordsInOrder()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        const WsHandle handle = list(fixture.ws, FakeReply::stationListOf({"s1", "s2"}));
        const wsreply::StationList stations(handle.get());
        QCOMPARE(wsreply::commandId(handle.get()), int(VLM_WS_MSGID_GET_STATION_LIST));
        QCOMPARE(stations.count(), 3);
        QCOMPARE(stations.at(0)->stationToken, "tapestry");
        QCOMPARE(stations.at(2)->stationToken, "s2");
        QVERIFY(!stations.at(3));
        QVERIFY(!stations.at(-1));
    }

    void emptyAndOddListsHaveNoElements()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        QCOMPARE(wsreply::StationList(list(fixture.ws, FakeReply()).get()).count(), 0);
        QCOMPARE(wsreply::StationList(list(fixture.ws, FakeReply::stationList({})).get()).count(), 0);
        const auto odd = [](int count) {
            return FakeReply([count](FakeArena &arena) {
                auto *record = arena.make<VLM_WS_STATION_LIST_T>();
                record->count = count; // without an array
                return static_cast<void *>(record);
            });
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

    void searchResultsOutliveTheirHandleAndMayLackTexts()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        WsHandle handle =
            completed(fixture.ws, VLM_WS_MSGID_SEARCH,
                      FakeReply::search({{"m1", "Tide", "Gull"}, {"m2", QByteArray(), ""}}, {{"m3", "Caf\xc3\xa9"}}),
                      [](HANDLE_T *out) { velmora_ws_search("t", 0, keep, nullptr, out); });
        const wsreply::SearchResult found = wsreply::search(handle.get());
        handle.reset();
        QCOMPARE(found.tracks.size(), 2);
        QCOMPARE(found.tracks.at(0).songName, QStringLiteral("Tide"));
        QVERIFY(found.tracks.at(1).songName.isEmpty());
        QCOMPARE(found.artists.size(), 1);
        QCOMPARE(found.artists.at(0).artistName, QString::fromUtf8("Caf\xc3\xa9"));
    }

    void loginCodeAndExplanationAreRead()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        const WsHandle login =
            completed(fixture.ws, VLM_WS_MSGID_USER_LOGIN, FakeReply::userLogin("ann@example.org"), [](HANDLE_T *out) {
                velmora_ws_userLogin("deviceId", nullptr, nullptr, "id", keep, nullptr, out);
            });
        QCOMPARE(wsreply::loginUserName(login.get()), QStringLiteral("ann@example.org"));
        const WsHandle nameless =
            completed(fixture.ws, VLM_WS_MSGID_USER_LOGIN, FakeReply::userLogin(QByteArray()), [](HANDLE_T *out) {
                velmora_ws_userLogin("deviceId", nullptr, nullptr, "id", keep, nullptr, out);
            });
        QVERIFY(wsreply::loginUserName(nameless.get()).isEmpty());
        const WsHandle code = completed(
            fixture.ws, VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE, FakeReply::activationCode("AB12", "http://x/"),
            [](HANDLE_T *out) { velmora_ws_generateDeviceActivationCode("id", keep, nullptr, out); });
        QCOMPARE(wsreply::activationCode(code.get()).code, QStringLiteral("AB12"));
        QCOMPARE(wsreply::activationCode(code.get()).url, QStringLiteral("http://x/"));
        const WsHandle why =
            completed(fixture.ws, VLM_WS_MSGID_EXPLAIN_TRACK, FakeReply::explanation({"calm", QByteArray(), "slow"}),
                      [](HANDLE_T *out) { velmora_ws_explainTrack("t", keep, nullptr, out); });
        QCOMPARE(wsreply::traits(why.get()), QStringList({QStringLiteral("calm"), QString(), QStringLiteral("slow")}));
    }

    void aPlaylistKeepsItsEntriesKinds()
    {
        FakeWsFixture fixture(FakeWs::Delivery::OnDemand);
        const WsHandle handle =
            completed(fixture.ws, VLM_WS_MSGID_GET_PLAYLIST,
                      FakeReply::playlist({FakeEntry::track({}), FakeEntry::ad("ad-1"), FakeEntry::withoutMap(true)}),
                      [](HANDLE_T *out) { velmora_ws_getPlaylist("s", 0, keep, nullptr, out); });
        const VLM_WS_PLAYLIST_T *playlist = wsreply::playlist(handle.get());
        QVERIFY(playlist);
        QCOMPARE(playlist->count, 3);
        QCOMPARE(playlist->entries[0].map.p_trackMap->songName, "Song");
        QCOMPARE(int(playlist->entries[1].isTrack), 0);
        QCOMPARE(playlist->entries[1].map.p_adMap->adToken, "ad-1");
        QVERIFY(!playlist->entries[2].map.p_trackMap);
    }

    void anOwnedHandleIsGivenBackOnceHoweverItMoves()
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
