// Which entry comes next, and what one look at the audio buffer leads to.
#include "player/playlistcursor.h"
#include "player/waterline.h"

#include <QtTest>

using playlistcursor::Move;
using waterline::Action;

Q_DECLARE_METATYPE(waterline::State)
Q_DECLARE_METATYPE(waterline::Reading)

namespace {

const char marker[] = "http://invalid";

// One entry a letter: t track, x track without address, n track with a null address, b track without its map, a ad.
struct Playlist {
    explicit Playlist(const QByteArray &letters)
    {
        for (const char letter : letters) {
            auto *map = new VLM_TRACK_MAP_T{};
            map->audioUrl = letter == 't' ? url : letter == 'x' ? noUrl : nullptr;
            maps.append(map);
            VLM_PLAYLIST_ENTRY_T entry{};
            entry.isTrack = letter != 'a';
            if (letter == 'a')
                entry.map.p_adMap = &ad;
            else
                entry.map.p_trackMap = letter == 'b' ? nullptr : map;
            entries.append(entry);
        }
        list = {static_cast<int32_t>(entries.size()), entries.data()};
    }
    ~Playlist() { qDeleteAll(maps); }
    Playlist(const Playlist &) = delete;

    char url[24] = "http://host/track.flac";
    char noUrl[20] = "http://invalid/rest";
    VLM_AD_MAP_T ad{};
    QList<VLM_TRACK_MAP_T *> maps;
    QList<VLM_PLAYLIST_ENTRY_T> entries;
    VLM_WS_PLAYLIST_T list{};
};

waterline::Reading reading(quint32 start, quint32 end, int state, int totalSeconds = 100, bool isPaused = false)
{
    return {start, end, end - start, state, totalSeconds, isPaused};
}

} // namespace

class PlayerPlaylistTest : public QObject {
    Q_OBJECT
private slots:
    void theCursorFindsTheNextEntry_data();
    void theCursorFindsTheNextEntry();
    void withoutAPlaylistNothingIsNext();
    void anEntryIsATrackOrAnAdOrNothing();
    void addressesAreInvalidByTheirFirstFourteenCharacters_data();
    void addressesAreInvalidByTheirFirstFourteenCharacters();
    void oneTickHasOneOutcome_data();
    void oneTickHasOneOutcome();
    void sixHundredTicksUnderTheLineGiveUp();
    void threeSecondsInTheBufferStartTheCountAnew();
    void aTrackWhoseRestWasHeardEndsAtTheTickAfter();
};

void PlayerPlaylistTest::theCursorFindsTheNextEntry_data()
{
    QTest::addColumn<QByteArray>("letters");
    QTest::addColumn<int>("playing");
    QTest::addColumn<bool>("fresh");
    QTest::addColumn<int>("move");
    QTest::addColumn<int>("index");
    QTest::newRow("a new playlist") << QByteArray("tt") << -1 << false << int(Move::StartTrack) << 0;
    QTest::newRow("the next track") << QByteArray("tt") << 0 << false << int(Move::StartTrack) << 1;
    QTest::newRow("an ad") << QByteArray("ta") << 0 << false << int(Move::StartAd) << 1;
    QTest::newRow("after the ad that ends it") << QByteArray("ta") << 1 << false << int(Move::FetchMore) << 2;
    QTest::newRow("used up") << QByteArray("tt") << 1 << false << int(Move::FetchMore) << 2;
    QTest::newRow("empty") << QByteArray() << -1 << false << int(Move::FetchMore) << 0;
    QTest::newRow("fresh one wanted") << QByteArray("tt") << 0 << true << int(Move::FetchMore) << 1;
    QTest::newRow("marker for an address") << QByteArray("tx") << 0 << false << int(Move::SkipTrack) << 1;
    QTest::newRow("no address") << QByteArray("tn") << 0 << false << int(Move::SkipTrack) << 1;
    QTest::newRow("no map") << QByteArray("tb") << 0 << false << int(Move::BrokenTrack) << 1;
}

void PlayerPlaylistTest::theCursorFindsTheNextEntry()
{
    QFETCH(QByteArray, letters);
    QFETCH(int, playing);
    QFETCH(bool, fresh);
    const Playlist playlist(letters);
    const auto next = playlistcursor::next(&playlist.list, playing, fresh, marker);
    QTEST(int(next.move), "move");
    QTEST(next.index, "index");
}

void PlayerPlaylistTest::withoutAPlaylistNothingIsNext()
{
    QCOMPARE(playlistcursor::next(nullptr, 3, true, marker).move, Move::NoPlaylist);
    QVERIFY(!playlistcursor::isValid(nullptr, 0));
    QVERIFY(!playlistcursor::isAd(nullptr, 0));
    QVERIFY(!playlistcursor::track(nullptr, 0));
}

void PlayerPlaylistTest::anEntryIsATrackOrAnAdOrNothing()
{
    const Playlist playlist("ta");
    QVERIFY(playlistcursor::track(&playlist.list, 0));
    QVERIFY(!playlistcursor::ad(&playlist.list, 0));
    QVERIFY(!playlistcursor::track(&playlist.list, 1));
    QVERIFY(playlistcursor::ad(&playlist.list, 1));
    for (const int outside : {-1, 2}) {
        QVERIFY(!playlistcursor::isValid(&playlist.list, outside));
        QVERIFY(!playlistcursor::track(&playlist.list, outside));
        QVERIFY(!playlistcursor::ad(&playlist.list, outside));
    }
}

