#include "radiowatch.h"

#include <algorithm>
#include <iterator>

namespace menusystem {

RadioWatch::RadioWatch(std::int64_t now, std::int64_t hangMs, std::int64_t insistMs)
    : m_hangMs(hangMs)
    , m_insistMs(insistMs)
    , m_lastAnswer(now)
    , m_lastPing(now)
{
}

void RadioWatch::answered(std::int64_t now)
{
    m_lastAnswer = now;
    m_isReported = false;
}

void RadioWatch::ending(std::int64_t now)
{
    if (!m_insistAt)
        m_insistAt = now + m_insistMs;
}

void RadioWatch::insist(std::int64_t now)
{
    m_insistAt = std::min(m_insistAt.value_or(now), now);
}

RadioWatch::Action RadioWatch::step(std::int64_t now)
{
    if (m_insistAt)
        return stepEnding(now);
    if (!m_isReported && now - m_lastAnswer >= m_hangMs) {
        m_isReported = true;
        return Action::ReportHang;
    }
    if (now - m_lastPing >= std::min(pingMs, m_hangMs / 2)) {
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
