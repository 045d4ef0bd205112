#pragma once

#include <QByteArray>

#include <optional>

namespace netcommon {

// How loud a track is, as its service or its tags say.
struct TrackLoudness {
    double gainDb = 0;          // brings the track to -18 LUFS
    std::optional<double> peak; // of the samples, 1: full scale
};

// From the headers Velmora-Gain and Velmora-Peak. Nothing if there is no gain, or if it is no number.
std::optional<TrackLoudness> readLoudness(const QByteArray &gain, const QByteArray &peak);

struct Level {
    double factor = 1;         // of the samples
    bool needsLimiter = false; // the samples, multiplied, may exceed full scale
    bool operator==(const Level &) const = default;
};
// The gain is limited to -40 and +20 dB.
Level levelFor(const TrackLoudness &loudness);

} // namespace netcommon
