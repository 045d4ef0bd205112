#include "server/engine/chooser.h"

#include <algorithm>
#include <boost/unordered/unordered_flat_set.hpp>
#include <climits>
#include <cmath>

namespace velmora::engine {

namespace {

constexpr size_t shortlistSize = 300;
constexpr size_t enoughOfCandidates = 60; // with fewer on the shortlist, other tracks of a large library are looked at
constexpr float noiseScale = 0.35f;
constexpr float freshWeight = 0.5f;
constexpr size_t mostRecent = 60;       // recordings
constexpr size_t movementDistance = 20; // tracks between two movements of a work

// Looked up for every track, without the division that a standard set takes each time.
using IdSet = boost::unordered_flat_set<int64_t>;

// How far the rules reach, in tracks back.
struct Reach {
    size_t albums, artists, composers, recordings, works;
};
constexpr size_t strictLevels = 3; // of these every one must leave enough music that fits

// A station's recent past and what else is forbidden, ready to be asked about any track.
class Rules {
public:
    Rules(const StationScores &scores, const Circumstances &circumstances)
        : m_index(scores.index())
        , m_circumstances(circumstances)
    {
        for (const int64_t id : circumstances.recent) {
            if (const std::optional<Position> track = m_index.find(id))
                m_recent.push_back(&m_index.facts(*track));
            if (m_recent.size() == mostRecent)
                break;
        }
        size_t fitting = scores.fitCount();
        // Where so many fit, the excluded ones change no rule.
        const bool isPlenty =
            fitting > circumstances.excludedTracks.size() + circumstances.plays.size() + 2 * mostRecent;
        for (const int64_t id : circumstances.excludedTracks) {
            const std::optional<Position> track = m_index.find(id);
            if (track && m_excluded.insert(m_index.facts(*track).recording).second && fitting > 0 && !isPlenty &&
                scores.base(*track) >= scores.fitThreshold())
                --fitting;
        }
        for (const auto &[id, plays] : circumstances.plays) {
            if (const std::optional<Position> track = m_index.find(id))
                m_plays[*track] += plays;
        }
        m_fitting = fitting;
        findPlaysOfAll(scores);
        const size_t half = std::min(mostRecent, fitting / 2);
        m_levels = {Reach{6, 4, 4, half, movementDistance},
                    Reach{0, 4, 4, half, movementDistance},
                    Reach{0, 2, 2, half, movementDistance},
                    Reach{0, 1, 0, half, movementDistance},
                    Reach{0, 1, 0, half, 0},
                    Reach{0, 1, 0, 1, 0},
                    Reach{0, 0, 0, half, 0},
                    Reach{0, 0, 0, 0, 0}};
    }

    static constexpr size_t levelCount = 8;
    size_t fitting() const { return m_fitting; }

    void setLevel(size_t level)
    {
        const Reach &reach = m_levels[level];
        const auto collect = [&](size_t count, auto key) {
            IdSet keys;
            for (size_t i = 0; i < std::min(count, m_recent.size()); ++i)
                keys.insert(key(*m_recent[i]));
            keys.erase(0);
            return keys;
        };
        m_albums = collect(reach.albums, [](const TrackFacts &facts) { return facts.album; });
        m_artists = collect(reach.artists, [](const TrackFacts &facts) { return facts.artist; });
        m_composers = collect(reach.composers, [](const TrackFacts &facts) { return facts.composer; });
        m_recordings = collect(reach.recordings, [](const TrackFacts &facts) { return facts.recording; });
        m_works = collect(reach.works, [](const TrackFacts &facts) { return facts.work; });
    }

    bool allow(Position track) const
    {
        const TrackFacts &facts = m_index.facts(track);
        const auto &transcoded = m_circumstances.transcoded;
        return (!facts.needsTranscoding || !transcoded || transcoded->contains(facts.id)) &&
               !m_artists.contains(facts.artist) && !m_recordings.contains(facts.recording) &&
               !m_albums.contains(facts.album) && !m_composers.contains(facts.composer) &&
               !m_works.contains(facts.work) && !isOut(facts) && isNextMovement(facts);
    }

    float fresh(Position track) const
    {
        const auto plays = m_plays.find(track);
        if (plays == m_plays.end())
            return 0;
        return -freshWeight * std::log(1 + static_cast<float>(std::max(0, plays->second - m_playsOfAll)));
    }

private:
    // What every track that fits was played does not count: a small station would wear out and drift to music that
    // does not fit, only because it has not been heard.
    void findPlaysOfAll(const StationScores &scores)
    {
        if (m_plays.size() < m_fitting)
            return;
        size_t played = 0;
        int fewest = INT_MAX;
        for (const auto &[track, plays] : m_plays) {
            if (scores.base(track) < scores.fitThreshold() || m_excluded.contains(m_index.facts(track).recording))
                continue;
            ++played;
            fewest = std::min(fewest, plays);
        }
        if (played >= m_fitting && played > 0)
            m_playsOfAll = fewest;
    }

    // Whether the listener does not want it at all, or it is not there.
    bool isOut(const TrackFacts &facts) const
    {
        return (facts.isExplicit && !m_circumstances.allowsExplicit) || m_excluded.contains(facts.recording) ||
               m_circumstances.excludedArtists.contains(facts.artist) ||
               (m_circumstances.absent && m_circumstances.absent->contains(facts.id));
    }

