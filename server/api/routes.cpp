#include "server/api/routes.h"

#include <algorithm>
#include <array>
#include <ctime>

namespace velmora::server {

namespace {

using namespace functions;

constexpr bool reads = false;
constexpr bool writes = true;
constexpr Repetition again = Repetition::Again;
constexpr Repetition slowly = Repetition::Remembered;
constexpr Repetition atomically = Repetition::RememberedAtomically;
constexpr Repetition later = Repetition::RememberedLater;

bool hashesAlways(const Parameters &)
{
    return true;
}

bool isLoginByName(const Parameters &parameters)
{
    return parameters.optionalText("loginType") == "user";
}

bool hasPassword(const Parameters &parameters)
{
    return parameters.optionalText("password").has_value();
}

constexpr std::array table = {
    Route{"partnerLogin", Access::Nobody, reads, again, partnerLogin},
    Route{"userLogin", Access::Partner, reads, again, userLogin, isLoginByName},
    Route{"associateDevice", Access::User, reads, atomically, associateDevice},
    Route{"disassociateDevice", Access::Partner, writes, atomically, disassociateDevice},
    Route{"getDeviceInfo", Access::Partner, reads, again, getDeviceInfo},
    Route{"generateDeviceActivationCode", Access::Partner, writes, atomically, generateDeviceActivationCode},
    Route{"createUser", Access::Partner, writes, slowly, createUser, hashesAlways},
    Route{"emailPassword", Access::Partner, writes, slowly, emailPassword},
    Route{"getUserInfo", Access::PartnerOrUser, reads, again, getUserInfo, hasPassword},
    Route{"getStationList", Access::User, reads, again, getStationList},
    Route{"getStationListChecksum", Access::User, reads, again, getStationListChecksum},
    Route{"getStation", Access::User, reads, again, getStation},
    Route{"getGenreStations", Access::User, reads, again, getGenreStations},
    Route{"getPlaylist", Access::User, reads, again, getPlaylist, nullptr, true},
    Route{"getAdMetadata", Access::User, reads, again, getAdMetadata},
    Route{"registerAd", Access::User, reads, atomically, registerAd},
    Route{"addFeedback", Access::User, writes, atomically, addFeedback},
    Route{"sleepSong", Access::User, writes, atomically, sleepSong},
    Route{"addSongBookmark", Access::User, writes, atomically, addSongBookmark},
    Route{"addArtistBookmark", Access::User, writes, atomically, addArtistBookmark},
    Route{"explainTrack", Access::User, reads, again, explainTrack},
    Route{"trackEvent", Access::User, reads, later, trackEvent},
    Route{"search", Access::User, reads, again, functions::search},
    Route{"createStation", Access::User, writes, atomically, createStation},
    Route{"deleteStation", Access::User, writes, atomically, deleteStation},
    Route{"renameStation", Access::User, writes, atomically, renameStation},
    Route{"addMusic", Access::User, writes, atomically, addMusic},
    Route{"transformSharedStation", Access::User, writes, atomically, transformSharedStation},
    Route{"generateUserActivationCode", Access::User, writes, atomically, generateUserActivationCode},
    Route{"getExplicitContentFilter", Access::User, reads, again, getExplicitContentFilter},
    Route{"isExplicitContentFilterPINProtected", Access::User, reads, again, isExplicitContentFilterPINProtected},
    Route{"setExplicitContentFilter", Access::User, writes, slowly, setExplicitContentFilter, hashesAlways},
    Route{"setExplicitPIN", Access::User, writes, slowly, setExplicitPIN, hashesAlways},
    Route{"emailExplicitPINRescue", Access::User, writes, slowly, emailExplicitPINRescue},
};

} // namespace

std::span<const Route> routes()
{
    return table;
}

const Route *findRoute(std::string_view name)
{
    const auto found = std::find_if(table.begin(), table.end(), [&](const Route &route) { return name == route.name; });
    return found == table.end() ? nullptr : &*found;
}

void Call::count(RateLimit &limit, const std::string &key) const
{
    if (const std::optional<int> seconds = limit.refuse(key, service.clock()))
        functions::refuseForNow(*seconds);
}

void functions::refuseForNow(int seconds)
{
    throw ApiError(Code::TooMany, "too many requests", json{{"retryAfter", seconds}});
}

std::string isoTime(int64_t unixSeconds)
{
    const std::time_t time = unixSeconds;
    std::tm parts{};
    gmtime_r(&time, &parts);
    std::array<char, 32> text{};
    const size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return {text.data(), length};
}

} // namespace velmora::server
