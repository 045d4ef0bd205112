#include "strings.h"

#include "envelope.h"
#include "filter.h"
#include "random.h"

#include <algorithm>
#include <cmath>

namespace velmora::demo {

const StringTone steelGuitar{4200, 0.22f, 3.2, 0.25, 0.14, 0.8};
const StringTone nylonGuitar{1900, 0.38f, 2.4, 0.25, 0.22, 1.0};
const StringTone mandolin{5200, 0.2f, 1.5, 0.15, 0.11, 0.7};
const StringTone harp{2600, 0.3f, 3.6, 0.9, 0.4, 0.5};
const StringTone uprightBass{650, 0.42f, 1.7, 0.16, 0.3, 0.8};
const StringTone electricBass{1500, 0.3f, 2.6, 0.08, 0.18, 0.1};
const StringTone electricString{3600, 0.12f, 6, 0.1, 0.13, 0};
const StringTone mutedString{2400, 0.35f, 0.45, 0.06, 0.1, 0};

namespace {

// One period of the string's shape when the pick leaves it.
Buffer excitation(size_t period, const Note &note, const StringTone &tone)
{
    // A string sounds the same each time, as on a real instrument; only the velocity changes its brightness.
    Random random(0x5713 + uint64_t(note.pitch * 16));
    Buffer burst(period);
    for (float &sample : burst)
        sample = random.bipolar();
    const double edge =
        tone.brightness * (0.35 + 0.65 * double(note.velocity)) * (0.6 + 0.4 * frequency(note.pitch) / 220);
    OnePole first(std::min(edge, 15000.0)), second(std::min(edge * 2, 15000.0));
    // Two passes: the filters settle, and the end of the period joins its beginning.
    for (int turn = 0; turn < 2; ++turn)
        for (float &sample : burst) {
            const float filtered = second.low(first.low(sample));
            sample = turn == 0 ? sample : filtered;
        }
    const size_t offset = std::max<size_t>(1, size_t(double(period) * tone.pickPosition));
    Buffer picked(period);
    double energy = 0, mean = 0;
    for (size_t i = 0; i < period; ++i) {
        picked[i] = burst[i] - burst[(i + period - offset % period) % period];
        mean += double(picked[i]) / double(period);
    }
    for (float &sample : picked) {
        sample -= float(mean);
        energy += double(sample) * double(sample) / double(period);
    }
    const float scale = 0.28f / float(std::sqrt(energy) + 1e-9);
    for (float &sample : picked)
        sample *= scale;
    return picked;
}

void addBody(Buffer &buffer, double amount, double pitch)
{
    // Resonances of the body: air, top and back. A bass has a larger body.
    const double size = pitch < 44 ? 0.62 : 1;
    Biquad air = Biquad::peak(104 * size, 2.2, 5 * amount), top = Biquad::peak(212 * size, 2.5, 5 * amount),
           back = Biquad::peak(430 * size, 2, 2.5 * amount), dull = Biquad::highShelf(3800, -4 * amount);
    for (float &sample : buffer)
        sample = dull.next(back.next(top.next(air.next(sample))));
}

} // namespace

Buffer pluck(const Note &note, const StringTone &tone)
{
    const double hertz = frequency(note.pitch), period = sampleRate / hertz;
    const double decay = tone.decay * std::pow(220 / hertz, 0.45);
    const float soft = tone.softness;
    // The filter delays by `soft`; the all-pass filter adds the fraction of a sample.
    const double rest = period - double(soft);
    size_t whole = size_t(rest);
    double part = rest - double(whole);
    if (part < 0.3) {
        part += 1;
        --whole;
    }
    const float allpass = float((1 - part) / (1 + part));
    const float loss = float(std::pow(10.0, -3.0 / (decay * hertz)));

    Buffer line = excitation(whole, note, tone);
    const double length = std::min(note.seconds + tone.release, decay * 1.3);
    Buffer out(samples(length));
    float last = 0, allpassIn = 0, allpassOut = 0;
    size_t position = 0;
    for (float &sample : out) {
        const float value = line[position];
        sample = value;
        const float filtered = loss * ((1 - soft) * value + soft * last) + 1e-18f;
        last = value;
        allpassOut = allpass * (filtered - allpassOut) + allpassIn;
        allpassIn = filtered;
        line[position] = allpassOut;
        if (++position == line.size())
            position = 0;
    }
    const size_t rise = std::min(out.size(), samples(0.0012));
    for (size_t i = 0; i < rise; ++i)
        out[i] *= float(i) / float(rise);
    if (tone.body > 0)
        addBody(out, tone.body, note.pitch);
    damp(out, note.seconds, tone.release);
    for (float &sample : out)
        sample *= note.velocity;
    return out;
}

Buffer strum(const std::vector<int> &pitches, double seconds, float velocity, double spread, const StringTone &tone)
{
    Buffer out;
    const size_t count = pitches.size();
    for (size_t i = 0; i < count; ++i) {
        const size_t order = spread < 0 ? count - 1 - i : i;
        const double late = std::abs(spread) * double(order);
        const Buffer sound = pluck({double(pitches[i]), std::max(0.03, seconds - late), velocity * 0.7f}, tone);
        const size_t start = samples(late);
        if (out.size() < start + sound.size())
            out.resize(start + sound.size(), 0.0f);
        for (size_t k = 0; k < sound.size(); ++k)
            out[start + k] += sound[k];
    }
    return out;
}

Buffer bow(const Note &note, float vibrato)
{
    const EnvelopeShape shape{0.09f, 1.5f, 0.8f, 0.35f};
    Envelope envelope(shape, note.seconds);
    Oscillator string, swing(0.25f);
    Random random(uint64_t(note.pitch * 8) + 77);
    StateVariable tone, hiss;
    OnePole drift(3);
    hiss.tune(2600, 0.3f);
    const float step = float(frequency(note.pitch) / sampleRate);
    Buffer out(samples(Envelope::length(shape, note.seconds)));
    float bend = 0, level = 0;
    for (size_t i = 0; i < out.size(); ++i) {
        if (i % 16 == 0) {
            const float since = float(i) / sampleRate;
            const float depth = vibrato * std::clamp((since - 0.15f) * 3, 0.0f, 1.0f);
            bend = 1 + depth * 0.006f * swing.sineWave(5.3f * 16 / sampleRate) +
                   0.03f * drift.low(random.bipolar()) * 0.1f;
            tone.tune(900 + 2600 * level * note.velocity + 500 * note.velocity, 0.1f);
        }
        level = envelope.next();
        const float raw = string.saw(step * bend);
        out[i] = level * (tone.low(raw) + 0.05f * hiss.band(random.bipolar())) * note.velocity * 0.4f;
    }
    Biquad box = Biquad::peak(290, 2, 4), bridge = Biquad::peak(1150, 2.5, -5), edge = Biquad::peak(2700, 2, 4),
           floor = Biquad::highPass(160);
    if (note.pitch < 52)
        floor = Biquad::highPass(50);
    for (float &sample : out)
        sample = floor.next(edge.next(bridge.next(box.next(sample))));
    fadeEnd(out, 0.03);
    return out;
}

} // namespace velmora::demo
