#include "saverdecider.h"

#include <algorithm>

namespace netcommon {

namespace {
constexpr qint64 minuteMs = 60'000;
constexpr qint64 shownTickMs = 1000;
constexpr qint64 longestTickMs = minuteMs;
} // namespace

SaverDecider::SaverDecider(qint64 now)
    : m_lastKey(now)
    , m_lastSound(now)
{
}

SaverDecider::Look SaverDecider::step(const Facts &facts)
{
    if (facts.isSounding)
        m_lastSound = facts.now;
    if (!facts.isOnPlayingScreen) {
        // A box or another screen: time begins anew when it has gone.
        m_lastKey = facts.now;
        m_isAsleep = false;
        return m_look = Look::None;
    }
    const bool isIdle = facts.minutes > 0 && facts.now - m_lastKey >= facts.minutes * minuteMs;
    if (m_isAsleep)
        m_look = Look::Black;
    else if (m_look == Look::None && !isIdle)
        m_look = Look::None;
    else
        m_look = facts.now - m_lastSound >= blackAfterMs ? Look::Black : Look::Picture;
    return m_look;
}

qint64 SaverDecider::nextLook(const Facts &facts) const
{
    if (m_look != Look::None)
        return shownTickMs;
    if (facts.minutes <= 0)
        return longestTickMs;
    // The sound is looked at once a minute, too: what has been silent for long begins black.
    return std::clamp(m_lastKey + facts.minutes * minuteMs - facts.now, qint64(0), longestTickMs);
}

bool SaverDecider::keyPressed(qint64 now)
{
    const bool wasShown = m_look != Look::None;
    m_lastKey = now;
    m_isAsleep = false;
    m_look = Look::None;
    return wasShown;
}

void SaverDecider::fallAsleep()
{
    m_isAsleep = true;
}

} // namespace netcommon
