#include "server/engine/stationscores.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace velmora::engine {

namespace {

constexpr float styleWeight = 3.5f;
constexpr float artistWeight = 0.6f;
constexpr std::array<float, 3> likenessWeights = {2.0f, 1.2f, 0.5f}; // sound, beat, harmony
constexpr float unlikeWeight = 2.5f;
constexpr float unlikeFrom = 0.75f; // likeness to a track with a thumb down, from which it counts
constexpr float likedWeight = 0.5f; // of a track with a thumb up, beside a seed's 1
constexpr size_t artistExamples = 5;
constexpr size_t mostModels = 6; // examples or disliked tracks that a candidate of a cluster is compared with
constexpr size_t candidateCount = 600;
constexpr size_t mostOfCluster = 100;
constexpr size_t mostOfArtist = 40;
constexpr size_t mostOfRareStyle = 200, mostOfRareStyles = 400;
constexpr float rareWish = 0.3f;
constexpr float clusterNoise = 0.2f;  // so much moves equally good clusters
constexpr float unlikeCluster = 0.4f; // likeness of clusters from which tracks in them may be too much alike
// Where the tracks that fit begin: half way from the middle of the library to the best ones, for which the track of
// this rank stands, or that of an eighth of a small library.
constexpr size_t fitRank = 60;
constexpr size_t smallLibrary = 8;
constexpr float fitShare = 0.5f;
constexpr float byteSteps = 255;
constexpr size_t prefetchAhead = 8; // tracks

// The first of the values, by falling size, with which their weights sum to more than `half`. Changes their order.
float middleOf(std::span<std::pair<float, size_t>> weighted, size_t half)
{
    while (weighted.size() > 1) {
        const auto upper = weighted.first(weighted.size() / 2);
        std::nth_element(weighted.begin(), upper.end(), weighted.end(), std::greater<>());
        const size_t above = std::accumulate(upper.begin(), upper.end(), size_t{0},
                                             [](size_t sum, const auto &value) { return sum + value.second; });
        weighted = above > half ? upper : weighted.subspan(upper.size());
        half -= above > half ? 0 : above;
    }
    return weighted.front().first;
}

// Tracks of an artist that lie far apart, the most ordinary one first, so that they stand for all of it.
std::vector<Position> spread(const EngineIndex &index, const std::vector<Position> &tracks)
{
    const Likeness &likeness = index.likeness();
    std::vector<Position> described;
    std::copy_if(tracks.begin(), tracks.end(), std::back_inserter(described),
                 [&](Position track) { return likeness.isDescribed(track); });
    // A hundred are enough to find five among them.
    constexpr size_t most = 100;
    if (described.size() > most) {
        for (size_t i = 0; i < most; ++i)
            described[i] = described[i * described.size() / most];
        described.resize(most);
    }
    if (described.size() < artistExamples) {
        std::vector<Position> first = tracks;
        first.resize(std::min(first.size(), artistExamples));
        return described.empty() ? first : described;
    }
    std::vector<float> closest(described.size(), 0);
    for (size_t i = 0; i < described.size(); ++i) {
        for (const Position other : described)
            closest[i] += likeness.all(described[i], other);
    }
    std::vector<Position> chosen;
    size_t next = static_cast<size_t>(std::max_element(closest.begin(), closest.end()) - closest.begin());
    std::fill(closest.begin(), closest.end(), 0.0f);
    while (chosen.size() < artistExamples) {
        chosen.push_back(described[next]);
        for (size_t i = 0; i < described.size(); ++i)
            closest[i] = i == next ? 2 : std::max(closest[i], likeness.all(described[i], described[next]));
        next = static_cast<size_t>(std::min_element(closest.begin(), closest.end()) - closest.begin());
    }
    return chosen;
}

} // namespace

float sumOf(const Terms &terms)
{
    return std::accumulate(terms.begin(), terms.end(), 0.0f);
}

StationScores::StationScores(std::shared_ptr<const EngineIndex> index, const StationTaste &taste,
                             const StationScores *previous, uint64_t rotation)
    : m_index(std::move(index))
    , m_isAboutNothing(taste.seeds.empty() && taste.liked.empty())
    , m_taste(*m_index, taste.events)
{
    findExamples(taste);
    wishStyles();
    if (isWhole()) {
        compareAll(previous);
    } else {
        rankClusters(rotation);
        gatherCandidates(rotation);
        compareCandidates();
    }
    rank();
    findThreshold();
}

