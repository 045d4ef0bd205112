#pragma once

#include "server/engine/stationscores.h"

#include <random>
#include <unordered_set>

namespace velmora::engine {

// What the moment forbids or makes less likely, beside the scores.
struct Circumstances {
    std::vector<int64_t> recent;                // tracks that the station handed out, newest first
    std::unordered_map<int64_t, int> plays;     // by track: how often it was heard on the station in the last 90 days
    std::unordered_set<int64_t> excludedTracks; // other tracks of their recordings are excluded too
    std::unordered_set<int64_t> excludedArtists;
    bool allowsExplicit = true;
    // Tracks that went away since the index was built; null: none.
    std::shared_ptr<const std::unordered_set<int64_t>> absent;
    // Null: any track will do. Else one that needs transcoding must be among these, which are transcoded.
    std::shared_ptr<const std::unordered_set<int64_t>> transcoded;
};

struct Candidate {
    Position track = 0;
    Terms terms{};
    float noise = 0; // exploration, kept for the explanation
    float score() const { return sumOf(terms) + noise; }
};

struct Pick {
    std::vector<Candidate> shortlist; // at most 300
    size_t winner = 0;                // index into it: the highest score
    const Candidate &candidate() const { return shortlist[winner]; }
};

// Uniform 64-bit numbers; one thread at a time.
using Noise = std::mt19937_64;

// Terms of tracks that were on a shortlist, of one StationScores. Kept while a list is chosen, whose shortlists are
// mostly the same.
using KnownTerms = std::unordered_map<Position, Terms>;

// The next track of a station, or nothing when nothing at all may be played. Rules keep albums, artists and recordings
// apart; where they leave too little, the weaker ones give way: albums, then artists before the last one, then
// recordings before the last one, at the very end the last artist. `known` spares computing, and may be null.
std::optional<Pick> choose(const StationScores &scores, const Circumstances &circumstances, Noise &noise,
                           KnownTerms *known = nullptr);

} // namespace velmora::engine
