// All pieces as their players play them, before the recording is finished.

#include "server/demo/arrangement.h"
#include "server/demo/cataloguetable.h"
#include "server/demo/jingle.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <numbers>

using namespace velmora::demo;

namespace {

void arrange(Arrangement &arrangement)
{
    static const std::map<Style, void (*)(Arrangement &)> players = {
        {Style::SlowPiano, arrangeSlowPiano}, {Style::Folk, arrangeFolk},   {Style::Dance, arrangeDance},
        {Style::Drones, arrangeDrones},       {Style::Swing, arrangeSwing}, {Style::Rock, arrangeRock}};
    players.at(arrangement.piece().style)(arrangement);
}

// A piece played dry: no room, no limiter.
struct Performance {
    explicit Performance(const TrackEntry &entry)
        : mixer(entry.track.durationSeconds, {})
        , arrangement(entry.piece, mixer)
    {
        arrange(arrangement);
    }
    double decibels(double from, double to) const
    {
        double sum = 0;
        const size_t first = samples(from), last = std::min(mixer.left().size(), samples(to));
        for (size_t i = first; i < last; ++i)
            sum +=
                double(mixer.left()[i]) * double(mixer.left()[i]) + double(mixer.right()[i]) * double(mixer.right()[i]);
        return 10 * std::log10(sum / double(2 * (last - first)) + 1e-12);
    }
    Mixer mixer;
    Arrangement arrangement;
};

class EveryTrack : public testing::TestWithParam<size_t> {
protected:
    const TrackEntry &entry() const { return trackEntries()[GetParam()]; }
};

TEST_P(EveryTrack, soundsInAllItsBarsAndRingsOut)
{
    const Performance played(entry());
    const double length = entry().track.durationSeconds, all = played.decibels(0, length);
    ASSERT_TRUE(std::isfinite(all));
    const auto &sections = played.arrangement.sections();
    for (const Section &section : sections) {
        const double from = played.arrangement.seconds(section.beat);
        const double to = played.arrangement.seconds(section.beat + section.beats);
        EXPECT_GT(played.decibels(from, std::min(to, length)), all - 16) << section.kind << section.pass;
        for (double at = from; at + 2 < std::min(to, length - 5); at += 1)
            EXPECT_GT(played.decibels(at, at + 2), all - 26)
                << "a hole at " << at << " in " << section.kind << section.pass;
    }
    const double last = played.arrangement.seconds(played.arrangement.chords().back().beat);
    EXPECT_GT(played.decibels(last, last + 1.5), all - 12) << "no last chord";
    if (entry().piece.style != Style::Drones) { // drones have no end of their own: the recording is faded out
        EXPECT_LT(played.decibels(length - 0.5, length), all - 12) << "cut off while sounding";
    }
    for (const Buffer *channel : {&played.mixer.left(), &played.mixer.right()})
        EXPECT_TRUE(
            std::all_of(channel->begin(), channel->end(), [](float x) { return std::isfinite(x) && std::abs(x) < 8; }));
}

INSTANTIATE_TEST_SUITE_P(tracks, EveryTrack, testing::Range(size_t(0), trackEntries().size()), [](const auto &index) {
    std::string name = trackEntries()[index.param].track.id;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

const TrackEntry &track(const std::string &id)
{
    const auto found = std::find_if(trackEntries().begin(), trackEntries().end(),
                                    [&](const TrackEntry &entry) { return entry.track.id == id; });
    if (found == trackEntries().end())
        throw std::invalid_argument(id);
    return *found;
}

class OneTrack : public testing::TestWithParam<const char *> {};

// How alike the attacks are to those a while later.
double recurrence(const std::vector<double> &attacks, double lag)
{
    double sum = 0;
    const size_t whole = size_t(lag);
    const double part = lag - double(whole);
    for (size_t i = 0; i + whole + 1 < attacks.size(); ++i)
        sum += attacks[i] * ((1 - part) * attacks[i + whole] + part * attacks[i + whole + 1]);
    return sum / double(attacks.size() - whole);
}

TEST_P(OneTrack, isPlayedInTheTempoThatTheCatalogueTells)
{
    const Performance played(track(GetParam()));
    // Rising energy in steps of 10 ms.
    const size_t step = samples(0.01);
    std::vector<double> attacks;
    double before = 0;
    for (size_t i = 0; i + step < played.mixer.left().size(); i += step) {
        double energy = 0;
        for (size_t k = i; k < i + step; ++k) {
            const double difference = double(played.mixer.left()[k + 1]) - double(played.mixer.left()[k]);
            energy += difference * difference;
        }
        const double level = std::log10(energy + 1e-6);
        attacks.push_back(std::max(0.0, level - before));
        before = level;
    }
    const double bar = 100.0 * 60 / track(GetParam()).track.tempo * track(GetParam()).piece.beatsPerBar;
    const double onTempo = recurrence(attacks, bar);
    for (double factor : {0.9, 0.94, 0.965, 1.035, 1.06, 1.1}) // no other tempo near it fits as well
        EXPECT_GT(onTempo, 1.1 * recurrence(attacks, bar * factor)) << factor;
}

double strength(const Buffer &sound, double from, double to, double hertz)
{
    const size_t first = samples(from), length = samples(to) - first;
    std::complex<double> sum = 0, z = 1;
    const std::complex<double> turn = std::polar(1.0, -2 * std::numbers::pi * hertz / sampleRate);
    for (size_t i = 0; i < length; ++i, z *= turn)
        sum +=
            z * (double(sound[first + i]) * (0.5 - 0.5 * std::cos(2 * std::numbers::pi * double(i) / double(length))));
    return std::norm(sum);
}

TEST_P(OneTrack, playsTheChordsThatItIsWrittenOn)
{
    const Performance played(track(GetParam()));
    const Arrangement &a = played.arrangement;
    double inside = 0, outside = 0;
    int insideCount = 0, outsideCount = 0, spans = 0;
    for (const ChordSpan &span : a.chords()) {
        const double from = a.seconds(span.beat), to = a.seconds(span.beat + span.beats);
        if (to - from < 0.8 || to > a.seconds(a.chords().back().beat) || ++spans > 24)
            continue;
        for (int pitch = 48; pitch < 72; ++pitch) {
            const double now = strength(played.mixer.left(), from, std::min(to, from + 2), frequency(pitch));
            const bool tone = span.chord.contains(pitch - a.scale().keyNote());
            (tone ? inside : outside) += now;
            ++(tone ? insideCount : outsideCount);
        }
    }
    ASSERT_GT(spans, 4);
    EXPECT_GT(inside / insideCount, 4 * outside / outsideCount);
}

INSTANTIATE_TEST_SUITE_P(styles, OneTrack, testing::Values("piano-02", "folk-01", "dance-05", "swing-05", "rock-05"),
                         [](const auto &id) {
                             return std::string(id.param).substr(0, std::string(id.param).find('-'));
                         });

TEST(arrangement, theIntroductionLeadsIntoTheVerse)
{
    Piece piece = track("folk-01").piece; // introduction of 4 bars, verse of 8 chords
    Mixer mixer(0.1, {});
    const Arrangement arrangement(piece, mixer);
    const auto intro = arrangement.chords(arrangement.sections()[0]),
               verse = arrangement.chords(arrangement.sections()[1]);
    ASSERT_EQ(intro.size(), 5u); // its third bar is divided
    for (size_t i = 0; i < intro.size(); ++i)
        EXPECT_EQ(intro[i].chord.root, verse[verse.size() - 5 + i].chord.root);
}

TEST(arrangement, aChordHoldsUntilTheNext)
{
    Mixer mixer(0.1, {});
    const Arrangement arrangement(track("folk-01").piece, mixer);
    const auto &chords = arrangement.chords();
    for (size_t i = 1; i < chords.size(); ++i) {
        EXPECT_DOUBLE_EQ(chords[i].beat, chords[i - 1].beat + chords[i - 1].beats);
        EXPECT_EQ(&arrangement.chordAt(chords[i].beat), &chords[i].chord);
        EXPECT_EQ(&arrangement.chordAt(chords[i].beat - 0.01), &chords[i - 1].chord);
    }
    EXPECT_EQ(&arrangement.chordAt(1e6), &chords.back().chord);
    EXPECT_EQ(&arrangement.chordAt(-1), &chords.front().chord);
}

TEST(jingles, playTheWrittenTones)
{
    // Tones foreign to the chord, so that only the melody can have them; an eighth is half a second.
    const Jingle jingle{Voice::Whistle, 1, 0, Mode::Major, 60, "2 . 4' - 6, . . .", "I I"};
    EXPECT_EQ(durationSeconds(jingle), 6);
    Mixer mixer(6, {});
    play(jingle, mixer);
    const auto at = [&](double from, int pitch) { return strength(mixer.left(), from, from + 0.5, frequency(pitch)); };
    EXPECT_GT(at(0, 62), 20 * at(0, 77));
    EXPECT_GT(at(0, 62), 20 * at(0, 57));
    EXPECT_GT(at(1, 77), 20 * at(0.5, 77));
    EXPECT_GT(at(1.5, 77), at(1, 77) / 10) << "held";
    EXPECT_LT(at(0.7, 62), at(0, 62) / 20) << "a rest";
    EXPECT_GT(at(2, 57), 20 * at(1.5, 57));
}

TEST(jingles, everyOneIsInsideItsChords)
{
    for (const AdEntry &entry : adEntries()) {
        EXPECT_NO_THROW(parseBars(entry.jingle.chords)) << entry.ad.id;
        const std::string melody = entry.jingle.melody;
        const auto words = std::count(melody.begin(), melody.end(), ' ') + 1;
        EXPECT_EQ(size_t(words), parseBars(entry.jingle.chords).size() * 4) << entry.ad.id << ": four eighths a chord";
        EXPECT_EQ(melody.find_first_not_of("1234567',-. "), std::string::npos) << entry.ad.id;
    }
}

} // namespace
