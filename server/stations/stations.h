#pragma once

#include "server/stations/musictokens.h"

#include <vector>

namespace velmora::server {

class Catalogue;

struct Station {
    int64_t id = 0;
    AccountId accountId = 0;
    std::string token;
    std::string name;
    bool isTapestry = false; // the one station of every account that mixes all others; cannot be renamed or deleted
    bool isShared = false;   // plays another listener's station
    bool allowRename = true;
    bool allowDelete = true;
    bool allowAddMusic = true;
    bool allowFeedback = true;
    int64_t createdAt = 0; // Unix seconds
    int listsIssued = 0;
};

enum class StationResult { Done, TooMany, NoSuchStation, NoSuchMusic, NotAllowed };

// The listeners' stations. Every look-up names the account and never finds another account's station. Any thread.
class Stations {
public:
    static constexpr int mostStations = 100;  // of one account, the Tapestry station among them
    static constexpr size_t longestName = 64; // characters
    static constexpr int mostStarters = 6;    // stations that a new account begins with, beside Tapestry

    Stations(Store &store, Catalogue &catalogue, Clock clock);

    enum class Order { ByDate, ByName };
    // The Tapestry station first, then the others in the requested order.
    std::vector<Station> list(AccountId account, Order order = Order::ByDate, bool isDescending = true);
    std::optional<Station> find(AccountId account, const std::string &token);
    std::optional<Station> find(AccountId account, int64_t id);
    int count(AccountId account);
    // Changes whenever the visible list changes.
    std::string checksum(AccountId account);

    // Every account has one, created with the account.
    Station createTapestry(AccountId account);
    // Creates a new listener's first stations, one for each of the catalogue's largest styles.
    void createStarters(AccountId account);
    // A station with this music as its seed. The same music again gives the existing station.
    StationResult create(AccountId account, const Music &music, Station *station);
    // A station that represents another listener's; it takes no feedback and no new name.
    StationResult createShared(AccountId account, const Music &music, const std::string &name, Station *station);
    StationResult rename(AccountId account, const std::string &token, const std::string &name, Station *station);
    StationResult remove(AccountId account, const std::string &token);
    StationResult addMusic(AccountId account, const std::string &token, const Music &music);
    // Makes a shared station the listener's own.
    StationResult makeOwn(AccountId account, const std::string &token, Station *station);

    std::vector<Music> seeds(const Station &station);
    // Public id of the track whose picture represents the station; nothing when there is none.
    std::optional<std::string> pictureId(const Station &station);
    std::optional<std::string> pictureId(const Music &music);

private:
    Station insert(AccountId account, const std::string &name, const std::optional<Music> &seed, bool isTapestry);
    // The music's display name; nothing when there is no such music.
    std::optional<std::string> nameOf(const Music &music);
    std::optional<Station> withOnlySeed(AccountId account, const Music &music);

    Store &m_store;
    Catalogue &m_catalogue;
    Clock m_clock;
};

} // namespace velmora::server
