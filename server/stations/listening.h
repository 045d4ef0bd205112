#pragma once

#include "server/accounts/sessions.h"
#include "server/engine/chooser.h"
#include "server/stations/plays.h"
#include "server/stations/stations.h"

#include <unordered_map>

namespace velmora::server {

class Statement;

// What the store knows of a listener at one moment: all that a playlist is chosen by, read with one statement. It names
// music by ids only. A value; any thread.
class Listening {
public:
    static constexpr size_t mostRecent = 60;  // tracks that a station remembers to have handed out
    static constexpr int64_t playSlots = 512; // tracks of a station whose plays are remembered, played or not
    static constexpr int64_t playSeconds = 90 * 24 * 3600; // older plays do not count

    // Of the session that this token opened, for this station of its account.
    static Listening ofSession(Store &store, const std::string &token, const std::string &stationToken, int64_t now);
    // Of a station of the account, without a session.
    static Listening ofAccount(Store &store, AccountId account, const std::string &stationToken, int64_t now);

    // Nothing: the token is unknown or has expired.
    const std::optional<Session> &session() const { return m_session; }
    bool isAccountActive() const { return m_isActive; }
    // Nothing: the account has no such station.
    const std::optional<Station> &station() const { return m_station; }
    // Of the account, without their tokens; the Tapestry station first.
    const std::vector<Station> &stations() const { return m_stations; }

    // The taste of the station or, if it is the Tapestry station, of any station of the account. The Tapestry station
    // uses every thumb of its account; it has no seeds.
    engine::StationTaste taste(const Station &station) const;
    engine::Circumstances circumstances(const engine::EngineIndex &index) const;
    // By station of the account, of the Tapestry station only: how many plays are remembered of the last 30 days.
    std::unordered_map<int64_t, int> playsByStation() const;
    bool isThumbedUp(int64_t trackId) const; // on the station
    // The tracks that the station handed out last, newest first.
    const std::vector<int64_t> &recent() const { return m_recent; }
    int listsOfAccount() const;                                    // so many were issued
    const std::string &listsPerAd() const { return m_listsPerAd; } // as the setting stands in the store

    // A station's recent tracks as they are stored.
    static std::string recentText(const std::vector<int64_t> &tracks);

    // The statements, for a test of their plans. Parameters: the hash of a session's token, or an account; the time; a
    // station's token; since when plays count.
    static const std::string &sessionQuery();
    static const std::string &accountQuery();

private:
    struct Thumb {
        int64_t station, track, givenAt;
        bool isPositive;
    };
    struct Opinion { // of the account: a sleep or a bookmark
        int64_t track, at;
    };

    static Listening read(Statement &row, int64_t now);
    bool isOf(int64_t station, const Station &wanted) const { return wanted.isTapestry || station == wanted.id; }
    std::vector<engine::TasteEvent> events(const Station &station) const;

    int64_t m_now = 0;
    std::optional<Session> m_session;
    bool m_isActive = false;
    bool m_isFiltered = false; // explicit music
    std::optional<Station> m_station;
    std::vector<Station> m_stations;
    std::vector<int64_t> m_recent;
    std::vector<std::pair<int64_t, Music>> m_seeds;        // with their stations
    std::vector<Thumb> m_thumbs;                           // the latest first
    std::vector<std::pair<int64_t, Plays::Heard>> m_plays; // with their stations; one under way has no outcome
    std::vector<Opinion> m_sleeps, m_bookmarks;
    std::string m_listsPerAd;
};

} // namespace velmora::server