std::optional<size_t> StationScores::placeOf(Position track) const
{
    if (isWhole())
        return track;
    const auto found = std::lower_bound(m_candidates.begin(), m_candidates.end(), track);
    if (found == m_candidates.end() || *found != track)
        return std::nullopt;
    return static_cast<size_t>(found - m_candidates.begin());
}

void StationScores::findExamples(const StationTaste &taste)
{
    for (const Seed &seed : taste.seeds) {
        if (seed.kind == Seed::Kind::Style) {
            if (const std::optional<int> style = m_index->findStyle(seed.style))
                m_seedStyles.push_back(*style);
            continue;
        }
        std::vector<Position> tracks;
        if (seed.kind == Seed::Kind::Artist) {
            tracks = spread(*m_index, m_index->tracksOfArtist(seed.id));
            m_seedArtists.insert(seed.id);
        } else if (const std::optional<Position> track = m_index->find(seed.id)) {
            tracks.push_back(*track);
            m_seedArtists.insert(m_index->facts(*track).artist);
        }
        for (const Position track : tracks)
            m_examples.push_back({track, 1, true});
    }
    for (const int64_t id : taste.liked) {
        const std::optional<Position> track = m_index->find(id);
        const bool isKnown = track && std::any_of(m_examples.begin(), m_examples.end(),
                                                  [&](const Example &example) { return example.track == *track; });
        if (track && !isKnown)
            m_examples.push_back({*track, likedWeight, false});
    }
    for (const int64_t id : taste.disliked) {
        if (const std::optional<Position> track = m_index->find(id))
            m_disliked.push_back(*track);
    }
}

void StationScores::wishStyles()
{
    m_styleWishes.assign(m_index->styles().size(), 0);
    for (const int style : m_seedStyles)
        m_styleWishes[static_cast<size_t>(style)] += 1;
    for (const Example &example : m_examples) {
        for (const StyleShare &share : m_index->shares().of(example.track))
            m_styleWishes[share.style] += example.weight * share.value();
    }
    const float largest = m_styleWishes.empty() ? 0 : *std::max_element(m_styleWishes.begin(), m_styleWishes.end());
    if (largest > 0)
        std::for_each(m_styleWishes.begin(), m_styleWishes.end(), [&](float &wish) { wish /= largest; });
    m_slopes.resize(m_styleWishes.size());
    std::transform(m_styleWishes.begin(), m_styleWishes.end(), m_slopes.begin(),
                   [](float wish) { return styleWeight * wish; });
    const std::vector<int> &common = m_index->commonStyles();
    for (size_t i = 0; i < common.size(); ++i)
        m_slopes[static_cast<size_t>(common[i])] += m_taste.weight(attributeCount + i);
}

void StationScores::compareAll(const StationScores *previous)
{
    const size_t size = m_index->size();
    const auto knows = [](const std::vector<Example> &examples, const Example &wanted) {
        return std::any_of(examples.begin(), examples.end(), [&](const Example &example) {
            return example.track == wanted.track && example.weight == wanted.weight;
        });
    };
    const auto dislikes = [](const std::vector<Position> &disliked, Position wanted) {
        return std::find(disliked.begin(), disliked.end(), wanted) != disliked.end();
    };
    const bool isOfUse = previous && previous->m_index == m_index &&
                         std::all_of(previous->m_examples.begin(), previous->m_examples.end(),
                                     [&](const Example &example) { return knows(m_examples, example); }) &&
                         std::all_of(previous->m_disliked.begin(), previous->m_disliked.end(),
                                     [&](Position track) { return dislikes(m_disliked, track); });
    if (isOfUse)
        m_comparisons = previous->m_comparisons;
    else
        m_comparisons.resize(size);
    for (const Example &example : m_examples) {
        for (Position track = 0; track < size && !(isOfUse && knows(previous->m_examples, example)); ++track)
            compare(track, example, m_comparisons[track]);
    }
    for (const Position disliked : m_disliked) {
        for (Position track = 0; track < size && !(isOfUse && dislikes(previous->m_disliked, disliked)); ++track)
            compare(track, disliked, m_comparisons[track]);
    }
    std::array<double, likenessTerms> sums{};
    double count = 0;
    for (Position track = 0; track < size; ++track) {
        if (!m_index->likeness().isDescribed(track))
            continue;
        for (size_t g = 0; g < likenessTerms; ++g)
            sums[g] += m_comparisons[track].alike[g];
        ++count;
    }
    for (size_t g = 0; g < likenessTerms && count > 0; ++g)
        m_meanLikeness[g] = static_cast<float>(sums[g] / count) / byteSteps;
}

