// The request functions of the C interface: each names its command and gathers its parameters in their order.
#include "submit.h"

using velmora::ws::plain;
using velmora::ws::submit;

VLM_WS_EXT_ERRCODE_T velmora_ws_getAdMetadata(const char *adToken, int flag, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                              HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_FLAG_PARAMS_T params{plain(adToken), flag};
    return submit(VLM_WS_MSGID_GET_AD_METADATA, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_registerAd(const char *stationToken, const char *adToken,
                                           VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_TWO_TEXTS_PARAMS_T params{plain(stationToken), plain(adToken)};
    return submit(VLM_WS_MSGID_REGISTER_AD, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_partnerLogin(const char *partnerName, const char *partnerPassword,
                                             const char *deviceModel, int includeExtras, VELMORA_WS_CALLBACK_T callback,
                                             VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_PARTNER_LOGIN_PARAMS_T params{plain(partnerName), plain(partnerPassword), plain(deviceModel),
                                               includeExtras};
    return submit(VLM_WS_MSGID_PARTNER_LOGIN, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_userLogin(const char *loginType, const char *password, const char *userName,
                                          const char *deviceId, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                          HANDLE_T *outHandle)
{
    const VLM_WS_USER_LOGIN_PARAMS_T params{plain(loginType), plain(password), plain(userName), plain(deviceId)};
    return submit(VLM_WS_MSGID_USER_LOGIN, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_addArtistBookmark(const char *trackToken, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                                  HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_PARAMS_T params{plain(trackToken)};
    return submit(VLM_WS_MSGID_ADD_ARTIST_BOOKMARK, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_addSongBookmark(const char *trackToken, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                                HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_PARAMS_T params{plain(trackToken)};
    return submit(VLM_WS_MSGID_ADD_SONG_BOOKMARK, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_disassociateDevice(const char *deviceId, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                                   HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_PARAMS_T params{plain(deviceId)};
    return submit(VLM_WS_MSGID_DISASSOCIATE_DEVICE, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getDeviceInfo(const char *deviceId, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                              HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_PARAMS_T params{plain(deviceId)};
    return submit(VLM_WS_MSGID_GET_DEVICE_INFO, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_generateDeviceActivationCode(const char *deviceId, VELMORA_WS_CALLBACK_T callback,
                                                             VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_PARAMS_T params{plain(deviceId)};
    return submit(VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_search(const char *text, int flag, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                       HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_FLAG_PARAMS_T params{plain(text), flag};
    return submit(VLM_WS_MSGID_SEARCH, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_addFeedback(int isPositive, const char *trackToken, VELMORA_WS_CALLBACK_T callback,
                                            VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_FLAG_TEXT_PARAMS_T params{isPositive, plain(trackToken)};
    return submit(VLM_WS_MSGID_ADD_FEEDBACK, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_addMusic(const char *stationToken, const char *musicToken,
                                         VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_TWO_TEXTS_PARAMS_T params{plain(stationToken), plain(musicToken)};
    return submit(VLM_WS_MSGID_ADD_MUSIC, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_createStation(const char *musicToken, const char *trackToken, const char *musicType,
                                              int includeExtras, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                              HANDLE_T *outHandle)
{
    const VLM_WS_CREATE_STATION_PARAMS_T params{plain(musicToken), plain(trackToken), plain(musicType), includeExtras};
    return submit(VLM_WS_MSGID_CREATE_STATION, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_deleteStation(const char *stationToken, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                              HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_PARAMS_T params{plain(stationToken)};
    return submit(VLM_WS_MSGID_DELETE_STATION, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getGenreStations(VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit(VLM_WS_MSGID_GET_GENRE_STATIONS, nullptr, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getPlaylist(const char *stationToken, int flag, VELMORA_WS_CALLBACK_T callback,
                                            VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_FLAG_PARAMS_T params{plain(stationToken), flag};
    return submit(VLM_WS_MSGID_GET_PLAYLIST, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getStation(const char *stationToken, int flag, VELMORA_WS_CALLBACK_T callback,
                                           VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_FLAG_PARAMS_T params{plain(stationToken), flag};
    return submit(VLM_WS_MSGID_GET_STATION, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_renameStation(const char *newName, const char *stationToken, int reserved,
                                              VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_RENAME_STATION_PARAMS_T params{plain(newName), plain(stationToken), reserved};
    return submit(VLM_WS_MSGID_RENAME_STATION, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_transformSharedStation(const char *stationToken, int flag,
                                                       VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_FLAG_PARAMS_T params{plain(stationToken), flag};
    return submit(VLM_WS_MSGID_TRANSFORM_SHARED_STATION, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_explainTrack(const char *trackToken, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                             HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_PARAMS_T params{plain(trackToken)};
    return submit(VLM_WS_MSGID_EXPLAIN_TRACK, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_trackEvent(const char *trackToken, const char *eventType, int seconds,
                                           VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_TRACK_EVENT_PARAMS_T params{plain(trackToken), plain(eventType), seconds};
    return submit(VLM_WS_MSGID_TRACK_EVENT, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_associateDevice(const char *deviceId, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                                HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_PARAMS_T params{plain(deviceId)};
    return submit(VLM_WS_MSGID_ASSOCIATE_DEVICE, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_createUser(const char *userName, const char *password, int birthYear,
                                           const char *gender, const char *zipCode, const char *countryCode,
                                           int emailOptIn, const char *deviceId, int includeExtras,
                                           VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_CREATE_USER_PARAMS_T params{plain(userName), plain(password), birthYear,
                                             plain(gender),   plain(zipCode),  plain(countryCode),
                                             emailOptIn,      plain(deviceId), includeExtras};
    return submit(VLM_WS_MSGID_CREATE_USER, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_emailExplicitPINRescue(VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit(VLM_WS_MSGID_EMAIL_EXPLICIT_PIN_RESCUE, nullptr, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_emailPassword(const char *userName, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                              HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_PARAMS_T params{plain(userName)};
    return submit(VLM_WS_MSGID_EMAIL_PASSWORD, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_generateUserActivationCode(VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                                           HANDLE_T *outHandle)
{
    return submit(VLM_WS_MSGID_GENERATE_USER_ACTIVATION_CODE, nullptr, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getExplicitContentFilter(VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit(VLM_WS_MSGID_GET_EXPLICIT_CONTENT_FILTER, nullptr, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getStationList(int includeArt, const char *sortField, const char *sortOrder,
                                               VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_GET_STATION_LIST_PARAMS_T params{includeArt, plain(sortField), plain(sortOrder)};
    return submit(VLM_WS_MSGID_GET_STATION_LIST, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getStationListChecksum(VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit(VLM_WS_MSGID_GET_STATION_LIST_CHECKSUM, nullptr, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getUserInfo(const char *userName, const char *password, const char *deviceId,
                                            int includeExtras, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                            HANDLE_T *outHandle)
{
    const VLM_WS_GET_USER_INFO_PARAMS_T params{plain(userName), plain(password), plain(deviceId), includeExtras};
    return submit(VLM_WS_MSGID_GET_USER_INFO, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_isExplicitContentFilterPINProtected(VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                                                    HANDLE_T *outHandle)
{
    return submit(VLM_WS_MSGID_IS_EXPLICIT_CONTENT_FILTER_PIN_PROTECTED, nullptr, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_setExplicitContentFilter(int isEnabled, const char *pin, VELMORA_WS_CALLBACK_T callback,
                                                         VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_FLAG_TEXT_PARAMS_T params{isEnabled, plain(pin)};
    return submit(VLM_WS_MSGID_SET_EXPLICIT_CONTENT_FILTER, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_setExplicitPIN(const char *newPin, const char *oldPin, VELMORA_WS_CALLBACK_T callback,
                                               VOID *tag, HANDLE_T *outHandle)
{
    const VLM_WS_TWO_TEXTS_PARAMS_T params{plain(newPin), plain(oldPin)};
    return submit(VLM_WS_MSGID_SET_EXPLICIT_PIN, &params, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_sleepSong(const char *trackToken, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                          HANDLE_T *outHandle)
{
    const VLM_WS_TEXT_PARAMS_T params{plain(trackToken)};
    return submit(VLM_WS_MSGID_SLEEP_SONG, &params, callback, tag, outHandle);
}
