#include "playbackstatistics.h"

#include "playbackboard.h"
#include "playbackrendered.h"

namespace netcommon {

namespace {
std::atomic<qint64> renderedNs{0};
}

void addRenderedAudio(qint64 ns)
{
    renderedNs.fetch_add(ns, std::memory_order_relaxed);
}

double statistics::audioSecondsRendered()
{
    return static_cast<double>(renderedNs.load(std::memory_order_relaxed)) / 1e9;
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
