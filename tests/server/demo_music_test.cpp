// The synthesiser: each voice is in tune and without clicks, and each piece sounds in all its bars.

#include "demomusic/arrangement.h"
#include "demomusic/cataloguetable.h"
#include "demomusic/drums.h"
#include "demomusic/electricguitar.h"
#include "demomusic/keys.h"
#include "demomusic/mixer.h"
#include "demomusic/strings.h"
#include "demomusic/synths.h"
#include "demomusic/winds.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <gtest/gtest.h>
#include <map>
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

bool isFinite(const Buffer &sound)
{
    return std::all_of(sound.begin(), sound.end(), [](float x) { return std::isfinite(x); });
}

// The amplitude of a frequency in the first second of a sound (Hann window).
double strength(const Buffer &sound, double hertz)
{
    const size_t length = std::min(sound.size(), size_t(sampleRate));
    std::complex<double> sum = 0, z = 1;
    const std::complex<double> turn = std::polar(1.0, -2 * std::numbers::pi * hertz / sampleRate);
    for (size_t i = 0; i < length; ++i, z *= turn)
        sum += z * (double(sound[i]) * (0.5 - 0.5 * std::cos(2 * std::numbers::pi * double(i) / double(length))));
    return std::norm(sum);
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
    double tolerance; // in semitones; for several voices, how far they are detuned
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

TEST_P(VoiceTest, isInTuneAndWithoutClicksAndLouderTheHarderItIsPlayed)
{
    const Voice &voice = GetParam();
    for (double pitch : {voice.low, std::floor((voice.low + voice.high) / 2), voice.high})
        EXPECT_NEAR(pitchOf(voice.play({pitch, 1.5, 0.8f}), pitch), pitch, voice.tolerance) << pitch;
    for (double seconds : {0.05, 0.3, 1.5}) { // shorter than the attack, shorter than the decay, long
        const Buffer sound = voice.play({voice.low, seconds, 1});
        ASSERT_FALSE(sound.empty());
        const float top = peak(sound);
        EXPECT_GT(top, 0.005f) << seconds;
        EXPECT_LT(top, 2.0f) << seconds;
        EXPECT_LT(std::abs(sound.front()), 0.05f * top) << seconds;
        EXPECT_LT(std::abs(sound.back()), 0.005f * top) << seconds;
        EXPECT_TRUE(isFinite(sound)) << seconds;
    }
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

// A piece without reverb and limiter.
class EveryTexture : public testing::TestWithParam<size_t> {
protected:
    EveryTexture()
    {
        static const std::map<Style, void (*)(Arrangement &)> players = {
            {Style::SlowPiano, arrangeSlowPiano}, {Style::Folk, arrangeFolk},   {Style::Dance, arrangeDance},
            {Style::Drones, arrangeDrones},       {Style::Swing, arrangeSwing}, {Style::Rock, arrangeRock}};
        players.at(entry.piece.style)(arrangement);
    }
    double decibels(double from, double to) const
    {
        double sum = 0;
        const size_t first = samples(from), last = std::min(mixer.left().size(), samples(to));
        for (size_t i = first; i < last; ++i)
            sum += std::pow(double(mixer.left()[i]), 2) + std::pow(double(mixer.right()[i]), 2);
        return 10 * std::log10(sum / double(2 * (last - first)) + 1e-12);
    }

    const TrackEntry &entry = trackEntries()[GetParam()];
    Mixer mixer{double(entry.track.durationSeconds), {}};
    Arrangement arrangement{entry.piece, mixer};
};

TEST_P(EveryTexture, soundsInAllItsBarsAndRingsOut)
{
    const double length = entry.track.durationSeconds, all = decibels(0, length);
    ASSERT_TRUE(isFinite(mixer.left()) && isFinite(mixer.right()));
    EXPECT_LT(std::max(peak(mixer.left()), peak(mixer.right())), 8);
    ASSERT_GE(arrangement.sections().size(), 4u);
    for (const Section &section : arrangement.sections()) {
        const double from = arrangement.seconds(section.beat), to = arrangement.seconds(section.beat + section.beats);
        EXPECT_GT(decibels(from, std::min(to, length)), all - 16) << section.kind << section.pass;
        for (double at = from; at + 2 < std::min(to, length - 5); at += 1)
            EXPECT_GT(decibels(at, at + 2), all - 26) << "silence at " << at << " in " << section.kind << section.pass;
    }
    const ChordSpan &last = arrangement.chords().back();
    EXPECT_EQ(last.chord.bass, 0) << "does not end on the key note";
    EXPECT_GT(decibels(arrangement.seconds(last.beat), arrangement.seconds(last.beat) + 1.5), all - 12)
        << "no last chord";
    if (entry.piece.style != Style::Drones) { // drones do not end by themselves: the recording is faded out
        EXPECT_LT(decibels(length - 0.5, length), all - 12) << "cut off while sounding";
    }
}

// One piece of each texture of each style; the others differ in key, tempo and chords.
std::vector<size_t> onePieceOfEachTexture()
{
    std::map<std::pair<Style, int>, size_t> pieces;
    for (size_t i = 0; i < trackEntries().size(); ++i)
        pieces[{trackEntries()[i].piece.style, trackEntries()[i].piece.variant}] = i;
    std::vector<size_t> result;
    for (const auto &[texture, index] : pieces)
        result.push_back(index);
    return result;
}

INSTANTIATE_TEST_SUITE_P(tracks, EveryTexture, testing::ValuesIn(onePieceOfEachTexture()), [](const auto &index) {
    std::string name = trackEntries()[index.param].track.id;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

} // namespace
