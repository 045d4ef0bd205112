#pragma once

#include "server/media/mediafacts.h"

#include <functional>
#include <string>
#include <vector>

namespace velmora::server {

// What the catalogue says of a track, made of its tags and, where they are silent, of its path.
struct TrackFacts {
    std::string song;
    std::string artist; // who the track is by; "Unknown artist" when nobody says
    std::string albumArtist;
    std::string album;
    std::string composer;
    std::string work;
    int movement = 0;
    int disc = 0;
    int number = 0;
    int year = 0;
    int tempo = 0; // beats a minute, 0 when no tag says it
    std::string mood;
    std::vector<std::string> styles; // as they are spelt, the most important first
    bool isExplicit = false;
    bool isUnknownArtist = false; // a different one for every folder
    bool isCompilation = false;   // the album belongs to its folder, not to an artist
    bool isSpeech = false;        // an audio book, a podcast
    bool isClassical = false;
};

// Pure. `path` is the file's in its root, any bytes. `isArtist` tells whether somebody else in the store has this name.
TrackFacts factsOf(const media::MediaTags &tags, const std::string &path,
                   const std::function<bool(const std::string &)> &isArtist);

inline constexpr const char *unknownArtist = "Unknown artist";
bool isVariousArtists(const std::string &name);

} // namespace velmora::server
