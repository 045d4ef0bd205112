#pragma once

#include "server/media/descriptor.h"
#include "server/media/reading.h"

#include <memory>
#include <span>

namespace velmora::media {

// Loudness and descriptor of sound that comes piece by piece.
class SoundMeter {
public:
    // Throws std::runtime_error with what is wrong when nobody can listen to sound of this kind.
    SoundMeter(int channels, int rate);
    ~SoundMeter();
    SoundMeter(const SoundMeter &) = delete;
    SoundMeter &operator=(const SoundMeter &) = delete;

    // Interleaved samples; those that are not finite or far too loud are set right in place.
    void add(std::span<float> samples);
    Verdict finish(FieldWriter &answer);

private:
    struct Loudness;

    size_t m_channels;
    int m_rate;
    size_t m_frames = 0;
    std::unique_ptr<Loudness> m_loudness;
    DescriptorBuilder m_builder;
    std::vector<float> m_mixed;
};

} // namespace velmora::media
