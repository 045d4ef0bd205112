#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace velmora::engine {

// A track's place in an index.
using Position = uint32_t;

// What a track is like in words, each a rank in the library from -1 to 1; 0 where it is not known.
enum class Attribute { Energy, Brightness, Tempo, Minor, Busyness };
constexpr size_t attributeCount = 5;
using Attributes = std::array<float, attributeCount>;
using AttributeBytes = std::array<int8_t, attributeCount>; // 127 is 1

} // namespace velmora::engine
