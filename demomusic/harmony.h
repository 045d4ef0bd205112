#pragma once

#include <array>
#include <string_view>
#include <vector>

namespace velmora::demo {

// Pitches are MIDI numbers (60 is middle C); pitch classes are semitones above the key note.

enum class Mode { Major, Minor, Dorian, Mixolydian, Lydian };

class Scale {
public:
    Scale(int keyNote, Mode mode);
    int keyNote() const { return m_keyNote; }
    int pitch(int degree) const; // 0 is the key note; degrees may be negative or above 6
    int degreeNear(double pitch) const;
    bool contains(int pitch) const;

private:
    int m_keyNote;
    std::array<int, 7> m_steps;
};

struct Chord {
    int root = 0;                           // semitones above the key note, 0 to 11
    int bass = 0;                           // lowest voice, in semitones above the key note
    std::vector<int> tones;                 // semitones above the root, ascending, 0 first
    bool contains(int pitchAboveKey) const; // in any octave
};

// One chord in Roman numerals, relative to the major scale: "I", "vi7", "bVII", "V7sus4", "IVmaj7", "iim7b5", "I/3"
// (slash: which tone of the chord is in the bass). Numerals outside this grammar throw std::invalid_argument: the texts
// are part of the program.
Chord parseChord(std::string_view numeral);

// The chords of each bar: "I V,vi IV" is three bars, of which the second has two chords. Never empty.
std::vector<std::vector<Chord>> parseBars(std::string_view text);

using Voicing = std::vector<int>; // pitches, ascending

// The chord in close position between two pitches, moving as little as possible from `previous` (which may be empty).
// With more tones than `voices` the fifth and the root are left out first.
Voicing voiceLeading(const Voicing &previous, const Chord &chord, int keyNote, int low, int high, int voices);

// The pitch of a class nearest to another pitch.
int nearest(int pitchClass, int keyNote, double pitch);
// The tone of a chord nearest to a pitch.
int nearestTone(const Chord &chord, int keyNote, double pitch);
// The chord's bass note, at or above `low`, less than an octave higher.
int bassNote(const Chord &chord, int keyNote, int low);

} // namespace velmora::demo
