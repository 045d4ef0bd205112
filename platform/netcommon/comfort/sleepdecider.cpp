#include "sleepdecider.h"

#include <algorithm>

namespace netcommon {

namespace {
constexpr qint64 nextTrackMs = 30'000; // after the end of a track; later there is none
constexpr qint64 pauseAgainMs = 2000;  // a screen may not have taken the key
} // namespace

void SleepDecider::start(qint64 now, qint64 ms)
{
    off();
    m_mode = Mode::Time;
    m_end = now + ms;
}

void SleepDecider::afterTrack()
{
    off();
    m_mode = Mode::Track;
}

void SleepDecider::off()
{
    *this = {};
}

qint64 SleepDecider::leftMs(qint64 now) const
{
    return std::max<qint64>(0, m_end - now);
}

void SleepDecider::trackEnds(qint64 now)
{
    if (m_mode == Mode::Track && m_trackEnd < 0)
        m_trackEnd = now;
}

void SleepDecider::trackBegins()
{
    m_hasNextBegun = m_trackEnd >= 0;
}

SleepDecider::Action SleepDecider::step(qint64 now, bool isSounding)
{
    switch (m_mode) {
    case Mode::Off:
        return {};
    case Mode::Time: {
        const qint64 left = leftMs(now);
        if (left == 0)
            return end(now, isSounding);
        const double share = std::min(1.0, double(left) / fadeMs);
        return {.fade = share * share};
    }
    case Mode::Track:
        if (m_trackEnd < 0)
            return {};
        if (m_hasNextBegun || now - m_trackEnd >= nextTrackMs)
            return end(now, isSounding);
        return {.silencesNext = true};
    }
    return {};
}

// Silent until the screen has really paused.
SleepDecider::Action SleepDecider::end(qint64 now, bool isSounding)
{
    const bool isTime = m_mode == Mode::Time;
    if (!isSounding && (isTime || m_lastPause >= 0 || now - m_trackEnd >= nextTrackMs)) {
        off();
        return {.isOver = true};
    }
    Action action{.fade = isTime ? 0.0 : 1.0, .silencesNext = true};
    if (isSounding && (m_lastPause < 0 || now - m_lastPause >= pauseAgainMs)) {
        m_lastPause = now;
        action.pauses = true;
    }
    return action;
}

} // namespace netcommon
