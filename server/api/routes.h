#pragma once

#include "server/accounts/ratelimit.h"
#include "server/api/apierror.h"
#include "server/api/parameters.h"
#include "server/api/stationservice.h"

#include <span>

namespace velmora::server {

// Limits that the functions share; one object a server. "Of network": of one IPv4 address or IPv6 /64.
struct CallLimits {
    // A household of twenty radios stays far below these. A radio asks for a list each second at the most.
    RateLimit partnerLoginsOfNetwork{300, std::chrono::minutes(10)};
    RateLimit playlistsOfNetwork{12'000, std::chrono::minutes(10)};
    RateLimit playlistsOfSession{6'000, std::chrono::minutes(10)};
    RateLimit codesOfDevice{20, std::chrono::minutes(10)};
    RateLimit codesOfNetwork{60, std::chrono::minutes(10)};
    RateLimit accountsOfNetwork{20, std::chrono::hours(1)};
    RateLimit mailsToAccount{3, std::chrono::hours(1)};
    RateLimit mailsOfNetwork{10, std::chrono::hours(1)};

    // Logins of devices and playlists are many and fail seldom: each process counts its own.
    explicit CallLimits(Store &store)
    {
        codesOfDevice.share(store, "codes of device");
        codesOfNetwork.share(store, "codes of network");
        accountsOfNetwork.share(store, "accounts of network");
        mailsToAccount.share(store, "mails to account");
        mailsOfNetwork.share(store, "mails of network");
    }
};

// One call of one function, its token already checked.
struct Call {
    StationService &service;
    CallLimits &limits;
    const Parameters &parameters;
    Session session;                         // kind none for partnerLogin
    std::string address;                     // where the caller is
    std::string network;                     // what counts as one caller in limits
    std::string mediaBase;                   // of addresses of audio and pictures, as this caller reaches the service
    std::optional<Listening> listening = {}; // of routes that read it with the session

    AccountId account() const { return session.accountId; } // calls with a user token
    // Counts the call. Throws ApiError (5004) beyond the limit.
    void count(RateLimit &limit, const std::string &key) const;
};

enum class Access { Nobody, Partner, User, PartnerOrUser };

// What a repetition of a request with a key leads to. `Again`: it is carried out again, which changes nothing.
// `Remembered`: it gets the first answer. `RememberedAtomically`: the same, and the change and the answer are stored
// together; the handler does nothing slow. `RememberedLater`: like the last one, and both are on the disk some time
// later: for what may be forgotten after a power cut.
enum class Repetition { Again, Remembered, RememberedAtomically, RememberedLater };

// A function of the interface: which token it takes, whether maintenance stops it, how it is repeated, and what it
// does. The handler gives the data of the answer or throws ApiError.
struct Route {
    const char *name;
    Access access;
    bool writes;
    Repetition repetition;
    nlohmann::json (*handler)(Call &call);
    // Whether such a call hashes a password or a PIN; null: never.
    bool (*hashes)(const Parameters &parameters) = nullptr;
    // The session is read together with all that a playlist of the parameter `stationToken` needs.
    bool readsListening = false;
};

std::span<const Route> routes();
const Route *findRoute(std::string_view name);

namespace functions {

using nlohmann::json;

// Throws ApiError (5004): the caller may come again in so many seconds.
[[noreturn]] void refuseForNow(int seconds);

// Accounts and devices
json partnerLogin(Call &call);
json userLogin(Call &call);
json associateDevice(Call &call);
json disassociateDevice(Call &call);
json getDeviceInfo(Call &call);
json generateDeviceActivationCode(Call &call);
json generateUserActivationCode(Call &call);
json createUser(Call &call);
json emailPassword(Call &call);
json getUserInfo(Call &call);
json getExplicitContentFilter(Call &call);
json isExplicitContentFilterPINProtected(Call &call);
json setExplicitContentFilter(Call &call);
json setExplicitPIN(Call &call);
json emailExplicitPINRescue(Call &call);
// Stations
json getStationList(Call &call);
json getStationListChecksum(Call &call);
json getStation(Call &call);
json getGenreStations(Call &call);
json search(Call &call);
json createStation(Call &call);
json deleteStation(Call &call);
json renameStation(Call &call);
json addMusic(Call &call);
json transformSharedStation(Call &call);
// Playlists and what the listener says of them
json getPlaylist(Call &call);
json getAdMetadata(Call &call);
json registerAd(Call &call);
json addFeedback(Call &call);
json sleepSong(Call &call);
json addSongBookmark(Call &call);
json addArtistBookmark(Call &call);
json explainTrack(Call &call);
json trackEvent(Call &call);

} // namespace functions

// "2024-03-09T18:20:00Z"
std::string isoTime(int64_t unixSeconds);

} // namespace velmora::server
