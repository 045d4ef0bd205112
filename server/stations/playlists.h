#pragma once

#include "server/catalogue/catalogue.h"
#include "server/engine/reasons.h"
#include "server/stations/enginekeeper.h"
#include "server/stations/listening.h"
#include "server/stations/playlistrules.h"
#include "server/stations/plays.h"
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
    int64_t number = 0; // among those of the station; a later track has a higher one

    Issue issue() const { return {accountId, stationId, number, track.id}; }
};

struct IssuedAd {
    std::string token;
    int64_t stationId = 0;
    int64_t adId = 0;
};

class Transcodes;

struct PlaylistEntry {
    std::optional<IssuedTrack> track; // exactly one of the two
    std::optional<IssuedAd> ad;
};

// Chooses what a station plays. What was chosen for whom and why stands in the tokens; the store keeps the last tracks
// of each station. Any thread. next(), styles() and hasOwnMusic() compare music, which takes long, so they are never
// called under the store's lock.
class Playlists {
public:
    static constexpr int entriesInList = 4;
    static constexpr int64_t tokenSeconds = 2 * 24 * 3600; // a token is valid so long

    Playlists(Store &store, Catalogue &catalogue, SealedTokens &tokens, Clock clock, Random random);

    // Not owned; set before the server answers requests. Null when no music needs transcoding.
    void setTranscodes(Transcodes *transcodes) { m_transcodes = transcodes; }

    // The styles of the station's seeds.
    std::set<std::string> styles(const Listening &listening);
    // Whether a track that is related to the station's seeds may be played: present, not disliked, and allowed by the
    // explicit filter.
    bool hasOwnMusic(const Listening &listening);
    // The next four entries. Fewer while the catalogue is still being made, because a shorter list is better than the
    // same track twice in a row. Empty when nothing may be played: no track has a file yet, or thumbs down and sleeps
    // exclude every track, or the station was deleted meanwhile. The first track can be played at once. Later ones may
    // still need a transcode, which is started here. `listening` has a station. Writes one row.
    std::vector<PlaylistEntry> next(const Listening &listening);

    // Whether transcodes are in progress: a later next() may have more tracks to choose from.
    bool isPreparing();

    std::optional<IssuedTrack> findTrack(AccountId account, const std::string &token);
    std::optional<IssuedAd> findAd(AccountId account, const std::string &token);

    // The statement that keeps what was issued, for a test of its plan. Parameters: account, station, recent tracks.
    static const char *keepStatement();

private:
    // A station, and whether it chooses for the Tapestry station, which remembers fewer of its plays.
    using KeptKey = std::pair<int64_t, bool>;
    // The results of comparing music for a station; kept for the stations that were used most recently.
    struct Kept {
        std::mutex mutex; // held while the station chooses; taken before the store's lock
        engine::StationTaste taste;
        std::shared_ptr<const engine::StationScores> scores;
    };
    static constexpr size_t mostKept = 256; // stations; up to 40 kB each

    struct Choice {
        Track track;
        std::vector<engine::ReasonText> reasons;
    };

    std::shared_ptr<Kept> kept(const KeptKey &key);
    std::shared_ptr<const engine::StationScores> scoresOf(const Listening &listening, const Station &station,
                                                          Kept &kept);
    // The station that chooses the next track. For the Tapestry station it is drawn from the account's stations,
    // weighted by how much each was heard lately, or is the Tapestry station itself.
    const Station &chooser(const Listening &listening);
    // A station that was drawn to choose.
    struct Drawn {
        std::shared_ptr<const engine::StationScores> scores;
        engine::KnownTerms known;
    };
    // What one list is chosen by.
    struct Moment {
        const Listening &listening;
        engine::Circumstances now;
        std::map<int64_t, Drawn> drawn; // by station
    };
    // `mustBeReady`: chooses only tracks that can be played at once.
    std::optional<Choice> choose(Kept &own, Moment &moment, bool mustBeReady);
    // Requests transcodes of the issued tracks and of those that may follow.
    void prepare(Kept &own, Moment moment, const std::vector<PlaylistEntry> &entries);
    // The number of the station's list that is issued now; nothing when there is no such station any more.
    std::optional<int64_t> keep(const Station &station, const std::vector<int64_t> &recent);
    IssuedTrack sealTrack(const Station &station, const Choice &choice, int64_t number);
    // The advertisements take turns within the account.
    std::optional<IssuedAd> nextAd(const Listening &listening, int listsPerAd);

    Store &m_store;
    Catalogue &m_catalogue;
    SealedTokens &m_tokens;
    Clock m_clock;
    Random m_random;
    Transcodes *m_transcodes = nullptr;
    EngineKeeper m_keeper;
    std::mutex m_mutex;                                          // guards m_kept
    std::list<std::pair<KeptKey, std::shared_ptr<Kept>>> m_kept; // most recently used first
};

} // namespace velmora::server
