#pragma once

#include "oscillator.h"

namespace velmora::demo {

// Times in seconds; `sustain` is a level. Decay and release are the times to -60 dB.
struct EnvelopeShape {
    float attack, decay, sustain, release;
};

// Rises linearly and falls exponentially.
class Envelope {
public:
    Envelope(const EnvelopeShape &shape, double heldSeconds);
    float next();
    // Length of the sound: held time and release.
    static double length(const EnvelopeShape &shape, double heldSeconds) { return heldSeconds + shape.release; }

private:
    float m_value = 0, m_attackStep, m_decay, m_sustain, m_release;
    size_t m_position = 0, m_held;
    bool m_isRising = true;
};

// Fades out the last `seconds` of a sound, so that it does not end with a click.
void fadeEnd(Buffer &buffer, double seconds);
// After `heldSeconds` the sound decays by 60 dB within `release` seconds, and ends there.
void damp(Buffer &buffer, double heldSeconds, double release);

} // namespace velmora::demo
