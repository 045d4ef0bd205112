#include "server/accounts/accounts.h"

#include "server/accounts/devices.h"
#include "server/accounts/mailaddress.h"
#include "server/store/store.h"

#include <algorithm>

namespace velmora::server {

namespace {

constexpr size_t longestUserName = 254; // of an e-mail address

} // namespace

Accounts::Accounts(Store &store, PasswordHasher &hasher, Clock clock)
    : m_store(store)
    , m_hasher(hasher)
    , m_clock(std::move(clock))
{
    m_passwordThrottle.share(store, "password");
    m_pinThrottle.share(store, "pin");
}

std::string Accounts::foldedName(std::string name)
{
    // Only ASCII letters are folded, as mail servers do.
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return name;
}

bool Accounts::isPassword(const std::string &text)
{
    return text.size() >= shortestPassword && text.size() <= longestPassword;
}

bool Accounts::isPin(const std::string &text)
{
    return text.size() >= 4 && text.size() <= 8 && text.find_first_not_of("0123456789") == std::string::npos;
}

CreateResult Accounts::checkNew(const std::string &userName, const std::string &password)
{
    if (!isMailAddress(userName))
        return CreateResult::BadUserName;
    return isPassword(password) ? CreateResult::Done : CreateResult::BadPassword;
}

CreateResult Accounts::create(const std::string &userName, const std::string &passwordHash, const Profile &profile,
                              AccountId *id, const std::function<void(AccountId)> &furnish)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    *id = db->number(
        "INSERT INTO accounts (user_name, folded_name, password_hash, created_at, birth_year, gender, zip_code, "
        "country_code, email_opt_in) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9) ON CONFLICT (folded_name) DO NOTHING "
        "RETURNING id",
        userName, foldedName(userName), passwordHash, m_clock(), profile.birthYear, profile.gender, profile.zipCode,
        profile.countryCode, profile.emailOptIn);
    if (*id == 0)
        return CreateResult::Taken;
    if (furnish)
        furnish(*id);
    change.commit();
    return CreateResult::Done;
}

Login Accounts::login(const std::string &userName, const std::string &password, const std::string &network)
{
    const std::string name = foldedName(userName.substr(0, longestUserName));
    if (const std::optional<int> seconds = m_passwordThrottle.refuse(name, network, m_clock()))
        return {LoginResult::TooMany, {}, *seconds};
    std::string hash;
    const std::optional<Account> found = findWhere("folded_name = ?1", name, &hash);
    const bool isRight = password.size() <= longestPassword &&
                         (found ? m_hasher.verify(hash, password) : m_hasher.verifyNothing(password));
    if (!isRight) {
        m_passwordThrottle.failed(name, network, m_clock());
        return {LoginResult::Wrong, {}, 0};
    }
    m_passwordThrottle.succeeded(name, network);
    if (!found->isActive)
        return {LoginResult::Inactive, {}, 0};
    return {LoginResult::Done, *found, 0};
}

template <typename Value>
std::optional<Account> Accounts::findWhere(const std::string &condition, const Value &value, std::string *passwordHash)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT id, user_name, is_active, explicit_filter, explicit_pin_hash IS NOT NULL, "
                                "password_hash FROM accounts WHERE " +
                                condition);
    row.with(value);
    if (!row.step())
        return std::nullopt;
    if (passwordHash)
        *passwordHash = row.text(5);
    return Account{row.integer(0),      row.text(1),         row.integer(2) != 0,
                   row.integer(3) != 0, row.integer(4) != 0, row.text(5)};
}

bool Accounts::hasSamePassword(const Account &account)
{
    const std::optional<Account> now = find(account.id);
    return now && now->passwordHash == account.passwordHash;
}

std::optional<Account> Accounts::find(AccountId id)
{
    return findWhere("id = ?1", id, nullptr);
}

std::optional<Account> Accounts::find(const std::string &userName)
{
    return findWhere("folded_name = ?1", foldedName(userName), nullptr);
}

void Accounts::setActive(AccountId id, bool isActive)
{
    m_store.lock()->run("UPDATE accounts SET is_active = ?2 WHERE id = ?1", id, isActive);
}

