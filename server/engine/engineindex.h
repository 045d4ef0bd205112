#pragma once

#include "server/engine/trackclusters.h"

#include <memory>
#include <unordered_map>

namespace velmora::engine {

struct TrackFacts {
    int64_t id = 0;
    int64_t artist = 0;
    int64_t album = 0;
    int64_t recording = 0;
    int64_t composer = 0; // 0: none
    int64_t work = 0;     // 0: none
    int32_t movement = 0;
    int16_t tempo = 0; // beats a minute; 0 when it is not known for certain
    bool isExplicit = false;
    bool needsTranscoding = false;
};

// All that the engine knows of the music, as it was at one moment. Immutable once built, so that any thread reads it
// without a lock; about 300 bytes a track.
class EngineIndex {
public:
    // Ids of tracks must differ. Of more than 4096 styles those with the most tracks are kept. Votes take seconds for a
    // large library; see StyleShares. A library of more than `largestWithoutClusters` tracks is put in clusters.
    EngineIndex(EngineMusic music, StyleShares::Votes votes, const std::atomic<bool> *isStopping = nullptr,
                size_t largestWithoutClusters = TrackClusters::largestWithout);

    size_t size() const { return m_facts.size(); }
    const TrackFacts &facts(Position track) const { return m_facts[track]; }
    // The track, or the one that plays for its recording.
    std::optional<Position> find(int64_t trackId) const;
    const std::vector<Position> &tracksOfArtist(int64_t artist) const; // empty when there is none
    // Its movements in order.
    const std::vector<Position> &tracksOfWork(int64_t work) const;

    const Likeness &likeness() const { return m_likeness; }
    const StyleShares &shares() const { return m_shares; }
    // None in a small library.
    const TrackClusters &clusters() const { return m_clusters; }
    const std::vector<EngineStyle> &styles() const { return m_styles; }
    std::optional<int> findStyle(const std::string &name) const;
    // The styles with the most tracks, at most 40: what learning looks at.
    const std::vector<int> &commonStyles() const { return m_commonStyles; }
    // A style's place among them; -1 when it is not one.
    int commonPlace(int style) const { return m_commonPlaces[static_cast<size_t>(style)]; }
    Attributes attributes(Position track) const;
    // Fetches what is asked of a track from memory, ahead of its use.
    void prefetch(Position track) const
    {
        m_likeness.prefetch(track);
        m_shares.prefetch(track);
        __builtin_prefetch(&m_facts[track].artist);
        __builtin_prefetch(&m_attributes[track]);
    }

private:
    void addReplaced(const std::vector<ReplacedTrack> &replaced);
    void findCommonStyles();
    void rankAttributes(const EngineMusic &music);

    std::vector<TrackFacts> m_facts; // by id
    std::vector<EngineStyle> m_styles;
    std::unordered_map<int64_t, std::vector<Position>> m_byArtist, m_byWork;
    std::unordered_map<int64_t, Position> m_replaced; // by id of the track that does not play
    Likeness m_likeness;
    StyleShares m_shares;
    std::vector<int> m_commonStyles;
    std::vector<int8_t> m_commonPlaces; // by style
    std::vector<AttributeBytes> m_attributes;
    TrackClusters m_clusters;
};

} // namespace velmora::engine
