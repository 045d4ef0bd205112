#include "server/accounts/signups.h"

#include "server/store/store.h"

namespace velmora::server {

namespace {

constexpr const char *columns = "user_name, password_hash, birth_year, gender, zip_code, country_code, email_opt_in, "
                                "session_hash, key_hash, device_id, invitation_hash";

} // namespace

SignUps::SignUps(Store &store, Clock clock)
    : m_store(store)
    , m_clock(std::move(clock))
{
}

std::string SignUps::add(const SignUp &signUp)
{
    std::string token = randomToken();
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    if (!db->isShared())
        db->run("DELETE FROM sign_ups WHERE expires_at <= ?1", m_clock());
    db->run("INSERT INTO sign_ups (token_hash, user_name, password_hash, birth_year, gender, zip_code, country_code, "
            "email_opt_in, session_hash, key_hash, device_id, expires_at, invitation_hash) "
            "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13)",
            tokenHash(token), signUp.userName, signUp.passwordHash, signUp.profile.birthYear, signUp.profile.gender,
            signUp.profile.zipCode, signUp.profile.countryCode, signUp.profile.emailOptIn, signUp.sessionHash,
            signUp.keyHash, signUp.deviceId, m_clock() + linkSeconds, signUp.invitationHash);
    change.commit();
    return token;
}

std::optional<SignUp> SignUps::find(const std::string &token)
{
    return read(token, std::string("SELECT ") + columns + " FROM sign_ups WHERE token_hash = ?1 AND expires_at > ?2");
}

std::optional<SignUp> SignUps::read(const std::string &token, const std::string &query)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare(query);
    row.with(tokenHash(token), m_clock());
    if (!row.step())
        return std::nullopt;
    SignUp signUp;
    signUp.userName = row.text(0);
    signUp.passwordHash = row.text(1);
    if (!row.isNull(2))
        signUp.profile.birthYear = static_cast<int>(row.integer(2));
    signUp.profile.gender = row.text(3);
    signUp.profile.zipCode = row.text(4);
    signUp.profile.countryCode = row.text(5);
    signUp.profile.emailOptIn = row.integer(6) != 0;
    signUp.sessionHash = row.text(7);
    signUp.keyHash = row.text(8);
    signUp.deviceId = row.text(9);
    signUp.invitationHash = row.text(10);
    return signUp;
}

std::optional<SignUp> SignUps::take(const std::string &token)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db); // a statement with rows left is no transaction of its own
    std::optional<SignUp> signUp =
        read(token, std::string("DELETE FROM sign_ups WHERE token_hash = ?1 AND expires_at > ?2 RETURNING ") + columns);
    change.commit();
    return signUp;
}

} // namespace velmora::server
