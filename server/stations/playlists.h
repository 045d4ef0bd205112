#pragma once

#include "server/catalogue/catalogue.h"
#include "server/stations/playlistrules.h"
#include "server/stations/stations.h"

namespace velmora::server {

// A track or an advertisement that was handed to a listener, under a token of that account's own.
struct IssuedTrack {
    std::string token;
    AccountId accountId = 0;
    int64_t stationId = 0;
    Track track;
    std::vector<Reason> reasons;
};

struct IssuedAd {
    std::string token;
    int64_t stationId = 0;
    Ad ad;
};

struct PlaylistEntry {
    std::optional<IssuedTrack> track; // exactly one of the two
    std::optional<IssuedAd> ad;
};

// Chooses what a station plays and remembers what was chosen for whom and why. Any thread.
class Playlists {
public:
    static constexpr int entriesInList = 4;
    static constexpr int64_t tokenSeconds = 2 * 24 * 3600; // a token is of use so long
    static constexpr int64_t sleepSeconds = 30 * 24 * 3600;

    Playlists(Store &store, Catalogue &catalogue, Stations &stations, Clock clock, Random random);

    // The styles that the station is about.
    std::set<std::string> styles(const Station &station);
    // Whether something playable fits the station, beyond a mere likeness of mood.
    bool hasOwnMusic(const Station &station);
    // The next four entries; fewer while the catalogue is still being made, because the same track twice in a row is
    // worse than coming back for another list. Empty when nothing at all may be played: no track has its file yet, or
    // thumbs down and sleeps stand against every one.
    std::vector<PlaylistEntry> next(const Station &station);

    std::optional<IssuedTrack> findTrack(AccountId account, const std::string &token);
    std::optional<IssuedAd> findAd(AccountId account, const std::string &token);
    void registerAd(AccountId account, const std::string &token);

private:
    Taste tasteOf(Database &db, const Station &station);
    void addSeed(Database &db, Taste &taste, const Music &music);
    void addLiked(Database &db, Taste &taste, const Station &station);
    std::vector<Candidate> candidatesFor(Database &db, const Station &station, const Taste &taste);
    std::optional<IssuedAd> issueAd(Database &db, const Station &station);
    IssuedTrack issueTrack(Database &db, const Station &station, const Choice &choice);
    void forgetOld(Database &db);

    Store &m_store;
    Catalogue &m_catalogue;
    Stations &m_stations;
    Clock m_clock;
    Random m_random;
};

} // namespace velmora::server
