// Chords, voice leading, tempo and melodies.

#include "server/demo/arrangement.h"
#include "server/demo/cataloguetable.h"
#include "server/demo/harmony.h"
#include "server/demo/melody.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <set>
#include <stdexcept>

using namespace velmora::demo;

namespace {

struct ChordCase {
    const char *numeral;
    int root, bass;
    std::vector<int> tones;
};

TEST(chords, numeralsAreReadAsWritten)
{
    const ChordCase cases[] = {
        {"I", 0, 0, {0, 4, 7}},          {"vi", 9, 9, {0, 3, 7}},         {"IV", 5, 5, {0, 4, 7}},
        {"iv", 5, 5, {0, 3, 7}},         {"bVII", 10, 10, {0, 4, 7}},     {"V7", 7, 7, {0, 4, 7, 10}},
        {"ii7", 2, 2, {0, 3, 7, 10}},    {"IVmaj7", 5, 5, {0, 4, 7, 11}}, {"iim7b5", 2, 2, {0, 3, 6, 10}},
        {"V7sus4", 7, 7, {0, 5, 7, 10}}, {"I/3", 0, 4, {0, 4, 7}},        {"V7/3", 7, 11, {0, 4, 7, 10}},
        {"i/5", 0, 7, {0, 3, 7}},        {"I69", 0, 0, {0, 4, 7, 9, 14}}, {"#IV", 6, 6, {0, 4, 7}},
    };
    for (const ChordCase &expected : cases) {
        const Chord chord = parseChord(expected.numeral);
        EXPECT_EQ(chord.root, expected.root) << expected.numeral;
        EXPECT_EQ(chord.bass, expected.bass) << expected.numeral;
        EXPECT_EQ(chord.tones, expected.tones) << expected.numeral;
    }
}

TEST(chords, whatIsNoChordIsRefused)
{
    for (const char *text : {"", "H", "b", "Ifoo", "I/9", "I/7", "I7x"})
        EXPECT_THROW(parseChord(text), std::invalid_argument) << text;
    EXPECT_THROW(parseBars("  "), std::invalid_argument);
}

TEST(chords, aCommaDividesABar)
{
    const auto bars = parseBars("I  V,vi IV");
    ASSERT_EQ(bars.size(), 3u);
    EXPECT_EQ(bars[0].size(), 1u);
    ASSERT_EQ(bars[1].size(), 2u);
    EXPECT_EQ(bars[1][1].root, 9);
}

TEST(harmony, voicesMoveLittleAndStayInTheirRange)
{
    Voicing voicing;
    for (const auto &bar : parseBars("I vi ii V I IV ii V iii vi IV V I")) {
        const Voicing next = voiceLeading(voicing, bar.front(), 48, 52, 70, 4);
        ASSERT_EQ(next.size(), 4u);
        EXPECT_TRUE(std::is_sorted(next.begin(), next.end()));
        EXPECT_GE(next.front(), 52);
        EXPECT_LE(next.back(), 70);
        for (size_t i = 0; i < next.size(); ++i) {
            EXPECT_TRUE(bar.front().contains(next[i] - 48));
            if (!voicing.empty()) {
                EXPECT_LE(std::abs(next[i] - voicing[i]), 4);
            }
        }
        voicing = next;
    }
}

TEST(harmony, aChordStaysWhereTheLastOneWas)
{
    for (const Voicing &previous : {Voicing{43, 48, 52, 55}, Voicing{67, 72, 76, 79}}) {
        const Voicing next = voiceLeading(previous, parseChord("vi"), 48, 40, 84, 4);
        for (size_t i = 0; i < 4; ++i)
            EXPECT_LE(std::abs(next[i] - previous[i]), 5);
    }
}

TEST(harmony, aRichChordKeepsItsColourWhenVoicesAreFew)
{
    const Chord chord = parseChord("V7b9");
    const Voicing voicing = voiceLeading({}, chord, 48, 52, 70, 3);
    ASSERT_EQ(voicing.size(), 3u);
    std::set<int> tones;
    for (int pitch : voicing)
        tones.insert((pitch - 48 - chord.root + 24) % 12);
    EXPECT_EQ(tones, (std::set<int>{4, 10, 1})); // third, seventh, flat ninth
}

TEST(harmony, scalesReachInBothDirections)
{
    const Scale minor(57, Mode::Minor);
    EXPECT_EQ(minor.pitch(0), 57);
    EXPECT_EQ(minor.pitch(7), 69);
    EXPECT_EQ(minor.pitch(-1), 55);
    EXPECT_EQ(minor.pitch(-7), 45);
    for (int degree = -9; degree < 15; ++degree)
        EXPECT_EQ(minor.degreeNear(minor.pitch(degree)), degree);
    EXPECT_EQ(nearest(0, 48, 65), 60);
    EXPECT_EQ(nearest(0, 48, 67), 72);
}

TEST(tempo, beatsFallWhereTheTempoSaysAndSwingMovesOnlyOffbeats)
{
    const TempoMap even(120, 0.5, 100, 100, 0), swung(120, 0.66, 100, 100, 0);
    EXPECT_DOUBLE_EQ(even.seconds(8), 4);
    EXPECT_DOUBLE_EQ(even.seconds(8.5), 4.25);
    EXPECT_DOUBLE_EQ(swung.seconds(8), 4);
    EXPECT_NEAR(swung.seconds(8.5), 4.33, 1e-9);
    EXPECT_NEAR(swung.seconds(8.25), 4.165, 1e-9);
    EXPECT_NEAR(swung.seconds(8.75), 4.415, 1e-9);
}

TEST(tempo, theEndingSlowsSteadily)
{
    const TempoMap map(60, 0.5, 8, 12, 0.5);
    EXPECT_DOUBLE_EQ(map.seconds(8), 8);
    double last = 1;
    for (int beat = 8; beat < 12; ++beat) {
        const double length = map.seconds(beat + 1) - map.seconds(beat);
        EXPECT_GT(length, last);
        EXPECT_LT(length, 1.5);
        last = length;
    }
    EXPECT_NEAR(map.seconds(20) - map.seconds(19), 1.5, 1e-9);
}

TEST(pieces, everyOneIsWellFormed)
{
    for (const TrackEntry &entry : trackEntries()) {
        SCOPED_TRACE(entry.track.id);
        const auto parts = sections(entry.piece);
        ASSERT_GE(parts.size(), 4u);
        EXPECT_EQ(parts.front().kind, 'I');
        EXPECT_EQ(parts.back().kind, 'E');
        for (const char *text : {entry.piece.verse, entry.piece.contrast, entry.piece.ending})
            EXPECT_NO_THROW(parseBars(text));
        // The last bar of the ending is one chord, on the key note.
        EXPECT_EQ(parseBars(entry.piece.ending).size() % size_t(parts.back().bars), 0u);
        EXPECT_EQ(parseBars(entry.piece.ending).back().size(), 1u);
        EXPECT_EQ(parseBars(entry.piece.ending).back().front().bass, 0);
    }
}

class MelodyTest : public testing::Test {
protected:
    MelodyTest()
        : m_piece(trackEntries()[5].piece)
        , m_mixer(0.1, {})
        , m_arrangement(m_piece, m_mixer)
    {
        m_plan.rhythms = {"x-x-x-xx x---x-..", "x--xx-x- x-x-x---"};
        m_plan.cadences = {"x-x-x-x- x-----.."};
        m_plan.low = 62;
        m_plan.high = 81;
    }
    const Section &section(char kind, int pass = 0) const
    {
        for (const Section &candidate : m_arrangement.sections())
            if (candidate.kind == kind && candidate.pass == pass)
                return candidate;
        throw std::logic_error("no such section");
    }
    Piece m_piece;
    Mixer m_mixer;
    Arrangement m_arrangement;
    MelodyPlan m_plan;
};

TEST_F(MelodyTest, staysInRangeAndInsideItsSection)
{
    for (uint64_t seed = 0; seed < 200; ++seed) {
        const Section &part = section(seed % 2 ? 'B' : 'A');
        const auto melody = composeMelody(m_arrangement, part, m_plan, Random(seed));
        ASSERT_GE(melody.size(), 16u);
        for (size_t i = 0; i < melody.size(); ++i) {
            EXPECT_GE(melody[i].pitch, m_plan.low);
            EXPECT_LE(melody[i].pitch, m_plan.high);
            EXPECT_GE(melody[i].beat, part.beat);
            EXPECT_LE(melody[i].beat + melody[i].beats, part.beat + part.beats + 1e-9);
            if (i > 0) {
                EXPECT_LE(std::abs(melody[i].pitch - melody[i - 1].pitch), 12) << seed;
                EXPECT_GE(melody[i].beat, melody[i - 1].beat + melody[i - 1].beats - 1e-9);
            }
        }
    }
}

TEST_F(MelodyTest, longNotesBelongToTheirChord)
{
    for (uint64_t seed = 0; seed < 200; ++seed)
        for (const MelodyNote &note : composeMelody(m_arrangement, section('A'), m_plan, Random(seed)))
            if (note.beats >= 1.5) {
                EXPECT_TRUE(m_arrangement.chordAt(note.beat).contains(note.pitch - m_arrangement.scale().keyNote()))
                    << seed << " at " << note.beat;
            }
}

TEST_F(MelodyTest, movesMostlyBySmallSteps)
{
    int small = 0, all = 0;
    for (uint64_t seed = 0; seed < 100; ++seed) {
        const auto melody = composeMelody(m_arrangement, section('A'), m_plan, Random(seed));
        for (size_t i = 1; i < melody.size(); ++i, ++all)
            small += std::abs(melody[i].pitch - melody[i - 1].pitch) <= 5;
    }
    EXPECT_GT(small, all * 3 / 4);
}

TEST_F(MelodyTest, theVerseComesBackAsItWas)
{
    const auto first = composeMelody(m_arrangement, section('A', 0), m_plan, Random(4));
    const auto second = composeMelody(m_arrangement, section('A', 1), m_plan, Random(4));
    ASSERT_EQ(first.size(), second.size());
    for (size_t i = 0; i < first.size(); ++i) {
        EXPECT_EQ(first[i].pitch, second[i].pitch);
        EXPECT_DOUBLE_EQ(first[i].beat - section('A', 0).beat, second[i].beat - section('A', 1).beat);
    }
}

TEST_F(MelodyTest, unitsOfAPhraseShareTheirRhythm)
{
    const auto melody = composeMelody(m_arrangement, section('A'), m_plan, Random(4));
    const auto rhythm = [&](int unit) {
        std::vector<double> result;
        for (const MelodyNote &note : melody) {
            const double at = note.beat - section('A').beat - unit * 8;
            if (at >= 0 && at < 8)
                result.push_back(at);
        }
        return result;
    };
    EXPECT_EQ(rhythm(0), rhythm(2));
    EXPECT_NE(rhythm(0), rhythm(3));
}

TEST_F(MelodyTest, ornamentsKeepTheLengthAndTheOnsets)
{
    const auto plain = composeMelody(m_arrangement, section('A'), m_plan, Random(4));
    const auto turned = ornamented(plain, m_arrangement, Random(5), 1);
    EXPECT_GT(turned.size(), plain.size());
    double before = 0, after = 0;
    for (const MelodyNote &note : plain) {
        before += note.beats;
        EXPECT_TRUE(std::any_of(turned.begin(), turned.end(), [&](const MelodyNote &other) {
            return other.beat == note.beat && other.pitch == note.pitch;
        }));
    }
    for (const MelodyNote &note : turned) {
        after += note.beats;
        EXPECT_GT(note.beats, 0.2);
    }
    EXPECT_NEAR(before, after, 1e-9);
}

TEST_F(MelodyTest, theSecondVoiceLiesBelowInTheChord)
{
    for (const MelodyNote &note : composeMelody(m_arrangement, section('B'), m_plan, Random(8))) {
        const int second = harmonyBelow(note, m_arrangement);
        EXPECT_LT(second, note.pitch);
        EXPECT_TRUE(m_arrangement.chordAt(note.beat).contains(second - m_arrangement.scale().keyNote()));
    }
}

} // namespace
