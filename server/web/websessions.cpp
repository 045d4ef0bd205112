#include "server/web/websessions.h"

#include <array>
#include <span>

namespace velmora::server {

namespace {

constexpr size_t idLength = 16; // of the hash of a cookie

} // namespace

std::string browserName(std::string_view userAgent)
{
    struct Word {
        const char *mark;
        const char *name;
    };
    // Browsers name others that they are like, so the first that fits counts.
    constexpr std::array browsers = {
        Word{"Edg", "Edge"},         Word{"OPR/", "Opera"},     Word{"SamsungBrowser/", "Samsung Internet"},
        Word{"Firefox/", "Firefox"}, Word{"FxiOS/", "Firefox"}, Word{"Chrome/", "Chrome"},
        Word{"CriOS/", "Chrome"},    Word{"Safari/", "Safari"}};
    constexpr std::array systems = {Word{"Android", "Android"}, Word{"iPhone", "iPhone"},  Word{"iPad", "iPad"},
                                    Word{"Windows", "Windows"}, Word{"Mac OS X", "macOS"}, Word{"CrOS", "ChromeOS"},
                                    Word{"Linux", "Linux"}};
    std::string name;
    for (const auto &words : {std::span<const Word>(browsers), std::span<const Word>(systems)}) {
        for (const Word &word : words) {
            if (userAgent.find(word.mark) == std::string_view::npos)
                continue;
            name += (name.empty() ? "" : ", ") + std::string(word.name);
            break;
        }
    }
    return name;
}

WebSessions::WebSessions(Clock clock, std::string formKey)
    : m_clock(std::move(clock))
    , m_formKey(std::move(formKey))
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
    {
        const std::lock_guard guard(m_mutex);
        m_signedIn.erase(hash);
        m_others.erase(hash);
    }
    m_ended();
}

std::vector<OpenSession> WebSessions::ofAccount(AccountId account, const std::string &cookie)
{
    const std::string own = tokenHash(cookie);
    std::vector<OpenSession> found;
    const std::lock_guard guard(m_mutex);
    m_signedIn.forEach([&](const std::string &hash, const WebSession &session) {
        if (session.account == account && session.lastUsed + idleSeconds >= m_clock())
            found.push_back({hash.substr(0, idLength), session, hash == own});
    });
    return found;
}

bool WebSessions::endOne(AccountId account, const std::string &id)
{
    bool isFound = false;
    {
        const std::lock_guard guard(m_mutex);
        m_signedIn.eraseIf([&](const std::string &hash, const WebSession &session) {
            const bool isIt = session.account == account && hash.substr(0, idLength) == id;
            isFound = isFound || isIt;
            return isIt;
        });
    }
    if (isFound)
        m_ended();
    return isFound;
}

void WebSessions::endOfAccount(AccountId account, const std::string &keptCookie)
{
    const std::string kept = tokenHash(keptCookie);
    {
        const std::lock_guard guard(m_mutex);
        for (Table *table : {&m_signedIn, &m_others}) {
            table->eraseIf([&](const std::string &hash, const WebSession &session) {
                return (session.account == account || session.byCode == account) && hash != kept;
            });
        }
    }
    m_ended();
}

} // namespace velmora::server
