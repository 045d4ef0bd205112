#pragma once

namespace velmora::demo {

// One tone, as an instrument receives it.
struct Note {
    double pitch;   // MIDI number; fractions lie between two keys
    double seconds; // how long it is held; the returned sound is longer by its release
    float velocity; // 0 to 1
};

} // namespace velmora::demo
