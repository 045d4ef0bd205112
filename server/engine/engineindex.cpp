#include "server/engine/engineindex.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace velmora::engine {

namespace {

constexpr size_t mostCommonStyles = 40;
// A share names its style in 16 bits, and every station keeps a number for each style.
constexpr size_t mostStyles = 4096;

// Drops all but the styles that most tracks are tagged with, in place. A track that had only rare ones counts as
// untagged.
const std::vector<EngineStyle> &boundStyles(EngineMusic &music)
{
    if (music.styles.size() <= mostStyles)
        return music.styles;
    std::vector<int> counts(music.styles.size(), 0), order(music.styles.size()), places(music.styles.size(), -1);
    for (const EngineTrack &track : music.tracks) {
        for (const StyleWeight &tag : track.tags)
            ++counts[static_cast<size_t>(tag.style)];
    }
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return counts[static_cast<size_t>(a)] > counts[static_cast<size_t>(b)]; });
    std::vector<EngineStyle> kept;
    for (const int style : std::span(order).first(mostStyles)) {
        places[static_cast<size_t>(style)] = static_cast<int>(kept.size());
        kept.push_back(std::move(music.styles[static_cast<size_t>(style)]));
    }
    music.styles = std::move(kept);
    for (EngineTrack &track : music.tracks) {
        for (StyleWeight &tag : track.tags)
            tag.style = places[static_cast<size_t>(tag.style)];
        std::erase_if(track.tags, [](const StyleWeight &tag) { return tag.style < 0; });
    }
    return music.styles;
}

// Sorts the tracks by id, in place.
const EngineMusic &order(EngineMusic &music)
{
    std::sort(music.tracks.begin(), music.tracks.end(),
              [](const EngineTrack &a, const EngineTrack &b) { return a.id < b.id; });
    return music;
}

std::vector<const media::Descriptor *> descriptorsOf(const EngineMusic &music)
{
    std::vector<const media::Descriptor *> result;
    result.reserve(music.tracks.size());
    for (const EngineTrack &track : music.tracks)
        result.push_back(track.descriptor ? &*track.descriptor : nullptr);
    return result;
}

// Ranks from -1 to 1 of the values that are there; equal values share theirs.
std::vector<float> ranks(const std::vector<std::optional<float>> &values)
{
    std::vector<size_t> order;
    for (size_t i = 0; i < values.size(); ++i) {
        if (values[i])
            order.push_back(i);
    }
    std::sort(order.begin(), order.end(), [&](size_t a, size_t b) { return *values[a] < *values[b]; });
    std::vector<float> result(values.size(), 0);
    for (size_t from = 0, to = 0; from < order.size(); from = to) {
        while (to < order.size() && *values[order[to]] == *values[order[from]])
            ++to;
        const auto middle = static_cast<float>(from + to - 1) / 2;
        for (size_t i = from; i < to; ++i)
            result[order[i]] = order.size() > 1 ? 2 * middle / static_cast<float>(order.size() - 1) - 1 : 0;
    }
    return result;
}

} // namespace

EngineIndex::EngineIndex(EngineMusic music, StyleShares::Votes votes, const std::atomic<bool> *isStopping,
                         size_t largestWithoutClusters)
    : m_styles(boundStyles(music))
    , m_likeness(descriptorsOf(order(music)))
    , m_shares(music, m_likeness, votes, isStopping)
{
    for (const EngineTrack &track : music.tracks) {
        const auto position = static_cast<Position>(m_facts.size());
        TrackFacts facts;
        facts.id = track.id;
        facts.artist = track.artist;
        facts.album = track.album;
        facts.recording = track.recording ? track.recording : track.id;
        facts.composer = track.composer;
        facts.work = track.work;
        facts.movement = track.movement;
        facts.isExplicit = track.isExplicit;
        facts.needsTranscoding = track.needsTranscoding;
        if (!track.descriptor)
            facts.tempo = static_cast<int16_t>(std::clamp(track.tempo, 0, 400));
        else if ((*track.descriptor)[media::number::clearness] >= media::clearTempo)
            facts.tempo = static_cast<int16_t>(
                std::lround(std::clamp(std::exp2((*track.descriptor)[media::number::logTempo]), 0.0f, 400.0f)));
        m_facts.push_back(facts);
        m_byArtist[track.artist].push_back(position);
        if (track.work)
            m_byWork[track.work].push_back(position);
    }
    for (auto &[work, tracks] : m_byWork)
        std::stable_sort(tracks.begin(), tracks.end(),
                         [&](Position a, Position b) { return m_facts[a].movement < m_facts[b].movement; });
    addReplaced(music.replaced);
    findCommonStyles();
    rankAttributes(music);
    if (size() > largestWithoutClusters)
        m_clusters = TrackClusters(m_likeness, m_shares, m_attributes);
}

void EngineIndex::addReplaced(const std::vector<ReplacedTrack> &replaced)
{
    if (replaced.empty())
        return;
    std::unordered_map<int64_t, Position> byRecording;
    for (Position track = 0; track < size(); ++track)
        byRecording.try_emplace(m_facts[track].recording, track);
    for (const ReplacedTrack &track : replaced) {
        const auto found = byRecording.find(track.recording);
        if (found == byRecording.end())
            continue;
        m_replaced[track.id] = found->second;
        // An artist whose name is spelt otherwise in the better file has the music all the same.
        std::vector<Position> &own = m_byArtist[track.artist];
        if (std::find(own.begin(), own.end(), found->second) == own.end())
            own.push_back(found->second);
    }
}