    // A work's movements come in their order: the one after the last that was played, the first one at the beginning.
    // Those that are out are left out: the work goes on without them.
    bool isNextMovement(const TrackFacts &facts) const
    {
        if (facts.work == 0)
            return true;
        const auto last = std::find_if(m_recent.begin(), m_recent.end(),
                                       [&](const TrackFacts *recent) { return recent->work == facts.work; });
        const int32_t before = last == m_recent.end() ? INT32_MIN : (*last)->movement;
        const std::vector<Position> &movements = m_index.tracksOfWork(facts.work);
        const auto findAfter = [&](int32_t number) {
            return std::find_if(movements.begin(), movements.end(), [&](Position movement) {
                const TrackFacts &other = m_index.facts(movement);
                return other.movement > number && !isOut(other);
            });
        };
        auto next = findAfter(before);
        if (next == movements.end())
            next = findAfter(INT32_MIN);
        return next != movements.end() && facts.movement == m_index.facts(*next).movement;
    }

    const EngineIndex &m_index;
    const Circumstances &m_circumstances;
    std::vector<const TrackFacts *> m_recent; // newest first
    IdSet m_excluded;                         // recordings
    std::unordered_map<Position, int> m_plays;
    size_t m_fitting = 0;
    int m_playsOfAll = 0;
    std::array<Reach, levelCount> m_levels;
    IdSet m_albums, m_artists, m_composers, m_recordings, m_works; // kept apart now
};

// Calls `take` with every track and its base until it answers false: first the candidates, by falling base; then the
// rest of a large library, by falling suitability of its clusters. The base of the rest is computed when `take` asks
// for it.
template <typename Take>
void walk(const StationScores &scores, const Take &take)
{
    for (const StationScores::Ranked &ranked : scores.best()) {
        if (!take(
                ranked.track, [&] { return ranked.base; }, false))
            return;
    }
    for (const uint16_t cluster : scores.clusters()) {
        for (const Position track : scores.index().clusters().members(cluster)) {
            if (!scores.isCandidate(track) && !take(
                                                  track, [&] { return scores.base(track); }, true))
                return;
        }
    }
}

bool leavesEnough(const StationScores &scores, const Rules &rules)
{
    constexpr size_t enoughTracks = 20;
    constexpr size_t enoughArtists = 3;
    const size_t wanted = std::clamp<size_t>(rules.fitting() / 4, 1, enoughTracks);
    size_t tracks = 0, fitting = 0;
    std::unordered_set<int64_t> artists, allArtists;
    walk(scores, [&](Position track, const auto &base, bool isBeyond) {
        // Computing what nobody may hear would take long.
        if (isBeyond && !rules.allow(track))
            return true;
        if (base() < scores.fitThreshold())
            return false;
        ++fitting;
        const int64_t artist = scores.index().facts(track).artist;
        allArtists.insert(artist);
        if (rules.allow(track)) {
            ++tracks;
            artists.insert(artist);
        }
        return tracks < wanted || artists.size() < enoughArtists;
    });
    // With few artists there must be a choice among the others, or they would come in a fixed round.
    const size_t wantedArtists = std::clamp<size_t>(allArtists.size(), 2, enoughArtists + 1) - 1;
    return tracks >= wanted && artists.size() >= wantedArtists;
}

// The best allowed tracks: those that no other candidate has a higher score than.
std::vector<Candidate> shortlist(const StationScores &scores, const Rules &rules, KnownTerms &known)
{
    // Having been played only ever lowers a score: once 300 are found that stand above the next base, the rest cannot
    // reach them.
    std::vector<std::pair<float, Position>> found;
    const auto isHigher = std::greater<std::pair<float, Position>>();
    walk(scores, [&](Position track, const auto &baseOf, bool isBeyond) {
        if (isBeyond && found.size() >= enoughOfCandidates)
            return false;
        if (!rules.allow(track))
            return true;
        const float base = baseOf();
        if (found.size() >= shortlistSize && base <= found.front().first)
            return false;
        const std::pair<float, Position> entry = {base + rules.fresh(track), track};
        if (found.size() >= shortlistSize) {
            if (entry <= found.front())
                return true;
            std::pop_heap(found.begin(), found.end(), isHigher);
            found.pop_back();
        }
        found.push_back(entry);
        std::push_heap(found.begin(), found.end(), isHigher);
        return true;
    });
    std::sort(found.begin(), found.end(), isHigher);
    std::vector<Candidate> result;
    result.reserve(found.size());
    for (const auto &[score, track] : found) {
        Candidate &candidate = result.emplace_back();
        candidate.track = track;
        const auto [terms, isNew] = known.try_emplace(track);
        if (isNew)
            terms->second = scores.terms(track);
        candidate.terms = terms->second;
        at(candidate.terms, Term::Fresh) = rules.fresh(track);
    }
    return result;
}

} // namespace

std::optional<Pick> choose(const StationScores &scores, const Circumstances &circumstances, Noise &noise,
                           KnownTerms *known)
{
    Rules rules(scores, circumstances);
    KnownTerms own;
    Pick pick;
    for (size_t level = 0; level < Rules::levelCount; ++level) {
        rules.setLevel(level);
        if (level < strictLevels && !leavesEnough(scores, rules))
            continue;
        pick.shortlist = shortlist(scores, rules, known ? *known : own);
        if (!pick.shortlist.empty())
            break;
    }
    if (pick.shortlist.empty())
        return std::nullopt;
    // Gumbel noise: the highest sum is a draw with odds that grow with the score.
    std::uniform_real_distribution<double> uniform(1e-12, 1 - 1e-12);
    float best = 0;
    for (size_t i = 0; i < pick.shortlist.size(); ++i) {
        Candidate &candidate = pick.shortlist[i];
        candidate.noise = noiseScale * static_cast<float>(-std::log(-std::log(uniform(noise))));
        if (const float score = candidate.score(); i == 0 || score > best) {
            best = score;
            pick.winner = i;
        }
    }
    return pick;
}

} // namespace velmora::engine
