#include "server/web/websessions.h"

namespace velmora::server {

WebSessions::WebSessions(Clock clock)
    : m_clock(std::move(clock))
{
}

std::string WebSessions::newCookie()
{
    return randomToken();
}

bool WebSessions::isCookie(const std::string &text)
{
    return isToken(text, 32);
}

std::string WebSessions::formToken(const std::string &cookie) const
{
    return keyedHash(m_formKey, cookie);
}

WebSession WebSessions::find(const std::string &cookie)
{
    const std::string hash = tokenHash(cookie);
    const std::lock_guard guard(m_mutex);
    for (Table *table : {&m_signedIn, &m_others}) {
        WebSession *session = table->find(hash);
        if (session && session->lastUsed + idleSeconds >= m_clock()) {
            session->lastUsed = m_clock();
            return *session;
        }
    }
    return {};
}

void WebSessions::keep(const std::string &cookie, const WebSession &session)
{
    const std::lock_guard guard(m_mutex);
    put(cookie, session);
}

std::string WebSessions::renew(const std::string &cookie, const WebSession &session)
{
    std::string fresh = newCookie();
    end(cookie);
    keep(fresh, session);
    return fresh;
}

void WebSessions::put(const std::string &cookie, WebSession session)
{
    const std::string hash = tokenHash(cookie);
    session.lastUsed = m_clock();
    m_others.erase(hash);
    if (session.account == 0) {
        m_signedIn.erase(hash);
        if (!session.code.empty() || session.byCode != 0)
            m_others.at(hash) = std::move(session);
        return;
    }
    if (!m_signedIn.find(hash))
        limitAccount(session.account);
    m_signedIn.at(hash) = std::move(session);
}

void WebSessions::limitAccount(AccountId account)
{
    size_t kept = 0;
    m_signedIn.eraseIf([&](const std::string &, const WebSession &session) {
        return session.account == account && ++kept >= mostOfAccount;
    });
}

void WebSessions::end(const std::string &cookie)
{
    const std::string hash = tokenHash(cookie);
    const std::lock_guard guard(m_mutex);
    m_signedIn.erase(hash);
    m_others.erase(hash);
}

void WebSessions::endOfAccount(AccountId account, const std::string &keptCookie)
{
    const std::string kept = tokenHash(keptCookie);
    const std::lock_guard guard(m_mutex);
    for (Table *table : {&m_signedIn, &m_others}) {
        table->eraseIf([&](const std::string &hash, const WebSession &session) {
            return (session.account == account || session.byCode == account) && hash != kept;
        });
    }
}

} // namespace velmora::server
