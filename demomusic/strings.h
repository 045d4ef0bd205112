#pragma once

#include "note.h"
#include "oscillator.h"

namespace velmora::demo {

// Plucked strings: a noise burst that runs round a delay line and loses its edge there (Karplus and Strong).
struct StringTone {
    double brightness;   // Hz: how much edge the pick gives at full velocity
    float softness;      // 0 to 0.5: loss of high tones at each turn
    double decay;        // seconds to 60 dB at A3; lower strings longer, higher ones shorter
    double release;      // seconds to 60 dB after the hand damps it
    double pickPosition; // 0 (bridge) to 0.5 (middle)
    double body;         // 0 to 1: how much wooden box there is
};

extern const StringTone steelGuitar, nylonGuitar, mandolin, harp, uprightBass, electricBass, electricString,
    mutedString;

Buffer pluck(const Note &note, const StringTone &tone);

// Strings one after the other, `spread` seconds apart; negative: from the highest down. Pitches ascending.
Buffer strum(const std::vector<int> &pitches, double seconds, float velocity, double spread, const StringTone &tone);

// Bowed: a fiddle or, low, a cello.
Buffer bow(const Note &note, float vibrato);

} // namespace velmora::demo
