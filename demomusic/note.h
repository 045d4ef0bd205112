#pragma once

namespace velmora::demo {

// One tone, as an instrument receives it.
struct Note {
    double pitch;   // MIDI number; fractions are between the keys
    double seconds; // how long it is held; the sound returned is longer by its release
    float velocity; // 0 to 1
};

} // namespace velmora::demo
