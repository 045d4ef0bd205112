#include "networkdecider.h"

namespace netcommon {

NetworkDecider::NetworkDecider(bool isServerLocal, bool hasRoute)
    : m_isServerLocal(isServerLocal)
    , m_hasRoute(hasRoute)
{
}

NetworkDecider::Action NetworkDecider::routesRead(bool hasRoute)
{
    Action action;
    const bool had = m_hasRoute;
    m_hasRoute = hasRoute;
    if (m_isServerLocal || m_isHeldDown)
        return action;
    if (hasRoute) {
        action.stopsTimer = m_isTimerRunning;
        m_isTimerRunning = false;
        if (m_isLost) {
            m_isLost = false;
            action.event = NETWORK_EVENT_CONNECTED;
        }
    } else if (had && !m_isTimerRunning && !m_isLost) {
        m_isTimerRunning = true;
        action.timerMs = lossDelayMs;
    }
    return action;
}

NetworkDecider::Action NetworkDecider::timePassed(bool isSoundLeft)
{
    Action action;
    if (!m_isTimerRunning)
        return action;
    if (isSoundLeft) {
        action.timerMs = soundCheckMs;
        return action;
    }
    m_isTimerRunning = false;
    m_isLost = true;
    action.event = NETWORK_EVENT_DISCONNECTED;
    return action;
}

NetworkDecider::Action NetworkDecider::injected(NETWORk_EVENT_T event)
{
    Action action;
    action.stopsTimer = m_isTimerRunning;
    m_isTimerRunning = false;
    m_isHeldDown = event == NETWORK_EVENT_DISCONNECTED;
    m_isLost = m_isHeldDown;
    action.event = event;
    return action;
}

} // namespace netcommon
