#include "filter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmora::demo {

void StateVariable::tune(float hertz, float resonance)
{
    const float limited = std::clamp(hertz, 10.0f, 16000.0f);
    m_g = std::tan(std::numbers::pi_v<float> * limited / sampleRate);
    m_k = 2 - 2 * std::clamp(resonance, 0.0f, 0.95f);
    m_a = 1 / (1 + m_g * (m_g + m_k));
}

StateVariable::Outputs StateVariable::next(float input)
{
    const float high = (input - (m_g + m_k) * m_first - m_second) * m_a;
    const float band = m_g * high + m_first;
    const float low = m_g * band + m_second;
    m_first = m_g * high + band;
    m_second = m_g * band + low;
    return {low, band, high};
}

Biquad::Biquad(double b0, double b1, double b2, double a0, double a1, double a2)
    : m_b0(b0 / a0)
    , m_b1(b1 / a0)
    , m_b2(b2 / a0)
    , m_a1(a1 / a0)
    , m_a2(a2 / a0)
{
}

Biquad Biquad::lowPass(double hertz, double q)
{
    const double w = 2 * std::numbers::pi * hertz / sampleRate, c = std::cos(w), alpha = std::sin(w) / (2 * q);
    return {(1 - c) / 2, 1 - c, (1 - c) / 2, 1 + alpha, -2 * c, 1 - alpha};
}

Biquad Biquad::highPass(double hertz, double q)
{
    const double w = 2 * std::numbers::pi * hertz / sampleRate, c = std::cos(w), alpha = std::sin(w) / (2 * q);
    return {(1 + c) / 2, -1 - c, (1 + c) / 2, 1 + alpha, -2 * c, 1 - alpha};
}

Biquad Biquad::peak(double hertz, double q, double decibels)
{
    const double w = 2 * std::numbers::pi * hertz / sampleRate, c = std::cos(w), alpha = std::sin(w) / (2 * q);
    const double a = std::pow(10, decibels / 40);
    return {1 + alpha * a, -2 * c, 1 - alpha * a, 1 + alpha / a, -2 * c, 1 - alpha / a};
}

Biquad Biquad::highShelf(double hertz, double decibels)
{
    const double w = 2 * std::numbers::pi * hertz / sampleRate, c = std::cos(w);
    const double a = std::pow(10, decibels / 40), root = 2 * std::sqrt(a) * std::sin(w) / 2 * std::sqrt(2.0);
    return {a * (a + 1 + (a - 1) * c + root), -2 * a * (a - 1 + (a + 1) * c), a * (a + 1 + (a - 1) * c - root),
            a + 1 - (a - 1) * c + root,       2 * (a - 1 - (a + 1) * c),      a + 1 - (a - 1) * c - root};
}

float Biquad::next(float input)
{
    const double out = m_b0 * input + m_z1;
    m_z1 = m_b1 * input - m_a1 * out + m_z2;
    m_z2 = m_b2 * input - m_a2 * out;
    return float(out);
}

void Biquad::run(Buffer &buffer)
{
    for (float &sample : buffer)
        sample = next(sample);
}

OnePole::OnePole(double hertz)
    : m_gain(float(1 - std::exp(-2 * std::numbers::pi * hertz / sampleRate)))
{
}

} // namespace velmora::demo
