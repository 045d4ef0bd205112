#pragma once

#include <cstdint>

// The check of the audio buffer, every 500 ms while a track plays: what one tick leads to. Under the low line the
// stream is paused until it has passed the high one; between them nothing changes.
namespace waterline {

inline constexpr int tickMs = 500;
inline constexpr std::uint32_t lowMs = 3000;
inline constexpr std::uint32_t highMs = 7000;
inline constexpr int patience = 599; // ticks under the low line; one more gives up

// What the player screen keeps between two ticks.
struct State {
    bool isGotoNext = false; // the last sample was heard
    bool isFileEof = false;  // the whole file was received
    bool isLowWater = true;
    int lowTicks = 0;
};

// What the platform says at this tick. Milliseconds.
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
    Ended,       // the rest was heard: the next tick moves on
    Resume,      // the rest lies in the buffer: play on if paused
    Pause,       // let the buffer fill
    GiveUp,      // five minutes under the low line
    PlayOn,      // full again: start the stream
    ShowPlaying, // it plays, but the screen still shows the pause
    AlreadyPlays
};

Action tick(State &state, const Reading &reading);

} // namespace waterline
