// Oscillators, instruments and the mixer: in tune, without clicks, within bounds.

#include "server/demo/drums.h"
#include "server/demo/electricguitar.h"
#include "server/demo/envelope.h"
#include "server/demo/filter.h"
#include "server/demo/keys.h"
#include "server/demo/mixer.h"
#include "server/demo/random.h"
#include "server/demo/strings.h"
#include "server/demo/synths.h"
#include "server/demo/winds.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <gtest/gtest.h>
#include <numbers>

using namespace velmora::demo;

namespace {

float peak(const Buffer &sound)
{
    float result = 0;
    for (float sample : sound)
        result = std::max(result, std::abs(sample));
    return result;
}

// How much of a frequency is in the first second of a sound (Hann window).
double strength(const Buffer &sound, double hertz)
{
    const size_t length = std::min(sound.size(), size_t(sampleRate));
    std::complex<double> sum = 0, z = 1;
    const std::complex<double> turn = std::polar(1.0, -2 * std::numbers::pi * hertz / sampleRate);
    for (size_t i = 0; i < length; ++i, z *= turn)
        sum += z * (double(sound[i]) * (0.5 - 0.5 * std::cos(2 * std::numbers::pi * double(i) / double(length))));
    return std::abs(sum);
}

// The pitch near `expected` at which the sound is strongest.
double pitchOf(const Buffer &sound, double expected)
{
    double best = expected, most = 0;
    for (double cents = -60; cents <= 60; cents += 1) {
        const double now = strength(sound, frequency(expected + cents / 100));
        if (now > most) {
            most = now;
            best = expected + cents / 100;
        }
    }
    return best;
}

struct Voice {
    const char *name;
    Buffer (*play)(const Note &);
    double low, high;
    double tolerance; // in semitones: of several voices, as far as they are detuned against each other
};

const Voice voices[] = {
    {"piano", [](const Note &n) { return piano(n, 0.2f); }, 41, 84, 0.06},
    {"electricPiano", electricPiano, 48, 79, 0.03},
    {"organ", [](const Note &n) { return organ(n); }, 48, 79, 0.05},
    {"accordion", accordion, 55, 79, 0.06},
    {"vibraphone", vibraphone, 60, 84, 0.03},
    {"marimba", marimba, 60, 84, 0.03},
    {"glassBell", glassBell, 67, 91, 0.05},
    {"singingBowl", singingBowl, 53, 72, 0.06},
    {"steelGuitar", [](const Note &n) { return pluck(n, steelGuitar); }, 40, 79, 0.04},
    {"nylonGuitar", [](const Note &n) { return pluck(n, nylonGuitar); }, 40, 79, 0.04},
    {"mandolin", [](const Note &n) { return pluck(n, mandolin); }, 67, 88, 0.04},
    {"harp", [](const Note &n) { return pluck(n, harp); }, 52, 88, 0.04},
    {"uprightBass", [](const Note &n) { return pluck(n, uprightBass); }, 30, 50, 0.06},
    {"electricBass", [](const Note &n) { return pluck(n, electricBass); }, 30, 50, 0.06},
    {"bow", [](const Note &n) { return bow(n, 1); }, 50, 79, 0.08},
    {"drivenLead", [](const Note &n) { return drivenLead(n, 0.6f); }, 62, 81, 0.15}, // bends up to its note
    {"whistle", whistle, 67, 85, 0.08},
    {"clarinet", clarinet, 60, 80, 0.08},
    {"mutedHorn", mutedHorn, 60, 84, 0.08},
    {"synthBass", [](const Note &n) { return synthBass(n, 240, 1300); }, 31, 50, 0.1},
    {"subBass", subBass, 31, 45, 0.05},
    {"synthPluck", [](const Note &n) { return synthPluck(n, 3000); }, 60, 91, 0.1},
    {"synthLead", [](const Note &n) { return synthLead(n, 4200); }, 67, 86, 0.12},
    {"chordStab", [](const Note &n) { return chordStab(n, 2600); }, 55, 74, 0.13},
    {"pad",
     [](const Note &n) {
         return pad(n, {0.1f, 0.4f, 900, 900, 0.1f, 0.005f, 4}, 5);
     },
     50, 72, 0.1},
    {"choir", [](const Note &n) { return choir(n, 0.5f, 5); }, 50, 72, 0.14},
};

class VoiceTest : public testing::TestWithParam<Voice> {};

TEST_P(VoiceTest, soundsAtThePitchOfItsNoteOverItsWholeRange)
{
    const Voice &voice = GetParam();
    for (double pitch : {voice.low, std::floor((voice.low + voice.high) / 2), voice.high})
        EXPECT_NEAR(pitchOf(voice.play({pitch, 1.5, 0.8f}), pitch), pitch, voice.tolerance) << pitch;
}

TEST_P(VoiceTest, beginsAndEndsWithoutAClickAndStaysInBounds)
{
    const Voice &voice = GetParam();
    for (double seconds : {0.05, 0.3, 1.5}) { // shorter than the attack, shorter than the decay, long
        const Buffer sound = voice.play({voice.low, seconds, 1});
        ASSERT_FALSE(sound.empty());
        const float top = peak(sound);
        EXPECT_GT(top, 0.005f) << seconds;
        EXPECT_LT(top, 2.0f) << seconds;
        EXPECT_LT(std::abs(sound.front()), 0.05f * top) << seconds;
        EXPECT_LT(std::abs(sound.back()), 0.005f * top) << seconds;
        EXPECT_TRUE(std::all_of(sound.begin(), sound.end(), [](float x) { return std::isfinite(x); }));
    }
}

TEST_P(VoiceTest, isLouderTheHarderItIsPlayed)
{
    const Voice &voice = GetParam();
    EXPECT_GT(peak(voice.play({voice.low, 0.5, 0.9f})), 1.3f * peak(voice.play({voice.low, 0.5, 0.4f})));
}

INSTANTIATE_TEST_SUITE_P(voices, VoiceTest, testing::ValuesIn(voices),
                         [](const auto &voice) { return std::string(voice.param.name); });

TEST(drums, endWithoutAClickAndDifferFromStrokeToStroke)
{
    const Buffer strokes[] = {dryKick(1),      deepKick(1),      feltKick(1), snare(1, 1),
                              brushTap(1, 1),  clap(1, 1),       rimClick(1), tom(1, 110, 1),
                              hat(1, 0.05, 1), hat(1, 0.3, 1),   ride(1, 1),  crash(1, 1),
                              shaker(1, 1),    tambourine(1, 1), stomp(1),    brushSweep(0.5, 1, 1)};
    for (const Buffer &stroke : strokes) {
        SCOPED_TRACE(&stroke - strokes);
        EXPECT_GT(peak(stroke), 0.05f);
        EXPECT_LT(peak(stroke), 2.0f);
        EXPECT_LT(std::abs(stroke.back()), 0.002f);
    }
    EXPECT_NE(snare(1, 1), snare(1, 2));
    EXPECT_EQ(snare(1, 1), snare(1, 1));
}

TEST(envelope, risesFallsToItsSustainAndDiesAwayWhenReleased)
{
    Envelope envelope({0.1f, 0.2f, 0.5f, 0.3f}, 1.0);
    Buffer level(samples(Envelope::length({0.1f, 0.2f, 0.5f, 0.3f}, 1.0)));
    for (float &value : level)
        value = envelope.next();
    EXPECT_NEAR(level[samples(0.05)], 0.5, 0.01);
    EXPECT_NEAR(level[samples(0.1)], 1, 0.01);
    EXPECT_NEAR(level[samples(0.9)], 0.5, 0.01);
    EXPECT_NEAR(level.back(), 0.0005, 0.0002); // 60 dB below
}

TEST(envelope, aNoteReleasedWhileItRisesFallsFromWhereItWas)
{
    Envelope envelope({0.5f, 1, 1, 0.2f}, 0.1);
    float most = 0;
    for (int i = 0; i < sampleRate / 2; ++i)
        most = std::max(most, envelope.next());
    EXPECT_NEAR(most, 0.2, 0.01);
    EXPECT_LT(envelope.next(), 0.001f);
}

TEST(envelope, dampingCutsASoundAfterItsRelease)
{
    Buffer sound(sampleRate, 1.0f);
    damp(sound, 0.5, 0.1);
    EXPECT_EQ(sound.size(), samples(0.5) + samples(0.1));
    EXPECT_EQ(sound[samples(0.4)], 1);
    EXPECT_LT(sound[samples(0.55)], 0.05f);
    EXPECT_EQ(sound.back(), 0);
    Buffer brief(10, 1.0f);
    damp(brief, 0.5, 0.1); // shorter than what it is held
    EXPECT_EQ(brief.size(), 10u);
}

TEST(oscillator, partialsDieAwayIn60DecibelsAndTooHighOnesAreLeftOut)
{
    PartialBank bank;
    bank.add(1000, 1, 0.5);
    bank.add(19000, 1, 0.5);
    const Buffer sound = bank.render(0.6);
    const auto level = [&](double from, double to) {
        float most = 0;
        for (size_t i = samples(from); i < samples(to); ++i)
            most = std::max(most, std::abs(sound[i]));
        return most;
    };
    EXPECT_NEAR(level(0, 0.005), 1, 0.05); // of one partial only
    EXPECT_NEAR(20 * std::log10(level(0.498, 0.502)), -60, 0.6);
}

TEST(oscillator, bandLimitedSawHasNoStrongTonesBelowItsPitch)
{
    Oscillator saw;
    Buffer sound(sampleRate);
    for (float &sample : sound)
        sample = saw.saw(3001.0f / sampleRate);
    double alias = 0;
    for (double hertz = 200; hertz < 2800; hertz += 7)
        alias = std::max(alias, strength(sound, hertz));
    EXPECT_LT(20 * std::log10(alias / strength(sound, 3001)), -40);
}

TEST(filter, lowPassLetsLowTonesThroughAndStopsHighOnes)
{
    const auto gain = [](double hertz) {
        StateVariable filter;
        filter.tune(500, 0);
        Oscillator tone;
        Buffer sound(sampleRate);
        for (float &sample : sound)
            sample = filter.low(tone.sineWave(float(hertz / sampleRate)));
        return strength(sound, hertz) / (sampleRate / 4.0);
    };
    EXPECT_NEAR(gain(50), 1, 0.05);
    EXPECT_LT(gain(8000), 0.01);
}

Buffer tone(double hertz, double seconds, float level)
{
    Oscillator oscillator;
    Buffer sound(samples(seconds));
    for (float &sample : sound)
        sample = level * oscillator.sineWave(float(hertz / sampleRate));
    return sound;
}

TEST(mixer, loudnessOfAReferenceToneIsThatOfTheStandard)
{
    // A 997 Hz sine at full scale on one channel measures -3.01 LUFS.
    EXPECT_NEAR(loudness(tone(997, 4, 1), Buffer(samples(4), 0.0f)), -3.01, 0.2);
}

TEST(mixer, masterReachesTheLoudnessWithoutEverClipping)
{
    Mixer mixer(6, {});
    Random random(9);
    for (int i = 0; i < 40; ++i) // peaks far above the average
        mixer.add(snare(1, uint64_t(i)), double(random.between(0, 5.5f)), {3, random.bipolar()});
    mixer.add(tone(220, 5.5, 0.1f), 0, {});
    mixer.add(snare(1, 99), 0, {3}); // in the first milliseconds, too
    mixer.master({-17, 0, 0.2});
    EXPECT_NEAR(loudness(mixer.left(), mixer.right()), -17, 1.5);
    EXPECT_LE(std::max(peak(mixer.left()), peak(mixer.right())), 0.8913f); // -1 dB
    EXPECT_EQ(mixer.left().back(), 0);
}

TEST(mixer, placesASoundAtItsTimeAndSide)
{
    Mixer mixer(1, {});
    mixer.add(Buffer(10, 0.5f), 0.5, {1, -1});
    EXPECT_FLOAT_EQ(mixer.left()[samples(0.5)], 0.5f);
    EXPECT_EQ(mixer.left()[samples(0.5) - 1], 0);
    EXPECT_NEAR(mixer.right()[samples(0.5)], 0, 1e-6);
}

TEST(mixer, cutsWhatReachesOverTheEnd)
{
    Mixer mixer(1, {});
    mixer.add(Buffer(sampleRate, 0.5f), 0.75, {});
    mixer.add(Buffer(10, 0.5f), 3, {});
    EXPECT_EQ(mixer.left().size(), size_t(sampleRate));
    EXPECT_GT(mixer.left().back(), 0);
}

TEST(mixer, duckedSoundsGiveWayAtTheBeatAndComeBack)
{
    Mixer mixer(2, {});
    mixer.duck({1.0}, 0.7f, 0.25);
    mixer.add(Buffer(samples(2), 0.5f), 0, {1, -1, 0, 0, true});
    EXPECT_NEAR(mixer.left()[samples(0.9)], 0.5, 0.01);
    EXPECT_NEAR(mixer.left()[samples(1.005)], 0.15, 0.03);
    EXPECT_NEAR(mixer.left()[samples(1.4)], 0.5, 0.01);
}

TEST(mixer, echoComesBackOnTheOtherSideLater)
{
    Mixer mixer(2, {1, 5000, 0.5, 0.25, 0.5});
    mixer.add(tone(1000, 0.05, 0.5f), 0.1, {1, 0, 0, 1});
    mixer.master({-20, 0, 0.1});
    const auto energy = [](const Buffer &channel, double from) {
        double sum = 0;
        for (size_t i = samples(from); i < samples(from + 0.06); ++i)
            sum += double(channel[i]) * double(channel[i]);
        return sum;
    };
    EXPECT_GT(energy(mixer.left(), 0.35), 3 * energy(mixer.right(), 0.35));
    EXPECT_GT(energy(mixer.right(), 0.6), 3 * energy(mixer.left(), 0.6));
    EXPECT_LT(energy(mixer.left(), 0.25), 0.02 * energy(mixer.left(), 0.35));
}

TEST(random, sameSeedSameSequenceAndForksAreIndependent)
{
    Random a(7), b(7);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(a.next(), b.next());
    EXPECT_NE(Random(7).fork('x').next(), Random(7).fork('y').next());
    EXPECT_EQ(Random(0).next(), 16294208416658607535ULL); // the published first value of this generator
}

} // namespace
