#pragma once

#include "arrangement.h"

namespace velmora::demo {

// What a melody is made of. A rhythm is two bars of slots: 'x' begins a note, '-' holds it, '.' is a rest; spaces are
// ignored.
struct MelodyPlan {
    std::vector<std::string> rhythms;  // of ordinary units
    std::vector<std::string> cadences; // of the unit that closes a phrase; they end with a long note
    int slotsPerBeat = 2;
    int low = 60, high = 79; // range of pitches
    float leaps = 0.2f;      // how often a step is wider than a third
    float chromatic = 0;     // how often a short note leads into the next by a semitone
};

// The melody of a section: units of two bars in the form a b a c. Each unit is a motif of rhythm and
// contour that follows the chords; c closes the section. The same random generator gives the same motifs over other
// chords.
std::vector<MelodyNote> composeMelody(const Arrangement &arrangement, const Section &section, const MelodyPlan &plan,
                                      Random random);

// The melody with ornaments: some long notes are divided or approached by a short one.
std::vector<MelodyNote> ornamented(const std::vector<MelodyNote> &melody, const Arrangement &arrangement, Random random,
                                   float amount);

// The next tone of the chord below a melody note, at least a third away.
int harmonyBelow(const MelodyNote &note, const Arrangement &arrangement);

} // namespace velmora::demo
