#include "supervisor.h"

#include <algorithm>
#include <iterator>

namespace menusystem {

namespace {

// In place of a page that does not work.
constexpr int pausesMs[] = {1000, 2000, 5000, 10000, 15000};
constexpr int longestPauseMs = pausesMs[std::size(pausesMs) - 1];

Next show(Page page)
{
    return {Next::Kind::Page, page};
}

Next pause(int ms)
{
    return {Next::Kind::Pause, Page::Home, ms};
}

} // namespace

const char *nameOf(Page page)
{
    switch (page) {
    case Page::Home:
        return "home";
    case Page::Waiting:
        return "waiting";
    case Page::Again:
        return "again";
    case Page::Stopped:
        return "stopped";
    case Page::Service:
        return "service";
    }
    return "home";
}

Supervisor::Supervisor(bool isKiosk)
    : m_isKiosk(isKiosk)
{
}

Next Supervisor::radioEnded(Ending ending, bool hasPlayed, std::int64_t ranMs, std::int64_t now)
{
    if (hasPlayed || ranMs >= goodRunMs) {
        m_faults = 0;
        m_pauses = 0;
    }
    switch (ending) {
    case Ending::Wish:
        return m_isKiosk ? show(Page::Home) : Next{Next::Kind::Quit};
    case Ending::House:
        return show(Page::Home);
    case Ending::Fault:
        ++m_faults;
        return show(Page::Waiting);
    case Ending::Crash:
        while (!m_crashes.empty() && now - m_crashes.front() >= crashWindowMs)
            m_crashes.pop_front();
        m_crashes.push_back(now);
        return m_crashes.size() > maxCrashes ? show(Page::Stopped) : Next{Next::Kind::Radio};
    case Ending::NotStarted:
        break;
    }
    return {Next::Kind::Quit};
}

Next Supervisor::pageEnded(Page page, std::optional<int> status, std::int64_t shownMs)
{
    switch (status.value_or(-1)) {
    case quit:
        return {Next::Kind::Quit};
    case restart:
        return {Next::Kind::Restart};
    case switchOff:
        return {Next::Kind::SwitchOff};
    case startRadio:
        break;
    default:
        if (page == Page::Again || page == Page::Stopped)
            return pause(longestPauseMs);
        return pause(pausesMs[std::min(m_pauses++, int(std::size(pausesMs)) - 1)]);
    }
    m_pauses = 0;
    if (page == Page::Waiting && shownMs <= healthyMs && m_faults >= maxFaults)
        return show(Page::Again);
    if (page != Page::Waiting || shownMs > healthyMs)
        m_faults = 0; // a person has decided, or the service had been away
    if (page == Page::Stopped)
        m_crashes.clear();
    return {Next::Kind::Radio};
}

} // namespace menusystem
