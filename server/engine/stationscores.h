#pragma once

#include "server/engine/taste.h"

#include <set>

namespace velmora::engine {

// What a station was made from.
struct Seed {
    enum class Kind { Track, Artist, Style };
    Kind kind = Kind::Track;
    int64_t id = 0;    // of a track or artist
    std::string style; // of a style

    bool operator==(const Seed &) const = default;
};

// All that a station is told by its listener.
struct StationTaste {
    std::vector<Seed> seeds;
    std::vector<int64_t> liked;     // tracks with a thumb up
    std::vector<int64_t> disliked;  // tracks with a thumb down
    std::vector<TasteEvent> events; // oldest first
};

// The terms of a track's score. Learned traits follow the named ones, a term each.
enum class Term { Style, Artist, Sound, Beat, Harmony, Unlike, Fresh, FirstLearned };
constexpr size_t termCount = static_cast<size_t>(Term::FirstLearned) + mostTraits;
using Terms = std::array<float, termCount>;
inline float &at(Terms &terms, Term term)
{
    return terms[static_cast<size_t>(term)];
}
float sumOf(const Terms &terms);

// A track that the station resembles.
struct Example {
    Position track = 0;
    float weight = 0; // 1 for seeds, less for tracks with a thumb up
    bool isSeed = false;
};

// What the tracks of an index score on one station, whatever was played there lately. In a small library all tracks are
// candidates; in one with clusters some 600 are, those of the clusters that suit the station best. The others have the
// same scores, computed when they are asked for. Immutable once built; 16 bytes a candidate.
class StationScores {
public:
    struct Ranked {
        Position track = 0;
        float base = 0;
    };

    // `previous`, of the same station, spares comparing with examples that it already knows; may be null. `rotation`:
    // with another number, other ones of equally good clusters are candidates.
    StationScores(std::shared_ptr<const EngineIndex> index, const StationTaste &taste,
                  const StationScores *previous = nullptr, uint64_t rotation = 0);

    const EngineIndex &index() const { return *m_index; }
    const std::shared_ptr<const EngineIndex> &sharedIndex() const { return m_index; }

    // All terms but Fresh, which stays 0.
    Terms terms(Position track) const;
    // Their sum.
    float base(Position track) const;
    // The candidates by falling base.
    const std::vector<Ranked> &best() const { return m_best; }
    bool isCandidate(Position track) const { return placeOf(track).has_value(); }
    // The clusters by falling suitability; none in a small library.
    const std::vector<uint16_t> &clusters() const { return m_clusters; }
    // Tracks from this base on fit the station; the others fill it up when there is nothing else.
    float fitThreshold() const { return m_fitThreshold; }
    size_t fitCount() const { return m_fitCount; } // with clusters an estimate
    // Whether something speaks for the track that the listener asked for; always true on a station about nothing.
    bool isRelated(Position track) const;

    const std::vector<Example> &examples() const { return m_examples; }
    const std::vector<float> &styleWishes() const { return m_styleWishes; } // by style, largest 1 or all 0
    const Taste &taste() const { return m_taste; }

private:
    static constexpr size_t likenessTerms = comparedGroups; // Sound, Beat, Harmony
    // The highest likeness to an example, times its weight, in each group; to a disliked track, over everything. In
    // steps of 1/255.
    struct Comparison {
        std::array<uint8_t, likenessTerms> alike{};
        uint8_t unlike = 0;
    };
    // What a cluster's tracks are compared with: of many examples those that are like it.
    struct Models {
        std::vector<Example> examples;
        std::vector<Position> disliked;
    };

    bool isWhole() const { return m_index->clusters().size() == 0; }
    std::optional<size_t> placeOf(Position track) const;
    void findExamples(const StationTaste &taste);
    void wishStyles();
    void compareAll(const StationScores *previous);
    void rankClusters(uint64_t rotation);
    void gatherCandidates(uint64_t rotation);
    void compareCandidates();
    Models modelsOf(size_t cluster) const;
    void compare(Position track, const Example &example, Comparison &comparison) const;
    void compare(Position track, Position disliked, Comparison &comparison) const;
    Comparison compare(Position track, const Models &models) const;
    Comparison comparisonOf(Position track) const;
    void rank();
    void findThreshold();
    float likenessTerm(Position track, const Comparison &comparison, size_t group) const;
    float styleTerm(Position track) const;
    float artistTerm(Position track) const;
    static float unlikeTerm(const Comparison &comparison);
    float baseOf(Position track, const Comparison &comparison) const;

    std::shared_ptr<const EngineIndex> m_index;
    bool m_isAboutNothing;
    std::vector<Example> m_examples;
    std::vector<Position> m_disliked;
    std::set<int64_t> m_seedArtists;
    std::vector<int> m_seedStyles;
    std::vector<float> m_styleWishes;
    Taste m_taste;
    std::vector<float> m_slopes; // by style: what a full share is worth, by wishes and by what was learned
    std::vector<uint16_t> m_clusters;
    std::vector<float> m_clusterBases;                 // by cluster, an estimate of its tracks' base
    std::vector<Position> m_candidates;                // ascending; empty when the library is whole
    std::vector<Comparison> m_comparisons;             // of the candidates
    std::vector<float> m_base;                         // of the candidates
    std::array<float, likenessTerms> m_meanLikeness{}; // stands for tracks without a descriptor
    std::vector<Ranked> m_best;
    float m_fitThreshold = 0;
    size_t m_fitCount = 0;
};

} // namespace velmora::engine
