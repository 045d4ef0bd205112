#include "server/media/soundmeter.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace velmora::media {

struct SoundMeter::Loudness {
    explicit Loudness(ebur128_state *made)
        : meter(made)
    {
    }
    Loudness(const Loudness &) = delete;
    Loudness &operator=(const Loudness &) = delete;
    ~Loudness() { ebur128_destroy(&meter); }

    ebur128_state *meter;
};

SoundMeter::SoundMeter(int channels, int rate)
    : m_channels(static_cast<size_t>(channels))
    , m_rate(rate)
    , m_builder(std::clamp(rate, 8000, 192000))
{
    if (channels < 1 || channels > 8 || rate < 8000 || rate > 192000)
        throw std::runtime_error("sound of an unusual kind: " + std::to_string(channels) + " channels, " +
                                 std::to_string(rate) + " Hz");
    ebur128_state *meter = ebur128_init(static_cast<unsigned>(channels), static_cast<unsigned long>(rate),
                                        EBUR128_MODE_I | EBUR128_MODE_LRA | EBUR128_MODE_SAMPLE_PEAK);
    if (!meter)
        throw std::runtime_error("there is no memory for it");
    m_loudness = std::make_unique<Loudness>(meter);
}

SoundMeter::~SoundMeter() = default;

void SoundMeter::add(std::span<float> samples)
{
    // One number that is not finite would spoil every sum after it.
    for (float &sample : samples)
        sample = std::isfinite(sample) ? std::clamp(sample, -8.0f, 8.0f) : 0.0f;
    const size_t frames = samples.size() / m_channels;
    m_mixed.resize(frames);
    for (size_t i = 0; i < frames; ++i) {
        float sum = 0;
        for (size_t channel = 0; channel < m_channels; ++channel)
            sum += samples[i * m_channels + channel];
        m_mixed[i] = sum / static_cast<float>(m_channels);
    }
    ebur128_add_frames_float(m_loudness->meter, samples.data(), frames);
    m_builder.add(m_mixed);
    m_frames += frames;
}

Verdict SoundMeter::finish(FieldWriter &answer)
{
    if (m_frames == 0)
        return refused(answer, "there is no sound in it");
    double loudness = -HUGE_VAL;
    double range = 0;
    double peak = 0;
    ebur128_loudness_global(m_loudness->meter, &loudness);
    ebur128_loudness_range(m_loudness->meter, &range);
    for (unsigned channel = 0; channel < m_channels; ++channel) {
        double highest = 0;
        ebur128_sample_peak(m_loudness->meter, channel, &highest);
        peak = std::max(peak, highest);
    }
    answer.number(Key::Seconds, static_cast<double>(m_frames) / m_rate);
    if (std::isfinite(loudness)) {
        answer.number(Key::Loudness, loudness);
        answer.number(Key::LoudnessRange, range);
    }
    answer.number(Key::Peak, peak);
    if (const std::optional<Descriptor> numbers = m_builder.finish(range)) {
        answer.number(Key::IsSpeechLike, isSpeechLike(*numbers));
        if (const std::optional<int> tempo = clearTempoOf(*numbers))
            answer.number(Key::Tempo, *tempo);
        answer.bytes(Key::Numbers, {reinterpret_cast<const char *>(numbers->data()), numbers->size() * sizeof(float)});
    }
    return Verdict::Done;
}

} // namespace velmora::media
