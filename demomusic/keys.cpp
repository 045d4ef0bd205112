#include "keys.h"

#include "envelope.h"
#include "filter.h"
#include "random.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmora::demo {
namespace {

void rise(Buffer &buffer, double seconds)
{
    const size_t length = std::min(buffer.size(), samples(seconds));
    for (size_t i = 0; i < length; ++i)
        buffer[i] *= float(i) / float(length);
}

void scale(Buffer &buffer, float gain)
{
    for (float &sample : buffer)
        sample *= gain;
}

} // namespace

Buffer piano(const Note &note, float softness)
{
    const double f = frequency(note.pitch), velocity = double(note.velocity);
    const double stiffness = 0.00018 * std::exp2((note.pitch - 60) / 11.0);
    const double sustain = 9.5 * std::exp2(-(note.pitch - 48) / 15.0);
    // A harder hammer gives more high partials; felt removes them.
    const double tilt = (0.11 + 0.25 * (1 - velocity) + 0.34 * double(softness)) * std::exp2((note.pitch - 60) / 24.0);
    const int count = std::clamp(int(6500 / f), 3, 18);
    PartialBank bank;
    for (int n = 1; n <= count; ++n) {
        const double hertz = n * f * std::sqrt(1 + stiffness * n * n);
        const double strike = std::abs(std::sin(std::numbers::pi * n / 8.3)) + 0.08;
        const double level = strike * std::exp(-tilt * (n - 1)) / std::sqrt(double(n));
        const double decay = sustain / (1 + 0.22 * (n - 1));
        // Two strings slightly out of tune: they beat, and the second one lasts longer.
        bank.add(hertz, 0.68 * level, decay * 0.55);
        if (n <= 8)
            bank.add(hertz * (1 + 0.00035 + 0.00008 * n), 0.34 * level, decay * 1.25, 0.02 * n);
    }
    const double release = note.pitch > 84 ? 1.2 : 0.5;
    Buffer out = bank.render(std::min(note.seconds + release, sustain * 1.4));

    // The hammer itself: a dull knock.
    Random random(uint64_t(note.pitch) + 91);
    Biquad knock = Biquad::lowPass(900 + 1500 * velocity), thin = Biquad::highPass(120);
    const size_t length = std::min(out.size(), samples(0.045));
    for (size_t i = 0; i < length; ++i) {
        const float fall = 1 - float(i) / float(length);
        out[i] += (0.10f + 0.12f * softness) * note.velocity * fall * fall * thin.next(knock.next(random.bipolar()));
    }
    rise(out, 0.0015 + 0.004 * double(softness));
    damp(out, note.seconds, release);
    scale(out, 0.34f * note.velocity * (0.75f + 0.25f * note.velocity));
    return out;
}

Buffer electricPiano(const Note &note)
{
    const float step = float(frequency(note.pitch) / sampleRate);
    const double decay = 5.0 * std::exp2(-(note.pitch - 48) / 18.0);
    Envelope body({0.002f, float(decay), 0, 0.25f}, note.seconds), bite({0.001f, 0.9f, 0.05f, 0.1f}, note.seconds),
        tine({0.001f, 0.25f, 0, 0.05f}, note.seconds);
    Oscillator carrier, modulator, high, tremolo;
    Buffer out(samples(note.seconds + 0.25));
    float phase = 0;
    for (float &sample : out) {
        const float modulation = (0.03f + 0.24f * note.velocity) * bite.next() * modulator.sineWave(step) +
                                 0.02f * note.velocity * tine.next() * high.sineWave(std::min(0.45f, step * 14));
        phase += step;
        if (phase >= 1)
            phase -= 1;
        sample = sine(phase + modulation + 4) * body.next() * (1 + 0.16f * tremolo.sineWave(5.1f / sampleRate));
    }
    fadeEnd(out, 0.02);
    scale(out, 0.42f * note.velocity);
    return out;
}

Buffer organ(const Note &note, float brightness)
{
    const float step = float(frequency(note.pitch) / sampleRate);
    constexpr float ratios[] = {0.5f, 1, 1.5f, 2, 3, 4};
    const float bars[] = {0.5f, 1, 0.45f, 0.6f * brightness + 0.15f, 0.45f * brightness, 0.35f * brightness};
    Oscillator voices[6] = {Oscillator(0.1f), Oscillator(0.3f), Oscillator(0.5f),
                            Oscillator(0.7f), Oscillator(0.2f), Oscillator(0.9f)};
    Oscillator rotor;
    const EnvelopeShape shape{0.012f, 1, 1, 0.12f};
    Envelope envelope(shape, note.seconds);
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    float bend = 1, swell = 1;
    for (size_t i = 0; i < out.size(); ++i) {
        if (i % 32 == 0) { // the rotating loudspeaker
            const float turn = rotor.sineWave(6.1f * 32 / sampleRate);
            bend = 1 + 0.0022f * turn;
            swell = 1 + 0.12f * turn;
        }
        float sum = 0;
        for (int k = 0; k < 6; ++k)
            if (step * ratios[k] < 0.4f)
                sum += bars[k] * voices[k].sineWave(step * ratios[k] * bend);
        out[i] = 0.16f * sum * swell * envelope.next() * note.velocity;
    }
    fadeEnd(out, 0.01);
    return out;
}

