#pragma once

#include <atomic>

namespace netcommon {

// What the device asks of the sound. The GUI thread writes it, the playback thread reads it about ten times a second
// while there is a track.
struct PlaybackSound {
    std::atomic<bool> isLevelled{true};      // tracks are made equally loud; counts from the next track on
    std::atomic<bool> isVolumeChosen{false}; // until then a sink keeps the volume that it has
    std::atomic<int> volume{100};            // percent, as a person perceives it
    std::atomic<bool> isMuted{false};
    std::atomic<double> fade{1};           // factor of the samples
    std::atomic<bool> isNextSilent{false}; // tracks that begin from now on are not heard while this holds
};

} // namespace netcommon