std::optional<Position> EngineIndex::find(int64_t trackId) const
{
    if (!m_facts.empty() && trackId >= m_facts.front().id) {
        // Ids ascend by at least one a track, and mostly by one: the track stands there or before.
        const auto furthest =
            static_cast<size_t>(std::min(trackId - m_facts.front().id, static_cast<int64_t>(m_facts.size()) - 1));
        const auto end = m_facts.begin() + static_cast<std::ptrdiff_t>(furthest);
        const auto found = end->id == trackId
                               ? end
                               : std::lower_bound(m_facts.begin(), end, trackId,
                                                  [](const TrackFacts &facts, int64_t id) { return facts.id < id; });
        if (found->id == trackId)
            return static_cast<Position>(found - m_facts.begin());
    }
    const auto replaced = m_replaced.find(trackId);
    return replaced == m_replaced.end() ? std::nullopt : std::optional(replaced->second);
}

const std::vector<Position> &EngineIndex::tracksOfArtist(int64_t artist) const
{
    static const std::vector<Position> none;
    const auto found = m_byArtist.find(artist);
    return found == m_byArtist.end() ? none : found->second;
}

const std::vector<Position> &EngineIndex::tracksOfWork(int64_t work) const
{
    static const std::vector<Position> none;
    const auto found = m_byWork.find(work);
    return found == m_byWork.end() ? none : found->second;
}

std::optional<int> EngineIndex::findStyle(const std::string &name) const
{
    const auto found =
        std::find_if(m_styles.begin(), m_styles.end(), [&](const EngineStyle &style) { return style.name == name; });
    return found == m_styles.end() ? std::nullopt : std::optional(static_cast<int>(found - m_styles.begin()));
}

void EngineIndex::findCommonStyles()
{
    std::vector<double> sums(m_styles.size(), 0);
    for (size_t track = 0; track < size(); ++track) {
        for (const StyleShare &share : m_shares.of(track))
            sums[share.style] += static_cast<double>(share.value());
    }
    m_commonStyles.resize(m_styles.size());
    std::iota(m_commonStyles.begin(), m_commonStyles.end(), 0);
    std::stable_sort(m_commonStyles.begin(), m_commonStyles.end(),
                     [&](int a, int b) { return sums[static_cast<size_t>(a)] > sums[static_cast<size_t>(b)]; });
    m_commonStyles.resize(std::min(m_commonStyles.size(), mostCommonStyles));
    m_commonPlaces.assign(m_styles.size(), -1);
    for (size_t place = 0; place < m_commonStyles.size(); ++place)
        m_commonPlaces[static_cast<size_t>(m_commonStyles[place])] = static_cast<int8_t>(place);
}

void EngineIndex::rankAttributes(const EngineMusic &music)
{
    using Values = std::vector<std::optional<float>>;
    const auto ranked = [&](auto value) {
        Values values;
        for (const EngineTrack &track : music.tracks)
            values.push_back(track.descriptor ? std::optional<float>(value(*track.descriptor)) : std::nullopt);
        return ranks(values);
    };
    const auto numberOf = [](size_t number) {
        return [number](const media::Descriptor &descriptor) { return descriptor[number]; };
    };
    const std::vector<float> onsets = ranked(numberOf(media::number::onsetRate));
    const std::vector<float> rise = ranked(numberOf(media::number::rise));
    const std::vector<float> centroid = ranked(numberOf(media::number::centroid));
    const std::vector<float> above = ranked(numberOf(media::number::levelAbove));
    const std::vector<float> minor =
        ranked([](const media::Descriptor &descriptor) { return -descriptor[media::number::majorness]; });
    Values energies, tempos;
    for (size_t track = 0; track < size(); ++track) {
        const bool isDescribed = m_likeness.isDescribed(track);
        energies.push_back(isDescribed
                               ? std::optional(onsets[track] + rise[track] + centroid[track] / 2 - above[track] / 2)
                               : std::nullopt);
        const int16_t tempo = m_facts[track].tempo;
        tempos.push_back(tempo > 0 ? std::optional(static_cast<float>(tempo)) : std::nullopt);
    }
    const std::vector<float> energy = ranks(energies);
    const std::vector<float> tempo = ranks(tempos);
    for (size_t track = 0; track < size(); ++track) {
        const Attributes values = {energy[track], centroid[track], tempo[track], minor[track], onsets[track]};
        auto &bytes = m_attributes.emplace_back();
        std::transform(values.begin(), values.end(), bytes.begin(),
                       [](float value) { return static_cast<int8_t>(std::lround(value * 127)); });
    }
}

Attributes EngineIndex::attributes(Position track) const
{
    Attributes result;
    std::transform(m_attributes[track].begin(), m_attributes[track].end(), result.begin(),
                   [](int8_t value) { return static_cast<float>(value) / 127; });
    return result;
}

} // namespace velmora::engine
