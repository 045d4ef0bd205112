#include "service/wscommands.h"

#include "velmora_ws.h"

namespace wscommands {

namespace {

constexpr Command reserved{nullptr, false};

constexpr Command table[count] = {
    // name, partner token only
    {"getAdMetadata", false},
    {"registerAd", false},
    {"partnerLogin", false},
    {"userLogin", true},
    {"addArtistBookmark", false},
    {"addSongBookmark", false},
    {"disassociateDevice", true},
    {"getDeviceInfo", true},
    {"generateDeviceActivationCode", true},
    {"search", false},
    {"addFeedback", false},
    {"addMusic", false},
    {"createStation", false},
    {"deleteStation", false},
    {"getGenreStations", false},
    {"getPlaylist", false},
    {"getStation", false},
    {"renameStation", false},
    {"transformSharedStation", false},
    reserved,
    reserved,
    {"explainTrack", false},
    {"trackEvent", false},
    {"associateDevice", false},
    {"createUser", true},
    {"emailExplicitPINRescue", false},
    {"emailPassword", true},
    {"generateUserActivationCode", false},
    {"getExplicitContentFilter", false},
    {"getStationList", false},
    {"getStationListChecksum", false},
    {"getUserInfo", true},
    {"isExplicitContentFilterPINProtected", false},
    {"setExplicitContentFilter", false},
    {"setExplicitPIN", false},
    {"sleepSong", false},
};

} // namespace

const Command &command(int id)
{
    return id >= 0 && id < count ? table[id] : reserved;
}

bool isSentAgain(int id)
{
    return id >= 0 && id < count && VLM_WS_IS_SENT_AGAIN(id);
}

} // namespace wscommands
