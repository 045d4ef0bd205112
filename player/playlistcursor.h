#pragma once

#include "velmora_ws.h"

// Which entry of the playlist comes next, and what a command may do with the one that plays.
namespace playlistcursor {

enum class Move {
    NoPlaylist,
    FetchMore, // the playlist is used up, or a fresh one is wanted
    StartAd,
    BrokenTrack, // an entry without its map
    SkipTrack,   // no usable address
    StartTrack
};

struct Next {
    Move move;
    int index; // of the entry that the move is about
};

Next next(const VLM_WS_PLAYLIST_T *playlist, int playingIndex, bool fgNeedNewPlaylist, const char *invalidUrlMarker);

// An entry plays or is being started at this index.
bool isValid(const VLM_WS_PLAYLIST_T *playlist, int index);
// Null outside the playlist, for the other kind, and where the map is missing.
const VLM_TRACK_MAP_T *track(const VLM_WS_PLAYLIST_T *playlist, int index);
const VLM_AD_MAP_T *ad(const VLM_WS_PLAYLIST_T *playlist, int index);
bool isAd(const VLM_WS_PLAYLIST_T *playlist, int index);

// True when the first 14 characters of both are equal, or both are null.
bool isInvalidUrl(const char *url, const char *marker);
// An address that cannot be played: none, or the marker.
bool isUnusable(const char *url, const char *marker);

} // namespace playlistcursor