CreateResult Accounts::changePassword(AccountId id, const std::string &newPassword, Radios radios)
{
    if (!isPassword(newPassword))
        return CreateResult::BadPassword;
    const std::string hash = m_hasher.hash(newPassword);
    const Store::Lock db = m_store.lock();
    Transaction change(*db, AccountLock{id});
    db->run("UPDATE accounts SET password_hash = ?2 WHERE id = ?1", id, hash);
    if (radios == Radios::End) {
        db->run("DELETE FROM devices WHERE account_id = ?1", id);
        db->run("DELETE FROM grants WHERE account_id = ?1", id);
    }
    // Marked, not deleted, as in Devices::revoke().
    db->run(
        "UPDATE sessions SET is_revoked = 1, expires_at = ?2 WHERE account_id = ?1 AND is_revoked = 0 AND NOT EXISTS "
        "(SELECT 1 FROM devices d WHERE d.account_id = ?1 AND d.device_id = sessions.device_id AND d.key_hash = "
        "sessions.key_hash)",
        id, m_clock() + Devices::revokedSeconds);
    db->run("DELETE FROM activation_codes WHERE account_id = ?1", id);
    db->run("DELETE FROM resets WHERE account_id = ?1", id);
    change.commit();
    return CreateResult::Done;
}

std::string Accounts::issueReset(AccountId id, const std::string &purpose, int64_t seconds, const std::string &value)
{
    std::string token = randomToken();
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    if (!db->isShared())
        db->run("DELETE FROM resets WHERE expires_at <= ?1", m_clock());
    db->run("DELETE FROM resets WHERE account_id = ?1 AND purpose = ?2", id, purpose);
    db->run("INSERT INTO resets (token_hash, purpose, account_id, expires_at, value) VALUES (?1, ?2, ?3, ?4, ?5)",
            tokenHash(token), purpose, id, m_clock() + seconds, value);
    change.commit();
    return token;
}

std::optional<AccountId> Accounts::peekReset(const std::string &token, const std::string &purpose)
{
    const Store::Lock db = m_store.lock();
    Statement row =
        db->prepare("SELECT account_id FROM resets WHERE token_hash = ?1 AND purpose = ?2 AND expires_at > ?3");
    row.with(tokenHash(token), purpose, m_clock());
    return row.step() ? std::optional<AccountId>(row.integer(0)) : std::nullopt;
}

std::optional<AccountId> Accounts::redeemReset(const std::string &token, const std::string &purpose)
{
    const int64_t id = m_store.lock()->number(
        "DELETE FROM resets WHERE token_hash = ?1 AND purpose = ?2 AND expires_at > ?3 RETURNING account_id",
        tokenHash(token), purpose, m_clock());
    return id != 0 ? std::optional<AccountId>(id) : std::nullopt;
}

std::string Accounts::resetValue(const std::string &token, const std::string &purpose)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT value FROM resets WHERE token_hash = ?1 AND purpose = ?2 AND expires_at > ?3");
    row.with(tokenHash(token), purpose, m_clock());
    return row.step() ? row.text(0) : std::string();
}

CreateResult Accounts::changeUserName(AccountId id, const std::string &userName)
{
    if (!isMailAddress(userName))
        return CreateResult::BadUserName;
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    const std::optional<Account> other = find(userName);
    if (other && other->id != id)
        return CreateResult::Taken;
    try {
        db->run("UPDATE accounts SET user_name = ?2, folded_name = ?3 WHERE id = ?1", id, userName,
                foldedName(userName));
    } catch (const StoreError &error) { // another process gives the name to another account at this moment
        if (error.isConstraint())
            return CreateResult::Taken;
        throw;
    }
    // Links of mails went to the old address.
    db->run("DELETE FROM resets WHERE account_id = ?1", id);
    change.commit();
    return CreateResult::Done;
}

void Accounts::setExplicitFilter(AccountId id, bool isOn)
{
    m_store.lock()->run("UPDATE accounts SET explicit_filter = ?2 WHERE id = ?1", id, isOn);
}

Login Accounts::checkExplicitPin(AccountId id, const std::string &pin, const std::string &network)
{
    std::string hash;
    {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare("SELECT explicit_pin_hash FROM accounts WHERE id = ?1");
        row.with(id);
        if (!row.step() || row.isNull(0))
            return {LoginResult::Done, {}, 0};
        hash = row.text(0);
    }
    const std::string name = std::to_string(id);
    if (const std::optional<int> seconds = m_pinThrottle.refuse(name, network, m_clock()))
        return {LoginResult::TooMany, {}, *seconds};
    if (!m_hasher.verify(hash, pin)) {
        m_pinThrottle.failed(name, network, m_clock());
        return {LoginResult::Wrong, {}, 0};
    }
    m_pinThrottle.succeeded(name, network);
    return {LoginResult::Done, {}, 0};
}

void Accounts::setExplicitPin(AccountId id, const std::string &pin)
{
    std::optional<std::string> hash;
    if (!pin.empty())
        hash = m_hasher.hash(pin);
    m_store.lock()->run("UPDATE accounts SET explicit_pin_hash = ?2 WHERE id = ?1", id, hash);
}

} // namespace velmora::server
