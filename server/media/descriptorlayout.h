#pragma once

#include <array>
#include <cstddef>

namespace velmora::media {

// How a track sounds, as numbers. Version 1; docs/station-engine.md gives every formula. A changed formula is a new
// version: numbers of different versions are never compared.
constexpr int descriptorVersion = 1;
constexpr size_t descriptorSize = 144;
using Descriptor = std::array<float, descriptorSize>;

// A contiguous group of numbers that are compared together.
struct DescriptorGroup {
    size_t first, size;
};
constexpr DescriptorGroup soundGroup{0, 60};
constexpr DescriptorGroup beatGroup{60, 71};
constexpr DescriptorGroup harmonyGroup{131, 9};
constexpr DescriptorGroup shapeGroup{140, 4};

// Single numbers that are used by themselves.
namespace number {
constexpr size_t firstCepstrumChange = 38; // standard deviations of the change of coefficients 1 to 12
constexpr size_t cepstrumChanges = 12;
constexpr size_t centroid = 50;    // mean, in bands
constexpr size_t onsetRate = 84;   // a second
constexpr size_t clearness = 85;   // highest autocorrelation for 40 to 240 beats a minute, -1 to 1
constexpr size_t rise = 89;        // mean rise a frame, dB
constexpr size_t logTempo = 90;    // log2 of beats a minute
constexpr size_t majorness = 137;  // best major less best minor key profile correlation
constexpr size_t levelAbove = 140; // 95th percentile less median level, dB
} // namespace number

// Below this clearness the tempo is a guess.
constexpr float clearTempo = 0.3f;

} // namespace velmora::media
