#pragma once

#include "server/engine/engineindex.h"

namespace velmora::engine {

// What a listener said or did about a track, as an example for learning.
struct TasteEvent {
    int64_t track = 0;
    bool isLiked = false;
    float weight = 0;
};

// How much each kind of event teaches.
namespace eventweight {
constexpr float thumb = 1;
constexpr float bookmark = 0.5f; // liked
constexpr float ended = 0.1f;    // liked: heard to the end
constexpr float skipped = 0.3f;  // not liked: left before its half
constexpr float sleep = 0.3f;    // not liked
} // namespace eventweight

// Traits that are learned: the attributes, then the common styles of the index.
constexpr size_t mostTraits = attributeCount + 40;
using Traits = std::array<float, mostTraits>;
Traits traitsOf(const EngineIndex &index, Position track);

// A logistic model of one listener on one station, learned from examples in one pass. It is never stored: a thumb that
// is taken back leaves no trace.
class Taste {
public:
    static constexpr size_t mostEvents = 500;

    Taste() = default;
    // Oldest first; only the last 500 count. Tracks that are not in the index are skipped.
    Taste(const EngineIndex &index, std::span<const TasteEvent> events);

    float weight(size_t trait) const { return m_weights[trait]; }

private:
    Traits m_weights{};
    float m_bias = 0;
};

} // namespace velmora::engine
