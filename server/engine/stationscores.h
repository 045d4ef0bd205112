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

// What every track of an index scores on one station, whatever was played there lately. Immutable once built; about
// 12 bytes a track.
class StationScores {
public:
    // `previous`, of the same station, spares comparing with examples that it already knows; may be null.
    StationScores(std::shared_ptr<const EngineIndex> index, const StationTaste &taste,
                  const StationScores *previous = nullptr);

    const EngineIndex &index() const { return *m_index; }
    const std::shared_ptr<const EngineIndex> &sharedIndex() const { return m_index; }

    // All terms but Fresh, which stays 0.
    Terms terms(Position track) const;
    // Their sum.
    float base(Position track) const { return m_base[track]; }
    // Positions by falling base: all of a small index, the first 4096 of a large one.
    const std::vector<Position> &best() const { return m_best; }
    // Tracks from this base on fit the station; the others fill it up when there is nothing else.
    float fitThreshold() const { return m_fitThreshold; }
    size_t fitCount() const { return m_fitCount; }
    // Whether something speaks for the track that the listener asked for; always true on a station about nothing.
    bool isRelated(Position track) const;

    const std::vector<Example> &examples() const { return m_examples; }
    const std::vector<float> &styleWishes() const { return m_styleWishes; } // by style, largest 1 or all 0
    const Taste &taste() const { return m_taste; }

private:
    static constexpr size_t likenessTerms = 3; // Sound, Beat, Harmony

    void findExamples(const StationTaste &taste);
    void wishStyles();
    void compare(const StationScores *previous);
    void compareWith(const Example &example);
    void rank();
    float likenessTerm(Position track, size_t group) const;
    float styleTerm(Position track) const;
    float artistTerm(Position track) const;
    float unlikeTerm(Position track) const;
    float plainTerms(Position track) const; // all but styles and what was learned

    std::shared_ptr<const EngineIndex> m_index;
    bool m_isAboutNothing;
    std::vector<Example> m_examples;
    std::vector<Position> m_disliked;
    std::set<int64_t> m_seedArtists;
    std::vector<int> m_seedStyles;
    std::vector<float> m_styleWishes;
    Taste m_taste;
    // By track: the highest likeness to an example, times its weight, in each group; to a disliked one, over
    // everything. In steps of 1/255.
    std::vector<std::array<uint8_t, likenessTerms>> m_likeness;
    std::vector<uint8_t> m_unlikeness;
    std::array<float, likenessTerms> m_meanLikeness{}; // stands for tracks without a descriptor
    std::vector<float> m_base;
    std::vector<Position> m_best;
    float m_fitThreshold = 0;
    size_t m_fitCount = 0;
};

} // namespace velmora::engine
