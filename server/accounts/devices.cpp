#include "server/accounts/devices.h"

#include "server/catalogue/textfolding.h"
#include "server/store/store.h"

#include <algorithm>

namespace velmora::server {

namespace {

// Who links, unlinks and logs in with one device does so one after another.
NameLock lockOf(const std::string &deviceId, const std::string &keyHash)
{
    return {"device " + deviceId + ' ' + keyHash};
}

constexpr size_t digitCount = 12;
constexpr size_t longestDeviceName = 40;
constexpr size_t markLength = 16; // of the hash of a key: tells radios of one account apart

} // namespace

Devices::Devices(Store &store, Clock clock)
    : m_store(store)
    , m_clock(std::move(clock))
{
}

bool Devices::isDigits(const std::string &text)
{
    return text.size() == digitCount && std::all_of(text.begin(), text.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
           });
}

bool Devices::isDeviceId(const std::string &text)
{
    return text.size() == digitCount + 2 && isDigits(text.substr(0, digitCount)) && text[digitCount] == '-' &&
           text[digitCount + 1] >= '0' && text[digitCount + 1] <= '9';
}

void Devices::associate(const std::string &deviceId, const std::string &keyHash, AccountId account)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db, lockOf(deviceId, keyHash));
    if (const std::optional<Device> device = find(deviceId, keyHash); device && device->accountId == account)
        return;
    end(*db, deviceId, keyHash);
    db->run("INSERT INTO devices (device_id, key_hash, account_id, associated_at) VALUES (?1, ?2, ?3, ?4)", deviceId,
            keyHash, account, m_clock());
    change.commit();
}

std::optional<Device> Devices::find(const std::string &deviceId, const std::string &keyHash)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT account_id, associated_at FROM devices WHERE device_id = ?1 AND key_hash = ?2");
    row.with(deviceId, keyHash);
    if (!row.step())
        return std::nullopt;
    return Device{deviceId, row.integer(0), row.integer(1), {}};
}

bool Devices::disassociate(const std::string &deviceId, const std::string &keyHash)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db, lockOf(deviceId, keyHash));
    const std::optional<Device> device = find(deviceId, keyHash);
    if (!device)
        return false;
    // Sessions of logins by name from this device that were never bound to a slot end too.
    db->run("DELETE FROM sessions WHERE account_id = ?1 AND key_hash = ?2 AND device_id IS NULL", device->accountId,
            keyHash);
    end(*db, deviceId, keyHash);
    change.commit();
    return true;
}

std::vector<Device> Devices::ofAccount(AccountId account)
{
    std::vector<Device> devices;
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare(
        "SELECT device_id, MIN(associated_at), MAX(name) FROM devices WHERE account_id = ?1 GROUP BY device_id "
        "ORDER BY 2");
    row.with(account);
    while (row.step())
        devices.push_back({row.text(0), account, row.integer(1), row.text(2)});
    return devices;
}

std::vector<std::string> Devices::keysOf(AccountId account, const std::string &deviceId)
{
    std::vector<std::string> keys;
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT key_hash FROM devices WHERE account_id = ?1 AND device_id = ?2");
    row.with(account, deviceId);
    while (row.step())
        keys.push_back(row.text(0));
    return keys;
}

std::vector<std::pair<std::string, std::string>> Devices::grantsOf(AccountId account)
{
    std::vector<std::pair<std::string, std::string>> grants;
    const Store::Lock db = m_store.lock();
    Statement row =
        db->prepare("SELECT DISTINCT digits, key_hash FROM grants WHERE account_id = ?1 AND expires_at > ?2");
    row.with(account, m_clock());
    while (row.step())
        grants.emplace_back(row.text(0), row.text(1));
    return grants;
}

bool Devices::rename(AccountId account, const std::string &deviceId, const std::string &name)
{
    const bool hasControls =
        std::any_of(name.begin(), name.end(), [](unsigned char c) { return c < ' ' || c == 0x7f; });
    if (!isUtf8(name) || characterCount(name) > longestDeviceName || hasControls)
        return false;
    const Store::Lock db = m_store.lock();
    db->run("UPDATE devices SET name = ?3 WHERE account_id = ?1 AND device_id = ?2", account, deviceId, name);
    return db->changes() > 0;
}

bool Devices::revoke(AccountId account, const std::string &deviceId)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db, AccountLock{account});
    const std::string keys = "(SELECT key_hash FROM devices WHERE account_id = ?1 AND device_id = ?2)";
    // The session is kept and marked: a radio without its session would log in again and again, a refusal with a
    // reason ends that.
    db->run("UPDATE sessions SET is_revoked = 1, expires_at = ?3 WHERE account_id = ?1 AND key_hash IN " + keys +
                " AND (device_id IS NULL OR device_id = ?2)",
            account, deviceId, m_clock() + revokedSeconds);
    db->run("DELETE FROM devices WHERE account_id = ?1 AND device_id = ?2", account, deviceId);
    if (db->changes() == 0)
        return false;
    db->run("DELETE FROM grants WHERE account_id = ?1 AND digits = ?2", account, deviceId.substr(0, digitCount));
    change.commit();
    return true;
}

std::optional<Device> Devices::takeGrant(const std::string &deviceId, const std::string &keyHash)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    if (!db->isShared())
        db->run("DELETE FROM grants WHERE expires_at <= ?1", m_clock());
    int64_t grant = 0;
    AccountId account = 0;
    {
        Statement row = db->prepare("SELECT id, account_id FROM grants WHERE digits = ?1 AND key_hash = ?2 AND "
                                    "expires_at > ?3 ORDER BY expires_at DESC, id DESC LIMIT 1");
        row.with(deviceId.substr(0, digitCount), keyHash, m_clock());
        if (!row.step())
            return std::nullopt;
        grant = row.integer(0);
        account = row.integer(1);
    }
    // A new password ends grants and devices: not between the grant's end and the device's beginning.
    const Transaction ofAccount(*db, AccountLock{account});
    const Transaction ofDevice(*db, lockOf(deviceId, keyHash));
    if (find(deviceId, keyHash) || db->number("DELETE FROM grants WHERE id = ?1 RETURNING account_id", grant) == 0)
        return std::nullopt;
    associate(deviceId, keyHash, account);
    change.commit();
    return Device{deviceId, account, m_clock(), {}};
}

bool Devices::mayListen(AccountId account, const std::string &radio)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare(
        "SELECT CASE WHEN ?2 = '' THEN 1 WHEN EXISTS (SELECT 1 FROM devices WHERE account_id = ?1 AND "
        "substr(key_hash, 1, CAST(?3 AS INTEGER)) = ?2) THEN 1 WHEN EXISTS (SELECT 1 FROM sessions WHERE account_id = "
        "?1 AND substr(key_hash, 1, CAST(?3 AS INTEGER)) = ?2 AND is_revoked = 0 AND expires_at > ?4) THEN 1 ELSE 0 "
        "END FROM accounts WHERE id = ?1 AND is_active = 1");
    row.with(account, radio, static_cast<int64_t>(markLength), m_clock());
    return row.step() && row.integer(0) != 0;
}

std::string Devices::radioMark(const std::string &keyHash)
{
    return keyHash.substr(0, markLength);
}

void Devices::end(Connection &db, const std::string &deviceId, const std::string &keyHash)
{
    db.run("DELETE FROM sessions WHERE device_id = ?1 AND key_hash = ?2", deviceId, keyHash);
    db.run("DELETE FROM devices WHERE device_id = ?1 AND key_hash = ?2", deviceId, keyHash);
}

} // namespace velmora::server
