// The request functions of the C interface: each names its command and passes its parameters in their order.
#include "submit.h"

using velmora::ws::submit;

#define TAIL VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle

namespace {

// The records' texts are not const because they belong to their reader; nothing is written through the result.
char *plain(const char *text)
{
    return const_cast<char *>(text);
}

int plain(int value)
{
    return value;
}

template <class Params, class... Values>
VLM_WS_EXT_ERRCODE_T submit(VLM_WS_MSGID_T id, TAIL, Values... values)
{
    const Params params{plain(values)...};
    return submit(id, &params, callback, tag, outHandle);
}

} // namespace

VLM_WS_EXT_ERRCODE_T velmora_ws_getAdMetadata(const char *adToken, int flag, TAIL)
{
    return submit<VLM_WS_TEXT_FLAG_PARAMS_T>(VLM_WS_MSGID_GET_AD_METADATA, callback, tag, outHandle, adToken, flag);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_registerAd(const char *stationToken, const char *adToken, TAIL)
{
    return submit<VLM_WS_TWO_TEXTS_PARAMS_T>(VLM_WS_MSGID_REGISTER_AD, callback, tag, outHandle, stationToken, adToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_partnerLogin(const char *partnerName, const char *partnerPassword,
                                             const char *deviceModel, int includeExtras, TAIL)
{
    return submit<VLM_WS_PARTNER_LOGIN_PARAMS_T>(VLM_WS_MSGID_PARTNER_LOGIN, callback, tag, outHandle, partnerName,
                                                 partnerPassword, deviceModel, includeExtras);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_userLogin(const char *loginType, const char *password, const char *userName,
                                          const char *deviceId, TAIL)
{
    return submit<VLM_WS_USER_LOGIN_PARAMS_T>(VLM_WS_MSGID_USER_LOGIN, callback, tag, outHandle, loginType, password,
                                              userName, deviceId);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_addArtistBookmark(const char *trackToken, TAIL)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_ADD_ARTIST_BOOKMARK, callback, tag, outHandle, trackToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_addSongBookmark(const char *trackToken, TAIL)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_ADD_SONG_BOOKMARK, callback, tag, outHandle, trackToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_disassociateDevice(const char *deviceId, TAIL)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_DISASSOCIATE_DEVICE, callback, tag, outHandle, deviceId);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getDeviceInfo(const char *deviceId, TAIL)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_GET_DEVICE_INFO, callback, tag, outHandle, deviceId);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_generateDeviceActivationCode(const char *deviceId, TAIL)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE, callback, tag, outHandle,
                                        deviceId);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_search(const char *text, int flag, TAIL)
{
    return submit<VLM_WS_TEXT_FLAG_PARAMS_T>(VLM_WS_MSGID_SEARCH, callback, tag, outHandle, text, flag);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_addFeedback(int isPositive, const char *trackToken, TAIL)
{
    return submit<VLM_WS_FLAG_TEXT_PARAMS_T>(VLM_WS_MSGID_ADD_FEEDBACK, callback, tag, outHandle, isPositive,
                                             trackToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_addMusic(const char *stationToken, const char *musicToken, TAIL)
{
    return submit<VLM_WS_TWO_TEXTS_PARAMS_T>(VLM_WS_MSGID_ADD_MUSIC, callback, tag, outHandle, stationToken,
                                             musicToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_createStation(const char *musicToken, const char *trackToken, const char *musicType,
                                              int includeExtras, TAIL)
{
    return submit<VLM_WS_CREATE_STATION_PARAMS_T>(VLM_WS_MSGID_CREATE_STATION, callback, tag, outHandle, musicToken,
                                                  trackToken, musicType, includeExtras);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_deleteStation(const char *stationToken, TAIL)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_DELETE_STATION, callback, tag, outHandle, stationToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getGenreStations(TAIL)
{
    return submit(VLM_WS_MSGID_GET_GENRE_STATIONS, nullptr, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getPlaylist(const char *stationToken, int flag, TAIL)
{
    return submit<VLM_WS_TEXT_FLAG_PARAMS_T>(VLM_WS_MSGID_GET_PLAYLIST, callback, tag, outHandle, stationToken, flag);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getStation(const char *stationToken, int flag, TAIL)
{
    return submit<VLM_WS_TEXT_FLAG_PARAMS_T>(VLM_WS_MSGID_GET_STATION, callback, tag, outHandle, stationToken, flag);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_renameStation(const char *newName, const char *stationToken, int reserved, TAIL)
{
    return submit<VLM_WS_RENAME_STATION_PARAMS_T>(VLM_WS_MSGID_RENAME_STATION, callback, tag, outHandle, newName,
                                                  stationToken, reserved);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_transformSharedStation(const char *stationToken, int flag, TAIL)
{
    return submit<VLM_WS_TEXT_FLAG_PARAMS_T>(VLM_WS_MSGID_TRANSFORM_SHARED_STATION, callback, tag, outHandle,
                                             stationToken, flag);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_explainTrack(const char *trackToken, TAIL)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_EXPLAIN_TRACK, callback, tag, outHandle, trackToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_trackEvent(const char *trackToken, const char *eventType, int seconds, TAIL)
{
    return submit<VLM_WS_TRACK_EVENT_PARAMS_T>(VLM_WS_MSGID_TRACK_EVENT, callback, tag, outHandle, trackToken,
                                               eventType, seconds);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_associateDevice(const char *deviceId, TAIL)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_ASSOCIATE_DEVICE, callback, tag, outHandle, deviceId);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_createUser(const char *userName, const char *password, int birthYear,
                                           const char *gender, const char *zipCode, const char *countryCode,
                                           int emailOptIn, const char *deviceId, int includeExtras, TAIL)
{
    return submit<VLM_WS_CREATE_USER_PARAMS_T>(VLM_WS_MSGID_CREATE_USER, callback, tag, outHandle, userName, password,
                                               birthYear, gender, zipCode, countryCode, emailOptIn, deviceId,
                                               includeExtras);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_emailExplicitPINRescue(TAIL)
{
    return submit(VLM_WS_MSGID_EMAIL_EXPLICIT_PIN_RESCUE, nullptr, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_emailPassword(const char *userName, TAIL)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_EMAIL_PASSWORD, callback, tag, outHandle, userName);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_generateUserActivationCode(TAIL)
{
    return submit(VLM_WS_MSGID_GENERATE_USER_ACTIVATION_CODE, nullptr, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getExplicitContentFilter(TAIL)
{
    return submit(VLM_WS_MSGID_GET_EXPLICIT_CONTENT_FILTER, nullptr, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getStationList(int includeArt, const char *sortField, const char *sortOrder, TAIL)
{
    return submit<VLM_WS_GET_STATION_LIST_PARAMS_T>(VLM_WS_MSGID_GET_STATION_LIST, callback, tag, outHandle, includeArt,
                                                    sortField, sortOrder);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getStationListChecksum(TAIL)
{
    return submit(VLM_WS_MSGID_GET_STATION_LIST_CHECKSUM, nullptr, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getUserInfo(const char *userName, const char *password, const char *deviceId,
                                            int includeExtras, TAIL)
{
    return submit<VLM_WS_GET_USER_INFO_PARAMS_T>(VLM_WS_MSGID_GET_USER_INFO, callback, tag, outHandle, userName,
                                                 password, deviceId, includeExtras);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_isExplicitContentFilterPINProtected(TAIL)
{
    return submit(VLM_WS_MSGID_IS_EXPLICIT_CONTENT_FILTER_PIN_PROTECTED, nullptr, callback, tag, outHandle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_setExplicitContentFilter(int isEnabled, const char *pin, TAIL)
{
    return submit<VLM_WS_FLAG_TEXT_PARAMS_T>(VLM_WS_MSGID_SET_EXPLICIT_CONTENT_FILTER, callback, tag, outHandle,
                                             isEnabled, pin);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_setExplicitPIN(const char *newPin, const char *oldPin, TAIL)
{
    return submit<VLM_WS_TWO_TEXTS_PARAMS_T>(VLM_WS_MSGID_SET_EXPLICIT_PIN, callback, tag, outHandle, newPin, oldPin);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_sleepSong(const char *trackToken, TAIL)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_SLEEP_SONG, callback, tag, outHandle, trackToken);
}