void StationScores::compare(Position track, const Example &example, Comparison &comparison) const
{
    const Likeness &likeness = m_index->likeness();
    if (!likeness.isDescribed(track) || !likeness.isDescribed(example.track))
        return;
    const ByComparedGroup alike = likeness.likeness(track, example.track);
    for (size_t g = 0; g < likenessTerms; ++g) {
        const auto value = rounded<uint8_t>(alike[g] * example.weight * byteSteps);
        comparison.alike[g] = std::max(comparison.alike[g], value);
    }
}

void StationScores::compare(Position track, Position disliked, Comparison &comparison) const
{
    const Likeness &likeness = m_index->likeness();
    if (likeness.isDescribed(track) && likeness.isDescribed(disliked))
        comparison.unlike = std::max(comparison.unlike, rounded<uint8_t>(likeness.all(track, disliked) * byteSteps));
}

StationScores::Comparison StationScores::compare(Position track, const Models &models) const
{
    Comparison comparison;
    for (const Example &example : models.examples)
        compare(track, example, comparison);
    for (const Position disliked : models.disliked)
        compare(track, disliked, comparison);
    return comparison;
}

// By the likeness of the clusters to those of the examples, which was computed with the index.
void StationScores::rankClusters(uint64_t rotation)
{
    const TrackClusters &clusters = m_index->clusters();
    const Likeness &likeness = m_index->likeness();
    std::array<std::vector<uint8_t>, likenessTerms> alike;
    for (size_t g = 0; g < likenessTerms; ++g) {
        alike[g].resize(clusters.size());
        for (const Example &example : m_examples) {
            if (!likeness.isDescribed(example.track))
                continue;
            const std::span<const uint8_t> row = clusters.likeness(clusters.of(example.track), g);
            const auto weight = static_cast<unsigned>(example.weight * 256);
            for (size_t c = 0; c < row.size(); ++c)
                alike[g][c] = std::max(alike[g][c], static_cast<uint8_t>(row[c] * weight / 256));
        }
    }
    std::vector<uint8_t> unlike(clusters.size());
    for (const Position disliked : m_disliked) {
        if (!likeness.isDescribed(disliked))
            continue;
        const std::span<const uint8_t> row = clusters.likenessOfAll(clusters.of(disliked));
        for (size_t c = 0; c < row.size(); ++c)
            unlike[c] = std::max(unlike[c], row[c]);
    }
    std::array<double, likenessTerms> sums{};
    double described = 0;
    for (size_t c = 0; c < clusters.size(); ++c) {
        if (!clusters.isDescribed(c))
            continue;
        const auto count = static_cast<double>(clusters.members(c).size());
        described += count;
        for (size_t g = 0; g < likenessTerms; ++g)
            sums[g] += count * alike[g][c];
    }
    for (size_t g = 0; g < likenessTerms && described > 0; ++g)
        m_meanLikeness[g] = static_cast<float>(sums[g] / described) / byteSteps;

    std::mt19937 random(static_cast<uint32_t>(rotation));
    std::vector<std::pair<float, uint16_t>> order;
    order.reserve(clusters.size());
    m_clusterBases.resize(clusters.size());
    for (size_t c = 0; c < clusters.size(); ++c) {
        const Comparison comparison = {{alike[0][c], alike[1][c], alike[2][c]}, unlike[c]};
        float sum = unlikeTerm(comparison);
        for (size_t g = 0; g < likenessTerms; ++g)
            sum += likenessWeights[g] * m_index->shares().soundTrust() *
                   (clusters.isDescribed(c) ? static_cast<float>(comparison.alike[g]) / byteSteps : m_meanLikeness[g]);
        for (const StyleShare &share : clusters.shares(c))
            sum += share.value() * m_slopes[share.style];
        for (size_t k = 0; k < attributeCount; ++k)
            sum += m_taste.weight(k) * clusters.attributes(c)[k];
        m_clusterBases[c] = sum;
        const float noise = clusterNoise * static_cast<float>(random()) / static_cast<float>(std::mt19937::max());
        order.emplace_back(sum + noise, static_cast<uint16_t>(c));
    }
    std::sort(order.begin(), order.end(), std::greater<>());
    m_clusters.reserve(order.size());
    for (const auto &[sum, cluster] : order)
        m_clusters.push_back(cluster);
}

