#pragma once

#include "server/api/stationservice.h"

#include <random>
#include <string>
#include <vector>

// Many accounts with their radios and stations, made in a service's data at once: nobody can sign up 100,000 times for
// a benchmark.
namespace bench {

enum class Ads { None, One };

// Music without files: tracks, "t0" and so on, of sixty styles, a dozen by each artist, whose sound is drawn by chance.
void fillCatalogue(velmora::server::StationService &service, size_t trackCount, std::mt19937 &random, Ads ads);
std::string styleName(uint64_t number);

// A radio as its own device knows it, linked with an account of its own.
struct TownRadio {
    std::string deviceKey;
    std::string deviceId;
    std::string address;   // of its household, which a balancer passes on
    std::string userToken; // of an open session; empty: it has not signed in yet
    std::string station;   // its token
    int64_t account = 0;
};

enum class SignedIn { No, Yes };

// So many accounts, each with a radio and a station of a style or an artist. Some thousand a second.
std::vector<TownRadio> makeTown(velmora::server::StationService &service, size_t count, SignedIn signedIn,
                                std::mt19937 &random);

// What a PostgreSQL has spent for the clients that are connected, and has written to its log. Zeroes for a file.
struct DatabaseCosts {
    double seconds = 0, logBytes = 0;
};
DatabaseCosts databaseCosts(velmora::server::Store &store);

} // namespace bench
