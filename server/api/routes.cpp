#include "server/api/routes.h"

#include <algorithm>
#include <array>
#include <ctime>

namespace velmora::server {

namespace {

using namespace functions;

constexpr bool reads = false;
constexpr bool writes = true;

constexpr std::array table = {
    Route{"partnerLogin", Access::nobody, reads, partnerLogin},
    Route{"userLogin", Access::partner, reads, userLogin},
    Route{"associateDevice", Access::user, reads, associateDevice},
    Route{"disassociateDevice", Access::partner, writes, disassociateDevice},
    Route{"getDeviceInfo", Access::partner, reads, getDeviceInfo},
    Route{"generateDeviceActivationCode", Access::partner, writes, generateDeviceActivationCode},
    Route{"createUser", Access::partner, writes, createUser},
    Route{"emailPassword", Access::partner, writes, emailPassword},
    Route{"getUserInfo", Access::partnerOrUser, reads, getUserInfo},
    Route{"getStationList", Access::user, reads, getStationList},
    Route{"getStationListChecksum", Access::user, reads, getStationListChecksum},
    Route{"getStation", Access::user, reads, getStation},
    Route{"getGenreStations", Access::user, reads, getGenreStations},
    Route{"getPlaylist", Access::user, reads, getPlaylist},
    Route{"getAdMetadata", Access::user, reads, getAdMetadata},
    Route{"registerAd", Access::user, reads, registerAd},
    Route{"addFeedback", Access::user, writes, addFeedback},
    Route{"sleepSong", Access::user, writes, sleepSong},
    Route{"addSongBookmark", Access::user, writes, addSongBookmark},
    Route{"addArtistBookmark", Access::user, writes, addArtistBookmark},
    Route{"explainTrack", Access::user, reads, explainTrack},
    Route{"trackEvent", Access::user, reads, trackEvent},
    Route{"search", Access::user, reads, functions::search},
    Route{"createStation", Access::user, writes, createStation},
    Route{"deleteStation", Access::user, writes, deleteStation},
    Route{"renameStation", Access::user, writes, renameStation},
    Route{"addMusic", Access::user, writes, addMusic},
    Route{"transformSharedStation", Access::user, writes, transformSharedStation},
    Route{"generateUserActivationCode", Access::user, writes, generateUserActivationCode},
    Route{"getExplicitContentFilter", Access::user, reads, getExplicitContentFilter},
    Route{"isExplicitContentFilterPINProtected", Access::user, reads, isExplicitContentFilterPINProtected},
    Route{"setExplicitContentFilter", Access::user, writes, setExplicitContentFilter},
    Route{"setExplicitPIN", Access::user, writes, setExplicitPIN},
    Route{"emailExplicitPINRescue", Access::user, writes, emailExplicitPINRescue},
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
