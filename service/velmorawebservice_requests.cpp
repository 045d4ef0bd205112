#include "service/velmorawebservice.h"

// One wrapper a request: the library's parameters in its order, the adapter's callback in the place of the library's.

namespace {

VELMORA_WS_CALLBACK_T callback(bool fgNoCallback)
{
    return fgNoCallback ? nullptr : &VelmoraWebService::velmora_ws_requst_cb;
}

} // namespace

VLM_WS_EXT_ERRCODE_T VelmoraWebService::getAdMetadata(const char *adToken, int flag, bool fgNoCallback, VOID *tag,
                                                      HANDLE_T *handle)
{
    return velmora_ws_getAdMetadata(adToken, flag, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::registerAd(const char *stationToken, const char *adToken, bool fgNoCallback,
                                                   VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_registerAd(stationToken, adToken, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::partnerLogin(const char *partnerName, const char *partnerPassword,
                                                     const char *deviceModel, int includeExtras, bool fgNoCallback,
                                                     VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_partnerLogin(partnerName, partnerPassword, deviceModel, includeExtras, callback(fgNoCallback),
                                   tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::userLogin(const char *loginType, const char *password, const char *userName,
                                                  const char *deviceId, bool fgNoCallback, VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_userLogin(loginType, password, userName, deviceId, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::addArtistBookmark(const char *trackToken, bool fgNoCallback, VOID *tag,
                                                          HANDLE_T *handle)
{
    return velmora_ws_addArtistBookmark(trackToken, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::addSongBookmark(const char *trackToken, bool fgNoCallback, VOID *tag,
                                                        HANDLE_T *handle)
{
    return velmora_ws_addSongBookmark(trackToken, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::disassociateDevice(const char *deviceId, bool fgNoCallback, VOID *tag,
                                                           HANDLE_T *handle)
{
    return velmora_ws_disassociateDevice(deviceId, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::getDeviceInfo(const char *deviceId, bool fgNoCallback, VOID *tag,
                                                      HANDLE_T *handle)
{
    return velmora_ws_getDeviceInfo(deviceId, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::generateDeviceActivationCode(const char *deviceId, bool fgNoCallback, VOID *tag,
                                                                     HANDLE_T *handle)
{
    return velmora_ws_generateDeviceActivationCode(deviceId, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::search(const char *text, int flag, bool fgNoCallback, VOID *tag,
                                               HANDLE_T *handle)
{
    return velmora_ws_search(text, flag, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::addFeedback(int isPositive, const char *trackToken, bool fgNoCallback,
                                                    VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_addFeedback(isPositive, trackToken, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::addMusic(const char *stationToken, const char *musicToken, bool fgNoCallback,
                                                 VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_addMusic(stationToken, musicToken, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::createStation(const char *musicToken, const char *trackToken,
                                                      const char *musicType, int includeExtras, bool fgNoCallback,
                                                      VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_createStation(musicToken, trackToken, musicType, includeExtras, callback(fgNoCallback), tag,
                                    handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::deleteStation(const char *stationToken, bool fgNoCallback, VOID *tag,
                                                      HANDLE_T *handle)
{
    return velmora_ws_deleteStation(stationToken, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::getGenreStations(bool fgNoCallback, VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_getGenreStations(callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::getPlaylist(const char *stationToken, int flag, bool fgNoCallback, VOID *tag,
                                                    HANDLE_T *handle)
{
    return velmora_ws_getPlaylist(stationToken, flag, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::getStation(const char *stationToken, int flag, bool fgNoCallback, VOID *tag,
                                                   HANDLE_T *handle)
{
    return velmora_ws_getStation(stationToken, flag, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::renameStation(const char *newName, const char *stationToken, int reserved,
                                                      bool fgNoCallback, VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_renameStation(newName, stationToken, reserved, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::transformSharedStation(const char *stationToken, int flag, bool fgNoCallback,
                                                               VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_transformSharedStation(stationToken, flag, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::explainTrack(const char *trackToken, bool fgNoCallback, VOID *tag,
                                                     HANDLE_T *handle)
{
    return velmora_ws_explainTrack(trackToken, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::trackEvent(const char *trackToken, const char *eventType, int seconds,
                                                   bool fgNoCallback, VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_trackEvent(trackToken, eventType, seconds, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::associateDevice(const char *deviceId, bool fgNoCallback, VOID *tag,
                                                        HANDLE_T *handle)
{
    return velmora_ws_associateDevice(deviceId, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::createUser(const char *userName, const char *password, int birthYear,
                                                   const char *gender, const char *zipCode, const char *countryCode,
                                                   int emailOptIn, const char *deviceId, int includeExtras,
                                                   bool fgNoCallback, VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_createUser(userName, password, birthYear, gender, zipCode, countryCode, emailOptIn, deviceId,
                                 includeExtras, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::emailExplicitPINRescue(bool fgNoCallback, VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_emailExplicitPINRescue(callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::emailPassword(const char *userName, bool fgNoCallback, VOID *tag,
                                                      HANDLE_T *handle)
{
    return velmora_ws_emailPassword(userName, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::generateUserActivationCode(bool fgNoCallback, VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_generateUserActivationCode(callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::getExplicitContentFilter(bool fgNoCallback, VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_getExplicitContentFilter(callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::getStationList(int includeArt, const char *sortField, const char *sortOrder,
                                                       bool fgNoCallback, VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_getStationList(includeArt, sortField, sortOrder, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::getStationListChecksum(bool fgNoCallback, VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_getStationListChecksum(callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::getUserInfo(const char *userName, const char *password, const char *deviceId,
                                                    int includeExtras, bool fgNoCallback, VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_getUserInfo(userName, password, deviceId, includeExtras, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::isExplicitContentFilterPINProtected(bool fgNoCallback, VOID *tag,
                                                                            HANDLE_T *handle)
{
    return velmora_ws_isExplicitContentFilterPINProtected(callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::setExplicitContentFilter(int isEnabled, const char *pin, bool fgNoCallback,
                                                                 VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_setExplicitContentFilter(isEnabled, pin, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::setExplicitPIN(const char *newPin, const char *oldPin, bool fgNoCallback,
                                                       VOID *tag, HANDLE_T *handle)
{
    return velmora_ws_setExplicitPIN(newPin, oldPin, callback(fgNoCallback), tag, handle);
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::sleepSong(const char *trackToken, bool fgNoCallback, VOID *tag,
                                                  HANDLE_T *handle)
{
    return velmora_ws_sleepSong(trackToken, callback(fgNoCallback), tag, handle);
}
