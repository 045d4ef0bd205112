#include "server/engine/taste.h"

#include <algorithm>
#include <cmath>

namespace velmora::engine {

namespace {

// Weights are expected to lie within so much of 0 before anything was heard. Styles are also wished for by what the
// listener named, attributes by nothing else.
constexpr float attributeDeviation = 1.0f;
constexpr float styleDeviation = 0.7f;
constexpr float biasRate = 0.1f;

} // namespace

Traits traitsOf(const EngineIndex &index, Position track)
{
    Traits traits{};
    const Attributes attributes = index.attributes(track);
    std::copy(attributes.begin(), attributes.end(), traits.begin());
    for (const StyleShare &share : index.shares().of(track)) {
        if (const int place = index.commonPlace(share.style); place >= 0)
            traits[attributeCount + static_cast<size_t>(place)] = share.value();
    }
    return traits;
}

Taste::Taste(const EngineIndex &index, std::span<const TasteEvent> events)
{
    Traits certainty;
    certainty.fill(1 / (styleDeviation * styleDeviation));
    std::fill_n(certainty.begin(), attributeCount, 1 / (attributeDeviation * attributeDeviation));
    for (const TasteEvent &event : events.last(std::min(events.size(), mostEvents))) {
        const std::optional<Position> track = index.find(event.track);
        if (!track)
            continue;
        const Traits traits = traitsOf(index, *track);
        float sum = m_bias;
        for (size_t k = 0; k < mostTraits; ++k)
            sum += m_weights[k] * traits[k];
        const float expected = 1 / (1 + std::exp(-sum));
        const float error = event.weight * ((event.isLiked ? 1.0f : 0.0f) - expected);
        for (size_t k = 0; k < mostTraits; ++k) {
            certainty[k] += event.weight * expected * (1 - expected) * traits[k] * traits[k];
            m_weights[k] += error * traits[k] / certainty[k];
        }
        m_bias += biasRate * error;
    }
}

} // namespace velmora::engine
