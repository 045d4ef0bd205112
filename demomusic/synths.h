#pragma once

#include "note.h"
#include "oscillator.h"

#include <cstdint>

namespace velmora::demo {

struct PadTone {
    float attack, release; // seconds
    float cutoff;          // Hz, lowest while held
    float sweep;           // Hz, range of its movement above that
    float sweepRate;       // Hz, speed of the movement
    float detune;          // 0.002 narrow to 0.01 wide
    int voices;            // 2 to 5
};
Buffer pad(const Note &note, const PadTone &tone, uint64_t seed);

// A choir. `brightness` 0: the vowel "oo", 1: "ah".
Buffer choir(const Note &note, float brightness, uint64_t seed);

Buffer synthBass(const Note &note, float cutoff, float bite); // bite: how far the filter opens at the start, Hz
Buffer subBass(const Note &note);
Buffer synthPluck(const Note &note, float cutoff);
Buffer synthLead(const Note &note, float cutoff);
Buffer chordStab(const Note &note, float cutoff);

// Noise through a filter that moves from one frequency to another: rising tension, wind, waves.
Buffer noiseSweep(double seconds, float fromHertz, float toHertz, float resonance, uint64_t seed);

} // namespace velmora::demo
