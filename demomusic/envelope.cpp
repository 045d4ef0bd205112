#include "envelope.h"

#include <algorithm>
#include <cmath>

namespace velmora::demo {
namespace {

float perSample(double secondsFor60dB)
{
    return float(std::exp(-std::log(1000.0) / (std::max(secondsFor60dB, 0.001) * sampleRate)));
}

} // namespace

Envelope::Envelope(const EnvelopeShape &shape, double heldSeconds)
    : m_attackStep(1.0f / std::max(1.0f, shape.attack * sampleRate))
    , m_decay(perSample(shape.decay))
    , m_sustain(shape.sustain)
    , m_release(perSample(shape.release))
    , m_held(samples(heldSeconds))
{
}

float Envelope::next()
{
    if (m_position++ >= m_held)
        return m_value *= m_release;
    if (m_isRising) {
        m_value += m_attackStep;
        if (m_value >= 1) {
            m_value = 1;
            m_isRising = false;
        }
        return m_value;
    }
    return m_value = m_sustain + (m_value - m_sustain) * m_decay;
}

void fadeEnd(Buffer &buffer, double seconds)
{
    const size_t length = std::min(buffer.size(), samples(seconds));
    for (size_t i = 0; i < length; ++i) {
        const float rest = float(i) / float(length);
        buffer[buffer.size() - 1 - i] *= rest * rest * (3 - 2 * rest);
    }
}

void damp(Buffer &buffer, double heldSeconds, double release)
{
    const size_t from = samples(heldSeconds);
    if (from + samples(release) < buffer.size())
        buffer.resize(from + samples(release));
    const float factor = perSample(release);
    float gain = 1;
    for (size_t i = from; i < buffer.size(); ++i)
        buffer[i] *= gain *= factor;
    fadeEnd(buffer, 0.01);
}

} // namespace velmora::demo
