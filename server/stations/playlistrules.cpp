#include "server/stations/playlistrules.h"

#include "server/catalogue/textfolding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace velmora::server {

namespace {

struct ReasonName {
    Reason reason;
    const char *id;
    double score; // each point doubles the chance
};

constexpr std::array reasonNames = {
    ReasonName{Reason::Artist, "artist", 2.5}, ReasonName{Reason::Style, "style", 3.0},
    ReasonName{Reason::Mood, "mood", 1.5},     ReasonName{Reason::Tempo, "tempo", 1.0},
    ReasonName{Reason::Liked, "liked", 1.5},   ReasonName{Reason::Mix, "mix", 0.0},
    ReasonName{Reason::Change, "change", 0.0},
};

// Tempos this near are heard as alike.
constexpr double tempoTolerance = 0.12;

double scoreOf(const std::vector<Reason> &reasons)
{
    double score = 0;
    for (const Reason reason : reasons) {
        for (const ReasonName &entry : reasonNames) {
            if (entry.reason == reason)
                score += entry.score;
        }
    }
    return score;
}

struct Weighed {
    const Candidate *candidate;
    std::vector<Reason> reasons;
};

// Takes out the half of these that was played most recently, so that a song comes back only after half of the others.
std::vector<Weighed> rested(const std::vector<Weighed> &all, const std::vector<int64_t> &recent)
{
    std::vector<Weighed> left = all;
    size_t spare = all.size() / 2;
    for (auto track = recent.rbegin(); track != recent.rend() && spare > 0; ++track) {
        const auto found = std::find_if(left.begin(), left.end(),
                                        [&](const Weighed &entry) { return entry.candidate->trackId == *track; });
        if (found == left.end())
            continue;
        left.erase(found);
        --spare;
    }
    return left;
}

std::vector<Weighed> byOthers(const std::vector<Weighed> &all, int64_t artist)
{
    std::vector<Weighed> result;
    std::copy_if(all.begin(), all.end(), std::back_inserter(result),
                 [&](const Weighed &entry) { return entry.candidate->artistId != artist; });
    return result;
}

std::string asciiWord(const std::string &text, const char *fallback)
{
    const std::string folded = foldedText(text);
    const bool isAscii = std::all_of(folded.begin(), folded.end(), [](unsigned char c) { return c < 0x80; });
    return isAscii && !folded.empty() ? folded : fallback;
}

std::string withArticle(const std::string &words)
{
    return (std::string("aeiou").find(words[0]) != std::string::npos ? "an " : "a ") + words;
}

const char *tempoWords(int tempo)
{
    if (tempo < 80)
        return "a slow tempo";
    if (tempo < 105)
        return "an unhurried tempo";
    if (tempo < 125)
        return "a lively tempo";
    return "a fast tempo";
}

} // namespace

std::vector<Reason> reasonsFor(const Taste &taste, const Candidate &candidate)
{
    std::vector<Reason> reasons;
    if (taste.artists.contains(candidate.artistId))
        reasons.push_back(Reason::Artist);
    if (taste.styles.contains(candidate.style))
        reasons.push_back(Reason::Style);
    if (taste.moods.contains(candidate.mood))
        reasons.push_back(Reason::Mood);
    // A tempo alone makes no likeness: half of all music shares it.
    const bool sharesTempo =
        candidate.tempo > 0 && std::any_of(taste.tempos.begin(), taste.tempos.end(), [&](int tempo) {
            return std::abs(tempo - candidate.tempo) <= tempo * tempoTolerance;
        });
    if (sharesTempo && !reasons.empty())
        reasons.push_back(Reason::Tempo);
    if (taste.likedTracks.contains(candidate.trackId) || taste.likedArtists.contains(candidate.artistId) ||
        taste.likedStyles.contains(candidate.style))
        reasons.push_back(Reason::Liked);
    return reasons;
}

std::optional<Choice> chooseNext(const Taste &taste, const std::vector<Candidate> &candidates, int64_t lastArtist,
                                 const std::vector<int64_t> &recentTracks, const Random &random)
{
    std::vector<Weighed> related;
    std::vector<Weighed> others;
    for (const Candidate &candidate : candidates) {
        std::vector<Reason> reasons = taste.isEmpty() ? std::vector{Reason::Mix} : reasonsFor(taste, candidate);
        if (!reasons.empty())
            related.push_back({&candidate, std::move(reasons)});
        else
            others.push_back({&candidate, {Reason::Change}});
    }
    // First music that fits; then any music by another artist; only then a song or an artist again.
    std::vector<Weighed> pool = byOthers(rested(related, recentTracks), lastArtist);
    if (pool.empty())
        pool = byOthers(rested(others, recentTracks), lastArtist);
    if (pool.empty())
        pool = byOthers(related, lastArtist);
    if (pool.empty())
        pool = rested(related, recentTracks);
    if (pool.empty())
        pool = rested(others, recentTracks);
    if (pool.empty())
        return std::nullopt;

    std::vector<double> upTo;
    double sum = 0;
    for (const Weighed &entry : pool) {
        sum += std::exp2(scoreOf(entry.reasons));
        upTo.push_back(sum);
    }
    constexpr uint32_t steps = 1u << 30;
    const double point = sum * random(steps) / steps;
    const auto hit = std::upper_bound(upTo.begin(), upTo.end(), point);
    const size_t index = std::min(static_cast<size_t>(hit - upTo.begin()), pool.size() - 1);
    return Choice{pool[index].candidate->trackId, pool[index].candidate->artistId, pool[index].reasons};
}

int adPosition(const Random &random)
{
    return 1 + static_cast<int>(random(3));
}

std::string traitText(Reason reason, const std::string &style, const std::string &mood, int tempo)
{
    switch (reason) {
    case Reason::Artist:
        return "an artist whom this station began with";
    case Reason::Style:
        return withArticle(asciiWord(style, "kindred") + " style");
    case Reason::Mood:
        return withArticle(asciiWord(mood, "kindred") + " mood");
    case Reason::Tempo:
        return tempoWords(tempo);
    case Reason::Liked:
        return "a likeness to music that you gave a thumbs up";
    case Reason::Mix:
        return "a place in the mix of everything we have for you";
    case Reason::Change:
        return "a change from the artist before";
    }
    return {};
}

const char *traitId(Reason reason)
{
    for (const ReasonName &entry : reasonNames) {
        if (entry.reason == reason)
            return entry.id;
    }
    return "";
}

std::optional<Reason> reasonOf(const std::string &traitId)
{
    for (const ReasonName &entry : reasonNames) {
        if (traitId == entry.id)
            return entry.reason;
    }
    return std::nullopt;
}

} // namespace velmora::server
