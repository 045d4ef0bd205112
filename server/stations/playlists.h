#pragma once

#include "server/catalogue/catalogue.h"
#include "server/engine/reasons.h"
#include "server/stations/enginekeeper.h"
#include "server/stations/playlistrules.h"
#include "server/stations/stations.h"

#include <list>
#include <map>

namespace velmora::server {

// A track or an advertisement that was issued to a listener, under a token that is valid for that account only.
struct IssuedTrack {
    std::string token;
    AccountId accountId = 0;
    int64_t stationId = 0;
    Track track;
    std::vector<engine::ReasonText> reasons;
    int64_t issueId = 0; // ascending: a later track has a higher one
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

// Chooses what a station plays, and stores what was chosen for whom and why. Any thread. next(), styles() and
// hasOwnMusic() compare music, which takes long, so they are never called under the store's lock.
class Playlists {
public:
    static constexpr int entriesInList = 4;
    static constexpr int64_t tokenSeconds = 2 * 24 * 3600; // a token is valid so long
    static constexpr int64_t sleepSeconds = 30 * 24 * 3600;
    static constexpr int64_t forgetSeconds = 600;          // old rows are deleted so often
    static constexpr int64_t playSeconds = 90 * 24 * 3600; // plays are kept so long

    Playlists(Store &store, Catalogue &catalogue, Stations &stations, Clock clock, Random random);

    // Not owned; set before the server answers requests. Null when no music needs transcoding.
    void setTranscodes(Transcodes *transcodes) { m_transcodes = transcodes; }

    // The styles of the station's seeds.
    std::set<std::string> styles(const Station &station);
    // Whether a track that is related to the station's seeds may be played: present, not disliked, and allowed by the
    // explicit filter.
    bool hasOwnMusic(const Station &station);
    // The next four entries. Fewer while the catalogue is still being made, because a shorter list is better than the
    // same track twice in a row. Empty when nothing may be played: no track has a file yet, or thumbs down and sleeps
    // exclude every track. The first track can be played at once. Later ones may still need a transcode, which is
    // started here. `deviceKeyHash` identifies the device that will play the list.
    std::vector<PlaylistEntry> next(const Station &station, const std::string &deviceKeyHash = {});

    // Whether transcodes are in progress: a later next() may have more tracks to choose from.
    bool isPreparing();

    std::optional<IssuedTrack> findTrack(AccountId account, const std::string &token);
    std::optional<IssuedAd> findAd(AccountId account, const std::string &token);
    void registerAd(AccountId account, const std::string &token);

private:
    // The results of comparing music for a station; kept for the stations that were used most recently.
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
    // The station that chooses the next track. For the Tapestry station it is drawn from the account's stations,
    // weighted by how much each was heard lately, or is the Tapestry station itself.
    Station chooser(const Station &station);
    // What one list is chosen by.
    struct Moment {
        engine::Circumstances now;
        std::map<int64_t, std::shared_ptr<const engine::StationScores>> scores; // by station, once it was drawn
    };
    // `mustBeReady`: chooses only tracks that can be played at once.
    std::optional<Choice> choose(const Station &station, Kept &own, Moment &moment, bool mustBeReady);
    // Requests transcodes of the issued tracks and of those that may follow.
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
    std::list<std::pair<int64_t, std::shared_ptr<Kept>>> m_kept; // most recently used first
};

} // namespace velmora::server
