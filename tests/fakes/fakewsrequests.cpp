#include "fakes/fakewsprivate.h"

#include <cstring>

// The library's functions: each copies its parameters into a record and hands it to the script.
namespace {

struct NoParams {};
struct RawMac { // the user login by name passes 7 raw bytes, not a text
    const char *bytes;
};

char *copied(FakeArena &arena, const char *text)
{
    return arena.text(QByteArray(text));
}
char *copied(FakeArena &arena, RawMac mac)
{
    return arena.text(QByteArray(mac.bytes, 7));
}
int32_t copied(FakeArena &, int value)
{
    return value;
}
QVariant shown(const char *text)
{
    return text ? QVariant(QByteArray(text)) : QVariant();
}
QVariant shown(RawMac mac)
{
    return QVariant(QByteArray(mac.bytes, 7));
}
QVariant shown(int value)
{
    return QVariant(value);
}

struct Tail {
    VELMORA_WS_CALLBACK_T callback;
    VOID *tag;
    HANDLE_T *outHandle;
};

template <typename Params, typename... Values>
VLM_WS_EXT_ERRCODE_T submit(int cmd, Tail tail, Values... values)
{
    auto request = std::make_unique<FakeRequest>();
    request->record.vlm_ws_CmdID = static_cast<uint32_t>(cmd);
    if constexpr (!std::is_same_v<Params, NoParams>) {
        auto *params = request->arena->make<Params>();
        *params = Params{copied(*request->arena, values)...};
        request->record.params = params;
    }
    request->callback = tail.callback;
    request->call.cmd = cmd;
    request->call.params = QVariantList{shown(values)...};
    request->call.hasCallback = tail.callback != nullptr;
    request->call.tag = tail.tag;
    return FakeWs::instance().d->submit(std::move(request), tail.outHandle);
}

} // namespace

const char velmora_ws_invalid_url[15] = "http://invalid";

VLM_WS_EXT_ERRCODE_T velmora_ws_init(void)
{
    FakeWs::Private *d = FakeWs::instance().d;
    const std::lock_guard lock(d->mutex);
    d->isInitialised = d->initResult == VLM_WS_ERR_OK;
    return d->initResult;
}

VLM_WS_EXT_ERRCODE_T velmora_ws_uninit(void)
{
    FakeWs::Private *d = FakeWs::instance().d;
    std::unique_lock lock(d->mutex);
    d->isInitialised = false;
    d->queue.clear();
    // No callback after uninit has returned; called from a callback it would wait for itself.
    d->wake.wait(lock, [d] { return !d->isDelivering || d->worker.get_id() == std::this_thread::get_id(); });
    return VLM_WS_ERR_OK;
}

