// The descriptor of a track, for signals with known properties.

#include "server/media/descriptor.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

namespace velmora::media {
namespace {

constexpr double seconds = 12;

// A decaying tone with four harmonics at each time.
std::vector<float> notes(int rate, const std::vector<std::pair<double, double>> &timesAndHertz)
{
    std::vector<float> samples(static_cast<size_t>(seconds * rate), 0);
    for (const auto &[time, hertz] : timesAndHertz) {
        const auto begin = static_cast<size_t>(time * rate);
        for (size_t i = begin; i < samples.size(); ++i) {
            const double at = static_cast<double>(i - begin) / rate;
            for (int harmonic = 1; harmonic <= 4; ++harmonic)
                samples[i] += static_cast<float>(0.1 / harmonic * std::exp(-5 * at) *
                                                 std::sin(2 * std::numbers::pi * hertz * harmonic * at));
        }
    }
    return samples;
}

// The pitches, one after another, again and again.
std::vector<float> arpeggio(int rate, double bpm, const std::vector<int> &pitches)
{
    std::vector<std::pair<double, double>> all;
    for (size_t i = 0; static_cast<double>(i) * 60 / bpm < seconds; ++i)
        all.push_back({static_cast<double>(i) * 60 / bpm, 440 * std::exp2((pitches[i % pitches.size()] - 69) / 12.0)});
    return notes(rate, all);
}

std::optional<Descriptor> described(int rate, std::span<const float> samples, size_t piece = 4000)
{
    DescriptorBuilder builder(rate);
    for (size_t i = 0; i < samples.size(); i += piece)
        builder.add(samples.subspan(i, std::min(piece, samples.size() - i)));
    return builder.finish(5);
}

const std::vector<int> majorChord = {60, 64, 67, 72};
const std::vector<int> minorChord = {60, 63, 67, 72};

TEST(DescriptorTest, TempoAndKeyAreHeardAtEverySampleRate)
{
    for (const int rate : {22050, 48000}) {
        const auto slow = described(rate, arpeggio(rate, 80, majorChord));
        const auto fast = described(rate, arpeggio(rate, 128, minorChord));
        ASSERT_TRUE(slow && fast);
        EXPECT_NEAR(clearTempoOf(*slow).value_or(0), 80, 2) << rate;
        EXPECT_NEAR(clearTempoOf(*fast).value_or(0), 128, 3) << rate;
        EXPECT_NEAR((*fast)[number::onsetRate], 128 / 60.0, 0.2) << rate;
        EXPECT_GT((*slow)[number::majorness], 0.05f) << rate;
        EXPECT_LT((*fast)[number::majorness], -0.05f) << rate;
    }
}

TEST(DescriptorTest, LoudnessDoesNotChangeWhatDescribesTheSound)
{
    std::mt19937 random(1);
    std::normal_distribution<float> normal(0, 0.1f);
    std::vector<float> white(static_cast<size_t>(seconds * 44100)), dark = white, swelling = white;
    float state = 0;
    for (size_t i = 0; i < white.size(); ++i) {
        white[i] = normal(random);
        dark[i] = state += 0.02f * (white[i] - state);
        swelling[i] = white[i] * (i % 220500 < 44100 ? 1.0f : 0.03f);
    }
    const Descriptor whiteNumbers = described(44100, white).value();
    EXPECT_GT(whiteNumbers[number::centroid], described(44100, dark).value()[number::centroid] + 5);
    EXPECT_GT(described(44100, swelling).value()[number::levelAbove], whiteNumbers[number::levelAbove] + 20);
    std::vector<float> quiet = white;
    for (float &sample : quiet)
        sample *= 0.05f;
    const Descriptor quietNumbers = described(44100, quiet).value();
    for (size_t i = 0; i < descriptorSize; ++i)
        EXPECT_NEAR(quietNumbers[i], whiteNumbers[i], 0.01f) << "loudness is no property of the sound: " << i;
}

TEST(DescriptorTest, TheSizeOfTheBlocksDoesNotMatterAndBadInputIsRefused)
{
    std::vector<float> samples = arpeggio(44100, 100, majorChord);
    const auto whole = described(44100, samples, samples.size());
    EXPECT_EQ(described(44100, samples, 1777), whole);
    EXPECT_FALSE(described(44100, std::vector<float>(400000, 0.0f))) << "silence";
    EXPECT_FALSE(described(44100, std::span(samples).first(40000))) << "too short";
    samples[5000] = std::nanf("");
    samples[90000] = INFINITY;
    EXPECT_TRUE(described(44100, samples));
    EXPECT_THROW(DescriptorBuilder(100), std::invalid_argument);
    EXPECT_FALSE(isSpeechLike(*whole));
}

} // namespace
} // namespace velmora::media
