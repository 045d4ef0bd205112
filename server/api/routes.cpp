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

constexpr std::array table = {
    Route{"partnerLogin", Access::nobody, reads, again, partnerLogin},
    Route{"userLogin", Access::partner, reads, again, userLogin},
    Route{"associateDevice", Access::user, reads, atomically, associateDevice},
    Route{"disassociateDevice", Access::partner, writes, atomically, disassociateDevice},
    Route{"getDeviceInfo", Access::partner, reads, again, getDeviceInfo},
    Route{"generateDeviceActivationCode", Access::partner, writes, atomically, generateDeviceActivationCode},
    Route{"createUser", Access::partner, writes, slowly, createUser},
    Route{"emailPassword", Access::partner, writes, slowly, emailPassword},
    Route{"getUserInfo", Access::partnerOrUser, reads, again, getUserInfo},
    Route{"getStationList", Access::user, reads, again, getStationList},
    Route{"getStationListChecksum", Access::user, reads, again, getStationListChecksum},
    Route{"getStation", Access::user, reads, again, getStation},
    Route{"getGenreStations", Access::user, reads, again, getGenreStations},
    Route{"getPlaylist", Access::user, reads, again, getPlaylist},
    Route{"getAdMetadata", Access::user, reads, again, getAdMetadata},
    Route{"registerAd", Access::user, reads, atomically, registerAd},
    Route{"addFeedback", Access::user, writes, atomically, addFeedback},
    Route{"sleepSong", Access::user, writes, atomically, sleepSong},
    Route{"addSongBookmark", Access::user, writes, atomically, addSongBookmark},
    Route{"addArtistBookmark", Access::user, writes, atomically, addArtistBookmark},
    Route{"explainTrack", Access::user, reads, again, explainTrack},
    Route{"trackEvent", Access::user, reads, atomically, trackEvent},
    Route{"search", Access::user, reads, again, functions::search},
    Route{"createStation", Access::user, writes, atomically, createStation},
    Route{"deleteStation", Access::user, writes, atomically, deleteStation},
    Route{"renameStation", Access::user, writes, atomically, renameStation},
    Route{"addMusic", Access::user, writes, atomically, addMusic},
    Route{"transformSharedStation", Access::user, writes, atomically, transformSharedStation},
    Route{"generateUserActivationCode", Access::user, writes, atomically, generateUserActivationCode},
    Route{"getExplicitContentFilter", Access::user, reads, again, getExplicitContentFilter},
    Route{"isExplicitContentFilterPINProtected", Access::user, reads, again, isExplicitContentFilterPINProtected},
    Route{"setExplicitContentFilter", Access::user, writes, slowly, setExplicitContentFilter},
    Route{"setExplicitPIN", Access::user, writes, slowly, setExplicitPIN},
    Route{"emailExplicitPINRescue", Access::user, writes, slowly, emailExplicitPINRescue},
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
