#pragma once

#include "oscillator.h"

namespace velmora::demo {

// Two-pole filter whose cutoff may change while it runs.
class StateVariable {
public:
    void tune(float hertz, float resonance); // resonance 0 (none) to 0.95
    // All three outputs of one input.
    struct Outputs {
        float low, band, high;
    };
    Outputs next(float input);
    float low(float input) { return next(input).low; }
    float band(float input) { return next(input).band; }
    float high(float input) { return next(input).high; }

private:
    float m_g = 0.1f, m_k = 2, m_a = 0;
    float m_first = 0, m_second = 0;
};

// Two-pole filter with a fixed shape.
class Biquad {
public:
    static Biquad lowPass(double hertz, double q = 0.707);
    static Biquad highPass(double hertz, double q = 0.707);
    static Biquad peak(double hertz, double q, double decibels);
    static Biquad highShelf(double hertz, double decibels);
    float next(float input);
    void run(Buffer &buffer);

private:
    Biquad(double b0, double b1, double b2, double a0, double a1, double a2);
    double m_b0, m_b1, m_b2, m_a1, m_a2;
    double m_z1 = 0, m_z2 = 0;
};

// One-pole low-pass, for smoothing.
class OnePole {
public:
    explicit OnePole(double hertz);
    float low(float input) { return m_state += m_gain * (input - m_state); }
    float high(float input) { return input - low(input); }

private:
    float m_gain, m_state = 0;
};

} // namespace velmora::demo
