#pragma once

#include "server/catalogue/catalogue.h"
#include "server/engine/reasons.h"
#include "server/stations/enginekeeper.h"
#include "server/stations/playlistrules.h"
#include "server/stations/stations.h"

#include <list>
#include <map>

namespace velmora::server {

// A track or an advertisement that was handed to a listener, under a token of that account's own.
struct IssuedTrack {
    std::string token;
    AccountId accountId = 0;
    int64_t stationId = 0;
    Track track;
    std::vector<engine::ReasonText> reasons;
    int64_t issueId = 0; // grows with every track that is issued
};

struct IssuedAd {
    std::string token;
    int64_t stationId = 0;
    Ad ad;
};

class Transcodes;

struct PlaylistEntry {
    std::optional<IssuedTrack> track; // exactly one of the two
    std::optional<IssuedAd> ad;
};

// Chooses what a station plays and remembers what was chosen for whom and why. Any thread, but next(), styles() and
// hasOwnMusic() never under the store's lock: comparing music takes its time.
class Playlists {
public:
    static constexpr int entriesInList = 4;
    static constexpr int64_t tokenSeconds = 2 * 24 * 3600; // a token is of use so long
    static constexpr int64_t sleepSeconds = 30 * 24 * 3600;
    static constexpr int64_t forgetSeconds = 600;          // old rows are deleted so often
    static constexpr int64_t playSeconds = 90 * 24 * 3600; // what was heard is remembered so long

    Playlists(Store &store, Catalogue &catalogue, Stations &stations, Clock clock, Random random);

    // Not owned; set before the server answers. Null where no music needs transcoding.
    void setTranscodes(Transcodes *transcodes) { m_transcodes = transcodes; }

    // The styles that the station is about.
    std::set<std::string> styles(const Station &station);
    // Whether something playable has to do with what the station was made from.
    bool hasOwnMusic(const Station &station);
    // The next four entries; fewer while the catalogue is still being made, because the same track twice in a row is
    // worse than coming back for another list. Empty when nothing at all may be played: no track has its file yet, or
    // thumbs down and sleeps stand against every one. The first track can be played at once; those after it may still
    // have to be transcoded, which is begun here. `deviceKeyHash` tells who will play it.
    std::vector<PlaylistEntry> next(const Station &station, const std::string &deviceKeyHash = {});

    // Whether tracks become ready that were not when next() was asked.
    bool isPreparing();

    std::optional<IssuedTrack> findTrack(AccountId account, const std::string &token);
    std::optional<IssuedAd> findAd(AccountId account, const std::string &token);
    void registerAd(AccountId account, const std::string &token);

private:
    // What was compared for a station, kept while it is among those used last.
    struct Kept {
        std::mutex mutex; // held while the station chooses; taken before the store's lock
        engine::StationTaste taste;
        std::shared_ptr<const engine::StationScores> scores;
    };
    static constexpr size_t mostKept = 16; // stations; about 1.2 MB each with 100,000 tracks

    struct Choice {
        Track track;
        std::vector<engine::ReasonText> reasons;
        std::string terms; // as they are stored
    };

    std::shared_ptr<Kept> kept(int64_t stationId);
    std::shared_ptr<const engine::StationScores> scoresOf(const Station &station, Kept &kept);
    // The station that chooses the next track: for the Tapestry station one of the account's, drawn by how much it was
    // heard lately, or the Tapestry station itself.
    Station chooser(const Station &station);
    // What one list is chosen by.
    struct Moment {
        engine::Circumstances now;
        std::map<int64_t, std::shared_ptr<const engine::StationScores>> scores; // by station, once it was drawn
    };
    // `mustBeReady`: only what can be played at once.
    std::optional<Choice> choose(const Station &station, Kept &own, Moment &moment, bool mustBeReady);
    // Has transcoded what was issued, and what may follow it.
    void prepare(const Station &station, Kept &own, Moment moment, const std::vector<PlaylistEntry> &entries);
    std::optional<IssuedAd> issueAd(Database &db, const Station &station);
    IssuedTrack issueTrack(Database &db, const Station &station, const Choice &choice,
                           const std::string &deviceKeyHash);
    void forgetOld(Database &db);

    Store &m_store;
    Catalogue &m_catalogue;
    Stations &m_stations;
    Clock m_clock;
    Random m_random;
    int64_t m_forgottenAt = 0; // when old rows were deleted; under the store's lock
    Transcodes *m_transcodes = nullptr;
    EngineKeeper m_keeper;
    std::mutex m_mutex;                                          // guards m_kept
    std::list<std::pair<int64_t, std::shared_ptr<Kept>>> m_kept; // the one used last in front
};

} // namespace velmora::server
