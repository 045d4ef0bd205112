#include "reverb.h"

#include <cmath>
#include <numbers>

namespace velmora::demo {

float Reverb::Diffuser::next(float input)
{
    constexpr float g = 0.6f;
    const float delayed = memory[position];
    const float stored = input + g * delayed;
    memory[position] = stored;
    if (++position == memory.size())
        position = 0;
    return delayed - g * stored;
}

Reverb::Reverb(double decay, double brightness, double size)
    : m_damping(float(std::exp(-2 * std::numbers::pi * brightness / sampleRate)))
{
    // Delays in milliseconds without common divisors, so that no echo pattern is heard.
    constexpr std::array<double, lines> milliseconds = {31.7, 37.3, 41.9, 46.1, 53.9, 61.3, 67.9, 76.7};
    for (size_t i = 0; i < lines; ++i) {
        const double seconds = milliseconds[i] * size / 1000;
        m_lines[i].memory.assign(samples(seconds) + 1, 0.0f);
        m_lines[i].gain = float(std::pow(10.0, -3.0 * seconds / decay));
    }
    constexpr std::array<double, 3> diffusion = {4.77, 7.13, 11.3};
    for (size_t i = 0; i < m_diffusers.size(); ++i)
        m_diffusers[i].memory.assign(samples(diffusion[i] / 1000) + 1, 0.0f);
}

void Reverb::process(const Buffer &input, Buffer &left, Buffer &right)
{
    for (size_t n = 0; n < input.size(); ++n) {
        float in = input[n] + 1e-18f; // avoids denormal numbers, which are slow
        for (Diffuser &diffuser : m_diffusers)
            in = diffuser.next(in);
        std::array<float, lines> out;
        float sum = 0;
        for (size_t i = 0; i < lines; ++i) {
            Line &line = m_lines[i];
            line.state = line.memory[line.position] + m_damping * (line.state - line.memory[line.position]);
            out[i] = line.state * line.gain;
            sum += out[i];
        }
        // Householder reflection: keeps the energy and mixes each line into all others.
        sum *= 2.0f / lines;
        for (size_t i = 0; i < lines; ++i) {
            Line &line = m_lines[i];
            line.memory[line.position] = out[i] - sum + ((i & 1) ? -in : in);
            if (++line.position == line.memory.size())
                line.position = 0;
        }
        left[n] += 0.35f * (out[0] - out[2] + out[4] - out[6]);
        right[n] += 0.35f * (out[1] - out[3] + out[5] - out[7]);
    }
}

} // namespace velmora::demo
