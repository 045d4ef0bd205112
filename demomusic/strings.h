#pragma once

#include "note.h"
#include "oscillator.h"

namespace velmora::demo {

// Plucked strings: a noise burst in a filtered delay loop (Karplus and Strong).
struct StringTone {
    double brightness;   // Hz: bandwidth of the pluck at full velocity
    float softness;      // 0 to 0.5: loss of high frequencies in each turn of the loop
    double decay;        // seconds to -60 dB at A3; lower strings ring longer, higher ones shorter
    double release;      // seconds to -60 dB after the hand damps it
    double pickPosition; // 0 (bridge) to 0.5 (middle)
    double body;         // 0 to 1: amount of the body's resonance
};

extern const StringTone steelGuitar, nylonGuitar, mandolin, harp, uprightBass, electricBass, electricString,
    mutedString;

Buffer pluck(const Note &note, const StringTone &tone);

// A strum: the strings start `spread` seconds apart; negative: the highest first. `pitches` ascend.
Buffer strum(const std::vector<int> &pitches, double seconds, float velocity, double spread, const StringTone &tone);

// Bowed: a fiddle, or a cello for low notes.
Buffer bow(const Note &note, float vibrato);

} // namespace velmora::demo
