#pragma once

#include "oscillator.h"

namespace velmora::demo {

// Times in seconds; `sustain` is a level. Decay and release are times to 60 dB of their way.
struct EnvelopeShape {
    float attack, decay, sustain, release;
};

// Rises in a straight line, falls exponentially: how struck, blown and filtered sounds move.
class Envelope {
public:
    Envelope(const EnvelopeShape &shape, double heldSeconds);
    float next();
    // Held time and release: how long the sound is.
    static double length(const EnvelopeShape &shape, double heldSeconds) { return heldSeconds + shape.release; }

private:
    float m_value = 0, m_attackStep, m_decay, m_sustain, m_release;
    size_t m_position = 0, m_held;
    bool m_isRising = true;
};

// Takes the last `seconds` of a sound down to nothing, so that it never ends with a click.
void fadeEnd(Buffer &buffer, double seconds);
// From `heldSeconds` on the sound dies away, 60 dB in `release` seconds, and is cut there.
void damp(Buffer &buffer, double heldSeconds, double release);

} // namespace velmora::demo
