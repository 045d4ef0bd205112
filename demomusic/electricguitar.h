#pragma once

#include "note.h"
#include "oscillator.h"

namespace velmora::demo {

// Steel strings through an overdriven amplifier and its loudspeaker.
// `drive` 0 (just warm) to 1 (saturated).
Buffer drivenChord(const std::vector<int> &pitches, double seconds, float velocity, float drive, bool muted);
Buffer drivenLead(const Note &note, float drive); // one string that bends up to its note and sustains

} // namespace velmora::demo
