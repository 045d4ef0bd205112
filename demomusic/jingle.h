#pragma once

#include "harmony.h"
#include "mixer.h"

#include <cstdint>

namespace velmora::demo {

enum class Voice { Marimba, Piano, Whistle, Harp, Accordion, Bell };

// The few bars of an advertisement, note by note.
struct Jingle {
    Voice voice;
    uint64_t seed;
    int key; // pitch class, C is 0
    Mode mode;
    int tempo;
    const char *melody; // one word for each eighth: a degree of the scale with ' (octave up) or , (octave down), -
                        // holds, . rests
    const char *chords; // two beats each
};

int durationSeconds(const Jingle &jingle); // of the recording, including the last chord's ringing
void play(const Jingle &jingle, Mixer &mixer);

} // namespace velmora::demo
