#include "commands.h"

#include <algorithm>
#include <cstring>

namespace velmora::ws {

namespace {

using enum FieldKind;

constexpr Field adMetadataFields[] = {
    {"adToken", Text, offsetof(VLM_WS_TEXT_FLAG_PARAMS_T, text), true},
    {"includeExtras", Flag, offsetof(VLM_WS_TEXT_FLAG_PARAMS_T, flag)},
};
constexpr Field stationFlagFields[] = {
    {"stationToken", Text, offsetof(VLM_WS_TEXT_FLAG_PARAMS_T, text), true},
    {"includeExtras", Flag, offsetof(VLM_WS_TEXT_FLAG_PARAMS_T, flag)},
};
constexpr Field searchFields[] = {
    {"text", Text, offsetof(VLM_WS_TEXT_FLAG_PARAMS_T, text), true},
    {"includeNear", Flag, offsetof(VLM_WS_TEXT_FLAG_PARAMS_T, flag)},
};
constexpr Field registerAdFields[] = {
    {"stationToken", Text, offsetof(VLM_WS_TWO_TEXTS_PARAMS_T, first), true},
    {"adToken", Text, offsetof(VLM_WS_TWO_TEXTS_PARAMS_T, second), true},
};
constexpr Field addMusicFields[] = {
    {"stationToken", Text, offsetof(VLM_WS_TWO_TEXTS_PARAMS_T, first), true},
    {"musicToken", Text, offsetof(VLM_WS_TWO_TEXTS_PARAMS_T, second), true},
};
constexpr Field pinFields[] = {
    {"newPin", Text, offsetof(VLM_WS_TWO_TEXTS_PARAMS_T, first), true},
    {"oldPin", Text, offsetof(VLM_WS_TWO_TEXTS_PARAMS_T, second)},
};
constexpr Field feedbackFields[] = {
    {"isPositive", Flag, offsetof(VLM_WS_FLAG_TEXT_PARAMS_T, flag)},
    {"trackToken", Text, offsetof(VLM_WS_FLAG_TEXT_PARAMS_T, text), true},
};
constexpr Field filterFields[] = {
    {"isEnabled", Flag, offsetof(VLM_WS_FLAG_TEXT_PARAMS_T, flag)},
    {"pin", Text, offsetof(VLM_WS_FLAG_TEXT_PARAMS_T, text)},
};
constexpr Field trackFields[] = {{"trackToken", Text, offsetof(VLM_WS_TEXT_PARAMS_T, text), true}};
constexpr Field stationFields[] = {{"stationToken", Text, offsetof(VLM_WS_TEXT_PARAMS_T, text), true}};
constexpr Field deviceFields[] = {{"deviceId", Text, offsetof(VLM_WS_TEXT_PARAMS_T, text), true}};
constexpr Field userNameFields[] = {{"userName", Text, offsetof(VLM_WS_TEXT_PARAMS_T, text), true}};
constexpr Field partnerLoginFields[] = {
    {"partnerName", Text, offsetof(VLM_WS_PARTNER_LOGIN_PARAMS_T, partnerName)},
    {"partnerPassword", Text, offsetof(VLM_WS_PARTNER_LOGIN_PARAMS_T, partnerPassword)},
    {"deviceModel", Text, offsetof(VLM_WS_PARTNER_LOGIN_PARAMS_T, deviceModel)},
    {"includeExtras", Flag, offsetof(VLM_WS_PARTNER_LOGIN_PARAMS_T, includeExtras)},
};
constexpr Field userLoginFields[] = {
    {"loginType", Text, offsetof(VLM_WS_USER_LOGIN_PARAMS_T, loginType), true},
    {"password", Text, offsetof(VLM_WS_USER_LOGIN_PARAMS_T, password)},
    {"userName", Text, offsetof(VLM_WS_USER_LOGIN_PARAMS_T, userName)},
    {"deviceId", LoginDevice, offsetof(VLM_WS_USER_LOGIN_PARAMS_T, deviceId)},
};
constexpr Field createStationFields[] = {
    {"musicToken", Text, offsetof(VLM_WS_CREATE_STATION_PARAMS_T, musicToken)},
    {"trackToken", Text, offsetof(VLM_WS_CREATE_STATION_PARAMS_T, trackToken)},
    {"musicType", Text, offsetof(VLM_WS_CREATE_STATION_PARAMS_T, musicType)},
    {"includeExtras", Flag, offsetof(VLM_WS_CREATE_STATION_PARAMS_T, includeExtras)},
};
constexpr Field renameFields[] = {
    {"newName", Text, offsetof(VLM_WS_RENAME_STATION_PARAMS_T, newName), true},
    {"stationToken", Text, offsetof(VLM_WS_RENAME_STATION_PARAMS_T, stationToken), true},
    {"reserved", Unsent, offsetof(VLM_WS_RENAME_STATION_PARAMS_T, reserved)},
};
constexpr Field trackEventFields[] = {
    {"trackToken", Text, offsetof(VLM_WS_TRACK_EVENT_PARAMS_T, trackToken), true},
    {"eventType", Text, offsetof(VLM_WS_TRACK_EVENT_PARAMS_T, eventType), true},
    {"seconds", Number, offsetof(VLM_WS_TRACK_EVENT_PARAMS_T, seconds)},
};
constexpr Field createUserFields[] = {
    {"userName", Text, offsetof(VLM_WS_CREATE_USER_PARAMS_T, userName), true},
    {"password", Text, offsetof(VLM_WS_CREATE_USER_PARAMS_T, password), true},
    {"birthYear", OptionalNumber, offsetof(VLM_WS_CREATE_USER_PARAMS_T, birthYear)},
    {"gender", Text, offsetof(VLM_WS_CREATE_USER_PARAMS_T, gender)},
    {"zipCode", Text, offsetof(VLM_WS_CREATE_USER_PARAMS_T, zipCode)},
    {"countryCode", Text, offsetof(VLM_WS_CREATE_USER_PARAMS_T, countryCode)},
    {"emailOptIn", Flag, offsetof(VLM_WS_CREATE_USER_PARAMS_T, emailOptIn)},
    {"deviceId", Text, offsetof(VLM_WS_CREATE_USER_PARAMS_T, deviceId)},
    {"includeExtras", Flag, offsetof(VLM_WS_CREATE_USER_PARAMS_T, includeExtras)},
};
constexpr Field userInfoFields[] = {
    {"userName", Text, offsetof(VLM_WS_GET_USER_INFO_PARAMS_T, userName)},
    {"password", Text, offsetof(VLM_WS_GET_USER_INFO_PARAMS_T, password)},
    {"deviceId", Text, offsetof(VLM_WS_GET_USER_INFO_PARAMS_T, deviceId)},
    {"includeExtras", Flag, offsetof(VLM_WS_GET_USER_INFO_PARAMS_T, includeExtras)},
};
constexpr Field stationListFields[] = {
    {"includeArt", Flag, offsetof(VLM_WS_GET_STATION_LIST_PARAMS_T, includeArt)},
    {"sortField", Text, offsetof(VLM_WS_GET_STATION_LIST_PARAMS_T, sortField)},
    {"sortOrder", Text, offsetof(VLM_WS_GET_STATION_LIST_PARAMS_T, sortOrder)},
};

constexpr std::size_t textSize = sizeof(VLM_WS_TEXT_PARAMS_T);
constexpr std::size_t textFlagSize = sizeof(VLM_WS_TEXT_FLAG_PARAMS_T);
constexpr std::size_t flagTextSize = sizeof(VLM_WS_FLAG_TEXT_PARAMS_T);
constexpr std::size_t twoTextsSize = sizeof(VLM_WS_TWO_TEXTS_PARAMS_T);

using enum Token;
using R = ReplyShape;

// clang-format off
constexpr Command commands[] = {
    {VLM_WS_MSGID_GET_AD_METADATA, "getAdMetadata", User, R::AdMetadata, textFlagSize, adMetadataFields},
    {VLM_WS_MSGID_REGISTER_AD, "registerAd", User, R::None, twoTextsSize, registerAdFields, true},
    {VLM_WS_MSGID_PARTNER_LOGIN, "partnerLogin", None, R::PartnerLogin, sizeof(VLM_WS_PARTNER_LOGIN_PARAMS_T), partnerLoginFields},
    {VLM_WS_MSGID_USER_LOGIN, "userLogin", Partner, R::UserLogin, sizeof(VLM_WS_USER_LOGIN_PARAMS_T), userLoginFields},
    {VLM_WS_MSGID_ADD_ARTIST_BOOKMARK, "addArtistBookmark", User, R::None, textSize, trackFields, true},
    {VLM_WS_MSGID_ADD_SONG_BOOKMARK, "addSongBookmark", User, R::None, textSize, trackFields, true},
    {VLM_WS_MSGID_DISASSOCIATE_DEVICE, "disassociateDevice", Partner, R::None, textSize, deviceFields, true},
    {VLM_WS_MSGID_GET_DEVICE_INFO, "getDeviceInfo", Partner, R::DeviceInfo, textSize, deviceFields},
    {VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE, "generateDeviceActivationCode", Partner, R::ActivationCode, textSize, deviceFields, true},
    {VLM_WS_MSGID_SEARCH, "search", User, R::Search, textFlagSize, searchFields},
    {VLM_WS_MSGID_ADD_FEEDBACK, "addFeedback", User, R::None, flagTextSize, feedbackFields, true},
    {VLM_WS_MSGID_ADD_MUSIC, "addMusic", User, R::None, twoTextsSize, addMusicFields, true},
    {VLM_WS_MSGID_CREATE_STATION, "createStation", User, R::Station, sizeof(VLM_WS_CREATE_STATION_PARAMS_T), createStationFields, true},
    {VLM_WS_MSGID_DELETE_STATION, "deleteStation", User, R::None, textSize, stationFields, true},
    {VLM_WS_MSGID_GET_GENRE_STATIONS, "getGenreStations", User, R::GenreList, 0, {}},
    {VLM_WS_MSGID_GET_PLAYLIST, "getPlaylist", User, R::Playlist, textFlagSize, stationFlagFields},
    {VLM_WS_MSGID_GET_STATION, "getStation", User, R::Station, textFlagSize, stationFlagFields},
    {VLM_WS_MSGID_RENAME_STATION, "renameStation", User, R::Station, sizeof(VLM_WS_RENAME_STATION_PARAMS_T), renameFields, true},
    {VLM_WS_MSGID_TRANSFORM_SHARED_STATION, "transformSharedStation", User, R::Station, textFlagSize, stationFlagFields, true},
    {VLM_WS_MSGID_EXPLAIN_TRACK, "explainTrack", User, R::Explanation, textSize, trackFields},
    {VLM_WS_MSGID_TRACK_EVENT, "trackEvent", User, R::None, sizeof(VLM_WS_TRACK_EVENT_PARAMS_T), trackEventFields, true},
    {VLM_WS_MSGID_ASSOCIATE_DEVICE, "associateDevice", User, R::None, textSize, deviceFields, true},
    {VLM_WS_MSGID_CREATE_USER, "createUser", Partner, R::UserLogin, sizeof(VLM_WS_CREATE_USER_PARAMS_T), createUserFields, true},
    {VLM_WS_MSGID_EMAIL_EXPLICIT_PIN_RESCUE, "emailExplicitPINRescue", User, R::None, 0, {}, true},
    {VLM_WS_MSGID_EMAIL_PASSWORD, "emailPassword", Partner, R::None, textSize, userNameFields, true},
    {VLM_WS_MSGID_GENERATE_USER_ACTIVATION_CODE, "generateUserActivationCode", User, R::ActivationCode, 0, {}, true},
    {VLM_WS_MSGID_GET_EXPLICIT_CONTENT_FILTER, "getExplicitContentFilter", User, R::IsEnabled, 0, {}},
    {VLM_WS_MSGID_GET_STATION_LIST, "getStationList", User, R::StationList, sizeof(VLM_WS_GET_STATION_LIST_PARAMS_T), stationListFields},
    {VLM_WS_MSGID_GET_STATION_LIST_CHECKSUM, "getStationListChecksum", User, R::Checksum, 0, {}},
    {VLM_WS_MSGID_GET_USER_INFO, "getUserInfo", Partner, R::UserInfo, sizeof(VLM_WS_GET_USER_INFO_PARAMS_T), userInfoFields},
    {VLM_WS_MSGID_IS_EXPLICIT_CONTENT_FILTER_PIN_PROTECTED, "isExplicitContentFilterPINProtected", User, R::IsProtected, 0, {}},
    {VLM_WS_MSGID_SET_EXPLICIT_CONTENT_FILTER, "setExplicitContentFilter", User, R::IsEnabled, flagTextSize, filterFields, true},
    {VLM_WS_MSGID_SET_EXPLICIT_PIN, "setExplicitPIN", User, R::None, twoTextsSize, pinFields, true},
    {VLM_WS_MSGID_SLEEP_SONG, "sleepSong", User, R::None, textSize, trackFields, true},
};
// clang-format on

} // namespace

const Command *findCommand(uint32_t id)
{
    for (const Command &command : commands) {
        if (command.id == id)
            return &command;
    }
    return nullptr;
}

bool namesTrack(const Command &command)
{
    return std::any_of(command.fields.begin(), command.fields.end(),
                       [](const Field &field) { return std::strcmp(field.key, "trackToken") == 0; });
}

bool hasRequiredParams(const Command &command, const void *params)
{
    for (const Field &field : command.fields) {
        if (field.isRequired && !*reinterpret_cast<char *const *>(static_cast<const char *>(params) + field.offset))
            return false;
    }
    if (command.id == VLM_WS_MSGID_USER_LOGIN) {
        const auto *login = static_cast<const VLM_WS_USER_LOGIN_PARAMS_T *>(params);
        if (std::strcmp(login->loginType, "user") == 0)
            return login->userName && login->password;
        return std::strcmp(login->loginType, "deviceId") == 0 && login->deviceId;
    }
    if (command.id == VLM_WS_MSGID_CREATE_STATION) {
        const auto *station = static_cast<const VLM_WS_CREATE_STATION_PARAMS_T *>(params);
        return station->musicToken || (station->trackToken && station->musicType);
    }
    return true;
}

} // namespace velmora::ws
