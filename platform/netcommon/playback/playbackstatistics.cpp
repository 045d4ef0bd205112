#include "playbackstatistics.h"

#include "playbackboard.h"

namespace netcommon {

double statistics::audioSecondsRendered()
{
    return static_cast<double>(PlaybackBoard::instance().audioRenderedNs()) / 1e9;
}

int statistics::playbackState()
{
    return PlaybackBoard::instance().state();
}

bool statistics::isSoundLeft()
{
    const PlaybackBoard &board = PlaybackBoard::instance();
    const auto amount = board.buffer().ui4_amount;
    switch (board.state()) {
    case PLAYBACK_STATE_PLAYING:
        return amount > 0;
    case PLAYBACK_STATE_PAUSED:
        return amount >= lowWaterMs;
    default:
        return false;
    }
}

} // namespace netcommon