void StationScores::gatherCandidates(uint64_t rotation)
{
    // Of too many every so manieth, from another one on each time.
    const auto add = [&](std::span<const Position> tracks, size_t most) {
        const size_t count = std::min(tracks.size(), most);
        for (size_t i = 0; i < count; ++i)
            m_candidates.push_back(tracks[(i * tracks.size() / count + rotation) % tracks.size()]);
    };
    for (const uint16_t cluster : m_clusters) {
        if (m_candidates.size() >= candidateCount)
            break;
        add(m_index->clusters().members(cluster), mostOfCluster);
    }
    for (const int64_t artist : m_seedArtists)
        add(m_index->tracksOfArtist(artist), mostOfArtist);
    const size_t most = m_candidates.size() + mostOfRareStyles;
    for (size_t style = 0; style < m_styleWishes.size() && m_candidates.size() < most; ++style) {
        if (m_styleWishes[style] >= rareWish)
            add(m_index->clusters().tracksOfRareStyle(static_cast<int>(style)), mostOfRareStyle);
    }
    // What the listener named is there in any case.
    for (const Example &example : m_examples)
        m_candidates.push_back(example.track);
    std::sort(m_candidates.begin(), m_candidates.end());
    m_candidates.erase(std::unique(m_candidates.begin(), m_candidates.end()), m_candidates.end());
}

StationScores::Models StationScores::modelsOf(size_t cluster) const
{
    const TrackClusters &clusters = m_index->clusters();
    Models models;
    if (!clusters.isDescribed(cluster))
        return models;
    std::vector<std::pair<float, const Example *>> examples;
    for (const Example &example : m_examples) {
        const size_t other = clusters.of(example.track);
        float sum = 0;
        for (size_t g = 0; g < likenessTerms; ++g)
            sum += likenessWeights[g] * static_cast<float>(clusters.likeness(other, g)[cluster]);
        examples.emplace_back(sum * example.weight, &example);
    }
    const auto shorten = [](auto &all) {
        if (all.size() > mostModels)
            std::nth_element(all.begin(), all.begin() + mostModels, all.end(), std::greater<>());
        all.resize(std::min(all.size(), mostModels));
    };
    shorten(examples);
    for (const auto &[sum, example] : examples)
        models.examples.push_back(*example);
    std::vector<std::pair<uint8_t, Position>> disliked;
    for (const Position track : m_disliked) {
        const uint8_t value = clusters.likenessOfAll(clusters.of(track))[cluster];
        if (static_cast<float>(value) >= unlikeCluster * byteSteps)
            disliked.emplace_back(value, track);
    }
    shorten(disliked);
    for (const auto &[value, track] : disliked)
        models.disliked.push_back(track);
    return models;
}

void StationScores::compareCandidates()
{
    std::unordered_map<size_t, Models> models; // by cluster
    m_comparisons.reserve(m_candidates.size());
    for (size_t place = 0; place < m_candidates.size(); ++place) {
        // They are scattered over the library: waiting for memory would take longer than comparing.
        if (place + prefetchAhead < m_candidates.size())
            m_index->prefetch(m_candidates[place + prefetchAhead]);
        const Position track = m_candidates[place];
        const size_t cluster = m_index->clusters().of(track);
        auto found = models.find(cluster);
        if (found == models.end())
            found = models.emplace(cluster, modelsOf(cluster)).first;
        m_comparisons.push_back(compare(track, found->second));
    }
}

StationScores::Comparison StationScores::comparisonOf(Position track) const
{
    if (const std::optional<size_t> place = placeOf(track))
        return m_comparisons[*place];
    return compare(track, modelsOf(m_index->clusters().of(track)));
}

float StationScores::likenessTerm(Position track, const Comparison &comparison, size_t group) const
{
    const float likeness = m_index->likeness().isDescribed(track)
                               ? static_cast<float>(comparison.alike[group]) / byteSteps
                               : m_meanLikeness[group];
    return likenessWeights[group] * m_index->shares().soundTrust() * likeness;
}

