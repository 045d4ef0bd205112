#include "server/engine/trackclusters.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace velmora::engine {

namespace {

constexpr size_t usualCluster = 84;   // tracks, at most, and half of it at least
constexpr size_t mostClusters = 1200; // about; the clusters of larger libraries are larger
constexpr size_t smallestStyle = 64;  // tracks that have clusters of their own
constexpr size_t pivotSample = 24;
constexpr size_t shareCount = 12; // of a cluster
constexpr float byteSteps = 255;
constexpr int mixed = -1;

// Distance as the terms of a score weigh it.
float distance(const Likeness &likeness, Position a, Position b)
{
    const ByGroup apart = likeness.distances(a, b);
    return 2.0f * apart[0] + 1.2f * apart[1] + 0.5f * apart[2];
}

int mainStyle(const StyleShares &shares, Position track)
{
    const std::span<const StyleShare> own = shares.of(track);
    const auto largest =
        std::max_element(own.begin(), own.end(), [](const auto &a, const auto &b) { return a.share < b.share; });
    return largest == own.end() ? mixed : largest->style;
}

// The track of a sample that is nearest to the others.
Position medoid(const Likeness &likeness, std::span<const Position> tracks)
{
    const size_t count = std::min(pivotSample, tracks.size());
    const auto sampled = [&](size_t i) { return tracks[i * tracks.size() / count]; };
    Position best = tracks[0];
    float least = 0;
    for (size_t i = 0; i < count; ++i) {
        float sum = 0;
        for (size_t j = 0; j < count; ++j)
            sum += distance(likeness, sampled(i), sampled(j));
        if (i == 0 || sum < least) {
            least = sum;
            best = sampled(i);
        }
    }
    return best;
}

} // namespace

TrackClusters::TrackClusters(const Likeness &likeness, const StyleShares &shares,
                             std::span<const AttributeBytes> attributes)
{
    const size_t count = likeness.size();
    const size_t most = std::max(usualCluster, count / mostClusters);
    std::map<int, std::vector<Position>> byStyle;
    for (Position track = 0; track < count; ++track)
        byStyle[mainStyle(shares, track)].push_back(track);
    std::vector<Position> &rest = byStyle[mixed];
    for (auto &[style, tracks] : byStyle) {
        if (style == mixed || tracks.size() >= std::max(smallestStyle, most / 2))
            continue;
        rest.insert(rest.end(), tracks.begin(), tracks.end());
        m_rare.emplace(style, std::move(tracks));
        tracks.clear();
    }
    m_offsets.push_back(0);
    m_clusterOf.resize(count);
    for (auto &[style, tracks] : byStyle) {
        const auto described = std::stable_partition(tracks.begin(), tracks.end(),
                                                     [&](Position track) { return likeness.isDescribed(track); });
        const std::vector<Position> silent(described, tracks.end());
        tracks.erase(described, tracks.end());
        split(likeness, std::move(tracks), most);
        // Neighbours by number are often of one album: each cluster takes every so manieth.
        const size_t parts = (silent.size() + most - 1) / most;
        for (size_t part = 0; part < parts; ++part) {
            std::vector<Position> some;
            for (size_t i = part; i < silent.size(); i += parts)
                some.push_back(silent[i]);
            add(some, false);
        }
    }
    describe(shares, attributes);
    compare(likeness);
}

