#include "server/engine/styleshares.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <unordered_map>

namespace velmora::engine {

namespace {

constexpr float ownWeight = 1;
constexpr float artistWeight = 0.6f;
constexpr float votesWeight = 1.5f; // times the square of the agreement
constexpr size_t voters = 15;
constexpr size_t referenceSize = 2048; // tracks among which the nearest are looked for
constexpr size_t agreementSample = 1000;
constexpr size_t agreementNeighbours = 10;
constexpr size_t mostShares = 8; // of one track
// With less agreement than this the sound is trusted less, down to the least; not on the word of a few tracks.
constexpr float trustedAgreement = 0.2f;
constexpr float leastTrust = 0.4f;
constexpr size_t enoughForDoubt = 100;

using Weights = std::map<int, float>;

// Adds a distribution that sums to 1, times the weight.
void add(Weights &target, const Weights &source, float weight)
{
    float sum = 0;
    for (const auto &[style, value] : source)
        sum += value;
    for (const auto &[style, value] : source)
        target[style] += weight * value / sum;
}

Weights tagsOf(const EngineTrack &track)
{
    Weights tags;
    for (const StyleWeight &tag : track.tags) {
        if (tag.weight > 0)
            tags[tag.style] += tag.weight;
    }
    return tags;
}

int commonest(const Weights &weights)
{
    return std::max_element(weights.begin(), weights.end(),
                            [](const auto &a, const auto &b) { return a.second < b.second; })
        ->first;
}

// Finds the nearest tagged tracks by other artists among a sample of the library.
class Neighbours {
public:
    Neighbours(const EngineMusic &music, const Likeness &likeness)
        : m_music(music)
        , m_likeness(likeness)
    {
        std::vector<size_t> all;
        for (size_t track = 0; track < music.tracks.size(); ++track) {
            if (likeness.isDescribed(track) && !music.tracks[track].tags.empty())
                all.push_back(track);
        }
        const size_t count = std::min(referenceSize, all.size());
        for (size_t i = 0; i < count; ++i)
            m_reference.push_back(all[i * all.size() / count]);
    }

    const std::vector<size_t> &reference() const { return m_reference; }

    std::vector<size_t> of(size_t track, size_t count)
    {
        m_found.clear();
        for (const size_t other : m_reference) {
            if (m_music.tracks[other].artist != m_music.tracks[track].artist)
                m_found.push_back({m_likeness.all(track, other), other});
        }
        count = std::min(count, m_found.size());
        std::partial_sort(m_found.begin(), m_found.begin() + static_cast<std::ptrdiff_t>(count), m_found.end(),
                          std::greater<>());
        std::vector<size_t> nearest;
        for (size_t i = 0; i < count; ++i)
            nearest.push_back(m_found[i].second);
        return nearest;
    }

private:
    const EngineMusic &m_music;
    const Likeness &m_likeness;
    std::vector<size_t> m_reference;
    std::vector<std::pair<float, size_t>> m_found;
};

// The share of equal tags among nearest tracks, as far as it exceeds chance.
float measuredAgreement(const EngineMusic &music, Neighbours &neighbours, const std::atomic<bool> *isStopping)
{
    const std::vector<size_t> &reference = neighbours.reference();
    const size_t samples = std::min(agreementSample, reference.size());
    std::map<int, double> counts;
    for (const size_t track : reference)
        ++counts[commonest(tagsOf(music.tracks[track]))];
    double chance = 0;
    for (const auto &[style, count] : counts)
        chance += std::pow(count / static_cast<double>(reference.size()), 2);
    double equal = 0, all = 0;
    for (size_t i = 0; i < samples && !(isStopping && *isStopping); ++i) {
        const size_t track = reference[i * reference.size() / samples];
        const int own = commonest(tagsOf(music.tracks[track]));
        for (const size_t other : neighbours.of(track, agreementNeighbours)) {
            equal += commonest(tagsOf(music.tracks[other])) == own ? 1 : 0;
            ++all;
        }
    }
    if (all == 0 || chance >= 1)
        return 0;
    return static_cast<float>(std::max(0.0, (equal / all - chance) / (1 - chance)));
}

} // namespace

StyleShares::StyleShares(const EngineMusic &music, const Likeness &likeness, Votes votes,
                         const std::atomic<bool> *isStopping)
{
    struct Artist {
        Weights tags;
        int tracks = 0;
    };
    std::unordered_map<int64_t, Artist> artists;
    for (const EngineTrack &track : music.tracks) {
        const Weights tags = tagsOf(track);
        if (tags.empty())
            continue;
        Artist &artist = artists[track.artist];
        add(artist.tags, tags, 1);
        ++artist.tracks;
    }

    std::optional<Neighbours> neighbours;
    if (votes == Votes::Taken) {
        neighbours.emplace(music, likeness);
        m_agreement = measuredAgreement(music, *neighbours, isStopping);
        if (neighbours->reference().size() >= enoughForDoubt) {
            const auto tagged = std::count_if(music.tracks.begin(), music.tracks.end(),
                                              [](const EngineTrack &track) { return !track.tags.empty(); });
            const float share = static_cast<float>(tagged) / static_cast<float>(music.tracks.size());
            m_soundTrust = 1 - share * (1 - std::clamp(m_agreement / trustedAgreement, leastTrust, 1.0f));
        }
    }
    const float voting = votesWeight * m_agreement * m_agreement;

    m_offsets.push_back(0);
    for (size_t position = 0; position < music.tracks.size(); ++position) {
        const EngineTrack &track = music.tracks[position];
        Weights sum;
        const Weights own = tagsOf(track);
        float present = 0;
        if (!own.empty()) {
            add(sum, own, ownWeight);
            present += ownWeight;
        }
        if (const auto artist = artists.find(track.artist); artist != artists.end()) {
            // The artist's other tracks: what this one added is taken out again.
            Weights others = artist->second.tags;
            if (!own.empty())
                add(others, own, -1);
            std::erase_if(others, [](const auto &entry) { return entry.second < 1e-3f; });
            if (!others.empty()) {
                add(sum, others, artistWeight);
                present += artistWeight;
            }
        }
        const Weights tagged = sum;
        if (voting > 0.01f && likeness.isDescribed(position) && !(isStopping && *isStopping)) {
            Weights voted;
            for (const size_t other : neighbours->of(position, voters))
                add(voted, tagsOf(music.tracks[other]), 1);
            if (!voted.empty()) {
                add(sum, voted, voting);
                present += voting;
            }
        }
        std::vector<std::pair<float, int>> ordered;
        for (const auto &[style, value] : sum)
            ordered.push_back({value / present, style});
        std::sort(ordered.begin(), ordered.end(), std::greater<>());
        ordered.resize(std::min(ordered.size(), mostShares));
        for (const auto &[value, style] : ordered) {
            const auto share = static_cast<uint16_t>(std::lround(std::clamp(value, 0.0f, 1.0f) * 65535));
            m_shares.push_back({static_cast<uint16_t>(style), share});
            m_tagged.push_back(tagged.contains(style));
        }
        m_offsets.push_back(m_shares.size());
    }
}

float StyleShares::share(size_t track, int style) const
{
    for (const StyleShare &share : of(track)) {
        if (share.style == style)
            return share.value();
    }
    return 0;
}

bool StyleShares::isTagged(size_t track, int style) const
{
    for (size_t i = m_offsets[track]; i < m_offsets[track + 1]; ++i) {
        if (m_shares[i].style == style)
            return m_tagged[i];
    }
    return false;
}

} // namespace velmora::engine
