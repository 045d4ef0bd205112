#include "drums.h"

#include "envelope.h"
#include "filter.h"
#include "random.h"

#include <algorithm>
#include <cmath>

namespace velmora::demo {
namespace {

// A decaying sine that falls from one frequency to another.
Buffer thump(double from, double to, double fallSeconds, double decay, double seconds)
{
    Buffer out(samples(seconds));
    double phase = 0;
    for (size_t i = 0; i < out.size(); ++i) {
        const double t = double(i) / sampleRate;
        phase += (to + (from - to) * std::exp(-t / fallSeconds)) / sampleRate;
        phase -= std::floor(phase);
        out[i] = sine(float(phase)) * float(std::exp(-6.9 * t / decay));
    }
    fadeEnd(out, 0.02);
    return out;
}

// Decaying filtered noise.
void addNoise(Buffer &out, Random &random, StateVariable::Outputs mix, float hertz, float resonance, double decay,
              float level, double attack = 0.0005)
{
    StateVariable filter;
    filter.tune(hertz, resonance);
    const float factor = float(std::exp(-6.9 / (decay * sampleRate)));
    float envelope = level;
    const size_t length = std::min(out.size(), samples(decay * 1.3)), rise = samples(attack) + 1;
    for (size_t i = 0; i < length; ++i) {
        const StateVariable::Outputs filtered = filter.next(random.bipolar());
        const float start = i < rise ? float(i) / float(rise) : 1;
        out[i] += envelope * start * (filtered.low * mix.low + filtered.band * mix.band + filtered.high * mix.high);
        envelope *= factor;
    }
}

// Six square waves without common harmonics: the clang of cymbals.
Buffer metal(double seconds, float brightness)
{
    constexpr float hertz[] = {317, 465, 569, 791, 1123, 1451};
    Oscillator voices[6];
    StateVariable high;
    high.tune(brightness, 0.1f);
    Buffer out(samples(seconds));
    for (float &sample : out) {
        float sum = 0;
        for (int k = 0; k < 6; ++k)
            sum += voices[k].pulse(hertz[k] * 1.37f / sampleRate);
        sample = 0.25f * high.high(sum);
    }
    return out;
}

void fall(Buffer &out, double decay)
{
    const float factor = float(std::exp(-6.9 / (decay * sampleRate)));
    float level = 1;
    for (float &sample : out) {
        sample *= level;
        level *= factor;
    }
    fadeEnd(out, 0.02);
}

void scale(Buffer &out, float gain)
{
    for (float &sample : out)
        sample *= gain;
}

constexpr StateVariable::Outputs low{1, 0, 0}, band{0, 1, 0}, high{0, 0, 1};

} // namespace

Buffer dryKick(float velocity)
{
    Buffer out = thump(150, 58, 0.022, 0.32, 0.34);
    Random random(3);
    addNoise(out, random, band, 3200, 0.2f, 0.02, 0.5f);
    addNoise(out, random, low, 500, 0.1f, 0.04, 0.4f);
    scale(out, 0.95f * velocity);
    return out;
}

Buffer deepKick(float velocity)
{
    Buffer out = thump(240, 49, 0.028, 0.42, 0.44);
    for (float &sample : out)
        sample = std::tanh(1.8f * sample) * 0.95f;
    Random random(5);
    addNoise(out, random, high, 2500, 0.1f, 0.012, 0.3f);
    scale(out, velocity);
    return out;
}

Buffer feltKick(float velocity)
{
    Buffer out = thump(105, 62, 0.03, 0.28, 0.3);
    Random random(7);
    addNoise(out, random, low, 350, 0.1f, 0.03, 0.25f);
    scale(out, 0.7f * velocity);
    return out;
}

Buffer snare(float velocity, uint64_t seed)
{
    Random random(seed * 7 + 1);
    Buffer out = thump(260, 182, 0.02, 0.14, 0.34);
    scale(out, 0.55f);
    addNoise(out, random, high, 1900, 0.1f, 0.2, 0.42f);
    addNoise(out, random, band, 950 * random.between(0.96f, 1.04f), 0.3f, 0.12, 0.5f);
    addNoise(out, random, high, 5000, 0.1f, 0.015, 0.5f);
    fadeEnd(out, 0.02);
    scale(out, 0.85f * velocity);
    return out;
}

Buffer brushTap(float velocity, uint64_t seed)
{
    Random random(seed * 11 + 2);
    Buffer out(samples(0.22), 0.0f);
    addNoise(out, random, band, 2600 * random.between(0.92f, 1.08f), 0.1f, 0.11, 0.8f, 0.004);
    addNoise(out, random, low, 420, 0.2f, 0.05, 0.35f, 0.002);
    fadeEnd(out, 0.02);
    scale(out, 1.9f * velocity);
    return out;
}

Buffer brushSweep(double seconds, float velocity, uint64_t seed)
{
    Random random(seed * 13 + 3);
    StateVariable filter;
    Buffer out(samples(seconds));
    for (size_t i = 0; i < out.size(); ++i) {
        const float part = float(i) / float(out.size()), swell = sine(part * 0.5f);
        if (i % 32 == 0)
            filter.tune(2200 + 2300 * swell, 0.05f);
        out[i] = 0.45f * velocity * swell * swell * filter.band(random.bipolar());
    }
    return out;
}

Buffer clap(float velocity, uint64_t seed)
{
    Random random(seed * 17 + 4);
    Buffer out(samples(0.3), 0.0f);
    for (double start : {0.0, 0.011, 0.021, 0.03}) {
        Buffer hand(samples(0.26), 0.0f);
        addNoise(hand, random, band, 1250, 0.35f, start > 0.025 ? 0.19 : 0.02, 0.9f);
        for (size_t i = 0, at = samples(start); i < hand.size() && at < out.size(); ++i, ++at)
            out[at] += hand[i];
    }
    fadeEnd(out, 0.03);
    scale(out, 2.0f * velocity);
    return out;
}

Buffer rimClick(float velocity)
{
    PartialBank bank;
    bank.add(820, 0.6, 0.06);
    bank.add(1730, 0.5, 0.04);
    bank.add(2650, 0.25, 0.025);
    Buffer out = bank.render(0.09);
    fadeEnd(out, 0.02);
    scale(out, 0.6f * velocity);
    return out;
}

Buffer tom(float velocity, double hertz, uint64_t seed)
{
    Random random(seed * 19 + 5);
    Buffer out = thump(hertz * 1.5, hertz, 0.04, 0.4, 0.42);
    addNoise(out, random, band, 900, 0.2f, 0.05, 0.35f);
    scale(out, 0.8f * velocity);
    return out;
}

Buffer hat(float velocity, double seconds, uint64_t seed)
{
    Random random(seed * 23 + 6);
    Buffer out = metal(seconds * 1.2, 6800);
    addNoise(out, random, high, 7600 * random.between(0.95f, 1.05f), 0.1f, seconds * 2, 0.22f);
    fall(out, seconds);
    scale(out, 0.8f * velocity);
    return out;
}

Buffer ride(float velocity, uint64_t seed)
{
    Random random(seed * 29 + 7);
    Buffer out = metal(0.9, 5200);
    scale(out, 0.5f);
    addNoise(out, random, high, 6000, 0.1f, 1.4, 0.07f);
    fall(out, 1.1);
    PartialBank bell; // the stick on the bow
    bell.add(3120, 0.05, 0.25);
    bell.add(4370, 0.05, 0.2);
    const Buffer ping = bell.render(0.3);
    for (size_t i = 0; i < ping.size() && i < out.size(); ++i)
        out[i] += ping[i];
    fadeEnd(out, 0.2);
    scale(out, 0.9f * velocity);
    return out;
}

Buffer crash(float velocity, uint64_t seed)
{
    Random random(seed * 31 + 8);
    Buffer out = metal(1.9, 4200);
    scale(out, 0.5f);
    addNoise(out, random, high, 4200, 0.1f, 2.4, 0.3f, 0.002);
    fall(out, 2);
    fadeEnd(out, 0.4);
    scale(out, 1.2f * velocity);
    return out;
}

Buffer shaker(float velocity, uint64_t seed)
{
    Random random(seed * 37 + 9);
    Buffer out(samples(0.11), 0.0f);
    addNoise(out, random, band, 5600 * random.between(0.94f, 1.06f), 0.2f, 0.08, 0.6f, 0.018);
    fadeEnd(out, 0.02);
    scale(out, 3.2f * velocity);
    return out;
}

Buffer tambourine(float velocity, uint64_t seed)
{
    Random random(seed * 41 + 10);
    PartialBank jingles;
    for (double hertz : {6120.0, 7430.0, 8210.0, 9760.0})
        jingles.add(hertz * double(random.between(0.99f, 1.01f)), 0.12, 0.22);
    Buffer out = jingles.render(0.28);
    addNoise(out, random, high, 6500, 0.1f, 0.12, 0.3f);
    fadeEnd(out, 0.03);
    scale(out, 0.75f * velocity);
    return out;
}

Buffer stomp(float velocity)
{
    Buffer out = thump(120, 70, 0.015, 0.2, 0.22);
    Random random(43);
    addNoise(out, random, low, 700, 0.2f, 0.04, 0.5f);
    scale(out, 0.7f * velocity);
    return out;
}

} // namespace velmora::demo
