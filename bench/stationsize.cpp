#include "bench/figures.h"
#include "bench/stationmusic.h"
#include "server/engine/reasons.h"

#include <array>
#include <cmath>
#include <ctime>
#include <malloc.h>
#include <map>
#include <random>
#include <set>

namespace bench {

using namespace velmora;
using engine::EngineIndex;
using engine::Position;

namespace {

double cpuMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

constexpr size_t manyTracks = 100'000;

struct LargeMusic {
    engine::EngineMusic music;
    std::vector<int> styles; // the true one, by id less 1
};

// Pieces with a part of another one mixed in: no two alike, and as near to each other as music is.
LargeMusic largeMusic(const std::vector<StationPiece> &pieces)
{
    std::mt19937 random(1);
    std::normal_distribution<float> normal;
    const engine::EngineMusic model = musicOf(pieces, Tags::Bad, 0, true, 7);
    LargeMusic result;
    result.music.styles = model.styles;
    for (int i = 0; i < 60; ++i)
        result.music.styles.push_back({"style " + std::to_string(i), ""});
    for (size_t i = 0; i < manyTracks; ++i) {
        const size_t piece = random() % model.tracks.size();
        engine::EngineTrack track = model.tracks[piece];
        const media::Descriptor &other = *model.tracks[random() % model.tracks.size()].descriptor;
        for (size_t n = 0; n < media::descriptorSize; ++n)
            (*track.descriptor)[n] += 0.3f * (other[n] - (*track.descriptor)[n]) * std::abs(normal(random));
        track.id = static_cast<int64_t>(i) + 1;
        track.artist = 1 + static_cast<int64_t>(random() % 8000);
        track.album = 1 + static_cast<int64_t>(i / 10);
        if (random() % 3 == 0)
            track.tags.push_back({9 + static_cast<int>(random() % 60), 0.5f});
        result.music.tracks.push_back(std::move(track));
        result.styles.push_back(pieces[piece].style);
    }
    return result;
}

// Some hundred candidates beside all tracks: the same stations, chosen from an index with clusters and from one
// without.
void measureCandidates(const LargeMusic &large, const std::shared_ptr<const EngineIndex> &clustered)
{
    const auto whole = std::make_shared<EngineIndex>(large.music, engine::StyleShares::Votes::Taken, nullptr,
                                                     large.music.tracks.size());
    struct Played {
        std::vector<double> right, base, different, slow;
    };
    const auto play = [&](const std::shared_ptr<const EngineIndex> &index, const engine::StationTaste &taste, int style,
                          Played &played) {
        engine::Circumstances now;
        engine::Noise noise(11);
        const engine::StationScores exact(whole, taste);
        std::set<int64_t> heard;
        double right = 0, base = 0, slow = 0;
        constexpr int picks = 120;
        std::unique_ptr<engine::StationScores> scores;
        for (int i = 0; i < picks; ++i) {
            if (!scores || (i % 4 == 0 && index == clustered)) // a list
                scores = std::make_unique<engine::StationScores>(index, taste, nullptr, i / 4);
            const auto pick = engine::choose(*scores, now, noise);
            const Position track = pick->candidate().track;
            const int64_t id = index->facts(track).id;
            now.recent.insert(now.recent.begin(), id);
            ++now.plays[id];
            heard.insert(id);
            right += large.styles[static_cast<size_t>(id) - 1] == style ? 1 : 0;
            base += static_cast<double>(exact.base(track)) / picks;
            slow += index->attributes(track)[static_cast<size_t>(engine::Attribute::Tempo)] < -0.2f ? 1 : 0;
        }
        played.right.push_back(right / picks);
        played.base.push_back(base);
        played.different.push_back(static_cast<double>(heard.size()) / picks);
        played.slow.push_back(slow / picks);
    };
    std::mt19937 random(12);
    const auto drawn = [&] { return 1 + static_cast<int64_t>(random() % manyTracks); };
    std::map<std::string, std::array<Played, 2>> results;
    std::vector<double> found;
    for (int station = 0; station < 6; ++station) {
        const int64_t seed = drawn();
        const int style = large.styles[static_cast<size_t>(seed) - 1];
        engine::StationTaste fromTrack{{{engine::Seed::Kind::Track, seed, {}}}, {}, {}, {}};
        engine::StationTaste fromStyle{
            {{engine::Seed::Kind::Style, 0, styleNames[static_cast<size_t>(style)]}}, {}, {}, {}};
        engine::StationTaste slow; // all styles, and thumbs up for what is slow
        for (int kind = 0; kind < styleCount; ++kind)
            slow.seeds.push_back({engine::Seed::Kind::Style, 0, styleNames[static_cast<size_t>(kind)]});
        engine::StationTaste thumbs = fromTrack; // thirty thumbs for the style and against others
        for (int i = 0; i < 30; ++i) {
            const int64_t id = drawn();
            const bool isSlow =
                whole->attributes(*whole->find(id))[static_cast<size_t>(engine::Attribute::Tempo)] < -0.2f;
            slow.events.push_back({id, isSlow, engine::eventweight::thumb});
            const bool isLiked = large.styles[static_cast<size_t>(id) - 1] == style;
            (isLiked ? thumbs.liked : thumbs.disliked).push_back(id);
            thumbs.events.push_back({id, isLiked, engine::eventweight::thumb});
        }
        const std::pair<const char *, engine::StationTaste *> tastes[] = {{"a track", &fromTrack},
                                                                          {"a style", &fromStyle},
                                                                          {"slow music", &slow},
                                                                          {"a track, thirty thumbs", &thumbs}};
        for (const auto &[name, taste] : tastes) {
            play(clustered, *taste, style, results[name][0]);
            play(whole, *taste, style, results[name][1]);
        }
        const engine::StationScores bounded(clustered, fromTrack), all(whole, fromTrack);
        double among = 0;
        for (size_t i = 0; i < 300; ++i)
            among += bounded.isCandidate(all.best()[i].track) ? 1.0 / 300 : 0;
        found.push_back(among);
    }
    double worst = 1;
    for (const auto &[name, both] : results) {
        const bool isSlow = name == "slow music";
        const auto figure = [&](const Played &played) { return estimate(isSlow ? played.slow : played.right); };
        worst = std::min(worst, figure(both[0]).mean - figure(both[1]).mean);
        const auto row = [&](const Played &played) {
            return text(figure(played)) + ", score " + text(estimate(played.base)) + ", different tracks " +
                   text(estimate(played.different));
        };
        figures::note("100,000 tracks, station of " + name + (isSlow ? "" : ", right style"),
                      "candidates bounded " + row(both[0]) + "; all compared " + row(both[1]));
    }
    figures::note("best 300 tracks of a station that are among its candidates", 100 * estimate(found).mean, " %");
    atLeast("bounded candidates less all tracks, worst of these", worst, -0.03);
}

} // namespace

void measureSize(const std::vector<StationPiece> &pieces)
{
    const LargeMusic large = largeMusic(pieces);
    const size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
    double built = cpuMilliseconds();
    const auto index = std::make_shared<EngineIndex>(large.music, engine::StyleShares::Votes::Taken);
    built = cpuMilliseconds() - built;
    std::vector<double> first, warm, thumb, cold;
    std::vector<std::unique_ptr<engine::StationScores>> stations;
    std::mt19937 random(2);
    for (int station = 0; station < 256; ++station) {
        engine::StationTaste taste;
        for (int seed = 0; seed < 4; ++seed)
            taste.seeds.push_back({engine::Seed::Kind::Track, 1 + static_cast<int64_t>(random() % manyTracks), {}});
        for (int i = 0; i < 60; ++i)
            taste.events.push_back({1 + static_cast<int64_t>(random() % manyTracks), i % 3 != 0, 1});
        const double start = cpuMilliseconds();
        auto scores = std::make_unique<engine::StationScores>(index, taste);
        first.push_back(cpuMilliseconds() - start);
        engine::Circumstances now;
        engine::Noise noise(static_cast<uint64_t>(station));
        for (int list = 0; list < 20; ++list) {
            const double begin = cpuMilliseconds();
            engine::KnownTerms known;
            for (int i = 0; i < 4; ++i) {
                const auto pick = engine::choose(*scores, now, noise, &known);
                engine::explain(*scores, *pick);
                const int64_t id = index->facts(pick->candidate().track).id;
                now.recent.insert(now.recent.begin(), id);
                ++now.plays[id];
            }
            warm.push_back(cpuMilliseconds() - begin);
            if (list == 0)
                cold.push_back(cpuMilliseconds() - start);
        }
        taste.liked.push_back(now.recent.front());
        taste.events.push_back({now.recent.front(), true, 1});
        const double begin = cpuMilliseconds();
        stations.push_back(std::make_unique<engine::StationScores>(index, taste, scores.get()));
        thumb.push_back(cpuMilliseconds() - begin);
    }
    const size_t after = mallinfo2().uordblks + mallinfo2().hblkhd;
    figures::print("a list of four with reasons, 100,000 tracks, median CPU", figures::median(warm), " ms", 2);
    figures::print("  99th percentile", figures::percentile(warm, 0.99), " ms", 5);
    figures::print("the first list of a station of four seeds, median CPU", figures::median(cold), " ms", 2);
    figures::note("  of it scores", figures::median(first), " ms");
    figures::note("  scores after a thumb, median CPU", figures::median(thumb), " ms");
    figures::note("building the index, CPU", built / 1000, " s", "on a thread of its own");
    figures::print("memory of the index with 256 stations", static_cast<double>(after - before) / (1 << 20), " MB",
                   150);
    measureCandidates(large, index);
}

} // namespace bench