VLM_WS_EXT_ERRCODE_T velmora_ws_release_handle(HANDLE_T handle)
{
    return FakeWs::instance().d->release(handle);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_utility_get_mac(char *buffer, int size)
{
    FakeWs::Private *d = FakeWs::instance().d;
    const std::lock_guard lock(d->mutex);
    ++d->macCalls;
    if (d->macResult != VLM_WS_ERR_OK)
        return d->macResult;
    if (!buffer || size < 6)
        return VLM_WS_ERR_INVALID_ARGUMENT;
    std::memcpy(buffer, d->mac.constData(), 6);
    if (size > 6)
        buffer[6] = 0;
    return VLM_WS_ERR_OK;
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getAdMetadata(const char *adToken, int flag, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                              HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_FLAG_PARAMS_T>(VLM_WS_MSGID_GET_AD_METADATA, Tail{callback, tag, outHandle}, adToken,
                                             flag);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_registerAd(const char *stationToken, const char *adToken,
                                           VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_TWO_TEXTS_PARAMS_T>(VLM_WS_MSGID_REGISTER_AD, Tail{callback, tag, outHandle}, stationToken,
                                             adToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_partnerLogin(const char *partnerName, const char *partnerPassword,
                                             const char *deviceModel, int includeExtras, VELMORA_WS_CALLBACK_T callback,
                                             VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_PARTNER_LOGIN_PARAMS_T>(VLM_WS_MSGID_PARTNER_LOGIN, Tail{callback, tag, outHandle},
                                                 partnerName, partnerPassword, deviceModel, includeExtras);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_userLogin(const char *loginType, const char *password, const char *userName,
                                          const char *deviceId, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                          HANDLE_T *outHandle)
{
    const Tail tail{callback, tag, outHandle};
    if (loginType && qstrcmp(loginType, "user") == 0 && deviceId)
        return submit<VLM_WS_USER_LOGIN_PARAMS_T>(VLM_WS_MSGID_USER_LOGIN, tail, loginType, password, userName,
                                                  RawMac{deviceId});
    return submit<VLM_WS_USER_LOGIN_PARAMS_T>(VLM_WS_MSGID_USER_LOGIN, tail, loginType, password, userName, deviceId);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_addArtistBookmark(const char *trackToken, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                                  HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_ADD_ARTIST_BOOKMARK, Tail{callback, tag, outHandle}, trackToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_addSongBookmark(const char *trackToken, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                                HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_ADD_SONG_BOOKMARK, Tail{callback, tag, outHandle}, trackToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_disassociateDevice(const char *deviceId, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                                   HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_DISASSOCIATE_DEVICE, Tail{callback, tag, outHandle}, deviceId);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getDeviceInfo(const char *deviceId, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                              HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_GET_DEVICE_INFO, Tail{callback, tag, outHandle}, deviceId);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_generateDeviceActivationCode(const char *deviceId, VELMORA_WS_CALLBACK_T callback,
                                                             VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE, Tail{callback, tag, outHandle},
                                        deviceId);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_search(const char *text, int flag, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                       HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_FLAG_PARAMS_T>(VLM_WS_MSGID_SEARCH, Tail{callback, tag, outHandle}, text, flag);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_addFeedback(int isPositive, const char *trackToken, VELMORA_WS_CALLBACK_T callback,
                                            VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_FLAG_TEXT_PARAMS_T>(VLM_WS_MSGID_ADD_FEEDBACK, Tail{callback, tag, outHandle}, isPositive,
                                             trackToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_addMusic(const char *stationToken, const char *musicToken,
                                         VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_TWO_TEXTS_PARAMS_T>(VLM_WS_MSGID_ADD_MUSIC, Tail{callback, tag, outHandle}, stationToken,
                                             musicToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_createStation(const char *musicToken, const char *trackToken, const char *musicType,
                                              int includeExtras, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                              HANDLE_T *outHandle)
{
    return submit<VLM_WS_CREATE_STATION_PARAMS_T>(VLM_WS_MSGID_CREATE_STATION, Tail{callback, tag, outHandle},
                                                  musicToken, trackToken, musicType, includeExtras);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_deleteStation(const char *stationToken, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                              HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_DELETE_STATION, Tail{callback, tag, outHandle}, stationToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getGenreStations(VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit<NoParams>(VLM_WS_MSGID_GET_GENRE_STATIONS, Tail{callback, tag, outHandle});
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getPlaylist(const char *stationToken, int flag, VELMORA_WS_CALLBACK_T callback,
                                            VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_FLAG_PARAMS_T>(VLM_WS_MSGID_GET_PLAYLIST, Tail{callback, tag, outHandle}, stationToken,
                                             flag);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getStation(const char *stationToken, int flag, VELMORA_WS_CALLBACK_T callback,
                                           VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_FLAG_PARAMS_T>(VLM_WS_MSGID_GET_STATION, Tail{callback, tag, outHandle}, stationToken,
                                             flag);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_renameStation(const char *newName, const char *stationToken, int reserved,
                                              VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_RENAME_STATION_PARAMS_T>(VLM_WS_MSGID_RENAME_STATION, Tail{callback, tag, outHandle}, newName,
                                                  stationToken, reserved);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_transformSharedStation(const char *stationToken, int flag,
                                                       VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_FLAG_PARAMS_T>(VLM_WS_MSGID_TRANSFORM_SHARED_STATION, Tail{callback, tag, outHandle},
                                             stationToken, flag);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_explainTrack(const char *trackToken, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                             HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_EXPLAIN_TRACK, Tail{callback, tag, outHandle}, trackToken);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_trackEvent(const char *trackToken, const char *eventType, int seconds,
                                           VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_TRACK_EVENT_PARAMS_T>(VLM_WS_MSGID_TRACK_EVENT, Tail{callback, tag, outHandle}, trackToken,
                                               eventType, seconds);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_associateDevice(const char *deviceId, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                                HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_ASSOCIATE_DEVICE, Tail{callback, tag, outHandle}, deviceId);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_createUser(const char *userName, const char *password, int birthYear,
                                           const char *gender, const char *zipCode, const char *countryCode,
                                           int emailOptIn, const char *deviceId, int includeExtras,
                                           VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_CREATE_USER_PARAMS_T>(VLM_WS_MSGID_CREATE_USER, Tail{callback, tag, outHandle}, userName,
                                               password, birthYear, gender, zipCode, countryCode, emailOptIn, deviceId,
                                               includeExtras);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_emailExplicitPINRescue(VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit<NoParams>(VLM_WS_MSGID_EMAIL_EXPLICIT_PIN_RESCUE, Tail{callback, tag, outHandle});
}

VLM_WS_EXT_ERRCODE_T velmora_ws_emailPassword(const char *userName, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                              HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_EMAIL_PASSWORD, Tail{callback, tag, outHandle}, userName);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_generateUserActivationCode(VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                                           HANDLE_T *outHandle)
{
    return submit<NoParams>(VLM_WS_MSGID_GENERATE_USER_ACTIVATION_CODE, Tail{callback, tag, outHandle});
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getExplicitContentFilter(VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit<NoParams>(VLM_WS_MSGID_GET_EXPLICIT_CONTENT_FILTER, Tail{callback, tag, outHandle});
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getStationList(int includeArt, const char *sortField, const char *sortOrder,
                                               VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_GET_STATION_LIST_PARAMS_T>(VLM_WS_MSGID_GET_STATION_LIST, Tail{callback, tag, outHandle},
                                                    includeArt, sortField, sortOrder);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getStationListChecksum(VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit<NoParams>(VLM_WS_MSGID_GET_STATION_LIST_CHECKSUM, Tail{callback, tag, outHandle});
}

VLM_WS_EXT_ERRCODE_T velmora_ws_getUserInfo(const char *userName, const char *password, const char *deviceId,
                                            int includeExtras, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                            HANDLE_T *outHandle)
{
    return submit<VLM_WS_GET_USER_INFO_PARAMS_T>(VLM_WS_MSGID_GET_USER_INFO, Tail{callback, tag, outHandle}, userName,
                                                 password, deviceId, includeExtras);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_isExplicitContentFilterPINProtected(VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                                                    HANDLE_T *outHandle)
{
    return submit<NoParams>(VLM_WS_MSGID_IS_EXPLICIT_CONTENT_FILTER_PIN_PROTECTED, Tail{callback, tag, outHandle});
}

VLM_WS_EXT_ERRCODE_T velmora_ws_setExplicitContentFilter(int isEnabled, const char *pin, VELMORA_WS_CALLBACK_T callback,
                                                         VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_FLAG_TEXT_PARAMS_T>(VLM_WS_MSGID_SET_EXPLICIT_CONTENT_FILTER, Tail{callback, tag, outHandle},
                                             isEnabled, pin);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_setExplicitPIN(const char *newPin, const char *oldPin, VELMORA_WS_CALLBACK_T callback,
                                               VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_TWO_TEXTS_PARAMS_T>(VLM_WS_MSGID_SET_EXPLICIT_PIN, Tail{callback, tag, outHandle}, newPin,
                                             oldPin);
}

VLM_WS_EXT_ERRCODE_T velmora_ws_sleepSong(const char *trackToken, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                                          HANDLE_T *outHandle)
{
    return submit<VLM_WS_TEXT_PARAMS_T>(VLM_WS_MSGID_SLEEP_SONG, Tail{callback, tag, outHandle}, trackToken);
}
