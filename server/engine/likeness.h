#pragma once

#include "server/media/descriptorlayout.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace velmora::engine {

// The nearest whole number. `value` is not negative, so adding a half before truncating rounds correctly; std::lround
// is a call in loops that run over the whole library.
template <typename Integer>
constexpr Integer rounded(float value)
{
    return static_cast<Integer>(value + 0.5f); // NOLINT(bugprone-incorrect-roundings)
}

constexpr size_t groupCount = 4;     // sound, beat, harmony, shape
constexpr size_t comparedGroups = 3; // the shape counts in the distance over everything only
constexpr std::array<media::DescriptorGroup, groupCount> groups = {media::soundGroup, media::beatGroup,
                                                                   media::harmonyGroup, media::shapeGroup};
// What each group counts in the distance over everything.
constexpr std::array<float, groupCount> groupWeights = {1.5f, 1.0f, 0.5f, 0.2f};

using ByGroup = std::array<float, groupCount>;
using ByComparedGroup = std::array<float, comparedGroups>;

// How alike tracks sound. Each number is a z-score over the library in steps of 1/63, so that all weigh the same.
// Likeness is mutual proximity: the probability that two tracks are closer to each other than either is to a track
// drawn by chance. It lies between 0 and 1 and leaves no track that is near to everything. Over everything it is that
// of one distance, in which each group is measured by how near to each track its nearest ones are. Immutable once
// built.
class Likeness {
public:
    // Descriptors by position; null for tracks that have none.
    explicit Likeness(std::span<const media::Descriptor *const> descriptors);

    size_t size() const { return m_isDescribed.size(); }
    bool isDescribed(size_t track) const { return m_isDescribed[track]; }

    // Distance in each group, in standard deviations of a number. Both tracks must be described.
    ByGroup distances(size_t a, size_t b) const;
    ByComparedGroup likeness(size_t a, size_t b) const;
    float all(size_t a, size_t b) const;

    // Fetches what is compared of a track from memory, ahead of its use.
    void prefetch(size_t track) const
    {
        constexpr size_t line = 64;
        for (size_t at = 0; at < media::descriptorSize; at += line)
            __builtin_prefetch(m_numbers.data() + track * media::descriptorSize + at);
        __builtin_prefetch(&m_neighbourhoods[track]);
    }

private:
    template <typename Distances>
    void measureDistances(size_t a, size_t b, Distances &result) const;
    struct Neighbourhood {
        ByGroup mean{}, inverseDeviation{};
        ByGroup scale{}; // 1 / root of the mean distance to the nearest ones
        float meanOfAll = 0, inverseDeviationOfAll = 0;
    };

    void scale(std::span<const media::Descriptor *const> descriptors);
    void measureNeighbourhoods();
    static float distanceOfAll(const ByGroup &distances, const Neighbourhood &a, const Neighbourhood &b);

    std::vector<bool> m_isDescribed;
    std::vector<int8_t> m_numbers; // descriptorSize a track
    std::vector<Neighbourhood> m_neighbourhoods;
};

} // namespace velmora::engine
