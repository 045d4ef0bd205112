#include "playbackbuffer.h"

#include <algorithm>

namespace netcommon {

namespace {
constexpr qint64 frameSlackMs = 1000;
constexpr qint64 holdBelowMs = 300;
constexpr qint64 releaseAboveMs = 1000; // well below the low water line, so that the player screen is not disturbed
constexpr qint64 firstLookMs = waterTickMs;
constexpr qint64 startAboveMs = lowWaterMs + firstLookMs;
constexpr qint64 measuredForMs = 150; // the first bytes come in a burst and say nothing of the link
} // namespace

IMTK_PB_CTRL_BUFFER_STATUS_T bufferStatus(const BufferFacts &facts)
{
    qint64 end = std::max<qint64>(facts.end, 0);
    if (facts.length > 0 && end > facts.length && end - facts.length <= frameSlackMs)
        end = facts.length;
    qint64 start = std::clamp<qint64>(facts.position, 0, end);
    if (facts.isReceived && start == end)
        start == 0 ? ++end : --start;
    return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end),
            static_cast<std::uint32_t>(end - start)};
}

IMTK_PB_CTRL_BUFFER_STATUS_T bufferStatusAtEnd(int totalSeconds)
{
    const auto ms = static_cast<std::uint32_t>(std::max(totalSeconds, 0)) * 1000;
    return {ms, ms, 0};
}

bool mayStart(const StartFacts &facts)
{
    if (facts.isReceived || facts.bufferedMs >= startAboveMs)
        return true;
    if (facts.arrivingForMs < measuredForMs || facts.bufferedMs < 2 * facts.arrivingForMs)
        return false;
    const qint64 byFirstLookMs = facts.bufferedMs * firstLookMs / facts.arrivingForMs;
    return facts.bufferedMs + byFirstLookMs >= startAboveMs;
}

bool mustHold(bool isHeld, qint64 amountMs, bool isReceived)
{
    if (isReceived)
        return false;
    return isHeld ? amountMs <= releaseAboveMs : amountMs < holdBelowMs;
}

} // namespace netcommon
