#include "server/engine/reasons.h"

#include <algorithm>
#include <numeric>

namespace velmora::engine {

namespace {

constexpr size_t mostSingle = 3;
constexpr size_t mostTogether = 4;

std::string wordsOf(const EngineStyle &style)
{
    return style.words.empty() ? "kindred" : style.words;
}

std::string withArticle(const std::string &words)
{
    return (std::string("aeiou").find(words[0]) != std::string::npos ? "an " : "a ") + words;
}

std::array<float, termCount> means(const Pick &pick)
{
    std::array<float, termCount> result{};
    for (const Candidate &candidate : pick.shortlist) {
        for (size_t term = 0; term < termCount; ++term)
            result[term] += candidate.terms[term];
    }
    for (float &mean : result)
        mean /= static_cast<float>(pick.shortlist.size());
    return result;
}

// The two ends of an attribute, in words.
struct Ends {
    const char *low, *high;     // "calm mood", "lively mood"
    const char *lower, *higher; // where the track only leans that way
};
constexpr std::array<Ends, attributeCount> ends = {
    Ends{"calm mood", "lively mood", "calmer mood than most", "livelier mood than most"},
    Ends{"dark sound", "bright sound", "darker sound than most", "brighter sound than most"},
    Ends{"slow tempo", "fast tempo", "slower tempo than most", "faster tempo than most"},
    Ends{"major key", "minor key", "lean to a major key", "lean to a minor key"},
    Ends{"sparse rhythm", "busy rhythm", "sparser rhythm than most", "busier rhythm than most"}};

// The example whose likeness made the term.
const Example *nearestExample(const StationScores &scores, Position track, size_t group)
{
    const Example *best = nullptr;
    float highest = -1;
    for (const Example &example : scores.examples()) {
        const Likeness &likeness = scores.index().likeness();
        if (!likeness.isDescribed(example.track) || !likeness.isDescribed(track))
            continue;
        const float value = example.weight * likeness.likeness(track, example.track)[group];
        if (value > highest) {
            highest = value;
            best = &example;
        }
    }
    return best;
}

std::string styleWords(const StationScores &scores, Position track)
{
    const StyleShare *best = nullptr;
    float highest = 0;
    for (const StyleShare &share : scores.index().shares().of(track)) {
        const float value = share.value() * scores.styleWishes()[share.style];
        if (value > highest) {
            highest = value;
            best = &share;
        }
    }
    if (!best)
        return "a kindred style"; // cannot decide anything then
    const std::string style = wordsOf(scores.index().styles()[best->style]);
    return scores.index().shares().isTagged(track, best->style) ? withArticle(style + " style")
                                                                : "a sound at home in " + style;
}

std::string beatWords(int tempo)
{
    if (tempo == 0)
        return "a similar beat";
    if (tempo < 80)
        return "a slow beat";
    if (tempo < 105)
        return "an unhurried beat";
    if (tempo < 125)
        return "a lively beat";
    return "a fast beat";
}

std::string learnedWords(const StationScores &scores, Position track, size_t trait)
{
    const bool isLiked = scores.taste().weight(trait) > 0;
    if (trait >= attributeCount) {
        const int style = scores.index().commonStyles()[trait - attributeCount];
        const std::string name = wordsOf(scores.index().styles()[static_cast<size_t>(style)]);
        return isLiked ? "the " + name + " style that you like here"
                       : "a distance from the " + name + " style, which you like less here";
    }
    const float value = scores.index().attributes(track)[trait];
    const Ends &words = ends[trait];
    if ((value > 0) == isLiked)
        return std::string("the ") + (isLiked ? words.high : words.low) + " that you like here";
    return std::string("a ") + (isLiked ? words.higher : words.lower) + ", as you like it here";
}

ReasonText wordsFor(const StationScores &scores, const Candidate &candidate, size_t term)
{
    const Position track = candidate.track;
    const auto like = [&](const char *what, size_t group) {
        const Example *example = nearestExample(scores, track, group);
        return std::string("a ") + what +
               (example && !example->isSeed ? " like music that you gave a thumbs up"
                                            : " like the music this station began with");
    };
    switch (static_cast<Term>(std::min(term, static_cast<size_t>(Term::FirstLearned)))) {
    case Term::Style:
        return {"style", styleWords(scores, track)};
    case Term::Artist:
        return {"artist", "an artist whom this station began with"};
    case Term::Sound:
        return {"sound", like("sound", 0)};
    case Term::Beat:
        return {"beat", beatWords(scores.index().facts(track).tempo)};
    case Term::Harmony:
        return {"harmony", "a similar harmony"};
    case Term::Unlike:
        return {"unlike", "a distance from music that you gave a thumbs down"};
    case Term::Fresh:
        return {"fresh", "music that has not played here lately"};
    case Term::FirstLearned:
        break;
    }
    return {"learned", learnedWords(scores, track, term - static_cast<size_t>(Term::FirstLearned))};
}

// The scores of a shortlist. Each is a sum of some fifty terms, and many questions are asked of them.
std::vector<float> scoresOf(const Pick &pick)
{
    std::vector<float> scores;
    for (const Candidate &candidate : pick.shortlist)
        scores.push_back(candidate.score());
    return scores;
}

size_t winnerWithout(const Pick &pick, const std::vector<float> &scores, const std::vector<size_t> &terms)
{
    // A term that is the same for all decides nothing: leaving it out is the same as setting it to its mean.
    size_t best = 0;
    float highest = 0;
    for (size_t i = 0; i < pick.shortlist.size(); ++i) {
        float score = scores[i];
        for (const size_t term : terms)
            score -= pick.shortlist[i].terms[term];
        if (i == 0 || score > highest) {
            highest = score;
            best = i;
        }
    }
    return best;
}

} // namespace

size_t winnerWithout(const Pick &pick, const std::vector<size_t> &terms)
{
    return winnerWithout(pick, scoresOf(pick), terms);
}

std::vector<size_t> decisiveTerms(const Pick &pick)
{
    const std::vector<float> scores = scoresOf(pick);
    const std::array<float, termCount> mean = means(pick);
    const Terms &terms = pick.candidate().terms;
    std::vector<size_t> order;
    for (size_t term = 0; term < termCount; ++term) {
        if (terms[term] > mean[term])
            order.push_back(term);
    }
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return terms[a] - mean[a] > terms[b] - mean[b]; });
    std::vector<size_t> single;
    for (const size_t term : order) {
        if (single.size() < mostSingle && winnerWithout(pick, scores, {term}) != pick.winner)
            single.push_back(term);
    }
    if (!single.empty())
        return single;
    std::vector<size_t> together;
    for (const size_t term : order) {
        if (together.size() == mostTogether)
            break;
        together.push_back(term);
        if (winnerWithout(pick, scores, together) != pick.winner)
            return together;
    }
    return {};
}

std::vector<ReasonText> explain(const StationScores &scores, const Pick &pick)
{
    std::vector<ReasonText> result;
    for (const size_t term : decisiveTerms(pick)) {
        ReasonText words = wordsFor(scores, pick.candidate(), term);
        if (std::find(result.begin(), result.end(), words) == result.end())
            result.push_back(std::move(words));
    }
    if (result.empty())
        result.push_back({"variety", "a change, by chance among tracks that fit"});
    return result;
}

} // namespace velmora::engine
