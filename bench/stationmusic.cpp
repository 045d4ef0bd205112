#include "bench/stationmusic.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <random>

namespace bench {

using namespace velmora;
using engine::EngineIndex;

const std::vector<std::string> styleNames = {"piano", "folk",  "dance",  "drones", "swing",
                                             "rock",  "quiet", "lively", "band"};

namespace {

// A quarter of the tags missing, 15 % wrong, 30 % coarse.
std::vector<engine::StyleWeight> badTags(int style, std::mt19937 &random)
{
    const auto draw = [&] { return std::uniform_real_distribution<double>(0, 1)(random); };
    if (draw() < 0.25)
        return {};
    if (draw() < 0.15)
        return {{static_cast<int>(random() % bench::styleCount), 1}};
    constexpr std::array coarse = {6, 8, 7, 6, 7, 8};
    return {{draw() < 0.3 ? coarse[static_cast<size_t>(style)] : style, 1}};
}

} // namespace

engine::EngineMusic musicOf(const std::vector<StationPiece> &pieces, Tags tags, double noise, bool isHeard,
                            unsigned seed)
{
    media::Descriptor deviation{};
    for (size_t i = 0; i < media::descriptorSize; ++i) {
        double sum = 0, squares = 0;
        for (const StationPiece &piece : pieces) {
            sum += static_cast<double>(piece.descriptor[i]);
            squares += std::pow(static_cast<double>(piece.descriptor[i]), 2);
        }
        const auto count = static_cast<double>(pieces.size());
        deviation[i] = static_cast<float>(std::sqrt(std::max(0.0, squares / count - std::pow(sum / count, 2))));
    }
    std::mt19937 random(seed);
    std::normal_distribution<double> normal;
    engine::EngineMusic music;
    for (const std::string &name : styleNames)
        music.styles.push_back({name, name});
    for (size_t i = 0; i < pieces.size(); ++i) {
        engine::EngineTrack track;
        track.id = static_cast<int64_t>(i) + 1;
        track.artist = pieces[i].artist + 1;
        track.album = pieces[i].album + 1;
        if (tags == Tags::Perfect)
            track.tags = {{pieces[i].style, 1}};
        else if (tags == Tags::Bad)
            track.tags = badTags(pieces[i].style, random);
        if (isHeard) {
            track.descriptor = pieces[i].descriptor;
            for (size_t n = 0; n < media::descriptorSize; ++n)
                (*track.descriptor)[n] += deviation[n] * static_cast<float>(noise * normal(random));
        }
        music.tracks.push_back(std::move(track));
    }
    return music;
}

std::shared_ptr<const EngineIndex> indexOf(const std::vector<StationPiece> &pieces, Tags tags, double noise,
                                           bool isHeard, unsigned seed)
{
    return std::make_shared<EngineIndex>(musicOf(pieces, tags, noise, isHeard, seed),
                                         engine::StyleShares::Votes::Taken);
}

Estimate estimate(const std::vector<double> &values)
{
    const auto count = static_cast<double>(values.size());
    const double mean = std::accumulate(values.begin(), values.end(), 0.0) / count;
    double squares = 0;
    for (const double value : values)
        squares += (value - mean) * (value - mean);
    return {mean, count > 1 ? 1.96 * std::sqrt(squares / (count - 1) / count) : 0};
}

std::string text(const Estimate &value)
{
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.2f +-%.2f", value.mean, value.half);
    return buffer;
}

void atLeast(const std::string &name, double value, double bound, const std::string &remark)
{
    std::printf("%s: %.3g (bound at least %.3g): %s%s\n", name.c_str(), value, bound, value >= bound ? "met" : "missed",
                remark.empty() ? "" : (" [" + remark + "]").c_str());
}

} // namespace bench
