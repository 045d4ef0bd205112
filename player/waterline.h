#pragma once

#include "netcommon/netcommon_global.h"

#include <cstdint>

// Decides what one check of the audio buffer, every 500 ms while a track plays, leads to. Below the low line the stream
// is paused until the buffer has passed the high line; between the two nothing changes (hysteresis).
namespace waterline {

inline constexpr int tickMs = netcommon::waterTickMs;
inline constexpr std::uint32_t lowMs = netcommon::lowWaterMs;
inline constexpr std::uint32_t highMs = netcommon::highWaterMs;
inline constexpr int patience = 599; // ticks under the low line; one more gives up

// State that the player screen keeps between two ticks.
struct State {
    bool isGotoNext = false; // the last sample was heard
    bool isFileEof = false;  // the whole file was received
    bool isLowWater = true;
    int lowTicks = 0;
};

// Values that the platform reports at this tick, in milliseconds.
struct Reading {
    std::uint32_t start = 0;
    std::uint32_t end = 0;
    std::uint32_t amount = 0;
    int playbackState = 0; // netcommon::Playback::getPbcState()
    int totalSeconds = 0;
    bool isPaused = false; // the screen shows the play picture
};

enum class Action {
    None,
    NextSong,    // the track has ended
    Ended,       // the end was reached: the next tick starts the next entry
    Resume,      // the file is complete: resume if paused
    Pause,       // let the buffer fill
    GiveUp,      // five minutes under the low line
    PlayOn,      // above the high line: resume
    ShowPlaying, // it plays, but the screen still shows it as paused
    AlreadyPlays
};

Action tick(State &state, const Reading &reading);

} // namespace waterline
