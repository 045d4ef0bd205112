#pragma once

#include "server/media/descriptorlayout.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmora::engine {

struct EngineStyle {
    std::string name;
    std::string words; // for explanations: ASCII, lower case; empty when the name cannot be said so
};

struct StyleWeight {
    int style = 0; // index into EngineMusic::styles
    float weight = 0;
};

// What the engine is told of a track. Ids are the store's; 0 means none.
struct EngineTrack {
    int64_t id = 0;
    int64_t artist = 0;
    int64_t album = 0;
    int64_t recording = 0; // tracks of one recording count as one; 0: the track itself
    int64_t composer = 0;  // of classical music: kept apart like an artist
    int64_t work = 0;
    int movement = 0; // within the work, from 1
    int tempo = 0;    // beats a minute as tagged; used until the track has a descriptor
    bool isExplicit = false;
    bool needsTranscoding = false; // radios do not decode it as it is
    std::vector<StyleWeight> tags;
    std::optional<media::Descriptor> descriptor;
};

// A track that does not play, because a better file of its recording does.
struct ReplacedTrack {
    int64_t id = 0;
    int64_t artist = 0;
    int64_t recording = 0;
};

struct EngineMusic {
    std::vector<EngineStyle> styles;
    std::vector<EngineTrack> tracks;
    std::vector<ReplacedTrack> replaced;
};

} // namespace velmora::engine
