#include "server/web/websessions.h"

#include "server/store/store.h"

#include <array>
#include <span>

namespace velmora::server {

namespace {

constexpr size_t idLength = 16; // of the hash of a cookie

constexpr const char *selected =
    "SELECT account_id, code, by_code, last_used, since, browser, address, cookie_hash, is_allowed "
    "FROM browser_sessions ";

WebSession readSession(const Statement &row)
{
    WebSession session;
    session.account = row.integer(0);
    session.code = row.text(1);
    session.byCode = row.integer(2);
    session.lastUsed = row.integer(3);
    session.since = row.integer(4);
    session.browser = row.text(5);
    session.address = row.text(6);
    session.isAllowed = row.integer(8) != 0;
    return session;
}

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

WebSessions::WebSessions(Clock clock, std::string formKey, Store *store)
    : m_clock(std::move(clock))
    , m_formKey(std::move(formKey))
    , m_store(store && store->isShared() ? store : nullptr)
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
    if (m_store)
        return sharedFind(cookie);
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
    if (m_store) {
        sharedPut(cookie, session);
        return;
    }
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
    if (m_store) {
        m_store->lock()->run("DELETE FROM browser_sessions WHERE cookie_hash = ?1", hash);
    } else {
        const std::lock_guard guard(m_mutex);
        m_signedIn.erase(hash);
        m_others.erase(hash);
    }
    m_ended();
}

std::vector<OpenSession> WebSessions::ofAccount(AccountId account, const std::string &cookie)
{
    const std::string own = tokenHash(cookie);
    if (m_store)
        return sharedOfAccount(account, own);
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
    if (m_store) {
        const Store::Lock db = m_store->lock();
        db->run("DELETE FROM browser_sessions WHERE account_id = ?1 AND substr(cookie_hash, 1, CAST(?2 AS INTEGER)) = "
                "?3",
                account, static_cast<int64_t>(idLength), id);
        isFound = db->changes() > 0;
    } else {
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
    if (m_store) {
        const Store::Lock db = m_store->lock();
        Transaction change(*db);
        for (const char *column : {"account_id", "by_code"})
            db->run(std::string("DELETE FROM browser_sessions WHERE ") + column + " = ?1 AND cookie_hash <> ?2",
                    account, kept);
        change.commit();
    } else {
        const std::lock_guard guard(m_mutex);
        for (Table *table : {&m_signedIn, &m_others}) {
            table->eraseIf([&](const std::string &hash, const WebSession &session) {
                return (session.account == account || session.byCode == account) && hash != kept;
            });
        }
    }
    m_ended();
}

WebSession WebSessions::sharedFind(const std::string &cookie)
{
    const std::string hash = tokenHash(cookie);
    constexpr int64_t worthAWrite = 60;
    const int64_t now = m_clock();
    const Store::Lock db = m_store->lock();
    WebSession session;
    {
        Statement row = db->prepare(std::string(selected) + "WHERE cookie_hash = ?1 AND last_used >= ?2");
        row.with(hash, now - idleSeconds);
        if (!row.step())
            return {};
        session = readSession(row);
    }
    if (!session.code.empty())
        session.code = unsealed(cookie, session.code).value_or("");
    if (now - session.lastUsed >= worthAWrite)
        db->run("UPDATE browser_sessions SET last_used = ?2 WHERE cookie_hash = ?1", hash, now);
    session.lastUsed = now;
    return session;
}

void WebSessions::sharedPut(const std::string &cookie, const WebSession &session)
{
    const std::string hash = tokenHash(cookie);
    // Only the browser's cookie, which is not stored, opens it.
    const std::string code = session.code.empty() ? std::string() : sealed(cookie, session.code);
    const Store::Lock db = m_store->lock();
    if (session.account == 0 && session.code.empty() && session.byCode == 0) {
        db->run("DELETE FROM browser_sessions WHERE cookie_hash = ?1", hash);
        return;
    }
    Transaction change(*db, Durability::Later); // a crash signs browsers out, nothing else
    db->run("INSERT INTO browser_sessions (cookie_hash, account_id, code, by_code, last_used, since, browser, address, "
            "is_allowed) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9) ON CONFLICT (cookie_hash) DO UPDATE SET "
            "account_id = ?2, code = "
            "?3, by_code = ?4, last_used = ?5, since = ?6, browser = ?7, address = ?8, is_allowed = ?9",
            hash, session.account, code, session.byCode, session.lastUsed, session.since, session.browser,
            session.address, session.isAllowed);
    if (session.account != 0)
        db->run("DELETE FROM browser_sessions WHERE account_id = ?1 AND cookie_hash NOT IN (SELECT cookie_hash FROM "
                "browser_sessions WHERE account_id = ?1 ORDER BY last_used DESC, cookie_hash = ?3 DESC LIMIT ?2)",
                session.account, static_cast<int64_t>(mostOfAccount), hash);
    change.commit();
}

std::vector<OpenSession> WebSessions::sharedOfAccount(AccountId account, const std::string &own)
{
    std::vector<OpenSession> found;
    const Store::Lock db = m_store->lock();
    Statement row = db->prepare(std::string(selected) +
                                "WHERE account_id = ?1 AND last_used >= ?2 ORDER BY last_used DESC, cookie_hash");
    row.with(account, m_clock() - idleSeconds);
    while (row.step()) {
        const std::string hash = row.text(7);
        found.push_back({hash.substr(0, idLength), readSession(row), hash == own});
    }
    return found;
}

} // namespace velmora::server
