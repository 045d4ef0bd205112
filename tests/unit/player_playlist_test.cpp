// Which entry comes next, and what one look at the audio buffer leads to.
#include "fakes/row.h"
#include "player/playlistcursor.h"
#include "player/waterline.h"

#include <QtTest>

using playlistcursor::Move;
using waterline::Action;

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
    void theCursorFindsTheNextEntry()
    {
        const std::tuple<QByteArray, int, bool, Move, int> cases[] = {
            {"tt", -1, false, Move::StartTrack, 0}, // a new playlist
            {"tt", 0, false, Move::StartTrack, 1},  // the next track
            {"ta", 0, false, Move::StartAd, 1},     // an ad
            {"ta", 1, false, Move::FetchMore, 2},   // after the ad that ends it
            {"tt", 1, false, Move::FetchMore, 2},   // used up
            {"", -1, false, Move::FetchMore, 0},    // empty
            {"tt", 0, true, Move::FetchMore, 1},    // fresh one wanted
            {"tx", 0, false, Move::SkipTrack, 1},   // marker for an address
            {"tn", 0, false, Move::SkipTrack, 1},   // no address
            {"tb", 0, false, Move::BrokenTrack, 1}, // no map
        };
        for (const auto &[letters, playing, fresh, move, index] : cases) {
            const Row row(QStringLiteral("%1 after %2").arg(QString(letters)).arg(playing));
            const Playlist playlist(letters);
            const auto next = playlistcursor::next(&playlist.list, playing, fresh, marker);
            QCOMPARE(next.move, move);
            QCOMPARE(next.index, index);
        }
    }

    void withoutAPlaylistNothingIsNext()
    {
        QCOMPARE(playlistcursor::next(nullptr, 3, true, marker).move, Move::NoPlaylist);
        QVERIFY(!playlistcursor::isValid(nullptr, 0));
        QVERIFY(!playlistcursor::isAd(nullptr, 0));
        QVERIFY(!playlistcursor::track(nullptr, 0));
    }

    void anEntryIsATrackOrAnAdOrNothing()
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

    void addressesAreInvalidByTheirFirstFourteenCharacters()
    {
        const QByteArray none;
        const std::tuple<QByteArray, QByteArray, bool> cases[] = {
            {QByteArray(marker), QByteArray(marker), true},                  // the marker
            {QByteArray("http://invalid.host/a"), QByteArray(marker), true}, // the marker and more
            {QByteArray("http://invaliD"), QByteArray(marker), false},       // differs in the 14th
            {QByteArray("http://"), QByteArray(marker), false},              // shorter
            {none, none, true},                                              // both null
            {QByteArray("http://host"), none, false},                        // only the address
            {none, QByteArray(marker), false},                               // only the marker
        };
        for (const auto &[url, mark, isInvalid] : cases) {
            QCOMPARE(playlistcursor::isInvalidUrl(url.isNull() ? nullptr : url.constData(),
                                                  mark.isNull() ? nullptr : mark.constData()),
                     isInvalid);
        }
    }

    void oneTickHasOneOutcome()
    {
        const waterline::State calm{false, false, false, 5};
        const waterline::State low{false, false, true, 5};
        const waterline::State eof{false, true, true, 5};
        const std::tuple<waterline::State, waterline::Reading, Action, bool> cases[] = {
            {calm, reading(0, 2999, 5), Action::Pause, true},                  // low while playing
            {calm, reading(0, 2999, 6), Action::None, true},                   // low while paused
            {calm, reading(0, 3000, 5), Action::None, false},                  // on the low line
            {low, reading(0, 6999, 6), Action::None, true},                    // between the lines, still paused
            {low, reading(0, 7000, 6), Action::None, true},                    // on the high line
            {low, reading(0, 7001, 6), Action::PlayOn, false},                 // above, paused
            {low, reading(0, 7001, 4), Action::PlayOn, false},                 // above, stopped
            {low, reading(0, 7001, 5), Action::AlreadyPlays, false},           // above, playing
            {low, reading(0, 7001, 5, 100, true), Action::ShowPlaying, false}, // above, playing, shown as paused
            {eof, reading(99000, 100000, 6), Action::Resume, false},           // all received, little left
            {eof, reading(100000, 100000, 5), Action::Ended, true},            // all received and heard
            {eof, reading(99999, 99999, 5), Action::Resume, false},            // heard up to another length
            {waterline::State{true, true, false, 5}, reading(0, 0, 4), Action::NextSong, false}, // track over
            {waterline::State{true, false, false, 5}, reading(0, 5000, 5), Action::None,
             false}, // a stray next-song without the end
        };
        int number = 0;
        for (const auto &[before, reading, expected, isLow] : cases) {
            const Row row(QString::number(++number));
            waterline::State state = before;
            const Action action = waterline::tick(state, reading);
            QCOMPARE(action, expected);
            QCOMPARE(state.isLowWater, isLow);
            QCOMPARE(state.isGotoNext, action == Action::Ended);
            QCOMPARE(state.isFileEof, before.isFileEof && action != Action::NextSong);
            const bool isUnderTheLine = !before.isFileEof && reading.amount < waterline::lowMs;
            QCOMPARE(state.lowTicks, isUnderTheLine ? before.lowTicks + 1 : 0);
        }
    }

    void threeSecondsInTheBufferRestartTheCount()
    {
        waterline::State state;
        state.lowTicks = 599;
        QCOMPARE(waterline::tick(state, reading(0, 3000, 6)), Action::None);
        QCOMPARE(waterline::tick(state, reading(0, 2999, 6)), Action::None);
        QCOMPARE(state.lowTicks, 1);
    }

    void aTrackWhoseRestWasHeardEndsAtTheTickAfter()
    {
        waterline::State state{false, true, false, 0};
        QCOMPARE(waterline::tick(state, reading(100000, 100000, 5)), Action::Ended);
        QCOMPARE(waterline::tick(state, reading(100000, 100000, 5)), Action::NextSong);
        QVERIFY(!state.isFileEof && !state.isGotoNext);
    }
};

QTEST_APPLESS_MAIN(PlayerPlaylistTest)
#include "player_playlist_test.moc"
