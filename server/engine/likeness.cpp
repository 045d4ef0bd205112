#include "server/engine/likeness.h"

#include <algorithm>
#include <cmath>

namespace velmora::engine {

namespace {

constexpr float stepsADeviation = 42;
constexpr float mostDeviations = 3;
constexpr size_t sampleSize = 512;

// Upper tail of the normal distribution by table: from -4 to 4 in steps of 1/64.
constexpr float tailReach = 4;
constexpr float tailSteps = 64;

float upperTail(float z)
{
    static const auto table = [] {
        std::array<float, static_cast<size_t>(2 * tailReach * tailSteps) + 1> values{};
        for (size_t i = 0; i < values.size(); ++i) {
            const double at = static_cast<double>(i) / static_cast<double>(tailSteps) - static_cast<double>(tailReach);
            values[i] = static_cast<float>(0.5 * std::erfc(at / std::sqrt(2.0)));
        }
        return values;
    }();
    const float clipped = std::clamp(z, -tailReach, tailReach);
    return table[rounded<size_t>((clipped + tailReach) * tailSteps)];
}

int squareSum(const int8_t *a, const int8_t *b, size_t count)
{
    int sum = 0;
    for (size_t i = 0; i < count; ++i) {
        const int difference = a[i] - b[i];
        sum += difference * difference;
    }
    return sum;
}

// From the root of a sum of squares to the mean distance of a number.
const ByGroup distanceFactors = [] {
    ByGroup factors;
    for (size_t g = 0; g < groupCount; ++g)
        factors[g] = 1 / (stepsADeviation * std::sqrt(static_cast<float>(groups[g].size)));
    return factors;
}();

} // namespace

Likeness::Likeness(std::span<const media::Descriptor *const> descriptors)
    : m_isDescribed(descriptors.size())
    , m_numbers(descriptors.size() * media::descriptorSize)
    , m_neighbourhoods(descriptors.size())
{
    scale(descriptors);
    measureNeighbourhoods();
}

void Likeness::scale(std::span<const media::Descriptor *const> descriptors)
{
    std::array<double, media::descriptorSize> sums{}, squares{};
    double count = 0;
    for (const media::Descriptor *descriptor : descriptors) {
        if (!descriptor)
            continue;
        ++count;
        for (size_t i = 0; i < media::descriptorSize; ++i) {
            const auto value = static_cast<double>((*descriptor)[i]);
            sums[i] += value;
            squares[i] += value * value;
        }
    }
    if (count == 0)
        return;
    std::array<float, media::descriptorSize> mean{}, factor{};
    for (size_t i = 0; i < media::descriptorSize; ++i) {
        const double average = sums[i] / count;
        const double variance = squares[i] / count - average * average;
        mean[i] = static_cast<float>(average);
        // A number that hardly moves says nothing.
        factor[i] = variance > 1e-9 + 1e-9 * average * average ? static_cast<float>(1 / std::sqrt(variance)) : 0;
    }
    for (size_t track = 0; track < descriptors.size(); ++track) {
        if (!descriptors[track])
            continue;
        m_isDescribed[track] = true;
        int8_t *numbers = m_numbers.data() + track * media::descriptorSize;
        for (size_t i = 0; i < media::descriptorSize; ++i) {
            const float z = ((*descriptors[track])[i] - mean[i]) * factor[i];
            numbers[i] =
                static_cast<int8_t>(std::lround(std::clamp(z, -mostDeviations, mostDeviations) * stepsADeviation));
        }
    }
}

void Likeness::measureNeighbourhoods()
{
    std::vector<size_t> described;
    for (size_t track = 0; track < size(); ++track) {
        if (m_isDescribed[track])
            described.push_back(track);
    }
    const size_t samples = std::min(sampleSize, described.size());
    for (const size_t track : described) {
        std::array<double, groupCount> sums{}, squares{};
        double count = 0;
        for (size_t i = 0; i < samples; ++i) {
            const size_t other = described[i * described.size() / samples];
            if (other == track)
                continue;
            const ByGroup distance = distances(track, other);
            for (size_t g = 0; g < groupCount; ++g) {
                sums[g] += static_cast<double>(distance[g]);
                squares[g] += static_cast<double>(distance[g]) * static_cast<double>(distance[g]);
            }
            ++count;
        }
        Neighbourhood &neighbourhood = m_neighbourhoods[track];
        for (size_t g = 0; g < groupCount && count > 0; ++g) {
            const double mean = sums[g] / count;
            const double variance = std::max(0.0, squares[g] / count - mean * mean);
            neighbourhood.mean[g] = static_cast<float>(mean);
            neighbourhood.inverseDeviation[g] = static_cast<float>(1 / std::max(0.05, std::sqrt(variance)));
        }
    }
}

ByGroup Likeness::distances(size_t a, size_t b) const
{
    const int8_t *left = m_numbers.data() + a * media::descriptorSize;
    const int8_t *right = m_numbers.data() + b * media::descriptorSize;
    ByGroup result;
    // Sizes that the compiler knows make fast loops.
    const std::array sums = {
        squareSum(left + media::soundGroup.first, right + media::soundGroup.first, media::soundGroup.size),
        squareSum(left + media::beatGroup.first, right + media::beatGroup.first, media::beatGroup.size),
        squareSum(left + media::harmonyGroup.first, right + media::harmonyGroup.first, media::harmonyGroup.size),
        squareSum(left + media::shapeGroup.first, right + media::shapeGroup.first, media::shapeGroup.size)};
    for (size_t g = 0; g < groupCount; ++g)
        result[g] = std::sqrt(static_cast<float>(sums[g])) * distanceFactors[g];
    return result;
}

ByGroup Likeness::likeness(size_t a, size_t b) const
{
    ByGroup result = distances(a, b);
    const Neighbourhood &left = m_neighbourhoods[a];
    const Neighbourhood &right = m_neighbourhoods[b];
    for (size_t g = 0; g < groupCount; ++g)
        result[g] = upperTail((result[g] - left.mean[g]) * left.inverseDeviation[g]) *
                    upperTail((result[g] - right.mean[g]) * right.inverseDeviation[g]);
    return result;
}

float Likeness::together(const ByGroup &likeness)
{
    float sum = 0, weights = 0;
    for (size_t g = 0; g < groupCount; ++g) {
        sum += groupWeights[g] * likeness[g];
        weights += groupWeights[g];
    }
    return sum / weights;
}

} // namespace velmora::engine
