#pragma once

#include "democatalogue.h"
#include "jingle.h"
#include "piece.h"

namespace velmora::demo {

// What the catalogue knows of a track: what it publishes, and how it is composed.
struct TrackEntry {
    DemoTrack track;
    Piece piece;
    int cover; // index of the album's picture
};

struct AdEntry {
    DemoAd ad;
    Jingle jingle;
};

const std::vector<TrackEntry> &trackEntries();
const std::vector<AdEntry> &adEntries();

} // namespace velmora::demo
