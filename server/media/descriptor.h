#pragma once

#include "server/media/descriptorlayout.h"

#include <memory>
#include <optional>
#include <span>

namespace velmora::media {

// Computes a track's descriptor while it is being decoded. One thread at a time. Memory grows by about 0.5 MB a
// minute, up to the first 20 minutes; what comes after them is ignored.
class DescriptorBuilder {
public:
    // `rate` in samples a second, 8000 to 192000; throws std::invalid_argument otherwise.
    explicit DescriptorBuilder(int rate);
    ~DescriptorBuilder();

    // The next samples, all channels mixed to one, full scale 1. Samples that are not finite count as silence.
    void add(std::span<const float> samples);

    // `loudnessRange` in LU, as EBU R128 defines it. Nothing when the track has fewer than 64 loud frames (about 1.5
    // s), or when some number is not finite. Call once, at the end.
    std::optional<Descriptor> finish(double loudnessRange);

private:
    struct Analysis;
    std::unique_ptr<Analysis> m_analysis;
};

// Whether it sounds like speech rather than music: no beat, and a timbre that never rests.
bool isSpeechLike(const Descriptor &descriptor);

// Beats a minute; nothing when the beat is not clear enough to say so.
std::optional<int> clearTempoOf(const Descriptor &descriptor);

} // namespace velmora::media