// Halves the tracks between two that lie far apart until they are few enough.
void TrackClusters::split(const Likeness &likeness, std::vector<Position> tracks, size_t most)
{
    if (tracks.size() <= most) {
        add(tracks, true);
        return;
    }
    const auto farthest = [&](Position from) {
        Position result = from;
        float highest = -1;
        for (size_t i = 0; i < pivotSample; ++i) {
            const Position track = tracks[i * tracks.size() / pivotSample];
            if (const float apart = distance(likeness, from, track); apart > highest) {
                highest = apart;
                result = track;
            }
        }
        return result;
    };
    const Position one = farthest(tracks[tracks.size() / 2]), other = farthest(one);
    std::vector<std::pair<float, Position>> sides;
    sides.reserve(tracks.size());
    for (const Position track : tracks)
        sides.emplace_back(distance(likeness, track, one) - distance(likeness, track, other), track);
    const auto middle = sides.begin() + static_cast<std::ptrdiff_t>(sides.size() / 2);
    std::nth_element(sides.begin(), middle, sides.end());
    tracks.clear();
    std::vector<Position> far;
    std::transform(sides.begin(), middle, std::back_inserter(tracks), [](const auto &side) { return side.second; });
    std::transform(middle, sides.end(), std::back_inserter(far), [](const auto &side) { return side.second; });
    sides = {};
    split(likeness, std::move(tracks), most);
    split(likeness, std::move(far), most);
}

void TrackClusters::add(std::span<const Position> tracks, bool isDescribed)
{
    if (tracks.empty())
        return;
    for (const Position track : tracks)
        m_clusterOf[track] = static_cast<uint16_t>(size());
    m_members.insert(m_members.end(), tracks.begin(), tracks.end());
    m_offsets.push_back(m_members.size());
    m_isDescribed.push_back(isDescribed);
}

void TrackClusters::describe(const StyleShares &shares, std::span<const AttributeBytes> attributes)
{
    m_shareOffsets.push_back(0);
    for (size_t cluster = 0; cluster < size(); ++cluster) {
        std::unordered_map<uint16_t, uint64_t> sums;
        Attributes &own = m_attributes.emplace_back();
        for (const Position track : members(cluster)) {
            for (const StyleShare &share : shares.of(track))
                sums[share.style] += share.share;
            for (size_t k = 0; k < attributeCount; ++k)
                own[k] += static_cast<float>(attributes[track][k]) / 127;
        }
        const size_t count = members(cluster).size();
        std::for_each(own.begin(), own.end(), [&](float &value) { value /= static_cast<float>(count); });
        std::vector<StyleShare> ordered;
        ordered.reserve(sums.size());
        for (const auto &[style, sum] : sums)
            ordered.push_back({style, static_cast<uint16_t>(sum / count)});
        std::sort(ordered.begin(), ordered.end(), [](const StyleShare &a, const StyleShare &b) {
            return a.share != b.share ? a.share > b.share : a.style < b.style;
        });
        ordered.resize(std::min(ordered.size(), shareCount));
        m_shares.insert(m_shares.end(), ordered.begin(), ordered.end());
        m_shareOffsets.push_back(m_shares.size());
    }
}

void TrackClusters::compare(const Likeness &likeness)
{
    for (Table &table : m_likeness)
        table.assign(size() * size(), 0);
    m_likenessOfAll.assign(size() * size(), 0);
    std::vector<Position> medoids(size());
    for (size_t cluster = 0; cluster < size(); ++cluster) {
        if (m_isDescribed[cluster])
            medoids[cluster] = medoid(likeness, members(cluster));
    }
    for (size_t a = 0; a < size(); ++a) {
        for (size_t b = 0; b <= a && m_isDescribed[a]; ++b) {
            if (!m_isDescribed[b])
                continue;
            const ByComparedGroup alike = likeness.likeness(medoids[a], medoids[b]);
            for (size_t g = 0; g < comparedGroups; ++g)
                m_likeness[g][a * size() + b] = m_likeness[g][b * size() + a] = rounded<uint8_t>(alike[g] * byteSteps);
            m_likenessOfAll[a * size() + b] = m_likenessOfAll[b * size() + a] =
                rounded<uint8_t>(likeness.all(medoids[a], medoids[b]) * byteSteps);
        }
    }
}

const std::vector<Position> &TrackClusters::tracksOfRareStyle(int style) const
{
    static const std::vector<Position> none;
    const auto found = m_rare.find(style);
    return found == m_rare.end() ? none : found->second;
}

} // namespace velmora::engine
