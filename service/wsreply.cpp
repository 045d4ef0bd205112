#include "service/wsreply.h"

#include <algorithm>
#include <initializer_list>

namespace wsreply {

namespace {

const VLM_WS_REQUEST_T *record(HANDLE_T handle)
{
    return reinterpret_cast<const VLM_WS_REQUEST_T *>(handle);
}

// The reply as `T` when the handle is of one of these commands and carries data, else null.
template <typename T>
const T *reply(HANDLE_T handle, std::initializer_list<int> commands)
{
    if (std::find(commands.begin(), commands.end(), commandId(handle)) == commands.end())
        return nullptr;
    return static_cast<const T *>(record(handle)->reply);
}

// The number of elements that may be read; 0 without an array.
int elements(int32_t count, const void *array)
{
    return array && count > 0 ? count : 0;
}

} // namespace

int commandId(HANDLE_T handle)
{
    return handle == 0 ? -1 : static_cast<int>(record(handle)->vlm_ws_CmdID);
}

bool hasData(HANDLE_T handle)
{
    return handle != 0 && record(handle)->reply != nullptr;
}

StationList::StationList(HANDLE_T handle)
    : m_list(reply<VLM_WS_STATION_LIST_T>(handle, {VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_MSGID_GET_GENRE_STATIONS}))
{
}

int StationList::count() const
{
    return m_list ? elements(m_list->count, m_list->stations) : 0;
}

const VLM_STATION_MAP_T *StationList::at(int index) const
{
    return index >= 0 && index < count() ? &m_list->stations[index] : nullptr;
}

const VLM_STATION_MAP_T *station(HANDLE_T handle)
{
    return reply<VLM_STATION_MAP_T>(handle, {VLM_WS_MSGID_CREATE_STATION, VLM_WS_MSGID_GET_STATION,
                                             VLM_WS_MSGID_RENAME_STATION, VLM_WS_MSGID_TRANSFORM_SHARED_STATION});
}

const VLM_WS_PLAYLIST_T *playlist(HANDLE_T handle)
{
    return reply<VLM_WS_PLAYLIST_T>(handle, {VLM_WS_MSGID_GET_PLAYLIST});
}

const VLM_AD_METADATA_T *adMetadata(HANDLE_T handle)
{
    return reply<VLM_AD_METADATA_T>(handle, {VLM_WS_MSGID_GET_AD_METADATA});
}

QString loginUserName(HANDLE_T handle)
{
    const auto *login = reply<VLM_WS_USER_LOGIN_T>(handle, {VLM_WS_MSGID_USER_LOGIN, VLM_WS_MSGID_CREATE_USER});
    return login ? QString::fromUtf8(login->userName) : QString();
}

ActivationCode activationCode(HANDLE_T handle)
{
    const auto *code = reply<VLM_WS_ACTIVATION_CODE_T>(
        handle, {VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE, VLM_WS_MSGID_GENERATE_USER_ACTIVATION_CODE});
    if (!code)
        return {};
    return {QString::fromUtf8(code->activationCode), QString::fromUtf8(code->activationUrl)};
}

SearchResult search(HANDLE_T handle)
{
    SearchResult result;
    const auto *found = reply<VLM_WS_SEARCH_T>(handle, {VLM_WS_MSGID_SEARCH});
    if (!found)
        return result;
    for (int i = 0; i < elements(found->trackCount, found->tracks); ++i) {
        const VLM_WS_SEARCH_TRACK_T &track = found->tracks[i];
        result.tracks.append({QString::fromUtf8(track.musicToken), QString::fromUtf8(track.songName),
                              QString::fromUtf8(track.artistName)});
    }
    for (int i = 0; i < elements(found->artistCount, found->artists); ++i) {
        const VLM_WS_SEARCH_ARTIST_T &artist = found->artists[i];
        result.artists.append({QString::fromUtf8(artist.musicToken), QString::fromUtf8(artist.artistName)});
    }
    return result;
}

QStringList traits(HANDLE_T handle)
{
    QStringList texts;
    const auto *explanation = reply<VLM_WS_EXPLANATION_T>(handle, {VLM_WS_MSGID_EXPLAIN_TRACK});
    if (!explanation)
        return texts;
    for (int i = 0; i < elements(explanation->count, explanation->traits); ++i)
        texts.append(QString::fromLatin1(explanation->traits[i].traitText));
    return texts;
}

} // namespace wsreply
