#include "server/engine/stationscores.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace velmora::engine {

namespace {

constexpr float styleWeight = 3.5f;
constexpr float artistWeight = 0.6f;
constexpr std::array<float, 3> likenessWeights = {2.0f, 1.2f, 0.5f}; // sound, beat, harmony
constexpr float unlikeWeight = 2.5f;
constexpr float unlikeFrom = 0.75f; // likeness to a track with a thumb down, from which it counts
constexpr float likedWeight = 0.5f; // of a track with a thumb up, beside a seed's 1
constexpr size_t artistExamples = 5;
constexpr size_t mostBest = 4096;
// Where the tracks that fit begin: half way from the middle of the library to the best ones, for which the track of
// this rank stands, or that of an eighth of a small library.
constexpr size_t fitRank = 60;
constexpr size_t smallLibrary = 8;
constexpr float fitShare = 0.5f;
constexpr float byteSteps = 255;

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
                             const StationScores *previous)
    : m_index(std::move(index))
    , m_isAboutNothing(taste.seeds.empty() && taste.liked.empty())
    , m_taste(*m_index, taste.events)
{
    findExamples(taste);
    wishStyles();
    compare(previous);
    rank();
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
}

void StationScores::compare(const StationScores *previous)
{
    const size_t size = m_index->size();
    const auto knows = [](const std::vector<Example> &examples, const Example &wanted) {
        return std::any_of(examples.begin(), examples.end(), [&](const Example &example) {
            return example.track == wanted.track && example.weight == wanted.weight;
        });
    };
    const bool isOfUse = previous && previous->m_index == m_index &&
                         std::all_of(previous->m_examples.begin(), previous->m_examples.end(),
                                     [&](const Example &example) { return knows(m_examples, example); }) &&
                         std::all_of(previous->m_disliked.begin(), previous->m_disliked.end(), [&](Position track) {
                             return std::find(m_disliked.begin(), m_disliked.end(), track) != m_disliked.end();
                         });
    if (isOfUse) {
        m_likeness = previous->m_likeness;
        m_unlikeness = previous->m_unlikeness;
    } else {
        m_likeness.assign(size, {});
        m_unlikeness.assign(size, 0);
    }
    for (const Example &example : m_examples) {
        if (!isOfUse || !knows(previous->m_examples, example))
            compareWith(example);
    }
    const Likeness &likeness = m_index->likeness();
    for (const Position disliked : m_disliked) {
        const bool isKnown = isOfUse && std::find(previous->m_disliked.begin(), previous->m_disliked.end(), disliked) !=
                                            previous->m_disliked.end();
        if (isKnown || !likeness.isDescribed(disliked))
            continue;
        for (Position track = 0; track < size; ++track) {
            if (likeness.isDescribed(track)) {
                const auto value = rounded<uint8_t>(likeness.all(track, disliked) * byteSteps);
                m_unlikeness[track] = std::max(m_unlikeness[track], value);
            }
        }
    }
    std::array<double, likenessTerms> sums{};
    double count = 0;
    for (Position track = 0; track < size; ++track) {
        if (!likeness.isDescribed(track))
            continue;
        for (size_t g = 0; g < likenessTerms; ++g)
            sums[g] += m_likeness[track][g];
        ++count;
    }
    for (size_t g = 0; g < likenessTerms && count > 0; ++g)
        m_meanLikeness[g] = static_cast<float>(sums[g] / count) / byteSteps;
}

void StationScores::compareWith(const Example &example)
{
    const Likeness &likeness = m_index->likeness();
    if (!likeness.isDescribed(example.track))
        return;
    for (Position track = 0; track < m_index->size(); ++track) {
        if (!likeness.isDescribed(track))
            continue;
        const ByGroup alike = likeness.likeness(track, example.track);
        for (size_t g = 0; g < likenessTerms; ++g) {
            const auto value = rounded<uint8_t>(alike[g] * example.weight * byteSteps);
            m_likeness[track][g] = std::max(m_likeness[track][g], value);
        }
    }
}

float StationScores::likenessTerm(Position track, size_t group) const
{
    const float likeness = m_index->likeness().isDescribed(track)
                               ? static_cast<float>(m_likeness[track][group]) / byteSteps
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

float StationScores::unlikeTerm(Position track) const
{
    const float unlikeness = (static_cast<float>(m_unlikeness[track]) / byteSteps - unlikeFrom) / (1 - unlikeFrom);
    return -unlikeWeight * std::clamp(unlikeness, 0.0f, 1.0f);
}

float StationScores::artistTerm(Position track) const
{
    return m_seedArtists.contains(m_index->facts(track).artist) ? artistWeight : 0;
}

float StationScores::plainTerms(Position track) const
{
    float sum = artistTerm(track) + unlikeTerm(track);
    for (size_t g = 0; g < likenessTerms; ++g)
        sum += likenessTerm(track, g);
    return sum;
}

Terms StationScores::terms(Position track) const
{
    Terms terms{};
    at(terms, Term::Style) = styleTerm(track);
    at(terms, Term::Artist) = artistTerm(track);
    at(terms, Term::Sound) = likenessTerm(track, 0);
    at(terms, Term::Beat) = likenessTerm(track, 1);
    at(terms, Term::Harmony) = likenessTerm(track, 2);
    at(terms, Term::Unlike) = unlikeTerm(track);
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
    const size_t size = m_index->size();
    // What a full share of each style is worth, by the station's wishes and by what was learned.
    std::vector<float> slopes(m_styleWishes.size());
    std::transform(m_styleWishes.begin(), m_styleWishes.end(), slopes.begin(),
                   [](float wish) { return styleWeight * wish; });
    const std::vector<int> &common = m_index->commonStyles();
    for (size_t i = 0; i < common.size(); ++i)
        slopes[static_cast<size_t>(common[i])] += m_taste.weight(attributeCount + i);
    m_base.resize(size);
    for (Position track = 0; track < size; ++track) {
        float sum = plainTerms(track);
        for (const StyleShare &share : m_index->shares().of(track))
            sum += share.value() * slopes[share.style];
        const Attributes attributes = m_index->attributes(track);
        for (size_t k = 0; k < attributeCount; ++k)
            sum += m_taste.weight(k) * attributes[k];
        m_base[track] = sum;
    }
    m_best.resize(size);
    std::iota(m_best.begin(), m_best.end(), 0);
    const auto isBetter = [&](Position a, Position b) {
        return m_base[a] != m_base[b] ? m_base[a] > m_base[b] : a < b;
    };
    if (size == 0)
        return;
    const auto middle = m_best.begin() + static_cast<std::ptrdiff_t>(size / 2);
    std::nth_element(m_best.begin(), middle, m_best.end(), isBetter);
    const float median = m_base[*middle];
    const auto end = m_best.begin() + static_cast<std::ptrdiff_t>(std::min(size, mostBest));
    if (end != m_best.end())
        std::nth_element(m_best.begin(), end, m_best.end(), isBetter);
    std::sort(m_best.begin(), end, isBetter);
    const float high = m_base[m_best[std::clamp<size_t>(size / smallLibrary, 1, fitRank) - 1]];
    // Rounding must not tell equal tracks apart.
    m_fitThreshold = median + fitShare * (high - median) - 1e-4f;
    m_fitCount = static_cast<size_t>(
        std::count_if(m_base.begin(), m_base.end(), [&](float base) { return base >= m_fitThreshold; }));
    m_best.resize(std::min(size, mostBest));
}

} // namespace velmora::engine