Buffer accordion(const Note &note)
{
    const float step = float(frequency(note.pitch) / sampleRate);
    const EnvelopeShape shape{0.05f, 1, 0.9f, 0.12f};
    Envelope envelope(shape, note.seconds);
    Oscillator one(0.1f), two(0.6f), three(0.3f);
    StateVariable tone;
    tone.tune(float(std::min(frequency(note.pitch) * 5, 4500.0)), 0.15f);
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    for (float &sample : out) {
        const float reeds =
            one.pulse(step * 1.0025f, 0.3f) + two.pulse(step * 0.9975f, 0.35f) + 0.6f * three.pulse(step * 0.5f, 0.4f);
        sample = 0.13f * tone.low(reeds) * envelope.next() * note.velocity;
    }
    fadeEnd(out, 0.01);
    return out;
}

Buffer vibraphone(const Note &note)
{
    const double f = frequency(note.pitch), decay = 4.5 * std::exp2(-(note.pitch - 60) / 20);
    PartialBank bank;
    bank.add(f, 1, decay);
    bank.add(f * 3.98, 0.22 * double(note.velocity), decay * 0.3);
    bank.add(f * 9.9, 0.12 * double(note.velocity), 0.12);
    Buffer out = bank.render(std::min(note.seconds + 0.6, decay));
    Oscillator fan;
    for (float &sample : out)
        sample *= 1 + 0.22f * fan.sineWave(4.6f / sampleRate);
    rise(out, 0.001);
    damp(out, note.seconds, 0.6);
    scale(out, 0.4f * note.velocity);
    return out;
}

Buffer marimba(const Note &note)
{
    const double f = frequency(note.pitch), decay = 1.1 * std::exp2(-(note.pitch - 60) / 14);
    PartialBank bank;
    bank.add(f, 1, decay);
    bank.add(f * 3.93, 0.35 * double(note.velocity), decay * 0.35);
    bank.add(f * 9.2, 0.12 * double(note.velocity), 0.07);
    Buffer out = bank.render(decay * 1.2);
    rise(out, 0.001);
    fadeEnd(out, 0.05);
    scale(out, 0.5f * note.velocity);
    return out;
}

Buffer glassBell(const Note &note)
{
    const double f = frequency(note.pitch), decay = 5.5 * std::exp2(-(note.pitch - 72) / 18);
    constexpr double ratios[] = {1, 2.003, 2.76, 4.07, 5.4}, levels[] = {1, 0.35, 0.3, 0.14, 0.1};
    PartialBank bank;
    for (int i = 0; i < 5; ++i) {
        const double fall = decay / (1 + 0.7 * i);
        bank.add(f * ratios[i], 0.6 * levels[i] * (i ? double(note.velocity) : 1.0), fall);
        bank.add(f * ratios[i] + 0.7 + 0.3 * i, 0.4 * levels[i] * (i ? double(note.velocity) : 1.0), fall * 0.9);
    }
    Buffer out = bank.render(std::min(decay * 1.2, 7.0));
    rise(out, 0.003);
    fadeEnd(out, 0.5);
    scale(out, 0.3f * note.velocity);
    return out;
}

Buffer singingBowl(const Note &note)
{
    const double f = frequency(note.pitch);
    constexpr double ratios[] = {1, 2.71, 5.15, 8.3}, levels[] = {1, 0.5, 0.22, 0.08};
    PartialBank bank;
    for (int i = 0; i < 4; ++i) { // two modes each, close together: the slow beating of a bowl
        bank.add(f * ratios[i], 0.5 * levels[i], 12.0 / (1 + i));
        bank.add(f * ratios[i] + 0.45 + 0.4 * i, 0.5 * levels[i], 11.0 / (1 + i));
    }
    Buffer out = bank.render(std::min(12.0, note.seconds + 4));
    rise(out, 0.02);
    damp(out, note.seconds, 4);
    scale(out, 0.35f * note.velocity);
    return out;
}

} // namespace velmora::demo
