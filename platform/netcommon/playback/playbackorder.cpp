#include "playbackorder.h"

#include "netcommon/netcommon_global.h"

#include <algorithm>
#include <utility>

namespace netcommon {

using ReportKind = PlaybackReport::Kind;

void PlaybackOrder::taken()
{
    if (m_phase != Phase::Idle)
        return;
    m_phase = Phase::Starting;
    report(ReportKind::UrlOk);
}

void PlaybackOrder::ready()
{
    if (m_phase != Phase::Starting)
        return;
    m_phase = Phase::Playing;
    report(ReportKind::Result, 0);
    report(m_wantsPlay ? ReportKind::PlayOk : ReportKind::PauseOk);
    if (m_total >= 0)
        report(ReportKind::TotalTime, m_total);
    if (m_isReceived)
        reportEof();
}

void PlaybackOrder::failed(int code)
{
    if (m_phase != Phase::Starting && m_phase != Phase::Playing)
        return;
    m_phase = Phase::Over;
    report(ReportKind::Result, code);
}

void PlaybackOrder::wantPlay(bool wantsPlay)
{
    if (m_wantsPlay == wantsPlay)
        return;
    m_wantsPlay = wantsPlay;
    if (m_phase == Phase::Playing)
        report(wantsPlay ? ReportKind::PlayOk : ReportKind::PauseOk);
}

void PlaybackOrder::totalKnown(int seconds)
{
    if (m_total >= 0 || seconds < 0 || m_phase == Phase::Over)
        return;
    m_total = seconds;
    if (m_phase == Phase::Playing)
        report(ReportKind::TotalTime, seconds);
}

void PlaybackOrder::position(int seconds)
{
    if (m_phase != Phase::Playing || seconds == m_second)
        return;
    m_second = seconds;
    report(ReportKind::CurrentTime, seconds);
    const int percent = m_total > 0 ? static_cast<int>(std::clamp(100LL * seconds / m_total, 0LL, 100LL)) : -1;
    if (percent >= 0 && percent != m_percent)
        report(ReportKind::Progress, percent);
    m_percent = percent;
}

void PlaybackOrder::buffered(int ms)
{
    const bool isLow = ms < static_cast<int>(lowWaterMs) && !m_isReceived; // what is all here cannot run dry
    if (m_phase != Phase::Playing)
        return;
    if (!isLow)
        m_hasBeenHigh = true;
    if (isLow == m_isLow || !m_hasBeenHigh) // every track begins low; only falling is news
        return;
    m_isLow = isLow;
    report(ReportKind::BufferLow, isLow ? 1 : 0);
}

void PlaybackOrder::received()
{
    m_isReceived = true;
    if (m_phase == Phase::Playing)
        reportEof();
}

void PlaybackOrder::endsSoon()
{
    if (m_phase == Phase::Playing && m_isReceived)
        askForNext();
}

void PlaybackOrder::ended()
{
    if (m_phase != Phase::Playing)
        return;
    m_isReceived = true;
    askForNext();
    m_phase = Phase::Over;
}

void PlaybackOrder::askForNext()
{
    reportEof();
    if (!std::exchange(m_hasAskedForNext, true))
        report(ReportKind::NextSong);
}

void PlaybackOrder::reportEof()
{
    if (!std::exchange(m_isEofReported, true))
        report(ReportKind::FileEof);
}

std::vector<PlaybackReport> PlaybackOrder::take()
{
    return std::exchange(m_reports, {});
}

int PlaybackOrder::state() const
{
    if (m_phase != Phase::Playing)
        return PLAYBACK_STATE_STOPPED;
    return m_wantsPlay ? PLAYBACK_STATE_PLAYING : PLAYBACK_STATE_PAUSED;
}

} // namespace netcommon
