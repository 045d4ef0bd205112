#include "playbackorder.h"

#include "netcommon/netcommon_global.h"

#include <algorithm>
#include <utility>

namespace netcommon {

namespace {
constexpr int LowWaterMs = 3000; // the player screen pauses below this
}

void PlaybackOrder::taken()
{
    if (m_phase != Idle)
        return;
    m_phase = Starting;
    report(PlaybackReport::UrlOk);
}

void PlaybackOrder::prerolled()
{
    if (m_phase != Starting)
        return;
    m_phase = Playing;
    report(PlaybackReport::Result, 0);
    report(m_wantsPlay ? PlaybackReport::PlayOk : PlaybackReport::PauseOk);
    if (m_total >= 0)
        report(PlaybackReport::TotalTime, m_total);
    if (m_received)
        reportEof();
}

void PlaybackOrder::failed(int code)
{
    if (m_phase != Starting && m_phase != Playing)
        return;
    m_phase = Over;
    report(PlaybackReport::Result, code);
}

void PlaybackOrder::wantPlay(bool play)
{
    if (m_wantsPlay == play)
        return;
    m_wantsPlay = play;
    if (m_phase == Playing)
        report(play ? PlaybackReport::PlayOk : PlaybackReport::PauseOk);
}

void PlaybackOrder::totalKnown(int seconds)
{
    if (m_total >= 0 || seconds < 0 || m_phase == Over)
        return;
    m_total = seconds;
    if (m_phase == Playing)
        report(PlaybackReport::TotalTime, seconds);
}

void PlaybackOrder::position(int seconds)
{
    if (m_phase != Playing || seconds == m_second)
        return;
    m_second = seconds;
    report(PlaybackReport::CurrentTime, seconds);
    const int percent = m_total > 0 ? static_cast<int>(std::clamp(100LL * seconds / m_total, 0LL, 100LL)) : -1;
    if (percent >= 0 && percent != m_percent)
        report(PlaybackReport::Progress, percent);
    m_percent = percent;
}

void PlaybackOrder::buffered(int ms)
{
    const bool low = ms < LowWaterMs && !m_received; // what is all here cannot run dry
    if (m_phase != Playing)
        return;
    if (!low)
        m_wasHigh = true;
    if (low == m_low || !m_wasHigh) // every track begins low; only falling is news
        return;
    m_low = low;
    report(PlaybackReport::BufferLow, low ? 1 : 0);
}

void PlaybackOrder::received()
{
    m_received = true;
    if (m_phase == Playing)
        reportEof();
}

void PlaybackOrder::ended()
{
    if (m_phase != Playing)
        return;
    m_received = true;
    reportEof();
    m_phase = Over;
    report(PlaybackReport::NextSong);
}

void PlaybackOrder::reportEof()
{
    if (!std::exchange(m_eofReported, true))
        report(PlaybackReport::FileEof);
}

std::vector<PlaybackReport> PlaybackOrder::take()
{
    return std::exchange(m_reports, {});
}

int PlaybackOrder::state() const
{
    if (m_phase != Playing)
        return PLAYBACK_STATE_STOPPED;
    return m_wantsPlay ? PLAYBACK_STATE_PLAYING : PLAYBACK_STATE_PAUSED;
}

} // namespace netcommon
