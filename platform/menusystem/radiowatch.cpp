#include "radiowatch.h"

#include <algorithm>
#include <iterator>

namespace menusystem {

RadioWatch::RadioWatch(std::int64_t now, const Limits &limits)
    : m_limits(limits)
    , m_lastAnswer(now)
    , m_lastPing(now)
{
}

void RadioWatch::answered(std::int64_t now)
{
    m_lastAnswer = now;
    m_isReported = false;
}

void RadioWatch::shows(std::int64_t now, Box box)
{
    if (box != m_box)
        m_boxSince = now;
    m_box = box;
}

void RadioWatch::stopped(std::int64_t now)
{
    m_lastAnswer = std::min(m_lastAnswer, now - m_limits.hangMs);
}

void RadioWatch::parked(std::int64_t now)
{
    m_killAt = std::min(m_killAt.value_or(now + restOfDumpMs), now + restOfDumpMs);
}

void RadioWatch::ending(std::int64_t now)
{
    if (!m_insistAt)
        m_insistAt = now + m_limits.insistMs;
}

void RadioWatch::insist(std::int64_t now)
{
    m_insistAt = std::min(m_insistAt.value_or(now), now);
}

RadioWatch::Action RadioWatch::step(std::int64_t now)
{
    if (m_killAt) {
        if (m_isKilled || now < *m_killAt)
            return Action::Nothing;
        m_isKilled = true;
        return Action::Kill;
    }
    if (m_insistAt)
        return stepEnding(now);
    if (!m_isReported && now - m_lastAnswer >= m_limits.hangMs) {
        m_isReported = true;
        return Action::ReportHang;
    }
    if (m_isReported && m_limits.isSupervised) {
        m_killAt = now + dumpMs;
        return Action::Abort;
    }
    if (m_limits.isSupervised && m_box != Box::None &&
        now - m_boxSince >= (m_box == Box::Last ? lastBoxMs : noticeMs)) {
        m_box = Box::None;
        return Action::LeaveBox;
    }
    if (now - m_lastPing >= std::min(m_limits.isSupervised ? supervisedPingMs : pingMs, m_limits.hangMs / 2)) {
        m_lastPing = now;
        return Action::Ping;
    }
    return Action::Nothing;
}

RadioWatch::Action RadioWatch::stepEnding(std::int64_t now)
{
    struct Step {
        std::int64_t after;
        Action action;
    };
    static constexpr Step steps[] = {{0, Action::ReportStuckExit},
                                     {0, Action::Terminate},
                                     {secondTerminateMs, Action::Terminate},
                                     {killMs, Action::Kill}};
    if (m_insisted >= int(std::size(steps)) || now - *m_insistAt < steps[m_insisted].after)
        return Action::Nothing;
    return steps[m_insisted++].action;
}

} // namespace menusystem
