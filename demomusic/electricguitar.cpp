#include "electricguitar.h"

#include "envelope.h"
#include "filter.h"
#include "random.h"
#include "strings.h"

#include <algorithm>
#include <cmath>

namespace velmora::demo {
namespace {

// The curve is applied at twice the sample rate, because distortion creates tones above the Nyquist frequency.
void amplify(Buffer &sound, float drive)
{
    Biquad tight = Biquad::highPass(110), edge = Biquad::lowPass(5200), presence = Biquad::peak(900, 0.8, 5);
    for (float &sample : sound)
        sample = edge.next(presence.next(tight.next(sample)));
    const float gain = 3 + 30 * drive * drive;
    float previous = 0;
    for (float &sample : sound) {
        const float now = sample * gain;
        const auto valve = [](float x) { return std::tanh(x + 0.15f) - 0.1489f; };
        sample = 0.5f * (valve((previous + now) * 0.5f) + valve(now));
        previous = now;
    }
    Biquad blocked = Biquad::highPass(75), thump = Biquad::peak(120, 1, 2.5), cone = Biquad::lowPass(4300, 0.8),
           roll = Biquad::lowPass(5200, 0.6), bark = Biquad::peak(2200, 1.1, 3.5);
    for (float &sample : sound)
        sample = roll.next(cone.next(bark.next(thump.next(blocked.next(sample)))));
}

} // namespace

Buffer drivenChord(const std::vector<int> &pitches, double seconds, float velocity, float drive, bool muted)
{
    Buffer sound = strum(pitches, seconds, 0.75f + 0.25f * velocity, 0.006, muted ? mutedString : electricString);
    amplify(sound, drive);
    damp(sound, seconds, muted ? 0.06 : 0.12);
    for (float &sample : sound)
        sample *= 0.22f * velocity;
    return sound;
}

Buffer drivenLead(const Note &note, float drive)
{
    // A plucked string that is bent: the read position of its delay line moves.
    const double period = sampleRate / frequency(note.pitch);
    const size_t size = size_t(period * 1.1) + 4;
    Buffer line(size, 0.0f);
    Random random(uint64_t(note.pitch) + 5);
    OnePole pick(3000);
    for (size_t i = 0; i < size_t(period) + 1; ++i)
        line[i] = 0.8f * pick.low(random.bipolar());
    Buffer out(samples(note.seconds + 0.15));
    Oscillator swing;
    float last = 0;
    double length = period;
    size_t write = size_t(period) + 1;
    for (size_t i = 0; i < out.size(); ++i) {
        if (i % 16 == 0) {
            const double since = double(i) / sampleRate;
            const double depth = std::clamp((since - 0.3) * 2, 0.0, 1.0) * 0.008;
            const double bend = 0.03 * std::exp(-since * 22);
            length = period * (1 + bend + depth * double(swing.sineWave(5.6f * 16 / sampleRate))) - 0.5;
        }
        double at = double(write) - length;
        if (at < 0)
            at += double(size);
        const size_t index = size_t(at);
        const float part = float(at - double(index));
        const float here = line[index % size], next = line[(index + 1) % size];
        const float value = here + part * (next - here);
        line[write] = 0.9975f * 0.5f * (value + last) + 1e-18f;
        last = value;
        write = write + 1 == size ? 0 : write + 1;
        out[i] = value;
    }
    amplify(out, drive);
    damp(out, note.seconds, 0.15);
    const size_t rise = std::min(out.size(), samples(0.004));
    for (size_t i = 0; i < rise; ++i)
        out[i] *= float(i) / float(rise);
    for (float &sample : out)
        sample *= 0.22f * note.velocity;
    return out;
}

} // namespace velmora::demo
