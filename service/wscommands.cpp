#include "service/wscommands.h"

namespace wscommands {

namespace {

constexpr Command reserved{nullptr, false, false};

constexpr Command table[Count] = {
    // name, retried, partner token only
    {"getAdMetadata", true, false},
    {"registerAd", false, false},
    {"partnerLogin", false, false},
    {"userLogin", true, true},
    {"addArtistBookmark", true, false},
    {"addSongBookmark", true, false},
    {"disassociateDevice", true, true},
    {"getDeviceInfo", false, true},
    {"generateDeviceActivationCode", true, true},
    {"search", true, false},
    {"addFeedback", true, false},
    {"addMusic", false, false},
    {"createStation", true, false},
    {"deleteStation", true, false},
    {"getGenreStations", false, false},
    {"getPlaylist", true, false},
    {"getStation", false, false},
    {"renameStation", true, false},
    {"transformSharedStation", false, false},
    reserved,
    reserved,
    {"explainTrack", true, false},
    {"trackEvent", false, false},
    {"associateDevice", true, false},
    {"createUser", false, true},
    {"emailExplicitPINRescue", false, false},
    {"emailPassword", false, true},
    {"generateUserActivationCode", false, false},
    {"getExplicitContentFilter", false, false},
    {"getStationList", true, false},
    {"getStationListChecksum", false, false},
    {"getUserInfo", false, true},
    {"isExplicitContentFilterPINProtected", false, false},
    {"setExplicitContentFilter", false, false},
    {"setExplicitPIN", false, false},
    {"sleepSong", true, false},
};

} // namespace

const Command &command(int id)
{
    return id >= 0 && id < Count ? table[id] : reserved;
}

} // namespace wscommands
