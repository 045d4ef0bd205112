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
    d->device.isInitialised = d->device.initResult == VLM_WS_ERR_OK;
    return d->device.initResult;
}

VLM_WS_EXT_ERRCODE_T velmora_ws_uninit(void)
{
    FakeWs::Private *d = FakeWs::instance().d;
    std::unique_lock lock(d->mutex);
    d->device.isInitialised = false;
    d->queue.clear();
    // No callback comes after uninit has returned. A call from within a callback must not wait for itself.
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
    ++d->device.macCalls;
    if (d->device.macResult != VLM_WS_ERR_OK)
        return d->device.macResult;
    if (!buffer || size < 6)
        return VLM_WS_ERR_INVALID_ARGUMENT;
    std::memcpy(buffer, "\x00\x1a\x2b\x3c\x4d\x5e", 6);
    if (size > 6)
        buffer[6] = 0;
    return VLM_WS_ERR_OK;
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

VLM_WS_EXT_ERRCODE_T velmora_ws_createUser(const char *userName, const char *password, int birthYear,
                                           const char *gender, const char *zipCode, const char *countryCode,
                                           int emailOptIn, const char *deviceId, int includeExtras,
                                           VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle)
{
    return submit<VLM_WS_CREATE_USER_PARAMS_T>(VLM_WS_MSGID_CREATE_USER, Tail{callback, tag, outHandle}, userName,
                                               password, birthYear, gender, zipCode, countryCode, emailOptIn, deviceId,
                                               includeExtras);
}

// All others: function, identifier, record, and the types of its parameters.
using Text = const char *;
#define TAIL VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle
#define SUBMIT(ID, RECORD, ...)                                                                                        \
    {                                                                                                                  \
        return submit<RECORD>(VLM_WS_MSGID_##ID, Tail{callback, tag, outHandle} __VA_OPT__(, ) __VA_ARGS__);           \
    }
#define REQUEST_0(NAME, ID) VLM_WS_EXT_ERRCODE_T velmora_ws_##NAME(TAIL) SUBMIT(ID, NoParams)
#define REQUEST_1(NAME, ID, RECORD, A) VLM_WS_EXT_ERRCODE_T velmora_ws_##NAME(A a, TAIL) SUBMIT(ID, RECORD, a)
#define REQUEST_2(NAME, ID, RECORD, A, B)                                                                              \
    VLM_WS_EXT_ERRCODE_T velmora_ws_##NAME(A a, B b, TAIL) SUBMIT(ID, RECORD, a, b)
#define REQUEST_3(NAME, ID, RECORD, A, B, C)                                                                           \
    VLM_WS_EXT_ERRCODE_T velmora_ws_##NAME(A a, B b, C c, TAIL) SUBMIT(ID, RECORD, a, b, c)
#define REQUEST_4(NAME, ID, RECORD, A, B, C, D)                                                                        \
    VLM_WS_EXT_ERRCODE_T velmora_ws_##NAME(A a, B b, C c, D d, TAIL) SUBMIT(ID, RECORD, a, b, c, d)

// clang-format off
REQUEST_2(getAdMetadata, GET_AD_METADATA, VLM_WS_TEXT_FLAG_PARAMS_T, Text, int)
REQUEST_2(registerAd, REGISTER_AD, VLM_WS_TWO_TEXTS_PARAMS_T, Text, Text)
REQUEST_4(partnerLogin, PARTNER_LOGIN, VLM_WS_PARTNER_LOGIN_PARAMS_T, Text, Text, Text, int)
REQUEST_1(addArtistBookmark, ADD_ARTIST_BOOKMARK, VLM_WS_TEXT_PARAMS_T, Text)
REQUEST_1(addSongBookmark, ADD_SONG_BOOKMARK, VLM_WS_TEXT_PARAMS_T, Text)
REQUEST_1(disassociateDevice, DISASSOCIATE_DEVICE, VLM_WS_TEXT_PARAMS_T, Text)
REQUEST_1(getDeviceInfo, GET_DEVICE_INFO, VLM_WS_TEXT_PARAMS_T, Text)
REQUEST_1(generateDeviceActivationCode, GENERATE_DEVICE_ACTIVATION_CODE, VLM_WS_TEXT_PARAMS_T, Text)
REQUEST_2(search, SEARCH, VLM_WS_TEXT_FLAG_PARAMS_T, Text, int)
REQUEST_2(addFeedback, ADD_FEEDBACK, VLM_WS_FLAG_TEXT_PARAMS_T, int, Text)
REQUEST_2(addMusic, ADD_MUSIC, VLM_WS_TWO_TEXTS_PARAMS_T, Text, Text)
REQUEST_4(createStation, CREATE_STATION, VLM_WS_CREATE_STATION_PARAMS_T, Text, Text, Text, int)
REQUEST_1(deleteStation, DELETE_STATION, VLM_WS_TEXT_PARAMS_T, Text)
REQUEST_0(getGenreStations, GET_GENRE_STATIONS)
REQUEST_2(getPlaylist, GET_PLAYLIST, VLM_WS_TEXT_FLAG_PARAMS_T, Text, int)
REQUEST_2(getStation, GET_STATION, VLM_WS_TEXT_FLAG_PARAMS_T, Text, int)
REQUEST_3(renameStation, RENAME_STATION, VLM_WS_RENAME_STATION_PARAMS_T, Text, Text, int)
REQUEST_2(transformSharedStation, TRANSFORM_SHARED_STATION, VLM_WS_TEXT_FLAG_PARAMS_T, Text, int)
REQUEST_1(explainTrack, EXPLAIN_TRACK, VLM_WS_TEXT_PARAMS_T, Text)
REQUEST_3(trackEvent, TRACK_EVENT, VLM_WS_TRACK_EVENT_PARAMS_T, Text, Text, int)
REQUEST_1(associateDevice, ASSOCIATE_DEVICE, VLM_WS_TEXT_PARAMS_T, Text)
REQUEST_0(emailExplicitPINRescue, EMAIL_EXPLICIT_PIN_RESCUE)
REQUEST_1(emailPassword, EMAIL_PASSWORD, VLM_WS_TEXT_PARAMS_T, Text)
REQUEST_0(generateUserActivationCode, GENERATE_USER_ACTIVATION_CODE)
REQUEST_0(getExplicitContentFilter, GET_EXPLICIT_CONTENT_FILTER)
REQUEST_3(getStationList, GET_STATION_LIST, VLM_WS_GET_STATION_LIST_PARAMS_T, int, Text, Text)
REQUEST_0(getStationListChecksum, GET_STATION_LIST_CHECKSUM)
REQUEST_4(getUserInfo, GET_USER_INFO, VLM_WS_GET_USER_INFO_PARAMS_T, Text, Text, Text, int)
REQUEST_0(isExplicitContentFilterPINProtected, IS_EXPLICIT_CONTENT_FILTER_PIN_PROTECTED)
REQUEST_2(setExplicitContentFilter, SET_EXPLICIT_CONTENT_FILTER, VLM_WS_FLAG_TEXT_PARAMS_T, int, Text)
REQUEST_2(setExplicitPIN, SET_EXPLICIT_PIN, VLM_WS_TWO_TEXTS_PARAMS_T, Text, Text)
REQUEST_1(sleepSong, SLEEP_SONG, VLM_WS_TEXT_PARAMS_T, Text)
// clang-format on
