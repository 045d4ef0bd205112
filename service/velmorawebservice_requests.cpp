#include "service/velmorawebservice.h"

// One wrapper for each request: the library's parameters in its order, with the adapter's callback.

namespace {

VELMORA_WS_CALLBACK_T callback(bool fgNoCallback)
{
    return fgNoCallback ? nullptr : &VelmoraWebService::velmora_ws_requst_cb;
}

} // namespace

// A list in parentheses, to be followed by more; nothing for an empty one.
#define LIST(...) __VA_OPT__(__VA_ARGS__, )
// The wrapper of a request, given its own parameters and their names.
#define REQUEST(name, parameters, names)                                                                               \
    VLM_WS_EXT_ERRCODE_T VelmoraWebService::name(LIST parameters bool fgNoCallback, VOID *tag, HANDLE_T *handle)       \
    {                                                                                                                  \
        return velmora_ws_##name(LIST names callback(fgNoCallback), tag, handle);                                      \
    }

// clang-format off
REQUEST(getAdMetadata, (const char *adToken, int flag), (adToken, flag))
REQUEST(registerAd, (const char *stationToken, const char *adToken), (stationToken, adToken))
REQUEST(partnerLogin,
        (const char *partnerName, const char *partnerPassword, const char *deviceModel, int includeExtras),
        (partnerName, partnerPassword, deviceModel, includeExtras))
REQUEST(userLogin,
        (const char *loginType, const char *password, const char *userName, const char *deviceId),
        (loginType, password, userName, deviceId))
REQUEST(addArtistBookmark, (const char *trackToken), (trackToken))
REQUEST(addSongBookmark, (const char *trackToken), (trackToken))
REQUEST(disassociateDevice, (const char *deviceId), (deviceId))
REQUEST(getDeviceInfo, (const char *deviceId), (deviceId))
REQUEST(generateDeviceActivationCode, (const char *deviceId), (deviceId))
REQUEST(search, (const char *text, int flag), (text, flag))
REQUEST(addFeedback, (int isPositive, const char *trackToken), (isPositive, trackToken))
REQUEST(addMusic, (const char *stationToken, const char *musicToken), (stationToken, musicToken))
REQUEST(createStation,
        (const char *musicToken, const char *trackToken, const char *musicType, int includeExtras),
        (musicToken, trackToken, musicType, includeExtras))
REQUEST(deleteStation, (const char *stationToken), (stationToken))
REQUEST(getGenreStations, (), ())
REQUEST(getPlaylist, (const char *stationToken, int flag), (stationToken, flag))
REQUEST(getStation, (const char *stationToken, int flag), (stationToken, flag))
REQUEST(renameStation, (const char *newName, const char *stationToken, int reserved), (newName, stationToken, reserved))
REQUEST(transformSharedStation, (const char *stationToken, int flag), (stationToken, flag))
REQUEST(explainTrack, (const char *trackToken), (trackToken))
REQUEST(trackEvent, (const char *trackToken, const char *eventType, int seconds), (trackToken, eventType, seconds))
REQUEST(associateDevice, (const char *deviceId), (deviceId))
REQUEST(createUser,
        (const char *userName, const char *password, int birthYear, const char *gender, const char *zipCode,
         const char *countryCode, int emailOptIn, const char *deviceId, int includeExtras),
        (userName, password, birthYear, gender, zipCode, countryCode, emailOptIn, deviceId, includeExtras))
REQUEST(emailExplicitPINRescue, (), ())
REQUEST(emailPassword, (const char *userName), (userName))
REQUEST(generateUserActivationCode, (), ())
REQUEST(getExplicitContentFilter, (), ())
REQUEST(getStationList,
        (int includeArt, const char *sortField, const char *sortOrder),
        (includeArt, sortField, sortOrder))
REQUEST(getStationListChecksum, (), ())
REQUEST(getUserInfo,
        (const char *userName, const char *password, const char *deviceId, int includeExtras),
        (userName, password, deviceId, includeExtras))
REQUEST(isExplicitContentFilterPINProtected, (), ())
REQUEST(setExplicitContentFilter, (int isEnabled, const char *pin), (isEnabled, pin))
REQUEST(setExplicitPIN, (const char *newPin, const char *oldPin), (newPin, oldPin))
REQUEST(sleepSong, (const char *trackToken), (trackToken))
// clang-format on

#undef REQUEST
#undef LIST
