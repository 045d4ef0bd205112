#include "winds.h"

#include "envelope.h"
#include "filter.h"
#include "random.h"

#include <algorithm>

namespace velmora::demo {
namespace {

// Pitch factor of a player: the tone starts a little too low, and the vibrato begins late.
class Breath {
public:
    Breath(float rate, float depth, float scoop)
        : m_rate(rate)
        , m_depth(depth)
        , m_scoop(scoop)
    {
    }
    float next16() // once every 16 samples
    {
        const float since = float(m_count++) * 16 / sampleRate;
        const float swell = std::clamp((since - 0.22f) * 2.5f, 0.0f, 1.0f);
        m_scoop *= 0.985f;
        return 1 + m_depth * swell * m_swing.sineWave(m_rate * 16 / sampleRate) - m_scoop;
    }

private:
    Oscillator m_swing;
    float m_rate, m_depth, m_scoop;
    int m_count = 0;
};

} // namespace

Buffer whistle(const Note &note)
{
    const EnvelopeShape shape{0.035f, 0.8f, 0.85f, 0.14f};
    Envelope envelope(shape, note.seconds);
    Oscillator first, second(0.3f), third(0.6f);
    Breath breath(5.2f, 0.005f, 0.012f);
    Random random(uint64_t(note.pitch) + 13);
    StateVariable air;
    const float step = float(frequency(note.pitch) / sampleRate);
    air.tune(step * sampleRate * 2, 0.75f);
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    float bend = 1;
    for (size_t i = 0; i < out.size(); ++i) {
        if (i % 16 == 0)
            bend = breath.next16();
        const float level = envelope.next();
        const float tone = first.sineWave(step * bend) + 0.22f * note.velocity * second.sineWave(2 * step * bend) +
                           0.08f * note.velocity * third.sineWave(3 * step * bend);
        const float chiff = i < 2600 ? 0.16f * (1 - float(i) / 2600) : 0;
        out[i] = note.velocity * 0.34f * (level * tone + (0.03f * level + chiff) * air.band(random.bipolar()));
    }
    fadeEnd(out, 0.02);
    return out;
}

Buffer clarinet(const Note &note)
{
    const EnvelopeShape shape{0.045f, 1.2f, 0.85f, 0.12f};
    Envelope envelope(shape, note.seconds);
    Oscillator reed;
    Breath breath(4.8f, 0.0035f, 0.01f);
    Random random(uint64_t(note.pitch) + 29);
    StateVariable tone;
    const float step = float(frequency(note.pitch) / sampleRate);
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    float bend = 1, level = 0;
    for (size_t i = 0; i < out.size(); ++i) {
        if (i % 16 == 0) {
            bend = breath.next16();
            tone.tune(step * sampleRate * 1.5f + 2400 * level * note.velocity, 0.1f);
        }
        level = envelope.next();
        // A square wave has the odd harmonics of a closed pipe.
        const float raw = reed.pulse(step * bend, 0.5f) + 0.03f * random.bipolar();
        out[i] = 0.3f * level * tone.low(raw) * note.velocity;
    }
    fadeEnd(out, 0.02);
    return out;
}

Buffer mutedHorn(const Note &note)
{
    const EnvelopeShape shape{0.03f, 0.7f, 0.75f, 0.1f};
    Envelope envelope(shape, note.seconds);
    Oscillator lips;
    Breath breath(5.4f, 0.005f, 0.02f);
    StateVariable mute, open;
    mute.tune(1650, 0.62f);
    const float step = float(frequency(note.pitch) / sampleRate);
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    float bend = 1, level = 0;
    for (size_t i = 0; i < out.size(); ++i) {
        if (i % 16 == 0) {
            bend = breath.next16();
            open.tune(600 + 2600 * level * note.velocity, 0.1f);
        }
        level = envelope.next();
        const float raw = open.low(lips.saw(step * bend));
        out[i] = 0.34f * level * (0.35f * raw + 0.75f * mute.band(raw)) * note.velocity;
    }
    fadeEnd(out, 0.02);
    return out;
}

} // namespace velmora::demo
