#include "synths.h"

#include "envelope.h"
#include "filter.h"
#include "random.h"

#include <algorithm>
#include <cmath>

namespace velmora::demo {

Buffer pad(const Note &note, const PadTone &tone, uint64_t seed)
{
    Random random(seed);
    Oscillator voices[5];
    float steps[5];
    const float step = float(frequency(note.pitch) / sampleRate);
    const int count = std::clamp(tone.voices, 1, 5);
    for (int i = 0; i < count; ++i) {
        voices[i] = Oscillator(random.unit());
        const float place = count == 1 ? 0 : 2 * float(i) / float(count - 1) - 1;
        steps[i] = step * (1 + tone.detune * place + 0.0006f * random.bipolar());
    }
    const EnvelopeShape shape{tone.attack, 4, 0.85f, tone.release};
    Envelope envelope(shape, note.seconds);
    StateVariable filter;
    Oscillator wander(random.unit());
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    float level = 0;
    const float gain = 0.22f * note.velocity / std::sqrt(float(count));
    for (size_t i = 0; i < out.size(); ++i) {
        if (i % 32 == 0) {
            const float place = 0.5f + 0.5f * wander.sineWave(tone.sweepRate * 32 / sampleRate);
            filter.tune((tone.cutoff + tone.sweep * place) * (0.4f + 0.6f * level), 0.15f);
        }
        level = envelope.next();
        float sum = 0;
        for (int k = 0; k < count; ++k)
            sum += voices[k].saw(steps[k]);
        out[i] = gain * level * filter.low(sum);
    }
    fadeEnd(out, std::min(0.2, double(tone.release) / 2));
    return out;
}

Buffer choir(const Note &note, float brightness, uint64_t seed)
{
    Random random(seed);
    const EnvelopeShape shape{1.1f, 4, 0.9f, 1.8f};
    Envelope envelope(shape, note.seconds);
    Oscillator voices[3] = {Oscillator(random.unit()), Oscillator(random.unit()), Oscillator(random.unit())};
    Oscillator swing[3] = {Oscillator(random.unit()), Oscillator(random.unit()), Oscillator(random.unit())};
    StateVariable formants[3];
    const float from[] = {330, 750, 2300}, to[] = {720, 1150, 2700}, gains[] = {1, 0.6f, 0.25f};
    const float step = float(frequency(note.pitch) / sampleRate);
    float bends[3] = {1, 1, 1};
    Oscillator vowel(random.unit());
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    for (size_t i = 0; i < out.size(); ++i) {
        if (i % 64 == 0) {
            const float open = std::clamp(brightness + 0.35f * vowel.sineWave(0.07f * 64 / sampleRate), 0.0f, 1.0f);
            for (int k = 0; k < 3; ++k) {
                bends[k] =
                    1 + 0.0045f * swing[k].sineWave((4.4f + 0.5f * float(k)) * 64 / sampleRate) + 0.003f * float(k - 1);
                formants[k].tune(from[k] + (to[k] - from[k]) * open, 0.8f);
            }
        }
        float raw = 0.04f * random.bipolar();
        for (int k = 0; k < 3; ++k)
            raw += voices[k].saw(step * bends[k]);
        float sum = 0;
        for (int k = 0; k < 3; ++k)
            sum += gains[k] * formants[k].band(raw);
        out[i] = 0.12f * sum * envelope.next() * note.velocity;
    }
    fadeEnd(out, 0.2);
    return out;
}

Buffer synthBass(const Note &note, float cutoff, float bite)
{
    const EnvelopeShape shape{0.004f, 0.8f, 0.7f, 0.07f};
    Envelope envelope(shape, note.seconds), opening({0.003f, 0.35f, 0, 0.05f}, note.seconds);
    Oscillator saw, sub, pulse(0.5f);
    StateVariable filter;
    const float step = float(frequency(note.pitch) / sampleRate);
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    for (size_t i = 0; i < out.size(); ++i) {
        const float open = opening.next();
        if (i % 16 == 0)
            filter.tune(cutoff + bite * open * note.velocity, 0.45f);
        const float raw = 0.6f * saw.saw(step) + 0.4f * pulse.pulse(step * 1.003f, 0.45f);
        out[i] = (0.3f * filter.low(raw) + 0.3f * sub.sineWave(step)) * envelope.next() * note.velocity;
    }
    fadeEnd(out, 0.01);
    return out;
}

Buffer subBass(const Note &note)
{
    const EnvelopeShape shape{0.01f, 1.5f, 0.8f, 0.09f};
    Envelope envelope(shape, note.seconds);
    Oscillator low, second;
    const float step = float(frequency(note.pitch) / sampleRate);
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    for (float &sample : out)
        sample = 0.42f * envelope.next() * note.velocity *
                 std::tanh(1.5f * low.sineWave(step) + 0.3f * second.sineWave(2 * step));
    fadeEnd(out, 0.01);
    return out;
}

Buffer synthPluck(const Note &note, float cutoff)
{
    const EnvelopeShape shape{0.002f, 0.7f, 0.05f, 0.18f};
    Envelope envelope(shape, note.seconds), opening({0.001f, 0.4f, 0.05f, 0.1f}, note.seconds);
    Oscillator one, two(0.4f);
    StateVariable filter;
    const float step = float(frequency(note.pitch) / sampleRate);
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    for (size_t i = 0; i < out.size(); ++i) {
        const float open = opening.next();
        if (i % 16 == 0)
            filter.tune(200 + cutoff * open, 0.3f);
        const float raw = one.saw(step * 1.002f) + two.pulse(step * 0.998f, 0.4f);
        out[i] = 0.24f * filter.low(raw) * envelope.next() * note.velocity;
    }
    fadeEnd(out, 0.02);
    return out;
}

Buffer synthLead(const Note &note, float cutoff)
{
    const EnvelopeShape shape{0.012f, 1, 0.75f, 0.16f};
    Envelope envelope(shape, note.seconds);
    Oscillator one, two(0.3f), three(0.7f), swing;
    StateVariable filter;
    const float step = float(frequency(note.pitch) / sampleRate);
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    float bend = 1, level = 0;
    for (size_t i = 0; i < out.size(); ++i) {
        if (i % 16 == 0) {
            const float depth = std::clamp((float(i) / sampleRate - 0.25f) * 2, 0.0f, 1.0f);
            bend = 1 + 0.004f * depth * swing.sineWave(5.5f * 16 / sampleRate);
            filter.tune(cutoff * (0.5f + 0.5f * level * note.velocity), 0.2f);
        }
        level = envelope.next();
        const float raw =
            one.saw(step * bend) + 0.8f * two.saw(step * bend * 1.006f) + 0.8f * three.saw(step * bend * 0.994f);
        out[i] = 0.15f * filter.low(raw) * level * note.velocity;
    }
    fadeEnd(out, 0.02);
    return out;
}

Buffer chordStab(const Note &note, float cutoff)
{
    const EnvelopeShape shape{0.003f, 0.9f, 0.25f, 0.2f};
    Envelope envelope(shape, note.seconds), opening({0.002f, 0.5f, 0.15f, 0.15f}, note.seconds);
    Oscillator voices[3] = {Oscillator(0.1f), Oscillator(0.45f), Oscillator(0.8f)};
    StateVariable filter;
    const float step = float(frequency(note.pitch) / sampleRate);
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    for (size_t i = 0; i < out.size(); ++i) {
        const float open = opening.next();
        if (i % 16 == 0)
            filter.tune(300 + cutoff * open, 0.25f);
        const float raw = voices[0].saw(step) + voices[1].saw(step * 1.007f) + voices[2].saw(step * 0.993f);
        out[i] = 0.13f * filter.low(raw) * envelope.next() * note.velocity;
    }
    fadeEnd(out, 0.02);
    return out;
}

Buffer noiseSweep(double seconds, float fromHertz, float toHertz, float resonance, uint64_t seed)
{
    Random random(seed);
    StateVariable filter;
    Buffer out(samples(seconds));
    for (size_t i = 0; i < out.size(); ++i) {
        const float part = float(i) / float(out.size());
        if (i % 32 == 0)
            filter.tune(fromHertz * std::pow(toHertz / fromHertz, part), resonance);
        out[i] = 0.4f * filter.band(random.bipolar()) * sine(part * 0.5f);
    }
    return out;
}

} // namespace velmora::demo
