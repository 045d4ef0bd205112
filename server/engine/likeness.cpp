#include "server/engine/likeness.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace velmora::engine {

namespace {

constexpr float stepsADeviation = 63;
constexpr float mostDeviations = 2;
constexpr size_t sampleSize = 512;
constexpr size_t nearestShare = 8; // of the sample, the nearest eighth

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

struct Spread {
    float mean = 0, deviation = 0;
};

Spread spreadOf(const std::vector<float> &values)
{
    if (values.empty())
        return {};
    double sum = 0, squares = 0;
    for (const float value : values) {
        sum += static_cast<double>(value);
        squares += static_cast<double>(value) * static_cast<double>(value);
    }
    const auto count = static_cast<double>(values.size());
    const double mean = sum / count;
    return {static_cast<float>(mean), static_cast<float>(std::sqrt(std::max(0.0, squares / count - mean * mean)))};
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
    std::vector<size_t> sample(std::min(sampleSize, described.size()));
    for (size_t i = 0; i < sample.size(); ++i)
        sample[i] = described[i * described.size() / sample.size()];
    std::vector<ByGroup> apart;
    const auto measure = [&](size_t track) {
        apart.clear();
        for (const size_t other : sample) {
            if (other != track)
                apart.push_back(distances(track, other));
        }
    };
    std::vector<float> nearest;
    const auto measureGroups = [&](size_t track) {
        Neighbourhood &neighbourhood = m_neighbourhoods[track];
        for (size_t g = 0; g < groupCount && !apart.empty(); ++g) {
            nearest.clear();
            for (const ByGroup &distance : apart)
                nearest.push_back(distance[g]);
            const Spread spread = spreadOf(nearest);
            neighbourhood.mean[g] = spread.mean;
            neighbourhood.inverseDeviation[g] = 1 / std::max(0.05f, spread.deviation);
            const auto count = static_cast<std::ptrdiff_t>(std::max<size_t>(1, nearest.size() / nearestShare));
            std::nth_element(nearest.begin(), nearest.begin() + count - 1, nearest.end());
            const float sum = std::accumulate(nearest.begin(), nearest.begin() + count, 0.0f);
            neighbourhood.scale[g] = 1 / std::sqrt(std::max(0.05f, sum / static_cast<float>(count)));
        }
    };
    // The scales of the sample come first, as the distance over everything needs those of both tracks.
    for (const size_t track : sample) {
        measure(track);
        measureGroups(track);
    }
    for (const size_t track : described) {
        measure(track);
        measureGroups(track);
        std::vector<float> &all = nearest;
        all.clear();
        auto distance = apart.begin();
        for (const size_t other : sample) {
            if (other != track)
                all.push_back(distanceOfAll(*distance++, m_neighbourhoods[track], m_neighbourhoods[other]));
        }
        const Spread spread = spreadOf(all);
        m_neighbourhoods[track].meanOfAll = spread.mean;
        m_neighbourhoods[track].inverseDeviationOfAll = 1 / std::max(0.05f, spread.deviation);
    }
}

template <typename Distances>
void Likeness::measureDistances(size_t a, size_t b, Distances &result) const
{
    const int8_t *left = m_numbers.data() + a * media::descriptorSize;
    const int8_t *right = m_numbers.data() + b * media::descriptorSize;
    const auto measure = [&]<size_t group>() {
        // A size that the compiler knows makes a fast loop.
        constexpr media::DescriptorGroup numbers = groups[group];
        const int sum = squareSum(left + numbers.first, right + numbers.first, numbers.size);
        result[group] = std::sqrt(static_cast<float>(sum)) * distanceFactors[group];
    };
    [&]<size_t... group>(std::index_sequence<group...>)
    {
        (measure.template operator()<group>(), ...);
    }
    (std::make_index_sequence<std::tuple_size_v<Distances>>());
}

ByGroup Likeness::distances(size_t a, size_t b) const
{
    ByGroup result;
    measureDistances(a, b, result);
    return result;
}

ByComparedGroup Likeness::likeness(size_t a, size_t b) const
{
    ByComparedGroup result;
    measureDistances(a, b, result);
    const Neighbourhood &left = m_neighbourhoods[a];
    const Neighbourhood &right = m_neighbourhoods[b];
    for (size_t g = 0; g < comparedGroups; ++g)
        result[g] = upperTail((result[g] - left.mean[g]) * left.inverseDeviation[g]) *
                    upperTail((result[g] - right.mean[g]) * right.inverseDeviation[g]);
    return result;
}

float Likeness::distanceOfAll(const ByGroup &distances, const Neighbourhood &a, const Neighbourhood &b)
{
    float sum = 0, weights = 0;
    for (size_t g = 0; g < groupCount; ++g) {
        sum += groupWeights[g] * distances[g] * a.scale[g] * b.scale[g];
        weights += groupWeights[g];
    }
    return sum / weights;
}

float Likeness::all(size_t a, size_t b) const
{
    const Neighbourhood &left = m_neighbourhoods[a];
    const Neighbourhood &right = m_neighbourhoods[b];
    const float distance = distanceOfAll(distances(a, b), left, right);
    return upperTail((distance - left.meanOfAll) * left.inverseDeviationOfAll) *
           upperTail((distance - right.meanOfAll) * right.inverseDeviationOfAll);
}

} // namespace velmora::engine