void PlayerPlaylistTest::addressesAreInvalidByTheirFirstFourteenCharacters_data()
{
    QTest::addColumn<QByteArray>("url");
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<bool>("isInvalid");
    const QByteArray none;
    QTest::newRow("the marker") << QByteArray(marker) << QByteArray(marker) << true;
    QTest::newRow("the marker and more") << QByteArray("http://invalid.host/a") << QByteArray(marker) << true;
    QTest::newRow("differs in the 14th") << QByteArray("http://invaliD") << QByteArray(marker) << false;
    QTest::newRow("shorter") << QByteArray("http://") << QByteArray(marker) << false;
    QTest::newRow("both null") << none << none << true;
    QTest::newRow("only the address") << QByteArray("http://host") << none << false;
    QTest::newRow("only the marker") << none << QByteArray(marker) << false;
}

void PlayerPlaylistTest::addressesAreInvalidByTheirFirstFourteenCharacters()
{
    QFETCH(QByteArray, url);
    QFETCH(QByteArray, mark);
    QTEST(playlistcursor::isInvalidUrl(url.isNull() ? nullptr : url.constData(),
                                       mark.isNull() ? nullptr : mark.constData()),
          "isInvalid");
}

void PlayerPlaylistTest::oneTickHasOneOutcome_data()
{
    QTest::addColumn<waterline::State>("before");
    QTest::addColumn<waterline::Reading>("reading");
    QTest::addColumn<int>("action");
    QTest::addColumn<bool>("isLow");
    const waterline::State calm{false, false, false, 5};
    const waterline::State low{false, false, true, 5};
    const waterline::State eof{false, true, true, 5};
    QTest::newRow("low while playing") << calm << reading(0, 2999, 5) << int(Action::Pause) << true;
    QTest::newRow("low while paused") << calm << reading(0, 2999, 6) << int(Action::None) << true;
    QTest::newRow("on the low line") << calm << reading(0, 3000, 5) << int(Action::None) << false;
    QTest::newRow("between the lines, still paused") << low << reading(0, 6999, 6) << int(Action::None) << true;
    QTest::newRow("on the high line") << low << reading(0, 7000, 6) << int(Action::None) << true;
    QTest::newRow("above, paused") << low << reading(0, 7001, 6) << int(Action::PlayOn) << false;
    QTest::newRow("above, stopped") << low << reading(0, 7001, 4) << int(Action::PlayOn) << false;
    QTest::newRow("above, playing") << low << reading(0, 7001, 5) << int(Action::AlreadyPlays) << false;
    QTest::newRow("above, playing, shown as paused")
        << low << reading(0, 7001, 5, 100, true) << int(Action::ShowPlaying) << false;
    QTest::newRow("all received, little left") << eof << reading(99000, 100000, 6) << int(Action::Resume) << false;
    QTest::newRow("all received and heard") << eof << reading(100000, 100000, 5) << int(Action::Ended) << true;
    QTest::newRow("heard up to another length") << eof << reading(99999, 99999, 5) << int(Action::Resume) << false;
    QTest::newRow("track over") << waterline::State{true, true, false, 5} << reading(0, 0, 4) << int(Action::NextSong)
                                << false;
    QTest::newRow("a stray next-song without the end")
        << waterline::State{true, false, false, 5} << reading(0, 5000, 5) << int(Action::None) << false;
}

void PlayerPlaylistTest::oneTickHasOneOutcome()
{
    QFETCH(waterline::State, before);
    QFETCH(waterline::Reading, reading);
    waterline::State state = before;
    const Action action = waterline::tick(state, reading);
    QTEST(int(action), "action");
    QTEST(state.isLowWater, "isLow");
    QCOMPARE(state.isGotoNext, action == Action::Ended);
    QCOMPARE(state.isFileEof, before.isFileEof && action != Action::NextSong);
    const bool isUnderTheLine = !before.isFileEof && reading.amount < waterline::lowMs;
    QCOMPARE(state.lowTicks, isUnderTheLine ? before.lowTicks + 1 : 0);
}

void PlayerPlaylistTest::sixHundredTicksUnderTheLineGiveUp()
{
    waterline::State state;
    for (int i = 1; i <= 599; ++i)
        QVERIFY2(waterline::tick(state, reading(0, 2999, 6)) == Action::None, qPrintable(QString::number(i)));
    QCOMPARE(waterline::tick(state, reading(0, 2999, 6)), Action::GiveUp);
    QCOMPARE(state.lowTicks, 0);
}

void PlayerPlaylistTest::threeSecondsInTheBufferStartTheCountAnew()
{
    waterline::State state;
    state.lowTicks = 599;
    QCOMPARE(waterline::tick(state, reading(0, 3000, 6)), Action::None);
    QCOMPARE(waterline::tick(state, reading(0, 2999, 6)), Action::None);
    QCOMPARE(state.lowTicks, 1);
}

void PlayerPlaylistTest::aTrackWhoseRestWasHeardEndsAtTheTickAfter()
{
    waterline::State state{false, true, false, 0};
    QCOMPARE(waterline::tick(state, reading(100000, 100000, 5)), Action::Ended);
    QCOMPARE(waterline::tick(state, reading(100000, 100000, 5)), Action::NextSong);
    QVERIFY(!state.isFileEof && !state.isGotoNext);
}

QTEST_APPLESS_MAIN(PlayerPlaylistTest)
#include "player_playlist_test.moc"
