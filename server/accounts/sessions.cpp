#include "server/accounts/sessions.h"

#include "server/store/store.h"

namespace velmora::server {

Sessions::Sessions(Store &store, TokenLifetimes lifetimes, Clock clock)
    : m_store(store)
    , m_lifetimes(lifetimes)
    , m_clock(std::move(clock))
{
}

std::string Sessions::openPartner(const std::string &deviceKey, const std::string &deviceModel)
{
    std::string token = randomToken();
    add(server::tokenHash(token), "partner", std::nullopt, server::tokenHash(deviceKey), std::nullopt,
        m_lifetimes.partnerSeconds, deviceModel);
    return token;
}

std::string Sessions::openUser(AccountId account, const std::string &keyHash, const std::string &deviceId)
{
    std::string token = randomToken();
    adoptUser(server::tokenHash(token), account, keyHash, deviceId);
    return token;
}

void Sessions::adoptUser(const std::string &tokenHash, AccountId account, const std::string &keyHash,
                         const std::string &deviceId)
{
    add(tokenHash, "user", account, keyHash, deviceId.empty() ? std::nullopt : std::optional(deviceId),
        m_lifetimes.userSeconds, {});
}

void Sessions::add(const std::string &tokenHash, const char *kind, std::optional<AccountId> account,
                   const std::string &keyHash, const std::optional<std::string> &deviceId, int64_t seconds,
                   const std::string &deviceModel)
{
    const int64_t now = m_clock();
    const Store::Lock db = m_store.lock();
    Transaction change(*db, Durability::Later);
    if (!db->isShared())
        db->run("DELETE FROM sessions WHERE expires_at <= ?1", now);
    db->run("INSERT INTO sessions (token_hash, kind, account_id, key_hash, device_id, expires_at, device_model) "
            "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)",
            tokenHash, kind, account, keyHash, deviceId, now + seconds, deviceModel);
    change.commit();
}

std::optional<Session> Sessions::find(const std::string &token)
{
    const std::string hash = tokenHash(token);
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT kind, account_id, key_hash, device_id, is_revoked, device_model "
                                "FROM sessions WHERE token_hash = ?1 AND expires_at > ?2");
    row.with(hash, m_clock());
    if (!row.step())
        return std::nullopt;
    return Session{row.text(0) == "user" ? TokenKind::User : TokenKind::Partner,
                   hash,
                   row.text(2),
                   row.integer(1),
                   row.text(3),
                   row.integer(4) != 0,
                   row.text(5)};
}

bool Sessions::isOpen(const Session &session)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT 1 FROM sessions WHERE token_hash = ?1 AND is_revoked = 0");
    row.with(session.tokenHash);
    return row.step();
}

void Sessions::close(const std::string &token)
{
    m_store.lock()->run("DELETE FROM sessions WHERE token_hash = ?1", tokenHash(token));
}

void Sessions::bindToDevice(const Session &session, const std::string &deviceId)
{
    m_store.lock()->run("UPDATE sessions SET device_id = ?2 WHERE token_hash = ?1", session.tokenHash, deviceId);
}

} // namespace velmora::server
