#pragma once

#include "server/engine/chooser.h"
#include "server/stations/stations.h"

namespace velmora::server {

// Reads a listener's history from the store as the engine needs it. Used under the store's lock.
class Listening {
public:
    Listening(Database &db, Stations &stations, int64_t now)
        : m_db(db)
        , m_stations(stations)
        , m_now(now)
    {
    }

    // The Tapestry station uses every thumb of its account; it has no seeds.
    engine::StationTaste taste(const Station &station);
    engine::Circumstances circumstances(const Station &station);
    // The number of plays in the last 30 days, by station of the account.
    std::unordered_map<int64_t, int> playsByStation(AccountId account);

private:
    std::vector<engine::TasteEvent> events(const Station &station);

    Database &m_db;
    Stations &m_stations;
    int64_t m_now;
};

} // namespace velmora::server
