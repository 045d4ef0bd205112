#include "playbackbuffer.h"

#include <algorithm>

namespace netcommon {

namespace {
constexpr qint64 FrameSlackMs = 1000;
constexpr qint64 HoldBelowMs = 300;
constexpr qint64 ReleaseAboveMs = 1000; // well below the player screen's own 3000, which it must not disturb
} // namespace

IMTK_PB_CTRL_BUFFER_STATUS_T bufferStatus(const BufferFacts &facts)
{
    qint64 end = std::max<qint64>(facts.end, 0);
    if (facts.length > 0 && end > facts.length && end - facts.length <= FrameSlackMs)
        end = facts.length;
    qint64 start = std::clamp<qint64>(facts.position, 0, end);
    if (facts.received && start == end)
        start == 0 ? ++end : --start;
    return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end),
            static_cast<std::uint32_t>(end - start)};
}

IMTK_PB_CTRL_BUFFER_STATUS_T bufferStatusAtEnd(int totalSeconds)
{
    const auto ms = static_cast<std::uint32_t>(std::max(totalSeconds, 0)) * 1000;
    return {ms, ms, 0};
}

bool mustHold(bool held, qint64 amountMs, bool received)
{
    if (received)
        return false;
    return held ? amountMs <= ReleaseAboveMs : amountMs < HoldBelowMs;
}

} // namespace netcommon
