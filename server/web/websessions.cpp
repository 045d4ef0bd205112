#include "server/web/websessions.h"

#include <algorithm>

namespace velmora::server {

WebSessions::WebSessions(Clock clock)
    : m_clock(std::move(clock))
{
}

std::optional<WebSession> WebSessions::find(const std::string &cookie)
{
    const std::lock_guard guard(m_mutex);
    const auto found = m_sessions.find(tokenHash(cookie));
    if (found == m_sessions.end() || found->second.lastUsed + idleSeconds < m_clock())
        return std::nullopt;
    found->second.lastUsed = m_clock();
    return found->second;
}

WebSession WebSessions::make(std::string *cookie)
{
    const std::lock_guard guard(m_mutex);
    forgetOld();
    WebSession session;
    session.csrf = randomToken();
    session.lastUsed = m_clock();
    *cookie = randomToken();
    m_sessions[tokenHash(*cookie)] = session;
    return session;
}

void WebSessions::keep(const std::string &cookie, const WebSession &session)
{
    const std::lock_guard guard(m_mutex);
    const auto found = m_sessions.find(tokenHash(cookie));
    if (found != m_sessions.end())
        found->second = session;
}

std::string WebSessions::renew(const std::string &cookie, const WebSession &session)
{
    const std::lock_guard guard(m_mutex);
    m_sessions.erase(tokenHash(cookie));
    std::string fresh = randomToken();
    WebSession &kept = m_sessions[tokenHash(fresh)];
    kept = session;
    kept.csrf = randomToken();
    kept.lastUsed = m_clock();
    return fresh;
}

void WebSessions::end(const std::string &cookie)
{
    const std::lock_guard guard(m_mutex);
    m_sessions.erase(tokenHash(cookie));
}

void WebSessions::endOfAccount(AccountId account, const std::string &keptCookie)
{
    const std::lock_guard guard(m_mutex);
    const std::string kept = tokenHash(keptCookie);
    std::erase_if(m_sessions,
                  [&](const auto &entry) { return entry.second.account == account && entry.first != kept; });
}

void WebSessions::forgetOld()
{
    const int64_t now = m_clock();
    std::erase_if(m_sessions, [now](const auto &entry) { return entry.second.lastUsed + idleSeconds < now; });
    while (m_sessions.size() >= most) {
        m_sessions.erase(std::min_element(m_sessions.begin(), m_sessions.end(), [](const auto &a, const auto &b) {
            return a.second.lastUsed < b.second.lastUsed;
        }));
    }
}

} // namespace velmora::server
