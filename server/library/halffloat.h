#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

namespace velmora::server {

// 16-bit floating point, as descriptors are stored: eleven significant bits, up to 65504. Not for infinities.
inline uint16_t toHalf(float value)
{
    const auto bits = std::bit_cast<uint32_t>(value);
    const auto sign = static_cast<uint16_t>(bits >> 16 & 0x8000);
    const float size = std::fabs(value);
    if (size >= 65520.0f)
        return sign | 0x7bff;
    if (size < 6.103515625e-05f) // below the smallest normal number: multiples of 2^-24
        return sign | static_cast<uint16_t>(std::lround(size * 16777216.0f));
    const uint32_t rounded = (bits & 0x7fffffff) + 0xfff + (bits >> 13 & 1);
    return sign | static_cast<uint16_t>((rounded - 0x38000000) >> 13);
}

inline float fromHalf(uint16_t half)
{
    const uint32_t exponent = half >> 10 & 0x1f;
    const uint32_t fraction = half & 0x3ff;
    const float size = exponent == 0 ? static_cast<float>(fraction) / 16777216.0f
                                     : std::bit_cast<float>((exponent + 112) << 23 | fraction << 13);
    return half & 0x8000 ? -size : size;
}

inline std::string halves(std::span<const float> numbers)
{
    std::string bytes;
    bytes.reserve(numbers.size() * 2);
    for (const float number : numbers) {
        const uint16_t half = toHalf(number);
        bytes += static_cast<char>(half & 0xff);
        bytes += static_cast<char>(half >> 8);
    }
    return bytes;
}

// False unless the bytes are exactly so many numbers.
inline bool readHalves(std::string_view bytes, std::span<float> numbers)
{
    if (bytes.size() != numbers.size() * 2)
        return false;
    for (size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = fromHalf(static_cast<uint16_t>(static_cast<unsigned char>(bytes[2 * i]) |
                                                    static_cast<unsigned char>(bytes[2 * i + 1]) << 8));
    return true;
}

} // namespace velmora::server
