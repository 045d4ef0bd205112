#include "levelling.h"

#include <algorithm>
#include <cmath>

namespace netcommon {

namespace {

constexpr double leastGainDb = -40;
constexpr double mostGainDb = 20; // as much as a volume element can do

std::optional<double> number(const QByteArray &text)
{
    bool isNumber = false;
    const double value = text.trimmed().toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<TrackLoudness> readLoudness(const QByteArray &gain, const QByteArray &peak)
{
    const std::optional<double> decibels = number(gain);
    if (!decibels)
        return std::nullopt;
    TrackLoudness loudness{*decibels, number(peak)};
    if (loudness.peak && *loudness.peak <= 0)
        loudness.peak.reset();
    return loudness;
}

Level levelFor(const TrackLoudness &loudness)
{
    const double factor = std::pow(10, std::clamp(loudness.gainDb, leastGainDb, mostGainDb) / 20);
    return {factor, factor * loudness.peak.value_or(1) > 1};
}

} // namespace netcommon
