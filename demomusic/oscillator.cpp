#include "oscillator.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <numbers>

namespace velmora::demo {
namespace {

constexpr int tableSize = 4096;

std::array<float, tableSize + 1> makeSineTable()
{
    std::array<float, tableSize + 1> table{};
    for (int i = 0; i <= tableSize; ++i)
        table[size_t(i)] = float(std::sin(2 * std::numbers::pi * i / tableSize));
    return table;
}

} // namespace

float sine(float turns)
{
    static const std::array<float, tableSize + 1> table = makeSineTable();
    const float position = (turns - float(int(turns))) * tableSize;
    const int index = int(position);
    const float part = position - float(index);
    const float here = table[size_t(index)];
    return here + part * (table[size_t(index) + 1] - here);
}

double frequency(double pitch)
{
    return 440.0 * std::exp2((pitch - 69.0) / 12.0);
}

size_t samples(double seconds)
{
    return seconds <= 0 ? 0 : size_t(std::llround(seconds * sampleRate));
}

float Oscillator::advance(float step)
{
    const float phase = m_phase;
    m_phase += step;
    if (m_phase >= 1)
        m_phase -= 1;
    return phase;
}

// The correction of a unit step near its edge (polyBLEP).
float Oscillator::corner(float phase, float step)
{
    if (phase < step) {
        const float t = phase / step;
        return t + t - t * t - 1;
    }
    if (phase > 1 - step) {
        const float t = (phase - 1) / step;
        return t * t + t + t + 1;
    }
    return 0;
}

float Oscillator::saw(float step)
{
    const float phase = advance(step);
    return 2 * phase - 1 - corner(phase, step);
}

float Oscillator::pulse(float step, float width)
{
    const float phase = advance(step);
    float second = phase - width;
    if (second < 0)
        second += 1;
    // The mean of an asymmetric pulse is subtracted: it would be a DC offset.
    return (phase < width ? 1.0f : -1.0f) + corner(phase, step) - corner(second, step) - (2 * width - 1);
}

float Oscillator::sineWave(float step)
{
    return sine(advance(step));
}

void PartialBank::add(double hertz, double level, double decay, double phase)
{
    if (hertz < 18000 && decay > 0)
        m_partials.push_back({hertz, level, decay, phase});
}

Buffer PartialBank::render(double seconds) const
{
    constexpr size_t lanes = 8;
    const size_t length = (samples(seconds) + lanes - 1) / lanes * lanes;
    Buffer out(length, 0.0f);
    for (const Partial &partial : m_partials) {
        // Eight neighbouring samples are rotated together, so that no sample depends on the one before it.
        const double damping = std::log(1000.0) / (partial.decay * sampleRate);
        const std::complex<double> turn(-damping, 2 * std::numbers::pi * partial.hertz / sampleRate);
        float re[lanes], im[lanes];
        for (size_t k = 0; k < lanes; ++k) {
            const std::complex<double> z =
                partial.level *
                std::exp(turn * double(k) + std::complex<double>(0, 2 * std::numbers::pi * partial.phase));
            re[k] = float(z.real());
            im[k] = float(z.imag());
        }
        const std::complex<double> stride = std::exp(turn * double(lanes));
        const float c = float(stride.real()), s = float(stride.imag());
        const size_t end = std::min(length, samples(partial.decay * 1.5) / lanes * lanes); // 90 dB down
        for (size_t i = 0; i < end; i += lanes) {
            float *target = out.data() + i;
            for (size_t k = 0; k < lanes; ++k) {
                target[k] += im[k];
                const float r = re[k] * c - im[k] * s;
                im[k] = re[k] * s + im[k] * c;
                re[k] = r;
            }
        }
    }
    return out;
}

} // namespace velmora::demo
