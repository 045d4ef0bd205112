#include "player/waterline.h"

namespace waterline {

namespace {

constexpr int statePlaying = 5; // PLAYBACK_STATE_PLAYING

Action tickAfterEof(State &state, const Reading &reading)
{
    state.lowTicks = 0;
    const std::uint32_t total = static_cast<std::uint32_t>(reading.totalSeconds) * 1000U;
    if (reading.amount == 0 && reading.start == reading.end && reading.start == total) {
        state.isGotoNext = true; // both flags are set now
        return Action::Ended;
    }
    state.isLowWater = false;
    return Action::Resume;
}

} // namespace

Action tick(State &state, const Reading &reading)
{
    if (state.isGotoNext && state.isFileEof) {
        state.isGotoNext = false;
        state.isFileEof = false;
        state.lowTicks = 0;
        return Action::NextSong;
    }
    state.isGotoNext = false;
    if (state.isFileEof)
        return tickAfterEof(state, reading);

    if (reading.amount < lowMs) {
        state.isLowWater = true;
        if (++state.lowTicks > patience) {
            state.lowTicks = 0;
            return Action::GiveUp;
        }
        return reading.playbackState == statePlaying ? Action::Pause : Action::None;
    }
    state.lowTicks = 0;
    if (reading.amount <= highMs)
        return Action::None;
    state.isLowWater = false;
    if (reading.playbackState != statePlaying)
        return Action::PlayOn;
    return reading.isPaused ? Action::ShowPlaying : Action::AlreadyPlays;
}

} // namespace waterline
