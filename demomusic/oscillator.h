#pragma once

#include <stddef.h>
#include <vector>

namespace velmora::demo {

constexpr int sampleRate = 44100;
using Buffer = std::vector<float>; // one channel, full scale is 1

float sine(float turns);        // one period is 1; any value that is not negative
double frequency(double pitch); // Hz of a MIDI pitch; 69 is 440 Hz
size_t samples(double seconds); // never negative

// Saw and pulse without audible aliasing (polynomial band-limited steps). `step` is frequency / sample rate, below 0.5.
class Oscillator {
public:
    explicit Oscillator(float phase = 0)
        : m_phase(phase)
    {
    }
    float saw(float step);
    float pulse(float step, float width = 0.5f);
    float sineWave(float step);

private:
    float advance(float step);
    static float corner(float phase, float step);
    float m_phase; // 0 <= x < 1
};

// A sum of exponentially decaying sines: struck strings, bars, bells.
class PartialBank {
public:
    // `decay` is the time in seconds until the partial is 60 dB down. Partials above 18 kHz are left out.
    void add(double hertz, double level, double decay, double phase = 0);
    Buffer render(double seconds) const;

private:
    struct Partial {
        double hertz, level, decay, phase;
    };
    std::vector<Partial> m_partials;
};

} // namespace velmora::demo
