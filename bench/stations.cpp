// How good the stations are: pieces of the demo synthesiser with seeds that nothing was tuned on, tags spoilt in
// several ways, simulated listeners, the test of the reasons, and the speed with 100,000 tracks. usage: bench-stations
// [FILE [large]]      FILE keeps the pieces' descriptors from one run to the next; large: only the 100,000 tracks
#include "bench/figures.h"
#include "bench/stationmusic.h"
#include "server/engine/reasons.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <numeric>
#include <set>

using namespace velmora;
using bench::atLeast, bench::Estimate, bench::estimate, bench::indexOf, bench::musicOf, bench::text;
using bench::StationPiece, bench::styleNames, bench::Tags;
using engine::EngineIndex;
using engine::Position;

namespace {

// A set of pieces that was looked at while something was tuned is used up: take another number then.
constexpr uint64_t unseenSeed = 3163;
constexpr int picksAStation = 30;

// --- Likeness ---

struct Nearness {
    double texture = 0, style = 0, neverReached = 0, skew = 0;
};

// Ten nearest by other artists.
Nearness nearness(const std::vector<StationPiece> &pieces, const engine::Likeness &likeness)
{
    Nearness result;
    std::vector<double> counts(pieces.size(), 0);
    double textures = 0;
    for (size_t i = 0; i < pieces.size(); ++i) {
        std::vector<std::pair<float, size_t>> others;
        size_t same = 0;
        const auto isSameTexture = [&](size_t j) {
            return pieces[j].style == pieces[i].style && pieces[j].texture == pieces[i].texture;
        };
        for (size_t j = 0; j < pieces.size(); ++j) {
            if (pieces[j].artist == pieces[i].artist)
                continue;
            others.push_back({likeness.all(i, j), j});
            same += isSameTexture(j) ? 1 : 0;
        }
        std::partial_sort(others.begin(), others.begin() + 10, others.end(), std::greater<>());
        const size_t wanted = std::min<size_t>(10, same);
        double found = 0;
        for (size_t k = 0; k < 10; ++k) {
            const size_t j = others[k].second;
            ++counts[j];
            found += k < wanted && isSameTexture(j) ? 1 : 0;
            result.style += pieces[j].style == pieces[i].style ? 0.1 : 0;
        }
        if (wanted > 0) {
            result.texture += found / static_cast<double>(wanted);
            ++textures;
        }
    }
    const auto count = static_cast<double>(pieces.size());
    result.texture /= textures;
    result.style /= count;
    double second = 0, third = 0;
    for (const double reached : counts) {
        result.neverReached += reached == 0 ? 1 / count : 0;
        second += std::pow(reached - 10, 2) / count;
        third += std::pow(reached - 10, 3) / count;
    }
    result.skew = third / std::pow(second, 1.5);
    return result;
}

void measureLikeness(const std::vector<StationPiece> &pieces, const std::vector<StationPiece> &copies)
{
    std::vector<const media::Descriptor *> descriptors;
    for (const StationPiece &piece : pieces)
        descriptors.push_back(&piece.descriptor);
    const Nearness found = nearness(pieces, engine::Likeness(descriptors));
    figures::note("pieces", static_cast<double>(pieces.size()), "", "6 styles of 5 textures, 48 artists, unseen seeds");
    atLeast("same texture among the nearest by other artists", found.texture, 0.70, "chance 0.04");
    atLeast("same style among the ten nearest by other artists", found.style, 0.97, "chance 0.15");
    figures::print("tracks that are near to none", 100 * found.neverReached, " %", 2);
    figures::print("skew of how often a track is among the ten nearest", found.skew, "", 0.5);

    for (const StationPiece &copy : copies)
        descriptors.push_back(&copy.descriptor);
    const engine::Likeness all(descriptors);
    double nearest = 0;
    for (size_t c = 0; c < copies.size(); ++c) {
        size_t best = 0;
        for (size_t i = 1; i < pieces.size(); ++i) {
            if (all.all(pieces.size() + c, i) > all.all(pieces.size() + c, best))
                best = i;
        }
        nearest += static_cast<int>(best) == copies[c].copyOf ? 1 : 0;
    }
    if (!copies.empty())
        atLeast("re-encoded copies whose nearest track is the original", nearest / static_cast<double>(copies.size()),
                0.95, std::to_string(copies.size()) + " copies");
}

// How many deviations of noise bring the share of equal styles among ten down to this.
double noiseFor(const std::vector<StationPiece> &pieces, double wanted)
{
    double low = 0, high = 8;
    for (int i = 0; i < 9; ++i) {
        const double middle = (low + high) / 2;
        const auto index = indexOf(pieces, Tags::None, middle, true, 5);
        (nearness(pieces, index->likeness()).style > wanted ? low : high) = middle;
    }
    return low;
}

// --- Stations ---

// Plays a station from a track; the share of the right style in each, the seed's artist left out.
std::vector<double> stationsRight(const std::vector<StationPiece> &pieces, std::shared_ptr<const EngineIndex> index,
                                  unsigned seed)
{
    std::vector<double> right;
    engine::Noise noise(seed);
    for (size_t first = 0; first < pieces.size(); first += 5) {
        const engine::StationScores scores(
            index, {{{engine::Seed::Kind::Track, static_cast<int64_t>(first) + 1, {}}}, {}, {}, {}});
        engine::Circumstances now;
        now.excludedArtists = {pieces[first].artist + 1};
        double same = 0;
        for (int i = 0; i < picksAStation; ++i) {
            const auto pick = engine::choose(scores, now, noise);
            const int64_t id = index->facts(pick->candidate().track).id;
            now.recent.insert(now.recent.begin(), id);
            ++now.plays[id];
            same += pieces[static_cast<size_t>(id) - 1].style == pieces[first].style ? 1 : 0;
        }
        right.push_back(same / picksAStation);
    }
    return right;
}

Estimate chance(const std::vector<StationPiece> &pieces)
{
    std::vector<double> right;
    std::mt19937 random(9);
    for (size_t first = 0; first < pieces.size(); first += 5) {
        std::vector<size_t> others;
        for (size_t i = 0; i < pieces.size(); ++i) {
            if (pieces[i].artist != pieces[first].artist)
                others.push_back(i);
        }
        std::shuffle(others.begin(), others.end(), random);
        double same = 0;
        for (size_t i = 0; i < picksAStation; ++i)
            same += pieces[others[i]].style == pieces[first].style ? 1 : 0;
        right.push_back(same / picksAStation);
    }
    return estimate(right);
}

void measureStations(const std::vector<StationPiece> &pieces)
{
    struct Row {
        const char *sound;
        double noise;
        const char *tags;
        Tags kind;
    };
    const double spoilt = noiseFor(pieces, 0.74), poor = noiseFor(pieces, 0.43);
    const std::vector<Row> rows = {{"as heard", 0, "bad", Tags::Bad},
                                   {"spoilt to 0.74", spoilt, "bad", Tags::Bad},
                                   {"spoilt to 0.43", poor, "bad", Tags::Bad},
                                   {"as heard", 0, "perfect", Tags::Perfect},
                                   {"spoilt to 0.43", poor, "perfect", Tags::Perfect},
                                   {"as heard", 0, "none", Tags::None},
                                   {"spoilt to 0.43", poor, "none", Tags::None}};
    const Estimate byChance = chance(pieces);
    double worst = 1, gain = 1;
    for (const Row &row : rows) {
        // Three drawings of the tags and the noise: a station each time.
        std::vector<double> whole, tags, audio;
        for (unsigned round = 0; round < 3; ++round) {
            const unsigned seed = 100 + round;
            const auto add = [&](std::vector<double> &to, const std::vector<double> &from) {
                to.insert(to.end(), from.begin(), from.end());
            };
            add(whole, stationsRight(pieces, indexOf(pieces, row.kind, row.noise, true, seed), seed));
            add(tags, stationsRight(pieces, indexOf(pieces, row.kind, row.noise, false, seed), seed));
            add(audio, stationsRight(pieces, indexOf(pieces, Tags::None, row.noise, true, seed), seed));
        }
        const double better = std::max(estimate(tags).mean, estimate(audio).mean);
        worst = std::min(worst, estimate(whole).mean - better);
        if (row.kind == Tags::Bad && row.noise <= spoilt)
            gain = std::min(gain, estimate(whole).mean - better);
        figures::note(std::string("right style: sound ") + row.sound + ", tags " + row.tags,
                      "engine " + text(estimate(whole)) + ", tags alone " + text(estimate(tags)) + ", sound alone " +
                          text(estimate(audio)) + ", chance " + text(byChance));
    }
    atLeast("engine less the better of the two, all rows", worst, -0.02);
    atLeast("the same with bad tags and sound of 0.74 or better", gain, 0.05);
}

// --- Listeners ---

struct Listener {
    const char *name;
    std::function<bool(Position)> likes;
};

struct Heard {
    double liked = 0;            // share among tracks 41 to 60
    double likedAfterTwenty = 0; // share in the twenty tracks after twenty thumbs
    int forbidden = 0;           // the same artist twice in a row, or a track with a thumb down
    int nearArtists = 0;         // an artist again within four tracks
    int nearSongs = 0;           // a song again within twenty
};

// A mixed station that a listener thumbs as often as told, by chance.
Heard listen(std::shared_ptr<const EngineIndex> index, const engine::StationTaste &start, const Listener &listener,
             double thumbs, unsigned seed)
{
    engine::Noise noise(seed);
    std::mt19937 random(seed + 77);
    engine::StationTaste taste = start;
    engine::Circumstances now;
    Heard heard;
    std::unique_ptr<engine::StationScores> scores;
    double after = 0;
    int given = 0, counted = 0;
    for (int i = 0; i < 120; ++i) {
        scores = std::make_unique<engine::StationScores>(index, taste, scores.get());
        const auto pick = engine::choose(*scores, now, noise);
        const Position track = pick->candidate().track;
        const engine::TrackFacts &facts = index->facts(track);
        for (size_t back = 0; back < std::min<size_t>(20, now.recent.size()); ++back) {
            const engine::TrackFacts &other = index->facts(*index->find(now.recent[back]));
            const bool isSameArtist = other.artist == facts.artist;
            heard.forbidden += back == 0 && isSameArtist ? 1 : 0;
            heard.nearArtists += back < 4 && isSameArtist ? 1 : 0;
            heard.nearSongs += other.id == facts.id ? 1 : 0;
        }
        heard.forbidden += now.excludedTracks.contains(facts.id) ? 1 : 0;
        now.recent.insert(now.recent.begin(), facts.id);
        ++now.plays[facts.id];
        const bool isLiked = listener.likes(track);
        heard.liked += i >= 40 && i < 60 && isLiked ? 1.0 / 20 : 0;
        if (given >= 20 && counted < 20) {
            after += isLiked ? 1 : 0;
            ++counted;
        }
        if (std::uniform_real_distribution<double>(0, 1)(random) < thumbs && given < 20) {
            ++given;
            (isLiked ? taste.liked : taste.disliked).push_back(facts.id);
            taste.events.push_back({facts.id, isLiked, engine::eventweight::thumb});
            if (!isLiked)
                now.excludedTracks.insert(facts.id);
        }
    }
    heard.likedAfterTwenty = counted ? after / counted : 0;
    return heard;
}

void measureListeners(const std::vector<StationPiece> &pieces)
{
    const auto index = indexOf(pieces, Tags::Perfect, 0, true, 1);
    engine::StationTaste mixed;
    for (int style = 0; style < bench::styleCount; ++style)
        mixed.seeds.push_back({engine::Seed::Kind::Style, 0, styleNames[static_cast<size_t>(style)]});
    const auto attribute = [&](Position track, engine::Attribute wanted) {
        return index->attributes(track)[static_cast<size_t>(wanted)];
    };
    const auto styleOf = [&](Position track) { return pieces[static_cast<size_t>(index->facts(track).id) - 1].style; };
    const std::vector<Listener> listeners = {
        {"slow music", [&](Position track) { return attribute(track, engine::Attribute::Tempo) < -0.2f; }},
        {"little energy", [&](Position track) { return attribute(track, engine::Attribute::Energy) < -0.2f; }},
        {"minor keys", [&](Position track) { return attribute(track, engine::Attribute::Minor) > 0.2f; }},
        {"two styles of six", [&](Position track) { return styleOf(track) == 1 || styleOf(track) == 4; }},
        {"one style of six", [&](Position track) { return styleOf(track) == 2; }}};
    int forbidden = 0, nearArtists = 0, nearSongs = 0;
    for (const Listener &listener : listeners) {
        std::vector<double> learning, deaf, after;
        for (unsigned seed = 0; seed < 20; ++seed) {
            const Heard with = listen(index, mixed, listener, 0.25, seed);
            learning.push_back(with.liked);
            after.push_back(with.likedAfterTwenty);
            deaf.push_back(listen(index, mixed, listener, 0, seed).liked);
            forbidden += with.forbidden;
            nearArtists += with.nearArtists;
            nearSongs += with.nearSongs;
        }
        const double plain = estimate(deaf).mean;
        figures::note(std::string("likes ") + listener.name + ": share liked",
                      "without thumbs " + text(estimate(deaf)) + ", tracks 41 to 60 " + text(estimate(learning)) +
                          ", after twenty thumbs " + text(estimate(after)));
        atLeast(std::string("  likes ") + listener.name + ": after twenty thumbs, times as many",
                estimate(after).mean / plain, std::min(2.0, 0.95 / plain));
    }
    figures::print("12,000 picks: the same artist twice in a row, or a track with a thumb down", forbidden, "", 0);
    figures::note("  an artist again within four tracks", nearArtists / 120.0, " %",
                  "where the taste leaves few artists");
    figures::note("  a song again within twenty tracks", nearSongs / 120.0, " %", "where the taste leaves few songs");
}

// --- Reasons ---

// Written apart from the engine's own: the pick made again with the named terms at their means.
bool decides(const engine::Pick &pick, const std::vector<size_t> &terms)
{
    std::map<size_t, double> mean;
    for (const size_t term : terms) {
        for (const engine::Candidate &candidate : pick.shortlist)
            mean[term] += static_cast<double>(candidate.terms[term]) / static_cast<double>(pick.shortlist.size());
    }
    size_t best = 0;
    double highest = -1e9;
    for (size_t i = 0; i < pick.shortlist.size(); ++i) {
        double score = static_cast<double>(pick.shortlist[i].noise);
        for (size_t term = 0; term < engine::termCount; ++term)
            score += mean.contains(term) ? mean[term] : static_cast<double>(pick.shortlist[i].terms[term]);
        if (score > highest) {
            highest = score;
            best = i;
        }
    }
    return best != pick.winner;
}

void measureReasons(const std::vector<StationPiece> &pieces)
{
    const auto index = indexOf(pieces, Tags::Bad, 0, true, 3);
    engine::Noise noise(4);
    int picks = 0, variety = 0, single = 0, wrong = 0, hollow = 0;
    while (picks < 1000) {
        engine::StationTaste taste;
        const size_t first = noise() % pieces.size();
        taste.seeds = {{engine::Seed::Kind::Track, static_cast<int64_t>(first) + 1, {}}};
        engine::Circumstances now;
        for (int i = 0; i < 20; ++i, ++picks) {
            const engine::StationScores scores(index, taste);
            const auto pick = engine::choose(scores, now, noise);
            const std::vector<size_t> terms = engine::decisiveTerms(*pick);
            const bool allAlone =
                std::all_of(terms.begin(), terms.end(), [&](size_t term) { return decides(*pick, {term}); });
            if (terms.empty())
                ++variety;
            else if (allAlone)
                ++single;
            else if (!decides(*pick, terms))
                ++wrong;
            hollow += engine::explain(scores, *pick).empty() ? 1 : 0;
            const int64_t id = index->facts(pick->candidate().track).id;
            now.recent.insert(now.recent.begin(), id);
            ++now.plays[id];
            const bool isLiked = pieces[static_cast<size_t>(id) - 1].texture % 2 == pieces[first].texture % 2;
            if (i % 4 == 3) {
                (isLiked ? taste.liked : taste.disliked).push_back(id);
                taste.events.push_back({id, isLiked, engine::eventweight::thumb});
                if (!isLiked)
                    now.excludedTracks.insert(id);
            }
        }
    }
    figures::print("reasons of 1,000 picks that decided nothing", wrong + hollow, "", 0,
                   std::to_string(single) + " by terms that decide alone");
    figures::print("picks that only chance decided", variety / 10.0, " %", 10);
}

} // namespace

int main(int argc, char **argv)
{
    std::vector<StationPiece> pieces;
    if (argc > 1 && std::ifstream(argv[1]).good()) {
        pieces = bench::readPieces(argv[1]);
    } else {
        bench::PieceSettings settings;
        settings.seed = unseenSeed;
        settings.copies = 40;
        settings.threads = 2;
        pieces = bench::makePieces(settings);
        if (argc > 1)
            bench::writePieces(pieces, argv[1]);
    }
    const auto isCopy = [](const StationPiece &piece) { return piece.copyOf >= 0; };
    std::vector<StationPiece> copies;
    std::copy_if(pieces.begin(), pieces.end(), std::back_inserter(copies), isCopy);
    std::erase_if(pieces, isCopy);
    if (argc < 3) {
        measureLikeness(pieces, copies);
        measureStations(pieces);
        measureListeners(pieces);
        measureReasons(pieces);
    }
    bench::measureSize(pieces);
    return 0;
}
