#include "server/accounts/activationcodes.h"

#include "server/store/store.h"

namespace velmora::server {

ActivationCodes::ActivationCodes(Store &store, std::string hashKey, Clock clock)
    : m_store(store)
    , m_hashKey(std::move(hashKey))
    , m_clock(std::move(clock))
{
}

std::string ActivationCodes::issueForDevice(const std::string &digits, const std::string &keyHash,
                                            const std::string &model, const std::string &address)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    std::string code = issue({digits, keyHash, model, address, 0, 0});
    db->run("DELETE FROM activation_codes WHERE digits = ?1 AND key_hash = ?2 AND id NOT IN (SELECT id FROM "
            "activation_codes WHERE digits = ?1 AND key_hash = ?2 ORDER BY created_at DESC, id DESC LIMIT ?3)",
            digits, keyHash, mostOfOneDevice);
    change.commit();
    return code;
}

std::string ActivationCodes::issueForAccount(AccountId account)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    db->run("DELETE FROM activation_codes WHERE account_id = ?1", account);
    Subject subject;
    subject.accountId = account;
    std::string code = issue(subject);
    change.commit();
    return code;
}

std::string ActivationCodes::issue(const Subject &subject)
{
    const std::string_view letters = alphabet;
    std::string code;
    for (int i = 0; i < codeLength; ++i)
        code += letters[randomBelow(static_cast<uint32_t>(letters.size()))];
    const int64_t now = m_clock();
    const Store::Lock db = m_store.lock();
    if (!db->isShared())
        db->run("DELETE FROM activation_codes WHERE expires_at <= ?1", now);
    if (subject.accountId != 0)
        db->run("INSERT INTO activation_codes (code_hash, account_id, created_at, expires_at) VALUES (?1, ?2, ?3, ?4)",
                hashOf(code), subject.accountId, now, now + codeSeconds);
    else
        db->run("INSERT INTO activation_codes (code_hash, digits, key_hash, device_model, address, created_at, "
                "expires_at) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)",
                hashOf(code), subject.digits, subject.keyHash, subject.model, subject.address, now, now + codeSeconds);
    return code;
}

std::optional<ActivationCodes::Subject> ActivationCodes::find(const std::string &code)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT digits, key_hash, device_model, address, account_id, created_at FROM "
                                "activation_codes WHERE code_hash = ?1 AND expires_at > ?2");
    row.with(hashOf(normalised(code)), m_clock());
    if (!row.step())
        return std::nullopt;
    return Subject{row.text(0), row.text(1), row.text(2), row.text(3), row.integer(4), row.integer(5)};
}

bool ActivationCodes::grant(const std::string &code, AccountId account)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    Subject device;
    {
        // Whoever deletes it has used it: a code works once, in whatever process.
        Statement row = db->prepare("DELETE FROM activation_codes WHERE code_hash = ?1 AND expires_at > ?2 AND digits "
                                    "IS NOT NULL RETURNING digits, key_hash");
        row.with(hashOf(normalised(code)), m_clock());
        if (!row.step())
            return false;
        device.digits = row.text(0);
        device.keyHash = row.text(1);
    }
    // The device is activated: its other codes, which somebody may have written down, end too.
    endCodesOf(*db, device);
    db->run("DELETE FROM grants WHERE digits = ?1 AND key_hash = ?2", device.digits, device.keyHash);
    db->run("INSERT INTO grants (digits, key_hash, account_id, expires_at) VALUES (?1, ?2, ?3, ?4)", device.digits,
            device.keyHash, account, m_clock() + grantSeconds);
    change.commit();
    return true;
}

void ActivationCodes::deny(const std::string &code)
{
    const Store::Lock db = m_store.lock();
    const std::optional<Subject> subject = find(code);
    if (subject && !subject->digits.empty())
        endCodesOf(*db, *subject);
}

void ActivationCodes::endCodesOf(Connection &db, const Subject &device)
{
    db.run("DELETE FROM activation_codes WHERE digits = ?1 AND key_hash = ?2", device.digits, device.keyHash);
}

std::optional<AccountId> ActivationCodes::redeemForAccount(const std::string &code)
{
    const int64_t account = m_store.lock()->number("DELETE FROM activation_codes WHERE code_hash = ?1 AND expires_at > "
                                                   "?2 AND account_id IS NOT NULL RETURNING account_id",
                                                   hashOf(normalised(code)), m_clock());
    return account != 0 ? std::optional<AccountId>(account) : std::nullopt;
}

std::string ActivationCodes::normalised(const std::string &typed)
{
    std::string code;
    for (const char c : typed) {
        if (c == ' ' || c == '-')
            continue;
        code += c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    }
    return code;
}

std::string ActivationCodes::hashOf(const std::string &code) const
{
    return keyedHash(m_hashKey, "activation " + code);
}

} // namespace velmora::server