float StationScores::styleTerm(Position track) const
{
    float sum = 0;
    for (const StyleShare &share : m_index->shares().of(track))
        sum += share.value() * m_styleWishes[share.style];
    return styleWeight * sum;
}

float StationScores::unlikeTerm(const Comparison &comparison)
{
    const float unlikeness = (static_cast<float>(comparison.unlike) / byteSteps - unlikeFrom) / (1 - unlikeFrom);
    return -unlikeWeight * std::clamp(unlikeness, 0.0f, 1.0f);
}

float StationScores::artistTerm(Position track) const
{
    return m_seedArtists.contains(m_index->facts(track).artist) ? artistWeight : 0;
}

float StationScores::baseOf(Position track, const Comparison &comparison) const
{
    float sum = artistTerm(track) + unlikeTerm(comparison);
    for (size_t g = 0; g < likenessTerms; ++g)
        sum += likenessTerm(track, comparison, g);
    for (const StyleShare &share : m_index->shares().of(track))
        sum += share.value() * m_slopes[share.style];
    const Attributes attributes = m_index->attributes(track);
    for (size_t k = 0; k < attributeCount; ++k)
        sum += m_taste.weight(k) * attributes[k];
    return sum;
}

float StationScores::base(Position track) const
{
    const std::optional<size_t> place = placeOf(track);
    return place ? m_base[*place] : baseOf(track, comparisonOf(track));
}

Terms StationScores::terms(Position track) const
{
    const Comparison comparison = comparisonOf(track);
    Terms terms{};
    at(terms, Term::Style) = styleTerm(track);
    at(terms, Term::Artist) = artistTerm(track);
    at(terms, Term::Sound) = likenessTerm(track, comparison, 0);
    at(terms, Term::Beat) = likenessTerm(track, comparison, 1);
    at(terms, Term::Harmony) = likenessTerm(track, comparison, 2);
    at(terms, Term::Unlike) = unlikeTerm(comparison);
    const Traits traits = traitsOf(*m_index, track);
    for (size_t k = 0; k < mostTraits; ++k)
        terms[static_cast<size_t>(Term::FirstLearned) + k] = m_taste.weight(k) * traits[k];
    return terms;
}

bool StationScores::isRelated(Position track) const
{
    if (m_isAboutNothing)
        return true;
    return styleTerm(track) > 0.3f * styleWeight || m_seedArtists.contains(m_index->facts(track).artist) ||
           std::any_of(m_examples.begin(), m_examples.end(),
                       [&](const Example &example) { return example.track == track; });
}

void StationScores::rank()
{
    const size_t count = m_comparisons.size();
    m_base.reserve(count);
    m_best.reserve(count);
    for (size_t place = 0; place < count; ++place) {
        const Position track = isWhole() ? static_cast<Position>(place) : m_candidates[place];
        m_base.push_back(baseOf(track, m_comparisons[place]));
        m_best.push_back({track, m_base.back()});
    }
    std::sort(m_best.begin(), m_best.end(),
              [](const Ranked &a, const Ranked &b) { return a.base != b.base ? a.base > b.base : a.track < b.track; });
}

void StationScores::findThreshold()
{
    const size_t size = m_index->size();
    if (size == 0)
        return;
    float median = 0;
    if (isWhole()) {
        median = m_best[size / 2].base;
    } else {
        // The clusters stand for their tracks.
        std::vector<std::pair<float, size_t>> bases;
        bases.reserve(m_clusterBases.size());
        for (size_t c = 0; c < m_clusterBases.size(); ++c)
            bases.emplace_back(m_clusterBases[c], m_index->clusters().members(c).size());
        median = middleOf(bases, size / 2);
    }
    const float high = m_best[std::clamp<size_t>(size / smallLibrary, 1, std::min(fitRank, m_best.size())) - 1].base;
    // Rounding must not tell equal tracks apart.
    m_fitThreshold = median + fitShare * (high - median) - 1e-4f;
    m_fitCount = static_cast<size_t>(
        std::count_if(m_best.begin(), m_best.end(), [&](const Ranked &track) { return track.base >= m_fitThreshold; }));
    size_t known = 0;
    for (const uint16_t cluster : m_clusters) {
        // The first ones are among the candidates.
        known += m_index->clusters().members(cluster).size();
        if (known > candidateCount && m_clusterBases[cluster] >= m_fitThreshold)
            m_fitCount += m_index->clusters().members(cluster).size();
    }
}

} // namespace velmora::engine
