#pragma once

#include "server/engine/chooser.h"
#include "server/stations/stations.h"

namespace velmora::server {

// What the store remembers of a listener, in the engine's terms. Used under the store's lock.
class Listening {
public:
    Listening(Database &db, Stations &stations, int64_t now)
        : m_db(db)
        , m_stations(stations)
        , m_now(now)
    {
    }

    // The Tapestry station knows every thumb of its account and begins with nothing.
    engine::StationTaste taste(const Station &station);
    engine::Circumstances circumstances(const Station &station);
    // What happened in 30 days, by station of the account.
    std::unordered_map<int64_t, int> playsByStation(AccountId account);

private:
    std::vector<engine::TasteEvent> events(const Station &station);

    Database &m_db;
    Stations &m_stations;
    int64_t m_now;
};

} // namespace velmora::server
