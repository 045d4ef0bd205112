#pragma once

#include "server/engine/attributes.h"
#include "server/engine/styleshares.h"

#include <unordered_map>

namespace velmora::engine {

// A large library in clusters of tracks that share their main style and sound alike, so that a station compares a few
// hundred tracks of the clusters that suit it instead of all. Immutable once built; up to 10 MB, however large the
// library is.
class TrackClusters {
public:
    // A library of at most so many tracks needs none: comparing all of them takes less than a millisecond.
    static constexpr size_t largestWithout = 2048;

    // No clusters.
    TrackClusters() = default;
    // Takes a fifth of a second for 100,000 tracks.
    TrackClusters(const Likeness &likeness, const StyleShares &shares, std::span<const AttributeBytes> attributes);

    size_t size() const { return m_offsets.empty() ? 0 : m_offsets.size() - 1; }
    std::span<const Position> members(size_t cluster) const
    {
        return {m_members.data() + m_offsets[cluster], m_offsets[cluster + 1] - m_offsets[cluster]};
    }
    size_t of(Position track) const { return m_clusterOf[track]; }
    // Tracks without a descriptor have clusters of their own.
    bool isDescribed(size_t cluster) const { return m_isDescribed[cluster]; }
    // Means of the members.
    std::span<const StyleShare> shares(size_t cluster) const
    {
        return {m_shares.data() + m_shareOffsets[cluster], m_shareOffsets[cluster + 1] - m_shareOffsets[cluster]};
    }
    const Attributes &attributes(size_t cluster) const { return m_attributes[cluster]; }
    // How alike each cluster is to this one, in steps of 1/255: in one group, or over everything. 0 where one of the
    // two is not described.
    std::span<const uint8_t> likeness(size_t cluster, size_t group) const { return row(m_likeness[group], cluster); }
    std::span<const uint8_t> likenessOfAll(size_t cluster) const { return row(m_likenessOfAll, cluster); }
    // The tracks of a style that is the main one of too few for clusters of their own; they lie in mixed clusters.
    const std::vector<Position> &tracksOfRareStyle(int style) const;

private:
    using Table = std::vector<uint8_t>;

    std::span<const uint8_t> row(const Table &table, size_t cluster) const
    {
        return {table.data() + cluster * size(), size()};
    }
    void split(const Likeness &likeness, std::vector<Position> tracks, size_t most);
    void add(std::span<const Position> tracks, bool isDescribed);
    void describe(const StyleShares &shares, std::span<const AttributeBytes> attributes);
    void compare(const Likeness &likeness);

    std::vector<Position> m_members;
    std::vector<size_t> m_offsets;
    std::vector<uint16_t> m_clusterOf; // by track
    std::vector<bool> m_isDescribed;
    std::vector<StyleShare> m_shares;
    std::vector<size_t> m_shareOffsets;
    std::vector<Attributes> m_attributes;
    std::array<Table, comparedGroups> m_likeness;
    Table m_likenessOfAll;
    std::unordered_map<int, std::vector<Position>> m_rare;
};

} // namespace velmora::engine
