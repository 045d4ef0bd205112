#include "player/playlistcursor.h"

#include <cstring>

namespace playlistcursor {

Next next(const VLM_WS_PLAYLIST_T *playlist, int playingIndex, bool fgNeedNewPlaylist, const char *invalidUrlMarker)
{
    if (!playlist)
        return {Move::NoPlaylist, playingIndex};
    const int index = playingIndex + 1;
    if (fgNeedNewPlaylist || index >= playlist->count)
        return {Move::FetchMore, index};
    if (isAd(playlist, index))
        return {Move::StartAd, index};
    const VLM_TRACK_MAP_T *map = track(playlist, index);
    if (!map)
        return {Move::BrokenTrack, index};
    return {isUnusable(map->audioUrl, invalidUrlMarker) ? Move::SkipTrack : Move::StartTrack, index};
}

bool isValid(const VLM_WS_PLAYLIST_T *playlist, int index)
{
    return playlist && playlist->entries && index >= 0 && index < playlist->count;
}

const VLM_TRACK_MAP_T *track(const VLM_WS_PLAYLIST_T *playlist, int index)
{
    return isValid(playlist, index) && playlist->entries[index].isTrack ? playlist->entries[index].map.p_trackMap
                                                                        : nullptr;
}

const VLM_AD_MAP_T *ad(const VLM_WS_PLAYLIST_T *playlist, int index)
{
    return isAd(playlist, index) ? playlist->entries[index].map.p_adMap : nullptr;
}

bool isAd(const VLM_WS_PLAYLIST_T *playlist, int index)
{
    return isValid(playlist, index) && !playlist->entries[index].isTrack;
}

bool isInvalidUrl(const char *url, const char *marker)
{
    if (!url || !marker)
        return !url && !marker;
    return std::strncmp(url, marker, 14) == 0;
}

bool isUnusable(const char *url, const char *marker)
{
    return !url || isInvalidUrl(url, marker);
}

} // namespace playlistcursor
